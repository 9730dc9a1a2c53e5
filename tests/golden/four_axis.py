"""Arm types 4 and 4110. Angles in rad, lengths in mm."""
from mpmath import mp, mpf

from frames import apply, multiply, quadrant, remainder4, rot_x, rot_y, rot_z
from numbers_out import rad

ERR_CONFIG, ERR_SINGULAR, ERR_REACH = 0x6090, 0x6093, 0x6094


class Arm:
    def __init__(self, kind, record):
        self.kind = kind
        self.l1, self.l2, self.z0, self.lead = [mpf(v) for v in record[:4]]
        self.tilt1 = (rad(record[8]), rad(record[10]))
        self.tilt2 = (rad(record[9]), rad(record[11]))


def tool_of(values):
    return [mpf(v) for v in values[:3]] + [rad(values[3])]


def links(arm, q):
    r1 = multiply(rot_z(q[0]), rot_x(arm.tilt1[0]), rot_y(arm.tilt1[1]))
    r12 = multiply(r1, rot_z(q[1]), rot_x(arm.tilt2[0]), rot_y(arm.tilt2[1]))
    d = arm.lead * q[2] / (2 * mp.pi) + arm.z0
    first = [arm.l1 * mp.cos(q[0]), arm.l1 * mp.sin(q[0]), mpf(0)]
    second = apply(r1, [arm.l2 * mp.cos(q[1]), arm.l2 * mp.sin(q[1]), mpf(0)])
    third = apply(r12, [mpf(0), mpf(0), d])
    return [first[i] + second[i] + third[i] for i in range(3)], r12


def model_pose(arm, q, tool):
    """Tool pose x, y, z, a; q[1] is the elbow angle."""
    p, r12 = links(arm, q)
    r = multiply(r12, rot_z(q[3]))
    offset = apply(r, tool[:3])
    h = multiply(r, rot_z(tool[3]))
    return [p[i] + offset[i] for i in range(3)] + [mp.atan2(h[1][0], h[0][0])]


def tool_pose(arm, q, tool):
    elbow = q[1] + mp.pi if arm.kind == 4110 else q[1]
    return model_pose(arm, [q[0], elbow, q[2], q[3]], tool) + [mpf(0), mpf(0)]


# The pose for vision takes axis 2 as the elbow angle for both arms.
def planar_pose(arm, q):
    p, r12 = links(arm, q)
    return [p[0], p[1], mpf(0), mp.atan2(r12[1][0], r12[0][0]), mpf(0), mpf(0)]


def config(arm, q):
    if arm.kind == 4:
        return [1 if q[1] > 0 else -1, 0, 0, quadrant(q[3])]
    t = q[1] / mp.pi / 2
    wrapped = q[1] - 2 * mp.pi * int(t + mpf("0.5") if q[1] > 0 else t - mpf("0.5"))
    return [1 if wrapped < 0 else -1, quadrant(q[0]), quadrant(q[1]), quadrant(q[3])]


def shifted(x, n):
    return x + 2 * mp.pi * ((n - remainder4(n)) // 4)


def window(x, n, bias):
    while True:
        u = 2 * x / mp.pi if x > 0 else 2 * x / mp.pi - 1 + bias
        distance = int(u) - n
        if distance > 2:
            x -= 2 * mp.pi
        elif distance < -2:
            x += 2 * mp.pi
        else:
            return x


def error_of(arm, q, tool, target):
    pose = model_pose(arm, q, tool)
    return [target[i] - pose[i] for i in range(4)]


def refine(arm, q, tool, target):
    """At most five Newton steps; ends once the squared error is below 1e-12."""
    step = mpf(10)**-22
    error = error_of(arm, q, tool, target)
    for _ in range(5):
        if sum(e * e for e in error) < mpf("1e-12"):
            break
        jacobian = mp.matrix(4, 4)
        for j in range(4):
            moved = list(q)
            moved[j] += step
            difference = error_of(arm, moved, tool, target)
            for i in range(4):
                jacobian[i, j] = (error[i] - difference[i]) / step
        dq = mp.lu_solve(jacobian, mp.matrix(error))
        q = [q[j] + dq[j] for j in range(4)]
        error = error_of(arm, q, tool, target)
    return q


def solve(arm, target, tool, cfg):
    if cfg[0] not in (1, -1):
        return ERR_CONFIG, None
    th = target[3] - tool[3]
    px = target[0] - mp.cos(th) * tool[0] + mp.sin(th) * tool[1]
    py = target[1] - mp.sin(th) * tool[0] - mp.cos(th) * tool[1]
    k = (px**2 + py**2 - arm.l1**2 - arm.l2**2) / (2 * arm.l1 * arm.l2)
    if abs(k) >= mpf("1.00001"):
        return ERR_REACH, None
    if abs(k) < 1:
        th2 = cfg[0] * mp.acos(k)
        m, n = arm.l1 + arm.l2 * k, arm.l2 * mp.sin(th2)
        th1 = mp.atan2(m * py - n * px, m * px + n * py)
    else:
        th2, th1 = mpf(0), mp.atan2(py, px)
    q3 = 2 * mp.pi * (target[2] - arm.z0 - tool[2]) / arm.lead
    q4 = shifted(th - th1 - th2, cfg[3])
    if arm.kind == 4:
        if abs(th2) < mpf("0.0005"):
            return ERR_SINGULAR, None
        q = refine(arm, [th1, th2, q3, q4], tool, target)
        return 0, [q[0], q[1], q[2], window(shifted(q[3], cfg[3]), cfg[3], mpf("1e-5"))]
    r3 = remainder4(cfg[2])
    if abs(th2 - r3 * mp.pi / 2) < mpf("0.0005"):
        return ERR_SINGULAR, None
    q = refine(arm, [shifted(th1, cfg[1]), shifted(th2, cfg[2]), q3, q4], tool, target)
    bias = mpf("5.555555556e-6")
    axis2 = 2 * cfg[2] * mp.pi + q[1] - mp.pi - r3 * mp.pi / 2 + cfg[2] * mp.pi / 2
    return 0, [window(shifted(q[0], cfg[1]), cfg[1], bias), window(axis2, cfg[2], bias), q[2],
               window(shifted(q[3], cfg[3]), cfg[3], bias)]
