"""What the power is cut under: a file or a tree whose every byte is known."""

import os

SIZES = [100, 6_000, 70_000, 700_000]


def _content(path, size):
    seed = f"{path} {size}\n".encode()
    return (seed * (size // len(seed) + 1))[:size]


class Item:
    """`shape` is "file", "few" or "many": a file by itself, a tree that is flushed file by file, or all at once."""

    def __init__(self, shape, salt):
        self.files, self.links = {}, {}
        if shape == "file":
            self.files[""] = _content(f"{salt}", SIZES[salt % len(SIZES)])
            return
        for number in range(5 if shape == "few" else 45):
            folder = ["", "inner/", "inner/deep/"][number % 3]
            self.files[f"{folder}{number}"] = _content(f"{salt} {number}", SIZES[number % 3 if shape == "many" else number % 4])
        self.links = {"inner/link": "deep/nowhere"} if shape == "many" else {}

    def make(self, path):
        for name, content in self.files.items():
            place = os.path.join(path, name) if name else path
            os.makedirs(os.path.dirname(place), exist_ok=True)
            with open(place, "wb") as file:
                file.write(content)
        for name, target in self.links.items():
            os.symlink(target, os.path.join(path, name))

    def fault(self, path):
        """What is wrong with the item there; nothing when it is whole."""
        if not os.path.lexists(path):
            return "not there"
        found = {}
        if os.path.isfile(path):
            found[""] = path
        for folder, folders, names in os.walk(path):
            for name in names + [name for name in folders if os.path.islink(os.path.join(folder, name))]:
                place = os.path.join(folder, name)
                found[os.path.relpath(place, path)] = place
        if set(found) != set(self.files) | set(self.links):
            return f"{len(found)} of {len(self.files) + len(self.links)} names"
        for name, target in self.links.items():
            if os.readlink(found[name]) != target:
                return f"{name} points elsewhere"
        for name, content in self.files.items():
            with open(found[name], "rb") as file:
                got = file.read()
            if got != content:
                zeros = ", all zeros" if got and not got.strip(b"\0") else ""
                return f"{name or 'the file'} has {len(got)} bytes of {len(content)}{zeros}"
        return ""

    def whole(self, path):
        return not self.fault(path)
