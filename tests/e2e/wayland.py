"""A private Wayland compositor without a screen, with two outputs, and one vantrel in it."""

import os
import shutil
import stat
import subprocess
import time

from session import LIMIT, TITLE, Session, until

PROGRAMS = ("sway", "swaymsg", "grim", "wtype")
QT_PLUGIN = "platforms/libqwayland-generic.so"
FIRST, SECOND = "HEADLESS-1", "HEADLESS-2"
WIDTH, HEIGHT = 1280, 800
NOBODY = 65534

CONFIGURATION = f"""output * resolution {WIDTH}x{HEIGHT}
workspace 1 output {FIRST}
workspace 2 output {SECOND}
default_border none
focus_follows_mouse no
"""


def missing():
    """What keeps the tests from running, or nothing."""
    absent = [program for program in PROGRAMS if not shutil.which(program)]
    if absent:
        return f"{', '.join(absent)} not installed"
    plugins = subprocess.run(["qtpaths6", "--plugin-dir"], capture_output=True, text=True, check=False).stdout.strip()
    if plugins and not os.path.exists(os.path.join(plugins, QT_PLUGIN)):
        return "qt6-wayland is not installed"
    return None


class Picture:
    """An output's pixels, from a PPM."""

    def __init__(self, ppm):
        magic, size, depth, self.pixels = ppm.split(b"\n", 3)
        assert (magic, depth) == (b"P6", b"255"), ppm[:20]
        self.width, self.height = map(int, size.split())

    def pixel(self, x, y):
        at = 3 * (y * self.width + x)
        return tuple(self.pixels[at : at + 3])


class WaylandSession(Session):
    def open_compositor(self):
        runtime = self.environment["XDG_RUNTIME_DIR"]
        configuration = self.path("sway.conf")
        with open(configuration, "w", encoding="ascii") as file:
            file.write(CONFIGURATION)
        command = ["sway", "-c", configuration]
        if os.geteuid() == 0:
            # The compositor refuses to run as root. Root's own programs may talk to it nevertheless.
            os.chmod(self.folder, stat.S_IMODE(os.stat(self.folder).st_mode) | 0o011)
            os.chown(runtime, NOBODY, NOBODY)
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", *command]
        self.spawn(
            command,
            env={
                **self.environment,
                "WLR_BACKENDS": "headless",
                "WLR_HEADLESS_OUTPUTS": "2",
                "WLR_LIBINPUT_NO_DEVICES": "1",
                "WLR_RENDERER": "pixman",
            },
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )

        def socket(prefix, suffix):
            return next((n for n in os.listdir(runtime) if n.startswith(prefix) and n.endswith(suffix)), None)

        control = until(lambda: socket("sway-ipc.", ".sock"), "the compositor starts")
        self.environment["SWAYSOCK"] = os.path.join(runtime, control)
        until(lambda: self.tells("-t", "get_outputs"), "the compositor answers")
        self.environment["WAYLAND_DISPLAY"] = until(
            lambda: next((n for n in os.listdir(runtime) if n.startswith("wayland-") and "." not in n), None),
            "the compositor's socket",
        )

    def tells(self, *arguments):
        return self.run("swaymsg", *arguments, check=False)

    def command(self, *words):
        self.run("swaymsg", "--", *words)

    def key_until(self, name, condition, what):
        """Presses a key again until it has had its effect, since a virtual keyboard that exits at once may take its
        key along. Only for keys that may come twice."""
        end = time.monotonic() + LIMIT
        while not condition():
            assert time.monotonic() < end, f"waited in vain: {what}"
            self.run("wtype", "-k", name)

    def window_is_there(self):
        assert self.program.poll() is None, f"ended with {self.program.poll()}"
        return f'"name": "{TITLE}"' in self.tells("-t", "get_tree")

    def picture(self, output):
        ppm = subprocess.run(
            ["grim", "-t", "ppm", "-o", output, "-"], env=self.environment, capture_output=True, check=True
        ).stdout
        return Picture(ppm)
