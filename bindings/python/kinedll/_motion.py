"""The calls for jog steps, alignment and small questions about positions."""

from __future__ import annotations

import ctypes
from typing import Any, Iterable, NamedTuple, Optional, Tuple, Union

from ._calls import Calls, int32, load_of, tool_of, wobj_of
from ._fields import Numbers
from .records import (
    Frame,
    FrameLike,
    InchDir,
    Joints,
    JointsLike,
    Load,
    PoseLike,
    Tool,
    Wobj,
    joints_of,
    pose_of,
)

_Three = ctypes.c_double * 3
# A NaN that no computation gives: the library's own is the plain one.
_UNTOUCHED = b"\xa5\xa5\xa5\xa5\xa5\xa5\xff\x7f" * 3


def _three(numbers: Numbers, name: str) -> "ctypes.Array[ctypes.c_double]":
    values: Tuple[Any, ...] = tuple(numbers)
    if len(values) != 3:
        raise ValueError(f"{name}: {len(values)} numbers where there are 3")
    return _Three(*values)


class ToolAndWobj(NamedTuple):
    """A tool and a work object."""

    tool: Tool
    wobj: Wobj


class Motion(Calls):
    """Motion utilities. Joints are in degrees, positions in mm and degrees."""

    def inch_move_pos_calc(
        self,
        direction: Union[InchDir, Iterable[int]],
        mode: int,
        steps: Numbers,
        current: JointsLike,
        tool: Optional[Tool] = None,
        wobj: Optional[Wobj] = None,
        load: Optional[Load] = None,
    ) -> Joints:
        """Kine_InchMovePosCalc: the joints after one jog step.

        The C call changes its step array to radians in place; here it works on a copy, and steps stays as it is.

        Args:
            direction: up to fourteen directions, see InchDir.
            mode: see InchMode; with any other value the joints stay where they are.
            steps: joint step in degrees (mode 1; external axes move by the same number in their own unit), linear step
                in mm, rotation in degrees.
            current: joints in degrees.

        Where the step ends with the X axis of the moved frame along +-Z of the frame it is computed in (b = +-90), the
        joints may lead to another orientation: compare with a forward call where a tool gets there.
        """
        directions = direction if isinstance(direction, InchDir) else InchDir(direction)
        target = Joints.__new__(Joints)
        self.call(
            "Kine_InchMovePosCalc",
            directions,
            int32(mode, "mode"),
            tool_of(tool),
            wobj_of(wobj),
            load_of(load),
            _three(steps, "steps"),
            joints_of(current),
            target,
        )
        return target

    def calc_align_pos(
        self,
        mode: int,
        current: JointsLike,
        tool: Optional[Tool] = None,
        wobj: Optional[Wobj] = None,
        load: Optional[Load] = None,
    ) -> Joints:
        """Kine_CalcAlignPos: the joints that turn the tool's Z axis onto the nearest axis of a reference frame.

        The tool point stays. See AlignMode for the reference. With a held work object the two work-object modes do not
        align exactly. On a four-axis arm a negative axis 4 always gets KINE_ERR_ALIGN_TURN, one from 90 degrees on
        nearly always.
        """
        target = Joints.__new__(Joints)
        number = int32(mode, "mode")
        self.call("Kine_CalcAlignPos", number, joints_of(current), tool_of(tool), wobj_of(wobj), load_of(load), target)
        return target

    def calc_align_coord_proc(self, tool: Tool, wobj: Wobj) -> ToolAndWobj:
        """Kine_CalcAlignCoordProc: the roles of a stationary tool and a held work object swapped.

        The frame of the work object becomes that of a held tool, and that of the tool the user frame of a work object
        that is not held. The C call changes its records, and the tool's held_by_robot even where it then refuses the
        work object; here it works on copies: the swapped records are returned, and those given never change.
        """
        swapped = ToolAndWobj(tool.copy(), wobj.copy())
        self.call("Kine_CalcAlignCoordProc", swapped.tool, swapped.wobj)
        return swapped

    def calc_z_vec(
        self, p1: FrameLike, p2: FrameLike, p3: FrameLike, length: float = 1.0
    ) -> Optional[Tuple[float, float, float]]:
        """Kine_CalcZVec: the normal of the plane through three points in mm, (p2 - p1) x (p3 - p1), of a given length.

        None when the points lie on one line or one of them is NaN: the C call then leaves its result untouched.
        """
        out = _Three.from_buffer_copy(_UNTOUCHED)
        self.call("Kine_CalcZVec", Frame.of(p1), Frame.of(p2), Frame.of(p3), length, out)
        return None if bytes(out) == _UNTOUCHED else (out[0], out[1], out[2])

    def safe_area_check(self, joints: JointsLike, centre: Numbers, size: float) -> bool:
        """SafeArea_Check: whether the flange lies in a cube in the world; centre and edge length in mm.

        ALWAYS RAISES KINE_ERR_WOBJ: the call asks for the flange with a work object of zeros, which is refused. To
        watch an area, ask joint_to_world_pos.
        """
        return self.call("SafeArea_Check", joints_of(joints), _three(centre, "centre"), size, answers=(1,)) == 1

    def calc_pos_dif(self, first: PoseLike, second: PoseLike, frame: int = 1) -> Frame:
        """Kine_CalcPosDif: the second pose relative to the first, in mm and degrees.

        frame 1: along and about the axes of the frame both poses are given in; -1: those of the first pose.
        """
        out = Frame.__new__(Frame)
        self.call("Kine_CalcPosDif", pose_of(first), pose_of(second), int32(frame, "frame"), out)
        return out
