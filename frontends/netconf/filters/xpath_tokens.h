// The tokens of an XPath expression (XPath 1.0 section 3.7), as far as they matter before evaluation.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_TOKENS_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_TOKENS_H

#include <string>
#include <string_view>
#include <vector>

namespace yfw::netconf {

struct XPathToken {
    enum class Kind {
        name,      // a name test: "a", "p:a", "*", "p:*"
        function,  // function name or node type; "(" follows
        axis,      // axis name; "::" follows
        operation, // "and", "or", "div", "mod", and "*" between operands
        variable,
        literal, // including its quotes
        number,
        symbol // anything else
    };
    Kind kind = Kind::symbol;
    std::string_view text;

    bool is(std::string_view symbol) const { return kind == Kind::symbol && text == symbol; }
};

// Borrows the expression, which may be invalid. White space is omitted.
std::vector<XPathToken> xpath_tokens(std::string_view expression);

// Rewrites unprefixed names to match any namespace: clients omit prefixes where names are unambiguous.
std::string with_names_of_any_namespace(std::string_view expression);

} // namespace yfw::netconf

#endif
