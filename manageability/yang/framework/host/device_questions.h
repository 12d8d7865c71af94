// Where a device's native data holds the answers to the platform's questions.
#ifndef YFW_HOST_DEVICE_QUESTIONS_H
#define YFW_HOST_DEVICE_QUESTIONS_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/mapping_description.h"
#include "yang/schemas.h"

namespace yfw::host {

// A mapping's DeviceAnswers resolved to schema nodes, which are borrowed.
struct DeviceQuestions {
    struct Switch {
        const lysc_node *leaf;
        std::string on;
    };
    struct Entries {
        const lysc_node *list;
        const lysc_node *name;
        std::vector<std::pair<const lysc_node *, std::string>> where;
        const lysc_node *holding; // NULL: no condition
    };
    std::optional<Switch> enabled;
    std::optional<Entries> configured_interfaces;
    std::vector<Entries> interfaces;
};

// Throws Error for a node missing from the modules.
DeviceQuestions device_questions(const MappingDescription &mapping, const yang::Schemas &schemas);

} // namespace yfw::host

#endif
