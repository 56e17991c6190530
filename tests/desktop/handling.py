"""What a hand does with mouse and keys, and what it waits for in between."""

import json
import shutil
import sys
from pathlib import Path

from desktop import LEFT, RIGHT, run, wait_for
from nubaria import PANEL_GREY, PANEL_LEFT, ROW_BORDER, ROWS_LEFT, WHITE, row_middle

FRAME_COLOUR, CHOSEN_PAGE = "1C1C1C", "E0C8E3"
WHEEL_UP = 4
# The pages in the order of the menu, with a place that tells whether a page is the chosen one.
MENU = {
    "Lista de tareas": (225, 125),
    "Nueva tarea": (225, 160),
    "Perfil": (225, 230),
    "Ajustes": (225, 300),
    "Notas de parche": (225, 335),
}
# What the keyboard reaches, as left, top, width and height in the window.
SEARCH_PLACE, ORDER_PLACE = (830, 20, 220, 30), (1060, 20, 165, 30)
NEW_TASK = {
    "title": (275, 110, 940, 30), "description": (275, 180, 940, 300), "category": (290, 540, 270, 28),
    "date": (610, 540, 270, 28), "urgency": (925, 540, 270, 28), "clean": (260, 625, 310, 35),
    "cancel": (590, 625, 310, 35), "save": (920, 625, 310, 35),
}
PANEL = {
    "title": (260, 60, 970, 30), "description": (260, 110, 970, 420), "category": (330, 550, 220, 30),
    "date": (700, 550, 170, 30), "urgency": (1010, 550, 220, 30), "delete": (260, 625, 310, 35),
    "finish": (590, 625, 310, 35), "update": (920, 625, 310, 35), "close": (258, 21, 20, 20),
}
PROFILE = {"picture": (1060, 95, 145, 30), "edit": (1060, 135, 145, 30)}
NAME_PLACE, MAIL_PLACE = (360, 87, 275, 25), (360, 108, 275, 25)
SETTINGS = {
    "simple": (275, 125, 40, 20), "advanced": (275, 170, 40, 20), "close": (275, 260, 40, 20),
    "greeting": (285, 388, 430, 30), "emphasis": (760, 388, 430, 30), "palette": (285, 450, 430, 30),
}
DATE_PARTS = 3
DAY, MONTH, YEAR = (714, 565), (729, 565), (744, 565)  # of the panel's date
DATE_TEXT = (705, 553, 100, 24)
COUNT, LAST_SEEN = 14, 12  # the rows, and the last that has a place on the page


def middle(place):
    left, top, width, height = place
    return left + width // 2, top + height // 2


class Handling:
    """One user's hands on the program, and the tasks as they are expected in the file."""

    def __init__(self, nubaria, desktop):
        self.nubaria = nubaria
        self.desktop = desktop
        self.tasks = []

    # Mouse

    def click_twice(self, place, milliseconds=120):
        """Two presses at one place, fast enough for a double click and slow enough for something to come between."""
        run("xdotool", "mousemove", *map(str, self.nubaria.on_screen(place)))
        run("xdotool", "click", "--repeat", "2", "--delay", str(milliseconds), str(LEFT))

    def click_right(self, place):
        self.desktop.click(*self.nubaria.on_screen(place), RIGHT)

    def turn_wheel_up(self, place):
        self.desktop.click(*self.nubaria.on_screen(place), WHEEL_UP)

    def point_at(self, place):
        """Goes there in steps, as what tips are shown for is entered by a movement."""
        for beside in (8, 4, 0):
            run("xdotool", "mousemove", *map(str, self.nubaria.on_screen((place[0] + beside, place[1]))))

    def wait_for_tip(self, place, what):
        self.point_at(place)
        tip = wait_for(self.nubaria.popup, what)
        return self.desktop.geometry(tip)

    # Keys

    def press(self, *keys):
        self.desktop.press(*keys)

    def type_text(self, text):
        self.desktop.type_text(text)

    def go_through(self, stops, key="Tab"):
        """Presses the key once for each stop, and waits for the frame around it."""
        for name, place in stops.items():
            self.press(key)
            self.wait_for_frame(place, f"the frame around {name}")
            if name == "date":
                self.press(*[key] * (DATE_PARTS - 1))

    def wait_for_frame(self, place, what):
        left, top, _, height = place
        self.nubaria.wait_for_colour((left - 3, top + height // 2), FRAME_COLOUR, what)

    # What can be seen

    def seen(self, place):
        left, top = self.nubaria.on_screen(place[:2])
        return self.desktop.signature(left, top, *place[2:])

    def settled(self, place):
        """What a part of the window looks like once two looks in a row are alike."""
        looks = [None, self.seen(place)]

        def alike():
            looks[:] = looks[1], self.seen(place)
            return looks[0] == looks[1]

        wait_for(alike, "the window to come to rest")
        return looks[1]

    def shows(self, place, colour):
        """Whether the colour is anywhere in a part of the window."""
        left, top = self.nubaria.on_screen(place[:2])
        return f"#{colour}" in self.desktop.points(left, top, *place[2:])

    def wait_for_page(self, page):
        self.nubaria.wait_for_colour(MENU[page], CHOSEN_PAGE, f"the page {page}")

    def wait_for_panel(self):
        self.nubaria.wait_for_colour(PANEL_LEFT, PANEL_GREY, "the details")

    def wait_for_list(self):
        self.nubaria.wait_for_colour(PANEL_LEFT, WHITE, "the list")
        self.nubaria.wait_for_closed_panel()

    def wait_for_preference(self, line, store="Quenoli"):
        wait_for(lambda: line in self.nubaria.preferences(store).splitlines(), f"the preference {line}")

    # What is there before the program starts

    def install(self):
        """Puts the program beside a manual, as its packages do, and returns the address of that."""
        folder = self.desktop.folders["home"].parent / "installed"
        page = folder / "manual" / "manual.es.html"
        page.parent.mkdir(parents=True)
        page.touch()
        self.nubaria.program = shutil.copy(self.nubaria.program, folder)
        return page.as_uri()

    def write_file(self):
        path = self.desktop.folders["home"] / "rmc.json"
        path.write_text(json.dumps(self.tasks), encoding="utf-8")

    # The tasks

    def search_for_nothing(self):
        """Proves that the keys go to the search, and that everything before has been dealt with."""
        self.type_text("zz")
        self.nubaria.wait_for_rows(0)
        self.press("Escape")
        self.wait_for_all_rows()

    def wait_for_all_rows(self):
        """All that have a place on the page."""
        self.nubaria.wait_for_colour((ROWS_LEFT, row_middle(LAST_SEEN)), ROW_BORDER, "all rows")

    def open_first(self):
        self.nubaria.open_row(0)

    def tab_to_the_title(self):
        self.press("Tab")
        self.wait_for_frame(PANEL["title"], "the frame around the title")

    def update(self):
        self.press("ctrl+s")
        self.nubaria.wait_for_tasks(self.tasks)
        self.wait_for_list()

    def rename(self, row, title):
        self.tab_to_the_title()
        self.type_text(title)
        self.tasks[row]["title"] = title
        self.update()

    def type_date(self, way, typed, stored):
        """What is not typed is pasted."""
        self.open_first()
        self.reach_date(way)
        if typed:
            self.type_text(typed)
        else:
            self.press("ctrl+v")
        self.tasks[0]["dateLimit"] = stored
        self.update()

    def reach_date(self, way):
        if way == "Tab":
            self.go_through({name: PANEL[name] for name in ("title", "description", "category")})
            self.press("Tab")
            self.wait_for_frame(PANEL["date"], "the frame around the date")
            return
        parts = {"the day": DAY, "the month": MONTH, "the year": YEAR, "Ctrl+A": DAY}
        self.click_part(parts[way], DATE_TEXT)
        if way == "Ctrl+A":
            self.press("ctrl+a")

    def click_part(self, place, area):
        """The window manager holds a click back for a moment, so that keys would overtake it."""
        before = self.seen(area)
        self.nubaria.click(place)
        wait_for(lambda: self.seen(area) != before, "what was clicked to show it")

    # The clipboard

    def copy(self, text, html):
        """Puts a formatted text into the clipboard, as another program does."""
        command = (sys.executable, "-B", str(Path(__file__).with_name("clipboard.py")), text, html)
        told = self.desktop.folders["home"].parent / "clipboard"
        told.write_text("", encoding="utf-8")
        self.desktop.spawn("sh", "-c", 'exec "$@" >"$0"', str(told), *command)
        wait_for(lambda: told.read_text(encoding="utf-8"), "the clipboard")
