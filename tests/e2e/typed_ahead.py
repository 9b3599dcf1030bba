#!/usr/bin/env python3
"""Every key in every state of the window, typed slowly and typed ahead: both must end in the same picture, the same
files and the same windows. For ./test --long; writes its counts as run.py does."""

import argparse
import concurrent.futures
import hashlib
import itertools
import multiprocessing
import os
import shutil
import sys

from panels import BARS_BELOW
from session import Session, settled, until

STATES = {
    "panel": (),
    "help": ("F1",),
    "viewer": ("End", "F3"),
    "copy": ("F5",),
    "move": ("F6",),
    "mkdir": ("F7",),
    "mkdir, Cancel highlighted": ("F7", "Tab"),
    "delete": ("F8",),
    "sort": ("F9",),
    "preview": ("space",),
    "preview over the other panel": ("Tab", "space"),
    "menu": ("alt+f",),
    "menu item": ("alt+c", "Down"),
    "message": ("alt+v", "Down", "Return"),
    "just answered": ("F7", "w", "Return"),
    "just cancelled": ("F8", "Escape"),
    "inside": ("Return",),
}

# None that would start other programs.
KEYS = (
    ["F1", "F2", "F3", "F5", "F6", "F7", "F8", "F9", "F10", "Tab", "shift+Tab", "Escape", "Return", "KP_Enter"]
    + ["space", "BackSpace", "Up", "Down", "Left", "Right", "Home", "End", "Prior", "Next", "Delete"]
    + ["b", "f", "shift+f", "2", "3", "ctrl+q", "ctrl+r", "ctrl+2", "ctrl+space", "ctrl+Tab", "ctrl+period", "ctrl+a"]
    + ["alt+f", "alt+x"]
)

# Typed after the key, to show who has the keyboard then.
AFTERWARDS = ("x", "Return")


class Run:
    def __init__(self, session, number):
        self.session = session
        self.folder = session.path(f"run{number}")
        for name in ("left/a1/b1/c1", "left/a2", "left/xa", "right/r1"):
            os.makedirs(os.path.join(self.folder, name))
        with open(os.path.join(self.folder, "left/text.txt"), "w", encoding="ascii") as file:
            file.write("text\n")
        for folder, _, names in os.walk(self.folder):
            for name in [".", *names]:
                os.utime(os.path.join(folder, name), (0, 0))
        shutil.rmtree(os.path.join(session.environment["XDG_DATA_HOME"], "Trash"), ignore_errors=True)
        # The same path each time, since it is on the picture.
        link = session.path("now")
        if os.path.lexists(link):
            os.unlink(link)
        os.symlink(self.folder, link)
        session.open_window(os.path.join(link, "left"), os.path.join(link, "right"))

    def windows(self):
        found = self.session.xdotool("search", "--onlyvisible", "--name", ".", check=False).split()
        return sorted(self.session.xdotool("getwindowname", window, check=False) for window in found)

    def picture(self):
        """All but the status lines: how much of the disk is free changes by itself."""
        session = self.session
        height = session.height - BARS_BELOW - 30
        return hashlib.sha1(session.screen.area(session.x, session.y, session.width, height)).hexdigest()

    def settle(self):
        """The program's picture and windows once nothing changes any more, or how it ended."""
        settled(lambda: self.session.program.poll() is not None or self.picture())
        if self.session.program.poll() is not None:
            return "ended", self.session.program.poll()
        return self.picture(), self.windows()

    def files(self):
        trash = os.path.join(self.session.environment["XDG_DATA_HOME"], "Trash/files")
        trashed = sorted(os.listdir(trash)) if os.path.isdir(trash) else []
        left = sorted(os.path.join(folder, name) for folder, _, names in os.walk(self.folder) for name in names)
        folders = sorted(folder for folder, _, _ in os.walk(self.folder))
        return [name.removeprefix(self.folder) for name in left + folders] + trashed

    def end(self):
        result = self.settle(), self.files()
        if self.session.program.poll() is None:
            self.session.program.kill()
        self.session.program.wait()
        return result

    def slowly(self, keys):
        for key in keys:
            if self.session.program.poll() is None:
                self.session.keys(key)
                self.settle()
        return self.end()

    def ahead(self, keys):
        with self.session.stopped():
            self.session.keys(*keys)
        until(lambda: self.session.state_of_program() != "R", "the program has nothing to do")
        return self.end()


def compare(session, keys, numbers):
    """Only a difference every time counts, since a picture may have been taken at the wrong moment."""
    for _ in range(3):
        slow = Run(session, next(numbers)).slowly(keys)
        ahead = Run(session, next(numbers)).ahead(keys)
        if slow == ahead:
            return True, slow, ahead
    return False, slow, ahead


def judge_state(state):
    """All keys in one state, in a session of its own: how many passed, and how many failed."""
    session = Session()
    numbers = itertools.count()
    failed = 0
    try:
        for key in KEYS:
            keys = (*STATES[state], key, *AFTERWARDS)
            same, slow, ahead = compare(session, keys, numbers)
            if not same:
                failed += 1
                print(f"FAILED  {state}, {key}: {keys}\n        slowly {slow}\n        ahead  {ahead}", flush=True)
    finally:
        session.close()
    passed = len(KEYS) - failed
    print(f"        {state}: {passed} passed, {failed} failed", flush=True)
    return passed, failed


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--programs", required=True, help="the folder with the program vantrel")
    parser.add_argument("--report", help="file for the counts")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many states are gone through at once")
    parser.add_argument("--states", nargs="*", default=list(STATES), help="names of states; all by default")
    options = parser.parse_args()
    Session.programs = os.path.abspath(options.programs)
    with concurrent.futures.ProcessPoolExecutor(options.jobs, multiprocessing.get_context("fork")) as pool:
        counts = list(pool.map(judge_state, options.states))
    passed, failed = (sum(column) for column in zip(*counts))
    if options.report:
        with open(options.report, "w", encoding="ascii") as report:
            report.write(f"{passed} {failed} 0\n")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
