// Where a laboratory keeps its files.
#ifndef YFW_LAB_LAB_DIRECTORY_H
#define YFW_LAB_LAB_DIRECTORY_H

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "base/descriptor.h"

namespace yfw::lab {

// Which laboratory: its name, which its namespaces begin with, and the directory that holds its own.
struct Place {
    std::string name = "yfw";
    std::filesystem::path base = "/run/yfw";

    std::filesystem::path directory() const { return base / ("lab-" + name); }
    std::filesystem::path state_file() const { return directory() / "state.json"; }
    std::filesystem::path new_state_file() const { return directory() / "state.json.new"; }
    std::filesystem::path socket(const std::string &router) const { return directory() / (router + ".sock"); }
    std::filesystem::path socket_lock(const std::string &router) const {
        return directory() / (router + ".sock.lock"); // lldpd's own
    }
    std::filesystem::path configuration(const std::string &router) const {
        return directory() / (router + ".conf");
    }
    std::filesystem::path log(const std::string &router) const { return directory() / (router + ".log"); }
    std::string namespace_of(const std::string &member) const { return name + "-" + member; }
};

// The place with its base as an absolute path without links. Throws Error for a bad name and a base that
// is not there; the default base may be missing.
Place checked(Place place);

// The directory of a laboratory, held by one process at a time.
class LabDirectory {
public:
    // Makes the directory, and the default base. Throws Error when somebody else's is there, and when
    // another process holds it for longer than `patience`.
    static LabDirectory make(const Place &place);
    // Nothing when there is none.
    static std::optional<LabDirectory> open(const Place &place,
                                            std::chrono::milliseconds patience = std::chrono::seconds(10));

    // For programs that are to hold the directory until they have ended, too.
    int lock() const { return lock_.get(); }
    // Removes the directory, and the default base, when they are empty; false when it is not.
    bool remove();

private:
    LabDirectory(Place place, Descriptor lock) : place_(std::move(place)), lock_(std::move(lock)) {}

    Place place_;
    Descriptor lock_;
};

// Throws Error when the directory is not one that a laboratory of root or of this user may have.
void check_owner(const Place &place);

// Throws Error that names the first directory on the way that lldpd's own user cannot enter.
void check_open_to_all(const std::filesystem::path &directory);

} // namespace yfw::lab

#endif
