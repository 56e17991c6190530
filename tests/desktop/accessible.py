#!/usr/bin/python3 -B
"""A user's day with the built program in a real X session, told through assistive technology (AT-SPI).

Usage: accessible.py PROGRAM PICTURES

Runs on a display and a D-Bus session of its own and leaves a picture of the screen after each step. Ends with 1 and
one line on the first step that fails. Needs what story.py needs, and at-spi2-core, dbus, gir1.2-atspi-2.0, python3-gi.
"""

import sys
import time

from assistant import BUTTON, FOCUSED, SENSITIVE, SHOWING, Assistant, children
from desktop import Failure, press, wait_for
from naming import faults
from telling import between, perform

PAGES = ["Nueva tarea", "Perfil", "Ajustes", "Notas de parche", "Lista de tareas"]
# Something to be heard on each page only.
TITLES = {
    "Lista de tareas": "Administra y organiza tus proyectos y actividades pendientes.",
    "Nueva tarea": "Crea una nueva tarea para mantener tus actividades organizadas.",
    "Perfil": "Administra tu información personal y revisa los detalles de almacenamiento de tus tareas.",
    "Ajustes": "Personaliza tu experiencia y configura las preferencias de la aplicación.",
    "Notas de parche": "Notas de parche - Versión 2.0.2027 (VBLOQnuWDEMSREL2.0.2027_QN10062026)",
}
NO_TASK = "NO HAY NINGUNA TAREA DISPONIBLE"
QUESTION, QUESTION_TEXT = "Finalizar Tarea", "¿Está seguro de que desea finalizar y eliminar esta tarea?"
NEW_CATEGORY, NEW_URGENCY = "Categoría de la tarea nueva", "Nivel de prioridad de la tarea nueva"
CATEGORY, URGENCY = "Categoría de la tarea", "Nivel de prioridad de la tarea"

PLUMBING = {
    "title": "Revisión del año: cañería",
    "description": "Llamar al plomero.\n¿Cuánto costará?",
    "category": "Trabajo",
    "urgency": "Alta",
    "dateLimit": time.strftime("31-12-%Y"),
}
PLUMBING_DONE = {**PLUMBING, "title": "Revisión del año: ¡listo!", "category": "Otro", "dateLimit": "05-01-2030"}
CLOAK = {"title": "Zurcir la capa", "description": "Botón y ojal", "category": "Personal", "urgency": "Alta"}
TREE = {"title": "Comprar árbol", "description": "Un pingüino también", "category": "Otro", "urgency": "Baja"}
LESSON = {"title": "Mi tarea de álgebra", "description": "Capítulo 3", "category": "Escuela", "urgency": "Media"}
LESSON_DONE = {**LESSON, "description": "Capítulos 3 y 4", "urgency": "Muy baja"}
PAGE_BUTTON = "radio button"
PANEL = "Detalles de la tarea"


def short(date):
    """A date of the task file as the editors show it."""
    day, month, year = date.split("-")
    return f"{day}/{month}/{year[2:]}"


def report(found):
    if found:
        raise Failure(f"not to be told apart by ear, {len(found)}: {'; '.join(found)}")


class Accessible:
    """The steps, in the order in which they are told."""

    def __init__(self, nubaria, desktop):
        self.nubaria = nubaria
        self.assistant = Assistant(desktop)

    def the_window_is_announced(self):
        self.assistant.start()
        self.nubaria.start()
        self.assistant.find("frame", "Nubaria")
        self.assistant.find("label", NO_TASK)
        self.wait_for_rows([])

    def what_is_parked_is_not_there(self):
        self.assistant.wait_for(self.panel_is_away, "the details to be away")
        if self.assistant.all(BUTTON, "Descargar"):
            raise Failure("the update banner is told as showing")

    def every_page_tells_what_is_on_it(self):
        found = []
        for page in PAGES:
            self.open_page(page)
            found += self.faults()
        report(found)

    def a_task_is_written(self):
        self.fill_in(PLUMBING)
        self.everything_has_a_name()

    def the_task_is_saved_and_listed(self):
        self.assistant.press("Guardar tarea")
        self.nubaria.wait_for_tasks([PLUMBING])
        self.wait_for_rows([PLUMBING])
        self.assistant.wait_for(lambda: not self.assistant.all("label", NO_TASK), "the end of 'no task'")

    def its_details_are_heard(self):
        self.open_row(PLUMBING)
        self.everything_has_a_name()

    def the_task_is_updated(self):
        self.assistant.write(self.assistant.find("text", "Título de la tarea"), PLUMBING_DONE["title"])
        self.assistant.write(self.assistant.find("spin button", "Fecha límite"), short(PLUMBING_DONE["dateLimit"]))
        self.assistant.choose(CATEGORY, PLUMBING_DONE["category"])
        self.update([PLUMBING_DONE])
        self.wait_for_rows([PLUMBING_DONE])

    def its_date_is_raised_and_lowered(self):
        self.open_row(PLUMBING_DONE)
        date = self.assistant.find("spin button", "Fecha límite")
        self.assistant.act(date, "Increase")
        self.assistant.wait_for_text(date, "06/01/30")
        self.assistant.act(date, "Decrease")
        self.assistant.act(date, "Decrease")
        self.assistant.wait_for_text(date, "04/01/30")
        self.assistant.change_value(date, 1)
        self.assistant.wait_for_text(date, short(PLUMBING_DONE["dateLimit"]))
        self.close_details()

    def the_details_open_again(self):
        self.open_row(PLUMBING_DONE)
        self.close_details()

    def finishing_asks_first(self):
        self.open_row(PLUMBING_DONE)
        self.assistant.press("Finalizar tarea")
        self.assistant.find("alert", QUESTION)
        self.assistant.find("label", QUESTION_TEXT)
        self.everything_has_a_name()

    def no_keeps_the_task(self):
        self.answer("No")
        self.nubaria.wait_for_tasks([PLUMBING_DONE])
        self.assistant.wait_for(self.panel_is_open, "the details to stay")

    def yes_finishes_it(self):
        self.assistant.press("Finalizar tarea")
        self.answer("Sí")
        self.nubaria.wait_for_tasks([])
        self.wait_for_rows([])

    def three_tasks_are_written(self):
        tasks = [CLOAK, TREE, LESSON]
        for number, task in enumerate(tasks, 1):
            self.fill_in(task)
            self.assistant.press("Guardar tarea")
            self.nubaria.wait_for_tasks(tasks[:number])
        self.wait_for_rows(tasks)

    def they_are_ordered(self):
        self.order_by("Titulo", [TREE, LESSON, CLOAK])
        self.order_by("Prioridad", [CLOAK, LESSON, TREE])
        self.order_by("Recientes", [CLOAK, TREE, LESSON])

    def a_search_finds_one(self):
        self.search("TAREA", [LESSON])
        self.everything_has_a_name()

    def what_was_found_is_updated(self):
        self.open_row(LESSON)
        self.assistant.write(self.assistant.find("text", "Descripción de la tarea"), LESSON_DONE["description"])
        self.assistant.choose(URGENCY, LESSON_DONE["urgency"])
        self.update([CLOAK, TREE, LESSON_DONE])
        self.wait_for_rows([CLOAK, TREE, LESSON_DONE])
        self.search("", [CLOAK, TREE, LESSON_DONE])

    def the_details_are_left_as_they_are(self):
        self.open_row(TREE)
        self.assistant.write(self.assistant.find("text", "Título de la tarea"), "Otra cosa")
        self.close_details()
        self.nubaria.wait_for_tasks([CLOAK, TREE, LESSON_DONE])

    def switches_are_turned(self):
        self.open_page("Ajustes")
        for name, key, first in (
            ("Cambio de acción al cerrar", "changeClose", True),
            ("Notificaciones de recordatorio", "advancedNotify", True),
            ("Notificaciones generales", "simpleNotify", False),
        ):
            for on in (first, not first):
                self.assistant.toggle(name, on)
                self.wait_for_preference(f"{key}={'true' if on else 'false'}")

    def the_look_is_chosen(self):
        self.assistant.choose_from_open_list("Color de énfasis de la aplicación", "Amapola")
        self.wait_for_preference("colorIndex=3", "QuenoliTheme")
        self.assistant.choose("Mejorar visibilidad de textos con letras más gruesas", "Activado")
        self.wait_for_preference("textEmphasis=1")
        self.assistant.choose("Modo de muestreo de mensaje en el encabezado", "Mensaje (Saludo, Nombre y Fecha)")
        self.wait_for_preference("displayMessageIndex=2")
        self.assistant.find("label", "¡Hola, Invitado(a)!")
        self.everything_has_a_name()

    def the_name_is_written_and_greeted(self):
        self.open_page("Perfil")
        self.assistant.find("image", "Foto de perfil")
        self.assistant.press("Editar datos")
        self.assistant.write(self.assistant.find("text", "Nombre"), "Ana María")
        self.assistant.write(self.assistant.find("text", "Correo electrónico"), "ana@nubaria.example")
        self.everything_has_a_name()
        self.assistant.press("Guardar cambios")
        self.wait_for_preference("firstName=Ana María")
        self.wait_for_preference("email=ana@nubaria.example")
        self.assistant.find("label", "¡Hola, Ana María!")
        self.assistant.wait_for_state(self.assistant.find("text", "Nombre"), SENSITIVE, False)

    def closing_ends_the_program(self):
        press("alt+F4")
        self.nubaria.wait_until_ended()

    # What the steps are made of

    def everything_has_a_name(self):
        report(self.faults())

    def faults(self):
        return self.assistant.wait_for(lambda: [faults(self.assistant)], "everything on the screen to answer")[0]

    def open_page(self, page):
        self.assistant.act(self.assistant.find(PAGE_BUTTON, page), "Press")
        self.assistant.find("label", TITLES[page])

    def fill_in(self, task):
        self.open_page("Nueva tarea")
        self.assistant.write(self.assistant.find("text", "Nombre de la tarea"), task["title"])
        self.assistant.write(self.assistant.find("text", "Descripción"), task["description"])
        self.assistant.choose(NEW_CATEGORY, task["category"])
        self.assistant.choose(NEW_URGENCY, task["urgency"])
        if "dateLimit" in task:
            self.assistant.write(self.assistant.find("spin button", "Fecha límite"), short(task["dateLimit"]))

    def rows(self):
        return children(self.assistant.find("list", "Lista de tareas"))

    def wait_for_rows(self, tasks):
        expected = [task["title"] for task in tasks]
        self.assistant.wait_for(
            lambda: [row.get_name() for row in self.rows()] == expected, f"the rows {expected}"
        )

    def open_row(self, task):
        self.assistant.act(self.assistant.find("list item", task["title"]), "Toggle")
        # The panel is announced by its focus, with the title of the task.
        self.assistant.wait_for_state(self.assistant.find("panel", PANEL, task["title"]), FOCUSED)
        self.assistant.find("combo box", task["category"], CATEGORY)
        self.assistant.find("combo box", task["urgency"], URGENCY)
        expected = {"Título de la tarea": task["title"], "Descripción de la tarea": task["description"]}
        for name, words in expected.items():
            self.assistant.wait_for_text(self.assistant.find("text", name), words)
        if "dateLimit" in task:
            self.assistant.wait_for_text(self.assistant.find("spin button", "Fecha límite"), short(task["dateLimit"]))

    def panel_is_open(self):
        return self.assistant.all("panel", PANEL)

    def panel_is_away(self):
        return not self.panel_is_open()

    def close_details(self):
        panel = self.assistant.find("panel", PANEL)
        self.assistant.press("Cerrar los detalles")
        self.assistant.wait_for_state(panel, SHOWING, False)

    def update(self, expected):
        self.assistant.press("Actualizar tarea")
        self.nubaria.wait_for_tasks(expected)
        self.assistant.wait_for(self.panel_is_away, "the details to leave")

    def answer(self, button):
        self.assistant.press(button)
        self.assistant.wait_for(
            lambda: [window.get_name() for window in self.assistant.windows()] == ["Nubaria"],
            "the end of the question",
        )

    def order_by(self, order, expected):
        self.assistant.choose("Orden de la lista de tareas", order)
        self.wait_for_rows(expected)

    def search(self, words, expected):
        self.assistant.write(self.assistant.find("text", "Buscar tarea"), words)
        self.wait_for_rows(expected)

    def wait_for_preference(self, line, store="Quenoli"):
        wait_for(lambda: line in self.nubaria.preferences(store).splitlines(), f"the preference {line}")

    steps = between(locals(), "the_window_is_announced", "everything_has_a_name")


if __name__ == "__main__":
    sys.exit(perform(__doc__, Accessible))
