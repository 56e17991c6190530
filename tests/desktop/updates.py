"""The update server as the built program reaches it: by the proxy of the desktop, under a certificate it trusts."""

import http.server
import json
import shutil
import ssl
import subprocess
import threading
from pathlib import Path

from desktop import PATIENCE, Failure

CERTIFICATES = Path(__file__).resolve().parent.parent / "data" / "tls"
# Reads the folder's name as the shell's own.
TRUSTING = ("unshare", "--user", "--map-current-user", "--keep-caps", "--mount",
            "sh", "-c", 'mount --bind "$0" /etc/ssl/certs && exec "$@"')


class Proxy(http.server.BaseHTTPRequestHandler):
    """Opens the tunnel that is asked for, and is the host at its other end itself."""

    protocol_version = "HTTP/1.1"

    def do_CONNECT(self):
        self.send_response(200)
        self.end_headers()
        try:
            self.connection = self.server.context.wrap_socket(self.connection, server_side=True)
        except (ssl.SSLError, OSError):
            self.close_connection = True  # the program has ended, or does not trust the certificate
            return
        self.rfile, self.wfile = self.connection.makefile("rb"), self.connection.makefile("wb")

    def do_GET(self):
        body = json.dumps({"version": self.server.version}).encode()
        self.server.asked.append(self.path)
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)
        self.close_connection = True

    def log_message(self, *_):
        pass


class Updates:
    """Publishes a version until `end`."""

    def __init__(self, version):
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Proxy)
        self.server.daemon_threads = True
        self.server.version = version
        self.server.asked = []
        self.server.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.server.context.load_cert_chain(CERTIFICATES / "good.crt", CERTIFICATES / "server.key")
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def address(self):
        return f"http://127.0.0.1:{self.server.server_port}"

    def asked(self):
        """The paths that were asked for, in their order."""
        return list(self.server.asked)

    def end(self):
        self.server.shutdown()
        self.server.server_close()


def trusting(store):
    """Put before a program, it has that one trust the authority of the tests, whose certificate is in the folder alone."""
    store.mkdir(exist_ok=True)
    shutil.copy(CERTIFICATES / "authority.crt", store)
    command = (*TRUSTING, str(store))
    # Not every system lets a program have certificates of its own: a container or a chroot may refuse.
    tried = subprocess.run((*command, "true"), capture_output=True, text=True, timeout=PATIENCE, check=False)
    if tried.returncode != 0:
        raise Failure(f"no program can have certificates of its own: {tried.stderr.strip()}")
    return command
