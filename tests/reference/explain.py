"""Whether rounding alone explains that a calibration of the library differs from the model.

The model repeats the call a few dozen times with random roundings. What no repetition comes near, be it the
result code, a value, or whether a value is finite, is a difference.
"""

import math

from noisy import NOISE

REPETITIONS = 48
AMPLITUDES = (1, 1, 4)  # units in the last place
BREADTH = 6.0  # how much wider than seen a spread may be
HARDLY_DETERMINED = 1e-3


def repeated(model, call):
    """Answers of the model with random roundings, and whether one of them left the range of doubles."""
    answers, left_range = [], False
    model.noisy = True
    try:
        for i in range(REPETITIONS):
            NOISE.start(i, AMPLITUDES[i % len(AMPLITUDES)])
            answers.append(model.call(call.name, *call.args))
            left_range = left_range or NOISE.left_range
    finally:
        model.noisy = False
    return answers, left_range


def value_is_explained(seen, value, wrap, floor):
    """Within the spread of the finite values seen, or of a kind that was seen."""
    if not math.isfinite(value):
        return any(v == value or (v != v and value != value) for v in seen)
    finite = [v for v in seen if math.isfinite(v)]
    if not finite:
        return False
    if wrap:
        finite = [v + 360.0 * round((finite[0] - v) / 360.0) for v in finite]
        value += 360.0 * round((finite[0] - value) / 360.0)
    margin = BREADTH * (max(finite) - min(finite)) + floor * max(1.0, abs(value))
    return min(finite) - margin <= value <= max(finite) + margin


def is_loose(seen):
    """Hardly a digit is determined: a divisor may then just as well come out as zero."""
    finite = [v for v in seen if math.isfinite(v)]
    return bool(finite) and max(finite) - min(finite) > HARDLY_DETERMINED * max(1.0, *map(abs, finite))


def explanation(model, call, answer, found, unpacked, floor):
    """A reason to pass over the difference, or None. `unpacked` turns an answer into (values, angles)."""
    answers, left_range = repeated(model, call)
    same = [a for a in answers + [answer] if a.code == found.code and is_written_alike(a, call, found)]
    reason = None
    if same and found.printed == answer.printed:
        seen = [unpacked(a) for a in same]
        values, angles = unpacked(found)
        by_place = list(zip(*[s[0] for s in seen]))
        loose = any(is_loose(place) for place in by_place)
        if all(value_is_explained(by_place[i], v, i in angles, floor) or (loose and not math.isfinite(v))
               for i, v in enumerate(values)):
            if found.code != answer.code:
                reason = "code decided by rounding"
            elif loose:
                reason = "hardly determined"
            else:
                reason = "within the spread of rounding"
    if reason is None and left_range:
        reason = "beyond the range of doubles"
    return reason


def is_written_alike(answer, call, found):
    """The same records written: of what is not written the bytes must have stayed."""
    if (answer.output is not None) != found.touched:
        return False
    return all(found.changed[i] == call.args[i] for i, data in answer.changed.items() if data == call.args[i])
