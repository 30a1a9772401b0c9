# SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
# SPDX-License-Identifier: MIT
"""The schemas against the samples of the vocabulary, of the documents and of their own.

Usage: test_samples.py ZY_MESSAGES [UNITTEST ARGUMENT...]
"""

import json
import re
import subprocess
import sys
import unittest

import schemas

SENDERS = {kind: sender for sender, kind in schemas.KINDS.items()}
OTHER_TYPES = ("text", 7, True, None, [], {})
# Cancels are echoed, and slicers' applications choose the parameters.
TAKES_ANY_KEY = {"cancel-file-request", "cancel-file-reply", "print-para-set-request"}


def examples(forms):
    """The schemas' own samples, each with the rules of its form."""
    return [(rules, sample) for rules in forms.values() for sample in rules.schema["examples"]]


def command(name):
    return name.rpartition("-")[0]


class Samples(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.vocabulary = json.loads(subprocess.check_output([sys.argv[1]]))
        cls.schemas = schemas.Schemas()

    def assert_valid(self, sender, text):
        self.assertEqual("", self.schemas.complaint(sender, text), text)

    def test_each_sample_of_the_vocabulary_follows_its_schema(self):
        seen = set()
        for row in self.vocabulary["samples"]:
            for kind, sender in SENDERS.items():
                if row[kind]:
                    self.assert_valid(sender, row[kind])
                    seen.add(schemas.name_of(sender, json.loads(row[kind])))
        self.assertEqual(set(self.schemas.rules), seen)

    def test_the_lists_of_words_are_those_of_the_vocabulary(self):
        def enumeration(name, key):
            return self.schemas.rules[name].schema["properties"][key]["enum"]

        self.assertEqual(self.vocabulary["printStart"], enumeration("start-print-reply", "status"))
        self.assertEqual(self.vocabulary["printStates"] + [""],
                         enumeration("get-print-status-reply", "printStatus"))
        definitions = json.loads((schemas.DIRECTORY / "definitions.json").read_text())["$defs"]
        self.assertEqual(self.vocabulary["results"], definitions["result"]["enum"])
        parameters = self.schemas.rules["print-para-set-request"].schema["properties"]
        self.assertEqual({"cmd", "token", *self.vocabulary["parameters"]}, set(parameters))

    def test_each_example_follows_its_own_schema_and_that_of_no_other_command(self):
        for owner, forms in self.schemas.forms.items():
            for _, sample in examples(forms):
                for name, rules in self.schemas.closed.items():
                    if name == owner or command(name) != command(owner):
                        with self.subTest(owner=owner, name=name, sample=sample):
                            self.assertEqual(name == owner, rules.allow(sample))

    def test_each_form_has_an_example_and_no_two_forms_share_it(self):
        for name, forms in self.schemas.forms.items():
            for form, sample in examples(forms):
                with self.subTest(name=name, sample=sample):
                    self.assertEqual([form], [rules for rules in forms.values()
                                              if rules.allow(sample)])

    def test_a_missing_key_is_noticed(self):
        for name, forms in self.schemas.forms.items():
            for form, sample in examples(forms):
                for key in form.schema["required"]:
                    with self.subTest(name=name, key=key):
                        less = {other: sample[other] for other in sample if other != key}
                        self.assertFalse(form.allow(less))

    def test_a_changed_type_is_noticed(self):
        for name, forms in self.schemas.forms.items():
            for form, sample in examples(forms):
                for key in form.schema["properties"].keys() & sample.keys():
                    for value in OTHER_TYPES:
                        if type(value) is not type(sample[key]):
                            with self.subTest(name=name, key=key, value=value):
                                self.assertFalse(form.allow({**sample, key: value}))

    def test_a_key_that_is_not_described_is_noticed_in_messages_of_this_library(self):
        for name, forms in self.schemas.forms.items():
            sender = SENDERS[name.rpartition("-")[2]]
            for _, sample in examples(forms):
                with self.subTest(name=name):
                    text = json.dumps({**sample, "unheardOf": "1"})
                    self.assertEqual("", self.schemas.complaint(sender, text, ours=False))
                    self.assertEqual(name in TAKES_ANY_KEY,
                                     not self.schemas.complaint(sender, text))

    def test_what_is_no_object_follows_no_schema(self):
        for name, rules in self.schemas.rules.items():
            for value in ("text", 7, None, [], [{"cmd": "START_FILE"}]):
                with self.subTest(name=name, value=value):
                    self.assertFalse(rules.allow(value))

    def test_an_additive_key_is_never_required(self):
        additive = {name: {key for key, value in rules.schema.get("properties", {}).items()
                           if value.get("x-additive")}
                    for name, rules in self.schemas.rules.items()}
        self.assertEqual({"token", "sha256", "window"}, additive["start-file-request"])
        for name, keys in additive.items():
            self.assertFalse(keys & set(self.schemas.rules[name].schema.get("required", [])), name)

    def test_values_are_as_narrow_as_the_protocol(self):
        for name, key, values in (
                ("start-file-request", "size", ("-1", "05", " 5", "0x5", "")),
                ("start-file-request", "offset", ("1",)),
                ("start-file-request", "key", ("", "0a", "ABCDEF12", "abcdef12", "ffffffff00000000")),
                ("start-file-request", "sha256", ("", "0" * 63, "0" * 65, "g" * 64)),
                ("start-data-reply", "errorcode", (1, 3, 4)),
                ("start-data-reply", "received", ("-2", "")),
                ("cancel-file-reply", "errorcode", (1,)),
                ("print-para-set-reply", "status", ("CMD_SUCCES",)),
                ("print-pause-reply", "status", ("", "CMD_SUCCESS"))):
            rules = self.schemas.rules[name]
            sample = rules.schema["examples"][-1]
            for value in values:
                with self.subTest(name=name, key=key, value=value):
                    self.assertFalse(rules.allow({**sample, key: value}))

    def test_each_json_example_of_the_document_follows_its_schema(self):
        seen, blocks = set(), re.findall(r"^```\n(.*?)^```", schemas.DOCUMENT.read_text(),
                                         re.DOTALL | re.MULTILINE)
        for line in "".join(blocks).splitlines():
            sender, _, what = line.partition(" ")
            what = what.strip()
            self.assertIn(sender, schemas.KINDS, line)
            if not what.startswith("(binary message, "):
                self.assert_valid(sender, what)
                seen.add(schemas.name_of(sender, json.loads(what)))
        self.assertEqual(set(self.schemas.rules), seen)

    def test_the_asyncapi_document_refers_to_each_schema(self):
        text = (schemas.PROTOCOL / "asyncapi.yaml").read_text()
        referred = re.findall(r"\$ref: schemas/(\S+)\.json\n", text)
        self.assertEqual(sorted(self.schemas.rules), sorted(referred))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[1:])
