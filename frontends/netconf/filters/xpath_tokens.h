// The words of an XPath expression (XPath 1.0 section 3.7), as far as they have to be known before it is
// evaluated.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_TOKENS_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_TOKENS_H

#include <string>
#include <string_view>
#include <vector>

namespace yfw::netconf {

struct XPathToken {
    enum class Kind {
        name,      // a name test: "a", "p:a", "*", "p:*"
        function,  // its name, a node type among them; "(" follows
        axis,      // its name; "::" follows
        operation, // "and", "or", "div", "mod", and "*" between operands
        variable,
        literal, // with its quotes
        number,
        symbol // anything else
    };
    Kind kind = Kind::symbol;
    std::string_view text;

    bool is(std::string_view symbol) const { return kind == Kind::symbol && text == symbol; }
};

// Borrows the expression, which need not be a correct one. White space is left out.
std::vector<XPathToken> xpath_tokens(std::string_view expression);

// The expression with names that have no prefix standing for those of any namespace: clients leave the prefixes
// out where there is no doubt.
std::string with_names_of_any_namespace(std::string_view expression);

} // namespace yfw::netconf

#endif
