#!/usr/bin/env python3
"""What the operators make of small texts, written down by hand, what is said of a mutant and what is kept."""

import sys
import tempfile
import unittest
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from pathlib import Path
from types import SimpleNamespace
from unittest import mock

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))

from mutate import mutants_of  # noqa: E402
from suite import PROGRAMS, SANITIZED, SANITIZERS, Bench, SuiteError, Unit, order_for  # noqa: E402

SCRIPT = Path(__file__).resolve().parent.parent / "scripts" / "mutants"
run = module_from_spec(spec_from_loader("run", SourceFileLoader("run", str(SCRIPT))))
run.__spec__.loader.exec_module(run)


def changes(text, operator=None, file="a.cpp"):
    """The text of each mutant, a line for the sake of the reader."""
    return [" ".join(mutant.apply(text).split()) for mutant in mutants_of(file, text)
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

    def test_arithmetic_is_exchanged_and_signs_and_references_are_not(self):
        for before, after in (("a + b", "a - b"), ("a - b", "a + b"), ("a * b", "a + b"),
                              ("a / b", "a * b"), ("a % b", "a / b"), ("a & b", "a | b"),
                              ("a += b", "a -= b"), ("a -= b", "a += b"), ("++a", "--a"), ("a--", "a++")):
            with self.subTest(before):
                self.assertEqual(changes(f"void f() {{ {before}; }}", "arithmetic"),
                                 [f"void f() {{ {after}; }}"])
        self.assertEqual(changes("int f(int& a, int* b) { return -a; }", "arithmetic"), [])

    def test_names_become_their_opposites(self):
        for before, after in (("a = true", "a = false"), ("a = false", "a = true"),
                              ("std::min(a, b)", "std::max(a, b)"), ("std::max(a, b)", "std::min(a, b)"),
                              ("continue", "break"),
                              ("Power::add(a, b)", "Power::subtract(a, b)"),
                              ("Power::subtract(a, b)", "Power::add(a, b)"),
                              ("a.empty()", "a.size()"), ("a.begin()", "a.end()"),
                              ("a = INT16_MIN", "a = INT16_MAX")):
            with self.subTest(before):
                self.assertEqual(changes(f"void f() {{ {before}; }}", "opposite"),
                                 [f"void f() {{ {after}; }}"])

    def test_names_of_others_have_no_opposite(self):
        self.assertEqual(changes("void f() { a.min(b); a.add(b); std::empty(a); begin(a); break; }",
                                 "opposite"), [])

    def test_an_enumerator_becomes_the_next_and_the_last_the_first(self):
        self.assertEqual(changes("f(Modulation::QAM4);", "enumerator"), ["f(Modulation::QAM16);"])
        self.assertEqual(changes("f(EDpdVersion::Dpd3);", "enumerator"), ["f(EDpdVersion::Dpd1);"])
        self.assertEqual(changes("f(ResultCode::Failure);", "enumerator"),
                         ["f(ResultCode::NotProvided);"])
        self.assertEqual(changes("f(PmaxTableDpd2Etsi);", "enumerator"), ["f(PmaxTableDpd1Ansi);"])

    def test_enumerators_stay_in_labels_and_where_they_are_declared(self):
        self.assertEqual(changes("void f() { switch (a) { case Modulation::QAM4: g(); } }", "enumerator"),
                         [])
        self.assertEqual(changes("enum PmaxTable { PmaxTableDpd1Ansi = 0 };", "enumerator"), [])
        self.assertEqual(changes("f(Other::QAM4);", "enumerator"), [])

    def test_a_label_is_dropped(self):
        self.assertEqual(
            changes("int f() { switch (a) { case E::A: case E::B: return 1; default: return 2; } }",
                    "case dropped"),
            ["int f() { switch (a) { case E::B: return 1; default: return 2; } }",
             "int f() { switch (a) { case E::A: return 1; default: return 2; } }"])

    def test_constants_go_up_and_down(self):
        self.assertEqual(changes("int a = 0x10U;", "constant"),
                         ["int a = 17U;", "int a = 15U;"])

    def test_a_function_without_a_body_is_no_constant(self):
        self.assertEqual(changes("struct S { virtual int f() const = 0; virtual void g() = 0; };"), [])
        self.assertEqual(changes("int a = 0;", "constant"), ["int a = 1;", "int a = -1;"])

    def test_numbers_of_the_interfaces_enumerators_stay(self):
        text = "enum class E : int { A = 3 }; constexpr int b = 5;"
        self.assertEqual(len(changes(text, "constant")), 4)
        self.assertEqual(changes(text, "constant", "interfaces/E.h"),
                         ["enum class E : int { A = 3 }; constexpr int b = 6;",
                          "enum class E : int { A = 3 }; constexpr int b = 4;"])

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


class Mistakes(unittest.TestCase):
    def test_neighbouring_arguments_are_exchanged_and_parameters_are_not(self):
        self.assertEqual(changes("void f() { g(a, b + 1, c); }", "arguments exchanged"),
                         ["void f() { g(b + 1, a, c); }", "void f() { g(a, c, b + 1); }"])
        for text in ("void f(long a, T& b);", "void f() { g(a, a); }", "void f() { g(1, 2); }",
                     "void f() { if (a, b) {} }", "void f() { a = std::min(b, c); }"):
            with self.subTest(text):
                self.assertEqual(changes(text, "arguments exchanged"), [])

    def test_a_trace_shows_the_value_of_another_label(self):
        self.assertEqual(changes('void f() { TRACE_MSG(TraceLevel::Error, "a=", a, "b=", b); }',
                                 "arguments exchanged"),
                         ['void f() { TRACE_MSG(TraceLevel::Error, "a=", b, "b=", a); }'])

    def test_a_channel_an_id_or_a_line_becomes_the_first(self):
        self.assertEqual(changes("void f() { g(m_radioChannel, rfid, x); }", "argument replaced"),
                         ["void f() { g(1, rfid, x); }", "void f() { g(m_radioChannel, 1, x); }"])
        self.assertEqual(changes("#define T(x) g(x, __func__, __LINE__)", "record of trace"),
                         ['#define T(x) g(x, "f", __LINE__)', "#define T(x) g(x, __func__, 1)"])

    def test_statements_are_exchanged_where_others_see_it_or_one_sets_what_the_other_reads(self):
        self.assertEqual(changes("void f() { const long b = m_a->g(); TRACE_MSG(b); c = b; d = c + 1; return; }",
                                 "statements exchanged"),
                         ["void f() { TRACE_MSG(b); const long b = m_a->g(); c = b; d = c + 1; return; }",
                          "void f() { const long b = m_a->g(); TRACE_MSG(b); d = c + 1; c = b; return; }"])
        for text in ("void f() { a = 1; b = 2; }", "void f() { g(); h(); }", "void f() { m_a->g(); b = 1; }",
                     "void f() { m_a->g(); if (a) { h(); } m_a->k(); }", "void f() { m_a->g(); break; m_a->h(); }",
                     "void f() { if (a) m_a->g(); m_a->h(); }"):
            with self.subTest(text):
                self.assertEqual(changes(text, "statements exchanged"), [])

    def test_a_neighbour_is_asked_twice_and_its_answer_remembered(self):
        text = "long f() { return m_frameFormat->getSpacing(1) + other->get(); }"
        self.assertEqual(changes(text, "call twice"),
                         ["long f() { return (static_cast<void>(m_frameFormat->getSpacing(1)), "
                          "m_frameFormat->getSpacing(1)) + other->get(); }"])
        self.assertEqual(changes("void f() { g(Broker::the().getInterface<I>(name)); }", "call remembered"),
                         ["void f() { g([&] { static auto kept = Broker::the().getInterface<I>(name); "
                          "return kept; }()); }"])
        self.assertIn("if (whose != this)", changes(text, "call remembered")[0])
        self.assertEqual(changes("T* getInterface(const std::string& name);", "call twice"), [])

    def test_a_stored_value_is_cut_and_negated_and_a_constant_or_a_truth_is_not(self):
        self.assertEqual(changes("void f() { m_gain = gain; }", "stored value cut"),
                         ["void f() { m_gain = static_cast<short>(gain); }"])
        self.assertEqual(changes("void f() { const long a = g(b); }", "stored value negated"),
                         ["void f() { const long a = -(g(b)); }"])
        for text in ("void f() { a = 0; }", "void f() { a = b == c; }", "T& operator=(const T&) = delete;",
                     "void f() { a = E::A; }", "void f() { constexpr int a = b; }"):
            with self.subTest(text):
                self.assertEqual(changes(text, "stored value cut"), [])

    def test_a_pointer_is_kept_where_there_is_nothing_to_point_to(self):
        self.assertEqual(changes("void f() { neighbour = broker.get(name); }", "pointer kept"),
                         ["void f() { if (auto* const found = broker.get(name)) neighbour = found; }"])
        self.assertEqual(changes("void f() { I* const a = g(b); }", "pointer kept"), [])

    def test_a_pointer_goes_with_a_start_that_failed(self):
        body = "{ m_acmHandler->g(); if (!connect(m_frameFormat)) { return ResultCode::Failure; } }"
        self.assertEqual(changes(f"int S::initialize() {body}", "pointer lost"),
                         ["int S::initialize() { m_acmHandler->g(); if (!connect(m_frameFormat)) "
                          "{ return (m_acmHandler = nullptr, ResultCode::Failure); } }"])
        self.assertEqual(changes(f"int S::other() {body}", "pointer lost"), [])

    def test_the_right_value_comes_with_a_wrong_code(self):
        self.assertEqual(changes("int f(long& x) { return g(x); }", "wrong code"),
                         ["int f(long& x) { return (static_cast<void>(g(x)), ResultCode::NotApplicable); }"])
        self.assertEqual(changes("int f() { return ResultCode::Failure; }", "wrong code"), [])

    def test_members_are_shared(self):
        self.assertEqual(changes("class S { public: void f(int a); private: long m_a = 0; static int m_b; };",
                                 "state shared"),
                         ["class S { public: void f(int a); private: static inline long m_a = 0; "
                          "static int m_b; };"])

    def test_a_market_is_told_by_another_rule(self):
        self.assertEqual(changes("bool f() { return a == EFrameFormatMarket::Ansi; }", "other rule"),
                         [f"bool f() {{ return a != EFrameFormatMarket::{market}; }}"
                          for market in ("Etsi", "Global", "Unknown")])

    def test_texts_are_equal_as_far_as_the_shorter_goes(self):
        self.assertEqual(changes("bool f() { return a.size() != b.size(); }", "prefix compared"),
                         ["bool f() { return a.size() < b.size(); }", "bool f() { return a.size() > b.size(); }"])


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


class Order(unittest.TestCase):
    def test_the_closest_program_goes_first_and_every_other_follows(self):
        for file, first in (("interfaces/ResultCode.h", "interfaces_tests"),
                            ("platform/VelTrace.h", "platform_tests"),
                            ("Control/OutputPowerCalculator/private/Trace.cpp", "calculators_tests")):
            with self.subTest(file):
                names = [program.name for program in order_for(file)]
                self.assertEqual(names[0], first)
                others = set(PROGRAMS) - set(names)
                self.assertEqual(others, set() if first == "platform_tests" else {"platform_tests"})


class ToldBench(Bench):
    """A bench whose compiler, linker and programs do what a test says."""

    def __init__(self, folder, suite, does_compile=None, does_link=None, status=None):
        self.suite = suite
        self.tree = folder
        self.does_compile = does_compile or (lambda text, options: True)
        self.does_link = does_link or (lambda is_changed, options: True)
        self.status = status or (lambda program, options: 0)

    def compile(self, unit, *options):
        text = (self.tree / "interfaces" / "a.h").read_text()
        return f"{unit.source}.o" if self.does_compile(text, options) else None

    def _link(self, program, objects, *options):
        return "program" if self.does_link(bool(objects), options) else None

    def run(self, program, objects, seconds, *options):
        linked = self._link(program, objects, *options)
        return self.status(program.name, options) if linked else None

    def _is_same_code(self, mutant, text):
        return False


class Verdicts(unittest.TestCase):
    ORIGINAL = "int a = 1;"

    def judge(self, **told):
        unit = Unit("interfaces/a.cpp", (), "a.o")
        suite = SimpleNamespace(
            library=[unit], own={name: [] for name in PROGRAMS}, limit_of=lambda program: 2,
            touched_by=lambda file, units: units, try_unchanged_once=lambda *what: None)
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "interfaces").mkdir()
            mutant = mutants_of("interfaces/a.h", self.ORIGINAL)[0]
            return ToldBench(Path(folder), suite, **told).judge(mutant, self.ORIGINAL)

    def is_original(self, text):
        return text == self.ORIGINAL

    def test_survived_when_every_program_passes(self):
        self.assertEqual(self.judge(), ("survived", ""))

    def test_killed_when_a_program_fails(self):
        self.assertEqual(self.judge(status=lambda name, _: int(name == "service_tests")),
                         ("killed", "service_tests"))

    def test_killed_when_a_program_fails_under_the_sanitizers_only(self):
        self.assertEqual(self.judge(status=lambda _, options: int(options == SANITIZERS)),
                         ("killed", f"{SANITIZED[0]} under the sanitizers"))

    def test_invalid_when_the_change_does_not_compile(self):
        told = self.judge(does_compile=lambda text, _: self.is_original(text))
        self.assertEqual(told, ("invalid", "does not compile"))

    def test_invalid_when_the_change_does_not_compile_under_the_sanitizers(self):
        told = self.judge(does_compile=lambda text, options: not options or self.is_original(text))
        self.assertEqual(told, ("invalid", "does not compile with the sanitizers"))

    def test_invalid_when_the_change_does_not_link(self):
        for needed in ((), SANITIZERS):
            told = self.judge(does_link=lambda changed, options: not changed or options != needed)
            self.assertEqual(told[0], "invalid")

    def test_nothing_is_said_when_the_unchanged_source_does_not_compile_either(self):
        for needed in ((), SANITIZERS):
            with self.subTest(needed), self.assertRaises(SuiteError):
                self.judge(does_compile=lambda _, options: options != needed)

    def test_nothing_is_said_when_the_unchanged_program_does_not_link_either(self):
        for needed in ((), SANITIZERS):
            with self.subTest(needed), self.assertRaises(SuiteError):
                self.judge(does_link=lambda _, options: options != needed)


class Kept(unittest.TestCase):
    """A library of a.cpp, which includes a.h, which includes deep.h; a program of its own source."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.texts = {"a.cpp": "int f() { return a; }", "a.h": "int a = b;", "deep.h": "int b = 1;",
                      "tests.cpp": "TEST(f);", "other.cpp": "TEST(g);", "tests.csv": "1;2"}
        self.included = {"a.cpp": ("a.h", "deep.h"), "tests.cpp": (), "other.cpp": ()}
        self.program = b"as linked"
        self.mutant = mutants_of("a.cpp", self.texts["a.cpp"])[0]
        patched = mock.patch.object(run, "PROJECT", self.folder)
        patched.start()
        self.addCleanup(patched.stop)

    def results(self):
        for file, text in self.texts.items():
            (self.folder / file).write_text(text)
        suite = SimpleNamespace(
            build=self.folder, library=["a.cpp"],
            own={"service_tests": ["tests.cpp"], "platform_tests": ["other.cpp"]},
            fingerprints={"service_tests": self.program},
            touched_by=lambda file, units: [u for u in units if u == file or file in self.included[u]],
            files_of=lambda units: {f for u in units for f in (u, *self.included[u])},
            data_of=lambda units: {"tests.csv"} & {u.replace(".cpp", ".csv") for u in units})
        sources = {file: self.texts[file] for file in ("a.cpp", "a.h")}
        return run.Results(suite, run.Code(suite, sources), False)

    def keep(self, verdict, by):
        results = self.results()
        results.keep(results.key(self.mutant), verdict, by)

    def is_known_after(self, file, text):
        self.texts[file] = text
        results = self.results()
        return results.find(results.key(self.mutant)) is not None

    def test_a_kill_outlives_comments_and_the_tests_of_other_programs(self):
        self.keep("killed", "service_tests under the sanitizers")
        self.assertTrue(self.is_known_after("deep.h", "int b = 1; // one"))
        self.assertTrue(self.is_known_after("tests.cpp", "// f\nTEST(f);"))
        self.assertTrue(self.is_known_after("other.cpp", ""))

    def test_a_kill_ends_with_the_test_that_made_it(self):
        self.keep("killed", "service_tests")
        self.assertFalse(self.is_known_after("tests.cpp", ""))

    def test_a_kill_ends_with_the_data_of_the_program_that_made_it(self):
        self.keep("killed", "platform_tests")
        self.assertTrue(self.is_known_after("tests.csv", "1;3"))
        self.keep("killed", "service_tests")
        self.assertFalse(self.is_known_after("tests.csv", "1;4"))

    def test_a_survival_ends_with_any_data(self):
        self.keep("survived", "")
        self.assertFalse(self.is_known_after("tests.csv", "1;3"))

    def test_a_kill_ends_when_a_header_changes_however_deep(self):
        self.keep("killed", "service_tests")
        self.assertFalse(self.is_known_after("deep.h", "int b = 2;"))

    def test_a_survival_ends_when_any_test_or_program_changes(self):
        self.keep("survived", "")
        self.assertTrue(self.is_known_after("other.cpp", "TEST(g); // g"))
        self.assertFalse(self.is_known_after("other.cpp", "TEST(h);"))
        self.keep("survived", "")
        self.program = b"linked anew"
        self.assertFalse(self.is_known_after("a.h", "int a = b;"))


class QuickCompilation(unittest.TestCase):
    def test_neither_optimised_nor_warned_of_nor_with_the_builds_precompiled_header(self):
        command = ("g++ -DA=1 -DNDEBUG -Iprivate -O2 -g -g1 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -Wall -Werror"
                   " -Wl,-z,now -Winvalid-pch -include cmake_pch.hxx -std=c++17 -o a.o -c a.cpp").split()
        self.assertEqual(" ".join(Unit.quick(command)),
                         "g++ -DA=1 -Iprivate -Wl,-z,now -std=c++17 -O0 -g0 -w -o a.o -c a.cpp")


class ListOfEquivalents(unittest.TestCase):
    TEXT = "int a = 1;"

    def mistakes(self, line):
        mutants = mutants_of("a.cpp", self.TEXT)
        entries = {line.split()[0]: ("a reason", line, 7)}
        return list(run.mistakes_of_list(entries, mutants, {"a.cpp": self.TEXT}))

    def test_an_entry_reads_as_its_mutant_is_printed(self):
        mutant = mutants_of("a.cpp", self.TEXT)[0]
        self.assertEqual(self.mistakes(f"{mutant.id} a.cpp:1: constant: 1 -> 2"), [])
        self.assertEqual(self.mistakes(f"{mutant.id} a.cpp:2: constant: 1 -> 2"),
                         [f"equivalent.txt:7: this should read: {mutant.id} a.cpp:1: constant: 1 -> 2"])

    def test_an_entry_belongs_to_a_mutant(self):
        self.assertEqual(self.mistakes("0123456789 a.cpp:1: constant: 1 -> 2"),
                         ["equivalent.txt:7: 0123456789 is no mutant any more"])


class Limits(unittest.TestCase):
    def test_a_run_that_reaches_nothing_fails(self):
        mutants = mutants_of("a.cpp", "int a = 1;")
        self.assertEqual([c for c, _ in run.complaints(mutants, {}, {}, {})],
                         ["none of 2 was reached"])
        reached = {mutants[0]: ("killed", "service_tests")}
        self.assertEqual(list(run.complaints(mutants, reached, {}, {})), [])

    def test_numbers_from_nothing_down_are_refused(self):
        for text in ("0", "-1", "x", "1.5", ""):
            with self.subTest(text), self.assertRaises(run.argparse.ArgumentTypeError):
                run.count(text)
        for text in ("0", "-1", "x", "nan", "inf"):
            with self.subTest(text), self.assertRaises(run.argparse.ArgumentTypeError):
                run.minutes(text)
        self.assertEqual((run.count("3"), run.minutes("0.5")), (3, 0.5))


if __name__ == "__main__":
    unittest.main()
