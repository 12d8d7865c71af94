#include "host/answer_data.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "base/error.h"
#include "yang/octet_text.h"
#include "yang/schemas.h"
#include "yang/tree_text.h"
#include "yang/yang_text.h"

namespace yfw::host {
namespace {

// Empty below a node that is selected whole.
using Selections = std::vector<const Selection *>;

// Finds what `selection` selects below the child `schema`; false when the child is not selected.
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

bool is_binary(const lysc_node *leaf) {
    return (leaf->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0 &&
           reinterpret_cast<const lysc_node_leaf *>(leaf)->type->basetype == LY_TYPE_BINARY;
}

class Writer {
public:
    Writer(const AnswerTree &tree, Content content, std::vector<std::string> &warnings)
        : tree_(tree), content_(content), warnings_(warnings) {}

    yang::DataTree write(const Selection &selection) {
        const AnswerEntry &root = tree_.root_entry();
        const AnswerSlot &slot = root.slots[0];
        const AnswerNode &top = *root.schema->children[0];
        if (slot.container == nullptr)
            return nullptr;
        lyd_node *node = nullptr;
        lyd_new_inner(nullptr, top.schema->module, top.schema->name, 0, &node);
        yang::DataTree data(node);
        children(*slot.container, {&selection}, node);
        return lyd_child(node) != nullptr ? std::move(data) : nullptr;
    }

private:
    bool wanted_content(const lysc_node *schema) const {
        if (content_ == Content::all)
            return true;
        return ((schema->flags & LYS_CONFIG_R) != 0) == (content_ == Content::state);
    }

    // Last child first: libyang inserts a node by searching for the sibling that follows it, trying every one
    // that is missing.
    void children(const AnswerEntry &entry, const Selections &selections, lyd_node *to) {
        const std::vector<const AnswerNode *> &schemas = entry.schema->children;
        for (auto child = schemas.rbegin(); child != schemas.rend(); ++child) {
            const AnswerSlot &slot = entry.slots[(*child)->index];
            if (slot.text == nullptr || (*child)->is_key) // any member: nothing is there
                continue;
            Selections below;
            if (select_child(selections, (*child)->schema, below))
                write_child(slot, **child, below, to);
        }
    }

    void write_child(const AnswerSlot &slot, const AnswerNode &schema, const Selections &selections,
                     lyd_node *to) {
        if (schema.is_leaf())
            leaf(schema, slot.text, to);
        else if (schema.is_leaf_list())
            for (const AnswerLeafListValue *value = slot.values; value != nullptr; value = value->next)
                leaf(schema, value->text, to);
        else if (schema.is_list())
            list(*slot.list, schema, selections, to);
        else
            container(*slot.container, selections, to);
    }

    void leaf(const AnswerNode &schema, const char *text, lyd_node *to) {
        if (!wanted_content(schema.schema))
            return;
        const lysc_node *node = schema.schema;
        std::string octets;
        if (is_binary(node))
            text = (octets = yang::binary_value(text)).c_str();
        if (!yang::is_yang_text(text))
            warnings_.push_back(place(to, node->name) + ": a value that is no text is left out");
        else if (lyd_new_term(to, node->module, node->name, text, 0, nullptr) != LY_SUCCESS)
            warn(to, node->name, text);
    }

    void container(const AnswerEntry &entry, const Selections &asked, lyd_node *to) {
        Selections selections;
        if (!match_entry(entry, asked, selections))
            return;
        const lysc_node *schema = entry.schema->schema;
        lyd_node *node = nullptr;
        if (lyd_new_inner(to, schema->module, schema->name, 0, &node) != LY_SUCCESS)
            return;
        children(entry, selections, node);
        if (lyd_child(node) == nullptr)
            lyd_free_tree(node);
    }

    void list(const AnswerList &entries, const AnswerNode &schema, const Selections &selections, lyd_node *to) {
        std::unordered_map<std::string, size_t> more; // by keys, how many entries follow the first with them
        std::vector<const size_t *> repeated;         // in the order of the answer
        const bool several = entries.first != entries.last;
        for (const AnswerEntry *entry = entries.first; entry != nullptr; entry = entry->next) {
            Selections matching;
            if (!match_entry(*entry, selections, matching))
                continue;
            const auto seen =
                several ? more.try_emplace(keys_of(*entry), 0) : std::pair(more.end(), true);
            if (seen.second)
                list_entry(*entry, schema, matching, to);
            else if (++seen.first->second == 1)
                repeated.push_back(&seen.first->second);
        }
        for (const size_t *count : repeated)
            warnings_.push_back(place(to, schema.schema->name) + ": " +
                                (*count == 1 ? "a second entry" : std::to_string(*count) + " more entries") +
                                " with the same keys " + (*count == 1 ? "is" : "are") + " left out");
    }

    static const char *text_of(const AnswerEntry &entry, const AnswerNode &leaf) {
        const char *text = entry.slots[leaf.index].text;
        return text != nullptr ? text : "";
    }

    // Whether the entry has the values that a selection requires of its keys and leaves.
    static bool match_entry(const AnswerEntry &entry, const Selections &selections, Selections &matching) {
        for (const Selection *selection : selections)
            if (std::all_of(
                    selection->children.begin(), selection->children.end(),
                    [&](const Selection &child) { return !child.value.has_value() || holds(entry, child); }))
                matching.push_back(selection);
        return selections.empty() || !matching.empty();
    }

    static bool holds(const AnswerEntry &entry, const Selection &leaf) {
        for (const AnswerNode *child : entry.schema->children)
            if (child->schema == leaf.node)
                return same_value(text_of(entry, *child), *leaf.value);
        return false;
    }

    // An identity may be requested with or without its module name.
    static bool same_value(std::string_view held, std::string_view asked) {
        if (held == asked)
            return true;
        const size_t colon = held.find(':');
        return colon != std::string_view::npos && held.substr(colon + 1) == asked;
    }

    // An entry with nothing but keys is returned only when it, or a key, is selected.
    bool wants_keys(const Selections &selections) const {
        if (selections.empty())
            return content_ == Content::all;
        return std::any_of(selections.begin(), selections.end(), [&](const Selection *selection) {
            return (content_ == Content::all && !selection->selects_below()) || names_wanted_key(*selection);
        });
    }

    bool names_wanted_key(const Selection &selection) const {
        return std::any_of(selection.children.begin(), selection.children.end(), [&](const Selection &child) {
            return child.is_key() && !child.only_narrows() && wanted_content(child.node);
        });
    }

    void list_entry(const AnswerEntry &entry, const AnswerNode &schema, const Selections &selections,
                    lyd_node *to) {
        lyd_node *node = make_entry(entry, schema, to);
        if (node == nullptr)
            return;
        const lyd_node *last_key = lyd_child(node)->prev;
        children(entry, selections, node);
        const bool keys_only = last_key->next == nullptr;
        if (keys_only && !wants_keys(selections))
            lyd_free_tree(node);
        else
            tell_dropped(entry, node);
    }

    // Entries of the device that cannot be told apart.
    void tell_dropped(const AnswerEntry &entry, const lyd_node *node) {
        if (const size_t dropped = tree_.dropped_for(entry); dropped != 0)
            warnings_.push_back(
                yang::path_of(node) + ": the device has " + std::to_string(1 + dropped) +
                " entries that this one stands for; the first is shown, the others are left out");
    }

    // A list entry with its keys. The model has lists of one and of three keys.
    lyd_node *make_entry(const AnswerEntry &entry, const AnswerNode &schema, lyd_node *to) {
        const lysc_node *node = schema.schema;
        const char *keys[3] = {};
        for (size_t i = 0; i < schema.keys.size() && i < std::size(keys); i++) {
            keys[i] = entry.slots[schema.keys[i]->index].text;
            if (keys[i] == nullptr) {
                warnings_.push_back(place(to, node->name) + ": an entry without the key \"" +
                                    schema.keys[i]->schema->name + "\" is left out");
                return nullptr;
            }
        }
        if (std::any_of(std::begin(keys), std::end(keys),
                        [](const char *key) { return key != nullptr && !yang::is_yang_text(key); })) {
            const size_t dropped = tree_.dropped_for(entry);
            warnings_.push_back(
                place(to, node->name) + ": " +
                (dropped == 0 ? "an entry whose key is no text is left out"
                              : std::to_string(1 + dropped) + " entries whose key is no text are left out"));
            return nullptr;
        }
        lyd_node *made = nullptr;
        if (lyd_new_list(to, node->module, node->name, 0, &made, keys[0], keys[1], keys[2]) == LY_SUCCESS)
            return made;
        warn(to, node->name, keys[0]);
        return nullptr;
    }

    static std::string place(const lyd_node *parent, const char *name) {
        return yang::path_of(parent) + "/" + name;
    }

    void warn(const lyd_node *parent, const char *name, const char *value) {
        warnings_.push_back(place(parent, name) + ": \"" + value +
                            "\" is left out: " + yang::take_yang_error(parent->schema->module->ctx));
    }

    const AnswerTree &tree_;
    Content content_;
    std::vector<std::string> &warnings_;
};

} // namespace

yang::DataTree make_answer(const AnswerTree &tree, const Selection &selection, Content content,
                           std::vector<std::string> &warnings) {
    for (const std::string &path : tree.unknown_paths())
        warnings.push_back(path + ": the OpenConfig model in use has no such node; it is left out");
    return Writer(tree, content, warnings).write(selection);
}

} // namespace yfw::host
