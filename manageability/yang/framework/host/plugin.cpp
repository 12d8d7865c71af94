#include "host/plugin.h"

#include <cstdlib>
#include <filesystem>

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

[[noreturn]] void refuse(const std::filesystem::path &library, const std::string &reason) {
    throw Error(ErrorTag::operation_failed, library.string(),
                "the mapping plug-in cannot be loaded: " + reason);
}

void *open_library(const std::filesystem::path &library) {
    std::error_code missing;
    const auto status = std::filesystem::status(library, missing);
    if (library.has_parent_path() && std::filesystem::exists(status) &&
        !std::filesystem::is_regular_file(status))
        refuse(library, "it is not a file"); // dlopen would wait for the writer of a named pipe
    void *opened = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (opened == nullptr) {
        const char *reason = dlerror();
        refuse(library, reason != nullptr ? reason : "unknown");
    }
    return opened;
}

} // namespace

Plugin::Plugin(const MappingDescription &mapping)
    : library_(open_library(mapping.library)), allocated_variables_(mapping.allocated_variables) {
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
