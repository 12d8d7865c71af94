// Keeps a record of the commit that is being applied to the device, so that a process that is killed meanwhile
// does not leave the device half changed unnoticed.
#ifndef YFW_DEVICE_APPLYING_MARK_H
#define YFW_DEVICE_APPLYING_MARK_H

#include <cstdint>
#include <filesystem>

namespace yfw::device {

// A file next to the store, with the commit's number in its name: removing one's own mark never removes that of
// another process, which applies a later commit. The mark of a commit that is stored says nothing. It is not
// synchronised: it has to outlive the process, and with the machine the device's daemon restarts, too.
//
// Throws Error.
void mark_applying(const std::filesystem::path &store, int64_t number);

// Whether a process has begun to apply this commit, and neither finished nor undone it. Ask while nobody can
// commit.
bool is_marked_applying(const std::filesystem::path &store, int64_t number);

void unmark_applying(const std::filesystem::path &store, int64_t number) noexcept;

} // namespace yfw::device

#endif
