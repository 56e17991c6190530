"""Counts instructions with Callgrind: of a start up to its first frame, and of what a person does until it is painted."""

import re
import subprocess
from pathlib import Path
from typing import NamedTuple

from desktop import Failure, wait_for

LONGEST = 300  # seconds for one run
SHARE = 0.03  # of the whole, from which on a function is told
FIRST_FRAME = "QBackingStore::flush(*"
OPERATION = "untilPainted(*"
TWICE = ("1",)  # once to fill caches, and one run


class Count(NamedTuple):
    total: int
    functions: dict  # with what they call, by name


def of_start(desktop, program, out):
    """From the first instruction of the process to the first frame handed to the display; then it is ended."""
    part = Path(f"{out}.1")
    part.unlink(missing_ok=True)
    process = spawn(desktop, out, f"--dump-after={FIRST_FRAME}", *program)
    wait_for(lambda: is_complete(part) or process.poll() is not None, "the first frame", LONGEST)
    process.kill()
    process.wait()
    return read(part)


def of_operation(desktop, program, out):
    """The mean of an operation's first and second time. The program is benchmarks/operations, its row and its side."""
    operations, row, side = program
    process = spawn(desktop, out, f"--toggle-collect={OPERATION}", operations, row, *TWICE, side)
    wait_for(lambda: process.poll() is not None, row, LONGEST)
    total, functions = read(Path(out))
    return Count(total // 2, {name: cost // 2 for name, cost in functions.items()})


def spawn(desktop, out, option, *command):
    return desktop.spawn("valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", option, *map(str, command))


def is_complete(part):
    return part.exists() and re.search(r"^totals: \d+$", part.read_text(encoding="utf-8"), re.MULTILINE)


def read(part):
    if not part.exists():
        raise Failure("the program ends before anything is counted")
    text = subprocess.run(("callgrind_annotate", "--inclusive=yes", "--threshold=100", "--show-percs=no", part),
                          capture_output=True, text=True, timeout=LONGEST, check=True).stdout
    total = int(re.search(r"^ *([\d,]+) +PROGRAM TOTALS", text, re.MULTILINE).group(1).replace(",", ""))
    if not total:
        raise Failure("nothing is counted")
    functions = {}
    for number, name in re.findall(r"^ *([\d,]+) +[^ ]*?:([^\[\n]+?)(?: \[[^\]]*\])?$", text, re.MULTILINE):
        cost = int(number.replace(",", ""))
        # Without a name, or once more within itself.
        if cost >= SHARE * total and not name.startswith("0x") and not re.search(r"'\d+$", name):
            functions.setdefault(name, cost)
    return Count(total, functions)
