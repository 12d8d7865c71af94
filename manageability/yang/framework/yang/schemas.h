// The YANG modules the host works with.
#ifndef YFW_YANG_SCHEMAS_H
#define YFW_YANG_SCHEMAS_H

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "yang/data_tree.h"
#include "yang/not_served.h"

namespace yfw::yang {

// The modules on both sides of a mapping, by name.
struct MappedModules {
    // The first has the top container. The others are named because identities are values only when their
    // module is implemented, not merely imported.
    std::vector<std::string> openconfig;
    std::string top;
    std::vector<std::string> native;
};

// Loads the native modules from `native_dir` and the OpenConfig modules from `openconfig_dir`; throws Error
// naming a module that cannot be loaded, and which one imports it. `import_dirs`: where imports are that
// `openconfig_dir` lacks. `deviations`: the text of a module that makes the OpenConfig modules what is served;
// what it takes away is known as not served, see not_served.h. Empty: there are none. The schemas are immutable
// and live as long as this object: any thread may call any member and parse, print and read data of these
// schemas. A data tree belongs to one thread at a time unless nobody changes it. libyang keeps the last error
// separately for each thread.
class Schemas {
public:
    Schemas(const std::filesystem::path &native_dir, const std::filesystem::path &openconfig_dir,
            const MappedModules &modules, const std::vector<std::filesystem::path> &import_dirs = {},
            const std::string &deviations = "");

    ly_ctx *context() const { return context_.get(); }

    // The OpenConfig top container. Its module has the prefix and the namespace of OpenConfig paths.
    const lysc_node *openconfig_root() const { return openconfig_root_; }

    // The module of deviations as text; empty when there is none.
    const std::string &deviations() const { return deviations_; }

    // The top node `name` of the native module with this namespace; if that module has none, of any native
    // module that does; NULL when there is none.
    const lysc_node *native_root(std::string_view ns, std::string_view name) const;

    // The node at a schema path, such as /interfaces/interface, of the named module; NULL when there is none.
    const lysc_node *find(const std::string &module, std::string_view path) const;

private:
    void find_root(const MappedModules &modules, const std::filesystem::path &openconfig_dir);
    void deviate(const MappedModules &modules, const std::filesystem::path &openconfig_dir);

    YangContext context_;
    std::vector<std::string> native_modules_;
    std::string deviations_;
    std::unique_ptr<NotServed> not_served_ = std::make_unique<NotServed>(); // the schema refers to it
    const lysc_node *openconfig_root_ = nullptr;
};

// libyang's last error in one line: the message, and the location if known. Clears the errors.
std::string take_yang_error(const ly_ctx *context);

// libyang's last error as invalid-value at the data node that it names; without a path if it names none. Clears
// the errors.
Error take_data_error(const ly_ctx *context);

// The schema child of `parent` by this name, preferring the parent's own module to augmentations; NULL when
// there is none.
const lysc_node *schema_child(const lysc_node *parent, std::string_view name);

} // namespace yfw::yang

#endif
