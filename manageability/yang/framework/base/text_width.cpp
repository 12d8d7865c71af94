#include "base/text_width.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

#include "base/utf8.h"

namespace yfw {
namespace {

// wcwidth() knows the characters of the thread's locale; in that of a program that sets none, only ASCII's.
class CharacterWidths {
public:
    CharacterWidths() : before_(utf8() != nullptr ? ::uselocale(utf8()) : nullptr) {}
    ~CharacterWidths() {
        if (before_ != nullptr)
            ::uselocale(before_);
    }
    CharacterWidths(const CharacterWidths &) = delete;
    CharacterWidths &operator=(const CharacterWidths &) = delete;

    size_t of(char32_t character) const {
        const int columns = ::wcwidth(static_cast<wchar_t>(character));
        return columns < 0 ? 1 : static_cast<size_t>(columns);
    }

private:
    static locale_t utf8() {
        static const locale_t found = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return found;
    }

    locale_t before_;
};

// Calls `visit` with each character's bytes and columns until it returns false.
template <class Visit> void for_each_character(std::string_view text, Visit &&visit) {
    const CharacterWidths widths;
    while (!text.empty()) {
        const std::string_view rest = text;
        const std::optional<char32_t> character = take_character(text);
        if (!visit(rest.substr(0, rest.size() - text.size()),
                   character.has_value() ? widths.of(*character) : 1))
            return;
    }
}

} // namespace

size_t text_width(std::string_view text) {
    size_t width = 0;
    for_each_character(text, [&](std::string_view, size_t columns) {
        width += columns;
        return true;
    });
    return width;
}

std::string fitted(std::string_view text, size_t columns) {
    if (text_width(text) <= columns)
        return std::string(text);
    if (columns == 0)
        return "";
    std::string begin;
    size_t left = columns - 1; // one is the ellipsis's
    for_each_character(text, [&](std::string_view bytes, size_t width) {
        if (width > left)
            return false;
        begin += bytes;
        left -= width;
        return true;
    });
    return begin + "…";
}

} // namespace yfw
