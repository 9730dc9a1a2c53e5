"""The calls that find the frames of tools, work objects and positioners from taught poses.

Every call finds a frame in the frame in which its poses are given. The angles of every taught pose are checked;
configurations are not read, external axes where a call says so. Units are mm and degrees, but a tilt is in radians.
"""

from __future__ import annotations

import ctypes
from typing import Any, NamedTuple

from ._calls import Calls, int32
from .errors import KineError
from .records import CalibError, Frame, FrameLike, PoseLike, pose_of


class ToolCalibration(NamedTuple):
    """A frame in mm and degrees, and how well the touches agree, in mm."""

    frame: Frame
    error: CalibError


class WobjCalibration(NamedTuple):
    """A frame in mm and degrees, and the angle between its Z axis and that of the poses, IN RADIANS."""

    frame: Frame
    tilt_rad: float


class Calibration(Calls):
    """Calibration of tools, work objects, positioners and tracks."""

    def _frame(self, name: str, *arguments: Any) -> Frame:
        frame = Frame.__new__(Frame)
        self.call(name, *arguments, frame)
        return frame

    def _with_error(self, name: str, *arguments: Any) -> ToolCalibration:
        # A report that was written holds no negative distance.
        frame, error = Frame.__new__(Frame), CalibError(smallest=-1.0)
        try:
            self.call(name, *arguments, frame, error)
        except KineError as refused:
            if error.smallest != -1.0:
                refused.report = error
            raise
        return ToolCalibration(frame, error)

    def _with_tilt(self, name: str, *arguments: Any) -> WobjCalibration:
        frame, tilt = Frame.__new__(Frame), ctypes.c_double()
        self.call(name, *arguments, frame, tilt)
        return WobjCalibration(frame, tilt.value)

    # Stationary tools

    def calc_ext_tool_prm_1p(self, p0: PoseLike) -> Frame:
        """Kine_CalcExtToolPrm_1P: a stationary tool touched by the tip of a calibrated tool: its position, angles 0."""
        return self._frame("Kine_CalcExtToolPrm_1P", pose_of(p0))

    def calc_ext_tool_prm_1pzx(self, origin: PoseLike, z_point: PoseLike, x_point: PoseLike) -> Frame:
        """Kine_CalcExtToolPrm_1PZX: the frame of a stationary tool from its origin and points on +Z and towards +X.

        A four-axis arm cannot tilt: whatever z_point holds, the origin raised by 10 mm takes its place.
        """
        return self._frame("Kine_CalcExtToolPrm_1PZX", pose_of(origin), pose_of(z_point), pose_of(x_point))

    def calc_ext_tool_prm_3p(self, p0: PoseLike, p1: PoseLike, p2: PoseLike) -> ToolCalibration:
        """Kine_CalcExtToolPrm_3P: a stationary tool touched in three orientations by an unknown point on the flange.

        The poses are those of the flange. Four-axis arms: z is the height of the flange in p0.
        """
        return self._with_error("Kine_CalcExtToolPrm_3P", pose_of(p0), pose_of(p1), pose_of(p2))

    def calc_ext_tool_prm_3pzx(
        self, p0: PoseLike, p1: PoseLike, p2: PoseLike, origin: PoseLike, z_point: PoseLike, x_point: PoseLike
    ) -> ToolCalibration:
        """Kine_CalcExtToolPrm_3PZX: the point on the flange from three touches, with it the frame of a stationary tool.

        The report of the touches is written before the last three poses are used: where these fail, it is the
        attribute report of the exception.
        """
        return self._with_error("Kine_CalcExtToolPrm_3PZX", *map(pose_of, (p0, p1, p2, origin, z_point, x_point)))

    # Tools on the flange

    def calc_grip_tool_prm_3p(self, p0: PoseLike, p1: PoseLike, p2: PoseLike) -> ToolCalibration:
        """Kine_CalcGripToolPrm_3P: the centre point of a held tool that touches one point in three orientations.

        The poses are those of the flange; angles are 0 in the result, and z too for a four-axis arm.
        """
        return self._with_error("Kine_CalcGripToolPrm_3P", pose_of(p0), pose_of(p1), pose_of(p2))

    def calc_grip_tool_prm_3pzx(
        self, p0: PoseLike, p1: PoseLike, p2: PoseLike, origin: PoseLike, z_point: PoseLike, x_point: PoseLike
    ) -> ToolCalibration:
        """Kine_CalcGripToolPrm_3PZX: a held tool: its point from three touches, its orientation from three poses more.

        The tool moves from origin along its +Z axis to z_point, and towards its +X axis to x_point. A report written
        before a later pose fails is the attribute report of the exception.
        """
        return self._with_error("Kine_CalcGripToolPrm_3PZX", *map(pose_of, (p0, p1, p2, origin, z_point, x_point)))

    def calc_grip_tool_prm_5p(
        self, p0: PoseLike, p1: PoseLike, p2: PoseLike, p3: PoseLike, p4: PoseLike
    ) -> ToolCalibration:
        """Kine_CalcGripToolPrm_5P: the centre point of a held tool from five touches; arm type 6 only."""
        return self._with_error("Kine_CalcGripToolPrm_5P", *map(pose_of, (p0, p1, p2, p3, p4)))

    def calc_grip_tool_prm_scara2p(self, p0: PoseLike, p1: PoseLike) -> Frame:
        """Kine_CalcGripToolPrm_Scara2P: x and y of a held tool from two headings; four-axis arms only."""
        return self._frame("Kine_CalcGripToolPrm_Scara2P", pose_of(p0), pose_of(p1))

    # Work objects. Tilts are in radians.

    def calc_ext_wobj_user_prm_2p(self, origin: PoseLike, x_point: PoseLike) -> WobjCalibration:
        """Kine_CalcExtWobj_UserPrm_2P: a fixed user frame from origin and +X, with a horizontal Y axis.

        The tilt is in RADIANS.
        """
        return self._with_tilt("Kine_CalcExtWobj_UserPrm_2P", pose_of(origin), pose_of(x_point))

    def calc_ext_wobj_user_prm_3p(self, origin: PoseLike, x_point: PoseLike, xy_point: PoseLike) -> WobjCalibration:
        """Kine_CalcExtWobj_UserPrm_3P: a fixed user frame from origin, +X and a point on the side of +Y.

        The tilt is in RADIANS.
        """
        return self._with_tilt("Kine_CalcExtWobj_UserPrm_3P", pose_of(origin), pose_of(x_point), pose_of(xy_point))

    def calc_ext_wobj_user_prm_cirle3p(self, p1: PoseLike, p2: PoseLike, p3: PoseLike) -> WobjCalibration:
        """Kine_CalcExtWobj_UserPrm_Cirle3P (spelled so): a fixed user frame from three points of a circle.

        The origin is its centre, X points towards p1, and the points turn about Z anticlockwise. The tilt is in
        RADIANS.
        """
        return self._with_tilt("Kine_CalcExtWobj_UserPrm_Cirle3P", pose_of(p1), pose_of(p2), pose_of(p3))

    def calc_ext_wobj_obj_prm_3p(
        self, origin: PoseLike, x_point: PoseLike, xy_point: PoseLike, user: FrameLike
    ) -> WobjCalibration:
        """Kine_CalcExtWobj_ObjPrm_3P: the object frame of a fixed work object, in its user frame.

        The tilt, in RADIANS, is measured against the frame of the poses.
        """
        poses = pose_of(origin), pose_of(x_point), pose_of(xy_point)
        return self._with_tilt("Kine_CalcExtWobj_ObjPrm_3P", *poses, Frame.of(user))

    def calc_grip_wobj_user_prm_3p(self, origin: PoseLike, x_point: PoseLike, xy_point: PoseLike) -> WobjCalibration:
        """Kine_CalcGripWobj_UserPrm_3P: the user frame of a held work object, computed as that of a fixed one.

        The poses are those of the stationary tool's tip in the flange. The tilt is in RADIANS.
        """
        return self._with_tilt("Kine_CalcGripWobj_UserPrm_3P", pose_of(origin), pose_of(x_point), pose_of(xy_point))

    def calc_grip_wobj_obj_prm_3p(
        self, origin: PoseLike, x_point: PoseLike, xy_point: PoseLike, user: FrameLike
    ) -> WobjCalibration:
        """Kine_CalcGripWobj_ObjPrm_3P: the object frame of a held work object, in its user frame.

        The tilt, in RADIANS, is measured against the user frame, other than that of calc_ext_wobj_obj_prm_3p.
        """
        poses = pose_of(origin), pose_of(x_point), pose_of(xy_point)
        return self._with_tilt("Kine_CalcGripWobj_ObjPrm_3P", *poses, Frame.of(user))

    def calc_un_fix_wobj_obj_prm_3p(
        self, unit: int, origin: PoseLike, x_point: PoseLike, xy_point: PoseLike
    ) -> WobjCalibration:
        """Kine_CalcUnFixWobj_ObjPrm_3P: the object frame of a work object on a mechanical unit, in its last axis.

        The poses are in the world and carry the external axes at which they were taught. The tilt is in RADIANS. A
        unit that cannot be used ends in KINE_ERR_CALIB_POINTS_CLOSE.
        """
        poses = pose_of(origin), pose_of(x_point), pose_of(xy_point)
        return self._with_tilt("Kine_CalcUnFixWobj_ObjPrm_3P", int32(unit, "unit"), *poses)

    # Positioners and tracks

    def calc_positioner_j1prm_3p(self, unit: int, p0: PoseLike, p1: PoseLike, p2: PoseLike) -> Frame:
        """Kine_CalcPositionerJ1Prm_3P: the frame of the first rotary axis of a unit from three positions of a mark.

        The external axes of p0 hold the value of the axis in degrees. Where the axis lies in the XY plane of the poses
        the result is not finite or, by rounding, not right, and nothing is raised; so where the perpendicular bisector
        of p0 and p1 in the plane of the circle has no Y component.
        """
        number = int32(unit, "unit")
        return self._frame("Kine_CalcPositionerJ1Prm_3P", number, pose_of(p0), pose_of(p1), pose_of(p2))

    def calc_positioner_jn_prm_3p(
        self, unit: int, axis: int, p0: PoseLike, p1: PoseLike, p2: PoseLike, reference: FrameLike
    ) -> Frame:
        """Kine_CalcPositionerJnPrm_3P: the frame of axis n (from 1) of a unit relative to a reference frame.

        THE EXTERNAL AXIS OF AXIS n IN p0 IS TAKEN AS RADIANS, though it is in degrees: teach p0 with the axis at 0, or
        turn the reference beforehand. Results that are not finite: see calc_positioner_j1prm_3p.
        """
        numbers = int32(unit, "unit"), int32(axis, "axis")
        poses = pose_of(p0), pose_of(p1), pose_of(p2)
        return self._frame("Kine_CalcPositionerJnPrm_3P", *numbers, *poses, Frame.of(reference))

    def calc_robot_base_prm_3p(self, unit: int, p0: PoseLike, p1: PoseLike, p2: PoseLike) -> ToolCalibration:
        """Kine_CalcRobotBasePrm_3P: the rotation a of the robot base on a linear track, from three touches of a mark.

        The poses are in the base; their external axes hold the track position in mm. The error compares the three
        positions of the mark in the frame of the track.
        """
        poses = pose_of(p0), pose_of(p1), pose_of(p2)
        return self._with_error("Kine_CalcRobotBasePrm_3P", int32(unit, "unit"), *poses)
