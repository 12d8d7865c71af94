#include "device/configuration_mapper.h"

#include <cstring>
#include <iterator>

#include "base/error.h"
#include "device/native_edits.h"
#include "device/openconfig_terms.h"
#include "yang/comparison.h"
#include "yang/configuration_text.h"

namespace yfw::device {
namespace {

// Settings may undo one another, so that this never ends.
constexpr int most_rounds = 8;

yang::EditNode node_of(const lyd_node *data) {
    yang::EditNode node;
    node.node = data->schema;
    if ((data->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
        node.value = lyd_get_value(data);
    return node;
}

bool is_term(const lyd_node *node) {
    return (node->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
}

// Adds what `wanted` has and `present` lacks to `edit`, as a merge.
void add_missing(const lyd_node *wanted, const lyd_node *present, const Suspensions &suspended,
                 yang::EditNode &edit) {
    for (const lyd_node *child = lyd_child(wanted); child != nullptr; child = child->next) {
        if ((child->flags & LYD_DEFAULT) != 0 || lysc_is_key(child->schema))
            continue;
        const lyd_node *there = present != nullptr ? yang::counterpart(child, lyd_child(present)) : nullptr;
        yang::EditNode missing = node_of(child);
        if (is_term(child)) {
            const bool is_there =
                there != nullptr && std::strcmp(lyd_get_value(child), lyd_get_value(there)) == 0;
            if (is_there || suspended.holds(child->schema))
                continue;
            missing.operation = yang::Operation::merge;
            edit.children.push_back(std::move(missing));
            continue;
        }
        for (const lyd_node *key = lyd_child(child); key != nullptr && lysc_is_key(key->schema);
             key = key->next)
            missing.children.push_back(node_of(key));
        const size_t keys = missing.children.size();
        add_missing(child, there, suspended, missing);
        if (missing.children.size() > keys)
            edit.children.push_back(std::move(missing));
    }
}

// Whether the edit does anything at all.
bool does_something(const yang::EditNode &edit) {
    return edit.operation != yang::Operation::none || !edit.children.empty();
}

// One edit for each of its leaves, with what is above it.
std::vector<yang::EditNode> single_leaves(const yang::EditNode &edit) {
    yang::EditNode above = edit;
    std::erase_if(above.children, [](const yang::EditNode &child) { return !child.is_key(); });
    std::vector<yang::EditNode> parts;
    for (const yang::EditNode &child : edit.children) {
        if (child.is_key())
            continue;
        const bool is_leaf = (child.node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
        for (yang::EditNode &below : is_leaf ? std::vector{child} : single_leaves(child)) {
            parts.push_back(above);
            parts.back().children.push_back(std::move(below));
        }
    }
    return parts;
}

} // namespace

yang::DataTree ConfigurationMapper::read_back(const lyd_node *native) {
    host::ReadRequest whole;
    whole.content = host::Content::config;
    whole.selection = host::Selection{schemas_.openconfig_root(), std::nullopt, {}, false};
    return engine_.read(whole, {yang::borrowed(native)}).data;
}

bool ConfigurationMapper::apply(const yang::EditNode &edit, Mapped &mapped) {
    std::vector<host::NativePath> edits = engine_.map_edit(edit, yang::borrowed(mapped.native.get()));
    yang::DataTree result = yang::copy_configuration(mapped.native.get());
    apply_native_edits(schemas_, edits, result);
    const bool changes = !yang::is_same(result.get(), mapped.native.get());
    mapped.native = std::move(result);
    std::move(edits.begin(), edits.end(), std::back_inserter(mapped.edits));
    return changes;
}

void ConfigurationMapper::settle(Mapped &mapped, const lyd_node *wanted, const Suspensions &suspended) {
    for (int round = 0; round < most_rounds; round++) {
        yang::EditNode missing;
        missing.node = schemas_.openconfig_root();
        if (wanted != nullptr)
            add_missing(wanted, read_back(mapped.native.get()).get(), suspended, missing);
        if (!does_something(missing))
            return;
        try {
            if (!apply(missing, mapped))
                return;
        } catch (const Error &) {
            map_leaf_by_leaf(missing, mapped.native.get());
            throw;
        }
    }
}

// The mapping's error is about what a refused edit has in common. Repeated for each leaf, it names the leaf.
void ConfigurationMapper::map_leaf_by_leaf(const yang::EditNode &edit, const lyd_node *native) {
    for (const yang::EditNode &leaf : single_leaves(edit))
        engine_.map_edit(leaf, yang::borrowed(native));
}

ConfigurationMapper::Mapped ConfigurationMapper::map(const yang::EditNode &edit, const Configuration &before,
                                                     const lyd_node *after) {
    const Suspensions suspended(schemas_, mapping_, after);
    yang::EditNode sent = edit;
    if (suspended.any())
        suspended.hold_back(sent, read_back(before.native.get()).get());
    Mapped mapped;
    mapped.native = yang::copy_configuration(before.native.get());
    if (does_something(sent))
        apply(sent, mapped);
    settle(mapped, after, suspended);
    with_openconfig_errors(mapped.edits, [&] { validate_configuration(schemas_, mapped.native); });
    return mapped;
}

std::optional<ConfigurationMapper::Mapped>
ConfigurationMapper::map_as_if_in_force(const Configuration &configuration) {
    const Suspensions suspended(schemas_, mapping_, configuration.openconfig.get());
    if (!suspended.any())
        return std::nullopt;
    yang::DataTree wanted = yang::copy_configuration(configuration.openconfig.get());
    suspended.lift(wanted);
    Mapped mapped;
    mapped.native = yang::copy_configuration(configuration.native.get());
    settle(mapped, wanted.get(), Suspensions(schemas_, mapping_, wanted.get()));
    with_openconfig_errors(mapped.edits, [&] { validate_configuration(schemas_, mapped.native); });
    return mapped;
}

} // namespace yfw::device
