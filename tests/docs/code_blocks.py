# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Compares the guides' code with what is compiled and run; exit code 1 names what is not there.

C++ has to stand, but for its indentation, in a file of examples/ that this build compiles, CMake in
the program that the test of the package builds. Shell commands have to name commands of ./dev and
presets that there are. A test that a guide names beside its file has to stand there.

Usage: code_blocks.py SOURCE_DIRECTORY BUILD_DIRECTORY
"""

import json
import pathlib
import re
import sys
import textwrap

import guides
import markdown

CONSUMER = "tests/package/consumer/CMakeLists.txt"


def holds(text, block):
    """Whether the lines of the block follow each other in the text, indented as a whole."""
    lines, wanted = text.splitlines(), textwrap.dedent(block).strip("\n").splitlines()
    return any(textwrap.dedent("\n".join(lines[at:at + len(wanted)])).splitlines() == wanted
               for at in range(len(lines) - len(wanted) + 1))


def compiled_examples(root, build):
    commands = json.loads((build / "compile_commands.json").read_text())
    examples = (root / "examples").resolve()
    files = {pathlib.Path(command["file"]).resolve() for command in commands}
    return [file.read_text() for file in sorted(files) if examples in file.parents]


class Checker:
    def __init__(self, root, build):
        self.root = root
        self.named = 0
        self.examples = compiled_examples(root, build)
        self.consumer = (root / CONSUMER).read_text()
        self.commands = set(re.findall(r"^command_(\w+)\(\)", (root / "dev").read_text(), re.M))
        presets = json.loads((root / "CMakePresets.json").read_text())["configurePresets"]
        self.presets = {preset["name"] for preset in presets}

    def complaint(self, language, block):
        if language == "cpp" and not any(holds(text, block) for text in self.examples):
            return "is in no example that is compiled"
        if language == "cmake" and not holds(self.consumer, block):
            return f"is not in {CONSUMER}"
        if language == "sh":
            unknown = set(re.findall(r"\./dev (\w+)", block)) - self.commands
            unknown |= set(re.findall(r"--preset (\w+)", block)) - self.presets
            if unknown:
                return f"names what is not there: {', '.join(sorted(unknown))}"
        return None

    def missing_tests(self, guide):
        """Of the form `file` `name`."""
        for file, name in re.findall(r"`(tests/[\w/]+\.\w+)` \(?`(\w+)`", guide):
            self.named += 1
            if name not in (self.root / file).read_text():
                yield f"{file} has no {name}"


def main():
    root, build = map(pathlib.Path, sys.argv[1:])
    checker = Checker(root, build)
    checked, wrong = 0, 0
    for name in guides.names(root):
        guide = (root / name).read_text()
        for missing in checker.missing_tests(guide):
            wrong += 1
            print(f"{name}: {missing}")
        for language, block in markdown.parts(guide):
            complaint = checker.complaint(language, block)
            checked += language in ("cpp", "cmake", "sh")
            if complaint:
                wrong += 1
                print(f"{name}: this {language} block {complaint}:\n{block}\n")
    print(f"{checked} blocks compared and {checker.named} tests found, {wrong} wrong")
    return wrong > 0 or checked == 0 or checker.named == 0


sys.exit(main())
