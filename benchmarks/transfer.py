# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A file from one process to another, through the library and through bare Qt."""

import filecmp
import os
import shutil

import files
import measure

SIDES = ("library", "with threads", "floor")
WALL_TARGETS = {"library": "<= 0.95", "with threads": "<= 0.65"}
CPU_TARGET = "<= 1.05"
SERVER_TARGETS = {"layer model": "<= 0.65", "random bytes": "<= 1.05", "mesh": "<= 0.65"}


def send(side, source, directory):
    """Sends one file once; the received one must equal it byte for byte."""
    program = "floor" if side == "floor" else "library"
    threads = ["--threads", "-1"] if side == "with threads" else []
    with measure.Server(program, directory) as server:
        client = measure.run_json([measure.client_of(program), "--url", server.url,
                                   "--file", source, *threads])
    received = os.path.join(directory, os.path.basename(source))
    if not filecmp.cmp(source, received, shallow=False):
        raise RuntimeError(f"{side}: {received} differs from {source}")
    os.remove(received)
    return {"wall": client["wall"], "client CPU": client["cpu"],
            "server CPU": server.usage["cpu"],
            "client memory": client["maxrss_kib"] / 1024,
            "server memory": server.usage["maxrss_kib"] / 1024}


def rows_of(case, title, results):
    rows = []
    for side, wall_target in WALL_TARGETS.items():
        name = title if side == "library" else f"{title}, {side}"
        targets = {"wall": wall_target, "client CPU": CPU_TARGET,
                   "server CPU": SERVER_TARGETS[case]}
        for key, target in targets.items():
            rows.append(measure.row(name, key, "s", results, key, target, side))
        for key in ("client memory", "server memory"):
            rows.append(measure.row(name, "peak " + key, "MiB", results, key, None, side))
    return rows


def run(options):
    rows = []
    with measure.scratch(3 * options.mib * files.MIB) as scratch:
        receive = os.path.join(scratch, "received")
        os.mkdir(receive)
        for case, name in files.NAMES.items():
            source = shutil.copy(os.path.join(options.files, name), scratch)
            size = os.path.getsize(source) / files.MIB
            send("library", source, receive)  # warms the caches
            results = measure.interleave(options.pairs,
                                         lambda side: send(side, source, receive), SIDES)
            rows += rows_of(case, f"{case}, {size:.1f} MiB", results)
            os.remove(source)
        place = measure.file_system(scratch)
    return rows, {"files in": place, "pairs": options.pairs}
