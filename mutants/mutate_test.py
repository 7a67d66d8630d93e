#!/usr/bin/env python3
"""What the operators make of small texts, written down by hand."""

import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))

from mutate import mutants_of  # noqa: E402


def changes(text, operator=None):
    """The text of each mutant, a line for the sake of the reader."""
    return [" ".join(mutant.apply(text).split()) for mutant in mutants_of("a.cpp", text)
            if operator in (None, mutant.operator)]


class Operators(unittest.TestCase):
    def test_relational_goes_to_its_neighbours(self):
        self.assertEqual(changes("bool f() { return a < b; }", "relational"),
                         ["bool f() { return a <= b; }", "bool f() { return a >= b; }"])
        self.assertEqual(changes("std::map<int, long> m;", "relational"), [])

    def test_logical_is_exchanged_and_references_are_not(self):
        self.assertEqual(changes("bool f(T&& t) { return a && b; }", "logical"),
                         ["bool f(T&& t) { return a || b; }"])

    def test_a_condition_is_negated_unless_it_is_one_comparison(self):
        self.assertEqual(changes("void f() { if (a()) {} }", "condition negated"),
                         ["void f() { if (!(a())) {} }"])
        self.assertEqual(changes("void f() { if (!a()) {} }", "condition negated"),
                         ["void f() { if (a()) {} }"])
        self.assertEqual(changes("void f() { if (a == b) {} }", "condition negated"), [])
        self.assertEqual(changes("int f() { return a() ? 7 : 9; }", "condition negated"),
                         ["int f() { return !(a()) ? 7 : 9; }"])

    def test_constants_go_up_and_down(self):
        self.assertEqual(changes("int a = 0x10U;", "constant"),
                         ["int a = 17U;", "int a = 15U;"])

    def test_a_statement_is_dropped_and_a_declaration_is_not(self):
        self.assertEqual(
            changes("void f() { long x = g(); std::map<int, int> m; Type t(1); h(x); y = 1; }",
                    "statement dropped"),
            ["void f() { long x = g(); std::map<int, int> m; Type t(1); ; y = 1; }",
             "void f() { long x = g(); std::map<int, int> m; Type t(1); h(x); ; }"])

    def test_a_dropped_statement_leaves_the_lines_below_where_they_are(self):
        text = "void f() {\n    g(1,\n      2);\n    h();\n}\n"
        dropped = [m.apply(text) for m in mutants_of("a.cpp", text)
                   if m.operator == "statement dropped"]
        self.assertEqual(dropped[0], "void f() {\n    ;\n\n    h();\n}\n")

    def test_statements_outside_functions_stay(self):
        self.assertEqual(changes("struct S { int a; }; enum E { A, B };", "statement dropped"), [])

    def test_cells_of_tables_change_and_change_places(self):
        row = "constexpr auto t = { dbRow(Label::A, 3, -1) };"
        self.assertEqual(len(changes(row, "table cell")), 2)
        self.assertIn(changes(row, "table cell")[1],
                      ("constexpr auto t = { dbRow(Label::A, 3, -2) };",
                       "constexpr auto t = { dbRow(Label::A, 3, 0) };"))
        self.assertEqual(changes(row, "table cells swapped"),
                         ["constexpr auto t = { dbRow(Label::A, -1, 3) };"])
        self.assertEqual(changes(row, "constant"), [])

    def test_levels_of_traces_go_to_their_neighbours(self):
        self.assertEqual(changes('f(TraceLevel::Result, "a");', "trace level"),
                         ['f(TraceLevel::InvalidInput, "a");', 'f(TraceLevel::Detail, "a");'])

    def test_texts_change_where_they_end_or_begin(self):
        self.assertEqual(changes('f("abc", "", "%d", "a ");', "text"),
                         ['f("ab~", "", "%d", "a ");', 'f("abc", "~", "%d", "a ");',
                          'f("abc", "", "~%d", "a ");', 'f("abc", "", "%d", "~a ");'])

    def test_what_only_the_compiler_sees_stays(self):
        self.assertEqual(changes('#include "a.h"\n// if (a < 1) f();\nstatic_assert(1 < 2, "a");'), [])

    def test_a_macro_is_code(self):
        self.assertEqual(changes("#define M(a) do { if (a) { f(); } } while (false)\n",
                                 "condition negated"),
                         ["#define M(a) do { if (!(a)) { f(); } } while (false)"])

    def test_a_return_value_becomes_zero(self):
        self.assertEqual(changes("int f() { return g(1); }", "return value"),
                         ["int f() { return {}; }"])
        self.assertEqual(changes("int f() { return 0; }", "return value"), [])


class Ids(unittest.TestCase):
    def test_stay_when_lines_and_indents_move(self):
        before = [m.id for m in mutants_of("a.cpp", "int f() {\n    return a + 1;\n}\n")]
        after = [m.id for m in mutants_of("a.cpp", "\n// new\nint f() {\n        return a + 1;\n}\n")]
        self.assertEqual(before, after)

    def test_differ_for_equal_lines(self):
        ids = [m.id for m in mutants_of("a.cpp", "int f() {\n    a = 1;\n    a = 1;\n}\n")]
        self.assertEqual(len(ids), len(set(ids)))
        self.assertEqual(len(ids), 6)

    def test_differ_between_files(self):
        self.assertNotEqual(mutants_of("a.cpp", "int a = 1;")[0].id,
                            mutants_of("b.cpp", "int a = 1;")[0].id)


if __name__ == "__main__":
    unittest.main()
