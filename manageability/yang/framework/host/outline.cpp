#include "host/outline.h"

#include "host/native_response.h"

namespace yfw::host {
namespace {

template <class Visit> void for_each_list_entry(const AnswerEntry &parent, const Visit &visit) {
    for (const AnswerNode *child : parent.schema->children) {
        const AnswerSlot &slot = parent.slots[child->index];
        if (slot.text == nullptr || child->is_leaf() || child->is_leaf_list()) // any member: nothing is there
            continue;
        if (!child->is_list()) {
            for_each_list_entry(*slot.container, visit);
            continue;
        }
        for (const AnswerEntry *entry = slot.list->first; entry != nullptr; entry = entry->next) {
            visit(*entry);
            for_each_list_entry(*entry, visit);
        }
    }
}

} // namespace

Outline::Outline(const AnswerTree &answer, const NativeResponse &response) {
    std::unordered_map<const tidl_yfw_datatree *, const yang::InstanceNode *> natives;
    response.for_each_list_entry(
        [&](const tidl_yfw_datatree &node, const yang::InstanceNode &data) { natives.emplace(&node, &data); });
    for_each_list_entry(answer.root_entry(), [&](const AnswerEntry &entry) {
        const auto native = natives.find(answer.source_of(entry));
        if (native != natives.end())
            entries_.emplace(path_of(entry), Shown{native->second, answer.dropped_for(entry)});
    });
}

const Outline::Shown *Outline::find(const AnswerEntry &entry) const {
    const auto found = entries_.find(path_of(entry));
    return found != entries_.end() ? &found->second : nullptr;
}

} // namespace yfw::host
