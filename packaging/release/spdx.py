"""The parts of an SPDX 2.3 document, and what it must not lack."""

import hashlib
import re

from license_expression import get_spdx_licensing

UNKNOWN = "NOASSERTION"
DOCUMENT = "SPDXRef-DOCUMENT"
IDENTIFIER = re.compile(r"SPDXRef-[A-Za-z0-9.-]+")
REQUIRED = {
    "document": ("spdxVersion", "dataLicense", "SPDXID", "name", "documentNamespace", "creationInfo"),
    "packages": ("SPDXID", "name", "downloadLocation", "filesAnalyzed", "licenseConcluded", "licenseDeclared",
                 "copyrightText", "supplier"),
    "files": ("SPDXID", "fileName", "checksums", "licenseConcluded", "licenseInfoInFiles", "copyrightText"),
    "relationships": ("spdxElementId", "relationshipType", "relatedSpdxElement"),
}


def digest(data, algorithm):
    return hashlib.new(algorithm, data).hexdigest()


def checksums(data):
    return [{"algorithm": name.upper(), "checksumValue": digest(data, name)} for name in ("sha1", "sha256")]


def checksum(item, algorithm):
    return next(one["checksumValue"] for one in item["checksums"] if one["algorithm"] == algorithm)


def verification_code(files):
    """The digest of the files' digests in their order, as the standard wants it."""
    return digest("".join(sorted(checksum(file, "SHA1") for file in files)).encode(), "sha1")


def file(owner, name, data, licences, copyright_text):
    return {
        "SPDXID": f"SPDXRef-File-{digest(f'{owner}/{name}'.encode(), 'sha1')}",
        "fileName": f"./{name}",
        "checksums": checksums(data),
        "licenseConcluded": UNKNOWN,
        "licenseInfoInFiles": licences,
        "copyrightText": copyright_text,
    }


def package(identifier, name, version, licence, copyright_text, **more):
    """`files` are those that the package is made of, where they are known one by one."""
    files = more.pop("files", None)
    described = {
        "SPDXID": f"SPDXRef-{identifier}",
        "name": name,
        "versionInfo": version,
        "downloadLocation": UNKNOWN,
        "filesAnalyzed": files is not None,
        "licenseConcluded": licence,
        "licenseDeclared": licence,
        "copyrightText": copyright_text,
        "supplier": UNKNOWN,
    }
    if files is not None:
        described["packageVerificationCode"] = {"packageVerificationCodeValue": verification_code(files)}
        described["licenseInfoFromFiles"] = sorted({one for file in files for one in file["licenseInfoInFiles"]})
    return described | more


def relation(one, kind, other):
    return {"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}


def all_contained(package_id, elements):
    return [relation(package_id, "CONTAINS", element["SPDXID"]) for element in elements]


# What is wrong with a document, in one line each.


def lacking(document):
    for field in REQUIRED["document"]:
        if not document.get(field):
            yield f"the document has no {field}"
    for kind in ("packages", "files", "relationships"):
        for element in document[kind]:
            yield from (f"{element} has no {field}" for field in REQUIRED[kind] if field not in element)


def wrong_identifiers(document):
    seen = {DOCUMENT}
    for element in (*document["packages"], *document["files"]):
        identifier = element["SPDXID"]
        if not IDENTIFIER.fullmatch(identifier):
            yield f"{identifier} is no identifier"
        if identifier in seen:
            yield f"{identifier} is there twice"
        seen.add(identifier)
    for one in document["relationships"]:
        for end in (one["spdxElementId"], one["relatedSpdxElement"]):
            if end not in seen:
                yield f"{one['relationshipType']} speaks of {end}, which is not there"


def unreached(document):
    """Elements that nothing leads to from the document."""
    reached, waiting = set(), [DOCUMENT]
    ends = [(one["spdxElementId"], one["relatedSpdxElement"]) for one in document["relationships"]]
    while waiting:
        current = waiting.pop()
        reached.add(current)
        waiting += [end for start, end in ends if start == current and end not in reached]
    for element in (*document["packages"], *document["files"]):
        if element["SPDXID"] not in reached:
            yield f"nothing leads to {element.get('name') or element['fileName']}"


def unknown_licences(document):
    known = get_spdx_licensing()
    told = {one["licenseConcluded"] for one in document["packages"]}
    told |= {licence for one in document["files"] for licence in one["licenseInfoInFiles"]}
    for licence in sorted(told - {UNKNOWN}):
        yield from known.validate(licence).errors


def wrong_sums(document, folder):
    """Downloads that are not what the document says, and packages that their files do not add up to."""
    files = {one["SPDXID"]: one for one in document["files"]}
    for described in document["packages"]:
        if name := described.get("packageFileName"):
            path = folder / name
            if not path.is_file() or checksums(path.read_bytes()) != described["checksums"]:
                yield f"{name} is not what the bill tells of"
        if described["filesAnalyzed"]:
            own = [files[one["relatedSpdxElement"]] for one in document["relationships"]
                   if one["spdxElementId"] == described["SPDXID"] and one["relatedSpdxElement"] in files]
            if described["packageVerificationCode"]["packageVerificationCodeValue"] != verification_code(own):
                yield f"the files of {described['name']} do not add up to it"


def faults(document, folder):
    """Everything that is wrong with the document of the downloads in the folder."""
    found = list(lacking(document))
    if not found:
        for look in (wrong_identifiers, unreached, unknown_licences):
            found += look(document)
        found += wrong_sums(document, folder)
    if not re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", document["creationInfo"].get("created", "")):
        found.append("the document does not tell when it was made")
    return found
