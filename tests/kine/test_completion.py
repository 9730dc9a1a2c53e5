"""kine completion: bash is asked as it asks itself; zsh and fish check the syntax where they are installed."""

import re
import shutil
import subprocess

import pytest

from conftest import BAD_FILE, CELLS, DONE, USAGE

OPTION = re.compile(r"^  (-[-a-zA-Z0-9,]+)", re.MULTILINE)
ASK = """
source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
_kine
printf '%s\\n' "${COMPREPLY[@]}"
"""


@pytest.fixture(scope="module")
def script(tmp_path_factory):
    from conftest import run_kine
    path = tmp_path_factory.mktemp("completion") / "kine.bash"
    run = run_kine("completion", "bash", "-o", path)
    assert run == (DONE, "", "")
    return path


@pytest.fixture
def complete(script):
    def ask(*words, directory=CELLS):
        """What bash offers for the last of the words."""
        done = subprocess.run(["bash", "-c", ASK, "bash", script, "kine", *words], capture_output=True, text=True,
                              cwd=directory, timeout=20, check=True)
        assert done.stderr == ""
        return sorted(done.stdout.split())
    return ask


def help_of(kine, *command):
    run = kine(*command, "--help")
    assert run.status == DONE
    return run.out


def options_in(text):
    return sorted(name for names in OPTION.findall(text) for name in names.split(","))


def commands_in(text):
    if "\nSubcommands:\n" not in text:
        return []
    rows = text.split("\nSubcommands:\n")[1].split("\n\n")[0].splitlines()
    return [row.split()[0] for row in rows if row.startswith("  ") and not row.startswith("   ")]


def all_commands(kine, *path):
    yield path
    for name in commands_in(help_of(kine, *path)):
        yield from all_commands(kine, *path, name)


def test_the_script_registers_itself_and_parses(script):
    done = subprocess.run(["bash", "-c", 'set -eu; source "$1"; complete -p kine', "bash", script],
                          capture_output=True, text=True, check=True)
    assert done.stdout == "complete -F _kine kine\n" and done.stderr == ""


def test_every_command_and_every_option_of_every_help_is_offered(kine, complete):
    paths = list(all_commands(kine))
    assert ("fk",) in paths and ("completion",) in paths
    for path in paths:
        text = help_of(kine, *path)
        assert complete(*path, "-") == options_in(text), path
        if commands_in(text):
            assert complete(*path, "") == sorted(commands_in(text)), path


def test_the_start_of_a_word_chooses(complete):
    assert complete("co") == ["completion", "convert"]
    assert complete("offset", "--al") == ["--along"]
    assert complete("fk", "puma.json", "--in", "w") == ["wobj", "world"]


@pytest.mark.parametrize("words, expected", [
    (("fk", "--in", ""), ["base", "flange", "vision", "wobj", "world"]),
    (("fk", "puma.json", "@ready", "--in", ""), ["base", "flange", "vision", "wobj", "world"]),
    (("fk", "--in", "=", "b"), ["base"]),
    (("fk", "--in", "="), ["base", "flange", "vision", "wobj", "world"]),
    (("convert", "--to", ""), ["wobj", "world"]),
    (("offset", "-10,0,0,0,0,0", "--by", "-1,2,3,4,5,6", "--along", ""), ["tool", "wobj"]),
    (("completion", ""), ["bash", "fish", "zsh"]),
    (("completion", "-o", "somewhere", "z"), ["zsh"]),
    (("completion", "bash", ""), []),
    (("fk", "--tool", ""), []),
    (("fk", "--jobs", ""), []),
    (("fk", "puma.json", ""), []),
    (("explain", ""), []),
    (("nothing", "--"), ["--help", "--version"]),
])
def test_values_of_options_and_arguments(complete, words, expected):
    assert complete(*words) == expected


def test_a_cell_is_a_json_file_or_a_directory_on_the_way(complete, tmp_path):
    for name in ("a.json", "b.json", "c.csv", "with space.json"):
        (tmp_path / name).write_text("{}")
    (tmp_path / "cells").mkdir()
    (tmp_path / "cells" / "deep.json").write_text("{}")
    assert complete("fk", "", directory=tmp_path) == sorted("a.json b.json cells with space.json".split())
    assert complete("fk", "cells/", directory=tmp_path) == ["cells/deep.json"]
    assert complete("offset", "--cell", "b", directory=tmp_path) == ["b.json"]
    assert complete("fk", "a.json", "-i", "c", directory=tmp_path) == ["c.csv", "cells"]


@pytest.mark.parametrize("shell, check", [("zsh", ["zsh", "-n"]), ("fish", ["fish", "--no-config", "--no-execute"])])
def test_the_other_shells_take_their_script(kine, tmp_path, shell, check):
    script = tmp_path / "script"
    run = kine("completion", shell, "--output", script)
    assert run == (DONE, "", "")
    assert kine("completion", shell).out == script.read_text()
    if not shutil.which(shell):
        pytest.skip(f"SKIPPED: {shell.upper()} IS NOT INSTALLED")
    done = subprocess.run([*check, script], capture_output=True, text=True, check=False)
    assert (done.returncode, done.stderr) == (0, "")


def test_zsh_and_fish_know_every_option(kine):
    zsh, fish = kine("completion", "zsh").out, kine("completion", "fish").out
    assert zsh.startswith("#compdef kine\n")
    for path in all_commands(kine):
        body = zsh.split("\n" + "_".join(("_kine", *path)) + "() {\n")[1].split("\n}\n")[0]
        seen = "; and ".join(f"__fish_seen_subcommand_from {name}" for name in path)
        lines = [line for line in fish.splitlines() if line.startswith(f"complete -c kine -n '{seen}")]
        for option in options_in(help_of(kine, *path)):
            assert re.search(rf"[')]{option}[=+\[]", body), (path, option)
            short = f" -l {option[2:]} " if option.startswith("--") else f" -s {option[1:]} "
            assert any(short in line for line in lines), (path, option)


def test_a_shell_that_is_not_known_is_told(kine):
    run = kine("completion", "tcsh")
    assert run.status == USAGE and run.out == "" and "tcsh not in {bash,zsh,fish}" in run.err
    assert kine("completion").status == USAGE


def test_a_script_that_cannot_be_written_is_a_bad_file(kine):
    run = kine("completion", "bash", "-o", "/nowhere/kine.bash")
    assert run.status == BAD_FILE and run.err == "/nowhere/kine.bash: No such file or directory\n"
