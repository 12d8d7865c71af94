#include "device/configuration_mapper.h"

#include <cstring>
#include <iterator>

#include "device/native_edits.h"
#include "device/openconfig_terms.h"
#include "device/suspension.h"
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

} // namespace

yang::DataTree ConfigurationMapper::read_back(const lyd_node *native) {
    host::ReadRequest whole;
    whole.content = host::Content::config;
    whole.selection = host::Selection{schemas_.openconfig_root(), std::nullopt, {}, false};
    return engine_.read(whole, {yang::borrowed(native)}).data;
}

ConfigurationMapper::Mapped ConfigurationMapper::map(const yang::EditNode &edit, const Configuration &before,
                                                     const lyd_node *after) {
    const Suspensions suspended(schemas_, mapping_, after);
    yang::EditNode sent = edit;
    if (suspended.any())
        suspended.hold_back(sent, read_back(before.native.get()).get());
    Mapped mapped;
    mapped.native = yang::copy_configuration(before.native.get());
    for (int round = 0; round < most_rounds && does_something(sent); round++) {
        std::vector<host::NativePath> edits = engine_.map_edit(sent, yang::borrowed(mapped.native.get()));
        yang::DataTree result = yang::copy_configuration(mapped.native.get());
        apply_native_edits(schemas_, edits, result);
        if (round > 0 && yang::is_same(result.get(), mapped.native.get()))
            break;
        mapped.native = std::move(result);
        std::move(edits.begin(), edits.end(), std::back_inserter(mapped.edits));
        sent = {};
        sent.node = schemas_.openconfig_root();
        if (after != nullptr)
            add_missing(after, read_back(mapped.native.get()).get(), suspended, sent);
    }
    with_openconfig_errors(mapped.edits, [&] { validate_configuration(schemas_, mapped.native); });
    return mapped;
}

} // namespace yfw::device
