"""Runs the program under test as a user would."""

import functools
import json
import os
import pathlib
import subprocess
from collections import namedtuple

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
CELLS = ROOT / "tools/kine/cells"
OPEN_CELLS = ROOT / "tests/kine/cells"  # the Puma without limits: every posture and turn counts
DONE, REFUSED, USAGE, BAD_FILE = range(4)

Run = namedtuple("Run", "status out err")


def run_kine(*arguments, stdin="", directory=CELLS, timeout=60):
    """Status, standard output and standard error of one run; bytes in, bytes out when stdin is bytes."""
    done = subprocess.run([os.environ["KINE"], *map(str, arguments)], input=stdin, capture_output=True,
                          cwd=directory, timeout=timeout, text=isinstance(stdin, str), check=False)
    return Run(done.returncode, done.stdout, done.stderr)


@pytest.fixture
def kine():
    return run_kine


@pytest.fixture
def open_kine():
    return functools.partial(run_kine, directory=OPEN_CELLS)


def json_rows(run):
    return [json.loads(line) for line in run.out.splitlines()]


def csv_rows(run):
    """The rows as dictionaries by column, numbers as numbers where they are some."""
    header, *lines = [line.split(",") for line in run.out.splitlines()]
    rows = []
    for line in lines:
        assert len(line) == len(header), line
        rows.append({name: as_number(text) for name, text in zip(header, line)})
    return rows


def as_number(text):
    try:
        return float(text)
    except ValueError:
        return text
