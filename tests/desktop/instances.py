#!/usr/bin/python3 -B
"""Starts the program by the hundred, kills it at random and floods its socket: there is one window, and memory stays.

Usage: instances.py PROGRAM [ROUNDS]

Prints what was measured, and ends with 1 and one line on the first promise that is broken. Needs Xvfb, openbox,
xdotool, the X utilities and python3-xlib; as root also the user nobody.
"""

import contextlib
import ctypes
import os
import random
import shutil
import signal
import socket
import stat
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

from desktop import Desktop, Failure, run, wait_for
from pinging import Pinger

STARTS = 100
CONNECTIONS = 10_000
HALF_OPEN = 200
GIBIBYTE = 1 << 30
GROWTH = 4 << 20  # bytes; what an allocator may keep
NOBODY = 65534
QUEUE = 180  # seconds for the window manager to carry out all that a flood has asked of it


class Crowd:
    """Many starts at once, and which of them have a window."""

    def __init__(self, program, desktop, options=None):
        self.program = program
        self.desktop = desktop
        self.options = options or {}  # of the processes
        self.most = 0

    def start(self):
        return self.desktop.spawn(self.program, **self.options)

    def windows(self):
        """The living processes that have a window on the screen."""
        owners = set()
        for window in run("xdotool", "search", "--onlyvisible", "--name", "^Nubaria$").split():
            pid = run("xdotool", "getwindowpid", window).strip()
            if pid and self.runs(int(pid)):
                owners.add(int(pid))
        self.most = max(self.most, len(owners))
        if len(owners) > 1:
            raise Failure(f"{len(owners)} windows at once")
        return owners

    def runs(self, pid):
        return any(process.pid == pid and process.poll() is None for process in self.desktop.processes)

    def round(self, chance):
        """A hundred starts, some of them killed while they start; then one is left, or none if that one was killed."""
        crowd = []
        for _ in range(STARTS):
            crowd.append(self.start())
            if chance.random() < 0.1:
                chance.choice(crowd).kill()
        survivor = []

        def settled():
            windows = self.windows()
            survivor[:] = [process for process in crowd if process.poll() is None]
            return not survivor or (len(survivor) == 1 and windows == {survivor[0].pid})

        wait_for(settled, "all but one to end, and its window")
        self.end(survivor, chance.choice((signal.SIGKILL, signal.SIGTERM)))
        return bool(survivor)

    def start_alone(self):
        """What has to work after any end of any copy: a start that stays and shows its window."""
        process = self.start()
        wait_for(lambda: process.poll() is not None or self.windows() == {process.pid}, "the window of a lone start")
        if process.poll() is not None:
            raise Failure(f"a lone start ended with {process.returncode}")
        return process

    def end(self, processes, how):
        for process in processes:
            process.send_signal(how)
            process.wait()
        self.desktop.processes = [process for process in self.desktop.processes if process.poll() is None]


def memory(pid, which):
    """Bytes of memory that the process has in use, VmRSS, or had at the most since `forget_peak`, VmHWM."""
    for line in Path(f"/proc/{pid}/status").read_text(encoding="utf-8").splitlines():
        if line.startswith(f"{which}:"):
            return int(line.split()[1]) * 1024
    raise Failure("the memory of the program cannot be read")


def forget_peak(pid):
    Path(f"/proc/{pid}/clear_refs").write_text("5", encoding="ascii")


class Flood:
    """What a client can do to the socket, with the memory before and after, and the slowest answer of the window."""

    def __init__(self, process, desktop):
        self.process = process
        self.path = str(desktop.folders["tmp"] / "QuenoliIPC")
        self.broken = []
        windows = run("xdotool", "search", "--all", "--onlyvisible", "--pid", str(process.pid), "--name", "^Nubaria$")
        self.pinger = Pinger(int(windows.split()[-1]))

    def connect(self):
        client = socket.socket(socket.AF_UNIX)  # blocks while the queue of the waiting is full
        client.connect(self.path)
        return client

    def tell(self, what, action):
        forget_peak(self.process.pid)
        before = memory(self.process.pid, "VmRSS")
        worker = threading.Thread(target=action)
        begin = time.monotonic()
        worker.start()
        slowest = 0
        while worker.is_alive():
            slowest = max(slowest, self.pinger.ask())
        worker.join()
        wait_for(lambda: self.sockets() == 0, "the connections to be forgotten")
        grown = memory(self.process.pid, "VmHWM") - before
        print(f"{what}: {time.monotonic() - begin:.1f} s, memory {grown / 1024:+.0f} KiB, "
              f"slowest answer {1000 * slowest:.0f} ms", flush=True)
        if grown > GROWTH:
            self.broken.append(f"{what}: the memory grew")

    def sockets(self):
        return run("ss", "-xH", "state", "established", "src", self.path).count("\n")

    def many(self):
        for _ in range(CONNECTIONS):
            self.connect().close()

    def half_open(self):
        clients = [self.connect() for _ in range(HALF_OPEN)]
        for client in clients:
            client.close()

    def endless(self):
        with contextlib.closing(self.connect()) as client:
            block = bytes(1 << 20)
            for _ in range(GIBIBYTE // len(block)):
                client.sendall(block)


def end_of_flood(crowd, process):
    """Ends the program. Each connection has asked for the front, and the window manager works that off afterwards."""
    crowd.end([process], signal.SIGTERM)
    begin = time.monotonic()
    wait_for(lambda: "0x" not in run("xprop", "-root", "_NET_CLIENT_LIST"), "the window manager to come round", QUEUE)
    print(f"the window manager is busy with them for {time.monotonic() - begin:.1f} s after the end", flush=True)


def as_nobody(*command):
    """Runs a command as a user who has no rights on anything of the program's user; needs root."""
    options = {"user": NOBODY, "group": NOBODY, "extra_groups": ()}
    return subprocess.run(command, capture_output=True, text=True, check=False, **options)


def closed_to_others(desktop):
    """Other users get no connection, even where the folder lets them look at the socket."""
    path = desktop.folders["tmp"] / "QuenoliIPC"
    mode = stat.S_IMODE(path.stat().st_mode)
    if mode & 0o077:
        raise Failure(f"the socket is open to others: {mode:o}")
    if os.geteuid() != 0:
        print("socket: mode 0700 (connecting as another user needs root)")
        return
    for folder in (path.parent, path.parent.parent):
        folder.chmod(0o711)
    connect = f"import socket; socket.socket(socket.AF_UNIX).connect({str(path)!r})"
    refused = as_nobody(sys.executable, "-c", connect)
    if "PermissionError" not in refused.stderr:
        raise Failure(f"another user reached the socket: {refused.stderr or 'connected'}")
    print("socket: mode 0700, another user is refused")


def squatted(program, desktop):
    """What stands where the program wants its names, as a directory and as another user's, is left alone."""
    folder = desktop.folders["tmp"]
    leave_leftovers_behind()
    options = {}
    if os.geteuid() == 0:  # root may do anything: the program is another user's then, and root stands in its way
        shutil.copy(program, folder.parent / "nubaria")
        program = str(folder.parent / "nubaria")
        options = {"user": NOBODY, "group": NOBODY, "extra_groups": ()}
        folder.parent.chmod(0o711)
        for name in ("home", "config", "run"):
            for path in (desktop.folders[name], *desktop.folders[name].rglob("*")):
                os.chown(path, NOBODY, NOBODY)
        folder.chmod(0o1777)
    for leftover in folder.iterdir():  # of killed copies, and of another user than the program's from now on
        leftover.unlink()
    crowd = Crowd(program, desktop, options)
    place = folder / "QuenoliIPC"
    for kind in ("directory", "file") if options else ("directory",):
        place.unlink(missing_ok=True)  # what a killed copy has left
        place.mkdir() if kind == "directory" else place.write_text("theirs", encoding="utf-8")
        squat(crowd, place, f"QuenoliIPC is a {kind} of {'another user' if options else 'our own'}")
        place.rmdir() if kind == "directory" else place.unlink()


def state(path):
    """What a change of the file or folder would change, and looking at it does not."""
    found = path.stat()
    return found.st_ino, found.st_mode, found.st_uid, found.st_size, found.st_mtime_ns, found.st_ctime_ns


def squat(crowd, place, what):
    before = state(place)
    begin = time.monotonic()
    process = crowd.start_alone()
    took = time.monotonic() - begin
    second = crowd.start()
    wait_for(lambda: second.poll() is not None, f"the end of a second start while {what}")
    crowd.windows()
    crowd.end([process], signal.SIGTERM)
    if not place.exists() or state(place) != before:
        raise Failure(f"something was done to what stands there: {what}")
    print(f"{what}: window after {took:.1f} s, one copy, left alone", flush=True)


def everything(program, desktop, rounds):
    chance = random.Random(rounds)
    crowd = Crowd(program, desktop)
    left = 0
    for _ in range(rounds):
        left += crowd.round(chance)
        crowd.end([crowd.start_alone()], chance.choice((signal.SIGKILL, signal.SIGTERM)))
    print(f"{rounds} rounds of {STARTS} starts at once: {left} with a survivor, never more than {crowd.most} window, "
          f"{rounds} lone starts after them all came up", flush=True)
    process = crowd.start_alone()
    flood = Flood(process, desktop)
    print(f"idle: {1000 * max(flood.pinger.ask() for _ in range(20)):.0f} ms at the slowest to answer", flush=True)
    flood.many()  # what the first time needs is not growth
    flood.tell(f"{CONNECTIONS} connections", flood.many)
    flood.tell(f"{HALF_OPEN} half-open connections", flood.half_open)
    flood.tell("1 GiB over one connection", flood.endless)
    closed_to_others(desktop)
    end_of_flood(crowd, process)
    squatted(program, desktop)
    if flood.broken:
        raise Failure("; ".join(flood.broken))


def leave_leftovers_behind():
    """Shared memory and semaphores of their own: the system's names of 16 bits do meet in a crowd. Needs root."""
    new_ipc_namespace = 0x08000000
    ctypes.CDLL(None).unshare(new_ipc_namespace)


def main():
    if len(sys.argv) not in (2, 3):
        print(__doc__, file=sys.stderr)
        return 2
    leave_leftovers_behind()
    folder = Path(tempfile.mkdtemp(prefix="ni"))
    desktop = Desktop(folder)
    try:
        desktop.start()
        everything(str(Path(sys.argv[1]).resolve()), desktop, int(sys.argv[2]) if len(sys.argv) == 3 else 3)
    except Failure as failure:
        print(f"instances.py: {failure}", file=sys.stderr)
        return 1
    finally:
        desktop.end()
        shutil.rmtree(folder)
    return 0


if __name__ == "__main__":
    sys.exit(main())
