"""Numbers that know how far the same steps in doubles may lie from them.

A Bounded is the exact value of one step of a computation and a bound on the error of the double that stands
for it: what its operands bring along, and the rounding of the step itself. The bounds hold for any order of a
sum, so that they do not depend on how a formula is written down. The bounds themselves are plain floats.
"""
import math

from mpmath import mp, mpf

HALF_ULP = 2.0 ** -53
# Sine, cosine and their inverses may be off by two units in the last place.
FUNCTION = 4 * HALF_ULP
LARGEST_WHOLE = 2.0 ** 53
FRACTION = 2 ** 20


class Undecided(Exception):
    """Rounding may turn a comparison over: not a case for a table."""


class NotFinite(Exception):
    """A division by exactly zero."""


class Bounded:
    __slots__ = ("value", "error", "size")

    def __init__(self, value, error=0.0):
        self.value = value if isinstance(value, mpf) else mpf(value)
        self.error, self.size = error, abs(float(self.value))

    def __neg__(self):
        return Bounded(-self.value, self.error)

    def __abs__(self):
        return Bounded(abs(self.value), self.error)

    def __add__(self, other):
        return total([self, other])

    def __sub__(self, other):
        return total([self, -other])

    def __mul__(self, other):
        error = self.size * other.error + other.size * self.error + self.error * other.error
        return rounded(self.value * other.value, error, HALF_ULP)

    def __truediv__(self, other):
        if other.value == 0 and other.error == 0:
            raise NotFinite
        if other.size <= other.error:
            raise Undecided
        value = self.value / other.value
        error = (self.error + abs(float(value)) * other.error) / (other.size - other.error)
        return rounded(value, error, HALF_ULP)

    def __lt__(self, limit):
        if self.error and abs(self.value - limit) <= self.error:
            raise Undecided
        return self.value < limit

    def __gt__(self, limit):
        return (-self) < -limit


# A step that starts from exact doubles and ends in one adds nothing.
def rounded(value, error, unit):
    near = float(value)
    if error == 0 and near == value:
        return Bounded(value)
    return Bounded(value, error + unit * (abs(near) + error))


def total(terms):
    terms = [t for t in terms if t.size or t.error]
    value = sum([t.value for t in terms], mpf(0))
    error = sum([t.error for t in terms])
    if len(terms) <= 2:
        return rounded(value, error, HALF_ULP if len(terms) == 2 else 0.0)
    size = sum([t.size for t in terms])
    # Multiples of one small fraction whose sums stay below 2^53 of it are added without rounding.
    if error == 0 and size * FRACTION < LARGEST_WHOLE and all(mp.isint(t.value * FRACTION) for t in terms):
        return Bounded(value)
    return Bounded(value, error + (len(terms) - 1) * HALF_ULP * (size + error))


def dot(u, v):
    return total([a * b for a, b in zip(u, v)])


def norm(v):
    """Length of a vector. An error of the vector moves it by no more than the error's own length."""
    value = mp.sqrt(sum([c.value ** 2 for c in v], mpf(0)))
    error = math.sqrt(sum([c.error ** 2 for c in v]))
    return rounded(value, error, (len(v) + 1) * HALF_ULP)


def largest(values):
    return Bounded(max(v.value for v in values), max(v.error for v in values))


def smallest(values):
    low = min(v.value for v in values)
    reach = min(v.value + v.error for v in values)
    return Bounded(low, max(v.error for v in values if v.value - v.error <= reach))


def sine(t):
    value = mp.sin(t.value)
    return Bounded(value, t.error + FUNCTION * abs(float(value)))


def cosine(t):
    value = mp.cos(t.value)
    return Bounded(value, t.error + (FUNCTION * abs(float(value)) if t.size or t.error else 0.0))


def arc_tangent(y, x):
    """atan2. The point moves by its error; the angle by no more than that seen from the origin."""
    value = mp.atan2(y.value, x.value)
    moved, away = math.hypot(x.error, y.error), math.hypot(x.size, y.size)
    if moved and moved >= away:
        raise Undecided
    return Bounded(value, (math.asin(moved / away) if moved else 0.0) + FUNCTION * abs(float(value)))


def arc_cosine(x):
    """Arc cosine of what may only by rounding lie outside [-1, 1]; there it is 0 or pi."""
    value = mp.acos(clamped(x.value))
    low, high = (mp.acos(clamped(x.value + s * x.error)) for s in (1, -1))
    return Bounded(value, float(max(value - low, high - value)) + FUNCTION * float(value))


def clamped(x):
    return min(max(x, mpf(-1)), mpf(1))


# The factors between degrees and radians are doubles themselves.
def in_radians(degrees):
    return degrees * factor(mp.pi / 180)


def in_degrees(radians):
    return radians * factor(180 / mp.pi)


def factor(value):
    return Bounded(value, HALF_ULP * float(value))
