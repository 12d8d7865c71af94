// One device in OpenConfig terms: its configuration, its state, and changes to it.
#ifndef YFW_DEVICE_MANAGED_DEVICE_H
#define YFW_DEVICE_MANAGED_DEVICE_H

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "device/configuration.h"
#include "device/configuration_mapper.h"
#include "device/configurations.h"
#include "device/configured_source.h"
#include "device/drift.h"
#include "device/editor.h"
#include "device/independent_entries.h"
#include "device/store_lock.h"
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
    // description. `owner`: identifies the device in its store, see CommitLog.
    ManagedDevice(const yang::Schemas &schemas, sources::OpenedSource opened, std::filesystem::path store,
                  host::MappingDescription mapping, std::optional<std::string> owner = std::nullopt);
    // The same, but borrows the source and the target, which may be NULL.
    ManagedDevice(const yang::Schemas &schemas, sources::NativeSource &source, std::filesystem::path store,
                  host::MappingDescription mapping, sources::NativeTarget *target = nullptr);
    ManagedDevice(const ManagedDevice &) = delete;
    ManagedDevice &operator=(const ManagedDevice &) = delete;

    const yang::Schemas &schemas() const { return schemas_; }
    const host::MappingDescription &mapping() const { return mapping_; }

    // ---- reading

    // The configuration as clients wrote it, and the device's state.
    host::SettledAnswer answer(const host::ReadRequest &request);
    // The same as libyang's data, which takes more time and memory.
    host::Answer read(const host::ReadRequest &request);
    // The same, with another configuration.
    host::SettledAnswer answer(const host::ReadRequest &request, const Configuration &configuration) {
        return engine_.answer_with(configuration.openconfig.get(), request);
    }
    // The configuration that is in force on the device, as the mapping reads it, and the device's state.
    host::SettledAnswer answer_applied(const host::ReadRequest &request);
    host::Answer read_applied(const host::ReadRequest &request) {
        return host::data_of(answer_applied(request));
    }
    // The same, on native data from elsewhere, such as a watch.
    host::Answer read_applied(const host::ReadRequest &request, const yang::DataTree &native) {
        return engine_.read(request, {yang::instance_forest(native.get())});
    }

    // What the mapping does with a request; reads and changes nothing.
    host::Explanation explain(const host::ReadRequest &request) { return engine_.explain(request); }
    host::Explanation explain(const yang::EditNode &edit) {
        return engine_.explain(edit, source_.running_configuration());
    }

    // What it does with an edit of a device with this configuration.
    host::Explanation explain(const yang::EditNode &edit, const Configuration &configuration) {
        return engine_.explain(edit, configuration.native);
    }
    // Which leaves it writes in a read of everything on native data from elsewhere, and what writes them.
    std::vector<host::WrittenNode> explain_answer(const yang::DataTree &native) {
        return engine_.explain_answer({yang::instance_forest(native.get())});
    }

    // When tracing, the plug-in's debug log contains every callback's steps.
    void set_trace(bool on) { engine_.set_trace(on); }

    // ---- configuration

    // The last commit's or, before the first one, the device's own.
    Configuration running_configuration() { return configurations_.running(); }

    // The native difference that the edit would make; writes nothing.
    std::string try_edit(const yang::EditNode &edit) { return editor_.try_edit(edit); }
    // The result of applying the edit to a configuration; writes nothing.
    Configuration apply(const yang::EditNode &edit, const Configuration &configuration,
                        const ChangeGuard &guard = {}) {
        return editor_.apply(edit, configuration, guard);
    }
    // Validates a configuration against the models on both sides, and against what the device can do.
    void validate(const Configuration &configuration);
    // The latter alone, for what apply() has returned, which is valid. Throws Error.
    void check_with_device(const Configuration &configuration) { editor_.check_with_device(configuration); }

    // Each makes one commit, both on the device and in the store or in neither; nothing when nothing changes.
    std::optional<commits::Commit> edit(const yang::EditNode &edit, const CommitNote &note,
                                        const ChangeGuard &guard = {});
    // The edit that `make` returns, given the running configuration in OpenConfig terms.
    std::optional<commits::Commit> edit(const EditMaker &make, const CommitNote &note,
                                        const ChangeGuard &guard = {});
    // `edit`: the origin of the configuration, for the record.
    std::optional<commits::Commit> commit(const Configuration &configuration, const std::string &edit,
                                          const CommitNote &note, const ChangeGuard &guard = {});
    std::optional<commits::Commit> rollback(int64_t number, const CommitNote &note);

    // The commits, newest first, without edit, difference and configuration texts.
    std::vector<commits::Commit> history() const { return source_.history(); }

    // Throws for a device that does not support commits.
    void require_store() const;
    const std::filesystem::path &store() const { return source_.store(); }
    // -1 when there is no commit yet.
    int64_t last_commit_number() const { return source_.last_number().value_or(-1); }

    // The commit with this number; nothing when there is none.
    std::optional<commits::Commit> find_commit(int64_t number) const { return source_.find_commit(number); }

    // Makes this process the one that serves the device to others: from now on their commits wait for what it
    // publishes on the lock. Rolls back what a server that was killed left unconfirmed.
    void serve();
    StoreLock &store_lock() { return lock_; }

    // ---- the device itself

    // Whether commits are applied to it, beyond being stored.
    bool is_applied_to() const { return target_ != nullptr; }

    // What is not in force as it was committed; nothing before the first commit.
    std::vector<Drift> drift();

    // Makes the device run the last commit, whatever it runs now. Throws Error where there is none, or where
    // commits are not applied to the device.
    void apply_last_commit();

    // The same, if there is a commit and the device has been restarted since one was applied to it, or a
    // process was killed while it applied one. Returns whether that was so.
    bool restore_after_restart();

    // Called at each step of a commit, for tests.
    void on_step(std::function<void(commits::Step)> observer) { editor_.on_step(std::move(observer)); }

    // Whether the device reports changes of its neighbors.
    bool tells_changes() const { return opened_.watch != nullptr; }
    // Calls the listener, on the calling thread, until `stop`, a descriptor, becomes readable. One watch at a
    // time. Requires tells_changes().
    void watch(int stop, const sources::NeighborWatch::Listener &listener);

private:
    ManagedDevice(const yang::Schemas &schemas, sources::OpenedSource &&opened, sources::NativeSource &source,
                  sources::NativeTarget *target, std::filesystem::path store, host::MappingDescription mapping,
                  std::optional<std::string> owner);

    // With every value of a leaf-list that the native configuration holds.
    host::SettledAnswer answer_translated(const host::ReadRequest &request, sources::Snapshot native);
    // The difference to a configuration that is applied to the target.
    std::vector<Drift> drift_of_target(const Configuration &committed, const lyd_node *applied,
                                       const Suspensions &suspended);

    const yang::Schemas &schemas_;
    host::MappingDescription mapping_;
    sources::OpenedSource opened_; // empty where they are borrowed
    sources::NativeTarget *target_;
    ConfiguredSource source_;
    host::Engine engine_;
    ConfigurationMapper mapper_;
    const IndependentEntries entries_;
    Configurations configurations_;
    StoreLock lock_;
    Editor editor_;
};

} // namespace yfw::device

#endif
