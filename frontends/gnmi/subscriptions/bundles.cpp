#include "frontends/gnmi/subscriptions/bundles.h"

#include <algorithm>

#include "frontends/gnmi/data/matching.h"
#include "frontends/gnmi/data/response_path.h"
#include "frontends/gnmi/values/typed_value.h"
#include "yang/node_kind.h"

namespace yfw::gnmi {
namespace {

using Index = Snapshot::Index;

// Of one message, so that it stays far below what clients accept, and of one piece of a walk.
constexpr int most_updates = 500;
constexpr size_t most_in_a_piece = 2000;

} // namespace

const std::string &Prepared::bytes() const {
    std::call_once(serialized_, [this] { bytes_ = message_->SerializeAsString(); });
    return bytes_;
}

SharedMessage sync_message() {
    static const SharedMessage message = [] {
        ::gnmi::SubscribeResponse response;
        response.set_sync_response(true);
        return std::make_shared<const Prepared>(std::move(response));
    }();
    return message;
}

// ---- bundles

BundleWriter::BundleWriter(const Target &target, const Wanted &wanted, ::gnmi::Encoding encoding,
                           std::string prefix_target)
    : target_(target), wanted_(wanted), encoding_(encoding), prefix_target_(std::move(prefix_target)),
      json_({json_form(encoding), 0, {}}) {}

bool BundleWriter::takes(const lysc_node *leaf) const {
    return wanted_.leaves == Leaves::all || target_.is_sampled(leaf) == (wanted_.leaves == Leaves::sampled);
}

bool BundleWriter::reports_change_of(const lysc_node *leaf) const {
    if (!takes(leaf))
        return false;
    if (wanted_.sample.has_value() || !target_.is_sampled(leaf))
        return true;
    return std::any_of(wanted_.patterns.begin(), wanted_.patterns.end(),
                       [&](const PathPattern &pattern) { return target_.is_sampled(pattern.node()); });
}

// The entry around the node that has a bundle of its own; the root where there is none.
Index BundleWriter::bundle_of(const Snapshot &snapshot, Index node) const {
    Index at = node;
    while (at != Snapshot::root && !target_.is_bundle(snapshot[at].schema))
        at = snapshot[at].parent;
    return at;
}

::gnmi::Notification &BundleWriter::bundle(const Snapshot &snapshot, Index about, int64_t time) {
    const bool is_same = !bundles_.empty() && last_snapshot_ == &snapshot && last_about_ == about;
    if (is_same) {
        ::gnmi::Notification &last = *bundles_.back()->mutable_update();
        if (last.update_size() + last.delete__size() < most_updates)
            return last;
    }
    if (arena_ == nullptr)
        arena_ = std::make_shared<google::protobuf::Arena>();
    bundles_.push_back(google::protobuf::Arena::CreateMessage<::gnmi::SubscribeResponse>(arena_.get()));
    ::gnmi::Notification &made = *bundles_.back()->mutable_update();
    made.set_timestamp(time);
    if (!prefix_target_.empty())
        made.mutable_prefix()->set_target(prefix_target_);
    if (about != Snapshot::root)
        set_path(*made.mutable_prefix(), snapshot, about);
    last_snapshot_ = &snapshot;
    last_about_ = about;
    return made;
}

void BundleWriter::set_relative_path(::gnmi::Path &to, const Snapshot &snapshot, Index about,
                                     Index node) const {
    if (node == about)
        return;
    set_relative_path(to, snapshot, about, snapshot[node].parent);
    add_element(to, snapshot, node);
}

void BundleWriter::set_value(::gnmi::TypedValue &to, const Snapshot &snapshot, Index leaf) {
    if (encoding_ == ::gnmi::PROTO)
        set_typed(to, snapshot, leaf);
    else
        set_json(to, json_form(encoding_), json_.of(snapshot, leaf).value_or("null"));
}

void BundleWriter::update(const Snapshot &snapshot, Index leaf) {
    const Index about = bundle_of(snapshot, leaf);
    ::gnmi::Update &made = *bundle(snapshot, about, snapshot.time()).add_update();
    set_relative_path(*made.mutable_path(), snapshot, about, leaf);
    set_value(*made.mutable_val(), snapshot, leaf);
}

void BundleWriter::update_to_default(const Snapshot &before, Index leaf, int64_t time) {
    const Index about = bundle_of(before, leaf);
    const lysc_node *schema = before[leaf].schema;
    const lyd_value *value = reinterpret_cast<const lysc_node_leaf *>(schema)->dflt;
    const char *text = lyd_value_get_canonical(schema->module->ctx, value);
    ::gnmi::Update &made = *bundle(before, about, time).add_update();
    set_relative_path(*made.mutable_path(), before, about, leaf);
    if (encoding_ == ::gnmi::PROTO)
        set_typed(*made.mutable_val(), schema, text);
    else
        set_json(*made.mutable_val(), json_form(encoding_), json_.of(schema, text));
}

void BundleWriter::remove(const Snapshot &before, Index node, int64_t time) {
    const Index about = node == Snapshot::root ? node : bundle_of(before, before[node].parent);
    set_relative_path(*bundle(before, about, time).add_delete_(), before, about, node);
}

std::vector<SharedMessage> BundleWriter::finish() {
    std::vector<SharedMessage> messages;
    messages.reserve(bundles_.size());
    for (::gnmi::SubscribeResponse *bundle : bundles_)
        messages.push_back(
            std::make_shared<const Prepared>(std::shared_ptr<const ::gnmi::SubscribeResponse>(arena_, bundle)));
    bundles_.clear();
    arena_.reset();
    last_snapshot_ = nullptr;
    return messages;
}

// ---- snapshots

SnapshotWalk::SnapshotWalk(const Target &target, const Wanted &wanted, ::gnmi::Encoding encoding,
                           std::string prefix_target, std::shared_ptr<const Snapshot> snapshot)
    : wanted_(wanted), snapshot_(std::move(snapshot)),
      writer_(target, wanted_, encoding, std::move(prefix_target)) {
    for (const PathPattern &pattern : wanted_.patterns)
        for (const Index node : matches(*snapshot_, pattern))
            selected_.push_back(node);
    std::sort(selected_.begin(), selected_.end());
}

std::vector<SharedMessage> SnapshotWalk::next() {
    size_t updates = 0;
    const Snapshot &snapshot = *snapshot_;
    while (at_selected_ < selected_.size() && updates < most_in_a_piece) {
        const Index node = selected_[at_selected_];
        const Index end = snapshot[node].schema != nullptr && snapshot[node].schema->nodetype == LYS_LEAFLIST
                              ? end_of_values(snapshot, node)
                              : snapshot[node].end;
        at_ = std::max(at_, node); // patterns may select the same
        for (; at_ < end && updates < most_in_a_piece; at_++) {
            const lysc_node *schema = snapshot[at_].schema;
            if (schema == nullptr || !yang::is_term(schema))
                continue;
            if (writer_.takes(schema)) {
                writer_.update(snapshot, at_);
                updates++;
            }
            if (schema->nodetype == LYS_LEAFLIST)
                at_ = end_of_values(snapshot, at_) - 1;
        }
        if (at_ >= end)
            at_selected_++;
    }
    return writer_.finish();
}

// ---- differences

namespace {

class ChangeWriter {
public:
    ChangeWriter(BundleWriter &writer, const Snapshot &before, const Snapshot &after)
        : writer_(writer), before_(before), after_(after) {}

    std::vector<SharedMessage> write() {
        const Differences found = differences(before_, after_);
        for (const Index node : found.removed)
            gone(node);
        const std::vector<PathPattern> &patterns = writer_.wanted().patterns;
        for (const auto &[leaf, is_new] : found.updated)
            if (is_told(after_[leaf].schema, is_new) && is_selected(after_, leaf, patterns))
                writer_.update(after_, leaf);
        return writer_.finish();
    }

private:
    // An entry that comes later has everything that those have which were there from the start.
    bool is_told(const lysc_node *leaf, bool is_new) const {
        return is_new ? writer_.takes(leaf) : writer_.reports_change_of(leaf);
    }

    void gone(Index node) {
        const std::vector<PathPattern> &patterns = writer_.wanted().patterns;
        if (is_selected(before_, node, patterns))
            return removed(node);
        for (const PathPattern &pattern : patterns)
            for (const Index match : matches(before_, pattern))
                if (match > node && match < before_[node].end)
                    removed(match);
    }

    static bool has_default(const lysc_node *node) {
        return node->nodetype == LYS_LEAF && (node->flags & LYS_CONFIG_W) != 0 && !lysc_is_key(node) &&
               reinterpret_cast<const lysc_node_leaf *>(node)->dflt != nullptr;
    }

    bool holds_default(Index node) const {
        for (Index at = node; at < before_[node].end; at++)
            if (before_[at].schema != nullptr && has_default(before_[at].schema))
                return true;
        return false;
    }

    bool is_configured(Index entry) const {
        for (Index at = entry; at < after_[entry].end; at++)
            if (yang::is_term(after_[at].schema) && (after_[at].schema->flags & LYS_CONFIG_W) != 0 &&
                !lysc_is_key(after_[at].schema))
                return true;
        return false;
    }

    // Whether the entry around the node is still configured: its leaves have their defaults then.
    bool is_entry_left(Index node) const {
        Index at = before_[node].parent;
        while (at != Snapshot::root && before_[at].schema->nodetype != LYS_LIST)
            at = before_[at].parent;
        if (at == Snapshot::root)
            return true;
        PathPattern entry;
        for (; at != Snapshot::root; at = before_[at].parent) {
            PatternStep step{before_[at].schema, {}};
            for (Index key = Snapshot::first_child(at);
                 key < before_[at].end && lysc_is_key(before_[key].schema); key = before_[key].end)
                if (step.node->nodetype == LYS_LIST)
                    step.keys.emplace_back(before_[key].value);
            entry.steps.insert(entry.steps.begin(), std::move(step));
        }
        const std::vector<Index> found = matches(after_, entry);
        return !found.empty() && is_configured(found.front());
    }

    bool holds_entry(Index node) const {
        for (Index at = node; at < before_[node].end; at++)
            if (before_[at].schema != nullptr && before_[at].schema->nodetype == LYS_LIST)
                return true;
        return false;
    }

    // A container goes with what is in it, but a default in it comes back into use, and entries are told of one
    // by one: who watches them need not know that the last one takes its container along.
    void removed(Index node) {
        const lysc_node *schema = before_[node].schema;
        if (yang::is_term(schema)) {
            if (!writer_.takes(schema))
                return;
            if (has_default(schema) && is_entry_left(node))
                writer_.update_to_default(before_, node, after_.time());
            else
                writer_.remove(before_, node, after_.time());
            return;
        }
        const bool is_entry = schema->nodetype == LYS_LIST;
        const bool is_whole =
            is_entry || (!holds_entry(node) && (!is_entry_left(node) || !holds_default(node)));
        if (is_whole && takes_whole(node)) {
            writer_.remove(before_, node, after_.time());
            return;
        }
        for (Index at = Snapshot::first_child(node); at < before_[node].end; at = before_[at].end) {
            removed(at);
            if (before_[at].schema->nodetype == LYS_LEAFLIST)
                at = end_of_values(before_, at) - 1;
        }
    }

    // A part for sampled leaves leaves it to the other part to say that what is around them is gone.
    bool takes_whole(Index node) const {
        return writer_.wanted().leaves != Leaves::sampled || writer_.takes(before_[node].schema);
    }

    BundleWriter &writer_;
    const Snapshot &before_;
    const Snapshot &after_;
};

} // namespace

std::vector<SharedMessage> changes_between(BundleWriter &writer, const Snapshot &before,
                                           const Snapshot &after) {
    return ChangeWriter(writer, before, after).write();
}

} // namespace yfw::gnmi
