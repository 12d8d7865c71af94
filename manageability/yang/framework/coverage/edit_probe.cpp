#include "coverage/edit_probe.h"

#include <algorithm>
#include <cstring>

#include "base/error.h"
#include "coverage/samples.h"
#include "yang/leaf_type.h"
#include "yang/schema_place.h"
#include "yang/schemas.h"

namespace yfw::coverage {
namespace {

// A key is set by making its entry.
yang::EditNode edit_of(const Row &row, const std::optional<std::string> &value, yang::Operation operation,
                       const lysc_node *root) {
    yang::EditNode edit;
    edit.node = root;
    if (lysc_is_key(row.node))
        yang::add_edit(edit, sample_path(row.node->parent), std::nullopt, operation);
    else
        yang::add_edit(edit, sample_path(row.node), value, operation);
    yang::drop_deleted_content(edit);
    return edit;
}

bool is_unsigned(const lysc_type *type) {
    return type->basetype == LY_TYPE_UINT8 || type->basetype == LY_TYPE_UINT16 ||
           type->basetype == LY_TYPE_UINT32 || type->basetype == LY_TYPE_UINT64;
}

// The bounds of the range that a number's type declares; nothing when it declares none.
std::optional<std::pair<std::string, std::string>> bounds_of(const lysc_type *type) {
    const lysc_range *range =
        yang::is_integer(type->basetype) ? reinterpret_cast<const lysc_type_num *>(type)->range : nullptr;
    if (range == nullptr)
        return std::nullopt;
    const lysc_range::lysc_range_part &first = range->parts[0];
    const lysc_range::lysc_range_part &last = range->parts[LY_ARRAY_COUNT(range->parts) - 1];
    if (is_unsigned(type))
        return std::pair(std::to_string(first.min_u64), std::to_string(last.max_u64));
    return std::pair(std::to_string(first.min_64), std::to_string(last.max_64));
}

} // namespace

EditCase EditProbe::explain(const Row &row, const std::optional<std::string> &value, bool is_on) {
    EditCase made{is_on, value, {}, {}};
    try {
        const yang::Operation operation =
            value.has_value() ? yang::Operation::merge : yang::Operation::delete_existing;
        const yang::EditNode edit = edit_of(row, value, operation, tried_.schemas.openconfig_root());
        for (const host::ExplainedNode &node : tried_.device.explain(edit, is_on ? tried_.on : tried_.off)) {
            if (node.openconfig != row.path)
                continue;
            made.callbacks.insert(made.callbacks.end(), node.callbacks.begin(), node.callbacks.end());
            for (const host::NativePath &path : node.paths)
                made.edits.push_back(tried_.use_of(path, true));
        }
    } catch (const Error &error) {
        made.refusal = error.what();
    }
    return made;
}

std::string EditProbe::refusal_of(const Row &row, const std::string &value) {
    try {
        tried_.device.apply(edit_of(row, value, yang::Operation::merge, tried_.schemas.openconfig_root()),
                            tried_.off);
        return "";
    } catch (const Error &error) {
        return error.what();
    }
}

void EditProbe::try_operations(Row &row, const std::string &value) {
    const lysc_node *root = tried_.schemas.openconfig_root();
    const device::Configuration with =
        tried_.device.apply(edit_of(row, value, yang::Operation::merge, root), tried_.off);
    for (const yang::Operation operation :
         {yang::Operation::merge, yang::Operation::replace, yang::Operation::create,
          yang::Operation::delete_existing, yang::Operation::remove}) {
        const bool takes = yang::takes_away(operation);
        const std::optional<std::string> given = takes ? std::nullopt : std::optional(value);
        try {
            tried_.device.apply(edit_of(row, given, operation, root), takes ? with : tried_.off);
            row.operations.push_back(operation);
        } catch (const Error &) {
            continue;
        }
    }
}

// The device may accept less than the model's type does: what the native leaf that takes the value accepts.
void EditProbe::find_range(Row &row) {
    for (const EditCase &edit : row.edits)
        for (const NativeUse &use : edit.edits) {
            const lysc_node *leaf =
                edit.value.has_value() && use.value == edit.value ? tried_.leaf_of(use) : nullptr;
            const auto bounds =
                leaf != nullptr && leaf->nodetype == LYS_LEAF ? bounds_of(yang::leaf_type(leaf)) : std::nullopt;
            if (!bounds.has_value() || !refusal_of(row, bounds->first).empty() ||
                !refusal_of(row, bounds->second).empty())
                continue;
            row.limits.range = bounds->first + ".." + bounds->second;
            return;
        }
}

void EditProbe::find_limits(Row &row) {
    const lysc_type *type = yang::leaf_type(row.node);
    if (yang::is_integer(type->basetype) && !bounds_of(type).has_value())
        find_range(row);
    const bool repeats_key = row.node->parent->parent != nullptr &&
                             row.node->parent->parent->nodetype == LYS_LIST &&
                             yang::schema_child(row.node->parent->parent, row.node->name) != nullptr;
    if (type->basetype == LY_TYPE_STRING && !repeats_key && !lysc_is_key(row.node) &&
        !refusal_of(row, "").empty() && refusal_of(row, "1").empty())
        row.limits.least = 1;
}

// OpenConfig shows the configuration in force in the container "state" beside "config".
void EditProbe::check_default(Row &row) {
    if (row.node->nodetype != LYS_LEAF)
        return;
    const auto *leaf = reinterpret_cast<const lysc_node_leaf *>(row.node);
    const lysc_node *above = row.node->parent->parent;
    const lysc_node *state = above != nullptr ? yang::schema_child(above, "state") : nullptr;
    const lysc_node *twin = state != nullptr ? yang::schema_child(state, row.node->name) : nullptr;
    if (leaf->dflt == nullptr || twin == nullptr || twin == row.node || yang::has_list_above(twin))
        return;
    const std::optional<std::string> value = tried_.value_without_data(twin);
    const char *canonical = lyd_value_get_canonical(row.node->module->ctx, leaf->dflt);
    row.ignores_default = value.has_value() && *value != canonical;
}

bool EditProbe::try_leaf(Row &row) {
    std::string accepted;
    bool is_accepted = false;
    for (const std::string &value : sample_values(row.node)) {
        const std::string refusal = refusal_of(row, value);
        if (!refusal.empty()) {
            row.refusal = row.refusal.empty() ? refusal : row.refusal;
            if (are_all_values(row.node))
                row.limits.refused.push_back(value);
            continue;
        }
        accepted = is_accepted ? accepted : value;
        is_accepted = true;
        for (const bool is_on : {true, false})
            row.edits.push_back(explain(row, value, is_on));
        if (!are_all_values(row.node))
            break;
    }
    if (!is_accepted) {
        row.limits.refused.clear();
        return false;
    }
    row.refusal.clear();
    for (const bool is_on : {true, false})
        row.edits.push_back(explain(row, std::nullopt, is_on));
    try_operations(row, accepted);
    find_limits(row);
    check_default(row);
    return true;
}

} // namespace yfw::coverage
