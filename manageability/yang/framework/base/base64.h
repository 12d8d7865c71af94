// Octets as text, RFC 4648 section 4.
#ifndef YFW_BASE_BASE64_H
#define YFW_BASE_BASE64_H

#include <optional>
#include <string>
#include <string_view>

namespace yfw {

std::string base64(std::string_view octets);

// Nothing when the text is not base64 with its padding. Line breaks are not accepted.
std::optional<std::string> from_base64(std::string_view text);

} // namespace yfw

#endif
