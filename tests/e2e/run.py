#!/usr/bin/env python3
"""Runs the window tests, one line for each, and writes their counts: passed, failed, skipped."""

import argparse
import os
import sys
import unittest

from session import Session


class OneLineEach(unittest.TestResult):
    def __init__(self):
        super().__init__()
        self.passed = 0

    @staticmethod
    def _say(word, test):
        print(f"{word:7} {test.id()}", flush=True)

    def addSuccess(self, test):
        super().addSuccess(test)
        self.passed += 1
        self._say("ok", test)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self._say("FAILED", test)
        print(self.failures[-1][1], flush=True)

    def addError(self, test, err):
        super().addError(test, err)
        self._say("FAILED", test)
        print(self.errors[-1][1], flush=True)

    def addSubTest(self, test, subtest, err):
        super().addSubTest(test, subtest, err)
        if err is not None:
            self._say("FAILED", subtest)
            print(self._exc_info_to_string(err, test), flush=True)

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self._say("skipped", test)
        print(f"        {reason}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--programs", required=True, help="the folder with the program vantrel")
    parser.add_argument("--report", help="file for the counts")
    parser.add_argument("tests", nargs="*", help="names of tests; all by default")
    options = parser.parse_args()
    Session.programs = os.path.abspath(options.programs)

    loader = unittest.TestLoader()
    folder = os.path.dirname(os.path.abspath(__file__))
    suite = loader.loadTestsFromNames(options.tests) if options.tests else loader.discover(folder, "*_test.py")
    result = OneLineEach()
    suite.run(result)
    failed = len(result.failures) + len(result.errors)
    if options.report:
        with open(options.report, "w", encoding="ascii") as report:
            report.write(f"{result.passed} {failed} {len(result.skipped)}\n")
    return 1 if failed or not result.passed else 0


if __name__ == "__main__":
    sys.exit(main())
