#!/usr/bin/env python3
"""Checks the JSON Schema of descriptions with a validator.

The committed copy is the one that the program writes. It allows every description of this
repository, and the same with leaves written out and remarks added; it rejects each of them with
anything misspelled or of a wrong length, and what schema_cases.json says. What editors insert is
right where they insert it.

usage: check_schema.py ROOT UNITFLOW
"""

import copy
import json
import pathlib
import re
import subprocess
import sys

from jsonschema import Draft7Validator

COMMITTED = "docs/description.schema.json"
DESCRIPTIONS = [
    "examples/*/dependency/**/*.json",
    "tools/workspace/starter/dependency/**/*.json",
    "tools/types/examples/*.json",
]
KEYWORDS = re.compile(r"Type|Next|Commands|(Command|Condition)[A-Z]\w+")
STOP = re.compile(r"\$\{\d+(?::([^}]*)|\|([^,|]*)[^}]*\|)\}")


def main():
    root, program = (pathlib.Path(word).resolve() for word in sys.argv[1:])
    text = subprocess.run([program, "schema"], stdout=subprocess.PIPE, check=True).stdout
    schema = json.loads(text)
    Draft7Validator.check_schema(schema)

    problems = []
    if text != (root / COMMITTED).read_bytes():
        problems.append(f"{COMMITTED} is not up to date: unitflow schema >{COMMITTED}")
    checks = [
        check_descriptions(schema, root),
        check_cases(schema, pathlib.Path(__file__).with_name("schema_cases.json")),
        check_snippets(schema),
    ]
    for done, found in checks:
        problems += found
        if done == 0:
            problems.append("a check found nothing to look at")
    print(" + ".join(str(done) for done, _ in checks), "checks")
    for problem in problems:
        print(problem)
    return 1 if problems else 0


def check_descriptions(schema, root):
    """How many variants of descriptions were looked at, and what is wrong."""
    validator = Draft7Validator(schema)
    done = 0
    problems = []
    for pattern in DESCRIPTIONS:
        for file in sorted(root.glob(pattern)):
            name = file.relative_to(root)
            description = json.loads(file.read_text(encoding="utf-8"))
            for title, variant in [("", description), (", written out", written_out(description))]:
                done += 1
                for error in validator.iter_errors(variant):
                    problems.append(f"{name}{title}: {path_of(error)}: {error.message}")
            for title, variant in mistakes(description):
                done += 1
                if validator.is_valid(variant):
                    problems.append(f"{name} is allowed with {title}")
    return done, problems


def written_out(value, key=None):
    """The same description in its longest form, with remarks."""
    if is_leaf(key, value):
        return {"@comment": "a remark", "@value": value}
    if isinstance(value, dict):
        remark = {"@comment": {"any": ["value"]}}
        return {**{k: written_out(v, k) for k, v in value.items()}, **remark}
    return value


def is_leaf(key, value):
    return not isinstance(value, dict) and key is not None and not key.startswith("@")


def places(value, path=()):
    """The paths to everything inside."""
    members = value.items() if isinstance(value, dict) else enumerate(value)
    for key, member in members if isinstance(value, (dict, list)) else ():
        if not str(key).startswith("@"):
            yield (*path, key), member
            yield from places(member, (*path, key))


def changed(description, path, change):
    """A copy in which `change(parent, key)` was made to what is at a path."""
    result = copy.deepcopy(description)
    parent = result
    for key in path[:-1]:
        parent = parent[key]
    change(parent, path[-1])
    return result


def mistakes(description):
    """The description with one mistake each, and what it is."""

    def rename(parent, key):
        parent[key + "s"] = parent.pop(key)

    def set_to(value):
        return lambda parent, key: parent.__setitem__(key, value)

    for path, value in places(description):
        where = "/".join(str(key) for key in path)
        if isinstance(path[-1], str) and KEYWORDS.fullmatch(path[-1]):
            yield f"{where} misspelled", changed(description, path, rename)
        if path[-1] == "Type":
            yield f"{where} in small letters", changed(description, path, set_to(value.lower()))
            yield f"{where} missing", changed(description, path, lambda parent, key: parent.pop(key))
        if isinstance(path[-1], int) and isinstance(value, list):
            yield f"{where} empty", changed(description, path, set_to([]))
            yield f"{where} too long", changed(description, path, set_to(value + ["x"] * 3))
            yield f"{where} no row", changed(description, path, set_to("x"))
        if value in ("==", "!="):
            yield f"{where} another comparator", changed(description, path, set_to("<"))


def check_cases(schema, file):
    cases = json.loads(file.read_text(encoding="utf-8"))
    validator = Draft7Validator(schema)
    problems = []
    for case in cases["good"]:
        for error in validator.iter_errors(case["description"]):
            problems.append(f"{case['title']}: {path_of(error)}: {error.message}")
    for case in cases["bad"]:
        found = {path_of(error) for error in validator.iter_errors(case["description"])}
        if found != {case["at"]}:
            problems.append(f"{case['title']}: found at {sorted(found)} instead of {case['at']}")
    return len(cases["good"]) + len(cases["bad"]), problems


def path_of(error):
    return "/".join(str(key) for key in error.absolute_path)


def check_snippets(schema):
    """Every snippet is valid where it stands."""
    done = 0
    problems = []
    parts = [("the root", schema), *schema["definitions"].items()]
    for name, part in parts:
        validator = Draft7Validator({**part, "definitions": schema["definitions"]})
        for snippet in part.get("defaultSnippets", []):
            done += 1
            for error in validator.iter_errors(filled_in(snippet["body"])):
                problems.append(f"snippet of {name}: {path_of(error)}: {error.message}")
    return done, problems


def filled_in(body):
    """A snippet as it is when its stops were passed by."""
    text = STOP.sub(lambda stop: stop[1] or stop[2] or "", json.dumps(body))
    return json.loads(text)


if __name__ == "__main__":
    sys.exit(main())
