// Text that is written once and read once, of any length.
#ifndef YFW_BASE_SPOOL_H
#define YFW_BASE_SPOOL_H

#include <cstddef>
#include <string>
#include <string_view>

#include "base/descriptor.h"

namespace yfw {

// Keeps a short text in memory, and a longer one in a temporary file without a name, so that the memory it
// needs does not depend on its length.
class Spool {
public:
    Spool() = default;
    Spool(std::string_view text) : memory_(text) {}

    // Throws Error with the tag resource-denied when the file cannot be written.
    Spool &operator<<(std::string_view piece);

    size_t size() const { return file_size_ + memory_.size(); }
    bool empty() const { return size() == 0; }

    // The text while it is short; otherwise its end, which is not in the file yet.
    const std::string &memory() const { return memory_; }
    // Whether the text, or its beginning, is in a file.
    bool has_file() const { return file_.is_open(); }

    // Completes the file and gives it away, with all of the text; has_file() must be true.
    Descriptor take_file();

    // All of it, in memory.
    std::string text() const;

private:
    void write_out();

    std::string memory_;
    Descriptor file_;
    size_t file_size_ = 0;
};

} // namespace yfw

#endif
