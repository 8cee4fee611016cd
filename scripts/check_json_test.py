#!/usr/bin/env python3
"""Gives check_json.py faulty schemas and answers."""
import contextlib
import io
import json
import tempfile
import unittest
from pathlib import Path

import check_json

COMMON = {"$defs": {"name": {"type": "string"}}}
ABOUT = {"type": "object", "properties": {"command": {"const": "about"},
                                          "name": {"$ref": "common.schema.json#/$defs/name"}},
         "required": ["name"]}


class CheckJsonTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.root = Path(self.folder.name)
        (self.root / "docs" / "json").mkdir(parents=True)
        self.write("common", COMMON)
        self.write("about", ABOUT)

    def tearDown(self):
        self.folder.cleanup()

    def write(self, name, schema):
        (self.root / "docs" / "json" / f"{name}.schema.json").write_text(json.dumps(schema))

    def run_check(self, *answers):
        files = []
        for answer in answers:
            files.append(str(self.root / f"answer{len(files)}.json"))
            Path(files[-1]).write_text(json.dumps(answer))
        said = io.StringIO()
        with contextlib.redirect_stdout(said):
            status = check_json.main(["--root", str(self.root), *files])
        return status, said.getvalue()

    def test_takes_what_is_right(self):
        self.assertEqual((0, ""), self.run_check({"command": "about", "name": "x"}))

    def test_finds_what_is_no_schema(self):
        self.write("about", {"type": "text"})
        self.assertEqual(1, self.run_check()[0])

    def test_finds_a_reference_to_nothing(self):
        self.write("common", {"$defs": {}})
        status, said = self.run_check()
        self.assertEqual(1, status)
        self.assertIn("about.schema.json: common.schema.json#/$defs/name", said)

    def test_finds_a_wrong_answer(self):
        status, said = self.run_check({"command": "about", "name": 1})
        self.assertEqual(1, status)
        self.assertIn("/name: 1 is not of type 'string'", said)

    def test_finds_an_answer_without_a_schema(self):
        status, said = self.run_check({"command": "device tree"})
        self.assertEqual(1, status)
        self.assertIn("there is no schema device-tree.schema.json", said)


if __name__ == "__main__":
    unittest.main()
