// The fuzz target for the bytes of a store. An input consists of
//
//   byte 0    the sum of these flags; the characters '0' to '?' are all combinations:
//               1  the rest changes a store with four commits; otherwise it is the store
//               2  ... or rather its log, as a killed process leaves it
//               4  the store may be created
//               8  the store may belong to any device
//   the rest  the bytes of the store, or changes, each of an offset (two bytes, from the start or, when it is
//             0x8000 or more, from the end), a length (one byte), and the bytes to put there. Without a length,
//             the file ends at the offset.
#include <filesystem>
#include <optional>
#include <string>

#include "base/private_directory.h"
#include "commits/commit_log.h"
#include "fuzz/support/fuzz_target.h"

namespace yfw::fuzz {
namespace {

namespace fs = std::filesystem;
using commits::Commit;
using commits::CommitLog;
using commits::StoreError;

// The files of a store with four commits, the last one as a change, that was not closed.
struct Store {
    std::string database;
    std::string log;
};

fs::path log_of(const fs::path &store) {
    return store.string() + "-wal";
}

void make_commit(CommitLog &log, const std::string &comment) {
    log.commit([&](const std::optional<Commit> &) {
        Commit commit;
        commit.comment = comment;
        commit.configuration = std::string(1000, 'c');
        commit.openconfig = "<lldp/>";
        return std::optional(commit);
    });
}

Store make_store(const fs::path &file) {
    CommitLog log(file, true, "r1");
    for (const char *comment : {"first", "second", "third"})
        make_commit(log, comment);
    log.commit_after([](int64_t) {
        Commit commit;
        commit.comment = "fourth";
        commit.change = {"<native/>", "<openconfig/>"};
        return std::optional(commit);
    });
    log.set_applied_to("run 7");
    return {read_file(file), read_file(log_of(file))};
}

size_t place_in(const std::string &bytes, uint16_t offset) {
    constexpr uint16_t from_end = 0x8000;
    if (bytes.empty())
        return 0;
    const size_t distance = offset % from_end % bytes.size();
    return offset < from_end ? distance : bytes.size() - 1 - distance;
}

std::string changed(std::string bytes, Input &changes) {
    while (!changes.is_empty()) {
        const size_t place = place_in(bytes, changes.number());
        const size_t length = changes.byte();
        if (length == 0)
            bytes.resize(place);
        else
            bytes.replace(place, length, changes.take(length));
    }
    return bytes;
}

Store store_of(const Store &whole, uint8_t flags, Input &input) {
    if ((flags & 1) == 0)
        return {std::string(input.rest()), ""};
    if ((flags & 2) == 0)
        return {changed(whole.database, input), ""};
    return {whole.database, changed(whole.log, input)};
}

// Calls the work, which may be refused in one line that names the file.
template <class Work> bool is_done(const fs::path &file, Work &&work) {
    try {
        work();
        return true;
    } catch (const StoreError &error) {
        require(is_one_line(error.what()), "A refusal is not one line.", error.what());
        require(std::string_view(error.what()).find(file.string()) != std::string_view::npos,
                "A refusal does not name the file.", error.what());
        return false;
    }
}

void use(CommitLog &store, const fs::path &file) {
    is_done(file, [&] {
        for (const Commit &commit : store.history())
            is_done(file, [&] {
                store.find(commit.number);
                store.since_whole(commit.number);
            });
    });
    is_done(file, [&] { store.last(); });
    is_done(file, [&] { store.owner(); });
    is_done(file, [&] { store.applied_to(); });
    is_done(file, [&] { make_commit(store, "after the damage"); });
    is_done(file, [&] { store.set_openconfig(0, "<lldp/>"); });
}

void remove_store(const fs::path &file) {
    for (const char *suffix : {"", "-wal", "-shm", "-journal"})
        fs::remove(file.string() + suffix);
}

} // namespace

void run(std::string_view bytes) {
    static const PrivateDirectory directory("yfw-fuzz");
    static const Store whole = make_store(directory.path() / "whole.db");
    const fs::path file = directory.path() / "commits.db";
    Input input(bytes);
    const uint8_t flags = input.byte();
    const Store store = store_of(whole, flags, input);
    remove_store(file);
    write_file(file, store.database);
    if (!store.log.empty())
        write_file(log_of(file), store.log);

    const bool is_opened = is_done(file, [&] {
        CommitLog log(file, (flags & 4) != 0,
                      (flags & 8) != 0 ? std::nullopt : std::optional<std::string>("r1"));
        use(log, file);
    });
    require(fs::exists(file), "The store is gone.", "");
    require(is_opened || read_file(file) == store.database, "A refused store is changed.", "");
}

} // namespace yfw::fuzz
