# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Jobs for any printer of a group: each is printed exactly once, whatever dies meanwhile."""

import unittest

import fleet
import jobworld


class Jobs(jobworld.WithJobs):
    def test_a_job_is_printed_and_answered_once_it_has_started(self):
        farm = self.farm(1, 20)
        self.bridge("a", farm.printers)
        answer = self.client.ask("zy/jobs/resin", {"id": "j1", "file": "part.zydlp"})
        self.assertEqual((answer["ok"], answer["state"], answer["printer"], answer["file"]),
                         (True, "printing", "printer0", "j1.zydlp"))
        self.wait_for_job("j1", "complete")
        states = [fleet.json.loads(payload)["state"] for _, topic, payload in self.client.heard
                  if topic == "zy/jobs/resin/j1"]
        self.assertEqual(states, ["placing", "starting", "printing", "complete"])
        self.assertIn("j1", [fleet.json.loads(payload).get("job")
                             for _, topic, payload in self.client.heard
                             if topic == "zy/printer0/state"])

    def test_a_job_that_is_asked_for_again_is_printed_once(self):
        farm, *_ = self.two_bridges(20)
        for _ in range(6):
            self.submit("twice")
        self.wait_for_job("twice", "complete")
        for _ in range(6):
            answer = self.client.ask("zy/jobs/resin", {"id": "twice", "file": "part.zydlp"})
            self.assertEqual((answer["ok"], answer["state"]), (True, "complete"))
        self.assert_printed_once(farm, "twice")

    def test_jobs_wait_for_a_free_printer(self):
        farm, *_ = self.two_bridges(20)
        jobs = [f"j{number}" for number in range(10)]
        for job in jobs:
            self.submit(job)
        for job in jobs:
            self.wait_for_job(job, "complete")
        self.assert_printed_once(farm, *jobs)

    def test_bad_jobs_are_answered_with_what_is_wrong(self):
        farm = self.farm(1, 20)
        self.bridge("a", farm.printers)
        for payload, error, part in [
                ("{", "malformed", "no JSON"),
                ({"file": "part.zydlp"}, "malformed", "id"),
                ({"id": "a/b", "file": "part.zydlp"}, "malformed", "id"),
                ({"id": "a"}, "malformed", "file"),
                ({"id": "b", "file": "none.zydlp"}, "no-file", "none.zydlp"),
                ({"id": "c", "file": "part.zydlp", "sha256": "0" * 64}, "digest", "0" * 64),
                ("x" * 70000, "too-large", "65536")]:
            with self.subTest(payload=str(payload)[:40]):
                answer = self.client.ask("zy/jobs/resin", payload)
                self.assertEqual((answer["ok"], answer["error"]), (False, error))
                self.assertIn(part, answer["text"])
        self.assertEqual(self.client.json("zy/jobs/resin/c")["state"], "refused")
        self.submit("good")
        self.wait_for_job("good", "complete")
        self.assert_printed_once(farm, "good")

    def test_jobs_of_a_killed_bridge_are_printed_by_another(self):
        farm, a, b = self.two_bridges(400)
        jobs = [f"j{number}" for number in range(8)]
        for job in jobs:
            self.submit(job)
        # Each has started one, holds one, and more wait at the broker.
        fleet.wait_for(lambda: len(farm.says("printing")) == 2, "two prints")
        a.kill()
        b.process.wait_for_line("taking the jobs that wait for a")
        def over():
            return {each["file"] for each in farm.says("complete")} == {f"{j}.zydlp" for j in jobs}
        fleet.wait_for(over, "all prints", 60)
        self.assert_printed_once(farm, *jobs)
        a.start()
        for job in jobs:
            self.wait_for_job(job, "complete")
        self.assert_printed_once(farm, *jobs)

    def test_a_bridge_without_a_free_printer_gives_jobs_to_one_that_has(self):
        farm, a, b = self.two_bridges(1000)
        b.kill()
        self.client.wait_for("zy/bridge/b/availability", lambda value: value == "offline")
        a.process.wait_for_line("taking the jobs that wait for b")
        self.submit("long")
        self.wait_for_job("long", "printing")
        self.submit("next")
        b.start()
        self.assertEqual(self.wait_for_job("next", "printing")["bridge"], "b")
        self.assertEqual(self.client.json("zy/jobs/resin/long")["state"], "printing")
        self.assert_printed_once(farm, "long", "next")

    def test_a_bridge_killed_during_the_start_finds_out_whether_it_prints(self):
        printer = self.printer("--slow-check", "2")
        bridge = self.bridge("a", {"slow": printer.url})
        self.submit("careful")
        fleet.wait_for(lambda: "checking" in printer.log(), "the check")
        self.wait_for_job("careful", "starting")
        bridge.kill()
        bridge.start()
        self.wait_for_job("careful", "printing", "complete")
        self.assertEqual(printer.log().count('printing "careful.zydlp"'), 1)

    def test_a_restarted_broker_has_the_job_printed_once(self):
        farm, *_ = self.two_bridges(300)
        jobs = [f"j{number}" for number in range(6)]
        for job in jobs:
            self.submit(job)
        fleet.wait_for(lambda: len(farm.says("printing")) == 2, "two prints")
        self.client.restart(self.broker, farm.printers)
        for job in jobs:
            self.submit(job)
        for job in jobs:
            self.wait_for_job(job, "complete")
        self.assert_printed_once(farm, *jobs)


if __name__ == "__main__":
    unittest.main()
