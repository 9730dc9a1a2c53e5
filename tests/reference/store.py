"""The configuration store and the way to the arm models: state check first, then the arm type."""

from types import SimpleNamespace

from four_axis import FourAxis4110Arm, FourAxisArm
from geometry import pose_to_matrix
from records import (CONFIG, DEG2RAD, FOUR_AXIS_PARAM, MODEL_PARAM, NOT_INITIALISED, OK, SIX_AXIS_PARAM,
                     UNKNOWN_ARM, Refused, scaled)
from six_axis import SixAxisArm

UNITS = 3
EXT_AXES = 6
FIXED = 2
ON_UNIT = 3
NO_LIMIT = 999.0

# Which configuration integers a posture check compares, per arm type.
COMPARED = {4: (3,), 6: (0, 1, 2), 4110: (1, 2, 3)}


class Store:
    def __init__(self):
        self.arm_type = 0
        self.init_state = 0
        self.units_enabled = 0
        self.arms = {4: FourAxisArm(), 6: SixAxisArm(), 4110: FourAxis4110Arm()}
        self.printed = []
        self.nudge = 0.0  # relative change of a target, to see whether an answer is steady
        self.tie_to_start = None  # how a tie of the turn search ends: as it does, or as it might
        self.reset_units()
        self.mounting.mode = 0  # at load everything is zero: the base stands nowhere yet

    def print(self, line):
        self.printed.append(line)

    # Setup

    def reset_units(self):
        self.unit_count = 0
        self.ext_axis_count = 0
        self.units = [empty_unit() for _ in range(UNITS)]
        self.ext_axes = [[0] * 18 for _ in range(EXT_AXES)]
        self.stand_fixed()

    def stand_fixed(self):
        self.mounting = SimpleNamespace(mode=FIXED, unit=0, frame=[0.0] * 6)

    def initialise(self, arm_type, data):
        self.arm_type = arm_type
        self.init_state = 1
        self.reset_units()
        if arm_type not in self.arms:
            return UNKNOWN_ARM
        if data is None:
            return MODEL_PARAM
        layout = SIX_AXIS_PARAM if arm_type == 6 else FOUR_AXIS_PARAM
        code = self.arms[arm_type].initialise(layout.unpack(data[:layout.size]))
        if code != OK:
            return code
        self.init_state = 2
        return self.set_limits([NO_LIMIT] * 14, [-NO_LIMIT] * 14)

    def set_limits(self, upper, lower):
        """An empty or inverted range becomes an unlimited one."""
        arm = self.arm()
        for i in range(6):
            if lower[i] >= upper[i]:
                upper[i], lower[i] = NO_LIMIT, -NO_LIMIT
        arm.set_limits(upper, lower)
        return OK

    def set_unit(self, index, unit):
        self.units[index] = SimpleNamespace(
            active=unit.active, kind=unit.kind, axis_count=unit.axis_count,
            frames=[pose_to_matrix(scaled(frame, 3, 3, DEG2RAD)) for frame in unit.frames],
            axis_index=list(unit.axis_index))
        if index == 0:
            self.stand_fixed()
            if unit.option1 == 1:
                self.mounting.mode = ON_UNIT
                self.mounting.unit = unit.option2

    # Dispatch

    def arm(self):
        if self.init_state != 2:
            raise Refused(NOT_INITIALISED)
        return self.arms[self.arm_type]

    def config(self, axis):
        return self.arm().config(list(axis))

    def forward(self, axis, block):
        return self.arm().forward(list(axis), block)

    def inverse(self, frame, block, cfg):
        frame = [v * (1.0 + self.nudge) for v in frame]
        return self.arm().inverse(frame, block, list(cfg))

    def check_config(self, cfg):
        """Compare with the posture of the limits, two quarter turns of tolerance."""
        upper, lower = self.arm().limits()
        upper += [0.0] * (8 - len(upper))
        lower += [0.0] * (8 - len(lower))
        highest, lowest = self.config(upper), self.config(lower)
        for i in COMPARED[self.arm_type]:
            if cfg[i] > highest[i] + 2 or cfg[i] < lowest[i] - 2:
                raise Refused(CONFIG)


def empty_unit():
    return SimpleNamespace(active=0, kind=0, axis_count=0, frames=[(0.0,) * 12] * 6, axis_index=[0] * 6)
