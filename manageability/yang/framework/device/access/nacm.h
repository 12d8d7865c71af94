// Access control by rules from a file (RFC 8341).
#ifndef YFW_DEVICE_ACCESS_NACM_H
#define YFW_DEVICE_ACCESS_NACM_H

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "yang/data_tree.h"
#include "yang/module_files.h"

namespace yfw::access {

struct AccessRule;
struct AccessRules;

enum class Access { read, create, update, remove, exec };

// The name that rules use; remove is "delete".
std::string_view to_string(Access access);

struct DeniedWrite {
    std::string path; // instance path, with module names
    Access access;
};

// One user's rules, in the order of evaluation. Borrows from the Nacm, which must outlive it. Immutable: any
// thread may call any member.
class UserRules {
public:
    // `default_denied`: the schema of the operation has nacm:default-deny-all.
    bool may_execute(std::string_view module, std::string_view operation, bool default_denied) const;
    // For a whole notification; it is never trimmed.
    bool may_be_told(std::string_view module, std::string_view notification, bool default_denied = false) const;

    // Removes unreadable nodes with their subtrees from data of any context; a list entry with an unreadable
    // key is removed whole. The data may become NULL.
    void remove_unreadable(yang::DataTree &data) const;

    // The first node, in document order, with a difference that the user may not make. Both configurations are
    // of one context and may be NULL. Non-presence containers and values that exist only by default do not
    // count as changes.
    std::optional<DeniedWrite> denied_write(const lyd_node *before, const lyd_node *after) const;

private:
    friend class Nacm;
    UserRules(const AccessRules &all, std::vector<const AccessRule *> rules)
        : all_(&all), rules_(std::move(rules)) {}

    const AccessRules *all_;
    std::vector<const AccessRule *> rules_;
};

// Access rules from a file. Immutable once loaded: any thread may call any member.
class Nacm {
public:
    // Reads a <nacm> document of ietf-netconf-acm. `modules`: those whose nodes rule paths may name. Throws
    // Error; if the document is at fault, the error's path is the file, with the line if known.
    Nacm(const std::filesystem::path &file, const yang::ModuleFiles &module_files,
         const std::vector<std::string> &modules);
    ~Nacm();
    Nacm(Nacm &&) noexcept;
    Nacm &operator=(Nacm &&) noexcept;

    // When disabled, everything is permitted.
    bool is_enabled() const;

    // `external_groups`: the user's groups in addition to those in the file.
    UserRules rules_of(const std::string &user, const std::vector<std::string> &external_groups) const;

private:
    std::unique_ptr<const AccessRules> rules_;
};

} // namespace yfw::access

#endif
