"""Frames as 3x4 rows [R | t], angles in rad, R = Rz(a) * Ry(b) * Rx(c)."""
from mpmath import mp, mpf


def rot_x(t):
    c, s = mp.cos(t), mp.sin(t)
    return rows([[1, 0, 0], [0, c, -s], [0, s, c]])


def rot_y(t):
    c, s = mp.cos(t), mp.sin(t)
    return rows([[c, 0, s], [0, 1, 0], [-s, 0, c]])


def rot_z(t):
    c, s = mp.cos(t), mp.sin(t)
    return rows([[c, -s, 0], [s, c, 0], [0, 0, 1]])


def rows(r, t=(0, 0, 0)):
    return [[mpf(r[i][0]), mpf(r[i][1]), mpf(r[i][2]), mpf(t[i])] for i in range(3)]


def translate(x, y, z):
    return rows([[1, 0, 0], [0, 1, 0], [0, 0, 1]], (x, y, z))


def multiply(*frames):
    result = frames[0]
    for b in frames[1:]:
        a = result
        result = [[sum(a[i][k] * b[k][j] for k in range(3)) + (a[i][3] if j == 3 else 0) for j in range(4)]
                  for i in range(3)]
    return result


def apply(m, p):
    return [sum(m[i][k] * p[k] for k in range(3)) + m[i][3] for i in range(3)]


# Rigid frames only: the transpose is the inverse.
def inverse(m):
    return rows([[m[j][i] for j in range(3)] for i in range(3)],
                [-sum(m[j][i] * m[j][3] for j in range(3)) for i in range(3)])


def from_pose(p):
    return multiply(translate(*p[:3]), rot_z(p[3]), rot_y(p[4]), rot_x(p[5]))


def euler(m):
    if abs(m[0][0]) < mpf("1e-5") and abs(m[1][0]) < mpf("1e-5"):
        if abs(m[2][0] - 1) < mpf("1e-5"):
            return mpf(0), -mp.pi / 2, mp.atan2(-m[0][1], m[1][1])
        return mpf(0), mp.pi / 2, mp.atan2(m[0][1], m[1][1])
    return (mp.atan2(m[1][0], m[0][0]), mp.atan2(-m[2][0], mp.sqrt(m[0][0]**2 + m[1][0]**2)),
            mp.atan2(m[2][1], m[2][2]))


def to_pose(m):
    return [m[0][3], m[1][3], m[2][3]] + list(euler(m))


# Quarter-turn number of a joint value: every boundary lies 5.555555556e-6 quarter turns lower.
def quadrant(x):
    t = 2 * x / mp.pi
    return int(mp.mpf(t if x > 0 else t - 1) + mpf("5.555555556e-6"))


def remainder4(n):
    return n - 4 * int(n / 4)
