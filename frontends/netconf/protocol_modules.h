// The modules that a client sees: OpenConfig's and the protocol's own.
#ifndef YFW_FRONTENDS_NETCONF_PROTOCOL_MODULES_H
#define YFW_FRONTENDS_NETCONF_PROTOCOL_MODULES_H

#include <optional>
#include <string>
#include <vector>

#include "yang/data_tree.h"
#include "yang/module_files.h"

namespace yfw::netconf {

struct ModuleName {
    std::string name;
    std::string revision; // may be empty
    std::string ns;
    bool offered = true;  // and not only imported, or part of libyang
    std::string features; // that are offered, with commas between
};

class ProtocolModules {
public:
    // Throws Error for a module that is missing or cannot be loaded.
    explicit ProtocolModules(const yang::ModuleFiles &files);

    const std::vector<ModuleName> &modules() const { return modules_; }

    // The text of a module or submodule in YANG; nothing when there is none by that name and revision (empty:
    // any). Several revisions of one name are never loaded.
    std::optional<std::string> text(const std::string &name, const std::string &revision) const;

    // A notification of these modules, from its element.
    yang::DataTree parse_notification(const std::string &xml) const;

    // Whether the leaf at this schema path, such as an argument of an operation, may have this value.
    bool allows(const char *path, const std::string &value) const;

    // The identifier of this set of modules (RFC 8525).
    const std::string &content_id() const { return content_id_; }
    // The data of ietf-yang-library: its "yang-library" and its "modules-state", as siblings.
    const lyd_node *library() const { return library_.get(); }

    const ly_ctx *context() const { return context_.get(); }

private:
    void list_modules();
    void make_library();

    yang::YangContext context_; // outlives the data
    std::vector<ModuleName> modules_;
    std::string content_id_;
    yang::DataTree library_;
};

} // namespace yfw::netconf

#endif
