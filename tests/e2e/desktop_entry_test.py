"""The entry in the desktop's menu: what it starts, and that the window is recognised as belonging to it."""

import configparser
import os
import unittest

from workspace_test import WorkspaceCase

PACKAGING = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../packaging")
ENTRY = os.path.join(PACKAGING, "com.vantrel.Vantrel.desktop")


class DesktopEntry(WorkspaceCase):
    def test_starts_the_program_with_the_folders_that_are_opened(self):
        self.install("vantrel")
        folders = [self.session.make_folder("a name, 'with' %f"), self.session.make_folder("other")]
        path = self.environment["PATH"] + ":" + self.session.environment["PATH"]
        self.session.environment["PATH"] = path
        self.session.run("gio", "launch", ENTRY, *folders)
        note = self.only_note()
        self.assertEqual(note["program"], "vantrel")
        self.assertEqual([bytes.fromhex(argument).decode() for argument in note["arguments"]], folders)

    def test_is_found_for_folders(self):
        self.install("vantrel")
        applications = self.session.make_folder("data/applications")
        os.symlink(ENTRY, os.path.join(applications, os.path.basename(ENTRY)))
        self.session.run("update-desktop-database", applications)
        self.session.environment["PATH"] = self.session.path("bin") + ":" + self.session.environment["PATH"]
        found = self.session.run("gio", "mime", "inode/directory")
        self.assertIn(os.path.basename(ENTRY), found)

    def test_names_the_class_of_the_window(self):
        parser = configparser.RawConfigParser()
        parser.read(ENTRY, encoding="utf-8")
        self.open_window()
        window_class = self.session.run("xprop", "-id", self.session.window, "WM_CLASS")
        expected = parser["Desktop Entry"]["StartupWMClass"]
        self.assertEqual(window_class.strip().split(", ")[-1], f'"{expected}"')
        self.quit_and_expect_silence()


if __name__ == "__main__":
    unittest.main()
