// Commits of edits to the configuration of a device.
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

// Who changes what, and why.
struct CommitNote {
    std::string who;
    std::string comment;
};

// Refuses a change by throwing: what an OpenConfig client sees of the configuration before and after it.
using ChangeGuard = std::function<void(const lyd_node *before, const lyd_node *after)>;

// Commits edits. Everything is borrowed; a device without a target (NULL) only keeps its configuration. A
// guard, where there is one, is asked before anything changes. Safe for several threads: commits come one after
// the other.
class Editor {
public:
    Editor(const yang::Schemas &schemas, ConfiguredSource &source, host::Engine &engine,
           sources::NativeTarget *target)
        : schemas_(schemas), source_(source), engine_(engine), target_(target) {}

    // The native difference that the edit would make; nothing is written. Throws Error.
    std::string try_edit(const yang::EditNode &edit);

    // The native configuration that `configuration` becomes by the edit; nothing is written. Throws Error.
    yang::DataTree apply(const yang::EditNode &edit, const lyd_node *configuration,
                         const ChangeGuard &guard = {});

    // What an OpenConfig client sees of a native configuration; NULL when that is nothing. Throws Error.
    yang::DataTree shown(const lyd_node *configuration);

    // Makes a valid native configuration the running one, as one commit. `edit`: what led to it, for the
    // record. Nothing when it is that already. Throws Error.
    std::optional<commits::Commit> commit_configuration(const lyd_node *configuration, const std::string &edit,
                                                        const CommitNote &note, const ChangeGuard &guard = {});

    // Applies the edit as one commit, or not at all. Nothing when the edit changes nothing. Throws Error.
    std::optional<commits::Commit> edit(const yang::EditNode &edit, const CommitNote &note,
                                        const ChangeGuard &guard = {});

    // Makes the configuration of a commit the running one again, as a new commit. Nothing when it is that
    // already.
    std::optional<commits::Commit> rollback(int64_t number, const CommitNote &note);

    // Called at each step of a commit.
    void on_step(std::function<void(commits::Step)> observer) { observer_ = std::move(observer); }

private:
    // A configuration that is to replace the running one.
    struct Change {
        yang::DataTree after;
        std::string text; // of `after`; empty: to be printed
        std::vector<host::NativePath> edits;
        commits::Commit record; // who, comment, edit
    };
    using MakeChange = std::function<Change(const lyd_node *running)>;

    struct Prepared {
        std::string running; // what the change was made of
        Change change;
    };
    std::optional<Prepared> prepare_first(const MakeChange &make);
    // Makes a commit of a change, in the store and on the target or in neither.
    std::optional<commits::Commit> commit(const MakeChange &make);
    // The configuration after `edit`, made of a copy of `before`.
    Change changed(const yang::EditNode &edit, const lyd_node *before, const ChangeGuard &guard);
    // What is committed: what the change makes of the last commit, applied to the target. Nothing when it
    // changes nothing.
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
