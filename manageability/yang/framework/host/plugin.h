// A mapping plug-in, loaded and registered.
#ifndef YFW_HOST_PLUGIN_H
#define YFW_HOST_PLUGIN_H

#include <string>
#include <vector>

#include "host/mapping_description.h"
#include "yfw_map.h"

namespace yfw::host {

// Keeps the plug-in's code loaded for as long as it lives.
class Plugin {
public:
    // Loads the library and calls its registration functions once each. Throws Error when it cannot be loaded
    // or registers no usable tree.
    explicit Plugin(const MappingDescription &mapping);
    ~Plugin();
    Plugin(const Plugin &) = delete;
    Plugin &operator=(const Plugin &) = delete;

    // The mapping trees, in order of registration.
    const std::vector<yfw_map_registration> &trees() const { return trees_; }

private:
    void *library_;
    std::vector<std::string> allocated_variables_;
    std::vector<yfw_map_registration> trees_;
};

} // namespace yfw::host

#endif
