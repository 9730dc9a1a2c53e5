// Conversions of positions and motion utilities through the binding, with results worked out by hand.

using System;
using Kine;
using static Kine.KineDll;

static class MotionTests
{
    static readonly KineJoint Joints = new KineJoint(30.0, 0.0, 0.0, 0.0, -60.0, 90.0);
    static readonly KineTool Tool = KineTool.Held(new KineFrame(0.0, 0.0, 100.0));

    static KinePose At(double x, double y, double z, double a = 0.0)
    {
        return new KinePose(new KineFrame(x, y, z, a));
    }

    public static void a_world_position_is_seen_from_a_fixed_work_object()
    {
        KineWobj wobj = KineWobj.Fixed(new KineFrame(100.0, 0.0, 0.0, 90.0));
        Testing.Ok(Kine_WorldPosToFixWobjPos(At(100.0, 50.0, 0.0), wobj, out KinePose result));
        Testing.Near(new KineFrame(50.0, 0.0, 0.0, -90.0), result.Frame, "position");
        Testing.Equal(KINE_ERR_WOBJ,
                      Kine_WorldPosToFixWobjPos(At(1.0, 1.0, 1.0), KineWobj.Held(new KineFrame()), out _), "held");
    }

    public static void a_world_position_is_seen_from_a_held_work_object_and_back()
    {
        KineWobj wobj = KineWobj.Held(new KineFrame(0.0, 0.0, 100.0));
        KinePose flange = At(500.0, 0.0, 0.0, 90.0);
        Testing.Ok(Kine_WorldPosToGripWobjPos(At(500.0, 20.0, 150.0), wobj, flange, out KinePose result));
        Testing.Near(new KineFrame(20.0, 0.0, 50.0, -90.0), result.Frame, "there");
        Testing.Ok(Kine_GripWobjPosToWorldPos(result, wobj, flange, out KinePose back));
        Testing.Near(new KineFrame(500.0, 20.0, 150.0), back.Frame, "back");
    }

    public static void each_mode_takes_its_own_way_to_the_work_object()
    {
        Arms.UsePuma();
        Arms.AddUnits();
        KineWobj wobj = KineWobj.Fixed(new KineFrame(100.0, 0.0, 0.0));
        KinePose pose = At(150.0, 0.0, 0.0);
        pose.ExtAxis[5] = 1000.0;
        Testing.Ok(Kine_CrdPosToWobjPos(pose, KineCrdMode.FromBase, Tool, wobj, Arms.NoLoad, out KinePose result));
        Testing.Near(new KineFrame(1050.0, 0.0, 50.0), result.Frame, "from the base on its track");
        KineTool stationary = KineTool.Stationary(new KineFrame());
        Testing.Ok(Kine_CrdPosToWobjPos(pose, KineCrdMode.FromWorld, stationary, wobj, Arms.NoLoad, out result));
        Testing.Near(new KineFrame(50.0, 0.0, 0.0), result.Frame, "from the world");
        Testing.Equal(KINE_ERR_CRD_WOBJ,
                      Kine_CrdPosToWobjPos(pose, KineCrdMode.FromWorld, Tool, wobj, Arms.NoLoad, out _), "held tool");
    }

    public static void an_offset_goes_along_the_axes_of_the_pose_or_of_its_frame()
    {
        KineFrame offset = new KineFrame(10.0, 0.0, 0.0, 15.0);
        Testing.Ok(Kine_ToolCoordOffset(At(100.0, 0.0, 0.0, 90.0), offset, out KinePose along));
        Testing.Near(new KineFrame(100.0, 10.0, 0.0, 105.0), along.Frame, "axes of the pose");
        Testing.Ok(Kine_WobjCoordOffset(At(100.0, 0.0, 0.0, 90.0), offset, out along));
        Testing.Near(new KineFrame(110.0, 0.0, 0.0, 105.0), along.Frame, "axes of the frame");
    }

    public static void a_difference_is_given_along_the_axes_of_the_frame_or_of_the_first_pose()
    {
        KinePose first = At(10.0, 0.0, 0.0, 90.0), second = At(10.0, 20.0, 0.0, 90.0);
        Testing.Ok(Kine_CalcPosDif(first, second, KineDifFrame.Reference, out KineFrame difference));
        Testing.Near(new KineFrame(0.0, 20.0, 0.0), difference, "frame");
        Testing.Ok(Kine_CalcPosDif(first, second, KineDifFrame.FirstPose, out difference));
        Testing.Near(new KineFrame(20.0, 0.0, 0.0), difference, "first pose");
        Testing.Equal(KINE_ERR_DIRECTION, Kine_CalcPosDif(first, second, 0, out _), "neither");
    }

    public static void a_jog_of_joints_moves_these_and_turns_the_steps_into_radians()
    {
        Arms.UsePuma();
        KineInchDir dir = new KineInchDir();
        dir.Slot[0] = 1;
        dir.Slot[5] = -1;
        dir.Slot[6] = 1;
        KineInchSteps steps = new KineInchSteps(5.0, 10.0, 3.0);
        Testing.Ok(Kine_InchMovePosCalc(dir, KineInchMode.Joint, Tool, Arms.World, Arms.NoLoad, ref steps, Joints,
                                        out KineJoint target));
        KineJoint expected = new KineJoint(35.0, 0.0, 0.0, 0.0, -60.0, 85.0);
        expected.ExtAxis[0] = 5.0;
        Testing.Near(expected, target, "joints");
        Testing.Near(5.0 * Math.PI / 180.0, steps.Joint, "joint step", 1e-15);
        Testing.Equal(10.0, steps.Linear, "linear step");
        Testing.Near(3.0 * Math.PI / 180.0, steps.Rotation, "rotation step", 1e-15);
    }

    // The tool points along (cos 30 / 2, sin 30 / 2, -sqrt(3) / 2) in the base.
    public static void a_jog_moves_the_tip_along_the_axes_of_the_base_the_world_the_tool_or_the_work_object()
    {
        Arms.UsePuma();
        KineWobj turned = KineWobj.Fixed(new KineFrame(0.0, 0.0, 0.0, 90.0));
        double c = Math.Sqrt(0.75);
        MovesBy(KineInchMode.Base, Arms.World, 0, new KineFrame(10.0, 0.0, 0.0), Joints);
        MovesBy(KineInchMode.World, Arms.World, 1, new KineFrame(0.0, 10.0, 0.0), Joints);
        MovesBy(KineInchMode.Tool, Arms.World, 2, new KineFrame(5.0 * c, 2.5, -10.0 * c), Joints);
        MovesBy(KineInchMode.Wobj, turned, 0, new KineFrame(0.0, 10.0, 0.0), Joints);
    }

    static void MovesBy(KineInchMode mode, KineWobj wobj, int slot, KineFrame expected, KineJoint from)
    {
        KineInchDir dir = new KineInchDir();
        dir.Slot[slot] = 1;
        KineInchSteps steps = new KineInchSteps(5.0, 10.0, 3.0);
        Testing.Ok(Kine_InchMovePosCalc(dir, mode, Tool, wobj, Arms.NoLoad, ref steps, from, out KineJoint target));
        Testing.Ok(Kine_JointToWorldPos(from, Tool, wobj, Arms.NoLoad, out KinePose before));
        Testing.Ok(Kine_JointToWorldPos(target, Tool, wobj, Arms.NoLoad, out KinePose after));
        before.Frame.X += expected.X;
        before.Frame.Y += expected.Y;
        before.Frame.Z += expected.Z;
        Testing.Near(before.Frame, after.Frame, mode.ToString(), 1e-5);
    }

    // The base, turned by 90 degrees on a rotary unit, looks along Y of the world. World mode turns X by the same 90
    // degrees and goes along Y of the base, which is -X of the world.
    public static void a_jog_on_a_turned_base_tells_base_from_world_mode()
    {
        Arms.UsePuma();
        Testing.Ok(Kine_SetMechUnitGlobalCfg(1, 1, 1));
        KineMechUnit turntable = new KineMechUnit { Active = 1, UnitKind = KineUnitKind.Rotary, AxisCount = 1 };
        turntable.Option1 = 1;
        turntable.AxisFrame[0] = new KineFrame(0.0, 0.0, 10.0);
        Testing.Ok(Kine_SetMechUnitParam(0, turntable));
        KineJoint turned = Joints;
        turned.ExtAxis[0] = 90.0;
        MovesBy(KineInchMode.World, Arms.World, 0, new KineFrame(-10.0, 0.0, 0.0), turned);
        MovesBy(KineInchMode.Base, Arms.World, 0, new KineFrame(0.0, 10.0, 0.0), turned);
    }

    // The Z axis of the tool is nearest to -Z: after it, the tool points straight down, its tip where it was.
    public static void an_aligned_tool_points_along_the_nearest_axis_and_keeps_its_tip()
    {
        Arms.UsePuma();
        Testing.Ok(Kine_JointToBasePos(Joints, Tool, Arms.World, Arms.NoLoad, out KinePose before));
        foreach (KineAlignMode mode in new[] { KineAlignMode.Base, KineAlignMode.World, KineAlignMode.Wobj,
                                               KineAlignMode.WobjByFlange })
        {
            Testing.Ok(Kine_CalcAlignPos(mode, Joints, Tool, Arms.World, Arms.NoLoad, out KineJoint target));
            Testing.Ok(Kine_JointToBasePos(target, Tool, Arms.World, Arms.NoLoad, out KinePose after));
            Testing.Near(before.Frame.X, after.Frame.X, "X", 1e-5);
            Testing.Near(before.Frame.Y, after.Frame.Y, "Y", 1e-5);
            Testing.Near(before.Frame.Z, after.Frame.Z, "Z", 1e-5);
            double zz = Math.Cos(after.Frame.B * Math.PI / 180.0) * Math.Cos(after.Frame.C * Math.PI / 180.0);
            Testing.Near(-1.0, zz, "Z axis", 1e-9);
        }
        Testing.Equal(KINE_ERR_DIRECTION,
                      Kine_CalcAlignPos((KineAlignMode)3, Joints, Tool, Arms.World, Arms.NoLoad, out _), "mode 3");
    }

    public static void a_stationary_tool_and_a_held_work_object_swap_their_roles_in_place()
    {
        KineTool tool = KineTool.Stationary(new KineFrame(1.0, 2.0, 3.0));
        tool.TLoad.Mass = 4.0;
        KineWobj wobj = KineWobj.Held(new KineFrame(10.0, 0.0, 0.0, 90.0), new KineFrame(0.0, 5.0, 0.0));
        Testing.Ok(Kine_CalcAlignCoordProc(ref tool, ref wobj));
        Testing.Equal(1, tool.HeldByRobot, "tool");
        Testing.Near(new KineFrame(5.0, 0.0, 0.0, 90.0), tool.TFrame, "tool");
        Testing.Equal(4.0, tool.TLoad.Mass, "mass");
        Testing.Equal(0, wobj.HeldByRobot, "work object");
        Testing.Near(new KineFrame(1.0, 2.0, 3.0), wobj.UFrame, "user frame");
        Testing.Near(new KineFrame(), wobj.OFrame, "object frame");
        Testing.Equal(KINE_ERR_TOOL, Kine_CalcAlignCoordProc(ref tool, ref wobj), "held tool");
    }

    public static void a_normal_has_the_wanted_length_and_is_kept_for_points_on_a_line()
    {
        KineVector normal = new KineVector(9.0, 9.0, 9.0);
        KineFrame origin = new KineFrame(), x = new KineFrame(1.0, 0.0, 0.0), y = new KineFrame(0.0, 1.0, 0.0);
        Testing.Ok(Kine_CalcZVec(origin, x, new KineFrame(2.0, 0.0, 0.0), 7.0, ref normal));
        Testing.True(Testing.SameBits(new KineVector(9.0, 9.0, 9.0), normal), "points on a line");
        Testing.Ok(Kine_CalcZVec(origin, x, y, 7.0, ref normal));
        Testing.Near(0.0, normal.X, "X");
        Testing.Near(0.0, normal.Y, "Y");
        Testing.Near(7.0, normal.Z, "Z");
    }

    public static void the_safe_area_refuses_every_input()
    {
        Arms.UsePuma();
        Testing.Equal((int)KINE_ERR_WOBJ, SafeArea_Check(Joints, new KineVector(400.0, 0.0, 400.0), 1e4), "area");
    }
}
