"""Nubaria as its user sees it: windows, places to click, colours, and the files it leaves."""

import json
from typing import NamedTuple

from desktop import Failure, run, wait_for

# Places in the window.
PAGES = {
    "Lista de tareas": (119, 125),
    "Nueva tarea": (119, 160),
    "Perfil": (119, 230),
    "Ajustes": (119, 300),
    "Notas de parche": (119, 335),
}
ORDER = (1100, 35)
CATEGORY, URGENCY, SAVE = (410, 552), (1045, 552), (1075, 642)
PANEL_CATEGORY, FINISH, UPDATE = (430, 565), (745, 642), (1075, 642)
# The knob of a switch is on the left while the switch is off.
CLOSE_SWITCH_LEFT, CLOSE_SWITCH_RIGHT = (284, 270), (306, 270)

ORDERS = ["Recientes", "Titulo", "Prioridad"]
CATEGORIES = ["Personal", "Trabajo", "Escuela", "Otro"]
URGENCIES = ["Muy baja", "Baja", "Media", "Alta", "Urgente"]

LIST = (255, 75, 975, 610)
ROWS_LEFT, FIRST_ROW_MIDDLE, ROW_STEP = 263, 101, 47


class Field(NamedTuple):
    """Where to click to write, and the second line of its frame, which is coloured with the focus only."""

    place: tuple
    frame: tuple
    colour: str


TITLE = Field((700, 125), (700, 111), "D199E5")
DESCRIPTION = Field((700, 300), (700, 181), "D199E5")
SEARCH = Field((870, 35), (870, 21), "C4C4C4")
PANEL_TITLE = Field((700, 75), (700, 61), "D199E5")

WHITE, PANEL_GREY, ROW_BORDER, FORM_FRAME, SWITCH_ON, SWITCH_OFF = (
    "FFFFFF", "F2F2F2", "CCCCCC", "EBEBEB", "7200C1", "CCCCCC"
)
# The frame around the category of a new task, whatever the mouse is over; every other page is white there.
FORM_EDGE = (275, 542)
PANEL_LEFT, PANEL_RIGHT = (242, 690), (1247, 690)
QUESTION = "^Finalizar Tarea$"


def row_middle(row):
    return FIRST_ROW_MIDDLE + ROW_STEP * row


class Nubaria:
    """One user's program. Every function waits until what it does has come about, unless it says otherwise."""

    def __init__(self, program, desktop, scale=1):
        self.program = program
        self.desktop = desktop
        self.scale = scale  # pixels of the screen for each of the window's own
        self.process = None
        self.window = None
        self.corner = (0, 0)

    # Starting and ending

    def start(self, command=None):
        """Starts the program itself, or by a command that becomes it."""
        self.process = self.desktop.spawn(*(command or (self.program,)))
        self.window = wait_for(lambda: self.find("^Nubaria$"), "the window")
        self.corner = self.desktop.geometry(self.window)[:2]
        self.wait_until_in_front()

    def start_again(self):
        """Starts a second copy, which brings the window to the front."""
        self.start_second_copy()
        self.wait_until_in_front()

    def start_second_copy(self):
        """It ends by itself."""
        second = self.desktop.spawn(self.program)
        wait_for(lambda: second.poll() is not None, "the end of the second start")
        if second.returncode != 0:
            raise Failure(f"the second start ended with {second.returncode}")

    def wait_until_in_front(self):
        wait_for(self.is_mapped, "the window on the screen")
        wait_for(lambda: self.desktop.active_window() == self.window, "the window to become active")
        # A window that comes back is put elsewhere first, and from there to its place.
        wait_for(lambda: self.desktop.geometry(self.window)[:2] == self.corner, "the window in its place")

    def wait_until_ended(self):
        wait_for(lambda: self.process.poll() is not None, "the end of the program")
        if self.process.returncode != 0:
            raise Failure(f"the program ended with {self.process.returncode}")

    def kill(self):
        self.process.kill()
        self.process.wait()

    def state(self):
        """What has become of the program, to be told with a failure: a dead one keeps every wait waiting."""
        if self.process is None:
            return "the program was not started"
        result = self.process.poll()
        return "the program is running" if result is None else f"the program has ended with {result}"

    # Windows

    def find(self, name):
        """The visible window of this name, or None. Does not wait."""
        pid = str(self.process.pid)
        found = run("xdotool", "search", "--all", "--onlyvisible", "--pid", pid, "--name", name).split()
        return found[-1] if found else None

    def popup(self):
        """The open list of a combo box, or None: the program's only other window. Does not wait."""
        windows = run("xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid)).split()
        return next((window for window in windows if window != self.window), None)

    def is_mapped(self):
        return "IsViewable" in run("xwininfo", "-id", self.window)

    def is_minimised(self):
        return "Iconic" in run("xprop", "-id", self.window, "WM_STATE")

    # Mouse and keyboard

    def on_screen(self, place):
        return tuple(corner + round(self.scale * part) for corner, part in zip(self.corner, place))

    def click(self, place):
        """Does not wait for what comes of it."""
        self.desktop.click(*self.on_screen(place))

    def write(self, field, text):
        """Writes over whatever the field holds. Does not wait for what comes of it."""
        self.click(field.place)
        # The window manager holds a click back for a moment, so that keys would overtake it.
        self.wait_for_colour(field.frame, field.colour, "the field to be ready")
        self.desktop.press("ctrl+a")
        self.desktop.type_text(text)

    def choose(self, box, items, item):
        self.click(box)
        popup = wait_for(self.popup, f"the list with {item}")
        left, top, width, height = self.desktop.geometry(popup)
        self.desktop.click(left + width // 3, top + int(height * (items.index(item) + 0.5) / len(items)))
        wait_for(lambda: not self.popup(), f"the end of the list with {item}")

    def open_page(self, page):
        self.click(PAGES[page])
        self.wait_for_colour(FORM_EDGE, FORM_FRAME if page == "Nueva tarea" else WHITE, f"the page {page}")

    def open_row(self, row):
        self.click((700, row_middle(row)))
        self.wait_for_colour(PANEL_LEFT, PANEL_GREY, "the details of the task")

    def fill_in(self, task):
        self.open_page("Nueva tarea")
        self.write(TITLE, task["title"])
        self.write(DESCRIPTION, task["description"])
        self.choose(CATEGORY, CATEGORIES, task["category"])
        self.choose(URGENCY, URGENCIES, task["urgency"])

    def save(self, expected):
        self.click(SAVE)
        self.wait_for_tasks(expected)
        self.wait_for_colour(FORM_EDGE, WHITE, "the list of tasks")

    def update(self, expected):
        self.click(UPDATE)
        self.wait_for_tasks(expected)
        self.wait_for_closed_panel()

    def ask_to_finish(self):
        self.click(FINISH)
        question = wait_for(lambda: self.find(QUESTION), "the question")
        wait_for(lambda: self.desktop.active_window() == question, "the question to become active")

    def answer(self, key):
        self.desktop.press(key)
        wait_for(lambda: not self.find(QUESTION), "the end of the question")
        self.wait_until_in_front()

    def finish(self, expected):
        self.ask_to_finish()
        self.confirm(expected)

    def confirm(self, expected):
        self.answer("alt+s")  # "Sí": Return is "No"
        self.wait_for_tasks(expected)
        self.wait_for_closed_panel()

    def wait_for_closed_panel(self):
        self.wait_for_colour(PANEL_RIGHT, WHITE, "the details to leave")

    def turn_switch(self, on):
        self.click(CLOSE_SWITCH_LEFT if on else CLOSE_SWITCH_RIGHT)
        stored = f"changeClose={'true' if on else 'false'}"
        wait_for(lambda: stored in self.preferences().splitlines(), f"the preference {stored}")
        free_side, background = (CLOSE_SWITCH_LEFT, SWITCH_ON) if on else (CLOSE_SWITCH_RIGHT, SWITCH_OFF)
        self.wait_for_colour(free_side, background, f"the switch to show {stored}")

    # What can be seen

    def wait_for_colour(self, place, wanted, what):
        wait_for(lambda: self.desktop.colour(*self.on_screen(place)) == wanted, what)

    def listed(self):
        """What the list looks like, to tell whether it has changed."""
        return self.desktop.signature(self.corner[0] + LIST[0], self.corner[1] + LIST[1], *LIST[2:])

    def expect_size(self):
        size = self.desktop.geometry(self.window)[2:]
        if size != (1250, 700):
            raise Failure(f"the window is {size[0]} by {size[1]}")

    def wait_for_rows(self, count):
        if count > 0:
            self.wait_for_colour((ROWS_LEFT, row_middle(count - 1)), ROW_BORDER, f"{count} rows")
        self.wait_for_colour((ROWS_LEFT, row_middle(count)), WHITE, f"no more than {count} rows")

    # Files

    def tasks(self):
        try:
            return json.loads((self.desktop.folders["home"] / "rmc.json").read_text(encoding="utf-8"))
        except (FileNotFoundError, json.JSONDecodeError):
            return None  # not there, or just being written

    def wait_for_tasks(self, expected):
        """Waits until the file holds just these tasks; keys that are not given may hold anything."""

        def holds():
            tasks = self.tasks()
            return tasks is not None and len(tasks) == len(expected) and all(
                wanted.items() <= task.items() for task, wanted in zip(tasks, expected)
            )

        try:
            wait_for(holds, "the tasks")
        except Failure:
            raise Failure(f"the file holds {self.tasks()} instead of {expected}") from None

    def preferences(self, store="Quenoli"):
        path = self.desktop.folders["config"] / "Quenoli" / f"{store}.conf"
        return path.read_text(encoding="utf-8") if path.exists() else ""
