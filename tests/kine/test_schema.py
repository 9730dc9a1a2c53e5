"""The schema of the cell file against the reader of it: both take and refuse the same cells."""

import copy
import json
import re
import tempfile
from concurrent.futures import ThreadPoolExecutor

import pytest

from conftest import BAD_FILE, CELLS, ROOT, run_kine

try:
    import jsonschema
except ImportError:
    pytest.skip("SKIPPED: python3-jsonschema IS NOT INSTALLED", allow_module_level=True)

SCHEMA_FILE = ROOT / "tools/kine/cell/cell.schema.json"
SCHEMA = json.loads(SCHEMA_FILE.read_text())
VALIDATOR = jsonschema.Draft7Validator(SCHEMA)

FRAME = {"x_mm": 1, "y_mm": 2, "z_mm": 3, "a_deg": 4, "b_deg": 5, "c_deg": 6}
LOAD = {"mass_kg": 2.5, "cog_mm": [0, 0, 80], "axes_of_moment_deg": [0, 0, 0], "inertia": [0.1, 0.1, 0.05]}
REST = {
    "$schema": "../cell/cell.schema.json",
    "name": "Everything",
    "about": "Every key of the format.",
    "external_axes": [
        {"name": "tilt", "kind": "rotary", "travel_deg": [-90, 90]},
        {"name": "turn", "kind": "rotary"},
        {"name": "track", "kind": "linear", "travel_mm": [0, 4000]},
    ],
    "mechanical_units": [
        {"name": "track", "kind": "linear", "axes": [{"external_axis": 2, "frame": FRAME}], "carried_frame": FRAME},
        {
            "name": "table",
            "kind": "two-rotary",
            "axes": [{"external_axis": 0, "frame": FRAME}, {"external_axis": 1, "frame": FRAME}],
        },
    ],
    "robot_on_unit": 0,
    "tools": {
        "torch": {"held_by_robot": True, "frame": FRAME, "load": LOAD},
        "stand": {"held_by_robot": False, "frame": FRAME},
    },
    "work_objects": {
        "part": {"held_by_robot": False, "mechanical_unit": 1, "object_frame": FRAME},
        "held": {"held_by_robot": True, "user_frame": FRAME, "object_frame": FRAME},
    },
    "loads": {"sheet": LOAD},
    "poses": {"above": {**FRAME, "cfg": [0, 0, -1, 0], "external_mm_or_deg": [0, 0, 1000]}},
    "use": {"tool": "torch", "work_object": "part", "load": "sheet"},
}
EXPECT = {"what": "a check", "source": "by hand", "tool": "torch", "work_object": "part", "load": "sheet",
          "within_mm": 0.01, "within_deg": 0.01}


def with_axes(arm, axes):
    values = [10.0 * i for i in range(axes)]
    joints = {"axes_deg": values, "external_mm_or_deg": [0, 0, 500]}
    return {
        **copy.deepcopy(REST),
        "arm": arm,
        "limits": {"lower_deg": [-180] * axes, "upper_deg": [180] * axes},
        "joints": {"home": joints},
        "expect": [{**EXPECT, "joints": "home", "in": "world", "frame": FRAME},
                   {**EXPECT, "joints": joints, "code": "0x6034"}],
    }


SIX = with_axes(
    {
        "type": 6, "a1_mm": 150, "a2_mm": 600, "a3_mm": 100, "d1_mm": 450, "d4_mm": 620, "d6_mm": 100, "d3_mm": 0,
        "lateral_offset_mm": 0, "d5_mm": 0, "a4_mm": 0, "a5_mm": 0, "beta2_deg": 0, "alpha_deg": [90, 0, 90, -90, 90],
        "mount_x_deg": 0, "mount_y_deg": 0, "weights_Nmm": [1, 2, 3, 4, 5, 6, 7], "k2_Nm_per_rad": 1e6,
        "k3_Nm_per_rad": 1e6, "k5_Nm_per_rad": 1e6,
    }, 6)
FOUR = with_axes(
    {
        "type": 4, "link1_length_mm": 325, "link2_length_mm": 225, "z_offset_mm": 200, "screw_lead_mm_per_turn": 25,
        "link1_tilt_x_deg": 0, "link2_tilt_x_deg": 0, "link1_tilt_y_deg": 0, "link2_tilt_y_deg": 0,
    }, 4)
FOLDED = {**FOUR, "arm": {**FOUR["arm"], "type": 4110}}

# One of each kind of value, and more of the same kind.
KINDS = [None, True, "text", [1, 2], {"a": 1}, 1.5, 300]
MORE = {
    str: ["", "none", "rotary", "linear", "two-rotary", "world", "vision", "0x6012", "0x60123", "0x 12", "0x-123",
          "0x6012\n", "two\nlines", "\u0085"],
    int: [0, -1, 4.0, -128, -129, 127, 128, 255, 256],
    float: [-1e300],
    bool: [0, 1],
    list: [[], [1], [1, 2, 3], [1, 2, 3, 4], [1, 2, 3, 4, 5], [1, 2, 3, 4, 5, 6, 7], [1] * 8, ["1", 2],
           [1.5, 2, 3, 4], [0, 0, 0, 2**31 - 1], [0, 0, 0, 2**31], [0, 0, 0, -2**31], [0, 0, 0, -2**31 - 1], [{}] * 9],
    dict: [{}],
}
NAMES = ["none", "", "a@b", "a,b", "a;b", 'a"b', "a\tb", "a\nb", "a\u007f", "a\u0085", "a\n", "a b",
         "\u00e9", "a.b", "1"]


def schema_takes(cell):
    return VALIDATOR.is_valid(cell)


def reader_says(text, folder):
    """The faults that the reader finds; what the library has against the cell is another matter."""
    with tempfile.NamedTemporaryFile(dir=folder, suffix=".json") as file:
        file.write(text.encode())
        file.flush()
        run = run_kine("fk", file.name, "0", directory=folder)
    if run.status != BAD_FILE or "refuses it with 0x" in run.err:
        return []
    assert run.err.startswith(file.name + ":") and run.out == ""
    return run.err.splitlines()


def places(value, path=()):
    if isinstance(value, dict):
        for key, item in value.items():
            yield (*path, key), item
            yield from places(item, (*path, key))
    elif isinstance(value, list):
        for index, item in enumerate(value):
            yield (*path, index), item
            yield from places(item, (*path, index))


def changed(cell, path, change):
    cell = copy.deepcopy(cell)
    at = cell
    for step in path[:-1]:
        at = at[step]
    change(at, path[-1])
    return cell


def variants(cell):
    """The cell with one thing changed, for everything in it."""

    def rename(at, key):
        at[key + "_x"] = at.pop(key)

    for path, value in places(cell):
        yield f"without {path}", changed(cell, path, lambda at, key: at.pop(key))
        if isinstance(path[-1], str):
            yield f"renamed {path}", changed(cell, path, rename)
        element = isinstance(path[-1], int) and not isinstance(value, dict)
        for wrong in KINDS + ([] if element else MORE[type(value)]):
            yield f"{wrong!r} for {path}", changed(cell, path, lambda at, key: at.__setitem__(key, wrong))
        if isinstance(value, dict):
            yield f"one more key in {path}", changed(cell, path, lambda at, key: at[key].update(zzz=1))
        if isinstance(value, list):
            yield f"one more in {path}", changed(cell, path, lambda at, key: at[key].append(at[key][-1]))


def assert_they_agree(cells, folder):
    """A name that refers to nothing is for the reader alone."""
    wrong = []
    both = {True: 0, False: 0}
    cells = list(cells)
    with ThreadPoolExecutor(4) as pool:
        all_faults = list(pool.map(lambda of: reader_says(json.dumps(of[1]), folder), cells))
    for (what, cell), faults in zip(cells, all_faults):
        taken = all(line.endswith("is not in this cell") for line in faults)
        both[taken] += 1
        if schema_takes(cell) != taken:
            wrong.append(f"{what}: the schema {'takes' if not taken else 'refuses'} it, the reader: {faults}")
    assert not wrong, "\n".join(wrong[:20])
    assert both[True] and both[False]


def test_the_schema_itself_is_valid_and_closed():
    jsonschema.Draft7Validator.check_schema(SCHEMA)
    objects = [(path, value) for path, value in [((), SCHEMA), *places(SCHEMA)]
               if isinstance(value, dict) and value.get("type") == "object"]
    assert len(objects) > 15
    # An arm is closed by the arm that its type makes it.
    assert [path for path, value in objects if "additionalProperties" not in value] == [("properties", "arm")]


def test_every_shipped_cell_is_valid():
    files = sorted(CELLS.glob("*.json"))
    assert files
    for file in files:
        errors = [error.message for error in VALIDATOR.iter_errors(json.loads(file.read_text()))]
        assert not errors, (file.name, errors)


@pytest.mark.parametrize("cell", [SIX, FOUR, FOLDED], ids=["six", "four", "4110"])
def test_a_cell_with_every_key_is_taken_by_both(cell, tmp_path):
    assert schema_takes(cell), [error.message for error in VALIDATOR.iter_errors(cell)]
    assert reader_says(json.dumps(cell), tmp_path) == []


def test_each_change_is_taken_or_refused_by_both(tmp_path):
    assert_they_agree(variants(SIX), tmp_path)
    # The keys that depend on the arm.
    four = {key: FOUR[key] for key in ("arm", "limits", "joints")}
    four["expect"] = [{"joints": FOUR["joints"]["home"], "frame": FRAME}]
    assert_they_agree(variants(four), tmp_path)


def test_arms_with_the_keys_of_another_are_refused_by_both(tmp_path):
    cells = [(str((a["arm"]["type"], kind)), {**a, "arm": {**a["arm"], "type": kind}})
             for a in (SIX, FOUR) for kind in (4, 4.0, 6, 6.0, 4110, 4110.5, "6", None)]
    assert_they_agree(cells, tmp_path)


def test_names_are_taken_or_refused_by_both(tmp_path):
    cells = []
    for key in ("tools", "work_objects", "loads", "joints", "poses"):
        (some,) = list(SIX[key].values())[:1]
        cells += [(f"{key} {name!r}", {**SIX, key: {name: some}}) for name in NAMES]
    assert_they_agree(cells, tmp_path)


def test_what_only_the_reader_refuses(tmp_path):
    """The whole list of what a schema cannot say, or cannot see in values that are parsed already."""
    small = {"arm": SIX["arm"], "tools": {"torch": {}}, "joints": {"home": SIX["joints"]["home"]}}
    expect = {"joints": "home", "code": "0x6012"}
    text = json.dumps(small)
    for cell in (
        json.dumps({**small, "use": {"tool": "drill"}}),
        json.dumps({**small, "use": {"work_object": "table"}}),
        json.dumps({**small, "use": {"load": "box"}}),
        json.dumps({**small, "expect": [{**expect, "joints": "away"}]}),
        json.dumps({**small, "expect": [{**expect, "tool": "drill"}]}),
        text.replace('"a1_mm"', '"a1_mm": 7, "a1_mm"', 1),
        text.replace("150", "1e999", 1),
        text + " " * 2**20,
    ):
        assert schema_takes(json.loads(cell)), cell[:200]
        assert reader_says(cell, tmp_path), cell[:200]
    assert reader_says(text, tmp_path) == []


def keys_of_schema():
    keys = set()
    for path, value in places(SCHEMA):
        if path[-1] == "properties" and isinstance(value, dict):
            keys.update(value)
    return keys


def test_every_key_of_the_schema_is_in_a_cell_that_the_reader_takes():
    used = {path[-1] for cell in (SIX, FOUR) for path, _ in places(cell) if isinstance(path[-1], str)}
    assert keys_of_schema() - used == set()


def test_every_key_of_the_reader_is_in_the_schema():
    """A key is a word that stands where the reader asks for one; the words between are values of some of them."""
    source = "".join((ROOT / "tools/kine/cell" / file).read_text() for file in ("cell_reader.cpp", "record_reader.cpp"))
    source = re.sub(r"//.*", "", source)
    asked = r"(?:Find|Require|Fault|\w*Number|Numbers|Integer|Boolean|Text|Word|PathOf|ReadFrameAt|ReadNamed|choose|" \
            r"ReadTolerance)\(\s*(?:in,\s*)?\"([^\"\\ ]+)\""
    keys = set(re.findall(asked, source)) | {"lower_deg", "upper_deg", "travel_mm", "travel_deg"}
    assert len(keys) > 60
    assert keys - keys_of_schema() == set()
    words = set(re.findall(r"\"([a-z][\w-]*)\"", source.replace('"rbe"', ""))) - keys
    assert words == {"rotary", "linear", "two-rotary", "base", "flange", "world", "vision"}


def test_every_key_says_what_it_is_and_its_unit():
    units = {"mm": "mm", "deg": "deg", "kg": "kg", "Nmm": "N mm", "rad": "N m per rad", "turn": "mm"}
    for path, value in places(SCHEMA):
        if path[-1] != "properties" or "then" in path or "else" in path or "dependencies" in path or "if" in path:
            continue
        for key, about in value.items():
            target = about
            if "$ref" in about:
                target = SCHEMA["definitions"][about["$ref"].rsplit("/", 1)[1]]
            assert target.get("description"), key
            unit = units.get(key.rsplit("_", 1)[-1])
            if unit:
                assert re.search(rf"\b{unit}\b", target["description"]), key


DOCUMENT = ROOT / "docs/kine_cells.md"


def test_the_document_names_every_key():
    text = DOCUMENT.read_text()
    assert {key for key in keys_of_schema() if f"`{key}`" not in text} == set()


def test_the_cell_of_the_document_is_one(tmp_path):
    (text,) = re.findall(r"```json\n(.*?)```", DOCUMENT.read_text(), re.DOTALL)
    assert schema_takes(json.loads(text))
    (tmp_path / "cell.json").write_text(text)
    run = run_kine("fk", "cell.json", "@home", directory=tmp_path)
    assert run.status == 0 and run.err == ""
    (expected,) = json.loads(text)["expect"]
    run = run_kine("fk", "cell.json", "0,0,0,0,0,0", "--tool", "none", "--wobj", "none", "--in", "base", "--json",
                   directory=tmp_path)
    row = json.loads(run.out)
    # a1 + d4 + d6 and d1 + a2 + a3 of its arm
    assert abs(row["x_mm"] - 890) < 1e-9 and abs(row["z_mm"] - 1170) < 1e-9
    assert expected["frame"]["x_mm"] == 890 and expected["frame"]["z_mm"] == 1170


def test_the_messages_of_the_document_are_those_of_the_program(tmp_path):
    cells = {
        "arm.a1_mm:": ['{', '  "name": "x",',
                  '  "arm": {"type": 6, "a1_mm": "1", "a2": 2, "a3_mm": 3, "d1_mm": 4, "d4_mm": 5, "d6_mm": 6},',
                  '  "tools": {"torch": {"frame":   [1, 2, 3]}}', '}'],
        "not JSON": ['{', '  "name": "x",', '  "about": "y"', '  "arm": {}', '}'],
        "KINE_ERR_MODEL_PARAM": [
            '{', '  "name": "x",',
            '  "arm": {"type": 6, "a1_mm": 1, "a2_mm": 0, "a3_mm": 3, "d1_mm": 4, "d4_mm": 5, "d6_mm": 6}', '}'],
    }
    blocks = re.findall(r"(?:^    .*\n)+", DOCUMENT.read_text(), re.MULTILINE)
    for word, lines in cells.items():
        (block,) = [block for block in blocks if word in block]
        (tmp_path / "cell.json").write_text("\n".join(lines))
        run = run_kine("fk", "cell.json", "0", directory=tmp_path)
        assert run.status == BAD_FILE and run.err.split() == block.split()
