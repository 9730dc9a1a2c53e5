#include "rows/row_filter.h"

#include "library/codes.h"
#include "text/numbers.h"

namespace kine_cli {

void Answers::Refuse(const Target& target, KineResult code) { Refuse(target, code, printed_.Take()); }

void Answers::Refuse(const Target& target, KineResult code, const std::string& lines)
{
    ++refused;
    row.EndRefused(code, lines);
    if (row.OutputFormat() == Format::kJson) return;
    diagnostics += "kine: target ";
    AppendPlain(diagnostics, target.name);
    (((diagnostics += ": ") += HexCode(code)) += ' ') += NameOf(code);
    diagnostics += lines.empty() ? "\n" : ": " + lines;
}

void Answers::RefuseRow(const Target& target, KineResult code)
{
    row.Begin(target.name);
    Refuse(target, code);
}

void Answers::RefuseRow(const Target& target, KineResult code, const std::string& lines)
{
    row.Begin(target.name);
    Refuse(target, code, lines);
}

bool Answers::Accept(const Target& target, KineResult code)
{
    if (code == KINE_OK) return true;
    RefuseRow(target, code);
    return false;
}

}  // namespace kine_cli
