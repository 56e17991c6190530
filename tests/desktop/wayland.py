"""A user's days on a Wayland desktop, where the program neither knows nor chooses its place."""

import json
import re

from compositor import REACH
from days import PAID, Days, deleted
from desktop import RIGHT, Failure, wait_for
from desks import BAR_HEIGHT
from nubaria import CATEGORY, ORDER, PANEL_CATEGORY, URGENCY
from reader import FRAME
from resident import Resident
from trays import Notifier

BAR = {"position": "bottom", "height": BAR_HEIGHT, "modules-left": ["tray"], "tray": {"icon-size": 22}}
BAR_LOOK = "* { font: 12px Sans; min-height: 0; } window { background: #202020; }"

PALETTE = (500, 465)
PALETTES = ["Bugambilia", "Myosotis", "Helianthus", "Amapola", "Orchidaceae", "Jasminum", "Hydrangea"]
SHOWN_PAGE, MYOSOTIS = (20, 300), "C8E3E6"  # inside the button of the settings
PANEL_URGENCY, DATE_ARROW, PANEL_DATE_ARROW = (1100, 565), (870, 552), (860, 565)
# What each chooser opens, in the window: the same as on an X display.
LISTS = {
    ORDER: (1060, 49, 165, 92),
    CATEGORY: (290, 567, 270, 122),
    URGENCY: (925, 567, 270, 152),
    PANEL_CATEGORY: (330, 579, 220, 122),
    PANEL_URGENCY: (1010, 579, 220, 152),
    PALETTE: (285, 479, 430, 212),
}
CALENDARS = {DATE_ARROW: (610, 567), PANEL_DATE_ARROW: (700, 579)}  # as large as their font makes them

MARGIN = 8  # around what opens; farther to the left the search field stands, which loses the focus
SLACK = (4, 0, 8, 0)  # the frame around a box that was left by a key, which a click takes away, reaches below it


class Guest(Resident):
    """The program on such a desktop."""

    def __init__(self, program, desktop):
        super().__init__(program, desktop)
        self.opened = None  # where something is open over the window

    def find(self, name):
        found = (one for one in self.desktop.windows() if one["pid"] == self.process.pid)
        return next((one["id"] for one in found if re.search(name, one["name"] or "")), None)

    def is_mapped(self):
        """A window that comes back is another one for the compositor."""
        found = self.find("^Nubaria$")
        self.window = found or self.window
        return found is not None

    def is_minimised(self):
        return False  # this compositor has no such state

    def ask_to_close(self):
        self.desktop.press("alt+F4")

    def open(self, box):
        """Opens the list or the calendar of a chooser, and sees to it that it is in its place."""
        place = (LISTS | CALENDARS)[box]
        expected = *(corner + part for corner, part in zip(self.corner, place)), *place[2:]
        self.desktop.point_at(*self.on_screen(box))
        # Neither the box, which gets the focus, nor the notices are in that.
        self.desktop.watch(expected[0] - MARGIN, expected[1])
        self.click(box)

        def is_there():
            self.opened = self.desktop.changed()
            return self.opened and all(abs(one - other) <= slack
                                       for one, other, slack in zip(self.opened, expected, SLACK))

        try:
            wait_for(is_there, "it")
        except Failure:
            raise Failure(f"what the chooser opens is seen at {self.opened} instead of {expected}") from None

    def wait_until_shut(self):
        wait_for(lambda: self.desktop.changed() != self.opened, "the end of what the chooser has opened")
        self.opened = None

    def choose(self, box, items, item):
        self.open(box)
        left, top, width, height = self.opened
        self.desktop.click(left + width // 3, top + int(height * (items.index(item) + 0.5) / len(items)))
        self.wait_until_shut()


class Bar(Notifier):
    """A panel of this kind of desktop; the tray in it is told of icons over the bus, as others are."""

    def start_panel(self):
        settings, look = (self.session.folders["config"] / name for name in ("waybar", "waybar.css"))
        settings.write_text(json.dumps(BAR), encoding="ascii")
        look.write_text(BAR_LOOK, encoding="ascii")
        self.session.spawn("waybar", "--config", str(settings), "--style", str(look))

    def unfold(self):
        self.dismiss()
        left, top = wait_for(self.icon, "the icon")
        self.session.watch(left + BAR_HEIGHT, top - REACH // 2)  # beside the icon, where the mouse is then
        self.session.click(left, top, RIGHT)

        def seen():
            changed = self.session.changed()
            return changed and changed[3] > BAR_HEIGHT and changed  # no mere tool tip

        menu = wait_for(seen, "the menu")
        return menu, menu

    def wait_until_closed(self, menu):
        wait_for(lambda: self.session.changed() != menu, "the end of the menu")


class WaylandDays(Days):
    """Some of the days are as elsewhere, and some are of this kind of desktop."""

    def the_window_does_not_know_its_place(self):
        told, seen = self.nubaria.inside(FRAME, "Nubaria").geometry(), self.session.geometry(self.nubaria.window)
        if tuple(told) != (0, 0, *seen[2:]) or seen[:2] == (0, 0):
            raise Failure(f"the window is at {seen}, and tells {told}")

    def its_categories_open_at_their_place(self):
        self.nubaria.open_page("Nueva tarea")
        self.nubaria.open(CATEGORY)

    def its_calendar_opens_at_its_place(self):
        self.nubaria.open(DATE_ARROW)

    def its_urgencies_open_at_their_place(self):
        self.nubaria.open(URGENCY)

    def the_orders_open_at_their_place(self):
        self.nubaria.open(ORDER)

    def the_categories_of_the_details_do(self):
        self.nubaria.open_row(0)
        self.nubaria.open(PANEL_CATEGORY)

    def the_calendar_of_the_details_does(self):
        self.nubaria.open(PANEL_DATE_ARROW)

    def the_urgencies_of_the_details_do(self):
        self.nubaria.open(PANEL_URGENCY)

    def finishing_asks_first(self):
        self.nubaria.ask_to_finish()

    def yes_finishes_it(self):
        self.nubaria.confirm([])
        self.desk.expect(*deleted(PAID))

    def closing_hides_the_window(self):
        self.nubaria.open_page("Ajustes")
        super().closing_hides_the_window()

    def the_palettes_open_at_their_place(self):
        self.nubaria.open_page("Ajustes")
        self.nubaria.open(PALETTE)

    def the_palette_changes(self):
        self.nubaria.choose(PALETTE, PALETTES, "Myosotis")
        self.nubaria.wait_for_colour(SHOWN_PAGE, MYOSOTIS, "the palette to show")

    def a_second_start_does_not_raise_the_window(self):
        self.session.go_to_workspace(2)
        self.nubaria.start_second_copy()
        self.nubaria.has_come_round()
        if self.session.active_window():
            raise Failure("the window has been raised")
        if self.session.is_urgent(self.nubaria.window):
            self.desk.remarks.append("the compositor marks it as urgent")
        self.session.go_to_workspace(1)
        self.nubaria.wait_until_in_front()

    def leaving_by_the_menu_ends_it_and_leaves_nothing(self):
        self.leave()
        self.nothing_is_left()

    def tidy_up(self):
        if self.nubaria.opened:
            self.session.press("Escape")
            self.nubaria.wait_until_shut()

    steps = [
        "the_program_starts",
        "the_window_does_not_know_its_place",
        "a_task_is_added",
        "its_categories_open_at_their_place",
        "its_calendar_opens_at_its_place",
        "its_urgencies_open_at_their_place",
        "the_task_is_updated",
        "the_orders_open_at_their_place",
        "the_categories_of_the_details_do",
        "the_calendar_of_the_details_does",
        "the_urgencies_of_the_details_do",
        "finishing_asks_first",
        "yes_finishes_it",
        "the_profile_is_saved",
        "closing_hides_the_window",
        "the_menu_of_the_icon_opens",
        "its_settings_leave_the_window_hidden",
        "a_second_start_shows_them",
        "a_second_start_does_not_raise_the_window",
        "the_palettes_open_at_their_place",
        "the_palette_changes",
        "leaving_by_the_menu_ends_it_and_leaves_nothing",
    ]
