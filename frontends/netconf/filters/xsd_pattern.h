// Regular expressions of YANG (RFC 7950 section 9.4.5), as clients write them.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XSD_PATTERN_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XSD_PATTERN_H

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct pcre2_real_code_8;

namespace yfw::netconf {

// Copies share the compiled pattern. Immutable.
class XsdPattern {
public:
    // Nothing when the text is no regular expression of XML Schema, is longer than 4 KiB, or names another
    // block of characters than xsd_translation.cpp lists.
    static std::optional<XsdPattern> of(std::string_view text);

    // Whether it matches the whole text, which is UTF-8. Deducts the cost from `left`; nothing when that is
    // used up first.
    std::optional<bool> matches(std::string_view text, size_t &left) const;

private:
    explicit XsdPattern(std::shared_ptr<const pcre2_real_code_8> code) : code_(std::move(code)) {}

    std::shared_ptr<const pcre2_real_code_8> code_;
};

// The pattern in the syntax of PCRE2, which has other escapes and extensions; nothing when it is none.
std::optional<std::string> pcre_of_xsd(std::string_view pattern);

} // namespace yfw::netconf

#endif
