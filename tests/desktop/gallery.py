#!/usr/bin/env -S python3 -B
"""Takes the pictures of the documents: Nubaria's pages in its palettes, sizes and desktops, with believable tasks.

Usage: gallery.py PROGRAM FOLDER

The folder holds the tasks, `tareas.json`, and gets the pictures. The clock of the program stands at the morning of
15 June 2026, so that the same program gives the same pictures, but for the blinking cursor. Ends with 1 and one line
on the first picture that cannot be taken. Needs Xvfb, openbox, xdotool, ImageMagick, the X utilities, faketime
and qt6ct.
"""

import shutil
import sys
import tempfile
from pathlib import Path

from desktop import Desktop, Failure, geometry, press, run, signature, type_text, wait_for
from nubaria import CATEGORY, DESCRIPTION, ORDER, PAGES, SEARCH, TITLE, URGENCY, Nubaria
from updates import Updates, trusting

MORNING = "@2026-06-15 09:30:00"
DARK = "/usr/share/qt6ct/colors/darker.conf"
SMALL = ("-strip", "-define", "png:exclude-chunks=all", "-define", "png:compression-level=9")
PALETTES = ["bugambilia", "myosotis", "helianthus", "amapola", "orchidaceae", "jasminum", "hydrangea"]

# Places in the window.
NOWHERE = (1000, 55)  # nothing there changes when the mouse is over it
EDIT_PROFILE, DATE_ARROW, PALETTE = (1132, 150), (870, 552), (500, 465)
BANNER, BANNER_INSIDE = (30, 595), (30, 600)


class Look:
    """One start of the program under given circumstances, and the pictures taken of it."""

    def __init__(self, program, folder, scale=1):
        self.folder = folder
        self.work = Path(tempfile.mkdtemp(prefix="ng"))
        self.desktop = Desktop(self.work, screen=f"{round(1400 * scale)}x{round(860 * scale)}")
        self.desktop.environment |= {
            "TZ": "America/Mexico_City",
            "QT_SCALE_FACTOR": str(scale),
            "FAKETIME": MORNING,
            "FAKETIME_DONT_FAKE_MONOTONIC": "1",
            "LD_PRELOAD": str(next(Path("/usr/lib").glob("*/faketime/libfaketime.so.1"))),
        }
        self.nubaria = Nubaria(program, self.desktop, scale)
        (self.desktop.folders["config"] / "Quenoli").mkdir()

    def __enter__(self):
        self.desktop.start()
        run("xsetroot", "-solid", "white")
        return self

    def __exit__(self, kind, *_):
        if kind:
            run("import", "-silent", "-window", "root", str(self.folder / "failure.png"))
        self.desktop.end()
        shutil.rmtree(self.work)

    def keep_tasks(self):
        shutil.copy(self.folder / "tareas.json", self.desktop.folders["home"] / "rmc.json")

    def prefer(self, store, **values):
        lines = [f"{key}={value}" for key, value in values.items()]
        path = self.desktop.folders["config"] / "Quenoli" / f"{store}.conf"
        path.write_text("\n".join(["[General]", *lines, ""]), encoding="utf-8")

    def darken(self):
        settings = self.desktop.folders["config"] / "qt6ct"
        settings.mkdir()
        look = ("[Appearance]", f"color_scheme_path={DARK}", "custom_palette=true", "style=Fusion")
        lines = (*look, "[Fonts]", 'general="Sans Serif,9,-1,5,400,0,0,0,0,0,0,0,0,0,0,1"', "")
        (settings / "qt6ct.conf").write_text("\n".join(lines), encoding="utf-8")
        self.desktop.environment["QT_QPA_PLATFORMTHEME"] = "qt6ct"

    def seen(self):
        return signature(*geometry(self.nubaria.window))

    def click(self, place, what):
        """Waits until the window looks different; `what` names the difference."""
        before = self.seen()
        self.nubaria.click(place)
        wait_for(lambda: self.seen() != before, what)

    def open_page(self, page):
        self.click(PAGES[page], f"the page {page}")

    def extent(self):
        """The part of the screen that the window takes, with what pops up over its edge."""
        windows = filter(None, (self.nubaria.window, self.nubaria.popup()))
        places = [geometry(window) for window in windows]
        left, top = min(place[0] for place in places), min(place[1] for place in places)
        right, bottom = max(place[0] + place[2] for place in places), max(place[1] + place[3] for place in places)
        return left, top, right - left, bottom - top

    def take(self, name):
        """A picture of the window, with what pops up over it, once it has come to rest."""
        run("xdotool", "mousemove", *map(str, self.nubaria.on_screen(NOWHERE)))
        looks = [None, self.seen()]

        def at_rest():
            looks[:] = looks[1], self.seen()
            return looks[0] == looks[1]

        wait_for(at_rest, f"the window to come to rest for {name}")
        left, top, width, height = self.extent()
        path = self.folder / f"{name}.png"
        part = f"{width}x{height}+{left}+{top}"
        run("import", "-silent", "-window", "root", "-crop", part, "+repage", *SMALL, str(path))
        if not path.exists():
            raise Failure(f"the picture {name} was not written")


def write_a_task(nubaria):
    nubaria.write(TITLE, "Comprar los boletos para Oaxaca")
    nubaria.write(DESCRIPTION, "Ida el 3 de julio, regreso el 12.\nVentanilla, si hay.")


def open_list(nubaria, box, item):
    nubaria.click(box)
    return wait_for(nubaria.popup, f"the list with {item}")


def close_list(nubaria):
    press("Escape")
    wait_for(lambda: not nubaria.popup(), "the end of the list")


def take_pages(look, prefix=""):
    """Every page, the open panel among them, leaving the list of tasks."""
    nubaria = look.nubaria
    look.take(f"{prefix}tareas")
    nubaria.open_row(1)
    look.take(f"{prefix}detalles")
    look.open_page("Nueva tarea")
    write_a_task(nubaria)
    look.take(f"{prefix}nueva-tarea")
    look.open_page("Perfil")
    look.take(f"{prefix}perfil")
    look.open_page("Ajustes")
    look.take(f"{prefix}ajustes")
    look.open_page("Notas de parche")
    look.take(f"{prefix}notas")


def first_start(program, folder):
    with Look(program, folder) as look:
        look.nubaria.start()
        look.take("primer-inicio")


def plain(program, folder):
    with Look(program, folder) as look:
        look.keep_tasks()
        look.prefer("Quenoli", firstName="Ana María", email="ana.maria@correo.example", displayMessageIndex=2)
        nubaria = look.nubaria
        nubaria.start()
        take_pages(look)
        look.open_page("Perfil")
        look.click(EDIT_PROFILE, "the fields to be editable")
        look.take("perfil-editar")
        look.open_page("Nueva tarea")
        open_list(nubaria, URGENCY, "Urgente")
        look.take("prioridad")
        close_list(nubaria)
        open_list(nubaria, DATE_ARROW, "the calendar")
        look.take("calendario")
        close_list(nubaria)
        look.open_page("Lista de tareas")
        nubaria.open_row(6)
        nubaria.ask_to_finish()
        look.take("finalizar")
        nubaria.answer("Escape")
        look.open_page("Lista de tareas")
        before = nubaria.listed()
        nubaria.write(SEARCH, "revis")
        wait_for(lambda: nubaria.listed() != before, "the matches")
        look.take("buscar")
        open_list(nubaria, ORDER, "Prioridad")
        look.take("ordenar")


def announced(program, folder):
    updates = Updates("2.0.2028")
    try:
        with Look(program, folder) as look:
            look.keep_tasks()
            look.desktop.environment["https_proxy"] = updates.address()
            look.nubaria.start((*trusting(look.work / "certificates"), program))
            look.nubaria.wait_for_colour(BANNER_INSIDE, "FFFFFF", "the banner")
            look.take("actualizacion")
    finally:
        updates.end()


def palettes(program, folder):
    for index, name in enumerate(PALETTES):
        with Look(program, folder) as look:
            look.keep_tasks()
            look.prefer("QuenoliTheme", colorIndex=index)
            look.nubaria.start()
            look.open_page("Ajustes")
            look.take(f"color-{name}")


def emphasised(program, folder):
    with Look(program, folder) as look:
        look.keep_tasks()
        look.prefer("Quenoli", textEmphasis=1)
        look.nubaria.start()
        take_pages(look, "textos-gruesos-")


def dark(program, folder):
    with Look(program, folder) as look:
        look.keep_tasks()
        look.darken()
        look.nubaria.start()
        take_pages(look, "oscuro-")
        look.open_page("Nueva tarea")
        open_list(look.nubaria, DATE_ARROW, "the calendar")
        look.take("oscuro-calendario")
        close_list(look.nubaria)
        open_list(look.nubaria, URGENCY, "Urgente")
        look.take("oscuro-prioridad")


def scaled(program, folder):
    for percent in (150, 200):
        with Look(program, folder, percent / 100) as look:
            look.keep_tasks()
            look.nubaria.start()
            take_pages(look, f"escala-{percent}-")
            look.open_page("Nueva tarea")
            open_list(look.nubaria, DATE_ARROW, "the calendar")
            look.take(f"escala-{percent}-calendario")


SERIES = (first_start, plain, announced, palettes, emphasised, dark, scaled)


def main():
    names = [series.__name__ for series in SERIES]
    if len(sys.argv) < 3 or not set(sys.argv[3:]) <= set(names):
        print(f"{__doc__}\nFurther arguments choose series: {', '.join(names)}.", file=sys.stderr)
        return 2
    program, folder = str(Path(sys.argv[1]).resolve()), Path(sys.argv[2]).resolve()
    for series in SERIES:
        if len(sys.argv) > 3 and series.__name__ not in sys.argv[3:]:
            continue
        try:
            series(program, folder)
        except Failure as failure:
            print(f"gallery.py: {series.__name__.replace('_', ' ')}: {failure}", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
