"""Tool frames from taught poses. A pose carries the tip t: its place is R t + p. Radians and millimetres.

Every solver takes taught poses (position p, rotation r) and returns a frame of six values; those with a
report call write(report) where it is written, which is before a frame step that may still refuse.
"""

from calibration import (absolute_cosine, columns, cramer, determinant, divided, frame_at, is_closer,
                         normal_equations, report_of, require_apart, size, unit)
from geometry import add, cross, rot_product, rotate, subtract, transposed
from ieee import div
from records import (CALIB_COLLINEAR, CALIB_ORIENTATIONS, CALIB_POINTS_CLOSE, CALIB_SINGULAR,
                     NOT_INITIALISED, ZERO_VECTOR, Refused)

FOUR_AXIS = (4, 4110)
SHORTEST = 1e-5
SHORTEST_ON_AXIS = 0.01
LARGEST_COSINE = 0.99999
SMALLEST_SINE = 0.01
SPATIAL_LIMIT = 0.01
SINGULAR_LIMIT = 1e-10
NO_TURN = [0.0, 0.0, 0.0]
RAISE = 10.0


def tip_of(pose, t):
    return add(rotate(pose.r, t), pose.p)


def raised(origin):
    """In place of a Z point that a four-axis arm cannot give: straight above the origin pose."""
    above = type(origin)(**vars(origin))
    above.p = (origin.p[0], origin.p[1], origin.p[2] + RAISE)
    return above


# The tip

def tip_from_three(arm_type, poses):
    """Returns (t, report)."""
    if arm_type in FOUR_AXIS:
        t = planar_tip(poses)
    elif arm_type == 6:
        t = spatial_tip(poses)
    else:
        raise Refused(NOT_INITIALISED)
    return t, report_of([tip_of(pose, t) for pose in poses])


def check_positions(points):
    d1, d2 = subtract(points[1], points[0]), subtract(points[2], points[0])
    require_apart(SHORTEST, CALIB_POINTS_CLOSE, d1, d2)
    if is_closer(points[2], points[1], SHORTEST):
        raise Refused(CALIB_POINTS_CLOSE)
    if absolute_cosine(d1, d2) > LARGEST_COSINE:
        raise Refused(CALIB_COLLINEAR)


def spatial_equations(poses):
    """Three rows of R0 - Ri and of pi - p0 for every further pose."""
    first = poses[0]
    rows, right = [], []
    for other in poses[1:]:
        block = subtract(first.r, other.r)
        rows += [block[0:3], block[3:6], block[6:9]]
        right += subtract(other.p, first.p)
    return normal_equations(rows, right)


def spatial_tip(poses):
    check_positions([pose.p for pose in poses])
    matrix, right = spatial_equations(poses)
    if abs(determinant(matrix)) <= SPATIAL_LIMIT:
        raise Refused(CALIB_ORIENTATIONS)
    return cramer(matrix, right)


def planar_tip(poses):
    check_positions([pose.p[:2] for pose in poses])
    return solve_in_plane(poses)


def solve_in_plane(poses):
    first = poses[0]
    rows, right = [], []
    for other in poses[1:]:
        block = subtract(first.r, other.r)
        rows += [block[0:2], block[3:5]]
        right += subtract(other.p[:2], first.p[:2])
    n, r = normal_equations(rows, right)
    det = determinant(n)
    if abs(det) <= SINGULAR_LIMIT:
        raise Refused(CALIB_SINGULAR)
    return (div(r[0] * n[1][1] - r[1] * n[0][1], det), div(r[1] * n[0][0] - r[0] * n[0][1], det), 0.0)


def tip_from_five(arm_type, poses):
    """No distance or collinearity test, and the limit of the plane for the determinant."""
    if arm_type != 6:
        raise Refused(NOT_INITIALISED)
    matrix, right = spatial_equations(poses)
    if abs(determinant(matrix)) <= SINGULAR_LIMIT:
        raise Refused(CALIB_SINGULAR)
    t = cramer(matrix, right)
    return t, report_of([tip_of(pose, t) for pose in poses])


def tip_from_two(arm_type, poses):
    if arm_type not in FOUR_AXIS:
        raise Refused(NOT_INITIALISED)
    require_apart(SHORTEST, CALIB_POINTS_CLOSE, subtract(poses[1].p[:2], poses[0].p[:2]))
    return solve_in_plane(poses)


# Orientation

def frame_zx(origin, z_point, x_point):
    a, b = subtract(z_point, origin), subtract(x_point, origin)
    require_apart(SHORTEST_ON_AXIS, ZERO_VECTOR, b, a)
    z, w = unit(a), unit(b)
    c = cross(z, w)
    if size(c) < SMALLEST_SINE:
        raise Refused(CALIB_COLLINEAR)
    y = unit(c)
    return frame_at(origin, columns(cross(y, z), y, z))


def tool_frame_zx(t, origin, z_pose, x_pose):
    vz = add(rotate(subtract(z_pose.r, origin.r), t), subtract(z_pose.p, origin.p))
    vx = add(rotate(subtract(x_pose.r, z_pose.r), t), subtract(x_pose.p, z_pose.p))
    require_apart(SHORTEST, CALIB_POINTS_CLOSE, vx, vz)
    z, x0 = unit(vz), unit(vx)
    y = cross(z, x0)
    length = size(y)
    if length < SHORTEST:
        raise Refused(CALIB_COLLINEAR)
    y = divided(y, length)
    return frame_at(t, rot_product(transposed(origin.r), columns(cross(y, z), y, z)))


# The exports

def ext_1p(_, poses, write):
    return list(poses[0].p) + NO_TURN


def ext_1pzx(arm_type, poses, write):
    origin, z_point, x_point = with_z_point(arm_type, poses)
    return frame_zx(origin.p, z_point.p, x_point.p)


def ext_3p(arm_type, poses, write):
    t, report = tip_from_three(arm_type, poses)
    write(report)
    return list(tip_of(poses[0], t)) + NO_TURN


def ext_3pzx(arm_type, poses, write):
    t, report = tip_from_three(arm_type, poses[:3])
    write(report)
    return frame_zx(*[tip_of(pose, t) for pose in with_z_point(arm_type, poses[3:])])


def grip_3p(arm_type, poses, write):
    t, report = tip_from_three(arm_type, poses)
    write(report)
    return list(t) + NO_TURN


def grip_3pzx(arm_type, poses, write):
    t, report = tip_from_three(arm_type, poses[:3])
    write(report)
    return tool_frame_zx(t, *with_z_point(arm_type, poses[3:]))


def grip_5p(arm_type, poses, write):
    t, report = tip_from_five(arm_type, poses)
    write(report)
    return list(t) + NO_TURN


def grip_scara_2p(arm_type, poses, write):
    return list(tip_from_two(arm_type, poses)) + NO_TURN


def with_z_point(arm_type, poses):
    origin, z_pose, x_pose = poses
    return origin, raised(origin) if arm_type in FOUR_AXIS else z_pose, x_pose
