"""Numbers in and out: exact doubles, one rounding, random inputs that every platform draws alike."""
from mpmath import mp, mpf


def rad(degrees):
    return mpf(degrees) * mp.pi / 180


def deg(radians):
    return mpf(radians) * 180 / mp.pi


def doubles(values):
    return [float(v) for v in values]


# Seventeen digits name a double exactly. What is left of a zero after 50 digits is shown as zero.
def text(values):
    return ["%.17g" % (float(v) if abs(v) > 1e-40 else 0.0) for v in values]


def table(title, columns, rows):
    lines = ["# " + title, "# " + columns] + [" ".join(row) for row in rows]
    return "\n".join(lines) + "\n"


class Random:
    """A 64-bit linear congruential generator; values are rounded so that tables stay readable."""

    def __init__(self, seed):
        self.state = seed
        for _ in range(8):
            self.bits()

    def bits(self):
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) % 2**64
        return self.state >> 11

    def uniform(self, low, high):
        return round(low + (high - low) * (self.bits() / 2.0**53), 3)
