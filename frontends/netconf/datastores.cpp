#include "frontends/netconf/datastores.h"

#include <algorithm>
#include <fstream>
#include <numeric>

#include <fcntl.h>
#include <unistd.h>

#include "base/utc_time.h"
#include "device/native_edits.h"
#include "frontends/netconf/rpc_error.h"
#include "yang/configuration_text.h"

namespace yfw::netconf {
namespace {

using Guard = std::lock_guard<std::mutex>;

constexpr std::chrono::seconds retry_interval{10};

device::CommitNote note_of(const Caller &caller) {
    return {caller.user, "NETCONF session " + std::to_string(caller.session)};
}

} // namespace

Datastores::Datastores(const yang::Schemas &schemas, device::ConfiguredSource &source, host::Engine &engine,
                       events::EventStream &events)
    : schemas_(schemas), source_(source), engine_(engine), editor_(schemas, source, engine), events_(events) {}

yang::DataTree Datastores::running() const {
    return source_.running_configuration();
}

void Datastores::drop_candidate() {
    candidate_.reset();
    candidate_edits_.clear();
    candidate_records_.clear();
    candidate_editor_ = 0;
}

const lyd_node *Datastores::candidate_or(const yang::DataTree &running) const {
    return candidate_.has_value() ? candidate_->get() : running.get();
}

sources::Snapshot Datastores::read(Datastore datastore) {
    if (datastore == Datastore::running)
        return source_.snapshot(schemas_.context());
    {
        const Guard guard(mutex_);
        if (candidate_.has_value())
            return {nullptr, *candidate_};
    }
    return source_.snapshot(schemas_.context());
}

void Datastores::refuse_if_locked(const Caller &caller, Datastore datastore) const {
    const auto lock = locks_.find(datastore);
    if (lock != locks_.end() && lock->second.session != caller.session)
        throw RpcError("protocol", "in-use",
                       "the datastore is locked by session " + std::to_string(lock->second.session));
}

// What a client changes is told by what it sees before and after, and not by what it asks for (RFC 8341
// section 3.2.3 and following).
void Datastores::refuse_denied(const Caller &caller, const lyd_node *before, const lyd_node *after) const {
    const auto seen = [this](const lyd_node *native) {
        host::ReadRequest request;
        request.content = host::Content::config;
        request.selection = host::Selection{schemas_.openconfig_root(), std::nullopt, {}, false};
        return engine_.read(request, {yang::borrowed(native)}).data;
    };
    const auto denied = caller.rules->denied_write(seen(before).get(), seen(after).get());
    if (denied.has_value())
        throw RpcError("application", "access-denied",
                       caller.user + " may not " + std::string(to_string(denied->access)) + " this node")
            .at(denied->path);
}

device::ChangeGuard Datastores::guard_of(const Caller &caller) const {
    if (caller.rules == nullptr)
        return {};
    return [this, &caller](const lyd_node *before, const lyd_node *after) {
        refuse_denied(caller, before, after);
    };
}

void Datastores::edit(const Caller &caller, Datastore target, const yang::EditNode &edit, bool only_test) {
    const Guard guard(mutex_);
    refuse_if_locked(caller, target);
    if (target == Datastore::running && !only_test) {
        if (editor_.edit(edit, note_of(caller), guard_of(caller)).has_value())
            publish_config_change(events_, caller.actor(), edit_records(edit));
        return;
    }
    const yang::DataTree now_running = running();
    const lyd_node *before = target == Datastore::candidate ? candidate_or(now_running) : now_running.get();
    yang::DataTree after = editor_.apply(edit, before);
    if (caller.rules != nullptr)
        refuse_denied(caller, before, after.get());
    if (!only_test) {
        candidate_ = std::move(after);
        candidate_edits_.push_back(yang::print_edit(edit));
        const std::vector<EditRecord> records = edit_records(edit);
        candidate_records_.insert(candidate_records_.end(), records.begin(), records.end());
        candidate_editor_ = caller.session;
    }
}

void Datastores::validate(Datastore datastore) {
    const Guard guard(mutex_);
    yang::DataTree configuration = running();
    if (datastore == Datastore::candidate && candidate_.has_value())
        configuration = yang::copy_configuration(candidate_->get());
    device::validate_configuration(schemas_, configuration);
}

void Datastores::validate(const yang::EditNode &edit) {
    const Guard guard(mutex_);
    editor_.apply(edit, running().get());
}

void Datastores::copy(const Caller &caller, Datastore from, Datastore to) {
    if (from == to)
        throw RpcError("protocol", "invalid-value", "the source and the target are the same");
    if (to == Datastore::running)
        return commit(caller, std::nullopt, std::nullopt);
    const Guard guard(mutex_);
    refuse_if_locked(caller, to);
    if (caller.rules != nullptr && candidate_.has_value())
        refuse_denied(caller, candidate_->get(), running().get());
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
        throw RpcError("protocol", "invalid-value", "no commit waits under this persist-id");
    if (pending_.has_value() && pending_->persist.has_value() && !persist_id.has_value())
        throw RpcError("protocol", "invalid-value", "a commit waits to be confirmed by its persist-id");
    if (pending_.has_value() && !pending_->persist.has_value() && pending_->actor.session != caller.session)
        throw RpcError("protocol", "in-use",
                       "session " + std::to_string(pending_->actor.session) + " has a commit to confirm");
}

void Datastores::commit(const Caller &caller, const std::optional<ConfirmedCommit> &confirmed,
                        const std::optional<std::string> &persist_id) {
    const Guard guard(mutex_);
    refuse_if_locked(caller, Datastore::running);
    refuse_if_locked(caller, Datastore::candidate);
    refuse_other_confirmer(caller, persist_id);
    // The first commit of all keeps what was there as number 0.
    const int64_t before =
        pending_.has_value() ? pending_->back_to : std::max<int64_t>(last_commit_number(), 0);
    if (confirmed.has_value())
        remember_pending(before);
    try {
        commit_candidate(caller);
    } catch (...) {
        if (!pending_.has_value())
            forget_pending();
        throw;
    }
    drop_candidate();
    if (confirmed.has_value())
        return wait_for_confirmation(caller, *confirmed, before);
    if (pending_.has_value())
        publish_confirmed_commit(events_, caller.actor(), "complete", std::nullopt);
    end_pending();
}

void Datastores::commit_candidate(const Caller &caller) {
    if (!candidate_.has_value())
        return;
    const std::string edit = std::accumulate(candidate_edits_.begin(), candidate_edits_.end(), std::string());
    if (editor_.commit_configuration(candidate_->get(), edit, note_of(caller), guard_of(caller)).has_value())
        publish_config_change(events_, caller.actor(), candidate_records_);
}

void Datastores::wait_for_confirmation(const Caller &caller, const ConfirmedCommit &confirmed,
                                       int64_t back_to) {
    publish_confirmed_commit(events_, caller.actor(), pending_.has_value() ? "extend" : "start",
                             confirmed.timeout);
    pending_ = Pending{back_to, caller.actor(), false, confirmed.persist};
    deadline_ = std::chrono::steady_clock::now() + confirmed.timeout;
}

void Datastores::cancel_commit(const Caller &caller, const std::optional<std::string> &persist_id) {
    const Guard guard(mutex_);
    if (!pending_.has_value())
        throw RpcError("protocol", "operation-failed", "no commit waits to be confirmed");
    refuse_if_locked(caller, Datastore::running);
    refuse_other_confirmer(caller, persist_id);
    take_back(caller.actor());
    publish_confirmed_commit(events_, caller.actor(), "cancel", std::nullopt);
}

void Datastores::take_back(const Actor &actor) {
    const device::CommitNote note{actor.user, "not confirmed: back to " + std::to_string(pending_->back_to)};
    if (editor_.rollback(pending_->back_to, note).has_value())
        publish_config_change(events_, actor, {});
    end_pending();
}

void Datastores::end_pending() {
    pending_.reset();
    deadline_ = no_deadline;
    forget_pending();
}

std::optional<std::chrono::steady_clock::time_point> Datastores::deadline() const {
    const auto deadline = deadline_.load();
    return deadline != no_deadline ? std::optional(deadline) : std::nullopt;
}

void Datastores::take_back_when_due() {
    const Guard guard(mutex_);
    if (!pending_.has_value() || deadline_.load() > std::chrono::steady_clock::now())
        return;
    deadline_ = std::chrono::steady_clock::now() + retry_interval; // should the device not take it now
    take_back({});
    publish_confirmed_commit(events_, {}, "timeout", std::nullopt);
}

int64_t Datastores::last_commit_number() const {
    return source_.last_commit_number();
}

std::filesystem::path Datastores::pending_file() const {
    return source_.store().string() + ".unconfirmed";
}

// On the disk before the commit is: a server that ends at any moment leaves enough to take it back.
void Datastores::remember_pending(int64_t back_to) const {
    std::filesystem::create_directories(pending_file().parent_path());
    const int file = open(pending_file().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const std::string text = std::to_string(back_to) + "\n";
    const bool written = file >= 0 &&
                         write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
                         fsync(file) == 0;
    if (file >= 0)
        close(file);
    if (!written)
        throw RpcError("application", "operation-failed", pending_file().string() + ": cannot be written");
}

void Datastores::forget_pending() noexcept {
    std::error_code ignored;
    std::filesystem::remove(pending_file(), ignored);
}

void Datastores::take_back_unconfirmed() {
    const Guard guard(mutex_);
    if (pending_.has_value())
        take_back({});
}

void Datastores::recover() {
    const Guard guard(mutex_);
    std::ifstream file(pending_file());
    int64_t back_to = -1;
    if (!file)
        return;
    // A file that was cut short was written before its commit began.
    if (file >> back_to && back_to >= 0 && back_to < last_commit_number())
        editor_.rollback(back_to,
                         {"", "not confirmed when the server ended: back to " + std::to_string(back_to)});
    forget_pending();
}

// ---- locks ---------------------------------------------------------------------------------------------

void Datastores::lock(const Caller &caller, Datastore datastore) {
    const Guard guard(mutex_);
    const auto held = locks_.find(datastore);
    if (held != locks_.end())
        throw RpcError("protocol", "lock-denied", "the datastore is already locked")
            .with_info("<session-id>" + std::to_string(held->second.session) + "</session-id>");
    if (datastore == Datastore::candidate && candidate_.has_value())
        throw RpcError("protocol", "lock-denied", "the candidate has changes that were not committed")
            .with_info("<session-id>0</session-id>");
    if (datastore == Datastore::running && pending_.has_value() && pending_->actor.session != caller.session)
        throw RpcError("protocol", "lock-denied", "a commit waits to be confirmed")
            .with_info("<session-id>" +
                       std::to_string(pending_->session_is_gone ? 0 : pending_->actor.session) +
                       "</session-id>");
    locks_[datastore] = {caller.session, utc_now()};
}

void Datastores::unlock(const Caller &caller, Datastore datastore) {
    const Guard guard(mutex_);
    const auto held = locks_.find(datastore);
    if (held == locks_.end() || held->second.session != caller.session)
        throw RpcError("protocol", "operation-failed", "the session does not hold this lock");
    locks_.erase(held);
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
    const auto candidate_lock = locks_.find(Datastore::candidate);
    const bool held_candidate = candidate_lock != locks_.end() && candidate_lock->second.session == session;
    std::erase_if(locks_, [&](const auto &lock) { return lock.second.session == session; });
    if (held_candidate || candidate_editor_ == session)
        drop_candidate();
    if (!pending_.has_value() || pending_->actor.session != session)
        return;
    pending_->session_is_gone = true;
    if (pending_->persist.has_value())
        return;
    const Actor actor = pending_->actor;
    take_back({});
    publish_confirmed_commit(events_, actor, "cancel", std::nullopt);
}

} // namespace yfw::netconf
