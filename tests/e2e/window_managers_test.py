"""The window under a tiling window manager, without any, and at other scales, on X11."""

import itertools
import shutil
import unittest

from panels import ACTIVE, BLUE, INACTIVE, left_and_right
from session import until
from window_case import WindowCase

CELL = (0, 171, 171)


class WindowManagers(WindowCase):
    def has_its_bars(self):
        """Whether the last function-key cell stands where it belongs in the window as it is now."""
        if not self.session.is_painted():
            return False
        x = self.session.x + self.session.width - 14
        y = self.session.y + self.session.height - 4
        return self.session.screen.pixel(x, y) == CELL

    def open_in(self, manager):
        self.session.open_display(manager)
        self.session.start(self.session.make_tree("left", 6), self.session.make_tree("right", 4))
        self.session.wait_for_window()
        until(self.has_its_bars, "the window is laid out")
        self.left, self.right = left_and_right(self.session)

    @unittest.skipIf(shutil.which("i3") is None, "i3-wm is not installed")
    def test_a_tiling_window_manager_gives_it_the_whole_screen(self):
        self.open_in("i3")
        self.assertEqual(self.session.width, 1280)
        self.assertGreater(self.session.height, 800)
        self.left.expect_cursor(1, "active")
        self.right.expect_cursor(1, "inactive")
        self.session.keys("Down")
        self.left.expect_cursor(2, "active")
        self.quit_and_expect_silence()

    def test_without_a_window_manager_it_has_its_own_size(self):
        self.open_in(None)
        self.assertEqual((self.session.width, self.session.height), (1100, 720))
        self.left.expect_cursor(1, "active")
        self.session.keys("Down", "Tab")
        self.left.expect_cursor(2, "inactive")
        self.quit_and_expect_silence()


class Scales(WindowCase):
    def lines(self, x, width, y):
        """How many pixels wide the lines on blue ground are there, from left to right."""
        row = [self.session.screen.pixel(self.session.x + at, self.session.y + y) for at in range(x, x + width)]
        return [len(list(run)) for colour, run in itertools.groupby(row) if colour != BLUE]

    def test_every_scale_has_the_same_layout_in_points(self):
        tree = self.session.make_tree("left", 6)
        self.session.open_display(size="2300x1600")
        for scale, line in ((1, 1), (1.25, 1), (1.5, 2), (2, 3)):
            with self.subTest(scale=scale):
                self.session.start(tree, tree, extra_environment={"QT_SCALE_FACTOR": str(scale)})
                self.session.wait_for_window()
                self.assertEqual((self.session.width, self.session.height), (1100 * scale, 720 * scale))
                # Inside and beside the last function-key cell, and the cursor's bar in the second row of each panel.
                for x, y, colour in ((1086, 716, CELL), (1094, 716, BLUE), (7, 97, ACTIVE), (558, 97, INACTIVE)):
                    place = self.session.x + int(x * scale), self.session.y + int(y * scale)
                    until(lambda p=place, c=colour: self.session.screen.pixel(*p) == c, f"{colour} at {x}, {y}")
                # The double frames at the window's sides, below the last row.
                height, side = int(400 * scale), int(7 * scale)
                for x in (0, self.session.width - side):
                    self.assertEqual(self.lines(x, side, height), [line, line], f"at {x}")
                self.session.keys("F10")
                self.expect_end((0, "", ""))


if __name__ == "__main__":
    unittest.main()
