#include "yang/edit_apply.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "base/error.h"
#include "yang/building.h"
#include "yang/edit_instance.h"
#include "yang/forest.h"
#include "yang/key_reference.h"
#include "yang/node_kind.h"

namespace yfw::yang {
namespace {

[[noreturn]] void fail(const lysc_node *node) {
    throw Error(ErrorTag::invalid_value, schema_path(node), take_yang_error(node->module->ctx));
}

// Whether applying the edit brings nodes into being where there are none.
bool adds(const EditNode &edit) {
    if (takes_away(edit.operation))
        return false;
    return edit.operation != Operation::none || std::any_of(edit.children.begin(), edit.children.end(), adds);
}

lyd_node *new_entry(const EditNode &edit, lyd_node *parent) {
    std::array<const char *, 3> keys{};
    size_t count = 0;
    for (const EditNode &child : edit.children)
        if (child.is_key() && child.value.has_value() && count < keys.size())
            keys[count++] = child.value->c_str();
    lyd_node *made = nullptr;
    if (lyd_new_list(parent, edit.node->module, edit.node->name, 0, &made, keys[0], keys[1], keys[2]) !=
        LY_SUCCESS)
        fail(edit.node);
    return made;
}

lyd_node *new_term(const lysc_node *leaf, const char *value, lyd_node *parent) {
    lyd_node *made = nullptr;
    if (lyd_new_term(parent, leaf->module, leaf->name, value, 0, &made) != LY_SUCCESS)
        fail(leaf);
    return made;
}

lyd_node *new_container(const lysc_node *container, lyd_node *parent) {
    lyd_node *made = nullptr;
    if (lyd_new_inner(parent, container->module, container->name, 0, &made) != LY_SUCCESS)
        fail(container);
    return made;
}

// The child, made when it is missing.
lyd_node *child_of(lyd_node *parent, const lysc_node *schema) {
    lyd_node *found = nullptr;
    lyd_find_sibling_val(lyd_child(parent), schema, nullptr, 0, &found);
    return found != nullptr ? found : new_container(schema, parent);
}

// A client that addresses an entry by its key need not repeat the key.
void add_leaves_behind_keys(lyd_node *entry) {
    for (lyd_node *key = lyd_child(entry); key != nullptr && lysc_is_key(key->schema); key = key->next) {
        const std::vector<const lysc_node *> steps = leaf_behind_key(key->schema);
        if (steps.empty())
            continue;
        lyd_node *at = entry;
        for (size_t i = 0; i + 1 < steps.size(); i++)
            at = child_of(at, steps[i]);
        lyd_node *leaf = nullptr;
        lyd_find_sibling_val(lyd_child(at), steps.back(), nullptr, 0, &leaf);
        if (leaf == nullptr)
            new_term(steps.back(), lyd_get_value(key), at);
    }
}

// In paths as clients write them, without module names.
Error invalid_data(const ly_ctx *context) {
    const Error error = take_data_error(context);
    const size_t colon = error.path().find(':');
    return Error(error.tag(), colon != std::string::npos ? "/" + error.path().substr(colon + 1) : error.path(),
                 error.what());
}

class Applier {
public:
    explicit Applier(DataTree &configuration) : configuration_(configuration) {}

    void apply(const EditNode &edit, lyd_node *parent, std::string_view place) {
        lyd_node *siblings = parent != nullptr ? lyd_child(parent) : configuration_.get();
        auto *found = const_cast<lyd_node *>(find_instance(siblings, edit));
        if (takes_away(edit.operation))
            return take_away(edit, parent);
        if (is_term(edit.node))
            return term(edit, found, parent);
        const std::string path = instance_path(place, edit);
        const bool is_new = found == nullptr;
        if (is_new && !adds(edit))
            return;
        if (is_new)
            found = made(edit, parent, path);
        else if (edit.operation == Operation::replace)
            clear(found);
        for (const EditNode &child : edit.children)
            if (!child.is_key())
                apply(child, found, path);
        add_leaves_behind_keys(found);
    }

private:
    // All values of a leaf-list that is given without one.
    void take_away(const EditNode &edit, const lyd_node *parent) {
        const bool is_several = edit.node->nodetype == LYS_LEAFLIST && !edit.value.has_value();
        bool is_more = true;
        while (is_more) {
            const lyd_node *siblings = parent != nullptr ? lyd_child(parent) : configuration_.get();
            auto *found = const_cast<lyd_node *>(find_instance(siblings, edit));
            is_more = is_several && found != nullptr;
            if (found != nullptr)
                remove(configuration_, found);
        }
    }

    static void term(const EditNode &edit, lyd_node *found, lyd_node *parent) {
        if (edit.operation == Operation::none || !edit.value.has_value())
            return;
        if (found == nullptr) {
            new_term(edit.node, edit.value->c_str(), parent);
        } else if (edit.node->nodetype == LYS_LEAF) {
            const LY_ERR status = lyd_change_term(found, edit.value->c_str());
            if (status != LY_SUCCESS && status != LY_EEXIST && status != LY_ENOT)
                fail(edit.node);
        }
    }

    lyd_node *made(const EditNode &edit, lyd_node *parent, const std::string &path) {
        if (edit.node->nodetype == LYS_LIST) {
            if (edit.operation == Operation::none && !edit.is_step)
                throw Error(ErrorTag::data_missing, path, "does not exist, and the edit does not create it");
            return new_entry(edit, parent);
        }
        lyd_node *container = new_container(edit.node, parent);
        if (parent == nullptr)
            join(configuration_, DataTree(container));
        return container;
    }

    static void clear(lyd_node *node) {
        lyd_node *next = nullptr;
        for (lyd_node *child = lyd_child(node); child != nullptr; child = next) {
            next = child->next;
            if (!lysc_is_key(child->schema))
                lyd_free_tree(child);
        }
    }

    DataTree &configuration_;
};

// A container without presence exists by its content alone. Returns whether the node is one and is empty.
bool prune(lyd_node *node) {
    lyd_node *next = nullptr;
    for (lyd_node *child = lyd_child(node); child != nullptr; child = next) {
        next = child->next;
        if (prune(child))
            lyd_free_tree(child);
    }
    return node->schema->nodetype == LYS_CONTAINER && lyd_child(node) == nullptr &&
           (node->schema->flags & LYS_PRESENCE) == 0;
}

} // namespace

void apply_edit(const EditNode &edit, DataTree &configuration) {
    Applier(configuration).apply(edit, nullptr, "");
    if (configuration && prune(configuration.get()))
        configuration.reset();
}

void validate_openconfig(const Schemas &schemas, const lyd_node *configuration) {
    if (configuration == nullptr)
        return;
    lyd_node *copy = nullptr; // validation adds the defaults
    lyd_dup_single(configuration, nullptr, LYD_DUP_RECURSIVE, &copy);
    DataTree owner(copy);
    const LY_ERR status = change_first(owner, [&schemas](lyd_node *&first) {
        return lyd_validate_module(&first, schemas.openconfig_root()->module, LYD_VALIDATE_NO_STATE, nullptr);
    });
    if (status != LY_SUCCESS)
        throw invalid_data(schemas.context());
}

} // namespace yfw::yang
