#include "device/datastores.h"

#include <algorithm>
#include <numeric>

#include "base/error.h"
#include "base/utc_time.h"
#include "device/events/edit_records.h"
#include "device/pending_file.h"
#include "yang/configuration_text.h"
#include "yang/edit.h"
#include "yang/tree_text.h"

namespace yfw::device {
namespace {

using Guard = std::lock_guard<std::mutex>;
using What = events::ConfirmedCommit::What;

constexpr std::chrono::seconds retry_interval{10};

CommitNote note_of(const Caller &caller) {
    return {caller.user, caller.comment};
}

// Of a node that may not be read, neither the access nor the path tells whether it exists.
Error denied_access(const Caller &caller, const access::DeniedWrite &denied) {
    const bool is_hidden = !denied.hidden.empty();
    return Error(ErrorTag::access_denied, is_hidden ? denied.hidden : denied.path,
                 caller.user + " may not " + (is_hidden ? "write" : std::string(to_string(denied.access))) +
                     " this node");
}

Error request_error(ErrorTag tag, const std::string &message) {
    return Error(tag, "", message).by_request();
}

// Nothing when it cannot be read: a rollback has none, and an earlier version may have written another form.
std::vector<events::EditRecord> records_of(const yang::Schemas &schemas, const commits::Commit &commit) {
    const std::string without_operation = " nc:operation=\"none\""; // which no client can write
    std::string edit = commit.edit;
    for (size_t at; (at = edit.find(without_operation)) != std::string::npos;)
        edit.erase(at, without_operation.size());
    if (edit.empty())
        return {};
    try {
        return events::edit_records(yang::parse_edit(schemas, edit, yang::Operation::none));
    } catch (const Error &) {
        return {};
    }
}

} // namespace

void Datastores::drop_candidate() {
    candidate_.reset();
    candidate_edits_.clear();
    candidate_records_.clear();
    candidate_editors_.clear();
}

Configuration Datastores::candidate_or_running() {
    return candidate_.has_value() ? *candidate_ : device_.running_configuration();
}

std::optional<Configuration> Datastores::candidate() {
    const Guard guard(mutex_);
    return candidate_;
}

host::SettledAnswer Datastores::answer(Datastore datastore, const host::ReadRequest &request) {
    const std::optional<Configuration> edited = datastore == Datastore::candidate ? candidate() : std::nullopt;
    return edited.has_value() ? device_.answer(request, *edited) : device_.answer(request);
}

void Datastores::refuse_if_locked(const Caller &caller, Datastore datastore) const {
    const auto lock = locks_.find(datastore);
    if (lock != locks_.end() && lock->second.session != caller.session)
        throw request_error(ErrorTag::in_use,
                            "the datastore is locked by session " + std::to_string(lock->second.session));
}

// Access control compares what the client sees before and after the edit, not what it requested (RFC 8341
// section 3.2.3 and following).
ChangeGuard Datastores::guard_of(const Caller &caller) const {
    if (caller.rules == nullptr)
        return {};
    return [&caller](const lyd_node *before, const lyd_node *after) {
        const auto denied = caller.rules->denied_write(before, after);
        if (!denied.has_value())
            return;
        caller.rules->denials().data_writes++;
        throw denied_access(caller, *denied);
    };
}

void Datastores::refuse_creation(const Caller &caller, const Error &error, const lyd_node *before) {
    const std::string path = "/" + std::string(before->schema->module->name) + ":" + error.path().substr(1);
    lyd_node *found = nullptr;
    if (lyd_find_path(before, path.c_str(), 0, &found) != LY_SUCCESS)
        ly_err_clean(before->schema->module->ctx, nullptr);
    const lyd_node *hidden = found != nullptr ? caller.rules->hidden(found) : before;
    if (hidden == nullptr)
        throw error;
    caller.rules->denials().data_writes++;
    throw denied_access(caller,
                        {path, access::Access::create, found != nullptr ? yang::path_of(hidden) : path});
}

void Datastores::edit(const Caller &caller, Datastore target, const yang::EditNode &edit, bool only_test) {
    const Guard guard(mutex_);
    refuse_if_locked(caller, target);
    edit_discreetly(caller, target, edit, only_test);
}

void Datastores::edit_discreetly(const Caller &caller, Datastore target, const yang::EditNode &edit,
                                 bool only_test) {
    try {
        edit_locked(caller, target, edit, only_test);
    } catch (const Error &error) {
        if (caller.rules == nullptr || error.tag() != ErrorTag::data_exists)
            throw;
        const Configuration before =
            target == Datastore::candidate ? candidate_or_running() : device_.running_configuration();
        refuse_creation(caller, error, before.openconfig.get());
    }
}

access::Nacm::Change Datastores::changed_rules(const Caller &caller, const access::Nacm &rules,
                                               const yang::EditNode &edit) const {
    try {
        return rules.changed_by(edit, guard_of(caller));
    } catch (const Error &error) {
        if (caller.rules == nullptr || error.tag() != ErrorTag::data_exists)
            throw;
        refuse_creation(caller, error, rules.tree(edit.node->module->ctx).get());
    }
}

void Datastores::edit_with_rules(const Caller &caller, Datastore target, access::Nacm &rules,
                                 const Edits &edits, bool only_test) {
    const Guard guard(mutex_);
    refuse_if_locked(caller, target);
    access::Nacm::Change change = changed_rules(caller, rules, *edits.rules);
    if (change.has_effect() && target != Datastore::running)
        throw Error(ErrorTag::operation_not_supported, "", "access rules can only be edited in running");
    const bool has_effect = change.has_effect() && !only_test;
    if (has_effect)
        rules.write(change);
    const int64_t back_to = std::max<int64_t>(device_.last_commit_number(), 0);
    if (edits.openconfig.has_value())
        edit_discreetly(caller, target, *edits.openconfig, only_test);
    if (!has_effect)
        return;
    put_rules_into_force(caller, rules, std::move(change), back_to);
    events_.tell(events::ConfigurationChange{caller.actor(), events::edit_records(*edits.rules)});
}

// If that fails, takes the rest of the edit back.
void Datastores::put_rules_into_force(const Caller &caller, access::Nacm &rules, access::Nacm::Change change,
                                      int64_t back_to) {
    try {
        rules.put_into_force(std::move(change));
    } catch (...) {
        if (device_.last_commit_number() > back_to)
            tell_change(device_.rollback(back_to, {caller.user, "the access rules cannot be written"}),
                        {caller.actor(), {}});
        throw;
    }
}

void Datastores::edit_locked(const Caller &caller, Datastore target, const yang::EditNode &edit,
                             bool only_test) {
    if (target == Datastore::running && !only_test) {
        refuse_during_confirmation(caller);
        tell_change(device_.edit(edit, note_of(caller), guard_of(caller)),
                    {caller.actor(), events::edit_records(edit)});
        return;
    }
    const Configuration before =
        target == Datastore::candidate ? candidate_or_running() : device_.running_configuration();
    Configuration after = device_.apply(edit, before, guard_of(caller));
    if (only_test)
        return device_.check_with_device(after);
    candidate_ = std::move(after);
    candidate_edits_.push_back(yang::print_edit(edit));
    const std::vector<events::EditRecord> records = events::edit_records(edit);
    candidate_records_.insert(candidate_records_.end(), records.begin(), records.end());
    candidate_editors_.insert(caller.session);
    clean_up_after(caller);
}

void Datastores::validate(Datastore datastore) {
    const std::optional<Configuration> edited = datastore == Datastore::candidate ? candidate() : std::nullopt;
    device_.validate(edited.has_value() ? *edited : device_.running_configuration());
}

void Datastores::validate(const yang::EditNode &edit) {
    const Guard guard(mutex_);
    device_.check_with_device(device_.apply(edit, device_.running_configuration()));
}

void Datastores::copy(const Caller &caller, Datastore from, Datastore to) {
    if (from == to)
        throw request_error(ErrorTag::invalid_value, "the source and the target are the same");
    if (to == Datastore::running)
        return commit(caller, std::nullopt, std::nullopt);
    const Guard guard(mutex_);
    refuse_if_locked(caller, to);
    if (const ChangeGuard may = guard_of(caller); may && candidate_.has_value())
        may(candidate_->openconfig.get(), device_.running_configuration().openconfig.get());
    drop_candidate();
}

void Datastores::discard(const Caller &caller) {
    const Guard guard(mutex_);
    refuse_if_locked(caller, Datastore::candidate);
    drop_candidate();
}

// ---- commits -------------------------------------------------------------------------------------------

void Datastores::refuse_other_confirmer(const Caller &caller,
                                        const std::optional<std::string> &persist_id) const {
    if (persist_id.has_value() && (!pending_.has_value() || pending_->persist != persist_id))
        throw request_error(ErrorTag::invalid_value, "no unconfirmed commit has this persist-id");
    if (pending_.has_value() && pending_->persist.has_value() && !persist_id.has_value())
        throw request_error(ErrorTag::invalid_value, "the unconfirmed commit requires its persist-id");
    if (pending_.has_value() && !pending_->persist.has_value())
        refuse_during_confirmation(caller);
}

// Rolling the commit back would take the edit with it.
void Datastores::refuse_during_confirmation(const Caller &caller) const {
    if (pending_.has_value() && pending_->actor.session != caller.session)
        throw request_error(ErrorTag::in_use,
                            (pending_->actor.session != 0 ? "session " + std::to_string(pending_->actor.session)
                                                          : pending_->actor.user) +
                                " has an unconfirmed commit");
}

void Datastores::commit(const Caller &caller, const std::optional<Confirmation> &confirmed,
                        const std::optional<std::string> &persist_id) {
    const Guard guard(mutex_);
    refuse_if_locked(caller, Datastore::running);
    refuse_if_locked(caller, Datastore::candidate);
    refuse_other_confirmer(caller, persist_id);
    // The very first commit stores the previous configuration as number 0.
    const int64_t before =
        pending_.has_value() ? pending_->back_to : std::max<int64_t>(device_.last_commit_number(), 0);
    commit_prepared(caller, confirmed, before, [&] { commit_candidate(caller); });
    drop_candidate();
    if (confirmed.has_value()) {
        wait_for_confirmation(caller, *confirmed, before);
        return clean_up_after(caller);
    }
    if (pending_.has_value())
        tell(caller.actor(), What::complete);
    end_pending();
}

void Datastores::commit_prepared(const Caller &caller, const std::optional<Confirmation> &confirmed,
                                 int64_t back_to, const std::function<void()> &commit) {
    if (confirmed.has_value())
        hold_store(caller.actor());
    try {
        if (confirmed.has_value())
            remember_pending(device_.store(), back_to);
        commit();
    } catch (...) {
        if (!pending_.has_value())
            forget_pending(device_.store());
        if (confirmed.has_value())
            release_store();
        throw;
    }
}

void Datastores::edit_running(const Caller &caller, const EditMaker &make,
                              const std::optional<Confirmation> &confirmed) {
    const Guard guard(mutex_);
    if (const auto lock = locks_.find(Datastore::running); lock != locks_.end())
        throw request_error(ErrorTag::in_use, "the configuration is locked by session " +
                                                  std::to_string(lock->second.session) + " of " +
                                                  lock->second.user);
    if (pending_.has_value())
        throw request_error(ErrorTag::in_use, "a commit of " + pending_->actor.user + " awaits confirmation");
    const int64_t before = std::max<int64_t>(device_.last_commit_number(), 0);
    commit_prepared(caller, confirmed, before, [&] {
        yang::EditNode edit;
        const EditMaker remembered = [&](const lyd_node *running) { return edit = make(running); };
        const std::optional<commits::Commit> commit =
            device_.edit(remembered, note_of(caller), guard_of(caller));
        tell_change(commit, {caller.actor(), events::edit_records(edit)});
    });
    if (confirmed.has_value())
        wait_for_confirmation(caller, *confirmed, before);
}

void Datastores::commit_candidate(const Caller &caller) {
    if (!candidate_.has_value())
        return;
    const std::string edit = std::accumulate(candidate_edits_.begin(), candidate_edits_.end(), std::string());
    tell_change(device_.commit(*candidate_, edit, note_of(caller), guard_of(caller)),
                {caller.actor(), candidate_records_});
}

void Datastores::wait_for_confirmation(const Caller &caller, const Confirmation &confirmed, int64_t back_to) {
    tell(caller.actor(), pending_.has_value() ? What::extend : What::start, confirmed.timeout);
    pending_ = Pending{back_to, device_.last_commit_number(), caller.actor(), false, confirmed.persist};
    deadline_ = std::chrono::steady_clock::now() + confirmed.timeout;
}

void Datastores::cancel_commit(const Caller &caller, const std::optional<std::string> &persist_id) {
    const Guard guard(mutex_);
    if (!pending_.has_value())
        throw request_error(ErrorTag::operation_failed, "there is no unconfirmed commit");
    refuse_if_locked(caller, Datastore::running);
    refuse_other_confirmer(caller, persist_id);
    refuse_others_commits();
    take_back(caller.actor());
    tell(caller.actor(), What::cancel);
}

void Datastores::confirm(const Caller &caller, const std::string &persist_id) {
    const Guard guard(mutex_);
    refuse_if_locked(caller, Datastore::running);
    refuse_other_confirmer(caller, persist_id);
    tell(caller.actor(), What::complete);
    end_pending();
}

void Datastores::extend(const Caller &caller, const std::string &persist_id, std::chrono::seconds timeout) {
    const Guard guard(mutex_);
    refuse_if_locked(caller, Datastore::running);
    refuse_other_confirmer(caller, persist_id);
    deadline_ = std::chrono::steady_clock::now() + timeout;
    tell(caller.actor(), What::extend, timeout);
}

void Datastores::tell(const events::Actor &actor, What what, std::optional<std::chrono::seconds> timeout) {
    events_.tell(events::ConfirmedCommit{actor, what, timeout});
}

// They cannot, unless they do not know the store's lock.
void Datastores::refuse_others_commits() const {
    const int64_t last = device_.last_commit_number();
    if (last > pending_->last)
        throw Error(ErrorTag::operation_failed, "",
                    "another process has made commit " + std::to_string(last) + " after the unconfirmed one, " +
                        std::to_string(pending_->last) + ", and would lose it");
}

void Datastores::take_back(const events::Actor &actor) {
    try {
        refuse_others_commits();
    } catch (const Error &) {
        end_pending();
        throw;
    }
    const CommitNote note{actor.user, "not confirmed: back to " + std::to_string(pending_->back_to)};
    const bool is_there = pending_->back_to < device_.last_commit_number(); // it may have changed nothing
    if (is_there)
        tell_change(device_.rollback(pending_->back_to, note), {actor, {}});
    end_pending();
}

void Datastores::end_pending() {
    pending_.reset();
    deadline_ = no_deadline;
    forget_pending(device_.store());
    release_store();
}

std::optional<std::chrono::steady_clock::time_point> Datastores::deadline() const {
    const auto deadline = deadline_.load();
    return deadline != no_deadline ? std::optional(deadline) : std::nullopt;
}

void Datastores::take_back_when_due() {
    const Guard guard(mutex_);
    if (!pending_.has_value() || deadline_.load() > std::chrono::steady_clock::now())
        return;
    deadline_ = std::chrono::steady_clock::now() + retry_interval; // in case the device does not accept it now
    take_back({});
    tell({}, What::timeout);
}

void Datastores::take_back_unconfirmed() {
    const Guard guard(mutex_);
    if (pending_.has_value())
        take_back({});
}

// ---- other processes -----------------------------------------------------------------------------------

void Datastores::start() {
    const Guard guard(mutex_);
    told_ = device_.last_commit_number();
}

void Datastores::tell_of_others_up_to(int64_t number) {
    for (int64_t next = std::max<int64_t>(told_ + 1, 1); next <= number; next++)
        if (const std::optional<commits::Commit> commit = device_.find_commit(next))
            events_.tell(events::ConfigurationChange{{0, commit->who}, records_of(device_.schemas(), *commit)});
    told_ = number;
}

void Datastores::tell_of_others_commits() {
    const Guard guard(mutex_);
    const int64_t last = device_.last_commit_number();
    if (last < told_) // another store is in its place
        events_.tell(events::ConfigurationChange{});
    tell_of_others_up_to(last);
}

void Datastores::tell_change(const std::optional<commits::Commit> &made,
                             const events::ConfigurationChange &change) {
    if (!made.has_value())
        return;
    tell_of_others_up_to(made->number - 1);
    told_ = made->number;
    if (pending_.has_value())
        pending_->last = made->number;
    events_.tell(change);
}

StoreHolds Datastores::holds() const {
    StoreHolds holds;
    const auto lock = locks_.find(Datastore::running);
    if (lock != locks_.end())
        holds.locked = StoreHolder{lock->second.session, lock->second.user};
    if (pending_.has_value())
        holds.unconfirmed = StoreHolder{pending_->actor.session, pending_->actor.user};
    return holds;
}

void Datastores::hold_store(const std::optional<events::Actor> &unconfirmed) {
    StoreHolds now = holds();
    if (unconfirmed.has_value())
        now.unconfirmed = StoreHolder{unconfirmed->session, unconfirmed->user};
    device_.store_lock().publish(now, false);
}

void Datastores::release_store() {
    device_.store_lock().publish(holds(), true);
}

// ---- locks ---------------------------------------------------------------------------------------------

void Datastores::lock(const Caller &caller, Datastore datastore) {
    const Guard guard(mutex_);
    const auto held = locks_.find(datastore);
    if (held != locks_.end())
        throw request_error(ErrorTag::lock_denied, "the datastore is already locked")
            .about(std::to_string(held->second.session));
    if (datastore == Datastore::candidate && candidate_.has_value())
        throw request_error(ErrorTag::lock_denied, "the candidate has uncommitted changes").about("0");
    if (datastore == Datastore::running && pending_.has_value() && pending_->actor.session != caller.session)
        throw request_error(ErrorTag::lock_denied, "there is an unconfirmed commit")
            .about(std::to_string(pending_->session_is_gone ? 0 : pending_->actor.session));
    locks_[datastore] = {caller.session, caller.user, utc_now()};
    try {
        if (datastore == Datastore::running)
            hold_store(std::nullopt);
    } catch (const Error &error) {
        locks_.erase(datastore);
        throw request_error(ErrorTag::lock_denied, error.what()).about("0");
    }
    clean_up_after(caller);
}

void Datastores::unlock(const Caller &caller, Datastore datastore) {
    const Guard guard(mutex_);
    const auto held = locks_.find(datastore);
    if (held == locks_.end() || held->second.session != caller.session)
        throw request_error(ErrorTag::operation_failed, "the session does not hold this lock");
    locks_.erase(held);
    if (datastore == Datastore::running)
        release_store();
    if (datastore == Datastore::candidate) // RFC 6241 section 8.3.5.2
        drop_candidate();
}

std::optional<Datastores::Lock> Datastores::lock_of(Datastore datastore) {
    const Guard guard(mutex_);
    const auto held = locks_.find(datastore);
    return held != locks_.end() ? std::optional(held->second) : std::nullopt;
}

void Datastores::end_session(uint32_t session) {
    const Guard guard(mutex_);
    forget(session);
}

void Datastores::clean_up_after(const Caller &caller) {
    if (caller.is_gone != nullptr && caller.is_gone->load())
        forget(caller.session);
}

void Datastores::forget(uint32_t session) {
    const auto candidate_lock = locks_.find(Datastore::candidate);
    const bool held_candidate = candidate_lock != locks_.end() && candidate_lock->second.session == session;
    if (std::erase_if(locks_, [&](const auto &lock) { return lock.second.session == session; }) > 0)
        release_store();
    // Other sessions may count on what they have edited. Without any, nobody is left to commit it.
    const bool was_last_editor = candidate_editors_.erase(session) > 0 && candidate_editors_.empty();
    if (held_candidate || was_last_editor)
        drop_candidate();
    if (!pending_.has_value() || pending_->actor.session != session)
        return;
    pending_->session_is_gone = true;
    if (pending_->persist.has_value())
        return;
    const events::Actor actor = pending_->actor;
    take_back({});
    tell(actor, What::cancel);
}

} // namespace yfw::device
