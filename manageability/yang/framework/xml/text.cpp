#include "xml/text.h"

namespace yfw::xml {

bool is_white_space(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

void append_escaped(std::string &to, std::string_view text) {
    for (const char c : text) {
        if (c == '&')
            to += "&amp;";
        else if (c == '<')
            to += "&lt;";
        else if (c == '>')
            to += "&gt;";
        else if (c == '\r')
            to += "&#13;";
        else
            to += c;
    }
}

} // namespace yfw::xml
