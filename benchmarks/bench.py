#!/usr/bin/env -S python3 -B
"""Measures Nubaria against the least that a program of its kind can take, and prints three tables: what a person does,
what the start is made of, and how the operations grow with the tasks.

Usage: bench.py BUILD [RUNS]   (the folder of a release build with the benchmarks; 9 runs of each unless told otherwise)

Every figure is a median of runs in which floor and Nubaria alternate, on a display, in a home and with settings of
their own, so that what else the machine does meets both alike. Ends with 1 if a measurement cannot be made; a goal that
is missed is told in the table and no failure.
"""

import json
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import uuid
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests" / "desktop"))

from counting import of_start  # noqa: E402  pylint: disable=wrong-import-position
from desktop import Desktop, Failure, wait_for  # noqa: E402  pylint: disable=wrong-import-position

WORDS = "comprar revisar llamar enviar preparar informe cliente proyecto médico escuela casa reunión libro año".split()
CATEGORIES = ("Personal", "Trabajo", "Escuela", "Otro")
URGENCIES = ("Muy baja", "Baja", "Media", "Alta", "Urgente")
# Programs of this kind that Debian has; each is measured where it is installed. A browser shows a page of this size in a
# window of its own.
PEERS = {
    "osmo": ("osmo",),
    "zanshin": ("zanshin",),
    "a browser's window": ("chromium", "--no-sandbox", "--no-first-run", "--window-size=1250,700",
                           "--app=data:text/html,<h1>Tareas"),
}
STEPS = ("with the form in place of the list", "and its style sheet", "and the shadow of the menu",
         "and the request for the version", "and the file read three times")
OPERATIONS = {
    "search": "one key in the search field",
    "order": "choosing an order",
    "save": "saving a task",
    "update": "updating a task",
    "finish": "finishing a task",
}
COUNTS = (1000, 10000, 100000)  # of tasks, to see what grows how
PROCESSES = 3  # for a series: how the heap lies differs from one to the next
LONGEST = 600  # seconds for one process


class Row(NamedTuple):
    what: str
    unit: str
    floor: float
    own: float
    goal: float | None = None  # times the floor, or in the unit where `absolute`
    absolute: bool = False

    def line(self):
        ratio = self.own / self.floor
        reached = "" if self.goal is None else f"{self.goal:g} {self.unit}" if self.absolute else f"{self.goal:g} ×"
        value = self.own if self.absolute else ratio
        verdict = "" if self.goal is None else "yes" if value <= self.goal else "no"
        return f"| {self.what} | {self.floor:.1f} {self.unit} | {self.own:.1f} {self.unit} | {ratio:.2f} | {reached} | {verdict} |"


def tasks(count):
    chance = random.Random(count)

    def words(least, most):
        return " ".join(chance.choices(WORDS, k=chance.randint(least, most))).capitalize()

    return [{
        "category": chance.choice(CATEGORIES),
        "dateLimit": f"{chance.randint(1, 28):02}-{chance.randint(1, 12):02}-2026",
        "description": words(5, 20),
        "id": f"{{{uuid.UUID(int=chance.getrandbits(128), version=4)}}}",
        "title": f"{words(2, 6)} {number}",
        "urgency": chance.choice(URGENCIES),
    } for number in range(count)]


class Bench:
    def __init__(self, build, runs):
        self.build, self.runs = build, runs
        self.folder = Path(tempfile.mkdtemp(prefix="nb"))
        self.desktop = Desktop(self.folder)
        self.files = {}
        # What the other programs look for; without it they wait, and Nubaria does not.
        self.bus = self.desktop.folders["run"] / "bus"
        self.desktop.environment |= {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.bus}", "NO_AT_BRIDGE": "1"}

    def __enter__(self):
        self.desktop.start()
        address = self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.desktop.spawn("dbus-daemon", "--session", f"--address={address}", "--nofork")
        wait_for(self.bus.exists, "the session's bus")
        return self

    def __exit__(self, *_):
        self.desktop.end()
        shutil.rmtree(self.folder)

    def keep(self, count):
        """Puts a file of so many tasks into the home."""
        if count not in self.files:
            self.files[count] = self.folder / f"{count}.json"
            text = json.dumps(tasks(count), ensure_ascii=False, indent=4)
            self.files[count].write_text(text + "\n", encoding="utf-8")
        shutil.copy(self.files[count], self.desktop.folders["home"] / "rmc.json")

    def numbers(self, *command):
        result = subprocess.run(command, env=self.desktop.environment, capture_output=True, text=True,
                                timeout=LONGEST, check=False)
        if result.returncode != 0:
            raise Failure(f"{' '.join(map(str, command))}: {(result.stderr.strip() or 'fails').splitlines()[-1]}")
        return [[float(word) for word in line.split()] for line in result.stdout.splitlines()]

    def start(self, program, settle=0):
        """Milliseconds of wall time and of processor time until the window is painted, then MB of memory."""
        waiting = ("--settle", str(settle)) if settle else ()
        command = (self.build / "benchmarks" / "firstpaint", *waiting, "--", *program)
        (values,) = self.numbers(*command)
        return values[:2] + [size / 1024 for size in values[2:]]

    def starts(self, programs, count, settle=0):
        """The medians of each program's figures, the programs taking turns; the first turn fills caches only."""
        self.keep(count)
        figures = [[self.start(program, settle) for program in programs] for _ in range(self.runs + 1)][1:]
        return [[statistics.median(values) for values in zip(*of_one)] for of_one in zip(*figures)]

    def operation(self, name, count):
        pairs = []
        for _ in range(PROCESSES):
            self.keep(count)
            pairs += self.numbers(self.build / "benchmarks" / "operations", name, str(-(-self.runs // PROCESSES)))
        return [statistics.median(values) for values in zip(*pairs)]

    def instructions(self, program, count):
        """Millions up to the first frame."""
        self.keep(count)
        return of_start(self.desktop, program, self.folder / "calls").total / 1e6

    def floor(self, *steps):
        return (self.build / "benchmarks" / "floorwindow", *steps)

    def nubaria(self):
        return (self.build / "app" / "nubaria",)


def start_rows(bench):
    times = {count: bench.starts([bench.floor(), bench.nubaria()], count) for count in (0, 1000, 10000)}
    for place, what, goal in ((0, "wall time", 1.8), (1, "processor time", 2.2)):
        for count in (0, 1000):
            floor, own = times[count]
            yield Row(f"start with {count:,} tasks, {what}", "ms", floor[place], own[place], goal)
        floor, own = times[10000]
        constant = times[0][1][place] - times[0][0][place]
        yield Row(f"start with 10,000 tasks less the constant, {what}", "ms", floor[place], own[place] - constant, 1.3)
    for count, goal in ((0, 270), (1000, 320)):
        floor, own = (bench.instructions(program, count) for program in (bench.floor(), bench.nubaria()))
        yield Row(f"start with {count:,} tasks, instructions", "million", floor, own, goal, absolute=True)


def memory_rows(bench):
    floor, own = bench.starts([bench.floor(), bench.nubaria()], 1000, settle=3)
    yield Row("memory 3 s after the window, 1,000 tasks", "MB", floor[2], own[2], 1.6)


def peer_rows(bench):
    peers = {peer: command for peer, command in PEERS.items() if shutil.which(command[0])}
    figures = bench.starts([bench.nubaria(), *peers.values()], 0)
    for peer, other in zip(peers, figures[1:]):
        yield Row(f"start, Nubaria after {peer}, wall time", "ms", other[0], figures[0][0], 1)


def operation_rows(bench, figures):
    for name, what in OPERATIONS.items():
        for count in COUNTS if name == "search" else (10000,):
            yield Row(f"{what}, {count:,} tasks", "ms", *figures[name, count], 1.25)
    yield Row("one key in the search field, 1,000 tasks, against the same and its rows painted", "ms",
              *bench.operation("search-painted", 1000))
    key = bench.operation("title-key", 20)
    yield Row("one key in the title, against no shadow", "ms", *key, 3)
    yield Row("one key in the title", "ms", *key, 4, absolute=True)
    yield Row("another palette, against the plain pass", "ms", *bench.operation("theme", 20), 0.75)
    yield Row("the longest frame of the panel's slide, against the mean", "ms", *bench.operation("panel", 1000), 16, absolute=True)


def step_lines(bench):
    """What the start is made of: wall time, processor time and memory with each step, without tasks and with 1,000."""
    names = ["the least", *STEPS, "Nubaria"]
    programs = [bench.floor(), *(bench.floor(str(step)) for step in range(1, len(STEPS) + 1)), bench.nubaria()]
    none, many = bench.starts(programs, 0), bench.starts(programs, 1000, settle=3)
    yield ("| The start | Wall time, 0 tasks | Processor time, 0 tasks | Instructions, 0 tasks "
           "| Wall time, 1,000 | Processor time, 1,000 | Memory, 1,000 |")
    yield "|---|---|---|---|---|---|---|"
    for name, program, few, full in zip(names, programs, none, many):
        yield (f"| {name} | {few[0]:.1f} ms | {few[1]:.1f} ms | {bench.instructions(program, 0):.1f} million "
               f"| {full[0]:.1f} ms | {full[1]:.1f} ms | {full[2]:.1f} MB |")


def growth_lines(bench, figures):
    """What a thousand tasks more cost, between the smaller and between the larger numbers of tasks."""
    starts = {count: bench.starts([bench.floor(), bench.nubaria()], count) for count in COUNTS}
    figures = figures | {("start", count): [program[1] for program in both] for count, both in starts.items()}
    small, middle, large = COUNTS
    yield f"| Processor time | {small:,} | {middle:,} | {large:,} | per 1,000 to {middle:,} | per 1,000 to {large:,} | the floor's |"
    yield "|---|---|---|---|---|---|---|"
    for name, what in {"start": "start", **OPERATIONS}.items():
        floor, own = zip(*(figures[name, count] for count in COUNTS))

        def slopes(times):
            return [1000 * (times[i + 1] - times[i]) / (COUNTS[i + 1] - COUNTS[i]) for i in (0, 1)]

        first, second = slopes(own)
        least = " and ".join(f"{slope:.2f} ms" for slope in slopes(floor))
        times = " | ".join(f"{time:.1f} ms" for time in own)
        yield f"| {what} | {times} | {first:.2f} ms | {second:.2f} ms | {least} |"


def size_rows(bench):
    stripped = bench.folder / "stripped"
    subprocess.run(("strip", "-o", stripped, bench.nubaria()[0]), check=True)
    plain = bench.folder / "floor"
    subprocess.run(("strip", "-o", plain, bench.floor()[0]), check=True)
    mega = 1e6
    yield Row("size of the stripped program", "MB", plain.stat().st_size / mega, stripped.stat().st_size / mega, 1.5,
              absolute=True)


def main():
    if len(sys.argv) not in (2, 3):
        print(__doc__, file=sys.stderr)
        return 2
    try:
        with Bench(Path(sys.argv[1]).resolve(), int(sys.argv[2]) if len(sys.argv) == 3 else 9) as bench:
            figures = {(name, count): bench.operation(name, count) for name in OPERATIONS for count in COUNTS}
            print("| What a person does | Floor | Nubaria | Ratio | Goal | Reached |\n|---|---|---|---|---|---|")
            for rows in (start_rows(bench), memory_rows(bench), peer_rows(bench), operation_rows(bench, figures),
                         size_rows(bench)):
                for row in rows:
                    print(row.line(), flush=True)
            for lines in (step_lines(bench), growth_lines(bench, figures)):
                print()
                for line in lines:
                    print(line, flush=True)
    except (Failure, subprocess.TimeoutExpired) as failure:
        print(f"bench: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
