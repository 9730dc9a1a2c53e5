"""Time per call of the package, in microseconds: the best of several runs. Set KINEDLL_LIBRARY to the library.

Prints one line per call; README.md shows such a run.
"""

import timeit

from kinedll import Arm, Joints, KineError, SixAxisParam, Tool

WRIST = SixAxisParam(a1=100, a2=705, a3=135, d4=755, d6=85, d1=615)


def microseconds(function, calls=2000, runs=9):
    return min(timeit.repeat(function, number=calls, repeat=runs)) / calls * 1e6


def refused(arm, target, tool):
    try:
        arm.wobj_pos_to_joint(target, tool)
    except KineError as error:
        return error
    raise AssertionError("a target out of reach was reached")


def main():
    tool = Tool((0, 0, 100, 0, 0, 0))
    numbers = [10, 20, 30, 40, 50, 60]
    joints = Joints(numbers)
    print(f"{'load and unload an arm':44}{microseconds(lambda: Arm().close(), 20):8.0f}")
    for capture in (True, False):
        arm = Arm(WRIST, capture=capture)
        pose = arm.joint_to_wobj_pos(joints, tool)
        far = pose.replace(frame=(9000, 0, 0, 0, 0, 0))
        calls = {
            "joint_to_wobj_pos": lambda: arm.joint_to_wobj_pos(joints, tool),
            "joint_to_wobj_pos of a list": lambda: arm.joint_to_wobj_pos(numbers, tool),
            "wobj_pos_to_joint": lambda: arm.wobj_pos_to_joint(pose, tool),
        }
        if capture:
            calls["wobj_pos_to_joint, out of reach, one line"] = lambda: refused(arm, far, tool)
        print(f"capture={capture}")
        for name, call in calls.items():
            print(f"  {name:42}{microseconds(call):8.2f}")


if __name__ == "__main__":
    main()
