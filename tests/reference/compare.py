"""Compares the built library with the naive model over random calls.

Every call goes to both. The result code, the bytes on standard output, the bytes around and inside every
record and the values of the result must agree; a difference behind a decision that rounding alone may
turn is skipped and counted by its reason.

    python3 compare.py --library build/release/libKineDll.so --calls 100000 --seed 1 --jobs 2
    python3 compare.py --library ... --seed 1 --sequence 17     one sequence, every call printed
    python3 compare.py --reference-only --calls 5000            the model alone, with its statistics
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
from collections import Counter

import generate
from exports import OUTPUT_SIZES, SIGNATURES, Library
from margins import MARGINS
from records import ARM_CONFIG, JOINT, OK, POSE

TOLERANCE = 1e-9
LARGE = 1e7
GUARD = 64
MAX_REPORTS = 20
MAX_SECONDS_PER_CALL = 60
COLD = -1


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
    """The exported functions over guarded memory, with standard output caught."""

    def __init__(self, path):
        self.library = ctypes.CDLL(os.path.abspath(path))
        libc = ctypes.CDLL(None, use_errno=True)
        self.slots = [Slot(libc) for _ in range(5)]
        self.pattern = random.Random(0).randbytes(4096)
        self.caught = os.memfd_create("stdout")
        os.dup2(self.caught, 1)
        types = {"uint": ctypes.c_uint32, "int": ctypes.c_int32}
        self.functions = {}
        for name, kinds in SIGNATURES.items():
            function = getattr(self.library, name)
            function.restype = ctypes.c_uint32
            function.argtypes = [types.get(kind, ctypes.c_void_p) for kind in kinds]
            self.functions[name] = function

    def call(self, call, count):
        """(code, printed, output or None when untouched, complaint or None)."""
        start = count * 37 % 2048
        guard = self.pattern[start:start + GUARD]
        used, values, result = [], [], None
        for i, (kind, value) in enumerate(zip(SIGNATURES[call.name], call.args)):
            slot = self.slots[i]
            if kind in ("uint", "int"):
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
        signal.alarm(MAX_SECONDS_PER_CALL)  # not caught: a call without end ends the worker
        code = self.functions[call.name](*values)
        signal.alarm(0)
        printed = self.take_printed()

        output = complaint = None
        for slot in used:
            now = slot.now()
            if now == slot.content:
                continue
            if result is None or slot is not result[0]:
                complaint = "an input record or the memory around it was changed"
                continue
            output = now[GUARD:GUARD + result[1]]
            rest = GUARD + result[1]
            if now[:GUARD] != slot.content[:GUARD] or now[rest:] != slot.content[rest:]:
                complaint = "memory around the result record was changed"
        if output is None and code == OK and result is not None:
            slot, size = result
            output = slot.now()[GUARD:GUARD + size]
        return code, printed, output, complaint

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

def same_number(a, b, wrap):
    if a == b or (a != a and b != b):
        return True
    if not (math.isfinite(a) and math.isfinite(b)):
        return False
    limit = TOLERANCE * max(1.0, abs(a))
    if abs(a - b) <= limit:
        return True
    return wrap and abs(abs(a - b) - 360.0) <= limit


def same_output(kind, expected, actual, wrap=False):
    if expected is None or actual is None:
        return expected is actual
    if kind == "out_config":
        return ARM_CONFIG.unpack(expected) == ARM_CONFIG.unpack(actual)
    if expected[64:] != actual[64:]:
        return False
    if kind == "out_joint":
        return all(same_number(a, b, False) for a, b in zip(JOINT.unpack(expected)[:8], JOINT.unpack(actual)))
    a, b = POSE.unpack(expected), POSE.unpack(actual)
    return (a[6:10] == b[6:10] and all(same_number(x, y, False) for x, y in zip(a[:3], b[:3]))
            and all(same_number(x, y, wrap) for x, y in zip(a[3:6], b[3:6])))


def largest_input(calls):
    """Largest finite size of a double in the records of some calls."""
    largest = 0.0
    for call in calls:
        for kind, value in zip(SIGNATURES[call.name], call.args):
            if isinstance(value, bytes) and kind != "ext_axis":
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

    def __init__(self, path, only, seed):
        self.built = BuiltLibrary(path) if path else None
        self.only, self.seed = only, seed
        self.codes = Counter()
        self.skipped = Counter()
        self.wrapped = 0
        self.count = 0
        self.reports = []

    def run_sequence(self, number, mark=None, verbose=None):
        rng = generate.rng_for(self.seed, number)
        make = generate.cold_sequence if number == COLD else generate.sequence
        source = make(rng, self.only)
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
                verbose(f"#{index} {generate.describe(call)}")
            answer = model.call(call.name, *call.args)
            reasons, cut = set(MARGINS.reasons), MARGINS.cut
            self.codes[call.name, answer.code] += 1
            self.count += 1
            if call.name == "Kine_InitKinematicParam":
                setups = []
            if "_Init" in call.name or "_Set" in call.name:
                setups.append(call)
            if self.built:
                found = self.built.call(call, self.count)
                if verbose:
                    verbose(f"    model   {answer}\n    library {found}")
                self.judge(model, setups, call, answer, found, reasons, cut, (number, index))
            elif verbose:
                verbose(f"    model   {answer} {sorted(reasons)}")
            index += 1

    def judge(self, model, setups, call, answer, found, reasons, cut, place):
        code, printed, output, complaint = found
        kind = SIGNATURES[call.name][-1]
        plain = complaint is None and code == answer.code and printed == answer.printed
        if plain and same_output(kind, answer.output, output):
            return
        if plain and cut and same_output(kind, answer.output, output, wrap=True):
            self.wrapped += 1
            return
        if kind == "out_joint" and model.store.arm_type == 6:
            reasons.discard("near gimbal")  # the rotation is taken up again, not its angles
        if complaint is None:
            if largest_input(setups + [call]) > LARGE:
                reasons.add("large magnitudes")
            if code == answer.code and printed == answer.printed and has_endless_link(setups):
                reasons.add("infinite link")
            if not reasons and unsteady(model, call, answer):
                reasons.add("unsteady answer")
            if reasons:
                self.skipped[sorted(reasons)[0]] += 1
                return
        self.reports.append(report(f"{self.seed} arms {self.only}", place, setups, call, answer, found))


def unsteady(model, call, answer):
    """Whether a target changed by a few units of rounding is answered differently."""
    if call.name != "Kine_WobjPosToJoint":
        return False
    try:
        for nudge in (1e-13, -1e-13, 3e-13):
            model.store.nudge = nudge
            other = model.call(call.name, *call.args)
            if other.code != answer.code or not same_output("out_joint", answer.output, other.output):
                return True
    finally:
        model.store.nudge = 0.0
    return False


def decoded(kind, output):
    layout = {"out_config": ARM_CONFIG, "out_pose": POSE, "out_joint": JOINT}.get(kind)
    return None if output is None or layout is None else list(layout.unpack(output))


def report(origin, place, setups, call, answer, found):
    kind = SIGNATURES[call.name][-1]
    lines = [f"MISMATCH seed {origin} sequence {place[0]} call {place[1]}"]
    lines += ["  after " + generate.describe(setup).replace("\n", "\n  ") for setup in setups]
    lines.append("  " + generate.describe(call).replace("\n", "\n  "))
    lines.append(f"  model   {answer.code:#x} {answer.printed!r} {decoded(kind, answer.output)}")
    lines.append(f"  library {found[0]:#x} {found[1]!r} {decoded(kind, found[2])}")
    if found[3]:
        lines.append(f"  {found[3]}")
    return "\n".join(lines)


# Workers

def work(options, job, calls, mark, pipe):
    comparison = Comparison(options.library, options.only, options.seed)
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
                           f"call {mark[1]}; see it with --seed {options.seed} --only {options.only} "
                           f"--sequence {mark[0]} --reference-only")
    return codes, skipped, wrapped, count, reports


def summary(options, codes, skipped, wrapped, count, reports, seconds):
    for text in reports[:MAX_REPORTS]:
        print(text)
    print(f"{count} calls in {seconds:.1f} s ({count / max(seconds, 1e-9):.0f} per second), "
          f"seed {options.seed}, arms: {options.only}")
    for name in SIGNATURES:
        parts = {code: n for (export, code), n in codes.items() if export == name}
        text = ", ".join(f"{code:#x}: {n}" for code, n in sorted(parts.items()))
        print(f"  {name:27} {sum(parts.values()):7}  {text}")
    queries = {key: n for key, n in codes.items() if "_Init" not in key[0] and "_Set" not in key[0]}
    good = sum(n for (_, code), n in queries.items() if code == OK)
    print(f"  queries answered with 0: {100.0 * good / max(1, sum(queries.values())):.1f} %")
    total = sum(skipped.values())
    print(f"  skipped: {total} ({100.0 * total / max(1, count):.3f} %), angles at the +-180 cut: {wrapped}")
    for reason, n in skipped.most_common():
        print(f"    {reason}: {n}")
    print(f"  mismatches: {len(reports)}")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--library", help="path of the shared library")
    parser.add_argument("--reference-only", action="store_true", help="run the model alone")
    parser.add_argument("--calls", type=int, default=100_000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--only", choices=("six", "four", "all"), default="all")
    parser.add_argument("--sequence", type=int,
                        help="one sequence, every call printed (-1: before initialisation)")
    options = parser.parse_args()
    if options.reference_only:
        options.library = None
    elif not options.library:
        parser.error("--library or --reference-only is needed")

    if options.sequence is not None:
        screen = os.fdopen(os.dup(1), "w")
        comparison = Comparison(options.library, options.only, options.seed)
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
