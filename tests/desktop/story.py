#!/usr/bin/env -S python3 -B
"""A user's day with the built program in a real X session, told with mouse and keyboard.

Usage: story.py PROGRAM PICTURES

Runs on a display of its own and leaves a picture of the screen after each step. Ends with 1 and one line on the
first step that fails. Needs Xvfb, openbox, xdotool, ImageMagick and the X utilities.
"""

import re
import sys
import time

from desktop import Failure, press, run, wait_for
from nubaria import CATEGORIES, ORDER, ORDERS, PANEL_CATEGORY, PANEL_TITLE, SEARCH
from telling import between, perform

PLUMBING = {
    "title": "Revisión del año: cañería",
    "description": "Llamar al plomero.\n¿Cuánto costará?",
    "category": "Trabajo",
    "urgency": "Alta",
}
PLUMBING_DONE = {**PLUMBING, "title": "Revisión del año: ¡listo!"}
CLOAK = {"title": "Zurcir la capa", "description": "Botón y ojal", "category": "Personal", "urgency": "Baja"}
ALGEBRA = {"title": "Mi tarea de álgebra", "description": "Capítulo 3", "category": "Escuela", "urgency": "Media"}
TREE = {"title": "Comprar árbol", "description": "Un pingüino también", "category": "Otro", "urgency": "Urgente"}
MORE = {"title": "Una tarea más", "description": "Por si acaso", "category": "Personal", "urgency": "Muy baja"}
LESS = {**MORE, "title": "Una tarea menos"}
TREE_FOR_SCHOOL = {**TREE, "category": "Escuela"}


def today():
    return time.strftime("%d-%m-%Y")


class Story:
    """The steps, in the order in which they are told."""

    def __init__(self, nubaria, desktop):
        self.nubaria = nubaria
        self.desktop = desktop
        self.first_day = today()

    def the_window_appears(self):
        self.nubaria.start()
        self.nubaria.expect_size()
        self.nubaria.wait_for_rows(0)

    def a_task_is_written(self):
        self.nubaria.fill_in(PLUMBING)

    def the_task_is_saved_and_listed(self):
        self.nubaria.save([PLUMBING])
        task = self.nubaria.tasks()[0]
        if task["dateLimit"] not in (self.first_day, today()) or not re.fullmatch(r"\{[0-9a-f-]{36}\}", task["id"]):
            raise Failure(f"the task has a wrong date or id: {task}")
        self.nubaria.wait_for_rows(1)

    def a_click_opens_the_details(self):
        self.nubaria.open_row(0)

    def the_task_is_updated(self):
        self.nubaria.write(PANEL_TITLE, PLUMBING_DONE["title"])
        self.nubaria.update([PLUMBING_DONE])

    def finishing_asks_first(self):
        self.nubaria.open_row(0)
        self.nubaria.ask_to_finish()

    def no_keeps_the_task(self):
        self.nubaria.answer("Escape")
        self.nubaria.wait_for_tasks([PLUMBING_DONE])

    def yes_finishes_it(self):
        self.nubaria.finish([])
        self.nubaria.wait_for_rows(0)

    def four_tasks_are_written(self):
        tasks = [CLOAK, ALGEBRA, TREE, MORE]
        for number, task in enumerate(tasks, 1):
            self.nubaria.fill_in(task)
            self.nubaria.save(tasks[:number])
        self.nubaria.wait_for_rows(4)

    def a_search_finds_two(self):
        self.nubaria.write(SEARCH, "TAREA")
        self.nubaria.wait_for_rows(2)

    def what_was_found_is_updated(self):
        self.nubaria.open_row(1)
        self.nubaria.write(PANEL_TITLE, LESS["title"])
        self.nubaria.update([CLOAK, ALGEBRA, TREE, LESS])
        self.nubaria.wait_for_rows(4)

    def the_list_is_ordered_by_title(self):
        self.order_by("Titulo")

    def the_last_by_title_is_finished(self):
        self.nubaria.open_row(3)
        self.nubaria.finish([ALGEBRA, TREE, LESS])
        self.nubaria.wait_for_rows(3)

    def the_list_is_ordered_by_urgency(self):
        self.order_by("Prioridad")

    def the_most_urgent_is_updated(self):
        self.nubaria.open_row(0)
        self.nubaria.choose(PANEL_CATEGORY, CATEGORIES, TREE_FOR_SCHOOL["category"])
        self.nubaria.update([ALGEBRA, TREE_FOR_SCHOOL, LESS])

    def closing_is_to_hide_the_window(self):
        self.nubaria.open_page("Ajustes")
        self.nubaria.turn_switch(True)

    def closing_hides_the_window(self):
        press("alt+F4")
        wait_for(lambda: not self.nubaria.is_mapped(), "the window to leave")
        if self.nubaria.is_minimised() or self.nubaria.process.poll() is not None:
            raise Failure("the window is minimised, or the program has ended")

    def a_second_start_shows_the_hidden_window(self):
        self.nubaria.start_again()

    def a_second_start_restores_the_minimised_window(self):
        run("xdotool", "windowminimize", self.nubaria.window)
        wait_for(self.nubaria.is_minimised, "the window to be minimised")
        self.nubaria.start_again()
        if self.nubaria.is_minimised():
            raise Failure("the window is still minimised")

    def closing_is_to_end_the_program(self):
        self.nubaria.turn_switch(False)

    def closing_ends_the_program(self):
        press("alt+F4")
        self.nubaria.wait_until_ended()
        self.nothing_is_left()

    def it_starts_again_after_being_killed(self):
        self.nubaria.start()
        self.nubaria.kill()
        self.nubaria.start()
        self.nubaria.wait_for_rows(3)
        self.nubaria.start_again()

    def its_end_leaves_nothing_of_the_killed_one(self):
        press("alt+F4")
        self.nubaria.wait_until_ended()
        self.nothing_is_left()

    def order_by(self, order):
        before = self.nubaria.listed()
        self.nubaria.choose(ORDER, ORDERS, order)
        wait_for(lambda: self.nubaria.listed() != before, f"another order: {order}")

    def nothing_is_left(self):
        files = [path.name for path in self.desktop.folders["tmp"].iterdir()]
        if files or self.desktop.markers():
            raise Failure(f"temporary files {files} and markers {self.desktop.markers()} are left")

    steps = between(locals(), "the_window_appears", "order_by")


if __name__ == "__main__":
    sys.exit(perform(__doc__, Story))
