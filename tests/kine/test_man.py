"""kine man: the page is well formed and says all that the help of each command says."""

import os
import re
import shutil
import subprocess

import pytest

from conftest import BAD_FILE, DONE
from test_completion import all_commands, help_of, options_in

SECTIONS = ["NAME", "SYNOPSIS", "DESCRIPTION", "COMMANDS", "EXIT STATUS", "FILES", "SEE ALSO"]
ESCAPES = {r"\-": "-", r"\(ga": "`", r"\(aq": "'", r"\(ha": "^", r"\(ti": "~", r"\(dq": '"', r"\e": "\\",
           r"\&": "", r"\fB": "", r"\fI": "", r"\fR": ""}


@pytest.fixture(scope="module")
def page(tmp_path_factory):
    from conftest import run_kine
    path = tmp_path_factory.mktemp("man") / "kine.1"
    assert run_kine("man", "-o", path) == (DONE, "", "")
    return path


def plain(source):
    """The text without its macros."""
    lines = [line for line in source.splitlines() if not re.match(r"\.(TP|PP|RS|RE|nf|fi|TH)\b", line)]
    return re.sub(r"\\(?:\(..|f.|.)", lambda escape: ESCAPES[escape.group()], "\n".join(lines))


def test_the_page_on_the_output_is_the_page_in_the_file(kine, page):
    assert kine("man").out == page.read_text()


def test_the_page_has_its_sections_in_order(page):
    assert re.findall(r"^\.SH (.*)$", page.read_text(), re.MULTILINE) == SECTIONS


def test_the_head_tells_version_and_day(kine, page):
    version = kine("--version").out.strip()
    assert re.fullmatch(rf'\.TH KINE 1 \d{{4}}-\d\d-\d\d "{re.escape(version)}" "User Commands"',
                        page.read_text().splitlines()[0])


def test_every_option_and_example_of_every_help_is_there(kine, page):
    commands = plain(page.read_text()).split(".SH COMMANDS")[1].split(".SH EXIT STATUS")[0]
    parts = dict(part.split("\n", 1) for part in commands.split(".SS ")[1:])
    paths = [path for path in all_commands(kine) if path]
    assert list(parts) == [" ".join(("kine", *path)) for path in paths]
    for path in paths:
        text, part = help_of(kine, *path), parts[" ".join(("kine", *path))]
        for option in options_in(text):
            assert re.search(rf"^(.*, )?{option}\b", part, re.MULTILINE), (path, option)
        for example in re.findall(r"^  (kine .*)$", text.split("Examples:")[-1], re.MULTILINE):
            assert f"\n{example}\n" in part, (path, example)
        flowing = " ".join(part.split())
        assert text.split("\n")[0] + "." in flowing, path


def test_the_page_of_one_option(page):
    assert (".TP\n\\fB\\-\\-along\\fR \\fIAXES\\fR\n"
            "tool: along and about the axes of each pose; wobj: along the axes of\n"
            "its frame, turned in place. Otherwise tool.\n") in page.read_text()


def test_the_exit_status_are_four(page):
    status = plain(page.read_text()).split(".SH EXIT STATUS")[1].split(".SH")[0]
    assert re.findall(r"^(\d)$", status, re.MULTILINE) == ["0", "1", "2", "3"]


@pytest.mark.parametrize("check", [["mandoc", "-T", "lint"], ["groff", "-man", "-ww", "-z", "-Tutf8"],
                                   ["man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8"]], ids=lambda check: check[0])
def test_the_formatters_have_no_complaint(page, check):
    if not shutil.which(check[0]):
        pytest.skip(f"SKIPPED: {check[0].upper()} IS NOT INSTALLED")
    done = subprocess.run([*check, page], capture_output=True, text=True, check=False,
                          env={**os.environ, "MANPAGER": "cat", "MANWIDTH": "100"})
    assert done.returncode == 0 and done.stderr == ""
    assert check[0] != "mandoc" or done.stdout == ""


def test_a_page_that_cannot_be_written_is_a_bad_file(kine):
    run = kine("man", "-o", "/nowhere/kine.1")
    assert run.status == BAD_FILE and run.err == "/nowhere/kine.1: No such file or directory\n"
