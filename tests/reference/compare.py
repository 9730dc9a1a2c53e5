"""Compares the built library with the naive model over random calls.

Every call goes to both. The result code, the bytes on standard output, the bytes around and inside every
record (those that are input and output at once included) and the values of the result must agree; a
difference behind a decision that rounding alone may turn is skipped and counted by its reason.

    python3 compare.py --library build/release/libKineDll.so --calls 100000 --seed 1 --jobs 2
    python3 compare.py --library ... --seed 1 --sequence 17     one sequence, every call printed
    python3 compare.py --reference-only --calls 5000            the model alone, with its statistics
    python3 compare.py --library ... --exports Kine_CalcAlignPos,Kine_InchMovePosCalc    only these queries
"""

import argparse
import ctypes
import math
import mmap
import multiprocessing
import os
import random
import signal
import struct
import sys
import time
from collections import Counter, namedtuple

import calls as random_calls
import explain
import generate
from align import TIE
from calib_exports import CALIBRATION_SIGNATURES, COPIED
from exports import IN_OUT, OUTPUT_SIZES, RESULT_PLACES, SETUPS, SIGNATURES, Library
from margins import MARGINS
from records import ARM_CONFIG, FRAME, JOINT, OK, ONE_DOUBLE, POSE, TOOL, VECTOR, WOBJ

TOLERANCE = 1e-9
NUDGES = (1e-13, -1e-13, 3e-13)
SLACK_GROWTH = 1e4  # degrees per radian of slack, with what an arm near a singular place makes of it
LARGE = 1e7
GUARD = 64
MAX_REPORTS = 20
MAX_SECONDS_PER_CALL = 60
COLD = -1

# What the library did: output is the memory of the result, written or not; None without such memory.
Found = namedtuple("Found", "code printed output touched changed complaint")


class Slot:
    """Memory for one record, ending at a page that cannot be touched."""

    def __init__(self, libc):
        page = mmap.PAGESIZE
        self.memory = mmap.mmap(-1, 2 * page)
        self.base = ctypes.addressof(ctypes.c_char.from_buffer(self.memory))
        self.end = page
        if libc.mprotect(ctypes.c_void_p(self.base + page), page, 0) != 0:
            raise OSError("mprotect failed")

    def place(self, data, guard, after=b""):
        """Address of the data, with guard bytes before and possibly after it."""
        content = guard + data + after
        self.begin = self.end - len(content)
        self.memory[self.begin:self.end] = content
        self.content = content
        return self.base + self.begin + len(guard)

    def now(self):
        return self.memory[self.begin:self.end]


class BuiltLibrary:
    """The exported functions over guarded memory, with standard output caught.

    Only the setups and the wanted exports need to be there.
    """

    def __init__(self, path, wanted):
        self.loaded = ctypes.CDLL(os.path.abspath(path))
        libc = ctypes.CDLL(None, use_errno=True)
        self.slots = [Slot(libc) for _ in range(max(len(kinds) for kinds in SIGNATURES.values()))]
        self.pattern = random.Random(0).randbytes(4096)
        self.caught = os.memfd_create("stdout")
        os.dup2(self.caught, 1)
        types = {"uint": ctypes.c_uint32, "int": ctypes.c_int32, "double": ctypes.c_double}
        self.functions = {}
        for name, kinds in SIGNATURES.items():
            if name not in wanted and name not in SETUPS:
                continue
            function = getattr(self.loaded, name)
            function.restype = ctypes.c_int32 if name == "SafeArea_Check" else ctypes.c_uint32
            function.argtypes = [types.get(kind, ctypes.c_void_p) for kind in kinds]
            self.functions[name] = function

    def call(self, call, count):
        start = count * 37 % 2048
        guard = self.pattern[start:start + GUARD]
        used, values, result, in_out = [], [], None, {}
        for i, (kind, value) in enumerate(zip(SIGNATURES[call.name], call.args)):
            slot = self.slots[i]
            if kind in ("uint", "int", "double"):
                values.append(value)
            elif kind in OUTPUT_SIZES:
                size = OUTPUT_SIZES[kind]
                if not value:
                    values.append(None)
                elif call.shared is not None:
                    values.append(values[call.shared])
                    result = (self.slots[call.shared], size)
                else:
                    fill = self.pattern[start + 100:start + 100 + size]
                    values.append(slot.place(fill, guard, guard))
                    used.append(slot)
                    result = (slot, size)
            elif value is None:
                values.append(None)
            else:
                values.append(slot.place(value, guard))
                used.append(slot)
                if kind in IN_OUT:
                    in_out[i] = slot
        signal.alarm(MAX_SECONDS_PER_CALL)  # not caught: a call without end ends the worker
        code = self.functions[call.name](*values)
        signal.alarm(0)
        printed = self.take_printed()

        complaint, touched = None, False
        for slot in used:
            now = slot.now()
            if now == slot.content:
                continue
            if result is not None and slot is result[0]:
                touched = True
                rest = GUARD + result[1]
                if now[:GUARD] != slot.content[:GUARD] or now[rest:] != slot.content[rest:]:
                    complaint = "memory around the result record was changed"
            elif slot not in in_out.values():
                complaint = "an input record or the memory around it was changed"
            elif now[:GUARD] != slot.content[:GUARD]:
                complaint = "memory before a record that is input and output was changed"
        output = None if result is None else result[0].now()[GUARD:GUARD + result[1]]
        changed = {i: slot.now()[GUARD:] for i, slot in in_out.items()}
        return Found(code, printed, output, touched, changed, complaint)

    def take_printed(self):
        size = os.fstat(self.caught).st_size
        if size == 0:
            return b""
        os.lseek(self.caught, 0, os.SEEK_SET)
        text = os.read(self.caught, size)
        os.ftruncate(self.caught, 0)
        os.lseek(self.caught, 0, os.SEEK_SET)
        return text


# Comparison of results

# Records beside the result: what they held stays, or all of it is written.
COMPUTED = {"error_inout": VECTOR, "tilt_inout": ONE_DOUBLE}


def output_kind(call):
    place = RESULT_PLACES[call.name]
    return None if place is None else SIGNATURES[call.name][place]


def same_number(a, b, wrap, tolerance=TOLERANCE):
    if a == b or (a != a and b != b):
        return True
    if not (math.isfinite(a) and math.isfinite(b)):
        return False
    limit = tolerance * max(1.0, abs(a))
    if abs(a - b) <= limit:
        return True
    return wrap and abs(abs(a - b) - 360.0) <= limit


def same_numbers(a, b, tolerance):
    return all(same_number(x, y, False, tolerance) for x, y in zip(a, b))


def same_frame(a, b, wrap, tolerance):
    return (same_numbers(a[:3], b[:3], tolerance)
            and all(same_number(x, y, wrap, tolerance) for x, y in zip(a[3:6], b[3:6])))


def same_output(kind, expected, actual, wrap=False, tolerance=TOLERANCE):
    if expected is None or actual is None:
        return expected is actual
    if kind == "out_config":
        return ARM_CONFIG.unpack(expected) == ARM_CONFIG.unpack(actual)
    if kind == "out_vector":
        return same_numbers(VECTOR.unpack(expected), VECTOR.unpack(actual), tolerance)
    if kind == "out_frame":
        return same_frame(FRAME.unpack(expected), FRAME.unpack(actual), wrap, tolerance)
    if kind == "out_joint":
        a, b = JOINT.unpack(expected), JOINT.unpack(actual)
        # The model does no arithmetic on external axes but that of a joint jog.
        return same_numbers(a, b, tolerance)
    if expected[64:] != actual[64:]:
        return False
    a, b = POSE.unpack(expected), POSE.unpack(actual)
    return a[6:10] == b[6:10] and same_frame(a, b, wrap, tolerance)


def same_changed(call, expected, actual, wrap=False):
    """Records that are input and output: to the bit, but for the computed frame of a tool."""
    for i, kind in enumerate(SIGNATURES[call.name]):
        a, b = expected.get(i), actual.get(i)
        if a == b:
            continue
        if kind == "tool_inout":
            if a[:8] != b[:8] or a[56:] != b[56:]:
                return False
            if not same_frame(FRAME.unpack(a[8:56]), FRAME.unpack(b[8:56]), wrap, TOLERANCE):
                return False
        elif kind in COMPUTED:
            # An answer that leaves the record has been compared with the library's bytes above.
            if a == call.args[i] or not same_numbers(COMPUTED[kind].unpack(a), COMPUTED[kind].unpack(b),
                                                     TOLERANCE):
                return False
        elif kind == "steps_inout":
            if not all(p == q or (m != m and n != n) for p, q, m, n in
                       zip(words(a), words(b), VECTOR.unpack(a), VECTOR.unpack(b))):
                return False
        else:
            return False
    return True


def words(data):
    return [data[i:i + 8] for i in range(0, len(data), 8)]


def agree(call, answer, found, wrap=False, tolerance=TOLERANCE):
    if found.complaint or found.code != answer.code or found.printed != answer.printed:
        return False
    if not same_changed(call, answer.changed, found.changed, wrap):
        return False
    if answer.output is None:
        return not found.touched
    return same_output(output_kind(call), answer.output, found.output, wrap, tolerance)


def largest_input(calls):
    """Largest finite size of a double in the records of some calls."""
    largest = 0.0
    for call in calls:
        for kind, value in zip(SIGNATURES[call.name], call.args):
            if isinstance(value, float) and math.isfinite(value):
                largest = max(largest, abs(value))
            elif kind == "directions" and value is not None:
                largest = max(largest, *[float(abs(v)) for (v,) in struct.iter_unpack("<i", value)])
            elif isinstance(value, bytes) and kind != "ext_axis":
                for (v,) in struct.iter_unpack("<d", value[:len(value) // 8 * 8]):
                    if math.isfinite(v):
                        largest = max(largest, abs(v))
    return largest


def has_endless_link(setups):
    """Whether an arm parameter is infinite: the order of sums then decides between infinity and NaN."""
    return any(call.name == "Kine_InitKinematicParam" and isinstance(call.args[1], bytes)
               and any(math.isinf(v) for (v,) in struct.iter_unpack("<d", call.args[1])) for call in setups)


class Comparison:
    """Both sides of one sequence after another, with what was seen."""

    def __init__(self, options):
        self.built = BuiltLibrary(options.shared_library, options.exports) if options.shared_library else None
        self.only, self.seed, self.wanted = options.only, options.seed, options.exports
        self.codes = Counter()
        self.skipped = Counter()
        self.wrapped = 0
        self.count = 0
        self.reports = []

    def run_sequence(self, number, mark=None, verbose=None):
        rng = random_calls.rng_for(self.seed, number)
        make = generate.cold_sequence if number == COLD else generate.sequence
        source = make(rng, self.only, self.wanted)
        model = Library()
        setups = []
        answer, index = None, 0
        while True:
            try:
                call = source.send(answer)
            except StopIteration:
                return
            if mark:
                mark[0], mark[1] = number, index
            if verbose:
                verbose(f"#{index} {random_calls.describe(call)}")
            answer = model.call(call.name, *call.args)
            reasons, cut, slack = set(MARGINS.reasons), MARGINS.cut, MARGINS.slack
            index += 1
            if call.name not in self.wanted and call.name not in SETUPS:
                continue
            self.codes[call.name, answer.code] += 1
            self.count += 1
            if call.name == "Kine_InitKinematicParam":
                setups = []
            if call.name in SETUPS:
                setups.append(call)
            if self.built:
                found = self.built.call(call, self.count)
                if verbose:
                    verbose(f"    model   {answer}\n    library {found}")
                self.judge(model, setups, call, answer, found, reasons, cut, slack, (number, index - 1))
            elif verbose:
                verbose(f"    model   {answer} {sorted(reasons)}")

    def judge(self, model, setups, call, answer, found, reasons, cut, slack, place):
        if call.name in CALIBRATION_SIGNATURES:
            self.judge_calibration(model, setups, call, answer, found, place)
            return
        if agree(call, answer, found):
            return
        if cut and agree(call, answer, found, wrap=True):
            self.wrapped += 1
            return
        tolerance = TOLERANCE + SLACK_GROWTH * slack
        if slack and agree(call, answer, found, tolerance=tolerance):
            self.skipped["within the slack"] += 1
            return
        if TIE in reasons:
            reasons.discard(TIE)
            if any(agree(call, other, found, tolerance=tolerance) for other in both_ends(model, call)):
                self.skipped[TIE] += 1
                return
        if output_kind(call) == "out_joint" and model.store.arm_type == 6:
            reasons.discard("near gimbal")  # the rotation is taken up again, not its angles
        if found.complaint is None and not differs_to_the_bit(call, answer, found):
            if largest_input(setups + [call]) > LARGE:
                reasons.add("large magnitudes")
            if (found.code == answer.code and found.printed == answer.printed
                    and has_endless_link(setups)):
                reasons.add("infinite link")
            if not reasons and unsteady(model, call, answer, slack):
                reasons.add("unsteady answer")
            if reasons:
                self.skipped[sorted(reasons)[0]] += 1
                return
        self.report_difference(place, setups, call, answer, found)

    def judge_calibration(self, model, setups, call, answer, found, place):
        """No list of close decisions here: after a difference the model repeats the call inexactly."""
        if agree(call, answer, found):
            if same_copies(model, call, answer, found):
                return
        elif agree(call, answer, found, wrap=True):
            self.wrapped += 1
            return
        elif found.complaint is None:
            reason = explain.explanation(model, call, answer, found, numbers_and_angles, TOLERANCE)
            if reason:
                self.skipped[reason] += 1
                return
        self.report_difference(place, setups, call, answer, found)

    def report_difference(self, place, setups, call, answer, found):
        origin = f"--seed {self.seed} --only {self.only}{filter_text(self.wanted)}"
        self.reports.append(report(origin, place, setups, call, answer, found))


def same_copies(model, call, answer, found):
    """Values that are only copied, and zeros that are never computed, agree to the bit."""
    if answer.output is None:
        return True
    places = COPIED.get(call.name, ((), ()))[model.store.arm_type in (4, 4110)]
    expected, actual = words(answer.output), words(found.output)
    return all(expected[i] == actual[i] for i in places)


def numbers_and_angles(answer):
    """All values of a calibration's answer, written or not, and which of them are angles in degrees."""
    frame = [] if answer.code != OK or answer.output is None else list(FRAME.unpack(answer.output))
    rest = [v for data in answer.changed.values() for (v,) in struct.iter_unpack("<d", data)]
    return frame + rest, range(3, len(frame))


def differs_to_the_bit(call, answer, found):
    """Whether something differs that no rounding can turn: steps, or the parts of a record only copied."""
    for i, kind in enumerate(SIGNATURES[call.name]):
        if kind in IN_OUT and found.code == answer.code:
            expected, actual = ({i: only_copied(kind, side.changed[i])} if i in side.changed else {}
                                for side in (answer, found))
            if not same_changed(call, expected, actual):
                return True
    return False


def only_copied(kind, data):
    """The record without the frame that a call computes into a tool."""
    return data[:8] + bytes(48) + data[56:] if kind == "tool_inout" else data


SOLVING = ("Kine_WobjPosToJoint", "Kine_InchMovePosCalc", "Kine_CalcAlignPos")


def both_ends(model, call):
    """What the model answers when a tie of the turn search ends one way and the other."""
    try:
        for model.store.tie_to_start in (True, False):
            yield model.call(call.name, *call.args)
    finally:
        model.store.tie_to_start = None


def unsteady(model, call, answer, slack):
    """Whether a target changed by a few units of rounding is answered differently."""
    if call.name not in SOLVING:
        return False
    nudges = [(nudge, TOLERANCE) for nudge in NUDGES]
    if slack:
        nudges += [(factor * slack, TOLERANCE + SLACK_GROWTH * slack) for factor in (3.0, -3.0, 10.0)]
    try:
        for nudge, tolerance in nudges:
            model.store.nudge = nudge
            other = model.call(call.name, *call.args)
            if other.code != answer.code or not same_output("out_joint", answer.output, other.output,
                                                            tolerance=tolerance):
                return True
    finally:
        model.store.nudge = 0.0
    return False


def decoded(kind, output):
    layout = {"out_config": ARM_CONFIG, "out_pose": POSE, "out_joint": JOINT, "out_frame": FRAME,
              "out_vector": VECTOR, "steps_inout": VECTOR, "tool_inout": TOOL, "wobj_inout": WOBJ,
              **COMPUTED}.get(kind)
    return None if output is None or layout is None else list(layout.unpack(output))


def report(origin, place, setups, call, answer, found):
    kind = output_kind(call)
    lines = [f"MISMATCH {origin} --sequence {place[0]}, call {place[1]}"]
    lines += ["  after " + random_calls.describe(setup).replace("\n", "\n  ") for setup in setups]
    lines.append("  " + random_calls.describe(call).replace("\n", "\n  "))
    lines.append(f"  model   {answer.code:#x} {answer.printed!r} {decoded(kind, answer.output)}")
    output = found.output if found.touched or found.code == OK else None
    lines.append(f"  library {found.code:#x} {found.printed!r} {decoded(kind, output)}")
    for i in answer.changed:
        inout = SIGNATURES[call.name][i]
        lines.append(f"  argument {i} after the call: model   {decoded(inout, answer.changed[i])}")
        lines.append(f"                              library {decoded(inout, found.changed.get(i))}")
    if found.complaint:
        lines.append(f"  {found.complaint}")
    return "\n".join(lines)


# Workers

def work(options, job, calls, mark, pipe):
    comparison = Comparison(options)
    comparison.run_sequence(COLD, mark)
    number = job
    while comparison.count < calls and len(comparison.reports) < MAX_REPORTS:
        comparison.run_sequence(number, mark)
        number += options.jobs
    pipe.send((comparison.codes, comparison.skipped, comparison.wrapped, comparison.count,
               comparison.reports))


def run_workers(options):
    """Totals over all jobs; a worker that dies is reported with the call it was in."""
    workers = []
    for job in range(options.jobs):
        receiver, sender = multiprocessing.Pipe(False)
        mark = multiprocessing.Array("q", 2, lock=False)
        calls = options.calls // options.jobs + (1 if job < options.calls % options.jobs else 0)
        worker = multiprocessing.Process(target=work, args=(options, job, calls, mark, sender))
        worker.start()
        sender.close()
        workers.append((worker, receiver, mark))
    codes, skipped, wrapped, count, reports = Counter(), Counter(), 0, 0, []
    for worker, receiver, mark in workers:
        try:
            part = receiver.recv()
            codes += part[0]
            skipped += part[1]
            wrapped += part[2]
            count += part[3]
            reports += part[4]
            worker.join()
        except EOFError:
            worker.join()
            reports.append(f"A worker ended with status {worker.exitcode} in sequence {mark[0]} "
                           f"call {mark[1]}; see it with --seed {options.seed} --only {options.only}"
                           f"{filter_text(options.exports)} --sequence {mark[0]} --reference-only")
    return codes, skipped, wrapped, count, reports


def summary(options, codes, skipped, wrapped, count, reports, seconds):
    for text in reports[:MAX_REPORTS]:
        print(text)
    print(f"{count} calls in {seconds:.1f} s ({count / max(seconds, 1e-9):.0f} per second), "
          f"seed {options.seed}, arms: {options.only}")
    for name in SIGNATURES:
        if name not in options.exports and name not in SETUPS:
            continue
        parts = {code: n for (export, code), n in codes.items() if export == name}
        text = ", ".join(f"{code:#x}: {n}" for code, n in sorted(parts.items()))
        print(f"  {name:33} {sum(parts.values()):7}  {text}")
    queries = {key: n for key, n in codes.items() if key[0] not in SETUPS}
    good = sum(n for (_, code), n in queries.items() if code == OK)
    print(f"  queries answered with 0: {100.0 * good / max(1, sum(queries.values())):.1f} %")
    total = sum(skipped.values())
    print(f"  skipped: {total} ({100.0 * total / max(1, count):.3f} %), angles at the +-180 cut: {wrapped}")
    for reason, n in skipped.most_common():
        print(f"    {reason}: {n}")
    print(f"  mismatches: {len(reports)}")


def filter_text(wanted):
    return "" if wanted is generate.ALL else f" --exports {','.join(wanted)}"


def export_names(text):
    names = tuple(text.split(","))
    unknown = sorted(set(names) - set(SIGNATURES))
    if unknown:
        raise argparse.ArgumentTypeError(f"no such export: {', '.join(unknown)}")
    return names


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--library", dest="shared_library", help="path of the shared library")
    parser.add_argument("--reference-only", action="store_true", help="run the model alone")
    parser.add_argument("--calls", type=int, default=100_000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--only", choices=("six", "four", "all"), default="all")
    parser.add_argument("--exports", type=export_names, default=generate.ALL,
                        help="comma-separated: only these queries; setups always run")
    parser.add_argument("--sequence", type=int,
                        help="one sequence, every call printed (-1: before initialisation)")
    options = parser.parse_args()
    if options.reference_only:
        options.shared_library = None
    elif not options.shared_library:
        parser.error("--library or --reference-only is needed")

    if options.sequence is not None:
        screen = os.fdopen(os.dup(1), "w")
        comparison = Comparison(options)
        comparison.run_sequence(options.sequence,
                                verbose=lambda text: print(text, file=screen, flush=True))
        for text in comparison.reports:
            print(text, file=screen)
        return 1 if comparison.reports else 0

    start = time.monotonic()
    totals = run_workers(options)
    summary(options, *totals, time.monotonic() - start)
    return 1 if totals[4] else 0


if __name__ == "__main__":
    sys.exit(main())
