// The directory in which a laboratory keeps its files.
#ifndef YFW_LAB_LAB_DIRECTORY_H
#define YFW_LAB_LAB_DIRECTORY_H

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "base/descriptor.h"

namespace yfw::lab {

// Identifies a laboratory: its name, which prefixes its namespaces, and the directory that contains its own.
struct Place {
    std::string name = "yfw";
    std::filesystem::path base = "/run/yfw";

    std::filesystem::path directory() const { return base / ("lab-" + name); }
    std::filesystem::path state_file() const { return directory() / "state.json"; }
    std::filesystem::path new_state_file() const { return directory() / "state.json.new"; }
    std::filesystem::path socket(const std::string &router) const { return directory() / (router + ".sock"); }
    std::filesystem::path socket_lock(const std::string &router) const {
        return directory() / (router + ".sock.lock"); // created by lldpd
    }
    std::filesystem::path configuration(const std::string &router) const {
        return directory() / (router + ".conf");
    }
    std::filesystem::path log(const std::string &router) const { return directory() / (router + ".log"); }
    std::string namespace_of(const std::string &member) const { return name + "-" + member; }
};

// The place with its base as an absolute path without links. Throws Error for an invalid name or a missing
// base; the default base may be missing.
Place checked(Place place);

// The directory of a laboratory, locked while the object exists: one process at a time.
class LabDirectory {
public:
    // Creates the directory, and the default base. Throws Error when the directory belongs to another user or
    // another process keeps it locked for too long.
    static LabDirectory make(const Place &place);
    // Opens an existing directory; nothing when it does not exist. Throws like make().
    static std::optional<LabDirectory> open(const Place &place,
                                            std::chrono::milliseconds patience = std::chrono::seconds(10));

    // The lock's descriptor, for child programs to inherit: the directory then stays locked until they have
    // ended.
    int lock() const { return lock_.get(); }
    // Removes the directory, and the default base, if empty; returns false when the directory is not.
    bool remove();

private:
    LabDirectory(Place place, Descriptor lock) : place_(std::move(place)), lock_(std::move(lock)) {}

    Place place_;
    Descriptor lock_;
};

// Throws Error when the directory belongs to another user than root or this one, or others can write to it.
void check_owner(const Place &place);

// Throws Error with the first directory on the path that lldpd's own user cannot enter.
void check_open_to_all(const std::filesystem::path &directory);

} // namespace yfw::lab

#endif
