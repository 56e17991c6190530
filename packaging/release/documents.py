#!/usr/bin/env -S python3 -B
"""Writes the two documents of the update server, and the sums of what they offer.

Usage: documents.py SOURCE SITE

SOURCE is the tree that was built, SITE the server's folder of Nubaria, which holds the downloads in a folder named
after the version. What is not there is not offered.
"""

import base64
import hashlib
import html
import json
import re
import sys
from html.parser import HTMLParser
from pathlib import Path
from string import Template
from typing import NamedTuple

import facts

ICON = "resources/artwork/quenoliicon.svg"
MONTHS = ("enero", "febrero", "marzo", "abril", "mayo", "junio", "julio", "agosto", "septiembre", "octubre",
          "noviembre", "diciembre")


class Kind(NamedTuple):
    """What a download is, how one installs it and how one checks its sum; `pattern` tells it by its name."""

    pattern: str
    title: str
    about: str
    installing: str = ""
    checking: str = ""


ON_WINDOWS = "<p>En Windows: <code>Get-FileHash $name</code> (PowerShell).</p>"
ON_LINUX = "<p>En Linux: <code>sha256sum --ignore-missing --check SHA256SUMS</code>.</p>"
KINDS = (
    Kind(r"\.exe$", "Instalador para Windows", "Windows 10 o posterior, de 64 bits.",
         "<p>En Windows: abre el instalador <code>$name</code>.</p>", ON_WINDOWS),
    Kind(r"\.zip$", "Versión portátil para Windows", "Windows 10 o posterior, de 64 bits.",
         "<p>En Windows, sin instalar: descomprime <code>$name</code> y abre <code>nubaria.exe</code>.</p>",
         ON_WINDOWS),
    Kind(r"^nubaria_.*\.deb$", "Paquete para Debian", "Debian 12 o 13, de 64 bits (amd64).",
         "<p>En Debian: <code>sudo apt install ./$name</code></p>", ON_LINUX),
    Kind(r"\.tar\.xz$", "Código fuente", "El paquete fuente de Debian, con las instrucciones en README.md.",
         "", ON_LINUX),
    Kind(r"\.dsc$", "Descripción del código fuente", "Lo que <code>dpkg-source</code> pide junto a él."),
    Kind(r"^nubaria-dbgsym_.*\.deb$", "Símbolos para Debian", "Solo para depurar el programa del paquete."),
)


class Notes(HTMLParser):
    """The form's release notes as plain paragraphs; a part of one may be emphasised."""

    def __init__(self):
        super().__init__()
        self.paragraphs = []
        self.open_tags = []

    def handle_starttag(self, tag, attrs):
        if tag == "p":
            self.paragraphs.append("")
        elif tag == "span":
            self.open_tags.append("em" if "italic" in dict(attrs).get("style", "") else "")
            self.add(self.open_tags[-1] and "<em>")

    def handle_endtag(self, tag):
        if tag == "span":
            name = self.open_tags.pop()
            self.add(name and f"</{name}>")

    def handle_data(self, data):
        self.add(html.escape(data))

    def add(self, text):
        if self.paragraphs:
            self.paragraphs[-1] += text


def notes(text):
    """Headings, numbered notes and plain paragraphs, as the form's text has them."""
    parser = Notes()
    parser.feed(text)
    lines, listed = [], False
    for paragraph in parser.paragraphs:
        number = re.match(r"(\d+)\. ", paragraph)
        if listed and not number:
            lines.append("</ol>")
        if number and not listed:
            lines.append(f'<ol start="{number.group(1)}">')
        listed = bool(number)
        if number:
            lines.append(f"<li>{paragraph[number.end():]}</li>")
        elif paragraph.startswith("• "):
            lines.append(f"<h3>{paragraph[2:].capitalize()}</h3>")
        else:
            lines.append(f"<p>{paragraph}</p>")
    return "\n".join([*lines, "</ol>"] if listed else lines)


def sha256(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def size(path):
    count = path.stat().st_size
    if count < 1_000_000:
        return f"{-(-count // 1000)} kB"
    return f"{count / 1_000_000:.1f} MB".replace(".", ",")


def offered(folder):
    """Every download with its kind, in the order of the kinds."""
    found = []
    for kind in KINDS:
        found += [(path, kind) for path in sorted(folder.iterdir()) if re.search(kind.pattern, path.name)]
    return found


def item(path, kind, version):
    link = html.escape(f"{version}/{path.name}")
    return "\n".join([
        "<li>",
        f'<div class="head"><strong>{kind.title}</strong>',
        f'<a class="button" href="{link}" aria-label="Descargar {html.escape(path.name)}">Descargar</a></div>',
        f"<p>{kind.about} {size(path)}.</p>",
        f"<p><code>{html.escape(path.name)}</code></p>",
        f"<p>SHA-256: <code>{sha256(path)}</code></p>",
        "</li>",
    ])


def told_once(templates):
    """The filled-in paragraphs without those that came before."""
    return "\n".join(dict.fromkeys(Template(text).substitute(name=name) for text, name in templates if text))


def checking(files):
    """How the first file of each way is checked."""
    firsts = {}
    for path, kind in files:
        firsts.setdefault(kind.checking, path.name)
    return told_once(firsts.items())


def page(source, folder, version):
    files = offered(folder)
    day = facts.changes(source)[0].day
    icon = base64.b64encode((source / ICON).read_bytes()).decode()
    template = Template(Path(__file__).with_name("page.html").read_text(encoding="utf-8"))
    return template.substitute(
        version=version,
        day=day.isoformat(),
        spoken_day=f"{day.day} de {MONTHS[day.month - 1]} de {day.year}",
        icon=f"data:image/svg+xml;base64,{icon}",
        files="\n".join(item(path, kind, version) for path, kind in files),
        installing=told_once((kind.installing, path.name) for path, kind in files),
        checking=checking(files),
        sums=f"{version}/SHA256SUMS",
        bill=f"{version}/nubaria-{version}.spdx.json",
        notes=notes(facts.label_text(source, facts.NOTES_LABEL)),
    )


def write_sums(folder):
    sums = folder / "SHA256SUMS"
    lines = [f"{sha256(path)}  {path.name}\n" for path in sorted(folder.iterdir()) if path != sums]
    sums.write_text("".join(lines), encoding="ascii")


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    source, site = (Path(argument) for argument in sys.argv[1:])
    try:
        version = facts.project_version(source)
        write_sums(site / version)
        (site / "version").write_text(page(source, site / version, version), encoding="utf-8")
    except facts.Refusal as refusal:
        print(f"release: {refusal}", file=sys.stderr)
        return 1
    (site / "version.json").write_text(json.dumps({"version": version}) + "\n", encoding="ascii")
    return 0


if __name__ == "__main__":
    sys.exit(main())
