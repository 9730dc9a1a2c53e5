#include "plot/svg.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "failure.h"
#include "rows/stream.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr double kHeadLength = 7.0;
constexpr double kHeadHalfWidth = 2.6;

std::string Pair(Point p) { return ShortNumber(p.x) + "," + ShortNumber(p.y); }

// U+FFFE and U+FFFF, which XML does not have, differ in their last byte only.
bool IsNoCharacter(std::string_view text)
{
    return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
}

std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsNoCharacter(text.substr(i))) {
            escaped += '?';
            i += 2;
            continue;
        }
        const char c = text[i];
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            default: escaped += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
    }
    return escaped;
}

std::string StrokeAttributes(const Stroke& stroke)
{
    if (stroke.colour == colour::kNone) return "";
    std::string text =
        " stroke=\"" + std::string(stroke.colour) + "\" stroke-width=\"" + ShortNumber(stroke.width) + "\"";
    if (!stroke.dashes.empty()) text += " stroke-dasharray=\"" + std::string(stroke.dashes) + "\"";
    return text;
}

std::string PathOf(std::span<const Point> points)
{
    std::string path;
    for (const Point& p : points) path += (path.empty() ? "M" : "L") + Pair(p);
    return path;
}

}  // namespace

std::string ShortNumber(double value)
{
    std::string text = Fixed(value, 2);
    while (text.find('.') != std::string::npos && (text.back() == '0' || text.back() == '.')) {
        const bool isPoint = text.back() == '.';
        text.pop_back();
        if (isPoint) break;
    }
    return text;
}

Svg::Svg(double width, double height, std::string_view title)
{
    const std::string size = "0 0 " + ShortNumber(width) + " " + ShortNumber(height);
    text_ = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" + size + "\" width=\"" +
            ShortNumber(width) + "\" height=\"" + ShortNumber(height) +
            "\" font-family=\"Helvetica, Arial, 'DejaVu Sans', sans-serif\" stroke-linecap=\"round\" "
            "stroke-linejoin=\"round\">\n<title>" +
            Escaped(title) + "</title>\n<rect width=\"" + ShortNumber(width) + "\" height=\"" +
            ShortNumber(height) + "\" fill=\"#ffffff\"/>\n";
}

void Svg::Line(Point a, Point b, const Stroke& stroke)
{
    const Point points[] = {a, b};
    Polyline(points, stroke);
}

void Svg::Polyline(std::span<const Point> points, const Stroke& stroke)
{
    text_ += "<path d=\"" + PathOf(points) + "\" fill=\"none\"" + StrokeAttributes(stroke) + "/>\n";
}

void Svg::Polygon(std::span<const Point> points, std::string_view fill, const Stroke& stroke)
{
    text_ += "<path d=\"" + PathOf(points) + "Z\" fill=\"" + std::string(fill) + "\"" +
             StrokeAttributes(stroke) + "/>\n";
}

void Svg::Circle(Point centre, double radius, std::string_view fill, const Stroke& stroke)
{
    text_ += "<circle cx=\"" + ShortNumber(centre.x) + "\" cy=\"" + ShortNumber(centre.y) + "\" r=\"" +
             ShortNumber(radius) + "\" fill=\"" + std::string(fill) + "\"" + StrokeAttributes(stroke) +
             "/>\n";
}

void Svg::Square(Point corner, double width, double height, std::string_view fill)
{
    text_ += "<rect x=\"" + ShortNumber(corner.x) + "\" y=\"" + ShortNumber(corner.y) + "\" width=\"" +
             ShortNumber(width) + "\" height=\"" + ShortNumber(height) + "\" fill=\"" + std::string(fill) +
             "\" shape-rendering=\"crispEdges\"/>\n";
}

void Svg::Arrow(Point a, Point b, const Stroke& stroke)
{
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    if (length < 1e-9) return;
    const Point u = {(b.x - a.x) / length, (b.y - a.y) / length};
    const double head = std::fmin(kHeadLength, length);
    const double half = head * kHeadHalfWidth / kHeadLength;
    const Point neck = {b.x - head * u.x, b.y - head * u.y};
    Line(a, neck, stroke);
    const Point tip[] = {
        b, {neck.x - half * u.y, neck.y + half * u.x}, {neck.x + half * u.y, neck.y - half * u.x}};
    Polygon(tip, stroke.colour, {colour::kNone});
}

void Svg::Text(Point at, std::string_view text, const Lettering& lettering)
{
    std::string attributes = "x=\"" + ShortNumber(at.x) + "\" y=\"" + ShortNumber(at.y) + "\" font-size=\"" +
                             ShortNumber(lettering.size) + "\" fill=\"" + std::string(lettering.colour) +
                             "\"";
    if (lettering.anchor != Anchor::kStart) {
        attributes +=
            lettering.anchor == Anchor::kMiddle ? " text-anchor=\"middle\"" : " text-anchor=\"end\"";
    }
    if (lettering.bold) attributes += " font-weight=\"bold\"";
    text_ += "<text " + attributes + " stroke=\"#ffffff\" stroke-width=\"3\" paint-order=\"stroke\">" +
             Escaped(text) + "</text>\n";
}

void Svg::BeginGroup(std::string_view id) { text_ += "<g id=\"" + std::string(id) + "\">\n"; }

void Svg::EndGroup() { text_ += "</g>\n"; }

std::string Svg::Document() const { return text_ + "</svg>\n"; }

void WriteDocument(const std::string& file, std::string_view text, int standardOutput)
{
    if (file == "-") {
        WriteAll(standardOutput, text);
        return;
    }
    std::FILE* stream = std::fopen(file.c_str(), "wbe");
    if (!stream) FailFile(file + ": " + std::strerror(errno));
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    if (std::fclose(stream) != 0 || !isWritten) FailFile(file + ": " + std::strerror(errno));
}

}  // namespace kine_cli
