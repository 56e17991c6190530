#!/usr/bin/python3 -B
"""The window fits its screen: where it would not, it is shown at a lower scale.

Usage: screens.py PROGRAM PICTURES

Runs on a display of its own for each screen and leaves a picture of each. Ends with 1 and one line on the first window
that is not as large as promised, or not within its work area. Needs Xvfb, openbox, xdotool, ImageMagick, the X utilities
and python3-xlib.
"""

import contextlib
import re
import shutil
import signal
import sys
import tempfile
from pathlib import Path
from typing import NamedTuple

from Xlib import X, Xatom, Xutil, display

from desktop import Desktop, Failure, run, wait_for
from nubaria import Nubaria

WIDTH, HEIGHT = 1250, 700


class Case(NamedTuple):
    """A screen with its scale, a panel along its lower edge, and the scale that the window is shown at."""

    screen: str
    percent: int
    panel: int
    shown: float
    by_hand: str = ""  # what the user has set QT_SCALE_FACTOR to


CASES = (
    Case("1920x1080", 150, 72, 1.25),
    Case("1920x1080", 125, 60, 1.25),
    Case("1920x1200", 175, 84, 1.5),
    Case("2560x1440", 200, 96, 1.75),
    Case("2560x1440", 150, 0, 1.5),
    Case("1280x800", 100, 48, 1),  # the least that the manual asks for
    Case("1366x768", 100, 0, 1),
    Case("1366x768", 100, 36, 1),
    Case("1366x768", 125, 30, 1),
    Case("1920x1080", 150, 72, 1.8, "1.2"),
)


@contextlib.contextmanager
def shown_panel(height):
    """A window of the kind that others keep clear of, along the lower edge."""
    work_area()  # which is told when the window manager is about to look at windows
    screen = display.Display()
    root = screen.screen().root
    size = root.get_geometry()
    panel = root.create_window(0, size.height - height, size.width, height, 0, X.CopyFromParent, background_pixel=0x405060)
    panel.change_property(screen.intern_atom("_NET_WM_WINDOW_TYPE"), Xatom.ATOM, 32,
                          [screen.intern_atom("_NET_WM_WINDOW_TYPE_DOCK")])
    panel.change_property(screen.intern_atom("_NET_WM_STRUT"), Xatom.CARDINAL, 32, [0, 0, 0, height])
    panel.set_wm_normal_hints(flags=Xutil.USPosition)
    panel.map()
    screen.sync()
    wait_for(lambda: work_area()[3] == size.height - height, "the work area")
    yield
    screen.close()


def four_numbers(*command):
    """The first four of a property that is told by this command; waits until there are as many."""

    def told():
        numbers = re.findall(r"\d+", run(*command).partition("=")[2])
        return [int(number) for number in numbers[:4]] if len(numbers) >= 4 else None

    return wait_for(told, command[-1])


def work_area():
    """Left, top, width and height of what panels leave."""
    return four_numbers("xprop", "-root", "_NET_WORKAREA")


def frame(window):
    """How far the window manager's frame goes beyond the window: left, right, top, bottom."""
    return four_numbers("xprop", "-id", window, "_NET_FRAME_EXTENTS")


def try_screen(program, desktop, case, pictures):
    desktop.start()
    dots = round(96 * case.percent / 100)
    run("xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER", f"Xft.dpi:\t{dots}\n")
    if case.by_hand:
        desktop.environment["QT_SCALE_FACTOR"] = case.by_hand
    with shown_panel(case.panel) if case.panel else contextlib.nullcontext():
        nubaria = Nubaria(program, desktop)
        nubaria.start()
        desktop.picture(pictures / f"{case.screen}-{case.percent}{'-by-hand' if case.by_hand else ''}.png")
        left, top, width, height = desktop.geometry(nubaria.window)
        if (width, height) != (int(WIDTH * case.shown + 0.5), int(HEIGHT * case.shown + 0.5)):
            raise Failure(f"{case}: the window is {width} by {height}")
        edges, area = frame(nubaria.window), work_area()
        inside = (left - edges[0] >= area[0] and left + width + edges[1] <= area[0] + area[2]
                  and top - edges[2] >= area[1] and top + height + edges[3] <= area[1] + area[3])
        if not inside and not case.by_hand:
            raise Failure(f"{case}: the window at {left}, {top} is not within {area}")


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    program, pictures = str(Path(sys.argv[1]).resolve()), Path(sys.argv[2])
    pictures.mkdir(parents=True, exist_ok=True)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    for case in CASES:
        folder = Path(tempfile.mkdtemp(prefix="ns"))
        desktop = Desktop(folder, screen=case.screen)
        try:
            try_screen(program, desktop, case, pictures)
        except Failure as failure:
            print(f"screens.py: {failure}", file=sys.stderr)
            return 1
        finally:
            desktop.end()
            shutil.rmtree(folder)
    return 0


if __name__ == "__main__":
    sys.exit(main())
