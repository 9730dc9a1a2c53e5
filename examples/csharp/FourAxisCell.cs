// A four-axis arm in a small cell: joints to a position and back with both elbows, and the calibration of its tool from
// two touches of one fixed tip. Exits with 1 when a call fails or an answer is not the known one.

using System;
using Kine;
using static Kine.KineDll;

static class FourAxisCell
{
    static readonly KineLoad NoLoad = new KineLoad();

    // Answers of exact inputs agree up to the end of the refinement: a squared error of 1e-12.
    const double Tolerance = 1e-5;

    static int Main()
    {
        try
        {
            // Textbook proportions, not a product: links of 325 and 275 mm, a screw of 20 mm per revolution.
            Check(Kine_InitKinematicParam(KineArm.FourAxis, new KineFourAxisParam
            {
                Link1Length = 325.0, Link2Length = 275.0, ZOffset = 150.0, ScrewLead = 20.0,
            }));
            bool right = SolveBothElbows() & CalibrateTool();
            Console.WriteLine(right ? "All answers are right." : "An answer is wrong.");
            return right ? 0 : 1;
        }
        catch (KineException refused)
        {
            Console.Error.WriteLine(refused.Message);
            return 1;
        }
    }

    // Axis 3 is the angle of the screw: -2.5 revolutions lower the flange by 50 mm.
    static bool SolveBothElbows()
    {
        KineTool tool = KineTool.Held(new KineFrame(35.0, 0.0, -80.0, 15.0));
        KineWobj pallet = KineWobj.Fixed(new KineFrame(250.0, 150.0, 0.0, 20.0));
        Check(Kine_JointToWobjPos(new KineJoint(30.0, 45.0, -900.0, 25.0), tool, pallet, NoLoad, out KinePose target));
        Console.WriteLine("Tool centre point on the pallet: {0}", target.Frame);

        bool right = true;
        foreach (int elbow in new[] { 1, -1 })
        {
            target.Cfg1 = elbow;
            Check(Kine_WobjPosToJoint(target, tool, pallet, NoLoad, out KineJoint joints));
            Check(Kine_JointToWobjPos(joints, tool, pallet, NoLoad, out KinePose reached));
            double off = Distance(target.Frame, reached.Frame);
            Console.Write("  elbow {0:+0;-0}:", elbow);
            for (int i = 0; i < 4; ++i) Console.Write(FormattableString.Invariant($"  {joints.Axis[i]:F4}"));
            Console.WriteLine(" deg");
            right &= off < Tolerance;
        }
        return right;
    }

    // The gripper is 60 mm off the flange axis. It touches the tip in two headings; only the joints are known then.
    static bool CalibrateTool()
    {
        KineFrame known = new KineFrame(60.0, -15.0, 0.0);
        KineFrame tip = new KineFrame(380.0, 120.0, 90.0);
        KineJoint first = Touch(tip, 0.0, known), second = Touch(tip, 75.0, known);

        // The poses to teach: the flange in the base, which is the tool centre point of a tool of zeros.
        Check(Kine_CalcGripToolPrm_Scara2P(FlangeOf(first), FlangeOf(second), out KineFrame found));
        Console.WriteLine("Tool found: {0}", found);
        return Distance(known, found) < Tolerance;
    }

    static KineJoint Touch(KineFrame tip, double heading, KineFrame tool)
    {
        tip.A = heading;
        KinePose target = new KinePose(tip, new KineArmConfig(1, 0, 0, 0));
        Check(Kine_WobjPosToJoint(target, KineTool.Held(tool), KineWobj.Fixed(), NoLoad, out KineJoint joints));
        return joints;
    }

    static KinePose FlangeOf(KineJoint joints)
    {
        KineTool none = KineTool.Held(new KineFrame());
        Check(Kine_JointToBasePos(joints, none, KineWobj.Fixed(), NoLoad, out KinePose flange));
        return flange;
    }

    static double Distance(KineFrame a, KineFrame b)
    {
        return Math.Sqrt((a.X - b.X) * (a.X - b.X) + (a.Y - b.Y) * (a.Y - b.Y) + (a.Z - b.Z) * (a.Z - b.Z));
    }
}
