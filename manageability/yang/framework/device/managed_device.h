// One device in OpenConfig terms: its configuration, its state, and changes to it.
#ifndef YFW_DEVICE_MANAGED_DEVICE_H
#define YFW_DEVICE_MANAGED_DEVICE_H

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "device/configured_source.h"
#include "device/editor.h"
#include "host/engine.h"
#include "host/mapping_description.h"
#include "sources/opened_source.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::device {

// The interface for all front ends. Every function throws Error. Only one may exist per process at a time: the
// plug-in keeps state between its callbacks.
//
// Any thread may read, explain, and try or apply edits; the mapping serves one request at a time, so a call may
// wait for those of other threads. edit(), commit() and rollback() must come from one thread at a time
// (Datastores serializes them); other processes may commit meanwhile.
class ManagedDevice {
public:
    // Takes ownership of the source and borrows the schemas. `store`: the commit file, created by the first
    // commit; an empty path for a device that does not support commits. Loads the mapping according to its
    // description.
    ManagedDevice(const yang::Schemas &schemas, sources::OpenedSource opened, std::filesystem::path store,
                  host::MappingDescription mapping);
    // The same, but borrows the source.
    ManagedDevice(const yang::Schemas &schemas, sources::NativeSource &source, std::filesystem::path store,
                  host::MappingDescription mapping);
    ManagedDevice(const ManagedDevice &) = delete;
    ManagedDevice &operator=(const ManagedDevice &) = delete;

    const yang::Schemas &schemas() const { return schemas_; }
    const host::MappingDescription &mapping() const { return mapping_; }

    // ---- reading

    host::Answer read(const host::ReadRequest &request) { return engine_.read(request); }
    // The same, on this native configuration alone.
    host::Answer read(const host::ReadRequest &request, yang::SharedData configuration) {
        return engine_.read(request, {nullptr, std::move(configuration)});
    }
    // The same, on native data from elsewhere, such as a watch.
    host::Answer read(const host::ReadRequest &request, yang::DataTree native) {
        return engine_.read(request, {std::move(native)});
    }

    // What the mapping does with a request; reads and changes nothing.
    host::Explanation explain(const host::ReadRequest &request) { return engine_.explain(request); }
    host::Explanation explain(const yang::EditNode &edit) {
        return engine_.explain(edit, source_.running_configuration());
    }

    // When tracing, the plug-in's debug log contains every callback's steps. Call before other threads use the
    // device.
    void set_trace(bool on) { engine_.set_trace(on); }

    // ---- configuration

    // Native: the last commit's or, before the first one, the device's own.
    yang::SharedData running_configuration() { return source_.running_configuration(); }

    // The native difference that the edit would make; writes nothing.
    std::string try_edit(const yang::EditNode &edit) { return editor_.try_edit(edit); }
    // The result of applying the edit to a native configuration; writes nothing.
    yang::DataTree apply(const yang::EditNode &edit, const lyd_node *configuration,
                         const ChangeGuard &guard = {}) {
        return editor_.apply(edit, configuration, guard);
    }
    // A native configuration as an OpenConfig client sees it; NULL when nothing is visible.
    yang::DataTree shown(const lyd_node *configuration) { return editor_.shown(configuration); }
    // Validates a native configuration against its models.
    void validate(const lyd_node *configuration) const;

    // Each makes one commit, both on the device and in the store or in neither; nothing when nothing changes.
    std::optional<commits::Commit> edit(const yang::EditNode &edit, const CommitNote &note,
                                        const ChangeGuard &guard = {});
    // `edit`: the origin of the native configuration, for the record.
    std::optional<commits::Commit> commit(const lyd_node *configuration, const std::string &edit,
                                          const CommitNote &note, const ChangeGuard &guard = {});
    std::optional<commits::Commit> rollback(int64_t number, const CommitNote &note);

    // Throws for a device that does not support commits.
    void require_store() const;
    const std::filesystem::path &store() const { return source_.store(); }
    // -1 when there is no commit yet.
    int64_t last_commit_number() const { return source_.last_commit_number(); }

    // ---- the device itself

    // Reapplies the last commit, if any: the device may have restarted since. Any thread may call it; it is not
    // serialized with commits.
    void restore();

    // Whether the device reports changes of its neighbors.
    bool tells_changes() const { return opened_.watch != nullptr; }
    // Calls the listener, on the calling thread, until `stop`, a descriptor, becomes readable. One watch at a
    // time. Requires tells_changes().
    void watch(int stop, const sources::NeighborWatch::Listener &listener);

private:
    const yang::Schemas &schemas_;
    host::MappingDescription mapping_;
    sources::OpenedSource opened_;
    ConfiguredSource source_;
    host::Engine engine_;
    Editor editor_;
};

} // namespace yfw::device

#endif
