"""Nubaria on a desktop with a tray: beside its window it has an icon there, and windows for its notices."""

import re
import time
from pathlib import Path

from desktop import Failure, run, wait_for
from nubaria import SWITCH_OFF, SWITCH_ON, Nubaria
from reader import BUTTON, CHECKED, EDIT, ENABLED, FOCUSED, FRAME, RADIO_BUTTON, VISIBLE

# Switches of the settings, by the name of the preference and the middle of their height.
SWITCHES = {"simpleNotify": 135, "advancedNotify": 180, "changeClose": 270}
KNOB_LEFT, KNOB_RIGHT = 284, 306
EDIT_PROFILE, DOWNLOAD = (1132, 150), (172, 658)
DOUBLE_CLICK = 0.5  # seconds, a little more than the toolkit's
CLOSE = (1240, -11)  # in the frame around the window
PAGE_BUTTONS = ["Lista de tareas", "Nueva tarea", "Perfil", "Ajustes", "Notas de parche"]

DAY = 86_400


class Resident(Nubaria):
    """The program and what is asked of its inside, shown or hidden."""

    # Windows. The program has others: the icon, balloons and menus.

    def find(self, name):
        managed = {int(number, 16) for number in re.findall("0x[0-9a-f]+", run("xprop", "-root", "_NET_CLIENT_LIST"))}
        pid = str(self.process.pid)
        found = run("xdotool", "search", "--all", "--onlyvisible", "--pid", pid, "--name", name).split()
        return next((window for window in found if int(window) in managed), None)

    def popup(self):
        found = run("xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid)).split()
        others = (window for window in found if window != self.window)
        return next((one for one in others if "OVERRIDE" not in run("xprop", "-id", one, "_NET_WM_WINDOW_TYPE")), None)

    # What the program says of itself

    def everything(self):
        """All that is in its windows, shown or hidden; nothing where it has ended."""
        program = self.desktop.reader.program(self.process.pid)
        return program.everything() if program else ()

    def inside(self, kind, name):
        return next((one for one in self.everything() if (one.kind, one.name) == (kind, name)), None)

    def is_shown(self, kind, name):
        element = self.inside(kind, name)
        return bool(element and element.has(VISIBLE))

    def page(self):
        """The page whose button is down, as the program sees it: a hidden window has pages as well."""
        buttons = [one for one in self.everything() if one.kind == RADIO_BUTTON and one.name in PAGE_BUTTONS]
        return next((one.name for one in buttons if one.has(CHECKED)), None)

    def has_come_round(self):
        """Asks twice: the answers come after what the program had to do before. False where it has ended."""
        return all(self.page() for _ in range(2))

    def is_hidden(self):
        """Hidden for the program as for the screen, which may be late."""
        frame = self.inside(FRAME, "Nubaria")
        if not frame or frame.has(VISIBLE) or not frame.has(ENABLED):
            return False  # shown, or has ended
        return not self.is_mapped() and not self.is_minimised()

    def write(self, field, text):
        super().write(field, text)
        # With a screen reader about, keys take another way than the mouse, and come late.
        wait_for(lambda: self.written() == text, f"the text {text}")

    def written(self):
        """The text of the field that has the focus."""
        edits = (one for one in self.everything() if one.kind == EDIT)
        return next((one.text() for one in edits if one.has(FOCUSED)), None)

    # Starting, hiding, ending

    def start_under(self, *prefix):
        self.desktop.prefix = prefix
        self.start()

    def ask_to_close(self):
        """As its user does; what comes of it is a setting. Does not wait."""
        self.click(CLOSE)

    def hide(self):
        self.ask_to_close()
        wait_for(self.is_hidden, "the window to hide")
        # A program that ends with its window has hidden that first, and answers no more than once.
        if not self.has_come_round():
            raise Failure("the program has ended with its window")

    def close(self):
        self.ask_to_close()
        self.wait_until_ended()

    def log_out(self):
        """Ends the program as the end of a user's session does."""
        self.process.terminate()
        wait_for(lambda: self.process.poll() is not None, "the end of the program")

    def wait_for_banner(self):
        left, top = self.corner
        button = wait_for(lambda: self.inside(BUTTON, "Descargar"), "the button of the banner")
        wait_for(lambda: button.geometry() == (left + 125, top + 645, 95, 27), "the banner in its place")

    def wait_for_page(self, page):
        wait_for(lambda: self.page() == page, f"the page {page}")

    # Settings

    def turn(self, preference, on):
        """Turns a switch of the settings, which are open."""
        height = SWITCHES[preference]
        self.click((KNOB_LEFT if on else KNOB_RIGHT, height))
        self.wait_for_preference(preference, on)

    def wait_for_preference(self, preference, on):
        stored = f"{preference}={'true' if on else 'false'}"
        wait_for(lambda: stored in self.preferences().splitlines(), f"the preference {stored}")
        self.wait_for_switch(preference, on)

    def wait_for_switch(self, preference, on):
        free_side, background = (KNOB_LEFT, SWITCH_ON) if on else (KNOB_RIGHT, SWITCH_OFF)
        self.wait_for_colour((free_side, SWITCHES[preference]), background, f"the switch of {preference}")

    # Profile

    def save_profile(self):
        """One button unlocks the profile and then saves it."""
        self.open_page("Perfil")
        for locked in (False, True):
            self.click(EDIT_PROFILE)
            name = "Editar datos" if locked else "Guardar cambios"
            wait_for(lambda shown=name: self.is_shown(BUTTON, shown), f"the button {name}")
            time.sleep(DOUBLE_CLICK)  # a second press within it would not count, here as anywhere


class Clock:
    """The time as the program sees it. It begins at noon of the next day, as no clock may run backwards."""

    def __init__(self, folder):
        self.file = folder / "clock"
        self.first_noon = (time.time() // DAY + 1.5) * DAY
        self.ahead = round(self.first_noon - time.time())
        self.write()

    def write(self):
        # In place of the former file, as the program may read at any moment.
        following = self.file.with_suffix(".new")
        following.write_text(f"+{self.ahead}\n", encoding="ascii")
        following.replace(self.file)

    def prefix(self):
        library = next(Path("/usr/lib").glob("*/faketime/libfaketime.so.1"), None)
        if library is None:
            raise Failure("libfaketime is missing")
        return "env", f"LD_PRELOAD={library}", f"FAKETIME_TIMESTAMP_FILE={self.file}", "FAKETIME_NO_CACHE=1"

    def advance(self, hours, minutes=0):
        self.ahead += 3600 * hours + 60 * minutes
        self.write()

    def date(self, days):
        """The date so many days after the first, as the task file has it."""
        return time.strftime("%d-%m-%Y", time.gmtime(self.first_noon + days * DAY))
