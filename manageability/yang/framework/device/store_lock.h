// Who serves a store, and what keeps others from committing to it: a file next to it, STORE.lock.
#ifndef YFW_DEVICE_STORE_LOCK_H
#define YFW_DEVICE_STORE_LOCK_H

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "base/descriptor.h"

namespace yfw::device {

// A server's session that keeps other processes from committing.
struct StoreHolder {
    uint32_t session = 0;
    std::string user;
};

// What a server publishes for other processes.
struct StoreHolds {
    std::optional<StoreHolder> locked;      // has locked the running configuration
    std::optional<StoreHolder> unconfirmed; // has made a commit that has to be confirmed
};

// One process serves a store; commits of others take turns with one another, and with what that process
// publishes. Locks of the kernel on the file say which process is alive, so that one that is killed leaves
// nothing behind. The file stays when nobody needs it: removing it would split those who have it open from
// those who make it anew.
//
// A store with several hard links is refused: the lock, and the files in which SQLite keeps transactions, are
// found by name.
//
// A lock that cannot be made because the directory may only be read is no error unless the store can be
// written. Every function throws Error. To be used by one thread at a time.
class StoreLock {
public:
    // An empty path: there is no store, and nothing to lock.
    explicit StoreLock(std::filesystem::path store) : store_(std::move(store)) {}

    // Makes this process the store's server, until the object is destroyed. Throws "in-use" when another one
    // is.
    void serve();

    // For the server: replaces what it has published. Waits for a commit of another process; throws "in-use"
    // when that takes longer than 10 seconds, unless `to_release`.
    void publish(const StoreHolds &holds, bool to_release);

    // Keeps other processes from committing, and a server from starting and from publishing, until it is
    // destroyed.
    struct Turn {
        Descriptor file = Descriptor();  // of the lock
        bool is_between_servers = false; // no server is there that may have published something
    };
    // Throws "in-use" when a server has published a hold, and when no turn comes within 10 seconds. Takes no
    // turn in the process that serves.
    Turn take_turn() const;

private:
    Descriptor open_file() const;

    std::filesystem::path store_;
    Descriptor served_; // open while this process serves
};

} // namespace yfw::device

#endif
