#!/usr/bin/env python3
"""Computes the golden tables with 50 decimal digits, from the formulas alone.

    make_golden.py            writes the tables beside this file
    make_golden.py --check    compares them with the tables beside this file; 1 when they differ,
                              77 when python3-mpmath is missing (the test then counts as skipped)

Every input is a double, taken at its exact value; every result is rounded once. Lengths are in mm, angles
in degrees unless a column says rad. Lines that begin with '#' name the columns.
"""
import os
import sys

try:
    import mpmath
    from mpmath import mp, mpf
except ImportError:
    print("SKIPPED: python3-mpmath is missing, the golden tables were NOT recomputed")
    sys.exit(77)

import calibration_tables
import four_axis as four
import six_axis as six
from arms import ARMS, FOUR_ARM_TYPES
from chain import Cell, forward_chain, solve_chain
from frames import euler, from_pose, inverse, multiply, to_pose
from numbers_out import Random, deg, doubles, rad, table, text

mp.dps = 50
HERE = os.path.dirname(os.path.abspath(__file__))


def arms_table():
    rows = [[name, str(kind)] + text(values) for name, (kind, values) in ARMS.items()]
    return table("Parameter records, double by double.", "name type doubles", rows)


# A pose with its angles in degrees.
def degrees(pose):
    return list(pose[:3]) + [deg(v) for v in pose[3:]]


def radians(frame):
    return [mpf(v) for v in frame[:3]] + [rad(v) for v in frame[3:]]


# --- arm type 6 ---------------------------------------------------------------------------------

SIX_ARMS = ["puma", "puma_gravity", "wrist", "wrist_calibrated", "wrist_leaning"]
NO_LOAD = [0.0, 0.0, 0.0, 0.0]


def random_six_joints(rng, arm):
    """Joints inside the range that an inverse returns, away from every singularity."""
    while True:
        q = [rng.uniform(-170, 170), rng.uniform(-100, 100), rng.uniform(-80, 240), rng.uniform(-170, 170),
             rng.uniform(-150, 150), rng.uniform(-170, 170)]
        if six.is_regular(arm, [rad(v) for v in q]):
            return q


def random_six_case(rng, name):
    arm = six.Arm(ARMS[name][1])
    q = random_six_joints(rng, arm)
    tool = [rng.uniform(-200, 200) for _ in range(3)] + [rng.uniform(-80, 80) for _ in range(3)]
    tool_load = [rng.uniform(0, 6), rng.uniform(-90, 90), rng.uniform(-90, 90), rng.uniform(0, 150)]
    payload = [rng.uniform(0, 4), rng.uniform(-60, 60), rng.uniform(-60, 60), rng.uniform(0, 90)]
    return arm, q, tool, tool_load, payload


def six_forward_table(rng):
    cases = [("puma", q, [0.0] * 6, NO_LOAD, NO_LOAD) for q in (
        [180.0, 90.0, 0.0, 0.0, 0.0, 0.0], [10.0, 20.0, 30.0, 40.0, 50.0, 60.0],
        [400.0, -20.0, 30.0, -350.0, 50.0, 777.0], [190.0, 45.0, -170.0, 5.0, -45.0, 3.0])]
    # The load bends the arm by more than 2 degrees, so it counts as rigid.
    cases.append(("puma_gravity", [5.0, -80.0, 10.0, 15.0, 40.0, 30.0], [0.0, 0.0, 90.0, 0.0, 0.0, 0.0],
                  [0.0, 0.0, 0.0, 0.0], [400.0, 0.0, 0.0, 0.0]))
    # Twists that belong to no nominal arm.
    cases.append(("example_twists", [0.0] * 6, [0.0] * 6, NO_LOAD, NO_LOAD))
    cases.append(("example_twists", [11.0, -22.0, 33.0, 44.0, -55.0, 66.0], [1.0, 2.0, 3.0, 4.0, 5.0, 6.0],
                  NO_LOAD, NO_LOAD))
    for name in SIX_ARMS:
        for _ in range(16):
            _, q, tool, tool_load, payload = random_six_case(rng, name)
            cases.append((name, q, tool, tool_load, payload))
    rows = []
    for name, q, tool, tool_load, payload in cases:
        arm = six.Arm(ARMS[name][1])
        angles = [rad(v) for v in q]
        block = six.tool_block(radians(tool), tool_load, payload)
        pose = to_pose(six.tool_matrix(arm, angles, block))
        vision = to_pose(six.frame5_matrix(arm, angles))
        rows.append([name] + text(q + tool + tool_load + payload) + text(degrees(pose)) +
                    text(degrees(vision)) + [str(v) for v in six.config(arm, angles)])
    return table("Forward, arm type 6.",
                 "arm q[6] tool[6] toolMass toolCog[3] loadMass loadCog[3] pose[6] visionPose[6] cfg[4]", rows)


def six_gravity_table(rng):
    cases = [("gravity_check", [0.0] * 6, [10.0, 0.0, 0.0, 0.0]), ("gravity_check", [0.0] * 6, [10.0, 0.0, 0.0, 0.1]),
             # Gives way by more than 2 degrees, so the arm counts as rigid.
             ("gravity_check", [0.0] * 6, [2000.0, 0.0, 0.0, 0.0])]
    for name in ["gravity_check", "puma_gravity", "wrist_calibrated", "wrist_leaning"]:
        arm = six.Arm(ARMS[name][1])
        for _ in range(15):
            q = [rng.uniform(-180, 180) for _ in range(6)]
            cases.append((name, q, [rng.uniform(0, 12)] + [rng.uniform(-0.2, 0.2) for _ in range(3)]))
    rows = []
    for name, q, load in cases:
        arm = six.Arm(ARMS[name][1])
        angles = [rad(v) for v in q]
        exact = [mpf(v) for v in load]
        rows.append([name] + text(q + load) + text(six.payload_torques(arm, angles, exact)) +
                    text(six.link_torques(arm, angles)) + text(six.deflection(arm, angles, exact)))
    return table("Gravity, arm type 6: torques in N mm, deflections in rad, centre of gravity in METRES.",
                 "arm q[6] mass cog[3] payload2 payload3 payload5 link2 link3 link5 dq2 dq3 dq5", rows)


def six_inverse_table(rng):
    rows = []
    for name in SIX_ARMS:
        for case in range(4):
            arm, q, tool, tool_load, payload = random_six_case(rng, name)
            block = six.tool_block(radians(tool), tool_load, payload)
            pose = doubles(degrees(to_pose(six.tool_matrix(arm, [rad(v) for v in q], block))))
            for posture in range(8):
                turns = [int(rng.uniform(-9, 10)) if case % 2 else 0 for _ in range(3)]
                code, solution = six.solve(arm, radians(pose), block, turns + [posture])
                if code is None:
                    continue
                rows.append([name] + text(pose + tool + tool_load + payload) +
                            [str(v) for v in turns + [posture]] + ["0x%04X" % code] +
                            text([deg(v) for v in solution] if code == 0 else [mpf(0)] * 6))
    return table("Inverse, arm type 6: the joints that reproduce the pose on the full chain.",
                 "arm pose[6] tool[6] toolMass toolCog[3] loadMass loadCog[3] cfg[4] code q[6]", rows)


# --- arm types 4 and 4110 -----------------------------------------------------------------------

FOUR_ARMS = ["scara", "scara_tilted", "scara_long", "scara_steep"]


def random_four_case(rng):
    tool = [rng.uniform(-80, 80), rng.uniform(-80, 80), rng.uniform(-60, 60), rng.uniform(-170, 170)]
    side = 1.0 if rng.uniform(0, 1) < 0.5 else -1.0
    return [rng.uniform(-175, 175), side * rng.uniform(15, 165), rng.uniform(-3000, 3000),
            rng.uniform(-900, 900)], tool


def four_forward_table(rng):
    cases = []
    for name in FOUR_ARMS:
        for kind in FOUR_ARM_TYPES:
            cases.append((kind, name, [0.0, 0.0, 360.0, 0.0], [0.0] * 4))
            for _ in range(12):
                q, tool = random_four_case(rng)
                if kind == 4110:
                    q[0] += 360.0 * int(rng.uniform(-3, 4))
                    q[1] = rng.uniform(-900, 900)
                cases.append((kind, name, q, tool))
    rows = []
    for kind, name, q, tool in cases:
        arm = four.Arm(kind, ARMS[name][1])
        angles = [rad(v) for v in q]
        pose = four.tool_pose(arm, angles, four.tool_of(tool))
        vision = four.planar_pose(arm, angles)
        rows.append([str(kind), name] + text(q + tool) + text(degrees(pose)) + text(degrees(vision)) +
                    [str(v) for v in four.config(arm, angles)])
    return table("Forward, arm types 4 and 4110.", "type arm q[4] toolX toolY toolZ toolA pose[6] visionPose[6] cfg[4]",
                 rows)


def four_inverse_table(rng):
    cases = []
    for name in FOUR_ARMS:
        for kind in FOUR_ARM_TYPES:
            arm = four.Arm(kind, ARMS[name][1])
            for _ in range(10):
                while True:
                    q, tool = random_four_case(rng)
                    pose = doubles(degrees(four.tool_pose(arm, [rad(v) for v in q], four.tool_of(tool))))
                    if abs(pose[3]) < 170:
                        break
                for side in (1, -1):
                    turns = [int(rng.uniform(-9, 10)) for _ in range(3)]
                    cfg = [side, 0, 0, turns[2]] if kind == 4 else [side] + turns
                    cases.append((kind, name, pose[:4], tool, cfg))
    flat = [0.0] * 4
    for kind in FOUR_ARM_TYPES:
        cases += [(kind, "scara_long", [400.0, -100.0, 10.0, 5.0], flat, [0, 0, 0, 0]),
                  (kind, "scara_long", [400.0, -100.0, 10.0, 5.0], flat, [2, 0, 0, 0]),
                  (kind, "scara_long", [800.0, 100.0, 10.0, 5.0], flat, [1, 0, 0, 0]),
                  (kind, "scara_long", [30.0, 20.0, 10.0, 5.0], flat, [1, 0, 0, 0]),
                  (kind, "scara_long", [800.0, 0.0, 10.0, 5.0], flat, [1, 0, 0, 0]),
                  (kind, "scara_long", [0.0, 50.0, 10.0, 5.0], flat, [-1, 0, 0, 0])]
    # The elbow at 90 degrees is singular for type 4110 with one odd quarter turn of axis 2, and only there.
    for cfg3 in (0, 1, 2, 3, 5, -1, -3):
        cases.append((4110, "scara_long", [425.0, 375.0, 10.0, 5.0], flat, [1, 0, cfg3, 0]))
        cases.append((4110, "scara_long", [425.0, -375.0, 10.0, 5.0], flat, [-1, 0, cfg3, 0]))
    rows = []
    for kind, name, pose, tool, cfg in cases:
        arm = four.Arm(kind, ARMS[name][1])
        target = [mpf(v) for v in pose[:3]] + [rad(pose[3])]
        code, q = four.solve(arm, target, four.tool_of(tool), cfg)
        rows.append([str(kind), name] + text(list(pose) + tool) + [str(v) for v in cfg] + ["0x%04X" % code] +
                    text([deg(v) for v in q] if code == 0 else [mpf(0)] * 4))
    return table("Inverse, arm types 4 and 4110. The refinement stops within 1e-6 of the target; the "
                 "joints are those it stops at.",
                 "type arm X Y Z A toolX toolY toolZ toolA cfg[4] code q[4]", rows)


# --- configuration integers ---------------------------------------------------------------------

EDGES = [0.0, 1e-4, -1e-4, -6e-4, 89.9994, 89.9996, 90.0, -89.9996, -90.0, -90.0004, -90.0006, 179.9994, 179.9996, 180.0,
         -180.0, -180.0006, 359.9994, 359.9996, 360.0, -360.0, -360.0006, 614.2, -614.2, 12345.6, -12345.6]


def config_table(rng):
    rows = []
    for kind, name in [(6, "puma"), (6, "wrist"), (4, "scara"), (4110, "scara")]:
        cases = [[e, EDGES[(i * 7 + 3) % len(EDGES)], 30.0, EDGES[(i * 11 + 5) % len(EDGES)], -20.0 + i,
                  EDGES[(i * 13 + 1) % len(EDGES)]] for i, e in enumerate(EDGES)]
        cases += [[rng.uniform(-900, 900) for _ in range(6)] for _ in range(15)]
        for q in cases:
            angles = [rad(v) for v in q]
            if kind == 6:
                cfg = six.config(six.Arm(ARMS[name][1]), angles)
            else:
                cfg = four.config(four.Arm(kind, ARMS[name][1]), angles)
            rows.append([str(kind), name] + text(q) + [str(v) for v in cfg])
    return table("Configuration integers; the four-axis arms read the first four axes.", "type arm q[6] cfg[4]", rows)


# --- poses --------------------------------------------------------------------------------------

def pose_table(rng):
    quarter = float(mp.pi / 2)
    poses = [[1.0, 2.0, 3.0, 0.3, quarter, 0.2], [1.0, 2.0, 3.0, 0.3, -quarter, 0.2], [0.0] * 6,
             [5.0, -6.0, 7.0, 3.0, 1.5, -3.0], [5.0, -6.0, 7.0, -3.0, -1.5, 3.0]]
    poses += [[rng.uniform(-900, 900) for _ in range(3)] + [rng.uniform(-3, 3), rng.uniform(-1.5, 1.5), rng.uniform(-3, 3)]
              for _ in range(25)]
    rows = []
    for i, first in enumerate(poses):
        second = poses[(i + 9) % len(poses)]
        a = from_pose([mpf(v) for v in first])
        product = multiply(a, from_pose([mpf(v) for v in second]))
        rows.append(text(first + second) + text(flat_matrix(a)) + text(list(euler(a))) + text(flat_matrix(inverse(a))) +
                    text(to_pose(product)))
    return table("Pose conversions, angles in rad.",
                 "p[6] s[6] matrix(p)[12] eulerAngles(matrix(p))[3] inverse(matrix(p))[12] pose(p*s)[6]", rows)


def flat_matrix(m):
    return [m[i][j] for i in range(3) for j in range(3)] + [m[i][3] for i in range(3)]


# --- complete chains ----------------------------------------------------------------------------

def random_frame(rng, reach, tilt):
    return [rng.uniform(-reach, reach) for _ in range(3)] + [rng.uniform(-tilt, tilt) for _ in range(3)]


UNIT_NAMES = {0: "world", 1: "linear", 2: "rotary", 3: "two_rotary"}


def random_cell(rng, kind, name, stationary, wobj_kind, carrier_kind):
    cell = Cell(kind, name)
    if kind == 6:
        _, cell.q, tool, tool_load, payload = random_six_case(rng, name)
    else:
        cell.q, flat = random_four_case(rng)
        tool = flat[:3] + [flat[3], 0.0, 0.0]
        tool_load, payload = NO_LOAD, NO_LOAD
        if kind == 4110:
            cell.q[0] += 360.0 * int(rng.uniform(-2, 3))
            cell.q[1] += 360.0 * int(rng.uniform(-2, 3))
    cell.ext = [rng.uniform(-120, 120) for _ in range(6)]
    cell.tool_load, cell.payload = tool_load, payload
    carried, standing = tool, random_frame(rng, 700, 60)
    objects = random_frame(rng, 90, 50)
    if stationary:
        # What the arm carries is the work object: user and object frame on the flange.
        cell.tool_held, cell.wobj_held, cell.wobj_fix = 0, 1, 1
        cell.tool, cell.user, cell.object = standing, carried, objects
        if kind != 6:
            cell.user = carried[:4] + [rng.uniform(-30, 30), rng.uniform(-30, 30)]
    else:
        cell.tool, cell.user, cell.object = carried, standing, objects
        cell.wobj_fix = 0 if wobj_kind else 1
        cell.wobj_unit = 1 if wobj_kind else 0
    order = [3, 0, 5, 1, 4, 2]
    for index, unit_kind in ((1, wobj_kind), (2, carrier_kind)):
        if unit_kind:
            count = 2 if unit_kind == 3 else 1
            cell.units[index] = (unit_kind, count, [order[2 * index - 2], order[2 * index - 1]],
                                 [random_frame(rng, 600, 80), random_frame(rng, 300, 80)])
    cell.carrier = 2 if carrier_kind else None
    cell.name = "%s_%d_%s_on_%s_base_on_%s" % (name, kind, "stationary_tool" if stationary else "held_tool",
                                              UNIT_NAMES[wobj_kind], UNIT_NAMES[carrier_kind])
    return cell


def chains_table(rng):
    cells = []
    for kind, name in [(6, "puma"), (6, "wrist_calibrated"), (4, "scara"), (4, "scara_tilted"), (4110, "scara"),
                       (4110, "scara_tilted")]:
        for carrier_kind in (0, 1, 2, 3):
            for wobj_kind in (0, 1, 2, 3):
                cells.append((kind, name, False, wobj_kind, carrier_kind))
            cells.append((kind, name, True, 0, carrier_kind))
    lines = ["# Complete chains. One block a case; every line is a name and its values.",
             "# unit: index kind axisCount paramIndex[2] axisFrame[2][6]; carrier: the unit under the robot",
             "# tool: held frame[6] mass cog[3]; wobj: held fix unit userFrame[6] objectFrame[6]; load: mass cog[3]",
             "# solved: the joints that the inverse gives for the pose in the object"]
    for setup in cells:
        cell, result = well_placed_cell(rng, *setup)
        lines.append("case " + cell.name)
        lines.append("arm %d %s" % (cell.kind, cell.arm_name))
        for index, (unit_kind, count, params, frames) in sorted(cell.units.items()):
            lines.append(" ".join(["unit", str(index), str(unit_kind), str(count)] + [str(p) for p in params] +
                                  text(frames[0] + frames[1])))
        if cell.carrier is not None:
            lines.append("carrier %d" % cell.carrier)
        lines.append(" ".join(["tool", str(cell.tool_held)] + text(cell.tool + cell.tool_load)))
        lines.append(" ".join(["wobj", str(cell.wobj_held), str(cell.wobj_fix), str(cell.wobj_unit)] +
                              text(cell.user + cell.object)))
        lines.append(" ".join(["load"] + text(cell.payload)))
        lines.append(" ".join(["joints"] + text(cell.q)))
        lines.append(" ".join(["ext"] + text(cell.ext)))
        for frame in ("base", "flange", "world", "object"):
            lines.append(" ".join([frame] + text(degrees(result[frame]))))
        lines.append(" ".join(["cfg"] + [str(v) for v in result["cfg"]]))
        lines.append(" ".join(["solved"] + text([deg(v) for v in result["solved"]])))
        lines.append("end")
    return "\n".join(lines) + "\n"


def well_placed_cell(rng, *setup):
    """A cell with every result clear of the ends of the angles' ranges."""
    while True:
        cell = random_cell(rng, *setup)
        result = forward_chain(cell)
        poses = [degrees(result[f]) for f in ("base", "flange", "world", "object")]
        if any(abs(p[3]) > 170 or abs(p[5]) > 170 or abs(p[4]) > 85 for p in poses):
            continue
        code, q = solve_chain(cell, result)
        if code == 0:
            result["solved"] = q
            return cell, result


def all_tables():
    return {
        "arms.txt": arms_table(),
        "six_forward.txt": six_forward_table(Random(11)),
        "six_gravity.txt": six_gravity_table(Random(12)),
        "six_inverse.txt": six_inverse_table(Random(13)),
        "four_forward.txt": four_forward_table(Random(14)),
        "four_inverse.txt": four_inverse_table(Random(15)),
        "config.txt": config_table(Random(16)),
        "poses.txt": pose_table(Random(17)),
        "chains.txt": chains_table(Random(18)),
        **calibration_tables.tables(),
    }


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        print(__doc__)
        return 2
    bad = 0
    for name, content in all_tables().items():
        path = os.path.join(HERE, name)
        if not check:
            with open(path, "w", encoding="ascii", newline="\n") as out:
                out.write(content)
            continue
        try:
            with open(path, encoding="ascii", newline="") as stored:
                same = stored.read() == content
        except OSError:
            same = False
        if not same:
            print("%s differs from what this script computes" % name)
            bad = 1
    if check and not bad:
        print("all tables are what this script computes (mpmath %s)" % mpmath.__version__)
    return bad


if __name__ == "__main__":
    sys.exit(main())
