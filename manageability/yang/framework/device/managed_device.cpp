#include "device/managed_device.h"

#include "base/error.h"
#include "device/native_edits.h"
#include "yang/configuration_text.h"

namespace yfw::device {

ManagedDevice::ManagedDevice(const yang::Schemas &schemas, sources::OpenedSource opened,
                             std::filesystem::path store, host::MappingDescription mapping)
    : schemas_(schemas), mapping_(std::move(mapping)), opened_(std::move(opened)),
      source_(schemas, *opened_.source, std::move(store)), engine_(schemas, source_, mapping_),
      editor_(schemas, source_, engine_, opened_.target) {}

ManagedDevice::ManagedDevice(const yang::Schemas &schemas, sources::NativeSource &source,
                             std::filesystem::path store, host::MappingDescription mapping)
    : schemas_(schemas), mapping_(std::move(mapping)), source_(schemas, source, std::move(store)),
      engine_(schemas, source_, mapping_), editor_(schemas, source_, engine_, nullptr) {}

void ManagedDevice::validate(const lyd_node *configuration) const {
    yang::DataTree copy = yang::copy_configuration(configuration);
    validate_configuration(schemas_, copy);
}

void ManagedDevice::require_store() const {
    if (store().empty())
        throw Error(ErrorTag::missing_element, "--store",
                    "a device given with --native needs a file for its commits");
}

std::optional<commits::Commit> ManagedDevice::edit(const yang::EditNode &edit, const CommitNote &note,
                                                   const ChangeGuard &guard) {
    require_store();
    return editor_.edit(edit, note, guard);
}

std::optional<commits::Commit> ManagedDevice::commit(const lyd_node *configuration, const std::string &edit,
                                                     const CommitNote &note, const ChangeGuard &guard) {
    require_store();
    return editor_.commit_configuration(configuration, edit, note, guard);
}

std::optional<commits::Commit> ManagedDevice::rollback(int64_t number, const CommitNote &note) {
    return editor_.rollback(number, note);
}

void ManagedDevice::restore() {
    if (opened_.target != nullptr && last_commit_number() >= 0)
        opened_.target->restore(source_.running_configuration().get());
}

void ManagedDevice::watch(int stop, const sources::NeighborWatch::Listener &listener) {
    opened_.watch->run(schemas_.context(), stop, listener);
}

} // namespace yfw::device
