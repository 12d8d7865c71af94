// The modules that clients see: the mapping's and the protocol's.
#ifndef YFW_FRONTENDS_NETCONF_SERVER_DATA_PROTOCOL_MODULES_H
#define YFW_FRONTENDS_NETCONF_SERVER_DATA_PROTOCOL_MODULES_H

#include <optional>
#include <string>
#include <vector>

#include "host/mapping_description.h"
#include "yang/data_tree.h"
#include "yang/module_files.h"

namespace yfw::netconf {

struct ModuleName {
    std::string name;
    std::string revision; // may be empty
    std::string ns;
    bool offered = true;      // rather than only imported or internal to libyang
    std::string features;     // the offered ones, separated by commas
    std::string deviations{}; // the modules with deviations from it, separated by commas
};

// The modules that clients are offered. Immutable once constructed: any thread may call any member.
class ProtocolModules {
public:
    // Loads the mapping's OpenConfig modules, the protocol's, and the one with the mapping's notification.
    // Throws Error when a module is missing or cannot be loaded.
    // `has_access_rules`: clients are offered ietf-netconf-acm, too. `deviations`: the text of a module that
    // deviates from those of the mapping; clients are offered it, too. Empty: none.
    ProtocolModules(const yang::ModuleFiles &files, const host::MappingDescription &mapping,
                    bool has_access_rules = false, const std::string &deviations = "");

    const std::vector<ModuleName> &modules() const { return modules_; }

    // The OpenConfig top container in these modules.
    const lysc_node *openconfig_root() const { return openconfig_root_; }

    // The container <nacm>; NULL when it is not offered.
    const lysc_node *access_rules_root() const {
        const lys_module *module = ly_ctx_get_module_implemented(context_.get(), "ietf-netconf-acm");
        return module != nullptr ? lys_find_child(nullptr, module, "nacm", 0, 0, 0) : nullptr;
    }

    // The mapping's change notification; NULL when it has none.
    const host::ChangeNotification *notification() const {
        return notification_.has_value() ? &*notification_ : nullptr;
    }

    // The module's namespace; empty for an unknown module.
    std::string namespace_of(const std::string &module) const;

    // The YANG source of a module or submodule; nothing for an unknown name or revision (an empty revision
    // matches any). No module is ever loaded in several revisions.
    std::optional<std::string> text(const std::string &name, const std::string &revision) const;

    // Parses a notification of these modules from its element.
    yang::DataTree parse_notification(const std::string &xml) const;

    // Whether this value is valid for the leaf at this schema path, such as an argument of an operation.
    bool allows(const char *path, const std::string &value) const;

    // The identifier of this set of modules (RFC 8525); it depends on their texts, too.
    const std::string &content_id() const { return content_id_; }
    // The data of ietf-yang-library: its "yang-library" and its "modules-state", as siblings.
    const lyd_node *library() const { return library_.get(); }

    const ly_ctx *context() const { return context_.get(); }

private:
    // An offered module and its offered features.
    struct Loaded {
        std::string name;
        std::vector<const char *> features;
    };
    static std::vector<Loaded> loaded_with(const host::MappingDescription &mapping, bool has_access_rules);

    std::string add_deviations(const std::string &text);
    void list_modules(const std::vector<Loaded> &loaded);
    void make_library();

    yang::YangContext context_; // outlives the data
    const lysc_node *openconfig_root_ = nullptr;
    std::optional<host::ChangeNotification> notification_;
    std::vector<ModuleName> modules_;
    std::string content_id_;
    yang::DataTree library_;
};

} // namespace yfw::netconf

#endif
