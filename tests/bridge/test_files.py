# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""The files that zybridge sends: those of its spool directory, and those it fetches by HTTP."""

import collections
import hashlib
import http.server
import itertools
import os
import resource
import shutil
import threading
import unittest

import fleet

CONTENT = os.urandom(300000)
TOO_LARGE = 5 * 1024 ** 3


def content_of(path):
    """No two files have the same digest: what is fetched once is not fetched again."""
    return CONTENT + path.encode()


def digest_of(path):
    return hashlib.sha256(content_of(path)).hexdigest()


class Handler(http.server.BaseHTTPRequestHandler):
    """What the first request for each path gets; all others get the file."""

    def do_GET(self):
        path = self.path[1:]
        content = content_of(path)
        if path == "good" or next(self.server.counters[path]) > 0:
            self.give(200, content, len(content))
        elif path == "cut":
            self.give(200, content[:1000], len(content))
        elif path == "too-large":
            self.give(200, content, TOO_LARGE)
            self.rfile.read(1)  # until the bridge ends the connection
        elif path == "late-404":
            self.server.is_asked.set()
            self.server.may_answer.wait(fleet.PATIENCE)
            self.give(404, b"", 0)
        else:
            self.give(int(path), b"", 0)

    def give(self, status, content, length):
        self.send_response(status)
        self.send_header("Content-Length", str(length))
        self.end_headers()
        self.wfile.write(content)

    def log_message(self, *_):
        pass


class WebServer(http.server.ThreadingHTTPServer):
    def __init__(self):
        super().__init__(("127.0.0.1", 0), Handler)
        self.counters = collections.defaultdict(itertools.count)
        self.is_asked = threading.Event()
        self.may_answer = threading.Event()
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def address(self, path):
        return f"http://127.0.0.1:{self.server_port}/{path}"

    def handle_error(self, *_):
        pass  # of a client that has had enough


class LimitedBridge(fleet.Bridge):
    """A zybridge that hears of a file that may not grow, instead of being killed by SIGXFSZ."""

    def start(self):
        self.process = fleet.Process(os.environ["ZYBRIDGE"], "--config", self.config,
                                     restore_signals=False)

    def limit_files(self, size):
        resource.prlimit(self.process.process.pid, resource.RLIMIT_FSIZE,
                         (size, resource.RLIM_INFINITY))


class WithFiles(fleet.WithOwnBroker):
    """A spool directory, a web server, a bridge, and virtual printers in the group "resin"."""

    printers = 1

    def setUp(self):
        super().setUp()
        self.spool = self.directory / "spool"
        self.spool.mkdir()
        (self.spool / "part.zydlp").write_bytes(CONTENT)
        self.web = WebServer()
        self.addCleanup(self.web.server_close)
        self.addCleanup(self.web.shutdown)
        self.addCleanup(self.web.may_answer.set)
        farm = fleet.Farm(self.directory / "farm", self.printers, 1)
        self.addCleanup(farm.kill)
        self.bridge = LimitedBridge(self.directory, "hall", self.broker.port, farm.printers,
                                    {"resin": ",".join(farm.printers)}, spool=self.spool)
        self.addCleanup(self.bridge.kill)
        self.fetched = self.bridge.directory / "state" / "fetched"
        self.client = fleet.Client(self.broker.port, "zy/#")
        self.addCleanup(self.client.close)
        for printer in farm.printers:
            self.client.wait_for(f"zy/{printer}/availability", lambda value: value == "online")

    def send(self, **request):
        return self.client.ask("zy/printer0/send", request)

    def fetch(self, path):
        return self.send(url=self.web.address(path), sha256=digest_of(path), name="web.zydlp")

    def assertRefused(self, answer, error, part):
        self.assertEqual((answer["ok"], answer["error"]), (False, error), answer)
        self.assertIn(part, answer["text"])


class Spool(WithFiles):
    def test_no_file_is_sent_from_elsewhere_while_the_spool_directory_is_gone(self):
        secret = self.directory / "secret.zydlp"
        secret.write_bytes(CONTENT)
        for _ in ("there", "gone"):
            answer = self.send(file=str(secret))
            self.assertIs(answer["ok"], False, answer)
            shutil.rmtree(self.spool, ignore_errors=True)
        self.assertRefused(answer, "no-spool", str(self.spool))

    def test_a_job_waits_for_the_spool_directory(self):
        self.spool.rename(self.directory / "away")
        self.client.publish("zy/jobs/resin", {"id": "early", "file": "part.zydlp"})
        self.bridge.process.wait_for_line("early was not started .* spool")
        self.assertEqual(self.client.json("zy/jobs/resin/early")["state"], "placing")


class Fetches(WithFiles):
    def test_a_request_does_not_wait_for_the_address_of_another(self):
        self.client.publish("zy/printer0/send", {"url": self.web.address("late-404"),
                                                 "sha256": digest_of("good")})
        self.assertTrue(self.web.is_asked.wait(fleet.PATIENCE))
        self.assertTrue(self.fetch("good")["ok"])
        self.web.may_answer.set()
        fleet.wait_for(lambda: "fetch" in [each.get("error")
                                           for each in self.client.events("printer0")],
                       "the refusal of the other")

    def test_a_file_that_cannot_be_stored_is_called_so(self):
        self.fetched.rmdir()
        self.fetched.write_bytes(b"")
        self.assertRefused(self.fetch("good"), "storage", "")
        self.fetched.unlink()
        self.fetched.mkdir()
        self.bridge.limit_files(len(CONTENT) // 2)
        self.assertRefused(self.fetch("good"), "storage", "space")
        self.bridge.limit_files(resource.RLIM_INFINITY)
        self.assertTrue(self.fetch("good")["ok"])

    def test_a_file_that_is_too_large_is_not_fetched_to_its_end(self):
        self.assertRefused(self.fetch("too-large"), "too-large", "4 GiB")


class Jobs(WithFiles):
    printers = 8

    def test_a_job_with_a_wrong_key_is_refused(self):
        for wrong, part in [({"sha256": 123}, '"sha256" has to be a text'),
                            ({"print": True}, 'no key "print" here, only file, id, name, sha256'),
                            ({"id": 17}, '"id"')]:
            answer = self.client.ask("zy/jobs/resin", {"id": "a", "file": "part.zydlp", **wrong})
            self.assertRefused(answer, "malformed", part)

    def test_only_what_will_not_pass_refuses_a_job(self):
        passing, lasting = ["408", "429", "500", "503", "cut"], ["404", "410", "too-large"]
        for path in passing + lasting:
            self.client.publish("zy/jobs/resin", {"id": f"job-{path}", "sha256": digest_of(path),
                                                  "url": self.web.address(path)})
        for path in lasting:
            self.client.wait_for(f"zy/jobs/resin/job-{path}",
                                 lambda record: record["state"] == "refused")
        for path in passing:
            self.client.wait_for(f"zy/jobs/resin/job-{path}",
                                 lambda record: record["state"] == "complete")


if __name__ == "__main__":
    unittest.main()
