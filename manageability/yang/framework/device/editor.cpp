#include "device/editor.h"

#include <algorithm>
#include <vector>

#include "base/error.h"
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
    if (guard)
        guard(before.openconfig.get(), openconfig.get());
    if (yang::is_same(before.openconfig.get(), openconfig.get()) && !touches_state(whole))
        return {before, {}, {}};
    ConfigurationMapper::Mapped mapped = mapper_.map(whole, before, openconfig.get());
    yang::validate_openconfig(schemas_, openconfig.get());
    Change change{{std::move(openconfig), std::move(mapped.native)}, std::move(mapped.edits), {}};
    mapper_.map_as_if_in_force(change.after);
    return change;
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
    const Configuration running = configurations_.running();
    const Change change = changed(edit, running, {});
    if (target_ != nullptr)
        check_target(running, change);
    return difference(running, change.after);
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
    const Configuration running = configurations_.recorded();
    Prepared prepared{yang::print_configuration(running.native.get()), make(running), true};
    prepared.changes = !is_same(running, prepared.change.after);
    if (prepared.changes && target_ != nullptr)
        check_target(running, prepared.change);
    return prepared;
}

bool Editor::needs_restoring() {
    const std::shared_ptr<commits::CommitLog> store = source_.log(false);
    return store != nullptr && in_store([&] {
               return is_marked_applying(source_.store(), store->last_number().value_or(-1) + 1) ||
                      was_restarted(*store);
           });
}

void Editor::finish_interrupted(int64_t last, const Configuration &running) {
    unmark_applying(source_.store(), last); // it was stored
    if (target_ == nullptr || !is_marked_applying(source_.store(), last + 1))
        return;
    target_->restore(running.native.get());
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
        store->commit([&](const std::optional<commits::Commit> &last) -> std::optional<commits::Commit> {
            if (last.has_value()) { // and no other can be made meanwhile
                target_->restore(configurations_.of(*last).native.get());
                unmark_applying(source_.store(), last->number + 1);
            }
            return std::nullopt;
        });
        remember_instance(*store);
    });
}

std::optional<commits::Commit> Editor::made_of(commits::CommitLog &store, Change change,
                                               const Configuration &before, int64_t before_number,
                                               std::optional<Applied> &applied) {
    if (is_same(before, change.after))
        return std::nullopt;
    commits::Commit made = std::move(change.record);
    made.configuration = yang::print_configuration(change.after.native.get());
    made.openconfig = yang::print_configuration(change.after.openconfig.get());
    made.difference = difference(before, change.after);
    if (target_ != nullptr) {
        check_suspended(before, change.after);
        applied = Applied{before.native, change.after.native, before_number + 1};
        mark_applying(source_.store(), applied->number);
        try {
            with_openconfig_errors(change.edits, [&] { put_into_force(store, before, change.after); });
        } catch (...) { // the target has undone what it had written
            unmark_applying(source_.store(), applied->number);
            applied.reset();
            throw;
        }
    }
    return made;
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

std::optional<commits::Commit> Editor::commit_in_turn(const MakeChange &make,
                                                      std::optional<Prepared> prepared) {
    std::optional<Applied> applied; // what the target now runs
    try {
        return in_store([&] {
            const std::shared_ptr<commits::CommitLog> store = source_.log(true);
            ensure_first_commit(*store);
            store->on_step(observer_);
            const auto made = store->commit(
                [&](const std::optional<commits::Commit> &last) -> std::optional<commits::Commit> {
                    const Configuration before = configurations_.of(*last);
                    finish_interrupted(last->number, before);
                    if (!last->openconfig.has_value()) // translated once
                        store->set_openconfig(last->number, yang::print_configuration(before.openconfig.get()));
                    const bool is_prepared = prepared.has_value() && prepared->running == last->configuration;
                    return made_of(*store, is_prepared ? std::move(prepared->change) : make(before), before,
                                   last->number, applied);
                });
            if (applied.has_value())
                unmark_applying(source_.store(), applied->number);
            return made;
        });
    } catch (...) {
        if (applied.has_value()) { // the target accepted it, but the store failed
            target_->apply(applied->after.get(), applied->before.get());
            unmark_applying(source_.store(), applied->number);
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
    return commit([&](const Configuration &running) {
        if (guard)
            guard(running.openconfig.get(), configuration.openconfig.get());
        return Change{configuration, {}, record_of(note, edit)};
    });
}

std::optional<commits::Commit> Editor::edit(const yang::EditNode &edit, const CommitNote &note,
                                            const ChangeGuard &guard) {
    return commit([&](const Configuration &running) {
        Change change = changed(edit, running, guard);
        change.record =
            record_of(note, yang::print_edit(yang::with_deleted_values(edit, running.openconfig.get())));
        return change;
    });
}

Editor::MakeChange Editor::restoring(int64_t number, const CommitNote &note) {
    const std::optional<commits::Commit> target = source_.find_commit(number);
    if (!target.has_value())
        throw Error(ErrorTag::data_missing, source_.store().string(),
                    "there is no commit " + std::to_string(number));
    return [this, target, note](const Configuration &) {
        Change change{configurations_.of(*target), {}, record_of(note, "")};
        if (note.comment.empty())
            change.record.comment = "rollback to " + std::to_string(target->number);
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
