// The print routine. The lines know one conversion only and do without the rest of printf.
#include "config/print.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace kine {

namespace {

class Line
{
public:
    void Append(std::string_view text)
    {
        const std::size_t length = std::min(text.size(), bytes_.size() - length_);
        std::copy_n(text.data(), length, bytes_.data() + length_);
        length_ += length;
    }

    void Append(std::int32_t number)
    {
        std::array<char, 11> digits{};  // of the lowest number, with its sign
        const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        Append({digits.data(), static_cast<std::size_t>(end - digits.data())});
    }

    [[nodiscard]] std::string_view Text() const { return {bytes_.data(), length_}; }

private:
    std::array<char, kMaxLine> bytes_{};
    std::size_t length_ = 0;
};

constexpr std::string_view kNumber = "%d";

}  // namespace

void Print(std::string_view text, std::initializer_list<std::int32_t> numbers)
{
    Line line;
    for (const std::int32_t number : numbers) {
        const std::size_t place = text.find(kNumber);
        if (place == std::string_view::npos) break;
        line.Append(text.substr(0, place));
        line.Append(number);
        text.remove_prefix(place + kNumber.size());
    }
    line.Append(text);
    // A line that cannot be written is lost: no result depends on it.
    static_cast<void>(std::fwrite(line.Text().data(), 1, line.Text().size(), stdout));
    static_cast<void>(std::fflush(stdout));
}

}  // namespace kine
