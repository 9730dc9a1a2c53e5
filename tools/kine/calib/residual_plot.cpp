// Left: bars. Right, for calibrations in which all points should be at one place: the two views of a
// bull's-eye, from above and from the side.
#include "calib/residual_plot.h"

#include <algorithm>
#include <cmath>

#include "plot/svg.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr double kLeft = 24.0;
constexpr double kTop = 76.0;
constexpr double kNameWidth = 90.0;
constexpr double kBarWidth = 300.0;
constexpr double kRow = 26.0;
constexpr double kBarHeight = 12.0;
constexpr double kTargetRadius = 84.0;
constexpr double kGap = 60.0;
constexpr double kFoot = 64.0;
constexpr int kRings = 4;
constexpr std::size_t kLongestName = 14;
// mm. What all residuals are drawn against when they are nothing.
constexpr double kSmallestScale = 1e-6;

// The smallest of 1, 2, 4, 6 and 8 times a power of ten that is not below the value: its quarters are short
// numbers.
double RoundUp(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double step : {1.0, 2.0, 4.0, 6.0, 8.0}) {
        if (value <= step * power) return step * power;
    }
    return 10.0 * power;
}

std::string Short(double value)
{
    std::string text;
    AppendNumber(text, std::stod(Fixed(value, 9)));
    return text;
}

std::string ShortName(const std::string& name)
{
    return name.size() <= kLongestName ? name : name.substr(0, kLongestName - 2) + "..";
}

class Plot
{
public:
    explicit Plot(const Outcome& outcome) : outcome_(outcome)
    {
        double largest = kSmallestScale;
        for (std::size_t i = 0; i < outcome.analysis.points.size(); ++i) {
            const PointReport& point = outcome.analysis.points[i];
            if (!point.residual || !std::isfinite(*point.residual)) continue;
            rows_.push_back(i);
            largest = std::max(largest, *point.residual);
            hasOffsets_ = hasOffsets_ || point.offset.has_value();
        }
        rim_ = RoundUp(largest);
        if (const auto& report = outcome.solution.report; report && std::isfinite(report->Largest))
            largest = std::max(largest, report->Largest);
        full_ = RoundUp(largest);
    }

    std::string Draw()
    {
        const double rows = static_cast<double>(rows_.size() + (outcome_.solution.report ? 4 : 0));
        const double bars = kLeft + kNameWidth + kBarWidth;
        const double width = (hasOffsets_ ? bars + kGap + 4 * kTargetRadius + kGap / 2 : bars + kGap) + kLeft;
        const double height =
            kTop + std::max(rows * kRow, hasOffsets_ ? 2 * kTargetRadius + kRow : 0.0) + kFoot;
        Svg svg(width, height, "Residuals of the calibration: " + outcome_.what);
        Head(svg);
        if (rows_.empty()) {
            svg.Text({kLeft, kTop + kRow},
                     "No residuals: these points fit by themselves. Teach further points.", {13.0});
            return svg.Document();
        }
        Bars(svg);
        if (hasOffsets_) {
            const double centre = bars + kGap + kTargetRadius;
            Target(svg, {centre, kTop + kRow + kTargetRadius}, "seen from above", "x", "y", false);
            Target(svg, {centre + 2 * kTargetRadius + kGap / 2, kTop + kRow + kTargetRadius},
                   "seen from the side", "x", "z", true);
        }
        return svg.Document();
    }

private:
    void Head(Svg& svg) const
    {
        svg.Text({kLeft, 30.0}, "Residuals: " + outcome_.what + " (" + outcome_.method.name + ")",
                 {16.0, Anchor::kStart, colour::kInk, true});
        svg.Text({kLeft, 50.0}, outcome_.method.residualOf + ", mm", {12.0, Anchor::kStart, colour::kGrey});
    }

    double XOf(double mm) const { return kLeft + kNameWidth + kBarWidth * std::min(1.0, mm / full_); }

    void Bar(Svg& svg, double y, const std::string& name, double value, std::string_view fill) const
    {
        svg.Text({kLeft + kNameWidth - 10.0, y + 4.0}, name, {12.0, Anchor::kEnd});
        if (!std::isfinite(value)) return;
        svg.Square({XOf(0.0), y - kBarHeight / 2}, std::max(1.0, XOf(value) - XOf(0.0)), kBarHeight, fill);
        svg.Text({XOf(value) + 6.0, y + 4.0}, Fixed(value, 4), {11.0, Anchor::kStart, colour::kGrey});
    }

    void Bars(Svg& svg) const
    {
        const auto& report = outcome_.solution.report;
        const double bottom = kTop + static_cast<double>(rows_.size() + (report ? 4 : 0)) * kRow + kRow / 4;
        for (int i = 0; i <= kRings; ++i) {
            const double mm = full_ * i / kRings;
            svg.Line({XOf(mm), kTop}, {XOf(mm), bottom}, {colour::kPale, i == 0 ? 1.3 : 0.8});
            svg.Text({XOf(mm), bottom + 16.0}, Short(mm), {11.0, Anchor::kMiddle, colour::kGrey});
        }
        svg.Text({XOf(full_), bottom + 32.0}, "mm", {11.0, Anchor::kMiddle, colour::kGrey});
        double y = kTop + kRow / 2 + 4.0;
        for (const std::size_t i : rows_) {
            const bool isWorst = outcome_.analysis.worst == i;
            Bar(svg, y, ShortName(outcome_.taught.names[i]), *outcome_.analysis.points[i].residual,
                isWorst ? colour::kRed : colour::kBlue);
            y += kRow;
        }
        if (!report) return;
        svg.Text({kLeft, y + 6.0}, "distances between the places, as the library reports them",
                 {12.0, Anchor::kStart, colour::kGrey});
        y += kRow;
        Bar(svg, y, "largest", report->Largest, colour::kGrey);
        Bar(svg, y + kRow, "mean", report->Mean, colour::kGrey);
        Bar(svg, y + 2 * kRow, "smallest", report->Smallest, colour::kGrey);
    }

    // Where the points lie about their mean place; the rim is the end of the scale.
    void Target(Svg& svg, Point centre, const std::string& title, const std::string& right,
                const std::string& up, bool isSide) const
    {
        for (int i = 1; i <= kRings; ++i)
            svg.Circle(centre, kTargetRadius * i / kRings, colour::kNone,
                       {i == kRings ? colour::kGrey : colour::kPale, 0.8});
        svg.Line({centre.x - kTargetRadius, centre.y}, {centre.x + kTargetRadius, centre.y},
                 {colour::kPale, 0.8});
        svg.Line({centre.x, centre.y - kTargetRadius}, {centre.x, centre.y + kTargetRadius},
                 {colour::kPale, 0.8});
        svg.Text({centre.x, centre.y - kTargetRadius - 10.0}, title + ", rim " + Short(rim_) + " mm",
                 {12.0, Anchor::kMiddle, colour::kGrey});
        svg.Text({centre.x + kTargetRadius + 5.0, centre.y + 4.0}, right, {12.0});
        svg.Text({centre.x + 5.0, centre.y - kTargetRadius + 13.0}, up, {12.0});
        const auto place = [&](std::size_t i) {
            const Vec3& offset = *outcome_.analysis.points[i].offset;
            const double k = kTargetRadius / rim_;
            return Point{centre.x + k * offset.x, centre.y - k * (isSide ? offset.z : offset.y)};
        };
        for (const std::size_t i : rows_) {
            const bool isWorst = outcome_.analysis.worst == i;
            svg.Line(centre, place(i), {isWorst ? colour::kRed : colour::kBlue, 1.0});
            svg.Circle(place(i), 3.4, isWorst ? colour::kRed : colour::kBlue, {"#ffffff", 1.0});
        }
        std::vector<Point> taken;
        for (const std::size_t i : rows_) Name(svg, centre, place(i), outcome_.taught.names[i], taken);
    }

    // Beside its point, and on a line of its own.
    static void Name(Svg& svg, Point centre, Point at, const std::string& name, std::vector<Point>& taken)
    {
        constexpr double kLine = 12.0;
        constexpr double kReach = 60.0;
        const double side = at.x < centre.x ? -1.0 : 1.0;
        const double step = at.y < centre.y ? -1.0 : 1.0;
        Point label = {at.x + side * 7.0, at.y + (step < 0.0 ? -4.0 : 11.0)};
        const auto isTaken = [&](const Point& other) {
            return std::fabs(other.x - label.x) < kReach && std::fabs(other.y - label.y) < kLine;
        };
        while (std::any_of(taken.begin(), taken.end(), isTaken))
            label.y += step;  // away from the finitely many
        taken.push_back(label);
        svg.Text(label, ShortName(name), {11.0, side < 0.0 ? Anchor::kEnd : Anchor::kStart});
    }

    const Outcome& outcome_;
    std::vector<std::size_t> rows_;
    bool hasOffsets_ = false;
    double full_ = 1.0;  // mm at the end of the bars
    double rim_ = 1.0;   // mm at the rim of the bull's-eye
};

}  // namespace

std::string ResidualPlot(const Outcome& outcome) { return Plot(outcome).Draw(); }

}  // namespace kine_cli
