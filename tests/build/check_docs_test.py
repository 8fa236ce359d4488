#!/usr/bin/env python3
"""What check_docs.py finds and what it lets pass."""

import os
import pathlib
import tempfile
import unittest

from check_docs import check_links, check_part, check_session, claims_of


class CheckDocs(unittest.TestCase):
    def test_finds_the_claims_with_their_lines_and_no_other_blocks(self):
        text = "One\n\n```sh\nls\n```\n\n```json a/b.json\n{}\n```\n"
        self.assertEqual(list(claims_of(text)), [(7, "json", "a/b.json", "{}\n")])

    def test_passes_lines_that_stand_together_in_the_file(self):
        self.assertEqual(check_part("b\nc\n", "a\nb\nc\nd\n", "file"), [])

    def test_finds_lines_that_do_not_stand_together_in_the_file(self):
        self.assertEqual(len(check_part("a\nc\n", "a\nb\nc\n", "file")), 1)

    def test_finds_a_part_of_a_line(self):
        self.assertEqual(len(check_part("b\n", "ab\n", "file")), 1)

    def test_passes_commands_that_print_what_the_document_says(self):
        self.assertEqual(self.session("$ echo one\none\n$ true\n$ echo two\ntwo\n"), [])

    def test_finds_a_command_that_prints_something_else(self):
        self.assertEqual(len(self.session("$ echo one\none\n$ echo two\nthree\n")), 1)

    def test_finds_output_that_the_document_leaves_out(self):
        self.assertEqual(len(self.session("$ echo one\n")), 1)

    def test_finds_a_session_without_commands(self):
        self.assertEqual(len(self.session("echo one\n")), 1)

    def test_follows_relative_links_to_files_and_headings(self):
        self.assertEqual(self.links("[a](other.md) [b](other.md#two-words) [c](https://a.b)"), [])

    def test_finds_a_link_to_a_file_that_is_not_there(self):
        self.assertEqual(self.links("[a](another.md)"), ["the link to another.md leads nowhere"])

    def test_finds_a_link_to_a_heading_that_is_not_there(self):
        self.assertEqual(
            self.links("[a](other.md#three)"), ["the link to other.md#three names no heading"]
        )

    def session(self, content):
        return check_session(content, ".", os.environ)

    def links(self, text):
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "other.md").write_text("# Two words\n", encoding="utf-8")
            return check_links(pathlib.Path(folder, "this.md"), text)


if __name__ == "__main__":
    unittest.main()
