#!/usr/bin/python3 -B
"""A user's days with the built program on four kinds of desktop: what its tray icon, notices and reminders do there.

Usage: worlds.py PROGRAM PICTURES [notifier|embedder|bare|wayland|wayland-2x]...

Each desktop is a display, a message bus and folders of its own. Prints a line for each step and leaves a picture of
the screen after it. Ends with 1 and one line on the first step that fails. Needs the Debian packages of
`script/bootstrap desktop`; the first line is Debian's own Python, as that has its bindings to the message bus.
"""

import shutil
import signal
import sys
import tempfile
import time
from functools import partial
from pathlib import Path
from typing import Callable, NamedTuple

from compositor import WaylandSession
from days import Days
from desks import Desk
from desktop import Failure
from resident import Resident
from session import Session, adopt_orphans
from trays import Embedder, Notifier
from wayland import Bar, Guest, WaylandDays


class World(NamedTuple):
    """What a world is made of."""

    desk: Callable
    session: Callable = Session
    resident: Callable = Resident
    days: Callable = Days


WORLDS = {
    "notifier": World(Notifier),
    "embedder": World(Embedder),
    "bare": World(Desk),
    "wayland": World(Bar, WaylandSession, Guest, WaylandDays),
    "wayland-2x": World(Bar, partial(WaylandSession, scale=2), Guest, WaylandDays),
}


def tell(world, days, pictures):
    """Tells the days of one world, and returns the number of steps."""
    steps = [step for step in days.steps if days.desk.has_tray or step not in days.of_the_tray]
    for number, step in enumerate(steps, 1):
        name = step.replace("_", " ")
        try:
            getattr(days, step)()
            complaints = days.session.complaints()
            if complaints:
                raise Failure(f"the program says: {complaints}")
        except Failure as failure:
            days.session.picture(pictures / "failure.png")
            raise Failure(f"{world}, step {number}, {name}: {failure} ({days.nubaria.state()})") from None
        days.session.picture(pictures / f"{number:02}-{step.replace('_', '-')}.png")
        days.tidy_up()
        remarks = ", ".join(dict.fromkeys(days.desk.remarks))
        print(f"{world}: {number:2} {name}" + (f": {remarks}" if remarks else ""), flush=True)
        days.desk.remarks.clear()
    return len(steps)


def visit(world, program, pictures):
    """Starts the world and tells its days; returns what is to be said about it at the end."""
    pictures.mkdir(parents=True, exist_ok=True)
    for former in pictures.glob("*.png"):
        former.unlink()
    folder = Path(tempfile.mkdtemp(prefix="nw"))
    begin = time.monotonic()
    kind = WORLDS[world]
    session = kind.session(folder, program)
    try:
        nubaria = kind.resident(str(program), session)
        desk = kind.desk(session, nubaria)
        try:
            session.start()
            desk.start()
        except Failure as failure:
            raise Failure(f"{world}, before the first step: {failure}") from None
        count = tell(world, kind.days(nubaria, desk), pictures)
    finally:
        session.end()
        shutil.rmtree(folder)
    return f"{world}: {count} steps in {time.monotonic() - begin:.0f} s"


def main():
    worlds = sys.argv[3:] or list(WORLDS)
    if len(sys.argv) < 3 or not set(worlds) <= set(WORLDS):
        print(__doc__, file=sys.stderr)
        return 2
    program, pictures = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    adopt_orphans()
    try:
        summary = [visit(world, program, pictures / world) for world in worlds]
    except Failure as failure:
        print(f"{Path(sys.argv[0]).name}: {failure}", file=sys.stderr)
        return 1
    print("\n".join(summary))
    return 0


if __name__ == "__main__":
    sys.exit(main())
