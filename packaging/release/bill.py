#!/usr/bin/python3 -B
"""Writes the bill of materials of a release (SPDX 2.3, JSON), and checks it.

Usage: bill.py SOURCE DOWNLOADS

SOURCE is the tree that was built, DOWNLOADS the folder with what it gave; the bill is put there. Every file of the
source package and of the Windows bundle has to be of Nubaria or of a component that components.json knows. The first
line is Debian's own Python, as that has license_expression.
"""

import json
import re
import struct
import subprocess
import sys
import tarfile
import zipfile
from datetime import timezone
from email.utils import parsedate_to_datetime
from pathlib import Path

import facts
import spdx

OWNER = "The Nubaria developers"
LICENCE_TEXTS = re.compile(r"LICENSE|LICENSES/.*|\.reuse/dep5|debian/copyright|resources/fonts/OFL-.*")


def run(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout
    except OSError as error:
        raise facts.Refusal(f"{command[0]} cannot be started: {error.strerror}") from None
    except subprocess.CalledProcessError as error:
        raise facts.Refusal(f"{command[0]} fails: {error.stderr.strip()}") from None


def the_one(folder, pattern):
    """The file of this kind, or None."""
    found = sorted(folder.glob(pattern))
    if len(found) > 1:
        raise facts.Refusal(f"there are {len(found)} files {pattern}")
    return found[0] if found else None


# The source


def declared(source):
    """Licences and copyright of every file, as the tree declares them."""
    found = {}
    for block in run("reuse", "--root", str(source), "spdx").split("\n\nFileName: ./")[1:]:
        name = block.split("\n", 1)[0]
        text = re.search(r"FileCopyrightText: <text>(.*?)</text>", block, re.DOTALL)
        found[name] = sorted(set(re.findall(r"LicenseInfoInFile: (.*)", block))), text.group(1) if text else ""
    return found


def declaration(name, empty, declarations):
    """A file of Debian's folder is declared where it comes from; a licence does not tell its own, nor does nothing."""
    origin = re.sub("^debian/", "packaging/debian/", name)
    if origin in declarations:
        return declarations[origin]
    if empty or LICENCE_TEXTS.fullmatch(name):
        return [spdx.UNKNOWN], spdx.UNKNOWN
    raise facts.Refusal(f"{name} has no licence")


def source_files(archive, declarations):
    files = []
    with tarfile.open(archive) as members:
        for member in members:
            if member.isfile():
                name = member.name.split("/", 1)[1]
                data = members.extractfile(member).read()
                files.append(spdx.file("source", name, data, *declaration(name, not data, declarations)))
    return sorted(files, key=lambda one: one["fileName"])


def component_version(source, place):
    name, pattern = place
    return facts.the_only(pattern, facts.read(source, name), name, f"the version of {pattern}")


def source_component(source, known, files):
    own = [one for one in files if known["holder"] in one["copyrightText"] and OWNER not in one["copyrightText"]]
    licences = sorted({licence for one in own for licence in one["licenseInfoInFiles"]})
    if len(licences) != 1:
        raise facts.Refusal(f"the files of {known['name']} are under {licences or 'no licence'}")
    version = component_version(source, known["version"])
    holder = min(own[0]["copyrightText"].split("\n"), key=len)  # others say more than the holder
    purl = {"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
            "referenceLocator": f"{known['purl']}@{version}"}
    described = spdx.package(known["name"].replace(" ", "-"), known["name"], version, licences[0], holder,
                             files=own, homepage=known["home"], externalRefs=[purl])
    return described, spdx.all_contained(described["SPDXID"], own)


def refuse_unknown_holders(files, components):
    holders = [OWNER, *(known["holder"] for known in components)]
    for one in files:
        text = one["copyrightText"]
        if text != spdx.UNKNOWN and not any(holder in text for holder in holders):
            raise facts.Refusal(f"{one['fileName']} belongs to nobody that components.json knows: {text}")


# The Windows bundle


def resource_version(data):
    """The version in the resources of a Windows program or library."""
    start = data.find(struct.pack("<I", 0xFEEF04BD))
    if start < 0:
        return None
    minor, major, _, patch = struct.unpack_from("<4H", data, start + 8)
    return f"{major}.{minor}.{patch}"


def told_version(known, bundle):
    way, where = next(iter(known["version"].items()))
    if way == "debian":
        return run("dpkg-query", "--show", "--showformat=${Version}", where)
    if way == "resource":
        return resource_version(bundle.get(where, b""))
    found = re.search(where.encode(), bundle.get(known["inside"], b""))
    return found and found.group(1).decode()


def bundle_component(known, bundle):
    version = told_version(known, bundle)
    if not version:
        raise facts.Refusal(f"the Windows bundle does not tell the version of its {known['name']}")
    own = [spdx.file("bundle", name, data, [known["licence"]], known["copyright"])
           for name, data in sorted(bundle.items()) if re.fullmatch(known.get("files", ""), name)]
    if not own and "inside" not in known:
        raise facts.Refusal(f"the Windows bundle has no {known['name']}")
    more = {"files": own} if own else {}
    if comment := known.get("comment"):
        more["comment"] = comment
    described = spdx.package(f"Windows-{known['name'].replace(' ', '-')}", known["name"], version, known["licence"],
                             known["copyright"], homepage=known["home"], **more)
    return described, own


def read_bundle(archive):
    """The files of the zip by their names below its one folder."""
    with zipfile.ZipFile(archive) as members:
        return {name.split("/", 1)[1]: members.read(name) for name in members.namelist() if not name.endswith("/")}


def bundle_components(archive, knowledge):
    bundle = read_bundle(archive)
    components = [bundle_component(known, bundle) for known in knowledge["in the Windows bundle"]]
    known_files = {file["fileName"][2:] for _, files in components for file in files}
    for name in sorted(set(bundle) - known_files):
        if not re.fullmatch(knowledge["of Nubaria in the Windows bundle"], name):
            raise facts.Refusal(f"the Windows bundle has {name}, which is of no component that components.json knows")
    return components


# The whole


class Bill:
    """Grows by what is added; `document` is the whole."""

    def __init__(self, source, downloads):
        self.source, self.downloads = source, downloads
        self.version = facts.project_version(source)
        self.base = f"https://{facts.update_host(source)}/updates/nubaria/{self.version}"
        self.knowledge = json.loads(Path(__file__).with_name("components.json").read_text(encoding="utf-8"))
        self.packages, self.files, self.relations = [], [], []

    def add(self, described, relations=()):
        self.packages.append(described)
        self.relations += relations

    def download(self, identifier, path, purpose, **more):
        """What users download, of Nubaria's own licence beside those of what it contains."""
        described = spdx.package(
            identifier, "nubaria", self.version, "MIT", f"2026 {OWNER}", packageFileName=path.name,
            checksums=spdx.checksums(path.read_bytes()), primaryPackagePurpose=purpose, **more)
        described |= {"downloadLocation": f"{self.base}/{path.name}", "supplier": "Organization: Nubaria developers"}
        self.add(described, [spdx.relation(spdx.DOCUMENT, "DESCRIBES", described["SPDXID"])])
        return described["SPDXID"]

    def add_source(self):
        archive = the_one(self.downloads, "*.tar.xz")
        if not archive:
            raise facts.Refusal("there is no source package")
        files = source_files(archive, declared(self.source))
        components = self.knowledge["in the source"]
        refuse_unknown_holders(files, components)
        self.files += files
        self.origin = self.download("Source", archive, "SOURCE", files=files)
        self.relations += spdx.all_contained(self.origin, files)
        described = [source_component(self.source, known, files) for known in components]
        self.components = [component for component, _ in described]
        for component, contained in described:
            self.add(component, contained)
        self.contain(self.origin, self.components)

    def add_build(self, identifier, path, purpose):
        built = self.download(identifier, path, purpose)
        self.relations.append(spdx.relation(built, "GENERATED_FROM", self.origin))
        self.contain(built, self.components)
        return built

    def contain(self, download, components):
        """The licences of what it contains hold for a download as well."""
        described = next(one for one in self.packages if one["SPDXID"] == download)
        licences = " AND ".join(one["licenseConcluded"] for one in (described, *components))
        described["licenseConcluded"] = " AND ".join(dict.fromkeys(licences.split(" AND ")))
        self.relations += spdx.all_contained(download, components)

    def add_debian(self):
        package = the_one(self.downloads, "nubaria_*.deb")
        built = self.add_build("Debian", package, "INSTALL")
        for name in sorted(set(re.findall(r"([a-z0-9][a-z0-9.+-]+)(?: \([^)]*\))?(?=,|$)",
                                          run("dpkg-deb", "--field", str(package), "Depends").strip()))):
            version = run("dpkg-query", "--show", "--showformat=${Version}", name)
            needed = spdx.package(f"Debian-{name.replace('+', '-plus')}", name, version, spdx.UNKNOWN, spdx.UNKNOWN,
                                  comment="As it was where the package was built.")
            self.add(needed, [spdx.relation(built, "DEPENDS_ON", needed["SPDXID"])])

    def add_windows(self):
        archive, installer = the_one(self.downloads, "*.zip"), the_one(self.downloads, "*.exe")
        if not archive or not installer:
            return
        builds = [
            self.add_build("Windows-zip", archive, "ARCHIVE"),
            self.add_build("Windows-setup", installer, "INSTALL"),
        ]
        bundled = bundle_components(archive, self.knowledge)
        for built in builds:
            self.contain(built, [component for component, _ in bundled])
        for component, files in bundled:
            self.files += files
            self.add(component, spdx.all_contained(component["SPDXID"], files))

    def document(self):
        log = facts.read(self.source, facts.DEBIAN)
        day = facts.the_only(r"\A(?:.|\n)*?\n -- .*>  (.*)$", log, facts.DEBIAN, "its date")
        made = parsedate_to_datetime(day).astimezone(timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")
        content = {"packages": self.packages, "files": self.files, "relationships": self.relations}
        digest = spdx.digest(json.dumps(content, sort_keys=True).encode(), "sha256")
        return {
            "spdxVersion": "SPDX-2.3",
            "dataLicense": "CC0-1.0",
            "SPDXID": spdx.DOCUMENT,
            "name": f"nubaria-{self.version}",
            "documentNamespace": f"{self.base}/spdx-{digest}",
            "creationInfo": {"created": made, "creators": ["Organization: Nubaria developers", "Tool: nubaria-bill"]},
        } | content


def write(source, downloads):
    bill = Bill(source, downloads)
    bill.add_source()
    bill.add_debian()
    bill.add_windows()
    document = bill.document()
    path = downloads / f"nubaria-{bill.version}.spdx.json"
    path.write_text(json.dumps(document, ensure_ascii=False, indent=1) + "\n", encoding="utf-8")
    found = spdx.faults(json.loads(path.read_text(encoding="utf-8")), downloads)
    if found:
        raise facts.Refusal(f"the bill of materials has {len(found)} faults: {'; '.join(found[:3])}")
    return f"{len(bill.packages)} packages, {len(bill.files)} files"


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        told = write(*(Path(argument) for argument in sys.argv[1:]))
    except facts.Refusal as refusal:
        print(f"release: {refusal}", file=sys.stderr)
        return 1
    print(f"release: the bill of materials tells of {told}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
