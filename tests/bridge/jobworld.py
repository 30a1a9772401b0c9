# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A broker with bridges whose printers take the jobs of the group "resin"."""

import collections
import os
import subprocess
import time

import fleet
from processes import Printer


class WithJobs(fleet.WithOwnBroker):
    def setUp(self):
        super().setUp()
        self.spool = self.directory / "spool"
        self.spool.mkdir()
        (self.spool / "part.zydlp").write_bytes(os.urandom(5000))
        self.client = fleet.Client(self.broker.port, "zy/#")
        self.addCleanup(self.client.close)

    def farm(self, count, layer_time):
        farm = fleet.Farm(self.directory / f"farm{time.monotonic_ns()}", count, layer_time)
        self.addCleanup(farm.kill)
        return farm

    def printer(self, *options):
        """A zyprinter, which checks what it prints, and a model for it in the spool directory."""
        printer = Printer(os.environ["ZYPRINTER"], self.directory / f"printer{time.monotonic_ns()}",
                          "--speed", "100", *options)
        self.addCleanup(printer._process.wait)
        self.addCleanup(printer._process.kill)
        subprocess.run([os.environ["ZYMODEL"], "--out", self.spool / "part.zydlp", "--layers", "20",
                        "--resolution", "64x64"], check=True)
        return printer

    def bridge(self, name, printers, groups=("resin",), **settings):
        bridge = fleet.Bridge(self.directory, name, self.broker.port, printers,
                              {group: ",".join(printers) for group in groups}, spool=self.spool,
                              **settings)
        self.addCleanup(lambda: bridge.kill())
        for printer in printers:
            self.client.wait_for(f"zy/{printer}/availability", lambda value: value == "online")
        return bridge

    def two_bridges(self, layer_time):
        """One farm whose printers are shared out."""
        farm = self.farm(2, layer_time)
        (one, first), (two, second) = farm.printers.items()
        return farm, self.bridge("a", {one: first}), self.bridge("b", {two: second})

    def wait_for_job(self, job, *states, group="resin"):
        return self.client.wait_for(f"zy/jobs/{group}/{job}",
                                    lambda record: record["state"] in states)

    def wait_for_waiting(self, bridge, count):
        self.client.wait_for(f"zy/bridge/{bridge}/metrics",
                             lambda metrics: metrics["groups"]["resin"]["waiting"] == count)

    def submit(self, job, group="resin", **extra):
        self.client.publish(f"zy/jobs/{group}", {"id": job, "file": "part.zydlp", **extra})

    def assert_printed_once(self, farm, *jobs):
        prints = collections.Counter(each["file"] for each in farm.says("printing"))
        self.assertEqual(prints, {f"{job}.zydlp": 1 for job in jobs})
