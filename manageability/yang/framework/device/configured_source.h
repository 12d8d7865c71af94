// The native data of a device whose configuration can be changed: its running configuration is the last commit,
// its state comes from a source.
#ifndef YFW_DEVICE_CONFIGURED_SOURCE_H
#define YFW_DEVICE_CONFIGURED_SOURCE_H

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "commits/commit_log.h"
#include "sources/native_source.h"
#include "yang/schemas.h"

namespace yfw::device {

// Reads through to the last commit, or to the source's own configuration before the first one. Borrows the
// schemas and the source. The store is opened once, and again when another file takes its place. Safe for
// several threads when the source is.
class ConfiguredSource final : public sources::NativeSource {
public:
    // A store that is not there yet counts as empty and is not made by reading. An empty path: there is never
    // one.
    ConfiguredSource(const yang::Schemas &schemas, sources::NativeSource &source, std::filesystem::path store)
        : schemas_(schemas), source_(source), store_(std::move(store)) {}

    yang::DataTree read(const ly_ctx *context) override;
    sources::Snapshot snapshot(const ly_ctx *context) override;

    // The source's own configuration.
    yang::DataTree recorded_configuration();

    // The last commit's configuration, or the source's own before the first one.
    yang::SharedData running_configuration();

    // The configuration of this commit, which is the last one or was; parsed once while it is the last.
    yang::SharedData configuration_of(const commits::Commit &commit);

    // -1 when there is none yet.
    int64_t last_commit_number() const;
    std::optional<commits::Commit> last_commit() const;
    std::optional<commits::Commit> find_commit(int64_t number) const;
    // Newest first, without their texts.
    std::vector<commits::Commit> history() const;

    // NULL when there is none; `create` makes it with its directory.
    std::shared_ptr<commits::CommitLog> log(bool create) const;

    const std::filesystem::path &store() const { return store_; }

private:
    // A file that takes another's place may have its number, but is younger.
    struct StoreIdentity {
        uint64_t number = 0; // the inode
        int64_t born = 0;    // nanoseconds
        bool operator==(const StoreIdentity &) const = default;
    };
    static std::optional<StoreIdentity> identity_of(const std::filesystem::path &store);
    std::optional<yang::SharedData> committed_configuration();

    const yang::Schemas &schemas_;
    sources::NativeSource &source_;
    std::filesystem::path store_;

    mutable std::mutex mutex_;                      // of what follows
    mutable std::optional<StoreIdentity> identity_; // of log_
    mutable std::shared_ptr<commits::CommitLog> log_;
    // The configuration of the last commit that was looked at.
    struct Kept {
        int64_t number = 0;
        yang::SharedData configuration;
    };
    mutable std::optional<Kept> kept_;
};

} // namespace yfw::device

#endif
