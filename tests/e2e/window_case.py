"""The base of every window test."""

import unittest

from panels import left_and_right
from session import Session


class WindowCase(unittest.TestCase):
    def setUp(self):
        self.session = Session()
        self.addCleanup(self.session.close)

    def open_window(self, *arguments, **options):
        self.session.open_window(*arguments, **options)
        self.left, self.right = left_and_right(self.session)

    def quit_and_expect_silence(self):
        self.session.keys("F10")
        self.expect_end((0, "", ""))

    def expect_end(self, expected):
        self.assertEqual(self.session.end(), expected)
