// A device whose configuration can be changed: its running configuration is the last commit, its state comes
// from a source.
#ifndef YFW_DEVICE_CONFIGURED_DEVICE_H
#define YFW_DEVICE_CONFIGURED_DEVICE_H

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "commits/commit_log.h"
#include "host/engine.h"
#include "sources/native_source.h"
#include "sources/native_target.h"

namespace yfw::device {

// Reads through to the last commit, or to the source's own configuration before the first one. Borrows the
// source and the target; a device without a target only keeps its configuration.
class ConfiguredSource final : public sources::NativeSource {
public:
    // A store that is not there yet counts as empty and is not made by reading.
    ConfiguredSource(const yang::Schemas &schemas, sources::NativeSource &source, std::filesystem::path store,
                     sources::NativeTarget *target = nullptr)
        : schemas_(schemas), source_(source), store_(std::move(store)), target_(target) {}

    yang::DataTree read(const ly_ctx *context) override;
    sources::Snapshot snapshot(const ly_ctx *context) override;

    // The source's own configuration.
    yang::DataTree recorded_configuration();

    // The last commit's configuration, or the source's own before the first one.
    yang::DataTree running_configuration();

    // -1 when there is none yet.
    int64_t last_commit_number() const;

    // From now on the store stays open: whoever closes it last has to tidy it up, which takes longer than a
    // commit.
    void hold_store() const;

    // Makes the target run the last commit, if there is one: it may have been restarted since.
    void restore_target();

    const std::filesystem::path &store() const { return store_; }
    sources::NativeTarget *target() const { return target_; } // may be NULL

private:
    // A file that takes another's place may have its number, but is younger.
    struct StoreIdentity {
        uint64_t number = 0; // the inode
        int64_t born = 0;    // nanoseconds
        bool operator==(const StoreIdentity &) const = default;
    };
    static std::optional<StoreIdentity> identity_of(const std::filesystem::path &store);

    commits::CommitLog *opened_store() const;
    std::optional<commits::Commit> last_commit() const;
    std::optional<yang::SharedData> committed_configuration();

    const yang::Schemas &schemas_;
    sources::NativeSource &source_;
    std::filesystem::path store_;
    sources::NativeTarget *target_;

    mutable std::mutex store_mutex_;
    mutable std::optional<StoreIdentity> identity_; // of opened_
    mutable std::unique_ptr<commits::CommitLog> opened_;
    // The configuration of the last commit that was looked at.
    struct Kept {
        int64_t number = 0;
        yang::SharedData configuration;
    };
    mutable std::optional<Kept> kept_;
};

// Who changes what, and why.
struct CommitNote {
    std::string who;
    std::string comment;
};

// Refuses a change by throwing: before and after it, both native.
using ChangeGuard = std::function<void(const lyd_node *before, const lyd_node *after)>;

// Commits edits. Everything is borrowed. A guard, where there is one, is asked before anything changes.
class Editor {
public:
    Editor(const yang::Schemas &schemas, ConfiguredSource &source, host::Engine &engine)
        : schemas_(schemas), source_(source), engine_(engine) {}

    // The native difference that the edit would make; nothing is written. Throws Error.
    std::string try_edit(const yang::EditNode &edit);

    // The native configuration that `running` becomes by the edit; nothing is written. Throws Error.
    yang::DataTree apply(const yang::EditNode &edit, const lyd_node *running);

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
    // The configuration after `edit`, made of a copy of `running`.
    Change changed(const yang::EditNode &edit, const lyd_node *running);
    void ensure_first_commit(commits::CommitLog &store);

    const yang::Schemas &schemas_;
    ConfiguredSource &source_;
    host::Engine &engine_;
    std::function<void(commits::Step)> observer_;
};

} // namespace yfw::device

#endif
