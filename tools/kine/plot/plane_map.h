// A map over a plane of the world: a grid of targets, a class of colour for each, and the page around it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plot/cell_scene.h"
#include "plot/pictures.h"
#include "plot/svg.h"
#include "plot/view.h"

namespace kine_cli {

// What a cell of the map shows: an index into the entries of its legend. 0 is out of reach and left white.
using MapClass = std::uint8_t;

struct LegendEntry
{
    std::string text;
    std::string_view colour;
    bool onlyIfUsed = false;  // left out when no target has it
};

class PlaneMap
{
public:
    // Fails (usage) for a step that gives too many targets.
    PlaneMap(const ReadyCell& ready, const Selection& selection, const PlaneOptions& options,
             PrintedLines& printed);

    // The cell with the world as work object. A held work object takes the place of the tool, with its load:
    // where its frame can be brought.
    const ReadyCell& Targets() const { return targets_; }
    std::size_t Columns() const { return columns_; }
    std::size_t Rows() const { return rows_; }
    KinePose TargetAt(std::size_t column, std::size_t row) const;

    void Set(std::size_t column, std::size_t row, MapClass mapClass)
    {
        classes_[row * columns_ + column] = mapClass;
    }
    std::size_t CountOf(MapClass mapClass) const;

    // "XZ at Y = 0 mm"
    std::string PlaneText() const;
    // "X 100, Z 200 mm"
    std::string PlaceText(std::size_t column, std::size_t row) const;
    // Tool, orientation, step and postures.
    std::string Conditions() const;

    struct Mark
    {
        std::size_t column = 0;
        std::size_t row = 0;
        std::string text;
    };
    // The document: the map with axes and the arm over it, the legend beside it with the number of targets of
    // each entry, notes below the legend.
    std::string Draw(const std::string& title, const std::vector<LegendEntry>& legend,
                     const std::vector<std::string>& notes, const Mark* mark) const;

private:
    double U(std::size_t column) const { return (first_ + static_cast<double>(column)) * step_; }
    double V(std::size_t row) const { return (lowest_ + static_cast<double>(row)) * step_; }
    Bounds Shown() const;
    void DrawCells(Svg& svg, const View& view, const std::vector<LegendEntry>& legend) const;
    void DrawLegend(Svg& svg, Point at, const std::vector<LegendEntry>& legend,
                    const std::vector<std::string>& notes) const;

    PlaneOptions options_;
    ReadyCell targets_;
    CellScene scene_;
    std::string carried_;  // "tool torch"
    Sight sight_;
    double at_ = 0.0;
    double step_ = 0.0;
    double first_ = 0.0;  // column and row in steps from zero
    double lowest_ = 0.0;
    std::size_t columns_ = 0;
    std::size_t rows_ = 0;
    std::vector<MapClass> classes_;
};

}  // namespace kine_cli
