# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""The schemas of docs/protocol/ and how a message is held against them."""

import json
import pathlib

import jsonschema

PROTOCOL = pathlib.Path(__file__).parents[2] / "docs" / "protocol"
DIRECTORY = PROTOCOL / "schemas"
DOCUMENT = PROTOCOL.with_suffix(".md")
KINDS = {"slicer": "request", "printer": "reply"}


def name_of(sender, message):
    """Which schema a message claims to follow."""
    if "cmd" not in message and sender == "printer":
        return "version-check-reply" if "version" in message else "start-file-reply"
    return f"{message.get('cmd')}".lower().replace("_", "-") + "-" + KINDS[sender]


class Rules:
    """One schema, ready to judge; references are looked up beside its file."""

    def __init__(self, schema, document=None):
        jsonschema.Draft202012Validator.check_schema(schema)
        self.schema = schema
        self._resolver = jsonschema.RefResolver(DIRECTORY.as_uri() + "/", document or schema)
        self._rules = jsonschema.Draft202012Validator(schema, resolver=self._resolver)

    def allow(self, message):
        return self._rules.is_valid(message)

    def complaint(self, message):
        error = jsonschema.exceptions.best_match(self._rules.iter_errors(message))
        return f"{error.json_path}: {error.message}" if error else ""

    def forms(self):
        """The rules of each form by its name; a message with one form has an unnamed one."""
        return {form["$ref"].rpartition("/")[2]:
                Rules(self._resolver.resolve(form["$ref"])[1], self.schema)
                for form in self.schema.get("oneOf", [])} or {"": self}

    def closed(self):
        """The schemas are open, since peers ignore keys that they do not know; ours add none."""
        return Rules({**self.schema, "unevaluatedProperties": False})


class Schemas:
    """All messages' rules by name, which is the file's without its ending."""

    def __init__(self):
        self.rules = {path.stem: Rules(json.loads(path.read_text()))
                      for path in sorted(DIRECTORY.glob("*-re*.json"))}
        self.closed = {name: rules.closed() for name, rules in self.rules.items()}
        self.forms = {name: rules.forms() for name, rules in self.rules.items()}

    def complaint(self, sender, text, ours=True):
        """What is wrong with a message of "slicer" or "printer"; empty when nothing is."""
        try:
            message = json.loads(text)
        except ValueError as error:
            return f"no JSON: {error}"
        if not isinstance(message, dict):
            return "no JSON object"
        name = name_of(sender, message)
        if name not in self.rules:
            return f"{name} is no message of the protocol"
        complaint = self.rules[name].complaint(message)
        if ours and not complaint:
            complaint = self.closed[name].complaint(message)
        return complaint and f"{name}: {complaint}"

    def form(self, sender, text):
        """The name of a right message's schema and form."""
        message = json.loads(text)
        name = name_of(sender, message)
        return name, next(form for form, rules in self.forms[name].items() if rules.allow(message))
