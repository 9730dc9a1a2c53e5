// A window onto the world seen square to a plane, with axes in mm, and labels that keep clear of what is
// drawn.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "plot/svg.h"
#include "plot/transform.h"

namespace kine_cli {

// A part of the plane, in mm: u to the right, v up.
struct Bounds
{
    double left = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double top = 0.0;
    bool isEmpty = true;

    void Include(double u, double v);
    void Grow(double by);
    double Width() const { return right - left; }
    double Height() const { return top - bottom; }
};

// Which way is right and which up, in the world.
struct Sight
{
    Vec3 right{1.0, 0.0, 0.0};
    Vec3 up{0.0, 0.0, 1.0};
    std::string_view rightName = "X";
    std::string_view upName = "Z";

    double U(const Vec3& p) const { return Dot(right, p); }
    double V(const Vec3& p) const { return Dot(up, p); }
    // Towards the viewer.
    Vec3 Out() const;
};
Sight SideSight();  // X to the right, Z up
Sight TopSight();   // X to the right, Y up

class View
{
public:
    // `corner` is the upper left one on the page; page units per mm.
    View(const Sight& sight, const Bounds& bounds, Point corner, double scale);

    Point At(const Vec3& p) const { return OnPage(sight_.U(p), sight_.V(p)); }
    Point OnPage(double u, double v) const;
    double Scale() const { return scale_; }
    const Sight& Direction() const { return sight_; }
    Point Corner() const { return corner_; }
    double Width() const { return bounds_.Width() * scale_; }
    double Height() const { return bounds_.Height() * scale_; }

    // A frame with ticks, thin lines across and the names of the axes, in mm.
    void DrawAxes(Svg& svg) const;
    // The border alone.
    void DrawBorder(Svg& svg) const;

private:
    Sight sight_;
    Bounds bounds_;
    Point corner_;
    double scale_;
};

// The smallest of 1, 2, 5, 10, ... (and 0.5, 0.2, ...) that is not below the value.
double RoundStep(double atLeast);
// A multiple of a step without needless decimals.
std::string StepText(double value, double step);

// How wide a text comes out, about; the fonts differ.
double TextWidth(std::string_view text, double size);
// At most this many characters, the last three dots when some are left out.
std::string Clipped(std::string_view text, std::size_t most);

// Puts labels beside their points where they cover least.
class Labels
{
public:
    explicit Labels(const View& view) : view_(view) {}

    void AvoidLine(Point a, Point b);
    void AvoidLines(std::span<const Point> points);
    void Place(Svg& svg, Point anchor, std::string_view text, const Lettering& lettering);

private:
    struct Box
    {
        double left, top, right, bottom;
    };

    double CostOf(const Box& box) const;

    const View& view_;
    std::vector<Point> strokes_;  // points along them
    std::vector<Box> placed_;
};

}  // namespace kine_cli
