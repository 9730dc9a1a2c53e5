// SpreadOf.
#include "calib/point_spread.h"

#include <cstddef>

#include "math/angles.h"

namespace kine {

namespace {

// mm. The smallest distance starts here: positions farther apart are reported with this value.
constexpr double kFarthestSmallest = 10000.0;

}  // namespace

KineCalibError SpreadOf(std::span<const Vec3> positions)
{
    KineCalibError report{0.0, 0.0, kFarthestSmallest};
    double sum = 0.0;
    double pairs = 0.0;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        for (std::size_t j = i + 1; j < positions.size(); ++j) {
            const double distance = Norm(positions[i] - positions[j]);
            if (distance > report.Largest) report.Largest = distance;
            if (distance < report.Smallest) report.Smallest = distance;
            sum += distance;
            pairs += 1.0;
        }
    }
    report.Mean = WithOneNaN(sum / pairs);
    return report;
}

}  // namespace kine
