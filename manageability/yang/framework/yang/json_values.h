// How JSON writes values.
#ifndef YFW_YANG_JSON_VALUES_H
#define YFW_YANG_JSON_VALUES_H

#include <string_view>

#include <libyang/libyang.h>

namespace yfw::yang {

// Whether values of the type are written without quotes (RFC 7951 section 6).
inline bool is_bare_in_json(LY_DATA_TYPE type) {
    switch (type) {
    case LY_TYPE_INT8:
    case LY_TYPE_INT16:
    case LY_TYPE_INT32:
    case LY_TYPE_UINT8:
    case LY_TYPE_UINT16:
    case LY_TYPE_UINT32:
    case LY_TYPE_BOOL:
        return true;
    default:
        return false;
    }
}

// Hands a string with its quotes to `append`, in pieces that are std::string_view (RFC 8259 section 7).
template <class Append> void write_json_string(std::string_view text, Append &&append) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    append("\"");
    size_t begin = 0;
    for (size_t at = 0; at < text.size(); at++) {
        const auto c = static_cast<unsigned char>(text[at]);
        if (c != '"' && c != '\\' && c >= ' ')
            continue;
        append(text.substr(begin, at - begin));
        if (c >= ' ') {
            append("\\");
            append(text.substr(at, 1));
        } else {
            append("\\u00");
            append(digits.substr(c >> 4, 1));
            append(digits.substr(c & 0xf, 1));
        }
        begin = at + 1;
    }
    append(text.substr(begin));
    append("\"");
}

} // namespace yfw::yang

#endif
