#!/usr/bin/env -S python3 -B
"""The installer's story under Wine: installed, used, installed again and removed, told with mouse and keyboard.

Usage: story.py INSTALLER PICTURES
"""

import shutil
import signal
import sys
import tempfile
from pathlib import Path

from wine import Windows

from desktop import Failure, geometry, picture, press, run, wait_for
from nubaria import Nubaria
from telling import between, tell
from updates import CERTIFICATES, Updates

WATERING = {"title": "Regar la bugambilia", "description": "En el patio", "category": "Personal", "urgency": "Media"}
PRUNING = {"title": "Podar la jacaranda", "description": "Con tijeras", "category": "Trabajo", "urgency": "Alta"}

ENTRY = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Nubaria"
STORES = ("Software\\Quenoli\\Quenoli", "Software\\Quenoli\\QuenoliTheme")
# What Wine and Windows write of every program that shows a window or asks a server.
WINDOWS_OWN = (
    "Software\\Wine\\",
    "Software\\Microsoft\\SystemCertificates\\",
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\",
)
BANNER_INSIDE = (30, 600)
SCREEN = 1920, 1080
SHORTCUT = "AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Nubaria.lnk"
RUNNING, OLD_WINDOWS, CANCELLED = 3, 4, 1


class Story:
    """The steps, in the order in which they are told."""

    def __init__(self, nubaria, windows, installer, place):
        self.nubaria = nubaria
        self.windows = windows
        self.installer = installer
        self.place = place
        self.files = windows.files()
        self.registry = windows.registry()
        self.updates = None

    def end(self):
        if self.updates:
            self.updates.end()

    def an_old_windows_is_refused(self):
        self.windows.become("win7")
        self.expect(OLD_WINDOWS, self.installer, "/S")
        self.windows.become("win10")
        self.expect_files(set())

    def the_installer_speaks_spanish_and_can_be_left(self):
        installer = self.windows.spawn(self.installer)
        self.dialog(installer, "Instalación de Nubaria")
        picture(PICTURES / "installer.png")
        press("Escape")
        self.wait_for_end(installer)
        self.expect_files(set())

    def it_is_installed_silently(self):
        self.expect(0, self.installer, "/S")
        added = self.windows.files() - self.files
        home = self.windows.folders["home"].name
        if f"users/{home}/{SHORTCUT}" not in added:
            raise Failure("there is no entry in the start menu")
        values = self.windows.registry()
        for name in ("DisplayName", "DisplayVersion", "UninstallString", "QuietUninstallString"):
            if (ENTRY, name) not in values:
                raise Failure(f"the list of installed programs has no {name}")

    def the_window_appears(self):
        self.nubaria.start()
        self.nubaria.expect_size()
        self.nubaria.wait_for_rows(0)

    def a_task_is_added(self):
        self.nubaria.fill_in(WATERING)
        self.nubaria.save([WATERING])
        self.nubaria.wait_for_rows(1)

    def a_second_start_restores_the_minimised_window(self):
        run("xdotool", "windowminimize", self.nubaria.window)
        wait_for(self.nubaria.is_minimised, "the window to be minimised")
        self.nubaria.start_again()

    def neither_installer_nor_uninstaller_touches_a_running_copy(self):
        before = self.windows.files()
        self.expect(RUNNING, self.installer, "/S")
        self.expect(RUNNING, self.uninstaller(), "/S", f"_?={self.place}")
        if self.windows.files() != before:
            raise Failure("files have come or gone")

    def the_installer_asks_for_the_running_copy_to_be_closed(self):
        installer = self.windows.spawn(self.installer)
        self.dialog(installer, "Instalación de Nubaria")
        picture(PICTURES / "running-copy.png")
        press("Escape")
        self.wait_for_end(installer, CANCELLED)

    def a_key_opens_the_manual(self):
        press("F1")
        page = self.windows.address(f"{self.place}\\manual\\manual.es.html")
        wait_for(lambda: self.windows.opened_pages() == [page], "the manual")

    def closing_ends_the_program(self):
        run("xdotool", "windowactivate", "--sync", self.nubaria.window)
        press("alt+F4")
        self.nubaria.wait_until_ended()

    def installing_again_page_by_page_keeps_tasks_and_preferences(self):
        preferences = self.preferences()
        files = self.windows.files()
        installer = self.windows.spawn(self.installer)
        left, top = geometry(self.dialog(installer, "Instalación de Nubaria"))[:2]
        picture(PICTURES / "first-page.png")
        side = (left + 80, top + 300)  # grey, but on the last page
        grey = self.windows.colour(*side)
        press("Return")
        wait_for(lambda: self.windows.colour(*side) != grey, "the last page")
        picture(PICTURES / "last-page.png")
        self.nubaria.wait_for_tasks([WATERING])
        if self.preferences() != preferences or self.windows.files() != files:
            raise Failure("preferences or files have changed")
        press("Return")
        self.wait_for_end(installer, 0)

    def the_last_page_opens_the_program(self):
        window = wait_for(self.opened, "the window")
        run("xdotool", "windowactivate", "--sync", window)
        press("alt+F4")
        wait_for(lambda: not self.opened(), "the window to go")

    def the_window_fits_a_screen_at_150_percent(self):
        self.windows.enlarge(150)
        self.nubaria.start()
        shown = geometry(self.nubaria.window)
        if shown[2:] != (1563, 875):
            raise Failure(f"the window is {shown[2]} by {shown[3]} instead of 1250 by 700 at 125 %")
        if shown[0] < 0 or shown[1] < 0 or shown[0] + shown[2] > SCREEN[0] or shown[1] + shown[3] > SCREEN[1]:
            raise Failure(f"the window at {shown[0]}, {shown[1]} is not within the screen")
        picture(PICTURES / "at-150-percent.png")
        press("alt+F4")
        self.nubaria.wait_until_ended()
        self.windows.enlarge(100)

    def a_newer_version_is_announced(self):
        self.windows.trust(CERTIFICATES / "authority.crt")
        self.updates = Updates("2.0.2028")
        self.windows.go_through(self.updates.server.server_port)
        self.nubaria.start()
        self.nubaria.wait_for_colour(BANNER_INSIDE, "FFFFFF", "the banner")
        if len(self.updates.asked()) != 1:
            raise Failure(f"the server was asked for {self.updates.asked()}")

    def the_task_is_there_and_gets_company(self):
        self.nubaria.wait_for_rows(1)
        self.nubaria.fill_in(PRUNING)
        self.nubaria.save([WATERING, PRUNING])
        press("alt+F4")
        self.nubaria.wait_until_ended()
        self.windows.silence_servers()

    def the_uninstaller_tells_what_stays_and_can_be_left(self):
        files = self.windows.files()
        uninstaller = self.windows.spawn(self.uninstaller(), f"_?={self.place}")
        self.dialog(uninstaller, "Desinstalación de Nubaria")
        picture(PICTURES / "uninstaller.png")
        press("Escape")
        self.wait_for_end(uninstaller)
        if self.windows.files() != files:
            raise Failure("files have come or gone")

    def removing_it_leaves_tasks_and_preferences_alone(self):
        preferences = self.preferences()
        # It goes on as a copy of itself among the temporary files, which Windows removes at its next start.
        self.expect(0, self.uninstaller(), "/S")
        wait_for(lambda: not self.windows.path(self.place).exists(), "the folder of the program to go")
        wait_for(lambda: not any(key == ENTRY for key, _ in self.windows.registry()), "the entry to go")
        self.nubaria.wait_for_tasks([WATERING, PRUNING])
        if not preferences or self.preferences() != preferences:
            raise Failure(f"of the preferences {preferences} are left {self.preferences()}")

    def files_and_registry_are_as_before(self):
        home = self.windows.folders["home"].name
        self.expect_files({f"users/{home}/rmc.json"})
        changes = self.windows.registry().items() ^ self.registry.items()
        left = sorted({key for (key, _), _ in changes if not (key + "\\").startswith(WINDOWS_OWN)
                       and not (key + "\\").startswith("Software\\Quenoli\\")})
        if left:
            raise Failure(f"the registry differs in {left}")

    def expect(self, wanted, *command):
        result = self.windows.result(*command)
        if result != wanted:
            raise Failure(f"{' '.join(command)} ended with {result} instead of {wanted}")

    def expect_files(self, more):
        changes = self.windows.files() ^ (self.files | more)
        if changes:
            raise Failure(f"these files have come or gone: {sorted(changes)}")

    def preferences(self):
        return {name: value for name, value in self.windows.registry().items() if name[0] in STORES}

    def uninstaller(self):
        return f"{self.place}\\desinstalar.exe"

    def dialog(self, process, name):
        def find():
            return run("xdotool", "search", "--all", "--onlyvisible", "--pid", str(process.pid), "--name", name).split()

        window = wait_for(find, f"the window {name}")[-1]
        run("xdotool", "windowactivate", "--sync", window)
        return window

    @staticmethod
    def opened():
        """The program's window, whoever has started it, or None."""
        found = run("xdotool", "search", "--onlyvisible", "--name", "^Nubaria$").split()
        return found[-1] if found else None

    def wait_for_end(self, process, wanted=CANCELLED):
        wait_for(lambda: process.poll() is not None, "the end of the installer")
        if process.returncode != wanted:
            raise Failure(f"the installer ended with {process.returncode}")

    steps = between(locals(), "an_old_windows_is_refused", "expect")


def main(installer, pictures):
    for former in pictures.glob("*.png"):
        former.unlink()
    pictures.mkdir(parents=True, exist_ok=True)
    folder = Path(tempfile.mkdtemp(prefix="nw"))
    windows = Windows(folder, "es_MX.UTF-8", screen="{}x{}".format(*SCREEN))
    try:
        windows.start()
        place = f"C:\\users\\{windows.folders['home'].name}\\AppData\\Local\\Programs\\Nubaria"
        nubaria = Nubaria(f"{place}\\nubaria.exe", windows)
        story = Story(nubaria, windows, f"Z:{installer}".replace("/", "\\"), place)
        try:
            tell(story, pictures)
        finally:
            story.end()
    except Failure as failure:
        print(f"story.py: {failure}", file=sys.stderr)
        return 1
    else:
        print(f"story.py: told in {len(Story.steps)} steps")
    finally:
        windows.end()
        shutil.rmtree(folder)
    return 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    PICTURES = Path(sys.argv[2])
    sys.exit(main(Path(sys.argv[1]).resolve(), PICTURES))
