// Snapshots and their differences as messages.
#ifndef YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_BUNDLES_H
#define YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_BUNDLES_H

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <gnmi.pb.h>
#include <google/protobuf/arena.h>

#include "frontends/gnmi/data/differences.h"
#include "frontends/gnmi/data/snapshot.h"
#include "frontends/gnmi/operations/target.h"
#include "frontends/gnmi/subscriptions/order.h"
#include "frontends/gnmi/values/json_value.h"

namespace yfw::gnmi {

// A message that many streams share; it is serialized once. Immutable: any thread may call any member.
class Prepared {
public:
    explicit Prepared(std::shared_ptr<const ::gnmi::SubscribeResponse> message)
        : message_(std::move(message)), size_(message_->ByteSizeLong()) {}
    explicit Prepared(::gnmi::SubscribeResponse message)
        : Prepared(std::make_shared<const ::gnmi::SubscribeResponse>(std::move(message))) {}

    const ::gnmi::SubscribeResponse &message() const { return *message_; }
    const std::string &bytes() const;
    // How many bytes there are.
    size_t size() const { return size_; }

private:
    std::shared_ptr<const ::gnmi::SubscribeResponse> message_;
    size_t size_;
    mutable std::once_flag serialized_;
    mutable std::string bytes_;
};

using SharedMessage = std::shared_ptr<const Prepared>;

SharedMessage sync_message();

// Writes what one part of an order selects: updates of leaves in bundles, one for each entry whose changes the
// device reports, such as a neighbor, and each with the path of what it is about as prefix. Borrows everything.
class BundleWriter {
public:
    BundleWriter(const Target &target, const Wanted &wanted, ::gnmi::Encoding encoding,
                 std::string prefix_target);

    // Collects bundles until finish(), which hands them out.
    void update(const Snapshot &snapshot, Snapshot::Index leaf);
    // The values of a configuration leaf that is gone: its default.
    void update_to_default(const Snapshot &before, Snapshot::Index leaf, int64_t time);
    void remove(const Snapshot &before, Snapshot::Index node, int64_t time);
    std::vector<SharedMessage> finish();

    // Whether the part wants this leaf, wherever it is selected.
    bool takes(const lysc_node *leaf) const;
    // Whether a change of the leaf alone is worth a message: one of a leaf that changes all the time is not,
    // unless the order names it.
    bool reports_change_of(const lysc_node *leaf) const;

    const Wanted &wanted() const { return wanted_; }

private:
    Snapshot::Index bundle_of(const Snapshot &snapshot, Snapshot::Index node) const;
    ::gnmi::Notification &bundle(const Snapshot &snapshot, Snapshot::Index about, int64_t time);
    void set_relative_path(::gnmi::Path &to, const Snapshot &snapshot, Snapshot::Index about,
                           Snapshot::Index node) const;
    void set_value(::gnmi::TypedValue &to, const Snapshot &snapshot, Snapshot::Index leaf);

    const Target &target_;
    const Wanted &wanted_;
    ::gnmi::Encoding encoding_;
    std::string prefix_target_;
    JsonValues json_;
    std::shared_ptr<google::protobuf::Arena> arena_; // of the bundles: thousands of messages are freed at once
    std::vector<::gnmi::SubscribeResponse *> bundles_;
    const Snapshot *last_snapshot_ = nullptr; // of the last bundle
    Snapshot::Index last_about_ = 0;
};

// Writes what an order's part selects of a snapshot, piece by piece, so that a stream needs memory for one
// piece only.
class SnapshotWalk {
public:
    SnapshotWalk(const Target &target, const Wanted &wanted, ::gnmi::Encoding encoding,
                 std::string prefix_target, std::shared_ptr<const Snapshot> snapshot);

    // The next messages; empty at the end.
    std::vector<SharedMessage> next();

private:
    Wanted wanted_;
    std::shared_ptr<const Snapshot> snapshot_;
    BundleWriter writer_;
    std::vector<Snapshot::Index> selected_; // in document order
    size_t at_selected_ = 0;
    Snapshot::Index at_ = 0;
};

// Writes what has changed from one snapshot to the next.
std::vector<SharedMessage> changes_between(BundleWriter &writer, const Snapshot &before, const Snapshot &after);

} // namespace yfw::gnmi

#endif
