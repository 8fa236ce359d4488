#!/usr/bin/env python3
"""Which changes scripts/mutate makes of a source, and which it does not."""

import importlib.machinery
import importlib.util
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "mutate"
LOADER = importlib.machinery.SourceFileLoader("mutate", str(SCRIPT))
mutate = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", LOADER))
sys.modules["mutate"] = mutate
LOADER.exec_module(mutate)


def body(source):
    """The changes of the body of a function, as (before, after)."""
    return changes("bool f(const QString& left)\n{\n" + source + "\n}\n")


def changes(source):
    return {(mutant.before, mutant.after) for mutant in mutate.mutants_of("f.cpp", source)}


class Mutants(unittest.TestCase):
    def test_turn_operators_and_constants(self):
        self.assertEqual(body("g = a == 1 && !b;") - {("g = a == 1 && !b", "")},
                         {("==", "!="), ("&&", "||"), ("1", "2"), ("!", "")})

    def test_leave_templates_comments_and_directives_alone(self):
        self.assertEqual(body("// a == b\n/* true */\nQList<int> empty;"), set())
        self.assertEqual(changes('#include "a"\n#define X 1\n'), set())

    def test_leave_signatures_and_pure_functions_alone(self):
        self.assertEqual(changes("class A {\n virtual bool f(int left) const = 0;\n};\n"), set())

    def test_change_a_text_once_though_it_comes_in_pieces(self):
        self.assertEqual(body('const char* t = "a"\n "b";'), {('"a"', '"a~"')})

    def test_turn_a_whole_condition_that_has_nothing_else_to_turn(self):
        self.assertIn(("a.isEmpty()", "!(a.isEmpty())"), body("if (a.isEmpty()) {\n}"))
        self.assertNotIn(("a == b", "!(a == b)"), body("if (a == b) {\n}"))

    def test_return_nothing_where_something_was_returned(self):
        self.assertIn(("a + b(c)", "{}"), body("return a + b(c);"))
        self.assertEqual(body("return std::nullopt;"), set())

    def test_drop_and_exchange_statements(self):
        found = body("a.run();\nb = c;\nint d = e();")
        self.assertIn(("a.run()", ""), found)
        self.assertIn(("b = c", ""), found)
        self.assertIn(("a.run();\nb = c;", "b = c;\na.run();"), found)
        self.assertFalse(any("int d" in before for before, _ in found))

    def test_exchange_checks_that_follow_each_other(self):
        self.assertIn(("if (a) {\n x();\n}\nif (b) {\n}", "if (b) {\n}\nif (a) {\n x();\n}"),
                      body("if (a) {\n x();\n}\nif (b) {\n}"))

    def test_exchange_branches(self):
        self.assertIn((" f(b, c) : d", " d : f(b, c)"), body("g(a ? f(b, c) : d, e);"))

    def test_swap_names_in_code(self):
        self.assertIn(("sourceRoot", "targetRoot"), body("run(sourceRoot);"))

    def test_are_named_by_the_line_and_not_by_its_number(self):
        source = "bool f()\n{\n    return  a ==  b;\n}\n"
        keys = {mutant.key() for mutant in mutate.mutants_of("f.cpp", source)}
        self.assertIn("f.cpp: return a == b;: `==` -> `!=`", keys)

    def test_have_names_of_their_own(self):
        for name, source in mutate.mutated_sources().items():
            keys = [mutant.key() for mutant in mutate.mutants_of(name, source)]
            self.assertEqual(len(keys), len(set(keys)), name)


class Sources(unittest.TestCase):
    def test_leave_the_declarations_of_the_host_out(self):
        names = mutate.mutated_sources()
        self.assertIn("engine/DependencyWalker.cpp", names)
        self.assertFalse([name for name in names if "/host/" in name])

    def test_have_many_mutants_in_every_command(self):
        for name, source in mutate.mutated_sources().items():
            if "/Commands/CommandSet" in name and name.endswith(".cpp"):
                self.assertGreater(len(list(mutate.mutants_of(name, source))), 20, name)


class Equivalents(unittest.TestCase):
    def test_name_mutants_that_there_are(self):
        keys = {
            mutant.key()
            for name, source in mutate.mutated_sources().items()
            for mutant in mutate.mutants_of(name, source)
        }
        for key, reason in mutate.known_equivalents().items():
            self.assertIn(key, keys)
            self.assertTrue(reason, f"no reason: {key}")


if __name__ == "__main__":
    unittest.main()
