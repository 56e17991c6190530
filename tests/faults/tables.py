"""Tells what came of the faults."""

import errno
from collections import Counter
from itertools import groupby

from expectation import alike, decode, expect

OUTCOMES = ("old", "new", "cut off", "empty", "former tasks lost", "no file")


def outcome_of(trial):
    """What the file holds afterwards, beside what it held before and what it should hold now."""
    case, content = trial.case, trial.outcome.content
    if content == case.content:
        return "no file" if content is None else "old"
    if alike(case.new, content):
        return "new"
    if content == b"":
        return "empty"
    return "cut off" if alike(case.new[:len(content)], content) else "former tasks lost"


def is_untold(trial):
    """Whether the program lives on with something lost or missing, and the user has not been told of an error."""
    usual, _ = expect(trial.case.operation, trial.case.content)
    outcome = trial.outcome
    told = any("Error" in line or line[0] == "critical line" for line in outcome.told)
    same = (outcome.told, outcome.state) == (usual.told, usual.state) and alike(usual.file.content, outcome.content)
    return outcome.state is not None and not told and not same


def print_row(*cells):
    print("| " + " | ".join(map(str, cells)) + " |")


def print_heading(*cells):
    print_row(*cells)
    print("|" + "---|" * len(cells))


def print_outcomes(cases, trials):
    """One line for each operation: how often the task file held what afterwards."""
    print_heading("Operation", "Calls", "Faults", *OUTCOMES, "untold", "wrong")
    for case in cases:
        ours = [trial for trial in trials if trial.case is case]
        counts = Counter(map(outcome_of, ours))
        print_row(case.name, len(case.calls), len(ours), *[counts[outcome] for outcome in OUTCOMES],
                  sum(map(is_untold, ours)), sum(bool(trial.wrong) for trial in ours))
    print()


def print_untold(trials):
    """One line for each thing that goes wrong without a word to the user."""
    print_heading("Operation", "Call", "Fault", "Told all the same", "File", "Tasks in it", "Rows shown", "Figures")
    for line, faults in groupby(filter(is_untold, trials), untold_line):
        name, call, *rest = line
        print_row(name, call, ", ".join(map(fault_name, faults)), *rest)


def untold_line(trial):
    case, outcome = trial.case, trial.outcome
    use, _ = case.uses[trial.fault.use]
    told = [line[1] for line in outcome.told if line[0] in ("tray", "info line")]
    rows = f"{len(outcome.state['rows'])}{' and the advice' if outcome.state['advice'] else ''}"
    return (case.name, f"{trial.fault.kind} {trial.call + 1} ({use})", ", ".join(told) or "nothing", outcome_of(trial),
            len(decode(outcome.content or b"")), rows,
            f"{outcome.state['count'].split()[-1]}, {' '.join(outcome.state['size'].split()[-2:])}")


def fault_name(trial):
    fault = trial.fault
    if fault.what == "fail":
        return errno.errorcode[fault.argument]
    return f"disk full after {fault.argument} bytes" if fault.what == "full" else f"{fault.what} {fault.argument}"
