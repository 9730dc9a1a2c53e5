// What `kine check` finds: where, how grave, what is wrong, why it matters and what to do.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/numbers.h"

namespace kine_cli {

enum class Severity
{
    kError,    // the cell is described wrongly, or cannot do what it says
    kWarning,  // plausible, but mostly a mistake
    kNote      // worth knowing
};

std::string_view InWords(Severity severity);

struct Finding
{
    Severity severity = Severity::kNote;
    std::string check;  // a short name for machines, one for each kind of finding
    std::string path;   // of the field in the cell file
    std::string what;
    std::string why;
    std::string remedy;
};

struct FindingText
{
    std::string what;
    std::string why;
    std::string remedy;
};

class FindingList
{
public:
    void Add(Severity severity, std::string check, std::string path, FindingText text)
    {
        all_.push_back({severity, std::move(check), std::move(path), std::move(text.what),
                        std::move(text.why), std::move(text.remedy)});
    }
    void Error(std::string check, std::string path, FindingText text)
    {
        Add(Severity::kError, std::move(check), std::move(path), std::move(text));
    }
    void Warning(std::string check, std::string path, FindingText text)
    {
        Add(Severity::kWarning, std::move(check), std::move(path), std::move(text));
    }
    void Note(std::string check, std::string path, FindingText text)
    {
        Add(Severity::kNote, std::move(check), std::move(path), std::move(text));
    }

    const std::vector<Finding>& All() const { return all_; }
    std::size_t Count(Severity severity) const
    {
        return static_cast<std::size_t>(std::count_if(
            all_.begin(), all_.end(), [&](const Finding& finding) { return finding.severity == severity; }));
    }

private:
    std::vector<Finding> all_;
};

// The number in its shortest form.
inline std::string Shown(double value)
{
    std::string text;
    AppendNumber(text, value);
    return text;
}

inline std::string Indexed(std::string_view path, std::size_t index)
{
    return std::string(path) + "[" + std::to_string(index) + "]";
}

}  // namespace kine_cli
