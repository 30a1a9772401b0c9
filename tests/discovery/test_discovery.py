# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Printers in the hall are found from the desk: zyprinter and zyslicer, and a real Avahi on each."""

import hashlib
import json
import os
import pathlib
import signal
import subprocess
import tempfile
import unittest

import jsonschema

import network

PRINTER, SLICER, MODEL = (os.environ[name] for name in ("ZYPRINTER", "ZYSLICER", "ZYMODEL"))
SOURCE = pathlib.Path(__file__).parents[2]
TLS = SOURCE / "tests" / "kit" / "tls"
SCHEMA = json.loads((SOURCE / "docs" / "zyslicer-json.schema.json").read_text())


class WithPrinters(unittest.TestCase):
    """Each test has its own printers; the hosts and their daemons are there for all."""

    def setUp(self):
        self.printers = []
        self.addCleanup(lambda: [self.end(each) for each in list(self.printers)])

    def end(self, printer):
        self.printers.remove(printer)
        self.assertEqual(printer.stop(), 0, printer.output())

    def printer(self, name, *options, host=None):
        """In the hall; it is there once it listens."""
        host = host or hall
        directory = pathlib.Path(tempfile.mkdtemp(dir=host.directory))
        named = ("--name", name) if name else ()
        printer = host.start(PRINTER, "--dir", directory, *named, *options)
        printer.directory = directory
        self.printers.append(printer)
        printer.url = printer.wait_for(r"listening on (\S+)")
        printer.port = int(printer.url.rsplit(":", 1)[1])
        return printer

    def announced(self, name, *options):
        printer = self.printer(name, *options)
        printer.name = printer.wait_for('announced on the network as "(.*)"')
        return printer

    def discover(self):
        """What is found, by its name."""
        result = desk.run(SLICER, "discover", "--json")
        lines = [json.loads(line) for line in result.stdout.splitlines()]
        for line in lines:
            jsonschema.Draft202012Validator(SCHEMA).validate(line)
        found = {line["name"]: line for line in lines if line["event"] == "found"}
        self.assertEqual(result.returncode, 0 if found else 3, result.stderr)
        return found

    def wait_until_found(self, *names):
        """Who has left is known for a second."""
        return network.wait_for(lambda: (found := self.discover()).keys() == set(names)
                                and (found or True), f"exactly {names}")

    def assert_fails(self, result, code, text):
        self.assertIn(text, result.stderr)
        self.assertEqual((result.returncode, result.stderr.count("\n")), (code, 1))


class Found(WithPrinters):
    """What everybody uses."""

    def test_printers_come_move_and_go(self):
        first = self.announced("Bänch 1")
        second = self.announced("bench2")
        found = self.wait_until_found("Bänch 1", "bench2")
        self.assertEqual(found["Bänch 1"]["url"], f"ws://{hall.address}:{first.port}")
        self.assertEqual(found["bench2"]["port"], second.port)
        self.assertEqual(found["bench2"]["host"], "hall.local")
        self.assertEqual([found["bench2"][key] for key in ("tls", "token")], [False, False])

        self.end(first)
        self.wait_until_found("bench2")
        self.end(second)
        moved = self.announced("bench2")
        self.assertNotEqual(moved.port, second.port)
        network.wait_for(lambda: self.discover()["bench2"]["port"] == moved.port, "the other port")

    def test_a_file_is_sent_to_a_name(self):
        printer = self.announced("Die große Bänk")
        model = desk.directory / "part.zydlp"
        subprocess.run([MODEL, "--out", model, "--layers", "20"], check=True, capture_output=True)
        result = desk.run(SLICER, "send", model, "--to", "dnssd:die große bänk", "--json")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(json.loads(result.stdout.splitlines()[-1])["printer"], "Die große Bänk")
        digests = [hashlib.sha256(path.read_bytes()).digest()
                   for path in (model, printer.directory / "part.zydlp")]
        self.assertEqual(*digests)

    def test_tls_and_token_are_announced(self):
        self.announced("safe", "--cert", TLS / "localhost.pem", "--key", TLS / "localhost.key",
                       "--token", "secret")
        found = self.wait_until_found("safe")["safe"]
        self.assertEqual([found["tls"], found["token"], found["url"][:6]], [True, True, "wss://"])
        table = desk.run(SLICER, "discover").stdout.splitlines()
        self.assertEqual(table[0].split(), ["NAME", "ADDRESS", "PORT", "TLS", "TOKEN"])
        self.assertEqual(table[1].split(),
                         ["safe", hall.address, str(found["port"]), "yes", "yes"])
        to_it = ("status", "--to", "dnssd:safe", "--token", "secret")
        self.assert_fails(desk.run(SLICER, *to_it), 3, "certificate")
        pin = subprocess.run(["openssl", "x509", "-noout", "-fingerprint", "-sha256", "-in",
                              TLS / "localhost.pem"], capture_output=True, text=True, check=True)
        trusted = desk.run(SLICER, *to_it, "--fingerprint", pin.stdout.strip().split("=")[1])
        self.assertEqual(trusted.returncode, 0, trusted.stderr)


class Names(WithPrinters):
    """Whose name it is, and who has none."""

    def test_who_is_not_found_is_shown_those_who_are(self):
        printer = self.announced("Die große Bänk")
        result = desk.run(SLICER, "status", "--to", "dnssd:bench7")
        self.assert_fails(result, 3, 'announced: bench7; announced are "Die große Bänk"')
        twice = ("--to", "dnssd:Die große Bänk", "--to", f"{hall.address}:{printer.port}")
        self.assert_fails(desk.run(SLICER, "status", *twice), 2, "named twice")

    def test_nobody_is_found_where_nobody_is(self):
        self.wait_until_found()
        self.assert_fails(desk.run(SLICER, "discover"), 3, "no printer found")
        self.assert_fails(desk.run(SLICER, "status", "--to", "dnssd:bench1"), 3,
                          "announced: bench1; no other is, either")

    def test_a_certificate_is_asked_of_whoever_takes_the_name(self):
        self.announced("safe")
        result = desk.run(SLICER, "status", "--to", "dnssd:safe", "--fingerprint", "ab" * 32)
        self.assert_fails(result, 2, "has no certificate")

    def test_a_closed_pipe_ends_the_program_as_ever(self):
        self.announced("bench1")
        reader, writer = os.pipe()
        os.close(reader)
        ended = subprocess.run([SLICER, "discover"], stdout=writer, env=desk.environment,
                               restore_signals=True)
        os.close(writer)
        self.assertEqual(ended.returncode, -signal.SIGPIPE)

    def test_bash_completes_the_names(self):
        self.announced("bench1")
        self.announced("Bench 2")
        self.wait_until_found("bench1", "Bench 2")
        script = f"""
            _init_completion() {{ COMPREPLY=() cur=$typed prev=--to words=(zyslicer send x --to) cword=4; }}
            zyslicer() {{ {SLICER} "$@"; }}
            source {SOURCE}/apps/slicer/zyslicer.bash
            for typed in dnssd: dnssd:Ben; do _zyslicer; printf '%s|' "${{COMPREPLY[@]}}"; done"""
        completed = desk.run("bash", "-c", script)
        self.assertEqual(completed.stdout, r"dnssd:Bench\ 2|dnssd:bench1|dnssd:Bench\ 2|")

    def test_two_of_one_name_are_told_apart(self):
        self.announced("bench1")
        self.assertEqual(self.announced("bench1").name, "bench1 #2")
        self.wait_until_found("bench1", "bench1 #2")

    def test_a_name_is_shortened_to_what_fits(self):
        self.assertEqual(self.announced("ö" * 40).name, "ö" * 31)

    def test_a_printer_has_a_name_by_itself(self):
        self.assertRegex(self.announced("").name, "^zyprinter on .")

    def test_who_listens_on_one_address_is_found_there(self):
        printer = self.announced("bench1", "--bind", hall.address)
        found = self.wait_until_found("bench1")
        self.assertEqual(found["bench1"]["url"], printer.url)

    def test_who_is_not_to_be_found_is_not(self):
        local = self.printer("local", "--bind", "127.0.0.1")
        local.wait_for("not announced on the network: it listens on 127.0.0.1 alone")
        hidden = self.printer("hidden", "--no-announce")
        self.announced("bench1")
        self.wait_until_found("bench1")
        self.assertNotIn("announced", hidden.output())


class Bridges(WithPrinters):
    """zybridge on the desk, and a broker."""

    def bridge(self):
        import fleet  # only where there is a broker
        directory = tempfile.TemporaryDirectory(dir=desk.directory)
        self.addCleanup(directory.cleanup)
        broker = fleet.Broker(directory.name)
        self.addCleanup(broker.kill)
        os.environ.update(desk.environment)
        bridge = fleet.Bridge(directory.name, "hall", broker.port, {"bench": '"dnssd:Bänch, 1"'})
        self.addCleanup(bridge.kill)
        return bridge.process

    def test_a_bridge_follows_a_printer_by_its_name(self):
        bridge = self.bridge()
        for count in (1, 2):
            printer = self.announced("Bänch, 1")
            network.wait_for(lambda: bridge.lines.count("zybridge: bench is online") == count,
                             "the printer at the broker")
            self.end(printer)
            bridge.wait_for_line("bench is offline")

    def test_a_bridge_looks_again_when_the_daemon_would_not(self):
        desk.deny("ServiceBrowserNew", "ServiceBrowserPrepare")
        self.addCleanup(desk.deny)
        bridge = self.bridge()
        bridge.wait_for_line("printers cannot be looked for: the Avahi daemon says: ")
        self.announced("Bänch, 1")
        desk.deny()
        bridge.wait_for_line("bench is online")


class Daemons(WithPrinters):
    """Daemons that are not there, end and come back."""

    def test_without_a_daemon_there_is_one_clear_line(self):
        desk.stop_daemon()
        self.addCleanup(desk.start_daemon)
        for command in (("discover",), ("status", "--to", "dnssd:bench1")):
            self.assert_fails(desk.run(SLICER, *command), 12,
                              "cannot be looked for: no Avahi daemon answers; give")
        failed = desk.run(SLICER, "discover", "--json")
        line = json.loads(failed.stdout)
        jsonschema.Draft202012Validator(SCHEMA).validate(line)
        self.assertEqual([line["event"], line["code"]], ["error", 12])

    def test_without_a_bus_there_is_one_clear_line(self):
        self.addCleanup(desk.environment.update, dict(desk.environment))
        desk.environment["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=/nonexistent"
        self.assert_fails(desk.run(SLICER, "discover"), 12, "the system's D-Bus does not answer")
        printer = self.printer("bench1", host=desk)
        printer.wait_for("not announced on the network: the system's D-Bus does not answer")
        answer = desk.run(SLICER, "version", "--to", printer.url)
        self.assertEqual(answer.returncode, 0, answer.stderr)

    def test_a_printer_meets_a_daemon_that_starts_late_and_restarts(self):
        hall.stop_daemon()
        printer = self.printer("bench1")
        printer.wait_for("not announced on the network: no Avahi daemon answers")
        hall.start_daemon()
        printer.wait_for('announced on the network as "bench1"')
        hall.daemon.stop(signal.SIGKILL)
        printer.wait_for("not announced on the network: the Avahi daemon has ended")
        hall.start_daemon()
        printer.wait_for('[0-9] announced on the network as "bench1"', 2)
        self.wait_until_found("bench1")

    def test_a_printer_asks_again_when_the_daemon_would_not_announce_it(self):
        hall.deny("EntryGroupNew")
        self.addCleanup(hall.deny)
        printer = self.printer("bench1")
        printer.wait_for("not announced on the network: the Avahi daemon says: ")
        hall.deny()
        printer.wait_for('[0-9] announced on the network as "bench1"')
        self.assertEqual(printer.output().count("not announced"), 1)

    def test_a_slicer_waits_for_a_printer_that_comes_late(self):
        model = desk.directory / "part.zydlp"
        subprocess.run([MODEL, "--out", model, "--layers", "20"], check=True, capture_output=True)
        slicer = desk.start(SLICER, "send", model, "--to", "dnssd:late", "--wait")
        printer = self.announced("late")
        self.assertEqual(slicer.process.wait(network.PATIENCE), 0, slicer.output())
        self.assertTrue((printer.directory / "part.zydlp").is_file())


if __name__ == "__main__":
    network.apart()
    with network.two_hosts() as (desk, hall):
        unittest.main(exit=True)
