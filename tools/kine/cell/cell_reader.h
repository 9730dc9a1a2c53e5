// From the text of a cell file to the cell. tools/kine/cell/cell.schema.json describes the format for other
// programs; docs/kine_cells.md for people.
#pragma once

#include <string>
#include <string_view>

#include "cell/cell.h"

namespace kine_cli {

// Both fail with file, line, column and field for everything that is not a cell, and for more than 1 MiB.
// What is a cell but a wrong one, such as limits that leave nothing or a unit whose external axis does not
// exist, is read as it stands: `kine check` tells.
Cell ParseCell(std::string_view text, const std::string& file);
Cell ReadCell(const std::string& file);

// The whole of a file that a person has written. Fails when it cannot be read or is larger than 16 MiB.
std::string ReadTextFile(const std::string& file);

}  // namespace kine_cli
