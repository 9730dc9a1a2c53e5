// KineDll for C#: every function of the library, its records, modes and result codes. Add this one file to a project;
// it needs C# 7, no unsafe code and nothing beyond .NET Standard 2.0.
//
// Names, order and units are those of KineDll.h, which says more about each function. Inputs are values, results "out"
// parameters. Records lie in memory as the library sees them, so that nothing is converted on the way. An array inside
// a record is a structure with an index: joints.Axis[0] is axis 1.

using System;
using System.Globalization;
using System.Runtime.InteropServices;

// Reserved bytes have a place and no use.
#pragma warning disable 0169

namespace Kine
{
    /// <summary>Arm type.</summary>
    public enum KineArm : uint
    {
        /// <summary>Four-axis arm, vertical screw axis 3.</summary>
        FourAxis = 4,
        /// <summary>Six-axis serial arm.</summary>
        SixAxis = 6,
        /// <summary>Four-axis arm with its axis 2 counted from the folded elbow.</summary>
        FourAxis4110 = 4110,
    }

    /// <summary>Posture of arm type 6: the sum of its bits is Cfg4, 0 to 7.</summary>
    [Flags]
    public enum KinePosture
    {
        /// <summary>Axis 5 not negative, elbow on the near side, wrist in front.</summary>
        None = 0,
        /// <summary>Axis 5 is negative.</summary>
        Axis5Negative = 1,
        /// <summary>Elbow on the far side: axis 3 at or beyond 90 degrees - atan(a3 / d4).</summary>
        ElbowFar = 2,
        /// <summary>Wrist centre behind the axis of joint 1.</summary>
        WristBehind = 4,
    }

    /// <summary>Thresholds of <see cref="KineDll.Kine_IsSingularity"/>.</summary>
    public enum KineSingularityKind : uint
    {
        /// <summary>Arm type 6: 20 mm, 0.05, 0.05; arm types 4 and 4110: 0.0192 rad.</summary>
        Narrow = 1,
        /// <summary>Arm type 6: 30 mm, 0.087266, 0.087266; arm types 4 and 4110: 0.0524 rad.</summary>
        Wide = 2,
    }

    /// <summary>What a jog step moves along: see <see cref="KineDll.Kine_InchMovePosCalc"/>.</summary>
    public enum KineInchMode
    {
        /// <summary>Joints.</summary>
        Joint = 1,
        /// <summary>Along and about the axes of the robot base.</summary>
        Base = 2,
        /// <summary>Of the tool.</summary>
        Tool = 3,
        /// <summary>Of the work object.</summary>
        Wobj = 4,
        /// <summary>
        /// Of the world, as long as the base stands as the world does. Where a rotary unit has turned the base, the
        /// directions are turned by the same rotation and then taken along the axes of the base.
        /// </summary>
        World = 5,
    }

    /// <summary>What a tool is aligned with: see <see cref="KineDll.Kine_CalcAlignPos"/>.</summary>
    public enum KineAlignMode
    {
        /// <summary>Work object, with the flange of a held work object turned.</summary>
        WobjByFlange = -1,
        /// <summary>Robot base.</summary>
        Base = 2,
        /// <summary>Work object.</summary>
        Wobj = 4,
        /// <summary>World.</summary>
        World = 5,
    }

    /// <summary>The way to the work object: see <see cref="KineDll.Kine_CrdPosToWobjPos"/>.</summary>
    public enum KineCrdMode
    {
        /// <summary>From the robot base, through the mounting of the robot and the object in the cell.</summary>
        FromBase = -2,
        /// <summary>From the world to a fixed work object, with a stationary tool.</summary>
        FromWorld = -1,
    }

    /// <summary>The axes of a difference: see <see cref="KineDll.Kine_CalcPosDif"/>.</summary>
    public enum KineDifFrame
    {
        /// <summary>Those of the first pose.</summary>
        FirstPose = -1,
        /// <summary>Those of the frame in which both poses are given.</summary>
        Reference = 1,
    }

    /// <summary>Kind of a mechanical unit.</summary>
    public enum KineUnitKind : ushort
    {
        /// <summary>No unit.</summary>
        None = 0,
        /// <summary>One linear axis.</summary>
        Linear = 1,
        /// <summary>One rotary axis.</summary>
        Rotary = 2,
        /// <summary>Two rotary axes.</summary>
        TwoRotary = 3,
    }

    /// <summary>A frame: position in mm, orientation R = Rz(A) * Ry(B) * Rx(C) in degrees.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineFrame
    {
        /// <summary>mm</summary>
        public double X;
        /// <summary>mm</summary>
        public double Y;
        /// <summary>mm</summary>
        public double Z;
        /// <summary>deg, rotation about Z</summary>
        public double A;
        /// <summary>deg, rotation about Y</summary>
        public double B;
        /// <summary>deg, rotation about X</summary>
        public double C;

        /// <summary>A frame of mm and degrees.</summary>
        public KineFrame(double x, double y, double z, double a = 0.0, double b = 0.0, double c = 0.0)
        {
            X = x;
            Y = y;
            Z = z;
            A = a;
            B = b;
            C = c;
        }

        /// <summary>Position and angles with four digits, the same in every culture.</summary>
        public override string ToString()
        {
            return string.Format(CultureInfo.InvariantCulture,
                "X {0:F4}  Y {1:F4}  Z {2:F4} mm  A {3:F4}  B {4:F4}  C {5:F4} deg", X, Y, Z, A, B, C);
        }
    }

    /// <summary>
    /// Posture and turns of an arm. A quarter-turn number is 0 for [0, 90), 1 for [90, 180), -1 for [-90, 0) degrees
    /// and so on; every boundary lies 0.0005 degrees lower.
    /// </summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineArmConfig
    {
        /// <summary>
        /// Arm type 6: quarter-turn number of axis 1. Arm type 4: +1 for axis 2 above 0, otherwise -1. Arm type 4110:
        /// +1 for axis 2, wrapped into +-180, below 0, otherwise -1.
        /// </summary>
        public int Cfg1;
        /// <summary>Quarter-turn number of axis 4 (arm type 6) or 1 (4110); 0 (4).</summary>
        public int Cfg2;
        /// <summary>Quarter-turn number of axis 6 (arm type 6) or 2 (4110); 0 (4).</summary>
        public int Cfg3;
        /// <summary>
        /// Arm type 6: posture 0 to 7, see <see cref="KinePosture"/>. Arm types 4 and 4110: quarter-turn number of
        /// axis 4.
        /// </summary>
        public int Cfg4;

        /// <summary>The four integers.</summary>
        public KineArmConfig(int cfg1, int cfg2, int cfg3, int cfg4)
        {
            Cfg1 = cfg1;
            Cfg2 = cfg2;
            Cfg3 = cfg3;
            Cfg4 = cfg4;
        }
    }

    /// <summary>A Cartesian target: frame, configuration integers and external axes.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KinePose
    {
        /// <summary>mm, deg</summary>
        public KineFrame Frame;
        /// <summary>See <see cref="KineArmConfig.Cfg1"/>.</summary>
        public int Cfg1;
        /// <summary>See <see cref="KineArmConfig.Cfg2"/>.</summary>
        public int Cfg2;
        /// <summary>See <see cref="KineArmConfig.Cfg3"/>.</summary>
        public int Cfg3;
        /// <summary>See <see cref="KineArmConfig.Cfg4"/>.</summary>
        public int Cfg4;
        /// <summary>External axes 1 to 6: deg (rotary) or mm (linear)</summary>
        public KineDoubles6 ExtAxis;

        /// <summary>A pose with external axes 0.</summary>
        public KinePose(KineFrame frame, KineArmConfig config = default(KineArmConfig))
        {
            Frame = frame;
            Cfg1 = config.Cfg1;
            Cfg2 = config.Cfg2;
            Cfg3 = config.Cfg3;
            Cfg4 = config.Cfg4;
            ExtAxis = default(KineDoubles6);
        }

        /// <summary>The four configuration integers as one value.</summary>
        public KineArmConfig Config
        {
            get { return new KineArmConfig(Cfg1, Cfg2, Cfg3, Cfg4); }
            set
            {
                Cfg1 = value.Cfg1;
                Cfg2 = value.Cfg2;
                Cfg3 = value.Cfg3;
                Cfg4 = value.Cfg4;
            }
        }
    }

    /// <summary>An axis position. Arms use the first 4 or 6 axes; the others are carried but not read.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineJoint
    {
        /// <summary>Axes 1 to 8: deg; axis 3 of the four-axis arms is the angle of the screw</summary>
        public KineDoubles8 Axis;
        /// <summary>External axes 1 to 6: deg (rotary) or mm (linear)</summary>
        public KineDoubles6 ExtAxis;

        /// <summary>Joints in degrees with external axes 0.</summary>
        public KineJoint(double axis1, double axis2, double axis3, double axis4, double axis5 = 0.0,
                         double axis6 = 0.0)
        {
            Axis = default(KineDoubles8);
            ExtAxis = default(KineDoubles6);
            Axis[0] = axis1;
            Axis[1] = axis2;
            Axis[2] = axis3;
            Axis[3] = axis4;
            Axis[4] = axis5;
            Axis[5] = axis6;
        }
    }

    /// <summary>
    /// A load; a record of zeros is none. Accepted when Aom is within +-180 and Mass and Inertia are not negative
    /// (NaN passes).
    /// </summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineLoad
    {
        /// <summary>kg</summary>
        public double Mass;
        /// <summary>mm, centre of gravity</summary>
        public KineVector Cog;
        /// <summary>deg, orientation of the inertia axes; checked but not used</summary>
        public KineVector Aom;
        /// <summary>Ix, Iy, Iz; checked but without effect on any result</summary>
        public KineVector Inertia;

        /// <summary>A mass in kg with its centre of gravity in mm.</summary>
        public KineLoad(double mass, KineVector cog)
        {
            Mass = mass;
            Cog = cog;
            Aom = default(KineVector);
            Inertia = default(KineVector);
        }
    }

    /// <summary>A tool. Accepted when its frame angles are within +-180 and its load is acceptable.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineTool
    {
        /// <summary>1: on the flange; 0: stationary, the robot holds the work object</summary>
        public byte HeldByRobot;
        readonly KineReserved7 Reserved;
        /// <summary>Tool centre point in the flange, or in the world for a stationary tool: mm, deg</summary>
        public KineFrame TFrame;
        /// <summary>Load of the tool, centre of gravity in the flange</summary>
        public KineLoad TLoad;

        /// <summary>A tool on the flange.</summary>
        public static KineTool Held(KineFrame frame, KineLoad load = default(KineLoad))
        {
            return new KineTool { HeldByRobot = 1, TFrame = frame, TLoad = load };
        }

        /// <summary>A tool that stands in the world, for a work object that the robot holds.</summary>
        public static KineTool Stationary(KineFrame frame)
        {
            return new KineTool { TFrame = frame };
        }
    }

    /// <summary>
    /// A work object: user frame and, in it, object frame. Accepted when the angles of UFrame are within +-180 (also
    /// where UFrame is ignored), then, with UFFix 0, when MechUnitIndex is non-zero and below the number of
    /// mechanical units (a negative index passes here and fails in the frame conversion), then when the angles of
    /// OFrame are within +-180.
    /// </summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineWobj
    {
        /// <summary>1: held by the robot (stationary tool)</summary>
        public byte HeldByRobot;
        /// <summary>1: user frame fixed, given in UFrame; 0: carried by a mechanical unit</summary>
        public byte UFFix;
        /// <summary>The carrying mechanical unit when UFFix is 0</summary>
        public sbyte MechUnitIndex;
        readonly KineReserved5 Reserved;
        /// <summary>In the world, or in the flange when held; taken as zero unless UFFix is 1: mm, deg</summary>
        public KineFrame UFrame;
        /// <summary>In the user frame: mm, deg</summary>
        public KineFrame OFrame;

        /// <summary>A work object that stands still in the world; without frames, the world itself.</summary>
        public static KineWobj Fixed(KineFrame user = default(KineFrame), KineFrame obj = default(KineFrame))
        {
            return new KineWobj { UFFix = 1, UFrame = user, OFrame = obj };
        }

        /// <summary>A work object that the robot holds, for a stationary tool.</summary>
        public static KineWobj Held(KineFrame user, KineFrame obj = default(KineFrame))
        {
            return new KineWobj { HeldByRobot = 1, UFFix = 1, UFrame = user, OFrame = obj };
        }

        /// <summary>A work object on the last axis of mechanical unit 1 or 2.</summary>
        public static KineWobj OnMechUnit(sbyte unit, KineFrame obj = default(KineFrame))
        {
            return new KineWobj { MechUnitIndex = unit, OFrame = obj };
        }
    }

    /// <summary>A mechanical unit: a positioner or a track.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineMechUnit
    {
        /// <summary>0: accepted without looking at AxisCount</summary>
        public int Active;
        /// <summary>One linear, one rotary or two rotary axes</summary>
        public KineUnitKind UnitKind;
        /// <summary>1: this unit (stored at index 0) says what carries the robot</summary>
        public byte Option1;
        /// <summary>Index of the unit under the robot when Option1 is 1</summary>
        public byte Option2;
        /// <summary>Number of axes</summary>
        public byte AxisCount;
        readonly KineReserved7 Reserved;
        /// <summary>Rotary: the frame the axis turns about Z; linear: it moves along X: mm, deg</summary>
        public KineFrames6 AxisFrame;
        /// <summary>For each axis, which of the six external axes drives it (0 to 5)</summary>
        public KineBytes6 AxisParamIndex;
        readonly KineReserved2 Reserved2;
    }

    /// <summary>One external axis; stored for the caller. Only Word[3] is read by the library.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineExtAxisParam
    {
        /// <summary>Word[3] is 1 for a linear axis, any other value for a rotary one.</summary>
        public KineShorts4 Word;
        /// <summary>Not read</summary>
        public uint Raw0;
        /// <summary>Not read</summary>
        public uint Raw1;
        /// <summary>deg; not read</summary>
        public float AngleA;
        /// <summary>deg; not read</summary>
        public float AngleB;
        /// <summary>Not read</summary>
        public KineUInts7 Value;
        /// <summary>Not read</summary>
        public KineShorts3 Tail;
        readonly KineReserved2 Reserved;
    }

    /// <summary>
    /// Directions of a jog step, one per slot: normally -1, 0 or +1; any value is taken as a factor of the step.
    /// </summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineInchDir
    {
        /// <summary>
        /// With n axes, 4 or 6. Mode Joint: 0 to n - 1 are the axes, n to n + 5 the external axes. Other modes: 0, 1,
        /// 2 are along X, Y, Z; 3, 4, 5 about X, Y, Z (six-axis arm) or about Z, Y, X (four-axis arms). More than one
        /// rotation at a time is applied as it is and is then not a rotation in the strict sense.
        /// </summary>
        public KineInts14 Slot;
    }

    /// <summary>Step sizes of a jog step.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineInchSteps
    {
        /// <summary>deg before a call, radians after it; external axes in their own unit</summary>
        public double Joint;
        /// <summary>mm</summary>
        public double Linear;
        /// <summary>deg before a call, radians after it</summary>
        public double Rotation;

        /// <summary>Step sizes in deg, mm and deg.</summary>
        public KineInchSteps(double joint, double linear, double rotation)
        {
            Joint = joint;
            Linear = linear;
            Rotation = rotation;
        }
    }

    /// <summary>
    /// How well the poses of a calibration agree: distances in mm between the positions that one point should keep.
    /// With exact poses all three are 0 up to rounding. No calibration compares them with a limit.
    /// </summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineCalibError
    {
        /// <summary>mm</summary>
        public double Largest;
        /// <summary>mm, over all pairs of positions</summary>
        public double Mean;
        /// <summary>mm, at most 10000</summary>
        public double Smallest;
    }

    /// <summary>
    /// Parameters of arm type 6, a chain of Denavit-Hartenberg links Rz(theta) * Tz(d) * Tx(a) * Rx(alpha) with theta
    /// = q1, q2 + 90, q3, q4, q5, d = d1, 0, d3, d4, d5, a = a1..a5, alpha = alpha1..alpha5, an extra Ry(beta2) after
    /// link 2, and the flange Rz(q6) * Tz(d6). The inverse needs an arm near its nominal one: see
    /// <see cref="Nominal"/>.
    /// </summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineSixAxisParam
    {
        /// <summary>mm, axis 1 to axis 2; not below -1e-5</summary>
        public double a1;
        /// <summary>mm, upper arm; not below 1e-5</summary>
        public double a2;
        /// <summary>mm, elbow offset; not below -1e-5</summary>
        public double a3;
        /// <summary>mm, forearm; not below 1e-5</summary>
        public double d4;
        /// <summary>mm, wrist centre to flange; not below -1e-5</summary>
        public double d6;
        /// <summary>mm, height of axis 2 over the base plane</summary>
        public double d1;
        /// <summary>mm, wrist centre off the plane of the arm; read by the inverse only</summary>
        public double lateralOffset;
        readonly double reserved0;
        /// <summary>deg, 90 for the nominal arm</summary>
        public double alpha1;
        /// <summary>deg, 0 for the nominal arm</summary>
        public double alpha2;
        /// <summary>deg, 90 for the nominal arm</summary>
        public double alpha3;
        /// <summary>deg, -90 for the nominal arm</summary>
        public double alpha4;
        /// <summary>deg, 90 for the nominal arm</summary>
        public double alpha5;
        /// <summary>deg, rotation about Y at the end of link 2; 0 for the nominal arm</summary>
        public double beta2;
        /// <summary>mm, lateralOffset for the nominal arm</summary>
        public double d3;
        /// <summary>mm, 0 for the nominal arm</summary>
        public double d5;
        /// <summary>mm, 0 for the nominal arm</summary>
        public double a4;
        /// <summary>mm, 0 for the nominal arm</summary>
        public double a5;
        /// <summary>deg, tilt of the base about X against gravity</summary>
        public double mountX;
        /// <summary>deg, tilt of the base about Y against gravity</summary>
        public double mountY;
        readonly KineReserved32 reserved1;
        /// <summary>N mm, weight coefficients of the links; G[6] has no effect</summary>
        public KineDoubles7 G;
        /// <summary>N m / rad, stiffness of joint 2; 0 switches the deflection off</summary>
        public double k2;
        /// <summary>N m / rad, stiffness of joint 3; 0 switches the deflection off</summary>
        public double k3;
        /// <summary>N m / rad, stiffness of joint 5; 0 switches the deflection off</summary>
        public double k5;

        /// <summary>
        /// The rigid nominal arm: lengths in mm, twists 90, 0, 90, -90, 90 degrees, d3 equal to lateralOffset. Change
        /// fields of the answer for a calibrated arm.
        /// </summary>
        public static KineSixAxisParam Nominal(double d1, double a1, double a2, double a3, double lateralOffset,
                                               double d4, double d6)
        {
            return new KineSixAxisParam
            {
                d1 = d1, a1 = a1, a2 = a2, a3 = a3, d4 = d4, d6 = d6, d3 = lateralOffset, lateralOffset = lateralOffset,
                alpha1 = 90.0, alpha3 = 90.0, alpha4 = -90.0, alpha5 = 90.0,
            };
        }
    }

    /// <summary>Parameters of arm types 4 and 4110.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineFourAxisParam
    {
        /// <summary>mm, not below 1e-5</summary>
        public double Link1Length;
        /// <summary>mm, not below 1e-5</summary>
        public double Link2Length;
        /// <summary>mm, height of the flange at axis 3 = 0</summary>
        public double ZOffset;
        /// <summary>mm per revolution of axis 3, not below 1e-5</summary>
        public double ScrewLead;
        readonly KineReserved32 reserved0;
        /// <summary>deg</summary>
        public double Link1TiltX;
        /// <summary>deg</summary>
        public double Link2TiltX;
        /// <summary>deg</summary>
        public double Link1TiltY;
        /// <summary>deg</summary>
        public double Link2TiltY;
    }

    /// <summary>
    /// Kinematic parameters: the view of the arm type in use; both lie at the same place. Either view is taken where
    /// this record is asked for.
    /// </summary>
    [StructLayout(LayoutKind.Explicit)]
    public struct KineKinematicParam
    {
        /// <summary>Arm type 6: 272 bytes</summary>
        [FieldOffset(0)] public KineSixAxisParam SixAxis;
        /// <summary>Arm types 4 and 4110: the first 96 bytes</summary>
        [FieldOffset(0)] public KineFourAxisParam FourAxis;

        /// <summary>The view of arm type 6.</summary>
        public static implicit operator KineKinematicParam(KineSixAxisParam param)
        {
            return new KineKinematicParam { SixAxis = param };
        }

        /// <summary>The view of arm types 4 and 4110.</summary>
        public static implicit operator KineKinematicParam(KineFourAxisParam param)
        {
            return new KineKinematicParam { FourAxis = param };
        }
    }

    /// <summary>Three numbers along X, Y and Z.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineVector
    {
        /// <summary>Along or about X</summary>
        public double X;
        /// <summary>Along or about Y</summary>
        public double Y;
        /// <summary>Along or about Z</summary>
        public double Z;

        /// <summary>The three numbers.</summary>
        public KineVector(double x, double y, double z)
        {
            X = x;
            Y = y;
            Z = z;
        }
    }

    /// <summary>Six numbers, indexed from 0.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineDoubles6
    {
        /// <summary>Number of elements.</summary>
        public const int Length = 6;
        double e0, e1, e2, e3, e4, e5;

        /// <summary>The element; IndexOutOfRangeException beyond the last one.</summary>
        public double this[int index]
        {
            get
            {
                switch (index)
                {
                    case 0: return e0; case 1: return e1; case 2: return e2; case 3: return e3;
                    case 4: return e4; case 5: return e5;
                    default: throw new IndexOutOfRangeException();
                }
            }
            set
            {
                switch (index)
                {
                    case 0: e0 = value; break; case 1: e1 = value; break; case 2: e2 = value; break;
                    case 3: e3 = value; break; case 4: e4 = value; break; case 5: e5 = value; break;
                    default: throw new IndexOutOfRangeException();
                }
            }
        }
    }

    /// <summary>Seven numbers, indexed from 0.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineDoubles7
    {
        /// <summary>Number of elements.</summary>
        public const int Length = 7;
        double e0, e1, e2, e3, e4, e5, e6;

        /// <summary>The element; IndexOutOfRangeException beyond the last one.</summary>
        public double this[int index]
        {
            get
            {
                switch (index)
                {
                    case 0: return e0; case 1: return e1; case 2: return e2; case 3: return e3;
                    case 4: return e4; case 5: return e5; case 6: return e6;
                    default: throw new IndexOutOfRangeException();
                }
            }
            set
            {
                switch (index)
                {
                    case 0: e0 = value; break; case 1: e1 = value; break; case 2: e2 = value; break;
                    case 3: e3 = value; break; case 4: e4 = value; break; case 5: e5 = value; break;
                    case 6: e6 = value; break;
                    default: throw new IndexOutOfRangeException();
                }
            }
        }
    }

    /// <summary>Eight numbers, indexed from 0.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineDoubles8
    {
        /// <summary>Number of elements.</summary>
        public const int Length = 8;
        double e0, e1, e2, e3, e4, e5, e6, e7;

        /// <summary>The element; IndexOutOfRangeException beyond the last one.</summary>
        public double this[int index]
        {
            get
            {
                switch (index)
                {
                    case 0: return e0; case 1: return e1; case 2: return e2; case 3: return e3;
                    case 4: return e4; case 5: return e5; case 6: return e6; case 7: return e7;
                    default: throw new IndexOutOfRangeException();
                }
            }
            set
            {
                switch (index)
                {
                    case 0: e0 = value; break; case 1: e1 = value; break; case 2: e2 = value; break;
                    case 3: e3 = value; break; case 4: e4 = value; break; case 5: e5 = value; break;
                    case 6: e6 = value; break; case 7: e7 = value; break;
                    default: throw new IndexOutOfRangeException();
                }
            }
        }
    }

    /// <summary>Six frames, each set as a whole, indexed from 0.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineFrames6
    {
        /// <summary>Number of elements.</summary>
        public const int Length = 6;
        KineFrame e0, e1, e2, e3, e4, e5;

        /// <summary>The element; IndexOutOfRangeException beyond the last one.</summary>
        public KineFrame this[int index]
        {
            get
            {
                switch (index)
                {
                    case 0: return e0; case 1: return e1; case 2: return e2; case 3: return e3;
                    case 4: return e4; case 5: return e5;
                    default: throw new IndexOutOfRangeException();
                }
            }
            set
            {
                switch (index)
                {
                    case 0: e0 = value; break; case 1: e1 = value; break; case 2: e2 = value; break;
                    case 3: e3 = value; break; case 4: e4 = value; break; case 5: e5 = value; break;
                    default: throw new IndexOutOfRangeException();
                }
            }
        }
    }

    /// <summary>Six bytes, indexed from 0.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineBytes6
    {
        /// <summary>Number of elements.</summary>
        public const int Length = 6;
        byte e0, e1, e2, e3, e4, e5;

        /// <summary>The element; IndexOutOfRangeException beyond the last one.</summary>
        public byte this[int index]
        {
            get
            {
                switch (index)
                {
                    case 0: return e0; case 1: return e1; case 2: return e2; case 3: return e3;
                    case 4: return e4; case 5: return e5;
                    default: throw new IndexOutOfRangeException();
                }
            }
            set
            {
                switch (index)
                {
                    case 0: e0 = value; break; case 1: e1 = value; break; case 2: e2 = value; break;
                    case 3: e3 = value; break; case 4: e4 = value; break; case 5: e5 = value; break;
                    default: throw new IndexOutOfRangeException();
                }
            }
        }
    }

    /// <summary>Three integers of 16 bits, indexed from 0.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineShorts3
    {
        /// <summary>Number of elements.</summary>
        public const int Length = 3;
        short e0, e1, e2;

        /// <summary>The element; IndexOutOfRangeException beyond the last one.</summary>
        public short this[int index]
        {
            get
            {
                switch (index)
                {
                    case 0: return e0; case 1: return e1; case 2: return e2;
                    default: throw new IndexOutOfRangeException();
                }
            }
            set
            {
                switch (index)
                {
                    case 0: e0 = value; break; case 1: e1 = value; break; case 2: e2 = value; break;
                    default: throw new IndexOutOfRangeException();
                }
            }
        }
    }

    /// <summary>Four integers of 16 bits, indexed from 0.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineShorts4
    {
        /// <summary>Number of elements.</summary>
        public const int Length = 4;
        short e0, e1, e2, e3;

        /// <summary>The element; IndexOutOfRangeException beyond the last one.</summary>
        public short this[int index]
        {
            get
            {
                switch (index)
                {
                    case 0: return e0; case 1: return e1; case 2: return e2; case 3: return e3;
                    default: throw new IndexOutOfRangeException();
                }
            }
            set
            {
                switch (index)
                {
                    case 0: e0 = value; break; case 1: e1 = value; break; case 2: e2 = value; break;
                    case 3: e3 = value; break;
                    default: throw new IndexOutOfRangeException();
                }
            }
        }
    }

    /// <summary>Fourteen integers of 32 bits, indexed from 0.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineInts14
    {
        /// <summary>Number of elements.</summary>
        public const int Length = 14;
        int e0, e1, e2, e3, e4, e5, e6, e7, e8, e9, e10, e11, e12, e13;

        /// <summary>The element; IndexOutOfRangeException beyond the last one.</summary>
        public int this[int index]
        {
            get
            {
                switch (index)
                {
                    case 0: return e0; case 1: return e1; case 2: return e2; case 3: return e3;
                    case 4: return e4; case 5: return e5; case 6: return e6; case 7: return e7;
                    case 8: return e8; case 9: return e9; case 10: return e10; case 11: return e11;
                    case 12: return e12; case 13: return e13;
                    default: throw new IndexOutOfRangeException();
                }
            }
            set
            {
                switch (index)
                {
                    case 0: e0 = value; break; case 1: e1 = value; break; case 2: e2 = value; break;
                    case 3: e3 = value; break; case 4: e4 = value; break; case 5: e5 = value; break;
                    case 6: e6 = value; break; case 7: e7 = value; break; case 8: e8 = value; break;
                    case 9: e9 = value; break; case 10: e10 = value; break; case 11: e11 = value; break;
                    case 12: e12 = value; break; case 13: e13 = value; break;
                    default: throw new IndexOutOfRangeException();
                }
            }
        }
    }

    /// <summary>Seven unsigned integers of 32 bits, indexed from 0.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct KineUInts7
    {
        /// <summary>Number of elements.</summary>
        public const int Length = 7;
        uint e0, e1, e2, e3, e4, e5, e6;

        /// <summary>The element; IndexOutOfRangeException beyond the last one.</summary>
        public uint this[int index]
        {
            get
            {
                switch (index)
                {
                    case 0: return e0; case 1: return e1; case 2: return e2; case 3: return e3;
                    case 4: return e4; case 5: return e5; case 6: return e6;
                    default: throw new IndexOutOfRangeException();
                }
            }
            set
            {
                switch (index)
                {
                    case 0: e0 = value; break; case 1: e1 = value; break; case 2: e2 = value; break;
                    case 3: e3 = value; break; case 4: e4 = value; break; case 5: e5 = value; break;
                    case 6: e6 = value; break;
                    default: throw new IndexOutOfRangeException();
                }
            }
        }
    }

    [StructLayout(LayoutKind.Sequential, Size = 2)]
    struct KineReserved2
    {
        readonly byte first;
    }

    [StructLayout(LayoutKind.Sequential, Size = 5)]
    struct KineReserved5
    {
        readonly byte first;
    }

    [StructLayout(LayoutKind.Sequential, Size = 7)]
    struct KineReserved7
    {
        readonly byte first;
    }

    [StructLayout(LayoutKind.Sequential, Size = 32)]
    struct KineReserved32
    {
        readonly double first;
    }

    /// <summary>What a result code means.</summary>
    public sealed class KineCode
    {
        internal KineCode(uint code, string name, string cause, string remedy)
        {
            Code = code;
            Name = name;
            Cause = cause;
            Remedy = remedy;
        }

        /// <summary>The code as a call returns it.</summary>
        public uint Code { get; }
        /// <summary>Its name in KineDll.h.</summary>
        public string Name { get; }
        /// <summary>What causes it; several causes are separated by semicolons.</summary>
        public string Cause { get; }
        /// <summary>What to do.</summary>
        public string Remedy { get; }
    }

    /// <summary>A call ended in a result code other than KINE_OK; see <see cref="KineDll.Check"/>.</summary>
    public sealed class KineException : Exception
    {
        /// <summary>The exception for a result code.</summary>
        public KineException(uint code) : this(KineDll.Describe(code))
        {
        }

        KineException(KineCode meaning)
            : base(string.Format(CultureInfo.InvariantCulture, "{0} (0x{1:X4}): {2}. {3}", meaning.Name, meaning.Code,
                                 meaning.Cause, meaning.Remedy))
        {
            Code = meaning.Code;
            Name = meaning.Name;
            Cause = meaning.Cause;
            Remedy = meaning.Remedy;
        }

        /// <summary>The code as the call returned it.</summary>
        public uint Code { get; }
        /// <summary>Its name in KineDll.h.</summary>
        public string Name { get; }
        /// <summary>What causes it; several causes are separated by semicolons.</summary>
        public string Cause { get; }
        /// <summary>What to do.</summary>
        public string Remedy { get; }
    }

    /// <summary>
    /// The functions of the library. Lengths are millimetres and angles degrees; external axes are degrees (rotary)
    /// or millimetres (linear). The setup calls, the five at the top, write one configuration per process; all other
    /// calls only read it. Any number of threads may read at once as long as no setup call runs beside them. A
    /// function returns KINE_OK or the code of the first failing check, in the documented order; a result record is
    /// written on success only and otherwise keeps what it held, so it may be one of the inputs too. Angle checks let
    /// NaN pass.
    /// </summary>
    public static class KineDll
    {
        // KineDll.dll on Windows; elsewhere the runtime makes libKineDll.so of it.
        const string Library = "KineDll";
        const CallingConvention Cdecl = CallingConvention.Cdecl;

        /// <summary>Kine_IsSingularity: the joints are singular. An answer and no error.</summary>
        public const uint KINE_SINGULAR = 0xFFFFFFFF;

        // codes: begin; written by interface/generate.py
        /// <summary>success</summary>
        public const uint KINE_OK = 0x0000;
        /// <summary>the kinematic parameters are null; a length of the arm is too small</summary>
        public const uint KINE_ERR_MODEL_PARAM = 0x6000;
        /// <summary>
        /// Kine_InitKinematicParam was not called, or its last call failed; a tool calibration that the configured arm
        /// type does not have
        /// </summary>
        public const uint KINE_ERR_NOT_INITIALISED = 0x6001;
        /// <summary>
        /// the index of the mechanical unit is not 0 to 2; its record is null; the unit has more axes than there are
        /// external axes
        /// </summary>
        public const uint KINE_ERR_MECH_UNIT = 0x6002;
        /// <summary>the index of the external axis is not 0 to 5; its record is null</summary>
        public const uint KINE_ERR_EXT_AXIS_PARAM = 0x6003;
        /// <summary>more than 3 mechanical units; more than 6 external axes</summary>
        public const uint KINE_ERR_MECH_UNIT_COUNT = 0x6004;
        /// <summary>
        /// a pose is null, or one of its angles is beyond 180 degrees in size; a calibration was given a null frame; a
        /// positioner calibration met a linear axis, or the calibration of a track a rotary one; the result pose or
        /// frame is null
        /// </summary>
        public const uint KINE_ERR_POSE = 0x6010;
        /// <summary>
        /// the tool is null, or an angle of it is beyond 180 degrees in size; mass or inertia of the tool is negative;
        /// a calibration names a mechanical unit or an axis that the cell does not have; Kine_CalcAlignCoordProc was
        /// given a held tool
        /// </summary>
        public const uint KINE_ERR_TOOL = 0x6011;
        /// <summary>
        /// the work object is null, or an angle of UFrame or OFrame is beyond 180 degrees in size; with UFFix 0 the
        /// index of the mechanical unit is 0, or not below the number of units; the work object is held where the call
        /// needs one that is not, or the other way round; the user frame is not fixed where the call needs a fixed one;
        /// every call of SafeArea_Check
        /// </summary>
        public const uint KINE_ERR_WOBJ = 0x6012;
        /// <summary>the load is null; an Aom angle is beyond 180 degrees in size; mass or inertia is negative</summary>
        public const uint KINE_ERR_LOAD = 0x6013;
        /// <summary>joints or axis limits are null; the result joints are null</summary>
        public const uint KINE_ERR_JOINT = 0x6014;
        /// <summary>tool and work object carry the same HeldByRobot byte</summary>
        public const uint KINE_ERR_HOLD = 0x6016;
        /// <summary>the offset frame is null; one of its angles is beyond 180 degrees in size</summary>
        public const uint KINE_ERR_OFFSET_FRAME = 0x6017;
        /// <summary>
        /// the frame of Kine_CalcPosDif is neither 1 nor -1; the mode of Kine_CalcAlignPos is none of 2, 5, 4 and -1,
        /// or 4 or -1 with nothing on the flange; directions or steps of a jog are null
        /// </summary>
        public const uint KINE_ERR_DIRECTION = 0x6018;
        /// <summary>
        /// a frame is neither fixed nor on a mechanical unit, on the way from the world; no record can cause it
        /// </summary>
        public const uint KINE_ERR_W2F_MODE = 0x6030;
        /// <summary>
        /// a mechanical unit on the way from the world is not usable: its index, kind, axis count or driving external
        /// axes
        /// </summary>
        public const uint KINE_ERR_W2F_UNIT_KIND = 0x6031;
        /// <summary>Kine_CrdPosToWobjPos in mode -2 before the first initialisation</summary>
        public const uint KINE_ERR_F2W_MODE = 0x6032;
        /// <summary>
        /// a mechanical unit on the way to the world is not usable: its index, kind, axis count or driving external
        /// axes
        /// </summary>
        public const uint KINE_ERR_F2W_UNIT_KIND = 0x6033;
        /// <summary>
        /// on the way from the world the frame of a rotary axis lies exactly at the origin, that is, it was never set
        /// up
        /// </summary>
        public const uint KINE_ERR_AXIS_ORIGIN = 0x6034;
        /// <summary>
        /// the HeldByRobot bytes differ, but both are non-zero; Kine_CrdPosToWobjPos in mode -2 with both or neither
        /// held
        /// </summary>
        public const uint KINE_ERR_HOLD_CONFLICT = 0x6050;
        /// <summary>nothing on the flange after the hold check; no record can cause it</summary>
        public const uint KINE_ERR_CHAIN_1 = 0x6051;
        /// <summary>nothing off the flange after the hold check; no record can cause it</summary>
        public const uint KINE_ERR_CHAIN_2 = 0x6052;
        /// <summary>hold flags that contradict each other after the hold check; no record can cause it</summary>
        public const uint KINE_ERR_CHAIN_3 = 0x6053;
        /// <summary>
        /// hold flags that contradict each other after the hold check of the inverse; no record can cause it
        /// </summary>
        public const uint KINE_ERR_CHAIN_4 = 0x6054;
        /// <summary>
        /// five poses of a six-axis arm, or the poses of a four-axis arm, with orientations too much alike; five poses
        /// that differ about one axis only
        /// </summary>
        public const uint KINE_ERR_CALIB_SINGULAR = 0x6060;
        /// <summary>
        /// the axis number is below 1; the track moved less than 0.1 mm; the taught positions differ in height only
        /// </summary>
        public const uint KINE_ERR_CALIB_INPUT = 0x6061;
        /// <summary>the circle through the three points is too small</summary>
        public const uint KINE_ERR_CALIB_3 = 0x6063;
        /// <summary>
        /// three poses of a six-axis arm with orientations too much alike; three poses of a six-axis arm that differ
        /// about one axis only
        /// </summary>
        public const uint KINE_ERR_CALIB_4 = 0x6064;
        /// <summary>
        /// taught positions too close together; the tip travels too little; the X axis of a frame from two points is
        /// vertical; Kine_CalcUnFixWobj_ObjPrm_3P with a mechanical unit that cannot be used
        /// </summary>
        public const uint KINE_ERR_CALIB_POINTS_CLOSE = 0x6065;
        /// <summary>the taught positions lie on one line; two taught directions are parallel</summary>
        public const uint KINE_ERR_CALIB_COLLINEAR = 0x6066;
        /// <summary>the Z or X point of a stationary tool is less than 0.01 mm from its origin</summary>
        public const uint KINE_ERR_ZERO_VECTOR = 0x6070;
        /// <summary>Kine_CrdPosToWobjPos in mode -1 with a held tool</summary>
        public const uint KINE_ERR_CRD_WOBJ = 0x6071;
        /// <summary>the aligned pose is out of reach in the configuration of the current joints</summary>
        public const uint KINE_ERR_ALIGN_NO_SOLUTION = 0x6080;
        /// <summary>
        /// another Cfg4 of 0 to 7 leads nearer to the current joints; a four-axis arm with axis 4 negative or beyond 90
        /// degrees
        /// </summary>
        public const uint KINE_ERR_ALIGN_TURN = 0x6081;
        /// <summary>
        /// a turn number more than 2 beyond the axis limits, or beyond 1000000 in size; a posture that does not exist;
        /// the configuration record is null
        /// </summary>
        public const uint KINE_ERR_CONFIG = 0x6090;
        /// <summary>gravity deflects a joint by 2 degrees or more; stays inside the six-axis model</summary>
        public const uint KINE_ERR_IK_1 = 0x6091;
        /// <summary>the target of a jog step is singular, by kind 2 of Kine_IsSingularity</summary>
        public const uint KINE_ERR_INCH_SINGULAR = 0x6092;
        /// <summary>four-axis arm: the elbow is stretched or folded</summary>
        public const uint KINE_ERR_IK_SINGULAR = 0x6093;
        /// <summary>four-axis arm: the target is out of reach; four-axis arm: no finite solution</summary>
        public const uint KINE_ERR_IK_REACH = 0x6094;
        /// <summary>the refinement met a singular arm</summary>
        public const uint KINE_ERR_SINGULAR = 0x6095;
        /// <summary>
        /// six-axis arm: the wrist centre lies on the axis of joint 1, or on the circle of the lateral offset
        /// </summary>
        public const uint KINE_ERR_IK_6 = 0x6096;
        /// <summary>
        /// six-axis arm: the target is out of reach, too far or too near; six-axis arm: the elbow is stretched or
        /// folded
        /// </summary>
        public const uint KINE_ERR_IK_7 = 0x6097;
        /// <summary>six-axis arm: the wrist is straight, q5 within 0.26 degrees of 0 or 180</summary>
        public const uint KINE_ERR_IK_8 = 0x6098;
        /// <summary>six-axis arm: the first correction is beyond 170 degrees</summary>
        public const uint KINE_ERR_IK_9 = 0x6099;
        /// <summary>six-axis arm: the refinement did not converge; six-axis arm: no finite solution</summary>
        public const uint KINE_ERR_IK_ACCURACY = 0x609A;
        /// <summary>
        /// the arm type is none of 4, 6 and 4110; returned by Kine_IsSingularity it is KINE_SINGULAR: the joints are
        /// singular, which is an answer and no error
        /// </summary>
        public const uint KINE_ERR_UNKNOWN_ARM_TYPE = 0xFFFFFFFF;

        static readonly KineCode[] Codes =
        {
            new KineCode(KINE_OK, "KINE_OK",
                "success",
                "Nothing to do."),
            new KineCode(KINE_ERR_MODEL_PARAM, "KINE_ERR_MODEL_PARAM",
                "the kinematic parameters are null; a length of the arm is too small",
                "Give lengths in mm: a2, d4, the link lengths and the lead at least 1e-5; a1, a3 and d6 not negative."),
            new KineCode(KINE_ERR_NOT_INITIALISED, "KINE_ERR_NOT_INITIALISED",
                "Kine_InitKinematicParam was not called, or its last call failed; a tool calibration that the " +
                "configured arm type does not have",
                "Initialise again; axis limits, mechanical units and external axes must then be sent again too. Take " +
                "five poses for a six-axis arm only, two for a four-axis arm only."),
            new KineCode(KINE_ERR_MECH_UNIT, "KINE_ERR_MECH_UNIT",
                "the index of the mechanical unit is not 0 to 2; its record is null; the unit has more axes than " +
                "there are external axes",
                "See the printed line, and tell the number of external axes with Kine_SetMechUnitGlobalCfg first."),
            new KineCode(KINE_ERR_EXT_AXIS_PARAM, "KINE_ERR_EXT_AXIS_PARAM",
                "the index of the external axis is not 0 to 5; its record is null",
                "See the printed line."),
            new KineCode(KINE_ERR_MECH_UNIT_COUNT, "KINE_ERR_MECH_UNIT_COUNT",
                "more than 3 mechanical units; more than 6 external axes",
                "Give counts within these bounds; the enable flag has been stored all the same."),
            new KineCode(KINE_ERR_POSE, "KINE_ERR_POSE",
                "a pose is null, or one of its angles is beyond 180 degrees in size; a calibration was given a null " +
                "frame; a positioner calibration met a linear axis, or the calibration of a track a rotary one; the " +
                "result pose or frame is null",
                "Bring the angles into -180 to 180. The external axis of a linear axis has Word[3] = 1, that of a " +
                "rotary axis any other value."),
            new KineCode(KINE_ERR_TOOL, "KINE_ERR_TOOL",
                "the tool is null, or an angle of it is beyond 180 degrees in size; mass or inertia of the tool is " +
                "negative; a calibration names a mechanical unit or an axis that the cell does not have; " +
                "Kine_CalcAlignCoordProc was given a held tool",
                "Correct the record of the tool; for a calibration check the unit index, the axis count and the " +
                "external axes that drive the unit."),
            new KineCode(KINE_ERR_WOBJ, "KINE_ERR_WOBJ",
                "the work object is null, or an angle of UFrame or OFrame is beyond 180 degrees in size; with UFFix 0" +
                " the index of the mechanical unit is 0, or not below the number of units; the work object is held " +
                "where the call needs one that is not, or the other way round; the user frame is not fixed where the " +
                "call needs a fixed one; every call of SafeArea_Check",
                "Correct the record. A printed line shows the number of mechanical units. UFrame is checked even " +
                "where it is ignored."),
            new KineCode(KINE_ERR_LOAD, "KINE_ERR_LOAD",
                "the load is null; an Aom angle is beyond 180 degrees in size; mass or inertia is negative",
                "Give a load of zeros for none."),
            new KineCode(KINE_ERR_JOINT, "KINE_ERR_JOINT",
                "joints or axis limits are null; the result joints are null",
                "Pass a record."),
            new KineCode(KINE_ERR_HOLD, "KINE_ERR_HOLD",
                "tool and work object carry the same HeldByRobot byte",
                "Exactly one of the two is held: 1 and 0 for a tool on the robot, 0 and 1 for a stationary tool."),
            new KineCode(KINE_ERR_OFFSET_FRAME, "KINE_ERR_OFFSET_FRAME",
                "the offset frame is null; one of its angles is beyond 180 degrees in size",
                "Bring the angles into -180 to 180."),
            new KineCode(KINE_ERR_DIRECTION, "KINE_ERR_DIRECTION",
                "the frame of Kine_CalcPosDif is neither 1 nor -1; the mode of Kine_CalcAlignPos is none of 2, 5, 4 " +
                "and -1, or 4 or -1 with nothing on the flange; directions or steps of a jog are null",
                "Use one of the documented modes; the work-object modes need a held tool or work object."),
            new KineCode(KINE_ERR_W2F_MODE, "KINE_ERR_W2F_MODE",
                "a frame is neither fixed nor on a mechanical unit, on the way from the world; no record can cause it",
                "A guard inside the library. Report it with the records."),
            new KineCode(KINE_ERR_W2F_UNIT_KIND, "KINE_ERR_W2F_UNIT_KIND",
                "a mechanical unit on the way from the world is not usable: its index, kind, axis count or driving " +
                "external axes",
                "Send the unit with Kine_SetMechUnitParam: kind 1 to 3, as many axes as the kind has, external axes 0" +
                " to 5."),
            new KineCode(KINE_ERR_F2W_MODE, "KINE_ERR_F2W_MODE",
                "Kine_CrdPosToWobjPos in mode -2 before the first initialisation",
                "Call Kine_InitKinematicParam first."),
            new KineCode(KINE_ERR_F2W_UNIT_KIND, "KINE_ERR_F2W_UNIT_KIND",
                "a mechanical unit on the way to the world is not usable: its index, kind, axis count or driving " +
                "external axes",
                "Send the unit with Kine_SetMechUnitParam: kind 1 to 3, as many axes as the kind has, external axes 0" +
                " to 5."),
            new KineCode(KINE_ERR_AXIS_ORIGIN, "KINE_ERR_AXIS_ORIGIN",
                "on the way from the world the frame of a rotary axis lies exactly at the origin, that is, it was " +
                "never set up",
                "Calibrate the axis and give its frame; an axis that truly stands at the origin is moved by a " +
                "micrometre."),
            new KineCode(KINE_ERR_HOLD_CONFLICT, "KINE_ERR_HOLD_CONFLICT",
                "the HeldByRobot bytes differ, but both are non-zero; Kine_CrdPosToWobjPos in mode -2 with both or " +
                "neither held",
                "Use the bytes 0 and 1, one of each."),
            new KineCode(KINE_ERR_CHAIN_1, "KINE_ERR_CHAIN_1",
                "nothing on the flange after the hold check; no record can cause it",
                "A guard inside the library. Report it with the records."),
            new KineCode(KINE_ERR_CHAIN_2, "KINE_ERR_CHAIN_2",
                "nothing off the flange after the hold check; no record can cause it",
                "A guard inside the library. Report it with the records."),
            new KineCode(KINE_ERR_CHAIN_3, "KINE_ERR_CHAIN_3",
                "hold flags that contradict each other after the hold check; no record can cause it",
                "A guard inside the library. Report it with the records."),
            new KineCode(KINE_ERR_CHAIN_4, "KINE_ERR_CHAIN_4",
                "hold flags that contradict each other after the hold check of the inverse; no record can cause it",
                "A guard inside the library. Report it with the records."),
            new KineCode(KINE_ERR_CALIB_SINGULAR, "KINE_ERR_CALIB_SINGULAR",
                "five poses of a six-axis arm, or the poses of a four-axis arm, with orientations too much alike; " +
                "five poses that differ about one axis only",
                "Turn the tool more between the poses, a six-axis arm about two axes."),
            new KineCode(KINE_ERR_CALIB_INPUT, "KINE_ERR_CALIB_INPUT",
                "the axis number is below 1; the track moved less than 0.1 mm; the taught positions differ in height " +
                "only",
                "Count axes from 1; move the track further between the touches."),
            new KineCode(KINE_ERR_CALIB_3, "KINE_ERR_CALIB_3",
                "the circle through the three points is too small",
                "Take points further apart."),
            new KineCode(KINE_ERR_CALIB_4, "KINE_ERR_CALIB_4",
                "three poses of a six-axis arm with orientations too much alike; three poses of a six-axis arm that " +
                "differ about one axis only",
                "Turn about two axes, by 24 degrees or more."),
            new KineCode(KINE_ERR_CALIB_POINTS_CLOSE, "KINE_ERR_CALIB_POINTS_CLOSE",
                "taught positions too close together; the tip travels too little; the X axis of a frame from two " +
                "points is vertical; Kine_CalcUnFixWobj_ObjPrm_3P with a mechanical unit that cannot be used",
                "Take positions further apart; check the unit."),
            new KineCode(KINE_ERR_CALIB_COLLINEAR, "KINE_ERR_CALIB_COLLINEAR",
                "the taught positions lie on one line; two taught directions are parallel",
                "Take the third point off the line; for a tool take the touches around the point, not in one sweep."),
            new KineCode(KINE_ERR_ZERO_VECTOR, "KINE_ERR_ZERO_VECTOR",
                "the Z or X point of a stationary tool is less than 0.01 mm from its origin",
                "Take the point further away."),
            new KineCode(KINE_ERR_CRD_WOBJ, "KINE_ERR_CRD_WOBJ",
                "Kine_CrdPosToWobjPos in mode -1 with a held tool",
                "Mode -1 is for a stationary tool; use mode -2 or Kine_WorldPosToFixWobjPos."),
            new KineCode(KINE_ERR_ALIGN_NO_SOLUTION, "KINE_ERR_ALIGN_NO_SOLUTION",
                "the aligned pose is out of reach in the configuration of the current joints",
                "Move the arm away from its limits or its singular poses and align again."),
            new KineCode(KINE_ERR_ALIGN_TURN, "KINE_ERR_ALIGN_TURN",
                "another Cfg4 of 0 to 7 leads nearer to the current joints; a four-axis arm with axis 4 negative or " +
                "beyond 90 degrees",
                "Jog nearer to the aligned orientation; a four-axis arm has nothing to align but its heading."),
            new KineCode(KINE_ERR_CONFIG, "KINE_ERR_CONFIG",
                "a turn number more than 2 beyond the axis limits, or beyond 1000000 in size; a posture that does not" +
                " exist; the configuration record is null",
                "Take the configuration from Kine_GetArmType or from a forward call with nearby joints."),
            new KineCode(KINE_ERR_IK_1, "KINE_ERR_IK_1",
                "gravity deflects a joint by 2 degrees or more; stays inside the six-axis model",
                "Never returned by a call; the arm counts as rigid. Check weights and stiffness."),
            new KineCode(KINE_ERR_INCH_SINGULAR, "KINE_ERR_INCH_SINGULAR",
                "the target of a jog step is singular, by kind 2 of Kine_IsSingularity",
                "Jog joints (mode 1) through it."),
            new KineCode(KINE_ERR_IK_SINGULAR, "KINE_ERR_IK_SINGULAR",
                "four-axis arm: the elbow is stretched or folded",
                "Keep the target away from the edge of the reach."),
            new KineCode(KINE_ERR_IK_REACH, "KINE_ERR_IK_REACH",
                "four-axis arm: the target is out of reach; four-axis arm: no finite solution",
                "Check target, tool and work object; look for NaN among the inputs."),
            new KineCode(KINE_ERR_SINGULAR, "KINE_ERR_SINGULAR",
                "the refinement met a singular arm",
                "Keep the target away from singular poses."),
            new KineCode(KINE_ERR_IK_6, "KINE_ERR_IK_6",
                "six-axis arm: the wrist centre lies on the axis of joint 1, or on the circle of the lateral offset",
                "Move the target away from the axis of joint 1."),
            new KineCode(KINE_ERR_IK_7, "KINE_ERR_IK_7",
                "six-axis arm: the target is out of reach, too far or too near; six-axis arm: the elbow is stretched " +
                "or folded",
                "Check target, tool, work object and units of measure; bring the target nearer to the middle of the " +
                "reach."),
            new KineCode(KINE_ERR_IK_8, "KINE_ERR_IK_8",
                "six-axis arm: the wrist is straight, q5 within 0.26 degrees of 0 or 180",
                "Tilt the tool a little, or move through the straight wrist with joints."),
            new KineCode(KINE_ERR_IK_9, "KINE_ERR_IK_9",
                "six-axis arm: the first correction is beyond 170 degrees",
                "The parameters are not those of a nominal arm with small errors: check twists, d3 and lateralOffset."),
            new KineCode(KINE_ERR_IK_ACCURACY, "KINE_ERR_IK_ACCURACY",
                "six-axis arm: the refinement did not converge; six-axis arm: no finite solution",
                "Check twists, d3 and lateralOffset as for KINE_ERR_IK_9; keep the target away from singular poses; " +
                "look for NaN among the inputs."),
            new KineCode(KINE_ERR_UNKNOWN_ARM_TYPE, "KINE_ERR_UNKNOWN_ARM_TYPE",
                "the arm type is none of 4, 6 and 4110; returned by Kine_IsSingularity it is KINE_SINGULAR: the " +
                "joints are singular, which is an answer and no error",
                "Use KINE_ARM_SIX_AXIS, KINE_ARM_FOUR_AXIS or KINE_ARM_FOUR_AXIS_4110."),
        };
        // codes: end

        /// <summary>
        /// Throws a <see cref="KineException"/> for every code but KINE_OK. Not for the answers of Kine_IsSingularity
        /// and SafeArea_Check.
        /// </summary>
        public static void Check(uint code)
        {
            if (code != KINE_OK) throw new KineException(code);
        }

        /// <summary>
        /// Name, cause and remedy of a code; a code that the library does not have is named by its number.
        /// </summary>
        public static KineCode Describe(uint code)
        {
            foreach (KineCode meaning in Codes)
            {
                if (meaning.Code == code) return meaning;
            }
            return new KineCode(code, string.Format(CultureInfo.InvariantCulture, "0x{0:X4}", code),
                "not a code of the library", "Pass what a call returned.");
        }

        // ---- Setup: describes the arm and its cell ----

        /// <summary>
        /// Selects and initialises the arm. Clears the mechanical units and external axes, puts the robot base at the
        /// world origin and opens all axis limits; only the enable flag of Kine_SetMechUnitGlobalCfg survives. After
        /// any failure the library is not initialised, whatever it was before.
        /// </summary>
        /// <param name="armType">the arm</param>
        /// <param name="param">parameters; the view of armType is read: mm, deg</param>
        /// <returns>
        /// KINE_ERR_UNKNOWN_ARM_TYPE: none of KineArm; KINE_ERR_MODEL_PARAM: a length is below its bound (NaN
        /// passes).
        /// </returns>
        public static uint Kine_InitKinematicParam(KineArm armType, KineKinematicParam param)
        {
            return Native.Kine_InitKinematicParam(armType, ref param);
        }

        /// <summary>
        /// Sets the axis limits. They bound the turn numbers a target may ask for (Kine_IsArmTypeValid); joint values
        /// are not checked against them. A pair with lower >= upper is replaced by an open one.
        /// </summary>
        /// <param name="upper">upper limits, deg</param>
        /// <param name="lower">lower limits, deg; axes 7 and 8 and the external axes of both are not read</param>
        /// <returns>KINE_ERR_JOINT: never from C#; KINE_ERR_NOT_INITIALISED.</returns>
        public static uint Kine_SetAxisLimit(KineJoint upper, KineJoint lower)
        {
            return Native.Kine_SetAxisLimit(ref upper, ref lower);
        }

        /// <summary>Says how many mechanical units and external axes the cell has.</summary>
        /// <param name="mechUnitCount">0 to 3</param>
        /// <param name="extAxisItemCount">0 to 6</param>
        /// <param name="enable">
        /// 0: the counts are ignored and kept, and the two calls below do nothing; any other value: they take effect.
        /// Stored first, even when the counts are refused.
        /// </param>
        /// <returns>KINE_ERR_MECH_UNIT_COUNT: a count is too large. Prints a line.</returns>
        public static uint Kine_SetMechUnitGlobalCfg(uint mechUnitCount, uint extAxisItemCount, uint enable)
        {
            return Native.Kine_SetMechUnitGlobalCfg(mechUnitCount, extAxisItemCount, enable);
        }

        /// <summary>
        /// Stores a mechanical unit. The unit stored at index 0 also says what the robot stands on: with Option1
        /// equal to 1 it stands on the last axis of unit Option2, otherwise fixed at the world origin. KINE_OK
        /// without effect while mechanical units are not enabled.
        /// </summary>
        /// <param name="index">0 to 2</param>
        /// <param name="unit">the unit; mm, deg</param>
        /// <returns>
        /// KINE_ERR_MECH_UNIT: index out of range, or Active is not 0 and AxisCount exceeds the number of external
        /// axes. Prints a line; nothing is stored.
        /// </returns>
        public static uint Kine_SetMechUnitParam(int index, KineMechUnit unit)
        {
            return Native.Kine_SetMechUnitParam(index, ref unit);
        }

        /// <summary>Stores an external axis. KINE_OK without effect while mechanical units are not enabled.</summary>
        /// <param name="index">0 to 5</param>
        /// <param name="param">the axis</param>
        /// <returns>KINE_ERR_EXT_AXIS_PARAM: index out of range. Prints a line; nothing is stored.</returns>
        public static uint Kine_SetExtAxisParam(int index, KineExtAxisParam param)
        {
            return Native.Kine_SetExtAxisParam(index, ref param);
        }

        // ---- Queries about the arm ----

        /// <summary>Gives the posture and turns of a joint set (not the arm type, in spite of the name).</summary>
        /// <param name="joints">axes, deg; any size, NaN and infinity give the ends of the int range</param>
        /// <param name="config">result</param>
        /// <returns>KINE_ERR_JOINT, KINE_ERR_CONFIG: never from C#; KINE_ERR_NOT_INITIALISED.</returns>
        public static uint Kine_GetArmType(KineJoint joints, out KineArmConfig config)
        {
            return Native.Kine_GetArmType(ref joints, out config);
        }

        /// <summary>
        /// Says whether the turn numbers of a pose fit the axis limits, with two quarter turns to spare on either
        /// side. Arm type 6 looks at Cfg1 to Cfg3, arm type 4 at Cfg4, arm type 4110 at Cfg2 to Cfg4.
        /// </summary>
        /// <param name="pose">mm, deg</param>
        /// <returns>KINE_ERR_POSE: an angle beyond +-180; KINE_ERR_NOT_INITIALISED; KINE_ERR_CONFIG.</returns>
        public static uint Kine_IsArmTypeValid(KinePose pose)
        {
            return Native.Kine_IsArmTypeValid(ref pose);
        }

        /// <summary>
        /// Says whether a joint set is close to a singularity. Arm type 6: wrist centre close to the axis of joint 1
        /// (mm), elbow stretched or folded (cosine), or wrist straight (sine). Arm types 4 and 4110: axis 2 within
        /// the threshold above a multiple of 180 degrees, counted toward zero (just below such a multiple is not
        /// singular, seen from zero).
        /// </summary>
        /// <param name="joints">axes, deg; NaN is never singular</param>
        /// <param name="kind">
        /// the thresholds; with another value but 0, which is Narrow, nothing is ever singular
        /// </param>
        /// <returns>
        /// KINE_SINGULAR or KINE_OK; KINE_ERR_JOINT: never from C#; KINE_ERR_NOT_INITIALISED. Not for Check.
        /// </returns>
        public static uint Kine_IsSingularity(KineJoint joints, KineSingularityKind kind)
        {
            return Native.Kine_IsSingularity(ref joints, kind);
        }

        // ---- Forward: joints to positions ----

        /// <summary>
        /// Position of the tool centre point in the robot base. The four calls Kine_JointTo...Pos share arguments,
        /// checks and lines. With a tool on the flange the point is carried by the arm. With a stationary tool the
        /// arm carries the work object; the tool stands in the world at TFrame, and this call gives its point in the
        /// base through the held work object.
        /// </summary>
        /// <param name="joints">axes and external axes: deg, mm</param>
        /// <param name="tool">tool</param>
        /// <param name="wobj">work object</param>
        /// <param name="load">payload behind the flange, centre of gravity in the flange; bends arm type 6</param>
        /// <param name="pose">result: mm, deg, the configuration and the external axes of the joints</param>
        /// <returns>
        /// KINE_ERR_JOINT: never from C#; KINE_ERR_TOOL, KINE_ERR_WOBJ (may print a line), KINE_ERR_LOAD: record
        /// refused; KINE_ERR_HOLD: the two HeldByRobot bytes are equal; KINE_ERR_POSE: never from C#; then, each with
        /// a line "FK Error n:code" on standard output, KINE_ERR_NOT_INITIALISED (1), KINE_ERR_HOLD_CONFLICT: both
        /// bytes are non-zero (2), KINE_ERR_F2W_UNIT_KIND: the unit under the robot is not usable (4),
        /// KINE_ERR_W2F_UNIT_KIND: the unit under the work object is not usable (6), KINE_ERR_AXIS_ORIGIN: the frame
        /// of one of its rotary axes lies at the origin (6). A unit is usable when its index is 0 to 2 and not above
        /// the unit count, its kind is 1 to 3, it has the axes of its kind, and these are driven by external axes 0
        /// to 5.
        /// </returns>
        public static uint Kine_JointToBasePos(KineJoint joints, KineTool tool, KineWobj wobj, KineLoad load,
            out KinePose pose)
        {
            return Native.Kine_JointToBasePos(ref joints, ref tool, ref wobj, ref load, out pose);
        }

        /// <summary>
        /// Position of the tool centre point in the flange. With a tool on the flange it is TFrame itself with
        /// external axes 0, and no step after "FK Error 2" runs.
        /// </summary>
        /// <param name="joints">axes and external axes: deg, mm</param>
        /// <param name="tool">tool</param>
        /// <param name="wobj">work object</param>
        /// <param name="load">payload</param>
        /// <param name="pose">result: mm, deg, the configuration of the joints</param>
        /// <returns>As <see cref="Kine_JointToBasePos"/>.</returns>
        public static uint Kine_JointToFlangePos(KineJoint joints, KineTool tool, KineWobj wobj, KineLoad load,
            out KinePose pose)
        {
            return Native.Kine_JointToFlangePos(ref joints, ref tool, ref wobj, ref load, out pose);
        }

        /// <summary>Position of the tool centre point in the world.</summary>
        /// <param name="joints">axes and external axes: deg, mm</param>
        /// <param name="tool">tool</param>
        /// <param name="wobj">work object</param>
        /// <param name="load">payload</param>
        /// <param name="pose">result: mm, deg, the configuration and the external axes of the joints</param>
        /// <returns>As <see cref="Kine_JointToBasePos"/>.</returns>
        public static uint Kine_JointToWorldPos(KineJoint joints, KineTool tool, KineWobj wobj, KineLoad load,
            out KinePose pose)
        {
            return Native.Kine_JointToWorldPos(ref joints, ref tool, ref wobj, ref load, out pose);
        }

        /// <summary>
        /// Position of the tool centre point in the work object (object frame). All steps run for both set-ups of the
        /// cell.
        /// </summary>
        /// <param name="joints">axes and external axes: deg, mm</param>
        /// <param name="tool">tool</param>
        /// <param name="wobj">work object</param>
        /// <param name="load">payload</param>
        /// <param name="pose">result: mm, deg, the configuration and the external axes of the joints</param>
        /// <returns>As <see cref="Kine_JointToBasePos"/>.</returns>
        public static uint Kine_JointToWobjPos(KineJoint joints, KineTool tool, KineWobj wobj, KineLoad load,
            out KinePose pose)
        {
            return Native.Kine_JointToWobjPos(ref joints, ref tool, ref wobj, ref load, out pose);
        }

        /// <summary>
        /// Pose of the arm in the robot base for vision calibration, without tool, work object and payload. Arm type
        /// 6: frame 5 (the wrist; joint 6 and d6 are left out). Arm types 4 and 4110: flange in the plane, z = 0,
        /// with the heading of the forearm (axis 4 left out; arm type 4110 takes axis 2 as the elbow angle itself).
        /// </summary>
        /// <param name="joints">axes, deg</param>
        /// <param name="pose">result: mm, deg, the configuration of the joints, external axes 0</param>
        /// <returns>
        /// KINE_ERR_JOINT, KINE_ERR_POSE: never from C#; KINE_ERR_NOT_INITIALISED. Nothing is printed.
        /// </returns>
        public static uint Kine_FKineVision(KineJoint joints, out KinePose pose)
        {
            return Native.Kine_FKineVision(ref joints, out pose);
        }

        // ---- Inverse: positions to joints ----

        /// <summary>
        /// Joints that bring the tool centre point to a target in the work object; the inverse of
        /// Kine_JointToWobjPos. The configuration integers of the target choose posture and turns; its external axes
        /// place the mechanical units. No joint value is needed to start from.
        /// </summary>
        /// <param name="target">
        /// pose in the work object (object frame): mm, deg, with configuration and external axes
        /// </param>
        /// <param name="tool">tool</param>
        /// <param name="wobj">work object</param>
        /// <param name="load">payload</param>
        /// <param name="joints">result: axes in deg (unused ones 0) and the external axes of the target</param>
        /// <returns>
        /// KINE_ERR_TOOL, KINE_ERR_WOBJ (may print a line), KINE_ERR_LOAD, KINE_ERR_POSE: record refused;
        /// KINE_ERR_HOLD: the two HeldByRobot bytes are equal; KINE_ERR_JOINT: never from C#;
        /// KINE_ERR_NOT_INITIALISED; KINE_ERR_CONFIG: as Kine_IsArmTypeValid; then, each with a line "IK error
        /// n:code" on standard output, KINE_ERR_HOLD_CONFLICT: both bytes are non-zero (0); KINE_ERR_F2W_UNIT_KIND
        /// (2); KINE_ERR_W2F_UNIT_KIND, KINE_ERR_AXIS_ORIGIN (3); and of the arm (5), type 6: KINE_ERR_CONFIG,
        /// KINE_ERR_IK_6, KINE_ERR_IK_7, KINE_ERR_IK_8, KINE_ERR_SINGULAR, KINE_ERR_IK_9, KINE_ERR_IK_ACCURACY; types
        /// 4 and 4110: KINE_ERR_CONFIG, KINE_ERR_IK_REACH, KINE_ERR_IK_SINGULAR, KINE_ERR_SINGULAR.
        /// </returns>
        public static uint Kine_WobjPosToJoint(KinePose target, KineTool tool, KineWobj wobj, KineLoad load,
            out KineJoint joints)
        {
            return Native.Kine_WobjPosToJoint(ref target, ref tool, ref wobj, ref load, out joints);
        }

        // ---- Conversions of positions between frames ----

        /// <summary>
        /// A world position in the frame of a fixed work object (object frame). Neither mechanical units nor the
        /// mounting of the robot are consulted, and the library need not be initialised; so for all conversions but
        /// Kine_CrdPosToWobjPos. The result has the configuration and the external axes of the pose.
        /// </summary>
        /// <param name="pose">position in the world: mm, deg</param>
        /// <param name="wobj">work object, fixed and not held</param>
        /// <param name="result">position in the work object</param>
        /// <returns>
        /// KINE_ERR_WOBJ: refused (may print a line); UFFix 0; HeldByRobot 1; KINE_ERR_POSE: an angle beyond +-180.
        /// </returns>
        public static uint Kine_WorldPosToFixWobjPos(KinePose pose, KineWobj wobj, out KinePose result)
        {
            return Native.Kine_WorldPosToFixWobjPos(ref pose, ref wobj, out result);
        }

        /// <summary>A world position in the frame of a work object that the robot holds.</summary>
        /// <param name="pose">position in the world: mm, deg</param>
        /// <param name="wobj">work object, HeldByRobot not 0</param>
        /// <param name="flange">pose of the flange in the world</param>
        /// <param name="result">position in the work object, with configuration and external axes of pose</param>
        /// <returns>
        /// KINE_ERR_WOBJ: refused (may print a line); HeldByRobot 0; KINE_ERR_POSE: an angle of pose or flange beyond
        /// +-180.
        /// </returns>
        public static uint Kine_WorldPosToGripWobjPos(KinePose pose, KineWobj wobj, KinePose flange,
            out KinePose result)
        {
            return Native.Kine_WorldPosToGripWobjPos(ref pose, ref wobj, ref flange, out result);
        }

        /// <summary>The way back from Kine_WorldPosToGripWobjPos. Takes a work object that is not held too.</summary>
        /// <param name="pose">position in the work object: mm, deg</param>
        /// <param name="wobj">work object</param>
        /// <param name="flange">pose of the flange in the world</param>
        /// <param name="result">position in the world, with configuration and external axes of pose</param>
        /// <returns>
        /// KINE_ERR_WOBJ: refused (may print a line); KINE_ERR_POSE: an angle of pose or flange beyond +-180.
        /// </returns>
        public static uint Kine_GripWobjPosToWorldPos(KinePose pose, KineWobj wobj, KinePose flange,
            out KinePose result)
        {
            return Native.Kine_GripWobjPosToWorldPos(ref pose, ref wobj, ref flange, out result);
        }

        /// <summary>A position to the work object.</summary>
        /// <param name="pose">
        /// position: mm, deg; its external axes place the mechanical units in mode FromBase
        /// </param>
        /// <param name="mode">where the position is given; for any other value the pose stays as it is</param>
        /// <param name="tool">tool</param>
        /// <param name="wobj">work object</param>
        /// <param name="load">not read</param>
        /// <param name="result">position in the work object, with configuration and external axes of pose</param>
        /// <returns>
        /// In every mode KINE_ERR_POSE, KINE_ERR_TOOL, KINE_ERR_WOBJ (may print a line): record refused;
        /// KINE_ERR_LOAD: never from C#. FromWorld: KINE_ERR_CRD_WOBJ: the tool is held. FromBase: KINE_ERR_F2W_MODE
        /// before the first initialisation; KINE_ERR_F2W_UNIT_KIND; KINE_ERR_HOLD_CONFLICT: both or neither held;
        /// KINE_ERR_W2F_UNIT_KIND; KINE_ERR_AXIS_ORIGIN.
        /// </returns>
        public static uint Kine_CrdPosToWobjPos(KinePose pose, KineCrdMode mode, KineTool tool, KineWobj wobj,
            KineLoad load, out KinePose result)
        {
            return Native.Kine_CrdPosToWobjPos(ref pose, mode, ref tool, ref wobj, ref load, out result);
        }

        /// <summary>A pose moved and turned by an offset along and about its own axes.</summary>
        /// <param name="pose">mm, deg</param>
        /// <param name="offset">mm, deg</param>
        /// <param name="result">the pose, with configuration and external axes of pose</param>
        /// <returns>KINE_ERR_POSE, KINE_ERR_OFFSET_FRAME: an angle beyond +-180.</returns>
        public static uint Kine_ToolCoordOffset(KinePose pose, KineFrame offset, out KinePose result)
        {
            return Native.Kine_ToolCoordOffset(ref pose, ref offset, out result);
        }

        /// <summary>
        /// A pose moved by an offset along the axes of its reference frame and turned about them in place: the
        /// rotation of the offset does not move the position, so this is not a product of frames.
        /// </summary>
        /// <param name="pose">mm, deg</param>
        /// <param name="offset">mm, deg</param>
        /// <param name="result">the pose, with configuration and external axes of pose</param>
        /// <returns>As <see cref="Kine_ToolCoordOffset"/>.</returns>
        public static uint Kine_WobjCoordOffset(KinePose pose, KineFrame offset, out KinePose result)
        {
            return Native.Kine_WobjCoordOffset(ref pose, ref offset, out result);
        }

        // ---- Calibration: frames from taught poses ----
        // Each call finds a frame in the frame in which its poses are given; KineDll.h has the table of poses to teach.
        // All begin with KINE_ERR_POSE for an angle of a pose beyond +-180 (also of a pose that is not used further).
        // The angles of a given frame are not checked. Write "out _" for an error report or a tilt that is not wanted.

        /// <summary>
        /// Tool centre point of a stationary tool that the tip of a calibrated tool touches: the taught position with
        /// angles 0.
        /// </summary>
        /// <param name="p0">touching pose: mm, deg</param>
        /// <param name="frame">result: (X, Y, Z of p0, 0, 0, 0)</param>
        /// <returns>KINE_ERR_POSE only.</returns>
        public static uint Kine_CalcExtToolPrm_1P(KinePose p0, out KineFrame frame)
        {
            return Native.Kine_CalcExtToolPrm_1P(ref p0, out frame);
        }

        /// <summary>Frame of a stationary tool from three touched points.</summary>
        /// <param name="origin">touches the tool centre point, the origin of the frame</param>
        /// <param name="zPoint">
        /// touches a point on the positive Z axis. Arm types 4 and 4110: whatever it holds, the origin raised by 10
        /// mm takes its place
        /// </param>
        /// <param name="xPoint">touches a point towards the positive X axis</param>
        /// <param name="frame">result: mm, deg</param>
        /// <returns>
        /// KINE_ERR_ZERO_VECTOR: zPoint or xPoint less than 0.01 mm from the origin; KINE_ERR_CALIB_COLLINEAR: sine
        /// of the angle between the two directions below 0.01.
        /// </returns>
        public static uint Kine_CalcExtToolPrm_1PZX(KinePose origin, KinePose zPoint, KinePose xPoint,
            out KineFrame frame)
        {
            return Native.Kine_CalcExtToolPrm_1PZX(ref origin, ref zPoint, ref xPoint, out frame);
        }

        /// <summary>
        /// Tool centre point of a stationary tool, touched in three orientations by a point fixed on the flange that
        /// need not be known. The four calls with three touching poses share this solution: the point for which the
        /// three touched positions agree best (least squares of those of p1 and p2 against that of p0). Arm type 6
        /// finds all of it; arm types 4 and 4110 its X and Y, Z is 0.
        /// </summary>
        /// <param name="p0">touching pose of the flange: mm, deg</param>
        /// <param name="p1">touching pose of the flange</param>
        /// <param name="p2">touching pose of the flange</param>
        /// <param name="frame">
        /// result: the touched point with angles 0; arm types 4 and 4110: Z is the height of the flange in p0
        /// </param>
        /// <param name="error">report, mm</param>
        /// <returns>
        /// KINE_ERR_NOT_INITIALISED: no arm; KINE_ERR_CALIB_POINTS_CLOSE: two positions less than 1e-5 mm apart (arm
        /// types 4 and 4110: in X and Y); KINE_ERR_CALIB_COLLINEAR: the positions lie on one line (cosine beyond
        /// 0.99999); orientations that differ too little, or about one axis only: KINE_ERR_CALIB_4 (arm type 6),
        /// KINE_ERR_CALIB_SINGULAR (arm types 4 and 4110).
        /// </returns>
        public static uint Kine_CalcExtToolPrm_3P(KinePose p0, KinePose p1, KinePose p2, out KineFrame frame,
            out KineCalibError error)
        {
            return Native.Kine_CalcExtToolPrm_3P(ref p0, ref p1, ref p2, out frame, out error);
        }

        /// <summary>
        /// Frame of a stationary tool: the point on the flange from three touching poses as in
        /// Kine_CalcExtToolPrm_3P, then with this point the three of Kine_CalcExtToolPrm_1PZX.
        /// </summary>
        /// <param name="p0">touching pose of the flange: mm, deg</param>
        /// <param name="p1">touching pose of the flange</param>
        /// <param name="p2">touching pose of the flange</param>
        /// <param name="origin">flange pose with the point at the origin of the frame</param>
        /// <param name="zPoint">
        /// flange pose with the point on the positive Z axis; not used by arm types 4 and 4110
        /// </param>
        /// <param name="xPoint">flange pose with the point towards the positive X axis</param>
        /// <param name="frame">result: mm, deg</param>
        /// <param name="error">
        /// report of p0, p1, p2, mm; written as soon as these are solved, also when a later code is returned
        /// </param>
        /// <returns>Those of Kine_CalcExtToolPrm_3P, then those of Kine_CalcExtToolPrm_1PZX.</returns>
        public static uint Kine_CalcExtToolPrm_3PZX(KinePose p0, KinePose p1, KinePose p2, KinePose origin,
            KinePose zPoint, KinePose xPoint, out KineFrame frame, out KineCalibError error)
        {
            return Native.Kine_CalcExtToolPrm_3PZX(ref p0, ref p1, ref p2, ref origin, ref zPoint, ref xPoint,
                out frame, out error);
        }

        /// <summary>
        /// Tool centre point of a tool on the flange that touches one fixed point in three orientations.
        /// </summary>
        /// <param name="p0">touching pose of the flange: mm, deg</param>
        /// <param name="p1">touching pose of the flange</param>
        /// <param name="p2">touching pose of the flange</param>
        /// <param name="frame">result: the point in the flange with angles 0; arm types 4 and 4110: Z is 0</param>
        /// <param name="error">report, mm</param>
        /// <returns>As <see cref="Kine_CalcExtToolPrm_3P"/>.</returns>
        public static uint Kine_CalcGripToolPrm_3P(KinePose p0, KinePose p1, KinePose p2, out KineFrame frame,
            out KineCalibError error)
        {
            return Native.Kine_CalcGripToolPrm_3P(ref p0, ref p1, ref p2, out frame, out error);
        }

        /// <summary>
        /// Tool frame of a tool on the flange: its point from three touching poses as in Kine_CalcGripToolPrm_3P, its
        /// orientation from three more.
        /// </summary>
        /// <param name="p0">touching pose of the flange: mm, deg</param>
        /// <param name="p1">touching pose of the flange</param>
        /// <param name="p2">touching pose of the flange</param>
        /// <param name="origin">flange pose with the tool in the orientation that counts</param>
        /// <param name="zPoint">
        /// flange pose with the tool moved along its positive Z axis. Arm types 4 and 4110: whatever it holds, the
        /// origin raised by 10 mm takes its place
        /// </param>
        /// <param name="xPoint">flange pose with the tool moved towards its positive X axis</param>
        /// <param name="frame">result: the tool frame in the flange: mm, deg</param>
        /// <param name="error">
        /// report of p0, p1, p2, mm; written as soon as these are solved, also when a later code is returned
        /// </param>
        /// <returns>
        /// Those of Kine_CalcExtToolPrm_3P, then KINE_ERR_CALIB_POINTS_CLOSE: the tool point travels less than 1e-5
        /// mm from origin to zPoint, or from zPoint to xPoint; KINE_ERR_CALIB_COLLINEAR: the sine of the angle
        /// between these two travels is below 1e-5.
        /// </returns>
        public static uint Kine_CalcGripToolPrm_3PZX(KinePose p0, KinePose p1, KinePose p2, KinePose origin,
            KinePose zPoint, KinePose xPoint, out KineFrame frame, out KineCalibError error)
        {
            return Native.Kine_CalcGripToolPrm_3PZX(ref p0, ref p1, ref p2, ref origin, ref zPoint, ref xPoint,
                out frame, out error);
        }

        /// <summary>
        /// Tool centre point of a tool on the flange of arm type 6 that touches one fixed point in five orientations.
        /// Equal positions are welcome as long as the orientations differ.
        /// </summary>
        /// <param name="p0">
        /// touching pose of the flange: mm, deg; the touched positions are compared with its own
        /// </param>
        /// <param name="p1">touching pose of the flange</param>
        /// <param name="p2">touching pose of the flange</param>
        /// <param name="p3">touching pose of the flange</param>
        /// <param name="p4">touching pose of the flange</param>
        /// <param name="frame">result: the point in the flange with angles 0</param>
        /// <param name="error">report, mm</param>
        /// <returns>
        /// KINE_ERR_NOT_INITIALISED: the arm type is not 6; KINE_ERR_CALIB_SINGULAR: the orientations differ too
        /// little, or about one axis only.
        /// </returns>
        public static uint Kine_CalcGripToolPrm_5P(KinePose p0, KinePose p1, KinePose p2, KinePose p3, KinePose p4,
            out KineFrame frame, out KineCalibError error)
        {
            return Native.Kine_CalcGripToolPrm_5P(ref p0, ref p1, ref p2, ref p3, ref p4, out frame, out error);
        }

        /// <summary>
        /// Tool centre point of a tool on the flange of arm type 4 or 4110 that touches one fixed point in two
        /// headings.
        /// </summary>
        /// <param name="p0">touching pose of the flange: mm, deg</param>
        /// <param name="p1">touching pose of the flange</param>
        /// <param name="frame">result: X and Y of the point in the flange; the others 0</param>
        /// <returns>
        /// KINE_ERR_NOT_INITIALISED: the arm type is neither; KINE_ERR_CALIB_POINTS_CLOSE: positions less than 1e-5
        /// mm apart in X and Y; KINE_ERR_CALIB_SINGULAR: the headings differ too little.
        /// </returns>
        public static uint Kine_CalcGripToolPrm_Scara2P(KinePose p0, KinePose p1, out KineFrame frame)
        {
            return Native.Kine_CalcGripToolPrm_Scara2P(ref p0, ref p1, out frame);
        }

        /// <summary>User frame of a fixed work object from two points, with a horizontal Y axis.</summary>
        /// <param name="origin">position of the origin: mm, deg</param>
        /// <param name="xPoint">position on the positive X axis</param>
        /// <param name="frame">result: mm, deg</param>
        /// <param name="tilt">
        /// result: angle between the Z axis of the frame and that of the frame of the poses, IN RADIANS
        /// </param>
        /// <returns>
        /// KINE_ERR_CALIB_POINTS_CLOSE: the points are less than 0.001 mm apart, or the direction between them is
        /// vertical.
        /// </returns>
        public static uint Kine_CalcExtWobj_UserPrm_2P(KinePose origin, KinePose xPoint, out KineFrame frame,
            out double tilt)
        {
            return Native.Kine_CalcExtWobj_UserPrm_2P(ref origin, ref xPoint, out frame, out tilt);
        }

        /// <summary>User frame of a fixed work object from three points.</summary>
        /// <param name="origin">position of the origin: mm, deg</param>
        /// <param name="xPoint">position on the positive X axis</param>
        /// <param name="xyPoint">position in the XY plane on the side of positive Y</param>
        /// <param name="frame">result: mm, deg</param>
        /// <param name="tilt">
        /// result: angle between the Z axis of the frame and that of the frame of the poses, IN RADIANS
        /// </param>
        /// <returns>
        /// KINE_ERR_CALIB_POINTS_CLOSE: two points less than 0.01 mm apart; KINE_ERR_CALIB_COLLINEAR: sine of the
        /// angle between the two directions from the origin below 1e-5.
        /// </returns>
        public static uint Kine_CalcExtWobj_UserPrm_3P(KinePose origin, KinePose xPoint, KinePose xyPoint,
            out KineFrame frame, out double tilt)
        {
            return Native.Kine_CalcExtWobj_UserPrm_3P(ref origin, ref xPoint, ref xyPoint, out frame, out tilt);
        }

        /// <summary>
        /// User frame of a fixed work object from three points of a circle: the origin in its centre, X towards the
        /// first point, Z normal to its plane so that the points turn about it anticlockwise. (The name is spelled
        /// so.)
        /// </summary>
        /// <param name="p1">position on the circle: mm, deg</param>
        /// <param name="p2">position on the circle</param>
        /// <param name="p3">position on the circle</param>
        /// <param name="frame">result: mm, deg</param>
        /// <param name="tilt">
        /// result: angle between the Z axis of the frame and that of the frame of the poses, IN RADIANS
        /// </param>
        /// <returns>
        /// KINE_ERR_CALIB_POINTS_CLOSE: two points less than 1e-5 mm apart; KINE_ERR_CALIB_COLLINEAR: the points lie
        /// on one line (cosine beyond 0.99999); KINE_ERR_CALIB_3: four times the squared area of their triangle below
        /// 1e-5 mm^4.
        /// </returns>
        public static uint Kine_CalcExtWobj_UserPrm_Cirle3P(KinePose p1, KinePose p2, KinePose p3, out KineFrame frame,
            out double tilt)
        {
            return Native.Kine_CalcExtWobj_UserPrm_Cirle3P(ref p1, ref p2, ref p3, out frame, out tilt);
        }

        /// <summary>
        /// Object frame of a fixed work object from three points: the frame of Kine_CalcExtWobj_UserPrm_3P seen from
        /// the user frame.
        /// </summary>
        /// <param name="origin">position of the origin: mm, deg</param>
        /// <param name="xPoint">position on the positive X axis</param>
        /// <param name="xyPoint">position in the XY plane on the side of positive Y</param>
        /// <param name="user">user frame in the frame of the poses: mm, deg</param>
        /// <param name="frame">result: in the user frame</param>
        /// <param name="tilt">result: as in Kine_CalcExtWobj_UserPrm_3P, IN RADIANS</param>
        /// <returns>As <see cref="Kine_CalcExtWobj_UserPrm_3P"/>.</returns>
        public static uint Kine_CalcExtWobj_ObjPrm_3P(KinePose origin, KinePose xPoint, KinePose xyPoint,
            KineFrame user, out KineFrame frame, out double tilt)
        {
            return Native.Kine_CalcExtWobj_ObjPrm_3P(ref origin, ref xPoint, ref xyPoint, ref user, out frame,
                out tilt);
        }

        /// <summary>
        /// User frame of a work object held by the robot; the same computation as Kine_CalcExtWobj_UserPrm_3P.
        /// </summary>
        /// <param name="origin">position of the origin in the flange: mm, deg</param>
        /// <param name="xPoint">position on the positive X axis</param>
        /// <param name="xyPoint">position in the XY plane on the side of positive Y</param>
        /// <param name="frame">result: mm, deg</param>
        /// <param name="tilt">result: as in Kine_CalcExtWobj_UserPrm_3P, IN RADIANS</param>
        /// <returns>As <see cref="Kine_CalcExtWobj_UserPrm_3P"/>.</returns>
        public static uint Kine_CalcGripWobj_UserPrm_3P(KinePose origin, KinePose xPoint, KinePose xyPoint,
            out KineFrame frame, out double tilt)
        {
            return Native.Kine_CalcGripWobj_UserPrm_3P(ref origin, ref xPoint, ref xyPoint, out frame, out tilt);
        }

        /// <summary>
        /// Object frame of a work object held by the robot. The same result as Kine_CalcExtWobj_ObjPrm_3P up to
        /// rounding, but the tilt: it is measured against the Z axis of the user frame. An X axis within 1e-5 of the
        /// vertical of the poses keeps its direction here.
        /// </summary>
        /// <param name="origin">position of the origin in the flange: mm, deg</param>
        /// <param name="xPoint">position on the positive X axis</param>
        /// <param name="xyPoint">position in the XY plane on the side of positive Y</param>
        /// <param name="user">user frame in the flange: mm, deg</param>
        /// <param name="frame">result: in the user frame</param>
        /// <param name="tilt">result: angle between the Z axes of object and user frame, IN RADIANS</param>
        /// <returns>As <see cref="Kine_CalcExtWobj_UserPrm_3P"/>.</returns>
        public static uint Kine_CalcGripWobj_ObjPrm_3P(KinePose origin, KinePose xPoint, KinePose xyPoint,
            KineFrame user, out KineFrame frame, out double tilt)
        {
            return Native.Kine_CalcGripWobj_ObjPrm_3P(ref origin, ref xPoint, ref xyPoint, ref user, out frame,
                out tilt);
        }

        /// <summary>
        /// Object frame of a work object on a mechanical unit from three points, in the last axis of the unit.
        /// </summary>
        /// <param name="unit">index of the mechanical unit</param>
        /// <param name="origin">
        /// world position of the origin: mm, deg, with the external axes at which it was taught
        /// </param>
        /// <param name="xPoint">world position on the positive X axis, likewise</param>
        /// <param name="xyPoint">world position in the XY plane on the side of positive Y, likewise</param>
        /// <param name="frame">result: mm, deg</param>
        /// <param name="tilt">
        /// result: angle between the Z axis of the frame and that of the last axis, IN RADIANS
        /// </param>
        /// <returns>
        /// As <see cref="Kine_CalcExtWobj_UserPrm_3P"/>; KINE_ERR_CALIB_POINTS_CLOSE too when the unit is not usable
        /// or has a rotary axis whose frame lies at the origin.
        /// </returns>
        public static uint Kine_CalcUnFixWobj_ObjPrm_3P(int unit, KinePose origin, KinePose xPoint, KinePose xyPoint,
            out KineFrame frame, out double tilt)
        {
            return Native.Kine_CalcUnFixWobj_ObjPrm_3P(unit, ref origin, ref xPoint, ref xyPoint, out frame, out tilt);
        }

        /// <summary>
        /// Frame of the first rotary axis of a mechanical unit from three positions of a mark that it turns: the
        /// origin in the centre of the mark's circle, Z along the axis so that the positions turn about it
        /// anticlockwise, X where the mark is when the axis reads 0. The centre is computed from the X and Y of the
        /// poses, without a guard: where the axis lies in their XY plane, or the perpendicular bisector of p0 and p1
        /// in the plane of the circle has no Y component, the result is not finite or not right, with KINE_OK.
        /// </summary>
        /// <param name="unit">index of the mechanical unit</param>
        /// <param name="p0">position of the mark: mm, deg; ExtAxis holds the value of the axis (deg)</param>
        /// <param name="p1">position of the mark</param>
        /// <param name="p2">position of the mark</param>
        /// <param name="frame">result: in the frame of the poses: mm, deg</param>
        /// <returns>
        /// KINE_ERR_CALIB_POINTS_CLOSE: two positions less than 1e-5 mm apart; KINE_ERR_CALIB_COLLINEAR: the
        /// positions lie on one line; KINE_ERR_TOOL: the unit or its axis is not known, or no external axis 0 to 5
        /// drives it.
        /// </returns>
        public static uint Kine_CalcPositionerJ1Prm_3P(int unit, KinePose p0, KinePose p1, KinePose p2,
            out KineFrame frame)
        {
            return Native.Kine_CalcPositionerJ1Prm_3P(unit, ref p0, ref p1, ref p2, out frame);
        }

        /// <summary>
        /// Frame of a further rotary axis of a mechanical unit, relative to a reference frame, from three positions
        /// of a mark as in Kine_CalcPositionerJ1Prm_3P. The value of axis n is taken AS RADIANS, though it is in
        /// degrees: teach p0 with the axis at 0, or turn the reference beforehand.
        /// </summary>
        /// <param name="unit">index of the mechanical unit</param>
        /// <param name="axis">number n of the axis, counted from 1</param>
        /// <param name="p0">position of the mark: mm, deg, with the external axes</param>
        /// <param name="p1">position of the mark</param>
        /// <param name="p2">position of the mark</param>
        /// <param name="reference">frame F in the frame of the poses: mm, deg</param>
        /// <param name="frame">
        /// result: (Rz(v) * F)^-1 * T * Rz(-w), T the axis frame with X towards p0, v the value of axis n, w (deg)
        /// that of the unit's second axis, whatever n is, both taken from p0
        /// </param>
        /// <returns>
        /// KINE_ERR_POSE: axis n is linear; KINE_ERR_CALIB_INPUT: axis below 1; KINE_ERR_CALIB_POINTS_CLOSE,
        /// KINE_ERR_CALIB_COLLINEAR as Kine_CalcPositionerJ1Prm_3P; KINE_ERR_TOOL: the unit, its axis n or its second
        /// axis is not known, or no external axis 0 to 5 drives it.
        /// </returns>
        public static uint Kine_CalcPositionerJnPrm_3P(int unit, int axis, KinePose p0, KinePose p1, KinePose p2,
            KineFrame reference, out KineFrame frame)
        {
            return Native.Kine_CalcPositionerJnPrm_3P(unit, axis, ref p0, ref p1, ref p2, ref reference, out frame);
        }

        /// <summary>
        /// Orientation of the robot base on a linear track: the rotation about Z that carries positions in the base
        /// into a frame whose X axis is the track, from one fixed mark touched at three track positions. Rotation and
        /// scale are fitted together and the scale is dropped.
        /// </summary>
        /// <param name="unit">index of the mechanical unit; its first axis is the track</param>
        /// <param name="p0">position of the mark in the base: mm, deg; ExtAxis holds the track position (mm)</param>
        /// <param name="p1">position of the mark in the base, likewise</param>
        /// <param name="p2">position of the mark in the base, likewise</param>
        /// <param name="frame">result: only A is found, the others are 0</param>
        /// <param name="error">report: distances of the mark's three positions in the frame of the track, mm</param>
        /// <returns>
        /// KINE_ERR_POSE: no linear axis; KINE_ERR_TOOL: the unit or its first axis is not known, or no external axis
        /// 0 to 5 drives it; KINE_ERR_CALIB_POINTS_CLOSE: two positions less than 1e-5 mm apart;
        /// KINE_ERR_CALIB_INPUT: the track moved less than 0.1 mm from p0 both times, or the positions differ in
        /// height only.
        /// </returns>
        public static uint Kine_CalcRobotBasePrm_3P(int unit, KinePose p0, KinePose p1, KinePose p2,
            out KineFrame frame, out KineCalibError error)
        {
            return Native.Kine_CalcRobotBasePrm_3P(unit, ref p0, ref p1, ref p2, out frame, out error);
        }

        // ---- Motion utilities ----

        /// <summary>
        /// Joints after one jog step. Modes Base and World move the tool frame, or the held work object, or with
        /// neither the flange; mode Tool the tool frame (with a stationary tool the held work object makes the
        /// opposite step; with neither the joints stay where they are); mode Wobj the tool frame in the work object.
        /// In mode Wobj a held work object turns with the opposite sense for every rotation slot in use among slots 3
        /// to n - 1. A step that ends with B of the moved frame at +-90 degrees may lead to another orientation, with
        /// KINE_OK: see KineDll.h.
        /// </summary>
        /// <param name="dir">directions</param>
        /// <param name="mode">what it moves along; for any other value the joints stay where they are</param>
        /// <param name="tool">tool</param>
        /// <param name="wobj">work object</param>
        /// <param name="load">payload</param>
        /// <param name="steps">
        /// step sizes: deg, mm, deg. CHANGED IN PLACE by every call, refused ones included: Joint and Rotation hold
        /// radians afterwards, so fill it again before the next call
        /// </param>
        /// <param name="current">joints, deg</param>
        /// <param name="target">result: joints in deg with the external axes of current (mode Joint: moved)</param>
        /// <returns>
        /// KINE_ERR_DIRECTION, KINE_ERR_JOINT: never from C#; KINE_ERR_TOOL, KINE_ERR_WOBJ (may print a line),
        /// KINE_ERR_LOAD: record refused; KINE_ERR_NOT_INITIALISED; modes Tool and Wobj: the codes and lines of
        /// Kine_JointToWobjPos from "FK Error 1" on, then those of Kine_WobjPosToJoint after its checks of records;
        /// modes Base and World: (World) KINE_ERR_F2W_UNIT_KIND, the codes of the arm, nothing printed;
        /// KINE_ERR_INCH_SINGULAR: the target is singular, kind Wide (not in mode Joint).
        /// </returns>
        public static uint Kine_InchMovePosCalc(KineInchDir dir, KineInchMode mode, KineTool tool, KineWobj wobj,
            KineLoad load, ref KineInchSteps steps, KineJoint current, out KineJoint target)
        {
            return Native.Kine_InchMovePosCalc(ref dir, mode, ref tool, ref wobj, ref load, ref steps, ref current,
                out target);
        }

        /// <summary>
        /// Joints that align the tool with a reference frame: the tool point stays, and the tool turns by the
        /// smallest rotation that brings its Z axis onto the nearest of +-X, +-Y, +-Z of the reference. With a held
        /// work object modes Base, World and WobjByFlange turn the flange about its own origin, mode Wobj the work
        /// object; modes Wobj and WobjByFlange then do not align exactly. Four-axis arms with axis 4 negative, or
        /// nearly always from 90 degrees on, get KINE_ERR_ALIGN_TURN.
        /// </summary>
        /// <param name="mode">reference</param>
        /// <param name="current">joints, deg</param>
        /// <param name="tool">tool</param>
        /// <param name="wobj">work object</param>
        /// <param name="load">payload</param>
        /// <param name="target">result: joints in deg with the external axes of current</param>
        /// <returns>
        /// KINE_ERR_JOINT: never from C#; KINE_ERR_WOBJ (may print a line), KINE_ERR_TOOL, KINE_ERR_LOAD: record
        /// refused; KINE_ERR_NOT_INITIALISED; KINE_ERR_DIRECTION: no such mode, or Wobj or WobjByFlange with neither
        /// tool nor work object held; World: KINE_ERR_F2W_UNIT_KIND; Wobj and WobjByFlange: the codes and lines of
        /// Kine_JointToWobjPos from "FK Error 2" on; KINE_ERR_ALIGN_NO_SOLUTION: none in the configuration of the
        /// current joints; KINE_ERR_ALIGN_TURN: another Cfg4 leads nearer to the current joints.
        /// </returns>
        public static uint Kine_CalcAlignPos(KineAlignMode mode, KineJoint current, KineTool tool, KineWobj wobj,
            KineLoad load, out KineJoint target)
        {
            return Native.Kine_CalcAlignPos(mode, ref current, ref tool, ref wobj, ref load, out target);
        }

        /// <summary>
        /// Swaps the roles of a stationary tool and a held work object IN THE CALLER'S RECORDS: the frame of the work
        /// object (user * object, a user frame counting only with UFFix 1) becomes the frame of a held tool, and the
        /// frame of the stationary tool the user frame of a work object that is not held, with a zero object frame.
        /// TLoad, UFFix and MechUnitIndex stay.
        /// </summary>
        /// <param name="tool">stationary tool; a held one afterwards</param>
        /// <param name="wobj">held work object; not held afterwards</param>
        /// <returns>
        /// KINE_ERR_WOBJ: wobj refused (may print a line); KINE_ERR_TOOL: tool refused, or HeldByRobot not 0;
        /// KINE_ERR_WOBJ: HeldByRobot of wobj is 0; tool.HeldByRobot has become 1 all the same, nothing else has
        /// changed.
        /// </returns>
        public static uint Kine_CalcAlignCoordProc(ref KineTool tool, ref KineWobj wobj)
        {
            return Native.Kine_CalcAlignCoordProc(ref tool, ref wobj);
        }

        /// <summary>Normal of the plane through three points, (p2 - p1) x (p3 - p1), scaled to a length.</summary>
        /// <param name="p1">point, mm; the angles of all three are neither read nor checked</param>
        /// <param name="p2">point, mm</param>
        /// <param name="p3">point, mm</param>
        /// <param name="length">mm; a negative one reverses the normal</param>
        /// <param name="result">the normal, mm; keeps its value when the points lie on one line or one is NaN</param>
        /// <returns>Always KINE_OK.</returns>
        public static uint Kine_CalcZVec(KineFrame p1, KineFrame p2, KineFrame p3, double length, ref KineVector result)
        {
            return Native.Kine_CalcZVec(ref p1, ref p2, ref p3, length, ref result);
        }

        /// <summary>
        /// Whether the flange lies in an axis-aligned cube in the world. The position is asked with a work object of
        /// zeros, which is refused, so that THIS CALL RETURNS KINE_ERR_WOBJ FOR EVERY INPUT, with a printed line. To
        /// watch an area, ask Kine_JointToWorldPos with records of your own.
        /// </summary>
        /// <param name="joints">axes, deg</param>
        /// <param name="centre">centre of the cube, mm</param>
        /// <param name="size">edge length, mm; the faces count as inside</param>
        /// <returns>1 inside, 0 outside, or a result code: KINE_ERR_WOBJ. Not for Check.</returns>
        public static int SafeArea_Check(KineJoint joints, KineVector centre, double size)
        {
            return Native.SafeArea_Check(ref joints, ref centre, size);
        }

        /// <summary>Difference of the second pose relative to the first.</summary>
        /// <param name="first">pose: mm, deg</param>
        /// <param name="second">pose in the same frame: mm, deg</param>
        /// <param name="frame">the axes along and about which the difference is given</param>
        /// <param name="result">mm, deg</param>
        /// <returns>
        /// KINE_ERR_POSE: an angle of first, then of second, beyond +-180; KINE_ERR_DIRECTION: no such frame.
        /// </returns>
        public static uint Kine_CalcPosDif(KinePose first, KinePose second, KineDifFrame frame, out KineFrame result)
        {
            return Native.Kine_CalcPosDif(ref first, ref second, frame, out result);
        }

        // The functions as the library has them: every record by its address, which a call writes through for a result
        // and for what is documented to change in place.
        static class Native
        {
            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_InitKinematicParam(KineArm armType, ref KineKinematicParam param);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_SetAxisLimit(ref KineJoint upper, ref KineJoint lower);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_SetMechUnitGlobalCfg(uint mechUnitCount, uint extAxisItemCount,
                uint enable);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_SetMechUnitParam(int index, ref KineMechUnit unit);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_SetExtAxisParam(int index, ref KineExtAxisParam param);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_GetArmType(ref KineJoint joints, out KineArmConfig config);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_IsArmTypeValid(ref KinePose pose);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_IsSingularity(ref KineJoint joints, KineSingularityKind kind);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_JointToBasePos(ref KineJoint joints, ref KineTool tool, ref KineWobj wobj,
                ref KineLoad load, out KinePose pose);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_JointToFlangePos(ref KineJoint joints, ref KineTool tool,
                ref KineWobj wobj, ref KineLoad load, out KinePose pose);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_JointToWorldPos(ref KineJoint joints, ref KineTool tool, ref KineWobj wobj,
                ref KineLoad load, out KinePose pose);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_JointToWobjPos(ref KineJoint joints, ref KineTool tool, ref KineWobj wobj,
                ref KineLoad load, out KinePose pose);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_FKineVision(ref KineJoint joints, out KinePose pose);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_WobjPosToJoint(ref KinePose target, ref KineTool tool, ref KineWobj wobj,
                ref KineLoad load, out KineJoint joints);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_WorldPosToFixWobjPos(ref KinePose pose, ref KineWobj wobj,
                out KinePose result);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_WorldPosToGripWobjPos(ref KinePose pose, ref KineWobj wobj,
                ref KinePose flange, out KinePose result);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_GripWobjPosToWorldPos(ref KinePose pose, ref KineWobj wobj,
                ref KinePose flange, out KinePose result);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CrdPosToWobjPos(ref KinePose pose, KineCrdMode mode, ref KineTool tool,
                ref KineWobj wobj, ref KineLoad load, out KinePose result);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_ToolCoordOffset(ref KinePose pose, ref KineFrame offset,
                out KinePose result);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_WobjCoordOffset(ref KinePose pose, ref KineFrame offset,
                out KinePose result);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcExtToolPrm_1P(ref KinePose p0, out KineFrame frame);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcExtToolPrm_1PZX(ref KinePose origin, ref KinePose zPoint,
                ref KinePose xPoint, out KineFrame frame);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcExtToolPrm_3P(ref KinePose p0, ref KinePose p1, ref KinePose p2,
                out KineFrame frame, out KineCalibError error);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcExtToolPrm_3PZX(ref KinePose p0, ref KinePose p1, ref KinePose p2,
                ref KinePose origin, ref KinePose zPoint, ref KinePose xPoint, out KineFrame frame,
                out KineCalibError error);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcGripToolPrm_3P(ref KinePose p0, ref KinePose p1, ref KinePose p2,
                out KineFrame frame, out KineCalibError error);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcGripToolPrm_3PZX(ref KinePose p0, ref KinePose p1, ref KinePose p2,
                ref KinePose origin, ref KinePose zPoint, ref KinePose xPoint, out KineFrame frame,
                out KineCalibError error);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcGripToolPrm_5P(ref KinePose p0, ref KinePose p1, ref KinePose p2,
                ref KinePose p3, ref KinePose p4, out KineFrame frame, out KineCalibError error);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcGripToolPrm_Scara2P(ref KinePose p0, ref KinePose p1,
                out KineFrame frame);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcExtWobj_UserPrm_2P(ref KinePose origin, ref KinePose xPoint,
                out KineFrame frame, out double tilt);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcExtWobj_UserPrm_3P(ref KinePose origin, ref KinePose xPoint,
                ref KinePose xyPoint, out KineFrame frame, out double tilt);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcExtWobj_UserPrm_Cirle3P(ref KinePose p1, ref KinePose p2,
                ref KinePose p3, out KineFrame frame, out double tilt);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcExtWobj_ObjPrm_3P(ref KinePose origin, ref KinePose xPoint,
                ref KinePose xyPoint, ref KineFrame user, out KineFrame frame, out double tilt);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcGripWobj_UserPrm_3P(ref KinePose origin, ref KinePose xPoint,
                ref KinePose xyPoint, out KineFrame frame, out double tilt);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcGripWobj_ObjPrm_3P(ref KinePose origin, ref KinePose xPoint,
                ref KinePose xyPoint, ref KineFrame user, out KineFrame frame, out double tilt);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcUnFixWobj_ObjPrm_3P(int unit, ref KinePose origin, ref KinePose xPoint,
                ref KinePose xyPoint, out KineFrame frame, out double tilt);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcPositionerJ1Prm_3P(int unit, ref KinePose p0, ref KinePose p1,
                ref KinePose p2, out KineFrame frame);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcPositionerJnPrm_3P(int unit, int axis, ref KinePose p0,
                ref KinePose p1, ref KinePose p2, ref KineFrame reference, out KineFrame frame);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcRobotBasePrm_3P(int unit, ref KinePose p0, ref KinePose p1,
                ref KinePose p2, out KineFrame frame, out KineCalibError error);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_InchMovePosCalc(ref KineInchDir dir, KineInchMode mode, ref KineTool tool,
                ref KineWobj wobj, ref KineLoad load, ref KineInchSteps steps, ref KineJoint current,
                out KineJoint target);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcAlignPos(KineAlignMode mode, ref KineJoint current, ref KineTool tool,
                ref KineWobj wobj, ref KineLoad load, out KineJoint target);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcAlignCoordProc(ref KineTool tool, ref KineWobj wobj);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcZVec(ref KineFrame p1, ref KineFrame p2, ref KineFrame p3,
                double length, ref KineVector result);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern int SafeArea_Check(ref KineJoint joints, ref KineVector centre, double size);

            [DllImport(Library, CallingConvention = Cdecl, ExactSpelling = true)]
            internal static extern uint Kine_CalcPosDif(ref KinePose first, ref KinePose second, KineDifFrame frame,
                out KineFrame result);
        }
    }
}
