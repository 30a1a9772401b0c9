# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A thousand connections: how long they take and what each costs the server in memory."""

import json
import subprocess

import measure

CLIENTS = 1000


def connect(side):
    with measure.scratch(0) as directory:
        with measure.Server(side, directory, measure.QUIET) as server:
            before = server.private_kib()
            with subprocess.Popen([measure.program("load"), "--port", str(server.port),
                                   "--clients", str(CLIENTS), "accept"],
                                  stdin=subprocess.PIPE, stdout=subprocess.PIPE) as load:
                line = load.stdout.readline()
                if not line:
                    raise RuntimeError(f"{side}: the connections failed")
                kib = (server.private_kib() - before) / CLIENTS
                load.stdin.close()
    return {"time": json.loads(line)["connect"], "memory": kib, "cpu": server.usage["cpu"]}


def run(options):
    results = measure.interleave(options.pairs, connect)
    case = f"{CLIENTS} connections"
    return [
        measure.row(case, "time to accept", "s", results, "time", "<= 1.2"),
        measure.row(case, "server memory per connection", "KiB", results, "memory", "<= 1.2"),
        measure.row(case, "server CPU, leaving included", "s", results, "cpu"),
    ], {"pairs": options.pairs, "log": "debug lines off"}
