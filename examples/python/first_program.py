"""A first program: describe an arm, ask where its tool is, and find the joints that bring it back there."""

from kinedll import Arm, KineError, SixAxisParam, Tool

# The Puma 560, lengths in mm. The twists are those of every such arm and need not be given.
PUMA = SixAxisParam(a2=431.8, a3=20.3, d4=431.8, lateral_offset=-150.05)


def main() -> None:
    tool = Tool((0, 0, 100, 0, 0, 0))  # on the flange, 100 mm long
    with Arm(PUMA) as arm:
        pose = arm.joint_to_wobj_pos([180, 45, 180, 0, -45, 0], tool)
        x, y, z, a, b, c = pose.frame
        print(f"tool centre point: X {x:.4f}  Y {y:.4f}  Z {z:.4f} mm, A {a:.4f}  B {b:.4f}  C {c:.4f} deg")

        # The pose carries the configuration of the joints, so it leads back to the same ones.
        joints = arm.wobj_pos_to_joint(pose, tool)
        print("joints:", *(f"{axis:.4f}" for axis in joints.axis[:6]), "deg")

        try:
            arm.wobj_pos_to_joint((5000, 0, 0, 0, 0, 0), tool)
        except KineError as error:
            print(error)


if __name__ == "__main__":
    main()
