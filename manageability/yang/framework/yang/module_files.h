// The YANG module files that a server needs: its own and those of Debian packages.
#ifndef YFW_YANG_MODULE_FILES_H
#define YFW_YANG_MODULE_FILES_H

#include <filesystem>
#include <string>
#include <vector>

#include "yang/data_tree.h"

namespace yfw::yang {

class ModuleFiles {
public:
    // When several directories have a module, the first one wins.
    explicit ModuleFiles(const std::vector<std::filesystem::path> &dirs);

    // The file of a module or submodule; empty when there is none. A module that the server depends on is found
    // as NAME@REVISION.yang only, in the revision that the server was written for unless another is given. Any
    // other module is found as libyang does it: in the given revision, otherwise the newest of a directory.
    std::filesystem::path find(const std::string &name, const std::string &revision = "") const;

    // A context with only the modules that are compiled into libyang; it searches no directory by itself.
    // Throws Error.
    static YangContext make_context();

    // Implements the module with these features and loads its imports. `context` must come from make_context().
    // Throws Error; for a missing file it names the file, the module that imports it, its Debian package and
    // the directories.
    void load(ly_ctx *context, const std::string &name, std::vector<const char *> features = {}) const;

    // The directories, separated by commas, for messages.
    std::string directories() const;

private:
    std::vector<std::filesystem::path> dirs_;
};

} // namespace yfw::yang

#endif
