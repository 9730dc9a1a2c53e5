"""Tables of the calibrations: every case solved in two ways that must agree, a bound for every column."""
from mpmath import mpf

import calibration
import calibration_direct
from numbers_out import Random, table, text
from positioner_cases import POSITIONER_CASES
from rounding import HALF_ULP
from tool_cases import TOOL_CASES
from wobj_cases import WOBJ_CASES

# What two computations with 50 digits may differ by, in mm, degrees or rad: the arc cosine of almost 1 loses
# half of the digits.
AGREEMENT = mpf(10) ** -20


def solved(module, case):
    """Code, frame, report and tilt in one way. A frame that is not finite is None."""
    case.report = case.tilt = None
    try:
        frame, code = module.calibrate(case), 0
    except calibration.Refused as refused:
        frame, code = None, refused.code
    return code, frame, case.report, None if code else case.tilt


def columns(case, what, values, bounded):
    """Results and the largest difference from them that rounding explains."""
    if (values is None) != (bounded is None):
        raise AssertionError("%s %s: the two ways differ about the %s" % (case.export, case.name, what))
    if values is None:
        return []
    for value, bound in zip(values, bounded):
        if distance(what, value, bound.value) > AGREEMENT:
            raise AssertionError("%s %s: %s %s and %s" % (case.export, case.name, what, value, bound.value))
    # A result is shown rounded; one that is exact in doubles must be met exactly.
    errors = [b.error and b.error + HALF_ULP * b.size for b in bounded]
    return text(values) + [upper(e) for e in errors]


def distance(what, value, other):
    apart = abs(value - other)
    return min(apart, abs(apart - 360)) if what == "frame" else apart


# Two digits. The tenth more keeps the rounding of the last one on the safe side.
def upper(error):
    return "%.1e" % (1.1 * error) if error else "0"


def row(case):
    second, first = solved(calibration, case), solved(calibration_direct, case)
    if second[0] != first[0]:
        raise AssertionError("%s %s: 0x%04X and 0x%04X" % (case.export, case.name, second[0], first[0]))
    values = [case.export, case.name] + given(case) + ["0x%04X" % second[0]]
    if second[0] == 0 and second[1] is None and first[1] is None:
        values += ["nan"] * 6 + ["0"] * 6
    else:
        values += columns(case, "frame", second[1], first[1])
    values += columns(case, "report", second[2], first[2])
    return values + columns(case, "tilt", second[3], first[3])


def given(case):
    ext = 12 if case.unit else 6
    values = [str(case.arm)] if case.export in TOOL_CASES else []
    if case.unit:
        u = case.unit
        values += [str(v) for v in [u.asked, u.count, u.slot, u.kind, u.axes] + u.params]
        on_unit = case.export in WOBJ_CASES
        values += short(u.frames[0] + u.frames[1]) if on_unit else [str(v) for v in u.linear]
    if case.axis is not None:
        values.append(str(case.axis))
    for pose in case.poses:
        values += short(pose[:ext])
    return values + short(case.given or [])


# The shortest decimals that name the doubles.
def short(values):
    return [repr(float(v))[:-2] if repr(float(v)).endswith(".0") else repr(float(v)) for v in values]


def table_of(title, columns_line, makers, seed):
    rows = []
    for number, (export, make) in enumerate(makers.items()):
        rows += [row(case) for case in make(Random(seed + number), export)]
    return table(title, columns_line, rows)


RESULT = "code, with code 0 frame[6] and its bounds[6]"
REPORT = "; report[3] and its bounds[3] where written"


def tables():
    return {
        "calib_tool.txt": table_of(
            "Tools, with as many poses as the call takes. A bound: how far a result in doubles may lie off.",
            "export case armType poses[][6] " + RESULT + REPORT, TOOL_CASES, 100),
        "calib_wobj.txt": table_of(
            "Work objects; those on a unit with the unit, two axis frames, external axes in each pose.",
            "export case [unit count slot kind axisCount params[6] axisFrames[2][6]] poses[][6 or 12] "
            "[user[6]] " + RESULT + " tilt (rad) and its bound", WOBJ_CASES, 200),
        "calib_positioner.txt": table_of(
            "Positioners and the track; nan: not finite.",
            "export case unit count slot kind axisCount params[6] word3[6] [axis] poses[3][12] "
            "[reference[6]] " + RESULT + REPORT, POSITIONER_CASES, 300),
    }
