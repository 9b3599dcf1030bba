"""The base of the tests with other applications, all of which are fakes."""

import json
import os
import re
import signal
import sys
import urllib.parse

from session import until
from window_case import WindowCase

DESKTOP_FILE = """[Desktop Entry]
Type=Application
Name=Fake
Exec={program} %f
MimeType=text/plain;
"""


class WorkspaceCase(WindowCase):
    """The program finds no other programs than the fakes that a test installs."""

    def setUp(self):
        super().setUp()
        self.session.make_folder("bin")
        self.notes_folder = self.session.make_folder("notes")
        self.folder = os.fsencode(self.session.make_folder("tree")) + b"/caf\xe9 $(touch x) 'q\" %41"
        os.mkdir(self.folder)
        self.environment = {"PATH": self.session.path("bin"), "XDG_DATA_DIRS": self.session.path("nothing")}
        self.addCleanup(self.stop_fakes)

    def install(self, *names):
        here = os.path.dirname(os.path.abspath(__file__))
        for name in names:
            path = self.session.path(f"bin/{name}")
            with open(path, "w", encoding="utf-8") as script:
                script.write(f"#!{sys.executable} -BIS\n")
                with open(os.path.join(here, "fake_program.py"), encoding="utf-8") as source:
                    script.write(source.read())
            os.chmod(path, 0o755)

    def install_default_application(self, name):
        self.install(name)
        applications = self.session.make_folder("data/applications")
        with open(f"{applications}/fake.desktop", "w", encoding="ascii") as file:
            file.write(DESKTOP_FILE.format(program=self.session.path(f"bin/{name}")))
        with open(self.session.path("config/mimeapps.list"), "w", encoding="ascii") as file:
            file.write("[Default Applications]\ntext/plain=fake.desktop\n")

    def let_fakes_stay(self):
        self.session.make_file("stay")

    def notes(self):
        notes = []
        for name in sorted(os.listdir(self.notes_folder)):
            if not name.startswith("."):
                with open(os.path.join(self.notes_folder, name), encoding="ascii") as file:
                    notes.append(json.load(file))
        return notes

    def only_note(self):
        until(self.notes, "a program is started")
        (note,) = self.notes()
        return note

    def stop_fakes(self):
        for note in self.notes():
            try:
                os.kill(note["pid"], signal.SIGKILL)
            except ProcessLookupError:
                pass

    def provide_file_manager(self, answer):
        """Installs a file manager that the bus itself finds and starts."""
        services = self.session.make_folder("data/dbus-1/services")
        program = os.path.join(self.session.programs, "fake-file-manager")
        with open(f"{services}/manager.service", "w", encoding="ascii") as file:
            file.write("[D-BUS Service]\nName=org.freedesktop.FileManager1\n")
            file.write(f"Exec={program} {self.session.path('shown')} {answer}\n")

    def shown(self):
        try:
            with open(self.session.path("shown"), encoding="utf-8") as file:
                return file.read()
        except FileNotFoundError:
            return ""

    def open_window_on(self, folder):
        self.open_window(folder, self.session.home, extra_environment=self.environment)

    def expect_the_window_to_answer(self):
        self.session.keys("Tab")
        self.right.expect_cursor(0, "active")
        self.session.keys("Tab")
        self.right.expect_cursor(0, "inactive")

    def expect_well_started(self, note, arguments, folder):
        self.assertEqual([bytes.fromhex(argument) for argument in note["arguments"]], arguments)
        self.assertEqual(bytes.fromhex(note["folder"]), folder)
        self.assertNotEqual(note["session"], os.getsid(self.session.program.pid))
        standard = {number: target for number, target in note["descriptors"].items() if number in ("0", "1", "2")}
        self.assertEqual(standard, {"0": "/dev/null", "1": "/dev/null", "2": "/dev/null"})
        others = [target for number, target in note["descriptors"].items() if number not in standard]
        self.assertFalse([target for target in others if re.match("socket|pipe|anon", target)], "inherited from us")
        self.assertNotEqual(note["parent"], self.session.program.pid)

    def expect_no_children(self):
        def children():
            found = []
            for name in os.listdir("/proc"):
                if name.isdigit():
                    try:
                        with open(f"/proc/{name}/stat", "rb") as file:
                            parent = file.read().rsplit(b")", 1)[1].split()[1]
                    except OSError:
                        continue
                    if int(parent) == self.session.program.pid:
                        found.append(name)
            return found

        until(lambda: not children(), "no child is left")

    def url_of(self, path):
        return ("file://" + urllib.parse.quote(path)).encode()
