"""Taught sets of the tool calibrations: exact, disturbed, badly spread, refused."""
from calibration import Case
from frames import multiply, rot_x
from numbers_out import rad
from taught_sets import (EXACT, SHOWN, STEEP, STYLES, at, beyond, carrying, framed, heading, headings,
                         nearly_vertical, one_axis_turns, random_angles, random_point, random_turn,
                         small_turns, spread_turns, taught, taught_point, touching)

FOUR_ARMS = (4, 4110)
UNKNOWN_ARM = 5


def three_touches(rng):
    """Arm, name, style, tip and three poses: most of them touch one point with the tip."""
    sets = []

    def six(name, style, turns, reach=900, size=200):
        tip = random_point(rng, size)
        sets.append((6, name, style, tip, touching(rng, style, tip, random_point(rng, reach), turns)))

    for name, style in STYLES * 2:
        six(name, style, spread_turns(rng, 3))
    six("long_tool", EXACT, spread_turns(rng, 3), 900, 2500)
    six("far", EXACT, spread_turns(rng, 3), 100000)
    six("far_noise_0.5", 0.5, spread_turns(rng, 3), 100000)
    six("tiny_tool", EXACT, spread_turns(rng, 3), 900, 0.01)
    for style, suffix in ((EXACT, ""), (0.1, "_noise_0.1")):
        six("nearly_one_axis" + suffix, style, one_axis_turns(rng, [0, 120, -110], 2.0))
        six("small_turns" + suffix, style, small_turns(rng, 3, 40, 0.02))
    poses = [random_point(rng, 40000) + random_angles(rng) for _ in range(3)]
    sets.append((6, "tips_far_apart", SHOWN, random_point(rng, 200), poses))
    # The flange in one line but for less than a millimetre.
    line = [[100.0, 0.0, 0.0], [200.0, 0.7, 0.0], [330.0, -0.1, 0.5]]
    poses = [p + random_angles(rng) for p in line]
    sets.append((6, "nearly_in_line", SHOWN, random_point(rng, 200), poses))
    for arm in FOUR_ARMS:
        sets += four_axis_touches(rng, arm)
    return sets


def four_axis_touches(rng, arm):
    sets = []

    def add(name, style, turns, reach=700):
        tip = random_point(rng, 90)[:2] + [0.0]
        sets.append((arm, name, style, tip, touching(rng, style, tip, random_point(rng, reach), turns)))

    for name, style in STYLES:
        add(name, style, headings(rng, 3))
    add("far", EXACT, headings(rng, 3), 100000)
    add("small_turns", EXACT, [heading(a) for a in (10.0, 10.6, 9.2)])
    add("small_turns_noise_0.1", 0.1, [heading(a) for a in (-80.0, -79.0, -82.0)])
    # The error report is spatial and takes the tilt along; the solution does not look at the heights.
    add("tilted", 0.5, [multiply(turn, rot_x(rad(a))) for turn, a in zip(headings(rng, 3), (2.0, -1.5, 0.7))])
    return sets


def refused_touches(rng):
    """Arm, name and three poses that are refused."""
    sets = []
    for arm in (6,) + FOUR_ARMS:
        turns = spread_turns(rng, 3) if arm == 6 else headings(rng, 3)
        good = touching(rng, SHOWN, random_point(rng, 150)[:2] + [0.0], random_point(rng, 700), turns)
        p0, p1, p2 = [p[:3] for p in good]
        for name, positions in (("first_two_positions_equal", (p0, p0, p2)),
                                ("last_two_positions_equal", (p0, p1, p1)),
                                ("positions_in_line", [[50.0 * i, 20.0 - 30.0 * i, 7.0] for i in range(3)])):
            sets.append((arm, name, [p + pose[3:] for p, pose in zip(positions, good)]))
        sets.append((arm, "equal_orientations", [p[:3] + good[0][3:] for p in good]))
        sets.append((arm, "angle_beyond_range", beyond(good, 2, 4, -180.001)))
    turns = one_axis_turns(rng, [0, 70, -100], 0.0)
    sets.append((6, "one_axis_only", touching(rng, EXACT, [30.0, 40.0, 100.0], [500.0, 0.0, 300.0], turns)))
    sets.append((UNKNOWN_ARM, "unknown_arm", good))
    sets.append((UNKNOWN_ARM, "unknown_arm_angle_beyond_range", beyond(good, 1, 3, 180.001)))
    return sets


def three_pose_cases(rng, export):
    sets = [(arm, name, poses) for arm, name, _, _, poses in three_touches(rng)] + refused_touches(rng)
    return [Case(export, name, poses, arm) for arm, name, poses in sets]


# --- frames from an origin, a Z and an X pose ---------------------------------------------------

def zx_points(rng, frame):
    """Origin, a point on Z and one towards X, not quite square to Z."""
    return [at(frame, 0, 0, 0), at(frame, 0, 0, rng.uniform(60, 300)),
            at(frame, rng.uniform(60, 300), 0, rng.uniform(-40, 40))]


def random_tool_turn(rng, arm):
    return heading(rng.uniform(-180, 180)) if arm in FOUR_ARMS else random_turn(rng)


def zx_frames(rng):
    """Names and orientations of frames with X almost along Z of the reference, or there but for rounding."""
    frames = [("steep%+g" % (s * away), nearly_vertical(rng, s, away)) for s, away in STEEP]
    return frames + [("upright%+d" % s, nearly_vertical(rng, s, 0)) for s in (1, -1)]


def ext_tool_one_zx_cases(rng, export):
    def case(name, style, frame, arm):
        return Case(export, name, [taught_point(rng, style, p) for p in zx_points(rng, frame)], arm)

    cases = []
    for arm in (6,) + FOUR_ARMS + (UNKNOWN_ARM,):
        for name, style in STYLES:
            cases.append(case(name, style, framed(random_tool_turn(rng, arm), random_point(rng, 800)), arm))
    for name, turn in zx_frames(rng):
        cases.append(case(name, EXACT, framed(turn, random_point(rng, 800)), 6))
    cases.append(case("far", EXACT, framed(random_turn(rng), random_point(rng, 100000)), 6))
    o, angles = [100.0, 200.0, 300.0], [[1.0, 2.0, 3.0], [180.0, -180.0, 180.0], [-180.0, 0.0, 0.0]]

    def points(z, x):
        return [p + a for p, a in zip((o, z, x), angles)]

    along, aside = [100.0, 220.0, 330.0], [400.0, 0.0, 0.0]
    for arm in (6,) + FOUR_ARMS:
        for name, poses in (("z_point_at_origin", points(o, aside)),
                            ("x_point_at_origin", points(along, [100.005, 200.0, 300.0])),
                            ("x_above_origin", points(along, [100.0, 200.0, 390.0])),
                            ("x_almost_along_z", points(along, [100.0, 420.0, 640.0])),
                            ("x_along_z", points(along, [100.0, 160.0, 240.0])),
                            ("z_angle_beyond_range", beyond(points(along, aside), 1, 3, 181.0))):
            cases.append(Case(export, name, poses, arm))
    return cases


def zx_poses(rng, style, arm, tip, tool, held):
    """Poses whose tip shows a frame: of the tool held in the first of them, or of the stationary tool."""
    turns = [random_tool_turn(rng, arm) for _ in range(3)]
    frame = framed(multiply(turns[0], tool) if held else tool, random_point(rng, 700))
    poses = [taught(rng, style, carrying(p, t, tip)) for p, t in zip(zx_points(rng, frame), turns)]
    if arm in FOUR_ARMS:
        poses[1] = random_point(rng, 500) + random_angles(rng)
    return poses


def three_pose_zx_cases(rng, export):
    held = "Grip" in export
    sets = three_touches(rng)
    cases = []
    for arm, name, style, tip, poses in sets:
        tool = random_tool_turn(rng, arm)
        cases.append(Case(export, name, poses + zx_poses(rng, style, arm, tip, tool, held), arm))
    for name, turn in zx_frames(rng):
        tip = random_point(rng, 200)
        poses = touching(rng, EXACT, tip, random_point(rng, 900), spread_turns(rng, 3))
        cases.append(Case(export, name, poses + zx_poses(rng, EXACT, 6, tip, turn, held), 6))
    for arm, name, poses in refused_touches(rng)[::2]:
        more = zx_poses(rng, SHOWN, arm, random_point(rng, 90), random_tool_turn(rng, arm), held)
        cases.append(Case(export, name, poses + more, arm))
    return cases + refused_frame_cases(rng, export, sets, held)


def refused_frame_cases(rng, export, sets, held):
    arm, _, style, tip, touches = sets[0]
    origin, z, x = zx_poses(rng, style, arm, tip, random_turn(rng), held)
    # The report of the first three stands although the frame step refuses.
    cases = [Case(export, "z_pose_is_origin", touches + [origin, origin, x], arm),
             Case(export, "x_pose_is_origin_and_z", touches + [origin, origin, origin], arm),
             Case(export, "x_pose_is_z_pose", touches + [origin, z, z], arm),
             Case(export, "angle_beyond_range", beyond(touches + [origin, z, x], 5, 3, 180.5), arm)]
    lifted = [origin[:2] + [origin[2] + step] + origin[3:] for step in (0.0, 60.0, 130.0)]
    cases.append(Case(export, "x_along_z", touches + lifted, arm))
    lifted[2][0] += 0.5
    cases.append(Case(export, "x_half_a_millimetre_aside", touches + lifted, arm))
    arm, _, _, _, touches = sets[-1]
    above = lifted[0][:2] + [900.0] + lifted[0][3:]
    cases.append(Case(export, "x_along_z", touches + [lifted[0], z, above], arm))
    cases.append(Case(export, "z_angle_beyond_range", beyond(touches + lifted, 4, 5, 200.0), arm))
    return cases


# --- the others ---------------------------------------------------------------------------------

def ext_tool_one_cases(rng, export):
    cases = [Case(export, "taught", [random_point(rng, 3000) + random_angles(rng)], arm)
             for arm in (6, 4, 4110, UNKNOWN_ARM) for _ in range(4)]
    edges = [180.0, -180.0, 180.0]
    cases.append(Case(export, "edge_of_range", [[0.1, -1e6, 3e-7] + edges]))
    cases.append(Case(export, "zero", [[0.0] * 6], 4))
    for element, angle in ((3, 180.001), (4, -180.001), (5, 360.0)):
        poses = beyond([[1.0, 2.0, 3.0] + edges], 0, element, angle)
        cases += [Case(export, "angle_beyond_range", poses, arm) for arm in (6, UNKNOWN_ARM)]
    return cases


def five_pose_cases(rng, export):
    cases = []

    def add(name, style, turns, reach=900, size=200):
        tip = random_point(rng, size)
        cases.append(Case(export, name, touching(rng, style, tip, random_point(rng, reach), turns)))

    for name, style in STYLES * 4:
        add(name, style, spread_turns(rng, 5))
    add("far", EXACT, spread_turns(rng, 5), 100000)
    add("far_noise_2", 2.0, spread_turns(rng, 5), 100000)
    add("tip_in_flange", EXACT, spread_turns(rng, 5), 900, 0.0)
    for tilt in (5.0, 0.5, 0.05, 0.005):
        add("one_axis_but_%g_degrees" % tilt, EXACT, one_axis_turns(rng, [0, 60, 130, -50, -120], tilt))
    add("one_axis_but_2_degrees_noise_0.1", 0.1, one_axis_turns(rng, [0, 60, 130, -50, -120], 2.0))
    for size in (30, 6):
        add("small_turns_%d" % size, EXACT, small_turns(rng, 5, size, 1e-9))
    cases.append(Case(export, "tips_far_apart",
                      [random_point(rng, 90000) + random_angles(rng) for _ in range(5)]))
    good = touching(rng, SHOWN, [10.0, 20.0, 130.0], [700.0, 50.0, 400.0], spread_turns(rng, 5))
    cases += [Case(export, "refused_arm", good, arm) for arm in (4, 4110, UNKNOWN_ARM)]
    cases += [Case(export, "equal_orientations", [p[:3] + good[0][3:] for p in good]),
              Case(export, "angle_beyond_range", beyond(good, 4, 3, 180.001)),
              Case(export, "angle_beyond_range_on_refused_arm", beyond(good, 0, 5, -180.001), 4)]
    add("one_axis_only", EXACT, one_axis_turns(rng, [0, 60, 130, -50, -120], 0.0))
    return cases


def two_pose_cases(rng, export):
    cases = []
    for arm in FOUR_ARMS:
        def add(name, style, turns, reach=700, arm=arm):
            tip = random_point(rng, 90)
            cases.append(Case(export, name, touching(rng, style, tip, random_point(rng, reach), turns), arm))

        for name, style in STYLES * 2:
            add(name, style, headings(rng, 2))
        add("far", EXACT, headings(rng, 2), 100000)
        tilted = [multiply(turn, rot_x(rad(a))) for turn, a in zip(headings(rng, 2), (3.0, -2.0))]
        add("tilted", EXACT, tilted)
        for step in (5.0, 0.5, 0.21):
            add("turned_by_%g_degrees" % step, EXACT, [heading(20.0), heading(20.0 + step)])
        add("turned_by_0.1_degrees", EXACT, [heading(20.0), heading(20.1)])
        good = touching(rng, SHOWN, [50.0, 60.0, 0.0], [300.0, 50.0, 100.0], headings(rng, 2))
        lifted = good[0][:2] + [999.0] + good[1][3:]
        cases += [Case(export, "equal_headings", [good[0], good[1][:3] + good[0][3:]], arm),
                  Case(export, "equal_positions_but_height", [good[0], lifted], arm),
                  Case(export, "angle_beyond_range", beyond(good, 1, 3, -180.001), arm)]
    cases += [Case(export, "refused_arm", good, arm) for arm in (6, UNKNOWN_ARM)]
    return cases


TOOL_CASES = {
    "Kine_CalcExtToolPrm_1P": ext_tool_one_cases,
    "Kine_CalcExtToolPrm_1PZX": ext_tool_one_zx_cases,
    "Kine_CalcExtToolPrm_3P": three_pose_cases,
    "Kine_CalcExtToolPrm_3PZX": three_pose_zx_cases,
    "Kine_CalcGripToolPrm_3P": three_pose_cases,
    "Kine_CalcGripToolPrm_3PZX": three_pose_zx_cases,
    "Kine_CalcGripToolPrm_5P": five_pose_cases,
    "Kine_CalcGripToolPrm_Scara2P": two_pose_cases,
}
