#include "frontends/gnmi/subscriptions/coalescing.h"

#include <list>
#include <map>
#include <string>
#include <unordered_map>

namespace yfw::gnmi {
namespace {

// An absolute path as a text whose beginnings are those of the paths above it.
std::string key_of(const ::gnmi::Path &prefix, const ::gnmi::Path &path) {
    std::string key;
    for (const ::gnmi::Path *part : {&prefix, &path})
        for (const ::gnmi::PathElem &element : part->elem()) {
            key.append(element.name()).push_back('\1');
            for (const auto &[name, value] :
                 std::map<std::string, std::string>(element.key().begin(), element.key().end()))
                key.append(name).append(1, '\2').append(value).append(1, '\3');
            key.push_back('\4');
        }
    return key;
}

class Coalescing {
public:
    void add(const ::gnmi::Notification &notification) {
        Bundle &bundle = bundle_for(notification);
        for (const ::gnmi::Path &path : notification.delete_())
            remove(bundle, key_of(notification.prefix(), path), path);
        for (const ::gnmi::Update &update : notification.update())
            put(bundle, key_of(notification.prefix(), update.path()), update);
    }

    std::deque<SharedMessage> messages() {
        std::deque<SharedMessage> made;
        for (const Bundle &bundle : bundles_) {
            if (bundle.removed.empty() && bundle.updates.empty())
                continue;
            ::gnmi::SubscribeResponse response;
            ::gnmi::Notification &notification = *response.mutable_update();
            notification.set_timestamp(bundle.time);
            if (bundle.has_prefix)
                *notification.mutable_prefix() = bundle.prefix;
            for (const ::gnmi::Path &path : bundle.removed)
                *notification.add_delete_() = path;
            for (const ::gnmi::Update &update : bundle.updates)
                *notification.add_update() = update;
            made.push_back(std::make_shared<const Prepared>(std::move(response)));
        }
        return made;
    }

private:
    struct Bundle {
        std::string about; // the key of its prefix
        ::gnmi::Path prefix;
        bool has_prefix = false;
        int64_t time = 0;
        std::list<::gnmi::Path> removed;
        std::list<::gnmi::Update> updates;
    };
    struct Place {
        Bundle *bundle;
        std::list<::gnmi::Update>::iterator update;
    };

    // Deletes of a message come before its updates, so one that deletes starts a bundle, behind what it
    // deletes.
    Bundle &bundle_for(const ::gnmi::Notification &notification) {
        const std::string about = key_of(notification.prefix(), {});
        const auto last = last_.find(about);
        if (last != last_.end() && notification.delete__size() == 0) {
            last->second->time = notification.timestamp();
            return *last->second;
        }
        Bundle &made = bundles_.emplace_back(
            Bundle{about, notification.prefix(), notification.has_prefix(), notification.timestamp(), {}, {}});
        last_[about] = &made;
        return made;
    }

    // Bundles of what is gone do not go on: what comes back comes behind the delete.
    void remove(Bundle &bundle, const std::string &key, const ::gnmi::Path &path) {
        for (auto at = places_.lower_bound(key); at != places_.end() && at->first.starts_with(key);) {
            at->second.bundle->updates.erase(at->second.update);
            at = places_.erase(at);
        }
        std::erase_if(last_,
                      [&](const auto &last) { return last.second != &bundle && last.first.starts_with(key); });
        bundle.removed.push_back(path);
    }

    void put(Bundle &bundle, const std::string &key, const ::gnmi::Update &update) {
        const auto known = places_.find(key);
        if (known != places_.end()) {
            ::gnmi::Update &earlier = *known->second.update;
            const uint32_t duplicates = earlier.duplicates() + update.duplicates() + 1;
            earlier = update;
            earlier.set_duplicates(duplicates);
            return;
        }
        bundle.updates.push_back(update);
        places_.emplace(key, Place{&bundle, std::prev(bundle.updates.end())});
    }

    std::list<Bundle> bundles_;
    std::unordered_map<std::string, Bundle *> last_; // by the key of the prefix
    std::map<std::string, Place> places_;            // of updates
};

} // namespace

std::deque<SharedMessage> coalesced(const std::deque<SharedMessage> &messages) {
    Coalescing coalescing;
    std::deque<SharedMessage> made;
    for (const SharedMessage &message : messages)
        if (message->message().has_update())
            coalescing.add(message->message().update());
        else
            made.push_back(message); // nothing but a sync_response, which comes before all changes
    for (SharedMessage &message : coalescing.messages())
        made.push_back(std::move(message));
    return made;
}

} // namespace yfw::gnmi
