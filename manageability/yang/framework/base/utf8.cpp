#include "base/utf8.h"

#include <algorithm>

namespace yfw {
namespace {

constexpr bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

// The number of bytes of the character that begins with this one; 0 when none does.
size_t length_of(unsigned char first) {
    if (first < 0x80)
        return 1;
    if (first < 0xc2 || first > 0xf4)
        return 0;
    return first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
}

// Whether it is neither written longer than needed, nor a surrogate, nor beyond the last character.
bool is_valid(char32_t character, size_t length) {
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return character >= smallest[length] && character <= 0x10ffff && (character < 0xd800 || character > 0xdfff);
}

std::optional<char32_t> first_character(std::string_view text, size_t length) {
    if (length == 0 || length > text.size() ||
        !std::all_of(text.begin() + 1, text.begin() + static_cast<ptrdiff_t>(length), continues))
        return std::nullopt;
    char32_t character = static_cast<unsigned char>(text.front());
    if (length > 1)
        character &= 0x7fu >> length;
    for (size_t i = 1; i < length; i++)
        character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3fu);
    return is_valid(character, length) ? std::optional(character) : std::nullopt;
}

} // namespace

std::optional<char32_t> take_character(std::string_view &text) {
    const size_t length = length_of(static_cast<unsigned char>(text.front()));
    const std::optional<char32_t> character = first_character(text, length);
    text.remove_prefix(character.has_value() ? length : 1);
    return character;
}

std::string_view cut_between_characters(std::string_view text, size_t size) {
    if (text.size() <= size)
        return text;
    constexpr size_t longest_character = 4;
    for (size_t back = 0; back < longest_character && back <= size; back++)
        if (!continues(text[size - back]))
            return text.substr(0, size - back);
    return text.substr(0, size);
}

} // namespace yfw
