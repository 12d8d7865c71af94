#include "frontends/cli/commands/typed_edit.h"

#include "yang/typed_path.h"

namespace yfw::cli {
namespace {

// Wildcards stand for what the running configuration has.
std::vector<yang::Path> meant_paths(NamedDevice &named, const Change &change) {
    const yang::TypedPath path = yang::parse_typed_path(named.schemas.openconfig_root(), change.path);
    if (!path.has_wildcards)
        return path.nodes;
    const device::Configuration running = named.device.running_configuration();
    return yang::existing_paths(path, running.openconfig.get(), !change.value.has_value());
}

} // namespace

yang::EditNode edit_of(NamedDevice &named, const std::vector<Change> &changes) {
    yang::EditNode root;
    root.node = named.schemas.openconfig_root();
    for (const Change &change : changes)
        for (const yang::Path &path : meant_paths(named, change))
            yang::add_edit(root, path, change.value,
                           change.value.has_value() ? yang::Operation::merge
                                                    : yang::Operation::delete_existing);
    return root;
}

} // namespace yfw::cli
