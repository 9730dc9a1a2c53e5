"""The calls between joints and positions, and those between frames."""

from __future__ import annotations

from typing import Optional

from ._calls import Calls, int32, load_of, tool_of, wobj_of
from .modes import CrdMode
from .records import Frame, FrameLike, Joints, JointsLike, Load, Pose, PoseLike, Tool, Wobj, joints_of, pose_of


class Positions(Calls):
    """Forward, inverse and conversions. Positions are in mm and degrees, joints in degrees.

    Not given, the tool is held and its centre point is the flange, the work object is fixed at the world origin, and
    there is no payload.
    """

    def _forward(
        self, name: str, joints: JointsLike, tool: Optional[Tool], wobj: Optional[Wobj], load: Optional[Load]
    ) -> Pose:
        pose = Pose.__new__(Pose)
        self.call(name, joints_of(joints), tool_of(tool), wobj_of(wobj), load_of(load), pose)
        return pose

    def joint_to_base_pos(
        self,
        joints: JointsLike,
        tool: Optional[Tool] = None,
        wobj: Optional[Wobj] = None,
        load: Optional[Load] = None,
    ) -> Pose:
        """Kine_JointToBasePos: the tool centre point in the robot base.

        Exactly one of tool and work object is held by the robot. The payload bends arm type 6 where its stiffness is
        given. A tool byte other than 0 and 1 counts as held for the flange and takes the path of a stationary tool
        afterwards; use 0 and 1.
        """
        return self._forward("Kine_JointToBasePos", joints, tool, wobj, load)

    def joint_to_flange_pos(
        self,
        joints: JointsLike,
        tool: Optional[Tool] = None,
        wobj: Optional[Wobj] = None,
        load: Optional[Load] = None,
    ) -> Pose:
        """Kine_JointToFlangePos: the tool centre point in the flange; with a held tool t_frame itself."""
        return self._forward("Kine_JointToFlangePos", joints, tool, wobj, load)

    def joint_to_world_pos(
        self,
        joints: JointsLike,
        tool: Optional[Tool] = None,
        wobj: Optional[Wobj] = None,
        load: Optional[Load] = None,
    ) -> Pose:
        """Kine_JointToWorldPos: the tool centre point in the world; see joint_to_base_pos."""
        return self._forward("Kine_JointToWorldPos", joints, tool, wobj, load)

    def joint_to_wobj_pos(
        self,
        joints: JointsLike,
        tool: Optional[Tool] = None,
        wobj: Optional[Wobj] = None,
        load: Optional[Load] = None,
    ) -> Pose:
        """Kine_JointToWobjPos: the tool centre point in the work object (object frame); see joint_to_base_pos.

        The pose carries the configuration and the external axes of the joints, so that wobj_pos_to_joint leads back.
        """
        return self._forward("Kine_JointToWobjPos", joints, tool, wobj, load)

    def fkine_vision(self, joints: JointsLike) -> Pose:
        """Kine_FKineVision: the pose of the arm in the robot base for vision calibration, without tool and payload.

        Arm type 6: frame 5, the wrist. Four-axis arms: the flange in the plane, z = 0, with the heading of the forearm.
        """
        pose = Pose.__new__(Pose)
        self.call("Kine_FKineVision", joints_of(joints), pose)
        return pose

    def wobj_pos_to_joint(
        self,
        target: PoseLike,
        tool: Optional[Tool] = None,
        wobj: Optional[Wobj] = None,
        load: Optional[Load] = None,
    ) -> Joints:
        """Kine_WobjPosToJoint: the joints that bring the tool centre point to a target in the work object.

        The configuration of the target chooses posture and turns, its external axes place the mechanical units; see
        ArmConfig. Targets given as six numbers have configuration zero, which a four-axis arm refuses: its cfg1 is
        +1 or -1.
        """
        joints = Joints.__new__(Joints)
        self.call("Kine_WobjPosToJoint", pose_of(target), tool_of(tool), wobj_of(wobj), load_of(load), joints)
        return joints

    def world_pos_to_fix_wobj_pos(self, pose: PoseLike, wobj: Wobj) -> Pose:
        """Kine_WorldPosToFixWobjPos: a world position in a fixed work object that is not held.

        Mechanical units and the mounting of the robot are not consulted, and the arm need not be initialised.
        """
        out = Pose.__new__(Pose)
        self.call("Kine_WorldPosToFixWobjPos", pose_of(pose), wobj, out)
        return out

    def world_pos_to_grip_wobj_pos(self, pose: PoseLike, wobj: Wobj, flange: PoseLike) -> Pose:
        """Kine_WorldPosToGripWobjPos: a world position in a work object that the robot holds.

        flange is the pose of the flange in the world.
        """
        out = Pose.__new__(Pose)
        self.call("Kine_WorldPosToGripWobjPos", pose_of(pose), wobj, pose_of(flange), out)
        return out

    def grip_wobj_pos_to_world_pos(self, pose: PoseLike, wobj: Wobj, flange: PoseLike) -> Pose:
        """Kine_GripWobjPosToWorldPos: the way back; takes a work object that is not held too."""
        out = Pose.__new__(Pose)
        self.call("Kine_GripWobjPosToWorldPos", pose_of(pose), wobj, pose_of(flange), out)
        return out

    def crd_pos_to_wobj_pos(
        self,
        pose: PoseLike,
        mode: int = CrdMode.BASE,
        tool: Optional[Tool] = None,
        wobj: Optional[Wobj] = None,
        load: Optional[Load] = None,
    ) -> Pose:
        """Kine_CrdPosToWobjPos: a position to the work object.

        CrdMode.WORLD (-1): from the world to a fixed work object with a stationary tool. CrdMode.BASE (-2): from the
        robot base, through mounting and mechanical units. Any other mode: the pose stays as it is. The load is not
        read.
        """
        out = Pose.__new__(Pose)
        number = int32(mode, "mode")
        self.call("Kine_CrdPosToWobjPos", pose_of(pose), number, tool_of(tool), wobj_of(wobj), load_of(load), out)
        return out

    def tool_coord_offset(self, pose: PoseLike, offset: FrameLike) -> Pose:
        """Kine_ToolCoordOffset: a pose moved and turned by an offset (mm, deg) along and about its own axes."""
        out = Pose.__new__(Pose)
        self.call("Kine_ToolCoordOffset", pose_of(pose), Frame.of(offset), out)
        return out

    def wobj_coord_offset(self, pose: PoseLike, offset: FrameLike) -> Pose:
        """Kine_WobjCoordOffset: a pose moved along the axes of its reference frame and turned about them in place.

        The rotation of the offset does not move the position: this is not a product of frames.
        """
        out = Pose.__new__(Pose)
        self.call("Kine_WobjCoordOffset", pose_of(pose), Frame.of(offset), out)
        return out
