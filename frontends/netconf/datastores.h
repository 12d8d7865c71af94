// The datastores of the server: running, which is the device's, and candidate (RFC 6241 sections 7 and 8).
#ifndef YFW_FRONTENDS_NETCONF_DATASTORES_H
#define YFW_FRONTENDS_NETCONF_DATASTORES_H

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "device/access/nacm.h"
#include "device/configured_source.h"
#include "device/editor.h"
#include "frontends/netconf/server_events.h"
#include "yang/edit.h"

namespace yfw::netconf {

enum class Datastore { running, candidate };

struct Caller {
    uint32_t session = 0;
    std::string user;
    bool may_write = false;
    bool is_subscribed = false;
    std::shared_ptr<const access::UserRules> rules =
        nullptr; // of access; without them all of that is permitted

    Actor actor() const { return {session, user}; }
};

struct ConfirmedCommit {
    std::chrono::seconds timeout{600};
    std::optional<std::string> persist;
};

// Configurations are native; edits come in OpenConfig terms. Changes of the running configuration are
// published. Safe for several threads. Everything borrowed. What is refused throws RpcError or Error, and
// then nothing has changed.
class Datastores {
public:
    Datastores(const yang::Schemas &schemas, device::ConfiguredSource &source, host::Engine &engine,
               events::EventStream &events);

    // What the configuration is to be read from, perhaps with state.
    sources::Snapshot read(Datastore datastore);

    // `only_test`: the edit is checked and nothing is changed.
    void edit(const Caller &caller, Datastore target, const yang::EditNode &edit, bool only_test);
    void validate(Datastore datastore);
    // Checks that an edit of the running configuration would be valid.
    void validate(const yang::EditNode &edit);

    void copy(const Caller &caller, Datastore from, Datastore to);
    void discard(const Caller &caller);

    // Makes the candidate the running configuration; `confirmed`: until confirmed in time (section 8.4).
    void commit(const Caller &caller, const std::optional<ConfirmedCommit> &confirmed,
                const std::optional<std::string> &persist_id);
    void cancel_commit(const Caller &caller, const std::optional<std::string> &persist_id);

    void lock(const Caller &caller, Datastore datastore);
    void unlock(const Caller &caller, Datastore datastore);
    struct Lock {
        uint32_t session = 0;
        std::string time; // RFC 3339
    };
    std::optional<Lock> lock_of(Datastore datastore);

    // The session is gone: its locks are freed, the candidate that it had locked or that nobody else edits is
    // discarded, and its commit, unless it persists, is taken back.
    void end_session(uint32_t session);

    // When an unconfirmed commit has to be taken back; nothing when there is none. Never waits.
    std::optional<std::chrono::steady_clock::time_point> deadline() const;
    void take_back_when_due();

    // The server ends: nobody will confirm what was not confirmed so far.
    void take_back_unconfirmed();

    // Takes back what a server that was killed left unconfirmed.
    void recover();

private:
    static constexpr auto no_deadline = std::chrono::steady_clock::time_point::max();

    struct Pending {
        int64_t back_to = 0; // the commit before
        Actor actor;
        bool session_is_gone = false; // the actor's
        std::optional<std::string> persist;
    };

    yang::DataTree running() const;
    void drop_candidate();
    const lyd_node *candidate_or(const yang::DataTree &running) const;
    void refuse_denied(const Caller &caller, const lyd_node *before, const lyd_node *after) const;
    device::ChangeGuard guard_of(const Caller &caller) const;
    void refuse_if_locked(const Caller &caller, Datastore datastore) const;
    void refuse_other_confirmer(const Caller &caller, const std::optional<std::string> &persist_id) const;
    // `actor`: who wants it. Does not tell of the confirmed commit.
    void take_back(const Actor &actor);
    void commit_candidate(const Caller &caller);
    void wait_for_confirmation(const Caller &caller, const ConfirmedCommit &confirmed, int64_t back_to);
    void end_pending();
    int64_t last_commit_number() const;
    std::filesystem::path pending_file() const;
    void remember_pending(int64_t back_to) const;
    void forget_pending() noexcept;

    const yang::Schemas &schemas_;
    device::ConfiguredSource &source_;
    host::Engine &engine_;
    device::Editor editor_;
    events::EventStream &events_;
    std::optional<yang::SharedData> candidate_; // nothing: the same as running
    std::vector<std::string> candidate_edits_;
    std::vector<EditRecord> candidate_records_; // of these edits
    uint32_t candidate_editor_ = 0;             // the session that edited it last
    std::map<Datastore, Lock> locks_;
    std::optional<Pending> pending_;
    std::atomic<std::chrono::steady_clock::time_point> deadline_{no_deadline}; // of pending_
    std::mutex mutex_;
};

} // namespace yfw::netconf

#endif
