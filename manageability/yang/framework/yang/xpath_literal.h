// Values in paths.
#ifndef YFW_YANG_XPATH_LITERAL_H
#define YFW_YANG_XPATH_LITERAL_H

#include <string>

namespace yfw::yang {

// The value as an XPath literal, in the quotes that it does not have itself; one with both kinds of quotes as a
// call of concat(), since XPath 1.0 has no literal for it.
inline std::string quoted(const std::string &value) {
    if (value.find('\'') == std::string::npos)
        return "'" + value + "'";
    if (value.find('"') == std::string::npos)
        return "\"" + value + "\"";
    std::string call = "concat('";
    for (const char c : value) {
        if (c == '\'')
            call += "',\"'\",'";
        else
            call += c;
    }
    return call + "')";
}

} // namespace yfw::yang

#endif
