"""The trees that are measured, made by fixed names and sizes so that two machines measure the same thing; what they
hold, counted plainly; and what measuring takes."""

import os
import shutil
import subprocess
import sys
import time

DROP_CACHES = "/proc/sys/vm/drop_caches"
BLOCK = 512  # unit of st_blocks, stat(2)
PATH_MAX = 4096  # <linux/limits.h>, with the zero byte
FLAT_FOLDER = 4096  # gdu's size of every folder


def make_files(folder, count, first=0):
    """`count` files; every eighth has content, so that totals are not all zero."""
    os.makedirs(folder, exist_ok=True)
    descriptor = os.open(folder, os.O_RDONLY | os.O_DIRECTORY)
    for number in range(first, first + count):
        file = os.open(f"file{number:06}", os.O_WRONLY | os.O_CREAT, 0o644, dir_fd=descriptor)
        if number % 8 == 0:
            os.write(file, b"x" * (number % 5000 + 1))
        os.close(file)
    os.close(descriptor)


def make_wide(root, scale):
    for number in range(2000 // scale):
        make_files(f"{root}/folder{number:04}", 100)


def make_lopsided(root, scale, entries=500_000):
    entries //= scale
    for number in range(200):
        make_files(f"{root}/small{number:03}", entries // 10 // 200)
    # Nine tenths in one: folders of 100 files, ten beside each other on every second level.
    for number in range(entries * 9 // 10 // 100):
        make_files(f"{root}/large/{number // 100:02}/{number // 10 % 10}/folder{number % 10}", 100)


def make_huge(root, scale):
    make_lopsided(root, scale, 5_000_000)


def make_chain(root, scale):
    os.makedirs(root)
    folder = os.open(root, os.O_RDONLY | os.O_DIRECTORY)
    for _ in range(3000 // scale):
        for number in range(3):
            os.close(os.open(f"file{number}", os.O_WRONLY | os.O_CREAT, 0o644, dir_fd=folder))
        os.mkdir("deeper", dir_fd=folder)
        inner = os.open("deeper", os.O_RDONLY | os.O_DIRECTORY, dir_fd=folder)
        os.close(folder)
        folder = inner
    os.close(folder)


def make_comb(root, scale):
    os.makedirs(root)
    folder = os.open(root, os.O_RDONLY | os.O_DIRECTORY)
    for _ in range(1500 // scale):
        for name in ("tooth", "other", "deeper"):
            os.mkdir(name, dir_fd=folder)
            inner = os.open(name, os.O_RDONLY | os.O_DIRECTORY, dir_fd=folder)
            for number in range(3):
                file = os.open(f"file{number}", os.O_WRONLY | os.O_CREAT, 0o644, dir_fd=inner)
                os.write(file, b"x")  # so that there is a largest folder
                os.close(file)
            if name == "deeper":
                os.close(folder)
                folder = inner
            else:
                os.close(inner)
    os.close(folder)


def make_rows(root, scale):
    for _ in range(5):
        make_files(root, 99)
        for number in range(400):
            make_files(f"{root}/folder{number:03}", 100 // scale)
        root += "/large"


def make_usr(root, scale):
    source = "/usr" if scale == 1 else "/usr/share"
    subprocess.run(["cp", "-a", "--one-file-system", source, root], check=False, stderr=subprocess.DEVNULL)


TREES = {"wide": make_wide, "lopsided": make_lopsided, "usr": make_usr, "chain": make_chain,
         "huge": make_huge, "comb": make_comb, "rows": make_rows}
DESCRIPTIONS = {
    "wide": "2,000 folders of 100 files",
    "lopsided": "nine tenths of 500,000 files in one of 201 sub-folders",
    "usr": "a copy of /usr",
    "chain": "3,000 folders, each in the one before, with 3 files",
    "comb": "1,500 levels of 3 folders with 3 files each",
    "rows": "5 levels, each with 500 rows, of which 400 are folders of 100 files",
    "huge": "lopsided with 5,000,000 files, to look at memory",
}


def prepare(trees, names, scale):
    for name in names:
        path = f"{trees}/{name}"
        if os.path.exists(path + ".done"):
            continue
        print(f"making {name}: {DESCRIPTIONS[name]} ...", file=sys.stderr)
        shutil.rmtree(path, ignore_errors=True)
        TREES[name](path, scale)
        open(path + ".done", "w").close()
    os.sync()


class Census:
    """Allocated bytes of a tree by what they belong to."""

    def __init__(self, root):
        self.entries = self.files_each = self.files_once = self.links = self.hard_linked = 0
        self.folders = os.lstat(root).st_blocks * BLOCK
        self.by_path = FLAT_FOLDER  # what a tool sees that goes by paths and takes each folder for one block
        self.seen = set()
        # By descriptor, because the chain is deeper than PATH_MAX.
        self.pending = [(os.open(root, os.O_RDONLY | os.O_DIRECTORY), len(os.path.abspath(root)))]
        while self.pending:
            folder, length = self.pending.pop()
            with os.scandir(folder) as entries:
                for entry in entries:
                    self.count(entry, folder, length)
            os.close(folder)

    def count(self, entry, folder, length):
        status = entry.stat(follow_symlinks=False)
        size = status.st_blocks * BLOCK
        own_length = length + 1 + len(os.fsencode(entry.name))
        self.entries += 1
        if entry.is_dir(follow_symlinks=False):
            self.folders += size
            self.by_path += FLAT_FOLDER if length < PATH_MAX else 0
            self.pending.append((os.open(entry.name, os.O_RDONLY | os.O_DIRECTORY, dir_fd=folder), own_length))
            return
        if entry.is_symlink():
            self.links += size
        else:
            self.files_each += size
            if status.st_nlink > 1:
                if (status.st_dev, status.st_ino) in self.seen:
                    self.hard_linked += 1
                    return
                self.seen.add((status.st_dev, status.st_ino))
            self.files_once += size
        self.by_path += size if own_length < PATH_MAX else 0


def measure(command):
    """Wall seconds and processor seconds."""
    with open(os.devnull, "r+b") as null:
        begin = time.perf_counter()
        process = subprocess.Popen(command, stdin=null, stdout=null, stderr=null)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.perf_counter() - begin
        process.returncode = status
    return wall, usage.ru_utime + usage.ru_stime


def drop_caches():
    os.sync()
    with open(DROP_CACHES, "w", encoding="ascii") as control:
        control.write("3")


def machine():
    model = "unknown processor"
    with open("/proc/cpuinfo", encoding="utf-8") as info:
        for line in info:
            if line.startswith("model name"):
                model = line.split(":", 1)[1].strip()
                break
    return f"{os.cpu_count()} x {model}, Linux {os.uname().release}, load {os.getloadavg()[0]:.1f}"
