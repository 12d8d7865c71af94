#include "base/printable.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "base/utf8.h"

namespace yfw {
namespace {

struct Range {
    char32_t first, last;
};

// Beside the control characters, by Unicode's names: line and paragraph separators, bidirectional controls,
// and format characters that have no place in a name. Joiners (U+200C, U+200D) are part of words.
constexpr Range escaped[] = {
    {0x061c, 0x061c}, {0x180e, 0x180e}, {0x200b, 0x200b}, {0x200e, 0x200f},   {0x2028, 0x202e},
    {0x2060, 0x206f}, {0xfeff, 0xfeff}, {0xfff9, 0xfffb}, {0xe0000, 0xe007f},
};

// Controls of ISO 6429: C0 and delete, and C1, which some terminals obey when encoded in UTF-8 (U+009B is
// escape and bracket in one).
bool is_control(char32_t c) {
    return c < 0x20 || (c >= 0x7f && c < 0xa0);
}

void write(std::string &to, const char *format, unsigned number) {
    char text[16];
    std::snprintf(text, sizeof text, format, number);
    to += text;
}

} // namespace

bool is_printable(char32_t character) {
    const auto has = [&](const Range &range) { return character >= range.first && character <= range.last; };
    return !is_control(character) && std::none_of(std::begin(escaped), std::end(escaped), has);
}

std::string printable(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const std::string_view rest = text;
        const std::optional<char32_t> character = take_character(text);
        if (!character.has_value())
            write(line, "\\x%02x", static_cast<unsigned char>(rest.front()));
        else if (is_printable(*character))
            line += rest.substr(0, rest.size() - text.size());
        else
            write(line, *character < 0x80 ? "\\x%02x" : "\\u%04x", *character);
    }
    return line;
}

} // namespace yfw
