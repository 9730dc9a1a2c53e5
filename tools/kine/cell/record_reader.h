// From an object of a cell file to a record of the library. `path` is where the object stands, such as
// "tools.torch".
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "KineDll.h"
#include "cell/cell.h"
#include "cell/object_reader.h"
#include "json/source_json.h"

namespace kine_cli {

KineFrame ReadFrame(const JsonValue& value, const std::string& path, Findings& findings);
// The frame under a key; zeros when there is none.
KineFrame ReadFrameAt(ObjectReader& in, std::string_view key);

KineLoad ReadLoad(const JsonValue& value, const std::string& path, Findings& findings);
KineTool ReadTool(const JsonValue& value, const std::string& path, Findings& findings);
KineWobj ReadWorkObject(const JsonValue& value, const std::string& path, Findings& findings);
KineJoint ReadJoints(const JsonValue& value, const std::string& path, Findings& findings, std::size_t axes);
PoseTarget ReadPose(const JsonValue& value, const std::string& path, Findings& findings);

}  // namespace kine_cli
