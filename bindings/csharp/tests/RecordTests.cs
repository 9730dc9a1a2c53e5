// How records travel: results over inputs, results kept on failure, records inside arrays and objects, no record at
// all, and many threads.

using System;
using System.Globalization;
using System.Linq;
using System.Runtime.InteropServices;
using System.Threading;
using Kine;
using static Kine.KineDll;

static class RecordTests
{
    static readonly KineFrame Step = new KineFrame(10.0, 0.0, 0.0);

    // Seen from above, the pose looks along Y: a step along its own X goes along Y of the frame.
    static readonly KinePose Start = new KinePose(new KineFrame(100.0, 0.0, 7.0, 90.0), new KineArmConfig(1, 2, 3, 4));

    static KinePose Stepped()
    {
        KinePose pose = Start;
        pose.Frame.Y = 10.0;
        return pose;
    }

    public static void a_result_may_take_the_place_of_its_input()
    {
        KinePose pose = Start;
        Testing.Ok(Kine_ToolCoordOffset(pose, Step, out pose));
        Testing.Near(Stepped().Frame, pose.Frame, "pose");
        Testing.Equal(Start.Config, pose.Config, "configuration");
    }

    public static void a_failing_call_keeps_its_result_record()
    {
        KinePose kept = Stepped();
        Testing.Equal(KINE_ERR_OFFSET_FRAME,
                      Kine_ToolCoordOffset(Start, new KineFrame(0.0, 0.0, 0.0, 0.0, 180.1), out kept), "code");
        Testing.True(Testing.SameBits(Stepped(), kept), "the result has changed");
    }

    public static void a_call_leaves_its_inputs_as_they_are()
    {
        KinePose pose = Start;
        KineFrame offset = Step;
        Testing.Ok(Kine_ToolCoordOffset(pose, offset, out KinePose result));
        Testing.True(Testing.SameBits(Start, pose) && Testing.SameBits(Step, offset), "an input has changed");
        Testing.Near(Stepped().Frame, result.Frame, "result");
    }

    sealed class Station
    {
        public KinePose Pose;
    }

    public static void records_inside_arrays_and_objects_are_reached_in_place()
    {
        KinePose[] path = { Start, new KinePose(), Stepped() };
        Testing.Ok(Kine_ToolCoordOffset(path[0], Step, out path[1]));
        Testing.Near(Stepped().Frame, path[1].Frame, "element");
        Testing.True(Testing.SameBits(Start, path[0]), "the element before has changed");
        Testing.True(Testing.SameBits(Stepped(), path[2]), "the element after has changed");
        Station station = new Station { Pose = Start };
        Testing.Ok(Kine_ToolCoordOffset(station.Pose, Step, out station.Pose));
        Testing.Near(Stepped().Frame, station.Pose.Frame, "object");
    }

    public static void numbers_that_are_none_travel_as_they_are()
    {
        Arms.UsePuma();
        KineJoint joints = new KineJoint(double.NaN, 0.0, 0.0, 0.0);
        joints.ExtAxis[0] = double.NegativeInfinity;
        joints.ExtAxis[1] = -0.0;
        KineTool flange = KineTool.Held(new KineFrame());
        Testing.Ok(Kine_JointToBasePos(joints, flange, Arms.World, Arms.NoLoad, out KinePose pose));
        Testing.True(double.IsNaN(pose.Frame.X), "NaN");
        Testing.Equal(double.NegativeInfinity, pose.ExtAxis[0], "infinity");
        Testing.True(Testing.SameBits(-0.0, pose.ExtAxis[1]), "minus zero");
    }

    public static void a_frame_is_written_alike_in_every_culture()
    {
        CultureInfo before = Thread.CurrentThread.CurrentCulture;
        Thread.CurrentThread.CurrentCulture = new CultureInfo("de-DE");
        try
        {
            Testing.Equal("1,5", 1.5.ToString(), "the culture takes no effect");
            Testing.Equal("X 1.5000  Y -2.0000  Z 1234567.0000 mm  A 0.2500  B 90.0000  C -179.9000 deg",
                          new KineFrame(1.5, -2.0, 1234567.0, 0.25, 90.0, -179.9).ToString(), "frame");
        }
        finally
        {
            Thread.CurrentThread.CurrentCulture = before;
        }
    }

    // The same functions with addresses, as a program declares them that has to pass none.
    static class Addresses
    {
        [DllImport("KineDll", CallingConvention = CallingConvention.Cdecl)]
        public static extern uint Kine_ToolCoordOffset(IntPtr pose, ref KineFrame offset, out KinePose result);

        [DllImport("KineDll", CallingConvention = CallingConvention.Cdecl)]
        public static extern uint Kine_CalcExtWobj_UserPrm_2P(ref KinePose origin, ref KinePose xPoint,
                                                              out KineFrame frame, IntPtr tilt);

        [DllImport("KineDll", CallingConvention = CallingConvention.Cdecl)]
        public static extern int SafeArea_Check(IntPtr joints, IntPtr centre, double size);
    }

    public static void no_record_gives_the_code_of_the_record_or_leaves_a_report_out()
    {
        KinePose start = Start, kept = Start;
        KineFrame step = Step;
        Testing.Equal(KINE_ERR_POSE, Addresses.Kine_ToolCoordOffset(IntPtr.Zero, ref step, out kept), "pose");
        Testing.True(Testing.SameBits(Start, kept), "the result has changed");
        KinePose ahead = new KinePose(new KineFrame(200.0, 0.0, 7.0));
        Testing.Ok(Addresses.Kine_CalcExtWobj_UserPrm_2P(ref start, ref ahead, out KineFrame without, IntPtr.Zero));
        Testing.Ok(Kine_CalcExtWobj_UserPrm_2P(Start, ahead, out KineFrame with, out _));
        Testing.True(Testing.SameBits(with, without), "the frame depends on the tilt");
        Testing.Equal((int)KINE_ERR_WOBJ, Addresses.SafeArea_Check(IntPtr.Zero, IntPtr.Zero, 1.0), "nothing at all");
    }

    public static void reading_calls_of_many_threads_give_the_answers_of_one()
    {
        Arms.UsePuma();
        KineTool tool = KineTool.Held(new KineFrame(0.0, 0.0, 100.0));
        KinePose[] alone = new KinePose[500];
        for (int i = 0; i < alone.Length; ++i)
        {
            Testing.Ok(Kine_JointToWobjPos(JointsOf(i), tool, Arms.World, Arms.NoLoad, out alone[i]));
        }
        int wrong = 0;
        Thread[] threads = Enumerable.Range(0, 4).Select(_ => new Thread(() =>
        {
            for (int i = 0; i < alone.Length; ++i)
            {
                uint code = Kine_JointToWobjPos(JointsOf(i), tool, Arms.World, Arms.NoLoad, out KinePose pose);
                uint back = Kine_WobjPosToJoint(pose, tool, Arms.World, Arms.NoLoad, out KineJoint joints);
                double off = Math.Abs(joints.Axis[0] - JointsOf(i).Axis[0]);
                if (code != KINE_OK || back != KINE_OK || off > 1e-6 || !Testing.SameBits(alone[i], pose))
                {
                    Interlocked.Increment(ref wrong);
                }
            }
        })).ToArray();
        foreach (Thread thread in threads) thread.Start();
        foreach (Thread thread in threads) thread.Join();
        Testing.Equal(0, wrong, "wrong answers");
    }

    static KineJoint JointsOf(int i)
    {
        return new KineJoint(0.2 * i - 50.0, 5.0, 10.0, 20.0, -60.0, 30.0);
    }
}
