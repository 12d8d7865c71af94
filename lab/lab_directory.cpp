#include "lab/lab_directory.h"

#include <cerrno>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "base/error.h"
#include "base/system_error.h"
#include "lab/topology_file.h"

namespace yfw::lab {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr mode_t directory_mode = 0755; // lldpd's own user reads its configuration there
const fs::path default_base = Place().base;

[[noreturn]] void refuse(const fs::path &path, const std::string &message) {
    throw Error(ErrorTag::operation_failed, path.string(), message);
}

void make_directory(const fs::path &path) {
    if (::mkdir(path.c_str(), directory_mode) == 0)
        ::chmod(path.c_str(), directory_mode); // overrides the umask
    else if (errno != EEXIST)
        refuse(path, "cannot be created: " + system_error_text());
}

// Whether the path still leads to the open directory, which may have been removed and created again meanwhile.
bool is_at(const Descriptor &open, const fs::path &path) {
    struct stat there {
    }, here{};
    return ::fstat(open.get(), &here) == 0 && ::lstat(path.c_str(), &there) == 0 &&
           here.st_ino == there.st_ino && here.st_dev == there.st_dev;
}

// Waits for the lock. The directory may have been removed by another process meanwhile; check with is_at.
void lock(const Descriptor &directory, const fs::path &path, std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds pause{20};
    const auto deadline = Clock::now() + patience;
    while (::flock(directory.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            refuse(path, "cannot be locked: " + system_error_text());
        if (Clock::now() >= deadline)
            refuse(path, "another command is using this laboratory; try again when it has finished");
        std::this_thread::sleep_for(pause);
    }
}

} // namespace

Place checked(Place place) {
    if (!is_name(place.name))
        throw Error(ErrorTag::invalid_value, place.name,
                    "expected a name for the laboratory of 1 to 32 letters, digits, - and _");
    std::error_code error;
    const fs::path canonical = fs::canonical(place.base, error);
    if (!error && fs::is_directory(canonical))
        place.base = canonical;
    else if (place.base != default_base)
        throw Error(ErrorTag::invalid_value, place.base.string(), "expected a directory that exists");
    return place;
}

LabDirectory LabDirectory::make(const Place &place) {
    constexpr int most_attempts = 10;
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        if (place.base == default_base)
            make_directory(place.base);
        make_directory(place.directory());
        if (std::optional<LabDirectory> directory = open(place))
            return std::move(*directory);
    }
    refuse(place.directory(), "is repeatedly created and removed by another command");
}

std::optional<LabDirectory> LabDirectory::open(const Place &place, std::chrono::milliseconds patience) {
    const fs::path path = place.directory();
    Descriptor directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory.is_open() && errno == ENOENT)
        return std::nullopt;
    if (!directory.is_open())
        refuse(path, "is not a laboratory's directory: " + system_error_text());
    check_owner(place);
    lab::lock(directory, path, patience);
    if (!is_at(directory, path))
        return std::nullopt;
    return LabDirectory(place, std::move(directory));
}

bool LabDirectory::remove() {
    if (::rmdir(place_.directory().c_str()) != 0)
        return false;
    if (place_.base == default_base)
        ::rmdir(place_.base.c_str()); // it may contain other laboratories
    return true;
}

void check_owner(const Place &place) {
    struct stat found {};
    if (::lstat(place.directory().c_str(), &found) != 0)
        return;
    if (!S_ISDIR(found.st_mode) || (found.st_uid != 0 && found.st_uid != ::geteuid()) ||
        (found.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        refuse(place.directory(), "expected a directory that only root or you can write to");
}

void check_open_to_all(const fs::path &directory) {
    fs::path path;
    for (const fs::path &part : directory) {
        path /= part;
        struct stat found {};
        if (::stat(path.c_str(), &found) == 0 && (found.st_mode & S_IXOTH) == 0)
            refuse(path,
                   "expected a directory that every user can enter (chmod o+x): lldpd runs as its own user");
    }
}

} // namespace yfw::lab
