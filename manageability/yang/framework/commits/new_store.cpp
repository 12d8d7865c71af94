#include "commits/new_store.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/directories.h"
#include "base/system_error.h"
#include "commits/database.h"
#include "commits/store_format.h"

namespace yfw::commits {
namespace {

namespace fs = std::filesystem;

constexpr size_t random_characters = 6; // of mkostemp(3)

[[noreturn]] void fail(const fs::path &file, int error = errno) {
    throw StoreError(file.string() + ": cannot be made: " + system_error_text(error));
}

fs::path directory_of(const fs::path &file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

std::string temporary_prefix(const fs::path &file) {
    return "." + file.filename().string() + ".new-";
}

// A file of its own name, removed with the object.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path &file) : store_(file) {
        std::string pattern =
            (directory_of(file) / (temporary_prefix(file) + std::string(random_characters, 'X'))).string();
        descriptor_ = Descriptor(mkostemp(pattern.data(), O_CLOEXEC));
        if (!descriptor_.is_open())
            fail(file);
        path_ = pattern;
    }
    ~TemporaryFile() { ::unlink(path_.c_str()); }
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    // It is on disk afterwards, and closed: closing a file that SQLite has open would release SQLite's locks.
    void fill(const std::string &content) {
        if (!write_all(descriptor_.get(), content) || ::fsync(descriptor_.get()) != 0)
            fail(store_);
        descriptor_.close();
    }

    // Does nothing when the store exists. A process that has just made it may have removed this file.
    void give_name() const {
        if (::link(path_.c_str(), store_.c_str()) != 0 && errno != EEXIST && errno != ENOENT)
            fail(store_);
    }

private:
    const fs::path &store_;
    fs::path path_;
    Descriptor descriptor_;
};

std::string new_content(const fs::path &file, const std::optional<std::string> &owner) {
    Database database(file);
    make_tables(database);
    if (owner.has_value())
        set_meta_value(database, meta::owner, *owner);
    std::string content = database.content();
    for (const size_t format_version : {18U, 19U}) // of SQLite's file format, for writing and reading
        content.at(format_version) = 2;            // write-ahead log
    return content;
}

} // namespace

// Also those of processes that are still at it: the store exists, so they need theirs no more.
void remove_left_behind(const fs::path &file) {
    const std::string prefix = temporary_prefix(file);
    std::error_code error;
    std::vector<fs::path> found;
    for (fs::directory_iterator entry(directory_of(file), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(prefix) && name.size() == prefix.size() + random_characters)
            found.push_back(entry->path());
    }
    for (const fs::path &path : found)
        fs::remove(path, error);
}

void make_store(const fs::path &file, const std::optional<std::string> &owner,
                const std::function<void(MakingStep)> &reached) {
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(file, ignored)))
        return;
    if (const std::error_code error = make_private_directories(file.parent_path()))
        fail(file.parent_path(), error.value());
    const auto report = [&](MakingStep step) { reached ? reached(step) : void(); };
    {
        TemporaryFile temporary(file);
        report(MakingStep::begun);
        temporary.fill(new_content(file, owner));
        report(MakingStep::filled);
        temporary.give_name();
        report(MakingStep::named);
    }
    remove_left_behind(file);
    if (const std::error_code error = sync_directory(directory_of(file)))
        fail(file, error.value());
}

} // namespace yfw::commits
