#!/usr/bin/env python3
"""What check_semantics.py finds and what it lets pass."""

import unittest

from check_semantics import complaints, listed_tests

TESTS = {"Walker.runs", "Walker.resets"}


def check(document):
    return complaints("doc.md", document, TESTS)


class CheckSemantics(unittest.TestCase):
    def test_passes_a_rule_that_names_tests_that_exist(self):
        self.assertEqual(check("# Title\n\n### Rule\nText.\n\nTests: `Walker.runs`,\n"
                               "`Walker.resets`\n"), [])

    def test_finds_a_rule_without_tests(self):
        self.assertEqual(check("### One\nTests: `Walker.runs`\n\n### Two\nText `Walker.runs`.\n"),
                         ['doc.md:4: the rule "Two" names no test; '
                          'end it with "Tests: `Suite.name`"'])

    def test_finds_a_name_that_is_no_test_and_names_the_nearest(self):
        self.assertEqual(check("### One\nTests: `Walker.runs`,\n`Walker.reset`\n"),
                         ['doc.md:3: there is no test "Walker.reset"; '
                          'the nearest is "Walker.resets"'])

    def test_does_not_take_code_for_rules(self):
        self.assertEqual(check("### One\n```\n### no rule\n```\n\nTests: `Walker.runs`\n"), [])

    def test_finds_a_document_without_rules(self):
        self.assertEqual(len(check("# Title\n")), 1)

    def test_finds_that_there_are_no_tests(self):
        self.assertEqual(len(complaints("doc.md", "### One\nTests: `Walker.runs`\n", set())), 1)

    def test_reads_the_listing_of_a_test_program(self):
        self.assertEqual(listed_tests("Running main()\nWalker.\n  runs\n  resets  # GetParam() = 1\n"
                                      "Typed/0.  # TypeParam = int\n  works\n"),
                         {"Walker.runs", "Walker.resets", "Typed/0.works"})


if __name__ == "__main__":
    unittest.main()
