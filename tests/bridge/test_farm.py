# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A farm: 200 printers, 3 bridges, 500 jobs, and everything but the printers is killed meanwhile."""

import collections
import os
import pathlib
import random
import sys
import tempfile
import time
import unittest

import fleet

PRINTERS = int(os.environ.get("ZYTEST_PRINTERS", "200"))
JOBS = int(os.environ.get("ZYTEST_JOBS", "500"))
LAYER_TIME = 2000  # ms; each print has five layers


class Shop:
    """Hands jobs in like a web shop, and again those of which nothing is known after the broker was
    killed: it may have lost them, and a job's identifier makes that safe."""

    def __init__(self, client, jobs):
        self._client = client
        self._jobs = jobs
        self._parsed = {}
        self.repetitions = 0
        self.submit(jobs)

    def submit(self, jobs):
        for job in jobs:
            self._client.publish("zy/jobs/resin", {"id": job, "file": "part.zydlp"})

    def states(self):
        """Of the jobs of which bridges have spoken."""
        for job in self._jobs:
            payload = self._client.last.get(f"zy/jobs/resin/{job}")
            if payload and payload is not self._parsed.get(job, (None, None))[0]:
                self._parsed[job] = (payload, fleet.json.loads(payload)["state"])
        return {job: state for job, (_, state) in self._parsed.items()}

    def submit_unknown(self):
        known = self.states()
        unknown = [job for job in self._jobs if job not in known]
        self.repetitions += len(unknown)
        self.submit(unknown)


def latencies(farm, heard):
    """Seconds from each change at a printer to the first message that speaks of it."""
    messages = collections.defaultdict(list)
    for at, topic, payload in heard:
        if topic.endswith("/state"):
            messages[topic.split("/")[1]].append((at, fleet.json.loads(payload)))
    found = []
    for change in farm.says("printing", "layer", "complete"):
        status = "complete" if change["what"] == "complete" else "printing"
        found += [at - change["time"] / 1000 for at, state in messages[change["printer"]]
                  if state["status"] == status and state.get("file") == change["file"]
                  and state.get("layer") == change["layer"]][:1]
    return sorted(found)


def usage(pid):
    """Seconds of CPU and bytes of memory."""
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    ticks = int(fields[11]) + int(fields[12])
    pages = int(pathlib.Path(f"/proc/{pid}/statm").read_text().split()[1])
    return ticks / os.sysconf("SC_CLK_TCK"), pages * os.sysconf("SC_PAGESIZE")


class World(unittest.TestCase):
    def build(self, printers, jobs, bridges=3, poll=500):
        kept = tempfile.TemporaryDirectory()
        self.addCleanup(kept.cleanup)
        directory = pathlib.Path(kept.name)
        self.broker = fleet.Broker(directory)
        self.addCleanup(lambda: self.broker.kill())
        spool = directory / "spool"
        spool.mkdir()
        (spool / "part.zydlp").write_bytes(os.urandom(20000))
        self.farm = fleet.Farm(directory / "farm", printers, LAYER_TIME)
        self.addCleanup(self.farm.kill)
        names = list(self.farm.printers)
        self.client = fleet.Client(self.broker.port, "zy/#")
        self.addCleanup(self.client.close)
        self.bridges = []
        for number in range(bridges):
            own = {name: self.farm.printers[name] for name in names[number::bridges]}
            bridge = fleet.Bridge(directory, f"hall{number}", self.broker.port, own,
                                  {"resin": ",".join(own)}, spool=spool, poll=poll, settle=2000)
            self.addCleanup(bridge.kill)
            self.bridges.append(bridge)
        fleet.wait_for(lambda: sum(payload == b"online" for topic, payload in
                                   list(self.client.last.items())
                                   if topic.endswith("/availability")) == printers + bridges,
                       "all printers", 60)
        self.jobs = [f"job{number}" for number in range(jobs)]

    def idle_usage(self, seconds):
        """The share of one processor and the memory of all bridges, while nothing is printed."""
        before = [usage(bridge.process.process.pid) for bridge in self.bridges]
        time.sleep(seconds)  # what is measured is a rate
        after = [usage(bridge.process.process.pid) for bridge in self.bridges]
        cpu = sum(b[0] - a[0] for a, b in zip(before, after)) / seconds
        return cpu, sum(each[1] for each in after)

    def wait_for_jobs(self, state, count, patience):
        def enough():
            return sum(each in state for each in self.shop.states().values()) >= count
        try:
            fleet.wait_for(enough, f"{count} jobs", patience)
        except AssertionError:
            states = self.shop.states()
            print({job: states.get(job) for job in self.jobs
                   if states.get(job) not in ("complete", "printing")}, file=sys.stderr)
            for bridge in self.bridges:
                print(bridge.config, *bridge.process.lines, sep="\n  ", file=sys.stderr)
            raise

    def percentile(self, values, share):
        return values[min(len(values) - 1, int(len(values) * share))]


class Farm(World):
    def test_each_job_is_printed_exactly_once_while_bridges_and_broker_are_killed(self):
        seed = int(os.environ.get("ZYTEST_SEED") or random.randrange(1 << 32))
        print("seed", seed, file=sys.stderr)
        chance = random.Random(seed)
        self.build(PRINTERS, JOBS)
        cpu, memory = self.idle_usage(5)
        self.shop = Shop(self.client, self.jobs)
        started = time.monotonic()
        for share in (0.1, 0.25, 0.4, 0.55, 0.7, 0.85):
            self.wait_for_jobs(("printing", "complete"), int(JOBS * share), 120)
            victim = chance.choice([*self.bridges, self.broker])
            print(f"{time.monotonic() - started:.0f} s: {share:.0%} started, killing",
                  getattr(victim, "config", "the broker"), file=sys.stderr)
            if victim is self.broker:
                self.client.restart(self.broker, self.farm.printers)
                self.shop.submit_unknown()
                continue
            victim.kill()
            time.sleep(chance.uniform(0, 8))  # short and long absences: the others step in or not
            victim.start()
        self.wait_for_jobs(("complete",), JOBS, 240)
        print(f"{time.monotonic() - started:.0f} s: all complete", file=sys.stderr)

        prints = collections.Counter(each["file"] for each in self.farm.says("printing"))
        wrong = {name: count for name, count in prints.items() if count != 1}
        self.assertEqual(wrong, {})
        self.assertEqual(len(prints), JOBS)
        print(f"handed in again: {self.shop.repetitions}", file=sys.stderr)
        busy = [usage(bridge.process.process.pid) for bridge in self.bridges]
        print(f"idle: {cpu:.3f} processors, {memory / PRINTERS / 1024:.0f} KiB for each printer",
              file=sys.stderr)
        print(f"at the end: {sum(each[1] for each in busy) / PRINTERS / 1024:.0f} KiB",
              file=sys.stderr)
        self.assertLess(memory / PRINTERS, 1 << 20)
        self.assertLess(sum(each[1] for each in busy) / PRINTERS, 1 << 20)

    def test_a_change_is_published_within_a_second(self):
        self.build(PRINTERS, PRINTERS)
        self.client.forget()
        self.shop = Shop(self.client, self.jobs)
        self.wait_for_jobs(("complete",), PRINTERS, 120)
        found = latencies(self.farm, list(self.client.heard))
        print(f"{len(found)} changes: median {self.percentile(found, 0.5):.3f} s, "
              f"99 % {self.percentile(found, 0.99):.3f} s", file=sys.stderr)
        self.assertGreater(len(found), PRINTERS * 5)
        self.assertLess(self.percentile(found, 0.99), 1)


if __name__ == "__main__":
    unittest.main()
