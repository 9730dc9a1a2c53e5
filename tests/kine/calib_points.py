"""Taught points made by hand: rotation matrices, touches of a known tip, circles about a known axis, cells to touch
them in, and joints through the naive model. Millimetres and degrees."""

import itertools
import json
import math

import pytest
from exports import Library
from records import JOINT, LOAD, POSE, SIX_AXIS_PARAM, TOOL, WOBJ

np = pytest.importorskip("numpy")

SIX_AXIS_ARM = {"type": 6, "a1_mm": 150, "a2_mm": 600, "a3_mm": 120, "d1_mm": 450, "d4_mm": 640, "d6_mm": 100}
SOFT_ARM = {**SIX_AXIS_ARM, "weights_Nmm": [90000, 20000, 30000, 10000, 5000, 2000],
            "k2_Nm_per_rad": 200000, "k3_Nm_per_rad": 150000, "k5_Nm_per_rad": 40000}
FOUR_AXIS_ARM = {"type": 4, "link1_length_mm": 400, "link2_length_mm": 300, "z_offset_mm": 350,
                 "screw_lead_mm_per_turn": 20}


def write_cell(directory, name="cell.json", arm=None, **fields):
    path = directory / name
    path.write_text(json.dumps({"arm": arm or SIX_AXIS_ARM, **fields}))
    return path


def rx(deg):
    c, s = math.cos(math.radians(deg)), math.sin(math.radians(deg))
    return np.array([[1, 0, 0], [0, c, -s], [0, s, c]])


def ry(deg):
    c, s = math.cos(math.radians(deg)), math.sin(math.radians(deg))
    return np.array([[c, 0, s], [0, 1, 0], [-s, 0, c]])


def rz(deg):
    c, s = math.cos(math.radians(deg)), math.sin(math.radians(deg))
    return np.array([[c, -s, 0], [s, c, 0], [0, 0, 1]])


def rotation(angles):
    a, b, c = angles
    return rz(a) @ ry(b) @ rx(c)


def frame_rotation(frame):
    return rotation((frame["a_deg"], frame["b_deg"], frame["c_deg"]))


def frame_position(frame):
    return np.array([frame["x_mm"], frame["y_mm"], frame["z_mm"]])


def angles_of(r):
    """A, B, C of a rotation away from B = +-90."""
    return (math.degrees(math.atan2(r[1][0], r[0][0])), math.degrees(math.asin(max(-1.0, min(1.0, -r[2][0])))),
            math.degrees(math.atan2(r[2][1], r[2][2])))


def angle_between(a, b):
    return math.degrees(math.acos(max(-1.0, min(1.0, (np.trace(a.T @ b) - 1.0) / 2.0))))


def poses_csv(points, external=(), names=None):
    """points: (position, angles[, external values])"""
    head = ["x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg", *external]
    lines = [",".join(["target", *head])]
    for i, (position, angles, *values) in enumerate(points):
        name = names[i] if names else f"p{i + 1}"
        numbers = [*position, *angles, *(values[0] if values else ())]
        lines.append(",".join([name, *(repr(float(v)) for v in numbers)]))
    return "\n".join(lines) + "\n"


def joints_csv(joints, axes=6, external=()):
    head = [f"q{i + 1}_deg" for i in range(axes)] + list(external)
    lines = [",".join(["target", *head])]
    lines += [",".join([f"j{i + 1}", *map(repr, row)]) for i, row in enumerate(joints)]
    return "\n".join(lines) + "\n"


def touches(tip, place, orientations, errors=None):
    """Flange poses in which the tip is at the place, but for errors in position."""
    points = []
    for i, angles in enumerate(orientations):
        error = np.zeros(3) if errors is None else np.array(errors[i])
        points.append((np.array(place) - rotation(angles) @ np.array(tip) + error, angles))
    return points


def stacked(points):
    """A and b of (R0 - Ri) t = pi - p0."""
    r = [rotation(angles) for _, angles, *_ in points]
    a = np.vstack([r[0] - ri for ri in r[1:]])
    b = np.concatenate([np.array(p) - np.array(points[0][0]) for p, *_ in points[1:]])
    return a, b


def least_squares_tip(points, planar=False):
    a, b = stacked(points)
    if not planar:
        return np.linalg.lstsq(a, b, rcond=None)[0]
    rows = [row for row in range(len(b)) if row % 3 != 2]
    return np.append(np.linalg.lstsq(a[rows][:, :2], b[rows], rcond=None)[0], 0.0)


def tip_places(tip, points):
    return [rotation(angles) @ tip + np.array(p) for p, angles, *_ in points]


def from_mean(places):
    mean = np.mean(places, axis=0)
    return [float(np.linalg.norm(q - mean)) for q in places]


def pair_distances(places):
    return [float(np.linalg.norm(a - b)) for a, b in itertools.combinations(places, 2)]


def off_plane(places):
    centred = np.array(places) - np.mean(places, axis=0)
    normal = np.linalg.svd(centred)[2][2]
    return [abs(float(normal @ d)) for d in centred]


def off_line(places):
    centred = np.array(places) - np.mean(places, axis=0)
    along = np.linalg.svd(centred)[2][0]
    return [float(np.linalg.norm(d - (along @ d) * along)) for d in centred]


def off_circle(places):
    """Radius and distances: the best plane, and in it the algebraic circle by lstsq."""
    mean = np.mean(places, axis=0)
    centred = np.array(places) - mean
    along, across, normal = np.linalg.svd(centred)[2]
    u, v = centred @ along, centred @ across
    (a, b, c), *_ = np.linalg.lstsq(np.column_stack([2 * u, 2 * v, np.ones(len(u))]), u * u + v * v, rcond=None)
    radius = math.sqrt(c + a * a + b * b)
    return radius, [float(math.hypot(math.hypot(ui - a, vi - b) - radius, normal @ d))
                    for ui, vi, d in zip(u, v, centred)]


def seen_from(frame, point):
    """frame: (position, rotation)"""
    return frame[1].T @ (np.array(point) - np.array(frame[0]))


def plane_frame(origin, x, xy):
    x_axis = (x - origin) / np.linalg.norm(x - origin)
    z_axis = np.cross(x_axis, xy - origin)
    z_axis /= np.linalg.norm(z_axis)
    return np.column_stack([x_axis, np.cross(z_axis, x_axis), z_axis])


def close(found, expected, within=1e-7):
    return np.allclose(np.array(found, dtype=float), np.array(expected, dtype=float), rtol=0.0, atol=within)


# The naive model

def naive_arm(arm):
    """The second implementation of the library, with this six-axis arm."""
    values = [0.0] * 34
    for i, key in enumerate(("a1_mm", "a2_mm", "a3_mm", "d4_mm", "d6_mm", "d1_mm")):
        values[i] = arm[key]
    values[8:13] = [90.0, 0.0, 90.0, -90.0, 90.0]
    values[24:24 + len(arm.get("weights_Nmm", ()))] = arm.get("weights_Nmm", ())
    values[31:34] = [arm.get(f"k{axis}_Nm_per_rad", 0.0) for axis in (2, 3, 5)]
    library = Library()
    assert library.call("Kine_InitKinematicParam", 6, SIX_AXIS_PARAM.pack(*values)).code == 0
    return library


def naive_pose(library, call, joints, tool_frame=(0,) * 6, tool_load=(0,) * 10, load=(0,) * 10, held=1,
               user=(0,) * 6):
    padded = [*joints[:6], 0.0, 0.0, *joints[6:]]
    padded += [0.0] * (14 - len(padded))
    outcome = library.call(call, JOINT.pack(*padded), TOOL.pack(held, *tool_frame, *tool_load),
                           WOBJ.pack(1 - held, 1, 0, *user, *(0,) * 6), LOAD.pack(*load), True)
    assert outcome.code == 0
    pose = POSE.unpack(outcome.output)
    return np.array(pose[:3]), pose[3:6], pose[10:]
