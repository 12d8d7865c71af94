#include "frontends/gnmi/operations/set_operation.h"

#include <algorithm>
#include <chrono>
#include <functional>

#include "base/interruption.h"
#include "frontends/gnmi/data/snapshot.h"
#include "frontends/gnmi/messages/extensions.h"
#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/operations/combined_edit.h"
#include "frontends/gnmi/operations/removal.h"
#include "frontends/gnmi/paths/path_text.h"
#include "frontends/gnmi/values/given_edit.h"

namespace yfw::gnmi {
namespace {

using Result = ::gnmi::UpdateResult;
using yang::EditNode;

constexpr std::chrono::seconds usual_rollback{600};

// An operation, and what it does to a configuration (NULL: an empty one).
struct Change {
    std::string place; // "update /path"
    std::function<std::vector<EditNode>(const lyd_node *running)> edits;
};

bool is_configuration(const PathPattern &pattern) {
    return pattern.node() == nullptr || (pattern.node()->flags & LYS_CONFIG_W) != 0;
}

// Runs a step of an operation; what it throws names the operation.
template <class Work> auto in_place(const std::string &operation, const std::string &path, Work &&work) {
    end_if_interrupted();
    try {
        return work();
    } catch (const Error &error) {
        const std::string within = error.path().empty() || error.path() == path ? "" : " at " + error.path();
        throw Refusal(refusal_of(error).code(), operation + " " + path + within + ": " + error.what());
    } catch (const Refusal &refusal) {
        throw Refusal(refusal.code(), operation + " " + refusal.what());
    }
}

// The changes of a request, in the order in which they are made.
class Changes {
public:
    Changes(const Target &target, const ::gnmi::SetRequest &request) : target_(target), request_(request) {
        check_prefix(request.prefix());
        if (request.union_replace_size() > 0 &&
            request.delete__size() + request.replace_size() + request.update_size() > 0)
            throw Refusal(Code::invalid_argument, "union_replace cannot stand beside other operations");
        for (const ::gnmi::Path &path : request.delete_())
            add_delete(path);
        for (const ::gnmi::Update &update : request.replace())
            add_value("replace", update, Keeps::nothing);
        for (const ::gnmi::Update &update : request.update())
            add_value("update", update, Keeps::rest);
        for (const ::gnmi::Update &update : request.union_replace())
            add_emptied(update);
        for (const ::gnmi::Update &update : request.union_replace())
            add_value("union_replace", update, Keeps::rest);
    }

    bool empty() const { return changes_.empty(); }

    // All of them as one edit.
    EditNode edit(const lyd_node *running) const {
        EditNode root;
        root.node = target_.root();
        root.is_step = true;
        CombinedEdit combined(std::move(root));
        for (const Change &change : changes_) {
            end_if_interrupted();
            for (const EditNode &next : change.edits(running))
                combined.add(next);
        }
        return with_values_resolved(combined.edit(), running);
    }

    // The operation that an error of the whole edit comes from, if it can be told by the path of the node at
    // fault.
    const Change *at_fault(const Error &error) const {
        const Change *found = changes_.size() == 1 ? &changes_.front() : nullptr;
        for (const Change &change : changes_)
            for (const EditNode &edit : change.edits(nullptr))
                if (touches(edit, "", error.path()))
                    found = &change;
        return found;
    }

private:
    void add_delete(const ::gnmi::Path &path) {
        const std::string place = to_text(request_.prefix(), path);
        in_place("delete", place, [&] {
            std::vector<PathPattern> patterns = read_path(target_.root(), request_.prefix(), path);
            const bool has_wildcard = has_wildcard_name(request_.prefix()) || has_wildcard_name(path);
            std::erase_if(patterns, [&](const PathPattern &pattern) {
                const bool is_key = pattern.node() != nullptr && lysc_is_key(pattern.node());
                if (is_key && !has_wildcard)
                    throw Refusal(Code::invalid_argument,
                                  place + ": a key cannot be deleted; delete its entry");
                return is_key || !is_configuration(pattern);
            });
            if (patterns.empty())
                throw Refusal(Code::invalid_argument, place + ": is state, which cannot be changed");
            changes_.push_back({"delete " + place, [patterns, this](const lyd_node *running) {
                                    std::vector<EditNode> edits;
                                    for (const PathPattern &pattern : patterns)
                                        for (EditNode &edit : removals(target_.schemas(), pattern, running))
                                            edits.push_back(std::move(edit));
                                    return edits;
                                }});
        });
    }

    static bool has_wildcard_name(const ::gnmi::Path &path) {
        return std::any_of(path.elem().begin(), path.elem().end(), [](const ::gnmi::PathElem &element) {
            return element.name() == "*" || element.name() == "...";
        });
    }

    PathPattern path_of(const ::gnmi::Update &update, const std::string &place) const {
        const PathPattern path = read_single_path(target_.root(), request_.prefix(), update.path());
        if (!is_configuration(path))
            throw Refusal(Code::invalid_argument, place + ": is state, which cannot be changed");
        if (!target_.serves(path.node()))
            throw Refusal(Code::unimplemented, place + ": this device does not serve it");
        return path;
    }

    void add_value(const std::string &operation, const ::gnmi::Update &update, Keeps keeps) {
        const std::string place = to_text(request_.prefix(), update.path());
        in_place(operation, place, [&] {
            add(operation + " " + place,
                edit_of(target_.schemas(), path_of(update, place), update.val(), keeps, place));
        });
    }

    // What is at the path before the values of a union are put there.
    void add_emptied(const ::gnmi::Update &update) {
        const std::string place = to_text(request_.prefix(), update.path());
        in_place("union_replace", place, [&] {
            const PathPattern path = path_of(update, place);
            const bool is_leaf = path.node() != nullptr && (path.node()->nodetype & LYD_NODE_TERM) != 0;
            if (!is_leaf || !lysc_is_key(path.node()))
                add("union_replace " + place,
                    edit_at(target_.schemas(), path,
                            is_leaf ? yang::Operation::remove : yang::Operation::replace));
        });
    }

    void add(std::string place, EditNode edit) {
        changes_.push_back({std::move(place), [edit = std::move(edit)](const lyd_node *) {
                                return std::vector<EditNode>{edit};
                            }});
    }

    static bool touches(const EditNode &edit, const std::string &parent, const std::string &path) {
        const std::string own = yang::instance_path(parent, edit);
        if (!path.starts_with(own))
            return false;
        const bool is_whole = edit.operation != yang::Operation::none;
        return is_whole || std::any_of(edit.children.begin(), edit.children.end(), [&](const EditNode &child) {
                   return !child.is_key() && touches(child, own, path);
               });
    }

    const Target &target_;
    const ::gnmi::SetRequest &request_;
    std::vector<Change> changes_;
};

void add_results(const ::gnmi::SetRequest &request, ::gnmi::SetResponse &to) {
    const auto add = [&to](const ::gnmi::Path &path, Result::Operation operation) {
        Result &result = *to.add_response();
        *result.mutable_path() = path;
        result.set_op(operation);
    };
    for (const ::gnmi::Path &path : request.delete_())
        add(path, Result::DELETE);
    for (const ::gnmi::Update &update : request.replace())
        add(update.path(), Result::REPLACE);
    for (const ::gnmi::Update &update : request.update())
        add(update.path(), Result::UPDATE);
    for (const ::gnmi::Update &update : request.union_replace())
        add(update.path(), Result::UNION_REPLACE);
}

// ---- confirmed commits

// What the definition of the type allows: 10,000 years, and one sign for both parts.
bool is_valid(const google::protobuf::Duration &duration) {
    constexpr int64_t most_seconds = 315'576'000'000;
    constexpr int32_t most_nanos = 999'999'999;
    const bool has_two_signs =
        (duration.seconds() < 0 && duration.nanos() > 0) || (duration.seconds() > 0 && duration.nanos() < 0);
    return duration.seconds() >= -most_seconds && duration.seconds() <= most_seconds &&
           duration.nanos() >= -most_nanos && duration.nanos() <= most_nanos && !has_two_signs;
}

std::chrono::seconds duration_of(const google::protobuf::Duration &given) {
    if (!is_valid(given))
        throw Refusal(Code::invalid_argument, "the rollback duration is no valid Duration");
    if (given.seconds() <= 0 && given.nanos() <= 0)
        throw Refusal(Code::invalid_argument, "the rollback duration must be above 0");
    constexpr int64_t most = 10LL * 365 * 24 * 3600; // what clocks can add up safely
    return std::chrono::seconds(std::min<int64_t>(given.seconds() + (given.nanos() > 0 ? 1 : 0), most));
}

void require_unconfirmed(const Target &target) {
    if (!target.service().datastores().deadline().has_value())
        throw Refusal(Code::failed_precondition, "no commit awaits confirmation");
}

// Confirms, cancels or extends the unconfirmed commit.
void act(const Target &target, const Caller &caller, const gnmi_ext::Commit &commit) {
    device::Datastores &datastores = target.service().datastores();
    if (commit.has_set_rollback_duration()) {
        const std::chrono::seconds timeout = duration_of(commit.set_rollback_duration().rollback_duration());
        require_unconfirmed(target);
        datastores.extend(caller, commit.id(), timeout);
        return;
    }
    require_unconfirmed(target);
    if (commit.has_confirm())
        datastores.confirm(caller, commit.id());
    else
        datastores.cancel_commit(caller, commit.id());
}

std::optional<device::Confirmation> confirmation_of(const std::optional<gnmi_ext::Commit> &commit) {
    if (!commit.has_value())
        return std::nullopt;
    const bool has_duration = commit->commit().has_rollback_duration();
    return device::Confirmation{
        has_duration ? duration_of(commit->commit().rollback_duration()) : usual_rollback, commit->id()};
}

void check_commit(const std::optional<gnmi_ext::Commit> &commit, bool has_changes) {
    if (!commit.has_value())
        return;
    if (commit->id().empty())
        throw Refusal(Code::invalid_argument, "the extension commit has no id");
    if (commit->action_case() == gnmi_ext::Commit::ACTION_NOT_SET)
        throw Refusal(Code::invalid_argument, "the extension commit has no action");
    if (!commit->has_commit() && has_changes)
        throw Refusal(Code::invalid_argument,
                      "confirm, cancel and set_rollback_duration stand alone, without operations");
}

void make_changes(const Target &target, const Caller &caller, const Changes &changes,
                  const std::optional<gnmi_ext::Commit> &commit) {
    try {
        target.service().datastores().edit_running(
            caller, [&](const lyd_node *running) { return changes.edit(running); }, confirmation_of(commit));
    } catch (const Error &error) {
        const Change *fault = error.is_by_device() ? nullptr : changes.at_fault(error);
        throw refusal_of(error, fault != nullptr ? fault->place : "");
    }
}

} // namespace

::gnmi::SetResponse set(const Target &target, const Caller &caller, const ::gnmi::SetRequest &request) {
    require_writer(caller);
    const TakenExtensions extensions = read_extensions(request.extension(), Takes::commit);
    const Changes changes(target, request);
    check_commit(extensions.commit, !changes.empty());
    if (extensions.commit.has_value() && !extensions.commit->has_commit()) {
        try {
            act(target, caller, *extensions.commit);
        } catch (const Error &error) {
            throw refusal_of(error);
        }
    } else if (!changes.empty() || extensions.commit.has_value()) {
        make_changes(target, caller, changes, extensions.commit);
    }
    ::gnmi::SetResponse response;
    if (request.has_prefix())
        *response.mutable_prefix() = request.prefix();
    add_results(request, response);
    response.set_timestamp(now_in_nanoseconds());
    return response;
}

} // namespace yfw::gnmi
