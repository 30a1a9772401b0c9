# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Sends the same files with this library and with what a user would pick instead; writes a table."""

import argparse
import contextlib
import hashlib
import json
import shutil
import signal
import statistics
import sys
import tempfile
from pathlib import Path

HERE = Path(__file__).parent
sys.path.insert(0, str(HERE.parent))

from kinds import KINDS  # noqa: E402
from link import LinkUnavailable, Loopback, SlowLink  # noqa: E402
from machine import machine  # noqa: E402
from processes import PeerFailed, run_client  # noqa: E402

CASES = {"layer model": "layer.zydlp", "random bytes": "random.bin", "mesh": "mesh.stl"}
SLOW_RATE = 60  # Mbit/s, about what a printer's wireless link carries
ROUNDS = 3
QUICK_SIZE = 4 * 1024 * 1024
MEASURES = ("wall", "client_cpu", "server_cpu", "bytes_on_wire")


def digest(path):
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "sha256").digest()


def empty(directory):
    for left in directory.iterdir():
        shutil.rmtree(left) if left.is_dir() else left.unlink()


def prepared_files(directory, quick, scratch):
    """The files by case; quick ones are the first part of each."""
    files = {}
    for case, name in CASES.items():
        file = Path(directory) / name
        if quick:
            part = Path(scratch) / name
            with open(file, "rb") as whole:
                part.write_bytes(whole.read(QUICK_SIZE))
            file = part
        files[case] = file.resolve()
    return files


def send_once(peer, link, file, expected):
    """One transfer into an empty inbox, its result compared; the measured values."""
    sent_before, used_before = link.bytes_sent(), peer.server.processor_time()
    command = [str(part) for part in peer.client_command(link.address, file)]
    run = run_client(link, command)
    used, sent = peer.server.processor_time() - used_before, link.bytes_sent()
    on_wire = None if sent is None else sum(sent) - sum(sent_before)
    received = peer.inbox / file.name
    if not received.exists() or digest(received) != expected:
        raise PeerFailed(f"{peer.name}: {file.name} arrived damaged or not at all")
    empty(peer.inbox)
    return dict(zip(MEASURES, (run.wall, run.cpu, used, on_wire)))


def median_row(link, case, peer, runs):
    row = {"link": link.name, "case": case, "peer": peer.name, "runs": len(runs)}
    for measure in MEASURES:
        values = [run[measure] for run in runs]
        row[measure] = None if None in values else statistics.median(values)
    return row


def compare_on(link, peers, files, rounds, missing):
    """All peers on one link, taking turns; rows of medians."""
    expected = {case: digest(file) for case, file in files.items()}
    runs = {(case, peer): [] for case in files for peer in peers}
    failed = set()
    for turn in range(rounds):
        for case, file in files.items():
            for peer in peers[turn % len(peers):] + peers[:turn % len(peers)]:
                if peer in failed:
                    continue
                print(f"{link.name}: {case}, {peer.name}, {turn + 1} of {rounds}", file=sys.stderr)
                try:
                    runs[case, peer].append(send_once(peer, link, file, expected[case]))
                except PeerFailed as error:
                    failed.add(peer)
                    missing.append(f"failed on {link.name}: {peer.name}: {error}")
    return [median_row(link, case, peer, done)
            for (case, peer), done in runs.items() if done and peer not in failed]


def serve_and_compare(link, peers, files, rounds, missing):
    with contextlib.ExitStack() as running:
        running.enter_context(link)
        scratch = Path(running.enter_context(tempfile.TemporaryDirectory(prefix="zybench-")))
        serving = []
        for number, peer in enumerate(peers):
            directory = scratch / str(number)
            directory.mkdir()
            running.callback(peer.stop)
            try:
                peer.serve(link, directory)
                serving.append(peer)
            except PeerFailed as error:
                missing.append(f"failed on {link.name}: {peer.name}: {error}")
        return compare_on(link, serving, files, rounds, missing) if serving else []


def compare(arguments):
    rows, missing, peers = [], [], []
    for peer in (kind(arguments.programs) for kind in KINDS):
        if lack := peer.lacks():
            missing.append(f"{peer.name}: {lack}")
        else:
            peers.append(peer)
    rounds = 1 if arguments.quick else ROUNDS
    with tempfile.TemporaryDirectory(prefix="zybench-") as scratch:
        files = prepared_files(arguments.files, arguments.quick, scratch)
        for link in (Loopback(), SlowLink(SLOW_RATE)):
            try:
                rows += serve_and_compare(link, peers, files, rounds, missing)
            except LinkUnavailable as error:
                missing.append(f"{link.name}: link not available here: {error}")
    return {"section": "peers", "machine": machine(), "rows": rows, "missing": missing}


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--files", required=True, help=f"directory with {', '.join(CASES.values())}")
    parser.add_argument("--out", required=True, help="where to write the results")
    parser.add_argument("--programs", default="build/bench/benchmarks",
                        help="directory of the library's benchmark programs")
    parser.add_argument("--quick", action="store_true",
                        help="one round with the first 4 MiB of each file, to try the programs")
    arguments = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended by a signal"))
    results = compare(arguments)
    Path(arguments.out).write_text(json.dumps(results, indent=2) + "\n")
    for line in results["missing"]:
        print(line, file=sys.stderr)
    return 0


if __name__ == "__main__":
    sys.exit(main())
