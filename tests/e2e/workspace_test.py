"""Other applications: opening a file, showing a folder, a terminal. All of them are fakes."""

import os
import re
import shutil
import unittest
import urllib.parse

from session import until
from workspace_case import WorkspaceCase


class OpeningAFile(WorkspaceCase):
    def setUp(self):
        super().setUp()
        self.file = self.folder + b"/letter \xff.txt"
        with open(self.file, "wb") as file:
            file.write(b"Dear Ann,\n")

    def open_the_file(self):
        self.open_window_on(self.folder)
        self.left.expect_cursor(1, "active")
        self.session.keys("Return")

    def test_starts_the_default_application_on_the_file(self):
        self.install_default_application("viewer")
        self.install("xdg-open")
        self.open_the_file()
        note = self.only_note()
        self.assertEqual(note["program"], "viewer")
        self.expect_well_started(note, [self.file], self.folder)
        self.expect_no_children()
        self.quit_and_expect_silence()

    def test_f4_does_the_same(self):
        self.install_default_application("viewer")
        self.open_window_on(self.folder)
        self.left.expect_cursor(1, "active")
        self.session.keys("F4")
        self.assertEqual(self.only_note()["program"], "viewer")
        self.quit_and_expect_silence()

    def test_without_a_default_application_xdg_open_is_asked(self):
        self.install("xdg-open")
        self.open_the_file()
        note = self.only_note()
        self.assertEqual(note["program"], "xdg-open")
        self.assertEqual(bytes.fromhex(note["arguments"][0]), self.url_of(self.file))
        self.expect_no_children()
        self.quit_and_expect_silence()

    def test_an_application_that_cannot_be_started_is_replaced_by_xdg_open(self):
        self.install_default_application("viewer")
        os.remove(self.session.path("bin/viewer"))
        self.install("xdg-open")
        self.open_the_file()
        self.assertEqual(self.only_note()["program"], "xdg-open")
        self.quit_and_expect_silence()

    def test_without_anything_to_open_it_with_nothing_happens(self):
        self.open_the_file()
        self.expect_the_window_to_answer()
        self.quit_and_expect_silence()

    def test_a_file_that_has_gone_is_opened_by_nobody(self):
        self.install_default_application("viewer")
        self.install("xdg-open", "xterm")
        self.open_window_on(self.folder)
        self.left.expect_cursor(1, "active")
        os.remove(self.file)
        self.session.keys("Return")
        # Requests begin in order, so the terminal marks that the one for the file has begun.
        self.session.keys("ctrl+t")
        until(self.notes, "the terminal is started")
        self.assertEqual([note["program"] for note in self.notes()], ["xterm"])
        self.quit_and_expect_silence()

    def test_an_application_that_stays_holds_up_neither_the_window_nor_its_end(self):
        self.install_default_application("viewer")
        self.let_fakes_stay()
        self.open_the_file()
        note = self.only_note()
        self.expect_the_window_to_answer()
        self.quit_and_expect_silence()
        os.kill(note["pid"], 0)  # it goes on without us


class ShowingAFolder(WorkspaceCase):
    def setUp(self):
        super().setUp()
        self.install("xdg-open")

    def show_the_folder(self):
        self.open_window_on(self.folder)
        self.session.keys("ctrl+o")

    def expect_xdg_open(self):
        note = self.only_note()
        self.assertEqual(note["program"], "xdg-open")
        self.assertEqual([bytes.fromhex(argument) for argument in note["arguments"]], [self.url_of(self.folder)])

    def test_asks_the_file_manager_on_the_bus(self):
        self.provide_file_manager("shown")
        self.session.start_bus()
        self.show_the_folder()
        until(self.shown, "the file manager is asked")
        self.assertEqual(self.shown(), f"(['{self.url_of(self.folder).decode()}'], '')\n")
        self.quit_and_expect_silence()
        self.assertEqual(self.notes(), [])

    def test_without_a_file_manager_on_the_bus_xdg_open_is_asked(self):
        self.session.start_bus()
        self.show_the_folder()
        self.expect_xdg_open()
        self.quit_and_expect_silence()

    def test_without_a_bus_xdg_open_is_asked(self):
        self.show_the_folder()
        self.expect_xdg_open()
        self.expect_no_children()
        self.quit_and_expect_silence()

    def test_a_file_manager_that_refuses_is_replaced_by_xdg_open(self):
        self.provide_file_manager("refused")
        self.session.start_bus()
        self.show_the_folder()
        self.expect_xdg_open()
        self.quit_and_expect_silence()

    def test_a_file_manager_that_never_answers_holds_up_neither_the_window_nor_its_end(self):
        self.provide_file_manager("nothing")
        self.session.start_bus()
        self.show_the_folder()
        until(self.shown, "the file manager is asked")
        self.expect_the_window_to_answer()
        self.quit_and_expect_silence()

    def test_the_end_of_the_bus_is_not_the_end_of_the_program(self):
        self.provide_file_manager("nothing")
        self.session.start_bus()
        bus = self.session.processes[-1]
        self.show_the_folder()
        until(self.shown, "the file manager is asked")
        bus.kill()
        bus.wait()
        self.expect_xdg_open()
        self.expect_the_window_to_answer()
        self.quit_and_expect_silence()


class ATerminal(WorkspaceCase):
    def ask_for_a_terminal(self):
        self.open_window_on(self.folder)
        self.session.keys("ctrl+t")

    def expect_terminal(self, name, arguments=()):
        note = self.only_note()
        self.assertEqual(note["program"], name)
        self.expect_well_started(note, list(arguments), self.folder)
        self.expect_no_children()

    def test_the_users_own_comes_first(self):
        self.install("mine", "xdg-terminal-exec", "x-terminal-emulator", "xterm")
        self.environment["TERMINAL"] = "mine"
        self.ask_for_a_terminal()
        self.expect_terminal("mine")
        self.quit_and_expect_silence()

    def test_the_users_own_may_have_arguments_that_no_shell_looks_at(self):
        self.install("mine")
        self.environment["TERMINAL"] = "mine --new $HOME;ls"
        self.ask_for_a_terminal()
        self.expect_terminal("mine", [b"--new", b"$HOME;ls"])
        self.quit_and_expect_silence()

    def test_the_others_follow_in_their_order(self):
        names = ["xdg-terminal-exec", "x-terminal-emulator", "gnome-terminal", "konsole", "xfce4-terminal", "xterm"]
        self.install(*names)
        self.environment["TERMINAL"] = "missing"
        self.open_window_on(self.folder)
        for count, name in enumerate(names, start=1):
            self.session.keys("ctrl+t")
            until(lambda count=count: len(self.notes()) == count, f"{name} is started")
            os.remove(self.session.path(f"bin/{name}"))
        self.assertEqual([note["program"] for note in self.notes()], names)
        self.quit_and_expect_silence()

    def test_one_that_cannot_run_is_passed_over(self):
        with open(self.session.path("bin/x-terminal-emulator"), "w", encoding="ascii") as script:
            script.write("#!/no/such/interpreter\n")
        os.chmod(self.session.path("bin/x-terminal-emulator"), 0o755)
        self.install("xterm")
        self.ask_for_a_terminal()
        self.expect_terminal("xterm")
        self.quit_and_expect_silence()

    def test_without_any_nothing_happens(self):
        self.ask_for_a_terminal()
        self.expect_the_window_to_answer()
        self.quit_and_expect_silence()

    def test_in_a_folder_that_has_gone_nothing_happens(self):
        self.install("xterm")
        self.open_window_on(self.folder)
        shutil.rmtree(self.folder)
        self.session.keys("ctrl+t")
        self.expect_the_window_to_answer()
        self.quit_and_expect_silence()
        self.assertEqual(self.notes(), [])


class HostileNames(WorkspaceCase):
    """Names that a shell, an option parser, a desktop entry, a URL or a terminal would take for something else."""

    NAMES = [
        b"-rf",
        b"--help",
        b"$(touch owned)",
        b"`touch owned`",
        b"; touch owned",
        b"&& touch owned",
        b"| tee owned",
        b"> owned",
        b"it's \"quoted\"",
        b"new\nline",
        b"%20",
        b"%f %U %%",
        b"caf\xe9 \xff",
        b"*",
        b"back\\slash",
        b"~root",
        b"$HOME",
        b"\x1b]0;title\x07",
        b"http:",
        b"a?b#c&d",
        b" ",
        b"\xe2\x80\xaegnp.exe",
    ]

    def setUp(self):
        super().setUp()
        self.names = [name + b".txt" for name in self.NAMES]
        self.folder = os.fsencode(self.session.make_folder("hostile"))

    @staticmethod
    def content(name):
        """Text, so that the application for text opens it."""
        return name.hex().encode()

    def make_files(self):
        for name in self.names:
            with open(self.folder + b"/" + name, "wb") as file:
                file.write(self.content(name))

    def expect_nothing_ran(self):
        for folder, _, names in os.walk(self.session.folder):
            self.assertNotIn("owned", names, folder)

    def open_the_rows(self, *keys):
        """Presses the keys on every row in turn, and waits for a program after each row."""
        self.open_window_on(self.folder)
        for count in range(1, len(self.names) + 1):
            self.session.keys(*keys)
            until(lambda count=count: len(self.notes()) == count, f"program {count} is started")
            self.session.keys("Down")

    def test_each_file_reaches_the_default_application_as_itself(self):
        self.make_files()
        self.install_default_application("viewer")
        self.open_the_rows("Return")
        arguments = [[bytes.fromhex(argument) for argument in note["arguments"]] for note in self.notes()]
        self.assertEqual(sorted(arguments), sorted([self.folder + b"/" + name] for name in self.names))
        self.expect_nothing_ran()
        self.quit_and_expect_silence()

    def test_each_file_reaches_xdg_open_as_itself(self):
        self.make_files()
        self.install("xdg-open")
        self.open_the_rows("F4")
        arguments = [[bytes.fromhex(argument) for argument in note["arguments"]] for note in self.notes()]
        self.assertEqual(sorted(arguments), sorted([self.url_of(self.folder + b"/" + name)] for name in self.names))
        self.expect_nothing_ran()
        self.quit_and_expect_silence()

    def test_each_folder_reaches_terminal_and_file_browser_as_itself(self):
        for name in self.names:
            os.mkdir(self.folder + b"/" + name)
        self.install("xterm")
        self.provide_file_manager("shown")
        self.session.start_bus()
        self.open_the_rows("Return", "ctrl+o", "ctrl+t", "BackSpace")
        folders = [bytes.fromhex(note["folder"]) for note in self.notes()]
        self.assertEqual(sorted(folders), sorted(self.folder + b"/" + name for name in self.names))
        urls = sorted(self.url_of(self.folder + b"/" + name).decode() for name in self.names)
        until(lambda: all(url in self.shown() for url in urls), "every folder is shown")
        self.expect_nothing_ran()
        self.quit_and_expect_silence()

    def test_each_file_goes_to_the_trash_as_itself(self):
        self.make_files()
        self.open_window_on(self.folder)
        trash = os.fsencode(self.session.path("data/Trash"))
        for count in range(1, len(self.names) + 1):
            self.session.keys("F8", "Return")
            until(lambda count=count: len(os.listdir(self.folder)) == len(self.names) - count, f"{count} are trashed")
        self.assertEqual(sorted(os.listdir(trash + b"/files")), sorted(self.names))
        for name in self.names:
            with open(trash + b"/files/" + name, "rb") as file:
                self.assertEqual(file.read(), self.content(name))
            with open(trash + b"/info/" + name + b".trashinfo", "rb") as file:
                (path,) = re.findall(rb"^Path=(.*)$", file.read(), re.MULTILINE)
            self.assertEqual(urllib.parse.unquote_to_bytes(path), self.folder + b"/" + name)
        self.expect_nothing_ran()
        self.quit_and_expect_silence()


if __name__ == "__main__":
    unittest.main()
