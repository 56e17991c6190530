#!/usr/bin/env -S python3 -B
"""Counts the instructions that a start and what a person does take, and compares them with those of the last record.

Usage: instructions.py BUILD [--record]   (the folder of a release build with the benchmarks)

A count has next to no noise, so that three hundredths more are a change of the program and no accident. Prints a table;
ends with 1 if a count is higher than that, and tells the function that grew, or if none is recorded for this release of
Qt. With --record the counts become the record, `benchmarks/instructions.json`.

A start is counted from the first instruction of the process to the first frame handed to the display, an operation
from its call until the widget concerned is painted. Needs Valgrind, Xvfb and openbox.
"""

import json
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import NamedTuple

from bench import ROOT, tasks  # first: it makes the desktop's modules known
from counting import Count, of_operation, of_start
from desktop import Desktop, Failure

RECORD = ROOT / "benchmarks" / "instructions.json"
ALLOWED = 1.03  # times the record
WORKERS = 2
MILLION = 1e6


class Row(NamedTuple):
    """What is counted: a start or an operation, with so many tasks and these preferences."""

    what: str
    count: int
    personal: bool = False
    operation: tuple = ()  # a row of benchmarks/operations and its side


ROWS = (
    Row("start, 0 tasks", 0),
    Row("start, 1,000 tasks", 1000),
    Row("start, 0 tasks, palette and emphasis", 0, personal=True),
    Row("start, 1,000 tasks, palette and emphasis", 1000, personal=True),
    Row("one key in the search field, 1,000 tasks", 1000, operation=("search", "own")),
    Row("saving a task, 1,000 tasks", 1000, operation=("save", "own")),
    Row("another palette, the plain pass", 20, operation=("theme", "floor")),
    Row("another palette", 20, operation=("theme", "own")),
)


def prepare(desktop, row):
    text = json.dumps(tasks(row.count), ensure_ascii=False, indent=4)
    (desktop.folders["home"] / "rmc.json").write_text(text + "\n", encoding="utf-8")
    if row.personal:
        folder = desktop.folders["config"] / "Quenoli"
        folder.mkdir()
        (folder / "Quenoli.conf").write_text("[General]\ntextEmphasis=1\n", encoding="utf-8")
        (folder / "QuenoliTheme.conf").write_text("[General]\ncolorIndex=3\n", encoding="utf-8")


def measure(build, row):
    folder = Path(tempfile.mkdtemp(prefix="ni"))
    desktop = Desktop(folder)
    desktop.environment["QT_HASH_SEED"] = "0"
    try:
        desktop.start()
        prepare(desktop, row)
        if row.operation:
            return of_operation(desktop, (build / "benchmarks" / "operations", *row.operation), folder / "calls")
        return of_start(desktop, (build / "app" / "nubaria",), folder / "calls")
    except Failure as failure:
        raise Failure(f"{row.what}: {failure}") from None
    finally:
        desktop.end()
        shutil.rmtree(folder)


def grown(before, after):
    """The function that grew: the smallest of those in which at least half of what is more was spent."""
    more = after.total - before.total
    within = [name for name, cost in after.functions.items() if cost - before.functions.get(name, 0) >= more / 2]
    return min(within, key=lambda name: after.functions[name], default="nothing with a name")


def line(row, count, before):
    kept = f"{before.total / MILLION:.1f} million | {count.total / before.total:.3f}" if before else "none | "
    return f"| {row.what} | {count.total / MILLION:.1f} million | {kept} |"


def qt_version():
    return subprocess.run(("qmake6", "-query", "QT_VERSION"), capture_output=True, text=True, check=True).stdout.strip()


def compare(counts, before):
    failed = not before
    print("| What is counted | Instructions | Recorded | Ratio |\n|---|---|---|---|")
    for row, count in counts.items():
        old = Count(**before[row.what]) if row.what in before else None
        print(line(row, count, old), flush=True)
        if old and count.total > ALLOWED * old.total:
            print(f"instructions: {row.what}: {count.total:,} after {old.total:,}, in {grown(old, count)}",
                  file=sys.stderr)
            failed = True
    if not before:
        print(f"instructions: nothing is recorded for Qt {qt_version()}: see --record", file=sys.stderr)
    return failed


def main():
    arguments = sys.argv[1:]
    if len(arguments) not in (1, 2) or arguments[1:] not in ([], ["--record"]):
        print(__doc__, file=sys.stderr)
        return 2
    build = Path(arguments[0]).resolve()
    record = json.loads(RECORD.read_text(encoding="utf-8")) if RECORD.exists() else {}
    try:
        with ThreadPoolExecutor(WORKERS) as pool:
            counts = dict(zip(ROWS, pool.map(lambda row: measure(build, row), ROWS)))
    except Failure as failure:
        print(f"instructions: {failure}", file=sys.stderr)
        return 1
    failed = compare(counts, record.get(qt_version(), {}))
    if arguments[1:]:
        record[qt_version()] = {row.what: count._asdict() for row, count in counts.items()}
        RECORD.write_text(json.dumps(record, indent=1, sort_keys=True) + "\n", encoding="utf-8")
        return 0
    return int(failed)


if __name__ == "__main__":
    sys.exit(main())
