"""What a hand does with keys alone: it goes everywhere, opens, writes, saves and finishes."""

from desktop import Failure, wait_for
from handling import (
    FRAME_COLOUR, MAIL_PLACE, MENU, NAME_PLACE, NEW_TASK, ORDER_PLACE, PANEL, PROFILE, SEARCH_PLACE, SETTINGS, Handling,
)
from nubaria import PAGES, QUESTION
from telling import between

PALETTES = 7
NOWHERE = (700, 690)
WRITTEN = {
    "title": "Con teclas", "description": "De principio a fin", "category": "Personal", "dateLimit": "17-06-2027",
    "urgency": "Baja",
}


class ByKeys(Handling):
    """The last steps, in the order in which they are told."""

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
        self.go_through(dict(reversed([("address", MAIL_PLACE), *PROFILE.items()])), "shift+Tab")

    def tab_goes_through_the_settings(self):
        self.press("ctrl+4")
        self.wait_for_page("Ajustes")
        self.go_through(SETTINGS)
        self.go_through(dict(reversed(list(SETTINGS.items())[:-1])), "shift+Tab")

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

    # Keys

    def a_key_opens_the_manual(self):
        self.press("F1")
        wait_for(lambda: self.desktop.opened_pages() == [self.manual], "the manual")

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
        draft = self.settled(NEW_TASK["description"])
        for page in ("ctrl+1", "ctrl+3", "ctrl+4", "ctrl+5"):
            self.press(page, "ctrl+s", "ctrl+l")
        self.press("ctrl+n")
        self.wait_for_frame(NEW_TASK["title"], "the frame around the title")
        if self.settled(NEW_TASK["description"]) != draft:
            raise Failure("a key has cleared a form that was not seen")
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
            tip = self.wait_for_tip(place, "the tip of a button")
            left, top, _, height = tip
            wait_for(lambda edge=(left, top + height // 2): self.desktop.colour(*edge) == FRAME_COLOUR, "its border")
            self.point_at(NOWHERE)
            wait_for(lambda: not self.nubaria.popup(), "the end of the tip")

    def closing_ends_the_program(self):
        self.nubaria.click(PAGES["Ajustes"])
        self.press("alt+F4")
        self.nubaria.wait_until_ended()

    def end(self):
        """Nothing comes after it."""

    steps = between(locals(), "tab_goes_through_the_list_page", "end")
