// Who may do what, by rules from a file: the access control of RFC 8341.
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

// As rules name it; remove is "delete".
std::string_view to_string(Access access);

struct DeniedWrite {
    std::string path; // of the instance, with the names of modules
    Access access;
};

// The rules that concern one user, in the order in which they are asked. Borrows from the Nacm.
class UserRules {
public:
    // `default_denied`: the operation's schema says nacm:default-deny-all.
    bool may_execute(std::string_view module, std::string_view operation, bool default_denied) const;
    // A notification; all of it or nothing.
    bool may_be_told(std::string_view module, std::string_view notification, bool default_denied = false) const;

    // Takes out of the data, of any context, what may not be read, each node with all below it; a list entry
    // whose key may not be read goes as a whole. The data may become NULL.
    void remove_unreadable(yang::DataTree &data) const;

    // The first node, in the order in which they stand, in which the configurations differ and that the user
    // may not change so. Both are of one context and may be NULL. Containers that mean nothing themselves, and
    // values that are there by default only, are no change.
    std::optional<DeniedWrite> denied_write(const lyd_node *before, const lyd_node *after) const;

private:
    friend class Nacm;
    UserRules(const AccessRules &all, std::vector<const AccessRule *> rules)
        : all_(&all), rules_(std::move(rules)) {}

    const AccessRules *all_;
    std::vector<const AccessRule *> rules_;
};

// Access rules from a file. Does not change once it is loaded, so several threads may use it.
class Nacm {
public:
    // Reads a <nacm> document of ietf-netconf-acm. `modules`: those whose nodes the paths of rules may name.
    // Throws Error; where the document is at fault its path is the file, with the line where it is known.
    Nacm(const std::filesystem::path &file, const yang::ModuleFiles &module_files,
         const std::vector<std::string> &modules);
    ~Nacm();
    Nacm(Nacm &&) noexcept;
    Nacm &operator=(Nacm &&) noexcept;

    // When not, everything is permitted.
    bool is_enabled() const;

    // `external_groups`: those of the user beside the file's own.
    UserRules rules_of(const std::string &user, const std::vector<std::string> &external_groups) const;

private:
    std::unique_ptr<const AccessRules> rules_;
};

} // namespace yfw::access

#endif
