"""Compiles and runs the programs of the documents and compares what they print with what the documents say.

A program is a fenced block of the language c, cpp or python. A fenced block of the language text that follows it
before the next program is what it must print. A block of these languages that is not a whole program is an error, so
that nothing in the text goes untested; one below a line `<!-- from: FILE -->` repeats a file that another test builds,
and is not looked at here. Numbers may differ by one unit of their last printed digit, since the last
digits of sines belong to the C library; everything else compares character by character.
"""

import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile
from dataclasses import dataclass

SKIPPED = 77
FENCE = re.compile(r"^```(\w*)[ \t]*$")
NUMBER = re.compile(r"[-+]?\d+\.\d+(?![\w.])")
SECONDS = 60


@dataclass
class Block:
    language: str
    line: int
    text: str
    repeats_a_file: bool = False


@dataclass
class Program:
    language: str
    line: int
    text: str
    output: str | None


def blocks_of(text):
    """The fenced blocks of a Markdown text in their order; line is that of the opening fence."""
    found, current, above = [], None, ""
    for number, line in enumerate(text.split("\n"), start=1):
        fence = FENCE.match(line)
        if current is None:
            if fence:
                current = Block(fence.group(1), number, "", above.startswith("<!-- from: "))
            above = line
        elif line.rstrip() == "```":
            found.append(current)
            current = None
        else:
            current.text += line + "\n"
    if current is not None:
        raise ValueError(f"line {current.line}: the block does not end")
    return found


def programs_of(text, languages):
    programs = []
    for block in blocks_of(text):
        if block.language in ("c", "cpp", "python") and not block.repeats_a_file:
            programs.append(Program(block.language, block.line, block.text, None))
        elif block.language == "text" and programs and programs[-1].output is None:
            programs[-1].output = block.text
    return [program for program in programs if program.language in languages]


def is_whole(program):
    return program.language == "python" or re.search(r"^int main\(", program.text, flags=re.MULTILINE) is not None


def same_line(expected, actual):
    """Equal text, and numbers with a decimal point within one unit of the last digit shown."""
    if NUMBER.sub("#", expected).split() != NUMBER.sub("#", actual).split():
        return False
    for said, printed in zip(NUMBER.findall(expected), NUMBER.findall(actual)):
        digits = len(said.split(".")[1])
        if len(printed.split(".")[1]) != digits or abs(float(said) - float(printed)) > 1.01 * 10.0 ** -digits:
            return False
    return True


def output_problem(expected, actual):
    """A sentence on the first difference, or None. Spaces at the ends of lines and the text do not count."""
    said, printed = expected.strip().split("\n"), actual.strip().split("\n")
    if len(said) != len(printed):
        return f"prints {len(printed)} lines instead of {len(said)}:\n{actual}"
    for one, other in zip(said, printed):
        if not same_line(one, other):
            return f"prints\n    {other}\ninstead of\n    {one}"
    return None


def command_for(program, options, folder):
    """Builds the program in the folder if it must be built. Returns the command that runs it, or a sentence."""
    if program.language == "python":
        source = folder / "program.py"
        source.write_text(program.text, encoding="utf-8")
        return [options.python, "-B", str(source)]
    dialect = {"c": [options.cc, "-std=c99"], "cpp": [options.cxx, "-std=c++17"]}[program.language]
    source = folder / f"program.{program.language}"
    source.write_text(program.text, encoding="utf-8")
    # Eigen's own headers are not held to these warnings.
    eigen = ["-isystem", options.eigen] if options.eigen else []
    command = dialect + ["-Wall", "-Wextra", "-Werror", f"-I{options.include}"] + eigen + options.flags.split()
    command += [str(source), "-o", str(folder / "program"), f"-L{options.shared_library.parent}", "-lKineDll", "-lm",
                f"-Wl,-rpath,{options.shared_library.parent}"]
    built = subprocess.run(command, capture_output=True, text=True, check=False)
    return [str(folder / "program")] if built.returncode == 0 else "does not compile:\n" + built.stderr


def missing_for(program, options):
    """What the program needs and is not there, or None."""
    if program.language == "cpp" and "<Eigen/" in program.text and not options.eigen:
        return "Eigen (Debian: libeigen3-dev)"
    if program.language == "python" and "scipy" in program.text:
        if subprocess.run([options.python, "-c", "import scipy"], capture_output=True, check=False).returncode:
            return f"scipy for {options.python} (Debian: python3-scipy)"
    return None


def problem_with(program, options):
    """A sentence on what is wrong with a program, or None."""
    if not is_whole(program):
        return "is not a whole program"
    with tempfile.TemporaryDirectory() as name:
        command = command_for(program, options, pathlib.Path(name))
        if isinstance(command, str):
            return command
        run = subprocess.run(command, capture_output=True, text=True, encoding="latin-1", check=False,
                             timeout=SECONDS, cwd=name)
    if run.returncode:
        return f"ends with {run.returncode}:\n{run.stdout}{run.stderr}"
    return output_problem(program.output, run.stdout) if program.output is not None else None


def documents_of(root):
    return [root / "README.md"] + sorted((root / "docs").rglob("*.md"))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--root", type=pathlib.Path, required=True)
    parser.add_argument("--include", type=pathlib.Path, required=True)
    parser.add_argument("--library", dest="shared_library", type=pathlib.Path, required=True,
                        help="the library's file")
    parser.add_argument("--language", choices=["c", "cpp", "python"], required=True)
    parser.add_argument("--cc", default="gcc")
    parser.add_argument("--cxx", default="g++")
    parser.add_argument("--python", default=sys.executable)
    parser.add_argument("--eigen", default="", help="folder of Eigen's headers; empty: not there")
    parser.add_argument("--flags", default="", help="further options of the compiler")
    options = parser.parse_args()
    options.shared_library = options.shared_library.resolve()
    os.environ.setdefault("LC_ALL", "C.UTF-8")

    ran, failed, skipped = 0, 0, 0
    for document in documents_of(options.root):
        for program in programs_of(document.read_text(encoding="utf-8"), [options.language]):
            where = f"{document.relative_to(options.root)}:{program.line}"
            missing = missing_for(program, options)
            if missing:
                print(f"*** SKIPPED: {where} NEEDS {missing} ***")
                skipped += 1
                continue
            problem = problem_with(program, options)
            ran += 1
            if problem:
                print(f"{where}: {problem}")
                failed += 1
    print(f"{ran} programs ran, {failed} failed, {skipped} skipped")
    if failed or ran + skipped == 0:
        return 1
    return SKIPPED if ran == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
