#!/usr/bin/env python3
"""What scripts/lint and scripts/mutants take for changed."""

import importlib.machinery
import importlib.util
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path
from types import SimpleNamespace

PROJECT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(PROJECT / "mutants"))

from proved import Base, Proved, RevisionError  # noqa: E402


def script(name):
    loader = importlib.machinery.SourceFileLoader(name, str(PROJECT / "scripts" / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(module)
    return module


lint = script("lint")
SETTINGS = "clang-tidy-19"


class Tree(unittest.TestCase):
    """A project of two sources and their headers, in git."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()
        lint.PROJECT = self.root
        lint.PROVED = self.root / "proved" / "lint.txt"
        self.write("desk/Node.cpp", '#include "Node.h"\n')
        self.write("desk/Node.h", '#include "Base.h"\n')
        self.write("desk/Base.h", "struct Base;\n")
        self.write("tools/main.cpp", "int main();\n")
        self.git("init", "--quiet")
        self.commit()

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def git(self, *words):
        subprocess.run(["git", "-c", "user.name=n", "-c", "user.email=e", *words], cwd=self.root, check=True)

    def commit(self):
        self.git("add", "--all")
        self.git("commit", "--quiet", "--message", "state")

    def sources(self, option="-O2"):
        return [lint.Source({"file": str(self.root / name), "directory": str(self.root),
                             "command": f"c++ {option} -std=c++20 -I{self.root}/desk -o x.o -c {name}"})
                for name in ("desk/Node.cpp", "tools/main.cpp")]


class Lint(Tree):
    def ranks(self, settings=SETTINGS, base=None, **changes):
        return lint.ranks(self.sources(**changes), settings, base)

    def prove(self):
        lint.write_proved(SETTINGS, self.sources())

    def testNothingChangedSinceAllWasClean(self):
        self.prove()
        self.assertEqual(self.ranks(), {})

    def testWithoutARecordEverythingChanged(self):
        self.assertEqual(self.ranks(), {"desk/Node.cpp": 0, "tools/main.cpp": 0})

    def testOtherToolsOrSettingsChangeEverything(self):
        self.prove()
        self.assertEqual(set(self.ranks(settings="clang-tidy-20")), {"desk/Node.cpp", "tools/main.cpp"})

    def testASourceThatChanged(self):
        self.prove()
        self.write("tools/main.cpp", "int main() {}\n")
        self.assertEqual(self.ranks(), {"tools/main.cpp": 0})

    def testAHeaderOfAHeaderThatChanged(self):
        self.prove()
        self.write("desk/Base.h", "struct Base {};\n")
        self.assertEqual(self.ranks(), {"desk/Node.cpp": 1})

    def testAnotherCommandToCompile(self):
        self.prove()
        self.assertEqual(self.ranks(option="-O3"), {"desk/Node.cpp": 1, "tools/main.cpp": 1})

    def testThePlaceOfTheProjectIsNoChange(self):
        self.prove()
        moved = self.root / "moved"
        moved.mkdir()
        for room in ("desk", "tools", "proved"):
            os.rename(self.root / room, moved / room)
        self.root = lint.PROJECT = moved
        lint.PROVED = moved / "proved" / "lint.txt"
        self.assertEqual(self.ranks(), {})

    def testASourceThatTheRecordDoesNotKnow(self):
        lint.write_proved(SETTINGS, self.sources()[:1])
        self.assertEqual(self.ranks(), {"tools/main.cpp": 0})

    def testSinceARevision(self):
        self.assertEqual(self.ranks(base="HEAD"), {})
        self.write("desk/Base.h", "struct Base {};\n")
        self.assertEqual(self.ranks(base="HEAD"), {"desk/Node.cpp": 1})
        self.commit()
        self.assertEqual(self.ranks(base="HEAD~1"), {"desk/Node.cpp": 1})
        self.write("tools/main.cpp", "int main() {}\n")
        self.assertEqual(self.ranks(base="HEAD"), {"tools/main.cpp": 0})

    def testAFileThatGitDoesNotKnowYetCounts(self):
        self.write("desk/New.h", "")
        self.write("tools/main.cpp", '#include "../desk/New.h"\n')
        self.git("add", "tools/main.cpp")
        self.git("commit", "--quiet", "--message", "state")
        self.assertEqual(self.ranks(base="HEAD"), {"tools/main.cpp": 1})

    def testSettingsThatDifferFromARevisionChangeEverything(self):
        self.write(".clang-tidy", "Checks: '*'\n")
        self.assertEqual(set(self.ranks(base="HEAD")), {"desk/Node.cpp", "tools/main.cpp"})

    def testARevisionThatIsNotThereEndsTheRun(self):
        with self.assertRaises(SystemExit):
            self.ranks(base="nowhere")

    def testOwnChangesComeFirst(self):
        sources = self.sources()
        ordered = lint.in_order(sources, {"desk/Node.cpp": 1, "tools/main.cpp": 0})
        self.assertEqual([source.path for source in ordered], ["tools/main.cpp", "desk/Node.cpp"])


FILE = "Control/Power.cpp"


def mutant(name):
    return SimpleNamespace(id=name, file=FILE)


class Code:
    """As scripts/mutants has it, with digests made up."""

    def __init__(self, own="own", seen="seen", service="service", how="how", whole="whole"):
        self.own = {FILE: own}
        self.seen_by = {FILE: seen}
        self.killers = {"service_tests": service, "drill": "drill"}
        self.how = how
        self.whole = whole

    def of_program(self, name):
        return self.killers[name]


VERDICTS = {
    mutant_: verdict
    for mutant_, verdict in (
        ("aa", ("killed", "service_tests")),
        ("bb", ("killed", "drill under the sanitizers")),
        ("cc", ("survived", "")),
        ("dd", ("same code", "the optimiser makes the same object of it")),
        ("ee", ("invalid", "does not compile")),
    )
}


class Mutants(Tree):
    def setUp(self):
        super().setUp()
        path = self.root / "proved" / "mutants.txt"
        self.assertEqual(Proved.read(path).verdicts, {})
        Proved.write(path, Code(), {MutantKey(name): verdict for name, verdict in VERDICTS.items()})
        self.proved = Proved.read(path)

    def ranks(self, **changes):
        code = Code(**changes)
        return {name: self.proved.rank_of(mutant(name), code) for name in VERDICTS}

    def testNothingChanged(self):
        self.assertEqual(set(self.ranks().values()), {None})

    def testANewMutantComesFirst(self):
        self.assertEqual(self.proved.rank_of(mutant("ff"), Code()), 0)

    def testWithoutARecordEveryMutantIsNew(self):
        self.assertEqual(Proved.read(self.root / "nothing").rank_of(mutant("aa"), Code()), 0)

    def testTheFileChanged(self):
        self.assertEqual(set(self.ranks(own="other", seen="other").values()), {1})

    def testWhatIsCompiledWithTheFileChanged(self):
        self.assertEqual(set(self.ranks(seen="other").values()), {2})

    def testATestProgramChangedAndWithItTheWhole(self):
        self.assertEqual(self.ranks(service="other", whole="other"),
                         {"aa": 3, "bb": None, "cc": 3, "dd": 3, "ee": None})

    def testMutantsAreMadeOrJudgedOtherwise(self):
        self.assertEqual(set(self.ranks(how="other").values()), {3})

    def testAKillerThatIsGone(self):
        code = Code(whole="other")
        del code.killers["drill"]
        self.assertEqual(self.proved.rank_of(mutant("bb"), code), 3)

    def testSinceARevision(self):
        self.commit()
        base = Base(self.root, "HEAD")
        made = {"": ["aa", "bb"]}
        since = base.proved(Code(), Code(), lambda file, text: map(mutant, made[text]))
        self.assertIsNone(since.rank_of(mutant("aa"), Code()))
        self.assertEqual(since.rank_of(mutant("cc"), Code()), 0)
        self.assertEqual(since.rank_of(mutant("aa"), Code(own="other")), 1)

    def testSinceARevisionWithOtherTests(self):
        self.commit()
        self.write("tests/data.txt", "1\n")
        since = Base(self.root, "HEAD").proved(Code(), Code(), lambda file, text: [mutant("aa")])
        self.assertEqual(since.rank_of(mutant("aa"), Code()), 3)

    def testARevisionThatIsNotThere(self):
        with self.assertRaises(RevisionError):
            Base(self.root, "nowhere")


class MutantKey(SimpleNamespace):
    """A mutant as a key, as mutate.Mutant is one."""

    def __init__(self, name):
        super().__init__(id=name, file=FILE)

    def __hash__(self):
        return hash(self.id)


if __name__ == "__main__":
    unittest.main()
