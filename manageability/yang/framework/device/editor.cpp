#include "device/editor.h"

#include <algorithm>
#include <vector>

#include "base/error.h"
#include "device/native_edits.h"
#include "device/store_errors.h"
#include "yang/configuration_text.h"

namespace yfw::device {
namespace {

// Strips module names and keys from a data path.
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

// The device rejects a native node; report the OpenConfig node that it was mapped from.
template <class Work> void in_openconfig_terms(const std::vector<host::NativePath> &edits, Work &&work) {
    try {
        work();
    } catch (const Error &error) {
        for (const host::NativePath &edit : edits)
            if (edit.path == schema_path(error.path()) && !edit.origin.empty())
                throw Error(error.tag(), edit.origin, error.path() + ": " + error.what(), error.status());
        throw;
    }
}

} // namespace

yang::DataTree Editor::shown(const lyd_node *configuration) {
    host::ReadRequest whole;
    whole.content = host::Content::config;
    whole.selection = host::Selection{schemas_.openconfig_root(), std::nullopt, {}, false};
    return engine_.read(whole, {yang::borrowed(configuration)}).data;
}

Editor::Change Editor::changed(const yang::EditNode &edit, const lyd_node *before, const ChangeGuard &guard) {
    yang::EditNode whole = edit;
    yang::drop_deleted_content(whole);
    const yang::DataTree shown_before = shown(before);
    yang::check_existence(whole, shown_before.get());
    Change change;
    change.edits = engine_.map_edit(whole, yang::borrowed(before));
    change.after = yang::copy_configuration(before);
    apply_native_edits(schemas_, change.edits, change.after);
    in_openconfig_terms(change.edits, [&] { validate_configuration(schemas_, change.after); });
    if (guard)
        guard(shown_before.get(), shown(change.after.get()).get());
    return change;
}

std::string Editor::try_edit(const yang::EditNode &edit) {
    const yang::SharedData running = source_.running_configuration();
    const Change change = changed(edit, running.get(), {});
    if (target_ != nullptr)
        in_openconfig_terms(change.edits, [&] { target_->check(running.get(), change.after.get()); });
    return yang::configuration_difference(running.get(), change.after.get());
}

void Editor::ensure_first_commit(commits::CommitLog &store) {
    if (store.last_number().has_value())
        return;
    const yang::DataTree recorded = source_.recorded_configuration();
    store.commit([&](const std::optional<commits::Commit> &last) -> std::optional<commits::Commit> {
        if (last.has_value())
            return std::nullopt; // another process was faster
        commits::Commit first;
        first.comment = "the configuration before the first commit";
        first.configuration = yang::print_configuration(recorded.get());
        return first;
    });
}

// A first edit that is rejected, or changes nothing, creates no store: until one is accepted, the device's own
// configuration applies.
std::optional<Editor::Prepared> Editor::prepare_first(const MakeChange &make) {
    if (source_.log(false) != nullptr)
        return std::nullopt;
    const yang::DataTree running = source_.recorded_configuration();
    return Prepared{yang::print_configuration(running.get()), make(running.get())};
}

std::optional<commits::Commit> Editor::made_of(Change change, const commits::Commit &last,
                                               std::optional<Applied> &applied) {
    const yang::SharedData before = source_.configuration_of(last);
    commits::Commit made = std::move(change.record);
    made.configuration = change.text.empty() ? yang::print_configuration(change.after.get()) : change.text;
    if (made.configuration == last.configuration)
        return std::nullopt;
    made.difference = yang::configuration_difference(before.get(), change.after.get());
    if (target_ != nullptr) {
        in_openconfig_terms(change.edits, [&] { target_->apply(before.get(), change.after.get()); });
        applied = Applied{before, std::move(change.after)};
    }
    return made;
}

std::optional<commits::Commit> Editor::commit(const MakeChange &make) {
    std::optional<Applied> applied; // what the target now runs
    try {
        return in_store([&] {
            std::optional<Prepared> prepared = prepare_first(make);
            if (prepared.has_value() &&
                yang::print_configuration(prepared->change.after.get()) == prepared->running)
                return std::optional<commits::Commit>();
            const std::shared_ptr<commits::CommitLog> store = source_.log(true);
            ensure_first_commit(*store);
            store->on_step(observer_);
            return store->commit(
                [&](const std::optional<commits::Commit> &last) -> std::optional<commits::Commit> {
                    const bool is_prepared = prepared.has_value() && prepared->running == last->configuration;
                    return made_of(is_prepared ? std::move(prepared->change)
                                               : make(source_.configuration_of(*last).get()),
                                   *last, applied);
                });
        });
    } catch (...) {
        if (applied.has_value()) // the target accepted it, but the store failed
            target_->apply(applied->after.get(), applied->before.get());
        throw;
    }
}

yang::DataTree Editor::apply(const yang::EditNode &edit, const lyd_node *configuration,
                             const ChangeGuard &guard) {
    return changed(edit, configuration, guard).after;
}

std::optional<commits::Commit> Editor::commit_configuration(const lyd_node *configuration,
                                                            const std::string &edit, const CommitNote &note,
                                                            const ChangeGuard &guard) {
    return commit([&](const lyd_node *running) {
        if (guard)
            guard(shown(running).get(), shown(configuration).get());
        Change change;
        change.after = yang::copy_configuration(configuration);
        change.record.who = note.who;
        change.record.comment = note.comment;
        change.record.edit = edit;
        return change;
    });
}

std::optional<commits::Commit> Editor::edit(const yang::EditNode &edit, const CommitNote &note,
                                            const ChangeGuard &guard) {
    return commit([&](const lyd_node *running) {
        Change change = changed(edit, running, guard);
        change.record.who = note.who;
        change.record.comment = note.comment;
        change.record.edit = yang::print_edit(edit);
        return change;
    });
}

std::optional<commits::Commit> Editor::rollback(int64_t number, const CommitNote &note) {
    const std::optional<commits::Commit> target = source_.find_commit(number);
    if (!target.has_value())
        throw Error(ErrorTag::data_missing, source_.store().string(),
                    "there is no commit " + std::to_string(number));
    return commit([&](const lyd_node *) {
        Change change;
        change.after = yang::parse_configuration(schemas_, target->configuration, source_.store().string());
        change.text = target->configuration;
        change.record.who = note.who;
        change.record.comment = note.comment.empty() ? "rollback to " + std::to_string(number) : note.comment;
        return change;
    });
}

} // namespace yfw::device
