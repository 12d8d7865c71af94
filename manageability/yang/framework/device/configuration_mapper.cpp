#include "device/configuration_mapper.h"

#include <cstring>
#include <iterator>

#include "base/error.h"
#include "base/interruption.h"
#include "device/leaf_edits.h"
#include "device/native_edits.h"
#include "device/openconfig_terms.h"
#include "host/whole_request.h"
#include "yang/comparison.h"
#include "yang/configuration_text.h"
#include "yang/edit_apply.h"
#include "yang/forest.h"
#include "yang/instance_data.h"
#include "yang/schema_place.h"

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

// What selects the containers and lists at or below `node` that have leaf-lists of configuration; nothing when
// there are none.
std::optional<host::Selection> selection_of_leaf_lists(const lysc_node *node) {
    host::Selection selected{node, std::nullopt, {}, false};
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next) {
        if ((child->flags & LYS_CONFIG_W) == 0)
            continue;
        if (child->nodetype == LYS_LEAFLIST)
            return host::Selection{node, std::nullopt, {}, false};
        if ((child->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0)
            if (std::optional<host::Selection> below = selection_of_leaf_lists(child))
                selected.children.push_back(std::move(*below));
    }
    return selected.children.empty() ? std::nullopt : std::optional(std::move(selected));
}

yang::EditNode values_of_leaf_lists(const lysc_node *root, const lyd_node *data, const lyd_node *except,
                                    yang::Operation operation) {
    return leaf_edit(root, data, except, [&](const lyd_node *leaf, const lyd_node *there) {
        return chosen_if(leaf->schema->nodetype == LYS_LEAFLIST && there == nullptr, operation);
    });
}

} // namespace

ConfigurationMapper::ConfigurationMapper(const yang::Schemas &schemas, host::Engine &engine,
                                         const host::MappingDescription &mapping)
    : schemas_(schemas), engine_(engine), mapping_(mapping),
      leaf_lists_(selection_of_leaf_lists(schemas.openconfig_root())) {}

yang::DataTree ConfigurationMapper::hidden_values(const sources::Snapshot &native) {
    if (!leaf_lists_.has_value())
        return nullptr;
    host::ReadRequest request;
    request.content = host::Content::config;
    request.selection = leaf_lists_;
    yang::DataTree shown = engine_.read(request, native).data;
    const lysc_node *root = schemas_.openconfig_root();
    yang::EditNode removal = values_of_leaf_lists(root, shown.get(), nullptr, yang::Operation::remove);
    if (!does_something(removal))
        return nullptr;
    Mapped rest{
        yang::configuration_in(native.configuration.has_value() ? **native.configuration : *native.data), {}};
    yang::DataTree hidden;
    for (int round = 0; round < most_rounds && apply(removal, rest); round++) {
        const yang::DataTree next = engine_.read(request, {yang::instance_forest(rest.native.get())}).data;
        const yang::EditNode found =
            values_of_leaf_lists(root, next.get(), shown.get(), yang::Operation::merge);
        if (!does_something(found))
            break;
        yang::apply_edit(found, hidden);
        yang::apply_edit(found, shown);
        removal = values_of_leaf_lists(root, next.get(), nullptr, yang::Operation::remove);
    }
    return hidden;
}

yang::DataTree ConfigurationMapper::translate(const lyd_node *native) {
    const sources::Snapshot snapshot{yang::instance_forest(native)};
    yang::DataTree shown = engine_.read(whole_configuration(), snapshot).data;
    if (yang::DataTree hidden = hidden_values(snapshot))
        yang::merge(shown, std::move(hidden));
    return shown;
}

std::vector<host::NativePath> ConfigurationMapper::edits_of(const lyd_node *openconfig,
                                                            const std::set<std::string> &paths,
                                                            const lyd_node *native) {
    const yang::EditNode edit =
        leaf_edit(schemas_.openconfig_root(), openconfig, nullptr, [&](const lyd_node *leaf, const lyd_node *) {
            return chosen_if(paths.contains(leaf_path(leaf)), yang::Operation::merge);
        });
    if (!does_something(edit))
        return {};
    try {
        return engine_.map_edit(edit, yang::borrowed(native));
    } catch (const Error &) {
        return {};
    }
}

host::ReadRequest ConfigurationMapper::whole_configuration() const {
    return host::whole_request(schemas_, host::Content::config);
}

yang::DataTree ConfigurationMapper::read_back(const lyd_node *native) {
    return engine_.read(whole_configuration(), {yang::instance_forest(native)}).data;
}

bool ConfigurationMapper::apply(const yang::EditNode &edit, Mapped &mapped) {
    end_if_interrupted();
    std::vector<host::NativePath> edits = engine_.map_edit(edit, yang::borrowed(mapped.native.get()));
    yang::DataTree result = yang::copy_configuration(mapped.native.get());
    apply_native_edits(schemas_, edits, result);
    const bool changes = !yang::is_same(result.get(), mapped.native.get());
    mapped.native = std::move(result);
    std::move(edits.begin(), edits.end(), std::back_inserter(mapped.edits));
    return changes;
}

yang::DataTree ConfigurationMapper::settle(Mapped &mapped, const lyd_node *wanted,
                                           const Suspensions &suspended) {
    for (int round = 0;; round++) {
        end_if_interrupted();
        yang::DataTree present = read_back(mapped.native.get());
        const yang::EditNode missing =
            leaf_edit(schemas_.openconfig_root(), wanted, present.get(),
                      [&](const lyd_node *leaf, const lyd_node *there) {
                          const bool is_there = there != nullptr && has_same_value(leaf, there);
                          return chosen_if(!is_there && !suspended.holds(leaf->schema), yang::Operation::merge);
                      });
        if (!does_something(missing) || round == most_rounds)
            return present;
        try {
            if (!apply(missing, mapped))
                return present;
        } catch (const Error &) {
            map_leaf_by_leaf(missing, mapped.native.get());
            throw;
        }
    }
}

bool ConfigurationMapper::map_outside_entries(Mapped &mapped, const lyd_node *wanted) {
    const yang::EditNode edit =
        leaf_edit(schemas_.openconfig_root(), wanted, nullptr, [](const lyd_node *leaf, const lyd_node *) {
            return chosen_if(!yang::has_list_above(leaf->schema), yang::Operation::merge);
        });
    return does_something(edit) && apply(edit, mapped);
}

// A leaf of an entry may be mapped to several native settings, of which an earlier value has left some.
void ConfigurationMapper::clear_entries(Mapped &mapped, const lyd_node *wanted, const lyd_node *before) {
    const yang::EditNode edit =
        leaf_edit(schemas_.openconfig_root(), wanted, before, [](const lyd_node *leaf, const lyd_node *old) {
            const bool is_changed = old == nullptr || !has_same_value(leaf, old);
            return chosen_if(is_changed && yang::has_list_above(leaf->schema) && !yang::repeats_key(leaf),
                             yang::Operation::remove);
        });
    if (does_something(edit))
        apply(edit, mapped);
}

yang::EditNode ConfigurationMapper::surplus(const lyd_node *present, const lyd_node *wanted) const {
    return leaf_edit(
        schemas_.openconfig_root(), present, wanted, [](const lyd_node *leaf, const lyd_node *there) {
            return chosen_if(there == nullptr && !yang::repeats_key(leaf), yang::Operation::remove);
        });
}

// Setting a leaf may set others, which remain when it is deleted. What is only implied by other leaves comes
// back with them; then nothing is gained, and the native configuration stays as it is.
void ConfigurationMapper::remove_surplus(Mapped &mapped, const lyd_node *present, const lyd_node *wanted,
                                         const Suspensions &suspended) {
    const yang::EditNode edit = surplus(present, wanted);
    if (!does_something(edit))
        return;
    Mapped without{yang::copy_configuration(mapped.native.get()), mapped.edits};
    apply(edit, without);
    const yang::DataTree left = settle(without, wanted, suspended);
    if (single_leaves(surplus(left.get(), wanted)).size() < single_leaves(edit).size())
        mapped = std::move(without);
}

std::set<std::string> ConfigurationMapper::held(const Configuration &configuration,
                                                const std::set<std::string> &paths) {
    const auto is_held = [&](const std::set<std::string> &these) {
        const yang::EditNode edit =
            leaf_edit(schemas_.openconfig_root(), configuration.openconfig.get(), nullptr,
                      [&](const lyd_node *leaf, const lyd_node *) {
                          return chosen_if(these.contains(leaf_path(leaf)), yang::Operation::merge);
                      });
        Mapped mapped{yang::copy_configuration(configuration.native.get()), {}};
        try {
            return does_something(edit) && !apply(edit, mapped);
        } catch (const Error &) {
            return false;
        }
    };
    if (paths.empty() || is_held(paths))
        return paths;
    std::set<std::string> found;
    for (const std::string &path : paths)
        if (is_held({path}))
            found.insert(path);
    return found;
}

// The leaf that suspends others comes first: it may take them away by itself. A mapping may not map the removal
// of every entry, or leave native settings behind.
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
    suspended.remove_native(mapped.native);
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
    if (suspended.any()) {
        take_suspended_away(mapped, after, suspended);
        settle(mapped, after, suspended);
    } else {
        make_independent_of_history(mapped, before, after, suspended);
    }
    with_openconfig_errors(mapped.edits, [&] { validate_configuration(schemas_, mapped.native); });
    return mapped;
}

// How a leaf is mapped may depend on whether the device is switched on: setting one switches it on, but not
// where the edit that switches it off finds it on.
void ConfigurationMapper::make_independent_of_history(Mapped &mapped, const Configuration &before,
                                                      const lyd_node *after, const Suspensions &suspended) {
    const bool was_enabled = engine_.is_enabled(before.native.get());
    clear_entries(mapped, after, before.openconfig.get());
    yang::DataTree present = settle(mapped, after, suspended);
    bool entries_fit = engine_.is_enabled(mapped.native.get()) == was_enabled;
    if (!engine_.is_enabled(mapped.native.get()) && map_outside_entries(mapped, after))
        entries_fit = false;
    if (!entries_fit) {
        clear_all_entries(mapped, after);
        present = settle(mapped, after, suspended);
    }
    remove_surplus(mapped, present.get(), after, suspended);
}

bool ConfigurationMapper::concerns_only_part(const Configuration &before, const Configuration &after) const {
    const auto is_plain = [&](const Configuration &configuration) {
        return engine_.is_enabled(configuration.native.get()) &&
               !Suspensions(schemas_, mapping_, configuration.openconfig.get()).any();
    };
    return is_plain(before) && is_plain(after);
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
