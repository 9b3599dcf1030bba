#!/usr/bin/env python3
"""Works in the real window at random for minutes, over a tree that never rests. At the end the program must
have as much memory and as many descriptors as after it had warmed up, count nothing any more, end with 0, and
have nothing to say. Meant for a program built with the address sanitizer."""

import argparse
import collections
import json
import os
import random
import shutil
import statistics
import subprocess
import sys
import time

from changing_tree import ChangingTree
from session import Session, until

HERE = os.path.dirname(os.path.abspath(__file__))
PICTURE = os.path.join(HERE, "../../docs/screenshot.png")
SANITIZERS = os.path.join(HERE, "../sanitizers")

ZONE_BYTES = 64 << 20
EVENTS_AT_ONCE = 15
SECONDS_BETWEEN_LOOKS = 5
WARM_UP = 0.25  # of the whole time
MOST_GROWTH = 1.15  # of the memory
MOST_NEW_DESCRIPTORS = 4
# Each thread of the walks keeps a descriptor of the working folder, from the first large folder it is given on.
WALK_THREADS = min(max(2 * os.cpu_count(), 8), 32)
FUNCTION_BAR = 26

# Left out: F10 and Control-Q, which end the program, and what belongs to the window manager.
KEYS = (
    ["Return"] * 8 + ["Down"] * 6 + ["Up", "Home", "End", "Next", "Prior", "Tab", "Tab", "BackSpace", "BackSpace"]
    + ["Escape"] * 5 + ["space"] * 2 + [f"F{number}" for number in range(1, 10)] + ["F5", "F6", "F7", "F8"]
    + ["ctrl+o", "ctrl+t", "ctrl+r", "ctrl+period", "ctrl+Tab", "ctrl+a", "ctrl+v", "ctrl+z"]
    + [f"ctrl+{number}" for number in range(1, 5)] + ["Left", "Right", "shift+Left", "Delete", "KP_Enter", "Insert"]
    + list("abcnxyz0189") + ["period", "slash", "adiaeresis", "minus"]
)
PICTURE_COMPLAINT = "libpng error: "
SIZES = [(1100, 720), (800, 500), (1280, 800), (900, 640)]


class Soak:
    def __init__(self, options):
        self.options = options
        self.random = random.Random(options.seed)
        self.session = Session()
        self.events = 0
        self.looks = []  # (seconds, kilobytes, where the descriptors lead)

    # The program has a small world of its own, where it can do no harm: programs and libraries to read, and
    # one file system of limited size to write to.
    def _sandbox(self, info):
        zone = ["--size", str(ZONE_BYTES), "--tmpfs", "/zone"]
        for folder in ("tree", "home", "data", "config", "cache", "runtime", "bin"):
            zone += ["--perms", "0700", "--dir", f"/zone/{folder}"]
        links = []
        for name in ("bin", "lib", "lib64"):
            if os.path.islink("/" + name):
                links += ["--symlink", os.readlink("/" + name), "/" + name]
        return (
            [shutil.which("bwrap"), "--unshare-pid", "--die-with-parent", "--info-fd", str(info)]
            + ["--ro-bind", "/usr", "/usr", "--ro-bind", "/etc", "/etc", *links, "--proc", "/proc", "--dev", "/dev"]
            + ["--ro-bind", "/tmp/.X11-unix", "/tmp/.X11-unix", "--ro-bind", Session.programs, "/programs"]
            + ["--ro-bind", SANITIZERS, "/sanitizers"]
            + [*zone, "--remount-ro", "/", "--chdir", "/zone/tree"]
        )

    def _environment(self):
        environment = {
            f"XDG_{name.upper()}_HOME": f"/zone/{name}" for name in ("data", "config", "cache")
        }
        return {
            **environment,
            "HOME": "/zone/home",
            "XDG_RUNTIME_DIR": "/zone/runtime",
            "XDG_DATA_DIRS": "/zone/nothing",
            "PATH": "/zone/bin",
            # Freed memory is held back for a while, which must not look like growth of the program.
            "ASAN_OPTIONS": "quarantine_size_mb=16:thread_local_quarantine_size_kb=64",
            "LSAN_OPTIONS": "suppressions=/sanitizers/lsan.txt:print_suppressions=0",
        }

    def open(self):
        self.session.open_display()
        read, write = os.pipe()
        os.set_inheritable(write, True)
        command = [*self._sandbox(write), "/programs/vantrel", "/zone/tree", "/zone"]
        self.session.start_command(command, extra_environment=self._environment(), pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as information:
            keeper = json.load(information)["child-pid"]
        self.pid = until(lambda: self._child_of(keeper), "the program starts")
        self.session.wait_for_window()
        self.zone = f"/proc/{self.pid}/root/zone"
        self._install("xterm", "xdg-open")
        self.tree = ChangingTree(f"{self.zone}/tree", self.options.seed, PICTURE)
        self.tree.start()

    @staticmethod
    def _child_of(parent):
        with open(f"/proc/{parent}/task/{parent}/children", encoding="ascii") as file:
            children = file.read().split()
        return int(children[0]) if children else None

    def _install(self, *names):
        for name in names:
            with open(f"{self.zone}/bin/{name}", "w", encoding="ascii") as file:
                file.write("#!/bin/sh\nexit 0\n")
            os.chmod(f"{self.zone}/bin/{name}", 0o755)

    # What a person does.

    def work(self):
        window = self.session.window
        if self.random.random() < 0.02:
            width, height = self.random.choice(SIZES)
            self.session.xdotool("windowsize", "--sync", window, str(width), str(height), check=False)
        x, y, width, height = self._content()
        arguments = []
        for _ in range(EVENTS_AT_ONCE):
            kind = self.random.random()
            if kind < 0.7:
                arguments += ["key", "--clearmodifiers", self.random.choice(KEYS)]
                continue
            column, row = self.random.randrange(width), self.random.randrange(height)
            if row > height - FUNCTION_BAR and column > width * 0.85:
                continue  # the cell that ends the program
            count, button = ("2", "1") if kind < 0.8 else ("1", self.random.choice("1112345"))
            arguments += ["mousemove", str(x + column), str(y + row)]
            arguments += ["click", "--repeat", count, "--delay", "20", button]
        self.session.xdotool(*arguments, check=False)
        self.events += EVENTS_AT_ONCE

    def _content(self):
        """Where the content is now: below the menu bar, as high as it was at the start."""
        x, y, width, height = self.session.geometry(self.session.window)
        top = self.session.menu_bar_height
        return x, y + top, width, height - top

    def calm_down(self):
        """No dialog, no preview."""
        self.session.xdotool("windowfocus", "--sync", self.session.window, check=False)
        for _ in range(3):
            self.session.keys("Escape")

    # What the program takes.

    def look(self, start):
        with open(f"/proc/{self.pid}/status", encoding="ascii") as file:
            (line,) = [line for line in file if line.startswith("VmRSS:")]
        self.looks.append((time.monotonic() - start, int(line.split()[1]), self._descriptors()))

    def _descriptors(self):
        """What each open descriptor leads to, except for those that the walks keep."""
        folder, found, kept = f"/proc/{self.pid}/fd", [], 0
        home = os.readlink(f"/proc/{self.pid}/cwd")
        for number in os.listdir(folder):
            try:
                target = os.readlink(f"{folder}/{number}")
            except OSError:
                continue  # closed meanwhile
            if target == home and kept < WALK_THREADS:
                kept += 1
            else:
                found.append(target)
        return found

    def _is_idle(self):
        for task in os.listdir(f"/proc/{self.pid}/task"):
            with open(f"/proc/{self.pid}/task/{task}/stat", "rb") as file:
                if file.read().rsplit(b")", 1)[1].split()[0] != b"S":
                    return False
        return True

    def expect_rest(self):
        """Nothing counts any more once both panels show folders that have their totals."""
        self.tree.stop()
        self.calm_down()
        for _ in range(2):
            # Up to the root, then into the zone, whose name alone begins with this letter.
            self.session.keys(*["BackSpace"] * 30, "Tab")
        self.session.keys("z", "Return", "Tab", "z", "Return")
        quiet = []

        def rests():
            quiet.append(self._is_idle())
            return len(quiet) >= 50 and all(quiet[-50:])

        until(rests, "the program comes to rest")

    def run(self):
        self.open()
        start = time.monotonic()
        seconds = self.options.minutes * 60
        next_look = SECONDS_BETWEEN_LOOKS
        while time.monotonic() - start < seconds:
            try:
                self.work()
            except AssertionError as lost:
                raise AssertionError(f"ended early after {self.events} events: {self.session.end()}") from lost
            if time.monotonic() - start >= next_look:
                self.calm_down()
                self.look(start)
                next_look = time.monotonic() - start + SECONDS_BETWEEN_LOOKS
        self.expect_rest()
        self.look(start)
        self.session.keys("F10")
        return self.session.end()

    @staticmethod
    def _kinds(descriptors):
        return collections.Counter(target.split("[")[0] for target in descriptors)

    def judge(self, status, output, errors):
        """Prints the figures and returns what is wrong with them, if anything."""
        warm = [look for look in self.looks if look[0] >= WARM_UP * self.options.minutes * 60]
        third = max(1, len(warm) // 3)
        early = statistics.median(memory for _, memory, _ in warm[:third])
        late = statistics.median(memory for _, memory, _ in warm[-third:])
        few = min((self._kinds(descriptors) for _, _, descriptors in warm[:third]), key=collections.Counter.total)
        last = self._kinds(self.looks[-1][2])
        print(f"{self.events} events and {self.tree.changes} changes of the tree in {self.options.minutes} minutes")
        print(f"memory {early / 1024:.1f} MB after warming up, {late / 1024:.1f} MB in the last third")
        print(f"descriptors {few.total()} after warming up, {last.total()} at the end, besides the walks' own")
        for target, count in (last - few).items():
            print(f"    {count} more: {target}")
        print(f"exit status {status}, {len(output.splitlines())} lines of output")
        complaints = []
        if late > early * MOST_GROWTH:
            complaints.append("memory grows")
        if last.total() > few.total() + MOST_NEW_DESCRIPTORS:
            complaints.append("descriptors are leaked")
        # The picture library rightly complains about one of the broken pictures here.
        errors = "".join(line for line in errors.splitlines(True) if not line.startswith(PICTURE_COMPLAINT))
        if status != 0 or errors:
            complaints.append(f"standard error: {errors}")
        # The one name with a line break in it would make two lines of one.
        lines = output.replace("line\nbreak", "line break").splitlines()
        if any(not line.startswith("Error ") for line in lines):
            complaints.append(f"standard output: {output}")
        return complaints


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--programs", required=True, help="the folder with the program vantrel")
    parser.add_argument("--minutes", type=float, default=10)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    Session.programs = os.path.abspath(options.programs)
    if shutil.which("bwrap") is None or subprocess.run(["bwrap", "--ro-bind", "/", "/", "true"], check=False).returncode:
        print("skipped: this machine gives no sandbox to work at random in", flush=True)
        return 77
    soak = Soak(options)
    try:
        complaints = soak.judge(*soak.run())
    finally:
        soak.session.close()
    for complaint in complaints:
        print("FAILED", complaint)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
