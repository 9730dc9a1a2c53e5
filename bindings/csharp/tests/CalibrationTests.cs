// All eighteen calibrations through the binding, from touches worked out by hand: a point t on the flange touches P
// when the flange stands at P - R t.

using System;
using Kine;
using static Kine.KineDll;

static class CalibrationTests
{
    static KinePose At(double x, double y, double z, double a = 0.0, double b = 0.0, double c = 0.0)
    {
        return new KinePose(new KineFrame(x, y, z, a, b, c));
    }

    // t = (10, 0, 50) touches P = (500, 100, 300): straight, turned about Z, about X, about Y and twice about Z.
    static readonly KinePose Straight = At(490.0, 100.0, 250.0);
    static readonly KinePose AboutZ = At(500.0, 90.0, 250.0, 90.0);
    static readonly KinePose AboutX = At(490.0, 150.0, 300.0, 0.0, 0.0, 90.0);
    static readonly KinePose AboutY = At(450.0, 100.0, 310.0, 0.0, 90.0);
    static readonly KinePose TwiceAboutZ = At(510.0, 100.0, 250.0, 180.0);
    static readonly KineFrame OnFlange = new KineFrame(10.0, 0.0, 50.0);
    static readonly KineFrame Touched = new KineFrame(500.0, 100.0, 300.0);

    // From Straight 20 mm along Z, from there 30 mm along Y: a frame with its X axis along Y.
    static readonly KinePose AlongZ = At(490.0, 100.0, 270.0);
    static readonly KinePose TowardsX = At(490.0, 130.0, 270.0);

    static void Agree(KineCalibError error)
    {
        Testing.Near(0.0, error.Largest, "largest");
        Testing.Near(0.0, error.Mean, "mean");
        Testing.Near(0.0, error.Smallest, "smallest");
    }

    public static void a_stationary_tool_is_found()
    {
        Arms.UsePuma();
        Testing.Ok(Kine_CalcExtToolPrm_1P(At(1.0, 2.0, 3.0, 10.0, 20.0, 30.0), out KineFrame frame));
        Testing.Near(new KineFrame(1.0, 2.0, 3.0), frame, "one point");
        Testing.Ok(Kine_CalcExtToolPrm_1PZX(At(100.0, 0.0, 0.0), At(100.0, 0.0, 50.0), At(100.0, 70.0, 0.0),
                                            out frame));
        Testing.Near(new KineFrame(100.0, 0.0, 0.0, 90.0), frame, "one point, Z and X");
        Testing.Ok(Kine_CalcExtToolPrm_3P(Straight, AboutZ, AboutX, out frame, out KineCalibError error));
        Testing.Near(Touched, frame, "three points");
        Agree(error);
        Testing.Ok(Kine_CalcExtToolPrm_3PZX(Straight, AboutZ, AboutX, Straight, AlongZ, TowardsX, out frame,
                                            out error));
        Testing.Near(new KineFrame(500.0, 100.0, 300.0, 90.0), frame, "three points, Z and X");
        Agree(error);
    }

    public static void a_tool_on_the_flange_is_found()
    {
        Arms.UsePuma();
        Testing.Ok(Kine_CalcGripToolPrm_3P(Straight, AboutZ, AboutX, out KineFrame frame, out KineCalibError error));
        Testing.Near(OnFlange, frame, "three points");
        Agree(error);
        Testing.Ok(Kine_CalcGripToolPrm_3PZX(Straight, AboutZ, AboutX, Straight, AlongZ, TowardsX, out frame,
                                             out error));
        Testing.Near(new KineFrame(10.0, 0.0, 50.0, 90.0), frame, "three points, Z and X");
        Agree(error);
        Testing.Ok(Kine_CalcGripToolPrm_5P(Straight, AboutZ, AboutX, AboutY, TwiceAboutZ, out frame, out error));
        Testing.Near(OnFlange, frame, "five points");
        Agree(error);
    }

    // t = (10, 20) touches P = (100, 100) in two headings.
    public static void a_tool_of_a_four_axis_arm_is_found()
    {
        Arms.UseScara();
        Testing.Ok(Kine_CalcGripToolPrm_Scara2P(At(90.0, 80.0, 0.0), At(120.0, 90.0, 0.0, 90.0), out KineFrame frame));
        Testing.Near(new KineFrame(10.0, 20.0, 0.0), frame, "two headings");
        Arms.UsePuma();
        Testing.Equal(KINE_ERR_NOT_INITIALISED, Kine_CalcGripToolPrm_Scara2P(Straight, AboutZ, out _), "six axes");
    }

    // The touch without a turn is 1 mm too far along X: the report says so, and a report is not needed.
    public static void touches_that_disagree_are_reported()
    {
        Arms.UsePuma();
        KinePose wrong = At(491.0, 100.0, 250.0);
        Testing.Ok(Kine_CalcGripToolPrm_5P(wrong, AboutZ, AboutX, AboutY, TwiceAboutZ, out KineFrame frame,
                                           out KineCalibError error));
        Testing.True(error.Largest > 0.1 && error.Largest < 2.0, "largest");
        Testing.True(error.Largest >= error.Mean && error.Mean >= error.Smallest, "order");
        Testing.Ok(Kine_CalcGripToolPrm_5P(wrong, AboutZ, AboutX, AboutY, TwiceAboutZ, out KineFrame same, out _));
        Testing.True(Testing.SameBits(frame, same), "the frame depends on the report");
    }

    // X rises by 45 degrees, Y is level: Rz(0) * Ry(-45).
    public static void a_user_frame_is_found_from_two_points()
    {
        Testing.Ok(Kine_CalcExtWobj_UserPrm_2P(At(100.0, 200.0, 50.0), At(200.0, 200.0, 150.0), out KineFrame frame,
                                               out double tilt));
        Testing.Near(new KineFrame(100.0, 200.0, 50.0, 0.0, -45.0, 0.0), frame, "frame");
        Testing.Near(Math.PI / 4.0, tilt, "tilt");
    }

    // X stays, Y points up: Rx(90).
    static readonly KinePose Origin = At(100.0, 0.0, 0.0);
    static readonly KinePose AlongX = At(180.0, 0.0, 0.0);
    static readonly KinePose Above = At(120.0, 0.0, 40.0);
    static readonly KineFrame Upright = new KineFrame(100.0, 0.0, 0.0, 0.0, 0.0, 90.0);

    public static void a_user_frame_is_found_from_three_points()
    {
        Testing.Ok(Kine_CalcExtWobj_UserPrm_3P(Origin, AlongX, Above, out KineFrame frame, out double tilt));
        Testing.Near(Upright, frame, "fixed");
        Testing.Near(Math.PI / 2.0, tilt, "tilt");
        Testing.Ok(Kine_CalcGripWobj_UserPrm_3P(Origin, AlongX, Above, out frame, out tilt));
        Testing.Near(Upright, frame, "held");
        Testing.Near(Math.PI / 2.0, tilt, "tilt");
    }

    public static void a_circle_gives_its_centre()
    {
        Testing.Ok(Kine_CalcExtWobj_UserPrm_Cirle3P(At(15.0, 20.0, 30.0), At(10.0, 25.0, 30.0), At(5.0, 20.0, 30.0),
                                                    out KineFrame frame, out double tilt));
        Testing.Near(new KineFrame(10.0, 20.0, 30.0), frame, "frame");
        Testing.Near(0.0, tilt, "tilt", 1e-7);
    }

    public static void an_object_frame_is_found_in_its_user_frame()
    {
        KineFrame aside = new KineFrame(100.0, -50.0, 0.0);
        Testing.Ok(Kine_CalcExtWobj_ObjPrm_3P(Origin, AlongX, Above, aside, out KineFrame frame, out double tilt));
        Testing.Near(new KineFrame(0.0, 50.0, 0.0, 0.0, 0.0, 90.0), frame, "fixed");
        Testing.Near(Math.PI / 2.0, tilt, "tilt");
        Testing.Ok(Kine_CalcGripWobj_ObjPrm_3P(Origin, AlongX, Above, Upright, out frame, out tilt));
        Testing.Near(new KineFrame(), frame, "held");
        Testing.Near(0.0, tilt, "tilt against the user frame", 1e-7);
    }

    // The table turned by 90 degrees: a world point (x, y) is (y, 400 - x) on it.
    public static void an_object_frame_is_found_on_a_turned_table()
    {
        Arms.UsePuma();
        Arms.AddUnits();
        KinePose origin = At(400.0, 100.0, 200.0), x = At(400.0, 150.0, 200.0), xy = At(350.0, 100.0, 200.0);
        origin.ExtAxis[0] = x.ExtAxis[0] = xy.ExtAxis[0] = 90.0;
        Testing.Ok(Kine_CalcUnFixWobj_ObjPrm_3P(Arms.Table, origin, x, xy, out KineFrame frame, out double tilt));
        Testing.Near(new KineFrame(100.0, 0.0, 0.0), frame, "frame");
        Testing.Near(0.0, tilt, "tilt", 1e-7);
    }

    static KinePose Mark(double x, double y, double z, int axis, double degrees)
    {
        KinePose pose = At(x, y, z);
        pose.ExtAxis[axis] = degrees;
        return pose;
    }

    public static void the_axes_of_a_positioner_are_found()
    {
        Arms.UsePuma();
        Arms.AddUnits();
        Testing.Ok(Kine_CalcPositionerJ1Prm_3P(Arms.Table, Mark(500.0, 0.0, 5.0, 0, 0.0),
                                               Mark(400.0, 100.0, 5.0, 0, 90.0), Mark(300.0, 0.0, 5.0, 0, 180.0),
                                               out KineFrame frame));
        Testing.Near(new KineFrame(400.0, 0.0, 5.0), frame, "first axis");
        KineFrame reference = new KineFrame(400.0, 0.0, 0.0);
        Testing.Ok(Kine_CalcPositionerJnPrm_3P(Arms.Table, 2, Mark(520.0, 0.0, 200.0, 1, 0.0),
                                               Mark(420.0, 100.0, 200.0, 1, 90.0), Mark(320.0, 0.0, 200.0, 1, 180.0),
                                               reference, out frame));
        Testing.Near(new KineFrame(20.0, 0.0, 200.0), frame, "second axis");
        Testing.Equal(KINE_ERR_POSE,
                      Kine_CalcPositionerJnPrm_3P(Arms.Track, 1, Mark(520.0, 0.0, 200.0, 5, 0.0),
                                                  Mark(420.0, 100.0, 200.0, 5, 90.0), Mark(320.0, 0.0, 200.0, 5, 180.0),
                                                  reference, out _), "a linear axis");
    }

    // The base is turned by 90 degrees on the track: a mark 1000 mm down the track is at (0, -1000) in the base.
    public static void the_base_on_its_track_is_found()
    {
        Arms.UsePuma();
        Arms.AddUnits();
        Testing.Ok(Kine_CalcRobotBasePrm_3P(Arms.Track, Mark(0.0, -1000.0, 300.0, 5, 0.0),
                                            Mark(0.0, -900.0, 300.0, 5, 100.0), Mark(0.0, -750.0, 300.0, 5, 250.0),
                                            out KineFrame frame, out KineCalibError error));
        Testing.Near(new KineFrame(0.0, 0.0, 0.0, 90.0), frame, "frame");
        Agree(error);
    }
}
