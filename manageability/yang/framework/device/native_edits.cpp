#include "device/native_edits.h"

#include <map>
#include <string_view>

#include "base/error.h"
#include "base/interruption.h"
#include "device/octet_limits.h"
#include "yang/forest.h"
#include "yang/path_words.h"
#include "yang/refused_value.h"

namespace yfw::device {
namespace {

bool takes_away(const host::NativePath &edit) {
    return edit.operation == YFW_OP_DELETE || edit.operation == YFW_OP_REMOVE;
}

// The list entry that edits without a key apply to.
struct EntryInHand {
    std::vector<std::pair<const lysc_node *, std::string>> keys; // in schema order
    bool only_removed_from = false;
    bool touched = false;
};

class Applier {
public:
    Applier(const yang::Schemas &schemas, yang::DataTree &configuration)
        : schemas_(schemas), configuration_(configuration) {}

    void apply(const host::NativePath &edit) {
        const std::vector<const lysc_node *> steps = resolve(edit);
        const lysc_node *target = steps.back();
        if (target->nodetype == LYS_LIST)
            open_entry(edit, target);
        else if (lysc_is_key(target))
            set_key(edit, target);
        else if (takes_away(edit))
            remove(edit, steps);
        else
            set(edit, steps);
    }

    // Creates entries that were named only by their keys.
    void finish() {
        for (const auto &[list, entry] : entries_)
            if (!entry.touched && !entry.keys.empty())
                make_named(list, entry);
    }

private:
    [[noreturn]] void refuse(const host::NativePath &edit, const std::string &reason) const {
        throw Error(ErrorTag::invalid_value, edit.origin.empty() ? edit.path : edit.origin, reason);
    }

    std::vector<const lysc_node *> resolve(const host::NativePath &edit) const {
        std::vector<const lysc_node *> steps;
        yang::PathWords words(edit.path);
        std::string_view word;
        while (words.next(word)) {
            const lysc_node *node =
                steps.empty() ? schemas_.native_root(edit.ns, word) : yang::schema_child(steps.back(), word);
            if (node == nullptr)
                throw Error(ErrorTag::operation_failed, edit.path,
                            "the mapping edits a path that the native models do not have");
            steps.push_back(node);
        }
        if (steps.empty())
            throw Error(ErrorTag::operation_failed, edit.path, "the mapping edits no node");
        return steps;
    }

    void open_entry(const host::NativePath &edit, const lysc_node *list) {
        if (!edit.list_entry)
            return;
        leave(list);
        entries_[list] = {};
    }

    void leave(const lysc_node *list) {
        const auto entry = entries_.find(list);
        if (entry != entries_.end() && !entry->second.touched && !entry->second.keys.empty())
            make_named(list, entry->second);
    }

    // A key whose value differs from the current entry's names another entry; the keys before it still apply.
    void set_key(const host::NativePath &edit, const lysc_node *key) {
        const lysc_node *list = key->parent;
        if (!edit.value.has_value())
            refuse(edit, "a list key without a value");
        EntryInHand &entry = entries_[list];
        for (size_t i = 0; i < entry.keys.size(); i++) {
            if (entry.keys[i].first != key)
                continue;
            if (entry.keys[i].second == *edit.value)
                return;
            leave(list);
            entry.touched = false;
            entry.keys.resize(i);
            break;
        }
        entry.keys.emplace_back(key, *edit.value);
    }

    void make_named(const lysc_node *list, const EntryInHand &) {
        const host::NativePath nowhere{};
        std::vector<const lysc_node *> steps;
        for (const lysc_node *node = list; node != nullptr; node = node->parent)
            steps.insert(steps.begin(), node);
        reach(nowhere, steps, true);
    }

    const char *key_value(const host::NativePath &edit, const lysc_node *list, const lysc_node *key) const {
        const auto entry = entries_.find(list);
        if (entry != entries_.end())
            for (const auto &[node, value] : entry->second.keys)
                if (node == key)
                    return value.c_str();
        refuse(edit, "the entry of \"" + std::string(list->name) + "\" has no key \"" + key->name + "\"");
    }

    // A list entry with the current keys, outside any tree.
    yang::DataTree make_entry(const host::NativePath &edit, const lysc_node *list) const {
        const char *values[3] = {};
        size_t count = 0;
        for (const lysc_node *key = lysc_node_child(list); key != nullptr && lysc_is_key(key) && count < 3;
             key = key->next)
            values[count++] = key_value(edit, list, key);
        // A top-level list has no parent; libyang finds its module from the schema.
        lyd_node *parent = nullptr;
        lyd_new_inner(nullptr, list->parent->module, list->parent->name, 0, &parent);
        lyd_node *entry = nullptr;
        const LY_ERR status =
            lyd_new_list(parent, list->module, list->name, 0, &entry, values[0], values[1], values[2]);
        if (status == LY_SUCCESS)
            lyd_unlink_tree(entry);
        lyd_free_all(parent);
        if (status != LY_SUCCESS)
            refuse(edit, yang::take_yang_error(schemas_.context()));
        return yang::DataTree(entry);
    }

    lyd_node *find(lyd_node *siblings, const host::NativePath &edit, const lysc_node *schema) const {
        lyd_node *found = nullptr;
        if (schema->nodetype == LYS_LIST) {
            const yang::DataTree wanted = make_entry(edit, schema);
            lyd_find_sibling_first(siblings, wanted.get(), &found);
        } else {
            lyd_find_sibling_val(siblings, schema, nullptr, 0, &found);
        }
        return found;
    }

    lyd_node *make(const host::NativePath &edit, lyd_node *parent, const lysc_node *schema) {
        lyd_node *made = nullptr;
        if (schema->nodetype == LYS_LIST) {
            made = make_entry(edit, schema).release();
            lyd_insert_child(parent, made);
            return made;
        }
        if (lyd_new_inner(parent, schema->module, schema->name, 0, &made) != LY_SUCCESS)
            refuse(edit, yang::take_yang_error(schemas_.context()));
        if (parent == nullptr)
            yang::join(configuration_, yang::DataTree(made));
        return made;
    }

    // The container or list entry at the end of the steps; NULL when it does not exist and is not to be
    // created.
    lyd_node *reach(const host::NativePath &edit, const std::vector<const lysc_node *> &steps,
                    bool make_missing) {
        lyd_node *at = nullptr;
        for (const lysc_node *schema : steps) {
            lyd_node *siblings = at != nullptr ? lyd_child(at) : configuration_.get();
            lyd_node *next = siblings != nullptr ? find(siblings, edit, schema) : nullptr;
            if (next == nullptr && !make_missing)
                return nullptr;
            at = next != nullptr ? next : make(edit, at, schema);
            if (schema->nodetype == LYS_LIST)
                entries_[schema].touched = true;
        }
        return at;
    }

    void touch_lists(const std::vector<const lysc_node *> &steps) {
        for (const lysc_node *schema : steps)
            if (schema->nodetype == LYS_LIST)
                entries_[schema].touched = true;
    }

    // Removing a missing node is no error: existence was checked in OpenConfig terms.
    void remove(const host::NativePath &edit, const std::vector<const lysc_node *> &steps) {
        touch_lists(steps);
        lyd_node *node = reach(edit, steps, false);
        if (node != nullptr)
            yang::remove(configuration_, node);
    }

    void set(const host::NativePath &edit, std::vector<const lysc_node *> steps) {
        const lysc_node *target = steps.back();
        if (target->nodetype == LYS_CONTAINER) {
            if (steps.size() > 1 || edit.has_source)
                reach(edit, steps, true);
            return;
        }
        if (!edit.value.has_value())
            refuse(edit, "the value cannot be converted to one of the native " + edit.path);
        steps.pop_back();
        lyd_node *parent = reach(edit, steps, true);
        lyd_node *leaf = lyd_child(parent) != nullptr ? find(lyd_child(parent), edit, target) : nullptr;
        LY_ERR status = LY_SUCCESS;
        if (leaf != nullptr)
            status = lyd_change_term(leaf, edit.value->c_str());
        else
            status = lyd_new_term(parent, target->module, target->name, edit.value->c_str(), 0, nullptr);
        if (status == LY_SUCCESS || status == LY_EEXIST || status == LY_ENOT)
            return;
        ly_err_clean(schemas_.context(), nullptr);
        refuse(edit, yang::refused_value(target, *edit.value) + " (native /" + target->module->name + ":" +
                         edit.path.substr(1) + ")");
    }

    const yang::Schemas &schemas_;
    yang::DataTree &configuration_;
    std::map<const lysc_node *, EntryInHand> entries_;
};

} // namespace

void apply_native_edits(const yang::Schemas &schemas, const std::vector<host::NativePath> &edits,
                        yang::DataTree &configuration) {
    Applier applier(schemas, configuration);
    for (const host::NativePath &edit : edits) {
        end_if_interrupted();
        applier.apply(edit);
    }
    applier.finish();
}

void validate_configuration(const yang::Schemas &schemas, yang::DataTree &configuration) {
    if (!configuration)
        return;
    const LY_ERR status = yang::change_first(configuration, [&schemas](lyd_node *&first) {
        return lyd_validate_all(&first, schemas.context(), LYD_VALIDATE_NO_STATE | LYD_VALIDATE_PRESENT,
                                nullptr);
    });
    if (status != LY_SUCCESS)
        throw yang::take_data_error(schemas.context());
    check_octets(configuration.get());
}

} // namespace yfw::device
