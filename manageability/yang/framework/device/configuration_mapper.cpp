#include "device/configuration_mapper.h"

#include <cstring>
#include <iterator>

#include "base/error.h"
#include "device/leaf_edits.h"
#include "device/native_edits.h"
#include "device/openconfig_terms.h"
#include "yang/comparison.h"
#include "yang/configuration_text.h"

namespace yfw::device {
namespace {

// Settings may undo one another, so that this never ends.
constexpr int most_rounds = 8;

bool has_same_value(const lyd_node *a, const lyd_node *b) {
    return std::strcmp(lyd_get_value(a), lyd_get_value(b)) == 0;
}

// Whether the edit does anything at all.
bool does_something(const yang::EditNode &edit) {
    return edit.operation != yang::Operation::none || !edit.children.empty();
}

std::optional<yang::Operation> chosen_if(bool chosen, yang::Operation operation) {
    return chosen ? std::optional(operation) : std::nullopt;
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
        const yang::DataTree present = read_back(mapped.native.get());
        const yang::EditNode missing =
            leaf_edit(schemas_.openconfig_root(), wanted, present.get(),
                      [&](const lyd_node *leaf, const lyd_node *there) {
                          const bool is_there = there != nullptr && has_same_value(leaf, there);
                          return chosen_if(!is_there && !suspended.holds(leaf->schema), yang::Operation::merge);
                      });
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

// The leaf that suspends others comes first: it may take them away by itself.
void ConfigurationMapper::take_suspended_away(Mapped &mapped, const lyd_node *wanted,
                                              const Suspensions &suspended) {
    apply(leaf_edit(schemas_.openconfig_root(), wanted, nullptr,
                    [&](const lyd_node *leaf, const lyd_node *) {
                        return chosen_if(suspended.is_cause(leaf->schema), yang::Operation::merge);
                    }),
          mapped);
    const yang::DataTree present = read_back(mapped.native.get());
    const yang::EditNode edit = leaf_edit(
        schemas_.openconfig_root(), present.get(), nullptr, [&](const lyd_node *leaf, const lyd_node *) {
            const bool is_suspended = suspended.holds(leaf->schema) && !yang::repeats_key(leaf);
            return chosen_if(is_suspended, yang::Operation::remove);
        });
    if (does_something(edit))
        apply(edit, mapped);
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
    if (suspended.any())
        take_suspended_away(mapped, after, suspended);
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
