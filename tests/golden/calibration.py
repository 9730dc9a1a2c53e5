"""Calibrations from taught poses: tools, work objects, positioners, the robot on a track.

Least squares by orthogonal triangles, centres of circles by the formula of the circumcentre, axes by taking
off what lies along the other one: not the steps that a library takes, which are those of
calibration_direct.py.
Lengths in mm; poses come in degrees.
"""
from mpmath import mp, mpf

from arms import FOUR_ARM_TYPES
from frames import apply, euler, from_pose, inverse, multiply, rot_z, rows, to_pose
from numbers_out import deg, rad


class Refused(Exception):
    def __init__(self, code):
        super().__init__("0x%04X" % code)
        self.code = code


class UnitSetup:
    """A mechanical unit in a slot of the store, the index asked for, and which external axes are linear."""

    def __init__(self, asked, count, slot, kind, axes, params, frames=None, linear=(0,) * 6):
        self.asked, self.count, self.slot, self.kind, self.axes = asked, count, slot, kind, axes
        self.params, self.linear = list(params) + [0] * (6 - len(params)), list(linear)
        self.frames = frames or [[0.0] * 6, [0.0] * 6]

    # The index behind the last one counts as known.
    def found(self, axis):
        known = 0 <= self.asked <= self.count and self.asked == self.slot
        return known and 0 <= axis < self.axes

    def is_linear(self, axis, when_unknown):
        return self.linear[self.params[axis]] == 1 if self.found(axis) else when_unknown

    def param_of(self, axis):
        if not self.found(axis):
            raise Refused(0x6011)
        return self.params[axis]

    # Whether a pose in the world can be seen from the last axis.
    def carries(self):
        if not self.found(0) or self.kind not in (1, 2, 3) or (self.kind == 3 and self.axes < 2):
            return False
        return self.kind == 1 or all(any(f[:3]) for f in self.frames[:self.kind - 1])


class Case:
    """One call: taught poses (X Y Z A B C, six external axes), what else it takes and what else it writes."""

    def __init__(self, export, name, poses, arm=6, given=None, unit=None, axis=None):
        self.export, self.name, self.arm = export, name, arm
        self.given, self.unit, self.axis = given, unit, axis
        self.poses = [list(p) + [0.0] * (12 - len(p)) for p in poses]
        self.report = self.tilt = None

    def check_poses(self):
        if any(abs(v) > 180 for pose in self.poses for v in pose[3:6]):
            raise Refused(0x6010)


# --- vectors ------------------------------------------------------------------------------------

def minus(u, v):
    return [a - b for a, b in zip(u, v)]


def dot(u, v):
    return mp.fsum(a * b for a, b in zip(u, v))


def length(v):
    return mp.sqrt(dot(v, v))


def unit(v):
    return [c / length(v) for c in v]


def cross(u, v):
    return [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]]


# What is left of v without its part along the unit vector u.
def across(v, u):
    along = dot(v, u)
    return [a - along * b for a, b in zip(v, u)]


def columns(x, y, z, origin=(0, 0, 0)):
    return rows([[x[i], y[i], z[i]] for i in range(3)], origin)


def matrix(frame):
    return from_pose([mpf(v) for v in frame[:3]] + [rad(v) for v in frame[3:6]])


def points_of(case):
    return [[mpf(v) for v in p[:3]] for p in case.poses]


def require_apart(points, limit):
    if min(length(minus(p, q)) for i, p in enumerate(points) for q in points[i + 1:]) < mpf(limit):
        raise Refused(0x6065)


# Refuses points that lie together, and, seen from the first, on one line.
def require_triangle(points, limit):
    require_apart(points, limit)
    first, second, third = points
    if abs(dot(unit(minus(second, first)), unit(minus(third, first)))) > mpf("0.99999"):
        raise Refused(0x6066)


# --- tool centre points -------------------------------------------------------------------------

def least_squares(system, right, limit, code):
    """System = Q * R; the determinant of the normal equations is the product of R's squared diagonal."""
    n = len(system[0])
    # Equal orientations, or a track that only lifts the robot, leave nothing to triangulate.
    if not any(v for row in system for v in row):
        raise Refused(code)
    q, r = mp.qr(mp.matrix(system), mode="skinny")
    if mp.fprod(r[i, i] ** 2 for i in range(n)) <= mpf(limit):
        raise Refused(code)
    return list(mp.lu_solve(r, q.T * mp.matrix(right)))


def touching_tip(poses, size, limit, code):
    system, right = [], []
    for pose in poses[1:]:
        for i in range(size):
            system.append([poses[0][i][j] - pose[i][j] for j in range(size)])
            right.append(pose[i][3] - poses[0][i][3])
    return (least_squares(system, right, limit, code) + [mpf(0)])[:3]


def spread_of(points):
    found = [length(minus(p, q)) for i, p in enumerate(points) for q in points[i + 1:]]
    return [max(found), mp.fsum(found) / len(found), min(found + [mpf(10000)])]


def tip_of_three(case):
    if case.arm not in FOUR_ARM_TYPES + (6,):
        raise Refused(0x6001)
    poses = [matrix(p) for p in case.poses[:3]]
    size = 3 if case.arm == 6 else 2
    require_triangle([[p[i][3] for i in range(size)] for p in poses], "1e-5")
    tip = touching_tip(poses, size, *((mpf("0.01"), 0x6064) if size == 3 else (mpf("1e-10"), 0x6060)))
    case.report = spread_of([apply(p, tip) for p in poses])
    return tip


def last_three(case):
    """Origin, Z and X pose. A four-axis arm cannot tilt: its Z pose is the origin raised by 10 mm."""
    origin, along_z, along_x = [matrix(p) for p in case.poses[-3:]]
    if case.arm in FOUR_ARM_TYPES:
        along_z = [list(row) for row in origin]
        along_z[2][3] += 10
    return origin, along_z, along_x


def frame_zx(origin, on_z, on_x):
    a, b = minus(on_z, origin), minus(on_x, origin)
    if length(a) < mpf("0.01") or length(b) < mpf("0.01"):
        raise Refused(0x6070)
    z = unit(a)
    if length(across(unit(b), z)) < mpf("0.01"):
        raise Refused(0x6066)
    x = unit(across(b, z))
    return to_pose(columns(x, cross(z, x), z, origin))


def ext_tool_zx(case):
    return frame_zx(*[[p[i][3] for i in range(3)] for p in last_three(case)])


def ext_tool_three(case):
    tip = tip_of_three(case)
    return apply(matrix(case.poses[0]), tip) + [mpf(0)] * 3


def ext_tool_three_zx(case):
    tip = tip_of_three(case)
    return frame_zx(*[apply(p, tip) for p in last_three(case)])


def grip_tool_three_zx(case):
    tip = tip_of_three(case)
    poses = last_three(case)
    origin, on_z, on_x = [apply(p, tip) for p in poses]
    vz = minus(on_z, origin)
    if length(vz) < mpf("1e-5") or length(minus(on_x, on_z)) < mpf("1e-5"):
        raise Refused(0x6065)
    z = unit(vz)
    if length(across(unit(minus(on_x, on_z)), z)) < mpf("1e-5"):
        raise Refused(0x6066)
    # Seen from the origin instead of the Z pose: what lies along Z makes no difference.
    x = unit(across(minus(on_x, origin), z))
    back = inverse(poses[0])
    return tip + list(euler(columns(*[apply(rows([r[:3] for r in back]), v) for v in (x, cross(z, x), z)])))


def grip_tool_five(case):
    if case.arm != 6:
        raise Refused(0x6001)
    poses = [matrix(p) for p in case.poses]
    tip = touching_tip(poses, 3, mpf("1e-10"), 0x6060)
    case.report = spread_of([apply(p, tip) for p in poses])
    return tip + [mpf(0)] * 3


def grip_tool_two(case):
    if case.arm not in FOUR_ARM_TYPES:
        raise Refused(0x6001)
    poses = [matrix(p) for p in case.poses]
    if mp.hypot(poses[1][0][3] - poses[0][0][3], poses[1][1][3] - poses[0][1][3]) < mpf("1e-5"):
        raise Refused(0x6065)
    return touching_tip(poses, 2, mpf("1e-10"), 0x6060) + [mpf(0)] * 3


# --- work objects -------------------------------------------------------------------------------

def user_frame(case, points):
    origin, on_x, in_plane = points
    require_apart(points, "0.01")
    a, b = minus(on_x, origin), minus(in_plane, origin)
    x = unit(a)
    if length(across(unit(b), x)) < mpf("1e-5"):
        raise Refused(0x6066)
    y = unit(across(b, x))
    z = cross(x, y)
    case.tilt = [mp.atan2(mp.hypot(z[0], z[1]), z[2])]
    return to_pose(columns(x, y, z, origin))


def user_frame_of_two(case):
    """A horizontal Y axis: heading and pitch of the direction, and nothing about X."""
    origin, on_x = points_of(case)
    a = minus(on_x, origin)
    flat = mp.hypot(a[0], a[1])
    if length(a) < mpf("0.001") or flat / length(a) < mpf("1e-5"):
        raise Refused(0x6065)
    case.tilt = [mp.atan2(abs(a[2]), flat)]
    return to_pose(from_pose(origin + [mp.atan2(a[1], a[0]), -mp.atan2(a[2], flat), mpf(0)]))


def circle(points):
    """Frame in the centre of the circle through three points: X toward the first, Z normal."""
    a, b = minus(points[0], points[2]), minus(points[1], points[2])
    n = cross(a, b)
    shift = cross([dot(a, a) * q - dot(b, b) * p for p, q in zip(a, b)], n)
    centre = [p + s / (2 * dot(n, n)) for p, s in zip(points[2], shift)]
    x, z = unit(minus(points[0], centre)), unit(n)
    return columns(x, cross(z, x), z, centre)


def circle_frame(case):
    points = points_of(case)
    require_triangle(points, "1e-5")
    # Four times the squared area of the triangle.
    if length(cross(minus(points[0], points[2]), minus(points[1], points[2]))) ** 2 < mpf("1e-5"):
        raise Refused(0x6063)
    frame = circle(points)
    case.tilt = [mp.atan2(mp.hypot(frame[0][2], frame[1][2]), frame[2][2])]
    return to_pose(frame)


def object_frame(case):
    frame = user_frame(case, points_of(case))
    # By its angles: they are not exact where X is almost vertical.
    return to_pose(multiply(inverse(matrix(case.given)), from_pose(frame)))


def held_object_frame(case):
    back = inverse(matrix(case.given))
    return user_frame(case, [apply(back, q) for q in points_of(case)])


def unit_matrix(setup, ext):
    """The last axis of a unit. A linear one has the rotation of its second frame on its travel along X."""
    first, second = [matrix(f) for f in setup.frames]
    value = [mpf(ext[p]) for p in setup.params]
    if setup.kind == 2:
        return multiply(first, rot_z(rad(value[0])))
    if setup.kind == 3:
        return multiply(first, rot_z(rad(value[0])), second, rot_z(rad(value[1])))
    return multiply(first, rows([r[:3] for r in second], (value[0], 0, 0)))


def carried_object_frame(case):
    # A point that cannot be seen from the unit stays at zero.
    if not case.unit.carries():
        return user_frame(case, [[mpf(0)] * 3] * 3)
    backs = [inverse(unit_matrix(case.unit, pose[6:])) for pose in case.poses]
    return user_frame(case, [apply(back, p) for back, p in zip(backs, points_of(case))])


# --- positioners and the track ------------------------------------------------------------------

def axis_frame(case):
    points = points_of(case)
    require_triangle(points, "1e-5")
    first, second, third = points
    chord = minus(second, first)
    n = cross(chord, minus(third, first))
    # The centre is looked for in the XY plane. There is none when the axis lies in it, and no way along Y
    # when the bisector of the first two points runs along X.
    if n[2] == 0 or cross(n, chord)[1] == 0:
        return None
    return from_pose(to_pose(circle(points)))


def first_axis_frame(case):
    axis = axis_frame(case)
    value = case.poses[0][6 + case.unit.param_of(0)]
    return axis and to_pose(multiply(axis, rot_z(-rad(value))))


def further_axis_frame(case):
    if case.unit.is_linear(case.axis - 1, False):
        raise Refused(0x6010)
    if case.axis < 1:
        raise Refused(0x6061)
    axis = axis_frame(case)
    ext = case.poses[0][6:]
    # The value of axis n turns the reference as radians, that of the second axis as degrees.
    turned = multiply(rot_z(mpf(ext[case.unit.param_of(case.axis - 1)])), matrix(case.given))
    back = rot_z(-rad(ext[case.unit.param_of(1)]))
    return axis and to_pose(multiply(inverse(turned), axis, back))


def base_frame(case):
    if not case.unit.is_linear(0, True):
        raise Refused(0x6010)
    k = case.unit.param_of(0)
    points = points_of(case)
    require_apart(points, "1e-5")
    ext = [mpf(pose[6 + k]) for pose in case.poses]
    if max(abs(e - ext[0]) for e in ext) < mpf("0.1"):
        raise Refused(0x6061)
    system, right = [], []
    for p, e in zip(points[1:], ext[1:]):
        x, y = points[0][0] - p[0], points[0][1] - p[1]
        system += [[x, -y], [y, x]]
        right += [e - ext[0], mpf(0)]
    u, v = least_squares(system, right, mpf("1e-10"), 0x6061)
    turn = rows([[u, -v, 0], [v, u, 0], [0, 0, 1]])
    case.report = spread_of([[q + s for q, s in zip(apply(turn, p), (e, 0, 0))] for p, e in zip(points, ext)])
    return [mpf(0)] * 3 + list(euler(turn))


SOLVERS = {
    "Kine_CalcExtToolPrm_1P": lambda case: points_of(case)[0] + [mpf(0)] * 3,
    "Kine_CalcExtToolPrm_1PZX": ext_tool_zx,
    "Kine_CalcExtToolPrm_3P": ext_tool_three,
    "Kine_CalcExtToolPrm_3PZX": ext_tool_three_zx,
    "Kine_CalcGripToolPrm_3P": lambda case: tip_of_three(case) + [mpf(0)] * 3,
    "Kine_CalcGripToolPrm_3PZX": grip_tool_three_zx,
    "Kine_CalcGripToolPrm_5P": grip_tool_five,
    "Kine_CalcGripToolPrm_Scara2P": grip_tool_two,
    "Kine_CalcExtWobj_UserPrm_2P": user_frame_of_two,
    "Kine_CalcExtWobj_UserPrm_3P": lambda case: user_frame(case, points_of(case)),
    "Kine_CalcGripWobj_UserPrm_3P": lambda case: user_frame(case, points_of(case)),
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
    return frame and frame[:3] + [deg(v) for v in frame[3:]]
