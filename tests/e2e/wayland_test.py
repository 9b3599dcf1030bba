"""The window on Wayland: in a tiling compositor, at other scales, and moving between screens."""

import unittest

import wayland
from panels import ACTIVE, BLUE, INACTIVE
from session import until
from wayland import FIRST, HEIGHT, SECOND, WIDTH

MENU_LINE = (171, 171, 171)
FUNCTION_KEY = (0, 171, 171)


@unittest.skipIf(wayland.missing(), wayland.missing())
class Wayland(unittest.TestCase):
    def setUp(self):
        self.session = wayland.WaylandSession()
        self.addCleanup(self.session.close)
        self.session.open_compositor()

    def open(self, rows=8):
        self.session.start(self.session.make_tree("left", rows), self.session.make_tree("right", 4))
        until(self.session.window_is_there, "the window appears")
        until(lambda: self.cursors(FIRST) == (1, 1), "both panels are painted")

    def content_top(self, picture, scale):
        """Where the content begins, below the native menu bar; None while it is not painted."""
        return next((y for y in range(60 * scale) if picture.pixel(2 * scale, y) == MENU_LINE), None)

    def cursors(self, output, scale=1):
        """The rows of the left, active and the right, inactive cursor."""
        picture = self.session.picture(output)
        top = self.content_top(picture, scale)
        if top is None:
            return None
        width = max(picture.width // scale, 800)
        right = (width - 2) // 2 + 2
        return self.row(picture, top, 7, ACTIVE, scale), self.row(picture, top, right + 7, INACTIVE, scale)

    def row(self, picture, top, x, colour, scale):
        for row in range(14):
            y = top + scale * (24 + 52 + 20 * row + 1)
            if y < picture.height and picture.pixel(scale * x, y) == colour:
                return row
        return None

    def quit_and_expect_silence(self):
        program = self.session.program
        self.session.key_until("F10", lambda: program.poll() is not None, "the program ends")
        self.assertEqual(self.session.end(), (0, "", ""))

    def test_fills_the_place_that_a_tiling_compositor_gives_it(self):
        self.open()
        picture = self.session.picture(FIRST)
        self.assertEqual((picture.width, picture.height), (WIDTH, HEIGHT))
        # The last function key cell ends ten points before the right edge and two before the lower one.
        self.assertEqual(picture.pixel(WIDTH - 14, HEIGHT - 4), FUNCTION_KEY)
        self.assertEqual(picture.pixel(WIDTH - 5, HEIGHT - 4), BLUE)
        self.quit_and_expect_silence()

    def test_keys_arrive(self):
        self.open()
        self.session.key_until("End", lambda: self.cursors(FIRST) == (7, 1), "the cursor goes to the last row")
        self.session.key_until("Home", lambda: self.cursors(FIRST) == (0, 1), "the cursor goes to the first row")
        self.quit_and_expect_silence()

    def test_moves_to_a_screen_of_another_scale_and_back(self):
        self.open(rows=8)
        self.session.command("output", SECOND, "scale", "2")
        self.session.command("move", "container", "to", "output", SECOND)
        self.session.command("focus", "output", SECOND)

        def has_doubled():
            return self.cursors(SECOND, 2) is not None and self.cursors(SECOND, 2)[0] == 1

        until(has_doubled, "every point has two pixels each way")
        # Text in the cell's corner is drawn at the new resolution: not every 2 by 2 block has one colour.
        picture = self.session.picture(SECOND)
        top = self.content_top(picture, 2)
        sharp = any(
            picture.pixel(2 * x, 2 * y + top) != picture.pixel(2 * x + 1, 2 * y + top)
            for x in range(10, 60)
            for y in range(24 + 72, 24 + 92)
        )
        self.assertTrue(sharp, "the text is only enlarged")
        self.session.key_until("Home", lambda: self.cursors(SECOND, 2)[0] == 0, "keys arrive there too")
        self.session.command("move", "container", "to", "output", FIRST)
        self.session.command("focus", "output", FIRST)
        until(lambda: self.cursors(FIRST) == (0, 1), "every point has one pixel again")
        self.quit_and_expect_silence()


if __name__ == "__main__":
    unittest.main()
