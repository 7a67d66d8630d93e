"""What killed each mutant when all were tried last, and which of these verdicts no longer count.

Verdicts are kept with digests of the code that they depend on, not with a revision: no rewritten branch and
no shallow clone can pass something off as tried.
"""

import subprocess
from collections import defaultdict

HEAD = """\
# What killed each mutant when scripts/mutants last tried all and wrote this, with digests of the code: how
# mutants are made and judged, the whole, the test programs, and of each file its own and all that it sees.
# Below a file its mutants, by what killed them; "-" for what nothing can.
"""
WIDTH = 8  # mutants on a line
INVALID = "invalid"  # in the place of what killed one that does not compile


class RevisionError(Exception):
    """A revision that is not there: nothing can be said of what changed since."""


class Proved:
    def __init__(self):
        self.how = self.whole = ""
        self.programs = {}
        self.files = {}  # own and seen code, by file
        self.verdicts = {}  # what killed a mutant, "" if nothing could, by file and id

    def rank_of(self, mutant, code):
        """0 for a new mutant up to 3 for one that was killed by what changed; None if nothing changed."""
        killer = self.verdicts.get((mutant.file, mutant.id))
        if killer is None:
            return 0
        own, seen = self.files[mutant.file]
        if own != code.own[mutant.file]:
            return 1
        if seen != code.seen_by[mutant.file]:
            return 2
        if self.how != code.how:
            return 3
        if killer == INVALID:
            return None
        # What nothing kills could be killed by any change.
        is_same = (self.programs.get(killer) == code.of_program(killer)
                   if killer in code.killers else self.whole == code.whole)
        return None if is_same else 3

    @classmethod
    def read(cls, path):
        proved = cls()
        file = None
        for line in path.read_text().splitlines() if path.exists() else ():
            words = line.split()
            if not words or words[0].startswith("#"):
                continue
            if line[0].isspace():
                proved.verdicts.update(((file, name), words[0].strip("-")) for name in words[1:])
            elif words[0] in ("how", "whole"):
                setattr(proved, *words)
            elif words[0] == "program":
                proved.programs[words[1]] = words[2]
            else:
                file = words[0]
                proved.files[file] = tuple(words[1:])
        return proved

    @staticmethod
    def write(path, code, verdicts):
        killed = defaultdict(lambda: defaultdict(list))
        for mutant, (verdict, by) in verdicts.items():
            killer = {"killed": by.split()[0] if by else "", "invalid": INVALID}.get(verdict, "-")
            killed[mutant.file][killer].append(mutant.id)
        path.parent.mkdir(exist_ok=True)
        with path.open("w") as out:
            out.write(HEAD)
            out.write(f"how {code.how}\nwhole {code.whole}\n")
            for name in sorted(code.killers):
                out.write(f"program {name} {code.of_program(name)}\n")
            for file in sorted(killed):
                out.write(f"{file} {code.own[file]} {code.seen_by[file]}\n")
                for killer, names in sorted(killed[file].items()):
                    names.sort()
                    for at in range(0, len(names), WIDTH):
                        out.write(f"    {killer} {' '.join(names[at : at + WIDTH])}\n")


class Base:
    """The project as a revision has it."""

    def __init__(self, project, revision):
        self.project = project
        self.revision = self._git("rev-parse", "--verify", "--quiet", f"{revision}^{{commit}}")
        if self.revision is None:
            raise RevisionError(f"{revision} is no revision here")
        self.revision = self.revision.strip()
        self.texts = {}

    def _git(self, *words):
        done = subprocess.run(["git", *words], cwd=self.project, capture_output=True, check=False)
        return done.stdout.decode(errors="replace") if done.returncode == 0 else None

    def read(self, file):
        if file not in self.texts:
            self.texts[file] = self._git("show", f"{self.revision}:{file}") or ""
        return self.texts[file]

    def _others_changed(self, sources):
        """Whether anything but the library differs that a test may be made of, or any tests came or went."""
        changed = (self._git("diff", "--name-only", "--no-renames", "-z", self.revision, "--")
                   + self._git("ls-files", "--others", "--exclude-standard", "-z"))
        return any(path.startswith("tests/") or path.endswith((".cpp", ".h", ".cmake", "CMakeLists.txt"))
                   for path in changed.split("\0") if path not in sources)

    def proved(self, then, now, mutants_of):
        """As if all had been tried then; by what each was killed is not known."""
        proved = Proved()
        proved.how = then.how
        proved.whole = "" if self._others_changed(then.own) else now.whole
        for file in then.own:
            proved.files[file] = (then.own[file], then.seen_by[file])
            for mutant in mutants_of(file, self.read(file)):
                proved.verdicts[file, mutant.id] = ""
        return proved
