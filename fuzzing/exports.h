// The 44 exports as data: how to call one through a row of arguments, and what its text in KineDll.h
// promises: the codes it may return, the lines it may print, what becomes of its records.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "KineDll.h"

namespace kine::fuzz {

// What an argument is. kInteger and kNumber are values, all others records or arrays of doubles.
enum class Kind : std::uint8_t
{
    kInteger,
    kNumber,
    kArm,
    kJoint,
    kPose,
    kFrame,
    kTool,
    kWobj,
    kLoad,
    kUnit,
    kExtAxis,
    kDirections,
    kConfig,
    kReport,
    kTilt,    // one double
    kVector,  // three doubles
    kSteps    // three doubles, changed in place
};

inline constexpr std::size_t kKinds = 17;

enum class Role : std::uint8_t
{
    kValue,
    kIn,
    kOut,
    kInOut
};

struct Param
{
    Kind kind{};
    Role role{};
    bool isOptional = false;  // may be null
};

struct KindInfo
{
    const char* name;
    std::size_t size;             // bytes of the record; of an arm those of the larger view
    std::size_t computedNumbers;  // doubles at the start of a result; behind them is what is handed through
};

// In the order of Kind.
inline constexpr std::array<KindInfo, kKinds> kKindInfos = {{{"integer", 0, 0},
                                                             {"number", 0, 0},
                                                             {"arm", sizeof(KineKinematicParam), 0},
                                                             {"joints", sizeof(KineJoint), 8},
                                                             {"pose", sizeof(KinePose), 6},
                                                             {"frame", sizeof(KineFrame), 6},
                                                             {"tool", sizeof(KineTool), 0},
                                                             {"wobj", sizeof(KineWobj), 0},
                                                             {"load", sizeof(KineLoad), 0},
                                                             {"unit", sizeof(KineMechUnit), 0},
                                                             {"axis", sizeof(KineExtAxisParam), 0},
                                                             {"directions", sizeof(KineInchDir), 0},
                                                             {"config", sizeof(KineArmConfig), 0},
                                                             {"report", sizeof(KineCalibError), 3},
                                                             {"tilt", sizeof(double), 1},
                                                             {"vector", 3 * sizeof(double), 3},
                                                             {"steps", 3 * sizeof(double), 0}}};

inline constexpr std::size_t kMaxRecord = sizeof(KineMechUnit);
inline constexpr std::size_t kMaxParams = 8;

constexpr const KindInfo& InfoOf(Kind kind) { return kKindInfos[static_cast<std::size_t>(kind)]; }

struct Argument
{
    void* pointer = nullptr;
    std::int32_t integer = 0;
    double number = 0.0;
};

// The families of exports, one fuzz target each.
inline constexpr unsigned kSetupQueries = 1;
inline constexpr unsigned kForward = 2;
inline constexpr unsigned kInverse = 4;
inline constexpr unsigned kConversions = 8;
inline constexpr unsigned kMotion = 16;
inline constexpr unsigned kCalibration = 32;
inline constexpr unsigned kEveryFamily = 63;

// Which lines a call may print.
enum class Lines : std::uint8_t
{
    kNone,
    kSetup,    // exactly those that the counts and the arguments call for
    kWobj,     // that of a refused work object
    kForward,  // and those of the forward chain
    kInverse,  // and those of the inverse chain
    kInch,     // in two modes those of both chains
    kAlign,    // in two modes those of the forward chain
    kAlways    // that of a refused work object, at every call
};

// Traits of an export.
inline constexpr unsigned kWrites = 1;         // changes the configuration
inline constexpr unsigned kNeedsArm = 2;       // KINE_ERR_NOT_INITIALISED without an arm, never with one
inline constexpr unsigned kTakesNull = 4;      // a null pointer need not end in a code
inline constexpr unsigned kMayStay = 8;        // a result may stay untouched although the call succeeds
inline constexpr unsigned kReportStands = 16;  // the error report may be written although the call fails

struct Call;
struct Outcome;
struct Cell;

// A rule of one export beyond those that all share: null, or what the outcome breaks.
using Rule = const char* (*)(const Call& call, const Outcome& outcome, const Cell& cell);

struct Export
{
    std::string_view name;
    unsigned families = 0;  // that draw it
    std::span<const KineResult> codes;
    Lines lines = Lines::kNone;
    unsigned traits = 0;
    Rule rule = nullptr;
    std::array<Param, kMaxParams> params{};
    std::size_t paramCount = 0;
    KineResult (*invoke)(const std::array<Argument, kMaxParams>& arguments) = nullptr;
};

std::span<const Export> Exports();
const Export& Find(std::string_view name);

// --- The row of a function, from its type ---------------------------------------------------------------

template <class Record>
consteval Kind KindOf()
{
    if constexpr (std::is_same_v<Record, KineKinematicParam>) return Kind::kArm;
    if constexpr (std::is_same_v<Record, KineJoint>) return Kind::kJoint;
    if constexpr (std::is_same_v<Record, KinePose>) return Kind::kPose;
    if constexpr (std::is_same_v<Record, KineFrame>) return Kind::kFrame;
    if constexpr (std::is_same_v<Record, KineTool>) return Kind::kTool;
    if constexpr (std::is_same_v<Record, KineWobj>) return Kind::kWobj;
    if constexpr (std::is_same_v<Record, KineLoad>) return Kind::kLoad;
    if constexpr (std::is_same_v<Record, KineMechUnit>) return Kind::kUnit;
    if constexpr (std::is_same_v<Record, KineExtAxisParam>) return Kind::kExtAxis;
    if constexpr (std::is_same_v<Record, KineInchDir>) return Kind::kDirections;
    if constexpr (std::is_same_v<Record, KineArmConfig>) return Kind::kConfig;
    if constexpr (std::is_same_v<Record, KineCalibError>) return Kind::kReport;
    if constexpr (std::is_same_v<Record, double>) return Kind::kVector;
}

// resultDoubles: what a double* that is no input points to.
template <class P>
consteval Param ParamOf(Kind resultDoubles)
{
    if constexpr (!std::is_pointer_v<P>) {
        return {std::is_same_v<P, double> ? Kind::kNumber : Kind::kInteger, Role::kValue};
    } else {
        using Record = std::remove_pointer_t<P>;
        const Kind kind = KindOf<std::remove_const_t<Record>>();
        if (std::is_const_v<Record>) return {kind, Role::kIn};
        if (std::is_same_v<Record, double>) {
            return {resultDoubles, resultDoubles == Kind::kSteps ? Role::kInOut : Role::kOut,
                    resultDoubles == Kind::kTilt};
        }
        if (kind == Kind::kTool || kind == Kind::kWobj) return {kind, Role::kInOut};
        return {kind, Role::kOut, kind == Kind::kReport};
    }
}

template <class P>
P ValueOf(const Argument& argument)
{
    if constexpr (std::is_pointer_v<P>) {
        return static_cast<P>(argument.pointer);
    } else if constexpr (std::is_same_v<P, double>) {
        return argument.number;
    } else {
        return static_cast<P>(argument.integer);
    }
}

template <auto function>
struct Callable;

template <class Result, class... P, Result(KINE_CALL* function)(P...)>
struct Callable<function>
{
    static KineResult Invoke(const std::array<Argument, kMaxParams>& arguments)
    {
        return [&]<std::size_t... i>(std::index_sequence<i...>)
        {
            return static_cast<KineResult>(function(ValueOf<P>(arguments[i])...));
        }
        (std::index_sequence_for<P...>{});
    }

    static consteval Export Row(Export row, Kind resultDoubles)
    {
        row.params = {ParamOf<P>(resultDoubles)...};
        row.paramCount = sizeof...(P);
        row.invoke = Invoke;
        return row;
    }
};

}  // namespace kine::fuzz
