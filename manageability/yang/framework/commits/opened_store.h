// Opens the file of a store: to be written, to be read, or to be read without locks.
#ifndef YFW_COMMITS_OPENED_STORE_H
#define YFW_COMMITS_OPENED_STORE_H

#include <cstdint>
#include <filesystem>
#include <memory>

#include <sys/types.h>

#include "commits/database.h"

namespace yfw::commits {

// With as much access as the system grants. Throws StoreError when the file is missing or is no store.
std::unique_ptr<Database> open_store(const std::filesystem::path &file);

// Two equal ones: nobody has written the store in between.
class StoreState {
public:
    explicit StoreState(const std::filesystem::path &file);
    bool operator==(const StoreState &) const = default;

    // Nobody has the store open, and the file alone is all of it.
    bool is_quiet() const { return is_quiet_; }

private:
    ino_t number_ = 0;
    off_t size_ = 0;
    int64_t changed_ = 0; // the file's status change time, nanoseconds
    bool is_quiet_ = false;
};

} // namespace yfw::commits

#endif
