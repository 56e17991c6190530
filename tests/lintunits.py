#!/usr/bin/python3 -B
"""Joins source files to units: a tool that looks at every header again for each file has less to look at then.

Usage: lintunits.py BUILD FOLDER FILE...

Writes the units and the commands they are compiled with to FOLDER, and prints their names. BUILD has the commands of
the FILEs. What is found in a unit is told with the file and the line that it comes from.
"""

import json
import shlex
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
LINES = 2500  # of a unit: enough of them for two processors
ALONE = ("benchmarks", "faults")  # the macros of X11, and functions that are declared once more where they are called
# What every program, or every fuzz target, has or declares once.
ENTRY_POINTS = ("main", *(f"LLVMFuzzer{name}" for name in ("Initialize", "TestOneInput", "CustomMutator", "Mutate")))


def units(files):
    """Neighbours in a folder, as they include the same."""
    unit, lines = [], 0
    for file in files:
        if unit and (file.parent != unit[-1].parent or lines >= LINES or file.parent.name in ALONE):
            yield unit
            unit, lines = [], 0
        unit.append(file)
        lines += len(file.read_text(encoding="utf-8").splitlines())
    yield unit


def joined(unit):
    """Programs can be one unit too."""
    return "".join(
        "".join(f"#undef {name}\n#define {name} {name}{number}\n" for name in ENTRY_POINTS)
        + f"#line 1 \"{file}\"\n{file.read_text(encoding='utf-8')}"
        for number, file in enumerate(unit)
    )


def options(commands, unit):
    """What the commands of these files have in them, but for the files and what another compiler has precompiled."""
    found = {}
    # What only another build compiles needs what its neighbours do.
    of_neighbours = [one for file, one in commands.items() if file.parent == unit[0].parent]
    for command in [commands[file] for file in unit if file in commands] or of_neighbours:
        words = iter(shlex.split(command)[1:])
        for word in words:
            if word in ("-c", "-o", "-MF", "-MT", "-include"):
                next(words)
            elif word == "-isystem":
                found[word, next(words)] = None
            elif word.startswith("-D"):
                found.setdefault((word.partition("=")[0],), word)  # of what differs, one value will do
            elif word not in ("-MD", "-Winvalid-pch", "-Werror", "-Wshadow"):  # what two files name alike is no shadow
                found[(word,)] = None
    return [word for option, defined in found.items() for word in ([defined] if defined else option)]


def main():
    build, folder = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    files = [(ROOT / name).resolve() for name in sys.argv[3:]]
    commands = {}
    for one in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        commands.setdefault(Path(one["file"]), one["command"])  # the first one is the program's own
    folder.mkdir(parents=True, exist_ok=True)
    database = []
    for unit in units(files):
        path = folder / f"{'-'.join(unit[0].relative_to(ROOT).with_suffix('').parts)}.cpp"
        path.write_text(joined(unit), encoding="utf-8")
        arguments = ["clang++", *options(commands, unit), "-iquote", str(unit[0].parent), "-c", str(path)]
        database.append({"directory": str(build), "file": str(path), "arguments": arguments})
        print(path)
    (folder / "compile_commands.json").write_text(json.dumps(database, indent=1), encoding="utf-8")


if __name__ == "__main__":
    main()
