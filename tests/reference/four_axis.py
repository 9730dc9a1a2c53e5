"""The four-axis arms (arm types 4 and 4110): lengths in mm, angles in radians.

Axis 3 is the rotation of the screw. Headings are about the vertical; of a tool only x, y, z and the
rotation about Z take part.
"""

import math

from geometry import add, rot_product, rot_x, rot_y, rot_z, rotate, safe_acos
from ieee import HALF_PI, PI, TWO_PI, cos, div, remainder4, sin, sqrt, trunc, trunc_to_int32
from margins import MARGINS
from records import (CONFIG, DEG2RAD, IK_REACH, IK_SINGULAR, MODEL_PARAM, OK, SINGULAR, Refused)

AXES = 4
QUADRANT_BIAS = 5.555555556e-6
MAX_TURN_NUMBER = 1_000_000
MIN_ELBOW = 0.0005
MAX_ROUNDS = 4_000_000


class FourAxisArm:
    """Arm type 4."""

    axes = AXES
    window_bias = 1e-5

    def __init__(self):
        self.upper = [0.0] * AXES
        self.lower = [0.0] * AXES

    def initialise(self, values):
        """Read the caller's 12 doubles; elements 4 to 7 have no meaning for these arms."""
        self.upper = [0.0] * AXES
        self.lower = [0.0] * AXES
        self.link1, self.link2, self.height, self.lead = values[:4]
        if self.lead < 1e-5 or self.link1 < 1e-5 or self.link2 < 1e-5:
            return MODEL_PARAM
        tilt_x1, tilt_x2, tilt_y1, tilt_y2 = (v * DEG2RAD for v in values[8:12])
        self.tilt1 = rot_product(rot_x(tilt_x1), rot_y(tilt_y1))
        self.tilt2 = rot_product(rot_x(tilt_x2), rot_y(tilt_y2))
        return OK

    # Forward kinematics

    def forward(self, joints, block):
        return self.tool_point(joints, block.frame)

    def tool_point(self, q, tool):
        """Position and heading of the tool point; b and c are always 0."""
        forearm, position = self.flange(q)
        r = rot_product(forearm, rot_z(q[3]))
        x, y, z = add(position, rotate(r, tool[:3]))
        heading = rot_product(r, rot_z(tool[3]))
        return [x, y, z, heading_of(heading), 0.0, 0.0]

    def flange(self, q):
        """Forearm rotation and flange position; the first link itself is not tilted."""
        r1 = rot_product(rot_z(q[0]), self.tilt1)
        r12 = rot_product(r1, rot_z(q[1]), self.tilt2)
        extension = self.lead * q[2] / TWO_PI + self.height
        position = add((self.link1 * cos(q[0]), self.link1 * sin(q[0]), 0.0),
                       rotate(r1, (self.link2 * cos(q[1]), self.link2 * sin(q[1]), 0.0)))
        return r12, add(position, rotate(r12, (0.0, 0.0, extension)))

    def flange_pose(self, joints):
        """In the plane, with the heading of the forearm: z is 0 and axis 4 is left out."""
        forearm, position = self.flange(joints)
        return [position[0], position[1], 0.0, heading_of(forearm), 0.0, 0.0]

    # Posture, limits, singularity

    def config(self, joints):
        return [1 if joints[1] > 0.0 else -1, 0, 0, quadrant(joints[3])]

    def set_limits(self, upper, lower):
        self.upper, self.lower = list(upper[:AXES]), list(lower[:AXES])

    def limits(self):
        return list(self.upper), list(self.lower)

    def is_singular(self, joints, kind):
        threshold = {0: 0.0192, 1: 0.0192, 2: 0.0524}.get(kind)
        if threshold is None:
            return 0
        MARGINS.near_integer("half turns of axis 2", joints[1] / PI)
        rest = abs(joints[1] - trunc(joints[1] / PI) * PI)
        MARGINS.near("singularity threshold", rest, threshold, 1e-9)
        return 1 if rest < threshold else 0

    # Inverse kinematics

    def turn_numbers(self, cfg):
        return cfg[3:4]

    def inverse(self, pose, block, cfg):
        if any(abs(n) > MAX_TURN_NUMBER for n in self.turn_numbers(cfg)):
            raise Refused(CONFIG)
        tool = block.frame
        q = self.refine(self.seed(pose, tool, cfg), pose, tool)
        q = self.select_turns(q, cfg)
        if not all(math.isfinite(v) for v in q):
            raise Refused(IK_REACH)
        return q + [0.0] * 4

    def planar_seed(self, pose, tool, cfg):
        """th1, th2, axis 3 and the raw axis 4 of the arm without tilts."""
        if cfg[0] not in (1, -1):
            raise Refused(CONFIG)
        heading = pose[3] - tool[3]
        px = pose[0] - cos(heading) * tool[0] + sin(heading) * tool[1]
        py = pose[1] - sin(heading) * tool[0] - cos(heading) * tool[1]
        k = div(px * px + py * py - self.link1 * self.link1 - self.link2 * self.link2,
                2.0 * self.link1 * self.link2)
        MARGINS.near("reach", abs(k), 1.00001, 1e-9)
        MARGINS.near("stretched", abs(k), 1.0, 1e-9)
        if not abs(k) < 1.00001:
            raise Refused(IK_REACH)
        if abs(k) < 1.0:
            th2 = cfg[0] * safe_acos(k)
            m = self.link1 + self.link2 * k
            n = self.link2 * math.copysign(sqrt(1.0 - k * k), th2)
            th1 = math.atan2(m * py - n * px, m * px + n * py)
        else:
            th2 = 0.0
            th1 = math.atan2(py, px)
        MARGINS.near("axis 1 half turn", abs(th1), PI, 1e-9)
        screw = div(TWO_PI * (pose[2] - self.height - tool[2]), self.lead)
        return th1, th2, screw, heading - th1 - th2

    def seed(self, pose, tool, cfg):
        th1, th2, screw, raw4 = self.planar_seed(pose, tool, cfg)
        MARGINS.near("elbow stretched", abs(th2), MIN_ELBOW, 1e-10)
        if abs(th2) < MIN_ELBOW:
            raise Refused(IK_SINGULAR)
        return [th1, th2, screw, shifted(raw4, cfg[3])]

    def refine(self, q, pose, tool):
        """At most five Newton steps; the heading error is the raw difference, never wrapped."""
        error, total = self.target_error(q, pose, tool)
        for _ in range(5):
            MARGINS.near("Newton stop", total, 1e-12, 1e-16)
            if total < 1e-12:
                break
            jacobian = self.jacobian(q, tool)
            if not all(math.isfinite(v) for row in jacobian for v in row):
                MARGINS.flag("non-finite Jacobian")
            inverted = inverse_by_cofactors(jacobian)
            change = [sum(inverted[i][j] * error[j] for j in range(4)) for i in range(4)]
            q = [a + b for a, b in zip(q, change)]
            # The screw angle grows with the height over a small lead, so its noise is its own.
            size = abs(self.link1) + abs(self.link2) + sum(abs(v) for v in tool[:3]) + 1.0
            amplified = max(sum(abs(v) for v in row[:3]) * 1e-15 * size + abs(row[3]) * 1e-15
                            for row in (inverted[0], inverted[1], inverted[3]))
            if not amplified < 2e-12:
                MARGINS.flag("ill-conditioned Jacobian")
            error, total = self.target_error(q, pose, tool)
        if not total < 1e-10:
            MARGINS.flag("Newton not converged")
        return q

    def target_error(self, q, pose, tool):
        reached = self.tool_point(q, tool)
        for heading in (pose[3], reached[3]):
            MARGINS.near("heading at half a turn", abs(heading), PI, 1e-9)
        error = [a - b for a, b in zip(pose[:4], reached[:4])]
        return error, sum(v * v for v in error)

    def select_turns(self, q, cfg):
        q[3] = window(shifted(q[3], cfg[3]), cfg[3], self.window_bias)
        return q

    def jacobian(self, q, tool):
        """Derivatives of x, y, z and heading by the product rule.

        Turning axis 1 does not lift the tool point and the screw does not turn it: both are exact zeros.
        """
        turn1, turn2, turn4 = rot_z(q[0]), rot_z(q[1]), rot_z(q[3])
        spin1, spin2, spin4 = rot_z_slope(q[0]), rot_z_slope(q[1]), rot_z_slope(q[3])
        c1, s1, c2, s2 = cos(q[0]), sin(q[0]), cos(q[1]), sin(q[1])
        r1 = rot_product(turn1, self.tilt1)
        r1_by_1 = rot_product(spin1, self.tilt1)
        r2 = rot_product(turn2, self.tilt2)
        r2_by_2 = rot_product(spin2, self.tilt2)
        r12 = rot_product(r1, r2)
        r12_by = (rot_product(r1_by_1, r2), rot_product(r1, r2_by_2))
        lift = (0.0, 0.0, self.lead * q[2] / TWO_PI + self.height)
        forearm = (self.link2 * c2, self.link2 * s2, 0.0)

        flange_by = (
            add(add((-self.link1 * s1, self.link1 * c1, 0.0), rotate(r1_by_1, forearm)),
                rotate(r12_by[0], lift)),
            add(rotate(r1, (-self.link2 * s2, self.link2 * c2, 0.0)), rotate(r12_by[1], lift)),
            rotate(r12, (0.0, 0.0, self.lead / TWO_PI)),
            (0.0, 0.0, 0.0))
        r_by = (rot_product(r12_by[0], turn4), rot_product(r12_by[1], turn4), (0.0,) * 9,
                rot_product(r12, spin4))
        heading = rot_product(r12, turn4, rot_z(tool[3]))
        norm = heading[0] * heading[0] + heading[3] * heading[3]

        columns = []
        for i in range(4):
            x, y, z = flange_by[i] if i == 2 else add(flange_by[i], rotate(r_by[i], tool[:3]))
            slope = rot_product(r_by[i], rot_z(tool[3]))
            a = div(heading[0] * slope[3] - heading[3] * slope[0], norm)
            columns.append([x, y, z, a])
        columns[0][2] = 0.0
        columns[2][3] = 0.0
        return [[column[row] for column in columns] for row in range(4)]


class FourAxis4110Arm(FourAxisArm):
    """Arm type 4110: axis 2 is the elbow angle less half a turn, and axes 1, 2 and 4 have turns."""

    window_bias = 5.555555556e-6

    def forward(self, joints, block):
        """Adds half a turn to axis 2 of the joints it is given."""
        joints[1] += PI
        return self.tool_point(joints, block.frame)

    def config(self, joints):
        """Wraps axis 2 of the joints it is given."""
        cfg2, cfg3 = quadrant(joints[0]), quadrant(joints[1])
        turns = joints[1] / PI * 0.5
        turns = turns + 0.5 if joints[1] > 0.0 else turns - 0.5
        MARGINS.near_integer("wrap of axis 2", turns)
        joints[1] -= TWO_PI * trunc(turns)
        MARGINS.near("sign of axis 2", joints[1], 0.0, 1e-12)
        return [1 if joints[1] < 0.0 else -1, cfg2, cfg3, quadrant(joints[3])]

    def turn_numbers(self, cfg):
        return cfg[1:4]

    def seed(self, pose, tool, cfg):
        th1, th2, screw, raw4 = self.planar_seed(pose, tool, cfg)
        bend = abs(th2 - remainder4(cfg[2]) * HALF_PI)
        MARGINS.near("elbow stretched", bend, MIN_ELBOW, 1e-10)
        if bend < MIN_ELBOW:
            raise Refused(IK_SINGULAR)
        return [shifted(th1, cfg[1]), shifted(th2, cfg[2]), screw, shifted(raw4, cfg[3])]

    def select_turns(self, q, cfg):
        bias = self.window_bias
        q4 = window(shifted(q[3], cfg[3]), cfg[3], bias)
        q1 = window(shifted(q[0], cfg[1]), cfg[1], bias)
        turn = cfg[2] * PI
        q2 = ((2.0 * turn + q[1]) - PI) - remainder4(cfg[2]) * HALF_PI + turn * 0.5
        return [q1, window(q2, cfg[2], bias), q[2], q4]


def heading_of(r):
    a = math.atan2(r[3], r[0])
    if abs(a) > PI - 1e-9:
        MARGINS.cut = True
    return a


def rot_z_slope(angle):
    """Derivative of rot_z by its angle."""
    c, s = cos(angle), sin(angle)
    return (-s, -c, 0.0, c, -s, 0.0, 0.0, 0.0, 0.0)


def quadrant(x):
    """Quarter-turn number with the bias in both branches."""
    t = 2.0 * x / PI
    if not x > 0.0:
        t -= 1.0
    MARGINS.near_integer("quadrant", t + QUADRANT_BIAS)
    return trunc_to_int32(t + QUADRANT_BIAS)


def shifted(x, n):
    return x - remainder4(n) * HALF_PI + n * HALF_PI


def window(x, n, bias):
    """Whole turns until the quadrant is within two of n; the bias is only in the branch of x <= 0."""
    rounds = 0
    while True:
        if not math.isfinite(x):
            raise Refused(IK_REACH)
        t = 2.0 * x / PI
        if not x > 0.0:
            t = t - 1.0 + bias
        MARGINS.near_integer("quadrant", t)
        k = trunc_to_int32(t) - n
        if k > 2:
            moved = x - TWO_PI
        elif k < -2:
            moved = x + TWO_PI
        else:
            return x
        rounds += 1
        if rounds > 10_000:
            MARGINS.flag("long turn loop")
        if moved == x or rounds > MAX_ROUNDS:
            raise Refused(IK_REACH)
        x = moved


def inverse_by_cofactors(m):
    determinant = laplace(m)
    MARGINS.near("determinant", abs(determinant), 1e-5, 1e-10)
    if not abs(determinant) >= 1e-5:
        raise Refused(SINGULAR)
    return [[div(minor(m, column, row), determinant) for column in range(4)] for row in range(4)]


def minor(m, row, column):
    """Cofactor of one element."""
    rest = [[v for j, v in enumerate(line) if j != column] for i, line in enumerate(m) if i != row]
    return laplace(rest) if (row + column) % 2 == 0 else -laplace(rest)


def laplace(m):
    if len(m) == 1:
        return m[0][0]
    return sum(m[0][j] * minor(m, 0, j) for j in range(len(m)))
