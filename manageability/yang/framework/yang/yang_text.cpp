#include "yang/yang_text.h"

#include <optional>

namespace yfw::yang {
namespace {

// The character at `at`, which is advanced past it; nothing when the bytes are not UTF-8 (RFC 3629).
std::optional<char32_t> next_character(const unsigned char *&at) {
    const unsigned char first = *at++;
    if (first < 0x80)
        return first;
    const int more = first >= 0xf0 ? 3 : first >= 0xe0 ? 2 : 1;
    if (first < 0xc2 || first > 0xf4)
        return std::nullopt;
    char32_t character = first & (0x3fu >> more);
    for (int i = 0; i < more; i++) {
        if ((*at & 0xc0) != 0x80)
            return std::nullopt;
        character = character << 6 | (*at++ & 0x3fu);
    }
    constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    return character >= smallest[more] ? std::optional(character) : std::nullopt;
}

} // namespace

bool is_yang_text(const char *text) {
    const auto *at = reinterpret_cast<const unsigned char *>(text);
    while (*at != 0) {
        if (*at >= 0x20 && *at < 0x80) {
            at++;
            continue;
        }
        const std::optional<char32_t> character = next_character(at);
        if (!character.has_value())
            return false;
        const char32_t c = *character;
        const bool control = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
        const bool surrogate = c >= 0xd800 && c <= 0xdfff;
        const bool no_character = (c >= 0xfdd0 && c <= 0xfdef) || (c & 0xfffe) == 0xfffe || c > 0x10ffff;
        if (control || surrogate || no_character)
            return false;
    }
    return true;
}

} // namespace yfw::yang
