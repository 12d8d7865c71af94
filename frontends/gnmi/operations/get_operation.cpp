#include "frontends/gnmi/operations/get_operation.h"

#include "frontends/gnmi/data/matching.h"
#include "frontends/gnmi/data/reading.h"
#include "frontends/gnmi/data/response_path.h"
#include "frontends/gnmi/messages/extensions.h"
#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/paths/path_text.h"
#include "frontends/gnmi/values/typed_value.h"
#include "yang/node_kind.h"

namespace yfw::gnmi {
namespace {

using DataType = ::gnmi::GetRequest;
using LeafFilter = std::function<bool(const lysc_node *)>;

bool is_state(const lysc_node *leaf) {
    return (leaf->flags & LYS_CONFIG_R) != 0;
}

// Whether the leaf repeats what is configured: OpenConfig has a container "config" beside "state" with a leaf
// of the same name. A key repeats a leaf of one of the two.
bool is_applied_configuration(const lysc_node *leaf) {
    const lysc_node *holder = leaf->parent;
    if (holder == nullptr || holder->parent == nullptr || std::string_view(holder->name) != "state")
        return false;
    for (const lysc_node *beside = lysc_node_child(holder->parent); beside != nullptr; beside = beside->next)
        if (std::string_view(beside->name) == "config")
            for (const lysc_node *twin = lysc_node_child(beside); twin != nullptr; twin = twin->next)
                if (std::string_view(twin->name) == leaf->name)
                    return true;
    return false;
}

// Empty for all leaves.
LeafFilter filter_of(DataType::DataType type) {
    switch (type) {
    case DataType::ALL:
        return {};
    case DataType::CONFIG:
        return [](const lysc_node *leaf) { return !is_state(leaf); };
    case DataType::STATE:
        return is_state;
    case DataType::OPERATIONAL:
        return [](const lysc_node *leaf) { return is_state(leaf) && !is_applied_configuration(leaf); };
    default:
        throw Refusal(Code::invalid_argument, "there is no type of data " + std::to_string(type));
    }
}

host::Content content_of(DataType::DataType type) {
    return type == DataType::ALL      ? host::Content::all
           : type == DataType::CONFIG ? host::Content::config
                                      : host::Content::state;
}

// Writes what one path selects.
class Answer {
public:
    Answer(const ::gnmi::GetRequest &request, const Snapshot &snapshot, uint32_t depth)
        : request_(request), snapshot_(snapshot), depth_(depth), takes_(filter_of(request.type())),
          json_({json_form(request.encoding()), depth, takes_}) {}

    void add(const std::vector<PathPattern> &patterns, ::gnmi::Notification &to) {
        to.set_timestamp(snapshot_.time());
        if (!request_.prefix().target().empty())
            to.mutable_prefix()->set_target(request_.prefix().target());
        for (const PathPattern &pattern : patterns)
            for (const Snapshot::Index node : matches(snapshot_, pattern))
                if (request_.encoding() == ::gnmi::PROTO)
                    add_leaves(node, depth_, to);
                else
                    add_json(node, to);
    }

    // Whether the depth leaves nothing of a node that has content.
    bool is_cut_empty(const std::vector<PathPattern> &patterns) const {
        if (depth_ == 0)
            return false;
        for (const PathPattern &pattern : patterns)
            for (const Snapshot::Index node : matches(snapshot_, pattern))
                if (has_leaf(node))
                    return true;
        return false;
    }

private:
    bool has_leaf(Snapshot::Index node) const {
        for (Snapshot::Index at = node; at < snapshot_[node].end; at++)
            if (takes(snapshot_[at].schema))
                return true;
        return false;
    }

    bool takes(const lysc_node *node) const {
        return node != nullptr && yang::is_term(node) && (!takes_ || takes_(node));
    }

    void add_json(Snapshot::Index node, ::gnmi::Notification &to) {
        std::optional<std::string> json = json_.of(snapshot_, node);
        if (!json.has_value())
            return;
        ::gnmi::Update &update = *to.add_update();
        set_path(*update.mutable_path(), snapshot_, node);
        set_json(*update.mutable_val(), json_form(request_.encoding()), std::move(*json));
    }

    // `depth`: levels below the node; 0: all.
    void add_leaves(Snapshot::Index node, uint32_t depth, ::gnmi::Notification &to) {
        const lysc_node *schema = snapshot_[node].schema;
        if (schema != nullptr && yang::is_term(schema)) {
            if (!takes(schema))
                return;
            ::gnmi::Update &update = *to.add_update();
            set_path(*update.mutable_path(), snapshot_, node);
            set_typed(*update.mutable_val(), snapshot_, node);
            return;
        }
        for (Snapshot::Index at = Snapshot::first_child(node); at < snapshot_[node].end;) {
            const lysc_node *child = snapshot_[at].schema;
            if (yang::is_term(child))
                add_leaves(at, 0, to);
            else if (depth != 1)
                add_leaves(at, depth == 0 ? 0 : depth - 1, to);
            at = child->nodetype == LYS_LEAFLIST ? end_of_values(snapshot_, at) : snapshot_[at].end;
        }
    }

    const ::gnmi::GetRequest &request_;
    const Snapshot &snapshot_;
    uint32_t depth_;
    LeafFilter takes_;
    JsonValues json_;
};

void refuse_oversized(const ::gnmi::GetResponse &response) {
    if (response.ByteSizeLong() > largest_response)
        throw Refusal(Code::resource_exhausted,
                      "the response is larger than the 4 MiB that clients accept; Subscribe with the mode ONCE "
                      "sends the same data in pieces");
}

} // namespace

::gnmi::GetResponse get(const Target &target, const Caller &caller, const ::gnmi::GetRequest &request) {
    const TakenExtensions extensions = read_extensions(request.extension(), Takes::depth);
    check_encoding(request.encoding());
    filter_of(request.type());
    target.require_models(request.use_models());
    check_prefix(request.prefix());
    std::vector<std::vector<PathPattern>> paths;
    std::vector<PathPattern> all;
    for (const ::gnmi::Path &path : request.path()) {
        paths.push_back(target.served_patterns(request.prefix(), path));
        all.insert(all.end(), paths.back().begin(), paths.back().end());
    }
    ::gnmi::GetResponse response;
    if (paths.empty())
        return response;
    const auto snapshot = read_snapshot(target.service(), caller.rules.get(), all, content_of(request.type()));
    Answer answer(request, *snapshot, extensions.depth);
    for (size_t i = 0; i < paths.size(); i++) {
        ::gnmi::Notification &notification = *response.add_notification();
        answer.add(paths[i], notification);
        if (notification.update_size() == 0 && !answer.is_cut_empty(paths[i]))
            throw Refusal(Code::not_found, to_text(request.prefix(), request.path(static_cast<int>(i))) +
                                               ": the device has no data there");
    }
    refuse_oversized(response);
    return response;
}

} // namespace yfw::gnmi
