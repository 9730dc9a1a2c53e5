"""A stationary tool: the robot holds the work object and brings it to a tool that stands in the world."""

from arms import SIX_AXIS, checked_six_axis_chain, demand_same, draw_six_axis
from geometry import Camera, from_frame, inverse, product, move, add, point
from library import Tool, Wobj, frame_of, numbers_of, pose_of
from scene import JOINT, SAGE, TOOL, Scene
from svg import GREY, INK, NORMAL, Page, SMALL

TIP = (1080.0, -40.0, 700.0, 0.0, -70.0, 0.0)  # points back at the robot and upwards
USER = (-130.0, -140.0, 60.0, 0.0, 0.0, 0.0)  # in the flange: a corner of the gripper on it
PART = (-60.0, -60.0, 150.0, 0.0, 0.0, 0.0)  # in the user frame
SIZE = (360.0, 380.0, 150.0)
TARGET = (250.0, 40.0, 100.0, 0.0, 6.0, 176.0)  # the tool as the part sees it


def draw(library):
    library.set_six_axis(SIX_AXIS)
    tool = Tool(HeldByRobot=0, TFrame=frame_of(TIP))
    wobj = Wobj(HeldByRobot=1, UFFix=1, UFrame=frame_of(USER), OFrame=frame_of(PART))
    joints = library.inverse(pose_of(TARGET), tool, wobj)
    pose = library.forward(joints, "Kine_JointToWobjPos", tool, wobj)
    chain = checked_six_axis_chain(library, SIX_AXIS, tuple(joints.Axis)[:6])
    tip, flange = from_frame(*TIP), chain[6]
    user = product(flange, from_frame(*USER))
    part = product(user, from_frame(*PART))
    demand_same(from_frame(*numbers_of(pose.Frame)), product(inverse(part), tip), "the tool in the part")

    page = Page(860, 700, "A stationary tool and a held work object")
    scene = Scene(page, Camera(-52.0, 18.0, 0.46, (480.0, 0.0, 560.0), (350.0, 335.0)))
    scene.floor((-300.0, 1350.0), (-450.0, 450.0), 150.0)
    draw_six_axis(scene, chain)
    scene.box(product(user, move(z=-60.0)), (260.0, 280.0, 60.0), (JOINT[0], JOINT[1], JOINT[0]), lift=10.0)
    scene.box(product(part, move(z=-SIZE[2])), SIZE, SAGE, lift=60.0)
    tail, neck = point(tip, (0.0, 0.0, -170.0)), point(tip, (0.0, 0.0, -260.0))
    foot = (neck[0], neck[1], 0.0)
    scene.cylinder(foot, add(foot, (0.0, 0.0, 25.0)), 110.0, colours=JOINT)
    scene.cylinder(add(foot, (0.0, 0.0, 25.0)), neck, 30.0)
    scene.link(neck, tail, 32.0, 32.0, lift=-100.0)
    scene.cylinder(tail, tip[1], 26.0, 2.0, TOOL, lift=400.0)
    scene.triad(chain[0], 230.0, "world = base", (-18, 6), anchor="end")
    scene.triad(flange, 120.0, "flange", (-16, -8), anchor="end", letters=False)
    scene.triad(user, 90.0, "user", (-10, 20), anchor="end", letters=False)
    scene.triad(part, 110.0, "object", (10, 20), anchor="start")
    scene.triad(tip, 130.0, "tcp", (-2, -14), anchor="end", letters=False)
    scene.paint()
    at = scene.at
    for start, end, bend, name, shift, anchor in [
        (chain[0], flange, 150, "joints", (-8, -8), "end"),
        (flange, user, 20, "UFrame", (14, -4), "start"),
        (user, part, 18, "OFrame", (10, -2), "start"),
        (chain[0], tip, -90, "TFrame", (6, 20), "start"),
        (part, tip, -26, "pose", (8, 14), "start"),
    ]:
        middle = page.bow(at(start[1]), at(end[1]), bend, GREY, NORMAL, "6 4")
        page.text((middle[0] + shift[0], middle[1] + shift[1]), name, anchor=anchor, colour=INK, italic=True)
    page.text((20, 686), "TFrame: the tool in the world.  UFrame: in the flange.  "
              "pose: the tcp in the object frame, as the held work object sees it.", anchor="start", size=SMALL,
              colour=GREY)
    return page.done()
