# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Writes the guides as Doxygen takes them: pages with anchors, links between them, diagrams.

Usage: guides.py SOURCE_DIRECTORY OUTPUT_DIRECTORY
"""

import os
import pathlib
import re
import sys

import markdown
import mermaid

# In the order of the site's menu; the first is its front page. Others of docs/ come between.
FOR_USERS = ["README.md", "docs/slicer.md", "docs/printer-host.md", "docs/protocol.md"]
FOR_DEVELOPERS = ["docs/architecture.md", "CONTRIBUTING.md", "SECURITY.md", "tests/kit/README.md",
                  "fuzz/README.md", "benchmarks/README.md", "benchmarks/peers/README.md",
                  "CHANGELOG.md"]
# Copied as they are: where to in the site.
FILES = {"LICENSE": "LICENSE", "docs/protocol": "protocol", "docs/images": "."}


def names(root):
    found = {str(path.relative_to(root)) for path in root.glob("docs/*.md")}
    return [*FOR_USERS, *sorted(found - {*FOR_USERS, *FOR_DEVELOPERS}), *FOR_DEVELOPERS]


def page_name(guide):
    """README.md is the front page; tests/kit/README.md is "guide-tests-kit"."""
    path = pathlib.PurePath(guide)
    words = [part for part in path.with_suffix("").parts if part not in ("docs", "README")]
    return "-".join(["guide", *words]) if words else "mainpage"


def place(path):
    """Where a file that is no guide is in the site; None when it is not there."""
    for source, target in FILES.items():
        if path == source or path.startswith(source + "/"):
            return os.path.normpath(target + path[len(source):])
    return None


class Guide:
    def __init__(self, root, name):
        self.name, self.siblings = name, names(root)
        self.text = (root / name).read_text()
        self.has_title = False

    def for_doxygen(self):
        return "\n".join(self.part(language, body)
                         for language, body in markdown.parts(self.text)) + "\n"

    def part(self, language, body):
        if language == "mermaid":
            return mermaid.for_doxygen(body)
        if language is not None:
            known = {"cpp": "{.cpp}"}.get(language, "{.txt}")
            return f"~~~~{known}\n{body}\n~~~~"
        body = markdown.LINK.sub(self.link, body)
        return "\n".join(self.heading(line) for line in body.splitlines())

    def heading(self, line):
        match = markdown.HEADING.match(line)
        if not match:
            return line
        if not self.has_title:
            self.has_title = True
            return f"{line} {{#{page_name(self.name)}}}"
        return f"{line} {{#{page_name(self.name)}-{markdown.slug(match[2])}}}"

    def link(self, match):
        code, picture, text, target = match.groups()
        if code or re.match(r"\w+:", target):
            return match[0]
        path, _, anchor = target.partition("#")
        folder = os.path.dirname(self.name)
        path = os.path.normpath(os.path.join(folder, path)) if path else self.name
        if path in self.siblings:
            page = page_name(path)
            return f"[{text}](@ref {page}{'-' + anchor if anchor else ''})"
        if there := place(path):
            return f"{picture}[{text}]({there})"
        return text  # the site holds no sources


def main():
    root, output = map(pathlib.Path, sys.argv[1:])
    output.mkdir(parents=True, exist_ok=True)
    for number, name in enumerate(names(root)):
        page = output / f"{number:02}-{page_name(name)}.md"
        page.write_text(Guide(root, name).for_doxygen())


if __name__ == "__main__":
    main()
