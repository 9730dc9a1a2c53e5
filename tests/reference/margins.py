"""Remembers which decisions of a call were so close that rounding alone may turn them.

The comparison looks here only after a difference: a difference behind a close decision says nothing
about either side. Two milder cases: `cut`, an angle at +-180 degrees, where only the sign may turn, and
`slack`, how far (in radians) the last bits of an ill-conditioned step may turn a frame.
"""


class Margins:
    def __init__(self):
        self.reasons = set()
        self.cut = False
        self.slack = 0.0

    def clear(self):
        self.reasons.clear()
        self.cut = False
        self.slack = 0.0

    def loosen(self, slack):
        self.slack = max(self.slack, slack)

    def flag(self, reason):
        self.reasons.add(reason)

    def near(self, reason, value, threshold, tolerance):
        if abs(value - threshold) <= tolerance:
            self.reasons.add(reason)

    def near_integer(self, reason, value, tolerance=1e-9):
        """Truncation toward zero turns at every integer but zero."""
        if abs(value) > 0.5 and abs(value - round_or_same(value)) <= tolerance * max(1.0, abs(value)):
            self.reasons.add(reason)


def round_or_same(value):
    try:
        return round(value)
    except (ValueError, OverflowError):
        return 0.0


MARGINS = Margins()
