#include "frontends/cli/output/neighbor_table.h"

#include <charconv>
#include <cstdint>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "base/printable.h"
#include "base/text_table.h"

namespace yfw::cli {
namespace {

using Json = nlohmann::ordered_json;
using pictures::Interface;
using pictures::Neighbor;
using pictures::Report;

// Select Graphic Rendition of ISO 6429.
constexpr const char *bold = "1";
constexpr const char *cyan = "36";
constexpr const char *green = "32";

template <class Visit> void for_each_neighbor(const std::vector<Report> &reports, Visit &&visit) {
    for (const Report &report : reports)
        for (const Interface &interface : report.interfaces)
            for (const Neighbor &neighbor : interface.neighbors)
                visit(report, interface, neighbor);
}

std::string cell(const std::string &text) {
    return text.empty() ? "-" : printable(text);
}

std::string comma_separated(const std::vector<std::string> &words) {
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

std::string device_name(const Report &report) {
    return report.system_name.empty() ? report.place : report.system_name;
}

std::string painted(const char *color, const std::string &text) {
    return fmt::format("\x1b[{}m{}\x1b[0m", color, text);
}

} // namespace

std::string age_text(const std::string &seconds) {
    uint64_t age = 0;
    const auto [end, error] = std::from_chars(seconds.data(), seconds.data() + seconds.size(), age);
    if (error != std::errc() || end != seconds.data() + seconds.size())
        return seconds;
    constexpr uint64_t minute = 60, hour = 60 * minute, day = 24 * hour;
    if (age < minute)
        return fmt::format("{}s", age);
    if (age < hour)
        return fmt::format("{}m{:02}s", age / minute, age % minute);
    if (age < day)
        return fmt::format("{}h{:02}m", age / hour, age % hour / minute);
    return fmt::format("{}d{:02}h", age / day, age % day / hour);
}

std::string neighbor_table(const std::vector<Report> &reports, std::optional<size_t> width, bool colors) {
    const bool with_device = reports.size() > 1;
    std::vector<Align> aligns{Align::left, Align::left, Align::left, Align::left, Align::right, Align::left};
    std::vector<std::string> heading{"Local port", "System name", "Port", "Chassis id", "Age", "Capabilities"};
    if (with_device) {
        aligns.insert(aligns.begin(), Align::left);
        heading.insert(heading.begin(), "Device");
    }
    TextTable table(aligns);
    table.add(heading);
    size_t count = 0;
    for_each_neighbor(reports, [&](const Report &report, const Interface &interface, const Neighbor &neighbor) {
        std::vector<std::string> row{
            cell(interface.name),         cell(neighbor.system_name),
            cell(neighbor.port_id),       cell(neighbor.chassis_id),
            cell(age_text(neighbor.age)), cell(comma_separated(neighbor.capabilities))};
        if (with_device)
            row.insert(row.begin(), cell(device_name(report)));
        table.add(std::move(row));
        count++;
    });
    if (count == 0)
        return "no neighbors\n";
    if (width.has_value())
        table.fit(*width);
    if (!colors)
        return table.text();
    const size_t local_port = with_device ? 1 : 0;
    return table.text([local_port](size_t row, size_t column, const std::string &text) {
        if (row == 0)
            return painted(bold, text);
        return column == local_port       ? painted(cyan, text)
               : column == local_port + 1 ? painted(green, text)
                                          : text;
    });
}

std::string neighbor_json(const std::vector<Report> &reports, int indent) {
    Json all = Json::array();
    for_each_neighbor(reports, [&](const Report &report, const Interface &interface, const Neighbor &neighbor) {
        Json one{{"device", report.place}, {"local-port", interface.name}, {"id", neighbor.id}};
        const auto add = [&one](const char *name, const std::string &value) {
            if (!value.empty())
                one[name] = value;
        };
        add("system-name", neighbor.system_name);
        add("port-id", neighbor.port_id);
        add("port-description", neighbor.port_description);
        add("chassis-id", neighbor.chassis_id);
        add("age", neighbor.age);
        one["capabilities"] = neighbor.capabilities;
        all.push_back(std::move(one));
    });
    return all.dump(indent, ' ', true, Json::error_handler_t::replace);
}

} // namespace yfw::cli
