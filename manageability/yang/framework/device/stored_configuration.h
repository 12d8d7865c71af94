// Configurations as the store has them: whole, or as changes of the one before.
#ifndef YFW_DEVICE_STORED_CONFIGURATION_H
#define YFW_DEVICE_STORED_CONFIGURATION_H

#include <cstdint>
#include <optional>
#include <string>

#include "commits/commit_log.h"
#include "device/committed_configuration.h"
#include "yang/schemas.h"

namespace yfw::device {

// The configuration of a commit; nothing when there is no such commit. `place`: the store's name, for errors.
// Throws Error and StoreError.
std::optional<StoredConfiguration> read_stored(const yang::Schemas &schemas, const commits::CommitLog &store,
                                               int64_t number, const std::string &place);

// The commit with its two configurations as texts, however it is stored. Throws Error and StoreError.
commits::Commit with_texts(const yang::Schemas &schemas, const commits::CommitLog &store,
                           commits::Commit commit, const std::string &place);

// The same for a commit and the one before it, which the first one lacks.
struct CommitAndPrevious {
    commits::Commit commit;
    std::optional<commits::Commit> previous;
};
CommitAndPrevious with_previous(const yang::Schemas &schemas, const commits::CommitLog &store,
                                const commits::Commit &commit, const std::string &place);

} // namespace yfw::device

#endif
