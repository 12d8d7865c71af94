#include "base/descriptor.h"

#include <array>
#include <cerrno>
#include <stdexcept>

#include <fcntl.h>

#include "base/system_error.h"

namespace yfw {

Pipe::Pipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot create a pipe: " + system_error_text());
    read_end = Descriptor(ends[0]);
    write_end = Descriptor(ends[1]);
}

bool write_all(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        content.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

bool append_from(int descriptor, std::string &text) {
    std::array<char, 1 << 16> buffer;
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    if (count > 0)
        text.append(buffer.data(), static_cast<size_t>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}

} // namespace yfw
