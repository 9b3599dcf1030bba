"""Stands in for an application: notes how it was started, makes some noise, and may stay for a while."""

import json
import os
import sys
import time


def main():
    name = os.path.basename(sys.argv[0])
    descriptors = {}
    for number in os.listdir("/proc/self/fd"):
        try:
            descriptors[number] = os.readlink(f"/proc/self/fd/{number}")
        except OSError:
            pass  # the descriptor of the listing itself
    note = {
        "program": name,
        "arguments": [os.fsencode(argument).hex() for argument in sys.argv[1:]],
        "folder": os.getcwdb().hex(),
        "pid": os.getpid(),
        "parent": os.getppid(),
        "session": os.getsid(0),
        "descriptors": descriptors,
    }
    folder = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(sys.argv[0]))), "notes")
    unfinished = os.path.join(folder, f".{os.getpid()}")
    with open(unfinished, "w", encoding="ascii") as file:
        json.dump(note, file)
    os.rename(unfinished, os.path.join(folder, f"{time.monotonic_ns():020}-{name}"))
    print("noise on standard output", flush=True)
    print("noise on standard error", file=sys.stderr, flush=True)
    if os.path.exists(os.path.join(folder, "..", "stay")):
        time.sleep(600)


main()
