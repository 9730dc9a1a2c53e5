// Both kinds of arms through the binding, with positions worked out by hand.

using System;
using Kine;
using static Kine.KineDll;

static class ArmTests
{
    // The Puma with its upper arm upright, its forearm level, and a tool of 100 mm turned 60 degrees down. Before axis
    // 1 turns, the wrist is at (431.8, 150.05, 431.8 + 20.3), the tool points along (1/2, 0, -sqrt(3)/2), its X axis
    // along -Y and its Y axis along (-sqrt(3)/2, 0, -1/2): A -90, B 0, C -150. Axis 1 adds its 30 degrees to A.
    static readonly KineJoint Joints = new KineJoint(30.0, 0.0, 0.0, 0.0, -60.0, 90.0);
    static readonly KineTool Tool = KineTool.Held(new KineFrame(0.0, 0.0, 100.0));

    static KineFrame TipOfPuma()
    {
        double x = Arms.Forearm + 50.0, y = Arms.Beside, c = Math.Sqrt(0.75), s = 0.5;
        double height = Arms.UpperArm + Arms.Elbow - 100.0 * Math.Sqrt(0.75);
        return new KineFrame(x * c - y * s, x * s + y * c, height, -60.0, 0.0, -150.0);
    }

    // Axis 1 in the first quarter turn, axis 4 at 0, axis 6 at 90; axis 5 negative, elbow near, wrist in front.
    static readonly KineArmConfig Posture = new KineArmConfig(0, 0, 1, (int)KinePosture.Axis5Negative);

    public static void forward_of_the_six_axis_arm_is_the_position_worked_out_by_hand()
    {
        Arms.UsePuma();
        Testing.Ok(Kine_JointToBasePos(Joints, Tool, Arms.World, Arms.NoLoad, out KinePose inBase));
        Testing.Near(TipOfPuma(), inBase.Frame, "base");
        Testing.Equal(Posture, inBase.Config, "configuration");
        Testing.Ok(Kine_JointToWorldPos(Joints, Tool, Arms.World, Arms.NoLoad, out KinePose inWorld));
        Testing.Near(TipOfPuma(), inWorld.Frame, "world");
        Testing.Ok(Kine_JointToFlangePos(Joints, Tool, Arms.World, Arms.NoLoad, out KinePose inFlange));
        Testing.Near(Tool.TFrame, inFlange.Frame, "flange");
        Testing.Ok(Kine_GetArmType(Joints, out KineArmConfig config));
        Testing.Equal(Posture, config, "Kine_GetArmType");
    }

    public static void inverse_of_the_six_axis_arm_gives_the_joints_for_the_position_worked_out_by_hand()
    {
        Arms.UsePuma();
        KinePose target = new KinePose(TipOfPuma(), Posture);
        target.ExtAxis[3] = 12.5;
        KineJoint expected = Joints;
        expected.ExtAxis[3] = 12.5;
        Testing.Ok(Kine_WobjPosToJoint(target, Tool, Arms.World, Arms.NoLoad, out KineJoint joints));
        Testing.Near(expected, joints, "joints", 1e-6);
    }

    public static void a_work_object_moves_the_position_into_its_frame()
    {
        Arms.UsePuma();
        KineFrame tip = TipOfPuma();
        // The user frame looks along Y, so that the object frame stands 2 mm against X and 1 mm along Y from it.
        KineWobj wobj = KineWobj.Fixed(new KineFrame(100.0, 200.0, 300.0, 90.0), new KineFrame(1.0, 2.0, 3.0));
        Testing.Ok(Kine_JointToWobjPos(Joints, Tool, wobj, Arms.NoLoad, out KinePose inWobj));
        Testing.Near(new KineFrame(tip.Y - 201.0, 98.0 - tip.X, tip.Z - 303.0, tip.A - 90.0, tip.B, tip.C),
                     inWobj.Frame, "work object");
        Testing.Ok(Kine_WobjPosToJoint(inWobj, Tool, wobj, Arms.NoLoad, out KineJoint joints));
        Testing.Near(Joints, joints, "joints", 1e-6);
    }

    public static void all_eight_postures_of_one_position_come_back_to_it()
    {
        Arms.UsePuma();
        for (int posture = 0; posture < 8; ++posture)
        {
            KinePose target = new KinePose(TipOfPuma(), new KineArmConfig(0, 0, 0, posture));
            Testing.Ok(Kine_WobjPosToJoint(target, Tool, Arms.World, Arms.NoLoad, out KineJoint joints));
            Testing.Ok(Kine_JointToWobjPos(joints, Tool, Arms.World, Arms.NoLoad, out KinePose reached));
            Testing.Near(TipOfPuma(), reached.Frame, "posture " + posture, 1e-5);
            Testing.Equal(posture, reached.Cfg4, "posture");
        }
    }

    // Four-axis arm: x = L1 cos q1 + L2 cos(q1 + q2), y likewise, z = ZOffset + lead q3 / 360, A = q1 + q2 + q4.
    static KineFrame FlangeOfScara(double q1, double q2, double q3, double q4)
    {
        double first = q1 * Math.PI / 180.0, both = (q1 + q2) * Math.PI / 180.0;
        return new KineFrame(300.0 * Math.Cos(first) + 200.0 * Math.Cos(both),
                             300.0 * Math.Sin(first) + 200.0 * Math.Sin(both), 100.0 + 20.0 * q3 / 360.0, q1 + q2 + q4);
    }

    public static void the_four_axis_arm_there_and_back_is_its_closed_form()
    {
        Arms.UseScara();
        KineTool flange = KineTool.Held(new KineFrame());
        Testing.Ok(Kine_JointToWorldPos(new KineJoint(30.0, 45.0, -900.0, 25.0), flange, Arms.World, Arms.NoLoad,
                                        out KinePose pose));
        Testing.Near(FlangeOfScara(30.0, 45.0, -900.0, 25.0), pose.Frame, "flange");
        Testing.Equal(new KineArmConfig(1, 0, 0, 0), pose.Config, "configuration");

        Testing.Ok(Kine_WobjPosToJoint(pose, flange, Arms.World, Arms.NoLoad, out KineJoint joints));
        Testing.Near(new KineJoint(30.0, 45.0, -900.0, 25.0), joints, "joints", 1e-6);

        // The other elbow: the links mirrored at the line from the origin to the flange, which points along aim.
        double aim = Math.Atan2(pose.Frame.Y, pose.Frame.X) * 180.0 / Math.PI;
        double q1 = 2.0 * aim - 30.0;
        pose.Cfg1 = -1;
        Testing.Ok(Kine_WobjPosToJoint(pose, flange, Arms.World, Arms.NoLoad, out joints));
        Testing.Near(new KineJoint(q1, -45.0, -900.0, 30.0 + 45.0 + 25.0 - (q1 - 45.0)), joints, "mirrored", 1e-6);
    }

    public static void the_folded_four_axis_arm_counts_axis_2_from_the_folded_elbow()
    {
        Arms.UseScara(KineArm.FourAxis4110);
        KineTool flange = KineTool.Held(new KineFrame());
        Testing.Ok(Kine_JointToWorldPos(new KineJoint(30.0, 45.0 - 180.0, 0.0, 25.0), flange, Arms.World, Arms.NoLoad,
                                        out KinePose pose));
        KineFrame expected = FlangeOfScara(30.0, 45.0, 0.0, 25.0);
        Testing.Near(expected.X, pose.Frame.X, "X");
        Testing.Near(expected.Y, pose.Frame.Y, "Y");
    }

    public static void vision_leaves_the_last_joint_out()
    {
        Arms.UsePuma();
        KineJoint turned = Joints;
        turned.Axis[5] = -17.0;
        Testing.Ok(Kine_FKineVision(Joints, out KinePose pose));
        Testing.Ok(Kine_FKineVision(turned, out KinePose same));
        Testing.True(Testing.SameBits(pose.Frame, same.Frame), "depends on axis 6");

        Arms.UseScara();
        Testing.Ok(Kine_FKineVision(new KineJoint(30.0, 45.0, -900.0, 25.0), out pose));
        KineFrame forearm = FlangeOfScara(30.0, 45.0, 0.0, 0.0);
        forearm.Z = 0.0;
        Testing.Near(forearm, pose.Frame, "forearm");
    }

    public static void axis_limits_bound_the_turns_that_a_pose_may_ask_for()
    {
        Arms.UsePuma();
        KinePose pose = new KinePose(TipOfPuma(), Posture);
        Testing.Ok(Kine_IsArmTypeValid(pose));
        pose.Cfg1 = 40;
        Testing.Ok(Kine_IsArmTypeValid(pose));
        KineJoint upper = new KineJoint(170.0, 170.0, 170.0, 170.0, 170.0, 170.0);
        KineJoint lower = new KineJoint(-170.0, -170.0, -170.0, -170.0, -170.0, -170.0);
        Testing.Ok(Kine_SetAxisLimit(upper, lower));
        Testing.Equal(KINE_ERR_CONFIG, Kine_IsArmTypeValid(pose), "ten turns");
        Testing.Ok(Kine_IsArmTypeValid(new KinePose(TipOfPuma(), Posture)));
    }

    public static void a_straight_wrist_is_singular_by_both_kinds_and_a_bent_one_by_none()
    {
        Arms.UsePuma();
        KineJoint straight = new KineJoint(30.0, 0.0, 0.0, 0.0, 0.0, 0.0);
        // Between the two thresholds: sin(4 deg) = 0.0698 lies over 0.05 and under 0.087266.
        KineJoint nearly = new KineJoint(30.0, 0.0, 0.0, 0.0, 4.0, 0.0);
        foreach (KineSingularityKind kind in new[] { KineSingularityKind.Narrow, KineSingularityKind.Wide })
        {
            Testing.Equal(KINE_SINGULAR, Kine_IsSingularity(straight, kind), "straight " + kind);
            Testing.Ok(Kine_IsSingularity(Joints, kind));
        }
        Testing.Ok(Kine_IsSingularity(nearly, KineSingularityKind.Narrow));
        Testing.Equal(KINE_SINGULAR, Kine_IsSingularity(nearly, KineSingularityKind.Wide), "nearly straight");
    }

    // 10 kg near the wrist turn joint 2 by some 47 N m at half a metre: 0.2 mm and more at the tip.
    public static void a_payload_bends_a_soft_arm()
    {
        KineSixAxisParam soft = Arms.Puma;
        soft.k2 = soft.k3 = soft.k5 = 1e5;
        KineLoad payload = new KineLoad(10.0, new KineVector(0.0, 0.0, 50.0));
        Testing.Ok(Kine_InitKinematicParam(KineArm.SixAxis, soft));
        Testing.Ok(Kine_JointToBasePos(Joints, Tool, Arms.World, payload, out KinePose loaded));
        Testing.Ok(Kine_JointToBasePos(Joints, Tool, Arms.World, Arms.NoLoad, out KinePose empty));
        Testing.Near(TipOfPuma(), empty.Frame, "without a load and link weights");
        Testing.True(loaded.Frame.Z < empty.Frame.Z - 0.1, "the tip does not sink");
    }

    public static void the_robot_moves_with_its_track()
    {
        Arms.UsePuma();
        Arms.AddUnits();
        KineJoint joints = Joints;
        joints.ExtAxis[5] = 750.0;
        Testing.Ok(Kine_JointToWorldPos(joints, Tool, Arms.World, Arms.NoLoad, out KinePose pose));
        KineFrame expected = TipOfPuma();
        expected.X += 750.0;
        expected.Z += 50.0;
        Testing.Near(expected, pose.Frame, "world");
        Testing.Equal(750.0, pose.ExtAxis[5], "external axis 6");
    }

    public static void a_work_object_turns_with_its_unit()
    {
        Arms.UsePuma();
        Arms.AddUnits();
        KineJoint joints = Joints;
        joints.ExtAxis[0] = 90.0;
        // In the table, turned by 90 degrees: X of the work object is Y of the world. Object frame 10 mm along that X.
        KineWobj wobj = KineWobj.OnMechUnit(Arms.Table, new KineFrame(10.0, 0.0, 0.0));
        KineFrame tip = TipOfPuma();
        Testing.Ok(Kine_JointToWobjPos(joints, Tool, wobj, Arms.NoLoad, out KinePose pose));
        Testing.Near(new KineFrame(tip.Y - 10.0, 400.0 - tip.X, tip.Z + 50.0 - 200.0, tip.A - 90.0, tip.B, tip.C),
                     pose.Frame, "work object");
        Testing.Ok(Kine_WobjPosToJoint(pose, Tool, wobj, Arms.NoLoad, out KineJoint back));
        Testing.Near(joints, back, "joints", 1e-6);
    }

    public static void setup_calls_refuse_what_is_out_of_range()
    {
        Testing.Equal(KINE_ERR_UNKNOWN_ARM_TYPE, Kine_InitKinematicParam((KineArm)5, Arms.Puma), "arm type 5");
        Testing.Equal(KINE_ERR_NOT_INITIALISED, Kine_GetArmType(Joints, out _), "after a failure");
        Testing.Equal(KINE_ERR_MODEL_PARAM, Kine_InitKinematicParam(KineArm.SixAxis, new KineSixAxisParam()),
                      "no lengths");
        Testing.Equal(KINE_ERR_MODEL_PARAM, Kine_InitKinematicParam(KineArm.FourAxis, new KineFourAxisParam()),
                      "no lengths");
        Arms.UsePuma();
        Testing.Equal(KINE_ERR_MECH_UNIT_COUNT, Kine_SetMechUnitGlobalCfg(4, 6, 1), "four units");
        Testing.Equal(KINE_ERR_MECH_UNIT, Kine_SetMechUnitParam(3, new KineMechUnit()), "unit 3");
        Testing.Equal(KINE_ERR_EXT_AXIS_PARAM, Kine_SetExtAxisParam(-1, new KineExtAxisParam()), "external axis -1");
    }

    public static void refused_records_give_their_own_codes()
    {
        Arms.UsePuma();
        KineFrame beyond = new KineFrame(0.0, 0.0, 0.0, 181.0);
        KineLoad negative = new KineLoad(-1.0, new KineVector());
        KineTool stationary = KineTool.Stationary(new KineFrame());
        Testing.Equal(KINE_ERR_TOOL, Kine_JointToBasePos(Joints, KineTool.Held(beyond), Arms.World, Arms.NoLoad, out _),
                      "tool");
        Testing.Equal(KINE_ERR_TOOL,
                      Kine_JointToBasePos(Joints, KineTool.Held(new KineFrame(), negative), Arms.World, Arms.NoLoad,
                                          out _),
                      "load of the tool");
        Testing.Equal(KINE_ERR_WOBJ, Kine_JointToBasePos(Joints, Tool, KineWobj.Fixed(beyond), Arms.NoLoad, out _),
                      "user frame");
        Testing.Equal(KINE_ERR_WOBJ, Kine_JointToBasePos(Joints, Tool, new KineWobj(), Arms.NoLoad, out _), "zeros");
        Testing.Equal(KINE_ERR_LOAD, Kine_JointToBasePos(Joints, Tool, Arms.World, negative, out _), "load");
        Testing.Equal(KINE_ERR_HOLD, Kine_JointToBasePos(Joints, stationary, Arms.World, Arms.NoLoad, out _), "hold");
        Testing.Equal(KINE_ERR_POSE,
                      Kine_WobjPosToJoint(new KinePose(beyond), Tool, Arms.World, Arms.NoLoad, out _), "pose");
        KinePose far = new KinePose(new KineFrame(5000.0, 0.0, 0.0));
        Testing.Equal(KINE_ERR_IK_7, Kine_WobjPosToJoint(far, Tool, Arms.World, Arms.NoLoad, out _), "out of reach");
    }
}
