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

} // namespace yfw::yang
