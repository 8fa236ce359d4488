#!/usr/bin/env python3
"""Checks that every rule of the semantics document names tests that exist.

Usage: check_semantics.py DOCUMENT TEST_PROGRAM...

A rule is a heading of the third level. Its tests stand in a paragraph that starts with "Tests:",
each as `Suite.name`. The test programs are asked for their tests by --gtest_list_tests.
"""

import difflib
import re
import subprocess
import sys

HEADING = re.compile(r"(#+) (.*)")
CITATION = re.compile(r"`([^`]*)`")


def listed_tests(listing):
    """The full names in the output of --gtest_list_tests."""
    tests = set()
    suite = ""
    for line in listing.splitlines():
        name = line.split("#")[0].strip()
        if line.startswith("  "):
            tests.add(suite + name)
        elif name.endswith("."):
            suite = name
    return tests


def rules(document):
    """For each rule: line number, title and the cited tests as pairs of line number and name."""
    found = []
    in_tests = in_code = False
    for number, line in enumerate(document.splitlines(), 1):
        if line.startswith("```"):
            in_code = not in_code
        heading = None if in_code else HEADING.match(line)
        if heading:
            in_tests = False
            if len(heading[1]) == 3:
                found.append((number, heading[2], []))
        elif not line.strip():
            in_tests = False
        elif line.startswith("Tests:"):
            in_tests = True
        if in_tests and found:
            found[-1][2].extend((number, name) for name in CITATION.findall(line))
    return found


def complaints(path, document, tests):
    """What is wrong with the document, in its order."""
    found = rules(document)
    if not found:
        return [f"{path}:1: no rule found; a rule is a heading that starts with ###"]
    if not tests:
        return [f"{path}:1: the test programs list no test at all"]
    wrong = []
    for number, title, cited in found:
        if not cited:
            wrong.append(f'{path}:{number}: the rule "{title}" names no test; '
                         'end it with "Tests: `Suite.name`"')
        for line, name in cited:
            if name not in tests:
                near = difflib.get_close_matches(name, tests, n=1, cutoff=0)
                wrong.append(f'{path}:{line}: there is no test "{name}"; '
                             f'the nearest is "{near[0]}"')
    return wrong


def main():
    path, programs = sys.argv[1], sys.argv[2:]
    tests = set()
    for program in programs:
        listing = subprocess.run([program, "--gtest_list_tests"], check=True, text=True,
                                 stdout=subprocess.PIPE).stdout
        tests |= listed_tests(listing)
    with open(path, encoding="utf-8") as file:
        document = file.read()
    wrong = complaints(path, document, tests)
    for complaint in wrong:
        print(complaint, file=sys.stderr)
    if not wrong:
        found = rules(document)
        cited = {name for rule in found for _, name in rule[2]}
        print(f"{len(found)} rules name {len(cited)} of {len(tests)} tests")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
