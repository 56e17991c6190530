"""A virtual display with a window manager, a keyboard with accented letters and the folders of one user."""

import ctypes
import os
import re
import signal
import socket
import subprocess
import time
from pathlib import Path

PATIENCE = 20  # seconds for any condition; a busy machine is slow
LEFT, RIGHT = 1, 3  # buttons of the mouse

# Variables of the session that the story is started from, which must not reach into its own.
PERSONAL = re.compile("(?i)(QT_|XDG_|DBUS_|SESSION_|WAYLAND_|DISPLAY|XAUTHORITY|LANG|LC_|.*_proxy$)")


# The opened page is written to a file in the folder of temporary files.
BROWSER = '#!/bin/sh\necho "$1" >>"$TMPDIR/opened"\n'


class Failure(Exception):
    """Something did not come about; says what."""


def run(*command):
    """What the command prints. A failing one prints nothing that a caller would take for an answer."""
    try:
        return subprocess.run(command, capture_output=True, text=True, timeout=PATIENCE, check=False).stdout
    except OSError as error:
        raise Failure(f"{command[0]} cannot be started: {error.strerror}") from None
    except subprocess.TimeoutExpired:
        raise Failure(f"{command[0]} does not come back") from None


def wait_for(condition, what, patience=PATIENCE):
    """Waits until the condition holds, and returns what it gave."""
    end = time.monotonic() + patience
    while not (value := condition()):
        if time.monotonic() > end:
            raise Failure(f"waited {patience} s in vain for {what}")
        time.sleep(0.05)  # between two looks
    return value


def geometry(window):
    """Left, top, width and height of a window on the screen, without its frame."""
    text = run("xwininfo", "-id", window)
    names = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
    numbers = [re.search(rf"{name}: +(-?\d+)", text) for name in names]
    if not all(numbers):
        raise Failure(f"the window {window} has gone")
    return tuple(int(number.group(1)) for number in numbers)


def active_window():
    return run("xdotool", "getactivewindow").strip()


def click(x, y, button=LEFT, times=1):
    run("xdotool", "mousemove", str(x), str(y))
    repeated = ("--repeat", str(times), "--delay", "60") if times > 1 else ()
    run("xdotool", "click", *repeated, str(button))


def press(*names):
    run("xdotool", "key", *names)


def type_text(text):
    for number, line in enumerate(text.split("\n")):
        if number > 0:
            press("Return")
        run("xdotool", "type", line)


def picture(path):
    run("import", "-silent", "-window", "root", str(path))


def points(left, top, width, height):
    """Every point of a part of the screen, a line each: place and colour."""
    part = f"{width}x{height}+{left}+{top}"
    return run("import", "-silent", "-window", "root", "-crop", part, "+repage", "-depth", "8", "txt:-")


def signature(left, top, width, height):
    """A digest of a part of the screen, to tell whether it has changed."""
    part = f"{width}x{height}+{left}+{top}"
    return run("import", "-silent", "-window", "root", "-crop", part, "-format", "%#", "info:-")


def markers(creators):
    """The shared memory that these processes have left in the system."""
    table = [line.split() for line in Path("/proc/sysvipc/shm").read_text(encoding="ascii").splitlines()[1:]]
    return [int(columns[1]) for columns in table if int(columns[4]) in creators]


def die_with_the_story():
    """Has the system end this process with its parent, which may be killed before it can tidy up."""
    set_parent_death_signal = 1
    ctypes.CDLL(None).prctl(set_parent_death_signal, signal.SIGKILL)


class Desktop:
    """Everything that a program started in it sees; nothing of it outlives `end`."""

    # Its eyes and hands, which another kind of desktop has others in place of.
    geometry, active_window = staticmethod(geometry), staticmethod(active_window)
    click, press, type_text = staticmethod(click), staticmethod(press), staticmethod(type_text)
    picture, points, signature = staticmethod(picture), staticmethod(points), staticmethod(signature)

    def __init__(self, folder, screen="1400x860"):
        self.screen = screen
        self.processes = []
        self.folders = {name: folder / name for name in ("home", "config", "run", "tmp")}
        for path in self.folders.values():
            path.mkdir(mode=0o700)
        self.opened = self.folders["tmp"] / "opened"  # the pages that the browser was asked for
        browser = folder / "bin" / "xdg-open"
        browser.parent.mkdir()
        browser.write_text(BROWSER, encoding="ascii")
        browser.chmod(0o755)
        self.log = open(folder / "log", "w", encoding="utf-8")
        # Accepts and never answers, so that the update check stays on this machine.
        self.proxy = socket.create_server(("127.0.0.1", 0))
        self.environment = {name: value for name, value in os.environ.items() if not PERSONAL.match(name)} | {
            "PATH": f"{browser.parent}:{os.environ['PATH']}",
            "LC_ALL": "C.UTF-8",
            "QT_QPA_PLATFORM": "xcb",
            "HOME": str(self.folders["home"]),
            "XDG_CONFIG_HOME": str(self.folders["config"]),
            "XDG_RUNTIME_DIR": str(self.folders["run"]),
            # No bus, unless a story starts one here: without an address the program would start a bus of its own,
            # and where that cannot be, the library that tries leaks.
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.folders['run']}/bus",
            "TMPDIR": str(self.folders["tmp"]),
            "https_proxy": f"http://127.0.0.1:{self.proxy.getsockname()[1]}",
        }

    def start(self):
        self.start_screen()

    def start_screen(self):
        reader, writer = os.pipe()
        # Without -noreset the display starts anew, and drops whoever is just connecting, each time its last client goes.
        screen = ("-screen", "0", f"{self.screen}x24", "-nolisten", "tcp", "-noreset")
        self.spawn("Xvfb", "-displayfd", str(writer), *screen, pass_fds=(writer,))
        os.close(writer)
        with os.fdopen(reader) as numbers:
            display = numbers.readline().strip()
        if not display:
            raise Failure("the virtual display does not start")
        os.environ["DISPLAY"] = self.environment["DISPLAY"] = f":{display}"
        self.settle_keyboard()
        self.start_window_manager()

    def settle_keyboard(self):
        """Before there is anyone to be told: at each change of the keyboard the window manager lets go of all its keys
        and takes them again one by one, and a key pressed meanwhile goes to the program instead."""
        # A keyboard with every accented letter: xdotool makes up a key for one that is lacking, and the program learns
        # of such a key too late.
        run("setxkbmap", "-layout", "us", "-variant", "altgr-intl")
        # The first key counts as a change as well: the display turns to the keyboard that it comes from.
        press("Shift_L")

    def start_window_manager(self):
        started = self.folders["run"] / "window manager"
        # It has a name long before it takes windows and keys, and a window shown in between stays away for good.
        self.spawn("openbox", "--startup", f"touch '{started}'")
        wait_for(started.exists, "the window manager")

    def colour(self, x, y):
        """The colour of a point of the screen as six hexadecimal digits."""
        found = re.search(r"#([0-9A-F]{6})", self.points(x, y, 1, 1))
        return found and found.group(1)

    def opened_pages(self):
        return self.opened.read_text(encoding="utf-8").split() if self.opened.exists() else []

    def spawn(self, *command, **options):
        streams = {"stdin": subprocess.DEVNULL, "stdout": self.log, "stderr": self.log}
        try:
            process = subprocess.Popen(
                command, env=self.environment, preexec_fn=die_with_the_story, **streams, **options
            )
        except OSError as error:
            raise Failure(f"{command[0]} cannot be started: {error.strerror}") from None
        self.processes.append(process)
        return process

    def markers(self):
        return markers({process.pid for process in self.processes})

    def end(self):
        # In reverse: a program whose display goes first complains.
        for process in reversed(self.processes):
            process.kill()
            process.wait()
        self.proxy.close()
        self.log.close()
        remove = 0
        for marker in self.markers():
            ctypes.CDLL(None).shmctl(marker, remove, None)
