# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""Holds lines that zyslicer has written with --json, and its document, against their schema.

Usage: json_schema.py SCHEMA DOCUMENT LINES...
"""

import json
import pathlib
import re
import sys

import jsonschema


def main():
    schema_file, document, *lines_files = map(pathlib.Path, sys.argv[1:])
    schema = json.loads(schema_file.read_text())
    validator = jsonschema.Draft202012Validator(schema)
    validator.check_schema(schema)
    kinds = {kind["properties"]["event"]["const"]: kind for kind in schema["$defs"].values()
             if "event" in kind.get("properties", {})}
    lines = [line for file in lines_files for line in file.read_text().splitlines()]
    examples = re.findall(r"^\{.*\}$", document.read_text(), re.MULTILINE)
    failures = 0
    for line in lines + examples:
        value = json.loads(line)
        # The kind's own schema says more about what is wrong than "not one of all kinds".
        kind = kinds.get(value.get("event"))
        whole = {**kind, "$defs": schema["$defs"]} if kind else schema
        for error in jsonschema.Draft202012Validator(whole).iter_errors(value):
            failures += 1
            print(f"{error.message}\n  {line}")
        if kind and not validator.is_valid(value):
            failures += 1
            print(f"not one of the schema's lines\n  {line}")
    # Printers are found only where a daemon looks for them: the tests of that hold their lines
    # against the schema.
    elsewhere = {"found"}
    for what, seen in (("written", lines), ("in the document", examples)):
        ignored = elsewhere if seen is lines else set()
        missing = kinds.keys() - ignored - {json.loads(line).get("event") for line in seen}
        if missing:
            failures += 1
            print(f"never {what}: {', '.join(sorted(missing))}")
    print(f"{len(lines)} lines, {len(examples)} examples, {failures} failures")
    return failures > 0


sys.exit(main())
