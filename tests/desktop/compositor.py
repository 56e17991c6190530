"""A Wayland compositor without a screen: the windows that it knows, and the hands and eyes of its user."""

import json
import os
import re
from itertools import chain

from desktop import LEFT, Failure, run, wait_for
from desks import SCREEN_HEIGHT
from hands import Hands
from session import Session

SCREEN_WIDTH = 1400
SETTINGS = """xwayland disable
output HEADLESS-1 mode {width}x{height} scale {scale} bg #556677 solid_color
default_floating_border none
for_window [title="^Nubaria$"] floating enable, move position 100 60
bindsym Mod1+F4 kill
"""
AS_SOMEBODY = ("unshare", "--user", "--map-user=1000", "--map-group=1000")  # the compositor does not run for root
ASIDE = (1399, 0)  # there is nothing
REACH = 480  # how far what is watched goes to the right and down


def span(row, other):
    """The first and the last point in which two rows differ."""
    differing = [place // 3 for place, (one, another) in enumerate(zip(row, other)) if one != another]
    return differing[0], differing[-1]


class WaylandSession(Session):
    """A compositor without a screen, and a client of it that stands for the user's hands."""

    def __init__(self, folder, program, scale=1):
        super().__init__(folder, program)
        self.scale = scale
        self.hands = None
        self.seen, self.watched, self.kept = folder / "seen.ppm", None, None
        del self.environment["QT_QPA_PLATFORM"]  # the program finds out by itself where it is
        self.environment |= {
            "XDG_SESSION_TYPE": "wayland",
            "WLR_BACKENDS": "headless",
            "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_RENDERER": "pixman",
        }

    def start_screen(self):
        settings, answers = self.folders["config"] / "sway", self.folders["run"] / "sway"
        size = {"width": self.scale * SCREEN_WIDTH, "height": self.scale * SCREEN_HEIGHT}
        settings.write_text(SETTINGS.format(**size, scale=self.scale), encoding="ascii")
        os.environ["SWAYSOCK"] = self.environment["SWAYSOCK"] = str(answers)
        self.spawn(*(AS_SOMEBODY if os.getuid() == 0 else ()), "sway", "--config", str(settings))
        wait_for(lambda: self.ask("get_outputs"), "the compositor")
        display = next(path for path in self.folders["run"].glob("wayland-*") if path.is_socket())
        os.environ["WAYLAND_DISPLAY"] = self.environment["WAYLAND_DISPLAY"] = str(display)
        self.hands = Hands(display, SCREEN_WIDTH, SCREEN_HEIGHT)

    # Windows, as the compositor knows them: those that only pop up are not among them

    def ask(self, what):
        return json.loads(run("swaymsg", "--raw", "--type", what) or "null")

    def windows(self):
        waiting = [self.ask("get_tree")]
        while waiting:
            one = waiting.pop()
            if one.get("pid"):
                yield one
            waiting += one["nodes"] + one["floating_nodes"]

    def window(self, number):
        found = next((one for one in self.windows() if one["id"] == number), None)
        if not found:
            raise Failure(f"the window {number} has gone")
        return found

    def is_urgent(self, window):
        return self.window(window)["urgent"]

    def geometry(self, window):
        """Left, top, width and height of a window on the screen, without its frame."""
        found = self.window(window)
        frame, inside = found["rect"], found["window_rect"]
        return frame["x"] + inside["x"], frame["y"] + inside["y"], inside["width"], inside["height"]

    def go_to_workspace(self, number):
        run("swaymsg", "workspace", "number", str(number))

    def active_window(self):
        return next((one["id"] for one in self.windows() if one["focused"]), None)

    # Hands

    def point_at(self, x, y):
        self.hands.point_at(x, y)

    def click(self, x, y, button=LEFT, times=1):
        self.hands.point_at(x, y)
        self.hands.click(button, times)

    def press(self, *names):
        for name in names:
            self.hands.press(name)

    def type_text(self, text):
        self.press(*("Return" if letter == "\n" else "space" if letter == " " else letter for letter in text))

    # Eyes. Everything is measured in the points of a screen of scale 1.

    def picture(self, path):
        run("grim", "-l", "1", str(path))

    def look(self, left, top, width, height):
        """A part of the screen as rows of three bytes a point."""
        run("grim", "-t", "ppm", "-g", f"{left},{top} {width}x{height}", str(self.seen))
        if not self.seen.exists():
            raise Failure("the compositor lets nothing be seen")
        points = re.fullmatch(rb"P6\s+\d+\s+\d+\s+255\s(.*)", self.seen.read_bytes(), re.DOTALL).group(1)
        self.seen.unlink()
        step = 3 * self.scale
        rows = (points[start:start + step * width] for start in range(0, len(points), step * width * self.scale))
        return [bytes(chain(*zip(row[0::step], row[1::step], row[2::step]))) for row in rows]

    def points(self, left, top, width, height):
        self.point_at(*ASIDE)  # the mouse is drawn into what is seen
        rows = enumerate(self.look(left, top, width, height))
        places = ((x, y, row[3 * x:3 * x + 3].hex().upper()) for y, row in rows for x in range(width))
        return "\n".join(f"{x},{y}: #{colour}" for x, y, colour in places)

    def watch(self, left, top):
        """From now on, `changed` tells of the part of the screen that begins here."""
        self.watched = left, top, min(REACH, SCREEN_WIDTH - left), min(REACH, SCREEN_HEIGHT - top)
        self.kept = self.look(*self.watched)

    def changed(self):
        """Left, top, width and height of what is to be seen and was not, or None."""
        pairs = enumerate(zip(self.kept, self.look(*self.watched)))
        spans = [(y, *span(row, other)) for y, (row, other) in pairs if row != other]
        if not spans:
            return None
        rows, firsts, lasts = zip(*spans)
        left, top = self.watched[0] + min(firsts), self.watched[1] + rows[0]
        return left, top, max(lasts) - min(firsts) + 1, rows[-1] - rows[0] + 1
