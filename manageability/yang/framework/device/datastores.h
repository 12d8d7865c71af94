// A server's datastores: running, which is the device's, and candidate (RFC 6241 sections 7 and 8).
#ifndef YFW_DEVICE_DATASTORES_H
#define YFW_DEVICE_DATASTORES_H

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/error.h"
#include "device/access/nacm.h"
#include "device/events/hub.h"
#include "device/managed_device.h"

namespace yfw::device {

enum class Datastore { running, candidate };

// The originator of a request.
struct Caller {
    uint32_t session = 0;
    std::string user;
    bool may_write = false;
    std::string comment;                                      // stored with the commits
    std::shared_ptr<const access::UserRules> rules = nullptr; // NULL: the group permissions alone decide
    // Set, by any thread, when the session has ended, before end_session() is called; NULL: it never ends.
    std::shared_ptr<const std::atomic<bool>> is_gone = nullptr;

    std::string host{}; // where the user comes from, an IP address; empty when unknown

    events::Actor actor() const { return {session, user, host}; }
};

// An edit of a datastore, in parts; what is missing stays as it is.
struct Edits {
    std::optional<yang::EditNode> openconfig;
    std::optional<yang::EditNode> rules; // of the <nacm>, see access::Nacm
};

struct Confirmation {
    std::chrono::seconds timeout{600};
    std::optional<std::string> persist;
};

// Observers are notified of changes to the running
// configuration. Everything is borrowed. A rejected call throws Error and changes nothing.
//
// Any thread may call any member. One lock serializes them, commits included, and is held while the device and
// the mapping work and while observers are notified: only deadline() never blocks, and an observer must not
// call back. Reading running does not take the lock.
class Datastores {
public:
    Datastores(ManagedDevice &device, events::Hub &events) : device_(device), events_(events) {}

    // Reads configuration from the datastore. Throws Error.
    host::SettledAnswer answer(Datastore datastore, const host::ReadRequest &request);

    // `only_test`: validate the edit without applying it.
    void edit(const Caller &caller, Datastore target, const yang::EditNode &edit, bool only_test);
    // The same together with an edit of the access rules, which must be there: both or neither. The rules are
    // part of running, but not of commits.
    void edit_with_rules(const Caller &caller, Datastore target, access::Nacm &rules, const Edits &edits,
                         bool only_test);
    // Edits running in one transaction; `confirmed` as for commit(). No commit may be unconfirmed. For
    // protocols without sessions, whose edits no lock of the caller's own and no candidate stands beside.
    void edit_running(const Caller &caller, const EditMaker &make,
                      const std::optional<Confirmation> &confirmed);
    void validate(Datastore datastore);
    // Checks that an edit of the running configuration would be valid.
    void validate(const yang::EditNode &edit);

    void copy(const Caller &caller, Datastore from, Datastore to);
    void discard(const Caller &caller);

    // Makes the candidate the running configuration; `confirmed`: requires confirmation within a time limit
    // (section 8.4).
    void commit(const Caller &caller, const std::optional<Confirmation> &confirmed,
                const std::optional<std::string> &persist_id);
    void cancel_commit(const Caller &caller, const std::optional<std::string> &persist_id);
    // The same for the commit alone, whatever the candidate holds: confirms it, or gives it until `timeout`
    // from now.
    void confirm(const Caller &caller, const std::string &persist_id);
    void extend(const Caller &caller, const std::string &persist_id, std::chrono::seconds timeout);

    void lock(const Caller &caller, Datastore datastore);
    void unlock(const Caller &caller, Datastore datastore);
    struct Lock {
        uint32_t session = 0;
        std::string user;
        std::string time; // RFC 3339
    };
    std::optional<Lock> lock_of(Datastore datastore);

    // Call when a session has ended: releases its locks, discards the candidate if the session had locked it
    // (RFC 6241 section 8.3.5.2) or was the last of its editors, and rolls back the session's unconfirmed
    // commit unless it persists.
    void end_session(uint32_t session);

    // When the unconfirmed commit will be rolled back; nothing when there is none. Never blocks.
    std::optional<std::chrono::steady_clock::time_point> deadline() const;
    // Rolls back the unconfirmed commit if its deadline has passed; if the device refuses, throws Error and
    // sets a new deadline.
    void take_back_when_due();

    // Rolls back the unconfirmed commit, if any. Call when the server ends: nobody can confirm it any more.
    void take_back_unconfirmed();

    // Call before any session starts, and once the store is served.
    void start();

    // Tells observers of commits that other processes have made since the last call. Call when the store
    // changed.
    void tell_of_others_commits();

private:
    static constexpr auto no_deadline = std::chrono::steady_clock::time_point::max();

    struct Pending {
        int64_t back_to = 0; // number of the previous commit
        int64_t last = 0;    // number of the last commit that has to be confirmed
        events::Actor actor;
        bool session_is_gone = false; // the actor's
        std::optional<std::string> persist;
    };

    // The same as edit(), for a caller that may not be told all that is there; the datastore is free.
    void edit_discreetly(const Caller &caller, Datastore target, const yang::EditNode &edit, bool only_test);
    access::Nacm::Change changed_rules(const Caller &caller, const access::Nacm &rules,
                                       const yang::EditNode &edit) const;
    void put_rules_into_force(const Caller &caller, access::Nacm &rules, access::Nacm::Change change,
                              int64_t back_to);
    void edit_locked(const Caller &caller, Datastore target, const yang::EditNode &edit, bool only_test);
    void drop_candidate();
    // The work of a session may end after the session.
    void clean_up_after(const Caller &caller);
    void forget(uint32_t session);
    ChangeGuard guard_of(const Caller &caller) const;
    // Throws what the caller is told when a node that is created is there already: not that it is, if the
    // caller may not read it.
    [[noreturn]] static void refuse_creation(const Caller &caller, const Error &error, const lyd_node *before);
    std::optional<Configuration> candidate();
    Configuration candidate_or_running();
    void refuse_if_locked(const Caller &caller, Datastore datastore) const;
    void refuse_during_confirmation(const Caller &caller) const;
    void refuse_other_confirmer(const Caller &caller, const std::optional<std::string> &persist_id) const;
    // `actor`: on whose behalf. Does not publish the confirmed-commit event.
    void take_back(const events::Actor &actor);
    // Throws when another process has committed after the unconfirmed commit.
    void refuse_others_commits() const;
    // Keeps other processes from committing as long as a lock or an unconfirmed commit says so.
    void hold_store(const std::optional<events::Actor> &unconfirmed);
    void release_store();
    StoreHolds holds() const;
    void tell_of_others_up_to(int64_t number);
    void tell_change(const std::optional<commits::Commit> &made, const events::ConfigurationChange &change);
    void commit_candidate(const Caller &caller);
    // Runs `commit`, which may await confirmation; nothing remains of a confirmation when that throws.
    void commit_prepared(const Caller &caller, const std::optional<Confirmation> &confirmed, int64_t back_to,
                         const std::function<void()> &commit);
    void wait_for_confirmation(const Caller &caller, const Confirmation &confirmed, int64_t back_to);
    void end_pending();
    void tell(const events::Actor &actor, events::ConfirmedCommit::What what,
              std::optional<std::chrono::seconds> timeout = std::nullopt);

    ManagedDevice &device_;
    events::Hub &events_;
    std::optional<Configuration> candidate_; // nothing: identical to running
    std::vector<std::string> candidate_edits_;
    std::vector<events::EditRecord> candidate_records_; // of the edits to the candidate
    std::set<uint32_t> candidate_editors_;              // sessions that have edited it and have not ended
    std::map<Datastore, Lock> locks_;
    std::optional<Pending> pending_;
    int64_t told_ = -1; // number of the last commit that observers have been told of
    std::atomic<std::chrono::steady_clock::time_point> deadline_{no_deadline}; // of pending_
    std::mutex mutex_;
};

} // namespace yfw::device

#endif
