"""One X server, one window manager and one vantrel, private to one test."""

import contextlib
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time

from screen import Screen

LIMIT = 30  # seconds; only a hanging program ever waits so long
TITLE = "Vantrel - Orvane"


def until(condition, what):
    """Polls until `condition()` is true and returns its value."""
    end = time.monotonic() + LIMIT
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain: {what}")
        time.sleep(0.01)


def settled(look):
    """Polls until `look()` gives the same answer ten times in a row, and returns it."""
    answers = []

    def repeats():
        answers.append(look())
        return len(answers) >= 10 and all(answer == answers[-1] for answer in answers[-10:])

    until(repeats, "the picture keeps changing")
    return answers[-1]


class Session:
    programs = None  # the folder of the programs, set by the runner

    def __init__(self):
        self.folder = os.path.realpath(tempfile.mkdtemp(prefix="vantrel-window-"))
        self.processes = []
        self.home = self.make_folder("home")
        runtime = self.make_folder("runtime")
        os.chmod(runtime, 0o700)
        self.environment = {
            "HOME": self.home,
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "TZ": "UTC",
            "XDG_RUNTIME_DIR": runtime,
            "XDG_CONFIG_HOME": self.make_folder("config"),
            "XDG_CACHE_HOME": self.make_folder("cache"),
            "XDG_DATA_HOME": self.make_folder("data"),
        }
        # Tells a program built with a sanitizer how strict to be.
        for name, value in os.environ.items():
            if name.endswith("SAN_OPTIONS"):
                self.environment[name] = value
        self.program = None
        self.outputs = []
        self.window = None
        self.screen = None

    # Files of the test.

    def path(self, name):
        return os.path.join(self.folder, name)

    def make_folder(self, name):
        os.makedirs(self.path(name), exist_ok=True)
        return self.path(name)

    def make_file(self, name, size=0):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        with open(self.path(name), "wb") as file:
            file.write(b"x" * size)
        return self.path(name)

    def make_tree(self, name, rows):
        """A folder that shows `rows` rows: ".." and sub-folders a01, a02, ..."""
        self.make_folder(name)
        for number in range(1, rows):
            self.make_folder(f"{name}/a{number:02}")
        return self.path(name)

    # Programs.

    def spawn(self, command, **options):
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, **options)
        self.processes.append(process)
        return process

    def spawn_talking(self, command):
        """A program that is asked through its standard input and answers through its standard output."""
        process = subprocess.Popen(
            command,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            env=self.environment,
        )
        self.processes.append(process)
        return process

    def start_bus(self):
        """A session bus of the test's own, for every program that is started afterwards."""
        process = self.spawn(
            ["dbus-daemon", "--session", "--nofork", "--print-address"],
            env=self.environment,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
        )
        assert select.select([process.stdout], [], [], LIMIT)[0], "the bus does not start"
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = process.stdout.readline().decode().strip()
        process.stdout.close()

    def open_display(self, manager="openbox", size="1280x900"):
        """Starts the X server, with that window manager or with none."""
        read, write = os.pipe()
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        self.spawn(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{size}x24", "-nolisten", "tcp"]
            # Or the server would reset, and refuse programs meanwhile, whenever the last one leaves.
            + ["-noreset", "-nocursor", "-fbdir", self.folder],
            pass_fds=[write],
            **quiet,
        )
        os.close(write)
        with os.fdopen(read) as ready:
            assert select.select([ready], [], [], LIMIT)[0], "Xvfb does not start"
            self.environment["DISPLAY"] = ":" + ready.readline().strip()
        if manager is not None:
            self._start_manager(manager)
        self.screen = Screen(self.path("Xvfb_screen0"))

    def _start_manager(self, manager):
        """Starts the window manager and waits until it manages windows."""
        managed = self.path("managed")
        os.mkfifo(managed)
        fifo = os.open(managed, os.O_RDONLY | os.O_NONBLOCK)
        when_ready = f"sh -c 'echo > {managed}'"
        with open(self.path("i3.conf"), "w", encoding="ascii") as file:
            file.write(f"# i3 config file (v4)\nexec {when_ready}\nfont pango:monospace 8\ndefault_border none\n")
        commands = {
            "openbox": ["openbox", "--sm-disable", "--startup", when_ready],
            "i3": ["i3", "-c", self.path("i3.conf")],
        }
        self.spawn(
            commands[manager], env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
        )
        assert select.select([fifo], [], [], LIMIT)[0], f"{manager} does not start"
        os.close(fifo)

    def start(self, *arguments, cwd=None, extra_environment=None, stdout=None):
        """Starts the program without waiting for anything."""
        command = [os.path.join(self.programs, "vantrel"), *arguments]
        self.start_command(command, cwd, extra_environment, stdout)

    def start_command(self, command, cwd=None, extra_environment=None, stdout=None, **options):
        self._close_outputs()
        self.outputs = [open(self.path(name), "w+b") for name in ("stdout", "stderr")]
        self.program = self.spawn(
            command,
            cwd=cwd or self.folder,
            env={**self.environment, **(extra_environment or {})},
            stdout=stdout or self.outputs[0],
            stderr=self.outputs[1],
            **options,
        )

    def open_window(self, *arguments, **options):
        """Starts the program and waits until its window is painted and has the keyboard."""
        if self.screen is None:
            self.open_display()
        self.start(*arguments, **options)
        self.wait_for_window()

    def wait_for_window(self):
        self.window = until(self._visible_window, "the window appears")
        until(lambda: self.xdotool("getwindowfocus").strip() == self.window, "the window has the keyboard")
        until(self.is_painted, "the window is painted")

    def _visible_window(self):
        assert self.program.poll() is None, f"ended with {self.program.poll()}"
        found = self.xdotool("search", "--onlyvisible", "--name", f"^{TITLE}$", check=False).split()
        return found[0] if found else None

    def geometry(self, window):
        """x, y, width and height on the screen, without the frame. (xdotool counts the frame twice.)"""
        numbers = {}
        for line in self.run("xwininfo", "-id", window).splitlines():
            name, _, value = line.strip().partition(":")
            numbers[name] = value.strip()
        names = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        return tuple(int(numbers[name]) for name in names)

    def is_painted(self):
        """Finds the window's content: x, y, width, height. False while it is not painted."""
        self.x, top, self.width, window_height = self.geometry(self.window)
        # The content begins where the menu bar line of its own begins, below the native menu bar.
        for height in range(60):
            if self.screen.pixel(self.x + 2, top + height) == (171, 171, 171):
                self.menu_bar_height = height
                self.y, self.height = top + height, window_height - height
                return True
        return False

    def run(self, *command, check=True):
        result = subprocess.run(
            command, env=self.environment, capture_output=True, text=True, timeout=LIMIT, check=False
        )
        assert result.returncode == 0 or not check, f"{command} failed: {result.stderr}"
        return result.stdout

    def xdotool(self, *arguments, check=True):
        return self.run("xdotool", *arguments, check=check)

    def keys(self, *names):
        self.xdotool("key", "--clearmodifiers", *names)

    @contextlib.contextmanager
    def stopped(self):
        """Stops the program: what is typed and clicked inside the block waits until it goes on."""
        self.program.send_signal(signal.SIGSTOP)
        until(lambda: self.state_of_program() == "T", "the program is stopped")
        try:
            yield
        finally:
            self.program.send_signal(signal.SIGCONT)

    def state_of_program(self):
        """The letter for the state in /proc, see proc(5)."""
        with open(f"/proc/{self.program.pid}/stat", encoding="ascii") as file:
            return file.read().rpartition(")")[2].split()[0]

    def hold(self, key):
        """Holds a key for longer than it takes to repeat, and some of the repeats."""
        self.xdotool("keydown", key)
        time.sleep(1.2)
        self.xdotool("keyup", key)

    def click(self, x, y, button=1, count=1):
        """Clicks at a place in the window's content."""
        self.xdotool("mousemove", str(self.x + int(x)), str(self.y + int(y)))
        self.xdotool("click", "--repeat", str(count), "--delay", "40", str(button))

    def press_until_end(self, key):
        """Presses the key once a second until the program has ended."""

        def ends():
            self.keys(key)
            try:
                return self.program.wait(1) is not None
            except subprocess.TimeoutExpired:
                return False

        until(ends, f"{key} ends the program")

    def end(self):
        """Waits for the program's end; (exit status, standard output, standard error)."""
        try:
            status = self.program.wait(LIMIT)
        except subprocess.TimeoutExpired as error:
            raise AssertionError("the program does not end") from error
        texts = []
        for file in self.outputs:
            file.seek(0)
            texts.append(file.read().decode("utf-8", "backslashreplace"))
        return (status, *texts)

    def _close_outputs(self):
        for file in self.outputs:
            file.close()

    def close(self):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.send_signal(signal.SIGKILL if process is self.program else signal.SIGTERM)
            process.wait()
        self._close_outputs()
        if self.screen is not None:
            self.screen.close()
        for folder, names, _ in os.walk(self.folder):
            for name in names:
                if not os.path.islink(os.path.join(folder, name)):
                    os.chmod(os.path.join(folder, name), 0o700)
        shutil.rmtree(self.folder)
