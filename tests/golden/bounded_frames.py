"""Frames and vectors of bounded numbers, in the steps of doubles. Three rows [R | t], angles in rad."""
from mpmath import mpf

from rounding import Bounded, arc_tangent, cosine, dot, in_radians, norm, sine, total

ZERO, ONE = Bounded(0), Bounded(1)


def exact(values):
    return [Bounded(v) for v in values]


def rotation(a, b, c):
    ca, cb, cc = cosine(a), cosine(b), cosine(c)
    sa, sb, sc = sine(a), sine(b), sine(c)
    return [[ca * cb, ca * sb * sc - sa * cc, ca * sb * cc + sa * sc],
            [sa * cb, sa * sb * sc + ca * cc, sa * sb * cc - ca * sc],
            [-sb, cb * sc, cb * cc]]


def matrix(position, r):
    return [list(r[i]) + [position[i]] for i in range(3)]


def pose_matrix(pose):
    return matrix(pose[:3], rotation(*pose[3:]))


def frame_matrix(frame):
    return pose_matrix(exact(frame[:3]) + [in_radians(v) for v in exact(frame[3:])])


def turn_z(degrees):
    t = in_radians(Bounded(degrees))
    return matrix([ZERO] * 3, [[cosine(t), -sine(t), ZERO], [sine(t), cosine(t), ZERO], [ZERO, ZERO, ONE]])


def multiply(a, b):
    product = [[dot(a[i][:3], [b[k][j] for k in range(3)]) for j in range(3)] for i in range(3)]
    return matrix(apply(a, [row[3] for row in b]), product)


def apply(m, point):
    return [total([m[i][k] * point[k] for k in range(3)] + [m[i][3]]) for i in range(3)]


def determinant(m):
    def terms(*orders):
        return [m[0][i] * m[1][j] * m[2][k] for i, j, k in orders]

    odd = [-t for t in terms((2, 1, 0), (1, 0, 2), (0, 2, 1))]
    return total(terms((0, 1, 2), (1, 2, 0), (2, 0, 1)) + odd)


def inverse(m):
    det = determinant([row[:3] for row in m])

    def cofactor(i, j):
        r = [[m[p][q] for q in range(3) if q != j] for p in range(3) if p != i]
        minor = r[0][0] * r[1][1] - r[0][1] * r[1][0]
        return minor if (i + j) % 2 == 0 else -minor

    inverted = [[cofactor(j, i) / det for j in range(3)] for i in range(3)]
    return matrix([-dot(inverted[i], [row[3] for row in m]) for i in range(3)], inverted)


def euler(m):
    limit = mpf("1e-5")
    if abs(m[0][0]) < limit and abs(m[1][0]) < limit:
        if abs(m[2][0] - ONE) < limit:
            return [ZERO, rounded_half_turn(-1), arc_tangent(-m[0][1], m[1][1])]
        return [ZERO, rounded_half_turn(1), arc_tangent(m[0][1], m[1][1])]
    return [arc_tangent(m[1][0], m[0][0]), arc_tangent(-m[2][0], norm([m[0][0], m[1][0]])),
            arc_tangent(m[2][1], m[2][2])]


def rounded_half_turn(sign):
    return arc_tangent(Bounded(sign), ZERO)


def matrix_pose(m):
    return [row[3] for row in m] + euler(m)


def from_columns(origin, x, y, z):
    return matrix(origin, [[x[i], y[i], z[i]] for i in range(3)])


def difference(u, v):
    return [a - b for a, b in zip(u, v)]


def cross(u, v):
    return [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]]


def unit(v):
    length = norm(v)
    return [c / length for c in v]
