// The configuration of the last commit, in memory.
#ifndef YFW_DEVICE_COMMITTED_CONFIGURATION_H
#define YFW_DEVICE_COMMITTED_CONFIGURATION_H

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>

#include "device/configuration.h"
#include "device/kept_tree.h"
#include "device/part_change.h"
#include "yang/data_tree.h"
#include "yang/instance_tree.h"

namespace yfw::device {

// What the store has of a commit: the bytes of the last configuration that is stored whole, and of the changes
// since then.
struct StoredSize {
    size_t whole = 0;
    size_t changes = 0;
    size_t number_of_changes = 0;
};

// A copy of entries of the lists, and of everything outside of them.
struct Part {
    EntryNames names; // of the entries
    Configuration configuration;
    Configuration containers; // of the lists, empty
    StoredSize size;          // of the whole
};

// A configuration as it was read from the store or is about to be put there.
struct StoredConfiguration {
    yang::DataTree native;
    std::optional<yang::DataTree> openconfig; // nothing where an earlier version has stored none
    StoredSize size;
};

// Commits are known by their numbers. Thread-safe.
class CommittedConfiguration {
public:
    // Forgets it: another store may have a commit of the same number.
    void clear();

    // Each returns nothing when another commit is kept.
    std::optional<yang::SharedData> native(int64_t number) const;
    std::optional<yang::SharedForest> forest(int64_t number);
    // Nothing also while the OpenConfig side is not known.
    std::optional<Configuration> both(int64_t number) const;
    // Nothing also where the store has no OpenConfig side.
    std::optional<Part> part(int64_t number, const IndependentEntries &entries, const EntryNames &names);
    // Nothing also where the store has no OpenConfig side.
    std::optional<StoredSize> size(int64_t number) const;

    // Returns both sides; nothing when there is no OpenConfig side.
    std::optional<Configuration> keep(int64_t number, StoredConfiguration configuration);
    // The same for one that is stored without its OpenConfig side, which is given here.
    Configuration keep_translated(int64_t number, StoredConfiguration configuration, yang::DataTree openconfig);

    // Makes it the configuration of the next commit. Does nothing when another commit is kept.
    void advance(int64_t number, const PartChange &change, const StoredSize &size,
                 const IndependentEntries &entries);

private:
    struct Kept {
        int64_t number;
        KeptTree native;
        std::optional<KeptTree> openconfig;
        std::optional<StoredSize> size; // nothing when the OpenConfig side is not stored
    };
    bool has(int64_t number) const { return kept_.has_value() && kept_->number == number; }

    mutable std::mutex mutex_;
    std::optional<Kept> kept_; // guarded by mutex_
};

} // namespace yfw::device

#endif
