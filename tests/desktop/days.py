"""A user's days with the program on a desktop: what its icon and its notices do there, and how it ends and begins."""

import json

from desktop import Failure, run, wait_for
from nubaria import PANEL_TITLE
from resident import DOWNLOAD, Clock
from telling import between
from updates import Updates, trusting

PROBLEM = "Aviso de actualización", "Hubo un problema al verificar la actualización."
ADDED = "Tarea agregada", "Una nueva tarea ha sido agregada."
PROFILE_SAVED = "Perfil actualizado", "La información del perfil ha sido guardada exitosamente."
NEWER = "2.0.2028"
FOUND = "Nueva versión encontrada", f"La actualización de la versión V{NEWER} está disponible para ser instalada."
DOCUMENT = "/updates/nubaria/version.json"
PAGE = "https://updates.nubaria.example/updates/nubaria/version"

LIGHT = {"title": "Pagar la luz", "description": "En línea", "category": "Personal", "urgency": "Alta"}
PAID = {**LIGHT, "title": "Pagar la luz y el agua"}
WINDOW = {"title": "Cerrar la ventana", "description": "Hoy", "category": "Otro", "urgency": "Baja"}
SHUT = {**WINDOW, "title": "Cerrar la ventana (¡ya!)"}


def updated(task):
    return "Tarea actualizada", f"La tarea '{task['title']}' ha sido actualizada."


def deleted(task):
    return "Tarea eliminada", f"La tarea '{task['title']}' ha sido eliminada."


def due(*titles):
    return "Tareas por vencer", f"Hay {len(titles)} tarea(s) por vencer dentro de 2 días:\n{', '.join(titles)}"


class Days:
    """The steps, in the order in which they are told."""

    def __init__(self, nubaria, desk):
        self.nubaria = nubaria
        self.desk = desk
        self.session = desk.session
        self.menu = None
        self.clock = None
        self.updates = None

    def the_program_starts(self):
        self.start()
        self.nubaria.open_page("Ajustes")
        self.nubaria.wait_for_preference("simpleNotify", True)

    def a_task_is_added(self):
        self.add(LIGHT, [LIGHT])
        self.desk.expect(*ADDED)

    def the_task_is_updated(self):
        self.update(PAID, [PAID])
        self.desk.expect(*updated(PAID))

    def the_task_is_deleted(self):
        self.nubaria.open_row(0)
        self.nubaria.finish([])
        self.desk.expect(*deleted(PAID))

    def the_profile_is_saved(self):
        self.nubaria.save_profile()
        self.desk.expect(*PROFILE_SAVED)

    def the_icon_is_turned_off(self):
        self.desk.dismiss()
        self.nubaria.open_page("Ajustes")
        self.nubaria.turn("simpleNotify", False)
        self.desk.expect_icon(False)

    def without_the_icon_nothing_is_told(self):
        self.add(WINDOW, [WINDOW])
        self.update(SHUT, [SHUT])
        self.nubaria.save_profile()
        self.desk.expect_nothing()

    def a_start_with_the_icon_off_shows_it(self):
        self.nubaria.close()
        self.start()
        self.nubaria.open_page("Ajustes")
        self.nubaria.wait_for_preference("simpleNotify", False)

    def adding_and_deleting_are_not_told_then(self):
        self.desk.dismiss()
        self.add(LIGHT, [SHUT, LIGHT])
        self.nubaria.open_row(1)
        self.nubaria.finish([SHUT])
        self.desk.expect_nothing()

    def updating_is_told_all_the_same(self):
        self.update(WINDOW, [WINDOW])
        self.desk.expect(*updated(WINDOW))

    def the_icon_is_turned_on(self):
        self.nubaria.open_page("Ajustes")
        for on in (True, False, True):
            self.nubaria.turn("simpleNotify", on)
            self.desk.expect_icon(on)

    def closing_hides_the_window(self):
        self.nubaria.turn("changeClose", True)
        self.nubaria.open_page("Lista de tareas")
        self.nubaria.hide()
        self.desk.expect_icon(True)
        self.desk.expect_own_icon()

    def the_menu_of_the_icon_opens(self):
        self.menu = self.desk.open_menu()

    def its_settings_leave_the_window_hidden(self):
        self.desk.choose("Ajustes", self.menu)
        self.nubaria.wait_for_page("Ajustes")
        self.stays_hidden()

    def a_second_start_shows_them(self):
        self.nubaria.start_again()
        self.nubaria.wait_for_page("Ajustes" if self.desk.has_tray else "Lista de tareas")

    def its_settings_restore_a_minimised_window(self):
        self.nubaria.open_page("Lista de tareas")
        run("xdotool", "windowminimize", self.nubaria.window)
        wait_for(self.nubaria.is_minimised, "the window to be minimised")
        # A menu that opens while the program learns of that closes again.
        self.nubaria.has_come_round()
        self.desk.choose("Ajustes")
        self.nubaria.wait_for_page("Ajustes")
        wait_for(lambda: self.nubaria.is_mapped() and not self.nubaria.is_minimised(), "the window to be restored")

    def a_single_click_on_the_icon_does_nothing(self):
        self.nubaria.hide()
        self.desk.click_icon()
        # The menu comes after the click, so whatever that does is done.
        self.desk.close_menu()
        self.stays_hidden()

    def a_double_click_shows_the_tasks(self):
        self.desk.click_icon(times=2)
        if self.desk.tells_double_clicks:
            self.nubaria.wait_until_in_front()
            self.nubaria.wait_for_page("Lista de tareas")
        else:
            self.desk.remarks.append("none is reported here, so a second start does")
            self.desk.close_menu()
            self.stays_hidden()
            self.nubaria.start_again()
            self.nubaria.wait_for_page("Ajustes")

    def leaving_by_the_menu_ends_it_while_shown(self):
        self.leave()
        # Which of its windows Qt would close first differs from start to start.
        for _ in range(2):
            self.start()
            self.leave()

    def leaving_by_the_menu_ends_it_while_hidden(self):
        self.start()
        self.nubaria.hide()
        self.leave()

    def it_starts_after_being_ended_by_the_system(self):
        if self.desk.has_tray:
            self.start()
        self.nubaria.log_out()
        self.start()

    def without_the_switch_a_day_brings_no_reminder(self):
        self.nubaria.log_out()
        self.clock = Clock(self.session.folders["run"])
        tasks = [{**LIGHT, "id": f"{{{days}}}", "title": f"Para el día {days}", "dateLimit": self.clock.date(days)}
                 for days in range(7)]
        (self.session.folders["home"] / "rmc.json").write_text(json.dumps(tasks), encoding="utf-8")
        self.start(*self.clock.prefix())
        self.nubaria.open_page("Ajustes")
        self.pass_time(hours=24, minutes=1)
        self.desk.expect_nothing()

    def with_it_a_day_does(self):
        self.nubaria.turn("advancedNotify", True)
        self.pass_time(hours=23)
        self.desk.expect_nothing()
        self.pass_time(hours=1, minutes=1)
        self.desk.expect(*due("Para el día 3", "Para el día 4"))

    def and_so_does_the_next(self):
        self.desk.dismiss()
        self.pass_time(hours=24, minutes=1)
        self.desk.expect(*due("Para el día 4", "Para el día 5"))

    def a_newer_version_is_told(self):
        self.nubaria.log_out()
        command = trusting(self.session.store)
        self.updates = Updates(NEWER)
        self.session.environment["https_proxy"] = self.updates.address()
        self.nubaria.start_under(*command)
        self.desk.expect(*FOUND)
        self.nubaria.wait_for_banner()
        if self.updates.asked() != [DOCUMENT]:
            raise Failure(f"the server was asked for {self.updates.asked()}")

    def its_page_opens_and_the_window_hides(self):
        self.download(1)
        wait_for(self.nubaria.is_hidden, "the window to hide")

    def its_page_opens_and_the_program_ends(self):
        self.nubaria.start_again()
        self.nubaria.open_page("Ajustes")
        self.nubaria.turn("changeClose", False)
        self.download(2)
        self.nubaria.wait_until_ended()
        self.updates.end()
        self.session.refuse_updates()

    def the_session_ends(self):
        self.start()
        self.desk.close_accounts()
        self.session.lose_display()
        wait_for(lambda: self.nubaria.process.poll() is not None, "the end of the program")
        self.session.words.unlink()  # what Qt says of a lost display
        self.session.log_out()

    def it_starts_in_the_next_session(self):
        self.session.start()
        self.desk.start()
        self.start()

    def it_ends_and_leaves_nothing(self):
        self.nubaria.close()
        self.desk.expect_icon(False)
        self.nothing_is_left()

    # What several steps do

    def tidy_up(self):
        """After the picture of a step: closes what was left open for that."""

    def nothing_is_left(self):
        files = [path.name for path in self.session.folders["tmp"].iterdir() if path != self.session.opened]
        if files or self.session.left_markers():
            raise Failure(f"temporary files {files} and markers {self.session.left_markers()} are left")

    def start(self, *prefix):
        """A start that reaches no update server: the notice of it is the first, and tells that the icon is there."""
        self.nubaria.start_under(*prefix)
        self.desk.expect(*PROBLEM)
        self.desk.expect_icon(True)

    def add(self, task, expected):
        self.nubaria.fill_in(task)
        self.nubaria.save(expected)

    def update(self, task, expected):
        """Gives the only task another title."""
        self.nubaria.open_page("Lista de tareas")
        self.nubaria.open_row(0)
        self.nubaria.write(PANEL_TITLE, task["title"])
        self.nubaria.update(expected)

    def leave(self):
        self.desk.choose("Salir")
        self.nubaria.wait_until_ended()
        self.desk.expect_icon(False)

    def stays_hidden(self):
        if not self.nubaria.is_hidden():
            raise Failure("the window has come back")

    def pass_time(self, **parts):
        self.clock.advance(**parts)
        # The program looks at its clock when something wakes it: questions do, and their answers come after it has.
        self.nubaria.has_come_round()

    def download(self, times):
        self.desk.dismiss()
        self.nubaria.click(DOWNLOAD)
        wait_for(lambda: self.session.opened_pages() == [PAGE] * times, "the page of the newer version")

    steps = between(locals(), "the_program_starts", "tidy_up")
    of_the_tray = between(locals(), "the_menu_of_the_icon_opens", "a_second_start_shows_them") + between(
        locals(), "its_settings_restore_a_minimised_window", "it_starts_after_being_ended_by_the_system")
