"""The update server with the documents of a release, and a visitor who reads its page and follows its links."""

import hashlib
import http.server
import json
import re
import ssl
import threading
import urllib.error
import urllib.parse
import urllib.request

from desktop import Failure
from updates import CERTIFICATES

HOST, PORT = "updates.nubaria.example", 443
FOLDER = f"https://{HOST}/updates/nubaria/"
DOCUMENT, PAGE = f"{FOLDER}version.json", f"{FOLDER}version"
BROWSER = urllib.request.build_opener(
    urllib.request.ProxyHandler({}),
    urllib.request.HTTPSHandler(context=ssl.create_default_context(cafile=CERTIFICATES / "authority.crt")),
)
TYPES = {"": "text/html; charset=utf-8", ".json": "application/json"}


class Visit(http.server.BaseHTTPRequestHandler):
    """One connection, over TLS from its first byte."""

    def setup(self):
        self.request.settimeout(20)
        self.request = self.server.context.wrap_socket(self.request, server_side=True)
        super().setup()

    def do_GET(self):
        root = self.server.site.resolve()
        path = (root / urllib.parse.unquote(self.path).removeprefix("/updates/")).resolve()
        known = self.path.startswith("/updates/") and path.is_relative_to(root) and path.is_file()
        self.send_response(200 if known else 404)
        body = path.read_bytes() if known else b""
        self.send_header("Content-Type", TYPES.get(path.suffix if known else None, "application/octet-stream"))
        self.send_header("Content-Length", str(len(body)))
        self.send_header("Connection", "close")
        self.end_headers()
        self.wfile.write(body)
        self.server.asked.append((self.command, self.path, 200 if known else 404))
        self.server.answered += 1
        self.wait_for_the_end()

    def wait_for_the_end(self):
        """Whoever has read the answer hangs up."""
        try:
            while self.request.recv(1):
                pass
        except (ssl.SSLError, ConnectionError):
            pass
        except TimeoutError:
            return
        self.server.read_by_clients += 1

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    """Publishes a folder as its updates until `end`."""

    daemon_threads = True

    def __init__(self, site):
        super().__init__(("127.0.0.1", PORT), Visit)
        self.site = site
        self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.context.load_cert_chain(CERTIFICATES / "good.crt", CERTIFICATES / "server.key")
        self.forget()
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def forget(self):
        self.asked, self.answered, self.read_by_clients = [], 0, 0

    def handle_error(self, request, client_address):
        """A client that does not trust the server leaves no answer, which is what is looked at."""

    def end(self):
        self.shutdown()
        self.server_close()


def fetch(address):
    """The type and the bytes of a document, read as a browser reads it."""
    try:
        with BROWSER.open(address, timeout=20) as answer:
            return answer.headers["Content-Type"], answer.read()
    except (urllib.error.URLError, OSError) as error:
        raise Failure(f"{address}: {error}") from None


def check_page(version):
    """Reads both documents and everything that the page offers; returns what was seen."""
    kind, document = fetch(DOCUMENT)
    if kind != "application/json" or json.loads(document) != {"version": version}:
        raise Failure(f"the version document is {document!r}, {kind}")
    kind, data = fetch(PAGE)
    text = data.decode("utf-8")
    head = ('<html lang="es">', '<meta charset="utf-8">', f"<h1>Nubaria {version}</h1>")
    if kind != "text/html; charset=utf-8" or not all(part in text for part in head):
        raise Failure(f"the page is not that of version {version}, in Spanish: {kind}")
    if loaded := re.findall(r'(?:src|<link[^>]*href)="(?!data:)([^"]*)"|<script', text):
        raise Failure(f"the page is not whole by itself: {loaded}")
    sums = check_links(text)
    kept = dict(line.split()[::-1] for line in fetch(f"{FOLDER}{version}/SHA256SUMS")[1].decode().splitlines())
    if not sums or not set(sums.items()) < set(kept.items()):
        raise Failure(f"the sums of the page, {sums}, are not among those of the list, {kept}")
    return f"{len(data)} bytes; the sums of {', '.join(sums)} are those that it tells"


def check_links(text):
    """Follows every link of the page; returns the sums of what it offers for download."""
    told = dict(re.findall(r"<p><code>([^<]+)</code></p>\n<p>SHA-256: <code>([0-9a-f]{64})</code>", text))
    sums = {}
    for link in re.findall(r'<a [^>]*href="([^"]*)"', text):
        data = fetch(urllib.parse.urljoin(PAGE, link))[1]
        name = link.rsplit("/", 1)[-1]
        if name in told:
            sums[name] = hashlib.sha256(data).hexdigest()
    if sums != told:
        raise Failure(f"the page tells of the sums {told}, its links lead to {sums}")
    return sums
