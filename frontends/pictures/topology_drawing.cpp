#include "frontends/pictures/topology_drawing.h"

#include "base/printable.h"

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

} // namespace yfw::pictures
