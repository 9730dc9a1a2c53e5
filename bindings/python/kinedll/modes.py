"""Names for the numbers that choose an arm or a mode. Every call takes the plain numbers too."""

from enum import IntEnum


class ArmType(IntEnum):
    """The arms of the library."""

    FOUR_AXIS = 4
    SIX_AXIS = 6
    FOUR_AXIS_4110 = 4110


class InchMode(IntEnum):
    """What a jog step moves along and about."""

    JOINTS = 1
    BASE = 2
    TOOL = 3
    WOBJ = 4
    WORLD = 5


class AlignMode(IntEnum):
    """What a tool is aligned with."""

    BASE = 2
    WORLD = 5
    WOBJ = 4
    WOBJ_TURNING_FLANGE = -1


class CrdMode(IntEnum):
    """Where the position comes from that crd_pos_to_wobj_pos converts."""

    WORLD = -1
    BASE = -2
