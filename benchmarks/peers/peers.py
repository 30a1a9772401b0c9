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
from pathlib import Path

HERE = Path(__file__).parent
sys.path.insert(0, str(HERE.parent))

import files  # noqa: E402
import measure  # noqa: E402
from kinds import KINDS, Library  # noqa: E402
from link import LinkUnavailable, Loopback, SlowLink  # noqa: E402
from processes import PeerFailed, run_client  # noqa: E402

RATES = (60, 300, 1000)  # Mbit/s: about what a printer's wireless link carries, a good one, a cable
ROUNDS = 3
QUICK_SIZE = 4 * 1024 * 1024
MEASURES = ("wall", "client_cpu", "server_cpu", "bytes_on_wire")


def digest(path):
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "sha256").digest()


def empty(directory):
    for left in directory.iterdir():
        shutil.rmtree(left) if left.is_dir() else left.unlink()


def sources(directory, quick, scratch):
    """The files to send, by case; quick ones are the first part of each."""
    found = {}
    for case, name in files.NAMES.items():
        file = Path(directory) / name
        if quick:
            part = Path(scratch) / name
            with open(file, "rb") as whole:
                part.write_bytes(whole.read(QUICK_SIZE))
            file = part
        found[case] = file.resolve()
    return found


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
    row = {"link": link.name, "case": case, "peer": peer.name, "runs": len(runs),
           "rate": getattr(link, "rate", None)}
    for measure in MEASURES:
        values = [run[measure] for run in runs]
        row[measure] = None if None in values else statistics.median(values)
    return row


def compare_on(link, peers, sent, rounds, missing):
    """All peers on one link, taking turns; rows of medians."""
    expected = {case: digest(file) for case, file in sent.items()}
    runs = {(case, peer): [] for case in sent for peer in peers}
    failed = set()
    for turn in range(rounds):
        for case, file in sent.items():
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


def serve_and_compare(link, peers, sent, rounds, missing):
    with contextlib.ExitStack() as running:
        running.enter_context(link)
        need = 2 * max(file.stat().st_size for file in sent.values())
        scratch = Path(running.enter_context(measure.scratch(need)))
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
        return compare_on(link, serving, sent, rounds, missing) if serving else []


def compare(arguments):
    rows, missing, peers = [], [], []
    for peer in (kind(arguments.programs) for kind in KINDS):
        if lack := peer.lacks():
            missing.append(f"{peer.name}: {lack}")
        else:
            peers.append(peer)
    with measure.scratch(len(files.NAMES) * QUICK_SIZE) as scratch:
        sent = sources(arguments.files, arguments.quick, scratch)
        for link in (Loopback(), *map(SlowLink, RATES)):
            try:
                rows += serve_and_compare(link, peers, sent, rounds(arguments), missing)
            except LinkUnavailable as error:
                missing.append(f"{link.name}: link not available here: {error}")
    return rows, missing


def rounds(arguments):
    return 1 if arguments.quick else ROUNDS


def options_parser(description):
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--files", required=True,
                        help=f"directory with {', '.join(files.NAMES.values())}")
    parser.add_argument("--out", required=True, help="where to write the results")
    parser.add_argument("--programs", default=f"{measure.BUILD}/benchmarks",
                        help="directory of the library's benchmark programs")
    parser.add_argument("--quick", action="store_true",
                        help="one round with the first 4 MiB of each file, to try the programs")
    return parser


def run_section(name, measure_rows, arguments):
    """Calls measure_rows(arguments), which gives rows and what is missing; writes both."""
    if lack := Library(arguments.programs).lacks():
        sys.exit(lack)
    for end in (signal.SIGINT, signal.SIGTERM):  # leaves all contexts in order
        signal.signal(end, lambda *_: sys.exit("ended by a signal"))
    described = {**measure.machine(), "rounds": rounds(arguments)}
    try:
        rows, missing = measure_rows(arguments)
    except PeerFailed as error:
        sys.exit(str(error))
    section = {"section": name, "machine": described, "rows": rows, "missing": missing}
    Path(arguments.out).write_text(json.dumps(section, indent=2) + "\n")
    for line in missing:
        print(line, file=sys.stderr)


if __name__ == "__main__":
    run_section("peers", compare, options_parser(__doc__).parse_args())
