// Commits edits to a device's configuration.
#ifndef YFW_DEVICE_EDITOR_H
#define YFW_DEVICE_EDITOR_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "commits/commit_log.h"
#include "device/configured_source.h"
#include "host/engine.h"
#include "sources/native_target.h"
#include "yang/edit.h"

namespace yfw::device {

// Who makes a change, and why.
struct CommitNote {
    std::string who;
    std::string comment;
};

// Rejects a change by throwing, given the configuration that an OpenConfig client sees before and after it.
using ChangeGuard = std::function<void(const lyd_node *before, const lyd_node *after)>;

// Commits edits. Everything is borrowed; without a target (NULL) configurations are only stored. The guard, if
// any, is called before anything changes. Any thread may call try_edit(), apply() and shown(). The others,
// which commit, must be called by one thread at a time; the store serializes them with other processes.
class Editor {
public:
    Editor(const yang::Schemas &schemas, ConfiguredSource &source, host::Engine &engine,
           sources::NativeTarget *target)
        : schemas_(schemas), source_(source), engine_(engine), target_(target) {}

    // The native difference that the edit would make; writes nothing. Throws Error.
    std::string try_edit(const yang::EditNode &edit);

    // The result of applying the edit to the native `configuration`; writes nothing. Throws Error.
    yang::DataTree apply(const yang::EditNode &edit, const lyd_node *configuration,
                         const ChangeGuard &guard = {});

    // A native configuration as an OpenConfig client sees it; NULL when nothing is visible. Throws Error.
    yang::DataTree shown(const lyd_node *configuration);

    // Makes a valid native configuration the running one, in one commit. `edit`: its origin, for the record.
    // Nothing when it is already running. Throws Error.
    std::optional<commits::Commit> commit_configuration(const lyd_node *configuration, const std::string &edit,
                                                        const CommitNote &note, const ChangeGuard &guard = {});

    // Applies the edit in one commit, or not at all. Nothing when the edit changes nothing. Throws Error.
    std::optional<commits::Commit> edit(const yang::EditNode &edit, const CommitNote &note,
                                        const ChangeGuard &guard = {});

    // Makes a commit's configuration the running one again, in a new commit. Nothing when it is already
    // running.
    std::optional<commits::Commit> rollback(int64_t number, const CommitNote &note);

    // Called at each step of a commit, on the committing thread. Set it before any commit.
    void on_step(std::function<void(commits::Step)> observer) { observer_ = std::move(observer); }

private:
    // A configuration to replace the running one.
    struct Change {
        yang::DataTree after;
        std::string text; // `after` as printed; empty: not printed yet
        std::vector<host::NativePath> edits;
        commits::Commit record; // who, comment, edit
    };
    using MakeChange = std::function<Change(const lyd_node *running)>;

    struct Prepared {
        std::string running; // the configuration the change is based on
        Change change;
    };
    std::optional<Prepared> prepare_first(const MakeChange &make);
    // Commits a change both to the store and to the target, or to neither.
    std::optional<commits::Commit> commit(const MakeChange &make);
    // The change that `edit` makes to a copy of `before`.
    Change changed(const yang::EditNode &edit, const lyd_node *before, const ChangeGuard &guard);
    // Applies the change to the last commit, and the result to the target. Nothing when it changes nothing.
    struct Applied {
        yang::SharedData before;
        yang::DataTree after;
    };
    std::optional<commits::Commit> made_of(Change change, const commits::Commit &last,
                                           std::optional<Applied> &applied);
    void ensure_first_commit(commits::CommitLog &store);

    const yang::Schemas &schemas_;
    ConfiguredSource &source_;
    host::Engine &engine_;
    sources::NativeTarget *target_;
    std::function<void(commits::Step)> observer_;
};

} // namespace yfw::device

#endif
