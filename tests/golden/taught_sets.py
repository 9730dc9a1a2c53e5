"""Taught poses of a calibration: how a set is placed, rounded and disturbed."""
from mpmath import mp, mpf

from frames import apply, euler, from_pose, multiply, rot_x, rot_y, rot_z, rows
from numbers_out import deg, doubles, rad


# How poses reach the table. EXACT: as the nearest doubles. A number: rounded to three decimals, as a
# controller shows them, after every position is moved by up to so many mm along each axis.
EXACT, SHOWN = None, 0.0
STYLES = [("exact", EXACT), ("shown", SHOWN), ("noise_0.1", 0.1), ("noise_0.5", 0.5), ("noise_2", 2.0)]

# The sign of B, and the degrees by which X misses the vertical: on both sides of where it counts as vertical.
STEEP = [(sign, away) for sign in (1, -1) for away in (0.5, 0.01, 0.0012, 0.0003)]


def taught(rng, style, pose):
    """Six doubles of a pose with its angles in rad."""
    values = doubles(list(pose[:3]) + [deg(v) for v in pose[3:]])
    if style is None:
        return values
    if style:
        values[:3] = [v + rng.uniform(-style, style) for v in values[:3]]
    return [round(v, 3) for v in values]


def taught_point(rng, style, point):
    """A position, taught in any orientation."""
    return taught(rng, style, list(point) + [rad(v) for v in random_angles(rng)])


def pose_of(position, turn):
    return list(position) + list(euler(turn))


def angles_turn(angles):
    return from_pose([0, 0, 0] + [rad(v) for v in angles])


def random_angles(rng):
    return [rng.uniform(-180, 180), rng.uniform(-85, 85), rng.uniform(-180, 180)]


def random_turn(rng):
    return angles_turn(random_angles(rng))


def random_point(rng, reach):
    return [rng.uniform(-reach, reach) for _ in range(3)]


def heading(angle):
    return rot_z(rad(angle))


def nearly_vertical(rng, sign, away):
    """X axis away degrees from straight down or up (B near +90 or -90)."""
    return multiply(rot_z(rad(rng.uniform(-180, 180))), rot_y(sign * (mp.pi / 2 - rad(away))),
                    rot_x(rad(rng.uniform(-180, 180))))


def carrying(point, turn, tip):
    """The pose of what carries the tip when the tip is at the point."""
    return pose_of([p - o for p, o in zip(point, apply(turn, tip))], turn)


def touching(rng, style, tip, point, turns):
    return [taught(rng, style, carrying(point, turn, tip)) for turn in turns]


def at(frame, x, y, z):
    return apply(frame, [mpf(x), mpf(y), mpf(z)])


def framed(turn, origin):
    return rows([r[:3] for r in turn], origin)


# The determinant of the normal equations of touches in these orientations.
def spread(turns):
    system = mp.matrix([[turns[0][i][j] - t[i][j] for j in range(3)]
                        for t in turns[1:] for i in range(3)])
    return mp.det(system.T * system)


def spread_turns(rng, count):
    """Orientations that turn well about every axis."""
    while True:
        turns = [random_turn(rng) for _ in range(count)]
        if spread(turns) > 3:
            return turns


def one_axis_turns(rng, angles, tilt):
    """Turns about one axis of the tool, the last one tilted by so many degrees."""
    base = random_turn(rng)
    turns = [multiply(base, rot_z(rad(a))) for a in angles]
    turns[-1] = multiply(turns[-1], rot_x(rad(tilt)))
    return turns


def small_turns(rng, count, size, least):
    """Orientations up to so many degrees from the first one, not spread less than least."""
    base = random_turn(rng)
    while True:
        turns = [base] + [multiply(base, angles_turn([rng.uniform(-size, size) for _ in range(3)]))
                          for _ in range(count - 1)]
        if spread(turns) > least:
            return turns


def headings(rng, count):
    first = rng.uniform(-170, 170)
    return [heading(remainder(first + 360.0 * i / count + rng.uniform(-20, 20))) for i in range(count)]


def remainder(angle):
    return round(angle - 360 * round(angle / 360), 3)


def beyond(poses, index, element, angle):
    """The set with one angle beyond the range."""
    changed = [list(p) for p in poses]
    changed[index][element] = angle
    return changed
