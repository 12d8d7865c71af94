// The native data of a device whose configuration can be changed, and the store of its commits.
#ifndef YFW_DEVICE_CONFIGURED_SOURCE_H
#define YFW_DEVICE_CONFIGURED_SOURCE_H

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "commits/commit_log.h"
#include "device/committed_configuration.h"
#include "sources/native_source.h"
#include "yang/schemas.h"

namespace yfw::device {

// Which native configuration is in force on a device.
enum class InForce {
    committed, // the last commit's, and before the first one the device's own: nothing applies it, as on a
               // recording
    its_own,   // what the device says: commits are applied to it, but it may have been changed since
};

// Reads the native configuration that is in force, and the state. Borrows the schemas and the source. The store
// is opened once, and reopened when another file replaces it. Thread-safe if the source is.
class ConfiguredSource final : public sources::NativeSource {
public:
    // A store that does not exist counts as empty; reading does not create it. An empty path means that there
    // is never a store. `owner`: the device that the store belongs to, see CommitLog.
    ConfiguredSource(const yang::Schemas &schemas, sources::NativeSource &source, std::filesystem::path store,
                     std::optional<std::string> owner = std::nullopt, InForce in_force = InForce::committed)
        : schemas_(schemas), source_(source), store_(std::move(store)), owner_(std::move(owner)),
          in_force_(in_force) {}

    yang::DataTree read(const ly_ctx *context) override;
    sources::Snapshot snapshot(const ly_ctx *context) override;

    // The source's own configuration.
    yang::DataTree recorded_configuration();

    // The native configuration of the last commit, or the source's own before the first one.
    yang::SharedData running_configuration();

    // Of the last commit; nothing when there is none yet.
    std::optional<int64_t> last_number() const;
    // As it is stored: with its configurations, or with a change.
    std::optional<commits::Commit> find_commit(int64_t number) const;
    // The configuration of a commit, anew; nothing when there is no such commit.
    std::optional<StoredConfiguration> read_configuration(int64_t number) const;
    // That of the commit that was read or made last.
    CommittedConfiguration &kept() const { return kept_; }
    // Newest first, without edit, difference and configuration texts.
    std::vector<commits::Commit> history() const;

    // NULL when there is none; `create` creates it and its directory.
    std::shared_ptr<commits::CommitLog> log(bool create) const;

    const std::filesystem::path &store() const { return store_; }

private:
    // A replacement file may reuse the inode number, but its birth time is later.
    struct StoreIdentity {
        uint64_t number = 0; // the inode
        int64_t born = 0;    // birth time, nanoseconds
        bool operator==(const StoreIdentity &) const = default;
    };
    static std::optional<StoreIdentity> identity_of(const std::filesystem::path &store);
    // Makes sure that the last commit's configuration is kept; returns its number, nothing before the first.
    std::optional<int64_t> keep_last();
    // What `get` finds of the last commit; nothing before the first.
    template <class Get> auto of_last(Get &&get) -> decltype(get(int64_t()));
    std::optional<yang::SharedData> committed_configuration();
    std::optional<yang::SharedForest> committed_forest();

    const yang::Schemas &schemas_;
    sources::NativeSource &source_;
    std::filesystem::path store_;
    std::optional<std::string> owner_;
    InForce in_force_;

    mutable std::mutex mutex_;                      // guards the members below
    mutable std::optional<StoreIdentity> identity_; // of log_
    mutable std::shared_ptr<commits::CommitLog> log_;
    mutable CommittedConfiguration kept_;
};

} // namespace yfw::device

#endif
