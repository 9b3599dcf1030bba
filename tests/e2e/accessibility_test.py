"""The window as a screen reader finds it, over the accessibility bus of a private session."""

import json
import os
import select
import subprocess
import unittest

from session import LIMIT, until
from window_case import WindowCase

DEBIANS_PYTHON = "/usr/bin/python3"  # the one that Debian's GObject bindings belong to
LISTENING = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}


def missing_bindings():
    probe = "import gi; gi.require_version('Atspi', '2.0'); from gi.repository import Atspi"
    try:
        return subprocess.run([DEBIANS_PYTHON, "-c", probe], capture_output=True, check=False).returncode != 0
    except FileNotFoundError:
        return True


class Reader:
    """The other end of screen_reader.py."""

    def __init__(self, session):
        program = os.path.join(os.path.dirname(os.path.abspath(__file__)), "screen_reader.py")
        self.process = session.spawn_talking([DEBIANS_PYTHON, "-B", program])
        self.answer()

    def answer(self):
        assert select.select([self.process.stdout], [], [], LIMIT)[0], "the screen reader says nothing"
        line = self.process.stdout.readline()
        assert line, "the screen reader has ended"
        return json.loads(line)

    def attempt(self, *request):
        self.process.stdin.write(json.dumps(request).encode() + b"\n")
        self.process.stdin.flush()
        return self.answer()

    def ask(self, *request):
        answer = self.attempt(*request)
        assert "answer" in answer, f"{request}: {answer.get('error')}"
        return answer["answer"]

    def close(self):
        self.process.stdin.close()
        self.process.stdout.close()


@unittest.skipIf(missing_bindings(), "gir1.2-atspi-2.0 and python3-gi are not installed")
class Accessibility(WindowCase):
    def setUp(self):
        super().setUp()
        self.session.start_bus()
        for number in range(1, 4):
            self.session.make_file(f"tree/a{number}/file", 5000 * number)
        self.session.make_file("tree/letter.txt", 1536)
        os.utime(self.session.path("tree/letter.txt"), (1_700_000_000, 1_700_000_000))
        self.session.make_tree("other", 3)
        self.session.open_display()
        self.reader = Reader(self.session)
        self.addCleanup(self.reader.close)
        self.heard = []

    def open(self, left="tree", right="other"):
        self.open_window(self.session.path(left), self.session.path(right), extra_environment=LISTENING)
        until(lambda: self.reader.attempt("is_there", "table", "Left panel").get("answer"), "the left table is there")

    def hears(self, event, role, name, value=1):
        """Waits until that has been heard, then forgets it and everything before it."""

        def arrives():
            self.heard.extend(self.reader.ask("events"))
            for place, one in enumerate(self.heard):
                is_it = (one["event"], one["role"], one["value"]) == (event, role, value)
                if is_it and one["name"].startswith(name):
                    del self.heard[: place + 1]
                    return True
            return False

        try:
            until(arrives, f"{event} of {role} {name}")
        except AssertionError as error:
            raise AssertionError(f"{error}; heard {self.heard}") from error

    def focus_comes_to(self, role, name):
        self.hears("object:state-changed:focused", role, name)

    def test_each_panel_is_a_table_of_names_sizes_dates_and_times(self):
        self.open()
        left = f"Left panel: {self.session.path('tree')}"
        shape = self.reader.ask("shape", left)
        self.assertEqual(shape, {"rows": 5, "titles": ["Name", "Size", "Date", "Time"], "selected": [1]})
        self.assertEqual(self.reader.ask("row", left, 0), ["..", "", "", ""])
        self.assertEqual(self.reader.ask("row", left, 4), ["letter.txt", "1.5 K", "2023-11-14", "22:13"])
        until(lambda: self.reader.ask("row", left, 1)[1].endswith(" K"), "the folder's total")
        self.assertEqual(self.reader.ask("cell", left, 1, 0)["description"], "folder")
        self.assertEqual(self.reader.ask("shape", "Right panel")["rows"], 3)
        place = self.reader.ask("cell", left, 1, 0)["place"]
        self.assertEqual(place, [self.session.x, self.session.y + 24 + 72, 310, 20])
        self.quit_and_expect_silence()

    def test_the_cursor_is_told_as_it_moves(self):
        self.open()
        self.focus_comes_to("table cell", "a1")
        self.session.keys("Down")
        self.focus_comes_to("table cell", "a2")
        self.session.keys("Down")
        self.hears("object:state-changed:selected", "table cell", "a3")
        cell = self.reader.ask("cell", "Left panel", 3, 0)
        self.assertEqual(cell["states"], ["focused", "selected", "sensitive", "showing"])
        self.session.keys("Tab")
        self.focus_comes_to("table cell", "a01")
        self.assertEqual(self.reader.ask("cell", "Left panel", 3, 0)["states"], ["selected", "sensitive", "showing"])
        self.session.keys("Tab", "Return")
        self.focus_comes_to("table cell", "file")
        self.quit_and_expect_silence()

    def test_rows_can_be_selected_and_opened(self):
        self.open()
        self.reader.ask("select_row", "Left panel", 3)
        self.left.expect_cursor(3, "active")
        self.reader.ask("press_cell", "Left panel", 3)
        self.left.expect_rows(2)
        self.assertEqual(self.reader.ask("row", f"Left panel: {self.session.path('tree/a3')}", 1)[0], "file")
        self.quit_and_expect_silence()

    def test_every_function_key_has_its_button(self):
        self.open()
        names = ["Help", "Bytes/HR", "View", "Edit", "Copy", "RenMov", "Mkdir", "Delete", "Sort", "Quit"]
        for number, name in enumerate(names, 1):
            self.assertEqual(self.reader.ask("key_binding", "push button", name), f"F{number}")
        self.reader.ask("press", "push button", "Mkdir")
        until(lambda: self.reader.ask("is_there", "dialog", "MAKE DIRECTORY"), "the dialog")
        self.assertNotIn("sensitive", self.reader.ask("describe", "push button", "Quit")["states"])
        self.session.keys("Escape")
        until(lambda: not self.reader.ask("is_there", "dialog", "MAKE DIRECTORY"), "the dialog closes")
        self.reader.ask("press", "push button", "Quit")
        self.expect_end((0, "", ""))

    def test_a_dialog_has_its_name_its_texts_its_field_and_its_buttons(self):
        self.open()
        self.session.keys("End", "F5")
        prompt = 'Copy "letter.txt" to destination:'
        self.focus_comes_to("text", prompt)
        inside = [(node["role"], node["name"]) for node in self.reader.ask("inside", "dialog", "COPY")]
        for expected in (("push button", "Copy"), ("push button", "Cancel"), ("label", prompt), ("text", prompt)):
            self.assertIn(expected, inside)
        self.assertIn("dialog", self.reader.ask("ancestors", "text", prompt))
        self.assertIn("modal", self.reader.ask("describe", "dialog", "COPY")["states"])
        self.session.keys("Tab")
        self.focus_comes_to("push button", "Cancel")
        self.session.keys("Tab")
        self.focus_comes_to("text", prompt)
        self.session.keys("Escape")
        self.focus_comes_to("table cell", "letter.txt")
        self.quit_and_expect_silence()

    def test_a_dialog_without_a_field_is_told_and_answered_by_its_buttons(self):
        self.open()
        self.session.keys("F9")
        self.hears("object:state-changed:showing", "dialog", "SORT ORDER")
        self.focus_comes_to("push button", "Select")
        self.assertEqual(self.reader.ask("row", "Left panel", 1)[0], "a1")
        self.reader.ask("press", "push button", "2.")
        until(lambda: not self.reader.ask("is_there", "dialog", "SORT ORDER"), "the dialog closes")
        until(lambda: self.reader.ask("row", "Left panel", 1)[0] == "a3", "the largest comes first")
        self.quit_and_expect_silence()

    def test_the_menu_is_there_by_name(self):
        self.open()
        for menu in ("Vantrel", "File", "View", "Commands", "Help"):
            self.assertTrue(self.reader.ask("is_there", "menu item", menu), menu)
        inside = [node["name"] for node in self.reader.ask("inside", "menu bar", "")]
        self.assertIn("Orvane Keyboard Reference", inside)
        self.quit_and_expect_silence()

    def test_a_very_long_folder_is_read_where_somebody_looks(self):
        folder = self.session.make_folder("many")
        for number in range(100_000):
            os.mknod(f"{folder}/file{number:05}")
        self.open("many")
        self.assertEqual(self.reader.ask("shape", "Left panel")["rows"], 100_001)
        self.assertEqual(self.reader.ask("row", "Left panel", 100_000)[0], "file99999")
        self.assertNotIn("showing", self.reader.ask("cell", "Left panel", 100_000, 0)["states"])
        self.session.keys("End")
        self.focus_comes_to("table cell", "file99999")
        self.assertIn("showing", self.reader.ask("cell", "Left panel", 100_000, 0)["states"])
        self.quit_and_expect_silence()


if __name__ == "__main__":
    unittest.main()
