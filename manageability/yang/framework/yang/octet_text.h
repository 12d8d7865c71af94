// Octets in native leaves of text.
#ifndef YFW_YANG_OCTET_TEXT_H
#define YFW_YANG_OCTET_TEXT_H

#include <optional>
#include <string>
#include <string_view>

namespace yfw::yang {

// The octets as the value of a native leaf: themselves, unless they contain zeros. Values travel through the
// mapping as C strings, which a zero would end; such octets are therefore coded in a way that no text is: after
// the mark C0 80, C0 80 stands for 00, and C0 81 for C0. Octets that begin with the mark are coded as well.
std::string octet_text(std::string_view octets);

// The octets of a coded value; nothing when the value is not coded.
std::optional<std::string> coded_octets(std::string_view value);

// The value of an OpenConfig leaf of type binary, as it came from the mapping: base64 of a native value. If
// that was coded, base64 of the octets.
std::string binary_value(std::string_view base64_text);

} // namespace yfw::yang

#endif
