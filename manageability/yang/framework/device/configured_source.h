// The native data of a device whose configuration can be changed: its running configuration is the last commit,
// its state comes from a source.
#ifndef YFW_DEVICE_CONFIGURED_SOURCE_H
#define YFW_DEVICE_CONFIGURED_SOURCE_H

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

#include "commits/commit_log.h"
#include "sources/native_source.h"
#include "sources/native_target.h"
#include "yang/schemas.h"

namespace yfw::device {

// Reads through to the last commit, or to the source's own configuration before the first one. Borrows the
// source and the target; a device without a target only keeps its configuration.
class ConfiguredSource final : public sources::NativeSource {
public:
    // A store that is not there yet counts as empty and is not made by reading.
    ConfiguredSource(const yang::Schemas &schemas, sources::NativeSource &source, std::filesystem::path store,
                     sources::NativeTarget *target = nullptr)
        : schemas_(schemas), source_(source), store_(std::move(store)), target_(target) {}

    yang::DataTree read(const ly_ctx *context) override;
    sources::Snapshot snapshot(const ly_ctx *context) override;

    // The source's own configuration.
    yang::DataTree recorded_configuration();

    // The last commit's configuration, or the source's own before the first one.
    yang::DataTree running_configuration();

    // -1 when there is none yet.
    int64_t last_commit_number() const;

    // From now on the store stays open: whoever closes it last has to tidy it up, which takes longer than a
    // commit.
    void hold_store() const;

    // Makes the target run the last commit, if there is one: it may have been restarted since.
    void restore_target();

    const std::filesystem::path &store() const { return store_; }
    sources::NativeTarget *target() const { return target_; } // may be NULL

private:
    // A file that takes another's place may have its number, but is younger.
    struct StoreIdentity {
        uint64_t number = 0; // the inode
        int64_t born = 0;    // nanoseconds
        bool operator==(const StoreIdentity &) const = default;
    };
    static std::optional<StoreIdentity> identity_of(const std::filesystem::path &store);

    commits::CommitLog *opened_store() const;
    std::optional<commits::Commit> last_commit() const;
    std::optional<yang::SharedData> committed_configuration();

    const yang::Schemas &schemas_;
    sources::NativeSource &source_;
    std::filesystem::path store_;
    sources::NativeTarget *target_;

    mutable std::mutex store_mutex_;
    mutable std::optional<StoreIdentity> identity_; // of opened_
    mutable std::unique_ptr<commits::CommitLog> opened_;
    // The configuration of the last commit that was looked at.
    struct Kept {
        int64_t number = 0;
        yang::SharedData configuration;
    };
    mutable std::optional<Kept> kept_;
};

} // namespace yfw::device

#endif
