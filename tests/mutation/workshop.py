"""Builds mutants and runs the tests on them.

The library and all test programs are built once, by the preset "mutation". A mutant compiles again what includes the
changed file, into a folder of its own, and links it with the rest of that build: the sources stay untouched and several
mutants can be tried at once. Which commands that takes is asked of the build itself.
"""

import json
import math
import os
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import time
from collections import namedtuple

PRESET = "mutation"
CORE = "kinedll_core.dir"
LIBRARY = "libKineDll.so"
# The folders of tests/ whose programs tell what a caller sees of a mutant, in the order in which they are run, behind
# the folder that mirrors the one of the changed file. The other unit tests follow.
FOLDERS = ("api", "golden", "property", "chain", "config", "diagnostics")
PROGRAMS = re.compile(r"^(tests/(\w+)/(\w+_tests|calls_from_c)): C(?:XX)?_EXECUTABLE_LINKER", re.MULTILINE)
COMPARISON_CALLS = 4000
MAX_FILE_BYTES = 50_000_000

# A command of the build as words; what it makes and what it makes it from, as the build names them.
Command = namedtuple("Command", "words output inputs")
Program = namedtuple("Program", "name folder link seconds")


class NotCompiled(Exception):
    pass


def time_limit(seconds):
    """For a program that takes so long on the library itself: a mutant may make it slower, and so may the machine."""
    return 10.0 + 5.0 * seconds


def restrict(limit):
    """In a started process, for it and all that it starts; one that is left alone does not run for ever."""
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_CPU, (math.ceil(limit), math.ceil(limit) + 1))
    resource.setrlimit(resource.RLIMIT_FSIZE, (MAX_FILE_BYTES, MAX_FILE_BYTES))


def succeeds(command, folder, environment=None, limit=600.0, log=subprocess.DEVNULL):
    """Whether a command ends well and in time; one that does not end is stopped with all it has started."""
    process = subprocess.Popen(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=log,
                               stderr=subprocess.STDOUT, start_new_session=True,
                               preexec_fn=lambda: restrict(limit))
    try:
        return process.wait(limit) == 0
    except subprocess.TimeoutExpired:
        return False
    finally:
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()


def linked_objects(words):
    return [word for word in words if word.endswith(".o")]


def redirected(command, output, replaced):
    """The words of a command that makes output instead, from replaced inputs where there are such."""
    words = [replaced.get(word, word) for word in command.words]
    place = command.words.index("-o") + 1
    words[place] = str(output)
    return words


def parse_deps(text):
    """Object to the files it was compiled from, of what `ninja -t deps` prints."""
    deps = {}
    for line in text.splitlines():
        if line.startswith(" "):
            deps[name].add(line.strip())
        elif ": #deps" in line:
            name = line.partition(": #deps")[0]
            deps[name] = set()
    return deps


class Workshop:
    def __init__(self, root, folder):
        self.root = root
        self.build = root / "build" / PRESET
        self.folder = folder
        self.compiles = {}
        self.deps = {}
        self.shared_library = None
        self.programs = []
        self.comparison_seconds = 0.0

    # --- The build ------------------------------------------------------------------------------------------------
    def prepare(self, jobs):
        for command in (["cmake", "--preset", PRESET], ["cmake", "--build", "--preset", PRESET, "-j", str(jobs)]):
            done = subprocess.run(command, cwd=self.root, capture_output=True, text=True, check=False)
            if done.returncode != 0:
                raise RuntimeError(done.stdout + done.stderr)
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            words = shlex.split(entry["command"])
            output = words[words.index("-o") + 1]
            self.compiles[output] = Command(words, output, [entry["file"]])
        real = lambda name: os.path.realpath(self.build / name)
        self.deps = {name: {real(path) for path in paths}
                     for name, paths in parse_deps(self.ninja("-t", "deps")).items() if name in self.compiles}
        targets = self.ninja("-t", "targets", "all")
        library = re.search(rf"^({re.escape(LIBRARY)}[\d.]*): CXX_SHARED", targets, re.MULTILINE).group(1)
        self.shared_library = self.link_of(library)
        for path, folder, name in PROGRAMS.findall(targets):
            self.programs.append(Program(name, folder, self.link_of(path), 0.0))

    def ninja(self, *arguments):
        return subprocess.run(["ninja", *arguments], cwd=self.build, capture_output=True, text=True, check=True).stdout

    def link_of(self, target):
        line = self.ninja("-t", "commands", target).splitlines()[-1]
        words = shlex.split(line.removeprefix(": && ").partition(" && :")[0])
        return Command(words, words[words.index("-o") + 1], linked_objects(words))

    def environment(self, library_folder, folder):
        return {**os.environ, "LD_LIBRARY_PATH": str(library_folder), "TEST_TMPDIR": str(folder), "TMPDIR": str(folder),
                "PYTHONDONTWRITEBYTECODE": "1"}

    def measure(self):
        """Runs all tests on the library itself: they must pass, and their time gives the limit for mutants."""
        folder = self.fresh("baseline")
        timed = []
        for program in self.programs:
            begin = time.monotonic()
            if not self.run(program, self.build / program.link.output, self.build, folder, 600.0):
                raise RuntimeError(f"{program.name} fails on the library itself: see {folder}/log")
            timed.append(program._replace(seconds=time.monotonic() - begin))
        self.programs = timed
        begin = time.monotonic()
        if not self.compare(self.build, folder, 600.0):
            raise RuntimeError(f"the comparison with the naive model fails on the library itself: see {folder}/log")
        self.comparison_seconds = time.monotonic() - begin

    # --- One mutant -----------------------------------------------------------------------------------------------
    def fresh(self, name):
        folder = self.folder / str(name)
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        return folder

    def order_for(self, file, killers):
        """The programs in the order in which they are run: the last killers of the file first."""
        layer = file.split("/")[1]

        def rank(program):
            cheap = not self.is_unit(program)
            folder = FOLDERS.index(program.folder) + 1 if program.folder in FOLDERS else len(FOLDERS) + 1
            mirrored = 0 if program.folder == layer else 1
            recent = killers.index(program.name) if program.name in killers else len(killers)
            # Unit tests include the headers of the library: they are compiled again when one is changed.
            return (recent, 0 if cheap else 1, mirrored, folder, program.seconds) if file.endswith(".h") else (
                recent, mirrored, folder, program.seconds)

        return sorted(self.programs, key=rank)

    @staticmethod
    def is_unit(program):
        return any(CORE in name for name in program.link.inputs)

    def try_mutant(self, worker, file, text, killers):
        """The program that fails on the file with this text, or None. Raises NotCompiled."""
        folder = self.fresh(worker)
        changed = folder / "changed" / file.removeprefix("src/")
        changed.parent.mkdir(parents=True)
        changed.write_text(text)
        source = os.path.realpath(self.root / file)
        stale = {name for name, paths in self.deps.items() if source in paths}
        made = {}

        def compile_again(names):
            for name in names:
                if name in stale and name not in made:
                    output = folder / f"{len(made)}.o"
                    words = [str(changed) if word == source else word
                             for word in redirected(self.compiles[name], output, {})]
                    # The folder with the changed header comes before that of the others.
                    words[1:1] = ["-w", f"-I{folder / 'changed'}"]
                    if not succeeds(words, self.build):
                        raise NotCompiled
                    made[name] = str(output)

        compile_again(self.shared_library.inputs)
        library = folder / self.shared_library.output
        if not succeeds(redirected(self.shared_library, library, made), self.build):
            raise NotCompiled
        (folder / (LIBRARY + ".1")).symlink_to(library.name)

        for program in self.order_for(file, killers):
            try:
                compile_again(program.link.inputs)
            except NotCompiled:
                return program.name
            executable = self.build / program.link.output
            if any(name in made for name in program.link.inputs):
                executable = folder / program.name
                if not succeeds(redirected(program.link, executable, made), self.build):
                    return program.name
            if not self.run(program, executable, folder, folder, time_limit(program.seconds)):
                return program.name
        return None if self.compare(folder, folder, time_limit(self.comparison_seconds)) else "compare.py"

    def run(self, program, executable, library_folder, folder, limit):
        with open(folder / "log", "wb") as log:
            return succeeds([str(executable), "--gtest_fail_fast", "--gtest_brief=1"], folder,
                            self.environment(library_folder, folder), limit, log)

    def compare(self, library_folder, folder, limit):
        script = self.root / "tests" / "reference" / "compare.py"
        with open(folder / "log", "wb") as log:
            return succeeds([sys.executable, str(script), "--library", str(library_folder / (LIBRARY + ".1")),
                             "--calls", str(COMPARISON_CALLS), "--seed", "1"], folder,
                            self.environment(library_folder, folder), limit, log)
