// Quarter-turn numbers of angles (radians) and the selection of a turn by such a number.
//
// There are two rules, which differ by whether a small bias moves the boundaries of positive angles too.
// They decide ties, so they are kept apart:
//   QuadrantOf        numbers the axes of a joint set; the bias lowers every boundary
//   WindowQuadrantOf  numbers an axis inside the inverse; the bias, different from arm to arm, lowers the
//                     boundaries at and below zero only
#pragma once

#include <cstdint>

namespace kine {

// In quarter turns (8.7e-6 rad): an angle this little below a boundary already counts as above it.
inline constexpr double kQuadrantBias = 5.555555556e-6;

// Quarter-turn number of an angle: [0, pi/2) gives 0, [pi/2, pi) gives 1, [-pi/2, 0) gives -1, all with
// boundaries lower by kQuadrantBias. Saturates at the range of int32; NaN gives its lower end.
std::int32_t QuadrantOf(double angle);

// The same with a bias of the caller's, added for angle <= 0 only.
std::int32_t WindowQuadrantOf(double angle, double bias);

// Largest turn number the inverse serves; beyond it the whole-turn loops would take too long.
inline constexpr std::int32_t kMaxTurnNumber = 1000000;

inline bool IsTurnNumberServed(std::int32_t turn)
{
    return turn >= -kMaxTurnNumber && turn <= kMaxTurnNumber;
}

// Moves angle by the whole turns contained in the quarter-turn number turn.
double ShiftByTurn(double angle, std::int32_t turn);

// Moves angle by whole turns until its WindowQuadrantOf lies within 2 of turn, keeping the first such
// value it reaches. False, with angle in an unspecified state, for an angle that is not finite or too
// many turns away.
[[nodiscard]] bool QuadrantWindow(double& angle, std::int32_t turn, double bias);

}  // namespace kine
