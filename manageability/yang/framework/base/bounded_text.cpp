#include "base/bounded_text.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/error.h"
#include "base/system_error.h"

namespace yfw {
namespace {

constexpr size_t step = 64 * 1024;

[[noreturn]] void refuse(const std::string &place, const std::string &why) {
    throw Error(ErrorTag::invalid_value, place, why);
}

[[noreturn]] void refuse_unreadable(const std::filesystem::path &file) {
    refuse(file.string(), "cannot be read: " + system_error_text());
}

[[noreturn]] void refuse_length(const std::string &place, uint64_t most) {
    refuse(place, "is larger than " + std::to_string(most / mebibyte) + " MiB");
}

void check(const std::filesystem::path &file, const struct stat &status, uint64_t most) {
    if (!S_ISREG(status.st_mode))
        refuse(file.string(), "is not a file");
    if (static_cast<uint64_t>(status.st_size) > most)
        refuse_length(file.string(), most);
}

} // namespace

std::string bounded_text(std::istream &from, uint64_t most, const std::string &place) {
    std::string text;
    std::array<char, step> piece{};
    do {
        from.read(piece.data(), piece.size());
        text.append(piece.data(), static_cast<size_t>(from.gcount()));
        if (text.size() > most)
            refuse_length(place, most);
    } while (from);
    return text;
}

void require_bounded_file(const std::filesystem::path &file, uint64_t most) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0)
        refuse_unreadable(file);
    check(file, status, most);
}

std::string bounded_file_text(const std::filesystem::path &file, uint64_t most) {
    require_bounded_file(file, most); // before it is opened: that alone has effects on some devices
    const Descriptor opened(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!opened.is_open() || ::fstat(opened.get(), &status) != 0)
        refuse_unreadable(file);
    check(file, status, most);
    std::string text;
    text.reserve(static_cast<size_t>(status.st_size));
    std::array<char, step> piece{};
    while (true) {
        const ssize_t count = ::read(opened.get(), piece.data(), piece.size());
        if (count == 0)
            return text;
        if (count > 0)
            text.append(piece.data(), static_cast<size_t>(count));
        else if (errno != EINTR)
            refuse_unreadable(file);
        if (text.size() > most) // it has grown
            refuse_length(file.string(), most);
    }
}

} // namespace yfw
