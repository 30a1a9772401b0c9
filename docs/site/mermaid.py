# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Mermaid diagrams, which hosting sites draw, in the languages that Doxygen draws.

Knows the few kinds of lines that the guides use; any other is an error.
"""

import re

STEP = re.compile(r"(\S+) --> (\S+): (.+)")
MESSAGE = re.compile(r"(\w+)(--?>>)(\w+): (.+)")
PARTICIPANT = re.compile(r"participant (\w+) as (.+)")
NOTE = re.compile(r"Note over (\w+): (.+)")
LOOP = re.compile(r"loop (.+)")


def quoted(text):
    return '"' + text.replace('"', r"\"") + '"'


def state_diagram(lines):
    """As a graph of dot's."""
    yield "@dot\ndigraph states {\nnode [shape=box, style=rounded, fontname=Helvetica];"
    yield "edge [fontname=Helvetica, fontsize=10];"
    yield "begin [shape=point, width=0.15]; end [shape=doublecircle, label=\"\", width=0.15];"
    for line in lines:
        step = STEP.fullmatch(line)
        if not step:
            raise SystemExit(f"not known of state diagrams: {line}")
        source = "begin" if step[1] == "[*]" else step[1]
        target = "end" if step[2] == "[*]" else step[2]
        yield f"{source} -> {target} [label={quoted(step[3])}];"
    yield "}\n@enddot"


def sequence_diagram(lines):
    """As a message sequence chart."""
    names = [PARTICIPANT.fullmatch(line) for line in lines]
    yield "@msc"
    yield ", ".join(f"{name[1]} [label={quoted(name[2])}]" for name in names if name) + ";"
    for line in (line for line, name in zip(lines, names) if not name):
        if message := MESSAGE.fullmatch(line):
            arrow = "=>" if message[2] == "->>" else ">>"
            yield f"{message[1]} {arrow} {message[3]} [label={quoted(message[4])}];"
        elif note := NOTE.fullmatch(line):
            yield f"{note[1]} note {note[1]} [label={quoted(note[2])}];"
        elif loop := LOOP.fullmatch(line):
            yield f"--- [label={quoted(loop[1])}];"
        elif line == "end":
            yield "---;"
        else:
            raise SystemExit(f"not known of sequence diagrams: {line}")
    yield "@endmsc"


def for_doxygen(diagram):
    kind, *lines = [line.strip() for line in diagram.splitlines()]
    draw = {"stateDiagram-v2": state_diagram, "sequenceDiagram": sequence_diagram}
    return "\n".join(draw[kind](lines))
