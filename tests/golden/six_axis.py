"""Arm type 6. Angles in rad, lengths in mm, torques in N mm."""
from mpmath import mp, mpf

from frames import (apply, from_pose, inverse, multiply, quadrant, remainder4, rot_x, rot_y, rot_z, to_pose,
                    translate)
from numbers_out import rad

ERR_CONFIG, ERR_SHOULDER, ERR_REACH, ERR_WRIST = 0x6090, 0x6096, 0x6097, 0x6098


class Arm:
    def __init__(self, record):
        v = [mpf(x) for x in record]
        self.a1, self.a2, self.a3, self.d4, self.d6, self.d1, self.lateral = v[:7]
        self.alpha = [rad(x) for x in record[8:13]]
        self.beta2 = rad(record[13])
        self.d3, self.d5, self.a4, self.a5 = v[14:18]
        self.mount_x, self.mount_y = rad(record[18]), rad(record[19])
        self.weights = [w * mp.cos(self.mount_x) for w in v[24:31]]
        self.stiffness = v[31:34]
        self.reach = mp.sqrt(self.a3**2 + self.d4**2)
        self.elbow = mp.asin(self.a3 / self.reach)


def tool_block(frame, tool_load, payload):
    """The frame on the flange and the combined load: mass, centre in metres."""
    m1, m2 = mpf(tool_load[0]), mpf(payload[0])
    mass = m1 + m2
    k = 1 / mass if mass > mpf("1e-5") else mpf(0)
    centre = [k * (m2 * (mpf(payload[1 + i]) + frame[i]) + m1 * mpf(tool_load[1 + i])) / 1000 for i in range(3)]
    return frame, [mass] + centre


def link(theta, d, a, alpha):
    return multiply(rot_z(theta), translate(0, 0, d), translate(a, 0, 0), rot_x(alpha))


def links(arm, q):
    """The five links of the full arm at joints that are already deflected."""
    return [link(q[0], arm.d1, arm.a1, arm.alpha[0]),
            multiply(link(q[1] + mp.pi / 2, mpf(0), arm.a2, arm.alpha[1]), rot_y(arm.beta2)),
            link(q[2], arm.d3, arm.a3, arm.alpha[2]), link(q[3], arm.d4, arm.a4, arm.alpha[3]),
            link(q[4], arm.d5, arm.a5, arm.alpha[4])]


def payload_torques(arm, q, load):
    """Moment of the payload's weight about the axes of joints 2, 3 and 5 of the nominal arm."""
    half = mp.pi / 2
    nominal = [link(q[0], arm.d1, arm.a1, half), link(q[1] + half, mpf(0), arm.a2, mpf(0)),
               link(q[2], mpf(0), arm.a3, half), link(q[3], arm.d4, mpf(0), -half), link(q[4], mpf(0), mpf(0), half),
               multiply(rot_z(q[5]), translate(0, 0, arm.d6))]
    frames = [translate(0, 0, 0)]
    for step in nominal:
        frames.append(multiply(frames[-1], step))
    centre = apply(frames[6], [1000 * c for c in load[1:]])
    cx, sx, cy, sy = mp.cos(arm.mount_x), mp.sin(arm.mount_x), mp.cos(arm.mount_y), mp.sin(arm.mount_y)
    weight = load[0] * mpf(98) / 10
    force = [weight * cx * sy, -weight * sx, -weight * cx * cy]
    torques = []
    for joint in (2, 3, 5):
        frame = frames[joint - 1]
        z = [frame[i][2] for i in range(3)]
        arm_vector = [centre[i] - frame[i][3] for i in range(3)]
        moment = cross(arm_vector, force)
        torques.append(sum(z[i] * moment[i] for i in range(3)))
    return torques


def cross(u, v):
    return [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]]


def link_torques(arm, q):
    g = arm.weights
    t2 = q[1] + mp.pi / 2
    a = t2 + q[2]
    s4, c4, s5, c5 = mp.sin(q[3]), mp.cos(q[3]), mp.sin(q[4]), mp.cos(q[4])
    w = c4 * mp.cos(a) * s5 + c5 * mp.sin(a)
    forearm = mp.cos(a) * g[2] + mp.sin(a) * g[3] + w * g[4]
    return [mp.sin(t2) * g[1] + mp.cos(t2) * g[0] + forearm, forearm,
            -(c4 * mp.sin(a) * c5 + s5 * mp.cos(a)) * g[5]]


def deflection(arm, q, load):
    """What joints 2, 3 and 5 give way; nothing when one gives way by 2 degrees or is without a stiffness."""
    if any(k == 0 for k in arm.stiffness):
        return [mpf(0)] * 3
    p, t = payload_torques(arm, q, load), link_torques(arm, q)
    c = [1 / (k * 1000) for k in arm.stiffness]
    dq = [(p[0] - t[0]) * c[0], (p[1] - t[1]) * c[1], (p[2] + t[2]) * c[2]]
    return dq if all(abs(d) < mp.pi / 90 for d in dq) else [mpf(0)] * 3


def deflected(arm, q, load):
    d2, d3, d5 = deflection(arm, q, load)
    return [q[0], q[1] + d2, q[2] + d3, q[3], q[4] + d5, q[5]]


def flange_matrix(arm, q, load):
    bent = deflected(arm, q, load)
    return multiply(*links(arm, bent), rot_z(bent[5]), translate(0, 0, arm.d6))


def tool_matrix(arm, q, block):
    frame, load = block
    return multiply(flange_matrix(arm, q, load), from_pose(frame))


def frame5_matrix(arm, q):
    return multiply(*links(arm, deflected(arm, q, [mpf(0)] * 4)))


def rho(arm, q):
    return (arm.a1 - arm.a2 * mp.sin(q[1]) + arm.d4 * mp.cos(q[1] + q[2]) - arm.a3 * mp.sin(q[1] + q[2]))


def config(arm, q):
    posture = (4 if rho(arm, q) < 0 else 0) + (2 if q[2] >= mp.pi / 2 - arm.elbow else 0) + (0 if q[4] >= 0 else 1)
    return [quadrant(q[0]), quadrant(q[3]), quadrant(q[5]), posture]


def is_regular(arm, q):
    return (abs(rho(arm, q)) > 80 and abs(mp.cos(q[2] + arm.elbow)) > mpf("0.2") and
            abs(mp.sin(q[4])) > mpf("0.2"))


# --- inverse ------------------------------------------------------------------------------------

def inverse_quadrant(x):
    t = 2 * x / mp.pi
    return int(t) if x > 0 else int(t - 1 + mpf("5.555555556e-6"))


def shifted(x, n):
    return x + 2 * mp.pi * ((n - remainder4(n)) // 4)


def turn_once(x, n):
    x = shifted(x, n)
    k = inverse_quadrant(x) - n
    if k > 2:
        return x - 2 * mp.pi
    return x + 2 * mp.pi if k < -2 else x


def turn_repeated(x, n):
    x = shifted(x, n)
    while True:
        k = inverse_quadrant(x) - n
        if k >= 3:
            x -= 2 * mp.pi
        elif k < -2:
            x += 2 * mp.pi
        else:
            return x


def closed_form(arm, flange, cfg):
    posture = cfg[3]
    back, far, flipped = posture >= 4, (posture // 2) % 2 == 1, posture % 2 == 1
    r = flange
    w = [r[i][3] - arm.d6 * r[i][2] for i in range(3)]
    h = w[2] - arm.d1
    radius = mp.sqrt(w[0]**2 + w[1]**2)
    if radius - abs(arm.lateral) < mpf("1e-5"):
        return ERR_SHOULDER, None
    if not 0 <= posture <= 7:
        return ERR_CONFIG, None
    delta = mp.asin(arm.lateral / radius)
    q1 = mp.atan2(w[1], w[0]) + (-delta if back else delta)
    if q1 > mp.pi:
        q1 -= 2 * mp.pi
    if q1 < -mp.pi:
        q1 += 2 * mp.pi
    if back:
        q1 += -mp.pi if q1 >= 0 else mp.pi
    q1 = turn_once(q1, cfg[0])
    s1, c1 = mp.sin(q1), mp.cos(q1)
    u = w[0] - arm.lateral * s1 - arm.a1 * c1
    v = arm.lateral * c1 + w[1] - arm.a1 * s1
    c = (arm.reach**2 + arm.a2**2 - u**2 - v**2 - h**2) / (2 * arm.a2 * arm.reach)
    if abs(c) > mpf("0.99999"):
        return ERR_REACH, None
    inner = mp.pi - mp.acos(c)
    q3 = mp.pi / 2 - arm.elbow + (inner if far else -inner)
    e = q3 + arm.elbow
    along = s1 * w[1] + c1 * w[0] - arm.a1
    m = mp.sin(e) * arm.reach + arm.a2
    q2 = -mp.atan2(m * along - mp.cos(e) * arm.reach * h, mp.cos(e) * arm.reach * along + m * h)
    s23, c23 = mp.sin(q2 + q3), mp.cos(q2 + q3)
    g = r[1][2] * s1 + r[0][2] * c1
    c5 = s23 * r[2][2] + c23 * g
    if abs(c5) > mpf("1.00001"):
        return ERR_WRIST, None
    q5 = mp.mpf(0) if abs(c5) > mpf("0.99999") else mp.acos(c5)
    if flipped:
        q5 = -q5
    if abs(q5) < mpf("0.0005"):
        return ERR_WRIST, None
    y, x = r[0][2] * s1 - r[1][2] * c1, c23 * r[2][2] - g * s23
    if mp.sin(q5) <= 0:
        y, x = -y, -x
    q4 = turn_once(mp.atan2(y, x), cfg[1])
    s4, c4, c5 = mp.sin(q4), mp.cos(q4), mp.cos(q5)
    aa, bb = r[0][1] * s1 - r[1][1] * c1, r[0][0] * s1 - r[1][0] * c1
    q6 = turn_once(mp.atan2(bb * c4 - aa * s4 * c5, aa * c4 + bb * s4 * c5), cfg[2])
    return 0, [q1, q2, q3, q4, q5, q6]


def flange_error(arm, q, load, target):
    """Position error and half the sum of the axes' cross products, both zero on the target only."""
    current = flange_matrix(arm, q, load)
    turn = [mpf(0)] * 3
    for k in range(3):
        part = cross([current[i][k] for i in range(3)], [target[i][k] for i in range(3)])
        turn = [turn[i] + part[i] / 2 for i in range(3)]
    return [target[i][3] - current[i][3] for i in range(3)] + turn


def solve(arm, pose, block, cfg):
    """(code, joints): Newton from the closed form until 40 digits stand. (None, None) where the nominal and the
    real arm disagree about what is within reach, so that nothing can be said from the closed form alone."""
    frame, load = block
    target = multiply(from_pose(pose), inverse(from_pose(frame)))
    code, q = closed_form(arm, from_pose(to_pose(target)), cfg)
    if code:
        return code, None
    nominal = list(q)
    step = mpf(10)**-22
    for _ in range(12):
        error = flange_error(arm, q, load, target)
        if max(abs(e) for e in error) < mpf(10)**-38:
            break
        jacobian = mp.matrix(6, 6)
        for j in range(6):
            moved = list(q)
            moved[j] += step
            difference = flange_error(arm, moved, load, target)
            for i in range(6):
                jacobian[i, j] = (difference[i] - error[i]) / step
        dq = mp.lu_solve(jacobian, -mp.matrix(error))
        q = [q[j] + dq[j] for j in range(6)]
    else:
        return None, None
    if max(abs(a - b) for a, b in zip(q, nominal)) > mpf("0.15"):
        return None, None
    q[3], q[5] = turn_repeated(q[3], cfg[1]), turn_repeated(q[5], cfg[2])
    return 0, q
