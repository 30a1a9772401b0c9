# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""What protection costs: a transfer to a hardened server, beside one to the default server."""

import filecmp
import hashlib
import os
import shutil

import files
import measure

DEFAULT = "default"
# The server's --protection, whether the digest is sent, and the target for wall time and server CPU.
SIDES = {
    DEFAULT: ("none", False, None),
    "protected": ("unsynced", False, "<= 1.05"),
    "protected, digest checked": ("unsynced", True, None),
    "protected, synced to disk": ("synced", False, None),
}
IN_MEMORY = (DEFAULT, "protected", "protected, digest checked")
ON_DISK = (DEFAULT, "protected, synced to disk")


def send(side, source, digest, directory):
    """Sends one file once, compressed in threads; the received one must equal it byte for byte."""
    protection, has_digest, _ = SIDES[side]
    with measure.Server("library", directory, options=["--protection", protection]) as server:
        client = measure.run_json([measure.client_of("library"), "--url", server.url, "--file", source,
                                   "--threads", "-1", *(["--sha256", digest] if has_digest else [])])
    received = os.path.join(directory, os.path.basename(source))
    if not filecmp.cmp(source, received, shallow=False):
        raise RuntimeError(f"{side}: {received} differs from {source}")
    os.remove(received)
    return {"wall": client["wall"], "server CPU": server.usage["cpu"]}


def digest_of(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def measure_file(case, source, sides, receive, pairs):
    digest = digest_of(source)
    title = f"{case}, {os.path.getsize(source) / files.MIB:.1f} MiB"
    send(DEFAULT, source, digest, receive)  # warms the caches
    results = measure.interleave(pairs, lambda side: send(side, source, digest, receive), sides)
    return [measure.row(f"{title}, {side}", key, "s", results, key, SIDES[side][2], side, DEFAULT)
            for side in sides[1:] for key in ("wall", "server CPU")]


def run(options):
    """Syncing is measured on a disk, where it costs something; all else where nothing waits for one."""
    rows, places = [], []
    for place, sides in ((measure.scratch(3 * options.mib * files.MIB), IN_MEMORY),
                         (measure.scratch_on_disk(), ON_DISK)):
        with place as scratch:
            receive = os.path.join(scratch, "received")
            os.mkdir(receive)
            for case, name in files.NAMES.items():
                source = shutil.copy(os.path.join(options.files, name), scratch)
                rows += measure_file(case, source, sides, receive, options.pairs)
                os.remove(source)
            places.append(measure.file_system(scratch).replace(measure.ROOT + os.sep, ""))
    return rows, {"files in": places[0], "files synced to": places[1], "pairs": options.pairs}
