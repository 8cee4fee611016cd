#!/usr/bin/env python3
"""Checks the schemas of the bench's answers, docs/json/*.schema.json.

    check_json.py [--root ROOT] [ANSWER...]

- Each one is a schema: JSON Schema, draft 2020-12, and every reference in it leads somewhere.
- Each answer, a file that `tambench COMMAND --json` printed, is as its command's schema says.

Exits 1 when findings are left. The tests of the bench check every answer against these schemas too, with a reader of
their own; this script reads the schemas with a library.
"""
import json
import sys
from pathlib import Path

from jsonschema import Draft202012Validator, RefResolver
from jsonschema.exceptions import RefResolutionError, SchemaError


def references(schema):
    """All values of "$ref" in a schema."""
    if isinstance(schema, dict):
        for key, value in schema.items():
            if key == "$ref":
                yield value
            else:
                yield from references(value)
    elif isinstance(schema, list):
        for value in schema:
            yield from references(value)


class Schemas:
    """The schemas of a folder; they refer to each other by their files' names."""

    def __init__(self, folder):
        self.folder = folder
        self.by_file = {path.name: json.loads(path.read_text(encoding="utf-8"))
                        for path in sorted(folder.glob("*.schema.json"))}

    def resolver(self, file):
        base = self.folder.as_uri() + "/"
        return RefResolver(base + file, self.by_file[file], {base + name: one for name, one in self.by_file.items()})

    def findings(self):
        if not self.by_file:
            yield f"{self.folder}: there is no schema"
        for file, schema in self.by_file.items():
            try:
                Draft202012Validator.check_schema(schema)
            except SchemaError as error:
                yield f"{file}: {error.message}"
            for reference in references(schema):
                try:
                    self.resolver(file).resolve(reference)
                except RefResolutionError as error:
                    yield f"{file}: {reference}: {error}"

    def findings_of(self, path):
        """What an answer has against its schema."""
        answer = json.loads(Path(path).read_text(encoding="utf-8"))
        is_several = "summary" in answer and answer["command"] != "check"
        name = "several" if is_several else answer["command"].replace(" ", "-")
        file = name + ".schema.json"
        if file not in self.by_file:
            yield f"{path}: there is no schema {file}"
            return
        validator = Draft202012Validator(self.by_file[file], resolver=self.resolver(file))
        for error in validator.iter_errors(answer):
            yield f"{path}: /{'/'.join(map(str, error.absolute_path))}: {error.message[:200]}"


def main(arguments):
    root = Path(__file__).resolve().parent.parent
    if arguments[:1] == ["--root"]:
        root, arguments = Path(arguments[1]).resolve(), arguments[2:]
    schemas = Schemas(root / "docs" / "json")
    findings = list(schemas.findings())
    for answer in arguments:
        findings += schemas.findings_of(answer)
    for finding in findings:
        print(finding)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
