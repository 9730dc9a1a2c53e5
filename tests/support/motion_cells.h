// The cells that jog and alignment are tried in: both ways of holding, robots on a carrier, one direction at
// a time.
#pragma once

#include <string>
#include <vector>

#include "support/cell_setup.h"
#include "support/naive_jog.h"

namespace kine::test {

inline constexpr int32_t kCartesianModes[] = {2, 3, 4, 5};

inline constexpr KineFrame kRail = {-300.0, 150.0, 80.0, 23.0, -11.0, 6.0};
inline constexpr KineFrame kTravel = {40.0, -60.0, 120.0, -17.0, 29.0, -34.0};

inline std::vector<MotionRequest> BothSetUps(const MovedArm& arm)
{
    return {ToolOnRobot(arm), WobjOnRobot(arm)};
}

// The robot on unit 1.
inline void PutRobotOn(const KineMechUnit& carrier)
{
    SetUnitCounts(3, 6);
    StoreUnit(0, CarryingRobot(carrier, 1));
    StoreUnit(1, carrier);
}

// One direction at a time, both ways.
inline std::vector<KineInchDir> SingleDirections()
{
    std::vector<KineInchDir> list;
    for (int slot = 0; slot < 6; ++slot) {
        for (const int32_t factor : {1, -1}) {
            KineInchDir dir{};
            dir.Slot[slot] = factor;
            list.push_back(dir);
        }
    }
    return list;
}

inline std::string Shown(const MovedArm& arm, const MotionRequest& request)
{
    ::testing::Message message;
    message << arm.name << ", mode " << request.mode << ", "
            << (request.tool.HeldByRobot != 0 ? "tool held" : "tool not held") << ", directions";
    for (int slot = 0; slot < 6; ++slot) message << ' ' << request.dir.Slot[slot];
    return message.GetString();
}

inline void ExpectEveryDirectionMoves(const MovedArm& arm, MotionRequest request, const JogCell& cell)
{
    for (const int32_t mode : kCartesianModes) {
        request.mode = mode;
        for (const KineInchDir& dir : SingleDirections()) {
            request.dir = dir;
            SCOPED_TRACE(Shown(arm, request));
            ExpectJogMoves(arm, request, cell);
        }
    }
}

}  // namespace kine::test
