// What the commands about poses share: rows of poses that a function turns into poses, and a single target
// that an option names.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "cell/cell.h"
#include "options.h"
#include "rows/row_filter.h"
#include "rows/target.h"

namespace kine_cli {

using PoseFunction = std::function<KineResult(const KinePose& pose, KinePose& out)>;

class PoseFilter : public RowFilter
{
public:
    PoseFilter(Widths widths, PoseFunction function);

    std::vector<Column> Columns() const override { return PoseColumns(widths_); }
    void Answer(const Target& target, Answers& answers) override;

private:
    Widths widths_;
    PoseFunction function_;
};

// One target of an argument, numbers or @NAME; `cell` may be null. Fails (usage), with the option in the
// message.
Target TargetOf(const std::string& argument, Shape shape, Widths widths, const Cell* cell,
                const std::string& option);

// A cell for the names of its targets alone, for commands that work without one. Without a file there are no
// external axes and no names.
struct NamesOfCell
{
    std::optional<Cell> cell;
    Widths widths;

    explicit NamesOfCell(const std::string& file);
    const Cell* Get() const { return cell ? &*cell : nullptr; }
};

// --cell
void AddNamesOption(CLI::App& command, std::string& file);

}  // namespace kine_cli
