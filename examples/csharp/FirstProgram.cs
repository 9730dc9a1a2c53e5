// A first program: describe an arm, ask where its tool is, and find the joints that bring it back there.

using System;
using Kine;
using static Kine.KineDll;

static class FirstProgram
{
    static int Main()
    {
        try
        {
            // The Puma 560, lengths in mm.
            Check(Kine_InitKinematicParam(KineArm.SixAxis, KineSixAxisParam.Nominal(
                d1: 0.0, a1: 0.0, a2: 431.8, a3: 20.3, lateralOffset: -150.05, d4: 431.8, d6: 0.0)));

            // A tool on the flange, a work object that stands still at the world origin, no payload.
            KineTool tool = KineTool.Held(new KineFrame(0.0, 0.0, 100.0));
            KineWobj wobj = KineWobj.Fixed();
            KineLoad load = new KineLoad();

            KineJoint joints = new KineJoint(180.0, 45.0, 180.0, 0.0, -45.0, 0.0);
            Check(Kine_JointToWobjPos(joints, tool, wobj, load, out KinePose pose));
            Console.WriteLine("tool centre point: {0}", pose.Frame);

            // The pose carries the configuration of the joints, so it leads back to the same ones.
            Check(Kine_WobjPosToJoint(pose, tool, wobj, load, out KineJoint solved));
            Console.Write("joints:");
            for (int i = 0; i < 6; ++i) Console.Write(FormattableString.Invariant($"  {solved.Axis[i]:F4}"));
            Console.WriteLine(" deg");
            return 0;
        }
        catch (KineException refused)
        {
            // Name, number, cause and what to do.
            Console.Error.WriteLine(refused.Message);
            return 1;
        }
    }
}
