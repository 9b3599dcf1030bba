"""A folder in which a thread keeps making, removing, renaming and replacing things."""

import os
import random
import shutil
import threading
import time

NAMES = [
    b"alpha", b"Beta", b"10", b"9", b".hidden", b"zeta.txt", b"a.tar.gz", b"caf\xe9", "größe".encode(),
    "עברית".encode(), b"line\nbreak", b"\x1b[31mred", b"-rf", b"$(touch x)", b"'quote\"", b"n" * 255,
]
MOST_ENTRIES = 400
MOST_FILLING = 0.7  # of the file system
PAUSE = 0.003  # seconds


def never_waiting(path, flags):
    """Fails on a FIFO that nobody reads, instead of waiting for a reader."""
    return os.open(path, flags | os.O_NONBLOCK, 0o644)


class ChangingTree(threading.Thread):
    def __init__(self, root, seed, picture):
        super().__init__(daemon=True)
        self.root = os.fsencode(root)
        self.random = random.Random(seed)
        with open(picture, "rb") as file:
            self.picture = file.read()
        self.ended = threading.Event()
        self.changes = 0

    def run(self):
        while not self.ended.is_set():
            try:
                self._change()
                self.changes += 1
            except OSError:
                pass  # the program changes things too
            time.sleep(PAUSE)

    def stop(self):
        self.ended.set()
        self.join()

    def _change(self):
        folders, files = self._contents()
        if len(folders) + len(files) > MOST_ENTRIES or self._filling() > MOST_FILLING:
            self._make_room()
            return
        folder = self.random.choice(folders)
        place = os.path.join(folder, self._some_name())
        actions = [self._make_file, self._make_file, self._make_folder, self._make_link, self._make_fifo]
        if files:
            actions += [self._rename, self._replace, self._remove, self._grow]
        self.random.choice(actions)(place, self.random.choice(files) if files else None)

    def _contents(self):
        folders, files = [self.root], []
        os.makedirs(self.root, exist_ok=True)
        for folder, names, others in os.walk(self.root):
            # A link leads elsewhere, perhaps out of the tree: nothing is ever made through one.
            folders += [path for path in (os.path.join(folder, name) for name in names) if not os.path.islink(path)]
            files += [os.path.join(folder, name) for name in others]
        return folders, files

    def _some_name(self):
        return self.random.choice(NAMES)[: self.random.choice([3, 255])] + b"%d" % self.random.randrange(40)

    def _filling(self):
        state = os.statvfs(self.root)
        return 1 - state.f_bavail / state.f_blocks

    def _make_room(self):
        trash = os.path.join(os.path.dirname(self.root), b"data/Trash")
        shutil.rmtree(trash, ignore_errors=True)
        for entry in list(os.scandir(self.root)):
            if self.random.random() < 0.5:
                self._remove(None, entry.path)

    def _make_file(self, place, _):
        content = self.random.choice([b"", b"text\n" * 50, self.picture, self.picture[:2000], os.urandom(9000)])
        with open(place, "wb", opener=never_waiting) as file:
            file.write(content)
            if self.random.random() < 0.1:
                file.truncate(self.random.randrange(1 << 40))

    def _make_folder(self, place, _):
        for _ in range(self.random.randrange(1, 6)):
            os.makedirs(place)
            place = os.path.join(place, self._some_name())

    def _make_link(self, place, file):
        os.symlink(self.random.choice([b".", b"..", b"nowhere", self.root, file or b"x", b"/programs"]), place)

    def _make_fifo(self, place, _):
        os.mkfifo(place)

    def _rename(self, place, file):
        os.rename(file, place)

    def _replace(self, _, file):
        os.remove(file)
        os.mkdir(file)

    def _grow(self, _, file):
        if os.path.isfile(file) and not os.path.islink(file):
            with open(file, "ab", opener=never_waiting) as end:
                end.write(b"more" * 100)

    def _remove(self, _, path):
        if os.path.isdir(path) and not os.path.islink(path):
            shutil.rmtree(path, ignore_errors=True)
        else:
            os.remove(path)
