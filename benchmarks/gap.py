# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""The longest gap of a timer of 1 ms in the thread of an application that sends a file."""

import os
import shutil
import statistics

import files
import measure

TARGETS = {"whole": 16, "cancelled": 10, "left": 10, "deleted": 10}  # ms
MEASURES = {"whole": "during the transfer", "cancelled": "at cancel(), and after",
            "left": "at leave(), and after", "deleted": "while the sender is deleted, and after"}


def run(options):
    rows = []
    with measure.scratch(3 * options.mib * files.MIB) as scratch:
        receive = os.path.join(scratch, "received")
        os.mkdir(receive)
        for case, name in files.NAMES.items():
            source = shutil.copy(os.path.join(options.files, name), scratch)
            runs = []
            for _ in range(options.pairs):
                with measure.Server("library", receive) as server:
                    runs.append(measure.run_json([measure.program("gap"), "--url", server.url,
                                                  "--file", source]))
            for key, title in MEASURES.items():
                gaps = [gap[key] for gap in runs]
                median = statistics.median(gaps)
                rows.append({"case": case, "measure": title, "gap": median, "longest": max(gaps),
                             "target": f"<= {TARGETS[key]}", "met": median <= TARGETS[key]})
            os.remove(source)
    return rows, {"runs": options.pairs}
