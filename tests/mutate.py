#!/usr/bin/python3 -B
"""Asks whether the tests bite: changes one operator, constant, text or call of the program at a time, or the order of
two calls, and expects some test to fail.

Usage: script/mutate [--again] [--kind KIND]... [COUNT] [FILE]...
       script/mutate --build

Without COUNT every change is tried, which takes an hour or two; with it a sample that depends on the commit only. FILE
limits the changes to those source files, KIND to text, operator, constant, tenfold, condition, call or swap. A change
is tried against the tests that run the line it changes, or, of no more than a few, against all tests. Lists what no
test noticed, ends with 1 if something of that is not explained in tests/data/mutants.json, and writes all results to
build/mutate/results.json. With --again the results there stand, but for changes that no test noticed. With --build it
only builds what a few changes are tried on, which takes longer than to try them.
"""

import argparse
import concurrent.futures
import hashlib
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import threading
import time
from collections import Counter
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutate"
EXPLAINED = ROOT / "tests" / "data" / "mutants.json"
# The libraries' folders, and what each precompiles.
LIBRARIES = {"core": "<QtCore>", "widgets": "<QtWidgets>", "mainwindow": "<QtWidgets> <QtNetwork>", "app": "<QtCore>"}
# One failure will do, and nobody looks at it.
QUICK = {"QTEST_FATAL_FAIL": "1", "QTEST_DISABLE_STACK_DUMP": "1", "QTEST_DISABLE_CORE_DUMP": "1"}
STORIES = ("desktop-accessible", "desktop-story")  # tests of the built program, which need what is in app/
FEW = 20  # changes: to find out which test runs which line would take longer than trying them
PATIENCE = 30  # seconds for a test program beyond five times what it takes; one that hangs counts as noticed

# Strings stay, so that nothing in them counts as a comment.
COMMENT = re.compile(r'"(?:[^"\\\n]|\\.)*"|/\*.*?\*/|//[^\n]*', re.S)
STRING = re.compile(r'(?<![\w"])(u?)"((?:[^"\\]|\\.)*)"')
KEY = ("file", "before", "after")
KINDS = ("text", "operator", "constant", "tenfold", "condition", "call", "swap")
# Where a statement begins that is a call, or keeps what one returns.
CALL = re.compile(r"(?<=[;{}])\s*\n[ \t]+(?=[\w:]+(?:(?:->|\.)\w+)*(?:\(| =\s[^;]*\())")
OPPOSITES = {
    " == ": " != ", " != ": " == ", " < ": " <= ", " > ": " >= ", " <= ": " < ", " >= ": " > ",
    " && ": " || ", " || ": " && ", " + ": " - ", " - ": " + ", " / ": " * ", " * ": " / ",
    "true": "false", "false": "true", "::min(": "::max(", "::max(": "::min(",
}


class Mutant(NamedTuple):
    file: str
    line: int  # from 1
    kind: str
    before: str  # the lines it changes, without their indentation
    after: str
    start: int  # where in the file the change begins and ends
    end: int
    text: str  # what stands there instead

    def key(self):
        return {key: getattr(self, key) for key in KEY}


def blank(match):
    return match.group(0) if match.group(0).startswith('"') else re.sub(r"[^\n]", " ", match.group(0))


def without_comments(source):
    """The source with comments, preprocessor lines and what only Windows compiles blanked: places stay the same."""
    source = re.sub(r"(?<=#ifdef Q_OS_WIN\n).*?(?=^#(?:else|endif))", blank, source, flags=re.M | re.S)
    source = re.sub(r"(?<=#ifndef Q_OS_WIN\n)([^#]*#else\n)([^#]*)(?=#endif)",
                    lambda match: match.group(1) + re.sub(r"[^\n]", " ", match.group(2)), source)
    source = re.sub(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", blank, source, flags=re.M)
    return COMMENT.sub(blank, source)


def changes(source):
    """(start, end, new text, kind) for everything that can be changed in the source."""
    code = without_comments(source)
    for match in STRING.finditer(code):
        yield match.start(2), match.end(2), match.group(2) + "x", "text"
    bare = STRING.sub(lambda match: '"' + " " * (len(match.group(0)) - 2) + '"', code)
    for old, new in OPPOSITES.items():
        pattern = rf"\b{old}\b" if old.isalpha() else re.escape(old)
        for match in re.finditer(pattern, bare):
            yield match.start(), match.end(), new, "operator"
    for match in re.finditer(r"(?<![\w.])\d+(?![\w.])", bare):
        yield match.start(), match.end(), str(int(match.group(0)) + 1), "constant"
    for match in re.finditer(r"(?<![\w.])(\d+)((?:\.\d+)?(?:ms|s|min|h)?)(?![\w.])", bare):
        if int(match.group(1)) > 1:  # a time, limit or size: a test may let one more pass, and not ten times as much
            yield match.start(), match.end(), f"{int(match.group(1)) * 10}{match.group(2)}", "tenfold"
    for match in re.finditer(r"(?<![\w!=])!(?=[\w(])", bare):
        yield match.start(), match.end(), "", "operator"
    for match in re.finditer(r"\bif \(", bare):
        end = closing(bare, match.end() - 1)
        condition = code[match.end():end]
        if ";" not in bare[match.end():end] and "const auto" not in condition:
            yield match.end(), end, f"!({condition})", "condition"
    for match in re.finditer(r"(?<=[;{}])\s*\n[ \t]+(?=(return;|[\w:]+(?:(?:->|\.)\w+)*\())", bare):
        end = bare.index(";", match.end())
        statement = bare[match.end():end]
        if re.match(r"(if|for|while|switch|return .)\b", statement) or statement.count("(") != statement.count(")"):
            continue
        yield match.end(), end, "", "call"
    places = [(match.end(), closing(bare, match.end(), ";")) for match in CALL.finditer(bare)]
    for (start, end), (next_start, next_end) in zip(places, places[1:]):
        first, between, second = source[start:end], source[end:next_start], source[next_start:next_end]
        if bare[end:next_start].strip() == ";" and first != second:
            yield start, next_end, second + between + first, "swap"


def closing(code, opening, last=")"):
    """Where the bracket that opens there is closed, or the statement that begins there."""
    depth = 0
    for place in range(opening, len(code)):
        depth += {"(": 1, "{": 1, ")": -1, "}": -1}.get(code[place], 0)
        if depth == 0 and code[place] == last:
            return place
    raise ValueError("a bracket is never closed")


def mutants(file):
    source = (ROOT / file).read_text(encoding="utf-8")
    for start, end, text, kind in sorted(set(changes(source))):
        first, last = source.rindex("\n", 0, start) + 1, source.index("\n", end)
        before = source[first:last]
        after = before[:start - first] + text + before[end - first:]
        line = source.count("\n", 0, start) + 1
        yield Mutant(file, line, kind, before.strip(), after.strip(), start, end, text)


class Workshop:
    """A copy of the project in which changes are tried, one after another."""

    def __init__(self, number):
        self.source = WORK / f"source-{number}"
        self.build = WORK / f"build-{number}"

    def prepare(self):
        listed = subprocess.run(("git", "ls-files", "-z"), cwd=ROOT, capture_output=True, check=True).stdout
        names = list(filter(None, listed.decode().split("\0")))
        for old in [path for path in self.source.rglob("*") if path.is_file()]:
            if str(old.relative_to(self.source)) not in names:
                old.unlink()
        for name in names:
            content = (ROOT / name).read_bytes()
            # A shared library costs one link a change instead of one a test, precompiled headers half of a compilation.
            folder, _, file = name.partition("/")
            if folder in LIBRARIES and file == "CMakeLists.txt":
                content = re.sub(r"(?s)(nubaria_\w+) STATIC(.*)", rf"""\1 SHARED\2
target_precompile_headers(\1 PRIVATE {LIBRARIES[folder]})
target_compile_options(\1 PRIVATE ${{NUBARIA_COUNTING}})
target_link_options(\1 PRIVATE ${{NUBARIA_COUNTING}})
""", content.decode()).encode()
            copy = self.source / name
            # What is as it was keeps its time, and what is not gets the present one: that has it compiled anew.
            if not copy.exists() or copy.read_bytes() != content:
                copy.parent.mkdir(parents=True, exist_ok=True)
                copy.write_bytes(content)
                shutil.copymode(ROOT / name, copy)

    def make(self, counting="", processes=1):
        options = ("-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS=-g0 -O0 -D_GLIBCXX_ASSERTIONS",
                   "-DNUBARIA_BUILD_TESTS=ON", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", f"-DNUBARIA_COUNTING={counting}")
        self.must("cmake", "-G", "Ninja", "-S", str(self.source), "-B", str(self.build), *options)
        self.must("cmake", "--build", str(self.build), f"-j{processes}")

    def must(self, *command, folder=None):
        result = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
        if result.returncode != 0:
            sys.exit(f"mutate: {' '.join(command)}\n{result.stdout[-4000:]}{result.stderr[-4000:]}")
        return result.stdout

    def lines_run(self, test):
        """Runs a test of a build that counts. The (file, line) of the library that it runs, and its seconds."""
        for old in self.counts():
            old.unlink()
        begin = time.monotonic()
        if not self.passes(test, 10 * PATIENCE):
            sys.exit(f"mutate: {test} fails without any change")
        seconds = time.monotonic() - begin
        lines = set()
        written = [str(path) for path in self.counts()]
        told = self.must("gcov", "--json-format", "--stdout", *written, folder=self.build) if written else ""
        for report in map(json.loads, told.splitlines()):
            for file in report["files"]:
                name = os.path.relpath(file["file"], self.source)
                lines |= {(name, line["line_number"]) for line in file["lines"] if line["count"]}
        return lines, seconds

    def counts(self):
        return [path for folder in LIBRARIES for path in self.build.glob(f"{folder}/CMakeFiles/nubaria_*.dir/*.gcda")]

    def tests(self):
        told = self.must("ctest", "--test-dir", str(self.build), "--show-only=json-v1")
        names = [test["name"] for test in json.loads(told)["tests"]]
        return [name for name in names if name in STORIES or re.search(r"test(-|$)", name)]

    def compiles(self):
        # The last one has an entry point of its own to link.
        command = ("ninja", "-C", str(self.build), "-j1", "nubaria", "app-maintest")
        return subprocess.run(command, capture_output=True, check=False).returncode == 0

    def passes(self, test, patience):
        command = ("ctest", "--test-dir", str(self.build), "--no-tests=error", "--tests-regex", f"^{re.escape(test)}$")
        with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              env=os.environ | QUICK, start_new_session=True) as process:
            try:
                return process.wait(patience) == 0
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                return False

    def try_out(self, mutant, order):
        """Runs the tests of `order`, each with the seconds it may take.

        The test that notices the change, "" if none does, or None if the change does not compile.
        """
        path = self.source / mutant.file
        original = path.read_text(encoding="utf-8")
        path.write_text(original[:mutant.start] + mutant.text + original[mutant.end:], encoding="utf-8")
        try:
            if not self.compiles():
                return None
            return next((test for test, patience in order if not self.passes(test, patience)), "")
        finally:
            path.write_text(original, encoding="utf-8")


class Trial:
    """All changes, and who noticed them."""

    def __init__(self, chosen, standing):
        self.chosen = list(chosen)
        self.workers = 1 if len(chosen) <= FEW else os.cpu_count()
        self.noticed = Counter()  # how often a test noticed a change of a file
        self.seconds = {}
        self.lines = {}  # what a test runs
        self.measured = threading.Event()
        self.results = standing
        self.lock = threading.Lock()

    def order(self, mutant):
        """The tests concerned: first those that noticed most in this file, then those named like it, then quick ones.

        A statement over several lines counts as run where it begins or ends. Of app/ not all is counted, and of data
        neither: that concerns all tests that run something of the file.
        """
        in_app = mutant.file.startswith("app/")
        stem = Path(mutant.file).stem.rstrip("s")
        named_like_it = f"{Path(mutant.file).parent}-{stem}"
        places = {(mutant.file, line) for line in range(mutant.line - 3, mutant.line + mutant.before.count("\n") + 4)}
        programs = {test: lines for test, lines in self.lines.items() if test not in STORIES}
        concerned = list(self.lines) if in_app else [test for test, lines in programs.items() if lines & places]
        if not concerned:
            concerned = [test for test, lines in programs.items() if any(mutant.file == file for file, _ in lines)]
        if not concerned:  # nothing is measured
            concerned = list(self.lines)
        ordered = sorted(concerned, key=lambda test: (
            -self.noticed[mutant.file, test], not test.startswith(named_like_it), stem not in test, test in STORIES,
            not test.startswith(f"{Path(mutant.file).parent}-"), self.seconds[test]))
        return [(test, PATIENCE + 5 * self.seconds[test]) for test in ordered]

    def measure(self, workshop):
        if self.workers == 1:
            workshop.make(processes=os.cpu_count())
            self.lines = dict.fromkeys(workshop.tests(), set())
            self.seconds = dict.fromkeys(self.lines, PATIENCE)
            return
        workshop.make("--coverage")
        for test in workshop.tests():
            self.lines[test], self.seconds[test] = workshop.lines_run(test)

    def work(self, number):
        workshop = Workshop(number)
        workshop.prepare()
        try:
            if number == 0:
                self.measure(workshop)
        finally:
            if number == 0:
                self.measured.set()
        workshop.make()
        self.measured.wait()
        while True:
            with self.lock:
                if not self.chosen:
                    return
                mutant = self.chosen.pop(0)
            found = workshop.try_out(mutant, self.order(mutant))
            with self.lock:
                self.note(mutant, found)

    def note(self, mutant, found):
        if found:
            self.noticed[mutant.file, found] += 1
        self.results.append({**mutant.key(), "line": mutant.line, "kind": mutant.kind, "test": found})
        (WORK / "results.json").write_text(json.dumps(self.results, ensure_ascii=False, indent=1), encoding="utf-8")
        told = "does not compile" if found is None else found or "NOT NOTICED"
        print(f"{mutant.file}:{mutant.line}: {mutant.kind}: {mutant.after.splitlines()[0]}: {told}", flush=True)


def choose(kinds, arguments):
    count = int(arguments.pop(0)) if arguments and arguments[0].isdigit() else None
    files = [path for folder in LIBRARIES for path in (ROOT / folder).glob("*.cpp")]
    known = sorted(str(path.relative_to(ROOT)) for path in files)
    if unknown := set(arguments) - set(known):
        sys.exit(f"mutate: no source file {', '.join(sorted(unknown))}")
    every = [one for file in arguments or known for one in mutants(file) if not kinds or one.kind in kinds]
    if count is None or count >= len(every):
        return every
    head = subprocess.run(("git", "rev-parse", "HEAD"), cwd=ROOT, capture_output=True, check=True).stdout
    return sorted(random.Random(hashlib.sha256(head).digest()).sample(every, count))


def main():
    parser = argparse.ArgumentParser(add_help=False)
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--build", action="store_true")
    parser.add_argument("--kind", action="append", choices=KINDS)
    parser.add_argument("arguments", nargs="*")
    parser.add_argument("-h", "--help", action="store_true")
    options = parser.parse_args()
    if options.help:
        print(__doc__)
        return 0
    WORK.mkdir(parents=True, exist_ok=True)
    if options.build:
        workshop = Workshop(0)
        workshop.prepare()
        workshop.make(processes=os.cpu_count())
        return 0
    chosen = choose(options.kind, options.arguments)
    standing = []
    if options.again:
        results = json.loads((WORK / "results.json").read_text(encoding="utf-8"))
        keys = [mutant.key() for mutant in chosen]
        standing = [one for one in results if one["test"] != "" and {key: one[key] for key in KEY} in keys]
        known = [{key: one[key] for key in KEY} for one in standing]
        chosen = [mutant for mutant in chosen if mutant.key() not in known]
    explained = json.loads(EXPLAINED.read_text(encoding="utf-8"))
    trial = Trial(chosen, standing)
    if chosen:
        with concurrent.futures.ThreadPoolExecutor(trial.workers) as pool:
            for future in [pool.submit(trial.work, number) for number in range(trial.workers)]:
                future.result()
    reasons = {tuple(one[key] for key in KEY) for one in explained}
    compiled = [one for one in trial.results if one["test"] is not None]
    survivors = [one for one in compiled if not one["test"]]
    unexplained = [one for one in survivors if tuple(one[key] for key in KEY) not in reasons]
    for one in unexplained:
        print(f"mutate: {one['file']}:{one['line']}: nobody notices\n    {one['before']}\n    {one['after']}")
    print(f"mutate: {len(compiled)} changes, {len(compiled) - len(survivors)} noticed, {len(survivors)} not noticed, "
          f"{len(survivors) - len(unexplained)} of these explained; "
          f"{len(trial.results) - len(compiled)} more did not compile")
    return 1 if unexplained else 0


if __name__ == "__main__":
    sys.exit(main())
