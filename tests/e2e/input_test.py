"""Keys, clicks and the wheel in the real window."""

import os
import unittest

from panels import settled_picture
from session import until
from window_case import WindowCase


class TwoTrees(WindowCase):
    """Four folders on the left, the second of which has two in it, and more on the right than fit."""

    def setUp(self):
        super().setUp()
        self.session.make_tree("tree", 5)
        for number in range(2):
            self.session.make_folder(f"tree/a02/inner{number}")
        self.session.make_tree("many", 90)

    def open_trees(self, rows):
        self.open_window(self.session.path("tree"), self.session.path("many"))
        self.left.expect_rows(rows)


class Keys(TwoTrees):
    def setUp(self):
        super().setUp()
        self.session.make_folder("tree/m")
        self.session.make_folder("tree/Zebra")
        self.open_trees(7)

    def test_arrows_home_and_end_move_the_cursor(self):
        self.left.expect_cursor(1, "active")
        self.session.keys("Down", "Down")
        self.left.expect_cursor(3, "active")
        self.session.keys("Up")
        self.left.expect_cursor(2, "active")
        self.session.keys("End")
        self.left.expect_cursor(6, "active")
        self.session.keys("Home")
        self.left.expect_cursor(0, "active")
        self.quit_and_expect_silence()

    def test_pages_move_by_a_windowful(self):
        self.session.keys("Tab", "Home")
        self.right.expect_cursor(0, "active")
        before = settled_picture(self.right)
        self.session.keys("Next")
        self.right.expect_cursor(self.right.visible_rows() - 1, "active")
        self.assertNotEqual(settled_picture(self.right), before)
        self.session.keys("Prior")
        self.right.expect_cursor(0, "active")
        self.assertEqual(settled_picture(self.right), before)
        self.quit_and_expect_silence()

    def test_tab_and_shift_tab_switch_the_panel(self):
        self.session.keys("Tab")
        self.right.expect_cursor(1, "active")
        self.left.expect_cursor(1, "inactive")
        self.session.keys("shift+Tab")
        self.left.expect_cursor(1, "active")
        self.right.expect_cursor(1, "inactive")
        self.quit_and_expect_silence()

    def test_return_enters_a_folder_and_backspace_leaves_it(self):
        title = self.left.title()
        self.session.keys("Down", "Return")
        self.left.expect_rows(3)
        self.assertNotEqual(self.left.title(), title)
        self.session.keys("BackSpace")
        self.left.expect_rows(7)
        self.left.expect_cursor(2, "active")
        self.assertEqual(self.left.title(), title)
        self.quit_and_expect_silence()

    def test_the_keypads_enter_and_arrows_work_like_the_others(self):
        self.session.keys("KP_Down")
        self.left.expect_cursor(2, "active")
        self.session.keys("KP_Enter")
        self.left.expect_rows(3)
        self.quit_and_expect_silence()

    def test_a_letter_jumps_to_the_first_name_that_begins_with_it(self):
        self.session.keys("m")
        self.left.expect_cursor(5, "active")
        self.session.keys("a")
        self.left.expect_cursor(1, "active")
        self.session.keys("shift+z")
        self.left.expect_cursor(6, "active")
        self.session.keys("alt+m")
        self.left.expect_cursor(5, "active")
        self.session.keys("ctrl+a")
        self.left.expect_cursor(1, "active")
        self.quit_and_expect_silence()

    def test_a_tap_on_alt_leaves_the_keyboard_where_it_is(self):
        self.session.keys("Alt_L", "Down")
        self.left.expect_cursor(2, "active")
        self.quit_and_expect_silence()

    def test_f2_switches_the_sizes_to_bytes_and_back(self):
        until(lambda: all(self.left.has_size(row) for row in range(2, 7)), "all totals are there")
        before = self.left.sizes()
        self.session.keys("F2")
        until(lambda: self.left.sizes() != before, "the sizes look different")
        self.session.keys("F2")
        until(lambda: self.left.sizes() == before, "the sizes look as before")
        self.quit_and_expect_silence()


class Composing(WindowCase):
    def test_a_composed_letter_reaches_the_quick_search(self):
        self.session.open_display()
        self.session.run("setxkbmap", "us", "-variant", "intl")
        self.session.make_tree("tree", 4)
        self.session.make_folder("tree/\u00e9clair")
        self.open_window(self.session.path("tree"))
        self.left.expect_rows(5)
        self.left.expect_cursor(1, "active")
        # By their codes, 48 beside Return and 26 in the upper row: the first is a dead accent in this layout.
        self.session.keys("48", "26")
        # The accented letter sorts behind the others.
        self.left.expect_cursor(4, "active")
        self.quit_and_expect_silence()


class Mouse(TwoTrees):
    def setUp(self):
        super().setUp()
        self.open_trees(5)

    def test_a_click_selects_the_row_and_its_panel(self):
        self.session.click(*self.right.point_of(5))
        self.right.expect_cursor(5, "active")
        self.left.expect_cursor(1, "inactive")
        self.session.click(*self.left.point_of(3))
        self.left.expect_cursor(3, "active")
        self.quit_and_expect_silence()

    def test_a_double_click_enters_the_folder(self):
        self.session.click(*self.left.point_of(2), count=2)
        self.left.expect_rows(3)
        self.quit_and_expect_silence()

    def test_the_other_buttons_select_nothing(self):
        self.session.click(*self.left.point_of(3), button=3)
        self.session.click(*self.left.point_of(3), button=2)
        self.session.keys("Tab")
        self.right.expect_cursor(1, "active")
        self.left.expect_cursor(1, "inactive")
        self.quit_and_expect_silence()

    def test_a_click_on_a_header_sorts_and_another_one_turns_the_order(self):
        self.session.keys("Home")
        self.left.expect_cursor(0, "active")
        last = self.left.name(4)
        self.session.click(self.left.x + 40, self.left.y + 35)
        until(lambda: self.left.name(1) == last, "the last folder comes first")
        header = self.left.header()
        self.session.click(self.left.x + self.left.width - 200, self.left.y + 35)
        until(lambda: self.left.header() != header, "the size's title has the arrow")
        self.quit_and_expect_silence()

    def test_the_wheel_scrolls_two_rows_a_notch_and_leaves_the_cursor_where_it_is(self):
        self.session.keys("Tab", "Down", "Down")
        self.right.expect_cursor(3, "active")
        fifth = self.right.name(5)
        self.session.click(*self.right.point_of(8), button=5)
        self.right.expect_cursor(1, "active")
        until(lambda: self.right.name(3) == fifth, "the list has moved by two rows")
        self.session.click(*self.right.point_of(8), button=4)
        self.right.expect_cursor(3, "active")
        self.quit_and_expect_silence()


class Dialogs(WindowCase):
    def setUp(self):
        super().setUp()
        self.tree = self.session.make_tree("tree", 3)
        self.open_window(self.tree, self.tree)
        self.left.expect_rows(3)

    def is_dimmed(self):
        # The menu bar line under black at four tenths.
        return self.session.screen.pixel(self.session.x + 2, self.session.y + 2) == (103, 103, 103)

    def expect_dimmed(self, dimmed):
        until(lambda: self.is_dimmed() == dimmed, "a dialog is open" if dimmed else "no dialog is open")

    def test_f1_and_f9_open_their_dialogs_and_escape_closes_them(self):
        for key in ("F1", "F9"):
            self.session.keys(key)
            self.expect_dimmed(True)
            self.session.keys("Escape")
            self.expect_dimmed(False)
        self.quit_and_expect_silence()

    def test_f10_does_not_quit_while_a_dialog_is_open(self):
        self.session.keys("F1")
        self.expect_dimmed(True)
        self.session.keys("F10", "Tab", "Return")
        self.expect_dimmed(False)
        self.left.expect_cursor(1, "active")
        self.quit_and_expect_silence()

    def test_a_folder_is_made_by_typing_its_name_and_return(self):
        self.session.keys("F7")
        self.expect_dimmed(True)
        self.session.keys("n", "e", "w", "Return")
        self.expect_dimmed(False)
        self.left.expect_rows(4)
        self.assertIn("new", os.listdir(self.tree))
        self.quit_and_expect_silence()

    def test_menu_shortcuts_work_also_while_a_dialog_is_open(self):
        self.session.keys("F7")
        self.expect_dimmed(True)
        self.session.keys("ctrl+q")
        self.expect_end((0, "", ""))


class End(WindowCase):
    def test_f10_ends_the_program(self):
        self.open_window()
        self.session.keys("F10")
        self.expect_end((0, "", ""))

    def test_control_q_ends_the_program(self):
        self.open_window()
        self.session.keys("ctrl+q")
        self.expect_end((0, "", ""))

    def test_closing_the_window_ends_the_program(self):
        self.open_window()
        # The very first key makes the window manager bind its keys anew, and it may miss one meanwhile.
        self.session.press_until_end("alt+F4")
        self.expect_end((0, "", ""))

    def test_a_click_on_quit_ends_the_program(self):
        self.open_window()
        self.session.click(1060, 720 - 14)
        self.expect_end((0, "", ""))

    def test_the_end_does_not_wait_for_walks(self):
        self.open_window("/", "/usr")
        self.quit_and_expect_silence()


if __name__ == "__main__":
    unittest.main()
