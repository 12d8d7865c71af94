#include "device/configured_device.h"

#include <algorithm>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "base/error.h"
#include "device/native_edits.h"
#include "yang/configuration_text.h"

namespace yfw::host {
namespace {

void join(DataTree &into, DataTree more) {
    lyd_node *first = into.release();
    lyd_node *next = nullptr;
    for (lyd_node *top = more.release(); top != nullptr; top = next) {
        next = top->next;
        lyd_unlink_tree(top);
        lyd_insert_sibling(first, top, &first);
    }
    into.reset(first);
}

// Runs what may fail in the store, so that its failure reaches the user like any other.
template <class Work> auto in_store(Work &&work) {
    try {
        return work();
    } catch (const datastore::StoreError &error) {
        throw Error(ErrorTag::operation_failed, "", error.what());
    }
}

// A data path without the names of modules and without keys.
std::string schema_path(const std::string &path) {
    std::string plain;
    for (size_t i = 0; i < path.size(); i++) {
        if (path[i] == '[')
            i = std::min(path.find("']", i), path.size() - 2) + 1;
        else if (path[i] == ':')
            plain.resize(plain.rfind('/') + 1);
        else
            plain += path[i];
    }
    return plain;
}

// What a device refuses is a native node; the user named the OpenConfig node that it came from.
template <class Work> void in_openconfig_terms(const std::vector<NativePath> &edits, Work &&work) {
    try {
        work();
    } catch (const Error &error) {
        for (const NativePath &edit : edits)
            if (edit.path == schema_path(error.path()) && !edit.origin.empty())
                throw Error(error.tag(), edit.origin, error.path() + ": " + error.what(), error.status());
        throw;
    }
}

} // namespace

std::optional<ConfiguredSource::StoreIdentity>
ConfiguredSource::identity_of(const std::filesystem::path &store) {
    struct statx status {};
    if (store.empty() || statx(AT_FDCWD, store.c_str(), 0, STATX_INO | STATX_BTIME, &status) != 0)
        return std::nullopt;
    return StoreIdentity{status.stx_ino, status.stx_btime.tv_sec * 1000000000 + status.stx_btime.tv_nsec};
}

// NULL when there is none. Other processes may make it, commit to it and replace it. To be called with the
// mutex.
datastore::Datastore *ConfiguredSource::opened_store() const {
    const std::optional<StoreIdentity> identity = identity_of(store_);
    if (identity != identity_) {
        kept_.reset();
        opened_.reset();
        identity_.reset(); // should opening fail
        if (identity.has_value())
            opened_ = std::make_unique<datastore::Datastore>(store_, false);
        identity_ = identity;
    }
    return opened_.get();
}

void ConfiguredSource::hold_store() const {
    const std::lock_guard<std::mutex> guard(store_mutex_);
    in_store([this] { return opened_store(); });
}

std::optional<datastore::Commit> ConfiguredSource::last_commit() const {
    const std::lock_guard<std::mutex> guard(store_mutex_);
    return in_store([this] {
        const datastore::Datastore *store = opened_store();
        return store != nullptr ? store->last() : std::nullopt;
    });
}

DataTree ConfiguredSource::read(const ly_ctx *context) {
    DataTree data = source_.read(context);
    const std::optional<datastore::Commit> last = last_commit();
    if (!last.has_value())
        return data;
    take_configuration(data); // what was recorded has been replaced
    join(data, parse_configuration(schemas_, last->configuration, store_.string()));
    return data;
}

sources::Snapshot ConfiguredSource::snapshot(const ly_ctx *context) {
    sources::Snapshot native = source_.snapshot(context);
    if (std::optional<SharedData> committed = committed_configuration())
        native.configuration = std::move(committed); // what was recorded has been replaced
    return native;
}

std::optional<SharedData> ConfiguredSource::committed_configuration() {
    const std::lock_guard<std::mutex> guard(store_mutex_);
    return in_store([this]() -> std::optional<SharedData> {
        const datastore::Datastore *store = opened_store();
        const std::optional<int64_t> number = store != nullptr ? store->last_number() : std::nullopt;
        if (!number.has_value())
            return std::nullopt;
        if (!kept_.has_value() || kept_->number != *number)
            kept_ = Kept{*number,
                         parse_configuration(schemas_, store->find(*number)->configuration, store_.string())};
        return kept_->configuration;
    });
}

DataTree ConfiguredSource::running_configuration() {
    const std::optional<datastore::Commit> last = last_commit();
    return last.has_value() ? parse_configuration(schemas_, last->configuration, store_.string())
                            : recorded_configuration();
}

int64_t ConfiguredSource::last_commit_number() const {
    const std::optional<datastore::Commit> last = last_commit();
    return last.has_value() ? last->number : -1;
}

void ConfiguredSource::restore_target() {
    const std::optional<datastore::Commit> last = target_ != nullptr ? last_commit() : std::nullopt;
    if (last.has_value())
        target_->restore(parse_configuration(schemas_, last->configuration, store_.string()).get());
}

DataTree ConfiguredSource::recorded_configuration() {
    DataTree data = source_.read(schemas_.context());
    return take_configuration(data);
}

Editor::Change Editor::changed(const EditNode &edit, const lyd_node *running) {
    EditNode whole = edit;
    drop_deleted_content(whole);
    const Answer shown = engine_.read({Content::config, {{{schemas_.openconfig_root(), {}}}}, std::nullopt},
                                      {borrowed(running)});
    check_existence(whole, shown.data.get());
    Change change;
    change.edits = engine_.map_edit(whole, borrowed(running));
    change.after = copy_configuration(running);
    apply_native_edits(schemas_, change.edits, change.after);
    validate_configuration(schemas_, change.after);
    return change;
}

std::string Editor::try_edit(const EditNode &edit) {
    DataTree data = source_.read(schemas_.context());
    const DataTree running = take_configuration(data);
    const Change change = changed(edit, running.get());
    if (source_.target() != nullptr)
        in_openconfig_terms(change.edits, [&] { source_.target()->check(running.get(), change.after.get()); });
    return configuration_difference(running.get(), change.after.get());
}

void Editor::ensure_first_commit(datastore::Datastore &store) {
    if (store.last().has_value())
        return;
    const DataTree recorded = source_.recorded_configuration();
    store.commit([&](const std::optional<datastore::Commit> &last) -> std::optional<datastore::Commit> {
        if (last.has_value())
            return std::nullopt; // another process was first
        datastore::Commit first;
        first.comment = "the configuration before the first commit";
        first.configuration = print_configuration(recorded.get());
        return first;
    });
}

// A first edit that is refused, or changes nothing, makes no store: until one is accepted, the device's own
// configuration holds.
std::optional<Editor::Prepared> Editor::prepare_first(const MakeChange &make) {
    if (std::filesystem::exists(source_.store()))
        return std::nullopt;
    const DataTree running = source_.recorded_configuration();
    return Prepared{print_configuration(running.get()), make(running.get())};
}

std::optional<datastore::Commit> Editor::commit(const MakeChange &make) {
    DataTree before;
    DataTree after;
    bool applied = false; // the target runs `after`
    try {
        return in_store([&] {
            std::optional<Prepared> prepared = prepare_first(make);
            if (prepared.has_value() && print_configuration(prepared->change.after.get()) == prepared->running)
                return std::optional<datastore::Commit>();
            datastore::Datastore store(source_.store(), true);
            source_.hold_store();
            ensure_first_commit(store);
            store.on_step(observer_);
            return store.commit(
                [&](const std::optional<datastore::Commit> &last) -> std::optional<datastore::Commit> {
                    before = parse_configuration(schemas_, last->configuration, source_.store().string());
                    const bool is_prepared = prepared.has_value() && prepared->running == last->configuration;
                    Change change = is_prepared ? std::move(prepared->change) : make(before.get());
                    datastore::Commit made = std::move(change.record);
                    made.difference = configuration_difference(before.get(), change.after.get());
                    made.configuration =
                        change.text.empty() ? print_configuration(change.after.get()) : change.text;
                    if (made.configuration == last->configuration)
                        return std::nullopt;
                    if (source_.target() != nullptr) {
                        in_openconfig_terms(change.edits,
                                            [&] { source_.target()->apply(before.get(), change.after.get()); });
                        after = std::move(change.after);
                        applied = true;
                    }
                    return made;
                });
        });
    } catch (...) {
        if (applied) // the store failed after the target had taken it
            source_.target()->apply(after.get(), before.get());
        throw;
    }
}

DataTree Editor::apply(const EditNode &edit, const lyd_node *running) {
    return changed(edit, running).after;
}

std::optional<datastore::Commit> Editor::commit_configuration(const lyd_node *configuration,
                                                              const std::string &edit, const CommitNote &note,
                                                              const ChangeGuard &guard) {
    return commit([&](const lyd_node *running) {
        if (guard)
            guard(running, configuration);
        Change change;
        change.after = copy_configuration(configuration);
        change.record.who = note.who;
        change.record.comment = note.comment;
        change.record.edit = edit;
        return change;
    });
}

std::optional<datastore::Commit> Editor::edit(const EditNode &edit, const CommitNote &note,
                                              const ChangeGuard &guard) {
    return commit([&](const lyd_node *running) {
        Change change = changed(edit, running);
        if (guard)
            guard(running, change.after.get());
        change.record.who = note.who;
        change.record.comment = note.comment;
        change.record.edit = print_edit(edit);
        return change;
    });
}

std::optional<datastore::Commit> Editor::rollback(int64_t number, const CommitNote &note) {
    const bool exists = std::filesystem::exists(source_.store());
    const std::optional<datastore::Commit> target = in_store(
        [&] { return exists ? datastore::Datastore(source_.store(), false).find(number) : std::nullopt; });
    if (!target.has_value())
        throw Error(ErrorTag::data_missing, source_.store().string(),
                    "there is no commit " + std::to_string(number));
    return commit([&](const lyd_node *) {
        Change change;
        change.after = parse_configuration(schemas_, target->configuration, source_.store().string());
        change.text = target->configuration;
        change.record.who = note.who;
        change.record.comment = note.comment.empty() ? "rollback to " + std::to_string(number) : note.comment;
        return change;
    });
}

} // namespace yfw::host
