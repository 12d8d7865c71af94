// Keeps a record of the unconfirmed commit on disk, so that it can be rolled back whenever the server dies.
#ifndef YFW_DEVICE_PENDING_FILE_H
#define YFW_DEVICE_PENDING_FILE_H

#include <cstdint>
#include <filesystem>
#include <optional>

namespace yfw::device {

// Records, next to the store, the number of the commit to roll back to. It is on disk on return; call before
// making the commit. Throws Error.
void remember_pending(const std::filesystem::path &store, int64_t back_to);

// Nothing when there is none. A truncated file was written before its commit began, and counts as none.
std::optional<int64_t> remembered_pending(const std::filesystem::path &store);

void forget_pending(const std::filesystem::path &store) noexcept;

} // namespace yfw::device

#endif
