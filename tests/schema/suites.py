# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Runs the tests that exchange messages, and holds each message against the schemas.

The peers of the C++ tests record what they send and receive; before each zyprinter stands the
validating proxy. The library's and the programs' messages may have no key but those described. A
message that a test wrote by hand may, but has to be right as well, unless malformed.txt names the
test: there it is misspelt on purpose, and what it makes the library echo goes with it.

Usage: suites.py CTEST BUILD_DIRECTORY PROXIED_PRINTER
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile

import schemas

SUITES = (r"^(server_|client_|sender_|endtoend_|slicer_(send|print|failures|recovery|fleet)$"
          r"|panel_(clicks|explains)$)")
# The same messages once more.
AGAIN = "_without_glib$"
# Needs a file that can be written but not read, which there is none of for root.
UNSEEN = {("start-file-reply", "acceptedNameless")}


def malformed_tests():
    text = pathlib.Path(__file__).with_name("malformed.txt").read_text()
    return {line for line in text.splitlines() if line and not line.startswith("#")}


def record(ctest, build, printer, directory):
    environment = {**os.environ, "ZYWS_MESSAGE_LOG": directory, "ZYWS_PRINTER": printer}
    subprocess.run([ctest, "--test-dir", build, "--tests-regex", SUITES, "--exclude-regex", AGAIN,
                    "--output-on-failure", "--no-tests=error", "--parallel",
                    str(os.cpu_count())], env=environment, check=True)
    return [json.loads(line) for log in sorted(pathlib.Path(directory).iterdir())
            for line in log.read_text().splitlines()]


def judge(messages):
    """What is wrong with the messages, the tests apart; and the forms that were seen."""
    rules, wrong, seen = schemas.Schemas(), {}, set()
    for message in messages:
        sender, text = message["sender"], message["text"]
        complaint = rules.complaint(sender, text, ours=not message["handmade"])
        if complaint:
            wrong.setdefault(message["test"], []).append(f"the {sender} sent {text}\n    {complaint}")
        else:
            seen.add(rules.form(sender, text))
    return wrong, seen, {(name, form) for name, forms in rules.forms.items() for form in forms}


def main():
    with tempfile.TemporaryDirectory() as directory:
        messages = record(*sys.argv[1:], directory)
    wrong, seen, described = judge(messages)
    named = malformed_tests()
    faults = [f"{test}: {complaint}" for test, complaints in wrong.items()
              if test.rpartition(" ")[2] not in named for complaint in complaints]
    functions = {test.rpartition(" ")[2] for test in wrong}
    faults += [f"{test} sends nothing malformed, but malformed.txt names it"
               for test in sorted(named - functions)]
    faults += [f"no test sent {name} {form}" for name, form in sorted(described - seen - UNSEEN)]
    print(*faults, sep="\n")
    if faults:
        print("A test that misspells on purpose has to be named in malformed.txt.")
    print(f"{len(messages)} messages, {sum(map(len, wrong.values()))} of them not right, "
          f"{len(named)} tests named in malformed.txt")
    return bool(faults)


sys.exit(main())
