"""The arms of the figures and how they look.

`SIX_AXIS` is an arm of round numbers. Where its links are is computed from the chain of the header, and held against
the library: arms that are cut short behind a link have their flange at that link's end. The first difference ends the
run, so that no figure shows an arm that the library does not know.
"""

from geometry import IDENTITY, add, axis, from_frame, move, norm, point, product, scale, sub, turn_x, turn_y, turn_z
from library import Pose, joints_of, numbers_of
from scene import JOINT, STEEL, TOOL

SIX_AXIS = {"d1": 450.0, "a1": 150.0, "a2": 600.0, "a3": 120.0, "d4": 640.0, "d6": 100.0,
            "alpha1": 90.0, "alpha3": 90.0, "alpha4": -90.0, "alpha5": 90.0}
FOUR_AXIS = {"Link1Length": 350.0, "Link2Length": 300.0, "ZOffset": 380.0, "ScrewLead": 20.0}

SHORTEST = 1e-5  # mm, of a2 and d4
AGREEMENT = 1e-3  # mm, and the same per metre for directions


def six_axis_chain(arm, q):
    """Base from: base, the five link frames, flange."""
    def value(name):
        return arm.get(name, 0.0)
    theta = (q[0], q[1] + 90.0, q[2], q[3], q[4])
    d = (value("d1"), 0.0, value("d3"), value("d4"), value("d5"))
    chain = [IDENTITY]
    for i in range(5):
        link = product(turn_z(theta[i]), move(z=d[i]), move(x=value(f"a{i + 1}")), turn_x(value(f"alpha{i + 1}")))
        if i == 1:
            link = product(link, turn_y(value("beta2")))
        chain.append(product(chain[-1], link))
    chain.append(product(chain[-1], turn_z(q[5]), move(z=value("d6"))))
    return chain


def checked_six_axis_chain(library, arm, q):
    """The chain, after the library has agreed. Leaves the library with this arm and no mechanical units."""
    chain = six_axis_chain(arm, q)
    joints = joints_of(q)
    cut_behind = {1: {"a2": SHORTEST, "a3": 0.0, "d3": 0.0, "d4": SHORTEST, "d6": 0.0},
                  2: {"a3": 0.0, "d3": 0.0, "d4": SHORTEST, "d6": 0.0},
                  3: {"d4": SHORTEST, "d6": 0.0}}
    for link, cut in cut_behind.items():
        library.set_six_axis({**arm, **cut})
        end = numbers_of(library.forward(joints).Frame)[:3]
        demand(norm(sub(end, chain[link][1])) < AGREEMENT, f"link {link} ends at {end}")
    library.set_six_axis(arm)
    wrist = Pose()
    library.call("Kine_FKineVision", joints, wrist)
    demand_same(from_frame(*numbers_of(wrist.Frame)), chain[5], "the wrist")
    demand_same(from_frame(*numbers_of(library.forward(joints).Frame)), chain[6], "the flange")
    return chain


def checked_four_axis_chain(library, arm, q):
    """Base from: base, elbow (before and behind the tilt of link 1), the foot of the screw, the flange."""
    def value(name):
        return arm.get(name, 0.0)
    chain = [IDENTITY]
    for i, angle in ((1, q[0]), (2, q[1])):
        start = product(chain[-1], turn_z(angle))
        end = product(start, move(x=value(f"Link{i}Length")))
        chain.append(product(end, turn_x(value(f"Link{i}TiltX")), turn_y(value(f"Link{i}TiltY"))))
    chain.append(product(chain[-1], move(z=value("ZOffset") + value("ScrewLead") * q[2] / 360.0), turn_z(q[3])))
    library.set_four_axis(arm)
    flange = numbers_of(library.forward(joints_of(q)).Frame)
    demand(norm(sub(flange[:3], chain[3][1])) < AGREEMENT, f"the flange at {flange}")
    return chain


def demand(holds, what):
    if not holds:
        raise ValueError(f"the figure and the library differ: {what}")


def demand_same(a, b, what):
    """Two transforms agree in position and in all three directions."""
    demand(norm(sub(a[1], b[1])) < AGREEMENT, f"{what} at {a[1]}, not {b[1]}")
    for k in range(3):
        demand(norm(sub(axis(a, k), axis(b, k))) < AGREEMENT / 1000.0, f"axis {k} of {what}")


def draw_six_axis(scene, chain, base=IDENTITY, plate=True, colours=STEEL, joints=JOINT):
    """Bodies round the chain; the radii are looks only."""
    frames = [product(base, frame) for frame in chain]
    root, shoulder, elbow, forearm, _, wrist, flange = frames

    def origin(frame, x=0.0, y=0.0, z=0.0):
        return point(frame, (x, y, z))
    height = chain[1][1][2]
    if plate:
        scene.cylinder(origin(root), origin(root, z=40.0), 150.0, colours=joints, lift=-60.0)
    scene.cylinder(origin(root, z=40.0 if plate else 0.0), origin(root, z=height - 90.0), 115.0, 100.0, colours,
                   lift=-50.0)
    scene.link(origin(root, z=height - 70.0), shoulder[1], 98.0, 88.0, colours)
    scene.joint(shoulder[1], axis(shoulder, 2), 82.0, 70.0, joints)
    scene.link(shoulder[1], elbow[1], 66.0, 54.0, colours)
    scene.joint(elbow[1], axis(elbow, 2), 68.0, 58.0, joints)
    along = axis(forearm, 2)
    scene.link(elbow[1], forearm[1], 54.0, 54.0, colours)
    length = norm(sub(wrist[1], forearm[1]))
    scene.cylinder(add(forearm[1], scale(-60.0, along)), add(forearm[1], scale(0.32 * length, along)), 52.0, 50.0,
                   colours)
    scene.cylinder(add(forearm[1], scale(0.32 * length, along)), add(forearm[1], scale(length - 20.0, along)), 44.0,
                   36.0, colours)
    scene.joint(wrist[1], axis(frames[4], 2), 46.0, 40.0, joints)
    out = axis(flange, 2)
    scene.cylinder(wrist[1], add(flange[1], scale(-16.0, out)), 30.0, colours=colours)
    scene.cylinder(add(flange[1], scale(-16.0, out)), flange[1], 40.0, colours=joints, lift=4.0)


def draw_tool(scene, flange, tcp, radius=16.0, colours=TOOL, lift=10.0):
    """A pointed tool from the flange: straight up to below the tip, then along its Z axis."""
    out = axis(tcp, 2)
    length = norm(sub(tcp[1], flange[1]))
    neck = add(tcp[1], scale(-0.38 * length, out))
    scene.link(flange[1], neck, radius, radius, colours)
    scene.cylinder(neck, tcp[1], radius, 1.5, colours, lift)


def tcp_of(flange, tool_numbers):
    return product(flange, from_frame(*tool_numbers))
