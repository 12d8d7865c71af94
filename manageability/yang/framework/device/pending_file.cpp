#include "device/pending_file.h"

#include <fstream>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "base/directories.h"
#include "base/error.h"

namespace yfw::device {
namespace {

std::filesystem::path pending_file(const std::filesystem::path &store) {
    return store.string() + ".unconfirmed";
}

} // namespace

void remember_pending(const std::filesystem::path &store, int64_t back_to) {
    const std::filesystem::path path = pending_file(store);
    if (const std::error_code error = make_private_directories(path.parent_path()))
        throw Error(ErrorTag::operation_failed, path.parent_path().string(),
                    "cannot be made: " + error.message());
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
    const std::string text = std::to_string(back_to) + "\n";
    const bool written = file >= 0 &&
                         write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
                         fsync(file) == 0;
    if (file >= 0)
        close(file);
    if (!written)
        throw Error(ErrorTag::operation_failed, path.string(), "cannot be written");
}

std::optional<int64_t> remembered_pending(const std::filesystem::path &store) {
    const std::filesystem::path path = pending_file(store);
    if (access(path.c_str(), F_OK) != 0) // as nearly always, and sooner than a stream fails to open it
        return std::nullopt;
    std::ifstream file(path);
    int64_t back_to = -1;
    return file >> back_to && back_to >= 0 ? std::optional(back_to) : std::nullopt;
}

void forget_pending(const std::filesystem::path &store) noexcept {
    std::error_code ignored;
    std::filesystem::remove(pending_file(store), ignored);
}

} // namespace yfw::device
