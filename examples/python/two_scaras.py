"""Two four-axis arms in one process: each reaches for the same point, with the elbow on either side."""

from kinedll import Arm, FourAxisParam, Pose, Tool

SMALL = FourAxisParam(link1_length=325, link2_length=275, z_offset=50, screw_lead=20)
LARGE = FourAxisParam(link1_length=425, link2_length=375, z_offset=-120, screw_lead=16)


def main() -> None:
    gripper = Tool((0, 30, -60, 0, 0, 0))  # 30 mm beside the flange and 60 mm below it
    with Arm(SMALL) as small, Arm(LARGE) as large:
        for name, arm in (("small", small), ("large", large)):
            for side in (1, -1):
                target = Pose((400, 100, -80, 45, 0, 0), cfg1=side)
                q1, q2, q3, q4 = arm.wobj_pos_to_joint(target, gripper).axis[:4]
                print(f"{name} arm, elbow {side:+d}: {q1:9.4f} {q2:9.4f} {q3:10.4f} {q4:9.4f} deg")


if __name__ == "__main__":
    main()
