"""kine explain against interface/result_codes.json, which says every code once."""

import json

import pytest

from conftest import DONE, ROOT, USAGE, json_rows

CODES = json.loads((ROOT / "interface/result_codes.json").read_text())
# The library's texts part causes by semicolons, also where a cause has one of its own.
for code in CODES:
    code["causes"] = "; ".join(code["causes"]).split("; ")
NUMBERS = {row["name"]: int(row["code"], 16) for row in CODES}


def printed(number):
    """As %d prints it."""
    return number - 2**32 if number >= 2**31 else number


def test_there_are_codes():
    assert len(CODES) == 46 and NUMBERS["KINE_ERR_IK_7"] == 0x6097


@pytest.mark.parametrize("row", CODES, ids=[row["name"] for row in CODES])
def test_every_way_to_write_a_code_gives_all_that_is_known_of_it(kine, row):
    number = int(row["code"], 16)
    short = row["name"].removeprefix("KINE_ERR_")
    asked = [row["code"], row["code"].lower(), row["code"][2:], str(number), str(printed(number)), row["name"],
             row["name"].lower(), short, short.lower(), f"  {row['code']} "]
    answers = json_rows(kine("explain", *asked, "--json"))
    assert len(answers) == len(asked)
    for text, answer in zip(asked, answers):
        assert answer == {"asked": text, "code": row["code"], "printed_as": printed(number), "name": row["name"],
                          "causes": row["causes"], "remedy": row["remedy"]}


@pytest.mark.parametrize("row", CODES, ids=[row["name"] for row in CODES])
def test_the_text_lists_each_cause_and_the_remedy(kine, row):
    run = kine("explain", row["code"])
    assert run.status == DONE and run.err == ""
    first, *rest = run.out.splitlines()
    assert first == f"{row['code']} {row['name']} (printed as {printed(int(row['code'], 16))})"
    assert all(len(line) <= 80 for line in run.out.splitlines())
    assert rest[0] == "  Causes:"
    middle = rest.index("  What to do:")
    items = " ".join(line.strip() for line in rest[1:middle])
    assert items == " ".join("- " + cause for cause in row["causes"])
    assert " ".join(line.strip() for line in rest[middle + 1:]) == row["remedy"]


def test_the_text_of_an_elbow_out_of_reach(kine):
    assert kine("explain", "IK error 5:24727").out == (
        "0x6097 KINE_ERR_IK_7 (printed as 24727)\n"
        "  Where: step 5 of the inverse chain: the arm\n"
        "  Causes:\n"
        "    - six-axis arm: the target is out of reach, too far or too near\n"
        "    - six-axis arm: the elbow is stretched or folded\n"
        "  What to do:\n"
        "    Check target, tool, work object and units of measure; bring the target\n"
        "    nearer to the middle of the reach.\n")


def test_several_codes_stand_apart(kine):
    run = kine("explain", "6016", "KINE_OK")
    assert run.out == (
        "0x6016 KINE_ERR_HOLD (printed as 24598)\n"
        "  Causes:\n"
        "    - tool and work object carry the same HeldByRobot byte\n"
        "  What to do:\n"
        "    Exactly one of the two is held: 1 and 0 for a tool on the robot, 0 and 1 for\n"
        "    a stationary tool.\n"
        "\n"
        "0x0000 KINE_OK (printed as 0)\n"
        "  Causes:\n"
        "    - success\n"
        "  What to do:\n"
        "    Nothing to do.\n")


@pytest.mark.parametrize("line, name, where", [
    ("FK Error 1:24577", "KINE_ERR_NOT_INITIALISED", "step 1 of the forward chain: the configuration of the joints"),
    ("FK Error 2:24656", "KINE_ERR_HOLD_CONFLICT", "step 2 of the forward chain: the check of what is held"),
    ("FK Error 4:24627", "KINE_ERR_F2W_UNIT_KIND", "step 4 of the forward chain: from the base to the world"),
    ("FK Error 6:24628", "KINE_ERR_AXIS_ORIGIN", "step 6 of the forward chain: from the world to that object"),
    ("IK error 0:24656", "KINE_ERR_HOLD_CONFLICT", "step 0 of the inverse chain: the check of what is held"),
    ("ik error 2:24627\n", "KINE_ERR_F2W_UNIT_KIND", "step 2 of the inverse chain: from that object to the world"),
    ("IK error 3:24628", "KINE_ERR_AXIS_ORIGIN", "step 3 of the inverse chain: from the world to the base"),
    ("IK error 5:24728", "KINE_ERR_IK_8", "step 5 of the inverse chain: the arm"),
    ("kine: target 7: 0x6098 KINE_ERR_IK_8: IK error 5:24728", "KINE_ERR_IK_8",
     "step 5 of the inverse chain: the arm"),
    ("IsLegalWobj,!pWobj->UFFix:2;", "KINE_ERR_WOBJ", None),
    ("IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3", "KINE_ERR_MECH_UNIT_COUNT", None),
    ("IsLegalMechUnit:index:3,2", "KINE_ERR_MECH_UNIT", None),
    ("IsLegalMechUnit\uff1apArmMechUnit->AxisCount,pMechUnitAndExtAxisPara->ExtAxisNum:2,1", "KINE_ERR_MECH_UNIT",
     None),
    ("IsLegalExtAxisParam:index:6,2", "KINE_ERR_EXT_AXIS_PARAM", None),
    ("12,,,,,,,,,,,0x6090", "KINE_ERR_CONFIG", None),
    ("1,400,150,450,0,-90,0,0,0,0,0,0x0000", "KINE_OK", None),
    ('{"target":"1","x_mm":null,"result":"0x6010","error":"KINE_ERR_POSE","lines":[]}', "KINE_ERR_POSE", None),
    ("1                - - -   0x6096 KINE_ERR_IK_6", "KINE_ERR_IK_6", None),
    ("the controller says 24727", "KINE_ERR_IK_7", None),
    ("fault 6012 on the pendant", "KINE_ERR_WOBJ", None),
    ("Kine_IsSingularity returned KINE_SINGULAR", "KINE_ERR_UNKNOWN_ARM_TYPE", None),
])
def test_a_pasted_line_tells_its_code(kine, line, name, where):
    (answer,) = json_rows(kine("explain", line, "--json"))
    assert answer["name"] == name and answer["code"] == next(r["code"] for r in CODES if r["name"] == name)
    assert answer.get("where") == where


def test_a_line_without_quotes_is_one_line(kine):
    (answer,) = json_rows(kine("explain", "IK", "error", "5:24727", "--json"))
    assert (answer["name"], answer["asked"]) == ("KINE_ERR_IK_7", "IK error 5:24727")


def test_the_list_has_every_code_on_a_line(kine):
    run = kine("explain", "--all")
    lines = run.out.splitlines()
    assert run.status == DONE and len(lines) == len(CODES)
    for line, row in zip(lines, CODES):
        code, number, name, *causes = line.split()
        assert (code, int(number), name) == (row["code"], printed(int(row["code"], 16)), row["name"])
        assert " ".join(causes) == "; ".join(row["causes"])


def test_a_line_of_the_list(kine):
    assert "0x6016     24598  KINE_ERR_HOLD               tool and work object carry the same HeldByRobot byte\n" \
        in kine("explain", "--all").out


def test_the_list_in_json_is_the_table_of_codes(kine):
    answers = json_rows(kine("explain", "--all", "--json"))
    assert [{key: row[key] for key in ("code", "name", "causes", "remedy")} for row in answers] == CODES
    assert [row["printed_as"] for row in answers] == [printed(int(row["code"], 16)) for row in CODES]


@pytest.mark.parametrize("asked, hint", [
    ("0x60A0", "; the nearest is 0x609A KINE_ERR_IK_ACCURACY"),
    ("6005", "; the nearest is 0x6004 KINE_ERR_MECH_UNIT_COUNT"),
    ("24735", "; the nearest is 0x609A KINE_ERR_IK_ACCURACY"),
    ("KINE_ERR_IK_77", "; the nearest is 0x6097 KINE_ERR_IK_7"),
    ("KINE_ERR_LOED", "; the nearest is 0x6013 KINE_ERR_LOAD"),
    ("singulr", "; the nearest is 0x6095 KINE_ERR_SINGULAR"),
    ("0x7000", ""),
    ("99999999999999999999", ""),
    ("0x", ""),
    ("-2147483649", ""),
    ("nonsense", ""),
    ("", ""),
    ("IK error 5:12", ""),
])
def test_what_is_no_code_is_told_with_what_comes_near(kine, asked, hint):
    run = kine("explain", asked)
    assert run.status == USAGE and run.out == ""
    assert run.err == f'"{asked}" is no result code{hint}. `kine explain --all` lists them all.\n'


def test_one_wrong_code_among_right_ones_is_not_passed_over(kine):
    run = kine("explain", "6097", "60A9")
    assert run.status == USAGE and run.out == "" and run.err.startswith('"60A9" is no result code')


def test_two_codes_in_one_sentence_are_not_guessed_at(kine):
    assert kine("explain", "either 24727 or 24728").status == USAGE


def test_bytes_that_are_no_text_do_no_harm(kine):
    run = kine("explain", b"\xff\x1b[2J", "--json", stdin=b"")
    assert run.status == USAGE and b"\x1b" not in run.err
    run = kine("explain", b"0x6097 \xff\x01", "--json", stdin=b"")
    assert run.status == DONE and json.loads(run.out.decode())["name"] == "KINE_ERR_IK_7"


@pytest.mark.parametrize("arguments, message", [
    ((), "no code: give one, or --all for the list\n"),
    (("--all", "6097"), "--all takes no codes\n"),
    (("--csv", "6097"), "--csv"),
])
def test_what_makes_no_sense_is_told(kine, arguments, message):
    run = kine("explain", *arguments)
    assert run.status == USAGE and run.out == "" and message in run.err
