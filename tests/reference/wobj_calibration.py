"""User and object frames of work objects from three or two taught points. Radians and millimetres.

Every solver returns a frame and the cosine between its Z axis and that of the points' frame; the tilt is
the arc cosine of it, in radians.
"""

from types import SimpleNamespace

import chains
from calibration import (absolute_cosine, columns, cramer, determinant, divided, frame_at, is_closer,
                         require_apart, size, unit)
from geometry import (cross, dot, euler_to_rotation, inverse, matrix_to_pose, pose_to_matrix, product,
                      rotate, safe_acos, subtract, transposed)
from records import CALIB_CIRCLE, CALIB_COLLINEAR, CALIB_POINTS_CLOSE, Refused
from store import ON_UNIT

THREE_POINTS_APART = 0.01
TWO_POINTS_APART = 0.001
CIRCLE_POINTS_APART = 1e-5
SMALLEST_NORMAL = 1e-5
SMALLEST_HORIZONTAL = 1e-5
LARGEST_COSINE = 0.99999
SMALLEST_CIRCLE = 1e-5


def user_frame_3p(points):
    o, p1, p2 = points
    a, b = subtract(p1, o), subtract(p2, o)
    require_apart(THREE_POINTS_APART, CALIB_POINTS_CLOSE, a, b)
    if is_closer(p2, p1, THREE_POINTS_APART):
        raise Refused(CALIB_POINTS_CLOSE)
    x, w = unit(a), unit(b)
    n = cross(x, w)
    if size(n) < SMALLEST_NORMAL:
        raise Refused(CALIB_COLLINEAR)
    z = unit(n)
    return frame_at(o, columns(x, cross(z, x), z)), safe_acos(z[2])


def user_frame_2p(points):
    """Y stays horizontal; the Z axis of the points' frame as X direction is points too close, too."""
    o, p1 = points
    a = subtract(p1, o)
    require_apart(TWO_POINTS_APART, CALIB_POINTS_CLOSE, a)
    x = unit(a)
    m = (-x[1], x[0], 0.0)
    require_apart(SMALLEST_HORIZONTAL, CALIB_POINTS_CLOSE, m)
    y = unit(m)
    z = cross(x, y)
    return frame_at(o, columns(x, y, z)), safe_acos(z[2])


def circle_frame(points):
    q1, q2, q3 = points
    u, w = subtract(q1, q2), subtract(q1, q3)
    require_apart(CIRCLE_POINTS_APART, CALIB_POINTS_CLOSE, u, w)
    if is_closer(q2, q3, CIRCLE_POINTS_APART):
        raise Refused(CALIB_POINTS_CLOSE)
    if absolute_cosine(u, w) > LARGEST_COSINE:
        raise Refused(CALIB_COLLINEAR)
    n = cross(subtract(q2, q1), subtract(q3, q1))
    matrix = [list(n), list(u), list(w)]
    if abs(determinant(matrix)) < SMALLEST_CIRCLE:
        raise Refused(CALIB_CIRCLE)
    right = [dot(n, q1), (dot(q1, q1) - dot(q2, q2)) * 0.5, (dot(q1, q1) - dot(q3, q3)) * 0.5]
    centre = cramer(matrix, right)
    radius = subtract(q1, centre)
    x, z = divided(radius, size(radius)), unit(n)
    return frame_at(centre, columns(x, cross(z, x), z)), safe_acos(z[2])


def object_frame_by_matrices(points, user):
    """The tilt is that of the frame where the points are, not in the user frame."""
    frame, tilt = user_frame_3p(points)
    return matrix_to_pose(product(inverse(pose_to_matrix(user)), pose_to_matrix(frame))), tilt


def object_frame_by_points(points, user):
    """Frame and tilt are both seen from the user frame."""
    back = transposed(euler_to_rotation(*user[3:]))
    return user_frame_3p([rotate(back, subtract(q, user[:3])) for q in points])


def object_frame_on_unit(store, unit_index, poses):
    """A conversion that is refused leaves a point of zeros; its code is not looked at."""
    descriptor = SimpleNamespace(mode=ON_UNIT, unit=unit_index, frame=[0.0] * 6)
    points = []
    for pose in poses:
        record = chains.record_of(pose.frame, [0] * 4, pose.ext)
        try:
            points.append(tuple(chains.world_to_frame(store, record, descriptor).frame[:3]))
        except Refused:
            points.append((0.0, 0.0, 0.0))
    return user_frame_3p(points)
