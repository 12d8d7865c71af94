// The description of a mapping, stored beside its library.
#ifndef YFW_HOST_MAPPING_DESCRIPTION_H
#define YFW_HOST_MAPPING_DESCRIPTION_H

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "yang/schemas.h"

namespace yfw::host {

// A node of the native response that the library looks up by its path.
struct MappedSubtree {
    std::string module; // native
    std::string path;   // from the module's top node
    // Whether the library sums values over the node's children. An unfinished sum stays in the library, so the
    // library is reloaded after a response with more than one child.
    bool sums = false;
};

// Native entries that represent interfaces.
struct InterfaceEntries {
    std::string module;
    std::string path;                         // of the list
    std::string name;                         // the leaf with the display name
    std::map<std::string, std::string> where; // leaves that must have these values
    std::optional<std::string> holding;       // a container that must have content
};

// Where to find the answers to the library's questions to the platform.
struct DeviceAnswers {
    struct Switch {
        std::string module;
        std::string path; // of a leaf
        std::string on;   // its value when the protocol is enabled
    };
    std::optional<Switch> enabled;                         // the protocol, globally
    std::optional<InterfaceEntries> configured_interfaces; // those configured for the protocol
    std::vector<InterfaceEntries> interfaces;              // all existing ones
};

// A YANG notification that reports changes to a list's entries.
struct ChangeNotification {
    std::string module;
    std::string name;
    std::string entry;             // the schema path of the list, in the OpenConfig model
    std::vector<std::string> keys; // leaves for the first key of each list down to the entry, outermost first
};

struct NativeNode {
    std::string module;
    std::string path; // the schema path
};

// Configuration that has no effect while a leaf has a certain value.
struct Suspension {
    std::string leaf;               // the schema path of the OpenConfig leaf
    std::string value;              // canonical
    std::vector<std::string> nodes; // schema paths: these and all below them, except for the leaf itself
    std::vector<NativeNode> native; // what the native configuration is without meanwhile
};

// A list's key in the OpenConfig model whose value is that of native keys.
struct SharedKey {
    std::string leaf;               // the schema path of the OpenConfig key
    std::vector<NativeNode> native; // the native keys
};

// A value for a native leaf that the mapping understands, where the type allows others.
struct Example {
    std::string module;
    std::string path; // the schema path
    std::string value;
};

// A mapping, and those beside it.
struct MappingDescription {
    std::filesystem::path file;    // of the description
    std::filesystem::path library; // absolute, or relative as `file` is
    std::vector<std::string> registration_functions;
    std::string walker_prefix;                    // common to the names of the OpenConfig walkers
    std::vector<std::string> allocated_variables; // the library's pointers that its loader frees at the end
    yang::MappedModules modules;                  // of this mapping and of those beside it
    std::vector<std::string>
        state; // schema paths of the OpenConfig state that the request's descriptor tells of
    std::vector<std::string> sampled; // schema paths of OpenConfig state that changes all the time
    std::vector<Suspension> suspensions;
    std::vector<std::string> extends; // schema paths of OpenConfig lists whose entries are another mapping's
    std::vector<SharedKey> keys;      // a read of one entry needs only the native entries that have its key
    std::vector<SharedKey> entries;   // configuration that the mapping maps entry by entry
    std::vector<MappedSubtree> subtrees;
    std::vector<Example> examples; // of this mapping and of those beside it
    DeviceAnswers device;
    std::optional<ChangeNotification> notification;
    bool edits = true; // whether the library maps edits; beside another one, it does not by default
    bool offer_absent_tops = false; // whether it is called for a native top node that the device does not have
    std::vector<MappingDescription> beside; // loaded with this one, in this order; have none of their own
};

// Reads the description of a plug-in, given by its library (FILE.so, described in FILE.json beside it) or by
// the description itself, and the descriptions that it names. Of a directory of plug-ins it reads every
// description, *.json, by name: the one with "edits": true is the main mapping, the others are loaded beside
// it. Members are documented in docs/plugin-contract.md. Throws Error that names the file, the member and what
// was expected.
MappingDescription read_mapping(const std::filesystem::path &plugin);

} // namespace yfw::host

#endif
