"""Taught sets of the positioner and track calibrations: exact, disturbed, badly spread, refused."""
from mpmath import mp

from calibration import Case, UnitSetup, axis_frame
from frames import apply, inverse, multiply, rot_z, to_pose
from numbers_out import rad
from taught_sets import (EXACT, SHOWN, STEEP, STYLES, angles_turn, beyond, framed, heading, nearly_vertical,
                         random_angles, random_point, taught, taught_point)

EDGE = [[180.0, -180.0, 180.0], [0.0, 0.0, 0.0], [-180.0, 180.0, -180.0]]
TURNED_TWICE = [1.0, 2.0, 3.0, 400.0, -200.0, 720.0]


def on_axis(rng, style, frame, param, radius, values):
    """A mark beside an axis, touched with the axis at these values (deg)."""
    poses = []
    for value in values:
        ext = [rng.uniform(-170, 170) for _ in range(6)]
        ext[param] = value
        point = apply(multiply(frame, rot_z(rad(value))), [radius, 0, 40])
        poses.append(taught_point(rng, style, point) + ext)
    return poses


def values_of(rng):
    start = rng.uniform(-100, 0)
    return [start, start + round(rng.uniform(40, 120)), start + round(rng.uniform(150, 270))]


# An axis that points up or down and leaves the XY plane well.
def leaning(rng):
    over = 180 if rng.uniform(0, 1) < 0.5 else 0
    return angles_turn([rng.uniform(-180, 180), rng.uniform(-40, 40), rng.uniform(-40, 40) + over])


def axis_sets(rng, param):
    """Taught sets of an axis by their names, each with the axis read by external axis param."""
    sets = []

    def add(name, style, turn, reach, radius, values):
        frame = framed(turn, random_point(rng, reach))
        sets.append((name, on_axis(rng, style, frame, param, radius, values)))

    for name, style in STYLES * 3:
        add(name, style, leaning(rng), 1500, rng.uniform(60, 700), values_of(rng))
    for away in (5, 0.5, 0.02, 0.0005):
        turn = angles_turn([35.0, 20.0, 90.0 - away])
        add("axis_%g_degrees_above_the_plane" % away, EXACT, turn, 900, 250, [0, 70, 190])
    add("far", EXACT, leaning(rng), 100000, 300, values_of(rng))
    add("short_arc", EXACT, leaning(rng), 900, 300, [20, 26, 35])
    add("shorter_arc", EXACT, leaning(rng), 900, 300, [20.0, 21.0, 22.5])
    add("short_arc_noise_0.1", 0.1, leaning(rng), 900, 300, [20, 29, 40])
    add("backwards", EXACT, leaning(rng), 900, 300, [100, 10, -90])
    add("small", EXACT, leaning(rng), 900, 0.05, [10, 100, 200])
    return sets + whole_number_sets(param)


def whole_number_sets(param):
    ext = [0.0] * 6
    ext[param] = 30.0

    def points(*positions):
        return [list(p) + EDGE[i] + ext for i, p in enumerate(positions)]

    good = points((300.0, 30.0, 5.0), (200.0, 130.0, 5.0), (100.0, 30.0, 5.0))
    return [
        ("axis_upright", good),
        ("axis_upside_down", points((300.0, 30.0, 5.0), (100.0, 30.0, 5.0), (200.0, 130.0, 5.0))),
        ("axis_along_x", points((70.0, 30.0, 5.0), (70.0, -95.0, 130.0), (70.0, -95.0, -120.0))),
        ("axis_along_y", points((30.0, 70.0, 5.0), (-95.0, 70.0, 130.0), (-95.0, 70.0, -120.0))),
        ("first_bisector_along_x", points((30.0, 10.0, 5.0), (30.0, 50.0, 5.0), (-20.0, 20.0, 5.0))),
        ("equal_positions", points((300.0, 30.0, 5.0), (200.0, 130.0, 5.0), (200.0, 130.0, 5.0))),
        ("in_line", points((300.0, 30.0, 5.0), (200.0, 130.0, 15.0), (0.0, 330.0, 35.0))),
        ("angle_beyond_range", beyond(good, 1, 3, 180.001))]


def first_axis_cases(rng, export):
    param = 4
    rotary = UnitSetup(1, 2, 1, 3, 2, [param, 1])
    sets = axis_sets(rng, param)
    cases = [Case(export, name, poses, unit=rotary) for name, poses in sets]
    poses = sets[0][1]
    for name, setup in (("unit_0", UnitSetup(0, 1, 0, 2, 1, [2])),
                        ("unit_2", UnitSetup(2, 3, 2, 3, 2, [5, 0])),
                        ("unit_behind_the_last", UnitSetup(1, 1, 1, 2, 1, [0])),
                        # What kind of axis it is makes no difference here.
                        ("linear_axis", UnitSetup(1, 2, 1, 1, 1, [3], linear=[1] * 6)),
                        ("negative_unit", UnitSetup(-1, 2, 1, 2, 1, [2])),
                        ("unknown_unit", UnitSetup(3, 2, 1, 2, 1, [2])),
                        ("other_unit", UnitSetup(0, 2, 1, 2, 1, [2])),
                        ("unit_without_axes", UnitSetup(1, 2, 1, 2, 0, [2]))):
        cases.append(Case(export, name, poses, unit=setup))
    unknown = UnitSetup(-1, 2, 1, 2, 1, [2])
    for name in ("in_line", "axis_along_x"):
        cases.append(Case(export, name + "_and_unknown_unit", dict(sets)[name], unit=unknown))
    return cases


def further_axis_cases(rng, export):
    second = 3
    setup = UnitSetup(1, 2, 1, 3, 2, [1, second], linear=(1, 0, 0, 0, 1, 1))

    def reference():
        return random_point(rng, 800) + random_angles(rng)

    sets = axis_sets(rng, second)
    cases = [Case(export, name, poses, unit=setup, axis=2, given=reference()) for name, poses in sets]
    poses = sets[0][1]
    for sign, away in STEEP:
        seen = framed(nearly_vertical(rng, sign, away), random_point(rng, 400))
        given = reference_for(rng, poses, second, seen)
        cases.append(Case(export, "steep%+g" % (sign * away), poses, unit=setup, axis=2, given=given))
    many = [2, 0, 5, 1, 4, 3]
    for axis in (1, 2, 3, 6):
        unit = UnitSetup(0, 1, 0, 3, 6, many)
        cases.append(Case(export, "axis_%d_of_six" % axis, poses, unit=unit, axis=axis, given=reference()))
    still = [p[:6] + [0.0] * 6 for p in poses]
    whole = UnitSetup(2, 2, 2, 3, 2, [0, 1])
    # The angles of the reference are not tested.
    name = "axes_at_zero_and_reference_turned_twice"
    cases.append(Case(export, name, still, unit=whole, axis=2, given=TURNED_TWICE))
    lowest = -2 ** 31
    named = dict(sets)
    in_line, equal, beyond_range = named["in_line"], named["equal_positions"], named["angle_beyond_range"]
    two_linear = UnitSetup(1, 2, 1, 3, 2, [1, second], linear=[1] * 6)
    one_axis = UnitSetup(1, 2, 1, 2, 1, [1])
    for name, unit, axis, taught_set in (
            ("linear_axis", two_linear, 2, poses), ("linear_axis_and_in_line", two_linear, 1, in_line),
            ("axis_0", setup, 0, poses), ("axis_0_of_linear_unit", two_linear, 0, poses),
            ("lowest_axis", setup, lowest, poses), ("axis_0_and_in_line", setup, 0, in_line),
            ("unknown_axis", setup, 3, poses), ("unknown_axis_and_in_line", setup, 3, in_line),
            ("no_second_axis", one_axis, 1, poses),
            ("no_second_axis_and_equal_positions", one_axis, 1, equal),
            ("unknown_unit", UnitSetup(3, 2, 1, 3, 2, [1, second]), 2, poses),
            ("negative_unit", UnitSetup(-5, 2, 1, 3, 2, [1, second]), 1, poses),
            ("axis_0_and_angle_beyond_range", setup, 0, beyond_range)):
        cases.append(Case(export, name, taught_set, unit=unit, axis=axis, given=reference()))
    return cases


def reference_for(rng, poses, param, seen):
    """The reference in which the axis of the poses comes out as the frame seen."""
    value = poses[0][6 + param]
    axis = multiply(axis_frame(Case("", "", poses)), rot_z(-rad(value)))
    return taught(rng, EXACT, to_pose(multiply(rot_z(-mp.mpf(value)), axis, inverse(seen))))


# --- the track ----------------------------------------------------------------------------------

def on_track(rng, style, param, turn, mark, travel):
    """A mark in the track's frame, seen from the base that stands turned on the carriage."""
    poses = []
    for place in travel:
        ext = [rng.uniform(-500, 500) for _ in range(6)]
        ext[param] = place
        seen = apply(inverse(heading(turn)), [mark[0] - place] + mark[1:])
        poses.append(taught_point(rng, style, seen) + ext)
    return poses


LINEAR = (0, 0, 1, 0, 0, 0)
TRACK = 2


def track(asked=1, count=2, slot=1, axes=1):
    return UnitSetup(asked, count, slot, 1, axes, [TRACK], linear=LINEAR)


def track_points(positions, places):
    return [list(p) + EDGE[i] + [0.0, 7.0, places[i], 0.0, 0.0, 0.0] for i, p in enumerate(positions)]


def base_cases(rng, export):
    cases = []

    def add(name, style, turn, mark, places):
        cases.append(Case(export, name, on_track(rng, style, TRACK, turn, mark, places), unit=track()))

    for name, style in STYLES * 4:
        start = rng.uniform(-1500, 0)
        places = [start, start + rng.uniform(200, 1500), start - rng.uniform(100, 1500)]
        add(name, style, rng.uniform(-180, 180), random_point(rng, 900), [round(p, 3) for p in places])
    for name, turn in (("along", 0), ("against", 180), ("across", 90), ("across_backwards", -90)):
        add(name, EXACT, turn, [900.0, 400.0, 200.0], [0.0, 250.0, 800.0])
    add("far", EXACT, 33.0, random_point(rng, 100000), [40000.0, -30000.0, 55000.0])
    mark = [800.0, 300.0, 100.0]
    add("one_move_only", 0.5, -50.0, mark, [100.0, 900.0, 100.02])
    add("short_moves", SHOWN, 20.0, mark, [10.0, 10.05, 10.2])
    add("short_moves_noise_0.1", 0.1, 20.0, mark, [10.0, 10.2, 10.3])
    cases += [Case(export, name, track_points(positions, places), unit=track())
              for name, positions, places in whole_number_tracks()]
    return cases + track_unit_cases(export)


def whole_number_tracks():
    good = [(300.0, 30.0, 5.0), (200.0, 40.0, 5.0), (100.0, 50.0, 6.0)]
    o, places, hardly = (0.0, 0.0, 0.0), [0.0, 100.0, 200.0], [0.0, 0.125, 0.0]
    low, middle, high = (300.0, 30.0, 5.0), (300.0, 30.0, 9.0), (300.0, 30.0, 70.0)
    return [
        ("scaled", good, [0.0, 200.0, 400.0]),
        ("marks_far_apart", [o, (90000.0, 0.0, 0.0), (0.0, 90000.0, 50000.0)], [0.0, 100.0, 0.0]),
        # So much more movement than travel that the rotation counts as looking along Z.
        ("hardly_any_travel", [o, (30000.0, 8000.0, 0.0), (0.0, 500.0, 0.0)], hardly),
        ("little_travel", [o, (3000.0, 800.0, 0.0), (0.0, 500.0, 0.0)], hardly),
        ("travel_too_short", good, [5.0, 5.05, 5.09]),
        ("no_travel", good, [5.0, 5.0, 5.0]),
        ("back_and_forth_too_short", good, [5.0, 5.09, 4.91]),
        ("equal_positions", [good[0], good[1], good[0]], places),
        ("lifted_only", [low, middle, high], places),
        ("lifted_but_a_trace", [low, (300.001, 30.002, 9.0), (300.0, 30.002, 70.0)], places),
        ("lifted_and_moved_a_little", [low, (300.003, 30.002, 9.0), (300.0, 30.002, 70.0)], places)]


def track_unit_cases(export):
    """Cases that the unit decides, or what is asked before and after it."""
    poses = track_points([(300.0, 30.0, 5.0), (200.0, 40.0, 5.0), (100.0, 50.0, 6.0)], [0.0, 100.0, 200.0])
    equal = [poses[0]] * 3
    rotary = UnitSetup(1, 2, 1, 2, 1, [TRACK])
    other = UnitSetup(1, 2, 1, 3, 2, [1, TRACK], linear=LINEAR)
    return [Case(export, name, taught_set, unit=unit) for name, unit, taught_set in (
        ("unit_0", track(0, 1, 0), poses), ("unit_behind_the_last", track(1, 1), poses),
        ("rotary_axis", rotary, poses), ("other_axis_linear", other, poses),
        ("negative_unit", track(-1), poses), ("unknown_unit", track(3), poses),
        ("unit_without_axes", track(axes=0), poses),
        ("rotary_axis_and_equal_positions", rotary, equal),
        ("unknown_unit_and_equal_positions", track(-1), equal),
        ("equal_positions_and_no_travel", track(), equal),
        ("angle_beyond_range", track(), beyond(poses, 2, 4, -180.001)),
        ("angle_beyond_range_and_rotary_axis", rotary, beyond(poses, 0, 3, 180.001)))]


POSITIONER_CASES = {
    "Kine_CalcPositionerJ1Prm_3P": first_axis_cases,
    "Kine_CalcPositionerJnPrm_3P": further_axis_cases,
    "Kine_CalcRobotBasePrm_3P": base_cases,
}
