#include "device/applying_mark.h"

#include <string>
#include <system_error>

#include <fcntl.h>

#include "base/descriptor.h"
#include "base/error.h"
#include "base/system_error.h"

namespace yfw::device {
namespace {

std::filesystem::path mark_of(const std::filesystem::path &store, int64_t number) {
    return store.string() + ".applying-" + std::to_string(number);
}

} // namespace

void mark_applying(const std::filesystem::path &store, int64_t number) {
    const std::filesystem::path mark = mark_of(store, number);
    const Descriptor file(::open(mark.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.is_open())
        throw Error(ErrorTag::operation_failed, mark.string(), "cannot be written: " + system_error_text());
}

bool is_marked_applying(const std::filesystem::path &store, int64_t number) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(mark_of(store, number), ignored));
}

void unmark_applying(const std::filesystem::path &store, int64_t number) noexcept {
    std::error_code ignored;
    std::filesystem::remove(mark_of(store, number), ignored);
}

} // namespace yfw::device
