#include "device/neighbor_report.h"

#include "yang/path.h"
#include "yang/tree_text.h"

namespace yfw::device {
namespace {

// The neighbor's entry. Every list on the path to it has exactly one entry.
const lyd_node *entry_in(const lyd_node *answer, const lysc_node *entry) {
    for (const lyd_node *node = answer; node != nullptr;) {
        if (node->schema == entry)
            return node;
        const lyd_node *next = lyd_child(node);
        while (next != nullptr && (next->schema->nodetype & (LYS_LIST | LYS_CONTAINER)) == 0)
            next = next->next;
        node = next;
    }
    return nullptr;
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
    const std::string text = yang::path_of(neighbor);
    const std::string prefix = "/" + std::string(neighbor->schema->module->name) + ":";
    return text.rfind(prefix, 0) == 0 ? "/" + text.substr(prefix.size()) : text;
}

std::vector<std::string> NeighborReport::keys() const {
    std::vector<std::string> found;
    for (const lyd_node *node = neighbor; node != nullptr; node = lyd_parent(node))
        if (node->schema->nodetype == LYS_LIST)
            found.insert(found.begin(), lyd_get_value(lyd_child(node)));
    return found;
}

NeighborReporter::NeighborReporter(ManagedDevice &device) : device_(device) {
    const auto &notification = device.mapping().notification;
    if (!notification.has_value())
        return;
    wanted_.paths.push_back(yang::parse_path(device.schemas().openconfig_root(), notification->entry));
    yang::Path &path = wanted_.paths.back();
    entry_ = path.back().node;
    if (path.size() > 1)
        path.pop_back(); // all entries: a read starts at a container
}

std::optional<NeighborReport> NeighborReporter::report(sources::NeighborEvent event) const {
    if (entry_ == nullptr)
        return std::nullopt;
    NeighborReport report;
    report.change = event.change;
    report.answer = device_.read_applied(wanted_, event.data).data;
    report.neighbor = entry_in(report.answer.get(), entry_);
    return report.neighbor != nullptr ? std::optional(std::move(report)) : std::nullopt;
}

} // namespace yfw::device
