#include "yang/octet_text.h"

#include "base/base64.h"

namespace yfw::yang {
namespace {

constexpr char escape = '\xc0'; // no UTF-8 text contains it
constexpr char zero = '\x80';
constexpr char itself = '\x81';
constexpr std::string_view mark = "\xc0\x80";

} // namespace

std::string octet_text(std::string_view octets) {
    if (octets.find('\0') == std::string_view::npos && !octets.starts_with(mark))
        return std::string(octets);
    std::string text(mark);
    for (const char octet : octets) {
        text += octet == '\0' ? escape : octet;
        if (octet == '\0' || octet == escape)
            text += octet == '\0' ? zero : itself;
    }
    return text;
}

std::optional<std::string> coded_octets(std::string_view value) {
    if (!value.starts_with(mark))
        return std::nullopt;
    std::string octets;
    for (size_t at = mark.size(); at < value.size(); at++) {
        const bool escaped = value[at] == escape && at + 1 < value.size();
        octets += escaped && value[at + 1] == zero ? '\0' : value[at];
        at += escaped ? 1 : 0;
    }
    return octets;
}

std::string binary_value(std::string_view base64_text) {
    constexpr std::string_view begin_of_mark = "wI"; // in base64
    if (!base64_text.starts_with(begin_of_mark))
        return std::string(base64_text);
    const std::optional<std::string> value = from_base64(base64_text);
    const std::optional<std::string> octets = value.has_value() ? coded_octets(*value) : std::nullopt;
    return octets.has_value() ? base64(*octets) : std::string(base64_text);
}

} // namespace yfw::yang
