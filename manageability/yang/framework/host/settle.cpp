#include "host/settle.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "host/answer_selection.h"
#include "host/repeated_keys.h"
#include "yang/octet_text.h"
#include "yang/value_check.h"
#include "yang/yang_text.h"

namespace yfw::host {
namespace {

// Of what a warning quotes.
constexpr size_t longest_value = 200;
constexpr size_t longest_reason = 600;

bool is_binary(const lysc_node *leaf) {
    return reinterpret_cast<const lysc_node_leaf *>(leaf)->type->basetype == LY_TYPE_BINARY;
}

class Settler {
public:
    Settler(AnswerTree &tree, Content content, std::vector<std::string> &warnings)
        : tree_(tree), content_(content), warnings_(warnings), checks_(tree.schema().size()) {}

    void settle(const Selection &selection) {
        AnswerSlot &top = tree_.root_entry().slots[0];
        if (top.container != nullptr && !children(*top.container, {&selection}))
            top.container = nullptr;
    }

private:
    bool wanted_content(const lysc_node *schema) const {
        if (content_ == Content::all)
            return true;
        return ((schema->flags & LYS_CONFIG_R) != 0) == (content_ == Content::state);
    }

    // The functions below return whether anything is left. Last child first, which is the order of warnings.
    bool children(AnswerEntry &entry, const Selections &selections) {
        const std::vector<const AnswerNode *> &schemas = entry.schema->children;
        bool is_left = false;
        for (auto child = schemas.rbegin(); child != schemas.rend(); ++child) {
            AnswerSlot &slot = entry.slots[(*child)->index];
            if (slot.text == nullptr || (*child)->is_key) // any member: nothing is there
                continue;
            Selections below;
            if (select_child(selections, (*child)->schema, below) && settle_child(slot, **child, below, entry))
                is_left = true;
            else
                slot.text = nullptr;
        }
        return is_left;
    }

    bool settle_child(AnswerSlot &slot, const AnswerNode &schema, const Selections &selections,
                      const AnswerEntry &parent) {
        if (schema.is_leaf())
            return leaf(slot.text, schema, parent);
        if (schema.is_leaf_list())
            return leaf_list(slot.values, schema, parent);
        if (schema.is_list())
            return list(*slot.list, schema, selections, parent);
        Selections matching;
        return match_entry(*slot.container, selections, matching) && children(*slot.container, matching);
    }

    bool leaf(const char *&text, const AnswerNode &schema, const AnswerEntry &parent) {
        if (!wanted_content(schema.schema))
            return false;
        if (is_binary(schema.schema))
            take(text, yang::binary_value(text));
        if (!yang::is_yang_text(text)) {
            warnings_.push_back(place(parent, schema) + ": a value that is no text is left out");
            return false;
        }
        return is_allowed(text, schema, parent);
    }

    // Replaces the value by its canonical form.
    bool is_allowed(const char *&text, const AnswerNode &schema, const AnswerEntry &parent) {
        const yang::ValueCheck::Result &result = check_of(schema).of(text);
        if (!result.is_allowed)
            warnings_.push_back(place(parent, schema.is_key ? *schema.parent : schema) + ": \"" +
                                yang::shortened(text, longest_value) +
                                "\" is left out: " + yang::shortened(result.error, longest_reason));
        else if (!result.canonical.empty())
            text = tree_.keep(result.canonical);
        return result.is_allowed;
    }

    yang::ValueCheck &check_of(const AnswerNode &leaf) {
        std::optional<yang::ValueCheck> &check = checks_[leaf.number];
        return check.has_value() ? *check : check.emplace(leaf.schema);
    }

    void take(const char *&text, const std::string &other) {
        if (other != text)
            text = tree_.keep(other);
    }

    bool leaf_list(AnswerLeafListValue *&values, const AnswerNode &schema, const AnswerEntry &parent) {
        for (AnswerLeafListValue **at = &values; *at != nullptr;) {
            if (leaf((*at)->text, schema, parent))
                at = &(*at)->next;
            else
                *at = (*at)->next;
        }
        return values != nullptr;
    }

    bool list(AnswerList &list, const AnswerNode &schema, const Selections &selections,
              const AnswerEntry &parent) {
        RepeatedKeys keys;
        const bool several = list.first != list.last;
        AnswerEntry *next = list.first;
        list.first = list.last = list.current = nullptr;
        while (AnswerEntry *entry = next) {
            next = entry->next;
            Selections matching;
            if (!match_entry(*entry, selections, matching))
                continue;
            if (!(several && keys.repeats(*entry)) && list_entry(*entry, schema, matching, parent)) {
                entry->next = nullptr;
                (list.last != nullptr ? list.last->next : list.first) = entry;
                list.last = entry;
            }
        }
        for (const size_t count : keys.counts())
            warnings_.push_back(place(parent, schema) + ": " +
                                (count == 1 ? "a second entry" : std::to_string(count) + " more entries") +
                                " with the same keys " + (count == 1 ? "is" : "are") + " left out");
        return list.first != nullptr;
    }

    bool list_entry(AnswerEntry &entry, const AnswerNode &schema, const Selections &selections,
                    const AnswerEntry &parent) {
        if (!keys(entry, schema, parent))
            return false;
        if (!children(entry, selections) && !wants_keys(selections))
            return false;
        tell_dropped(entry);
        return true;
    }

    bool keys(AnswerEntry &entry, const AnswerNode &schema, const AnswerEntry &parent) {
        for (const AnswerNode *key : schema.keys)
            if (entry.slots[key->index].text == nullptr) {
                warnings_.push_back(place(parent, schema) + ": an entry without the key \"" +
                                    key->schema->name + "\" is left out");
                return false;
            }
        if (!std::all_of(schema.keys.begin(), schema.keys.end(), [&](const AnswerNode *key) {
                return yang::is_yang_text(entry.slots[key->index].text);
            })) {
            const size_t dropped = tree_.dropped_for(entry);
            warnings_.push_back(
                place(parent, schema) + ": " +
                (dropped == 0 ? "an entry whose key is no text is left out"
                              : std::to_string(1 + dropped) + " entries whose key is no text are left out"));
            return false;
        }
        return std::all_of(schema.keys.begin(), schema.keys.end(), [&](const AnswerNode *key) {
            return is_allowed(entry.slots[key->index].text, *key, parent);
        });
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

    // Entries of the device that cannot be told apart.
    void tell_dropped(const AnswerEntry &entry) {
        if (const size_t dropped = tree_.dropped_for(entry); dropped != 0)
            warnings_.push_back(
                path_of(entry) + ": the device has " + std::to_string(1 + dropped) +
                " entries that this one stands for; the first is shown, the others are left out");
    }

    static std::string place(const AnswerEntry &parent, const AnswerNode &node) {
        return path_of(parent) + "/" + node.schema->name;
    }

    AnswerTree &tree_;
    Content content_;
    std::vector<std::string> &warnings_;
    std::vector<std::optional<yang::ValueCheck>> checks_; // by the node's number
};

} // namespace

namespace {

// One warning, however many nodes an older model lacks.
void tell_unknown(const AnswerTree &tree, std::vector<std::string> &warnings) {
    const auto &unknown = tree.unknown_paths();
    if (unknown.empty())
        return;
    std::string others;
    for (auto path = std::next(unknown.begin()); path != unknown.end(); ++path)
        others += (others.empty() ? ", nor " : ", ") + *path;
    warnings.push_back(*unknown.begin() + ": the OpenConfig model in use has no such node" + others +
                       (others.empty() ? "; it is left out" : "; they are left out"));
}

} // namespace

void settle(AnswerTree &tree, const Selection &selection, Content content, std::vector<std::string> &warnings) {
    tell_unknown(tree, warnings);
    Settler(tree, content, warnings).settle(selection);
}

} // namespace yfw::host
