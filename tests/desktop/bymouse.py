"""What a hand does with the mouse that a plan of its use does not: it clicks twice, or with the other button, misses
switches by a little, types dates in every way and pastes what it finds."""

from desktop import Failure, run, wait_for
from handling import DATE_TEXT, DAY, MAIL_PLACE, PANEL, PROFILE, SETTINGS, Handling, middle
from nubaria import PAGES, PANEL_TITLE, QUESTION, ROW_BORDER, WHITE, Field, row_middle
from telling import between

WORDS = "Muchas palabras " * 8
LONG_TITLE = "Principio " + "muy largo… " * 60 + "fin"
# Where a row and one of the panel's buttons, or a word of the description, are in the same place.
ROW_AND_UPDATE, ROW_AND_FINISH, ROW_AND_WORD = (1200, 631), (800, 631), (700, 134)
UPDATE_EDGE = (930, 642)  # "Finalizar tarea" comes by there when the panel leaves
CALENDAR, TITLE_BEGINNING = (858, 565), (275, 64, 300, 22)
PANEL_DESCRIPTION = Field((700, 300), (700, 111), "D199E5")
RED = "FF0000"
BOX_GREY, BUTTON_POINTS = "E0E0E0", 500  # of the answer that Enter gives
ROW_RIGHT, BELOW_ROWS, CORNER = 1213, (600, 679), (1222, 679)
PICTURE = "data:image/gif;base64,R0lGODlhAQABAIAAAAAAAP///yH5BAEAAAAALAAAAAABAAEAAAIBRAA7"
HTML = (f'<p style="background-color:#{RED}"><b>rojo</b><img src="{PICTURE}"></p>'
        "<table><tr><td>celda</td></tr></table>")
PLAIN = "rojo y celda"
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


class ByMouse(Handling):
    """The first steps, in the order in which they are told."""

    def the_first_letters_go_into_the_search(self):
        self.write_file()
        self.manual = self.install()
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
            if self.icon_of(question) != self.icon_of(self.nubaria.window):
                raise Failure("the question has not the program's icon")
            left, top, width, height = self.desktop.geometry(question)
            right_half = left + width // 2, top, width - width // 2, height
            wait_for(
                lambda area=right_half: self.desktop.points(*area).count(f"#{BOX_GREY}") > BUTTON_POINTS,
                "the default to look it",
            )
            self.nubaria.answer(answer)
            self.wait_for_panel()
        self.press("Escape")
        self.wait_for_list()
        self.nubaria.wait_for_tasks(self.tasks)

    # Switches

    def a_whole_switch_answers(self):
        self.press("ctrl+4")
        self.wait_for_page("Ajustes")
        for name, key, on in (
            ("simple", "simpleNotify", True), ("advanced", "advancedNotify", False), ("close", "changeClose", False),
        ):
            left, top, width, _ = SETTINGS[name]
            for place in ((left + 2, top + 10), (left + width - 3, top + 10), (400, top), (600, top + 15)):
                on = not on
                self.nubaria.click(place)
                self.wait_for_preference(f"{key}={'true' if on else 'false'}")

    # Descriptions and long titles

    def descriptions_take_plain_text(self):
        self.press("ctrl+1")
        self.wait_for_page("Lista de tareas")
        self.copy(PLAIN, HTML)
        self.press("Up")
        self.wait_for_panel()
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

    # What the steps are made of

    def icon_of(self, window):
        return run("xprop", "-id", window, "_NET_WM_ICON")

    steps = between(locals(), "the_first_letters_go_into_the_search", "icon_of")
