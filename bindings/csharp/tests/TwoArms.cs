// Two arms in one process, each with a library file and a binding of its own: the second binding is the same source
// with another namespace and another library name. Their calls alternate, and no arm sees the other's configuration.

using System;

static class TwoArms
{
    static int Main()
    {
        Kine.KineFourAxisParam scara = new Kine.KineFourAxisParam
        {
            Link1Length = 300.0, Link2Length = 200.0, ZOffset = 100.0, ScrewLead = 20.0,
        };
        Kine.KineDll.Check(Kine.KineDll.Kine_InitKinematicParam(Kine.KineArm.FourAxis, scara));
        KineB.KineSixAxisParam puma = KineB.KineSixAxisParam.Nominal(
            d1: 0.0, a1: 0.0, a2: 431.8, a3: 20.3, lateralOffset: -150.05, d4: 431.8, d6: 0.0);
        KineB.KineDll.Check(KineB.KineDll.Kine_InitKinematicParam(KineB.KineArm.SixAxis, puma));

        bool right = true;
        for (int i = 0; i < 3; ++i)
        {
            Kine.KineDll.Check(Kine.KineDll.Kine_JointToBasePos(
                new Kine.KineJoint(0.0, 90.0, 0.0, 0.0), Kine.KineTool.Held(new Kine.KineFrame()),
                Kine.KineWobj.Fixed(), new Kine.KineLoad(), out Kine.KinePose first));
            KineB.KineDll.Check(KineB.KineDll.Kine_JointToBasePos(
                new KineB.KineJoint(0.0, 0.0, 0.0, 0.0, -60.0, 0.0), KineB.KineTool.Held(new KineB.KineFrame()),
                KineB.KineWobj.Fixed(), new KineB.KineLoad(), out KineB.KinePose second));
            // The four-axis arm with its forearm along Y; the six-axis arm with its upper arm upright, forearm level.
            right &= Distance(first.Frame.X - 300.0, first.Frame.Y - 200.0, first.Frame.Z - 100.0) < 1e-9;
            right &= Distance(second.Frame.X - 431.8, second.Frame.Y - 150.05, second.Frame.Z - 452.1) < 1e-9;
        }
        Console.WriteLine(right ? "Two arms." : "An arm is not itself.");
        return right ? 0 : 1;
    }

    static double Distance(double x, double y, double z)
    {
        return Math.Sqrt(x * x + y * y + z * z);
    }
}
