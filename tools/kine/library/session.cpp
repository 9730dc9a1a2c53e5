#include "library/session.h"

#include <algorithm>

#include "failure.h"
#include "library/codes.h"

namespace kine_cli {
namespace {

template <typename Record>
Record Chosen(const std::vector<Named<Record>>& list, const std::string& name, const std::string& otherwise,
              const std::string& what, const Cell& cell)
{
    const Record* record = Find(list, name.empty() ? otherwise : name);
    if (record) return *record;
    std::string names;
    for (const Named<Record>& entry : list) names += (names.empty() ? "" : ", ") + entry.name;
    FailUsage(cell.file + " has no " + what + " \"" + name + "\"; it has: " + names);
}

}  // namespace

std::vector<RefusedSetup> SetUpLibrary(const Cell& cell, PrintedLines& printed)
{
    std::vector<RefusedSetup> refused;
    const auto note = [&](const std::string& path, const char* call, KineResult code) {
        if (code != KINE_OK) refused.push_back({path, call, code, printed.Take()});
    };
    note("arm", "Kine_InitKinematicParam", Kine_InitKinematicParam(cell.armType, &cell.param));
    if (cell.hasLimits) note("limits", "Kine_SetAxisLimit", Kine_SetAxisLimit(&cell.upper, &cell.lower));
    const auto units = static_cast<std::uint32_t>(cell.units.size());
    const auto axes = static_cast<std::uint32_t>(cell.externalAxes.size());
    if (units == 0 && axes == 0) return refused;

    note(units > 3 ? "mechanical_units" : "external_axes", "Kine_SetMechUnitGlobalCfg",
         Kine_SetMechUnitGlobalCfg(units, axes, 1));
    for (std::uint32_t i = 0; i < axes; ++i) {
        KineExtAxisParam axis{};
        axis.Word[3] = cell.externalAxes[i].linear ? 1 : 0;
        note("external_axes[" + std::to_string(i) + "]", "Kine_SetExtAxisParam",
             Kine_SetExtAxisParam(static_cast<std::int32_t>(i), &axis));
    }
    for (std::uint32_t i = 0; i < units; ++i) {
        note("mechanical_units[" + std::to_string(i) + "]", "Kine_SetMechUnitParam",
             Kine_SetMechUnitParam(static_cast<std::int32_t>(i), &cell.units[i].record));
    }
    return refused;
}

void RequireSetUp(const Cell& cell, PrintedLines& printed)
{
    std::string text;
    for (const RefusedSetup& refusal : SetUpLibrary(cell, printed)) {
        text += (text.empty() ? "" : "\n") + cell.PlaceOf(refusal.path) + ": " + refusal.path + ": " +
                refusal.call + " refuses it with " + InWords(refusal.code);
    }
    if (!text.empty()) FailFile(text);
}

CellRecords RecordsOf(const Cell& cell, const Selection& selection)
{
    return {Chosen(cell.tools, selection.tool, cell.use.tool, "tool", cell),
            Chosen(cell.workObjects, selection.workObject, cell.use.workObject, "work object", cell),
            Chosen(cell.loads, selection.load, cell.use.load, "load", cell)};
}

KineResult JointsToPose(const KineJoint& joints, const CellRecords& records, Reference reference,
                        KinePose& pose)
{
    switch (reference) {
        case Reference::kBase:
            return Kine_JointToBasePos(&joints, &records.tool, &records.wobj, &records.load, &pose);
        case Reference::kFlange:
            return Kine_JointToFlangePos(&joints, &records.tool, &records.wobj, &records.load, &pose);
        case Reference::kWorld:
            return Kine_JointToWorldPos(&joints, &records.tool, &records.wobj, &records.load, &pose);
        case Reference::kWorkObject:
            return Kine_JointToWobjPos(&joints, &records.tool, &records.wobj, &records.load, &pose);
        case Reference::kVision: return Kine_FKineVision(&joints, &pose);
    }
    return KINE_OK;
}

}  // namespace kine_cli
