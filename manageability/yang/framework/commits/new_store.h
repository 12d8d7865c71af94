// Makes the file of a new store: the whole store appears under its name at once.
#ifndef YFW_COMMITS_NEW_STORE_H
#define YFW_COMMITS_NEW_STORE_H

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace yfw::commits {

// The steps of making one, for tests that kill the process at each of them.
enum class MakingStep {
    begun,  // the temporary file exists
    filled, // it is a store, and on disk
    named   // the store has its name, and the temporary one too
};

// Makes an empty store with its directory, accessible to this user only. Does nothing when the file exists, and
// when another process makes it at the same time. Removes what processes that were killed here left behind.
// Throws StoreError.
void make_store(const std::filesystem::path &file, const std::optional<std::string> &owner,
                const std::function<void(MakingStep)> &reached = {});

// Removes what processes that were killed while they made the store have left beside it. The store must exist.
void remove_left_behind(const std::filesystem::path &file);

} // namespace yfw::commits

#endif
