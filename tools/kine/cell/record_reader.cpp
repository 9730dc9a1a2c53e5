#include "cell/record_reader.h"

#include <algorithm>
#include <array>
#include <span>

namespace kine_cli {
namespace {

void ReadFrameFields(ObjectReader& in, KineFrame& frame)
{
    frame.X = in.Number("x_mm", 0.0);
    frame.Y = in.Number("y_mm", 0.0);
    frame.Z = in.Number("z_mm", 0.0);
    frame.A = in.Number("a_deg", 0.0);
    frame.B = in.Number("b_deg", 0.0);
    frame.C = in.Number("c_deg", 0.0);
}

void ReadExternalValues(ObjectReader& in, double (&values)[kExternalAxes])
{
    in.Numbers("external_mm_or_deg", values, 1);
}

}  // namespace

KineFrame ReadFrame(const JsonValue& value, const std::string& path, Findings& findings)
{
    KineFrame frame{};
    ObjectReader in(value, path, findings);
    ReadFrameFields(in, frame);
    in.RefuseTheRest();
    return frame;
}

KineFrame ReadFrameAt(ObjectReader& in, std::string_view key)
{
    const JsonValue* value = in.Find(key);
    return value ? ReadFrame(*value, in.PathOf(key), in.AllFindings()) : KineFrame{};
}

KineLoad ReadLoad(const JsonValue& value, const std::string& path, Findings& findings)
{
    KineLoad load{};
    ObjectReader in(value, path, findings);
    load.Mass = in.Number("mass_kg", 0.0);
    in.Numbers("cog_mm", load.Cog, 3);
    in.Numbers("axes_of_moment_deg", load.Aom, 3);
    in.Numbers("inertia", load.Inertia, 3);
    in.RefuseTheRest();
    return load;
}

KineTool ReadTool(const JsonValue& value, const std::string& path, Findings& findings)
{
    KineTool tool{};
    ObjectReader in(value, path, findings);
    tool.HeldByRobot = in.Boolean("held_by_robot", true) ? 1 : 0;
    tool.TFrame = ReadFrameAt(in, "frame");
    if (const JsonValue* load = in.Find("load")) tool.TLoad = ReadLoad(*load, in.PathOf("load"), findings);
    in.RefuseTheRest();
    return tool;
}

KineWobj ReadWorkObject(const JsonValue& value, const std::string& path, Findings& findings)
{
    KineWobj wobj{};
    ObjectReader in(value, path, findings);
    wobj.HeldByRobot = in.Boolean("held_by_robot", false) ? 1 : 0;
    wobj.UFFix = in.Find("mechanical_unit") ? 0 : 1;
    wobj.MechUnitIndex = static_cast<std::int8_t>(in.Integer("mechanical_unit", -128, 127, 0));
    wobj.UFrame = ReadFrameAt(in, "user_frame");
    wobj.OFrame = ReadFrameAt(in, "object_frame");
    in.RefuseTheRest();
    return wobj;
}

KineJoint ReadJoints(const JsonValue& value, const std::string& path, Findings& findings, std::size_t axes)
{
    KineJoint joints{};
    ObjectReader in(value, path, findings);
    if (in.Require("axes_deg")) in.Numbers("axes_deg", std::span(joints.Axis, axes), axes);
    ReadExternalValues(in, joints.ExtAxis);
    in.RefuseTheRest();
    return joints;
}

PoseTarget ReadPose(const JsonValue& value, const std::string& path, Findings& findings)
{
    PoseTarget target;
    ObjectReader in(value, path, findings);
    ReadFrameFields(in, target.pose.Frame);
    std::array<double, 4> config{};
    if (in.Numbers("cfg", config, config.size())) {
        target.hasConfig = true;
        const std::array<std::int32_t*, 4> fields = {&target.pose.Cfg1, &target.pose.Cfg2, &target.pose.Cfg3,
                                                     &target.pose.Cfg4};
        for (std::size_t i = 0; i < config.size(); ++i) {
            if (config[i] != static_cast<double>(static_cast<std::int32_t>(
                                 std::clamp(config[i], -2147483648.0, 2147483647.0)))) {
                in.Fault("cfg", "should be whole numbers of 32 bits");
                break;
            }
            *fields[i] = static_cast<std::int32_t>(config[i]);
        }
    }
    ReadExternalValues(in, target.pose.ExtAxis);
    in.RefuseTheRest();
    return target;
}

}  // namespace kine_cli
