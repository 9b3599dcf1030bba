#!/usr/bin/env python3
"""Runs the window tests, one line for each, and writes their counts: passed, failed, skipped."""

import argparse
import concurrent.futures
import multiprocessing
import os
import sys
import unittest

from session import Session


class OneLineEach(unittest.TestResult):
    def __init__(self):
        super().__init__()
        self.passed = 0

    @staticmethod
    def _say(word, test, details=""):
        # In one piece, since others are saying theirs.
        sys.stdout.write(f"{word:7} {test.id()}\n{details}")
        sys.stdout.flush()

    def addSuccess(self, test):
        super().addSuccess(test)
        self.passed += 1
        self._say("ok", test)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self._say("FAILED", test, self.failures[-1][1])

    def addError(self, test, err):
        super().addError(test, err)
        self._say("FAILED", test, self.errors[-1][1])

    def addSubTest(self, test, subtest, err):
        super().addSubTest(test, subtest, err)
        if err is not None:
            self._say("FAILED", subtest, self._exc_info_to_string(err, test))

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self._say("skipped", test, f"        {reason}\n")

    def counts(self):
        return self.passed, len(self.failures) + len(self.errors), len(self.skipped)


def each_of(suite):
    for test in suite:
        if isinstance(test, unittest.TestSuite):
            yield from each_of(test)
        else:
            yield test


tests = []  # known before the processes that run them are forked


def run_test(number):
    result = OneLineEach()
    unittest.TestSuite([tests[number]]).run(result)
    return result.counts()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--programs", required=True, help="the folder with the program vantrel")
    parser.add_argument("--report", help="file for the counts")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many are at work at once")
    parser.add_argument("tests", nargs="*", help="names of tests; all by default")
    options = parser.parse_args()
    Session.programs = os.path.abspath(options.programs)

    loader = unittest.TestLoader()
    folder = os.path.dirname(os.path.abspath(__file__))
    suite = loader.loadTestsFromNames(options.tests) if options.tests else loader.discover(folder, "*_test.py")
    tests.extend(each_of(suite))
    with concurrent.futures.ProcessPoolExecutor(options.jobs, multiprocessing.get_context("fork")) as pool:
        counts = list(pool.map(run_test, range(len(tests))))
    passed, failed, skipped = (sum(column) for column in zip(*counts))
    if options.report:
        with open(options.report, "w", encoding="ascii") as report:
            report.write(f"{passed} {failed} {skipped}\n")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
