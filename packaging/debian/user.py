#!/usr/bin/env -S python3 -B
"""A user at home: finds the tasks of before in the installed program, adds one more and ends it.

Usage: user.py TITLE...   (of the tasks of before, in their order, and of the new one)
"""

import shutil
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests" / "desktop"))

from desktop import Desktop, Failure, press
from nubaria import Nubaria

PROGRAM = "/usr/bin/nubaria"


def task(title):
    return {"title": title, "description": "En casa", "category": "Personal", "urgency": "Media"}


def live_at_home(desktop):
    home = Path.home()
    desktop.folders |= {"home": home, "config": home / ".config"}
    desktop.environment |= {"HOME": str(home), "XDG_CONFIG_HOME": str(home / ".config")}


def visit(desktop, titles):
    tasks = [task(title) for title in titles]
    nubaria = Nubaria(PROGRAM, desktop)
    nubaria.start()
    nubaria.wait_for_rows(len(tasks) - 1)
    nubaria.fill_in(tasks[-1])
    nubaria.save(tasks)
    press("alt+F4")
    nubaria.wait_until_ended()


def main(titles):
    if not titles:
        print(__doc__, file=sys.stderr)
        return 2
    folder = Path(tempfile.mkdtemp(prefix="nu"))
    desktop = Desktop(folder)
    live_at_home(desktop)
    try:
        desktop.start()
        visit(desktop, titles)
    except Failure as failure:
        print(f"user.py: {failure}", file=sys.stderr)
        return 1
    finally:
        desktop.end()
        shutil.rmtree(folder)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
