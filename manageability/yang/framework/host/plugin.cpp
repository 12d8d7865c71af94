#include "host/plugin.h"

#include <cstdlib>

#include <dlfcn.h>

#include "base/error.h"

namespace yfw::host {
namespace {

yfw_map_registration register_tree(void *library, const std::filesystem::path &path, const std::string &name) {
    const auto function = reinterpret_cast<yfw_map_register_function>(dlsym(library, name.c_str()));
    if (function == nullptr)
        throw Error(ErrorTag::operation_failed, path.string(), "does not export " + name);
    yfw_map_registration record{};
    function(&record);
    if (record.oc_to_native == nullptr || record.native_to_oc == nullptr)
        throw Error(ErrorTag::operation_failed, path.string(), name + " registered no root walkers");
    return record;
}

// Frees what the library allocated for a next request that never came.
void free_allocated(void *library, const std::string &variable) {
    if (auto *pointer = static_cast<void **>(dlsym(library, variable.c_str()))) {
        std::free(*pointer);
        *pointer = nullptr;
    }
}

} // namespace

Plugin::Plugin(const MappingDescription &mapping)
    : library_(dlopen(mapping.library.c_str(), RTLD_NOW | RTLD_LOCAL)),
      allocated_variables_(mapping.allocated_variables) {
    if (library_ == nullptr) {
        const char *reason = dlerror();
        throw Error(ErrorTag::operation_failed, mapping.library.string(),
                    std::string("the mapping plug-in cannot be loaded: ") +
                        (reason != nullptr ? reason : "unknown"));
    }
    try {
        for (const std::string &name : mapping.registration_functions)
            trees_.push_back(register_tree(library_, mapping.library, name));
    } catch (...) {
        dlclose(library_);
        throw;
    }
}

Plugin::~Plugin() {
    for (const std::string &variable : allocated_variables_)
        free_allocated(library_, variable);
    dlclose(library_);
}

} // namespace yfw::host
