#include "device/editor.h"

#include <algorithm>
#include <vector>

#include "base/error.h"
#include "base/interruption.h"
#include "device/applying_mark.h"
#include "device/openconfig_terms.h"
#include "device/pending_file.h"
#include "device/store_errors.h"
#include "yang/comparison.h"
#include "yang/configuration_text.h"
#include "yang/edit_apply.h"

namespace yfw::device {
namespace {

// The mapping refuses it.
bool touches_state(const yang::EditNode &edit) {
    return (edit.node->flags & LYS_CONFIG_R) != 0 ||
           std::any_of(edit.children.begin(), edit.children.end(), touches_state);
}

bool is_same(const Configuration &a, const Configuration &b) {
    return yang::is_same(a.openconfig.get(), b.openconfig.get()) &&
           yang::is_same(a.native.get(), b.native.get());
}

// In native terms, or in OpenConfig ones where the native configuration stays the same: a setting that has no
// effect for now.
std::string difference(const Configuration &before, const Configuration &after) {
    std::string native = yang::configuration_difference(before.native.get(), after.native.get());
    return !native.empty() ? native
                           : yang::configuration_difference(before.openconfig.get(), after.openconfig.get());
}

commits::Commit record_of(const CommitNote &note, const std::string &edit) {
    commits::Commit record;
    record.who = note.who;
    record.comment = note.comment;
    record.edit = edit;
    return record;
}

} // namespace

Editor::Change Editor::changed(const yang::EditNode &edit, const Configuration &before,
                               const ChangeGuard &guard) {
    yang::EditNode whole = edit;
    yang::drop_deleted_content(whole);
    yang::check_existence(whole, before.openconfig.get());
    yang::DataTree openconfig = yang::copy_configuration(before.openconfig.get());
    yang::apply_edit(whole, openconfig);
    end_if_interrupted();
    if (guard)
        guard(before.openconfig.get(), openconfig.get());
    if (yang::is_same(before.openconfig.get(), openconfig.get()) && !touches_state(whole))
        return {before, before, {}};
    ConfigurationMapper::Mapped mapped = mapper_.map(whole, before, openconfig.get());
    yang::validate_openconfig(schemas_, openconfig.get());
    Change change{before, {std::move(openconfig), std::move(mapped.native)}, std::move(mapped.edits)};
    mapper_.map_as_if_in_force(change.after);
    end_if_interrupted();
    return change;
}

std::optional<Editor::Change> Editor::changed_in_part(const yang::EditNode &edit, Running &running,
                                                      const ChangeGuard &guard) {
    const std::optional<EntryNames> names = entries_.named_in(edit);
    std::optional<Part> part = names.has_value() ? running.part(entries_, *names) : std::nullopt;
    if (!part.has_value())
        return std::nullopt;
    bool is_denied = false;
    const ChangeGuard noted = [&](const lyd_node *before, const lyd_node *after) {
        is_denied = true;
        guard(before, after);
        is_denied = false;
    };
    try {
        Change change = changed(edit, part->configuration, guard ? noted : guard);
        if (!mapper_.concerns_only_part(change.before, change.after))
            return std::nullopt;
        change.part = std::move(part);
        return change;
    } catch (const Error &) {
        if (is_denied)
            throw;
        return std::nullopt;
    }
}

// A target compares whole configurations.
Editor::Change Editor::edited(const yang::EditNode &edit, Running &running, const ChangeGuard &guard) {
    std::optional<Change> change = target_ == nullptr ? changed_in_part(edit, running, guard) : std::nullopt;
    return change.has_value() ? std::move(*change) : changed(edit, running.whole(), guard);
}

void Editor::check_target(const Configuration &before, const Change &change) {
    with_openconfig_errors(change.edits,
                           [&] { target_->check(before.native.get(), change.after.native.get()); });
    check_suspended(before, change.after);
}

// A setting that is refused only when it comes into force would be found by somebody else, much later.
void Editor::check_suspended(const Configuration &before, const Configuration &after) {
    const std::optional<ConfigurationMapper::Mapped> result = mapper_.map_as_if_in_force(after);
    if (!result.has_value())
        return;
    std::optional<ConfigurationMapper::Mapped> from;
    try {
        from = mapper_.map_as_if_in_force(before);
    } catch (const Error &) { // an earlier version has accepted it; the change may be what mends it
    }
    with_openconfig_errors(result->edits, [&] {
        target_->check(from.has_value() ? from->native.get() : before.native.get(), result->native.get());
    });
}

std::string Editor::try_edit(const yang::EditNode &edit) {
    const std::optional<int64_t> last = source_.last_number();
    Running running = last.has_value() ? Running(configurations_, *last) : Running(configurations_.recorded());
    const Change change = edited(edit, running, {});
    if (target_ != nullptr)
        check_target(change.before, change);
    return difference(change.before, change.after);
}

void Editor::check_with_device(const Configuration &configuration) {
    if (target_ != nullptr) {
        const Configuration running = configurations_.running();
        check_target(running, {running, configuration, {}});
    }
}

void Editor::ensure_first_commit(commits::CommitLog &store) {
    if (store.last_number().has_value())
        return;
    const Configuration recorded = configurations_.recorded();
    store.commit([&](const std::optional<commits::Commit> &last) -> std::optional<commits::Commit> {
        if (last.has_value())
            return std::nullopt; // another process was faster
        commits::Commit first;
        first.comment = "the configuration before the first commit";
        first.configuration = yang::print_configuration(recorded.native.get());
        first.openconfig = yang::print_configuration(recorded.openconfig.get());
        return first;
    });
}

// A first edit that is rejected, or changes nothing, creates no store: until one is accepted, the device's own
// configuration applies.
std::optional<Editor::Prepared> Editor::prepare_first(const MakeChange &make) {
    if (source_.log(false) != nullptr)
        return std::nullopt;
    Running running(configurations_.recorded());
    Prepared prepared{yang::print_configuration(running.whole().native.get()), make(running), true};
    prepared.changes = !is_same(prepared.change.before, prepared.change.after);
    if (prepared.changes && target_ != nullptr)
        check_target(prepared.change.before, prepared.change);
    return prepared;
}

bool Editor::needs_restoring() {
    const std::shared_ptr<commits::CommitLog> store = source_.log(false);
    return store != nullptr && in_store([&] {
               return is_marked_applying(source_.store(), store->last_number().value_or(-1) + 1) ||
                      was_restarted(*store);
           });
}

// Only commits to a target are marked.
void Editor::finish_interrupted(int64_t last, Running &running) {
    if (target_ == nullptr)
        return;
    unmark_applying(source_.store(), last); // it was stored
    if (!is_marked_applying(source_.store(), last + 1))
        return;
    target_->restore(running.whole().native.get());
    unmark_applying(source_.store(), last + 1);
}

bool Editor::was_restarted(const commits::CommitLog &store) {
    const std::optional<std::string> instance = target_->instance();
    if (!instance.has_value()) // as far as can be told
        return false;
    const std::optional<std::string> applied_to = store.applied_to();
    if (!applied_to.has_value()) // a store from before this was remembered, or a new one
        return store.last_number().value_or(0) > 0;
    return applied_to != instance;
}

// A device that was restarted has lost the commits before this one. Restoring checks nothing.
void Editor::put_into_force(commits::CommitLog &store, const Configuration &before,
                            const Configuration &after) {
    if (was_restarted(store)) {
        target_->check(before.native.get(), after.native.get());
        target_->restore(after.native.get());
    } else {
        target_->apply(before.native.get(), after.native.get());
    }
    remember_instance(store);
}

void Editor::remember_instance(commits::CommitLog &store) {
    const std::optional<std::string> instance = target_->instance();
    if (instance.has_value() && store.applied_to() != instance)
        store.set_applied_to(*instance);
}

void Editor::restore() {
    const std::shared_ptr<commits::CommitLog> store = source_.log(false);
    if (store == nullptr)
        return;
    in_store([&] {
        store->commit_after([&](int64_t last) -> std::optional<commits::Commit> {
            if (last >= 0) { // and no other can be made meanwhile
                target_->restore(configurations_.of(last).native.get());
                unmark_applying(source_.store(), last + 1);
            }
            return std::nullopt;
        });
        remember_instance(*store);
    });
}

void Editor::apply_to_target(commits::CommitLog &store, const Change &change, Made &made) {
    check_suspended(change.before, change.after);
    made.applied = {change.before.native, change.after.native};
    mark_applying(source_.store(), made.number);
    try {
        with_openconfig_errors(change.edits, [&] { put_into_force(store, change.before, change.after); });
    } catch (...) { // the target has undone what it had written
        unmark_applying(source_.store(), made.number);
        made.applied.reset();
        throw;
    }
}

std::optional<commits::Commit> Editor::made_of(commits::CommitLog &store, Change change, int64_t last,
                                               Made &made) {
    if (is_same(change.before, change.after))
        return std::nullopt;
    commits::Commit commit = std::move(change.record);
    commit.difference = difference(change.before, change.after);
    made.number = last + 1;
    if (change.part.has_value())
        made.written = writer_.write_part(last, *change.part, change.after, commit);
    else
        writer_.write_whole(change.after, commit);
    if (target_ != nullptr)
        apply_to_target(store, change, made);
    return commit;
}

std::optional<commits::Commit> Editor::commit(const MakeChange &make) {
    std::optional<Prepared> prepared = in_store([&] { return prepare_first(make); });
    if (prepared.has_value() && !prepared->changes)
        return std::nullopt;
    const StoreLock::Turn turn = lock_.take_turn();
    if (turn.is_between_servers)
        take_back_left_behind();
    return commit_in_turn(make, std::move(prepared));
}

Editor::Change Editor::change_after(commits::CommitLog &store, int64_t last, const MakeChange &make,
                                    std::optional<Prepared> &prepared) {
    Running running(configurations_, last);
    finish_interrupted(last, running);
    configurations_.of(last); // reads it, if that is still to be done
    if (!source_.kept().size(last).has_value())
        store.set_openconfig(last,
                             yang::print_configuration(running.whole().openconfig.get())); // translated once
    if (prepared.has_value() && prepared->running == yang::print_configuration(running.whole().native.get()))
        return std::move(prepared->change);
    return make(running);
}

std::optional<commits::Commit> Editor::commit_in_turn(const MakeChange &make,
                                                      std::optional<Prepared> prepared) {
    Made made;
    try {
        return in_store([&] {
            const std::shared_ptr<commits::CommitLog> store = source_.log(true);
            ensure_first_commit(*store);
            store->on_step(observer_);
            std::optional<commits::Commit> commit = store->commit_after([&](int64_t last) {
                return made_of(*store, change_after(*store, last, make, prepared), last, made);
            });
            if (made.applied.has_value())
                unmark_applying(source_.store(), made.number);
            if (commit.has_value())
                writer_.stored(made.number - 1, std::move(made.written));
            return commit;
        });
    } catch (...) {
        if (made.applied.has_value()) { // the target accepted it, but the store failed
            target_->apply(made.applied->after.get(), made.applied->before.get());
            unmark_applying(source_.store(), made.number);
        }
        throw;
    }
}

Configuration Editor::apply(const yang::EditNode &edit, const Configuration &before, const ChangeGuard &guard) {
    return changed(edit, before, guard).after;
}

std::optional<commits::Commit> Editor::commit_configuration(const Configuration &configuration,
                                                            const std::string &edit, const CommitNote &note,
                                                            const ChangeGuard &guard) {
    return commit([&](Running &running) {
        if (guard)
            guard(running.whole().openconfig.get(), configuration.openconfig.get());
        return Change{running.whole(), configuration, {}, record_of(note, edit)};
    });
}

Editor::Change Editor::recorded_edit(const yang::EditNode &edit, Running &running, const CommitNote &note,
                                     const ChangeGuard &guard) {
    Change change = edited(edit, running, guard);
    change.record =
        record_of(note, yang::print_edit(yang::with_deleted_values(edit, change.before.openconfig.get())));
    return change;
}

std::optional<commits::Commit> Editor::edit(const yang::EditNode &edit, const CommitNote &note,
                                            const ChangeGuard &guard) {
    return commit([&](Running &running) { return recorded_edit(edit, running, note, guard); });
}

std::optional<commits::Commit> Editor::edit(const EditMaker &make, const CommitNote &note,
                                            const ChangeGuard &guard) {
    return commit([&](Running &running) {
        return recorded_edit(make(running.whole().openconfig.get()), running, note, guard);
    });
}

Editor::MakeChange Editor::restoring(int64_t number, const CommitNote &note) {
    const Configuration target = configurations_.of(number);
    return [number, target, note](Running &running) {
        Change change{running.whole(), target, {}, record_of(note, "")};
        if (note.comment.empty())
            change.record.comment = "rollback to " + std::to_string(number);
        return change;
    };
}

std::optional<commits::Commit> Editor::rollback(int64_t number, const CommitNote &note) {
    return commit(restoring(number, note));
}

void Editor::take_back_left_behind() {
    const std::optional<int64_t> back_to = remembered_pending(source_.store());
    if (!back_to.has_value())
        return;
    const std::string comment = "not confirmed when the server ended: back to " + std::to_string(*back_to);
    if (*back_to < source_.last_number().value_or(-1))
        commit_in_turn(restoring(*back_to, {"", comment}), std::nullopt);
    forget_pending(source_.store());
}

} // namespace yfw::device
