"""A user's session: a desktop with a message bus, a screen reader, and a program whose own words are kept apart."""

import ctypes
import os
import shutil
import signal
import socket
from pathlib import Path

from desktop import Desktop, markers, wait_for
from reader import Reader, connect

# Reads the shell's own name as the first of the arguments.
KEEPING_WORDS = ("sh", "-c", 'exec "$@" 2>>"$0"')
MARK = "nubaria.tests.Mark"


def adopt_orphans():
    """Has the services of a session become children of this process when their parent ends, to be ended too."""
    set_child_subreaper = 36
    ctypes.CDLL(None).prctl(set_child_subreaper, 1)


def closed_port():
    """A port of this machine where nothing listens."""
    with socket.create_server(("127.0.0.1", 0)) as server:
        return server.getsockname()[1]


def children():
    """The processes whose parent this process is."""
    own = Path(f"/proc/self/task/{os.getpid()}/children").read_text(encoding="ascii")
    return [int(pid) for pid in own.split()]


def remove_semaphore(file):
    """A killed copy leaves one in the system, beside its marker; the file stands for it."""
    libc = ctypes.CDLL(None)
    remove = 0
    libc.semctl(libc.semget(libc.ftok(bytes(file), ord("Q")), 1, 0), 0, remove)


class Session(Desktop):
    """May be ended and started anew, as when its user logs out and in again; the folders stay."""

    def __init__(self, folder, program):
        super().__init__(folder)
        self.program = str(program)
        self.copies = []  # the processes that were started of it
        self.prefix = ()  # put before the program
        self.words = folder / "words"  # what the program writes on its standard error
        self.store = folder / "certificates"
        self.notified = folder / "notified"  # what the bus carried to the notification daemon
        self.environment |= {
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "TZ": "UTC",
        }
        self.bus = self.reader = None
        self.marks = 0
        self.first = 0  # the display among the processes
        self.refuse_updates()

    def refuse_updates(self):
        self.environment["https_proxy"] = f"http://127.0.0.1:{closed_port()}"

    def start(self):
        self.first = len(self.processes)
        self.start_screen()
        address = f"unix:path={self.folders['run']}/bus"
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        self.spawn("dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address={address}")
        self.bus = wait_for(lambda: connect(address), "the message bus")
        rules = "type='method_call',interface='org.freedesktop.Notifications',member='Notify'", f"interface='{MARK}'"
        self.notified.write_text("", encoding="utf-8")
        self.spawn("sh", "-c", 'exec dbus-monitor --session "$@" >"$0"', str(self.notified), *rules)
        wait_for(lambda: "NameAcquired" in self.notified.read_text(encoding="utf-8"), "the listener on the bus")
        self.reader = Reader(self.bus)
        self.reader.follow_focus()

    def catch_up(self):
        """Waits until the listener has written all that the bus has carried so far: a call to nobody is the last."""
        self.marks += 1
        mark = f"Mark{self.marks}"
        self.bus.call("org.freedesktop.DBus", "/", MARK, mark)
        wait_for(lambda: f"member={mark}\n" in self.notified.read_text(encoding="utf-8"), "the listener on the bus")

    def spawn(self, *command, **options):
        if command[0] != self.program:
            return super().spawn(*command, **options)
        process = super().spawn(*KEEPING_WORDS, str(self.words), *self.prefix, *command, **options)
        self.copies.append(process.pid)
        return process

    def left_markers(self):
        """The instance markers that copies of the program have left; the display has shared memory of its own."""
        return markers(set(self.copies))

    def complaints(self):
        """What the program has written, but for what Qt says of keys that a busy screen reader hears of too late."""
        lines = self.words.read_text(encoding="utf-8").splitlines() if self.words.exists() else []
        return [line for line in lines if not line.startswith("QSpiApplication::")]

    def lose_display(self):
        """As at the end of a user's session: whoever has a window is cut off."""
        self.processes[self.first].terminate()

    def log_out(self):
        """What is left of the session ends, and its own folder is emptied; what is kept for the next one stays."""
        for process in reversed(self.processes):
            process.terminate()
            wait_for(lambda one=process: one.poll() is not None, f"the end of {process.args[0]}")
        self.end_services()
        shutil.rmtree(self.folders["run"])
        self.folders["run"].mkdir(mode=0o700)

    def end_services(self):
        """What the bus has started is nobody's child by now, and what that has started comes after it."""
        while pids := children():
            for pid in pids:
                os.kill(pid, signal.SIGKILL)
                os.waitpid(pid, 0)

    def end(self):
        super().end()
        self.end_services()
        for file in self.folders["tmp"].glob("qipc_systemsem_*"):
            remove_semaphore(file)
