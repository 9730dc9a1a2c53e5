"""Axis frames of positioners and the turn of a robot base on its track. Millimetres; external-axis values
in degrees or millimetres, with one place where a degree number counts as radians.
"""

from types import SimpleNamespace

from calibration import (absolute_cosine, columns, divided, frame_at, is_closer, report_of, require_apart,
                         unit)
from geometry import (add, cross, inverse, matrix_to_pose, pose_to_matrix, product, rot_z, rot_z_deg, rotate,
                      rotation_to_euler, subtract)
from ieee import div
from records import (CALIB_COLLINEAR, CALIB_INPUT, CALIB_POINTS_CLOSE, POSE_REFUSED, TOOL_REFUSED, Refused)
from store import EXT_AXES, UNITS

LINEAR = 1
SHORTEST = 1e-5
LARGEST_COSINE = 0.99999
SHORTEST_MOVE = 0.1
SINGULAR_TRACK = 1e-10


def unit_axis(store, unit_index, axis_index):
    """(type of the axis, its external-axis index), or None. A unit index equal to the count is accepted."""
    if not 0 <= unit_index <= store.unit_count or unit_index >= UNITS:
        return None
    found = store.units[unit_index]
    if not 0 <= axis_index < found.axis_count or axis_index >= len(found.axis_index):
        return None
    ext_index = found.axis_index[axis_index]
    if ext_index >= EXT_AXES:
        return None  # there is no such external axis to look into
    return SimpleNamespace(type=store.ext_axes[ext_index][3], ext=ext_index)


def axis_frame(points):
    """Transform of a rotary axis: the centre from x and y alone, by two divisions that nothing guards."""
    q1, q2, q3 = points
    d12, d13, d23 = subtract(q2, q1), subtract(q3, q1), subtract(q3, q2)
    require_apart(SHORTEST, CALIB_POINTS_CLOSE, d12, d13, d23)
    if absolute_cosine(d12, d13) > LARGEST_COSINE:
        raise Refused(CALIB_COLLINEAR)
    n = cross(d12, d13)
    m1, m2 = cross(n, d12), cross(n, d23)
    middle1, middle2 = (divided(add(p, q), 2.0) for p, q in ((q1, q2), (q2, q3)))
    k1 = m1[1] * middle1[0] - m1[0] * middle1[1]
    k2 = m2[1] * middle2[0] - m2[0] * middle2[1]
    y = div(k1 * m2[1] - k2 * m1[1], m2[0] * m1[1] - m2[1] * m1[0])
    s = div(y - middle1[1], m1[1])
    centre = (middle1[0] + s * m1[0], y, middle1[2] + s * m1[2])
    radius = subtract(q1, centre)
    rotation = columns(unit(radius), unit(cross(n, radius)), unit(n))
    return pose_to_matrix(frame_at(centre, rotation))


def first_axis(store, unit_index, poses):
    """The frame of the unit's first axis where the axis reads 0."""
    taught = axis_frame([pose.p for pose in poses])
    axis = found_or_refused(unit_axis(store, unit_index, 0))
    return matrix_to_pose(product(taught, rot_z_deg(-poses[0].ext[axis.ext])))


def further_axis(store, unit_index, n, poses, reference):
    """Degrees of axis n turn the reference frame as radians; the second axis, whatever n, is turned back."""
    axis = unit_axis(store, unit_index, n - 1)
    if axis is not None and axis.type == LINEAR:
        raise Refused(POSE_REFUSED)
    if n < 1:
        raise Refused(CALIB_INPUT)
    taught = axis_frame([pose.p for pose in poses])
    theta_n = poses[0].ext[found_or_refused(axis).ext]
    turned = product(rot_z(theta_n) + (0.0, 0.0, 0.0), pose_to_matrix(reference))
    seen = product(inverse(turned), taught)
    second = found_or_refused(unit_axis(store, unit_index, 1))
    return matrix_to_pose(product(seen, rot_z_deg(-poses[0].ext[second.ext])))


def found_or_refused(axis):
    if axis is None:
        raise Refused(TOOL_REFUSED)
    return axis


def base_on_track(store, unit_index, poses):
    """Returns (frame, report): the turn about Z that carries what the robot sees onto the track's X axis."""
    axis = unit_axis(store, unit_index, 0)
    if axis is not None and axis.type != LINEAR:
        raise Refused(POSE_REFUSED)
    if axis is None:
        raise Refused(TOOL_REFUSED)
    k = axis.ext
    p = [pose.p for pose in poses]
    for i, j in ((0, 1), (0, 2), (1, 2)):
        if is_closer(p[i], p[j], SHORTEST):
            raise Refused(CALIB_POINTS_CLOSE)
    moves = [poses[i].ext[k] - poses[0].ext[k] for i in (1, 2)]
    if abs(moves[0]) < SHORTEST_MOVE and abs(moves[1]) < SHORTEST_MOVE:
        raise Refused(CALIB_INPUT)
    back = [subtract(p[0][:2], p[i][:2]) for i in (1, 2)]
    total = sum_of_two([a[0] * a[0] + a[1] * a[1] for a in back])
    if abs(total * total) <= SINGULAR_TRACK:
        raise Refused(CALIB_INPUT)
    u = div(sum_of_two([d * a[0] for d, a in zip(moves, back)]), total)
    v = div(-sum_of_two([d * a[1] for d, a in zip(moves, back)]), total)
    turn = (u, -v, 0.0, v, u, 0.0, 0.0, 0.0, 1.0)
    report = report_of([add(rotate(turn, pose.p), (pose.ext[k], 0.0, 0.0)) for pose in poses])
    return [0.0, 0.0, 0.0] + list(rotation_to_euler(turn)), report


def sum_of_two(terms):
    return terms[0] + terms[1]
