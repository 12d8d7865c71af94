#include "frontends/pictures/topology_drawing.h"

#include <fmt/format.h>

namespace yfw::pictures {

std::string port_text(const Port &port) {
    std::string text = port.name.empty() ? "?" : printable(port.name);
    if (port.announced_as.empty())
        return text;
    text += " (";
    for (const std::string &words : port.announced_as)
        text += (&words == &port.announced_as.front() ? "" : ", ") + printable(words);
    return text + ')';
}

std::string printable(std::string_view text) {
    std::string line;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f)
            line += fmt::format("\\x{:02x}", byte);
        else
            line += c;
    }
    return line;
}

} // namespace yfw::pictures
