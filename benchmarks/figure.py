#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Draws the time of each way to send over the rate of the line: figure.py RESULTS > FIGURE.svg"""

import json
import math
import sys
from pathlib import Path

import files

WIDTH, HEIGHT, MARGIN = 300, 300, 52  # of a panel, and around it
LEGEND = 34
COLOURS = {"zyslicer": "#d1242f", "libzyWebsocket": "#e8863a", "curl, nginx": "#0969da",
           "rsync": "#1a7f37", "rsync -z": "#8250df", "tus": "#6e7781"}
SIZES = {"layer model": 64.5, "random bytes": 64, "mesh": 64}  # MiB
STYLE = ("text { font: 11px sans-serif; fill: #1f2328; } .title { font-weight: bold; } "
         "polyline { fill: none; stroke-width: 1.8; } .limit { stroke: #1f2328; stroke-dasharray: 2 3; } "
         ".grid { stroke: #d8dee4; }")


class Panel:
    """One file: rates from left to right, seconds from below, both logarithmic."""

    def __init__(self, left, rates, seconds):
        self.left, self.rates, self.seconds = left, rates, seconds

    def x(self, rate):
        low, high = math.log(self.rates[0]), math.log(self.rates[-1])
        return self.left + WIDTH * (math.log(rate) - low) / (high - low)

    def y(self, seconds):
        low, high = (math.log(end) for end in self.seconds)
        return LEGEND + MARGIN / 2 + HEIGHT * (high - math.log(seconds)) / (high - low)

    def line(self, points, attributes):
        path = " ".join(f"{self.x(rate):.1f},{self.y(seconds):.1f}" for rate, seconds in points)
        return f'<polyline points="{path}" {attributes}/>'

    def axes(self, title):
        parts = [text(self.left, self.y(self.seconds[1]) - 8, title, 'class="title"')]
        for seconds in (0.5, 1, 2, 5, 10):
            if self.seconds[0] <= seconds <= self.seconds[1]:
                parts.append(f'<line class="grid" x1="{self.left}" x2="{self.left + WIDTH}" '
                             f'y1="{self.y(seconds):.1f}" y2="{self.y(seconds):.1f}"/>')
                parts.append(text(self.left - 6, self.y(seconds) + 4, f"{seconds:g} s",
                                  'text-anchor="end"'))
        bottom = self.y(self.seconds[0]) + 16
        parts += [text(self.x(rate), bottom, f"{rate:g}", 'text-anchor="middle"')
                  for rate in self.rates]
        parts.append(text(self.left + WIDTH / 2, bottom + 15, "Mbit/s", 'text-anchor="middle"'))
        return parts


def text(x, y, words, attributes=""):
    return f'<text x="{x:.1f}" y="{y:.1f}" {attributes}>{words}</text>'


def legend():
    parts, x = [], MARGIN
    for name, attributes in [(name, f'stroke="{colour}"') for name, colour in COLOURS.items()] + [
            ("the line's limit, uncompressed", 'class="limit"')]:
        parts.append(f'<polyline points="{x},16 {x + 22},16" {attributes}/>')
        parts.append(text(x + 27, 20, name))
        x += 46 + 6 * len(name)
    return parts


def draw(rows):
    rows = [row for row in rows if row.get("rate")]
    rates = sorted({row["rate"] for row in rows})
    walls = [row["wall"] for row in rows]
    cases = [case for case in files.NAMES if any(row["case"] == case for row in rows)]
    parts = legend()
    for number, case in enumerate(cases):
        panel = Panel(MARGIN + number * (WIDTH + MARGIN), rates, (min(walls) * 0.8, max(walls) * 1.1))
        parts += panel.axes(case)
        limit = [(rate, SIZES[case] * files.MIB * 8 / (rate * 1e6)) for rate in rates]
        parts.append(panel.line(limit, 'class="limit"'))
        for name, colour in COLOURS.items():
            points = [(row["rate"], row["wall"]) for row in rows
                      if row["case"] == case and row["peer"] == name]
            parts.append(panel.line(sorted(points), f'stroke="{colour}"'))
    width, height = MARGIN + len(cases) * (WIDTH + MARGIN), LEGEND + HEIGHT + 1.5 * MARGIN
    return "\n".join([f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height:g}">',
                      "<!-- Made by benchmarks/figure.py. -->", f"<style>{STYLE}</style>", '<rect width="100%" height="100%" fill="white"/>',
                      *parts, "</svg>"])


if __name__ == "__main__":
    print(draw(json.loads((Path(sys.argv[1]) / "peers.json").read_text(encoding="utf-8"))["rows"]))
