"""A Windows of its own by Wine, on a desktop of its own: one user's folders and registry, and nothing of before."""

import hashlib
import os
import re
import ssl
import struct
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tests" / "desktop"))

from desktop import Desktop, Failure, run, wait_for

WINE = "/usr/lib/wine"  # where Debian keeps it when it is for 64-bit programs alone
OTHERS = re.compile("windows/|users/[^/]+/(Temp/|AppData/LocalLow/Microsoft)")
INTERNET = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings\\Connections"
TRUSTED = "HKCU\\Software\\Microsoft\\SystemCertificates\\Root\\Certificates"
SCREEN = "HKCU\\Control Panel\\Desktop"
LOCALES = ("en_US.UTF-8", "es_MX.UTF-8")
FIRST_START = 300  # seconds until a new Windows is set up, on a busy machine


class Windows(Desktop):
    """A program's paths are those of Windows; `spawn` takes them as well as commands of the system.

    Its user speaks the language of `locale`, one of `LOCALES`. The options are those of the desktop.
    """

    def __init__(self, folder, locale, **options):
        super().__init__(folder, **options)
        self.prefix = folder / "wine"
        self.locales = folder / "locales"
        self.locales.mkdir()
        self.environment |= {
            "PATH": f"{WINE}:{self.environment['PATH']}",
            "WINEPREFIX": str(self.prefix),
            "WINEDEBUG": "-all",
            "LOCPATH": str(self.locales),
            "LC_ALL": locale,
            # Neither offers of downloads nor entries in menus outside of Wine.
            "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe=",
        }

    def start(self):
        super().start()
        for locale in LOCALES:
            language, encoding = locale.split(".")
            run("localedef", "-i", language, "-f", encoding, str(self.locales / locale))
        self.wine("wineboot", "-i", patience=FIRST_START)
        self.become("win10")
        # Without a browser of its own it does not know pages, although it can hand one to a program outside of it.
        self.wine("reg", "add", "HKLM\\Software\\Classes\\.html", "/ve", "/d", "htmlfile", "/f")
        self.enlarge(100)
        self.silence_servers()
        profile, = (path for path in (self.prefix / "drive_c" / "users").iterdir() if path.name != "Public")
        self.folders["home"] = profile

    def spawn(self, *command, **options):
        if ":\\" in command[0]:
            command = ("wine64", *command)
        return super().spawn(*command, **options)

    def become(self, version):
        self.wine("winecfg", "-v", version)

    def enlarge(self, percent):
        """Has the programs that are started from now on show everything at this scale."""
        dots = str(round(96 * percent / 100))
        self.wine("reg", "add", SCREEN, "/v", "LogPixels", "/t", "REG_DWORD", "/d", dots, "/f")

    def go_through(self, port):
        """Has every request to a server go to this port of the machine."""
        server = f"127.0.0.1:{port}".encode()
        version, change, by_proxy = 0x46, 1, 3
        settings = struct.pack("<IIII", version, change, by_proxy, len(server)) + server + bytes(40)
        self.set_bytes(INTERNET, "DefaultConnectionSettings", settings)

    def silence_servers(self):
        self.go_through(self.proxy.getsockname()[1])

    def trust(self, certificate):
        """Has the user trust what this authority signs."""
        encoded = ssl.PEM_cert_to_DER_cert(certificate.read_text(encoding="ascii"))
        name = hashlib.sha1(encoded).digest()
        # A store keeps properties, each with its number, the number 1, its length and itself; 3 is the hash and 32
        # the certificate.
        blob = b"".join(
            struct.pack("<III", number, 1, len(value)) + value for number, value in ((3, name), (32, encoded))
        )
        self.set_bytes(f"{TRUSTED}\\{name.hex().upper()}", "Blob", blob)

    def set_bytes(self, key, name, value):
        self.wine("reg", "add", key, "/v", name, "/t", "REG_BINARY", "/d", value.hex(), "/f")

    def wine(self, *command, patience=60):
        """Runs a program to its end, which has to be a good one, and returns what it prints."""
        try:
            done = subprocess.run(("wine64", *command), env=self.environment, stdin=subprocess.DEVNULL,
                                  capture_output=True, timeout=patience, check=False)
        except (OSError, subprocess.TimeoutExpired) as error:
            raise Failure(f"{command[0]}: {error}") from None
        if done.returncode != 0:
            raise Failure(f"{command[0]} ended with {done.returncode}: {done.stderr.decode('utf-8', 'replace')}")
        return done.stdout.decode("utf-8", "replace")

    def result(self, *command):
        """What a program that is not to wait for anybody ends with."""
        process = self.spawn(*command)
        wait_for(lambda: process.poll() is not None, f"the end of {command[0]}")
        return process.returncode

    def path(self, place):
        """The folder of Wine's that stands for a path of Windows."""
        return self.prefix / "drive_c" / place.removeprefix("C:\\").replace("\\", "/")

    def address(self, place):
        """What a program outside of Wine is told of a file."""
        return f"file://{self.prefix}/dosdevices/c:/" + place.removeprefix("C:\\").replace("\\", "/")

    def files(self):
        """All files and folders but those of Windows itself and temporary ones."""
        root = self.prefix / "drive_c"
        paths = (str(path.relative_to(root)) for path in root.rglob("*"))
        return {path for path in paths if not OTHERS.match(path)}

    def registry(self):
        """Every value of the user, by key and name."""
        exported = self.prefix / "drive_c" / "user.reg"
        self.wine("reg", "export", "HKCU", "C:\\user.reg", "/y")
        text = exported.read_text(encoding="utf-16").replace("\\\n  ", "")
        exported.unlink()
        values, key = {}, ""
        for line in text.splitlines()[1:]:
            if line.startswith("["):
                key = line.strip("[]").removeprefix("HKEY_CURRENT_USER\\")
                values[key, ""] = ""
            elif line:
                name, _, value = line.partition("=")
                values[key, name.strip('"')] = value
        return values

    def stop(self):
        """Ends all its programs, and its server, which outlives them; the next program starts another one."""
        for option in ("-k", "-w"):
            subprocess.run(("wineserver", option), env=self.environment, capture_output=True, timeout=60, check=False)

    def end(self):
        self.stop()
        super().end()
