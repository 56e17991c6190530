#!/usr/bin/env -S python3 -B
"""Has every call into the system that concerns the task file go wrong in every way, and judges what comes of it.

Usage: faults.py PROGRAM LIBRARY [CASE]...   every fault, or those of these cases, and tables of the outcomes
       faults.py --window PROGRAM LIBRARY    how long the task file is not whole while a task is saved

PROGRAM performs one operation on the task file, LIBRARY has its calls go wrong. Ends with 1 and one line for each
outcome that is not the expected one.
"""

import errno
import re
import sys
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass

from expectation import DUE, Fault, alike, encode, expect
from program import Outcome, Program, uses
from tables import fault_name, print_outcomes, print_untold
from writing import WRITERS, late_bytes, many_tasks, measure

ERRORS = (errno.ENOSPC, errno.EIO, errno.EACCES, errno.EINTR)
ID = re.compile(rb"\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\}")


def task(number, title, urgency="Media", due="05-03-2099"):
    return {"id": f"{{{number}}}", "title": title, "description": f"detalle {number}", "category": "Trabajo",
            "dateLimit": due, "urgency": urgency}


FEW = [task(1, "beta", "Alta"), task(2, "Ñandú", due=DUE), task(3, "Alfa", "Baja"), task(4, "ala", due=DUE)]
WITHOUT_IDS = [FEW[0], {"title": "sin id", "notes": 1}, FEW[2] | {"id": 7}, FEW[3] | {"id": ""}]
CASES = [
    ("start", "start", encode(FEW)),
    ("start without a file", "start", None),
    ("start with ids to repair", "start", encode(WITHOUT_IDS)),
    ("load", "load", encode(FEW)),
    ("order", "order", encode(FEW)),
    ("search", "search", encode(FEW)),
    ("details", "details", encode(FEW)),
    ("save without a file", "save", None),
    ("save", "save", encode(FEW)),
    ("save to a long file", "save", many_tasks(200)),
    ("update", "update", encode(FEW)),
    ("delete", "delete", encode(FEW)),
    ("reminders", "reminders", encode(FEW)),
    ("statistics", "statistics", encode(FEW)),
]


@dataclass
class Case:
    """An operation on a file, with the calls it makes and what it yields when nothing goes wrong."""

    name: str
    operation: str
    content: bytes
    calls: list
    uses: list
    new: bytes


@dataclass
class Trial:
    """A case with a call that goes wrong, and what came of it."""

    case: Case
    call: int
    fault: Fault
    outcome: Outcome = None
    wrong: str = ""

    def text(self):
        use, _ = self.case.uses[self.fault.use]
        return f"{self.case.name}, {self.fault.kind} {self.call + 1} ({use}), {fault_name(self)}"


def differences(expected, killed, outcome):
    """What is not as expected, in words."""
    found = []
    if outcome.ending != ("SIGKILL" if killed else ""):
        found.append(f"ends with {outcome.ending or 'success'}")
    if outcome.told != expected.told:
        found.append(f"tells {outcome.told} instead of {expected.told}")
    if outcome.state and outcome.state != expected.state:
        found += [f"shows {name} {outcome.state[name]} instead of {value}"
                  for name, value in expected.state.items() if outcome.state[name] != value]
    if not alike(expected.file.content, outcome.content):
        found.append(f"leaves {brief(outcome.content)} instead of {brief(expected.file.content)}")
    return found


def brief(content):
    return "no file" if content is None else f"{len(content)} bytes ending in {content[-30:]}"


def count_calls(program, name, operation, content):
    """The case, and what is wrong with it already without a fault."""
    expected, killed = expect(operation, content)
    outcome = program.run(operation, content)
    found = differences(expected, killed, outcome)
    used = uses(outcome.calls)
    names = [use for use, _ in used]
    if names != expected.file.uses:
        found.append(f"uses the file for {names} instead of {expected.file.uses}")
    case = Case(name, operation, content, outcome.calls, used, expected.file.content)
    return case, [f"{name}, without a fault: {what}" for what in found]


def faults_of(call, use, done):
    """Everything that is tried on a call."""
    known = {"use": use, "kind": call.kind, "done": done, "size": max(call.result, 0)}
    for error in ERRORS:
        yield Fault(what="fail", argument=error, **known)
    yield Fault(what="before", **known)
    yield Fault(what="after", **known)
    partial = {"read": ("short",), "write": ("short", "full", "amid")}
    for what in partial.get(call.kind, ()) if call.result > 1 else ():
        for size in (call.result // 2, call.result - 1):
            yield Fault(what=what, argument=size, **known)


def trials_of(case):
    for use, (_, numbers) in enumerate(case.uses):
        done = 0
        for number in numbers:
            call = case.calls[number]
            for fault in faults_of(call, use, done):
                yield Trial(case, number, fault)
            if call.kind in ("read", "write"):
                done += call.result


def has_come_about(trial):
    """Whether a program that lives on has met the fault."""
    fault, calls = trial.fault, trial.outcome.calls
    result = -fault.argument if fault.what == "fail" else fault.argument
    return trial.call < len(calls) and (calls[trial.call].kind, calls[trial.call].result) == (fault.kind, result)


def attempt(program, trial):
    case, fault = trial.case, trial.fault
    trial.outcome = program.run(case.operation, case.content, f"{trial.call + 1} {fault.what} {fault.argument}")
    expected, killed = expect(case.operation, case.content, fault)
    found = differences(expected, killed, trial.outcome)
    if not killed and not has_come_about(trial):
        found.append("has not come about")
    trial.wrong = "; ".join(found)
    return trial


def different_files(trials):
    """A trial for each file that was left; those that differ in fresh ids only are one."""
    left = {}
    for trial in trials:
        content = trial.outcome.content
        left.setdefault(None if content is None else ID.sub(b"", content), trial)
    return list(left.values())


def next_start(program, trial):
    """What is wrong when the program is started on the file that was left."""
    content = trial.outcome.content
    return [f"{trial.text()}: the next start {what}"
            for what in differences(*expect("start", content), program.run("start", content))]


def try_all(program, chosen):
    with ThreadPoolExecutor(2) as executor:
        counted = list(executor.map(lambda case: count_calls(program, *case), chosen))
        late = [line for found in executor.map(lambda name: late_bytes(program, name), WRITERS) for line in found]
        cases = [case for case, _ in counted]
        # Where the calls are not the expected ones, the faults would meet others than they are meant for.
        planned = [trial for case, found in counted if not found for trial in trials_of(case)]
        trials = list(executor.map(lambda trial: attempt(program, trial), planned))
        left = different_files(trials)
        starts = [line for found in executor.map(lambda trial: next_start(program, trial), left) for line in found]
    kills = [trial for trial in trials if trial.fault.kills()]
    print("Calls that fail or fall short:\n")
    print_outcomes(cases, [trial for trial in trials if not trial.fault.kills()])
    print("The program killed before, amid or after a call:\n")
    print_outcomes(cases, kills)
    print(f"{len(trials)} faults, {len(kills)} of them kills; the program was started again on each of the {len(left)}"
          " different files that were left.\n\nWhat goes wrong without a word:\n")
    print_untold(trials)
    wrong = [line for _, found in counted for line in found] + late
    wrong += [f"{trial.text()}: {trial.wrong}" for trial in trials if trial.wrong] + starts
    for line in wrong:
        print(f"faults.py: {line}", file=sys.stderr)
    return 1 if wrong else 0


def main(arguments):
    measures = arguments[:1] == ["--window"]
    paths, names = arguments[measures:measures + 2], arguments[measures + 2:]
    chosen = [case for case in CASES if case[0] in names or not names]
    if len(paths) < 2 or not chosen or (measures and names):
        print(__doc__, file=sys.stderr)
        return 2
    program = Program(*paths)
    return measure(program) if measures else try_all(program, chosen)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
