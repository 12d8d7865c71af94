// Puts the configuration of a commit into its record, whole or as a change, and keeps it in memory.
#ifndef YFW_DEVICE_COMMIT_WRITER_H
#define YFW_DEVICE_COMMIT_WRITER_H

#include <cstdint>
#include <optional>

#include "commits/commit_log.h"
#include "device/committed_configuration.h"
#include "device/configuration.h"
#include "device/configurations.h"
#include "device/independent_entries.h"
#include "device/part_change.h"

namespace yfw::device {

// Borrows everything.
class CommitWriter {
public:
    CommitWriter(CommittedConfiguration &kept, Configurations &configurations,
                 const IndependentEntries &entries)
        : kept_(kept), configurations_(configurations), entries_(entries) {}

    // What to keep in memory once the commit is stored; nothing: it will be read from the store.
    struct Written {
        std::optional<PartChange> change;
        std::optional<StoredConfiguration> whole;
        StoredSize size;
    };

    // Fills in the configuration that a commit makes of that of `last`. Throws Error.
    void write_whole(const Configuration &after, commits::Commit &to) const;
    // The same for the part of it that the commit changes, stored as a change or whole.
    Written write_part(int64_t last, const Part &before, const Configuration &after, commits::Commit &to) const;

    // To be called when the commit after `last` is stored.
    void stored(int64_t last, Written written) const;

private:
    StoredConfiguration changed(int64_t last, const PartChange &change) const;

    CommittedConfiguration &kept_;
    Configurations &configurations_;
    const IndependentEntries &entries_;
};

} // namespace yfw::device

#endif
