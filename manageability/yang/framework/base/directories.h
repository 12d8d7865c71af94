// Directories for a program's own files.
#ifndef YFW_BASE_DIRECTORIES_H
#define YFW_BASE_DIRECTORIES_H

#include <filesystem>
#include <system_error>

namespace yfw {

// Creates the directory and those above it that are missing, on disk and for this user only (mode 0700, as the
// XDG base directories ask for). Leaves existing ones as they are.
[[nodiscard]] std::error_code make_private_directories(const std::filesystem::path &directory);

// Brings the names in a directory to disk; nothing happens where the system offers no way.
[[nodiscard]] std::error_code sync_directory(const std::filesystem::path &directory);

} // namespace yfw

#endif
