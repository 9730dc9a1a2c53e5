"""Arithmetic of C doubles for Python floats: nothing here raises, bad arguments give NaN or infinity."""

import math

from noisy import like

INF = math.inf
NAN = math.nan
PI = math.pi
HALF_PI = 1.5707963267948966
TWO_PI = 2.0 * math.pi

INT32_MIN = -2147483648
INT32_MAX = 2147483647


def div(a, b):
    """a / b with the IEEE results for a zero divisor."""
    if b != 0.0:
        return a / b
    if a == 0.0 or a != a:
        return NAN
    return math.copysign(INF, a) * math.copysign(1.0, b)


def sqrt(x):
    return like(x, math.sqrt(x)) if x >= 0.0 else NAN


def sin(x):
    try:
        return like(x, math.sin(x))
    except ValueError:
        return NAN


def cos(x):
    try:
        return like(x, math.cos(x))
    except ValueError:
        return NAN


def acos(x):
    return like(x, math.acos(x)) if -1.0 <= x <= 1.0 else NAN


def asin(x):
    return like(x, math.asin(x)) if -1.0 <= x <= 1.0 else NAN


def atan2(y, x):
    return like(y, math.atan2(y, x))


def trunc(x):
    """Truncation toward zero that stays a double; NaN and infinity pass."""
    return float(math.trunc(x)) if math.isfinite(x) else x


def trunc_to_int32(x):
    """Double to int32: truncated, saturated at the range, NaN gives the smallest value."""
    if x != x:
        return INT32_MIN
    if x >= INT32_MAX:
        return INT32_MAX
    if x <= INT32_MIN:
        return INT32_MIN
    return math.trunc(x)


def remainder4(n):
    """Remainder of an integer divided by 4, with the sign of the integer."""
    return n - 4 * (abs(n) // 4) * (1 if n >= 0 else -1)


def to_signed32(n):
    """An unsigned 32-bit value read as a signed one."""
    n &= 0xFFFFFFFF
    return n - 0x100000000 if n > INT32_MAX else n
