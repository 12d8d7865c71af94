#include "device/part_change.h"

#include "yang/configuration_text.h"
#include "yang/forest.h"
#include "yang/tree_change.h"

namespace yfw::device {
namespace {

// The lists' containers stay in the whole, whatever becomes of the part's entries.
void keep_containers(const lyd_node *container, yang::DataTree &forest, lyd_node *parent) {
    for (; container != nullptr; container = container->next) {
        const lyd_node *siblings = parent != nullptr ? lyd_child(parent) : forest.get();
        lyd_node *kept = nullptr;
        if (siblings != nullptr)
            lyd_find_sibling_val(siblings, container->schema, nullptr, 0, &kept);
        if (kept == nullptr) {
            lyd_dup_single(container, reinterpret_cast<lyd_node_inner *>(parent), LYD_DUP_WITH_FLAGS, &kept);
            if (parent == nullptr)
                yang::join(forest, yang::DataTree(kept));
        }
        keep_containers(lyd_child(container), forest, kept);
    }
}

// As it is read from a text, but with the containers.
yang::DataTree plain(const lyd_node *part, const lyd_node *containers) {
    yang::DataTree copy = yang::copy_configuration(part);
    yang::drop_implicit(copy);
    keep_containers(containers, copy, nullptr);
    return copy;
}

} // namespace

SideChange side_change(const lyd_node *before, const lyd_node *after, const lyd_node *containers) {
    SideChange made;
    made.after = plain(after, containers);
    made.change = yang::change_between(plain(before, containers).get(), made.after.get());
    return made;
}

PartChange part_change(const Configuration &before, const Configuration &after, const EntryNames &names,
                       const Configuration &containers) {
    return {names, side_change(before.openconfig.get(), after.openconfig.get(), containers.openconfig.get()),
            side_change(before.native.get(), after.native.get(), containers.native.get())};
}

} // namespace yfw::device
