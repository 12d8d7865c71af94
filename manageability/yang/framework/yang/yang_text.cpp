#include "yang/yang_text.h"

#include <optional>

#include "base/utf8.h"

namespace yfw::yang {
namespace {

bool is_yang_character(char32_t c) {
    const bool control = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
    const bool no_character = (c >= 0xfdd0 && c <= 0xfdef) || (c & 0xfffe) == 0xfffe;
    return !control && !no_character;
}

} // namespace

bool is_yang_text(std::string_view text) {
    while (!text.empty()) {
        const auto first = static_cast<unsigned char>(text.front());
        if (first >= 0x20 && first < 0x80) {
            text.remove_prefix(1);
            continue;
        }
        const std::optional<char32_t> character = take_character(text);
        if (!character.has_value() || !is_yang_character(*character))
            return false;
    }
    return true;
}

std::string quoted_literal(std::string_view text) {
    const char quote = text.find('\'') == std::string_view::npos ? '\'' : '"';
    std::string literal(1, quote);
    for (const char c : text)
        literal.append(c == quote ? 2 : 1, c);
    return literal + quote;
}

std::string shortened(std::string_view text, size_t most) {
    if (text.size() <= most)
        return std::string(text);
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xc0) == 0x80)
        most--;
    return std::string(text.substr(0, most)) + "...";
}

} // namespace yfw::yang
