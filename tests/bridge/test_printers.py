# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""What zybridge says of its printers, and what it does for requests to them."""

import functools
import hashlib
import http.server
import os
import pathlib
import ssl
import subprocess
import tempfile
import threading
import unittest

import fleet
from processes import Printer, printer


class WithBroker(unittest.TestCase):
    """A broker, one printer and one bridge for all tests of the class."""

    printer_options = ("--speed", "200")

    @classmethod
    def setUpClass(cls):
        cls._kept = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls._kept.cleanup)
        cls.directory = pathlib.Path(cls._kept.name)
        cls.broker = fleet.Broker(cls.directory)
        cls.addClassCleanup(lambda: cls.broker.kill())
        cls.printer = Printer(os.environ["ZYPRINTER"], cls.directory / "printer",
                              *cls.printer_options)
        cls.addClassCleanup(lambda: cls.printer._process.kill())
        cls.spool = cls.directory / "spool"
        cls.spool.mkdir()
        cls.model = cls.spool / "model.zydlp"
        subprocess.run([os.environ["ZYMODEL"], "--out", cls.model, "--layers", "40", "--resolution",
                        "64x64"], check=True)
        cls.bridge = fleet.Bridge(cls.directory, "hall", cls.broker.port,
                                  {"bench": cls.printer.url}, spool=cls.spool)
        cls.addClassCleanup(lambda: cls.bridge.kill())
        cls.client = fleet.Client(cls.broker.port, "zy/#", "homeassistant/#")
        cls.addClassCleanup(cls.client.close)
        cls.client.wait_for("zy/bench/availability", lambda value: value == "online")

    def setUp(self):
        self.client.forget()

    def assertRefused(self, answer, error, part):
        self.assertIs(answer["ok"], False)
        self.assertEqual(answer["error"], error)
        self.assertIn(part, answer["text"])

    def send_model(self, name):
        answer = self.client.ask("zy/bench/send", {"file": "model.zydlp", "name": name})
        self.assertEqual(answer, {"ok": True, "printer": "bench", "file": name})

    def stop_print(self):
        self.client.ask("zy/bench/command", {"command": "stop"})
        self.client.wait_for("zy/bench/state", lambda state: state["status"] not in (
            "printing", "paused", "stopping", "completing"))


class Requests(WithBroker):
    def test_a_file_of_the_spool_directory_arrives_with_its_progress(self):
        self.send_model("part.zydlp")
        self.assertEqual(self.printer.stored("part.zydlp"), self.model.read_bytes())
        size = self.model.stat().st_size
        kinds = {event["event"]: event for event in self.client.events("bench")}
        self.assertEqual(kinds["sending"]["total"], size)
        self.assertEqual(kinds["sent"]["received"], size)

    def test_a_print_is_started_paused_resumed_and_stopped(self):
        self.send_model("run.zydlp")
        run = {"command": "print", "file": "run.zydlp"}
        self.assertTrue(self.client.ask("zy/bench/command", run)["ok"])
        state = self.client.wait_for("zy/bench/state", lambda s: s["status"] == "printing")
        self.assertEqual((state["file"], state["layers"]), ("run.zydlp", 40))
        self.assertIsInstance(state["layer"], int)
        self.assertIsInstance(state["remaining"], (int, float))
        self.assertIsInstance(state["parameters"]["printExposure"], (int, float))
        self.assertTrue(self.client.ask("zy/bench/command", {"command": "pause"})["ok"])
        self.client.wait_for("zy/bench/state", lambda s: s["status"] == "paused")
        self.assertTrue(self.client.ask("zy/bench/command", run)["ok"])
        self.client.wait_for("zy/bench/state", lambda s: s["status"] == "printing")
        self.stop_print()
        self.assertEqual(self.client.json("zy/bench/state")["status"], "stopped")
        def changes():
            return [e["to"] for e in self.client.events("bench") if e["event"] == "status"]
        fleet.wait_for(lambda: changes()[-1] == "stopped", "the event, which follows the state")
        self.assertIn("printing", changes())

    def test_a_sent_file_is_printed_on_request(self):
        answer = self.client.ask("zy/bench/send", {"file": "model.zydlp", "name": "both.zydlp",
                                                   "print": True})
        self.assertEqual(answer, {"ok": True, "printer": "bench", "file": "both.zydlp"})
        self.client.wait_for("zy/bench/state", lambda s: s.get("file") == "both.zydlp")
        self.stop_print()

    def test_parameters_are_set(self):
        answer = self.client.ask("zy/bench/command", {"command": "set",
                                                      "parameters": {"printExposure": 7.5}})
        self.assertEqual(answer, {"ok": True, "printer": "bench"})
        self.client.wait_for("zy/bench/state",
                             lambda state: state["parameters"]["printExposure"] == 7.5)

    def test_a_parameter_out_of_range_is_named(self):
        answer = self.client.ask("zy/bench/command", {"command": "set",
                                                      "parameters": {"printExposure": -1}})
        self.assertRefused(answer, "not-taken", "printExposure")

    def test_bad_requests_are_answered_with_what_is_wrong(self):
        for leaf, payload, error, part in [
                ("command", "{", "malformed", "no JSON"),
                ("command", "[1]", "malformed", "no JSON object"),
                ("command", b"\xff\xfe", "malformed", "no JSON"),
                ("command", {}, "unknown-command", "print, pause, stop, set"),
                ("command", {"command": "dance"}, "unknown-command", "print, pause, stop, set"),
                ("command", {"command": "print"}, "malformed", "file"),
                ("command", {"command": "print", "file": "none.zydlp"}, "check-failed", "lacks"),
                ("command", {"command": "pause"}, "refused", "now"),
                ("command", {"command": "set"}, "malformed", "parameters"),
                ("command", {"command": "set", "parameters": {"speed": 1}}, "malformed", "speed"),
                ("command", {"command": "set", "parameters": {"eleSpeed": "fast"}}, "malformed",
                 "eleSpeed"),
                ("command", {"command": 1}, "malformed", '"command" has to be a text'),
                ("command", {"command": "print", "file": 1}, "malformed", '"file" has to be a text'),
                ("command", {"command": "set", "parameters": [1]}, "malformed",
                 '"parameters" has to be an object'),
                ("command", {"command": "stop", "now": True}, "malformed", 'no key "now"'),
                ("command", "x" * 70000, "too-large", "65536"),
                ("send", "{", "malformed", "no JSON"),
                ("send", {}, "malformed", "file"),
                ("send", {"file": "a", "url": "http://a/b"}, "malformed", "either"),
                ("send", {"file": "none.zydlp"}, "no-file", "none.zydlp"),
                ("send", {"file": "../printer/part.zydlp"}, "no-file", "spool"),
                ("send", {"file": "."}, "no-file", "spool"),
                ("send", {"file": "model.zydlp", "sha256": "12"}, "malformed", "64 hex"),
                ("send", {"file": "model.zydlp", "sha256": "0" * 64}, "digest", "0" * 64),
                ("send", {"file": "model.zydlp", "name": "a/b"}, "no-file", "name"),
                ("send", {"url": "http://127.0.0.1:1/a.zydlp"}, "malformed", "64 hex"),
                ("send", {"url": "ftp://a/b", "sha256": "0" * 64}, "malformed", "http"),
                ("send", {"url": "http://127.0.0.1:1/a.zydlp", "sha256": "0" * 64}, "fetch", ""),
                ("send", {"url": "http:///b", "sha256": "0" * 64}, "malformed", "http"),
                ("send", {"file": "model.zydlp", "sha256": 123}, "malformed",
                 '"sha256" has to be a text'),
                ("send", {"file": "model.zydlp", "sha256": ""}, "malformed", "not empty"),
                ("send", {"file": "model.zydlp", "sha265": "0" * 64}, "malformed", 'no key "sha265"'),
                ("send", {"file": "model.zydlp", "print": "true"}, "malformed",
                 '"print" has to be true or false'),
                ("send", {"file": "model.zydlp", "id": "a"}, "malformed", 'no key "id"'),
                ("send", "y" * 70000, "too-large", "65536")]:
            with self.subTest(leaf=leaf, payload=str(payload)[:40]):
                self.assertRefused(self.client.ask(f"zy/bench/{leaf}", payload), error, part)
                if error == "malformed" and isinstance(payload, dict):
                    self.assertTrue(fleet.Schemas().complaint(leaf, payload))
        self.test_parameters_are_set()  # nothing has stopped

    def test_an_unknown_printer_is_named(self):
        answer = self.client.ask("zy/attic/command", {"command": "stop"})
        self.assertRefused(answer, "unknown-printer", "attic")

    def test_an_answer_is_never_sent_to_a_topic_of_the_bridge(self):
        self.client.inbox, inbox = "zy/bench/command", self.client.inbox
        try:
            self.client.publish("zy/bench/command", {"command": "dance"}, b"1")
        finally:
            self.client.inbox = inbox
        self.test_parameters_are_set()
        self.assertFalse([t for _, t, p in self.client.heard
                          if t == "zy/bench/command" and b"ok" in p])

    def test_a_file_is_fetched_and_its_digest_is_checked(self):
        class Handler(http.server.SimpleHTTPRequestHandler):
            def log_message(self, *_):
                pass

        handler = functools.partial(Handler, directory=str(self.spool))
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        url = f"http://127.0.0.1:{server.server_port}/model.zydlp"
        digest = hashlib.sha256(self.model.read_bytes()).hexdigest()
        answer = self.client.ask("zy/bench/send", {"url": url, "sha256": "1" * 64})
        self.assertRefused(answer, "digest", digest)
        answer = self.client.ask("zy/bench/send", {"url": url + "x", "sha256": digest})
        self.assertRefused(answer, "fetch", "")
        answer = self.client.ask("zy/bench/send", {"url": url, "sha256": digest,
                                                   "name": "web.zydlp"})
        self.assertTrue(answer["ok"], answer)
        self.assertEqual(self.printer.stored("web.zydlp"), self.model.read_bytes())


class Certificates(fleet.WithOwnBroker):
    def test_a_printer_with_tls_is_served_when_its_fingerprint_is_known(self):
        subprocess.run([os.environ["ZYMODEL"], "--out", self.directory / "part.zydlp", "--layers",
                        "20", "--resolution", "64x64"], check=True)
        certificate = fleet.TLS / "localhost.pem"
        with printer(os.environ["ZYPRINTER"], self.directory / "printer", "--cert", certificate,
                     "--key", fleet.TLS / "localhost.key") as encrypted:
            pem = certificate.read_text()
            der = ssl.PEM_cert_to_DER_cert(pem[pem.index("-----BEGIN"):])
            digest = hashlib.sha256(der).hexdigest()
            bridge = fleet.Bridge(self.directory, "hall", self.broker.port,
                                  {"known": encrypted.url, "unknown": encrypted.url},
                                  spool=self.directory, fingerprints={"known": digest})
            self.addCleanup(bridge.kill)
            client = fleet.Client(self.broker.port, "zy/#")
            self.addCleanup(client.close)
            client.wait_for("zy/known/availability", lambda found: found == "online")
            answer = client.ask("zy/known/send", {"file": "part.zydlp"})
            self.assertTrue(answer["ok"], answer)
            self.assertEqual(encrypted.stored("part.zydlp"),
                             (self.directory / "part.zydlp").read_bytes())
            self.assertEqual(client.ask("zy/unknown/send", {"file": "part.zydlp"})["error"],
                             "offline")
            bridge.kill()


class Losses(fleet.WithOwnBroker):
    def setUp(self):
        super().setUp()
        self.farm = fleet.Farm(self.directory / "farm", 1, 1000)
        self.addCleanup(self.farm.kill)
        self.bridge = fleet.Bridge(self.directory, "hall", self.broker.port, self.farm.printers)
        self.addCleanup(lambda: self.bridge.kill())
        self.client = fleet.Client(self.broker.port, "zy/#")
        self.addCleanup(self.client.close)
        self.wait_for_availability("online")

    def wait_for_availability(self, value):
        self.client.wait_for("zy/printer0/availability", lambda found: found == value)

    def test_a_lost_printer_and_a_killed_bridge_are_unavailable(self):
        self.farm.kill()
        self.wait_for_availability("offline")
        self.bridge.process.wait_for_line("printer0 is offline")
        answer = self.client.ask("zy/printer0/command", {"command": "stop"})
        self.assertEqual((answer["ok"], answer["error"]), (False, "offline"))
        self.bridge.kill()
        self.client.wait_for("zy/bridge/hall/availability", lambda found: found == "offline")

    def test_the_will_of_a_killed_bridge_says_that_its_printers_are_unavailable(self):
        self.bridge.kill()
        self.wait_for_availability("offline")
        self.bridge.start()
        self.wait_for_availability("online")

    def test_a_restarted_broker_hears_everything_again(self):
        self.broker.kill()
        self.bridge.process.wait_for_line("the broker is lost")
        (self.directory / "mosquitto.db").unlink(missing_ok=True)
        self.client.last.clear()
        self.broker.start()
        self.wait_for_availability("online")
        self.client.wait_for("zy/printer0/state", lambda state: state["status"] == "idle")
        self.assertEqual(self.client.ask("zy/printer0/command", {"command": "stop"})["error"],
                         "refused")

    def test_of_two_bridges_of_one_name_one_stops(self):
        second = fleet.Bridge(self.directory / "other", "hall", self.broker.port,
                              self.farm.printers)
        self.addCleanup(second.kill)
        ended = fleet.wait_for(lambda: [code for code in (
            each.process.process.poll() for each in (self.bridge, second)) if code is not None],
            "the end of a bridge")
        self.assertEqual(ended, [5])


if __name__ == "__main__":
    unittest.main()
