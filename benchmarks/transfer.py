# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""A file from one process to another, through the library and through bare Qt."""

import filecmp
import os
import shutil

import files
import measure

TARGETS = {"wall": "<= 1.02", "client CPU": "<= 1.03", "server CPU": "<= 1.05"}


def send(side, source, directory):
    """Sends one file once; the received one must equal it byte for byte."""
    with measure.Server(side, directory) as server:
        client = measure.run_json([measure.client_of(side), "--url", server.url,
                                   "--file", source])
    received = os.path.join(directory, os.path.basename(source))
    if not filecmp.cmp(source, received, shallow=False):
        raise RuntimeError(f"{side}: {received} differs from {source}")
    os.remove(received)
    return {"wall": client["wall"], "client CPU": client["cpu"],
            "server CPU": server.usage["cpu"],
            "client memory": client["maxrss_kib"] / 1024,
            "server memory": server.usage["maxrss_kib"] / 1024}


def rows_of(case, results):
    rows = []
    for key in ("wall", "client CPU", "server CPU"):
        rows.append(measure.row(case, key, "s", results, key, TARGETS[key]))
    for key in ("client memory", "server memory"):
        rows.append(measure.row(case, "peak " + key, "MiB", results, key))
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
                                         lambda side: send(side, source, receive))
            rows += rows_of(f"{case}, {size:.1f} MiB", results)
            os.remove(source)
        place = measure.file_system(scratch)
    return rows, {"files in": place, "pairs": options.pairs}
