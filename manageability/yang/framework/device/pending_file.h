// A commit that nobody has confirmed so far, on the disk: a server that ends at any moment leaves enough to
// take it back.
#ifndef YFW_DEVICE_PENDING_FILE_H
#define YFW_DEVICE_PENDING_FILE_H

#include <cstdint>
#include <filesystem>
#include <optional>

namespace yfw::device {

// Beside the store: the number of the commit to go back to. On the disk when it returns; to be called before
// the commit is made. Throws Error.
void remember_pending(const std::filesystem::path &store, int64_t back_to);

// Nothing when there is none. A file that was cut short was written before its commit began, and counts as
// none.
std::optional<int64_t> remembered_pending(const std::filesystem::path &store);

void forget_pending(const std::filesystem::path &store) noexcept;

} // namespace yfw::device

#endif
