#!/usr/bin/env -S python3 -B
"""What the tree says of the version to be released. Usage: facts.py [--unchecked] FOLDER

Prints the version, or ends with 1 and one line on why it cannot be released. Every other place is compared with
CMakeLists.txt, which is the one that the program takes it from; --unchecked asks that one alone.
"""

import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from datetime import date
from email.utils import parsedate_to_datetime
from pathlib import Path
from typing import NamedTuple

PROJECT = "CMakeLists.txt"
FORM = "ui/mainwindow.ui"
CHANGES = "CHANGELOG.md"
DEBIAN = "packaging/debian/changelog"
METAINFO = "packaging/linux/org.example.nubaria.metainfo.xml"
FORM_LABELS = ("VersionProgram", "SubTitleLabelTxt_2")
NOTES_LABEL = "LargeText"


class Refusal(Exception):
    """The version cannot be released; says why, in one line."""


class Release(NamedTuple):
    """A version, and the day it is of."""

    version: str
    day: date


def read(folder, name):
    try:
        return (folder / name).read_text(encoding="utf-8")
    except OSError as error:
        raise Refusal(f"{name} cannot be read: {error.strerror}") from None
    except UnicodeDecodeError:
        raise Refusal(f"{name} is not UTF-8") from None


def xml(folder, name):
    try:
        return ElementTree.fromstring(read(folder, name))
    except ElementTree.ParseError as error:
        raise Refusal(f"{name} cannot be read: {error}") from None


def the_only(pattern, text, name, what):
    found = re.findall(pattern, text, re.MULTILINE)
    if len(found) != 1:
        raise Refusal(f"{name} does not tell {what}")
    return found[0]


def project_version(folder):
    return the_only(r"^project\(nubaria VERSION ([\d.]+)\s", read(folder, PROJECT), PROJECT, "the version")


def update_host(folder):
    return the_only(r'^set\(NUBARIA_UPDATE_HOST "([^"]+)"', read(folder, PROJECT), PROJECT, "the update host")


def label_text(folder, name):
    """The text of a label of the form, as it stands there."""
    text = xml(folder, FORM).findtext(f".//widget[@name='{name}']/property[@name='text']/string")
    if not text:
        raise Refusal(f"{FORM} has no text in {name}")
    return text


def form_versions(folder, name):
    """The label's version, and that of the long name behind it."""
    found = re.findall(r"(?:V|Versión |REL)(\d+(?:\.\d+)*)", label_text(folder, name))
    if len(found) != 2:
        raise Refusal(f"{FORM} does not tell the version and its long name in {name}")
    return found


# The logs of changes, the newest release first.


def released(pattern, folder, name, day):
    found = re.findall(pattern, read(folder, name), re.MULTILINE)
    if not found:
        raise Refusal(f"{name} tells of no release")
    try:
        return [Release(version, day(text)) for version, text in found]
    except (TypeError, ValueError):
        raise Refusal(f"{name} has a date that is none") from None


def changes(folder):
    return released(r"^## (\S+)(?: \((.*)\))?$", folder, CHANGES, date.fromisoformat)


def debian_changes(folder):
    pattern = r"^nubaria \((\S+)\) .*$(?:\n(?: .*)?)*?\n -- .*>  (.*)$"
    return released(pattern, folder, DEBIAN, lambda text: parsedate_to_datetime(text).date())


def metainfo_releases(folder):
    releases = xml(folder, METAINFO).findall("releases/release")
    if not releases:
        raise Refusal(f"{METAINFO} tells of no release")
    try:
        return [Release(one.get("version"), date.fromisoformat(one.get("date", ""))) for one in releases]
    except ValueError:
        raise Refusal(f"{METAINFO} has a date that is none") from None


# Reasons to refuse.


def refuse_changes_in_the_tree(folder):
    command = ("git", "-C", str(folder), "status", "--porcelain")
    told = subprocess.run(command, capture_output=True, text=True, check=False)
    if told.returncode != 0:
        raise Refusal("git does not tell the state of the tree")
    if lines := told.stdout.splitlines():
        more = f" and {len(lines) - 1} more" if len(lines) > 1 else ""
        raise Refusal(f"there are changes that are not committed: {lines[0][3:]}{more}")


def refuse_other_form(folder, version):
    for name in FORM_LABELS:
        for told in form_versions(folder, name):
            if told != version:
                raise Refusal(f"{FORM} says {told} in {name}, {PROJECT} says {version}")


def refuse_other_logs(folder, version):
    """Every log names the same releases, and the newest is of the same day."""
    logs = {CHANGES: changes(folder), DEBIAN: debian_changes(folder), METAINFO: metainfo_releases(folder)}
    for name, log in logs.items():
        if log[0].version != version:
            raise Refusal(f"{name} says {log[0].version}, {PROJECT} says {version}")
    first = logs[CHANGES]
    for name, log in logs.items():
        if log[0].day != first[0].day:
            raise Refusal(f"{name} dates {version} {log[0].day}, {CHANGES} {first[0].day}")
        if [one.version for one in log] != [one.version for one in first]:
            raise Refusal(f"{name} and {CHANGES} name other releases before {version}")


def figures(version):
    try:
        return [int(figure) for figure in version.split(".")]
    except ValueError:
        raise Refusal(f"{CHANGES} has the release {version}, which is no version") from None


def refuse_wrong_order(folder, version):
    """Programs compare versions as text; package managers, and people, as numbers."""
    for former in (one.version for one in changes(folder)[1:]):
        if version == former:
            raise Refusal(f"{CHANGES} names {version} twice")
        if version < former:
            raise Refusal(f"{version} sorts before {former} as text, so that no {former} would announce it")
        if figures(version) < figures(former):
            raise Refusal(f"{version} comes before {former} as a number, so that no package manager would take it")


def refuse_other_commit(folder, version):
    def commit(name):
        command = ("git", "-C", str(folder), "rev-parse", "--quiet", "--verify", f"{name}^{{commit}}")
        return subprocess.run(command, capture_output=True, text=True, check=False).stdout.strip()

    tagged = commit(f"refs/tags/v{version}")
    if tagged and tagged != commit("HEAD"):
        raise Refusal(f"{version} has been released from another commit, v{version}")


def check(folder):
    """Returns the version, or says why it cannot be released."""
    refuse_changes_in_the_tree(folder)
    version = project_version(folder)
    refuse_other_form(folder, version)
    label_text(folder, NOTES_LABEL)
    refuse_other_logs(folder, version)
    refuse_wrong_order(folder, version)
    refuse_other_commit(folder, version)
    return version


def main():
    arguments = sys.argv[1:]
    told = project_version if arguments[:1] == ["--unchecked"] else check
    folders = arguments[1:] if told is project_version else arguments
    if len(folders) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        print(told(Path(folders[0])))
    except Refusal as refusal:
        print(f"release: {refusal}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
