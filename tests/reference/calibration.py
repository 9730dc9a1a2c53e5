"""What every calibration is made of: taught points, distances, reports, least squares, frames from axes.

Radians and millimetres. Comparisons are written so that a value that is not a number passes as it does in
C: `a < b` and `a > b` are false then.
"""

from types import SimpleNamespace

from geometry import euler_to_rotation, rotation_to_euler, subtract
from ieee import div, sqrt
from noisy import Noisy
from records import DEG2RAD, Refused, scaled

FARTHEST_SMALLEST = 10000.0  # where the smallest distance of a report starts


def taught(pose, noisy):
    """Position, rotation and external axes of a taught pose given in degrees."""
    frame, ext = frame_in_radians(pose.frame, noisy), pose.ext
    return SimpleNamespace(p=tuple(frame[:3]), r=euler_to_rotation(*frame[3:]), frame=frame,
                           ext=[Noisy(v) for v in ext] if noisy else list(ext))


def frame_in_radians(values, noisy):
    values = scaled(values, 3, 3, DEG2RAD)
    return [Noisy(v) for v in values] if noisy else values


def size(v):
    """Length of a vector of two or three components; along one axis it is exact, whoever computes it."""
    components = [c for c in v if c != 0.0]
    if len(components) == 1 and isinstance(components[0], Noisy) and 1e-150 < abs(components[0]) < 1e150:
        return abs(components[0])
    total = v[0] * v[0] + v[1] * v[1]
    if len(v) == 3:
        total = total + v[2] * v[2]
    return sqrt(total)


def is_closer(p, q, limit):
    return size(subtract(p, q)) < limit


def require_apart(limit, code, *vectors):
    for v in vectors:
        if size(v) < limit:
            raise Refused(code)


def absolute_cosine(u, w):
    product = u[0] * w[0] + u[1] * w[1]
    if len(u) == 3:
        product = product + u[2] * w[2]
    return div(abs(product), size(u) * size(w))


def divided(v, divisor):
    return tuple(div(c, divisor) for c in v)


def unit(v):
    return divided(v, size(v))


def report_of(points):
    """Largest, mean and smallest distance of all pairs; one that is not a number wins no comparison."""
    largest, smallest, total, pairs = 0.0, FARTHEST_SMALLEST, 0.0, 0
    for i, p in enumerate(points):
        for q in points[i + 1:]:
            distance = size(subtract(p, q))
            if distance > largest:
                largest = distance
            if distance < smallest:
                smallest = distance
            total = total + distance
            pairs += 1
    return largest, div(total, float(pairs)), smallest


# Least squares

def normal_equations(rows, right):
    """The square matrix and the right side of rows * x = right, multiplied by the transposed rows."""
    n = len(rows[0])
    matrix = [[total(row[i] * row[j] for row in rows) for j in range(n)] for i in range(n)]
    return matrix, [total(row[i] * b for row, b in zip(rows, right)) for i in range(n)]


def total(terms):
    result = 0.0
    for term in terms:
        result = result + term
    return result


def determinant(m):
    if len(m) == 2:
        return m[0][0] * m[1][1] - m[0][1] * m[1][0]
    return (m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1])
            - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0])
            + m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]))


def cramer(matrix, right):
    """Each unknown: the determinant with its column replaced by the right side, over the determinant."""
    whole = determinant(matrix)
    solution = []
    for k in range(len(matrix)):
        replaced = [[right[i] if j == k else v for j, v in enumerate(row)] for i, row in enumerate(matrix)]
        solution.append(div(determinant(replaced), whole))
    return tuple(solution)


# Frames

def columns(x, y, z):
    return (x[0], y[0], z[0], x[1], y[1], z[1], x[2], y[2], z[2])


def frame_at(origin, rotation):
    return list(origin) + list(rotation_to_euler(rotation))
