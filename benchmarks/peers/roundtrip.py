# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Measures what one acknowledgement per chunk costs on a link with a delay, and computes the same."""

import json
import math
import statistics
import sys
from contextlib import ExitStack
from pathlib import Path

HERE = Path(__file__).parent
sys.path.insert(0, str(HERE.parent))

import files  # noqa: E402
import measure  # noqa: E402
from kinds import Library  # noqa: E402
from link import BURST, LinkUnavailable, Loopback, SlowLink  # noqa: E402
from peers import QUICK_SIZE, digest, empty, options_parser, rounds, run_section, sources  # noqa: E402
from processes import PeerFailed, run_client  # noqa: E402

CHUNK = 1024 * 1024
ROUND_TRIPS = (0.0, 0.001, 0.005, 0.020)  # seconds
RATE = 100  # Mbit/s
MEASURED_CASES = ("random bytes", "layer model")
SEGMENT = 1448  # bytes of payload in a packet of 1500
FIRST_WINDOW = 10  # segments that TCP sends before the first acknowledgement


def slow_start(rate, round_trip):
    """
    Seconds that a new connection's line stands idle until TCP's window covers it. The window starts
    at ten segments and doubles with every round trip.
    """
    lost, window = 0.0, FIRST_WINDOW * SEGMENT
    while (busy := window * 8 / rate) < round_trip:
        lost += round_trip - busy
        window *= 2
    return lost


def computed_wall(chunks, work, sent, rate, round_trip):
    """Seconds for all chunks: START_FILE's round trip, then work, line and round trip of each chunk."""
    line = (sent / chunks - BURST) * 8 / rate
    return round_trip + chunks * (work + line + round_trip) + slow_start(rate, round_trip)


def transfer(library, link, file, expected):
    """One transfer: seconds from START_FILE to CHECK_DATA, bytes that the client's end sent."""
    before = link.bytes_sent()
    command = [str(part) for part in library.client_command(link.address, file)]
    printed = run_client(link, command).printed
    report = json.loads([line for line in printed.splitlines() if line.startswith("{")][-1])
    if digest(library.inbox / file.name) != expected:
        raise PeerFailed(f"{file.name} arrived damaged")
    empty(library.inbox)
    return report["wall"], link.bytes_sent()[0] - before[0] if before else None


def measure_on(link, library, sent, turns):
    """All files over one link in turns; (case, round trip, chunks, wall, bytes sent) of each."""
    with ExitStack() as running:
        running.enter_context(link)
        need = 2 * max(file.stat().st_size for file in sent.values())
        scratch = running.enter_context(measure.scratch(need))
        running.callback(library.stop)
        library.serve(link, scratch)
        round_trip = link.measured_round_trip()
        runs = {case: [] for case in sent}
        for turn in range(turns):
            for case, file in sent.items():
                print(f"{link.name}, round trip {round_trip * 1e3:.2f} ms: {case}, "
                      f"{turn + 1} of {turns}", file=sys.stderr)
                runs[case].append(transfer(library, link, file, digest(file)))
    for case, done in runs.items():
        walls, on_wire = zip(*done)
        yield {
            "link": link.name,
            "case": case,
            "round_trip": round_trip,
            "chunks": math.ceil(sent[case].stat().st_size / CHUNK),
            "wall": statistics.median(walls),
            "bytes_sent": None if None in on_wire else statistics.median(on_wire),
        }


def add_computed(rows, rate):
    """To every row of the shaped link what the loopback's time per chunk lets expect."""
    work = {row["case"]: row["wall"] / row["chunks"] for row in rows if row["bytes_sent"] is None}
    for row in rows:
        if row["bytes_sent"] is not None:
            row["rate"] = rate
            row["work"] = work[row["case"]]
            row["slow_start"] = slow_start(rate, row["round_trip"])
            row["computed"] = computed_wall(
                row["chunks"], row["work"], row["bytes_sent"], rate, row["round_trip"])


def compare(arguments):
    rows, missing = [], []
    library = Library(arguments.programs)
    with measure.scratch(len(files.NAMES) * QUICK_SIZE) as scratch:
        sent = sources(arguments.files, arguments.quick, scratch)
        sent = {case: sent[case] for case in MEASURED_CASES}
        for link in (Loopback(), *(SlowLink(arguments.rate, trip) for trip in ROUND_TRIPS)):
            try:
                rows += measure_on(link, library, sent, rounds(arguments))
            except (LinkUnavailable, PeerFailed) as error:
                missing.append(f"{link.name}: {error}")
    add_computed(rows, arguments.rate * 1e6)
    return rows, missing


def main():
    parser = options_parser(__doc__)
    parser.add_argument("--rate", type=float, default=RATE,
                        help="Mbit/s of the link (default: %(default)s)")
    run_section("roundtrip", compare, parser.parse_args())


if __name__ == "__main__":
    main()
