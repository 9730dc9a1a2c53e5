// Calls in words.
#include <cstdlib>
#include <iomanip>
#include <iostream>

#include "call.h"

namespace kine::fuzz {

namespace {

// What the records hold, in turn: d doubles, i 32-bit integers, b bytes, each with how many.
struct Piece
{
    char type;
    std::size_t count;
};

constexpr Piece kArmLayout[] = {{'d', 34}};
constexpr Piece kJointLayout[] = {{'d', 14}};
constexpr Piece kPoseLayout[] = {{'d', 6}, {'i', 4}, {'d', 6}};
constexpr Piece kToolLayout[] = {{'b', 8}, {'d', 16}};
constexpr Piece kWobjLayout[] = {{'b', 8}, {'d', 12}};
constexpr Piece kUnitLayout[] = {{'i', 1}, {'b', 12}, {'d', 36}, {'b', 8}};
constexpr Piece kBytesLayout[] = {{'b', 60}};
constexpr Piece kIntegersLayout[] = {{'i', 14}};
constexpr Piece kNumbersLayout[] = {{'d', 10}};

std::span<const Piece> LayoutOf(Kind kind)
{
    switch (kind) {
        case Kind::kArm: return kArmLayout;
        case Kind::kJoint: return kJointLayout;
        case Kind::kPose: return kPoseLayout;
        case Kind::kTool: return kToolLayout;
        case Kind::kWobj: return kWobjLayout;
        case Kind::kUnit: return kUnitLayout;
        case Kind::kExtAxis: return kBytesLayout;
        case Kind::kDirections:
        case Kind::kConfig: return kIntegersLayout;
        default: return kNumbersLayout;
    }
}

// Shows one number or byte and returns its size.
std::size_t ShowPiece(char type, const unsigned char* at)
{
    if (type == 'd') {
        double number = 0.0;
        std::memcpy(&number, at, sizeof number);
        std::cerr << ' ' << number;
        return sizeof number;
    }
    if (type == 'i') {
        std::int32_t number = 0;
        std::memcpy(&number, at, sizeof number);
        std::cerr << ' ' << number;
        return sizeof number;
    }
    std::cerr << " x" << std::hex << unsigned{*at} << std::dec;
    return 1;
}

void ShowRecord(Kind kind, const Bytes& bytes)
{
    std::size_t at = 0;
    for (const auto& [type, count] : LayoutOf(kind)) {
        for (std::size_t n = 0; n < count && at < bytes.size; ++n)
            at += ShowPiece(type, bytes.data.data() + at);
    }
}

void ShowArgument(const Param& param, const CallArgument& argument)
{
    static constexpr const char* kSides[] = {"at the end", "at the start", "odd"};
    std::cerr << "  " << InfoOf(param.kind).name;
    if (param.kind == Kind::kInteger) {
        std::cerr << ' ' << argument.value.integer;
    } else if (param.kind == Kind::kNumber) {
        std::cerr << ' ' << argument.value.number;
    } else if (argument.isNull) {
        std::cerr << " null";
    } else {
        std::cerr << " (" << kSides[static_cast<std::size_t>(argument.place.side)];
        if (argument.sameAs < kMaxParams) std::cerr << ", is argument " << argument.sameAs;
        std::cerr << ')';
        if (param.role == Role::kOut) std::cerr << " result";
        if (param.role != Role::kOut) ShowRecord(param.kind, argument.bytes);
    }
    std::cerr << '\n';
}

}  // namespace

void Show(const Call& call)
{
    const Export& function = *call.function;
    std::cerr << std::setprecision(17) << function.name << '\n';
    for (std::size_t i = 0; i < function.paramCount; ++i) ShowArgument(function.params[i], call.arguments[i]);
    if (call.overlaidResult < kMaxParams) {
        std::cerr << "  once more with result " << call.overlaidResult << " over input " << call.overlaidInput
                  << '\n';
    }
}

void Show(const Outcome& outcome)
{
    std::cerr << "  -> code 0x" << std::hex << outcome.code << std::dec << '\n' << outcome.Text();
}

void Fail(const Call& call, KineResult code, std::string_view what)
{
    std::cerr << "BROKEN: " << what << "; code 0x" << std::hex << code << std::dec << " of\n";
    Show(call);
    std::abort();
}

}  // namespace kine::fuzz
