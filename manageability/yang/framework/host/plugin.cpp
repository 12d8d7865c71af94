#include "host/plugin.h"

#include <cstdlib>

#include <dlfcn.h>

#include "base/error.h"

namespace yfw::host {
namespace {

constexpr const char *registration_functions[] = {"yfw_map_reg_oclldp_cfg", "yfw_map_reg_oclldp_oper",
                                                  "yfw_map_reg_oclldp_ifmgr"};

yfw_map_registration register_tree(void *library, const std::filesystem::path &path, const char *name) {
    const auto function = reinterpret_cast<yfw_map_register_function>(dlsym(library, name));
    if (function == nullptr)
        throw Error(ErrorTag::operation_failed, path.string(), std::string("does not export ") + name);
    yfw_map_registration record{};
    function(&record);
    if (record.oc_to_native == nullptr || record.native_to_oc == nullptr)
        throw Error(ErrorTag::operation_failed, path.string(),
                    std::string(name) + " registered no root walkers");
    return record;
}

// A neighbor key that no response answered stays with the plug-in, which frees it when it is used.
void free_kept_key(void *library) {
    if (auto *key = static_cast<char **>(dlsym(library, "gl_neigh_dev_id"))) {
        std::free(*key);
        *key = nullptr;
    }
}

} // namespace

Plugin::Plugin(const std::filesystem::path &library)
    : library_(dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (library_ == nullptr) {
        const char *reason = dlerror();
        throw Error(ErrorTag::operation_failed, library.string(),
                    std::string("the mapping plug-in cannot be loaded: ") +
                        (reason != nullptr ? reason : "unknown"));
    }
    try {
        for (const char *name : registration_functions)
            trees_.push_back(register_tree(library_, library, name));
    } catch (...) {
        dlclose(library_);
        throw;
    }
}

Plugin::~Plugin() {
    free_kept_key(library_);
    dlclose(library_);
}

} // namespace yfw::host
