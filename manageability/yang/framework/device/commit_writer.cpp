#include "device/commit_writer.h"

#include <algorithm>

#include "yang/configuration_text.h"
#include "yang/tree_change.h"

namespace yfw::device {
namespace {

// Changes are read one by one when the store is opened. Each takes as long as this many bytes of a whole
// configuration, and together they are to take no longer than the whole; up to a thousand take too little time
// to matter.
constexpr size_t bytes_per_change = 1000;
constexpr size_t few_changes = 1000;

bool is_stored_whole(const StoredSize &size) {
    return size.changes > size.whole ||
           size.number_of_changes > std::max(few_changes, size.whole / bytes_per_change);
}

yang::DataTree changed_copy(const yang::SharedData &tree, const SideChange &side) {
    yang::DataTree copy = yang::copy_configuration(tree.get());
    yang::apply_change(copy, side.change.get());
    yang::drop_implicit(copy);
    return copy;
}

void print(const lyd_node *native, const lyd_node *openconfig, commits::Commit &to) {
    to.configuration = yang::print_configuration(native);
    to.openconfig = yang::print_configuration(openconfig);
}

} // namespace

StoredConfiguration CommitWriter::changed(int64_t last, const PartChange &change) const {
    const Configuration before = configurations_.of(last);
    return {changed_copy(before.native, change.native), changed_copy(before.openconfig, change.openconfig), {}};
}

void CommitWriter::write_whole(const Configuration &after, commits::Commit &to) const {
    print(after.native.get(), after.openconfig.get(), to);
}

CommitWriter::Written CommitWriter::write_part(int64_t last, const Part &before, const Configuration &after,
                                               commits::Commit &to) const {
    Written written;
    written.change = part_change(before.configuration, after, before.names, before.containers);
    commits::ConfigurationChange texts{yang::print_change(written.change->native.change.get()),
                                       yang::print_change(written.change->openconfig.change.get())};
    written.size = before.size;
    written.size.changes += texts.native.size() + texts.openconfig.size();
    written.size.number_of_changes++;
    if (!is_stored_whole(written.size)) {
        to.change = std::move(texts);
        return written;
    }
    written.whole = changed(last, *written.change);
    print(written.whole->native.get(), written.whole->openconfig->get(), to);
    written.whole->size.whole = to.configuration.size() + to.openconfig->size();
    return written;
}

void CommitWriter::stored(int64_t last, Written written) const {
    if (written.whole.has_value())
        kept_.keep(last + 1, std::move(*written.whole));
    else if (written.change.has_value())
        kept_.advance(last, *written.change, written.size, entries_);
}

} // namespace yfw::device
