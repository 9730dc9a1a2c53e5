// A picture in SVG: white ground, few strokes, fixed decimals, so that two runs give the same bytes. Looks
// like the figures of the book.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kine_cli {

// On the page, in its units; y points down.
struct Point
{
    double x = 0.0;
    double y = 0.0;
};

namespace colour {
inline constexpr std::string_view kInk = "#1f2937";
inline constexpr std::string_view kGrey = "#64748b";
inline constexpr std::string_view kPale = "#cbd5e1";
inline constexpr std::string_view kRed = "#c2272d";
inline constexpr std::string_view kGreen = "#15803d";
inline constexpr std::string_view kBlue = "#1d4ed8";
inline constexpr std::string_view kOrange = "#b45309";
inline constexpr std::string_view kPurple = "#7e22ce";
// Bodies, as in the figures of the book.
inline constexpr std::string_view kSteel = "#e2e8f0";
inline constexpr std::string_view kJoint = "#b6c2d1";
inline constexpr std::string_view kTool = "#fde68a";
inline constexpr std::string_view kWork = "#d5e8d4";
inline constexpr std::string_view kWhite = "#ffffff";
inline constexpr std::string_view kNone = "none";
}  // namespace colour

struct Stroke
{
    std::string_view colour = colour::kInk;
    double width = 1.3;
    std::string_view dashes = {};  // as in stroke-dasharray
};

enum class Anchor
{
    kStart,
    kMiddle,
    kEnd
};

struct Lettering
{
    double size = 12.0;
    Anchor anchor = Anchor::kStart;
    std::string_view colour = colour::kInk;
    bool bold = false;
};

// At most two decimals, none that say nothing.
std::string ShortNumber(double value);

class Svg
{
public:
    Svg(double width, double height, std::string_view title);

    void Line(Point a, Point b, const Stroke& stroke = {});
    void Polyline(std::span<const Point> points, const Stroke& stroke = {});
    void Polygon(std::span<const Point> points, std::string_view fill, const Stroke& stroke = {});
    void Circle(Point centre, double radius, std::string_view fill, const Stroke& stroke = {});
    // Without a rim: squares of a map touch.
    void Square(Point corner, double width, double height, std::string_view fill);
    void Arrow(Point a, Point b, const Stroke& stroke = {});
    // With a white rim, so that it stays legible over lines.
    void Text(Point at, std::string_view text, const Lettering& lettering = {});

    // What is drawn between the two calls belongs together under a name: letters, digits and hyphens, once in
    // a picture.
    void BeginGroup(std::string_view id);
    void EndGroup();

    // The whole document.
    std::string Document() const;

private:
    std::string text_;
};

// Writes a document to a file; "-" is the given descriptor. Fails (bad file) when it cannot be written.
void WriteDocument(const std::string& file, std::string_view text, int standardOutput);

}  // namespace kine_cli
