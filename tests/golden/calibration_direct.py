"""The calibrations in the steps that a library takes in doubles, with a bound on every rounding.

Normal equations with Cramer's rule, cross products, cofactors: the results are those of calibration.py, found
otherwise; the bounds say how far doubles may lie from them, which is large where the taught poses are badly
spread. Angles in rad, lengths in mm.
"""
from mpmath import mpf

from arms import FOUR_ARM_TYPES
from bounded_frames import (ONE, ZERO, apply, cross, determinant, difference, euler, exact, frame_matrix,
                            from_columns, inverse, matrix, matrix_pose, multiply, pose_matrix, rotation,
                            turn_z, unit)
from calibration import Refused
from rounding import (Bounded, NotFinite, arc_cosine, cosine, dot, in_degrees, in_radians, largest, norm,
                      sine, smallest, total)


def check_spread(points, limit, code):
    for i, p in enumerate(points):
        for q in points[i + 1:]:
            if norm(difference(q, p)) < mpf(limit):
                raise Refused(code)


def check_line(u, v):
    if abs(dot(u, v)) / (norm(u) * norm(v)) > mpf("0.99999"):
        raise Refused(0x6066)


# --- tool centre points -------------------------------------------------------------------------

class Taught:
    def __init__(self, pose):
        self.p = exact(pose[:3])
        self.r = rotation(*[in_radians(v) for v in exact(pose[3:6])])

    def carry(self, t):
        return apply(matrix(self.p, self.r), t)


def solve(rows, right, limit, code):
    """Least squares by the normal equations; refuses a determinant up to limit."""
    n = len(rows[0])
    normal = [[dot([r[i] for r in rows], [r[j] for r in rows]) for j in range(n)] for i in range(n)]
    side = [dot([r[i] for r in rows], right) for i in range(n)]
    if n == 2:
        det = normal[0][0] * normal[1][1] - normal[0][1] * normal[1][0]
        numerators = [side[0] * normal[1][1] - side[1] * normal[0][1],
                      side[1] * normal[0][0] - side[0] * normal[0][1]]
    else:
        det = determinant(normal)
        numerators = [determinant([[side[i] if j == k else normal[i][j] for j in range(n)] for i in range(n)])
                      for k in range(n)]
    if not abs(det) > mpf(limit):
        raise Refused(code)
    return [v / det for v in numerators]


def touch_tip(poses, size, limit, code):
    rows, right = [], []
    for pose in poses[1:]:
        for i in range(size):
            rows.append(difference(poses[0].r[i][:size], pose.r[i][:size]))
            right.append(pose.p[i] - poses[0].p[i])
    return (solve(rows, right, limit, code) + [ZERO])[:3]


def distances(points):
    found = [norm(difference(q, p)) for i, p in enumerate(points) for q in points[i + 1:]]
    return [largest(found), total(found) / Bounded(len(found)), smallest(found + [Bounded(10000)])]


def tip_of_three(case):
    poses = [Taught(p) for p in case.poses[:3]]
    if case.arm != 6 and case.arm not in FOUR_ARM_TYPES:
        raise Refused(0x6001)
    size = 3 if case.arm == 6 else 2
    points = [p.p[:size] for p in poses]
    check_spread(points, "1e-5", 0x6065)
    check_line(difference(points[1], points[0]), difference(points[2], points[0]))
    tip = touch_tip(poses, size, *(("0.01", 0x6064) if size == 3 else ("1e-10", 0x6060)))
    case.report = distances([p.carry(tip) for p in poses])
    return tip, poses


def last_three(case):
    """Origin, Z and X pose; the Z pose of a four-axis arm is its origin raised by 10 mm."""
    origin, along_z, along_x = [Taught(p) for p in case.poses[-3:]]
    if case.arm in FOUR_ARM_TYPES:
        along_z = Taught(case.poses[-3])
        along_z.p[2] = along_z.p[2] + Bounded(10)
    return origin, along_z, along_x


def frame_zx(origin, on_z, on_x):
    a, b = difference(on_z, origin), difference(on_x, origin)
    if norm(b) < mpf("0.01") or norm(a) < mpf("0.01"):
        raise Refused(0x6070)
    z = unit(a)
    c = cross(z, unit(b))
    if norm(c) < mpf("0.01"):
        raise Refused(0x6066)
    y = unit(c)
    return matrix_pose(from_columns(origin, cross(y, z), y, z))


def ext_tool_zx(case):
    return frame_zx(*[p.p for p in last_three(case)])


def ext_tool_three(case):
    tip, poses = tip_of_three(case)
    return poses[0].carry(tip) + [ZERO] * 3


def ext_tool_three_zx(case):
    tip, _ = tip_of_three(case)
    return frame_zx(*[p.carry(tip) for p in last_three(case)])


def grip_tool_three_zx(case):
    tip, _ = tip_of_three(case)
    origin, along_z, along_x = last_three(case)

    def travel(start, end):
        turned = [difference(end.r[i], start.r[i]) for i in range(3)]
        moved = difference(end.p, start.p)
        return apply(matrix(moved, turned), tip)

    vz, vx = travel(origin, along_z), travel(along_z, along_x)
    if norm(vx) < mpf("1e-5") or norm(vz) < mpf("1e-5"):
        raise Refused(0x6065)
    z = unit(vz)
    y = cross(z, unit(vx))
    if norm(y) < mpf("1e-5"):
        raise Refused(0x6066)
    y = unit(y)
    w = from_columns([ZERO] * 3, cross(y, z), y, z)
    back = matrix([ZERO] * 3, [[origin.r[j][i] for j in range(3)] for i in range(3)])
    return tip + euler(multiply(back, w))


def grip_tool_five(case):
    poses = [Taught(p) for p in case.poses]
    if case.arm != 6:
        raise Refused(0x6001)
    tip = touch_tip(poses, 3, "1e-10", 0x6060)
    case.report = distances([p.carry(tip) for p in poses])
    return tip + [ZERO] * 3


def grip_tool_two(case):
    poses = [Taught(p) for p in case.poses]
    if case.arm not in FOUR_ARM_TYPES:
        raise Refused(0x6001)
    check_spread([p.p[:2] for p in poses], "1e-5", 0x6065)
    return touch_tip(poses, 2, "1e-10", 0x6060) + [ZERO] * 3


# --- work objects -------------------------------------------------------------------------------

def positions(case):
    return [exact(p[:3]) for p in case.poses]


def user_frame(case, points):
    origin, on_x, in_plane = points
    check_spread(points, "0.01", 0x6065)
    x = unit(difference(on_x, origin))
    n = cross(x, unit(difference(in_plane, origin)))
    if norm(n) < mpf("1e-5"):
        raise Refused(0x6066)
    z = unit(n)
    case.tilt = [arc_cosine(z[2])]
    return matrix_pose(from_columns(origin, x, cross(z, x), z))


def user_frame_of_two(case):
    origin, on_x = positions(case)
    check_spread([origin, on_x], "0.001", 0x6065)
    x = unit(difference(on_x, origin))
    m = [-x[1], x[0], ZERO]
    if norm(m) < mpf("1e-5"):
        raise Refused(0x6065)
    y = unit(m)
    z = cross(x, y)
    case.tilt = [arc_cosine(z[2])]
    return matrix_pose(from_columns(origin, x, y, z))


def circle_frame(case):
    q1, q2, q3 = positions(case)
    check_spread([q1, q2, q3], "1e-5", 0x6065)
    u, w = difference(q1, q2), difference(q1, q3)
    check_line(u, w)
    n = cross(difference(q2, q1), difference(q3, q1))
    rows = [n, u, w]
    half = Bounded("0.5")
    right = [dot(n, q1), (dot(q1, q1) - dot(q2, q2)) * half, (dot(q1, q1) - dot(q3, q3)) * half]
    det = determinant(rows)
    if abs(det) < mpf("1e-5"):
        raise Refused(0x6063)
    centre = [determinant([[right[i] if j == k else rows[i][j] for j in range(3)] for i in range(3)]) / det
              for k in range(3)]
    x, z = unit(difference(q1, centre)), unit(n)
    case.tilt = [arc_cosine(z[2])]
    return matrix_pose(from_columns(centre, x, cross(z, x), z))


def object_frame(case):
    frame = user_frame(case, positions(case))
    return matrix_pose(multiply(inverse(frame_matrix(case.given)), pose_matrix(frame)))


def held_object_frame(case):
    user = frame_matrix(case.given)
    origin = [row[3] for row in user]
    points = [[dot([user[k][i] for k in range(3)], difference(q, origin)) for i in range(3)]
              for q in positions(case)]
    return user_frame(case, points)


def unit_matrix(unit_setup, ext):
    value = [ext[p] for p in unit_setup.params]
    first, second = (frame_matrix(f) for f in unit_setup.frames)
    if unit_setup.kind == 2:
        return multiply(first, turn_z(value[0]))
    if unit_setup.kind == 3:
        return multiply(multiply(first, turn_z(value[0])), multiply(second, turn_z(value[1])))
    return multiply(first, matrix([Bounded(value[0]), ZERO, ZERO], [row[:3] for row in second]))


def carried_object_frame(case):
    if not case.unit.carries():
        return user_frame(case, [[ZERO] * 3] * 3)
    points = []
    for pose in case.poses:
        seen = multiply(inverse(unit_matrix(case.unit, pose[6:])), frame_matrix(pose[:6]))
        points.append([row[3] for row in seen])
    return user_frame(case, points)


# --- positioners and the track ------------------------------------------------------------------

def axis_matrix(case):
    q1, q2, q3 = positions(case)
    check_spread([q1, q2, q3], "1e-5", 0x6065)
    d12, d23 = difference(q2, q1), difference(q3, q2)
    check_line(d12, difference(q3, q1))
    n = cross(d12, difference(q3, q1))
    m1, m2 = cross(n, d12), cross(n, d23)
    half = Bounded("0.5")
    mid1, mid2 = [(a + b) * half for a, b in zip(q1, q2)], [(a + b) * half for a, b in zip(q2, q3)]
    k1, k2 = m1[1] * mid1[0] - m1[0] * mid1[1], m2[1] * mid2[0] - m2[0] * mid2[1]
    try:
        centre_y = (k1 * m2[1] - k2 * m1[1]) / (m2[0] * m1[1] - m2[1] * m1[0])
        s = (centre_y - mid1[1]) / m1[1]
    except NotFinite:
        return None
    centre = [mid1[0] + s * m1[0], centre_y, mid1[2] + s * m1[2]]
    arm = difference(q1, centre)
    return pose_matrix(matrix_pose(from_columns(centre, unit(arm), unit(cross(n, arm)), unit(n))))


def first_axis_frame(case):
    axis = axis_matrix(case)
    value = case.poses[0][6 + case.unit.param_of(0)]
    return axis and matrix_pose(multiply(axis, turn_z(-value)))


def further_axis_frame(case):
    if case.unit.is_linear(case.axis - 1, False):
        raise Refused(0x6010)
    if case.axis < 1:
        raise Refused(0x6061)
    axis = axis_matrix(case)
    ext = case.poses[0][6:]
    # Axis n's value counts as radians here, whatever its unit.
    t = Bounded(ext[case.unit.param_of(case.axis - 1)])
    turn = matrix([ZERO] * 3, [[cosine(t), -sine(t), ZERO], [sine(t), cosine(t), ZERO], [ZERO, ZERO, ONE]])
    back = turn_z(-ext[case.unit.param_of(1)])
    if axis is None:
        return None
    return matrix_pose(multiply(multiply(inverse(multiply(turn, frame_matrix(case.given))), axis), back))


def base_frame(case):
    if not case.unit.is_linear(0, True):
        raise Refused(0x6010)
    k = case.unit.param_of(0)
    points = positions(case)
    check_spread(points, "1e-5", 0x6065)
    ext = [Bounded(pose[6 + k]) for pose in case.poses]
    moves = [e - ext[0] for e in ext[1:]]
    if all(abs(d) < mpf("0.1") for d in moves):
        raise Refused(0x6061)
    away = [difference(points[0][:2], p[:2]) for p in points[1:]]
    s = total([dot(a, a) for a in away])
    if not s * s > mpf("1e-10"):
        raise Refused(0x6061)
    u = dot(moves, [a[0] for a in away]) / s
    v = -dot(moves, [a[1] for a in away]) / s
    m = [[u, -v, ZERO], [v, u, ZERO], [ZERO, ZERO, ONE]]
    in_track = []
    for p, e in zip(points, ext):
        in_track.append(apply(matrix([e, ZERO, ZERO], m), p))
    case.report = distances(in_track)
    return [ZERO] * 3 + euler(m)


SOLVERS = {
    "Kine_CalcExtToolPrm_1P": lambda case: exact(case.poses[0][:3]) + [ZERO] * 3,
    "Kine_CalcExtToolPrm_1PZX": ext_tool_zx,
    "Kine_CalcExtToolPrm_3P": ext_tool_three,
    "Kine_CalcExtToolPrm_3PZX": ext_tool_three_zx,
    "Kine_CalcGripToolPrm_3P": lambda case: tip_of_three(case)[0] + [ZERO] * 3,
    "Kine_CalcGripToolPrm_3PZX": grip_tool_three_zx,
    "Kine_CalcGripToolPrm_5P": grip_tool_five,
    "Kine_CalcGripToolPrm_Scara2P": grip_tool_two,
    "Kine_CalcExtWobj_UserPrm_2P": user_frame_of_two,
    "Kine_CalcExtWobj_UserPrm_3P": lambda case: user_frame(case, positions(case)),
    "Kine_CalcGripWobj_UserPrm_3P": lambda case: user_frame(case, positions(case)),
    "Kine_CalcExtWobj_UserPrm_Cirle3P": circle_frame,
    "Kine_CalcExtWobj_ObjPrm_3P": object_frame,
    "Kine_CalcGripWobj_ObjPrm_3P": held_object_frame,
    "Kine_CalcUnFixWobj_ObjPrm_3P": carried_object_frame,
    "Kine_CalcPositionerJ1Prm_3P": first_axis_frame,
    "Kine_CalcPositionerJnPrm_3P": further_axis_frame,
    "Kine_CalcRobotBasePrm_3P": base_frame,
}


def calibrate(case):
    """Frame in mm and degrees, None when it is not finite; report and tilt of the case as far as written."""
    case.check_poses()
    frame = SOLVERS[case.export](case)
    return frame and frame[:3] + [in_degrees(v) for v in frame[3:]]
