"""Poses, rotations and transforms by the textbook, in radians.

A pose is six values x, y, z, a, b, c with R = Rz(a) Ry(b) Rx(c). A rotation is nine values by rows.
A transform is twelve values: the rotation, then the translation.
"""

import math

from ieee import HALF_PI, PI, acos, asin, atan2, cos, div, sin, sqrt
from margins import MARGINS

SMALLEST_FLOAT = 1.1754943508222875e-38
ROUNDING = 4e-16
GIMBAL_LOST = 1e-6
IDENTITY = (1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0)


def rot_x(angle):
    c, s = cos(angle), sin(angle)
    return (1.0, 0.0, 0.0, 0.0, c, -s, 0.0, s, c)


def rot_y(angle):
    c, s = cos(angle), sin(angle)
    return (c, 0.0, s, 0.0, 1.0, 0.0, -s, 0.0, c)


def rot_z(angle):
    c, s = cos(angle), sin(angle)
    return (c, -s, 0.0, s, c, 0.0, 0.0, 0.0, 1.0)


def rot_product(*rotations):
    """Product of rotations, left to right."""
    result = rotations[0]
    for b in rotations[1:]:
        a = result
        result = (a[0] * b[0] + a[1] * b[3] + a[2] * b[6],
                  a[0] * b[1] + a[1] * b[4] + a[2] * b[7],
                  a[0] * b[2] + a[1] * b[5] + a[2] * b[8],
                  a[3] * b[0] + a[4] * b[3] + a[5] * b[6],
                  a[3] * b[1] + a[4] * b[4] + a[5] * b[7],
                  a[3] * b[2] + a[4] * b[5] + a[5] * b[8],
                  a[6] * b[0] + a[7] * b[3] + a[8] * b[6],
                  a[6] * b[1] + a[7] * b[4] + a[8] * b[7],
                  a[6] * b[2] + a[7] * b[5] + a[8] * b[8])
    return result


def rotate(r, v):
    return (r[0] * v[0] + r[1] * v[1] + r[2] * v[2],
            r[3] * v[0] + r[4] * v[1] + r[5] * v[2],
            r[6] * v[0] + r[7] * v[1] + r[8] * v[2])


def transposed(r):
    return (r[0], r[3], r[6], r[1], r[4], r[7], r[2], r[5], r[8])


def add(u, v):
    return tuple(a + b for a, b in zip(u, v))


def subtract(u, v):
    return tuple(a - b for a, b in zip(u, v))


def cross(u, v):
    return (u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])


def dot(u, v):
    return u[0] * v[0] + u[1] * v[1] + u[2] * v[2]


def euler_to_rotation(a, b, c):
    ca, sa, cb, sb, cc, sc = cos(a), sin(a), cos(b), sin(b), cos(c), sin(c)
    return (ca * cb, ca * sb * sc - sa * cc, ca * sb * cc + sa * sc,
            sa * cb, sa * sb * sc + ca * cc, sa * sb * cc - ca * sc,
            -sb, cb * sc, cb * cc)


def rotation_to_euler(r):
    """Below 1e-5 in both leading elements a is 0 and only c carries the heading."""
    for value in (r[0], r[3]):
        MARGINS.near("gimbal test", abs(value), 1e-5, 1e-14)
    if abs(r[0]) < 1e-4 and abs(r[3]) < 1e-4:
        MARGINS.flag("near gimbal")
    if abs(r[0]) < 1e-5 and abs(r[3]) < 1e-5:
        MARGINS.near("gimbal sign", abs(r[6] - 1.0), 1e-5, 1e-14)
        if abs(r[6] - 1.0) < 1e-5:
            a, b, c = 0.0, -HALF_PI, atan2(-r[1], r[4])
        else:
            a, b, c = 0.0, HALF_PI, atan2(r[1], r[4])
    else:
        # Close to the gimbal a and c come from short columns, each with a rounding of its own.
        loosen_for_short_columns(r)
        a = atan2(r[3], r[0])
        b = atan2(-r[6], sqrt(r[0] * r[0] + r[3] * r[3]))
        c = atan2(r[7], r[8])
    if abs(a) > PI - 1e-9 or abs(c) > PI - 1e-9:
        MARGINS.cut = True
    return a, b, c


def loosen_for_short_columns(r):
    """A short leading column or a short bottom row leaves mostly rounding in a or c."""
    shortest = min(max(abs(r[0]), abs(r[3])), max(abs(r[7]), abs(r[8])))
    if all(math.isfinite(v) for v in r):
        slack = div(ROUNDING * max(abs(v) for v in r), shortest)
        if not slack < GIMBAL_LOST:
            MARGINS.flag("near exact gimbal")
        elif slack > 1e-13:
            MARGINS.loosen(slack)


def rotation_to_euler_exact(r):
    """Only a vanishing leading column counts as the gimbal case; r need not be orthonormal.

    The sign of r20 decides the sign of b there, not its closeness to 1.
    """
    loosen_for_short_columns(r)
    if abs(r[0]) < SMALLEST_FLOAT and abs(r[3]) < SMALLEST_FLOAT:
        t = math.atan2(r[1], r[4])
        return (0.0, -HALF_PI, -t) if r[6] > 0.0 else (0.0, HALF_PI, t)
    a = math.atan2(r[3], r[0])
    b = math.atan2(-r[6], sqrt(r[0] * r[0] + r[3] * r[3]))
    return a, b, math.atan2(r[7], r[8])


def axis_angle(w, angle):
    """Rotation about an axis of unit length; any other axis gives a matrix that is no rotation."""
    s, v = sin(angle), 1.0 - cos(angle)
    x, y, z = w
    return (1.0 - (y * y + z * z) * v, x * y * v - s * z, x * z * v + s * y,
            x * y * v + s * z, 1.0 - (x * x + z * z) * v, y * z * v - s * x,
            x * z * v - s * y, y * z * v + s * x, 1.0 - (x * x + y * y) * v)


def pose_to_matrix(pose):
    return euler_to_rotation(pose[3], pose[4], pose[5]) + tuple(pose[:3])


def matrix_to_pose(m):
    return list(m[9:]) + list(rotation_to_euler(m))


def product(*transforms):
    """Product of transforms, left to right."""
    result = transforms[0]
    for b in transforms[1:]:
        result = rot_product(result, b) + add(rotate(result, b[9:]), result[9:])
    return result


def inverse(m):
    """Affine inverse by cofactors; a singular block gives infinities or NaN."""
    r00, r01, r02, r10, r11, r12, r20, r21, r22 = m[:9]
    det = r00 * (r11 * r22 - r12 * r21) - r01 * (r10 * r22 - r12 * r20) + r02 * (r10 * r21 - r11 * r20)
    adjugate = (r11 * r22 - r12 * r21, r02 * r21 - r01 * r22, r01 * r12 - r02 * r11,
                r12 * r20 - r10 * r22, r00 * r22 - r02 * r20, r02 * r10 - r00 * r12,
                r10 * r21 - r11 * r20, r01 * r20 - r00 * r21, r00 * r11 - r01 * r10)
    block = tuple(div(v, det) for v in adjugate)
    return block + tuple(-v for v in rotate(block, m[9:]))


def rigid_inverse(m):
    """The block transposed, as it is for a rotation, whatever the block is."""
    block = transposed(m[:9])
    return block + tuple(-v for v in rotate(block, m[9:]))


def pose_difference(first, second, in_base):
    """The second pose as seen from the first, in the axes of the base or of the first pose."""
    r1, r2 = euler_to_rotation(*first[3:]), euler_to_rotation(*second[3:])
    shift = subtract(second[:3], first[:3])
    if in_base:
        return list(shift) + list(rotation_to_euler(rot_product(r2, transposed(r1))))
    back = transposed(r1)
    return list(rotate(back, shift)) + list(rotation_to_euler(rot_product(back, r2)))


def rot_z_deg(degrees):
    return rot_z(degrees * 0.017453292519943295) + (0.0, 0.0, 0.0)


def safe_acos(x):
    return acos(absorb_noise(x))


def safe_asin(x):
    return asin(absorb_noise(x))


def absorb_noise(x):
    if 1.0 <= x < 1.00001:
        return 1.0
    if -1.00001 < x <= -1.0:
        return -1.0
    return x


def matrix6_inverse(source):
    """Gauss-Jordan with full pivoting; returns (determinant, inverse), determinant 0 without a pivot."""
    w = [list(row) for row in source]
    rows, columns = [], []
    sign, determinant = 1.0, 1.0
    for k in range(6):
        best, pivot_row, pivot_column = 0.0, k, k
        for i in range(k, 6):
            for j in range(k, 6):
                if abs(w[i][j]) > best:
                    best, pivot_row, pivot_column = abs(w[i][j]), i, j
        MARGINS.near("pivot", best, 9.999999747378752e-05, 1e-10)
        if not best >= 9.999999747378752e-05:
            return 0.0, None
        if pivot_row != k:
            w[pivot_row], w[k] = w[k], w[pivot_row]
            sign = -sign
        if pivot_column != k:
            for row in w:
                row[pivot_column], row[k] = row[k], row[pivot_column]
            sign = -sign
        rows.append(pivot_row)
        columns.append(pivot_column)
        determinant *= w[k][k]
        reciprocal = div(1.0, w[k][k])
        others = [i for i in range(6) if i != k]
        for j in others:
            w[k][j] *= reciprocal
        for i in others:
            for j in others:
                w[i][j] -= w[i][k] * w[k][j]
        for i in others:
            w[i][k] *= -reciprocal
        w[k][k] = reciprocal
    for k in reversed(range(6)):
        if columns[k] != k:
            w[k], w[columns[k]] = w[columns[k]], w[k]
        if rows[k] != k:
            for row in w:
                row[k], row[rows[k]] = row[rows[k]], row[k]
    return sign * determinant, w
