#include "device/store_lock.h"

#include <cerrno>
#include <chrono>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/directories.h"
#include "base/error.h"
#include "base/system_error.h"
#include "commits/new_store.h"

namespace yfw::device {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds longest_wait{10};
constexpr std::chrono::milliseconds between_attempts{5};
constexpr size_t longest_content = 4096;

// The bytes of the file that are locked.
constexpr off_t serving_byte = 0;
constexpr off_t turn_byte = 1;

struct flock lock_of(short type, off_t byte) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    return lock;
}

// Of the open file, not of the process: closing another descriptor of the file does not release it.
bool try_lock(int file, off_t byte) {
    struct flock lock = lock_of(F_WRLCK, byte);
    return ::fcntl(file, F_OFD_SETLK, &lock) == 0;
}

bool lock_in_time(int file, off_t byte) {
    const auto end = std::chrono::steady_clock::now() + longest_wait;
    while (!try_lock(file, byte)) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(between_attempts);
    }
    return true;
}

void unlock(int file, off_t byte) {
    struct flock lock = lock_of(F_UNLCK, byte);
    ::fcntl(file, F_OFD_SETLK, &lock);
}

bool is_locked_by_another(int file, off_t byte) {
    struct flock lock = lock_of(F_WRLCK, byte);
    return ::fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

// Behind links, as SQLite has its own files.
fs::path real_path(const fs::path &store) {
    std::error_code error;
    if (!fs::is_symlink(store, error))
        return store;
    const fs::path real = fs::weakly_canonical(store, error);
    return error ? store : real;
}

fs::path lock_file(const fs::path &store) {
    return real_path(store).string() + ".lock";
}

// A lock that is a link, or has another name, may be somebody's attempt to have another file written.
bool is_plain(int file) {
    struct stat status {};
    return ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1;
}

bool has_further_names(const fs::path &store) {
    struct stat status {};
    return ::stat(store.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink > 1;
}

// The lock and SQLite's own files next to a store have its name, so users of another name would neither see the
// lock nor the transactions.
void refuse_further_names(const fs::path &store) {
    if (!has_further_names(store))
        return;
    commits::remove_left_behind(real_path(store)); // the name under which it was made
    if (has_further_names(store))
        throw Error(ErrorTag::operation_failed, store.string(),
                    "has further names (hard links); a store that is served or written must have a single one");
}

// Whoever may write the store may lock it.
void give_access_of(const fs::path &store, int file) {
    struct stat of_store {};
    struct stat of_lock {};
    if (::stat(store.c_str(), &of_store) != 0 || ::fstat(file, &of_lock) != 0)
        return;
    constexpr mode_t writing = 0222;
    const mode_t writers = of_store.st_mode & writing;
    const mode_t mode = writers | (writers << 1); // no locks for those who may only read
    if ((of_lock.st_mode & ALLPERMS) != mode)
        ::fchmod(file, mode);
    const bool is_of_others = of_store.st_uid != of_lock.st_uid || of_store.st_gid != of_lock.st_gid;
    if (is_of_others && ::fchown(file, of_store.st_uid, of_store.st_gid) != 0) {
        // Only root may; other users keep it.
    }
}

std::string line_of(const char *word, const std::optional<StoreHolder> &holder) {
    return holder.has_value()
               ? std::string(word) + " " + std::to_string(holder->session) + " " + holder->user + "\n"
               : "";
}

std::string content_of(const StoreHolds &holds) {
    return "process " + std::to_string(::getpid()) + "\n" + line_of("locked", holds.locked) +
           line_of("unconfirmed", holds.unconfirmed);
}

void write_content(int file, const std::string &content) {
    if (::pwrite(file, content.data(), content.size(), 0) == static_cast<ssize_t>(content.size()) &&
        ::ftruncate(file, static_cast<off_t>(content.size())) == 0)
        return;
    throw Error(ErrorTag::operation_failed, "", "the store's lock cannot be written: " + system_error_text());
}

struct Content {
    std::string process = "?";
    StoreHolds holds;
};

Content content_in(int file) {
    std::string text(longest_content, '\0');
    const ssize_t length = ::pread(file, text.data(), text.size(), 0);
    text.resize(length > 0 ? static_cast<size_t>(length) : 0);
    Content content;
    std::istringstream lines(text);
    for (std::string word; lines >> word;) {
        StoreHolder holder;
        if (word == "process")
            lines >> content.process;
        else if (lines >> holder.session >> std::ws && std::getline(lines, holder.user))
            (word == "locked" ? content.holds.locked : content.holds.unconfirmed) = holder;
    }
    return content;
}

std::string described(const StoreHolder &holder) {
    return "NETCONF session " + std::to_string(holder.session) + " of user " + holder.user;
}

void refuse_holds(const Content &content) {
    const std::string server = " of the server with process number " + content.process;
    if (content.holds.locked.has_value())
        throw Error(ErrorTag::in_use, "",
                    "the running configuration is locked by " + described(*content.holds.locked) + server);
    if (content.holds.unconfirmed.has_value())
        throw Error(ErrorTag::in_use, "",
                    described(*content.holds.unconfirmed) + server +
                        " has to confirm or cancel its commit first");
}

Error busy(const fs::path &store) {
    return Error(ErrorTag::in_use, store.string(), "another process is committing to this store");
}

} // namespace

// Not open where the store can only be read.
Descriptor StoreLock::open_file() const {
    const fs::path path = lock_file(store_);
    if (const std::error_code error = make_private_directories(path.parent_path()); error)
        return Descriptor();
    constexpr int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    Descriptor file(::open(path.c_str(), flags, 0600));
    const int error = errno;
    if (file.is_open() && is_plain(file.get())) {
        give_access_of(store_, file.get());
        return file;
    }
    if (file.is_open() || error == ELOOP)
        throw Error(ErrorTag::operation_failed, path.string(),
                    "is a link or no file, and not the store's lock");
    if (::faccessat(AT_FDCWD, store_.c_str(), W_OK, AT_EACCESS) == 0)
        throw Error(ErrorTag::operation_failed, path.string(), system_error_text(error));
    return Descriptor();
}

void StoreLock::serve() {
    if (store_.empty())
        return;
    refuse_further_names(store_);
    Descriptor file = open_file();
    if (!file.is_open())
        return;
    if (!try_lock(file.get(), serving_byte))
        throw Error(ErrorTag::in_use, store_.string(),
                    "is already served, by the server with process number " + content_in(file.get()).process);
    served_ = std::move(file);
    try {
        publish({}, false);
    } catch (...) {
        served_.close();
        throw;
    }
}

void StoreLock::publish(const StoreHolds &holds, bool to_release) {
    if (!served_.is_open())
        return;
    const bool is_locked = lock_in_time(served_.get(), turn_byte);
    if (!is_locked && !to_release)
        throw busy(store_);
    write_content(served_.get(), content_of(holds));
    if (is_locked)
        unlock(served_.get(), turn_byte);
}

StoreLock::Turn StoreLock::take_turn() const {
    if (store_.empty() || served_.is_open())
        return {};
    refuse_further_names(store_);
    Turn turn{open_file(), true};
    if (!turn.file.is_open())
        return {};
    if (!lock_in_time(turn.file.get(), turn_byte))
        throw busy(store_);
    if (is_locked_by_another(turn.file.get(), serving_byte)) {
        turn.is_between_servers = false;
        refuse_holds(content_in(turn.file.get()));
    }
    return turn;
}

} // namespace yfw::device
