"""What is pressed takes effect once, on what was meant: input that is typed ahead, doubled or held."""

import os
import shutil
import unittest

from session import until
from window_case import WindowCase

DIMMED = (103, 103, 103)  # the menu bar line under black at four tenths


class GestureCase(WindowCase):
    """A folder with three folders and a file on the left, an empty one on the right."""

    def setUp(self):
        super().setUp()
        self.tree = self.session.make_tree("tree", 4)
        self.session.make_file("tree/file.txt", 10)
        self.target = self.session.make_folder("target")
        self.open_window(self.tree, self.target)
        self.left.expect_rows(5)

    def is_dimmed(self):
        return self.session.screen.pixel(self.session.x + 2, self.session.y + 2) == DIMMED

    def expect_dimmed(self, dimmed):
        until(lambda: self.is_dimmed() == dimmed, "a dialog is open" if dimmed else "no dialog is open")

    def names(self):
        return sorted(os.listdir(self.tree))

    def expect_names(self, *expected):
        until(lambda: self.names() == sorted(expected), f"{expected}, not {self.names()}")

    def type_ahead(self, *keys):
        with self.session.stopped():
            self.session.keys(*keys)

    def preview(self):
        """The preview's window, or None. Its title is the name of what it shows."""
        found = self.session.xdotool("search", "--onlyvisible", "--name", "^(a0.|file.txt)$", check=False).split()
        return found[0] if found else None

    def open_preview(self):
        self.session.keys("space")
        window = until(self.preview, "the preview is open")
        until(lambda: self.session.xdotool("getwindowfocus").strip() == window, "it has the keyboard")


class TypedAhead(GestureCase):
    def test_a_name_reaches_the_field_of_a_new_folder(self):
        self.type_ahead("F7", "q", "w", "e", "Return")
        self.expect_names("a01", "a02", "a03", "file.txt", "qwe")
        self.quit_and_expect_silence()

    def test_a_name_reaches_the_field_of_a_rename(self):
        self.type_ahead("F6", "z", "z", "Return")
        self.expect_names("a02", "a03", "file.txt", "zz")
        self.quit_and_expect_silence()

    def test_a_place_reaches_the_field_of_a_copy(self):
        self.session.keys("End")
        self.left.expect_cursor(4, "active")
        with self.session.stopped():
            self.session.keys("F5")
            self.session.xdotool("type", os.path.join(self.target, "typed"))
            self.session.keys("Return")
        until(lambda: os.listdir(self.target) == ["typed"], "the copy is where it was typed to")
        self.quit_and_expect_silence()

    def test_one_dialog_after_the_other(self):
        self.type_ahead("F7", "b", "Return", "F7", "c", "Escape", "F7", "d", "Return", "F6", "e", "Return")
        self.expect_names("a01", "a02", "a03", "b", "e", "file.txt")
        self.quit_and_expect_silence()

    def test_after_escape_a_letter_searches_again(self):
        self.type_ahead("F7", "q", "Escape", "f")
        self.left.expect_cursor(4, "active")
        self.expect_dimmed(False)
        self.quit_and_expect_silence()

    def test_a_click_on_the_function_key_bar_too(self):
        with self.session.stopped():
            self.session.click(5 + 109 * 6 + 50, 705)
            self.session.keys("q", "w", "Return")
        self.expect_names("a01", "a02", "a03", "file.txt", "qw")
        self.quit_and_expect_silence()

    def test_through_the_menu(self):
        self.type_ahead("alt+f", "Up", "Up", "Up", "Up", "Return", "m", "n", "Return")
        self.expect_names("a01", "a02", "a03", "file.txt", "mn")
        self.quit_and_expect_silence()

    def test_nothing_happens_after_f10(self):
        self.type_ahead("F10", "F8", "Return")
        self.expect_end((0, "", ""))
        self.assertEqual(self.names(), ["a01", "a02", "a03", "file.txt"])

    def test_nothing_happens_after_control_q(self):
        self.type_ahead("ctrl+q", "F7", "q", "Return")
        self.expect_end((0, "", ""))
        self.assertEqual(self.names(), ["a01", "a02", "a03", "file.txt"])

    def test_nothing_happens_after_a_click_on_quit(self):
        with self.session.stopped():
            self.session.click(1060, 720 - 14)
            self.session.keys("F8", "Return")
        self.expect_end((0, "", ""))
        self.assertEqual(self.names(), ["a01", "a02", "a03", "file.txt"])

    def test_nothing_happens_after_quit_in_the_menu(self):
        self.type_ahead("alt+v", "Up", "Return", "F8", "Return")
        self.expect_end((0, "", ""))
        self.assertEqual(self.names(), ["a01", "a02", "a03", "file.txt"])


class Previewed(GestureCase):
    def test_a_dialog_takes_the_place_of_the_preview_and_has_the_keyboard(self):
        for key in ("F1", "F5", "F6", "F7", "F8", "F9"):
            with self.subTest(key=key):
                self.open_preview()
                self.session.keys(key)
                until(lambda: self.preview() is None, "the preview has made way")
                self.expect_dimmed(True)
                until(
                    lambda: self.session.xdotool("getwindowfocus").strip() == self.session.window,
                    "the window has the keyboard",
                )
                self.session.keys("Escape")
                self.expect_dimmed(False)
        self.assertEqual(self.names(), ["a01", "a02", "a03", "file.txt"])
        self.quit_and_expect_silence()

    def test_keys_typed_into_the_preview_reach_the_dialogs_field(self):
        self.open_preview()
        self.type_ahead("F7", "q", "w", "e", "Return")
        self.expect_names("a01", "a02", "a03", "file.txt", "qwe")
        self.quit_and_expect_silence()

    def test_a_preview_and_a_dialog_typed_ahead_leave_the_dialog(self):
        self.type_ahead("space", "F7")
        self.expect_dimmed(True)
        until(lambda: self.preview() is None, "the preview has made way")
        self.session.keys("x", "Return")
        self.expect_names("a01", "a02", "a03", "file.txt", "x")
        self.quit_and_expect_silence()

    def test_no_preview_opens_over_a_dialog(self):
        self.session.keys("F8")
        self.expect_dimmed(True)
        self.session.keys("ctrl+space", "Escape")
        self.expect_dimmed(False)
        self.assertIsNone(self.preview())
        self.quit_and_expect_silence()

    def test_a_held_space_opens_the_preview_and_leaves_it_open(self):
        self.session.hold("space")
        until(self.preview, "the preview is open")
        self.session.keys("Escape")
        until(lambda: self.preview() is None, "the preview is closed")
        self.quit_and_expect_silence()


class Held(GestureCase):
    def test_a_held_arrow_moves_on(self):
        self.session.hold("Down")
        self.left.expect_cursor(4, "active")
        self.quit_and_expect_silence()

    def test_return_that_closes_a_dialog_enters_nothing(self):
        # As deep as a minute of repeats would lead.
        self.session.make_folder("tree/a01" + "/b" * 200)
        title = self.left.title()
        self.session.keys("F1")
        self.expect_dimmed(True)
        self.session.hold("Return")
        self.expect_dimmed(False)
        self.session.keys("Down")
        self.left.expect_cursor(2, "active")
        self.assertEqual(self.left.title(), title)
        self.quit_and_expect_silence()

    def test_return_that_answers_in_a_field_enters_nothing(self):
        self.session.make_folder("tree/a01" + "/b" * 200)
        title = self.left.title()
        self.session.keys("F7", "x")
        self.expect_dimmed(True)
        self.session.hold("Return")
        self.expect_names("a01", "a02", "a03", "file.txt", "x")
        self.left.expect_rows(6)
        self.assertEqual(self.left.title(), title)
        self.quit_and_expect_silence()

    def test_return_that_chooses_in_a_menu_does_not_answer_the_dialog(self):
        self.session.keys("alt+f", "Up", "Up", "Up")
        self.session.hold("Return")
        self.expect_dimmed(True)
        self.session.keys("Escape")
        self.expect_dimmed(False)
        self.assertEqual(self.names(), ["a01", "a02", "a03", "file.txt"])
        self.quit_and_expect_silence()

    def test_return_enters_one_folder(self):
        self.session.make_folder("tree/a01/b/c/d")
        self.session.hold("Return")
        self.left.expect_rows(2)
        self.session.keys("BackSpace")
        self.left.expect_rows(5)
        self.left.expect_cursor(1, "active")
        self.quit_and_expect_silence()


class Doubled(GestureCase):
    HELP_BUTTON = (540, 574)
    BLANK = (600, 300)

    def test_a_double_click_on_a_dialogs_button_opens_nothing_beneath(self):
        # Enough rows for one to lie beneath the button of the help.
        for number in range(4, 30):
            self.session.make_folder(f"tree/a{number:02}")
        self.session.keys("ctrl+r")
        self.left.expect_rows(self.left.visible_rows())
        for stopped in (False, True):
            with self.subTest(stopped=stopped):
                self.session.keys("F1")
                self.expect_dimmed(True)
                if stopped:
                    with self.session.stopped():
                        self.session.click(*self.HELP_BUTTON, count=2)
                else:
                    self.session.click(*self.HELP_BUTTON, count=2)
                self.expect_dimmed(False)
                self.left.expect_cursor(1, "active")
        self.quit_and_expect_silence()

    def test_a_double_click_on_a_function_key_leaves_its_dialog_open(self):
        self.session.click(5 + 109 * 6 + 50, 705, count=2)
        self.expect_dimmed(True)
        self.session.keys("n", "Return")
        self.expect_names("a01", "a02", "a03", "file.txt", "n")
        self.quit_and_expect_silence()

    def test_four_fast_clicks_enter_one_folder(self):
        self.session.make_folder("tree/a01/b1/c1")
        for stopped in (False, True):
            with self.subTest(stopped=stopped):
                if stopped:
                    with self.session.stopped():
                        self.session.click(*self.left.point_of(1), count=4)
                else:
                    self.session.click(*self.left.point_of(1), count=4)
                self.left.expect_rows(2)
                self.session.keys("BackSpace")
                self.left.expect_rows(5)
        self.quit_and_expect_silence()

    def test_a_click_on_a_dialogs_blank_area_leaves_the_keyboard_to_its_field(self):
        self.session.keys("F7")
        self.expect_dimmed(True)
        self.session.click(*self.BLANK)
        self.session.keys("q", "Return")
        self.expect_names("a01", "a02", "a03", "file.txt", "q")
        self.quit_and_expect_silence()


class Menus(GestureCase):
    def test_about_is_reached_by_the_keyboard(self):
        self.session.keys("alt+v", "Down", "Return")
        until(
            lambda: self.session.xdotool("search", "--onlyvisible", "--name", "^Vantrel Commander$", check=False),
            "the message is open",
        )
        self.session.keys("Return")
        until(
            lambda: self.session.xdotool("getwindowfocus").strip() == self.session.window,
            "the window has the keyboard",
        )
        self.session.keys("Down")
        self.left.expect_cursor(2, "active")
        self.quit_and_expect_silence()

    def test_keys_typed_ahead_of_the_message_answer_it_and_go_on(self):
        self.type_ahead("alt+v", "Down", "Return", "x", "Return", "F7", "q", "w", "Return", "Down")
        self.expect_names("a01", "a02", "a03", "file.txt", "qw")
        self.left.expect_rows(6)
        self.type_ahead("Home", "alt+v", "Down", "Return", "space", "Down")
        self.left.expect_cursor(1, "active")
        self.quit_and_expect_silence()

    def test_escape_gives_the_keyboard_back(self):
        self.type_ahead("alt+h", "Escape", "Down")
        self.left.expect_cursor(2, "active")
        self.quit_and_expect_silence()

    def test_a_dialogs_field_has_the_keyboard_again_after_a_menu(self):
        self.session.keys("F7")
        self.expect_dimmed(True)
        self.session.keys("alt+f", "Escape", "q", "Return")
        self.expect_names("a01", "a02", "a03", "file.txt", "q")
        self.quit_and_expect_silence()


class Names(WindowCase):
    def test_a_name_that_is_no_text_keeps_its_bytes_when_it_is_edited(self):
        folder = os.fsencode(self.session.make_folder("tree"))
        with open(os.path.join(folder, b"caf\xe9.txt"), "wb"):
            pass
        self.open_window(os.fsdecode(folder))
        self.left.expect_rows(2)
        self.session.keys("F6", "End", "shift+z", "Return")
        until(lambda: os.listdir(folder) == [b"caf\xe9.txtZ"], f"the byte is kept, not {os.listdir(folder)}")
        self.quit_and_expect_silence()


@unittest.skipIf(shutil.which("setxkbmap") is None, "setxkbmap is not installed")
class Layouts(WindowCase):
    """The key of the digit 2, by its code: on the keyboards of some languages it types an accented letter."""

    KEY_OF_2 = "11"

    def sorts_by_size(self, layout, *modifiers):
        """Whether Control and that key sort the left panel by size."""
        header = self.left.header()
        self.session.run("setxkbmap", *layout)
        self.session.keys("+".join(["ctrl", *modifiers, self.KEY_OF_2]))
        # A busy program would read the key by the changed layout, so its effect is waited for first.
        self.session.keys("Down", "Down")
        self.left.expect_cursor(3, "active")
        self.session.run("setxkbmap", "us")
        changed = self.left.header() != header
        self.session.keys("ctrl+1", "Home", "Down")
        self.left.expect_cursor(1, "active")
        until(lambda: self.left.header() == header, "sorted by name again")
        return changed

    def test_control_with_a_latin_letter_beyond_ascii_is_no_control_2(self):
        self.session.open_display()
        self.open_window(self.session.make_tree("tree", 5))
        self.left.expect_rows(5)
        self.assertTrue(self.sorts_by_size(["us"]))
        self.assertFalse(self.sorts_by_size(["fr"]))
        self.assertTrue(self.sorts_by_size(["fr"], "shift"))
        self.assertFalse(self.sorts_by_size(["cz"]))
        self.assertFalse(self.sorts_by_size(["cz,us"]))
        self.assertTrue(self.sorts_by_size(["gr"]))
        self.assertTrue(self.sorts_by_size(["ru"]))
        self.quit_and_expect_silence()


class SmallScreens(WindowCase):
    def frame(self):
        """Left, top, right and bottom of the window with its frame, on the screen."""
        x, y, width, height = self.session.geometry(self.session.window)
        extents = self.session.run("xprop", "-id", self.session.window, "_NET_FRAME_EXTENTS")
        left, right, top, bottom = (int(number) for number in extents.split("=")[1].split(","))
        return x - left, y - top, x + width + right, y + height + bottom

    def test_the_window_stands_whole_on_its_screen_and_large_where_it_can(self):
        tree = self.session.make_tree("tree", 3)
        for width, height, scale in (
            (1920, 1080, 1),
            (1366, 768, 1),
            (1280, 800, 1),
            (1280, 720, 1),
            (1024, 600, 1),
            (1280, 800, 1.5),
            (1280, 800, 2),
        ):
            with self.subTest(width=width, height=height, scale=scale):
                session = type(self.session)()
                self.addCleanup(session.close)
                self.session = session
                session.open_display(size=f"{width}x{height}")
                session.start(tree, tree, extra_environment={"QT_SCALE_FACTOR": str(scale)})
                session.wait_for_window()

                def is_in_sight():
                    left, top, right, bottom = self.frame()
                    fits = width >= 820 * scale and height >= 560 * scale
                    return left >= 0 and top >= 0 and (not fits or (right <= width and bottom <= height))

                until(is_in_sight, "the window is in sight")
                if width >= 1110 * scale and height >= 780 * scale:
                    until(lambda: session.is_painted() and session.width == 1100 * scale, "it has its width")
                    self.assertEqual(session.height, 720 * scale)
                self.quit_and_expect_silence()


if __name__ == "__main__":
    unittest.main()
