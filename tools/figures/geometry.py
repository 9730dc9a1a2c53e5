"""Vectors and frames of the figures: mm and degrees, R = Rz(A) * Ry(B) * Rx(C) as everywhere.

A vector is a tuple of three numbers; a transform is a pair of a rotation (three rows) and a position, named
target-from-source. `Camera` looks at the scene from far away: no perspective, so that lengths can be compared.
"""

from math import asin, atan2, cos, degrees, radians, sin, sqrt

IDENTITY = (((1.0, 0.0, 0.0), (0.0, 1.0, 0.0), (0.0, 0.0, 1.0)), (0.0, 0.0, 0.0))


def add(*vectors):
    return tuple(sum(parts) for parts in zip(*vectors))


def scale(factor, v):
    return tuple(factor * part for part in v)


def sub(u, v):
    return tuple(a - b for a, b in zip(u, v))


def dot(u, v):
    return sum(a * b for a, b in zip(u, v))


def cross(u, v):
    return (u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0])


def norm(v):
    return sqrt(dot(v, v))


def unit(v):
    return scale(1.0 / norm(v), v)


def mix(u, v, share):
    return tuple(a + share * (b - a) for a, b in zip(u, v))


def rotate(r, v):
    return tuple(dot(row, v) for row in r)


def product(*transforms):
    r, t = transforms[0]
    for other_r, other_t in transforms[1:]:
        t = add(t, rotate(r, other_t))
        columns = tuple(zip(*other_r))
        r = tuple(tuple(dot(row, column) for column in columns) for row in r)
    return r, t


def inverse(transform):
    r, t = transform
    back = tuple(zip(*r))
    return back, scale(-1.0, rotate(back, t))


def point(transform, v):
    return add(rotate(transform[0], v), transform[1])


def axis(transform, i):
    """Axis 0, 1 or 2 of the frame, as a unit vector in the target frame."""
    return tuple(row[i] for row in transform[0])


def move(x=0.0, y=0.0, z=0.0):
    return IDENTITY[0], (x, y, z)


def turn_x(angle):
    c, s = cos(radians(angle)), sin(radians(angle))
    return ((1.0, 0.0, 0.0), (0.0, c, -s), (0.0, s, c)), (0.0, 0.0, 0.0)


def turn_y(angle):
    c, s = cos(radians(angle)), sin(radians(angle))
    return ((c, 0.0, s), (0.0, 1.0, 0.0), (-s, 0.0, c)), (0.0, 0.0, 0.0)


def turn_z(angle):
    c, s = cos(radians(angle)), sin(radians(angle))
    return ((c, -s, 0.0), (s, c, 0.0), (0.0, 0.0, 1.0)), (0.0, 0.0, 0.0)


def from_frame(x, y, z, a, b, c):
    """The transform of a frame with six numbers, mm and degrees."""
    r, _ = product(turn_z(a), turn_y(b), turn_x(c))
    return r, (x, y, z)


def to_frame(transform):
    """The six numbers of a transform whose X axis is not vertical."""
    r, t = transform
    b = degrees(asin(max(-1.0, min(1.0, -r[2][0]))))
    return (*t, degrees(atan2(r[1][0], r[0][0])), b, degrees(atan2(r[2][1], r[2][2])))


class Camera:
    """Maps points of the scene to the page. The viewer stands at azimuth and elevation (degrees); `centre` is
    the scene point that comes to (x, y) of the page; `zoom` is page units per mm."""

    def __init__(self, azimuth, elevation, zoom, centre=(0.0, 0.0, 0.0), page=(0.0, 0.0)):
        ca, sa = cos(radians(azimuth)), sin(radians(azimuth))
        ce, se = cos(radians(elevation)), sin(radians(elevation))
        self.toward = (ce * ca, ce * sa, se)
        self.right = (-sa, ca, 0.0)
        self.up = (-se * ca, -se * sa, ce)
        self.zoom = zoom
        self.centre = centre
        self.page = page

    def at(self, p):
        offset = sub(p, self.centre)
        return (self.page[0] + self.zoom * dot(offset, self.right),
                self.page[1] - self.zoom * dot(offset, self.up))

    def depth(self, p):
        """Larger is nearer; rounded, so that the order of drawing does not depend on the last bits."""
        return round(dot(p, self.toward), 3)
