#!/usr/bin/python3 -B
"""A user's day in a real X session whose screen is too small for the window, told with keys alone.

Usage: smallscreen.py PROGRAM PICTURES

Runs on a display of its own and leaves a picture of the screen after each step. Ends with 1 and one line on the first
step that fails. Needs what story.py needs.
"""

import sys

from desktop import Failure, wait_for
from handling import Handling
from nubaria import PANEL_GREY, QUESTION, WHITE
from personal import DIALOG, SEA_GREEN, png
from telling import between, perform

SCREEN = 1024, 600
PAGES = ["Lista de tareas", "Nueva tarea", "Perfil", "Ajustes", "Notas de parche"]
PANEL_EDGE = (242, 300)  # as far down as can be seen
FORM = ["title", "description", "category", "day", "month", "year", "urgency", "clean", "cancel", "save"]
DETAILS = [*FORM[:FORM.index("clean")], "delete", "finish", "update", "close"]

CLOAK = {
    "title": "Zurcir la capa", "description": "Botón", "category": "Otro", "dateLimit": "22-11-2026", "urgency": "Baja",
}
TREE = {
    "title": "Comprar árbol", "description": "Uno", "category": "Otro", "dateLimit": "23-11-2026", "urgency": "Alta",
}
LESSON = {
    "title": "Estudiar álgebra", "description": "Capítulo 3", "category": "Personal", "dateLimit": "17-06-2027",
    "urgency": "Baja",
}
LESSON_DONE = {
    "title": "Repasar álgebra", "description": "Capítulo 4", "category": "Otro", "dateLimit": "18-07-2028",
    "urgency": "Urgente",
}


class SmallScreen(Handling):
    """The steps, in the order in which they are told. The file and the preferences tell what became of the keys: the
    screen shows the window's upper left part only."""

    def __init__(self, nubaria, desktop):
        super().__init__(nubaria, desktop)
        self.tasks = [CLOAK, TREE]
        self.manual = None  # its address

    def the_window_does_not_fit(self):
        self.write_file()
        self.manual = self.install()
        self.nubaria.start()
        self.nubaria.expect_size()
        left, top = self.nubaria.corner
        if left < 0 or top < 0:
            raise Failure(f"the window is at {left}, {top}, so that its menu is out of sight")
        self.nubaria.wait_for_rows(2)

    def keys_open_the_pages(self):
        for number, page in enumerate(PAGES, 1):
            self.press(f"ctrl+{number}")
            self.wait_for_page(page)

    def a_key_opens_the_manual(self):
        self.press("F1")
        wait_for(lambda: self.desktop.opened_pages() == [self.manual], "the manual")

    def a_draft_is_cancelled(self):
        self.press("ctrl+n")
        self.type_text("Borrador")
        self.go_on(FORM, "title", "cancel")
        self.press("space")
        self.wait_for_page("Lista de tareas")

    def a_draft_is_cleared(self):
        self.press("ctrl+n")
        self.wait_for_page("Nueva tarea")
        self.type_text("Borrador")
        self.go_on(FORM, "title", "clean")
        self.press("space")

    def a_task_is_written_in_all_its_fields(self):
        self.press("ctrl+n")
        self.fill_in(LESSON, FORM, "Home")
        self.press("ctrl+s")
        self.tasks.append(LESSON)
        self.nubaria.wait_for_tasks(self.tasks)
        self.wait_for_page("Lista de tareas")

    def a_task_is_changed_in_all_its_fields(self):
        self.press("Down", "Next")
        self.wait_for_panel_edge(PANEL_GREY)
        self.press("Tab")
        self.fill_in(LESSON_DONE, DETAILS, "End")
        self.press("ctrl+s")
        self.tasks[-1] = LESSON_DONE
        self.nubaria.wait_for_tasks(self.tasks)
        self.wait_for_panel_edge(WHITE)

    def the_details_are_left_as_they_are(self):
        self.press("Down")
        self.wait_for_panel_edge(PANEL_GREY)
        self.press("Tab")
        self.type_text("De nadie")
        self.press("Escape")
        self.wait_for_panel_edge(WHITE)
        self.nubaria.wait_for_tasks(self.tasks)

    def a_search_finds_one(self):
        self.press("ctrl+f")
        self.type_text("álgebra")
        self.nubaria.wait_for_rows(1)
        self.press("Escape")
        self.nubaria.wait_for_rows(3)
        self.type_text("árbol")
        self.nubaria.wait_for_rows(1)
        self.rename_first(1, "Comprar un árbol")
        self.press("Escape")

    def the_list_is_ordered(self):
        self.press("Tab", "End", "ctrl+f")
        self.rename_first(2, "Repasar todo")  # the most urgent, which is the last in the file

    def a_task_is_deleted(self):
        self.press("ctrl+f", "Down")
        self.wait_for_panel_edge(PANEL_GREY)
        self.press("Tab")
        self.go_on(DETAILS, "title", "delete")
        self.press("space")
        self.say_yes(0)

    def a_task_is_finished(self):
        self.press("ctrl+f", "Down")
        self.wait_for_panel_edge(PANEL_GREY)
        self.press("Tab", "ctrl+t")
        self.wait_for_question()
        self.nubaria.answer("Escape")
        self.go_on(DETAILS, "title", "finish")
        self.press("space")
        self.say_yes(0)

    def a_name_and_an_address_are_written(self):
        self.press("ctrl+3", "Tab", "Tab", "space", "ctrl+a")
        self.type_text("Ana")
        self.press("Tab", "ctrl+a")
        self.type_text("ana@nubaria.example")
        self.press("Tab", "Tab", "space")
        self.wait_for_preference("firstName=Ana")
        self.wait_for_preference("email=ana@nubaria.example")

    def a_picture_is_chosen(self):
        path = self.desktop.folders["home"] / "mar.png"
        path.write_bytes(png(30, 20, SEA_GREEN))
        self.press("ctrl+3", "Tab", "space")
        dialog = wait_for(lambda: self.nubaria.find(DIALOG), "the dialog for files")
        wait_for(lambda: self.desktop.active_window() == dialog, "the dialog to become active")
        self.type_text(str(path))
        self.press("Return")
        self.wait_for_preference(f"profilePicturePath={path}")
        self.nubaria.wait_until_in_front()

    def every_setting_is_changed(self):
        self.press("ctrl+4")
        for key, preference, store in (
            ("space", "simpleNotify=false", "Quenoli"), ("space", "advancedNotify=true", "Quenoli"),
            ("space", "changeClose=true", "Quenoli"), ("End", "displayMessageIndex=2", "Quenoli"),
            ("End", "textEmphasis=1", "Quenoli"), ("End", "colorIndex=6", "QuenoliTheme"),
        ):
            self.press("Tab", key)
            self.wait_for_preference(preference, store)

    def closing_is_to_end_the_program_again(self):
        self.press("ctrl+4", "Tab", "Tab", "Tab", "space")
        self.wait_for_preference("changeClose=false")
        self.press("alt+F4")
        self.nubaria.wait_until_ended()

    # What the steps are made of

    def go_on(self, stops, start, end):
        self.press(*["Tab"] * (stops.index(end) - stops.index(start)))

    def fill_in(self, task, stops, item):
        """From the title on; `item` is the key for what is to be chosen as category."""
        self.press("ctrl+a")
        self.type_text(task["title"])
        self.press("Tab", "ctrl+a")
        self.type_text(task["description"])
        self.press("Tab", item, "Tab")
        day, month, year = task["dateLimit"].split("-")
        self.type_text(f"{day}/{month}/{year[2:]}")
        self.go_on(stops, "year", "urgency")
        self.press(*(["Home", "Down"] if task["urgency"] == "Baja" else ["End"]))

    def rename_first(self, task, title):
        """Of the rows that are listed."""
        self.press("Down")
        self.wait_for_panel_edge(PANEL_GREY)
        self.press("Tab", "ctrl+a")
        self.type_text(title)
        self.press("ctrl+s")
        self.tasks[task] = {**self.tasks[task], "title": title}
        self.nubaria.wait_for_tasks(self.tasks)
        self.wait_for_panel_edge(WHITE)

    def say_yes(self, task):
        self.wait_for_question()
        self.nubaria.answer("alt+s")
        del self.tasks[task]
        self.nubaria.wait_for_tasks(self.tasks)
        self.wait_for_panel_edge(WHITE)

    def wait_for_question(self):
        question = wait_for(lambda: self.nubaria.find(QUESTION), "the question")
        wait_for(lambda: self.desktop.active_window() == question, "the question to become active")
        left, top, width, height = self.desktop.geometry(question)
        if left < 0 or top < 0 or left + width > SCREEN[0] or top + height > SCREEN[1]:
            raise Failure("the question is not within the screen")

    def wait_for_panel_edge(self, colour):
        self.nubaria.wait_for_colour(PANEL_EDGE, colour, "the details to come or go")

    steps = between(locals(), "the_window_does_not_fit", "go_on")


if __name__ == "__main__":
    sys.exit(perform(__doc__, SmallScreen, screen="{}x{}".format(*SCREEN)))
