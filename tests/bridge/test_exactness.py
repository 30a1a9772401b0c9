# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""What could lose a job or print it twice: power cuts, lost ledgers and records, refusals."""

import time
import unittest

import fleet
import jobworld


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
