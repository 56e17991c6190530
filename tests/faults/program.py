"""Runs one operation of the program in a session of its own, with a fault or without."""

import json
import os
import shutil
import signal
import subprocess
import tempfile
from dataclasses import dataclass, field
from pathlib import Path

PATIENCE = 60  # seconds for one operation; a busy machine is slow


@dataclass
class Call:
    """A call into the system, as it was made."""

    kind: str
    asked: int  # flags of an open, size of a read or write
    result: int  # or the negative error
    begun: int  # nanoseconds
    ended: int
    memory: int  # bytes in use before it


@dataclass
class Outcome:
    """What came of an operation."""

    told: list = field(default_factory=list)
    state: dict = None  # None when the program did not get that far
    ending: str = ""  # "" for a good one
    content: bytes = None  # of the task file; None when there is none
    calls: list = field(default_factory=list)


class Program:
    """The program that performs operations, with the library that counts its calls."""

    def __init__(self, program, library):
        self.program = str(program)
        self.library = str(library)

    def run(self, operation, content, fault="", on_disk=False):
        """What comes of the operation on a file of this content, which may have to be on the disk, not in memory."""
        folder = Path(tempfile.mkdtemp(prefix="nf"))
        try:
            for name in ("home", "config", "run", "tmp"):
                (folder / name).mkdir(mode=0o700)
            path = folder / "home" / "rmc.json"
            if content is not None:
                with path.open("wb") as file:
                    file.write(content)
                    if on_disk:
                        file.flush()
                        os.fsync(file.fileno())
            outcome = self.perform(operation, folder, {"FAULTY_FILE": str(path), "FAULTY_CALL": fault})
            outcome.content = path.read_bytes() if path.exists() else None
            return outcome
        finally:
            shutil.rmtree(folder)

    def perform(self, operation, folder, faulty):
        environment = {
            "LC_ALL": "C.UTF-8",
            "TZ": "UTC",
            "QT_QPA_PLATFORM": "offscreen",
            "HOME": str(folder / "home"),
            "XDG_CONFIG_HOME": str(folder / "config"),
            "XDG_CONFIG_DIRS": str(folder / "run"),
            "XDG_RUNTIME_DIR": str(folder / "run"),
            "TMPDIR": str(folder / "tmp"),
            "LD_PRELOAD": self.library,
            # A sanitizer's library wants to be the first; that the preloaded one precedes it does no harm.
            "ASAN_OPTIONS": ":".join(["verify_asan_link_order=0", os.environ.get("ASAN_OPTIONS", "")]),
            "UBSAN_OPTIONS": os.environ.get("UBSAN_OPTIONS", ""),
            "FAULTY_TRACE": str(folder / "trace"),
        }
        try:
            ended = subprocess.run([self.program, operation], env=environment | faulty, capture_output=True,
                                   timeout=PATIENCE, check=False)
        except subprocess.TimeoutExpired:
            return Outcome(ending=f"does not end within {PATIENCE} s")
        outcome = Outcome(ending=how_it_ended(ended), calls=calls(folder / "trace"))
        for (line,) in map(json.loads, ended.stdout.decode().splitlines()):
            if isinstance(line, dict):
                outcome.state = line
            else:
                outcome.told.append(line)
        return outcome


def how_it_ended(process):
    if process.returncode < 0:
        return signal.Signals(-process.returncode).name
    if process.returncode > 0:
        return f"result {process.returncode}: {process.stderr.decode().strip()[-200:]}"
    return ""


def calls(trace):
    if not trace.exists():
        return []
    lines = [line.split() for line in trace.read_text(encoding="ascii").splitlines()]
    return [Call(kind, *map(int, numbers)) for kind, *numbers in lines]


def uses(made):
    """The calls gathered to uses of the file: looks at it, and everything from opening to closing it."""
    names = {os.O_RDONLY: "read", os.O_RDWR | os.O_CREAT: "read and write",
             os.O_WRONLY | os.O_CREAT | os.O_TRUNC: "write"}
    found = []
    for number, call in enumerate(made):
        belongs = call.kind == "stat" and found and made[number - 1].kind == "access"
        if call.kind == "open":
            found.append((names.get(call.asked & ~os.O_CLOEXEC, f"open with {call.asked:#o}"), []))
        elif call.kind in ("access", "stat") and not belongs:
            found.append(("look", []))
        elif call.kind in ("rename", "unlink", "truncate") or not found:
            found.append((call.kind, []))
        found[-1][1].append(number)
    return found
