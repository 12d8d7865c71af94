// Access rules as represented in a file.
#ifndef YFW_DEVICE_ACCESS_NACM_RULES_H
#define YFW_DEVICE_ACCESS_NACM_RULES_H

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "device/access/nacm.h"

namespace yfw::access {

constexpr unsigned bit(Access access) {
    return 1U << static_cast<unsigned>(access);
}

struct AccessRule {
    enum class About { everything, operation, notification, data };

    About about = About::everything;
    std::string module;                    // "*": any
    std::string name;                      // of the operation or notification; "*": any
    std::string path;                      // as libyang finds data in any context; "/": all data
    std::vector<std::string> path_modules; // the modules of the nodes on the path
    unsigned accesses = 0;                 // bits
    bool permits = false;

    bool is_about(Access access, std::string_view of_module) const {
        return (accesses & bit(access)) != 0 && (module == "*" || module == of_module);
    }
};

struct RuleList {
    std::set<std::string> groups; // "*": all groups
    std::vector<AccessRule> rules;
};

struct AccessRules {
    bool enabled = true;
    bool external_groups = true;
    bool read_default = true; // whether reading is permitted
    bool write_default = false;
    bool exec_default = true;
    std::map<std::string, std::set<std::string>> groups; // by user
    std::vector<RuleList> lists;
};

// The content of a file with rules. Throws Error.
std::string read_rules_text(const std::filesystem::path &file);

// See Nacm's constructor. `file`: where the text comes from.
AccessRules read_access_rules(const std::string &text, const std::filesystem::path &file,
                              const yang::ModuleFiles &module_files, const std::vector<std::string> &modules);

// A file's new content, on disk next to it until it replaces the former one at once. The file keeps its owner
// and its mode.
class NewRulesFile {
public:
    // Throws Error.
    NewRulesFile(std::filesystem::path file, const std::string &text);
    // Removes what has not replaced anything.
    ~NewRulesFile();
    NewRulesFile(const NewRulesFile &) = delete;
    NewRulesFile &operator=(const NewRulesFile &) = delete;

    // Call once. Throws Error.
    void replace_former();

private:
    std::filesystem::path file_;
    std::filesystem::path real_; // behind links, so that they stay
    std::string made_;           // the name of the new file; empty when it has none any more
};

} // namespace yfw::access

#endif
