#include "device/editor.h"

#include <algorithm>
#include <vector>

#include "base/error.h"
#include "device/native_edits.h"
#include "device/store_errors.h"
#include "yang/configuration_text.h"

namespace yfw::device {
namespace {

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

Editor::Change Editor::changed(const yang::EditNode &edit, const lyd_node *running) {
    yang::EditNode whole = edit;
    yang::drop_deleted_content(whole);
    const host::Answer shown = engine_.read(
        {host::Content::config, {{{schemas_.openconfig_root(), {}}}}, std::nullopt}, {yang::borrowed(running)});
    yang::check_existence(whole, shown.data.get());
    Change change;
    change.edits = engine_.map_edit(whole, yang::borrowed(running));
    change.after = yang::copy_configuration(running);
    apply_native_edits(schemas_, change.edits, change.after);
    validate_configuration(schemas_, change.after);
    return change;
}

std::string Editor::try_edit(const yang::EditNode &edit) {
    yang::DataTree data = source_.read(schemas_.context());
    const yang::DataTree running = yang::take_configuration(data);
    const Change change = changed(edit, running.get());
    if (source_.target() != nullptr)
        in_openconfig_terms(change.edits, [&] { source_.target()->check(running.get(), change.after.get()); });
    return yang::configuration_difference(running.get(), change.after.get());
}

void Editor::ensure_first_commit(commits::CommitLog &store) {
    if (store.last().has_value())
        return;
    const yang::DataTree recorded = source_.recorded_configuration();
    store.commit([&](const std::optional<commits::Commit> &last) -> std::optional<commits::Commit> {
        if (last.has_value())
            return std::nullopt; // another process was first
        commits::Commit first;
        first.comment = "the configuration before the first commit";
        first.configuration = yang::print_configuration(recorded.get());
        return first;
    });
}

// A first edit that is refused, or changes nothing, makes no store: until one is accepted, the device's own
// configuration holds.
std::optional<Editor::Prepared> Editor::prepare_first(const MakeChange &make) {
    if (std::filesystem::exists(source_.store()))
        return std::nullopt;
    const yang::DataTree running = source_.recorded_configuration();
    return Prepared{yang::print_configuration(running.get()), make(running.get())};
}

std::optional<commits::Commit> Editor::commit(const MakeChange &make) {
    yang::DataTree before;
    yang::DataTree after;
    bool applied = false; // the target runs `after`
    try {
        return in_store([&] {
            std::optional<Prepared> prepared = prepare_first(make);
            if (prepared.has_value() &&
                yang::print_configuration(prepared->change.after.get()) == prepared->running)
                return std::optional<commits::Commit>();
            commits::CommitLog store(source_.store(), true);
            source_.hold_store();
            ensure_first_commit(store);
            store.on_step(observer_);
            return store.commit(
                [&](const std::optional<commits::Commit> &last) -> std::optional<commits::Commit> {
                    before = yang::parse_configuration(schemas_, last->configuration, source_.store().string());
                    const bool is_prepared = prepared.has_value() && prepared->running == last->configuration;
                    Change change = is_prepared ? std::move(prepared->change) : make(before.get());
                    commits::Commit made = std::move(change.record);
                    made.difference = yang::configuration_difference(before.get(), change.after.get());
                    made.configuration =
                        change.text.empty() ? yang::print_configuration(change.after.get()) : change.text;
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

yang::DataTree Editor::apply(const yang::EditNode &edit, const lyd_node *running) {
    return changed(edit, running).after;
}

std::optional<commits::Commit> Editor::commit_configuration(const lyd_node *configuration,
                                                            const std::string &edit, const CommitNote &note,
                                                            const ChangeGuard &guard) {
    return commit([&](const lyd_node *running) {
        if (guard)
            guard(running, configuration);
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
        Change change = changed(edit, running);
        if (guard)
            guard(running, change.after.get());
        change.record.who = note.who;
        change.record.comment = note.comment;
        change.record.edit = yang::print_edit(edit);
        return change;
    });
}

std::optional<commits::Commit> Editor::rollback(int64_t number, const CommitNote &note) {
    const bool exists = std::filesystem::exists(source_.store());
    const std::optional<commits::Commit> target = in_store(
        [&] { return exists ? commits::CommitLog(source_.store(), false).find(number) : std::nullopt; });
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
