#include "frontends/pictures/dot_text.h"

#include <algorithm>

#include "base/printable.h"

namespace yfw::pictures {

// Inside quotes, Graphviz takes everything literally except quotes, and backslashes before them.
std::string dot_text(const std::string &name) {
    std::string text = "\"";
    for (const char c : printable(name)) {
        if (c == '"' || c == '\\')
            text += '\\';
        text += c;
    }
    return text + '"';
}

// Graphviz expands backslashes and HTML character entities in it.
std::string dot_label(const std::string &shown) {
    std::string text;
    for (const char c : printable(shown)) {
        if (c == '&') {
            text += "&amp;";
            continue;
        }
        if (c == '"' || c == '\\')
            text += '\\';
        text += c;
    }
    return text;
}

bool is_one_sided(const Segment &segment, size_t port) {
    const auto tells = [port](const Sighting &s) { return s.by == port; };
    const auto is_told = [port](const Sighting &s) { return s.of == port; };
    return std::none_of(segment.sightings.begin(), segment.sightings.end(), tells) ||
           std::none_of(segment.sightings.begin(), segment.sightings.end(), is_told);
}

} // namespace yfw::pictures
