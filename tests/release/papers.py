#!/usr/bin/python3 -B
"""Tries what script/release writes about its downloads: the page, the sums and the check of the bill of materials.

Usage: papers.py PROJECT

PROJECT is the folder of the project. The downloads are made up. Ends with 1 and one line for each case that fails.
The first line is Debian's own Python, as that has license_expression.
"""

import copy
import hashlib
import subprocess
import sys
import tempfile
from pathlib import Path

PROJECT = Path(sys.argv[1] if len(sys.argv) == 2 else ".").resolve()
TOOLS = PROJECT / "packaging" / "release"
sys.path.insert(0, str(TOOLS))

import documents  # noqa: E402  (the path comes first)
import facts  # noqa: E402
import spdx  # noqa: E402

VERSION = facts.project_version(PROJECT)
DEBIAN = (f"nubaria_{VERSION}_amd64.deb", f"nubaria_{VERSION}.tar.xz", f"nubaria_{VERSION}.dsc")
WINDOWS = (f"nubaria-{VERSION}-windows-x86_64.zip", f"nubaria-{VERSION}-windows-x86_64-setup.exe")


def expect(seen, expected):
    if seen != expected:
        raise AssertionError(f"{seen} instead of {expected}")


def published(folder, names):
    """The page of these downloads."""
    (folder / VERSION).mkdir()
    for name in names:
        (folder / VERSION / name).write_bytes(name.encode())
    subprocess.run((TOOLS / "documents.py", PROJECT, folder), check=True)
    return (folder / "version").read_text(encoding="utf-8")


# The documents


def the_page_offers_what_is_there(folder):
    page = published(folder, DEBIAN + WINDOWS)
    for name in DEBIAN + WINDOWS:
        expect(page.count(f'href="{VERSION}/{name}"'), 1)
        expect(page.count(hashlib.sha256(name.encode()).hexdigest()), 1)
    expect("Get-FileHash" in page and "sudo apt install" in page, True)


def without_windows_the_page_does_not_name_it(folder):
    page = published(folder, DEBIAN)
    expect([word for word in ("Windows", "windows", ".exe", ".zip", "Get-FileHash") if word in page], [])
    expect(page.count(f'href="{VERSION}/{DEBIAN[0]}"'), 1)


def the_sums_are_of_every_download(folder):
    published(folder, DEBIAN)
    expected = "".join(f"{hashlib.sha256(name.encode()).hexdigest()}  {name}\n" for name in sorted(DEBIAN))
    expect((folder / VERSION / "SHA256SUMS").read_text(encoding="ascii"), expected)


def the_version_document_tells_the_version(folder):
    published(folder, DEBIAN)
    expect((folder / "version.json").read_text(encoding="ascii"), f'{{"version": "{VERSION}"}}\n')


def the_notes_keep_their_order_and_emphasis(_):
    text = ("<p>Hola.</p><p><span style='font-weight:600;'>&bull; SISTEMA</span></p><p>1. Uno &lt; dos.</p><p>2. "
            "<span style='font-style:italic;'>Flores.</span></p><p>Fin.</p>")
    expect(documents.notes(text), "\n".join([
        "<p>Hola.</p>", "<h3>Sistema</h3>", '<ol start="1">', "<li>Uno &lt; dos.</li>", "<li><em>Flores.</em></li>",
        "</ol>", "<p>Fin.</p>"]))


# The bill of materials


def small_bill(folder):
    (folder / "download").write_bytes(b"bytes")
    own = spdx.file("source", "main.cpp", b"int main() {}", ["MIT"], "Nobody")
    package = spdx.package("Source", "nubaria", VERSION, "MIT AND OFL-1.1", "Nobody", files=[own],
                           packageFileName="download", checksums=spdx.checksums(b"bytes"))
    return {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": spdx.DOCUMENT, "name": "nubaria",
        "documentNamespace": "https://nubaria.example/bill",
        "creationInfo": {"created": "2020-02-29T11:00:00Z", "creators": ["Tool: papers"]},
        "packages": [package], "files": [own],
        "relationships": [spdx.relation(spdx.DOCUMENT, "DESCRIBES", "SPDXRef-Source"),
                          *spdx.all_contained("SPDXRef-Source", [own])],
    }


def a_right_bill_has_no_fault(folder):
    expect(spdx.faults(small_bill(folder), folder), [])


def every_fault_of_a_bill_is_found(folder):
    right = small_bill(folder)
    own = right["files"][0]["SPDXID"]
    spoilt = {
        "the document has no name": lambda bill: bill.pop("name"),
        "the document does not tell when it was made": lambda bill: bill["creationInfo"].update(created="today"),
        "SPDXRef-So_urce is no identifier": lambda bill: bill["packages"][0].update(SPDXID="SPDXRef-So_urce"),
        f"{own} is there twice": lambda bill: bill["files"].append(bill["files"][0]),
        "CONTAINS speaks of SPDXRef-Other, which is not there":
            lambda bill: bill["relationships"].append(spdx.relation("SPDXRef-Source", "CONTAINS", "SPDXRef-Other")),
        "nothing leads to nubaria": lambda bill: bill["relationships"].pop(0),
        "Unknown license key(s): Mine": lambda bill: bill["files"][0].update(licenseInfoInFiles=["Mine"]),
        "download is not what the bill tells of": lambda bill: bill["packages"][0].update(checksums=[]),
        "the files of nubaria do not add up to it":
            lambda bill: bill["files"][0].update(checksums=spdx.checksums(b"other")),
    }
    for fault, spoil in spoilt.items():
        bill = copy.deepcopy(right)
        spoil(bill)
        if fault not in spdx.faults(bill, folder):
            raise AssertionError(f"{spdx.faults(bill, folder)} lacks: {fault}")


CASES = (
    the_page_offers_what_is_there, without_windows_the_page_does_not_name_it, the_sums_are_of_every_download,
    the_version_document_tells_the_version, the_notes_keep_their_order_and_emphasis, a_right_bill_has_no_fault,
    every_fault_of_a_bill_is_found,
)


def passes(case):
    with tempfile.TemporaryDirectory(prefix="np") as folder:
        try:
            case(Path(folder))
        except AssertionError as failure:
            print(f"papers.py: {case.__name__.replace('_', ' ')}: {failure}", file=sys.stderr)
            return False
    return True


if __name__ == "__main__":
    results = [passes(case) for case in CASES]
    print(f"papers.py: {sum(results)} of {len(results)} cases pass")
    sys.exit(0 if all(results) else 1)
