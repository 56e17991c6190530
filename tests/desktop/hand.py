#!/usr/bin/python3 -B
"""What a hand does with the built program in a real X session that a plan of its use does not: it clicks twice, types
dates in every way, misses switches by a little, goes by keys alone and pastes what it finds.

Usage: hand.py PROGRAM PICTURES

Runs on a display of its own and leaves a picture of the screen after each step. Ends with 1 and one line on the
first step that fails. Needs what story.py needs, and python3-xlib.
"""

import sys

from bykeys import ByKeys
from bymouse import WORDS, ByMouse
from handling import COUNT
from telling import perform


class Hand(ByMouse, ByKeys):
    """The steps, in the order in which they are told."""

    def __init__(self, nubaria, desktop):
        super().__init__(nubaria, desktop)
        common = {"description": "Algo", "category": "Personal", "dateLimit": "22-11-2026", "urgency": "Media"}
        self.tasks = [{"id": f"{{{row}}}", "title": f"Tarea {row}", **common} for row in range(COUNT)]
        self.manual = None  # its address
        self.tasks[1]["description"] = WORDS  # seen where that row is clicked

    steps = [*ByMouse.steps, *ByKeys.steps]


if __name__ == "__main__":
    sys.exit(perform(__doc__, Hand))
