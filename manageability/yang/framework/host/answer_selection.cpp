#include "host/answer_selection.h"

#include <algorithm>
#include <string_view>

namespace yfw::host {
namespace {

const char *text_of(const AnswerEntry &entry, const AnswerNode &leaf) {
    const char *text = entry.slots[leaf.index].text;
    return text != nullptr ? text : "";
}

// An identity may be requested with or without its module name.
bool same_value(std::string_view held, std::string_view asked) {
    if (held == asked)
        return true;
    const size_t colon = held.find(':');
    return colon != std::string_view::npos && held.substr(colon + 1) == asked;
}

bool holds(const AnswerEntry &entry, const Selection &leaf) {
    for (const AnswerNode *child : entry.schema->children)
        if (child->schema == leaf.node)
            return same_value(text_of(entry, *child), *leaf.value);
    return false;
}

} // namespace

bool select_child(const Selections &selections, const lysc_node *schema, Selections &below) {
    if (selections.empty())
        return true;
    bool selected = false;
    bool whole = false;
    for (const Selection *selection : selections) {
        if (!selection->selects_below()) {
            selected = true;
            whole = true;
            continue;
        }
        for (const Selection &child : selection->children) {
            if (child.node != schema || child.only_narrows())
                continue;
            selected = true;
            below.push_back(&child);
        }
    }
    if (whole)
        below.clear();
    return selected;
}

bool match_entry(const AnswerEntry &entry, const Selections &selections, Selections &matching) {
    for (const Selection *selection : selections)
        if (std::all_of(selection->children.begin(), selection->children.end(), [&](const Selection &child) {
                return !child.value.has_value() || holds(entry, child);
            }))
            matching.push_back(selection);
    return selections.empty() || !matching.empty();
}

} // namespace yfw::host
