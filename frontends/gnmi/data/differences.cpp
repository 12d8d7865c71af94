#include "frontends/gnmi/data/differences.h"

#include <cstring>
#include <string>
#include <unordered_map>

#include "frontends/gnmi/data/matching.h"
#include "yang/node_kind.h"

namespace yfw::gnmi {
namespace {

using Index = Snapshot::Index;

// The children of one schema, which follow one another.
struct Group {
    const lysc_node *schema;
    Index begin;
    Index end;
};

std::vector<Group> groups_of(const Snapshot &snapshot, Index parent) {
    std::vector<Group> groups;
    for (Index at = Snapshot::first_child(parent); at < snapshot[parent].end; at = snapshot[at].end) {
        if (groups.empty() || groups.back().schema != snapshot[at].schema)
            groups.push_back({snapshot[at].schema, at, at});
        groups.back().end = snapshot[at].end;
    }
    return groups;
}

std::string keys_of(const Snapshot &snapshot, Index entry) {
    std::string keys;
    for (Index key = Snapshot::first_child(entry);
         key < snapshot[entry].end && lysc_is_key(snapshot[key].schema); key = snapshot[key].end)
        keys.append(snapshot[key].value).push_back('\0');
    return keys;
}

class Comparison {
public:
    Comparison(const Snapshot &before, const Snapshot &after) : before_(before), after_(after) {}

    Differences compare() {
        children(Snapshot::root, Snapshot::root);
        return std::move(found_);
    }

private:
    void children(Index before, Index after) {
        const std::vector<Group> old = groups_of(before_, before);
        const std::vector<Group> now = groups_of(after_, after);
        for (const Group &group : old)
            if (find(now, group.schema) == nullptr)
                gone(group);
        for (const Group &group : now) {
            if (const Group *same = find(old, group.schema))
                both(*same, group);
            else
                added(group);
        }
    }

    static const Group *find(const std::vector<Group> &groups, const lysc_node *schema) {
        for (const Group &group : groups)
            if (group.schema == schema)
                return &group;
        return nullptr;
    }

    void gone(const Group &group) {
        if (group.schema->nodetype == LYS_LEAFLIST) {
            found_.removed.push_back(group.begin);
            return;
        }
        for (Index at = group.begin; at < group.end; at = before_[at].end)
            found_.removed.push_back(at);
    }

    void added(const Group &group) {
        for (Index at = group.begin; at < group.end; at++) {
            if (!yang::is_term(after_[at].schema))
                continue;
            found_.updated.push_back({at, true});
            if (after_[at].schema->nodetype == LYS_LEAFLIST)
                at = end_of_values(after_, at) - 1;
        }
    }

    void both(const Group &old, const Group &now) {
        if (now.schema->nodetype == LYS_LIST)
            entries(old, now);
        else if (!yang::is_term(now.schema))
            children(old.begin, now.begin);
        else if (!same_values(old, now))
            found_.updated.push_back({now.begin, false});
    }

    bool same_values(const Group &old, const Group &now) const {
        if (old.end - old.begin != now.end - now.begin)
            return false;
        for (Index i = 0; i < now.end - now.begin; i++)
            if (std::strcmp(before_[old.begin + i].value, after_[now.begin + i].value) != 0)
                return false;
        return true;
    }

    void entries(const Group &old, const Group &now) {
        std::unordered_map<std::string, Index> left;
        std::vector<Index> order;
        for (Index at = old.begin; at < old.end; at = before_[at].end) {
            left.emplace(keys_of(before_, at), at);
            order.push_back(at);
        }
        std::vector<std::pair<Index, Index>> pairs; // before, or 0 for a new one, and after
        for (Index at = now.begin; at < now.end; at = after_[at].end) {
            const auto same = left.find(keys_of(after_, at));
            pairs.emplace_back(same != left.end() ? same->second : 0, at);
            if (same != left.end())
                left.erase(same);
        }
        for (const Index at : order)
            if (const auto found = left.find(keys_of(before_, at)); found != left.end() && found->second == at)
                found_.removed.push_back(at);
        for (const auto &[before, after] : pairs) {
            if (before != 0)
                children(before, after);
            else
                added({now.schema, after, after_[after].end});
        }
    }

    const Snapshot &before_;
    const Snapshot &after_;
    Differences found_;
};

} // namespace

Differences differences(const Snapshot &before, const Snapshot &after) {
    return Comparison(before, after).compare();
}

} // namespace yfw::gnmi
