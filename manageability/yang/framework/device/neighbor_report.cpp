#include "device/neighbor_report.h"

#include <cstdlib>
#include <memory>

#include "yang/path.h"

namespace yfw::device {
namespace {

// The entry of the neighbor. Every list on the way to it has one entry.
const lyd_node *neighbor_in(const lyd_node *answer) {
    for (const lyd_node *node = answer; node != nullptr;) {
        if (node->schema->nodetype == LYS_LIST && std::string_view(node->schema->name) == "neighbor")
            return node;
        const lyd_node *next = lyd_child(node);
        while (next != nullptr && (next->schema->nodetype & (LYS_LIST | LYS_CONTAINER)) == 0)
            next = next->next;
        node = next;
    }
    return nullptr;
}

std::string first_key(const lyd_node *entry) {
    return lyd_get_value(lyd_child(entry));
}

} // namespace

std::string_view to_string(sources::NeighborChange change) {
    switch (change) {
    case sources::NeighborChange::added:
        return "added";
    case sources::NeighborChange::removed:
        return "removed";
    case sources::NeighborChange::updated:
        break;
    }
    return "updated";
}

std::string NeighborReport::path() const {
    const std::unique_ptr<char, decltype(&std::free)> path(lyd_path(neighbor, LYD_PATH_STD, nullptr, 0),
                                                           std::free);
    const std::string text = path != nullptr ? path.get() : "";
    const std::string prefix = "/" + std::string(neighbor->schema->module->name) + ":";
    return text.rfind(prefix, 0) == 0 ? "/" + text.substr(prefix.size()) : text;
}

std::string NeighborReport::interface() const {
    return first_key(lyd_parent(lyd_parent(neighbor)));
}

std::string NeighborReport::id() const {
    return first_key(neighbor);
}

NeighborReporter::NeighborReporter(ManagedDevice &device) : device_(device) {
    wanted_.paths.push_back(
        yang::parse_path(device.schemas().openconfig_root(), "/lldp/interfaces/interface/neighbors"));
}

std::optional<NeighborReport> NeighborReporter::report(sources::NeighborEvent event) const {
    NeighborReport report;
    report.change = event.change;
    report.answer = device_.read(wanted_, std::move(event.data)).data;
    report.neighbor = neighbor_in(report.answer.get());
    return report.neighbor != nullptr ? std::optional(std::move(report)) : std::nullopt;
}

} // namespace yfw::device
