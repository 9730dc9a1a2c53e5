// Makes arguments out of bytes: any bits, or compact forms of sane records - arms of all three types, poses
// and joints that came out of earlier calls - whole or with a few places spoiled.
#pragma once

#include <array>
#include <cstddef>

#include "byte_source.h"
#include "call.h"

namespace kine::fuzz {

class RecordSource
{
public:
    // Decodes the arguments of a call.
    Call TakeCall(ByteSource& source, const Export& function);

    // A record that came out of a call, for later ones.
    void Remember(Kind kind, const Bytes& record);

private:
    // The latest records of one kind.
    struct Pool
    {
        std::array<Bytes, 4> records;
        std::size_t count = 0;  // ever remembered
    };

    void TakeRecord(ByteSource& source, Call& call, std::size_t i);
    Bytes Sane(ByteSource& source, const Call& call, Kind kind);
    [[nodiscard]] const Bytes* Recall(Kind kind, std::size_t back) const;

    std::array<Pool, kKinds> pools_{};
    bool isToolHeld_ = true;  // by the latest tool, which the work object is to fit
};

// Sane records for setting a cell up: an arm by its number, of any type, and the type.
inline constexpr std::size_t kSampleArms = 7;
struct SampleArm
{
    std::uint32_t type;
    KineKinematicParam param;
};
SampleArm SampleArmOf(std::size_t number);

// Bytes of the view that an initialisation may read.
std::size_t ArmViewSize(std::int32_t armType);

}  // namespace kine::fuzz
