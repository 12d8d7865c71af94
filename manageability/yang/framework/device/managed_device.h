// One device, in OpenConfig terms: what it is configured with, what it does, and how that is changed.
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

// What every front end works with. Safe for several threads; the mapping serves one request at a time. There
// can be one in a process at a time: the plug-in keeps state between its callbacks. Everything throws Error.
class ManagedDevice {
public:
    // Takes the source over and borrows the schemas. `store`: the file of the commits, made by the first one;
    // an empty path for a device that cannot be committed to. The mapping is loaded as it is described.
    ManagedDevice(const yang::Schemas &schemas, sources::OpenedSource opened, std::filesystem::path store,
                  host::MappingDescription mapping);
    // Of a source that is borrowed too.
    ManagedDevice(const yang::Schemas &schemas, sources::NativeSource &source, std::filesystem::path store,
                  host::MappingDescription mapping);
    ManagedDevice(const ManagedDevice &) = delete;
    ManagedDevice &operator=(const ManagedDevice &) = delete;

    const yang::Schemas &schemas() const { return schemas_; }
    const host::MappingDescription &mapping() const { return mapping_; }

    // ---- reading

    host::Answer read(const host::ReadRequest &request) { return engine_.read(request); }
    // The same of this native configuration alone.
    host::Answer read(const host::ReadRequest &request, yang::SharedData configuration) {
        return engine_.read(request, {nullptr, std::move(configuration)});
    }
    // The same of native data from elsewhere, such as a watch.
    host::Answer read(const host::ReadRequest &request, yang::DataTree native) {
        return engine_.read(request, {std::move(native)});
    }

    // What the mapping does with a request; nothing is read or changed.
    host::Explanation explain(const host::ReadRequest &request) { return engine_.explain(request); }
    host::Explanation explain(const yang::EditNode &edit) {
        return engine_.explain(edit, source_.running_configuration());
    }

    // With tracing the plug-in's debug log holds every callback's steps.
    void set_trace(bool on) { engine_.set_trace(on); }

    // ---- configuration

    // Native: the last commit's, or the device's own before the first one.
    yang::SharedData running_configuration() { return source_.running_configuration(); }

    // The native difference that the edit would make; nothing is written.
    std::string try_edit(const yang::EditNode &edit) { return editor_.try_edit(edit); }
    // The native configuration that another one becomes by the edit; nothing is written.
    yang::DataTree apply(const yang::EditNode &edit, const lyd_node *configuration,
                         const ChangeGuard &guard = {}) {
        return editor_.apply(edit, configuration, guard);
    }
    // What an OpenConfig client sees of a native configuration; NULL when that is nothing.
    yang::DataTree shown(const lyd_node *configuration) { return editor_.shown(configuration); }
    // Holds a native configuration to every rule of its models.
    void validate(const lyd_node *configuration) const;

    // Each makes one commit, on the device and in the store or in neither; nothing when nothing changes.
    std::optional<commits::Commit> edit(const yang::EditNode &edit, const CommitNote &note,
                                        const ChangeGuard &guard = {});
    // `edit`: what led to the native configuration, for the record.
    std::optional<commits::Commit> commit(const lyd_node *configuration, const std::string &edit,
                                          const CommitNote &note, const ChangeGuard &guard = {});
    std::optional<commits::Commit> rollback(int64_t number, const CommitNote &note);

    // Refuses a device that cannot be committed to.
    void require_store() const;
    const std::filesystem::path &store() const { return source_.store(); }
    // -1 when there is no commit yet.
    int64_t last_commit_number() const { return source_.last_commit_number(); }

    // ---- the device itself

    // Makes it run the last commit, if there is one: it may have been restarted since.
    void restore();

    bool tells_changes() const { return opened_.watch != nullptr; }
    // Calls the listener until `stop`, a descriptor, becomes readable.
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
