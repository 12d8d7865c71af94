// Commits edits to a device's configuration.
#ifndef YFW_DEVICE_EDITOR_H
#define YFW_DEVICE_EDITOR_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "commits/commit_log.h"
#include "device/commit_writer.h"
#include "device/configuration.h"
#include "device/configuration_mapper.h"
#include "device/configurations.h"
#include "device/configured_source.h"
#include "device/independent_entries.h"
#include "device/running.h"
#include "device/store_lock.h"
#include "sources/native_target.h"
#include "yang/edit.h"

namespace yfw::device {

// Who makes a change, and why.
struct CommitNote {
    std::string who;
    std::string comment;
};

// Rejects a change by throwing, given the configuration that an OpenConfig client sees before and after it, or
// as much of it as the change concerns.
using ChangeGuard = std::function<void(const lyd_node *before, const lyd_node *after)>;

// Makes an edit that depends on the running configuration in OpenConfig terms, which may be NULL. May throw.
using EditMaker = std::function<yang::EditNode(const lyd_node *running)>;

// Commits edits. Everything is borrowed; without a target (NULL) configurations are only stored. The guard, if
// any, is called before anything changes. Any thread may call try_edit(), apply() and shown(). The others,
// which commit, must be called by one thread at a time; the store serializes them with other processes.
class Editor {
public:
    Editor(const yang::Schemas &schemas, ConfiguredSource &source, Configurations &configurations,
           ConfigurationMapper &mapper, const IndependentEntries &entries, sources::NativeTarget *target,
           const StoreLock &lock)
        : schemas_(schemas), source_(source), configurations_(configurations), mapper_(mapper),
          entries_(entries), writer_(source.kept(), configurations, entries), target_(target), lock_(lock) {}

    // The native difference that the edit would make; writes nothing. Throws Error.
    std::string try_edit(const yang::EditNode &edit);

    // Throws what the device would refuse if the running configuration were replaced with this one; changes
    // nothing.
    void check_with_device(const Configuration &configuration);

    // The result of applying the edit to a configuration; writes nothing. Throws Error.
    Configuration apply(const yang::EditNode &edit, const Configuration &before, const ChangeGuard &guard = {});

    // Makes a valid configuration the running one, in one commit. `edit`: its origin, for the record. Nothing
    // when it is already running. Throws Error.
    std::optional<commits::Commit> commit_configuration(const Configuration &configuration,
                                                        const std::string &edit, const CommitNote &note,
                                                        const ChangeGuard &guard = {});

    // Applies the edit in one commit, or not at all. Nothing when the edit changes nothing. Throws Error.
    std::optional<commits::Commit> edit(const yang::EditNode &edit, const CommitNote &note,
                                        const ChangeGuard &guard = {});

    // Makes a commit's configuration the running one again, in a new commit. Nothing when it is already
    // running.
    std::optional<commits::Commit> rollback(int64_t number, const CommitNote &note);

    // Rolls back what a server that was killed left unconfirmed. Call while no other process serves the store
    // or commits to it. Throws Error.
    void take_back_left_behind();

    // Makes the target run the last commit. Call with a target, after the first commit. Throws Error.
    void restore();
    // Whether the target's device was restarted since a commit was applied to it, as far as can be told, or a
    // process was killed while it applied one.
    bool needs_restoring();

    // Called at each step of a commit, on the committing thread. Set it before any commit.
    void on_step(std::function<void(commits::Step)> observer) { observer_ = std::move(observer); }

    // The same for the edit that `make` returns, given the running configuration in OpenConfig terms. It is
    // called again if that has changed meanwhile.
    std::optional<commits::Commit> edit(const EditMaker &make, const CommitNote &note,
                                        const ChangeGuard &guard = {});

private:
    // A configuration to replace the running one.
    struct Change {
        Configuration before;
        Configuration after;
        std::vector<host::NativePath> edits;
        commits::Commit record = {};             // who, comment, edit
        std::optional<Part> part = std::nullopt; // which the configurations are of, if they are not whole
    };
    using MakeChange = std::function<Change(Running &running)>;

    struct Prepared {
        std::string running; // the native configuration the change is based on
        Change change;
        bool changes = false;
    };
    std::optional<Prepared> prepare_first(const MakeChange &make);
    // Commits a change both to the store and to the target, or to neither.
    std::optional<commits::Commit> commit(const MakeChange &make);
    // The same, when it is this process's turn.
    std::optional<commits::Commit> commit_in_turn(const MakeChange &make, std::optional<Prepared> prepared);
    MakeChange restoring(int64_t number, const CommitNote &note);
    // The change that `edit` makes to a configuration.
    Change changed(const yang::EditNode &edit, const Configuration &before, const ChangeGuard &guard);
    // The same, of no more of it than necessary.
    Change edited(const yang::EditNode &edit, Running &running, const ChangeGuard &guard);
    // The same, with its record.
    Change recorded_edit(const yang::EditNode &edit, Running &running, const CommitNote &note,
                         const ChangeGuard &guard);
    // Nothing when the edit concerns more than a part, or is refused, which the whole is to tell.
    std::optional<Change> changed_in_part(const yang::EditNode &edit, Running &running,
                                          const ChangeGuard &guard);
    // Throws what the target would refuse, changing nothing.
    void check_target(const Configuration &before, const Change &change);
    // The same for both configurations as if nothing of them were suspended.
    void check_suspended(const Configuration &before, const Configuration &after);

    // What remains to be done about a commit once it is stored.
    struct Made {
        struct Applied {
            yang::SharedData before;
            yang::SharedData after;
        };
        std::optional<Applied> applied; // what the target now runs
        int64_t number = 0;
        CommitWriter::Written written;
    };
    std::optional<commits::Commit> made_of(commits::CommitLog &store, Change change, int64_t last, Made &made);
    // Applies the change to the target.
    void apply_to_target(commits::CommitLog &store, const Change &change, Made &made);
    // The change that `make` makes to a commit, unless it is prepared.
    Change change_after(commits::CommitLog &store, int64_t last, const MakeChange &make,
                        std::optional<Prepared> &prepared);
    void ensure_first_commit(commits::CommitLog &store);
    bool was_restarted(const commits::CommitLog &store);
    void put_into_force(commits::CommitLog &store, const Configuration &before, const Configuration &after);
    // Makes the target run the last commit if a process was killed while it applied the next one.
    void finish_interrupted(int64_t last, Running &running);
    void remember_instance(commits::CommitLog &store);

    const yang::Schemas &schemas_;
    ConfiguredSource &source_;
    Configurations &configurations_;
    ConfigurationMapper &mapper_;
    const IndependentEntries &entries_;
    const CommitWriter writer_;
    sources::NativeTarget *target_;
    const StoreLock &lock_;
    std::function<void(commits::Step)> observer_;
};

} // namespace yfw::device

#endif
