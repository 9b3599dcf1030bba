#!/usr/bin/env python3
"""Cuts the power under the operations on files, again and again, and looks at what is left.

Needs root, loop devices and the tools of the file systems. For each file system and operation one disk of two
regions is at work; a cut is a clone of its image in one moment while the operation runs or up to 36 seconds
later, mounted and compared with what had been said by then. Programs known to be wrong come first and must be
found out.
"""

import argparse
import concurrent.futures
import os
import random
import select
import subprocess
import sys
import time

from disks import KINDS, Disk, Store, run
from items import Item
from operations import OPERATIONS, WRONG

LATE = [1, 3, 5.6, 8, 10.5, 36]  # seconds after success; what each file system writes by itself falls between
LIMIT = 60  # seconds; only a hanging program takes as long


class Judge:
    """All rounds of one operation on one file system."""

    def __init__(self, store, kind, operation, options):
        self.kind, self.operation, self.options = kind, operation, options
        self.random = random.Random(f"{options.seed} {kind} {operation.name}")
        self.disk = Disk(store, f"{kind}-{operation.name.replace(', ', '-').replace(' ', '-')}", kind)
        self.cuts, self.during, self.said, self.faults = 0, 0, 0, []
        self.usual = 0.02  # seconds that the operation takes

    def _prepare(self, number):
        item = Item(self.random.choice(["file", "few", "many"]), number)
        work = self.operation(self.options.operate, self.disk.a, self.disk.b, number)
        for folder in work.folders():
            os.makedirs(folder)
        item.make(work.source)
        run("sync", "--file-system", self.disk.a, self.disk.b)
        return item, work

    def _begin(self, work):
        return subprocess.Popen(work.command(), stdout=subprocess.PIPE, stderr=subprocess.STDOUT)

    @staticmethod
    def _has_said(process):
        return bool(select.select([process.stdout], [], [], 0)[0])

    def _finish(self, process):
        said = process.stdout.read().decode().strip()
        process.stdout.close()
        if process.wait(LIMIT) != 0 or said != "done":
            raise AssertionError(f"{self.kind}, {self.operation.name}: {said}")

    def _look(self, image, number, item, said, when):
        self.cuts += 1
        self.said += said
        try:
            with self.disk.after(image) as mounted:
                a, b = mounted.places
                work = self.operation(self.options.operate, a, b, number)
                work.recorded = f"{self.disk.a}/{number}/item"
                fault = work.fault(item, said)
                if not fault and self.cuts % 4 == 0 and self.operation in OPERATIONS:
                    fault = self._work_again(work, item)
        except RuntimeError as error:
            fault = str(error)
        if fault:
            self.faults.append(f"round {number}, {when}: {fault}")
        os.remove(image)

    def _work_again(self, work, item):
        """The next operation in these folders clears away what the cut has left, and nothing else."""
        for folder in work.folders():
            if os.path.isdir(folder):
                run(self.options.operate, "mkdir", f"{folder}/next")
                hidden = [name for name in os.listdir(folder) if name.startswith(".vantrel-")]
                if hidden:
                    return f"left behind: {hidden}"
        return work.fault(item, False)

    def cut_once(self, number):
        """At a random moment of the operation, or within half a second of its success."""
        item, work = self._prepare(number)
        process = self._begin(work)
        start = time.monotonic()
        if self.operation in WRONG or self.random.random() < 0.4:
            select.select([process.stdout], [], [], LIMIT)
            self.usual = 0.8 * self.usual + 0.2 * (time.monotonic() - start)
            time.sleep(self.random.choice([0, 0, 0.5 * self.random.random()]))
        else:
            time.sleep(self.random.random() * 1.2 * self.usual)
        said = self._has_said(process)
        image = self.disk.cut(number)
        self.during += not said
        self._finish(process)
        self._look(image, number, item, said, "at once" if said else "during")

    def cut_late(self, number):
        """Several times after the success, with nothing in between that would bring anything to the disk."""
        item, work = self._prepare(number)
        self._finish(self._begin(work))
        done = time.monotonic()
        images = []
        for seconds in LATE:
            if seconds > self.options.latest:
                break
            time.sleep(max(0, done + seconds - time.monotonic()))
            images.append((seconds, self.disk.cut(f"{number}-{seconds}")))
        for seconds, image in images:
            self._look(image, number, item, True, f"{seconds} s after success")

    def judge(self, rounds):
        try:
            number = 0
            late = rounds // 40
            while number < late:
                self.cut_late(number)
                number += 1
            while self.cuts < rounds:
                self.cut_once(number)
                number += 1
        finally:
            self.disk.close()
        return self


def why_not():
    if os.geteuid() != 0:
        return "only root may mount"
    if not os.path.exists("/dev/loop-control"):
        return "there are no loop devices"
    return ""


def judge_all(store, operations, rounds, options):
    pairs = [(kind, operation) for kind in options.kinds for operation in operations]
    with concurrent.futures.ThreadPoolExecutor(len(pairs)) as pool:
        judges = [Judge(store, kind, operation, options) for kind, operation in pairs]
        return list(pool.map(lambda judge: judge.judge(rounds), judges))


def report(judge, is_right):
    word = "ok" if is_right else "FAILED"
    print(
        f"{word:7} {judge.kind}, {judge.operation.name}: {judge.cuts} cuts ({judge.during} during the operation, "
        f"{judge.said} after success), {len(judge.faults)} bad",
        flush=True,
    )
    if not is_right:
        print("        " + "\n        ".join(judge.faults[:10]), flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--programs", required=True, help="the folder with the program operate")
    parser.add_argument("--rounds", type=int, default=200, help="cuts for each operation on each file system")
    parser.add_argument("--latest", type=float, default=36, help="the longest wait after success, in seconds")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--kinds", nargs="*", default=list(KINDS))
    parser.add_argument("--report", help="file for the counts")
    options = parser.parse_args()
    options.operate = os.path.join(os.path.abspath(options.programs), "operate")
    passed = failed = 0
    reason = why_not()
    if reason:
        print(f"skipped: {reason}", flush=True)
    else:
        store = Store()
        try:
            for operations, rounds, is_right in ((WRONG, 12, False), (OPERATIONS, options.rounds, True)):
                for judge in judge_all(store, operations, rounds, options):
                    good = bool(judge.faults) != is_right
                    report(judge, good)
                    passed, failed = passed + good, failed + (not good)
        finally:
            store.close()
    if options.report:
        with open(options.report, "w", encoding="ascii") as file:
            file.write(f"{passed} {failed} {1 if reason else 0}\n")
    return 77 if reason else 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
