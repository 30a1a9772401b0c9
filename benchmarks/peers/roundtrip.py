# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Measures what one acknowledgement per chunk costs on a link with a delay, and computes the same."""

import json
import math
import statistics
import sys
import tempfile
from contextlib import ExitStack
from pathlib import Path

HERE = Path(__file__).parent
sys.path.insert(0, str(HERE.parent))

import measure  # noqa: E402
from kinds import Stored  # noqa: E402
from link import BURST, LinkUnavailable, Loopback, SlowLink  # noqa: E402
from peers import digest, empty, options_parser, rounds, run_section, sources  # noqa: E402
from processes import PeerFailed, run_client  # noqa: E402

CHUNK = 1024 * 1024
ROUND_TRIPS = (0.0, 0.001, 0.005, 0.020)  # seconds
RATE = 100  # Mbit/s
MEASURED_CASES = ("random bytes",)
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
    line = max(0.0, sent / chunks - BURST) * 8 / rate
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


class Line:
    """A link with a running server at its far end, and what was measured on it so far."""

    def __init__(self, link, programs, scratch, running):
        running.enter_context(link)
        self.link = link
        self.library = Stored(programs)
        running.callback(self.library.stop)
        self.library.serve(link, tempfile.mkdtemp(dir=scratch))
        self.round_trip = link.measured_round_trip()
        self.runs = {}

    def send(self, case, file, expected):
        print(f"{self.link.name}, round trip {self.round_trip * 1e3:.2f} ms: {case}", file=sys.stderr)
        self.runs.setdefault(case, []).append(transfer(self.library, self.link, file, expected))

    def row(self, case, file):
        walls, on_wire = zip(*self.runs[case])
        return {
            "link": self.link.name,
            "case": case,
            "round_trip": self.round_trip,
            "chunks": math.ceil(file.stat().st_size / CHUNK),
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
    """All links at once, so that they take turns: a busy moment does not meet one of them alone."""
    lines, missing = [], []
    with ExitStack() as running:
        largest = max(file.stat().st_size for file in Path(arguments.files).iterdir())
        scratch = running.enter_context(measure.scratch(3 * largest))
        sent = sources(arguments.files, arguments.quick, scratch)
        sent = {case: sent[case] for case in MEASURED_CASES}
        for link in (Loopback(), *(SlowLink(arguments.rate, trip) for trip in ROUND_TRIPS)):
            try:
                lines.append(Line(link, arguments.programs, scratch, running))
            except LinkUnavailable as error:
                missing.append(f"{link.name}: {error}")
        for _ in range(rounds(arguments)):
            for case, file in sent.items():
                for line in lines:
                    line.send(case, file, digest(file))
        rows = [line.row(case, file) for line in lines for case, file in sent.items()]
    add_computed(rows, arguments.rate * 1e6)
    return rows, missing


def main():
    parser = options_parser(__doc__)
    parser.add_argument("--rate", type=float, default=RATE,
                        help="Mbit/s of the link (default: %(default)s)")
    run_section("roundtrip", compare, parser.parse_args())


if __name__ == "__main__":
    main()
