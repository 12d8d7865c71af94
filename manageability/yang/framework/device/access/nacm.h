// Access control by rules (RFC 8341), which are kept in a file.
#ifndef YFW_DEVICE_ACCESS_NACM_H
#define YFW_DEVICE_ACCESS_NACM_H

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "yang/data_tree.h"
#include "yang/edit.h"
#include "yang/module_files.h"

namespace yfw::access {

struct AccessRule;
struct AccessRules;
class NewRulesFile;

enum class Access { read, create, update, remove, exec };

// The name that rules use; remove is "delete".
std::string_view to_string(Access access);

struct DeniedWrite {
    std::string path; // instance path, with module names
    Access access;
    std::string hidden{}; // the outermost node on the path that the user may not read; empty: there is none
};

// How often something was denied since the rules were loaded (RFC 8341, the leafs denied-operations,
// denied-data-writes and denied-notifications).
struct Denials {
    std::atomic<uint32_t> operations{0};
    std::atomic<uint32_t> data_writes{0};
    std::atomic<uint32_t> notifications{0};
};

// One user's rules, in the order of evaluation. Later changes of the rules do not concern it. Immutable: any
// thread may call any member.
class UserRules {
public:
    // For whoever denies something because of these rules.
    Denials &denials() const { return *denials_; }

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

    // The outermost node among this one and its ancestors that the user may not read; NULL when there is none.
    const lyd_node *hidden(const lyd_node *node) const;

private:
    friend class Nacm;
    UserRules(std::shared_ptr<const AccessRules> all, std::vector<const AccessRule *> rules,
              std::shared_ptr<Denials> denials)
        : all_(std::move(all)), rules_(std::move(rules)), denials_(std::move(denials)) {}

    std::shared_ptr<const AccessRules> all_;
    std::vector<const AccessRule *> rules_; // of all_
    std::shared_ptr<Denials> denials_;
};

// Refuses a change of the rules by throwing, given the <nacm> before and after it.
using RulesGuard = std::function<void(const lyd_node *before, const lyd_node *after)>;

// The access rules of a file. Any thread may call any member; edits must come from one thread at a time.
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

    // The <nacm> as it is configured, without defaults, in a context that has ietf-netconf-acm and the modules
    // that the rules name.
    yang::DataTree tree(const ly_ctx *context) const;
    const Denials &denials() const { return *denials_; }

    // Changes with every edit.
    uint64_t version() const { return current().version; }

private:
    struct Current {
        std::shared_ptr<const AccessRules> rules;
        std::string text;
        uint64_t version = 0;
    };

public:
    // The valid result of an edit. While it exists, no other edit may be put into force.
    class Change {
    public:
        // Whether it differs from the rules.
        bool has_effect() const { return has_effect_; }

    private:
        friend class Nacm;
        Current next_;
        bool has_effect_ = false;
        std::shared_ptr<NewRulesFile> file_;
    };

    // The result of an edit of the <nacm>, whose context is as for tree(). Throws Error.
    Change changed_by(const yang::EditNode &edit, const RulesGuard &guard) const;
    // Writes a change that has an effect to disk, where it replaces nothing yet: what may fail has failed by
    // then. Throws Error.
    void write(Change &change) const;
    // Replaces the file's content by that of a written change; it loses its comments. The change applies to
    // rules_of() from now on. Throws Error, and then nothing has changed.
    void put_into_force(Change change);

private:
    Current current() const;

    std::filesystem::path file_;
    yang::ModuleFiles module_files_;
    std::vector<std::string> modules_;
    std::unique_ptr<std::mutex> mutex_ = std::make_unique<std::mutex>(); // guards current_
    Current current_;
    std::shared_ptr<Denials> denials_ = std::make_shared<Denials>();
};

} // namespace yfw::access

#endif
