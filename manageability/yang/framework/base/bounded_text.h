// Texts from outside, up to a length.
#ifndef YFW_BASE_BOUNDED_TEXT_H
#define YFW_BASE_BOUNDED_TEXT_H

#include <cstdint>
#include <filesystem>
#include <istream>
#include <string>

namespace yfw {

constexpr uint64_t mebibyte = 1024 * 1024; // octets

// The rest of a stream, of at most `most` octets. Throws Error (invalid-value) with `place` for a longer one.
std::string bounded_text(std::istream &from, uint64_t most, const std::string &place);

// Throws Error (invalid-value) with the file as its path unless it is a regular file of at most `most` octets.
// Pipes and devices may have no end.
void require_bounded_file(const std::filesystem::path &file, uint64_t most);

// All of such a file. Throws Error in the same way, and does not wait for the writer of a named pipe.
std::string bounded_file_text(const std::filesystem::path &file, uint64_t most);

} // namespace yfw

#endif
