// A cell as its file describes it: the library's records, the names they have in the file, and where they
// stand there. Millimetres and degrees, as everywhere outside of the library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "KineDll.h"
#include "json/source_json.h"

namespace kine_cli {

inline constexpr std::size_t kExternalAxes = 6;

template <typename Record>
struct Named
{
    std::string name;
    Record record{};
};

struct ExternalAxis
{
    std::string name;
    bool linear = false;
    // Travel, in mm or degrees, when the file gives it.
    std::optional<std::pair<double, double>> travel;
};

// A pose whose configuration integers may be left open.
struct PoseTarget
{
    KinePose pose{};
    bool hasConfig = false;
};

// Which tool, work object and load a command uses, by name.
struct Selection
{
    std::string tool;
    std::string workObject;
    std::string load;
};

enum class Reference
{
    kBase,
    kFlange,
    kWorld,
    kWorkObject,
    kVision  // Kine_FKineVision
};

// What the author of the file knows about the cell from elsewhere: a pose, or the code of a refusal.
struct Expectation
{
    std::string what;
    std::string source;
    KineJoint joints{};
    Reference reference = Reference::kWorkObject;
    Selection selection;
    KineFrame frame{};
    std::optional<KineResult> code;
    double withinMm = 0.0;
    double withinDeg = 0.0;
    Position position;
};

struct Cell
{
    std::string file;
    std::string name;
    std::string about;

    std::uint32_t armType = 0;  // KINE_ARM_...
    KineKinematicParam param{};

    bool hasLimits = false;
    KineJoint lower{};  // deg; without limits the open ones of the library
    KineJoint upper{};

    std::vector<ExternalAxis> externalAxes;
    std::vector<Named<KineMechUnit>> units;
    std::optional<int> carrier;  // index of the unit under the robot

    // In the order of the file, after the ones that every cell has: "none", the bare flange, the world as
    // work object and no load.
    std::vector<Named<KineTool>> tools;
    std::vector<Named<KineWobj>> workObjects;
    std::vector<Named<KineLoad>> loads;
    std::vector<Named<KineJoint>> joints;
    std::vector<Named<PoseTarget>> poses;
    Selection use;
    std::vector<Expectation> expectations;

    // Where each field of the file stands, by its path, such as "arm.alpha_deg[2]".
    std::map<std::string, Position, std::less<>> places;

    bool IsSixAxis() const { return armType == KINE_ARM_SIX_AXIS; }
    std::size_t AxisCount() const { return IsSixAxis() ? 6 : 4; }

    // "cell.json:12:5" of a field, or of the nearest field around it that the file has.
    std::string PlaceOf(std::string_view path) const;
};

// The names of every cell's own tool, work object and load.
inline constexpr std::string_view kNone = "none";

template <typename Record>
const Record* Find(const std::vector<Named<Record>>& list, std::string_view name)
{
    for (const Named<Record>& entry : list) {
        if (entry.name == name) return &entry.record;
    }
    return nullptr;
}

}  // namespace kine_cli
