// Quarter-turn numbers and turn selection.
#include "models/quadrant.h"

#include "math/angles.h"

namespace kine {

namespace {

// How far, in quarter turns, QuadrantWindow moves an angle. Enough for every served turn number: the inverse
// of arm type 4110 comes in five turn numbers away. It also bounds the loop: angles below 1.2e7 rad lose a
// full 2 pi in every round.
constexpr std::int64_t kMaxQuadrantDistance = 6000000;

std::int64_t QuadrantDistance(double angle, std::int32_t turn, double bias)
{
    return std::int64_t{WindowQuadrantOf(angle, bias)} - turn;
}

}  // namespace

std::int32_t QuadrantOf(double angle)
{
    const double quarters = angle > 0.0 ? 2.0 * angle / kPi : 2.0 * angle / kPi - 1.0;
    return TruncToInt32(quarters + kQuadrantBias);
}

std::int32_t WindowQuadrantOf(double angle, double bias)
{
    if (angle > 0.0) return TruncToInt32(2.0 * angle / kPi);
    return TruncToInt32(2.0 * angle / kPi - 1.0 + bias);
}

double ShiftByTurn(double angle, std::int32_t turn) { return angle - (turn % 4) * kHalfPi + turn * kHalfPi; }

bool QuadrantWindow(double& angle, std::int32_t turn, double bias)
{
    std::int64_t distance = QuadrantDistance(angle, turn, bias);
    if (distance > kMaxQuadrantDistance || distance < -kMaxQuadrantDistance) return false;
    while (distance > 2 || distance < -2) {
        angle += distance > 2 ? -kTwoPi : kTwoPi;
        distance = QuadrantDistance(angle, turn, bias);
    }
    return true;
}

}  // namespace kine
