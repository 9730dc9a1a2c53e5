"""Random points for frames: well placed, around the limits of a distance or of a line, and worse ones."""

import math

from calls import chance
from generate_motion import any_direction, unit
from geometry import add, cross, euler_to_rotation, rotate

FACTORS = (0.0, 0.5, 0.98, 0.999, 0.999999, 1.0 - 1e-12, math.nextafter(1.0, 0.0), 1.0, 1.0,
           math.nextafter(1.0, 2.0), 1.0 + 1e-12, 1.000001, 1.001, 1.02, 2.0, 10.0)
SCALES = (1e-300, 1e-160, 1e-12, 1e-5, 1e5, 1e9, 1e60, 1e120, 1e160, 1e300)


def on_threshold(rng, limit):
    """A length on the limit or a little or a lot beside it."""
    return limit * rng.choice(FACTORS)


def anywhere(rng):
    reach = rng.choice((50.0, 800.0, 2000.0))
    return tuple(rng.uniform(-reach, reach) for _ in range(3))


def moved(rng, point, distance):
    if chance(rng, 0.5):  # along an axis, so that the distance is exact
        axis = rng.randrange(3)
        return tuple(v + rng.choice((1.0, -1.0)) * distance if i == axis else v for i, v in enumerate(point))
    return add(point, [distance * v for v in any_direction(rng)])


def bent(rng, sine):
    """Three points with about that sine of the angle at the first."""
    origin = anywhere(rng) if chance(rng, 0.6) else (0.0, 0.0, 0.0)
    along = any_direction(rng)
    aside = cross(along, any_direction(rng))
    length = math.sqrt(sum(v * v for v in aside))
    aside = [v / length for v in aside] if length > 1e-6 else [0.0, 0.0, 0.0]
    first, second = rng.uniform(1.0, 500.0), rng.choice((1.0, -1.0)) * rng.uniform(1.0, 500.0)
    second_point = [second * (v + sine * a) for v, a in zip(along, aside)]
    points = [origin, add(origin, [first * v for v in along]), add(origin, second_point)]
    if chance(rng, 0.3):
        points[1], points[2] = points[2], points[1]
    return points


def three_points(rng, limits, sines, flat=False):
    """Origin and two more: limits of distances in mm, limits of the sine between the directions."""
    points = spatial_points(rng, limits, sines)
    return [(x, y, points[0][2]) for x, y, _ in points] if flat else points


def spatial_points(rng, limits, sines):
    roll = rng.random()
    if roll < 0.3:
        return [anywhere(rng) for _ in range(3)]
    if roll < 0.5:
        origin = anywhere(rng) if chance(rng, 0.4) else (0.0, 0.0, 0.0)
        close = moved(rng, origin, on_threshold(rng, rng.choice(limits)))
        points = [origin, close, anywhere(rng)]
        if chance(rng, 0.15):
            points[2] = moved(rng, origin, on_threshold(rng, rng.choice(limits)))
        rng.shuffle(points)
        return points
    if roll < 0.66:
        limit = rng.choice(sines)
        sine = around(rng, limit) if chance(rng, 0.4) else on_threshold(rng, limit)
        return bent(rng, 10.0 ** rng.uniform(-9.0, -0.3) if chance(rng, 0.25) else sine)
    if roll < 0.76:
        return [tuple(float(rng.randint(-2, 2)) for _ in range(3)) for _ in range(3)]
    if roll < 0.84:  # in a plane through two axes
        axis, height = rng.randrange(3), rng.choice((0.0, 500.0))
        return [tuple(height if i == axis else v for i, v in enumerate(anywhere(rng))) for _ in range(3)]
    if roll < 0.9:
        points = [anywhere(rng) for _ in range(3)]
        points[rng.randrange(3)] = rng.choice(points)
        return points
    if roll < 0.96:  # hardly apart from each other, far from the origin
        centre, size = anywhere(rng), 10.0 ** rng.uniform(-6.0, -1.0)
        return [add(centre, [rng.gauss(0.0, size) for _ in range(3)]) for _ in range(3)]
    scale = rng.choice(SCALES)
    return [tuple(scale * v for v in anywhere(rng)) for _ in range(3)]


def with_measure(make, measure, wanted):
    """What `make` gives for the size at which its growing measure is the wanted one, by bisection."""
    low, high = 1e-6, 1e3
    for _ in range(80):
        middle = math.sqrt(low * high)
        low, high = (middle, high) if abs(measure(make(middle))) < wanted else (low, middle)
    return make(high)


def around(rng, limit):
    """Like on_threshold, for what rounding keeps from being met exactly."""
    return limit * (1.0 + rng.choice((1.0, -1.0)) * 10.0 ** rng.uniform(-7.0, -1.0))


def square_of_sides(rng):
    """Three points, flat, whose squared distances from the first add up to about 1e-5."""
    directions = [unit([rng.gauss(0.0, 1.0), rng.gauss(0.0, 1.0), 0.0]) for _ in range(2)]
    share = rng.uniform(0.1, 0.9)
    total = around(rng, 1e-5)
    return [(0.0, 0.0, 0.0)] + [tuple(math.sqrt(total * part) * v for v in d)
                                for d, part in zip(directions, (share, 1.0 - share))]


def chord_along_y(rng):
    """Around an upright axis, with one chord exactly along Y: one bisector has no y component."""
    size, height = rng.choice((1.0, 3.0, 250.0)), rng.choice((0.0, 40.0))
    x = rng.choice((0.0, 2.0, -70.0))
    aside = (x + rng.choice((1.0, -2.0, 33.0)), rng.uniform(-1.0, 1.0), height)
    points = [(x, size, height), (x, -size, height), aside]
    if chance(rng, 0.4):
        rng.shuffle(points)
    return points


def circle(rng, angles=None, lying=False):
    """Three points of a circle, by the angles of the axis in degrees; lying: the axis in the XY plane."""
    if angles is None:
        start = rng.uniform(-180.0, 180.0)
        angles = [start, start + rng.uniform(5.0, 170.0), start + rng.uniform(175.0, 350.0)]
    if lying:
        tip = rng.choice((0.0, 0.0, 10.0 ** rng.uniform(-17.0, -3.0)))
        z = unit([*rng.choice(((1.0, 0.0), (0.0, 1.0), (0.6, -0.8))), tip])
    else:
        z = any_direction(rng)
    x = cross(z, (0.0, 0.0, 1.0) if abs(z[2]) < 0.9 else (1.0, 0.0, 0.0))
    x = unit(x)
    y = cross(z, x)
    centre, radius = anywhere(rng), rng.choice((0.5, 100.0, 300.0, rng.uniform(1.0, 800.0)))
    points = []
    for angle in angles:
        u, v, _ = rotate(euler_to_rotation(math.radians(angle), 0.0, 0.0), (radius, 0.0, 0.0))
        points.append(tuple(c + u * p + v * q for c, p, q in zip(centre, x, y)))
    return points
