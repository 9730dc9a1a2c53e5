// Arms and cells that the tests share.

using Kine;
using static Kine.KineDll;

static class Arms
{
    public static readonly KineWobj World = KineWobj.Fixed();
    public static readonly KineLoad NoLoad = new KineLoad();

    // The Puma 560, lengths in mm; axis 3 lies 150.05 mm beside the plane of axis 1.
    public const double UpperArm = 431.8;
    public const double Elbow = 20.3;
    public const double Forearm = 431.8;
    public const double Beside = 150.05;

    public static readonly KineSixAxisParam Puma =
        KineSixAxisParam.Nominal(d1: 0.0, a1: 0.0, a2: UpperArm, a3: Elbow, lateralOffset: -Beside, d4: Forearm,
                                 d6: 0.0);

    // Links of 300 and 200 mm, the flange at 100 mm, 20 mm per revolution of the screw.
    public static readonly KineFourAxisParam Scara =
        new KineFourAxisParam { Link1Length = 300.0, Link2Length = 200.0, ZOffset = 100.0, ScrewLead = 20.0 };

    public static void UsePuma()
    {
        Testing.Ok(Kine_InitKinematicParam(KineArm.SixAxis, Puma));
    }

    public static void UseScara(KineArm type = KineArm.FourAxis)
    {
        Testing.Ok(Kine_InitKinematicParam(type, Scara));
    }

    // Three units: unit 0 says that the robot stands on unit 2, a track along X driven by external axis 6; unit 1
    // turns about Z, 400 mm in front of the world origin, driven by external axis 1, and carries a second turning
    // axis 200 mm above, driven by external axis 2.
    public const int Table = 1;
    public const int Track = 2;

    public static void AddUnits()
    {
        Testing.Ok(Kine_SetMechUnitGlobalCfg(3, 6, 1));

        KineMechUnit mounting = new KineMechUnit { Active = 1, Option1 = 1, Option2 = Track };
        Testing.Ok(Kine_SetMechUnitParam(0, mounting));

        KineMechUnit table = new KineMechUnit { Active = 1, UnitKind = KineUnitKind.TwoRotary, AxisCount = 2 };
        table.AxisFrame[0] = new KineFrame(400.0, 0.0, 0.0);
        table.AxisFrame[1] = new KineFrame(0.0, 0.0, 200.0);
        table.AxisParamIndex[0] = 0;
        table.AxisParamIndex[1] = 1;
        Testing.Ok(Kine_SetMechUnitParam(Table, table));

        KineMechUnit track = new KineMechUnit { Active = 1, UnitKind = KineUnitKind.Linear, AxisCount = 1 };
        track.AxisFrame[0] = new KineFrame(0.0, 0.0, 50.0);
        track.AxisParamIndex[0] = 5;
        Testing.Ok(Kine_SetMechUnitParam(Track, track));

        KineExtAxisParam linear = new KineExtAxisParam();
        linear.Word[3] = 1;
        Testing.Ok(Kine_SetExtAxisParam(5, linear));
        Testing.Ok(Kine_SetExtAxisParam(0, new KineExtAxisParam()));
        Testing.Ok(Kine_SetExtAxisParam(1, new KineExtAxisParam()));
    }
}
