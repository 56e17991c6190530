#!/usr/bin/env -S python3 -B
"""Runs the tests of a build for Windows under Wine, and compares their results with those that are expected.

Usage: suite.py BUILD RESULTS [test]...

exceptions.txt names the cases that fail for a good reason, each of which has to fail, and the tests that are not started.
"""

import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from wine import Windows

from desktop import Failure

HERE = Path(__file__).resolve().parent
LIMIT = 600  # seconds for one test
RESULT = re.compile(r"^(PASS|FAIL!|XFAIL|XPASS|SKIP|QFATAL) *: \w+::(\w+)\((.*?)\)", re.MULTILINE)
TOTALS = re.compile(r"^Totals: ", re.MULTILINE)


def exceptions():
    """The reason for each test that is not started, and for each "test::case" or "test::case(row)" that fails."""
    lines = (HERE / "exceptions.txt").read_text(encoding="utf-8").splitlines()
    rows = [line.partition(" = ") for line in lines if line and not line.startswith("#")]
    return {name: reason for name, _, reason in rows}


def tests(build, names):
    """Name, program and environment of each test that the build knows, or of those that are named."""
    listed = subprocess.run(
        ("ctest", "--test-dir", str(build), "--show-only=json-v1"), capture_output=True, check=True
    )
    for test in json.loads(listed.stdout)["tests"]:
        if not names or test["name"] in names:
            own = next((entry["value"] for entry in test["properties"] if entry["name"] == "ENVIRONMENT"), [])
            yield test["name"], test["command"][0], dict(entry.split("=", 1) for entry in own)


class Suite:
    """A Windows for the tests, and what has become of them."""

    def __init__(self, windows, build, results):
        self.windows = windows
        self.build = build
        self.results = results
        self.expected = exceptions()
        self.met = set()
        self.faults = []
        self.counts = {"PASS": 0, "SKIP": 0, "listed": 0}

    def run(self, name, program, own):
        """One test program, to its end."""
        log = self.results / f"{name}.txt"
        environment = self.windows.environment | own
        if locale := own.get("NUBARIA_TEST_LOCALE"):
            environment["LC_ALL"] = locale  # whence Wine has the user's language
            self.windows.stop()
        start = time.monotonic()
        try:
            done = subprocess.run(
                ("wine64", program, "-o", f"{log},txt"), env=environment, cwd=self.build, timeout=LIMIT,
                stdin=subprocess.DEVNULL, capture_output=True, check=False,
            )
            end = done.returncode
        except subprocess.TimeoutExpired:
            end = "no end"
            self.windows.stop()
        if locale:
            self.windows.stop()
        text = log.read_text(encoding="utf-8", errors="replace") if log.exists() else ""
        self.judge(name, text, end)
        print(f"suite.py: {name}, {time.monotonic() - start:.0f} s, {self.told(text)}", flush=True)

    @staticmethod
    def told(text):
        totals = re.search(r"^Totals: (\d+ passed, \d+ failed, \d+ skipped)", text, re.MULTILINE)
        return totals.group(1) if totals else "no totals"

    def judge(self, name, text, end):
        for verdict, case, row in RESULT.findall(text):
            if verdict in ("PASS", "SKIP"):
                self.counts[verdict] += 1
            elif verdict != "XFAIL":
                self.excuse(name, case, row)
        if not TOTALS.search(text):
            self.faults.append(f"{name} ended with {end} before its end")

    def excuse(self, name, case, row):
        if not any(self.excused(key) for key in (f"{name}::{case}({row})", f"{name}::{case}")):
            self.faults.append(f"{name}::{case}({row}) failed")

    def excused(self, key):
        if key not in self.expected:
            return False
        self.met.add(key)
        self.counts["listed"] += 1
        return True

    def unmet(self, names):
        """Exceptions that none of these tests needed."""
        return [key for key in self.expected if key not in self.met and key.partition("::")[0] in names]


def unix_folder(name):
    """Where the compiler keeps a library, as Wine calls it."""
    found = subprocess.run(
        ("x86_64-w64-mingw32-g++-posix", f"-print-file-name={name}"), capture_output=True, text=True, check=True
    ).stdout.strip()
    return wine_path(Path(found).resolve().parent)


def wine_path(path):
    return "Z:" + str(path).replace("/", "\\")


def prepare(windows):
    """The environment of the tests: their libraries, fonts and time zone."""
    folders = [wine_path(Path(os.environ["QT_MINGW_PREFIX"]) / "bin")]
    folders += [unix_folder(name) for name in ("libstdc++-6.dll", "libwinpthread-1.dll")]
    windows.environment |= {
        "WINEPATH": ";".join(folders),
        "QT_QPA_PLATFORM": "offscreen",
        "QT_QPA_FONTDIR": wine_path("/usr/share/fonts/truetype/dejavu"),
        "TZ": "America/Mexico_City",
    }


def main(build, results, names):
    shutil.rmtree(results, ignore_errors=True)
    results.mkdir(parents=True)
    folder = Path(tempfile.mkdtemp(prefix="nw"))
    windows = Windows(folder, "en_US.UTF-8")
    try:
        prepare(windows)
        windows.start()
        suite = Suite(windows, build, results)
        listed = list(tests(build, names))
        left_out = {name for name, *_ in listed} & suite.expected.keys()
        chosen = [test for test in listed if test[0] not in left_out]
        for test in chosen:
            suite.run(*test)
        suite.met |= left_out
    except Failure as failure:
        print(f"suite.py: {failure}", file=sys.stderr)
        return 1
    finally:
        windows.end()
        shutil.rmtree(folder)
    faults = suite.faults + [f"{key} is listed and passes" for key in suite.unmet({name for name, *_ in chosen})]
    for fault in faults:
        print(f"suite.py: {fault}", file=sys.stderr)
    for name in sorted(left_out):
        print(f"suite.py: {name} was not started: {suite.expected[name]}")
    print(f"suite.py: {len(chosen)} tests, {suite.counts['PASS']} passed, {suite.counts['SKIP']} skipped, "
          f"{suite.counts['listed']} failed as listed, {len(faults)} faults")
    return 1 if faults or not chosen else 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    sys.exit(main(Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve(), set(sys.argv[3:])))
