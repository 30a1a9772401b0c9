# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""What one zybridge costs for 10 to 200 printers, with a real Mosquitto; see tests/bridge."""

import os
import sys

import measure

SIZES = (10, 50, 100, 200)
SECONDS = 10

sys.path.insert(0, os.path.join(measure.ROOT, "tests", "bridge"))


def run(options):
    os.environ.setdefault("ZYBRIDGE", os.path.join(measure.BUILD, "apps", "bridge", "zybridge"))
    os.environ.setdefault("ZYFARM", measure.program("farm"))
    os.environ.setdefault("MOSQUITTO", "/usr/sbin/mosquitto")
    os.environ.setdefault("ZYSCHEMAS", os.path.join(measure.ROOT, "docs", "protocol", "fleet"))
    import farmworld  # it reads the environment

    rows = []
    for printers in SIZES[:2] if options.pairs < 3 else SIZES:
        with farmworld.World(printers, printers, bridges=1) as world:
            idle, memory = world.idle_usage(SECONDS)
            broker = world.broker.process.process.pid
            pids = {"bridge": world.bridges[0].process.process.pid, "broker": broker}
            before = {name: farmworld.usage(pid)[0] for name, pid in pids.items()}
            world.client.forget()
            world.shop = farmworld.Shop(world.client, world.jobs)
            world.wait_for_jobs(("complete",), printers, 120)
            cpu = {name: farmworld.usage(pid)[0] - before[name] for name, pid in pids.items()}
            found = farmworld.latencies(world.farm, list(world.client.heard))
            rows.append({"printers": printers, "memory": memory, "idle": idle,
                         "job": cpu["bridge"] / printers, "broker": cpu["broker"] / printers,
                         "median": farmworld.percentile(found, 0.5),
                         "p99": farmworld.percentile(found, 0.99)})
    return rows, {"bridges": 1, "status asked every": "500 ms"}
