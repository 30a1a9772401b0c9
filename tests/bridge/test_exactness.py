# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""What could lose a job or print it twice: power cuts, lost ledgers and records, refusals."""

import json
import os
import pathlib
import shutil
import signal
import sqlite3
import time
import unittest

from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties

import fleet
import jobworld


class Restarts(jobworld.WithJobs):
    """A bridge comes back, and its printer may have begun to print."""

    def start_careful(self, *options, **settings):
        """A job whose printer takes two seconds for the check before the print."""
        printer = self.printer("--slow-check", "2", *options)
        bridge = self.bridge("a", {"slow": printer.url}, **settings)
        self.submit("careful")
        fleet.wait_for(lambda: "checking" in printer.log(), "the check")
        return printer, bridge

    def prints(self, printer, job="careful"):
        return printer.log().count(f'printing "{job}.zydlp"')

    def write_down(self, bridge, moment):
        """When the printer was about to be asked."""
        with sqlite3.connect(bridge.directory / "state" / "jobs.sqlite") as ledger:
            ledger.execute("UPDATE jobs SET asked = ?", (moment.encode(),))

    def change(self, bridge, old, new):
        bridge.config.write_text(bridge.config.read_text().replace(old, new))

    def test_a_power_cut_during_the_start_makes_the_job_doubtful(self):
        printer, bridge = self.start_careful()
        bridge.kill()
        printer._process.kill()
        self.write_down(bridge, "another-machine 0")
        again = self.printer()
        self.change(bridge, printer.url, again.url)
        bridge.start()
        bridge.process.wait_for_line("slow is online")
        time.sleep(1)  # ten times it says that it has printed nothing
        # What it says as soon as people use it again; otherwise it takes two minutes.
        self.assertTrue(self.client.ask("zy/slow/send", {"file": "part.zydlp", "print": True})["ok"])
        self.assertIn("part.zydlp", self.wait_for_job("careful", "doubtful")["text"])
        self.assertEqual(self.prints(again), 0)

    def test_a_bridge_killed_before_it_asked_the_printer_has_the_job_printed(self):
        farm = self.farm(1, 20)
        bridge = self.bridge("a", farm.printers, ("resin", "other"))
        broker = self.broker.process.process

        def is_starting():
            with sqlite3.connect(bridge.directory / "state" / "jobs.sqlite") as ledger:
                return [r for r, in ledger.execute("SELECT record FROM jobs") if b"starting" in r]
        # The second job has a name that the printer knows from the first.
        for number, group in enumerate(("resin", "other")):
            (self.spool / "part.zydlp").write_bytes(os.urandom(40_000_000))
            self.submit("large", group)
            self.wait_for_job("large", "placing", group=group)
            broker.send_signal(signal.SIGSTOP)
            fleet.wait_for(is_starting, "the file at the printer")
            bridge.kill()
            if number == 0:  # killed a moment later, that is, with a printer that knows no print yet
                boot = pathlib.Path("/proc/sys/kernel/random/boot_id").read_text().strip()
                self.write_down(bridge, f"{boot} {time.monotonic_ns() // 1_000_000}")
            broker.send_signal(signal.SIGCONT)
            self.assertEqual(len(farm.says("printing")), number)
            bridge.start()
            self.wait_for_job("large", "complete", group=group)
            self.assertEqual(len(farm.says("complete")), number + 1)

    def test_a_rejected_token_says_nothing_of_a_print(self):
        printer, bridge = self.start_careful("--token", "sesame", tokens={"slow": "sesame"})
        bridge.kill()
        self.change(bridge, "slow=sesame", "slow=guess")
        bridge.start()
        self.client.wait_for("zy/slow/state", lambda state: state["status"] == "token-rejected")
        fleet.wait_for(lambda: self.prints(printer), "the print")
        time.sleep(1)  # ten more such answers
        bridge.kill()
        self.change(bridge, "slow=guess", "slow=sesame")
        bridge.start()
        self.wait_for_job("careful", "complete")
        states = [json.loads(payload)["state"] for _, topic, payload in self.client.heard
                  if topic == "zy/jobs/resin/careful"]
        self.assertFalse({"failed", "refused", "doubtful"} & set(states), states)
        self.assertEqual(self.prints(printer), 1)

    def test_jobs_after_one_that_a_dead_bridge_was_starting_go_to_another(self):
        printer, a = self.start_careful()
        self.submit("next")
        a.kill()
        farm = self.farm(1, 20)
        self.bridge("b", farm.printers)
        self.assertEqual(self.wait_for_job("next", "complete")["bridge"], "b")
        self.assertEqual(self.client.json("zy/jobs/resin/careful")["state"], "starting")
        self.assert_printed_once(farm, "next")
        a.start()
        self.wait_for_job("careful", "complete")
        self.assertEqual(self.prints(printer), 1)

    def test_a_bridge_that_lost_its_ledger_doubts_the_job_that_it_was_starting(self):
        printer, bridge = self.start_careful()
        bridge.kill()
        shutil.rmtree(bridge.directory / "state")
        (bridge.directory / "state").mkdir()
        bridge.start()
        self.assertIn("ledger", self.wait_for_job("careful", "doubtful")["text"])
        self.submit("next")
        self.wait_for_job("next", "complete")
        self.assertEqual(self.prints(printer), 1)


class Claims(jobworld.WithJobs):
    def test_a_bridge_corrects_one_that_knows_nothing_of_a_job(self):
        (self.spool / "part.zydlp").write_bytes(os.urandom(40_000_000))
        farm, a, b = self.two_bridges(20)
        b.kill()
        self.submit("test")
        self.wait_for_job("test", "complete")
        with sqlite3.connect(a.directory / "state" / "jobs.sqlite") as ledger:
            ledger.execute("UPDATE jobs SET isPublished = 1, changed = 0")  # as after an hour
        self.broker.kill()
        (self.directory / "mosquitto.db").unlink(missing_ok=True)
        self.client.live.clear()
        self.broker.start()
        b.start()
        for printer in farm.printers:
            topic = f"zy/{printer}/availability"
            fleet.wait_for(lambda: self.client.live.get(topic) == b"online", topic)
        self.client.heard.clear()
        for _ in range(4):  # each bridge gets some
            self.submit("test")
        b.process.wait_for_line("job resin/test goes to")
        self.wait_for_job("test", "complete")
        self.submit("next")
        self.wait_for_job("next", "complete")
        self.assert_printed_once(farm, "test", "next")
        records = [payload for _, topic, payload in self.client.heard
                   if topic == "zy/jobs/resin/test"]
        self.assertLess(len(records), 20)

    def test_the_oldest_job_is_placed_first(self):
        farm = self.farm(3, 900)
        self.bridge("a", farm.printers)
        for job in ("long0", "long1", "long2"):
            self.submit(job)
        for job in ("long0", "long1", "long2"):
            self.wait_for_job(job, "printing")
        for number, job in enumerate(("z", "y", "x")):
            self.submit(job)
            self.wait_for_waiting("a", number + 1)
        for job in ("x", "y", "z"):
            self.wait_for_job(job, "complete")
        placed = [topic[-1] for _, topic, payload in self.client.heard
                  if topic.startswith("zy/jobs/resin/") and b'"placing"' in payload]
        self.assertEqual(placed[3:], ["z", "y", "x"])

    def test_a_file_that_cannot_be_fetched_keeps_no_printer_from_others(self):
        farm = self.farm(2, 10000)
        self.bridge("a", farm.printers)
        self.client.publish("zy/jobs/resin", {"id": "bad", "sha256": "0" * 64,
                                              "url": "http://127.0.0.1:1/part.zydlp"})
        self.wait_for_job("bad", "placing")
        for job in ("one", "two", "three"):  # one of them queues behind the bad one
            self.submit(job)
        fleet.wait_for(lambda: len(farm.says("printing")) == 2, "two prints")


class Deliveries(jobworld.WithJobs):
    """Jobs that a bridge holds while no printer is free."""

    def hold(self, layer_time, **settings):
        """Bridge a prints one job and holds another, which bridge b has not seen."""
        farm = self.farm(2, layer_time)
        (one, first), (two, second) = farm.printers.items()
        self.bridge("a", {one: first}, **settings)
        self.submit("long")
        self.wait_for_job("long", "printing")
        properties = Properties(PacketTypes.PUBLISH)
        properties.MessageExpiryInterval = 600
        self.client.mqtt.publish("zy/jobs/resin", json.dumps({"id": "held", "file": "part.zydlp"}),
                                 1, False, properties)
        self.wait_for_waiting("a", 1)
        return farm, {two: second}

    def test_a_job_without_quality_of_service_is_refused_and_loses_no_other(self):
        farm, _ = self.hold(400)
        answer = self.client.ask("zy/jobs/resin", {"id": "hasty", "file": "part.zydlp"}, qos=0)
        self.assertEqual((answer["ok"], answer["error"]), (False, "qos"))
        self.wait_for_job("held", "complete")
        self.assert_printed_once(farm, "long", "held")

    def test_a_job_given_to_another_bridge_keeps_its_expiry(self):
        heard = []
        self.client.mqtt.message_callback_add(
            "zy/jobs/resin", lambda _client, _data, message: heard.append(message))
        farm, others = self.hold(2000)
        self.bridge("b", others)
        self.assertEqual(self.wait_for_job("held", "printing")["bridge"], "b")
        self.assertLessEqual(getattr(heard[-1].properties, "MessageExpiryInterval", 1000), 600)
        self.assert_printed_once(farm, "long", "held")

    def test_a_job_that_the_broker_does_not_pass_on_is_not_lost(self):
        rights = self.directory / "rights"
        rights.write_text("topic readwrite #\nuser hall\ntopic read #\ntopic write zy/jobs/+/+\n"
                          "topic write zy/bridge/+/+\ntopic write zy/+/state\n"
                          "topic write zy/+/availability\ntopic write zy/+/event\n")
        self.broker.kill()
        self.broker._settings = ["allow_anonymous true", f"acl_file {rights}"]
        self.broker.start()
        farm, others = self.hold(600, broker_user="hall")
        self.bridge("b", others, broker_user="hall")
        self.wait_for_job("held", "complete")
        self.assert_printed_once(farm, "long", "held")

    def test_idle_connections_are_kept_alive(self):
        self.bridge("a", self.farm(1, 20).printers)

        def kept():
            rows = map(str.split, pathlib.Path("/proc/net/tcp").read_text().splitlines())
            return [row for row in rows if row[3] == "01" and row[5].startswith("02")
                    and row[2].endswith(f":{self.broker.port:04X}")]
        fleet.wait_for(lambda: len(kept()) >= 2, "the bridge's connection and its printer's")

    def test_a_slow_broker_gives_the_jobs_of_a_dead_bridge_to_another(self):
        farm, a, b = self.two_bridges(400)
        jobs = [f"j{number}" for number in range(8)]
        for job in jobs:
            self.submit(job)
        def printing():
            return [payload for payload in list(self.client.last.values())
                    if b'"state":"printing"' in payload]
        fleet.wait_for(lambda: len(printing()) == 2, "two prints")
        a.kill()
        self.client.wait_for("zy/bridge/a/availability", lambda value: value == "offline")
        broker = self.broker.process.process
        broker.send_signal(signal.SIGSTOP)
        b.process.wait_for_line("taking the jobs that wait for a")
        time.sleep(5)  # longer than the heir waits on a connection without a message
        broker.send_signal(signal.SIGCONT)
        fleet.wait_for(lambda: len(farm.says("complete")) == len(jobs), "all prints", 60)
        self.assert_printed_once(farm, *jobs)


class Names(jobworld.WithJobs):
    def test_a_bridge_whose_clock_is_behind_its_last_metrics_runs(self):
        farm = self.farm(1, 20)
        bridge = self.bridge("a", farm.printers)
        self.client.wait_for("zy/bridge/a/metrics")
        bridge.kill()
        metrics = self.client.json("zy/bridge/a/metrics")
        metrics["time"] += 3_600_000
        self.client.publish("zy/bridge/a/metrics", metrics, retain=True).wait_for_publish()
        bridge.start()
        self.client.wait_for("zy/bridge/a/metrics",
                             lambda found: found["instance"] != metrics["instance"])
        self.submit("job")
        self.wait_for_job("job", "complete")

    def test_of_two_bridges_of_one_name_the_first_stays(self):
        farm = self.farm(1, 20)
        first = self.bridge("a", farm.printers)
        self.client.wait_for("zy/bridge/a/metrics")
        instance = self.client.json("zy/bridge/a/metrics")["instance"]
        second = fleet.Bridge(self.directory / "other", "a", self.broker.port, farm.printers)
        self.addCleanup(second.kill)
        self.assertEqual(second.process.process.wait(fleet.PATIENCE), 5)
        ended = time.time() * 1000
        self.client.wait_for("zy/bridge/a/metrics", lambda found: found["instance"] == instance
                             and found["time"] > ended)
        self.assertIsNone(first.process.process.poll())


if __name__ == "__main__":
    unittest.main()
