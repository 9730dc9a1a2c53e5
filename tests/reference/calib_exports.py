"""The eighteen calibration exports over raw bytes, all over one common sequence.

Besides the frame some of them write a report of three doubles or a tilt of one; null pointers there are
passed over. Such a record is input and output at once for the comparison: what it held must stay when it is
not written.
"""

import positioner_calibration
import tool_calibration
import wobj_calibration
from calibration import frame_in_radians, taught
from records import FRAME, ONE_DOUBLE, POSE_REFUSED, OK, RAD2DEG, VECTOR, Refused, scaled


def signature(poses, *last, first=()):
    return (*first, *["pose"] * poses, *last)


CALIBRATION_SIGNATURES = {
    "Kine_CalcExtToolPrm_1P": signature(1, "out_frame"),
    "Kine_CalcExtToolPrm_1PZX": signature(3, "out_frame"),
    "Kine_CalcExtToolPrm_3P": signature(3, "out_frame", "error_inout"),
    "Kine_CalcExtToolPrm_3PZX": signature(6, "out_frame", "error_inout"),
    "Kine_CalcGripToolPrm_3P": signature(3, "out_frame", "error_inout"),
    "Kine_CalcGripToolPrm_3PZX": signature(6, "out_frame", "error_inout"),
    "Kine_CalcGripToolPrm_5P": signature(5, "out_frame", "error_inout"),
    "Kine_CalcGripToolPrm_Scara2P": signature(2, "out_frame"),
    "Kine_CalcExtWobj_UserPrm_2P": signature(2, "out_frame", "tilt_inout"),
    "Kine_CalcExtWobj_UserPrm_3P": signature(3, "out_frame", "tilt_inout"),
    "Kine_CalcExtWobj_UserPrm_Cirle3P": signature(3, "out_frame", "tilt_inout"),
    "Kine_CalcExtWobj_ObjPrm_3P": signature(3, "frame", "out_frame", "tilt_inout"),
    "Kine_CalcGripWobj_UserPrm_3P": signature(3, "out_frame", "tilt_inout"),
    "Kine_CalcGripWobj_ObjPrm_3P": signature(3, "frame", "out_frame", "tilt_inout"),
    "Kine_CalcUnFixWobj_ObjPrm_3P": signature(3, "out_frame", "tilt_inout", first=("int",)),
    "Kine_CalcPositionerJ1Prm_3P": signature(3, "out_frame", first=("int",)),
    "Kine_CalcPositionerJnPrm_3P": signature(3, "frame", "out_frame", first=("int", "int")),
    "Kine_CalcRobotBasePrm_3P": signature(3, "out_frame", "error_inout", first=("int",)),
}

# Places of the frame whose bits are given: copies of the taught origin, and zeros never computed.
# The second set is that of a four-axis arm where it differs.
COPIED = {
    "Kine_CalcExtToolPrm_1P": (range(6), range(6)),
    "Kine_CalcExtToolPrm_1PZX": (range(3), range(3)),
    "Kine_CalcExtToolPrm_3P": (range(3, 6), range(3, 6)),
    "Kine_CalcGripToolPrm_3P": (range(3, 6), range(2, 6)),
    "Kine_CalcGripToolPrm_3PZX": ((), (2,)),
    "Kine_CalcGripToolPrm_5P": (range(3, 6), ()),
    "Kine_CalcGripToolPrm_Scara2P": ((), range(2, 6)),
    "Kine_CalcExtWobj_UserPrm_2P": (range(3), range(3)),
    "Kine_CalcExtWobj_UserPrm_3P": (range(3), range(3)),
    "Kine_CalcGripWobj_UserPrm_3P": (range(3), range(3)),
    "Kine_CalcRobotBasePrm_3P": (range(3), range(3)),
}

TOOL_SOLVERS = {
    "Kine_CalcExtToolPrm_1P": tool_calibration.ext_1p,
    "Kine_CalcExtToolPrm_1PZX": tool_calibration.ext_1pzx,
    "Kine_CalcExtToolPrm_3P": tool_calibration.ext_3p,
    "Kine_CalcExtToolPrm_3PZX": tool_calibration.ext_3pzx,
    "Kine_CalcGripToolPrm_3P": tool_calibration.grip_3p,
    "Kine_CalcGripToolPrm_3PZX": tool_calibration.grip_3pzx,
    "Kine_CalcGripToolPrm_5P": tool_calibration.grip_5p,
    "Kine_CalcGripToolPrm_Scara2P": tool_calibration.grip_scara_2p,
}

POINT_SOLVERS = {
    "Kine_CalcExtWobj_UserPrm_2P": wobj_calibration.user_frame_2p,
    "Kine_CalcExtWobj_UserPrm_3P": wobj_calibration.user_frame_3p,
    "Kine_CalcGripWobj_UserPrm_3P": wobj_calibration.user_frame_3p,
    "Kine_CalcExtWobj_UserPrm_Cirle3P": wobj_calibration.circle_frame,
}

OBJECT_SOLVERS = {
    "Kine_CalcExtWobj_ObjPrm_3P": wobj_calibration.object_frame_by_matrices,
    "Kine_CalcGripWobj_ObjPrm_3P": wobj_calibration.object_frame_by_points,
}


class CalibrationExports:
    """What the library does for a calibration export; `noisy` makes all its roundings random."""

    noisy = False

    def calibrate(self, name, args):
        """Poses are checked in turn, then the given frame and the result have to be there."""
        given = {kind: [] for kind in CALIBRATION_SIGNATURES[name]}
        for kind, value in zip(CALIBRATION_SIGNATURES[name], args):
            given[kind].append(value)
        poses = [self.take_pose(data) for data in given["pose"]]
        if None in given.get("frame", ()) or not given["out_frame"][0]:
            raise Refused(POSE_REFUSED)
        poses = [taught(pose, self.noisy) for pose in poses]
        user = [frame_in_radians(FRAME.unpack(data), self.noisy) for data in given.get("frame", ())]
        frame = self.solve(name, given.get("int", ()), poses, *user)
        return OK, FRAME.pack(*scaled(frame, 3, 3, RAD2DEG))

    def solve(self, name, numbers, poses, user=None):
        points = [pose.p for pose in poses]
        if name in TOOL_SOLVERS:
            return TOOL_SOLVERS[name](self.store.arm_type, poses, self.write_report)
        if name in POINT_SOLVERS:
            return self.with_tilt(POINT_SOLVERS[name](points))
        if name in OBJECT_SOLVERS:
            return self.with_tilt(OBJECT_SOLVERS[name](points, user))
        if name == "Kine_CalcUnFixWobj_ObjPrm_3P":
            return self.with_tilt(wobj_calibration.object_frame_on_unit(self.store, *numbers, poses))
        if name == "Kine_CalcPositionerJ1Prm_3P":
            return positioner_calibration.first_axis(self.store, *numbers, poses)
        if name == "Kine_CalcPositionerJnPrm_3P":
            return positioner_calibration.further_axis(self.store, *numbers, poses, user)
        frame, report = positioner_calibration.base_on_track(self.store, *numbers, poses)
        self.write_report(report)
        return frame

    def with_tilt(self, solved):
        frame, tilt = solved
        self.write_last(ONE_DOUBLE.pack(tilt))
        return frame

    def write_report(self, report):
        self.write_last(VECTOR.pack(*report))

    def write_last(self, data):
        """The last argument: untouched when it is a null pointer."""
        for place in self.changed:
            self.changed[place] = data
