"""Taught sets of the work-object calibrations: exact, disturbed, badly spread, refused."""
from mpmath import mp

from calibration import Case, UnitSetup, matrix, unit_matrix
from frames import apply, inverse, multiply
from numbers_out import rad
from taught_sets import (EXACT, SHOWN, STEEP, STYLES, angles_turn, at, beyond, framed, nearly_vertical,
                         pose_of, random_angles, random_point, random_turn, taught, taught_point)

WHOLE = [[100.0, -50.0, 20.0], [400.0, -50.0, 20.0], [150.0, 60.0, 20.0]]
TURNED_TWICE = [1.0, 2.0, 3.0, 400.0, -200.0, 720.0]
EDGE = [[180.0, -180.0, 180.0], [-180.0, 180.0, -180.0], [0.0, 90.0, 180.0]]


def taught_points(rng, style, points):
    return [taught_point(rng, style, p) for p in points]


def with_angles(points):
    return [p + EDGE[i] for i, p in enumerate(points)]


# Origin, a point on X, one in the XY plane; or three points of a circle, the first on X.
def triangle(rng, frame):
    return [at(frame, 0, 0, 0), at(frame, rng.uniform(80, 600), 0, 0),
            at(frame, rng.uniform(-200, 300), rng.uniform(80, 500), 0)]


def on_circle(frame, radius, angles):
    return [at(frame, radius * mp.cos(rad(a)), radius * mp.sin(rad(a)), 0) for a in angles]


def three_around(rng, frame):
    angles = (0, rng.uniform(60, 160), rng.uniform(200, 300))
    return on_circle(frame, rng.uniform(40, 600), angles)


def frames_of(rng):
    """Name, style and frame of every accepted set."""
    found = []
    for name, style in STYLES * 3:
        found.append((name, style, framed(random_turn(rng), random_point(rng, 900))))
    for sign, away in STEEP:
        frame = framed(nearly_vertical(rng, sign, away), random_point(rng, 900))
        found.append(("steep%+g" % (sign * away), EXACT, frame))
    for name, style in (("far", EXACT), ("far_noise_0.5", 0.5)):
        found.append((name, style, framed(random_turn(rng), random_point(rng, 100000))))
    for name, angles in (("level", (30, 0, 0)), ("upside_down", (-75, 0, 180)), ("on_edge", (10, 0, 90))):
        found.append((name, EXACT, framed(angles_turn(angles), random_point(rng, 900))))
    return found


def user_frame_sets(rng):
    sets = [(name, taught_points(rng, style, triangle(rng, frame))) for name, style, frame in frames_of(rng)]
    return sets + whole_number_sets()


def whole_number_sets():
    o = WHOLE[0]
    good = with_angles(WHOLE)
    return [
        ("whole_numbers", good),
        ("upright_in_whole_numbers", with_angles([o, [100.0, -50.0, 320.0], [100.0, 20.0, 40.0]])),
        ("small_triangle", with_angles([o, [100.02, -50.0, 20.0], [100.0, -49.97, 20.01]])),
        ("almost_in_line", with_angles([o, [400.0, -50.0, 20.0], [700.0, -49.95, 20.01]])),
        ("x_point_at_origin", with_angles([o, [100.006, -50.0, 20.006], [150.0, 60.0, 20.0]])),
        ("xy_point_at_origin", with_angles([o, [400.0, -50.0, 20.0], [100.0, -50.006, 20.006]])),
        ("xy_point_at_x_point", with_angles([o, [400.0, -50.0, 20.0], [400.0, -50.006, 20.006]])),
        ("in_line", with_angles([o, [400.0, -50.0, 20.0], [-700.0, -50.0, 20.001]])),
        ("angle_beyond_range", beyond(good, 0, 3, 180.001)),
        ("last_angle_beyond_range", beyond(good, 2, 5, -180.001))]


def user_frame_cases(rng, export):
    return [Case(export, name, poses) for name, poses in user_frame_sets(rng)]


def user_frame_of_two_cases(rng, export):
    cases = [Case(export, name, taught_points(rng, style, triangle(rng, frame)[:2]))
             for name, style, frame in frames_of(rng)]
    o = WHOLE[0]

    def add(name, point):
        cases.append(Case(export, name, with_angles([o, point])))

    add("along_x", [400.0, -50.0, 20.0])
    add("against_y", [100.0, -450.0, 20.0])
    add("steep_up", [100.0625, -50.03125, 820.0])
    add("within_the_other_limit", [100.003, -50.002, 20.001])
    # The horizontal part is longer than one limit, its components are below the other.
    for height in (8020.0, -7980.0):
        add("hardly_leaning", [100.0625, -50.0625, height])
    add("straight_up", [100.0, -50.0, 520.0])
    add("straight_down_but_a_trace", [100.002, -50.0, -979.0])
    add("equal_points", [100.0005, -50.0005, 20.0])
    cases.append(Case(export, "angle_beyond_range", beyond(with_angles([o, o]), 1, 4, 180.001)))
    return cases


def circle_cases(rng, export):
    cases = [Case(export, name, taught_points(rng, style, three_around(rng, frame)))
             for name, style, frame in frames_of(rng)]
    for name, radius, angles in (("short_arc", 300, (0, 9, 20)), ("shorter_arc", 300, (0, 1, 2.5)),
                                 ("wide_short_arc", 5000, (0, -2, 3)), ("clockwise", 150, (0, -100, 110)),
                                 ("small", 0.2, (0, 100, 220))):
        frame = framed(random_turn(rng), random_point(rng, 700))
        cases.append(Case(export, name, taught_points(rng, EXACT, on_circle(frame, radius, angles))))
    whole = [[300.0, 20.0, 5.0], [200.0, 120.0, 5.0], [100.0, 20.0, 5.0]]

    def add(name, points):
        cases.append(Case(export, name, with_angles(points)))

    add("whole_numbers", whole)
    add("whole_numbers_backwards", [whole[0], whole[2], whole[1]])
    add("first_two_equal", [whole[0], whole[0], whole[2]])
    add("last_two_equal", [whole[0], whole[1], whole[1]])
    add("in_line", [[10.0, 0.0, 0.0], [20.0, 1.0, 2.0], [30.0, 2.0, 4.0]])
    add("almost_in_line", [[10.0, 0.0, 0.0], [20.0, 1.0, 2.0], [30.0, 2.25, 4.0]])
    add("too_small", [[0.0, 0.0, 0.0], [0.03, 0.0, 0.0], [0.0, 0.05, 0.0]])
    cases.append(Case(export, "angle_beyond_range", beyond(with_angles(whole), 2, 3, 180.001)))
    return cases


# The user frame in which the object frame of the points comes out steep, exactly upright or at random.
def object_frame_cases(rng, export):
    cases = []
    for name, style in STYLES * 3:
        user = random_point(rng, 900) + random_angles(rng)
        frame = multiply(matrix(user), framed(random_turn(rng), random_point(rng, 300)))
        cases.append(Case(export, name, taught_points(rng, style, triangle(rng, frame)), given=user))
    for sign, away in STEEP:
        taught_frame = framed(random_turn(rng), random_point(rng, 900))
        seen = framed(nearly_vertical(rng, sign, away), random_point(rng, 300))
        user = taught(rng, EXACT, pose_of_frame(multiply(taught_frame, inverse(seen))))
        points = taught_points(rng, EXACT, triangle(rng, taught_frame))
        cases.append(Case(export, "steep%+g_in_user" % (sign * away), points, given=user))
    tilted_user = [10.0, 20.0, 30.0, 0.0, 35.0, 0.0]
    for sign, away in STEEP[2:4] + STEEP[6:8]:
        frame = framed(nearly_vertical(rng, sign, away), random_point(rng, 900))
        points = taught_points(rng, EXACT, triangle(rng, frame))
        cases.append(Case(export, "steep%+g_in_base" % (sign * away), points, given=tilted_user))
    for name, poses in whole_number_sets():
        cases.append(Case(export, name, poses, given=[5.0, -6.0, 7.0, 90.0, -180.0, 45.0]))
    # The angles of the user frame are not tested.
    cases.append(Case(export, "user_frame_turned_twice", with_angles(WHOLE), given=TURNED_TWICE))
    cases.append(Case(export, "user_frame_zero", cases[0].poses, given=[0.0] * 6))
    far = [random_point(rng, 100000) + random_angles(rng) for _ in range(3)]
    cases.append(Case(export, "far", far, given=random_point(rng, 100000) + random_angles(rng)))
    return cases


def pose_of_frame(m):
    return pose_of([row[3] for row in m], m)


# --- on mechanical units ------------------------------------------------------------------------

def unit_setup(rng, kind, asked=1, count=2):
    frames = [random_point(rng, 900) + random_angles(rng) for _ in range(2)]
    first = int(rng.uniform(0, 6))
    return UnitSetup(asked, count, asked, kind, 2 if kind == 3 else 1, [first, (first + 2) % 6], frames)


def on_unit(rng, setup, style, frame):
    """Three points of a frame on the unit, each taught with the axes at another place."""
    poses = []
    for p in triangle(rng, frame):
        ext = [rng.uniform(-170, 170) for _ in range(6)]
        poses.append(taught_point(rng, style, apply(unit_matrix(setup, ext), p)) + ext)
    return poses


def carried_object_cases(rng, export):
    cases = []
    for kind in (1, 2, 3):
        for name, style in STYLES * 2:
            setup = unit_setup(rng, kind)
            frame = framed(random_turn(rng), random_point(rng, 300))
            cases.append(Case(export, name, on_unit(rng, setup, style, frame), unit=setup))
    for sign, away in STEEP[2:4] + STEEP[6:8]:
        setup = unit_setup(rng, 3)
        frame = framed(nearly_vertical(rng, sign, away), random_point(rng, 300))
        cases.append(Case(export, "steep%+g" % (sign * away), on_unit(rng, setup, EXACT, frame), unit=setup))

    def add(name, setup, poses=None):
        points = poses or on_unit(rng, setup, SHOWN, framed(random_turn(rng), random_point(rng, 300)))
        cases.append(Case(export, name, points, unit=setup))

    add("unit_0", unit_setup(rng, 2, 0))
    add("unit_behind_the_last", unit_setup(rng, 2, 1, 1))
    far = [random_point(rng, 100000) + random_angles(rng) + [100.0 * i] * 6 for i in range(3)]
    add("far", unit_setup(rng, 1), far)
    good = cases[0].poses
    # Kinds of units that there are not, and rotary axes at the origin: the points stay zero, all three.
    for kind in (0, 4):
        add("kind_%d" % kind, unit_setup(rng, kind), good)
    for kind, at_origin in ((2, 0), (3, 0), (3, 1)):
        setup = unit_setup(rng, kind)
        setup.frames[at_origin][:3] = [0.0, 0.0, 0.0]
        add("axis_%d_of_kind_%d_at_origin" % (at_origin + 1, kind), setup, good)
    rail_at_origin = unit_setup(rng, 1)
    rail_at_origin.frames[0][:3] = [0.0, 0.0, 0.0]
    add("rail_at_origin", rail_at_origin)
    setup = unit_setup(rng, 2)
    add("equal_points", setup, [good[0], good[0], good[2]])
    add("in_line", setup, [[10.0 * i, 5.0, 6.0] + p[3:6] + [40.0] * 6 for i, p in enumerate(good)])
    add("angle_beyond_range", setup, beyond(good, 1, 5, 180.001))
    return cases


WOBJ_CASES = {
    "Kine_CalcExtWobj_UserPrm_2P": user_frame_of_two_cases,
    "Kine_CalcExtWobj_UserPrm_3P": user_frame_cases,
    "Kine_CalcExtWobj_UserPrm_Cirle3P": circle_cases,
    "Kine_CalcExtWobj_ObjPrm_3P": object_frame_cases,
    "Kine_CalcGripWobj_UserPrm_3P": user_frame_cases,
    "Kine_CalcGripWobj_ObjPrm_3P": object_frame_cases,
    "Kine_CalcUnFixWobj_ObjPrm_3P": carried_object_cases,
}
