#!/usr/bin/env python3
"""How scripts/proof counts cases, and which figures of a run its --check takes for those that the page states."""

import sys
import unittest
import unittest.mock
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPT = Path(__file__).resolve().parent.parent.parent / "scripts" / "proof"
proof = module_from_spec(spec_from_loader("proof", SourceFileLoader("proof", str(SCRIPT))))
proof.__spec__.loader.exec_module(proof)


class Agrees(unittest.TestCase):
    def test_a_count_may_grow_and_not_fall_by_more_than_a_fiftieth(self):
        for now, is_well in (("1 000 tests passed, 0 failed", True), ("2 345 tests passed, 0 failed", True),
                             ("980 tests passed, 0 failed", True), ("979 tests passed, 0 failed", False),
                             ("1 000 tests passed, 1 failed", False), ("", False)):
            with self.subTest(now):
                self.assertEqual(proof.agrees(now, "1 000 tests passed, 0 failed", proof.GROWS), is_well)

    def test_a_share_is_as_stated_of_whatever_number(self):
        self.assertTrue(proof.agrees("100.00 % (7 of 7)", "100.00 % (5 of 5)", proof.SHARE))
        self.assertFalse(proof.agrees("99.00 % (99 of 100)", "100.00 % (5 of 5)", proof.SHARE))

    def test_any_other_figure_is_as_stated(self):
        self.assertTrue(proof.agrees("7 finds", "7 finds", ""))
        self.assertFalse(proof.agrees("8 finds", "7 finds", ""))

    def test_a_figure_that_the_page_does_not_state_is_none(self):
        for kind in (proof.GROWS, proof.SHARE, ""):
            self.assertFalse(proof.agrees("7 cases", "", kind))


class Drills(unittest.TestCase):
    LOG = """
1/3 Testing: neighbour_drill
[ CASES    ] 1000
[ CASES    ] 234
2/3 Testing: enumeration_tests
[ CASES    ] 5 arrays of codes
[ CASES    ] 60 pairs of odd answers
[ CASES    ] 7 arrays of codes
3/3 Testing: board
"""

    def test_cases_are_counted_by_program_or_by_kind(self):
        with unittest.mock.patch.object(proof, "test_log", lambda preset: self.LOG):
            figures = {name: figure for name, figure, _, _ in proof.drills()}
        self.assertEqual(figures["Odd answers of neighbours, one at a time"], "1 234 cases")
        self.assertEqual(figures["Odd answers of neighbours, two at a time"], "60 cases")
        self.assertEqual(figures["Arrays of one, two and three codes"], "12 cases")
        self.assertIsNone(figures["The plain statement against its rules as rows"])


if __name__ == "__main__":
    unittest.main()
