"""Doubles whose every inexact operation is off by a few units in the last place, at random.

A calculation repeated with them shows which of its results and decisions rounding alone can turn, and how
far: another order of sums, or another way to a norm, does the same. Exact operations stay exact, so that
equal points stay equal and a zero stays a zero.
"""

import math
import random
from fractions import Fraction

SMALLEST_NORMAL = 2.2250738585072014e-308


class Noise:
    """The shared source: amplitude in units of the last place, and whether a range was left."""

    def __init__(self):
        self.start(0, 1)

    def start(self, seed, amplitude):
        self.rng = random.Random(seed)
        self.amplitude = amplitude
        self.left_range = False

    def __call__(self, value):
        return value + self.rng.randint(-self.amplitude, self.amplitude) * math.ulp(value)


NOISE = Noise()


class Noisy(float):
    __slots__ = ()

    def __add__(self, other):
        a, b = float(self), float(other)
        return rounded(a + b, (a, b), lambda r: is_exact_sum(a, b, r))

    __radd__ = __add__

    def __sub__(self, other):
        return self + -float(other)

    def __rsub__(self, other):
        return Noisy(-float(self)) + other

    def __mul__(self, other):
        a, b = float(self), float(other)
        return rounded(a * b, (a, b), lambda r: Fraction(a) * Fraction(b) == Fraction(r))

    __rmul__ = __mul__

    def __truediv__(self, other):
        return quotient(float(self), float(other))

    def __rtruediv__(self, other):
        return quotient(float(other), float(self))

    def __neg__(self):
        return Noisy(-float(self))

    def __abs__(self):
        return Noisy(abs(float(self)))


def quotient(a, b):
    return rounded(a / b, (a, b), lambda r: Fraction(r) * Fraction(b) == Fraction(a))


def is_exact_sum(a, b, r):
    """Knuth's two-sum: the part of the operands that the sum lost is zero."""
    shift = r - a
    return (a - (r - shift)) + (b - shift) == 0.0


def rounded(result, operands, is_exact):
    if not math.isfinite(result):
        if all(math.isfinite(v) for v in operands):
            NOISE.left_range = True
        return Noisy(result)
    if abs(result) < SMALLEST_NORMAL and not all(math.isfinite(v) for v in operands):
        return Noisy(result)
    if is_exact(result):
        return Noisy(result)
    if abs(result) < SMALLEST_NORMAL:
        NOISE.left_range = True
        return Noisy(result)
    return Noisy(NOISE(result))


def like(operand, result):
    """The result of a function, as noisy as its operand; 0 and +-1 of an exact argument stay."""
    if not isinstance(operand, Noisy):
        return result
    if not math.isfinite(result) or result in (0.0, 1.0, -1.0):
        return Noisy(result)
    return Noisy(NOISE(result))
