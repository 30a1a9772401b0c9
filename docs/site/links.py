# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Follows each link of the guides, and of the site made of them; exit code 1 names the broken ones.

Links to other hosts are looked at, not fetched.

Usage: links.py SOURCE_DIRECTORY [SITE]
"""

import html.parser
import pathlib
import re
import subprocess
import sys
import urllib.parse

import guides
import markdown

EXTERNAL = re.compile(r"https://[\w.-]+\.\w+(/\S*)?|mailto:\S+@\S+")


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.targets, self.anchors = set(), {""}
        self.feed(path.read_text())

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src", "data") and value:
                self.targets.add(value)
            elif name == "id" or (name == "name" and tag == "a"):
                self.anchors.add(value)


class Guide:
    def __init__(self, path):
        text = path.read_text()
        self.targets = set(markdown.links(text))
        self.anchors = {""} | set(map(markdown.slug, markdown.headings(text)))


def broken(pages):
    """The links that lead nowhere, of pages by their paths."""
    for path, page in pages.items():
        for target in sorted(page.targets):
            if re.match(r"\w+:", target):
                if not EXTERNAL.fullmatch(target) and not target.startswith("javascript:"):
                    yield f"{path}: {target} is no address"
                continue
            name, _, anchor = urllib.parse.unquote(target).partition("#")
            there = (path.parent / name).resolve() if name else path
            if not there.exists():
                yield f"{path}: {target} is not there"
            elif there in pages and anchor not in pages[there].anchors:
                yield f"{path}: {target} has no such anchor"


def tracked_guides(root):
    listed = subprocess.run(["git", "-C", root, "ls-files", "*.md"], capture_output=True, text=True)
    names = listed.stdout.split() if listed.returncode == 0 else guides.names(root)
    return {path.resolve(): Guide(path) for path in (root / name for name in names)}


def main():
    root = pathlib.Path(sys.argv[1])
    faults = list(broken(tracked_guides(root)))
    if len(sys.argv) > 2:
        site = pathlib.Path(sys.argv[2]).resolve()
        pages = {path: Page(path) for path in site.rglob("*.html")}
        if not pages:
            faults.append(f"{site} holds no page")
        faults += broken(pages)
    print(*faults, sep="\n", end="\n" if faults else "")
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main())
