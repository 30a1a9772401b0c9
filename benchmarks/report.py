# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Prints the results of the benchmarks as Markdown tables, or puts them into a document."""

import argparse
import json
import math
import re
import sys
from pathlib import Path

BEGIN, END = "<!-- results:begin -->", "<!-- results:end -->"
MIB = 1024 * 1024
FLOOR_SECTIONS = {
    "transfer": "Sending a file, against bare Qt",
    "status": "GET_PRINT_STATUS, against bare Qt",
    "crowd": "Many connections, against bare Qt",
}
VERDICT = {True: "met", False: "**missed**", None: ""}
FIGURE = re.compile(r"[-\d.]*")
LINK_RATES = (60, 100, 1000)  # Mbit/s
ROUND_TRIPS = (0, 1, 5, 20)  # ms


def number(value, digits=3):
    """At least so many significant digits, without an exponent."""
    if value is None:
        return ""
    if not isinstance(value, float):
        return str(value)
    magnitude = math.floor(math.log10(abs(value))) if value else 0
    return f"{value:.{max(0, digits - 1 - magnitude)}f}"


def milliseconds(seconds):
    return f"{seconds * 1e3:.1f}"


def table(heads, rows):
    """Columns of figures to the right, all others to the left."""
    cells = [[cell if isinstance(cell, str) else number(cell) for cell in row] for row in rows]
    figures = [all(FIGURE.fullmatch(cell) for cell in column) for column in zip(*cells)]
    lines = [heads, ["---:" if is_figure else "---" for is_figure in figures], *cells]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


def conditions(section):
    """The machine and how the figures were taken, in one line."""
    machine = section.get("machine", {})
    return "; ".join(f"{name}: {number(value)}" for name, value in machine.items() if value is not None)


def missing(section):
    return "".join(f"\n- {line}" for line in section.get("missing", []))


def ratio_lines(section):
    return [[row["case"], f"{row['measure']}, {row['unit']}", row["library"], row["floor"],
             f"{row['ratio']:.3f}", *(f"{end:.3f}" for end in row["spread"]),
             (row.get("target") or "").replace("<=", "≤").replace(">=", "≥"), VERDICT[row.get("met")]]
            for row in section["rows"]]


def floor_table(section):
    return table(
        ["Case", "Measure", "Library", "Bare Qt", "Ratio", "Pairs from", "to", "Target", ""],
        ratio_lines(section))


def protection_table(section):
    return table(
        ["Case", "Measure", "With it", "Default", "Ratio", "Pairs from", "to", "Target", ""],
        ratio_lines(section))


def gap_table(section):
    return table(
        ["File", "Measure", "Median, ms", "Longest, ms", "Target", ""],
        [[row["case"], row["measure"], f"{row['gap']:.1f}", f"{row['longest']:.1f}",
          row["target"].replace("<=", "≤"), VERDICT[row["met"]]] for row in section["rows"]])


def peers_tables(section):
    parts = []
    for link in dict.fromkeys(row["link"] for row in section["rows"]):
        rows = [row for row in section["rows"] if row["link"] == link]
        cases = dict.fromkeys(row["case"] for row in rows)
        heads = ["File", "Sent with", "Wall, s", "Client CPU, s", "Server CPU, s"]
        is_counted = any(row["bytes_on_wire"] is not None for row in rows)
        lines = [[row["case"], row["peer"], row["wall"], row["client_cpu"], f"{row['server_cpu']:.2f}",
                  *([on_wire(row), f"{row['wall'] / line_time(row):.2f}"] if is_counted else [])]
                 for case in cases for row in rows if row["case"] == case]
        parts.append(f"Over {'the ' if link == 'loopback' else 'a link of '}{link}:\n\n" +
                     table(heads + ["MiB on the wire", "Wall / line"] * is_counted, lines))
    return "\n\n".join(parts)


def line_time(row):
    """What the line alone needs for the bytes that were sent, in seconds."""
    return row["bytes_on_wire"] * 8 / (row["rate"] * 1e6)


def on_wire(row):
    return "" if row["bytes_on_wire"] is None else f"{row['bytes_on_wire'] / MIB:.1f}"


def roundtrip_tables(section):
    shaped = [row for row in section["rows"] if "computed" in row]
    if not shaped:
        return ""
    measured = table(
        ["File", "Link", "Round trip, ms", "Work, ms", "KiB sent", "Computed, ms", "Measured, ms",
         "Measured / computed", "MiB/s"],
        [[row["case"], row["link"], f"{row['round_trip'] * 1e3:.2f}", milliseconds(row["work"]),
          f"{row['bytes_sent'] / row['chunks'] / 1024:.0f}",
          milliseconds(row["computed"] / row["chunks"]), milliseconds(row["wall"] / row["chunks"]),
          f"{row['wall'] / row['computed']:.3f}", f"{row['chunks'] / row['wall']:.2f}"]
         for row in sorted(shaped, key=lambda row: row["case"])])
    return ("Per chunk, measured beside computed:\n\n" + measured + "\n\n" + expectations(shaped))


def expectations(shaped):
    """What the formula gives on other links, in the long run."""
    cases = {row["case"]: row for row in shaped}
    lines = []
    for case in sorted(cases):
        work, sent = cases[case]["work"], cases[case]["bytes_sent"] / cases[case]["chunks"]
        for rate in LINK_RATES:
            line = sent * 8 / (rate * 1e6)
            times = [line + work + trip / 1e3 for trip in ROUND_TRIPS]
            lines.append([case, f"{rate} Mbit/s", milliseconds(work), milliseconds(line),
                          *(f"{milliseconds(time)} ms, {1 / time:.1f} MiB/s" for time in times)])
    heads = ["File", "Link", "Work, ms", "Line, ms", *(f"Round trip {trip} ms" for trip in ROUND_TRIPS)]
    return ("Computed with the work and the bytes of the chunks above: time per chunk and throughput.\n\n" +
            table(heads, lines))


def farm_table(section):
    return table(
        ["Printers", "Memory, MiB", "KiB for each", "Idle, % of a core", "CPU for a job, ms",
         "the broker's, ms", "Change to message, ms", "99th percentile, ms"],
        [[row["printers"], f"{row['memory'] / MIB:.1f}",
          f"{row['memory'] / 1024 / row['printers']:.0f}", f"{row['idle'] * 100:.1f}",
          milliseconds(row["job"]), milliseconds(row["broker"]), milliseconds(row["median"]),
          milliseconds(row["p99"])] for row in section["rows"]])


SECTIONS = {
    **{name: (title, floor_table) for name, title in FLOOR_SECTIONS.items()},
    "protection": ("What protection costs, against the default server", protection_table),
    "gap": ("How long the sending application's own thread is kept", gap_table),
    "peers": ("Other ways to send the same files", peers_tables),
    "farm": ("A farm at one bridge", farm_table),
    "roundtrip": ("One acknowledgement per chunk, on links with a delay", roundtrip_tables),
}
PROFILE = "profile.md"  # what profile.py printed; tables already


def report(directory):
    parts = []
    for name, (title, render) in SECTIONS.items():
        file = Path(directory) / f"{name}.json"
        if file.exists():
            section = json.loads(file.read_text(encoding="utf-8"))
            parts.append(f"### {title}\n\n{conditions(section)}\n{missing(section)}\n\n{render(section)}")
    profile = Path(directory) / PROFILE
    if profile.exists():
        parts.append(f"### Where the time goes\n\n{profile.read_text(encoding='utf-8').strip()}")
    return "\n\n".join(part.replace("\n\n\n", "\n\n") for part in parts) + "\n"


def put_into(document, text):
    """Replaces what is between the markers; the rest stays as it is."""
    old = Path(document).read_text(encoding="utf-8")
    before, begin, rest = old.partition(BEGIN)
    _, end, after = rest.partition(END)
    if not begin or not end:
        sys.exit(f"{document}: no {BEGIN} … {END} to put the results between")
    Path(document).write_text(f"{before}{BEGIN}\n\n{text}\n{END}{after}", encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("results", help=f"directory of the sections' JSON files and {PROFILE}")
    parser.add_argument("--into", metavar="DOCUMENT", help="replace what is between its markers")
    arguments = parser.parse_args()
    text = report(arguments.results)
    if arguments.into:
        put_into(arguments.into, text)
    else:
        print(text, end="")


if __name__ == "__main__":
    main()
