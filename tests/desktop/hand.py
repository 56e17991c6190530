#!/usr/bin/python3 -B
"""What a hand does with the built program in a real X session that a plan of its use does not: it clicks twice, types
dates in every way, misses switches by a little, goes by keys alone and pastes what it finds.

Usage: hand.py PROGRAM PICTURES

Runs on a display of its own and leaves a picture of the screen after each step. Ends with 1 and one line on the
first step that fails. Needs what story.py needs, and python3-xlib.
"""

import json
import sys

from desktop import Failure, run, wait_for
from handling import (
    MAIL_PLACE, MENU, NAME_PLACE, NEW_TASK, ORDER_PLACE, PANEL, PROFILE, SEARCH_PLACE,
    SETTINGS, Handling, middle,
)
from nubaria import PAGES, PANEL_TITLE, QUESTION, ROW_BORDER, ROWS_LEFT, WHITE, Field, row_middle
from telling import between, perform

COUNT, LAST_SEEN = 14, 12
WORDS = "Muchas palabras " * 8
LONG_TITLE = "Principio " + "muy largo " * 60 + "fin"
# Where a row and one of the panel's buttons, or a word of the description, are in the same place.
ROW_AND_UPDATE, ROW_AND_FINISH, ROW_AND_WORD = (1200, 631), (800, 631), (700, 134)
UPDATE_EDGE = (930, 642)  # "Finalizar tarea" comes by there when the panel leaves
DAY, MONTH, YEAR, CALENDAR = (714, 565), (729, 565), (744, 565), (858, 565)  # of the panel's date
DATE_TEXT, TITLE_BEGINNING = (705, 553, 100, 24), (275, 64, 300, 22)
PANEL_DESCRIPTION = Field((700, 300), (700, 111), "D199E5")
RED, BOX_GREY = "FF0000", "E0E0E0"  # BOX_GREY of the answer that Enter gives
ROW_RIGHT, BELOW_ROWS, CORNER = 1213, (600, 679), (1222, 679)
HTML = f'<p style="background-color:#{RED}"><b>rojo</b></p><table><tr><td>celda</td></tr></table>'
PLAIN = "rojo y celda"
PALETTES = 7
WRITTEN = {
    "title": "Con teclas", "description": "De principio a fin", "category": "Personal", "dateLimit": "17-06-2027",
    "urgency": "Baja",
}
DATES = [  # how the date is reached, what is typed, what is stored
    ("the day", "05/03/27", "05-03-2027"),
    ("Tab", "05/04/27", "05-04-2027"),
    ("Ctrl+A", "05/05/27", "05-05-2027"),
    ("the month", "5/6/27", "05-06-2027"),
    ("Tab", "5/7/2027", "05-07-2027"),
    ("the year", "05-08-27", "05-08-2027"),
    ("the day", "050927", "05-09-2027"),
    ("Tab", "05/10/2027", "05-10-2027"),
]


class Hand(Handling):
    """The steps, in the order in which they are told."""

    def __init__(self, nubaria, desktop):
        super().__init__(nubaria, desktop)
        common = {"description": WORDS, "category": "Personal", "dateLimit": "22-11-2026", "urgency": "Media"}
        self.tasks = [{"id": f"{{{row}}}", "title": f"Tarea {row}", **common} for row in range(COUNT)]

    def the_first_letters_go_into_the_search(self):
        self.write_file()
        self.nubaria.start()
        self.wait_for_all_rows()
        self.search_for_nothing()

    # Double clicks

    def a_double_click_on_a_row_only_opens_it(self):
        for place in (ROW_AND_UPDATE, ROW_AND_FINISH, ROW_AND_WORD):
            self.click_twice(place)
            self.wait_for_panel()
            self.press("x")
            self.tab_to_the_title()
            self.wait_for_panel()
            self.press("ctrl+s")
            self.wait_for_list()
            self.nubaria.wait_for_tasks(self.tasks)

    def a_quick_click_elsewhere_counts(self):
        self.nubaria.click(ROW_AND_UPDATE)
        self.nubaria.click(PAGES["Ajustes"])
        self.wait_for_page("Ajustes")

    def saving_twice_is_saving_once(self):
        self.tasks.append({"title": "Guardada", "description": "Una vez", "category": "Otro", "urgency": "Alta"})
        self.nubaria.fill_in(self.tasks[-1])
        self.click_twice(ROW_AND_UPDATE)
        self.nubaria.wait_for_tasks(self.tasks)
        self.search_for_nothing()

    def updating_twice_is_updating_once(self):
        self.nubaria.open_row(0)
        self.tasks[0]["title"] = "Tarea cero"
        self.nubaria.write(PANEL_TITLE, "Tarea cero")
        self.click_twice(UPDATE_EDGE)
        self.nubaria.wait_for_tasks(self.tasks)
        self.wait_for_list()
        self.search_for_nothing()

    def editing_twice_stores_nothing(self):
        self.nubaria.click(PAGES["Perfil"])
        self.wait_for_page("Perfil")
        self.click_twice(middle(PROFILE["edit"]))
        self.press("ctrl+a")
        self.type_text("Ana")
        self.press("Tab")
        self.wait_for_frame(MAIL_PLACE, "the frame around the address")
        if "firstName" in self.nubaria.preferences():
            raise Failure("a name was stored before it was written")
        self.press("Tab", "Tab", "space")
        self.wait_for_preference("firstName=Ana")

    # Where the keys go

    def a_stray_letter_goes_nowhere(self):
        self.press("ctrl+1")
        self.wait_for_page("Lista de tareas")
        self.type_text("tarea")
        self.wait_for_all_rows()
        self.nubaria.open_row(2)
        self.press("x")
        self.rename(2, "Tarea dos")
        self.search_for_nothing()

    def a_right_click_leaves_the_keys_alone(self):
        for field, key, words in ((PANEL_TITLE, "title", "De un clic "), (PANEL_DESCRIPTION, "description", "Aquí ")):
            self.open_first()
            self.click_right(field.place)
            self.nubaria.wait_for_colour(field.frame, field.colour, "the field to be ready")
            self.press("ctrl+Home" if key == "description" else "Home")
            self.type_text(words)
            self.tasks[0][key] = words + self.tasks[0][key]
            self.update()

    # Dates

    def dates_are_stored_as_typed(self):
        for way, typed, stored in DATES:
            self.type_date(way, typed, stored)

    def a_clicked_part_changes_alone(self):
        self.type_date("the month", "9", "05-09-2027")
        self.type_date("the year", "30", "05-09-2030")
        self.type_date("the day", "7", "07-09-2030")

    def a_day_that_does_not_exist_is_seen_corrected(self):
        self.open_first()
        self.reach_date("Tab")
        self.type_text("31/02/27")
        self.press("Tab")
        self.wait_for_frame(PANEL["urgency"], "the frame around the urgency")
        shown = self.seen(DATE_TEXT)
        self.tasks[0]["dateLimit"] = "28-02-2027"
        self.update()
        self.open_first()
        wait_for(lambda: self.seen(DATE_TEXT) == shown, "the date as it was shown")

    def dates_are_changed_as_before(self):
        self.reach_date("the day")
        self.press("Down", "Down")
        self.turn_wheel_up(DAY)
        self.tasks[0]["dateLimit"] = "27-02-2027"
        self.update()
        self.copy("09/08/27", "<b>09/08/27</b>")
        self.type_date("Ctrl+A", None, "09-08-2027")
        self.open_first()
        self.nubaria.click(CALENDAR)
        wait_for(self.nubaria.popup, "the calendar")
        self.press("Right", "Return")
        wait_for(lambda: not self.nubaria.popup(), "the end of the calendar")
        self.tasks[0]["dateLimit"] = "10-08-2027"
        self.update()

    # The question

    def enter_and_escape_are_no(self):
        self.open_first()
        for answer in ("Return", "Escape"):
            self.press("ctrl+t")
            question = wait_for(lambda: self.nubaria.find(QUESTION), "the question")
            wait_for(lambda: self.desktop.active_window() == question, "the question to become active")
            if "_NET_WM_ICON(CARDINAL)" not in run("xprop", "-id", question, "_NET_WM_ICON"):
                raise Failure("the question has no icon")
            left, top, width, height = self.desktop.geometry(question)
            right_half = left + width // 2, top, width - width // 2, height
            wait_for(lambda area=right_half: f"#{BOX_GREY}" in self.desktop.points(*area), "the look of the default")
            self.nubaria.answer(answer)
            self.wait_for_panel()
        self.press("Escape")
        self.wait_for_list()
        self.nubaria.wait_for_tasks(self.tasks)

    # Tab

    def tab_goes_through_the_list_page(self):
        self.go_through({"order": ORDER_PLACE, "search": SEARCH_PLACE})
        self.go_through({"order": ORDER_PLACE, "search": SEARCH_PLACE}, "shift+Tab")

    def tab_goes_through_the_panel(self):
        self.press("Down")
        self.wait_for_panel()
        self.go_through(PANEL)
        self.go_through(dict(reversed(list(PANEL.items())[:-1])), "shift+Tab")
        self.press("Escape")
        self.wait_for_list()

    def tab_goes_through_a_new_task(self):
        self.press("ctrl+n")
        self.wait_for_frame(NEW_TASK["title"], "the frame around the title")
        rest = dict(list(NEW_TASK.items())[1:])
        self.go_through({**rest, "title": NEW_TASK["title"]})
        self.go_through(dict(reversed(rest.items())), "shift+Tab")

    def tab_goes_through_the_profile(self):
        self.press("ctrl+3")
        self.wait_for_page("Perfil")
        self.go_through(PROFILE)
        self.press("space")
        self.wait_for_frame(NAME_PLACE, "the frame around the name")
        self.go_through({"address": MAIL_PLACE, **PROFILE, "name": NAME_PLACE})

    def tab_goes_through_the_settings(self):
        self.press("ctrl+4")
        self.wait_for_page("Ajustes")
        self.go_through(SETTINGS)
        self.go_through(dict(reversed(list(SETTINGS.items())[:-1])), "shift+Tab")

    # Switches

    def a_whole_switch_answers(self):
        left, top, width, height = SETTINGS["close"]
        places = [(left + 2, top + 10), (left + width - 3, top + 10), (400, 260), (600, 275)]
        for number, place in enumerate(places):
            self.nubaria.click(place)
            self.wait_for_preference(f"changeClose={'false' if number % 2 else 'true'}")

    def the_focus_is_seen_in_every_palette(self):
        self.nubaria.click(PAGES["Notas de parche"])
        self.press("ctrl+4")
        self.wait_for_page("Ajustes")
        for palette in range(1, PALETTES):
            self.go_through(SETTINGS)
            self.press("Down")
            self.wait_for_preference(f"colorIndex={palette}", "QuenoliTheme")
            self.wait_for_frame(SETTINGS["palette"], "the frame in the new palette")
        self.press("Home")
        self.wait_for_preference("colorIndex=0", "QuenoliTheme")

    # Descriptions and long titles

    def descriptions_take_plain_text(self):
        self.press("ctrl+1")
        self.wait_for_page("Lista de tareas")
        self.copy(PLAIN, HTML)
        self.open_first()
        self.click_part(PANEL_DESCRIPTION.place, PANEL["description"])
        self.press("ctrl+a")
        before = self.seen(PANEL["description"])
        self.press("ctrl+v")
        wait_for(lambda: self.seen(PANEL["description"]) != before, "what was pasted")
        if self.shows(PANEL["description"], RED):
            raise Failure("what was pasted is coloured")
        self.tasks[0]["description"] = PLAIN
        self.update()

    def a_long_title_keeps_the_list_in_shape(self):
        self.tasks[0]["title"] = LONG_TITLE
        self.write_file()
        self.search_for_nothing()
        for row in (0, 1, 5):
            self.nubaria.wait_for_colour((ROW_RIGHT, row_middle(row)), ROW_BORDER, f"the right border of row {row}")
        self.nubaria.wait_for_colour(BELOW_ROWS, WHITE, "rows down to the end")
        self.type_text("principio")
        self.nubaria.wait_for_rows(1)
        self.nubaria.wait_for_colour(CORNER, WHITE, "no corner")
        self.press("Escape")
        self.wait_for_all_rows()

    def a_long_title_is_told_whole(self):
        *_, width, height = self.wait_for_tip((700, row_middle(0)), "the tip with the title")
        if height < 60:
            raise Failure(f"the tip has {width} by {height} points, which is not all of the title")

    def a_long_title_is_shown_from_its_beginning(self):
        self.open_first()
        shown = self.seen(TITLE_BEGINNING)
        self.tab_to_the_title()
        self.press("Home", "Tab", "Tab")
        self.wait_for_frame(PANEL["category"], "the frame around the category")
        wait_for(lambda: self.seen(TITLE_BEGINNING) == shown, "the beginning of the title")
        self.press("Escape")
        self.wait_for_list()

    # Keys

    def keys_open_the_pages(self):
        for number, page in enumerate(MENU, 1):
            self.press(f"ctrl+{number}")
            self.wait_for_page(page)

    def a_key_begins_a_new_task(self):
        self.press("ctrl+n")
        self.wait_for_page("Nueva tarea")
        self.type_text(WRITTEN["title"])
        self.go_through({"description": NEW_TASK["description"]})
        self.type_text(WRITTEN["description"])
        self.go_through({"category": NEW_TASK["category"]})
        self.press("Home", "Tab")
        self.wait_for_frame(NEW_TASK["date"], "the frame around the date")
        self.type_text("17/06/27")
        self.go_through({"urgency": NEW_TASK["urgency"]})
        self.press("Home", "Down")

    def a_key_saves_it(self):
        self.press("ctrl+s")
        self.tasks.append(WRITTEN)
        self.nubaria.wait_for_tasks(self.tasks)
        self.wait_for_page("Lista de tareas")

    def a_key_clears_the_form(self):
        self.press("ctrl+n")
        self.wait_for_frame(NEW_TASK["title"], "the frame around the title")
        empty = self.settled(NEW_TASK["description"])
        self.go_through({"description": NEW_TASK["description"]})
        self.type_text("Borrador")
        self.press("shift+Tab")
        wait_for(lambda: self.seen(NEW_TASK["description"]) != empty, "the draft")
        self.press("ctrl+l")
        wait_for(lambda: self.seen(NEW_TASK["description"]) == empty, "the empty form")

    def a_key_leads_to_the_search(self):
        for key in ("ctrl+1", "ctrl+2", "ctrl+3", "ctrl+4", "ctrl+5", "Down"):
            self.press(key)
            if key == "Down":
                self.wait_for_panel()
            self.press("ctrl+f")
            self.wait_for_page("Lista de tareas")
            self.search_for_nothing()

    def arrows_open_the_rows(self):
        for keys, row in (
            (["Down"], 0), (["Down", "Down", "Down"], 2), (["Down", "Down", "Up"], 0), (["Down", "Next"], 12),
            (["Down", "Next", "Down", "Prior"], 1),
        ):
            self.press(*keys)
            self.wait_for_panel()
            self.rename(row, f"Fila {row} con {len(keys)}")

    def escape_closes_what_is_open(self):
        self.press("Down")
        self.wait_for_panel()
        self.press("Escape")
        self.wait_for_list()
        self.search_for_nothing()

    def a_parked_panel_saves_nothing(self):
        self.open_first()
        self.tab_to_the_title()
        self.type_text("De nadie")
        self.press("Escape")
        self.wait_for_list()
        self.press("ctrl+s", "ctrl+t", "ctrl+l")
        self.search_for_nothing()
        self.nubaria.wait_for_tasks(self.tasks)

    def a_key_finishes_a_task(self):
        self.open_first()
        self.press("ctrl+t")
        wait_for(lambda: self.nubaria.find(QUESTION), "the question")
        del self.tasks[0]
        self.nubaria.confirm(self.tasks)

    def the_buttons_tell_their_keys(self):
        for place in MENU.values():
            self.wait_for_tip(place, "the tip of a button")
            self.press("Escape")
            wait_for(lambda: not self.nubaria.popup(), "the end of the tip")

    def closing_ends_the_program(self):
        self.nubaria.click(PAGES["Ajustes"])
        self.press("alt+F4")
        self.nubaria.wait_until_ended()

    # What the steps are made of

    def write_file(self):
        path = self.desktop.folders["home"] / "rmc.json"
        path.write_text(json.dumps(self.tasks), encoding="utf-8")

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

    steps = between(locals(), "the_first_letters_go_into_the_search", "write_file")


if __name__ == "__main__":
    sys.exit(perform(__doc__, Hand))
