"""Surroundings that are slow, silent or hostile: they neither hold up the window nor get anything of theirs run."""

import fcntl
import os
import socket
import threading

from panels import left_and_right
from session import until
from workspace_case import WorkspaceCase

F_SETPIPE_SZ = 1031  # not in every version's fcntl module


class HostileFolder(WorkspaceCase):
    """The folder on show, which is the working directory too, holds programs with the names of honest ones."""

    NAMES = ["xdg-open", "xterm", "x-terminal-emulator", "viewer", "mine", "gio-launch-desktop"]

    def setUp(self):
        super().setUp()
        self.marker = self.session.path("captured")
        for name in self.NAMES:
            path = self.folder + b"/" + os.fsencode(name)
            with open(path, "w", encoding="utf-8") as script:
                script.write(f"#!/bin/sh\n: > {self.marker}\n")
            os.chmod(path, 0o755)
        with open(self.folder + b"/a.txt", "wb") as file:
            file.write(b"Dear Ann,\n")
        self.environment["PATH"] = f".:..:bin::./x:{self.environment['PATH']}:"

    def open_there(self):
        self.open_window(self.folder, self.session.home, cwd=self.folder, extra_environment=self.environment)

    def expect_started(self, name):
        self.assertEqual(self.only_note()["program"], name)
        self.quit_and_expect_silence()
        self.assertFalse(os.path.exists(self.marker), "a program of the folder on show ran")

    def test_gives_no_terminal(self):
        self.install("xterm")
        self.open_there()
        self.session.keys("ctrl+t")
        self.expect_started("xterm")

    def expect_another_than(self, terminal):
        self.install("xterm")
        self.environment["TERMINAL"] = terminal
        self.open_there()
        self.session.keys("ctrl+t")
        self.expect_started("xterm")

    def test_gives_none_that_is_named_by_a_path_from_here(self):
        self.expect_another_than("./mine")

    def test_gives_none_that_is_named_by_a_path_from_above(self):
        self.expect_another_than("../" + os.fsdecode(os.path.basename(self.folder)) + "/mine")

    def test_gives_none_that_is_named_by_its_name(self):
        self.expect_another_than("mine")

    def test_gives_no_program_to_open_files_with(self):
        self.install("xdg-open")
        self.open_there()
        self.session.keys("Down", "Return")
        self.expect_started("xdg-open")

    def test_gives_no_default_application(self):
        self.install_default_application("viewer")
        with open(self.session.path("data/applications/fake.desktop"), "r+", encoding="ascii") as file:
            entry = file.read().replace(self.session.path("bin/viewer"), "viewer")
            file.seek(0)
            file.write(entry)
            file.truncate()
        self.open_there()
        self.session.keys("Down", "Return")
        self.expect_started("viewer")


class UnreadOutput(WorkspaceCase):
    def test_does_not_hold_up_the_window_when_it_is_a_pipe(self):
        reader, writer = os.pipe()
        fcntl.fcntl(writer, F_SETPIPE_SZ, 4096)
        self.fill_and_work(reader, writer)

    def test_does_not_hold_up_the_window_when_it_is_a_socket(self):
        reader, writer = socket.socketpair()
        self.fill_and_work(reader.detach(), writer.detach())

    def test_does_not_hold_up_the_window_when_it_is_a_terminal(self):
        self.fill_and_work(*os.openpty())

    def fill_and_work(self, reader, writer):
        self.addCleanup(os.close, reader)
        # The home trash cannot be made, so every try prints a line.
        self.session.make_folder("data")
        self.session.make_file("data/Trash")
        self.session.make_file("tree/file")
        self.session.open_display()
        self.session.start(self.session.path("tree"), self.session.home, stdout=writer)
        os.set_blocking(writer, False)
        try:
            while os.write(writer, b"x" * 100):
                pass
        except BlockingIOError:
            os.set_blocking(writer, True)
        os.close(writer)
        self.session.wait_for_window()
        self.left, self.right = left_and_right(self.session)
        for _ in range(3):
            self.session.keys("Down", "F8", "Return")
        self.expect_the_window_to_answer()
        self.session.keys("F10")
        self.assertEqual(self.session.end()[0], 0)


class SilentBus(WorkspaceCase):
    """A bus that takes the call and never says a word, and one that hangs up at once."""

    def serve(self, hangs_up):
        address = self.session.path("silent-bus")
        server = socket.socket(socket.AF_UNIX)
        server.bind(address)
        server.listen(20)
        self.addCleanup(server.close)
        taken = []

        def take():
            while True:
                try:
                    connection, _ = server.accept()
                except OSError:
                    return
                if hangs_up:
                    connection.close()
                else:
                    taken.append(connection)

        threading.Thread(target=take, daemon=True).start()
        self.addCleanup(lambda: [connection.close() for connection in taken])
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={address}"

    def expect_work_and_end(self, hangs_up):
        self.serve(hangs_up)
        self.install("xdg-open")
        self.open_window_on(self.folder)
        self.session.keys("ctrl+o", "ctrl+o")
        self.expect_the_window_to_answer()
        until(self.notes, "xdg-open is asked instead")
        self.session.keys("F10")
        status, output, _ = self.session.end()
        self.assertEqual((status, output), (0, ""))

    def test_that_never_answers_holds_up_neither_the_window_nor_its_end(self):
        self.expect_work_and_end(hangs_up=False)

    def test_that_hangs_up_holds_up_neither_the_window_nor_its_end(self):
        self.expect_work_and_end(hangs_up=True)
