"""The eight postures of a six-axis arm: the same target solved with Cfg4 = 0 to 7, side by side.

A dark stripe marks the side of the wrist that shows how axis 4 is turned, for that is what flipping the wrist changes.
"""

from arms import SIX_AXIS, checked_six_axis_chain, demand, demand_same, draw_six_axis, draw_tool, tcp_of
from geometry import Camera, add, axis, from_frame, mix, scale
from library import Tool, frame_of, joints_of, pose_of
from scene import Scene
from svg import BLUE, GREY, ORANGE, PALE, Page, SMALL, THIN, TITLE

TOOL = (0.0, 0.0, 150.0, 0.0, 0.0, 0.0)
TARGET = (560.0, 240.0, 600.0, 32.0, 145.0, 10.0)
WIDTH, HEIGHT = 236, 350
BITS = ((4, "shoulder back"), (2, "elbow far"), (1, "wrist flipped"))


def words(cfg4):
    names = [name for bit, name in BITS if cfg4 & bit]
    return ", ".join(names) if names else "no bit set"


def panel(library, page, cfg4, left, top):
    tool = Tool(HeldByRobot=1, TFrame=frame_of(TOOL))
    joints = library.inverse(pose_of(TARGET, cfg=(0, 0, 0, cfg4)), tool)
    q = tuple(joints.Axis)[:6]
    pose = library.forward(joints_of(q), tool=tool)
    demand(pose.Cfg[3] == cfg4, f"posture {cfg4} came back as {pose.Cfg[3]}")
    chain = checked_six_axis_chain(library, SIX_AXIS, q)
    tcp = tcp_of(chain[6], TOOL)
    demand_same(tcp, from_frame(*TARGET), f"the target in posture {cfg4}")

    page.path(f"M{left + 4} {top + 4}h{WIDTH - 8}v{HEIGHT - 8}h{8 - WIDTH}Z", PALE, THIN)
    page.text((left + WIDTH / 2, top + 26), f"Cfg4 = {cfg4}", size=TITLE, bold=True)
    if cfg4:
        page.text((left + WIDTH / 2, top + 44), " + ".join(str(bit) for bit, _ in BITS if cfg4 & bit), size=SMALL)
    page.text((left + WIDTH / 2, top + 60), words(cfg4), size=SMALL if cfg4 < 7 else 11, colour=BLUE)
    scene = Scene(page, Camera(-52.0, 14.0, 0.155, (200.0, 90.0, 560.0), (left + 104, top + 190)))
    draw_six_axis(scene, chain)
    draw_tool(scene, chain[6], tcp)
    # What axis 4 turns is marked on the side of -X of frame 4.
    mark = scale(48.0, axis(chain[4], 0))
    ends = [add(mix(chain[5][1], chain[3][1], share), mark) for share in (0.12, 0.42)]
    scene.above(lambda: page.line(scene.at(ends[0]), scene.at(ends[1]), ORANGE, 3.2))
    scene.triad(tcp, 130.0, letters=False, width=1.5)
    scene.paint()
    values = [f"{0.0 if abs(v) < 0.05 else v:.1f}".replace("-", "\u2212") for v in q]
    page.text((left + WIDTH / 2, top + HEIGHT - 28), "q1 q2 q3 = " + ",  ".join(values[:3]), size=13, colour=GREY)
    page.text((left + WIDTH / 2, top + HEIGHT - 12), "q4 q5 q6 = " + ",  ".join(values[3:]), size=13, colour=GREY)


def draw(library):
    library.set_six_axis(SIX_AXIS)
    page = Page(4 * WIDTH, 2 * HEIGHT + 30, "The eight postures of a six-axis arm that reach one target")
    for cfg4 in range(8):
        panel(library, page, cfg4, WIDTH * (cfg4 % 4), HEIGHT * (cfg4 // 4))
    page.text((2 * WIDTH, 2 * HEIGHT + 18), "Arrows: the tool frame, the same in all eight.  Orange: a mark on the "
              "part that turns with axis 4.  Degrees.", size=SMALL, colour=GREY)
    return page.done()
