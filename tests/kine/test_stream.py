"""kine as a filter: files, pipes, processes, and what is no file of rows."""

import os
import pathlib
import signal
import subprocess
import time

import pytest

from conftest import BAD_FILE, CELLS, DONE, REFUSED, USAGE, csv_rows, json_rows, run_kine

HEADER = "target,q1_deg,q2_deg,q3_deg,q4_deg,q5_deg,q6_deg\n"
LEVEL = "0,0,0,0,0,0\n"
LEVEL_XYZ = (431.8, 150.05, 452.1)


JUNK = {
    "all bytes": bytes(range(256)) * 4000,
    "zeros": b"\0" * 300000,
    "program": b"\x7fELF\x02\x01\x01" + b"\0\x1b[31m" * 20,
    "UTF-16": b"\xff\xfeq\x001\x00\n\x00",
    "a zero in a row": b"0,0,0,0,0,\0\n",
    "title": b"\x1b]0;title\x07,\n",
    "commas": b",,,,,\n",
    "quotes": b'"' * 1000,
    "returns": b"\r\r\r\n0",
    "many commas": b"," * 999999,
}


def rows_about(count):
    """Turns of axis 1: the point of the level pose goes around the vertical."""
    return "".join(f"{i % 360 - 180},0,0,0,0,0\n" for i in range(count))


def start(*arguments, **pipes):
    return subprocess.Popen([os.environ["KINE"], *arguments], cwd=CELLS, stderr=subprocess.PIPE, **pipes)


def assert_level(row):
    assert all(abs(row[name] - value) < 1e-9 for name, value in zip(("x_mm", "y_mm", "z_mm"), LEVEL_XYZ))


@pytest.mark.parametrize("jobs", [(), ("-j", "3")])
def test_standard_input_dash_and_file_give_the_same(kine, tmp_path, jobs):
    file = tmp_path / "rows.csv"
    file.write_text(HEADER + "home," + LEVEL + "\n# a comment\n  \nturned,90,0,0,0,0,0")
    run = kine("fk", "puma.json", "--csv", "-i", file, *jobs)
    assert run.status == DONE and run.err == ""
    home, turned = csv_rows(run)
    assert home["target"] == "home" and turned["target"] == "turned"
    assert_level(home)
    assert abs(turned["x_mm"] + LEVEL_XYZ[1]) < 1e-9 and abs(turned["y_mm"] - LEVEL_XYZ[0]) < 1e-9
    for arguments in ((), ("-i", "-"), ("-i", "/dev/stdin")):
        assert kine("fk", "puma.json", "--csv", *arguments, *jobs, stdin=file.read_text()) == run


def test_rows_without_header_are_named_by_their_line(kine):
    run = kine("fk", "puma.json", "--csv", stdin="# first\n\n" + LEVEL + "# second\n" + LEVEL)
    assert [row["target"] for row in csv_rows(run)] == [3.0, 5.0]


@pytest.mark.parametrize("text", [
    HEADER.replace("target", "name") + "a," + LEVEL,
    ("\ufeff" + HEADER + "a," + LEVEL).replace("\n", "\r\n"),
    (HEADER + "a," + LEVEL).replace(",", ";"),
    (HEADER + "a," + LEVEL).replace(",", "\t"),
    '"target","q1_deg","q2_deg","q3_deg","q4_deg","q5_deg","q6_deg"\n"a","0","0","0","0","0","0"\n',
    "q6_deg,q5_deg,q4_deg,q3_deg,q2_deg,q1_deg,target\n0,0,0,0,0,0,a",
    "\n# comment\n\n" + HEADER + "a," + LEVEL,
])
def test_every_form_of_a_file_of_rows(kine, text):
    run = kine("fk", "puma.json", "--csv", stdin=text)
    assert run.status == DONE and run.err == ""
    (row,) = csv_rows(run)
    assert row["target"] == "a"
    assert_level(row)


@pytest.mark.parametrize("jobs", [(), ("-j", "2")])
@pytest.mark.parametrize("text", ["", "\n", "# nothing\n", HEADER, HEADER.strip(), "\ufeff"])
def test_nothing_to_do_is_done(kine, text, jobs):
    run = kine("fk", "puma.json", "--csv", *jobs, stdin=text)
    assert run.status == DONE and run.err == "" and run.out.startswith("target,x_mm") and run.out.count("\n") == 1


def test_a_line_of_a_million_bytes_is_read_and_a_longer_one_refused(kine):
    name = "n" * (1_000_000 - len("," + LEVEL.strip()))
    run = kine("fk", "puma.json", "--csv", stdin=HEADER + name + "," + LEVEL)
    assert run.status == DONE and csv_rows(run)[0]["target"] == name
    run = kine("fk", "puma.json", "--csv", stdin=HEADER + "a," + LEVEL + "n" + name + "," + LEVEL)
    assert run.status == BAD_FILE and run.err == "standard input:3: a line of more than a million bytes\n"
    assert [row["target"] for row in csv_rows(run)] == ["a"]


@pytest.mark.parametrize("jobs", [(), ("-j", "2"), ("-j", "5")])
def test_everything_before_a_bad_row_is_answered(kine, jobs):
    rows = rows_about(30000).splitlines()
    rows[20000] = "1,2,x,4,5,6"
    run = kine("fk", "puma.json", "--csv", *jobs, stdin="\n".join(rows))
    assert run.status == BAD_FILE
    assert run.err == 'standard input:20001: column 3 (q3_deg): "x" is not a number\n'
    assert [int(row["target"]) for row in csv_rows(run)] == list(range(1, 20001))


@pytest.mark.parametrize("form", ["--json", "--csv", ""])
def test_processes_answer_as_one_does_byte_for_byte(kine, form, tmp_path):
    # Every 100th row was refused before; it goes through in its place.
    lines = [HEADER.strip() + ",result"]
    for i in range(40000):
        lines.append(f"t{i},{i % 360 - 180},10,20,30,40,50,0x0000" if i % 100 else f"t{i},,,,,,,0x6097")
    file = tmp_path / "rows.csv"
    file.write_text("\n".join(lines))
    arguments = ("fk", "puma.json", "-i", file, *filter(None, [form]))
    one = kine(*arguments)
    assert one.status == REFUSED
    assert one.out.count("0x6097") == 400
    for jobs in (2, 3, 7):
        assert kine(*arguments, "-j", jobs) == one


def test_refusals_are_counted_and_named_on_standard_error(kine):
    text = HEADER.strip() + ",result\na,0,0,0,0,0,0,0x0000\nb,,,,,,,0x6097\n"
    run = kine("fk", "puma.json", "--csv", stdin=text)
    assert run.status == REFUSED
    assert run.err == "kine: target b: 0x6097 KINE_ERR_IK_7\n"
    assert run.out.splitlines()[2] == "b" + "," * 11 + "0x6097"
    assert kine("fk", "puma.json", "--csv", "-q", stdin=text).err == ""
    run = kine("fk", "puma.json", "--json", stdin=text)
    assert run.status == REFUSED and run.err == ""
    assert json_rows(run)[1] == {"target": "b", **dict.fromkeys(
        ("x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg", "cfg1", "cfg2", "cfg3", "cfg4")),
        "result": "0x6097", "error": "KINE_ERR_IK_7", "lines": []}


def test_the_answer_of_one_run_is_the_input_of_the_next(kine):
    """A pose is no joints: the columns say so. Joints go through as they are named."""
    run = kine("fk", "puma.json", "--csv", stdin=LEVEL)
    again = kine("fk", "puma.json", "--csv", stdin=run.out)
    assert again.status == BAD_FILE
    assert again.err.startswith('standard input:1: unknown column "x_mm"; known are target, result, q1_deg')
    as_json = kine("fk", "puma.json", "--json", stdin=LEVEL)
    again = kine("fk", "puma.json", "--csv", stdin=as_json.out)
    assert again.status == BAD_FILE and "is JSON; rows are comma-separated values" in again.err


@pytest.mark.parametrize("jobs", [(), ("-j", "2")])
def test_a_slow_pipe_is_answered_row_by_row(jobs):
    process = start("fk", "puma.json", "--csv", *jobs, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    try:
        process.stdin.write(LEVEL.encode())
        process.stdin.flush()
        assert process.stdout.readline().startswith(b"target,")
        for number in range(1, 6):  # each answer is there before the next row is sent
            assert process.stdout.readline().startswith(b"%d,431.8" % number)
            # Half a row is not answered, and not lost.
            process.stdin.write(LEVEL[:5].encode())
            process.stdin.flush()
            time.sleep(0.02)
            process.stdin.write(LEVEL[5:].encode())
            process.stdin.flush()
        process.stdin.close()
        assert process.stdout.readline().startswith(b"6,") and process.stdout.read() == b""
        assert process.wait(20) == DONE
    finally:
        process.kill()


@pytest.mark.parametrize("jobs", [(), ("-j", "2")])
def test_nobody_reads_the_answers_any_more(jobs):
    """As in `kine fk ... | head -1`: ends at once, says nothing."""
    process = start("fk", "puma.json", "--csv", *jobs, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    try:
        process.stdin.write(LEVEL.encode())
        process.stdin.flush()
        assert process.stdout.readline() and process.stdout.readline()
        process.stdout.close()
        with pytest.raises(BrokenPipeError):
            for _ in range(100000):
                process.stdin.write(rows_about(100).encode())
                process.stdin.flush()
        assert process.wait(20) == -signal.SIGPIPE
        assert process.stderr.read() == b""
    finally:
        process.kill()


def children_of(pid):
    found = []
    for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            if int(stat.read_text().rsplit(")", 1)[1].split()[1]) == pid:
                found.append(int(stat.parent.name))
        except (OSError, ValueError):
            pass
    return found


def test_no_process_is_left_when_the_program_is_killed():
    process = start("fk", "puma.json", "--csv", "-j", "3", stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    process.stdin.write(LEVEL.encode())
    process.stdin.flush()
    process.stdout.readline()
    process.stdout.readline()  # the first answer: they have started
    children = children_of(process.pid)
    assert len(children) == 3
    process.kill()
    process.wait(20)
    deadline = time.monotonic() + 20
    while any(pathlib.Path(f"/proc/{child}").exists() and state(child) != "Z" for child in children):
        assert time.monotonic() < deadline
        time.sleep(0.01)


def state(pid):
    try:
        return pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[0]
    except OSError:
        return "Z"


def test_a_killed_worker_ends_the_run_with_a_message(tmp_path):
    file = tmp_path / "rows.csv"
    file.write_text(rows_about(2_000_000))
    process = start("fk", "puma.json", "--csv", "-j", "3", "-i", str(file), stdout=subprocess.PIPE)
    try:
        process.stdout.readline()
        process.stdout.readline()
        os.kill(children_of(process.pid)[1], signal.SIGKILL)
        process.stdout.read()
        assert process.wait(20) == BAD_FILE
        assert process.stderr.read() == b"a process of --jobs ended early\n"
    finally:
        process.kill()


@pytest.mark.parametrize("jobs", [(), ("-j", "2")])
def test_a_full_disk_is_told(jobs):
    with open("/dev/full", "wb") as full:
        process = start("fk", "puma.json", "--csv", *jobs, stdin=subprocess.PIPE, stdout=full)
        _, err = process.communicate(rows_about(20000).encode(), 20)
    assert process.returncode == BAD_FILE and err == b"standard output: No space left on device\n"


def test_a_closed_standard_output_is_told():
    run = subprocess.run(["/bin/sh", "-c", '"$KINE" fk puma.json 0,0,0,0,0,0 >&-'], cwd=CELLS, capture_output=True,
                         check=False)
    assert run.returncode == BAD_FILE and run.stderr == b"standard output: Bad file descriptor\n"


def test_a_closed_standard_input_is_told():
    run = subprocess.run(["/bin/sh", "-c", '"$KINE" fk puma.json --csv <&-'], cwd=CELLS, capture_output=True,
                         check=False)
    assert run.returncode == BAD_FILE and run.stderr == b"standard input: Bad file descriptor\n"


def test_files_that_cannot_be_read_are_named(kine, tmp_path):
    run = kine("fk", "puma.json", "-i", tmp_path)
    assert run.status == BAD_FILE and run.out == "" and run.err == f"{tmp_path}: Is a directory\n"
    run = kine("fk", "puma.json", "-i", "none.csv")
    assert run.status == BAD_FILE and run.out == "" and run.err == "none.csv: No such file or directory\n"
    run = kine("fk", tmp_path, LEVEL.strip())
    assert run.status == BAD_FILE and run.out == "" and run.err == f"{tmp_path}: Is a directory\n"
    run = kine("fk", "none.json", LEVEL.strip())
    assert run.status == BAD_FILE and run.out == "" and run.err == "none.json: No such file or directory\n"


@pytest.mark.skipif(os.geteuid() == 0, reason="SKIPPED: the administrator may read everything")
def test_a_file_that_may_not_be_read_is_named(kine, tmp_path):
    file = tmp_path / "secret.csv"
    file.write_text(LEVEL)
    file.chmod(0)
    run = kine("fk", "puma.json", "-i", file)
    assert run.status == BAD_FILE and run.err == f"{file}: Permission denied\n"


@pytest.mark.parametrize("jobs", [(), ("-j", "2")])
@pytest.mark.parametrize("junk", JUNK.values(), ids=JUNK)
def test_binary_junk_is_refused_with_a_clean_line(junk, jobs, tmp_path):
    file = tmp_path / "junk"
    file.write_bytes(junk)
    for arguments in (("fk", "puma.json", "-i", "-"), ("fk", str(file), "0")):
        run = run_kine(*arguments, *jobs, stdin=junk)
        assert run.status == BAD_FILE
        assert run.err.count(b"\n") == 1 and run.err.endswith(b"\n") and len(run.err) < 500
        assert all(32 <= byte < 127 for byte in run.err[:-1]), run.err


def test_a_name_with_control_characters_moves_no_cursor(kine):
    text = HEADER.strip() + ",result\n\x1b[2J\x07evil,0,0,0,0,0,0,0x0000\n\x1b[2Jbad,,,,,,,0x6097\n"
    for form in ("--csv", "--json", None):
        run = kine("fk", "puma.json", *filter(None, [form]), stdin=text)
        assert run.status == REFUSED
        assert "\x1b" not in run.out and "\x1b" not in run.err and "\x07" not in run.out + run.err


def test_arguments_and_a_file_together_are_wrong_usage(kine):
    run = kine("fk", "puma.json", LEVEL.strip(), "-i", "-", stdin=LEVEL)
    assert run.status == USAGE and run.err == "give targets either as arguments or with --input, not both\n"


def test_a_wrong_argument_is_wrong_usage(kine):
    run = kine("fk", "puma.json", "1,2,3")
    assert run.status == USAGE and run.err == '"1,2,3": has 3 values; expected 6 axes\n'
    run = kine("fk", "puma.json", "1,2,3,4,5,x")
    assert run.status == USAGE and run.err == '"1,2,3,4,5,x": column 6 (q6_deg): "x" is not a number\n'
    run = kine("fk", "puma.json", "@nowhere")
    assert run.status == USAGE and run.err == 'puma.json has no joints "nowhere"\n'


def test_arguments_that_begin_with_a_sign_are_targets(kine):
    run = kine("fk", "puma.json", "--csv", "-90,0,0,0,0,0")
    assert run.status == DONE, run.err
    (row,) = csv_rows(run)
    assert abs(row["x_mm"] - LEVEL_XYZ[1]) < 1e-9 and abs(row["y_mm"] + LEVEL_XYZ[0]) < 1e-9
