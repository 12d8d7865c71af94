#include "frontends/pictures/topology_html.h"

#include <nlohmann/json.hpp>

#include "base/printable.h"
#include "frontends/pictures/page_template.h"
#include "frontends/pictures/topology_drawing.h"

namespace yfw::pictures {
namespace {

using Json = nlohmann::ordered_json;

std::string markup(const std::string &text) {
    std::string escaped;
    for (const char c : printable(text)) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::string joined(const std::vector<std::string> &words) {
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

// Rows of a name and a value; what was not announced is left out.
Json heard_rows(const Neighbor &neighbor) {
    Json rows = Json::array();
    const auto add = [&rows](const char *name, const std::string &value) {
        if (!value.empty())
            rows.push_back({name, printable(value)});
    };
    add("System name", neighbor.system_name);
    add("System description", neighbor.system_description);
    add("Chassis id", neighbor.chassis_id);
    add("Port id", neighbor.port_id);
    add("Port description", neighbor.port_description);
    add("Management address", neighbor.management_address);
    add("Capabilities", joined(neighbor.capabilities));
    add("Age in seconds", neighbor.age);
    return rows;
}

std::string end_text(const Topology &topology, size_t port) {
    return printable(topology.router_of(port).label) + " " + port_text(topology.ports[port]);
}

Json end_of(const Topology &topology, const Segment &segment, size_t port) {
    Json end{{"router", printable(topology.router_of(port).label)},
             {"port", port_text(topology.ports[port])},
             {"read", topology.router_of(port).read},
             {"heard", Json::array()}};
    for (const Sighting &sighting : segment.sightings)
        if (sighting.by == port)
            end["heard"].push_back(
                {{"of", end_text(topology, sighting.of)}, {"rows", heard_rows(topology.heard.at(sighting))}});
    return end;
}

Json data_of(const Topology &topology) {
    Json segments = Json::array();
    for (const Segment &segment : topology.segments) {
        Json ends = Json::array();
        for (const size_t port : segment.ports)
            ends.push_back(end_of(topology, segment, port));
        segments.push_back(std::move(ends));
    }
    return segments;
}

// In a script, "</script" would end it, wherever it stands.
std::string script_data(const Json &json) {
    std::string text;
    for (const char c : json.dump(-1, ' ', true, Json::error_handler_t::replace))
        if (c == '<')
            text += "\\u003c";
        else
            text += c;
    return text;
}

// Without what stands before the element, which only a file of its own has.
std::string element_of(const std::string &svg) {
    const size_t begin = svg.find("<svg");
    return begin == std::string::npos ? svg : svg.substr(begin);
}

// The template with the text in the place of the mark, which it has once.
std::string filled(const std::string &page, std::string_view mark, const std::string &text) {
    const size_t at = page.find(mark);
    return page.substr(0, at) + text + page.substr(at + mark.size());
}

} // namespace

std::string draw_html(const Topology &topology, const std::string &title, const std::string &svg) {
    // The texts of neighbors are filled in last, so no mark in them is taken for one.
    std::string page = filled(page_template, "@TITLE@", markup(title));
    const size_t data = page.find("@DATA@"), picture = page.find("@SVG@");
    return page.substr(0, picture) + element_of(svg) + page.substr(picture + 5, data - picture - 5) +
           script_data(data_of(topology)) + page.substr(data + 6);
}

} // namespace yfw::pictures
