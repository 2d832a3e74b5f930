"""A server of this machine for one test: files of a folder, and what bad servers do.

Usage: server.py FOLDER [CERTIFICATE]. Prints its port. Notes each request in FOLDER/requests, one JSON object a line.
"""
import http.server
import json
import ssl
import sys
import threading
import urllib.parse

folder = sys.argv[1]
stop = threading.Event()


class Handler(http.server.SimpleHTTPRequestHandler):
    def __init__(self, *arguments):
        super().__init__(*arguments, directory=folder)

    def note(self, body=""):
        with open(folder + "/requests", "a") as requests:
            print(json.dumps({"method": self.command, "path": self.path, "body": body,
                              "headers": dict(self.headers)}), file=requests)

    def do_POST(self):
        self.note(self.rfile.read(int(self.headers["Content-Length"])).decode())
        self.send_response(500 if self.path == "/broken" else 200)
        self.end_headers()

    def do_GET(self):
        self.note()
        address = urllib.parse.urlsplit(self.path)
        if address.path == "/hang":
            stop.wait()
        elif address.path == "/redirect":
            self.send_response(302)
            self.send_header("Location", urllib.parse.unquote(address.query))
            self.end_headers()
        elif address.path in ("/endless", "/endless-headers"):
            self.send_response(200)
            if address.path == "/endless":
                self.end_headers()
            while True:
                self.wfile.write(b"x-filler: " + b"x" * 1000 + b"\r\n")
        elif address.path == "/short":
            self.send_response(200)
            self.send_header("Content-Length", "1000")
            self.end_headers()
            self.wfile.write(b"cut off")
        elif address.path == "/not-http":
            self.wfile.write(b"SSH-2.0-something\r\n")
        else:
            super().do_GET()

    def handle(self):
        try:
            super().handle()
        except (ConnectionError, ssl.SSLError):
            pass

    def log_message(self, *arguments):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
server.daemon_threads = True
if len(sys.argv) > 2:
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(sys.argv[2])
    server.socket = context.wrap_socket(server.socket, server_side=True)
    server.handle_error = lambda *arguments: None
print(server.server_address[1], flush=True)
server.serve_forever()
