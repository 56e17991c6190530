#!/usr/bin/env -S python3 -B
"""Tries script/release with trees that are not to be released: each has to be refused for its own reason.

Usage: refusals.py PROJECT

PROJECT is the folder of the project. Each case is a small repository of its own with what script/release looks at;
nothing is built. Ends with 1 and one line for each case that fails. Needs git.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

RELEASE = "script/release"
PROJECT, FORM, CHANGES = "CMakeLists.txt", "ui/mainwindow.ui", "CHANGELOG.md"
DEBIAN, METAINFO = "packaging/debian/changelog", "packaging/linux/org.example.nubaria.metainfo.xml"
FILES = (PROJECT, FORM, CHANGES, DEBIAN, METAINFO, RELEASE, "packaging/release/facts.py")
SAYING = (PROJECT, FORM, CHANGES, DEBIAN, METAINFO)  # those that say the version
GIT = ("git", "-c", "user.name=Nubaria", "-c", "user.email=developers@nubaria.example")
SILENT = {"GIT_CONFIG_GLOBAL": os.devnull, "GIT_CONFIG_NOSYSTEM": "1"}

FORMER_IN = {
    CHANGES: "\n## {} (2020-02-29)\n\n- Something.\n",
    DEBIAN: "\nnubaria ({}) bookworm; urgency=medium\n\n  * Something.\n\n"
            " -- Nubaria developers <developers@nubaria.example>  Sat, 29 Feb 2020 11:00:00 +0000\n",
}


class Tree:
    """A repository with what the project says of its version, all of it committed."""

    def __init__(self, project, folder):
        self.folder = folder
        self.environment = {name: value for name, value in os.environ.items() if not name.startswith("GIT_")} | SILENT
        for name in FILES:
            (folder / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(project / name, folder / name)
        self.version = re.search(r"^project\(nubaria VERSION (\S+)", self.read(PROJECT), re.MULTILINE).group(1)
        self.git("init", "--quiet")
        self.commit()

    def git(self, *arguments):
        subprocess.run((*GIT, *arguments), cwd=self.folder, env=self.environment, capture_output=True, check=True)

    def commit(self):
        self.git("add", "--all")
        self.git("commit", "--quiet", "--allow-empty", "--message", "Change")

    def read(self, name):
        return (self.folder / name).read_text(encoding="utf-8")

    def change(self, name, old, new, count=-1):
        """Replaces a text that has to be there, the first times or always."""
        text = self.read(name)
        if old not in text:
            raise AssertionError(f"{name} has no {old!r}")
        (self.folder / name).write_text(text.replace(old, new, count), encoding="utf-8")

    def become(self, version):
        """Says another version everywhere."""
        for name in SAYING:
            self.change(name, self.version, version)
        self.version = version

    def follow(self, former):
        """Tells everywhere of a release before this one."""
        for name, text in FORMER_IN.items():
            (self.folder / name).write_text(self.read(name) + text.format(former), encoding="utf-8")
        self.change(METAINFO, "  </releases>", f'    <release version="{former}" date="2020-02-29"/>\n  </releases>')

    def release(self, *options, **variables):
        command = (self.folder / RELEASE, *options)
        done = subprocess.run(command, cwd="/", env=self.environment | variables, capture_output=True, text=True,
                              timeout=60, check=False)
        return done.returncode, done.stdout, done.stderr


# The cases: each changes the tree and returns what is to be said of it; nothing where it can be released. What is to
# be looked at has been committed by then, unless a case leaves something out on purpose.


def as_it_is(_):
    return None


def after_an_older_release(tree):
    tree.follow("1.9.9")
    tree.commit()


def a_changed_file(tree):
    tree.change(CHANGES, "#", "##", 1)
    return f"there are changes that are not committed: {CHANGES}"


def a_new_file_and_a_staged_one(tree):
    for name in ("new", "staged"):
        (tree.folder / name).write_text("", encoding="ascii")
    tree.git("add", "staged")
    return "there are changes that are not committed: staged and 1 more"


def the_version_in_the_form_is_another(tree):
    tree.change(FORM, f"&lt;p&gt;V{tree.version}", "&lt;p&gt;V2.0.1")
    tree.commit()
    return f"{FORM} says 2.0.1 in VersionProgram, {PROJECT} says {tree.version}"


def the_long_name_in_the_form_is_another(tree):
    start = f"Versión {tree.version} (VBLOQnuWDEMSREL"
    tree.change(FORM, f"{start}{tree.version}", f"{start}2.0.1")
    tree.commit()
    return f"{FORM} says 2.0.1 in SubTitleLabelTxt_2, {PROJECT} says {tree.version}"


def the_form_has_no_notes(tree):
    tree.change(FORM, 'name="LargeText"', 'name="OtherText"')
    tree.commit()
    return f"{FORM} has no text in LargeText"


def the_version_of_the_project_alone_is_another(tree):
    tree.change(PROJECT, f"VERSION {tree.version}", "VERSION 2.0.9999")
    tree.commit()
    return f"{FORM} says {tree.version} in VersionProgram, {PROJECT} says 2.0.9999"


def the_changelog_is_of_another_version(tree):
    tree.change(CHANGES, tree.version, "2.0.1")
    tree.commit()
    return f"{CHANGES} says 2.0.1, {PROJECT} says {tree.version}"


def the_changelog_has_a_newer_version(tree):
    tree.change(CHANGES, f"## {tree.version}", f"## 9 (2126-01-01)\n\n- Something.\n\n## {tree.version}")
    tree.commit()
    return f"{CHANGES} says 9, {PROJECT} says {tree.version}"


def the_changelog_tells_no_date(tree):
    tree.change(CHANGES, f"## {tree.version} (", f"## {tree.version} (on ")
    tree.commit()
    return f"{CHANGES} has a date that is none"


def the_debian_package_is_of_another_version(tree):
    tree.change(DEBIAN, tree.version, "2.0.1")
    tree.commit()
    return f"{DEBIAN} says 2.0.1, {PROJECT} says {tree.version}"


def the_debian_package_is_of_another_day(tree):
    tree.follow("1.9.9")
    day = re.search(rf"## {re.escape(tree.version)} \((.*)\)", tree.read(CHANGES)).group(1)
    line = re.search(r"^ -- .*$", tree.read(DEBIAN), re.MULTILINE).group(0)
    tree.change(DEBIAN, line, " -- Nubaria developers <developers@nubaria.example>  Sun, 01 Mar 2020 11:00:00 +0000")
    tree.commit()
    return f"{DEBIAN} dates {tree.version} 2020-03-01, {CHANGES} {day}"


def the_software_centre_is_told_of_another_version(tree):
    tree.change(METAINFO, f'version="{tree.version}"', 'version="2.0.1"')
    tree.commit()
    return f"{METAINFO} says 2.0.1, {PROJECT} says {tree.version}"


def the_logs_tell_of_different_former_releases(tree):
    tree.follow("1.9.9")
    tree.change(DEBIAN, "1.9.9", "1.9.8")
    tree.commit()
    return f"{DEBIAN} and {CHANGES} name other releases before {tree.version}"


def more_figures_sort_before_fewer(tree):
    tree.become("2.0.10000")
    tree.follow("2.0.2027")
    tree.commit()
    return "2.0.10000 sorts before 2.0.2027 as text, so that no 2.0.2027 would announce it"


def a_higher_first_figure_sorts_before(tree):
    tree.become("10.0.0")
    tree.follow("9")
    tree.commit()
    return "10.0.0 sorts before 9 as text, so that no 9 would announce it"


def it_sorts_before_one_long_ago(tree):
    tree.become("10.0.1")
    tree.follow("10.0.0")
    tree.follow("9")
    tree.commit()
    return "10.0.1 sorts before 9 as text, so that no 9 would announce it"


def a_lower_number_sorts_behind(tree):
    tree.become("3.0")
    tree.follow("10.0.0")
    tree.commit()
    return "3.0 comes before 10.0.0 as a number, so that no package manager would take it"


def the_version_has_been_before(tree):
    tree.follow("1.9.9")
    tree.follow(tree.version)
    tree.commit()
    return f"{CHANGES} names {tree.version} twice"


def it_is_tagged(tree):
    tree.git("tag", f"v{tree.version}")


def another_commit_is_tagged(tree):
    tree.git("tag", f"v{tree.version}")
    tree.commit()
    return f"{tree.version} has been released from another commit, v{tree.version}"


CHECKED = (
    as_it_is, after_an_older_release, it_is_tagged, a_changed_file, a_new_file_and_a_staged_one,
    the_version_in_the_form_is_another, the_long_name_in_the_form_is_another, the_form_has_no_notes,
    the_version_of_the_project_alone_is_another, the_changelog_is_of_another_version,
    the_changelog_has_a_newer_version, the_changelog_tells_no_date, the_debian_package_is_of_another_version,
    the_debian_package_is_of_another_day, the_software_centre_is_told_of_another_version,
    the_logs_tell_of_different_former_releases, more_figures_sort_before_fewer, a_higher_first_figure_sorts_before,
    it_sorts_before_one_long_ago, a_lower_number_sorts_behind, the_version_has_been_before, another_commit_is_tagged,
)


def expect(done, expected):
    if done != expected:
        raise AssertionError(f"{done} instead of {expected}")


def refused(reason):
    return 1, "", f"release: {reason}\n"


def check(case, tree):
    """Whether a tree can be released is said alike when it is asked for and before anything is built."""
    reason = case(tree)
    if reason is None:
        expect(tree.release("--check"), (0, f"release: {tree.version} can be released\n", ""))
    else:
        expect(tree.release("--check"), refused(reason))
        expect(tree.release(), refused(reason))


def check_what_windows_needs(tree):
    folder = tree.folder / "no-qt"
    (tree.folder / "script" / "package-windows").unlink(missing_ok=True)
    tree.commit()
    expect(tree.release(), refused("there is no script/package-windows; --without-windows does without it"))
    (tree.folder / "script" / "package-windows").write_text("", encoding="ascii")
    tree.commit()
    expect(tree.release(QT_MINGW_PREFIX=str(folder)), refused(
        f"there is no Qt for Windows in {folder} (packaging/windows/build-qt makes it); "
        "--without-windows does without it"))


def check_options(tree):
    expect(tree.release("--chek"), refused(
        "unknown option '--chek', know --check, --twice, --without-windows"))


def attempt(project, name, act):
    """Runs one case in a tree of its own; returns whether it passes."""
    with tempfile.TemporaryDirectory(prefix="nr") as folder:
        try:
            act(Tree(project, Path(folder)))
        except AssertionError as failure:
            print(f"refusals.py: {name.replace('_', ' ')}: {failure}", file=sys.stderr)
            return False
    return True


def main():
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    project = Path(sys.argv[1]).resolve()
    results = [attempt(project, case.__name__, lambda tree, case=case: check(case, tree)) for case in CHECKED]
    results += [attempt(project, act.__name__, act) for act in (check_what_windows_needs, check_options)]
    print(f"refusals.py: {sum(results)} of {len(results)} cases pass")
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
