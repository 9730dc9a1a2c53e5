"""The demonstration runs, its pictures are those in docs/pictures, and what the documents show is what kine answers."""

import os
import re
import shlex
import subprocess
import sys

import pytest
from conftest import CELLS, ROOT, run_kine

sys.path.insert(0, str(ROOT / "tests/figures"))
from compare_figures import difference  # noqa: E402

PICTURES = ROOT / "docs/pictures"
BLOCK = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)
# Rounding alone, which another machine may do otherwise.
RESIDUAL = re.compile(r"\d\.\d+e-\d+")


def blocks(name):
    text = (ROOT / name).read_text(encoding="ascii" if name.endswith("kine.md") else "utf-8")
    return BLOCK.findall(text)


def plain(text):
    return RESIDUAL.sub("rounding", text)


@pytest.fixture(scope="module")
def demo(tmp_path_factory):
    folder = tmp_path_factory.mktemp("pictures")
    run = subprocess.run([ROOT / "tools/kine/demo.sh", os.environ["KINE"], folder], capture_output=True, text=True,
                         timeout=300, check=False)
    return folder, run


def test_the_demonstration_ends_well_and_says_that_every_cell_is_good(demo):
    _, run = demo
    assert run.returncode == 0 and run.stderr == ""
    assert run.stdout.count("Verdict: good\n") == len(list(CELLS.glob("*.json"))) == run.stdout.count("Verdict:")
    assert run.stdout.splitlines()[-1] == "" or "plot deflection" in run.stdout.splitlines()[-2]


def test_the_demonstration_draws_the_pictures_of_the_documents(demo):
    folder, _ = demo
    names = {path.name for path in PICTURES.iterdir()}
    assert {path.name for path in folder.iterdir()} == names
    for name in sorted(names):
        old, new = ((place / name).read_text(encoding="utf-8") for place in (PICTURES, folder))
        assert difference(old, new) is None, f"{name}: run tools/kine/demo.sh KINE docs/pictures"


@pytest.mark.parametrize("name", ["docs/kine.md", "README.md"])
def test_the_documents_show_what_kine_answers(name):
    found = blocks(name)
    assert found
    for block in found:
        first, expected = block.split("\n", 1)
        assert first.startswith("$ kine "), first
        run = run_kine(*shlex.split(first)[2:])
        assert run.err == "" and plain(run.out) == plain(expected), first
