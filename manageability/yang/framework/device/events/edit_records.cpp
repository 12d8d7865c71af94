#include "device/events/edit_records.h"

#include <algorithm>

namespace yfw::events {
namespace {

bool is_whole(const yang::EditNode &edit) {
    return yang::takes_away(edit.operation) || edit.operation == yang::Operation::replace;
}

// An entry or leaf whose existence is itself a value.
bool stands_for_itself(const yang::EditNode &edit) {
    if (edit.operation == yang::Operation::none)
        return false;
    const bool only_keys = std::all_of(edit.children.begin(), edit.children.end(),
                                       [](const yang::EditNode &child) { return child.is_key(); });
    return edit.value.has_value() || (edit.node->nodetype == LYS_LIST && only_keys);
}

void collect(const yang::EditNode &edit, const std::string &parent, const lysc_node *openconfig,
             std::vector<EditRecord> &records) {
    if (edit.is_key())
        return;
    const std::string path = yang::instance_path(parent, edit);
    if (is_whole(edit) || stands_for_itself(edit)) {
        records.push_back({path, std::string(yang::to_string(edit.operation)), openconfig});
        return;
    }
    for (const yang::EditNode &child : edit.children)
        collect(child, path, openconfig, records);
}

} // namespace

std::vector<EditRecord> edit_records(const yang::EditNode &edit) {
    std::vector<EditRecord> records;
    collect(edit, "", edit.node, records);
    return records;
}

} // namespace yfw::events
