#include "base/spool.h"

#include <cstdlib>
#include <filesystem>

#include <fcntl.h>

#include "base/error.h"
#include "base/system_error.h"

namespace yfw {
namespace {

constexpr size_t most_in_memory = 256 * 1024; // octets

[[noreturn]] void refuse(const std::string &place) {
    throw Error(ErrorTag::resource_denied, "",
                "a long answer cannot be kept in " + place + ": " + system_error_text());
}

std::string directory() {
    std::error_code none;
    const std::filesystem::path named = std::filesystem::temp_directory_path(none);
    return none ? "/tmp" : named.string();
}

// Not every file system makes files without a name.
Descriptor nameless_file(const std::string &place) {
    Descriptor file(::open(place.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (file.is_open())
        return file;
    std::string name = place + "/yfw-XXXXXX";
    Descriptor named(::mkostemp(name.data(), O_CLOEXEC));
    if (!named.is_open())
        refuse(place);
    ::unlink(name.c_str());
    return named;
}

} // namespace

void Spool::write_out() {
    if (!file_.is_open())
        file_ = nameless_file(directory());
    if (!write_all(file_.get(), memory_))
        refuse(directory());
    file_size_ += memory_.size();
    memory_.clear();
}

Spool &Spool::operator<<(std::string_view piece) {
    memory_.append(piece);
    if (memory_.size() > most_in_memory)
        write_out();
    return *this;
}

Descriptor Spool::take_file() {
    write_out();
    file_size_ = 0;
    return std::move(file_);
}

std::string Spool::text() const {
    std::string text(file_size_, '\0');
    size_t done = 0;
    while (done < file_size_) {
        const ssize_t count =
            ::pread(file_.get(), text.data() + done, file_size_ - done, static_cast<off_t>(done));
        if (count <= 0)
            refuse(directory());
        done += static_cast<size_t>(count);
    }
    return text + memory_;
}

} // namespace yfw
