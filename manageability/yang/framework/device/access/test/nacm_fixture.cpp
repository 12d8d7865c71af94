#include "nacm_fixture.h"

#include <stdexcept>

#include "support/files.h"
#include "yang/schemas.h"
#include "yang/tree_text.h"

namespace yfw::access::test {
namespace {

using yfw::test::TemporaryDirectory;

constexpr const char *module_one = R"(module nacm-test-one {
  yang-version 1.1; namespace urn:test:one; prefix one;
  import ietf-netconf-acm { prefix nacm; }
  container one {
    leaf plain { type string; }
    container guarded { nacm:default-deny-write; leaf inside { type string; } }
    container secret { nacm:default-deny-all; leaf inside { type string; } }
    list first-come { key id; ordered-by user; leaf id { type string; } leaf text { type string; } }
    list pair { key "left right"; leaf left { type string; } leaf right { type uint8; } leaf sum { type string; } }
    leaf-list word { type string; ordered-by user; }
    container present { presence "It is there."; leaf inside { type string; } }
  }
  leaf last { type string; }
  rpc act;
})";

constexpr const char *module_two = R"(module nacm-test-two {
  yang-version 1.1; namespace urn:test:two; prefix two;
  import nacm-test-one { prefix one; }
  augment /one:one { leaf added { type string; } }
  augment /one:one/one:secret { leaf more { type string; } }
})";

const std::vector<std::string> modules = {"openconfig-lldp", "openconfig-lldp-types", "ietf-netconf-monitoring",
                                          "nacm-test-one", "nacm-test-two"};

// The test's own modules in a directory.
std::filesystem::path own_modules() {
    static const TemporaryDirectory directory;
    static const bool is_filled = [] {
        directory.add("nacm-test-one.yang", module_one);
        directory.add("nacm-test-two.yang", module_two);
        return true;
    }();
    return is_filled ? directory.path() : std::filesystem::path();
}

const yang::ModuleFiles &module_files() {
    static const yang::ModuleFiles files({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR, own_modules()});
    return files;
}

yang::YangContext context_with(const std::vector<std::string> &names) {
    yang::YangContext context = yang::ModuleFiles::make_context();
    for (const std::string &name : names)
        module_files().load(context.get(), name);
    return context;
}

std::string rule(const std::string &what, const std::string &accesses, const char *action) {
    static int number = 0;
    return "<rule><name>" + std::to_string(++number) + "</name>" + what + "<access-operations>" + accesses +
           "</access-operations><action>" + action + "</action></rule>";
}

std::string element(const char *name, const std::string &text) {
    return std::string("<") + name + ">" + text + "</" + name + ">";
}

yang::DataTree parsed(const std::string &xml, const ly_ctx *context, uint32_t parse, uint32_t validate) {
    if (xml.empty())
        return nullptr;
    lyd_node *data = nullptr;
    if (lyd_parse_data_mem(context, xml.c_str(), LYD_XML, LYD_PARSE_STRICT | parse, validate, &data) !=
        LY_SUCCESS)
        throw std::runtime_error(xml + ": " + yang::take_yang_error(context));
    return yang::DataTree(data);
}

} // namespace

std::string permit(const std::string &what, const std::string &accesses) {
    return rule(what, accesses, "permit");
}

std::string deny(const std::string &what, const std::string &accesses) {
    return rule(what, accesses, "deny");
}

std::string module(const std::string &name) {
    return element("module-name", name);
}

std::string operation(const std::string &name) {
    return element("rpc-name", name);
}

std::string notification(const std::string &name) {
    return element("notification-name", name);
}

std::string path(const std::string &name) {
    return element("path", name);
}

std::string rules_of(const std::vector<std::string> &groups, const std::string &rules) {
    static int number = 0;
    std::string text = "<name>" + std::to_string(++number) + "</name>";
    for (const std::string &group : groups)
        text += element("group", group);
    return element("rule-list", text + rules);
}

std::string all_groups(const std::string &rules) {
    return rules_of({"*"}, rules);
}

std::string document(const std::string &inside) {
    return "<nacm xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-acm\""
           " xmlns:oc=\"http://openconfig.net/yang/lldp\" xmlns:types=\"http://openconfig.net/yang/lldp/types\""
           " xmlns:mon=\"urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring\""
           " xmlns:one=\"urn:test:one\" xmlns:two=\"urn:test:two\">" +
           inside + "</nacm>";
}

Nacm load(const std::string &inside) {
    const TemporaryDirectory directory;
    return Nacm(directory.add("rules.xml", document(inside)), module_files(), modules);
}

UserRules rules_for_ann(const Nacm &nacm) {
    return nacm.rules_of("ann", {"staff", "wheel"});
}

const ly_ctx *everything() {
    static const yang::YangContext context = context_with(modules);
    return context.get();
}

const ly_ctx *openconfig_only() {
    static const yang::YangContext context = context_with({"openconfig-lldp", "openconfig-lldp-types"});
    return context.get();
}

yang::DataTree parse(const std::string &xml, const ly_ctx *context) {
    return parsed(xml, context, LYD_PARSE_ONLY, 0);
}

yang::DataTree parse_valid(const std::string &xml, const ly_ctx *context) {
    return parsed(xml, context, 0, LYD_VALIDATE_PRESENT | LYD_VALIDATE_NO_STATE);
}

std::string print(const yang::DataTree &data) {
    return yang::printed(data != nullptr ? lyd_first_sibling(data.get()) : nullptr, LYD_XML,
                         LYD_PRINT_SHRINK | LYD_PRINT_WITHSIBLINGS | LYD_PRINT_KEEPEMPTYCONT);
}

std::string lldp(const std::string &inside) {
    const std::string start = "<lldp xmlns=\"http://openconfig.net/yang/lldp\"";
    return inside.empty() ? start + "/>" : start + ">" + inside + "</lldp>";
}

std::string in_one(const std::string &inside) {
    const std::string start = "<one xmlns=\"urn:test:one\"";
    return inside.empty() ? start + "/>" : start + ">" + inside + "</one>";
}

} // namespace yfw::access::test
