#!/usr/bin/env python3
"""Which figures of a run scripts/proof --check takes for those that the page states."""

import sys
import unittest
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


if __name__ == "__main__":
    unittest.main()
