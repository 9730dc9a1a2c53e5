#include "plot/view.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr double kTickSize = 11.0;
constexpr double kStrokeSpacing = 4.0;

}  // namespace

void Bounds::Include(double u, double v)
{
    if (isEmpty) *this = {u, u, v, v, false};
    left = std::min(left, u);
    right = std::max(right, u);
    bottom = std::min(bottom, v);
    top = std::max(top, v);
}

void Bounds::Grow(double by)
{
    left -= by;
    right += by;
    bottom -= by;
    top += by;
}

Vec3 Sight::Out() const
{
    return {right.y * up.z - right.z * up.y, right.z * up.x - right.x * up.z,
            right.x * up.y - right.y * up.x};
}

Sight SideSight() { return {}; }

Sight TopSight() { return {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, "X", "Y"}; }

View::View(const Sight& sight, const Bounds& bounds, Point corner, double scale)
    : sight_(sight), bounds_(bounds), corner_(corner), scale_(scale)
{}

Point View::OnPage(double u, double v) const
{
    return {corner_.x + scale_ * (u - bounds_.left), corner_.y + scale_ * (bounds_.top - v)};
}

void View::DrawBorder(Svg& svg) const
{
    const Point frame[] = {corner_,
                           {corner_.x + Width(), corner_.y},
                           {corner_.x + Width(), corner_.y + Height()},
                           {corner_.x, corner_.y + Height()}};
    svg.Polygon(frame, colour::kNone, {colour::kPale, 1.0});
}

void View::DrawAxes(Svg& svg) const
{
    // On the page, at least. A low panel has closer lines across, so that there are two.
    constexpr double kSpacing = 60.0;
    constexpr double kPartOfHeight = 0.2;
    const double stepU = RoundStep(kSpacing / scale_);
    const double stepV = RoundStep(std::min(kSpacing, kPartOfHeight * Height()) / scale_);
    const double bottom = corner_.y + Height();
    for (double n = std::ceil(bounds_.left / stepU); n * stepU <= bounds_.right; n += 1.0) {
        const double x = OnPage(n * stepU, 0.0).x;
        svg.Line({x, corner_.y}, {x, bottom}, {n == 0.0 ? colour::kPale : colour::kSteel, 0.8});
        svg.Text({x, bottom + 15.0}, StepText(n * stepU, stepU), {kTickSize, Anchor::kMiddle, colour::kGrey});
    }
    for (double n = std::ceil(bounds_.bottom / stepV); n * stepV <= bounds_.top; n += 1.0) {
        const double y = OnPage(0.0, n * stepV).y;
        svg.Line({corner_.x, y}, {corner_.x + Width(), y}, {n == 0.0 ? colour::kPale : colour::kSteel, 0.8});
        svg.Text({corner_.x - 6.0, y + 4.0}, StepText(n * stepV, stepV),
                 {kTickSize, Anchor::kEnd, colour::kGrey});
    }
    DrawBorder(svg);
    svg.Text({corner_.x + Width() / 2, bottom + 32.0}, std::string(sight_.rightName) + " in mm",
             {kTickSize, Anchor::kMiddle, colour::kGrey});
    svg.Text({corner_.x - 6.0, corner_.y - 8.0}, std::string(sight_.upName) + " in mm",
             {kTickSize, Anchor::kEnd, colour::kGrey});
}

double RoundStep(double atLeast)
{
    const double decade = std::pow(10.0, std::floor(std::log10(atLeast)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * decade >= atLeast) return factor * decade;
    }
    return 10.0 * decade;
}

std::string StepText(double value, double step)
{
    return Fixed(value, step >= 1.0 ? 0 : static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
}

double TextWidth(std::string_view text, double size)
{
    constexpr double kPartOfSize = 0.58;
    const auto characters = std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
    return kPartOfSize * size * static_cast<double>(characters);
}

std::string Clipped(std::string_view text, std::size_t most)
{
    std::size_t characters = 0;
    std::size_t cut = 0;  // behind the last character that fits beside the dots
    for (std::size_t i = 0; i < text.size(); ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U) continue;
        if (characters + 3 == most) cut = i;
        ++characters;
    }
    if (characters <= most) return std::string(text);
    return std::string(text.substr(0, cut)) + "...";
}

void Labels::AvoidLine(Point a, Point b)
{
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    const int count = static_cast<int>(std::min(length / kStrokeSpacing, 1000.0)) + 1;
    for (int i = 0; i <= count; ++i) {
        const double part = static_cast<double>(i) / count;
        strokes_.push_back({a.x + part * (b.x - a.x), a.y + part * (b.y - a.y)});
    }
}

void Labels::AvoidLines(std::span<const Point> points)
{
    for (std::size_t i = 1; i < points.size(); ++i) AvoidLine(points[i - 1], points[i]);
}

double Labels::CostOf(const Box& box) const
{
    constexpr double kOnStroke = 1.0;
    constexpr double kOnLabel = 100.0;
    constexpr double kOutside = 200.0;
    constexpr double kGap = 2.0;
    double cost = 0.0;
    for (const Point& p : strokes_) {
        if (p.x > box.left - kGap && p.x < box.right + kGap && p.y > box.top - kGap &&
            p.y < box.bottom + kGap)
            cost += kOnStroke;
    }
    for (const Box& other : placed_) {
        if (box.left < other.right && other.left < box.right && box.top < other.bottom &&
            other.top < box.bottom) {
            cost += kOnLabel;
        }
    }
    const Point corner = view_.Corner();
    if (box.left < corner.x || box.right > corner.x + view_.Width() || box.top < corner.y ||
        box.bottom > corner.y + view_.Height()) {
        cost += kOutside;
    }
    return cost;
}

void Labels::Place(Svg& svg, Point anchor, std::string_view text, const Lettering& lettering)
{
    constexpr std::array<double, 7> kDistances = {12.0, 20.0, 32.0, 46.0, 64.0, 86.0, 110.0};
    constexpr int kDirections = 16;
    constexpr double kQuarterTurn = 1.5707963267948966;
    constexpr double kPerDistance = 0.06;
    constexpr double kLeaderFrom = 30.0;
    const double width = TextWidth(text, lettering.size);
    const double height = lettering.size;
    Box best{};
    double lowest = -1.0;
    double chosen = 0.0;
    for (const double distance : kDistances) {
        for (int i = 0; i < kDirections; ++i) {
            const double angle = 4.0 * kQuarterTurn * i / kDirections;
            // The box touches the circle from outside.
            const double x = anchor.x + distance * std::cos(angle) + (std::cos(angle) - 1.0) * width / 2;
            const double y = anchor.y - distance * std::sin(angle) - (std::sin(angle) + 1.0) * height / 2;
            const Box box = {x, y, x + width, y + height};
            const double cost = CostOf(box) + kPerDistance * distance;
            if (lowest >= 0.0 && !(cost < lowest - 1e-9)) continue;
            lowest = cost;
            best = box;
            chosen = distance;
        }
    }
    if (chosen > kLeaderFrom) {
        const Point to = {std::clamp(anchor.x, best.left, best.right),
                          std::clamp(anchor.y, best.top, best.bottom)};
        svg.Line(anchor, to, {colour::kGrey, 0.7});
    }
    Lettering start = lettering;
    start.anchor = Anchor::kStart;
    svg.Text({best.left, best.bottom - 0.18 * height}, text, start);
    placed_.push_back(best);
}

}  // namespace kine_cli
