"""The fast suite, as it is built and run against a mutant.

The test programs are those of the build that is shipped. For a mutant the source files that it touches are
compiled from a copy of the tree, and the test programs are linked again with those objects in place of the
unchanged ones, by the build's own commands. Only that what is compiled again is not optimised, and compiled
by clang, which does so in one process and in half the time.

The headers of interfaces/ and platform/ are used by the tests as they are by the library: for a mutant of
one of them a program's own sources that include it are compiled as well, or an unchanged copy of an inline
function would stand beside the changed one. The libraries that the programs share, such as the desk's
platform, stay as they are.
"""

import hashlib
import json
import os
import re
import shlex
import shutil
import subprocess
import threading
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

QUICK_COMPILER = "clang++-19"
ROOMS = ("Control", "interfaces", "platform")
OBJECT_FOLDERS = ("qor_control.dir", "qor_interfaces.dir")
CONTRACT = ("interfaces/", "platform/")
GTEST = ("--gtest_brief=1", "--gtest_fail_fast")
COMPARED_FILES = 100

# A mutant that reads or writes where it must not may go unseen without them.
SANITIZERS = ("-fsanitize=address,undefined", "-fno-sanitize-recover=all")
SANITIZED = ("calculators_tests", "service_tests", "service_fact_tests", "interfaces_tests")

# Optimisation, debug information, warnings, and what goes with the first.
UNWANTED = re.compile(r"-O.?$|-g\d?$|-W(?!l,|p,)|-[DU]_FORTIFY_SOURCE|-DNDEBUG$")

# What takes the most time to compile, done once: the standard headers, which no mutant changes.
STANDARD_HEADERS = ("algorithm array cstddef cstdint cstring iterator limits map ostream sstream "
                    "string string_view tuple vector")
TEST_HEADERS = "gmock/gmock.h gtest/gtest.h"


@dataclass(frozen=True)
class Program:
    """A program of the suite: what is linked for it, and how it is run."""

    name: str
    arguments: tuple = GTEST
    target: str = ""  # what is linked with a mutant's objects, the program itself if empty
    library: str = ""  # name by which a program finds the shared library that is linked for it
    room: str = ""  # it looks at this folder only, if not empty


@dataclass(frozen=True)
class Unit:
    """A source as the build compiles it: into a library, or into a program of its own."""

    source: str
    arguments: tuple
    output: str

    @staticmethod
    def quick(words):
        """The words of a compiler's command without what costs time and finds nothing in a mutant."""
        kept = []
        for word in words:
            if kept and kept[-1] == "-include":
                kept.pop()  # a header that the build has precompiled; no source relies on it
            elif not UNWANTED.match(word):
                kept.append(word)
        at = kept.index("-o")
        return (*kept[:at], "-O0", "-g0", "-w", *kept[at:])

    def options(self):
        """What decides, besides the source and where its headers are, how it is compiled."""
        words = self.arguments[1 : self.arguments.index("-o")]
        return tuple(word for word in words if word != "-c" and not word.startswith("-I"))


PROGRAMS = {
    program.name: program
    for program in (
        Program("interfaces_tests"),
        Program("platform_tests", room="platform/"),
        Program("calculators_tests"),
        Program("calculators_first_query_tests"),
        Program("service_tests"),
        Program("service_fact_tests"),
        Program("service_substitute_tests"),
        Program("service_allocation_tests"),
        Program("allocation_drill"),
        Program("calculators_board_tests"),
        Program(
            "qor-compare-replays",
            ("0", str(COMPARED_FILES)),
            target="QorOutputPowerCalculator",
            library="libQorOutputPowerCalculator.so.1",
        ),
    )
}

# The programs that look most closely at a file go first.
FIRST = (
    ("interfaces/", ("interfaces_tests",)),
    ("platform/", ("platform_tests",)),
    ("Control/OutputPowerCalculator/OutputPowerCalculator.h", ("service_tests",)),
    ("Control/OutputPowerCalculator/private/OutputPowerCalculator.cpp",
     ("service_tests", "service_fact_tests", "service_substitute_tests")),
    ("Control/OutputPowerCalculator/private/HardwareFamily", ("service_tests",)),
    ("Control/", ("calculators_tests", "calculators_first_query_tests")),
)


def order_for(file):
    first = next(names for prefix, names in FIRST if file.startswith(prefix))
    programs = [PROGRAMS[name] for name in (*first, *(n for n in PROGRAMS if n not in first))]
    return [program for program in programs if file.startswith(program.room)]


def is_contract_header(file):
    return file.startswith(CONTRACT) and file.endswith(".h")


def digest(*parts):
    sha = hashlib.sha256()
    for part in parts:
        sha.update(part if isinstance(part, bytes) else str(part).encode())
        sha.update(b"\0")
    return sha.hexdigest()[:24]


class SuiteError(Exception):
    """The unchanged tree does not build or does not pass; nothing can be said of a mutant then."""


class Suite:
    def __init__(self, project, programs, build, jobs):
        self.project = project
        self.programs = programs.resolve()
        self.build = build.resolve()
        self.jobs = jobs
        self.environment = {
            **os.environ, "CCACHE_DISABLE": "1", "LC_ALL": "C", "LD_LIBRARY_PATH": str(self.programs / "lib"),
            "ASAN_OPTIONS": "detect_leaks=0"}

    def prepare(self, is_built):
        """Builds the unchanged programs and learns their commands and fingerprints."""
        if not is_built:
            self._build_programs()
        self._learn_compiling()
        self.precompiled = {}
        self._precompile_lock = threading.Lock()
        self.linking = {p.name: self._link_command(p.target or p.name) for p in PROGRAMS.values()}
        self.linker = {name: self._linker_of(command) for name, command in self.linking.items()}
        self.fingerprints = {name: self._fingerprint(name) for name in PROGRAMS}
        self.seconds = {}
        self._unchanged_lock = threading.Lock()
        self._tried_unchanged = set()

    def warm_up(self):
        """What comes before the first mutant: the programs' times."""
        self._try_unchanged(PROGRAMS, (), False)

    def try_unchanged_once(self, names, options, with_own):
        """Before the first mutant is judged by what only few of them need."""
        with self._unchanged_lock:
            if (names, options, with_own) not in self._tried_unchanged:
                self._try_unchanged(names, options, with_own)
                self._tried_unchanged.add((names, options, with_own))

    def _try_unchanged(self, names, options, with_own):
        """What happens to a mutant must pass without one, or every mutant would seem killed."""
        bench = Bench(self, "unchanged")
        own = [unit for name in names for unit in self.own[name]] if with_own else []
        units = [*self.library, *own]
        with ThreadPoolExecutor(self.jobs) as pool:
            compiled = pool.map(lambda unit: bench.compile(unit, *options), units)
            objects = {unit.output: path for unit, path in zip(units, compiled)}
            for unit in units:
                if objects[unit.output] is None:
                    raise SuiteError(f"{unit.source} does not compile without any change")

            def run(name):
                started = time.monotonic()
                status = bench.run(PROGRAMS[name], objects, 300, *options)
                self.seconds.setdefault(name, time.monotonic() - started)
                return status

            for name, status in zip(names, pool.map(run, names)):
                if status is None:
                    raise SuiteError(f"{name} does not link without any change")
                if status != 0:
                    raise SuiteError(f"{name} fails without any change, status {status}")

    def _build_programs(self):
        self._run_or_raise(["cmake", "--preset", "release", "-B", str(self.programs)])
        targets = {p.target for p in PROGRAMS.values() if p.target} | set(PROGRAMS)
        self._run_or_raise(["ninja", "-C", str(self.programs), f"-j{self.jobs}", *sorted(targets)])

    def _run_or_raise(self, command):
        done = subprocess.run(command, capture_output=True, text=True, cwd=self.project)
        if done.returncode != 0:
            raise SuiteError(f"{' '.join(command[:2])} failed:\n{done.stdout[-3000:]}{done.stderr}")
        return done.stdout

    def _learn_compiling(self):
        """How the library's and the programs' own sources are compiled, and what they include."""
        self.library = []
        self.own = {name: [] for name in PROGRAMS}
        for entry in json.loads((self.programs / "compile_commands.json").read_text()):
            arguments = shlex.split(entry["command"])
            while arguments[0].endswith("ccache"):
                del arguments[0]
            output = arguments[arguments.index("-o") + 1]
            unit = Unit(os.path.relpath(entry["file"], self.project), Unit.quick(arguments), output)
            if any(f"/{folder}/" in output for folder in OBJECT_FOLDERS):
                self.library.append(unit)
            for name, units in self.own.items():
                if f"/{name}.dir/" in output:
                    units.append(unit)
        self.library.sort(key=lambda unit: unit.source)
        known = {unit.output for units in (self.library, *self.own.values()) for unit in units}
        self.included = {output: set() for output in known}
        output = None
        for line in self._run_or_raise(["ninja", "-C", str(self.programs), "-t", "deps"]).splitlines():
            if line and not line[0].isspace():
                output = line.split(":")[0]
            elif output in known and line.strip():
                path = os.path.relpath(os.path.join(self.programs, line.strip()), self.project)
                if self._is_source(path):
                    self.included[output].add(path)

    def _is_source(self, path):
        """Of the project, and not written by the build."""
        return not path.startswith("..") and self.programs not in (self.project / path).parents

    def precompiled_for(self, unit):
        """The options by which a source finds the headers compiled before, with options like its own."""
        options = unit.options()
        with self._precompile_lock:
            if options not in self.precompiled:
                self.precompiled[options] = self._precompile(options, len(self.precompiled))
            return self.precompiled[options]

    def _precompile(self, options, number):
        headers = STANDARD_HEADERS
        if any("GTEST" in option for option in options):
            headers += " " + TEST_HEADERS
        header = self.build / "benches" / f"standard{number}.h"
        header.parent.mkdir(parents=True, exist_ok=True)
        header.write_text("".join(f"#include <{name}>\n" for name in headers.split()))
        self._run_or_raise([QUICK_COMPILER, *options, "-x", "c++-header", str(header), "-o", f"{header}.pch"])
        return ("-include-pch", f"{header}.pch")

    def touched_by(self, file, units):
        """The units that are compiled with a file, or from it."""
        return [u for u in units if u.source == file or file in self.included[u.output]]

    def files_of(self, units):
        """The project's files that units are compiled from."""
        return {f for u in units for f in (u.source, *self.included[u.output]) if self._is_source(f)}

    def data_of(self, units):
        """What lies beside the tests of units, or below, and is no code: they may read it when they run."""
        folders = {os.path.dirname(f) + "/" for f in self.files_of(units) if f.startswith("tests/")}
        listed = self._run_or_raise(
            ["git", "ls-files", "--cached", "--others", "--exclude-standard", "tests"])
        return {f for f in listed.splitlines() if f.startswith(tuple(folders))
                and not f.endswith((".cpp", ".h", "CMakeLists.txt")) and (self.project / f).is_file()}

    def _link_command(self, target):
        """The linker's command of a target; what runs after it is left out."""
        commands = self._run_or_raise(["ninja", "-C", str(self.programs), "-t", "commands", target])
        for line in reversed(commands.splitlines()):
            for part in (shlex.split(part) for part in line.split(" && ")):
                is_link = "-o" in part and "-c" not in part
                if is_link and target in part[part.index("-o") + 1]:
                    return part
        raise SuiteError(f"no link command for {target}")

    def _linker_of(self, command):
        """What the compiler calls to link, so that it need not be started for that."""
        told = subprocess.run([*command, "-fuse-ld=lld", "-###"], cwd=self.programs, text=True,
                              capture_output=True).stderr
        call = next(shlex.split(line) for line in told.splitlines() if "collect2" in line)
        return ["ld.lld", *(word for i, word in enumerate(call[1:])
                            if not word.startswith(("-plugin", "-fuse-ld")) and call[i] != "-plugin")]

    def _fingerprint(self, name):
        """What a program is made of besides the library's own objects."""
        files = set(self._link_command(name)) | set(self.linking[name])
        contents = []
        for word in sorted(files):
            path = self.programs / word
            is_own = any(f"/{folder}/" in word for folder in OBJECT_FOLDERS)
            is_library = "libQorOutputPowerCalculator" in word
            if path.is_file() and word.endswith((".o", ".a", ".so.1.0.0")) and not (is_own or is_library):
                contents += [word, path.read_bytes()]
        return digest(*contents, *PROGRAMS[name].arguments)

    def limit_of(self, program):
        """Seconds of processor time, far above what the unchanged program takes."""
        return max(2, int(10 * self.seconds[program.name]) + 1)


class Bench:
    """A place in which one mutant after the other is compiled and tried."""

    def __init__(self, suite, number):
        self.suite = suite
        self.folder = suite.build / "benches" / str(number)
        self.tree = self.folder / "tree"
        shutil.rmtree(self.folder, ignore_errors=True)
        for room in ROOMS:
            shutil.copytree(suite.project / room, self.tree / room)

    def _compile(self, unit, output, *options):
        arguments = list(unit.arguments)
        at = arguments.index("-o")
        arguments = [*arguments[:at], *options, "-o", str(output), *arguments[at + 2 :]]
        for room in ROOMS:
            arguments = [re.sub(rf"^(-I|-isystem)?{re.escape(str(self.suite.project))}/{room}\b",
                                rf"\g<1>{self.tree}/{room}", word) for word in arguments]
        if options and options == self.suite.precompiled.get(unit.options()):
            arguments[0] = QUICK_COMPILER
        done = subprocess.run(arguments, cwd=self.suite.programs, env=self.suite.environment,
                              capture_output=True)
        return done.returncode == 0

    def compile(self, unit, *options):
        """The object of a source as it is in this place's tree; None if it does not compile."""
        output = self.folder / (unit.output.replace("/", "_"))
        options = options or self.suite.precompiled_for(unit)
        return str(output) if self._compile(unit, output, *options) else None

    def _link(self, program, objects, *options):
        """The program, or the library that it is given; None if it cannot be linked."""
        output = self.folder / (program.library or program.name)
        command = self.suite.linker[program.name]
        if options:
            command = [*self.suite.linking[program.name], "-fuse-ld=lld", *options]
        command = [objects.get(word, word) for word in command]
        command[command.index("-o") + 1] = str(output)
        done = subprocess.run(command, cwd=self.suite.programs,
                              env=self.suite.environment, capture_output=True)
        return output if done.returncode == 0 else None

    def run(self, program, objects, seconds, *options):
        """Links a program with other objects and runs it.

        Its exit status, negative for a signal such as that at the end of its processor time; None if
        it cannot be linked.
        """
        linked = self._link(program, objects, *options)
        if linked is None:
            return None
        command = [str(linked)]
        if program.library:
            command = ["env", f"LD_PRELOAD={linked}", str(self.suite.programs / "bin" / program.name)]
        # The sanitizers reserve far more memory than they use.
        memory = "" if options else "-v 8000000"
        limits = f'ulimit -c 0 -t {seconds} {memory}; exec "$@"'
        try:
            return subprocess.run(
                ["sh", "-c", limits, "sh", *command, *program.arguments],
                env=self.suite.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL, timeout=20 * seconds, cwd=self.folder).returncode
        except subprocess.TimeoutExpired:
            return -9

    def judge(self, mutant, text):
        """(verdict, by what): killed, survived, same code or invalid."""
        path = self.tree / mutant.file
        path.write_text(mutant.apply(text))
        try:
            return self._judge(mutant, text)
        finally:
            path.write_text(text)

    def _judge(self, mutant, text):
        objects = {}
        if not self._add_objects(objects, self.suite.library, mutant, text):
            return "invalid", "does not compile"
        slow = PROGRAMS["qor-compare-replays"]
        for program in order_for(mutant.file):
            if program is slow and self._is_same_code(mutant, text):
                return "same code", "the optimiser makes the same object of it"
            status = self._run_changed(program, objects, mutant, text, self.suite.limit_of(program))
            if status is None:
                return "invalid", f"{program.name} does not link"
            if status != 0:
                return "killed", program.name
        return self._judge_sanitized(mutant, text)

    def _add_objects(self, objects, units, mutant, text, *options):
        """Compiles what a mutant touches of units; whether that can be done.

        What does not compile with the change must compile without it, or it says nothing of the mutant.
        """
        path = self.tree / mutant.file
        for unit in self.suite.touched_by(mutant.file, units):
            if unit.output in objects:
                continue
            compiled = self.compile(unit, *options)
            if compiled is None:
                path.write_text(text)
                if self.compile(unit, *options) is None:
                    raise SuiteError(f"{unit.source} does not compile without any change any more")
                path.write_text(mutant.apply(text))
                return False
            objects[unit.output] = compiled
        return True

    def _run_changed(self, program, objects, mutant, text, seconds, *options):
        """As run(), with the program's own sources compiled again where the mutant touches them.

        A source of the tests that does not compile has noticed the change as well: status 1.
        """
        own = []
        if is_contract_header(mutant.file):
            self.suite.try_unchanged_once((program.name,), options, True)
            own = self.suite.own[program.name]
        if not self._add_objects(objects, own, mutant, text, *options):
            return 1
        status = self.run(program, objects, seconds, *options)
        if status is None and self._link(program, {}, *options) is None:
            raise SuiteError(f"{program.name} does not link without any change any more")
        return status

    def _judge_sanitized(self, mutant, text):
        self.suite.try_unchanged_once(SANITIZED, SANITIZERS, False)
        (self.tree / mutant.file).write_text(mutant.apply(text))
        objects = {}
        if not self._add_objects(objects, self.suite.library, mutant, text, *SANITIZERS):
            return "invalid", "does not compile with the sanitizers"
        for program in (PROGRAMS[name] for name in SANITIZED):
            seconds = 5 * self.suite.limit_of(program)
            status = self._run_changed(program, objects, mutant, text, seconds, *SANITIZERS)
            if status is None:
                return "invalid", f"{program.name} does not link with the sanitizers"
            if status != 0:
                return "killed", f"{program.name} under the sanitizers"
        return "survived", ""

    def _is_same_code(self, mutant, text):
        """Whether the shipped optimisation makes the same of the mutant as of the original.

        That the library makes no use of an inline function of a contract says nothing of other users.
        """
        if is_contract_header(mutant.file):
            return False
        path = self.tree / mutant.file
        output = self.folder / "optimised.o"
        for unit in self.suite.touched_by(mutant.file, self.suite.library):
            contents = []
            for state in (mutant.apply(text), text):
                path.write_text(state)
                if not self._compile(unit, output, "-O2", "-g0"):
                    return False
                contents.append(output.read_bytes())
            if contents[0] != contents[1]:
                return False
        return True
