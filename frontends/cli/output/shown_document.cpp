#include "frontends/cli/output/shown_document.h"

#include <fmt/format.h>

#include "base/printable.h"
#include "base/utf8.h"

namespace yfw::cli {
namespace {

constexpr bool is_layout(char32_t c) {
    return c == '\n' || c == '\t';
}

// Replaces the characters that are not printable by what `escape` makes of them; line ends and tabs if they are
// not layout.
template <class Escape> std::string escaped(std::string_view text, bool has_layout, Escape &&escape) {
    std::string shown;
    while (!text.empty()) {
        const std::string_view rest = text;
        const std::optional<char32_t> character = take_character(text);
        if (!character.has_value())
            shown += escape(0xfffd); // no document has it
        else if (is_printable(*character) || (has_layout && is_layout(*character)))
            shown += rest.substr(0, rest.size() - text.size());
        else
            shown += escape(*character);
    }
    return shown;
}

// RFC 8259, section 7: characters above U+FFFF are two surrogates.
std::string json_escape(char32_t c) {
    const auto number = static_cast<uint32_t>(c);
    if (number < 0x10000)
        return fmt::format("\\u{:04x}", number);
    return fmt::format("\\u{:04x}\\u{:04x}", 0xd800 + ((number - 0x10000) >> 10),
                       0xdc00 + ((number - 0x10000) & 0x3ff));
}

std::string xml_escape(char32_t c) {
    return fmt::format("&#x{:x};", static_cast<uint32_t>(c));
}

// Whether the tag that ends before `at` opens an element whose text is followed by its end.
bool is_text_of_element(std::string_view xml, size_t tag, size_t at) {
    const bool opens = xml[tag + 1] != '/' && xml[at - 2] != '/';
    const size_t next = xml.find('<', at);
    return opens && next != std::string_view::npos && next + 1 < xml.size() && xml[next + 1] == '/';
}

} // namespace

std::string shown_json(std::string_view json) {
    return escaped(json, true, json_escape);
}

std::string shown_xml(std::string_view xml) {
    std::string shown;
    size_t at = 0;
    while (at < xml.size()) {
        const size_t tag = xml.find('<', at);
        const size_t end = tag == std::string_view::npos ? tag : xml.find('>', tag);
        if (end == std::string_view::npos)
            break;
        shown += escaped(xml.substr(at, end + 1 - at), true, xml_escape);
        at = end + 1;
        if (!is_text_of_element(xml, tag, at))
            continue;
        const size_t next = xml.find('<', at);
        shown += escaped(xml.substr(at, next - at), false, xml_escape);
        at = next;
    }
    return shown + escaped(xml.substr(at), true, xml_escape);
}

} // namespace yfw::cli
