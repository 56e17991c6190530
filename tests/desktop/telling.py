"""How a story is told: its steps in their order, a picture after each, and nothing left behind."""

import shutil
import signal
import sys
import tempfile
from pathlib import Path

from desktop import Desktop, Failure, picture
from nubaria import Nubaria


def between(members, first, end):
    """The names of the functions from `first` up to, and without, `end`, in the order of their definition."""
    names = [name for name, value in members.items() if callable(value)]
    return names[names.index(first):names.index(end)]


def tell(story, pictures):
    for number, name in enumerate(story.steps, 1):
        try:
            getattr(story, name)()
        except Failure as failure:
            picture(pictures / "failure.png")
            told = f"step {number}, {name.replace('_', ' ')}: {failure}"
            raise Failure(f"{told} ({story.nubaria.state()})") from None
        picture(pictures / f"{number:02}-{name.replace('_', '-')}.png")


def perform(usage, make_story, **options):
    """Tells the story with the program and into the folder of the command line; returns the result for the system.

    The options are those of the desktop.
    """
    if len(sys.argv) != 3:
        print(usage, file=sys.stderr)
        return 2
    program, pictures = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    pictures.mkdir(parents=True, exist_ok=True)
    for former in pictures.glob("*.png"):
        former.unlink()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    folder = Path(tempfile.mkdtemp(prefix="ns"))
    desktop = Desktop(folder, **options)
    try:
        desktop.start()
        tell(make_story(Nubaria(str(program), desktop), desktop), pictures)
    except Failure as failure:
        print(f"{Path(sys.argv[0]).name}: {failure}", file=sys.stderr)
        return 1
    finally:
        desktop.end()
        shutil.rmtree(folder)
    return 0
