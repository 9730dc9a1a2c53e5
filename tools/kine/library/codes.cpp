#include "library/codes.h"

#include "text/numbers.h"

namespace kine_cli {

const kinedll::CodeText* TextsOf(KineResult code)
{
    for (const kinedll::CodeText& text : kinedll::kCodeTexts) {
        if (text.code == code) return &text;
    }
    return nullptr;
}

std::string_view NameOf(KineResult code)
{
    const kinedll::CodeText* text = TextsOf(code);
    return text ? text->name : "unknown";
}

std::string InWords(KineResult code)
{
    const kinedll::CodeText* text = TextsOf(code);
    return HexCode(code) + (text ? " " + std::string(text->name) + ": " + text->cause : " is no result code");
}

}  // namespace kine_cli
