# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A farm with a broker, bridges and a shop, and what they cost: for its test and its benchmark."""

import collections
import contextlib
import os
import pathlib
import sys
import tempfile
import time

import fleet

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


class World(contextlib.ExitStack):
    def __init__(self, printers, jobs, bridges=3, poll=500):
        super().__init__()
        directory = pathlib.Path(self.enter_context(tempfile.TemporaryDirectory()))
        self.broker = fleet.Broker(directory)
        self.callback(lambda: self.broker.kill())
        spool = directory / "spool"
        spool.mkdir()
        (spool / "part.zydlp").write_bytes(os.urandom(20000))
        self.farm = fleet.Farm(directory / "farm", printers, LAYER_TIME)
        self.callback(self.farm.kill)
        names = list(self.farm.printers)
        self.client = fleet.Client(self.broker.port, "zy/#")
        self.callback(self.client.close)
        self.bridges = []
        for number in range(bridges):
            own = {name: self.farm.printers[name] for name in names[number::bridges]}
            bridge = fleet.Bridge(directory, f"hall{number}", self.broker.port, own,
                                  {"resin": ",".join(own)}, spool=spool, poll=poll, settle=2000)
            self.callback(bridge.kill)
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

    def tell_story(self, file):
        """What printers, bridges and broker have said of a job, for a test that failed."""
        job = file.partition(".")[0]
        story = [(each["time"] / 1000, f"{each['printer']}: {each['what']}")
                 for each in self.farm.says("printing", "complete") if each["file"] == file]
        story += [(at, f"{topic} {payload.decode()}") for at, topic, payload in self.client.heard
                  if topic == f"zy/jobs/resin/{job}" or topic == "zy/jobs/resin"
                  and fleet.json.loads(payload)["id"] == job]
        print(file, *(f"{at:.3f} {line}" for at, line in sorted(story)), sep="\n  ",
              file=sys.stderr)

    def wait_for_jobs(self, state, count, patience):
        def enough():
            return sum(each in state for each in self.shop.states().values()) >= count
        try:
            fleet.wait_for(enough, f"{count} jobs", patience)
        except AssertionError:
            states = self.shop.states()
            stuck = [job for job in self.jobs if states.get(job) not in ("complete", "printing")]
            print(len(stuck), "jobs are not printed", file=sys.stderr)
            for job in stuck[:5]:
                self.tell_story(job + ".zydlp")
            print(*(payload for topic, payload in self.client.last.items()
                    if topic.endswith("/metrics")), sep="\n", file=sys.stderr)
            for bridge in self.bridges:
                print(bridge.config, *bridge.process.lines, sep="\n  ", file=sys.stderr)
            raise


def percentile(values, share):
    return values[min(len(values) - 1, int(len(values) * share))]
