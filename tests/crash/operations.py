"""The operations, what must be true after a cut, and programs that do it wrongly."""

import os
import sys
import urllib.parse

# Content that is not flushed before its name is: what a copy by write, rename and fsync of the folder leaves.
NAME_FIRST = """
import os, shutil, sys
shutil.copytree(sys.argv[1], sys.argv[2] + ".new", symlinks=True) if os.path.isdir(sys.argv[1]) else \
    shutil.copyfile(sys.argv[1], sys.argv[2] + ".new")
os.rename(sys.argv[2] + ".new", sys.argv[2])
folder = os.open(os.path.dirname(sys.argv[2]), os.O_RDONLY)
os.fsync(folder)
print("done")
"""


class Copy:
    """Within one file system or to another."""

    name = "copy"

    def __init__(self, program, a, b, number):
        self.program = program
        self.source = f"{a}/{number}/item"
        self.target = f"{b if number % 2 else a}/{number}-copy/item"

    def folders(self):
        return [os.path.dirname(self.source), os.path.dirname(self.target)]

    def command(self):
        return [self.program, "copy", self.source, self.target]

    def fault(self, item, said):
        """What is wrong after the cut, where `said` is whether it had been reported as done by then."""
        if not item.whole(self.source):
            return f"the original: {item.fault(self.source)}"
        if (said or os.path.lexists(self.target)) and not item.whole(self.target):
            return f"the copy: {item.fault(self.target)}"
        return ""


class Move(Copy):
    """To another file system."""

    name = "move"

    def __init__(self, program, a, b, number):
        super().__init__(program, a, b, number)
        self.target = f"{b}/{number}-moved/item"

    def command(self):
        return [self.program, "move", self.source, self.target]

    def fault(self, item, said):
        if said and not item.whole(self.target):
            return f"the target, after success: {item.fault(self.target)}"
        if said and os.path.lexists(self.source):
            return "the original is there after success"
        if not item.whole(self.source) and not item.whole(self.target):
            return f"neither whole: {item.fault(self.source)}; {item.fault(self.target)}"
        if os.path.lexists(self.target) and not item.whole(self.target):
            return f"the target: {item.fault(self.target)}"
        return ""


class Rename(Move):
    """To another folder of the same file system."""

    name = "rename"

    def __init__(self, program, a, b, number):
        super().__init__(program, a, b, number)
        self.target = f"{a}/{number}-renamed/item"

    # Cut between the flushes of the two folders, btrfs has a file under both of its names: like any move, whole.


class Trash(Copy):
    name = "trash"

    def __init__(self, program, a, b, number):
        super().__init__(program, a, b, number)
        self.data = f"{a}/{number}-data"
        # What the info file says is where the item lay when it was alive, wherever the cut disk is looked at.
        self.recorded = self.source

    def folders(self):
        return [os.path.dirname(self.source), self.data]

    def command(self):
        return ["env", f"XDG_DATA_HOME={self.data}", self.program, "trash", self.source]

    def fault(self, item, said):
        trashed, info = f"{self.data}/Trash/files/item", f"{self.data}/Trash/info/item.trashinfo"
        if said and not item.whole(trashed):
            return f"in the trash, after success: {item.fault(trashed)}"
        if said and os.path.lexists(self.source):
            return "the original is there after success"
        if not item.whole(self.source) and not item.whole(trashed):
            return f"neither whole: {item.fault(self.source)}; {item.fault(trashed)}"
        if os.path.lexists(trashed):
            if not os.path.exists(info):
                return "no way back"
            with open(info, encoding="utf-8") as file:
                if f"\nPath={urllib.parse.quote(self.recorded)}\n" not in file.read():
                    return f"{os.path.getsize(info)} bytes tell no way back"
        return ""


class Unflushed(Copy):
    """By cp, which flushes nothing: done is said before anything is on the disk."""

    name = "cp, wrong"

    def command(self):
        return ["sh", "-c", 'cp -a "$1" "$2" && echo done', "sh", self.source, self.target]


class NameFirst(Copy):
    """By a program that has the name on the disk before the content."""

    name = "name first, wrong"

    def command(self):
        return [sys.executable, "-IS", "-c", NAME_FIRST, self.source, self.target]


OPERATIONS = [Copy, Move, Rename, Trash]
WRONG = [Unflushed, NameFirst]
