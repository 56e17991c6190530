#!/usr/bin/python3 -B
"""Asks the published documents with an older program and with the released one, and looks at what they offer.

Usage: announcing.py OLDER NEWER SITE VERSION PICTURES

OLDER and NEWER are the programs as their packages have them, SITE is the folder that the update server publishes and
VERSION is the version in it. `announcement` starts this where the server's name leads to this machine, and where the
tests' authority is trusted. Leaves a picture of each step, and prints what was seen. Ends with 1 and one line on the
first thing that is not as it should be. The first line is Debian's own Python, as that has its bindings to the bus.
"""

import json
import shutil
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "desktop"))

from assistant import Assistant  # noqa: E402  (the path comes first)
from desktop import Desktop, Failure, picture, wait_for  # noqa: E402
from nubaria import Nubaria  # noqa: E402
from publishing import PAGE, Server, check_page  # noqa: E402

PANEL = Path(__file__).with_name("panel.py")
ASKED = [("GET", "/updates/nubaria/version.json", 200)]
TASK = {"title": "Regar la bugambilia", "description": "Al anochecer", "category": "Personal", "urgency": "Media"}
ADDED = ("Tarea agregada", "Una nueva tarea ha sido agregada.")
BANNER, BANNER_INSIDE = "Actualización disponible.", (30, 600)
# The opened page is written to a file in the folder of temporary files.
BROWSER = '#!/bin/sh\necho "$1" >>"$TMPDIR/opened"\n'


def found(version):
    text = f"La actualización de la versión V{version} está disponible para ser instalada."
    return "Nueva versión encontrada", text


class User:
    """One who starts a program on a desktop with a tray, and hears what is on the screen."""

    def __init__(self, program, server, pictures):
        self.folder = Path(tempfile.mkdtemp(prefix="na"))
        self.server, self.pictures = server, pictures
        self.desktop = Desktop(self.folder)
        self.notices_file = self.folder / "notices"
        self.assistant = Assistant(self.desktop)
        self.nubaria = Nubaria(program, self.desktop)
        browser = self.folder / "bin" / "xdg-open"
        browser.parent.mkdir()
        browser.write_text(BROWSER, encoding="ascii")
        browser.chmod(0o755)
        del self.desktop.environment["https_proxy"]
        self.desktop.environment["PATH"] = f"{browser.parent}:{self.desktop.environment['PATH']}"

    def __enter__(self):
        self.server.asked.clear()
        self.desktop.start()
        self.assistant.start()
        self.desktop.spawn(str(PANEL), str(self.notices_file))
        wait_for(lambda: self.told()[:1] == ["ready"], "the panel")
        self.nubaria.start()
        return self

    def __exit__(self, kind, *_):
        if kind:
            picture(self.pictures / "failure.png")
        self.desktop.end()
        shutil.rmtree(self.folder)

    def told(self):
        if not self.notices_file.exists():
            return []
        return [json.loads(line) for line in self.notices_file.read_text(encoding="utf-8").splitlines()]

    def notices(self):
        return [(one["title"], one["text"]) for one in self.told()[1:]]

    def banner(self):
        """What is on the screen of the banner's words and buttons, as a screen reader is told. Does not wait."""
        names = [node.get_name() for node, _ in self.assistant.showing()]
        return [name for name in names if name in (BANNER, "Ignorar", "Descargar")]

    def opened(self):
        file = self.desktop.folders["tmp"] / "opened"
        return file.read_text(encoding="ascii").split() if file.exists() else []

    def expect(self, what, seen, expected):
        if seen != expected:
            raise Failure(f"{what}: {seen} instead of {expected}")
        print(f"  {what}: {seen}", flush=True)


def older_program_announces(program, server, version, pictures):
    print(f"The older program meets version {version}:")
    with User(program, server, pictures) as user:
        wait_for(user.notices, "a notice")
        user.expect("tray notices", user.notices(), [found(version)])
        user.nubaria.wait_for_colour(BANNER_INSIDE, "FFFFFF", "the banner")
        wait_for(lambda: len(user.banner()) == 3, "the words of the banner")
        picture(pictures / "older.png")
        user.expect("banner", user.banner(), [BANNER, "Ignorar", "Descargar"])
        user.expect("the server received", server.asked, ASKED)
        user.assistant.press("Descargar")
        wait_for(user.opened, "the page")
        user.expect("opened in the browser", user.opened(), [PAGE])


def released_program_stays_silent(program, server, version, pictures):
    print(f"The released program meets version {version}:")
    with User(program, server, pictures) as user:
        wait_for(lambda: server.read_by_clients == server.answered > 0, "the program to have read the answer")
        # Told after everything that the answer could have led to.
        user.nubaria.fill_in(TASK)
        user.nubaria.save([TASK])
        wait_for(user.notices, "the notice of the new task")
        picture(pictures / "released.png")
        user.expect("tray notices", user.notices(), [ADDED])
        user.expect("banner", user.banner(), [])
        user.expect("the server received", server.asked, ASKED)


def main():
    if len(sys.argv) != 6:
        print(__doc__, file=sys.stderr)
        return 2
    older, newer, site, version, pictures = sys.argv[1:]
    server = Server(Path(site))
    try:
        print(f"The page as a browser gets it:\n  {check_page(version)}")
        older_program_announces(older, server, version, Path(pictures))
        server.forget()
        released_program_stays_silent(newer, server, version, Path(pictures))
    except Failure as failure:
        print(f"announcing.py: {failure}", file=sys.stderr)
        return 1
    finally:
        server.end()
    return 0


if __name__ == "__main__":
    sys.exit(main())
