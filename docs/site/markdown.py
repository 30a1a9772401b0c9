# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""What the guides consist of: fenced blocks, headings with their anchors, links."""

import re

FENCE = re.compile(r"^```(\w*)$")
HEADING = re.compile(r"^(#+) (.+)$")
# Code spans come first, so that what they hold is no link.
LINK = re.compile(r"(`[^`]+`)|(!?)\[((?:[^\]`]|`[^`]*`)*)\]\(([^)\s]+)\)")


def parts(text):
    """Pairs of a fence's language and the text inside, and of None and the text between fences."""
    language, lines = None, []
    for line in text.splitlines():
        fence = FENCE.match(line)
        if fence is None or (language is not None and fence[1]):
            lines.append(line)
            continue
        if lines:
            yield language, "\n".join(lines)
        language, lines = (fence[1] if language is None else None), []
    if language is not None:
        raise SystemExit("a fence is not closed")
    if lines:
        yield None, "\n".join(lines)


def prose(text):
    return "\n".join(body for language, body in parts(text) if language is None)


def slug(heading):
    """The anchor that hosting sites give a heading."""
    kept = re.sub(r"[^\w\- ]", "", heading.lower())
    return kept.replace(" ", "-")


def headings(text):
    return [HEADING.match(line)[2] for line in prose(text).splitlines() if HEADING.match(line)]


def links(text):
    """The targets of all links and pictures."""
    return [match[4] for match in LINK.finditer(prose(text)) if match[4]]
