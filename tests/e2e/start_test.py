"""How the program starts: its command line, its window, and what it prints."""

import os
import resource
import struct
import subprocess
import unittest
import zlib

from panels import left_and_right
from session import until
from window_case import WindowCase


class Start(WindowCase):
    def test_without_arguments_the_panels_show_the_working_directory_and_the_home_folder(self):
        here = self.session.make_tree("here", 4)
        self.session.make_tree("home", 7)
        self.open_window(cwd=here)
        self.left.expect_rows(4)
        self.right.expect_rows(7)
        self.left.expect_cursor(1, "active")
        self.right.expect_cursor(1, "inactive")
        self.quit_and_expect_silence()

    def test_one_argument_is_the_left_panels_folder(self):
        self.session.make_tree("home", 3)
        self.open_window(self.session.make_tree("five", 5))
        self.left.expect_rows(5)
        self.right.expect_rows(3)
        self.quit_and_expect_silence()

    def test_two_arguments_are_the_left_and_the_right_panels_folders(self):
        self.open_window(self.session.make_tree("five", 5), self.session.make_tree("eight", 8))
        self.left.expect_rows(5)
        self.right.expect_rows(8)
        self.quit_and_expect_silence()

    def test_further_arguments_are_ignored(self):
        self.open_window(self.session.make_tree("five", 5), self.session.make_tree("eight", 8), "/nowhere", "x")
        self.left.expect_rows(5)
        self.right.expect_rows(8)
        self.quit_and_expect_silence()

    def test_a_folder_that_does_not_exist_is_ignored_without_a_word(self):
        here = self.session.make_tree("here", 4)
        self.open_window(self.session.path("missing"), self.session.make_tree("eight", 8), cwd=here)
        self.left.expect_rows(4)
        self.right.expect_rows(8)
        self.quit_and_expect_silence()

    def test_a_leading_tilde_is_the_home_folder(self):
        self.session.make_tree("home/music", 6)
        self.open_window("~/music", "~")
        self.left.expect_rows(6)
        self.right.expect_rows(2)
        self.quit_and_expect_silence()

    def test_a_relative_folder_starts_at_the_working_directory(self):
        self.session.make_tree("here/inner", 6)
        self.open_window("inner", "../here", cwd=self.session.path("here"))
        self.left.expect_rows(6)
        self.right.expect_rows(2)
        self.quit_and_expect_silence()

    def test_a_folder_whose_name_is_not_utf8_is_opened(self):
        name = os.fsencode(self.session.path("caf")) + b"\xe9"
        os.mkdir(name)
        os.mkdir(name + b"/one")
        self.open_window(name)
        self.left.expect_rows(2)
        self.quit_and_expect_silence()

    def test_opens_although_the_working_directory_is_gone(self):
        gone = self.session.make_folder("gone")
        self.session.make_tree("home", 5)
        self.session.open_display()
        vantrel = os.path.join(self.session.programs, "vantrel")
        self.session.start_command(["sh", "-c", f'cd "$1" && rmdir "$1" && exec "{vantrel}"', "sh", gone])
        self.session.wait_for_window()
        self.session.keys("F10")
        status, _, errors = self.session.end()
        self.assertEqual((status, errors), (0, ""))

    def test_a_relative_folder_names_nothing_when_the_working_directory_is_gone(self):
        gone = self.session.make_folder("gone")
        self.session.make_tree("home", 7)
        from_the_root = self.session.make_tree("five", 5).lstrip("/")
        self.session.open_display()
        vantrel = os.path.join(self.session.programs, "vantrel")
        script = f'cd "$1" && rmdir "$1" && exec "{vantrel}" "$2" "$2"'
        self.session.start_command(["sh", "-c", script, "sh", gone, from_the_root])
        self.session.wait_for_window()
        self.left, self.right = left_and_right(self.session)
        self.right.expect_rows(7)
        self.quit_and_expect_silence()

    def test_opens_although_it_is_started_without_standard_descriptors(self):
        self.session.make_tree("home", 5)
        gone = self.session.make_folder("gone")
        self.session.open_display()
        vantrel = os.path.join(self.session.programs, "vantrel")
        self.session.start_command(["sh", "-c", f'exec "{vantrel}" "$1" <&- >&- 2>&-', "sh", gone])
        self.session.wait_for_window()
        self.left, self.right = left_and_right(self.session)
        self.right.expect_rows(5)
        for number in range(3):
            self.assertEqual(os.readlink(f"/proc/{self.session.program.pid}/fd/{number}"), "/dev/null")
        os.rmdir(gone)
        self.session.keys("ctrl+r")  # its line goes nowhere, above all not to the X server
        self.session.keys("Tab")
        self.right.expect_cursor(1, "active")
        self.quit_and_expect_silence()

    def expect_one_line_about(self, folder):
        self.open_window(folder)
        self.session.keys("F10")
        status, output, errors = self.session.end()
        self.assertEqual((status, errors), (0, ""))
        self.assertRegex(output, rf"\AError reading directory {folder}: .+\n\Z")

    def test_a_folder_that_cannot_be_read_costs_one_line_on_standard_output(self):
        self.expect_one_line_about(self.session.make_file("plain", 3))

    def test_a_folder_without_permission_costs_one_line_on_standard_output(self):
        if os.geteuid() == 0:
            self.skipTest("root may read everything")
        locked = self.session.make_folder("locked")
        os.chmod(locked, 0)
        self.expect_one_line_about(locked)

    def test_every_folder_ends_with_its_total(self):
        for number in range(1, 4):
            self.session.make_file(f"tree/a{number:02}/deep/er/file", 5000)
        self.open_window(self.session.path("tree"), self.session.path("home"))
        # The cursor's row is drawn in the cursor's colours.
        self.session.keys("Home")
        for row in (1, 2, 3):
            until(lambda row=row: self.left.has_size(row), f"row {row} shows its total")
        self.quit_and_expect_silence()


class Window(WindowCase):
    def test_has_its_title_its_size_and_the_whole_content(self):
        self.open_window()
        self.assertEqual(self.session.xdotool("getwindowname", self.session.window), "Vantrel - Orvane\n")
        self.assertEqual((self.session.width, self.session.height), (1100, 720))
        self.quit_and_expect_silence()

    def test_shrinks_to_800_by_500_and_no_further(self):
        self.open_window()
        hints = self.session.run("xprop", "-id", self.session.window, "WM_NORMAL_HINTS")
        self.assertIn(f"program specified minimum size: 800 by {500 + self.session.menu_bar_height}", hints)
        self.session.xdotool("windowsize", self.session.window, "300", "200")
        until(lambda: self.session.is_painted() and (self.session.width, self.session.height) == (800, 500), "800x500")
        self.quit_and_expect_silence()

    def test_the_content_follows_the_windows_size(self):
        self.open_window()
        self.session.xdotool("windowsize", self.session.window, "1000", "640")
        until(lambda: self.session.is_painted() and self.session.width == 1000, "1000 wide")
        # The last function key cell ends ten points before the right edge, whatever the width.
        y = self.session.y + self.session.height - 5
        until(lambda: self.session.screen.pixel(self.session.x + 985, y) == (0, 171, 171), "a cell near the right edge")
        self.quit_and_expect_silence()

    def test_stands_in_the_middle_of_the_screen(self):
        self.open_window()
        self.assertAlmostEqual(self.session.x + 550, 640, delta=2)
        self.assertAlmostEqual(self.session.y + (720 - self.session.menu_bar_height) / 2, 450, delta=30)
        self.quit_and_expect_silence()


def plain_png(side, colour):
    """A square of one colour, (red, green, blue), as a PNG file."""

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">2I5B", side, side, 8, 2, 0, 0, 0)
    lines = (b"\0" + bytes(colour) * side) * side
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines)) + chunk(b"IEND", b"")


class Icon(WindowCase):
    def icon(self):
        """The window's icon for window managers and task bars, {side: {(x, y): colour}}."""
        answer = self.session.run("xprop", "-id", self.session.window, "-notype", "32c", "_NET_WM_ICON")
        numbers = [int(number) for number in answer.partition("=")[2].split(",")]
        pictures = {}
        while numbers:
            width, height = numbers[:2]
            self.assertEqual(width, height)
            pixels, numbers = numbers[2 : 2 + width * height], numbers[2 + width * height :]
            pictures[width] = {(place % width, place // width): pixel for place, pixel in enumerate(pixels)}
        return pictures

    def test_is_the_programs_own_in_several_sizes(self):
        self.open_window()
        pictures = self.icon()
        self.assertEqual(sorted(pictures), [16, 32, 48, 64, 128])
        # The ground between the panels, a size, the cursor's bar, and the corner outside.
        expected = {(24, 24): 0xFF0000A8, (7, 19): 0xFFFFFF55, (16, 12): 0xFF00ABAB, (0, 0): 0}
        self.assertEqual({place: pictures[48][place] for place in expected}, expected)
        self.quit_and_expect_silence()

    def test_is_the_one_of_the_icon_theme_where_that_has_one(self):
        theme = "data/icons/hicolor"
        pictures = self.session.make_folder(f"{theme}/48x48/apps")
        with open(self.session.path(f"{theme}/index.theme"), "w", encoding="ascii") as file:
            file.write("[Icon Theme]\nName=hicolor\nComment=\nDirectories=48x48/apps\n[48x48/apps]\nSize=48\n")
        with open(os.path.join(pictures, "com.vantrel.Vantrel.png"), "wb") as file:
            file.write(plain_png(48, (255, 0, 0)))
        self.open_window()
        self.assertEqual(set(self.icon()[48].values()), {0xFFFF0000})
        self.quit_and_expect_silence()


class WithoutAWindow(WindowCase):
    def test_help_and_version_need_no_display(self):
        for option, expected in (("--help", "Usage: vantrel [LEFT [RIGHT]]"), ("--version", "vantrel ")):
            self.session.start(option)
            status, output, errors = self.session.end()
            self.assertEqual((status, errors), (0, ""))
            self.assertTrue(output.startswith(expected), output)

    def test_an_answer_that_cannot_be_written_is_a_failure(self):
        for program in ("vantrel", "vantrel-snapshot"):
            for option in ("--help", "--version"):
                with open("/dev/full", "w", encoding="ascii") as full:
                    answer = self.run_program(program, option, stdout=full)
                self.assertEqual(answer, (1, None, f"{program}: standard output: No space left on device\n"))

    def test_without_a_display_it_says_so_in_one_line_and_ends_with_1(self):
        for display in ({}, {"DISPLAY": ":987"}, {"WAYLAND_DISPLAY": "nowhere"}):
            self.session.start(extra_environment=display)
            status, output, errors = self.session.end()
            self.assertEqual((status, output), (1, ""))
            self.assertRegex(errors, r"\Avantrel: no display .+\n\Z")

    def run_program(self, name, *arguments, stdout=subprocess.PIPE):
        """(exit status, standard output, standard error)"""
        result = subprocess.run(
            [os.path.join(self.session.programs, name), *arguments],
            env=self.session.environment,
            stdout=stdout,
            stderr=subprocess.PIPE,
            text=True,
            timeout=60,
            check=False,
        )
        return result.returncode, result.stdout, result.stderr

    def test_the_snapshot_is_a_picture_of_the_asked_size(self):
        picture = self.session.path("picture.png")
        answer = self.run_program(
            "vantrel-snapshot", self.session.folder, "-o", picture, "--size", "800x500", "--scale", "2"
        )
        self.assertEqual(answer, (0, picture + "\n", ""))
        with open(picture, "rb") as file:
            header = file.read(24)
        self.assertEqual(header[:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual(int.from_bytes(header[16:20], "big"), 1600)
        self.assertEqual(int.from_bytes(header[20:24], "big"), 1000)

    def test_the_snapshot_does_with_the_one_thread_that_it_has(self):
        nobody = 65534
        self.session.make_file("tree/deep/er/file", 5000)
        folder = self.session.path("tree")
        picture = os.path.join(self.session.make_folder("pictures"), "picture.png")
        if os.geteuid() == 0:  # root has no such limit
            os.chmod(os.path.dirname(picture), 0o777)
            os.chmod(self.session.folder, 0o755)
        environment = {**self.session.environment, "HOME": folder}

        def become_ordinary_and_alone():
            if os.geteuid() == 0:
                os.setgroups([])
                os.setresgid(nobody, nobody, nobody)
                os.setresuid(nobody, nobody, nobody)
            resource.setrlimit(resource.RLIMIT_NPROC, (1, 1))

        try:
            answer = subprocess.run(
                [os.path.join(self.session.programs, "vantrel-snapshot"), folder, "-o", picture],
                env=environment,
                preexec_fn=become_ordinary_and_alone,
                capture_output=True,
                text=True,
                timeout=60,
                check=False,
            )
        except PermissionError:
            self.skipTest("an ordinary user may not run the program here")
        self.assertEqual((answer.returncode, answer.stdout), (0, picture + "\n"), answer.stderr)
        self.assertNotIn("still being counted", answer.stderr)

    def test_the_snapshot_presses_no_key_that_it_does_not_know(self):
        picture = self.session.path("picture.png")
        for key in ("Dwon", "F5, Down", ""):
            answer = self.run_program("vantrel-snapshot", self.session.folder, "-o", picture, "--press", key)
            self.assertEqual(answer, (2, "", f'vantrel-snapshot: no key is called "{key}"\n'))
            self.assertFalse(os.path.exists(picture))


if __name__ == "__main__":
    unittest.main()
