#!/usr/bin/env -S python3 -B
"""A user makes the program their own in a real X session, and finds it so after a restart.

Usage: personal.py PROGRAM PICTURES

Runs on a display of its own and leaves a picture of the screen after each step. Ends with 1 and one line on the
first step that fails. Needs Xvfb, openbox, xdotool, ImageMagick and the X utilities.
"""

import struct
import sys
import zlib

from desktop import Failure, active_window, click, press, signature, type_text, wait_for
from telling import between, perform

# Places in the window.
NOWHERE = (700, 690)
GREETINGS, PALETTES, EMPHASIS = (500, 403), (500, 465), (975, 403)
UPDATE_SWITCH_BACKGROUND = (284, 225)
EDIT_PICTURE, EDIT_PROFILE = (1132, 110), (1132, 150)
NAME, NAME_AREA = (480, 99), (340, 87, 275, 25)
PICTURE_MIDDLE = (317, 127)
SIDEBAR, CARD = (0, 0, 240, 700), (262, 72, 966, 331)

GREETING_ITEMS = ["Simplificado", "Formal", "Mensaje"]
PALETTE_ITEMS = ["Bugambilia", "Myosotis", "Helianthus", "Amapola", "Orchidaceae", "Jasminum", "Hydrangea"]
EMPHASIS_ITEMS = ["Desactivado", "Activado"]
AMAPOLA_SWITCH, SEA_GREEN = "C10007", "2E8B57"
DIALOG = "^Cargar imagen$"


def png(width, height, colour):
    """A picture of one colour."""

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    lines = (b"\0" + bytes.fromhex(colour) * width) * height
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines)) + chunk(b"IEND", b"")


class Personal:
    """The steps, in the order in which they are told."""

    def __init__(self, nubaria, desktop):
        self.nubaria = nubaria
        self.desktop = desktop
        self.look = {}

    def the_window_appears(self):
        self.nubaria.start()
        self.look["sidebar at first"] = self.seen(SIDEBAR)

    def a_palette_is_chosen(self):
        self.nubaria.open_page("Ajustes")
        self.nubaria.choose(PALETTES, PALETTE_ITEMS, "Amapola")
        self.wait_for_preference("colorIndex=3", "QuenoliTheme")
        self.nubaria.wait_for_colour(UPDATE_SWITCH_BACKGROUND, AMAPOLA_SWITCH, "the red palette")

    def texts_are_emphasised(self):
        before = self.seen(SIDEBAR)
        self.nubaria.choose(EMPHASIS, EMPHASIS_ITEMS, "Activado")
        self.wait_for_preference("textEmphasis=1")
        wait_for(lambda: self.seen(SIDEBAR) != before, "bolder texts")

    def a_greeting_is_chosen(self):
        before = self.seen(SIDEBAR)
        self.nubaria.choose(GREETINGS, GREETING_ITEMS, "Mensaje")
        self.wait_for_preference("displayMessageIndex=2")
        wait_for(lambda: self.seen(SIDEBAR) != before, "the greeting")

    def the_name_is_written(self):
        self.nubaria.open_page("Perfil")
        locked = self.seen(NAME_AREA)
        self.nubaria.click(EDIT_PROFILE)
        wait_for(lambda: self.seen(NAME_AREA) != locked, "the name to be editable")
        waiting = self.seen(NAME_AREA)
        self.nubaria.click(NAME)
        # The window manager holds a click back for a moment, so that keys would overtake it: the cursor tells.
        wait_for(lambda: self.seen(NAME_AREA) != waiting, "the cursor in the name")
        press("ctrl+a")
        type_text("Ana María")

    def the_name_is_saved_and_greeted(self):
        before = self.seen(SIDEBAR)
        self.nubaria.click(EDIT_PROFILE)
        self.wait_for_preference("firstName=Ana María")
        wait_for(lambda: self.seen(SIDEBAR) != before, "the name in the greeting")

    def a_picture_is_looked_for(self):
        path = self.desktop.folders["home"] / "señal de mar.png"
        path.write_bytes(png(300, 200, SEA_GREEN))
        self.nubaria.click(EDIT_PICTURE)
        dialog = wait_for(lambda: self.nubaria.find(DIALOG), "the dialog for files")
        wait_for(lambda: active_window() == dialog, "the dialog to become active")
        type_text(str(path))

    def the_picture_is_chosen(self):
        press("Return")
        wait_for(lambda: not self.nubaria.find(DIALOG), "the end of the dialog")
        self.wait_for_preference("profilePicturePath=", exact=False)
        self.nubaria.wait_for_colour(PICTURE_MIDDLE, SEA_GREEN, "the picture")

    def everything_is_as_wanted(self):
        self.nubaria.wait_until_in_front()
        self.look_at_everything("before")

    def the_program_ends(self):
        press("alt+F4")
        self.nubaria.wait_until_ended()

    def everything_is_as_it_was_left(self):
        self.nubaria.start()
        self.nubaria.open_page("Perfil")
        self.nubaria.wait_for_colour(PICTURE_MIDDLE, SEA_GREEN, "the picture")
        self.look_at_everything("after")
        for part in ("sidebar", "card"):
            if self.look[f"{part} before"] != self.look[f"{part} after"]:
                raise Failure(f"the {part} looks different after the restart")
        if self.look["sidebar after"] == self.look["sidebar at first"]:
            raise Failure("the sidebar looks as on a first start")

    def look_at_everything(self, when):
        self.nubaria.open_page("Perfil")
        corner = self.nubaria.corner
        click(corner[0] + NOWHERE[0], corner[1] + NOWHERE[1])
        # What the mouse was over gives its highlight up a moment later.
        for part, place in (("sidebar", SIDEBAR), ("card", CARD)):
            self.look[f"{part} {when}"] = self.settled(place)

    def settled(self, place):
        """What a part of the window looks like once two looks in a row are alike."""
        looks = [None, self.seen(place)]

        def alike():
            looks[:] = looks[1], self.seen(place)
            return looks[0] == looks[1]

        wait_for(alike, "the window to come to rest")
        return looks[1]

    def seen(self, place):
        left, top = self.nubaria.corner
        return signature(left + place[0], top + place[1], *place[2:])

    def wait_for_preference(self, line, store="Quenoli", exact=True):
        def stored():
            lines = self.nubaria.preferences(store).splitlines()
            return line in lines if exact else any(one.startswith(line) for one in lines)

        wait_for(stored, f"the preference {line}")

    steps = between(locals(), "the_window_appears", "look_at_everything")


if __name__ == "__main__":
    sys.exit(perform(__doc__, Personal))
