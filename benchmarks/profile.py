#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Where a transfer's time goes, counted in instructions, so that it repeats on a busy machine.

Runs one transfer of each side under valgrind's callgrind and sorts every instruction of client and
server into parts. The kernel's own time, which callgrind cannot count, stands below in milliseconds.
"""

import argparse
import os
import re
import subprocess

import files
import measure

# The first that matches "function [object]" takes the instructions.
PARTS = (
    ("compress, inflate (zlib, libdeflate)", r"libz\.so|libdeflate|zyws::compressed|unpackChunk|PlainZlibStream"
     r"|zyws::.*(walk[A-Z]|BlockSteps|HuffmanCode|fillTable|readLengths)"),
    ("WebSocket: masking and framing", r"libQt5WebSockets"),
    ("copying memory", r":(__)?mem(cpy|move|set)\w* "),
    ("allocating memory", r"/malloc/|QArrayData::(de)?allocate"),
    ("sockets (Qt Network)", r"libQt5Network"),
    ("start-up: linking, TLS library", r"ld-linux|libcrypto|libssl|/elf/|dlfcn"),
    ("JSON, text, files, events (Qt Core, GLib)", r"libQt5Core|libglib|libgthread"),
    ("this library", r"libzyWebsocket"),
    ("rest", r""),
)
# System time of these functions, what they call included.
KERNEL = (("reading the file", r":QFileDevice::readData\("),
          ("writing the file", r":QFileDevice::writeData\("),
          ("read(2), all", r"/read\.c:read "),
          ("write(2), all", r"/write\.c:write "))
LINE = re.compile(r"^ *([\d,.]+)(?: \([^)]*\))? +([\d,.]+)(?: \([^)]*\))? +(\S.*)$")


def callgrind(output):
    return ["valgrind", "--tool=callgrind", "--collect-systime=nsec",
            f"--callgrind-out-file={output}"]


def annotated(path, *options):
    """(instructions, nanoseconds in the kernel, "function [object]") of each function."""
    text = subprocess.run(["callgrind_annotate", "--threshold=100", "--show=Ir,sysCpuTime",
                           *options, path], stdout=subprocess.PIPE, text=True, check=True).stdout
    number = lambda digits: 0 if digits == "." else int(digits.replace(",", ""))
    matches = (LINE.match(line) for line in text.splitlines())
    return [(number(m[1]), number(m[2]), m[3]) for m in matches if m]


def parts_of(path):
    sums = dict.fromkeys((name for name, _ in PARTS), 0)
    for instructions, _, function in annotated(path):
        if "PROGRAM TOTALS" not in function:
            name = next(name for name, pattern in PARTS if re.search(pattern, function + " "))
            sums[name] += instructions
    return sums


def kernel_of(path):
    sums = dict.fromkeys((name for name, _ in KERNEL), 0)
    for _, nanoseconds, function in annotated(path, "--inclusive=yes"):
        for name, pattern in KERNEL:
            if re.search(pattern, function):
                sums[name] = max(sums[name], nanoseconds)
    return sums


def transfer(side, source, directory):
    """The two profiles of one transfer: {"client": path, "server": path}."""
    paths = {end: os.path.join(directory, f"{side}-{end}.callgrind") for end in ("client", "server")}
    with measure.Server(side, directory, prefix=callgrind(paths["server"])) as server:
        measure.run_json([*callgrind(paths["client"]), measure.client_of(side),
                          "--url", server.url, "--file", source])
    return paths


def print_table(title, unit, columns):
    totals = [max(sum(column.values()), 1) for column in columns]
    print(f"\n| {title} | library | | floor | |\n|---|---:|---:|---:|---:|")
    for name in columns[0]:
        cells = " | ".join(f"{column[name] / 1e6:.1f} {unit} | {100 * column[name] / total:.1f} %"
                           for column, total in zip(columns, totals))
        print(f"| {name} | {cells} |")


def main():
    parser = argparse.ArgumentParser(prog="benchmarks/profile.py", description=__doc__)
    parser.add_argument("--mib", type=int, default=8, help="size of the file (default: 8)")
    parser.add_argument("--file", choices=files.NAMES, default="layer model")
    chosen = parser.parse_args()
    source = os.path.join(files.provide(chosen.mib), files.NAMES[chosen.file])
    with measure.scratch(4 * chosen.mib * files.MIB) as directory:
        profiles = [transfer(side, source, directory) for side in measure.SIDES]
        print(f"One transfer: {chosen.file}, {os.path.getsize(source) / files.MIB:.1f} MiB")
        for end in ("client", "server"):
            print_table(f"{end}: million instructions", "M",
                        [parts_of(profile[end]) for profile in profiles])
            print(f"\n| {end}: time in the kernel | library | floor |\n|---|---:|---:|")
            kernel = [kernel_of(profile[end]) for profile in profiles]
            for name, _ in KERNEL:
                print(f"| {name} | " + " | ".join(f"{k[name] / 1e6:.1f} ms" for k in kernel) + " |")


if __name__ == "__main__":
    main()
