"""The six-axis arm (arm type 6): lengths in mm, angles in radians.

Two geometries live side by side: the nominal arm (a1, a2, a3, d4, d6, d1, lateral) that the closed form
and the payload torques use, and the full link chain with measured twists and offsets.
"""

import math
from types import SimpleNamespace

from geometry import (IDENTITY, cross, dot, euler_to_rotation, inverse, matrix6_inverse, matrix_to_pose,
                      pose_to_matrix, product, rot_product, rot_y, rot_z, rotate, safe_acos, safe_asin,
                      subtract, transposed)
from ieee import HALF_PI, PI, TWO_PI, cos, div, remainder4, sin, sqrt, trunc_to_int32
from margins import MARGINS
from records import (CONFIG, DEG2RAD, IK_ACCURACY, IK_ELBOW, IK_FIRST_STEP, IK_SHOULDER, IK_WRIST,
                     MODEL_PARAM, OK, SINGULAR, Refused)

AXES = 6
QUADRANT_BIAS = 5.555555556e-6
MAX_TURN_NUMBER = 1_000_000
MAX_DEFLECTION = 0.03490658503988659
MAX_FIRST_STEP = 2.9670597283903604
MAX_LAST_STEP = 0.003490658503988659
NOMINAL_TWISTS = (HALF_PI, 0.0, HALF_PI, -HALF_PI, HALF_PI)
DIFFERENCE_STEP = 2e-5
MAX_ROUNDS = 4_000_000


class SixAxisArm:
    axes = AXES

    def __init__(self):
        self.upper = [0.0] * AXES
        self.lower = [0.0] * AXES

    def initialise(self, values):
        """Read the caller's 34 doubles; the length checks let NaN pass."""
        self.upper = [0.0] * AXES
        self.lower = [0.0] * AXES
        self.a1, self.a2, self.a3, self.d4, self.d6, self.d1, self.lateral = values[:7]
        if (self.a1 < -1e-5 or self.a2 < 1e-5 or self.a3 < -1e-5 or self.d4 < 1e-5 or self.d6 < -1e-5):
            return MODEL_PARAM
        self.wrist_reach = sqrt(self.a3 * self.a3 + self.d4 * self.d4)
        self.elbow_angle = safe_asin(div(self.a3, self.wrist_reach))
        self.twists = [v * DEG2RAD for v in values[8:13]]
        self.beta2 = values[13] * DEG2RAD
        self.d3, self.d5, self.a4, self.a5 = values[14:18]
        mount_x, mount_y = values[18] * DEG2RAD, values[19] * DEG2RAD
        self.gravity = (cos(mount_x) * sin(mount_y), -sin(mount_x), -cos(mount_x) * cos(mount_y))
        self.link_weights = [g * cos(mount_x) for g in values[24:31]]
        self.compliances = [div(1.0, k * 1000.0) for k in values[31:34]]
        return OK

    # Forward kinematics

    def forward(self, joints, block):
        """Pose of the flange frame of the tool block in the base."""
        flange = self.flange_transform(joints, block, self.deflection_accepted(joints, block))
        return matrix_to_pose(product(flange, pose_to_matrix(block.frame)))

    def flange_pose(self, joints):
        """The frame of joint 5: joint 6 and d6 are left out."""
        empty = SimpleNamespace(frame=[0.0] * 6, mass=0.0, cog=[0.0] * 3)
        q = self.deflected(joints, empty, self.deflection_accepted(joints, empty))
        return matrix_to_pose(self.wrist_transform(q))

    def flange_transform(self, joints, block, with_deflection):
        q = self.deflected(joints, block, with_deflection)
        return product(self.wrist_transform(q), rot_z(q[5]) + (0.0, 0.0, self.d6))

    def wrist_transform(self, q):
        angles = (q[0], q[1] + HALF_PI, q[2], q[3], q[4])
        offsets = (0.0, 0.0, self.d3, self.d4, self.d5)
        lengths = (self.a1, self.a2, self.a3, self.a4, self.a5)
        links = [link(*row) for row in zip(angles, offsets, lengths, self.twists)]
        links[1] = product(links[1], rot_y(self.beta2) + (0.0, 0.0, 0.0))
        m = product(*links)
        return m[:11] + (m[11] + self.d1,)

    # Gravity deflection

    def deflected(self, joints, block, accepted):
        if not accepted:
            return joints
        sag = self.raw_deflection(joints, block)
        return [joints[0], joints[1] + sag[0], joints[2] + sag[1], joints[3], joints[4] + sag[2], joints[5]]

    def deflection_accepted(self, joints, block):
        """Two degrees or more, infinity and NaN switch the whole correction off."""
        sag = self.raw_deflection(joints, block)
        for v in sag:
            MARGINS.near("two-degree test", abs(v), MAX_DEFLECTION, 1e-9)
        return all(abs(v) < MAX_DEFLECTION for v in sag)

    def raw_deflection(self, joints, block):
        """Sag of joints 2, 3 and 5 under the arm's own weight and the payload."""
        p2, p3, p5 = self.payload_torques(joints, block)
        t2, t3, t5 = self.link_torques(joints)
        c2, c3, c5 = self.compliances
        return (p2 - t2) * c2, (p3 - t3) * c3, (p5 + t5) * c5

    def link_torques(self, joints):
        g = self.link_weights
        upper_arm = joints[1] + HALF_PI
        forearm = upper_arm + joints[2]
        s_arm, c_arm = sin(forearm), cos(forearm)
        c4, s5, c5 = cos(joints[3]), sin(joints[4]), cos(joints[4])
        w = c4 * c_arm * s5 + c5 * s_arm
        t3 = c_arm * g[2] + s_arm * g[3] + w * g[4]
        t2 = sin(upper_arm) * g[1] + cos(upper_arm) * g[0] + t3
        t5 = -(c4 * s_arm * c5 + s5 * c_arm) * g[5]
        return t2, t3, t5

    def payload_torques(self, joints, block):
        """Moment of the payload's weight about the axes of joints 2, 3 and 5 of the nominal chain.

        The height d1 of the whole chain carries no moment and is left out, infinite or not.
        """
        force = [block.mass * 9.8 * v for v in self.gravity]
        angles = (joints[0], joints[1] + HALF_PI, joints[2], joints[3], joints[4])
        offsets = (0.0, 0.0, 0.0, self.d4, 0.0)
        lengths = (self.a1, self.a2, self.a3, 0.0, 0.0)
        frames = [IDENTITY + (0.0, 0.0, 0.0)]
        for row in zip(angles, offsets, lengths, NOMINAL_TWISTS):
            frames.append(product(frames[-1], link(*row)))
        flange = product(frames[5], rot_z(joints[5]) + (0.0, 0.0, self.d6))
        centre = product(flange, IDENTITY + tuple(1000.0 * v for v in block.cog))[9:]
        torques = []
        for frame in (frames[1], frames[2], frames[4]):
            axis = (frame[2], frame[5], frame[8])
            torques.append(dot(cross(axis, subtract(centre, frame[9:])), force))
        return torques

    # Posture, limits, singularity

    def config(self, joints):
        rho = self.shoulder_distance(joints)
        elbow_limit = HALF_PI - self.elbow_angle
        MARGINS.near("shoulder side", rho, 0.0, 1e-9 * self.size())
        MARGINS.near("elbow side", joints[2], elbow_limit, 1e-9)
        posture = ((4 if rho < 0.0 else 0) + (2 if joints[2] >= elbow_limit else 0)
                   + (0 if joints[4] >= 0.0 else 1))
        return [quadrant(joints[0]), quadrant(joints[3]), quadrant(joints[5]), posture]

    def shoulder_distance(self, joints):
        """Signed horizontal distance of the wrist centre from the axis of joint 1."""
        q23 = joints[1] + joints[2]
        return self.a1 - self.a2 * sin(joints[1]) + self.d4 * cos(q23) - self.a3 * sin(q23)

    def size(self):
        return abs(self.a1) + abs(self.a2) + abs(self.a3) + abs(self.d4) + abs(self.d6) + 1.0

    def is_singular(self, joints, kind):
        """Bit 0 shoulder, bit 1 elbow, bit 2 wrist."""
        thresholds = {0: (20.0, 0.05, 0.05), 1: (20.0, 0.05, 0.05), 2: (30.0, 0.087266, 0.087266)}
        shoulder, elbow, wrist = thresholds.get(kind, (0.0, 0.0, 0.0))
        values = (abs(self.shoulder_distance(joints)),
                  abs(div(self.d4 * cos(joints[2]) - self.a3 * sin(joints[2]), self.wrist_reach)),
                  abs(sin(joints[4])))
        bits = 0
        for bit, (value, threshold) in enumerate(zip(values, (shoulder, elbow, wrist))):
            MARGINS.near("singularity threshold", value, threshold, 1e-9 * max(1.0, threshold))
            if value < threshold:
                bits |= 1 << bit
        return bits

    def set_limits(self, upper, lower):
        self.upper, self.lower = list(upper[:AXES]), list(lower[:AXES])

    def limits(self):
        return list(self.upper), list(self.lower)

    # Inverse kinematics

    def inverse(self, pose, block, cfg):
        if any(abs(n) > MAX_TURN_NUMBER for n in cfg[:3]):
            raise Refused(CONFIG)
        flange = matrix_to_pose(product(pose_to_matrix(pose), inverse(pose_to_matrix(block.frame))))
        q = self.closed_form(flange, cfg)
        q = self.newton(q, flange, block)
        q[3] = turn_after_steps(q[3], cfg[1])
        q[5] = turn_after_steps(q[5], cfg[2])
        return q + [0.0, 0.0]

    def closed_form(self, flange, cfg):
        """One of eight postures of the nominal arm; the tests fail on NaN."""
        posture = cfg[3]
        r = euler_to_rotation(*flange[3:])
        wx, wy, wz = (flange[i] - self.d6 * r[3 * i + 2] for i in range(3))
        h = wz - self.d1

        radius = sqrt(wx * wx + wy * wy)
        MARGINS.near("shoulder margin", radius - abs(self.lateral), 1e-5, 1e-10 * self.size())
        if not radius - abs(self.lateral) >= 1e-5:
            raise Refused(IK_SHOULDER)
        if not 0 <= posture <= 7:
            raise Refused(CONFIG)
        delta = safe_asin(div(self.lateral, radius))
        phi = math.atan2(wy, wx)
        q1 = phi + delta if posture < 4 else phi - delta
        MARGINS.near("joint 1 wrap", abs(q1), PI, 1e-9)
        if q1 > PI:
            q1 -= TWO_PI
        elif q1 < -PI:
            q1 += TWO_PI
        if posture >= 4:
            MARGINS.near("joint 1 half turn", q1, 0.0, 1e-9)
            q1 = q1 - PI if q1 >= 0.0 else q1 + PI
        q1 = turn_once(q1, cfg[0])

        s1, c1 = sin(q1), cos(q1)
        u = wx - self.lateral * s1 - self.a1 * c1
        v = self.lateral * c1 + wy - self.a1 * s1
        c = div(self.wrist_reach * self.wrist_reach + self.a2 * self.a2 - u * u - v * v - h * h,
                2.0 * self.a2 * self.wrist_reach)
        MARGINS.near("elbow reach", abs(c), 0.99999, 1e-9)
        if not abs(c) <= 0.99999:
            raise Refused(IK_ELBOW)
        bend = PI - safe_acos(c)
        q3 = HALF_PI - self.elbow_angle + (bend if posture & 2 else -bend)

        e = q3 + self.elbow_angle
        rho = s1 * wy + c1 * wx - self.a1
        m = sin(e) * self.wrist_reach + self.a2
        q2 = -math.atan2(m * rho - cos(e) * self.wrist_reach * h, cos(e) * self.wrist_reach * rho + m * h)
        MARGINS.near("joint 2 half turn", abs(q2), PI, 1e-9)

        s23, c23 = sin(q2 + q3), cos(q2 + q3)
        g = r[5] * s1 + r[2] * c1
        c5 = s23 * r[8] + c23 * g
        MARGINS.near("wrist range", abs(c5), 1.00001, 1e-9)
        if not abs(c5) <= 1.00001:
            raise Refused(IK_WRIST)
        MARGINS.near("wrist range", abs(c5), 0.99999, 1e-9)
        if abs(c5) > 0.99999:
            c5 = 1.0
        q5 = safe_acos(c5)
        if posture & 1:
            q5 = -q5
        if not abs(q5) >= 0.0005:
            raise Refused(IK_WRIST)

        y = r[2] * s1 - r[5] * c1
        x = c23 * r[8] - g * s23
        if sin(q5) <= 0.0:
            x, y = -x, -y
        q4 = math.atan2(y, x)
        MARGINS.near("joint 4 half turn", abs(q4), PI, 1e-9)
        q4 = turn_once(q4, cfg[1])

        s4, c4, s5, cos5 = sin(q4), cos(q4), sin(q5), cos(q5)
        a = r[1] * s1 - r[4] * c1
        b = r[0] * s1 - r[3] * c1
        y = b * c4 - a * s4 * cos5
        x = a * c4 + b * s4 * cos5
        MARGINS.near("joint 6 fallback", max(abs(x), abs(y)), 1e-5, 1e-12)
        if abs(x) < 1e-5 and abs(y) < 1e-5:
            uu = c4 * cos5 * c1 * s23 - cos5 * s1 * s4 + s5 * c1 * c23
            vv = s4 * c1 * s23 + c4 * s1
            x = r[1] * vv - uu * r[0]
            y = r[1] * uu + vv * r[0]
        q6 = math.atan2(y, x)
        MARGINS.near("joint 6 half turn", abs(q6), PI, 1e-9)
        q6 = turn_once(q6, cfg[2])
        return [q1, q2, q3, q4, q5, q6]

    def newton(self, q, flange, block):
        """Exactly four steps on the full model."""
        target_rotation = euler_to_rotation(*flange[3:])
        for step in range(4):
            accepted = self.deflection_accepted(q, block)
            current = self.flange_transform(q, block, accepted)
            jacobian = self.jacobian(q, block, accepted, current)
            error = flange_error(current, target_rotation, flange[:3])
            if not all(math.isfinite(v) for row in jacobian for v in row):
                MARGINS.flag("non-finite Jacobian")
            determinant, inverted = matrix6_inverse(jacobian)
            if determinant == 0.0:
                raise Refused(SINGULAR)
            change = [sum(inverted[i][j] * error[j] for j in range(6)) for i in range(6)]
            largest = max(abs(v) for v in change)
            if step == 0:
                MARGINS.near("first Newton step", largest, MAX_FIRST_STEP, 1e-6)
                if not all(abs(v) <= MAX_FIRST_STEP for v in change):
                    raise Refused(IK_FIRST_STEP)
            if step == 3:
                MARGINS.near("last Newton step", largest, MAX_LAST_STEP, 1e-7)
                if not all(abs(v) <= MAX_LAST_STEP for v in change):
                    raise Refused(IK_ACCURACY)
                if not largest < 1e-6:
                    MARGINS.flag("Newton not converged")
            q = [a + b for a, b in zip(q, change)]
        # What the rounding of a target in mm and of its rotation does to the joints.
        amplified = max(sum(abs(v) for v in row[:3]) * 1e-15 * self.size()
                        + sum(abs(v) for v in row[3:]) * 1e-15 for row in inverted)
        if not amplified < 2e-12:
            MARGINS.flag("ill-conditioned Jacobian")
        return q

    def jacobian(self, q, block, accepted, current):
        """Body twist of the flange per joint by central differences of the whole model.

        The deflection is on or off for all differences as it is at the centre.
        """
        back = transposed(current[:9])
        columns = []
        for i in range(6):
            ahead, behind = list(q), list(q)
            ahead[i] += DIFFERENCE_STEP
            behind[i] -= DIFFERENCE_STEP
            width = ahead[i] - behind[i]
            m = self.flange_transform(ahead, block, accepted)
            n = self.flange_transform(behind, block, accepted)
            slope = [div(a - b, width) for a, b in zip(m, n)]
            spin = rot_product(back, slope[:9])
            columns.append(list(rotate(back, slope[9:])) + [0.5 * (spin[7] - spin[5]),
                                                           0.5 * (spin[2] - spin[6]),
                                                           0.5 * (spin[3] - spin[1])])
        return [[column[row] for column in columns] for row in range(6)]


def link(theta, d, a, alpha):
    """Standard Denavit-Hartenberg transform Rz(theta) Tz(d) Tx(a) Rx(alpha)."""
    ct, st, ca, sa = cos(theta), sin(theta), cos(alpha), sin(alpha)
    return (ct, -st * ca, st * sa, st, ct * ca, -ct * sa, 0.0, sa, ca, a * ct, a * st, d)


def flange_error(current, target_rotation, target_position):
    shift = rotate(transposed(current[:9]), subtract(target_position, current[9:]))
    m = rot_product(transposed(target_rotation), current[:9])
    return list(shift) + [m[5], m[6], m[1]]


def quadrant(x):
    """Quarter-turn number as reported from joints: the bias is in both branches."""
    t = 2.0 * x / PI
    if not x > 0.0:
        t -= 1.0
    MARGINS.near_integer("quadrant", t + QUADRANT_BIAS)
    return trunc_to_int32(t + QUADRANT_BIAS)


def quadrant_for_turns(x):
    """Quarter-turn number of the turn selection: the bias is only in the branch of x <= 0."""
    t = 2.0 * x / PI
    if not x > 0.0:
        t = t - 1.0 + QUADRANT_BIAS
    MARGINS.near_integer("quadrant", t)
    return trunc_to_int32(t)


def shifted(x, n):
    return x - remainder4(n) * HALF_PI + n * HALF_PI


def turn_once(x, n):
    x = shifted(x, n)
    k = quadrant_for_turns(x) - n
    if k > 2:
        return x - TWO_PI
    if k < -2:
        return x + TWO_PI
    return x


def turn_after_steps(x, n):
    """Shift and window again, until the quadrant is within two of the wanted one."""
    x = shifted(x, n)
    rounds = 0
    while True:
        if not math.isfinite(x):
            raise Refused(IK_ACCURACY)
        k = quadrant_for_turns(x) - n
        if k >= 3:
            moved = x - TWO_PI
        elif k < -2:
            moved = x + TWO_PI
        else:
            return x
        rounds += 1
        if rounds > 10_000:
            MARGINS.flag("long turn loop")
        if moved == x or rounds > MAX_ROUNDS:
            raise Refused(IK_ACCURACY)
        x = moved
