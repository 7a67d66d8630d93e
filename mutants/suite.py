"""The fast suite, as it is built and run against a mutant.

Everything is built once without a change. For a mutant the source files that it touches are compiled
from a copy of the tree, and the test programs are linked again with those objects in place of the
unchanged ones, by the build's own commands. Only that the mutants themselves are compiled by clang,
which does so in one process and in half the time.
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
from dataclasses import dataclass
from pathlib import Path

QUICK_COMPILER = "clang++-14"
ROOMS = ("Control", "interfaces", "platform")
OBJECT_FOLDERS = ("qor_control.dir", "qor_interfaces.dir")
GTEST = ("--gtest_brief=1", "--gtest_fail_fast")
COMPARED_FILES = 100

# A mutant that reads or writes where it must not may go unseen without them.
SANITIZERS = ("-fsanitize=address,undefined", "-fno-sanitize-recover=all")
SANITIZED = ("calculators_tests", "service_tests", "interfaces_tests")

# What takes the most time to compile, done once: the standard headers, which no mutant changes.
STANDARD_HEADERS = ("algorithm array cstddef cstdint cstring iterator limits map ostream sstream "
                    "string string_view tuple vector")


@dataclass(frozen=True)
class Program:
    """A program of the suite: what is linked for it, and how it is run."""

    name: str
    arguments: tuple = GTEST
    target: str = ""  # what is linked with a mutant's objects, the program itself if empty
    library: str = ""  # name by which a program finds the shared library that is linked for it


PROGRAMS = {
    program.name: program
    for program in (
        Program("interfaces_tests"),
        Program("calculators_tests"),
        Program("calculators_first_query_tests"),
        Program("service_tests"),
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
    ("Control/OutputPowerCalculator/OutputPowerCalculator.h", ("service_tests",)),
    ("Control/OutputPowerCalculator/private/OutputPowerCalculator.cpp",
     ("service_tests", "service_substitute_tests")),
    ("Control/OutputPowerCalculator/private/HardwareFamily", ("service_tests",)),
    ("Control/", ("calculators_tests", "calculators_first_query_tests")),
)


def order_for(file):
    first = next(names for prefix, names in FIRST if file.startswith(prefix))
    return [PROGRAMS[name] for name in (*first, *(n for n in PROGRAMS if n not in first))]


def digest(*parts):
    sha = hashlib.sha256()
    for part in parts:
        sha.update(part if isinstance(part, bytes) else str(part).encode())
        sha.update(b"\0")
    return sha.hexdigest()


class SuiteError(Exception):
    """The unchanged tree does not build or does not pass."""


class Suite:
    def __init__(self, project, build, jobs):
        self.project = project
        self.build = build
        self.jobs = jobs
        self.environment = {
            **os.environ, "CCACHE_DISABLE": "1", "LC_ALL": "C", "LD_LIBRARY_PATH": str(build / "lib"),
            "ASAN_OPTIONS": "detect_leaks=0"}

    def prepare(self, is_built):
        """Builds the unchanged programs and learns their commands, times and fingerprints."""
        if not is_built:
            self._build_programs()
        self._learn_compiling()
        self._precompile()
        self.linking = {p.name: self._link_command(p.target or p.name) for p in PROGRAMS.values()}
        self.linker = {name: self._linker_of(command) for name, command in self.linking.items()}
        self.fingerprints = {name: self._fingerprint(name) for name in PROGRAMS}
        self.seconds = {}
        self._try_unchanged(PROGRAMS, ())
        self._sanitizers_lock = threading.Lock()
        self._are_sanitizers_tried = False

    def try_sanitizers_unchanged(self):
        """Once, before the first mutant is judged by them."""
        with self._sanitizers_lock:
            if not self._are_sanitizers_tried:
                self._try_unchanged(SANITIZED, SANITIZERS)
                self._are_sanitizers_tried = True

    def _try_unchanged(self, names, options):
        """What happens to a mutant must pass without one, or every mutant would seem killed."""
        bench = Bench(self, "unchanged")
        objects = {}
        for i, (source, (_, output)) in enumerate(sorted(self.compiling.items())):
            objects[output] = bench.compile(source, i, *options)
            if objects[output] is None:
                raise SuiteError(f"{source} does not compile without any change")
        for name in names:
            started = time.monotonic()
            status = bench.run(PROGRAMS[name], objects, 300, *options)
            if status != 0:
                raise SuiteError(f"{name} fails without any change, status {status}")
            self.seconds.setdefault(name, time.monotonic() - started)

    def _build_programs(self):
        self._run_or_raise(
            ["cmake", "-S", str(self.project), "-B", str(self.build), "-G", "Ninja",
             "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g0 -w",
             "-DQOR_TEST_BY_PROGRAM=ON"])
        targets = {p.target for p in PROGRAMS.values() if p.target} | set(PROGRAMS)
        self._run_or_raise(["ninja", "-C", str(self.build), f"-j{self.jobs}", *sorted(targets)])

    def _run_or_raise(self, command):
        done = subprocess.run(command, capture_output=True, text=True, cwd=self.project)
        if done.returncode != 0:
            raise SuiteError(f"{' '.join(command[:2])} failed:\n{done.stdout[-3000:]}{done.stderr}")
        return done.stdout

    def _learn_compiling(self):
        """Command, object and included files of each of the library's sources."""
        entries = json.loads((self.build / "compile_commands.json").read_text())
        self.compiling = {}
        for entry in entries:
            arguments = shlex.split(entry["command"])
            while arguments[0].endswith("ccache"):
                del arguments[0]
            output = arguments[arguments.index("-o") + 1]
            if any(f"/{folder}/" in output for folder in OBJECT_FOLDERS):
                source = os.path.relpath(entry["file"], self.project)
                self.compiling[source] = (arguments, output)
        self.includers = {}
        lines = self._run_or_raise(["ninja", "-C", str(self.build), "-t", "deps"]).splitlines()
        outputs = {output: source for source, (_, output) in self.compiling.items()}
        source = None
        for line in lines:
            if line and not line[0].isspace():
                source = outputs.get(line.split(":")[0])
            elif source and line.strip():
                header = os.path.relpath(os.path.join(self.build, line.strip()), self.project)
                self.includers.setdefault(header, []).append(source)

    def _precompile(self):
        """Compiles the standard headers with the options that all sources of the library share."""
        header = self.build / "benches" / "standard.h"
        header.parent.mkdir(exist_ok=True)
        header.write_text("".join(f"#include <{name}>\n" for name in STANDARD_HEADERS.split()))
        arguments, _ = next(iter(self.compiling.values()))
        options = [word for word in arguments[: arguments.index("-o")] if not word.startswith("-I")]
        options = [word for word in options[1:] if word != "-c"]
        self._run_or_raise([QUICK_COMPILER, *options, "-x", "c++-header", str(header), "-o", f"{header}.pch"])
        self.precompiled = ("-include-pch", f"{header}.pch")

    def sources_touched_by(self, file):
        return [file] if file in self.compiling else sorted(self.includers.get(file, []))

    def _link_command(self, target):
        """The linker's command of a target; what runs after it is left out."""
        commands = self._run_or_raise(["ninja", "-C", str(self.build), "-t", "commands", target])
        for line in reversed(commands.splitlines()):
            for part in (shlex.split(part) for part in line.split(" && ")):
                is_link = "-o" in part and "-c" not in part
                if is_link and target in part[part.index("-o") + 1]:
                    return part
        raise SuiteError(f"no link command for {target}")

    def _linker_of(self, command):
        """What the compiler calls to link, so that it need not be started for that."""
        told = subprocess.run([*command, "-fuse-ld=lld", "-###"], cwd=self.build, text=True,
                              capture_output=True).stderr
        call = next(shlex.split(line) for line in told.splitlines() if "collect2" in line)
        return ["ld.lld", *(word for i, word in enumerate(call[1:])
                            if not word.startswith(("-plugin", "-fuse-ld")) and call[i] != "-plugin")]

    def _fingerprint(self, name):
        """What a program is made of besides the library's own objects."""
        files = set(self._link_command(name)) | set(self.linking[name])
        contents = []
        for word in sorted(files):
            path = self.build / word
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

    def _compile(self, source, output, *options):
        arguments, _ = self.suite.compiling[source]
        if options == self.suite.precompiled:
            arguments = [QUICK_COMPILER, *arguments[1:]]
        at = arguments.index("-o")
        arguments = arguments[:at] + list(options) + ["-o", str(output)] + arguments[at + 2 :]
        for room in ROOMS:
            arguments = [re.sub(rf"^(-I|-isystem)?{re.escape(str(self.suite.project))}/{room}\b",
                                rf"\g<1>{self.tree}/{room}", word) for word in arguments]
        done = subprocess.run(arguments, cwd=self.suite.build, env=self.suite.environment,
                              capture_output=True)
        return done.returncode == 0

    def compile(self, source, number, *options):
        """The object of a source as it is in this place's tree; None if it does not compile."""
        output = self.folder / f"{number}.o"
        options = options or self.suite.precompiled
        return str(output) if self._compile(source, output, *options) else None

    def _link(self, program, objects, *options):
        """The program, or the library that it is given; None if it cannot be linked."""
        output = self.folder / (program.library or program.name)
        command = self.suite.linker[program.name]
        if options:
            command = [*self.suite.linking[program.name], "-fuse-ld=lld", *options]
        command = [objects.get(word, word) for word in command]
        command[command.index("-o") + 1] = str(output)
        done = subprocess.run(command, cwd=self.suite.build,
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
            command = ["env", f"LD_PRELOAD={linked}", str(self.suite.build / "bin" / program.name)]
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
        objects = self._objects(mutant)
        if objects is None:
            return "invalid", "does not compile"
        slow = PROGRAMS["qor-compare-replays"]
        for program in order_for(mutant.file):
            if program is slow and self._is_same_code(mutant, text):
                return "same code", "the optimiser makes the same object of it"
            status = self.run(program, objects, self.suite.limit_of(program))
            if status is None:
                return "invalid", "does not link"
            if status != 0:
                return "killed", program.name
        return self._judge_sanitized(mutant, text)

    def _objects(self, mutant, *options):
        """The objects of what a mutant touches, by those whose place they take."""
        objects = {}
        for i, source in enumerate(self.suite.sources_touched_by(mutant.file)):
            compiled = self.compile(source, i, *options)
            if compiled is None:
                return None
            objects[self.suite.compiling[source][1]] = compiled
        return objects

    def _judge_sanitized(self, mutant, text):
        self.suite.try_sanitizers_unchanged()
        (self.tree / mutant.file).write_text(mutant.apply(text))
        objects = self._objects(mutant, *SANITIZERS)
        for program in (PROGRAMS[name] for name in SANITIZED):
            seconds = 5 * self.suite.limit_of(program)
            if objects is None or self.run(program, objects, seconds, *SANITIZERS) != 0:
                return "killed", f"{program.name} under the sanitizers"
        return "survived", ""

    def _is_same_code(self, mutant, text):
        """Whether the shipped optimisation makes the same of the mutant as of the original."""
        path = self.tree / mutant.file
        output = self.folder / "optimised.o"
        for source in self.suite.sources_touched_by(mutant.file):
            contents = []
            for state in (mutant.apply(text), text):
                path.write_text(state)
                if not self._compile(source, output, "-O2", "-g0"):
                    return False
                contents.append(output.read_bytes())
            if contents[0] != contents[1]:
                return False
        return True
