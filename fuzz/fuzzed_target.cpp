#include "fuzz/fuzzed_target.h"

#include "fuzz/support/fuzz_target.h"
#include "yang/module_files.h"
#include "yang/tree_text.h"

namespace yfw::gnmi::fuzz {
namespace {

constexpr const char *user = "fuzzer";

constexpr std::string_view rules = R"(<nacm xmlns="urn:ietf:params:xml:ns:yang:ietf-netconf-acm">
  <write-default>permit</write-default>
  <groups><group><name>fuzzers</name><user-name>fuzzer</user-name></group></groups>
  <rule-list>
    <name>fuzzers</name>
    <group>fuzzers</group>
    <rule>
      <name>descriptions</name>
      <path xmlns:l="http://openconfig.net/yang/lldp">/l:lldp/l:config/l:system-description</path>
      <access-operations>*</access-operations>
      <action>deny</action>
    </rule>
    <rule>
      <name>reported-descriptions</name>
      <path xmlns:l="http://openconfig.net/yang/lldp">/l:lldp/l:state/l:system-description</path>
      <access-operations>read</access-operations>
      <action>deny</action>
    </rule>
    <rule>
      <name>timers</name>
      <path xmlns:l="http://openconfig.net/yang/lldp">/l:lldp/l:config/l:hello-timer</path>
      <access-operations>create update delete</access-operations>
      <action>deny</action>
    </rule>
  </rule-list>
</nacm>)";

std::optional<access::Nacm> rules_in(const std::filesystem::path &directory) {
    yfw::fuzz::write_file(directory / "nacm.xml", rules);
    const yang::ModuleFiles files({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR});
    return access::Nacm(directory / "nacm.xml", files, yfw::fuzz::shipped_mapping().modules.openconfig);
}

} // namespace

FuzzedTarget::State::State(FuzzedTarget &all, bool has_rules)
    : service(all.fuzzed_.device(), has_rules ? rules_in(all.directory_.path()) : std::nullopt),
      target(service), publisher(target, [](const std::string &) {}) {}

FuzzedTarget::FuzzedTarget() = default;

void FuzzedTarget::begin_anew(bool has_rules) {
    state_.reset();
    fuzzed_.begin_anew();
    state_.emplace(*this, has_rules);
}

Caller FuzzedTarget::caller(bool may_write) {
    return {0, user, may_write, "", state_->service.rules_of(user, {})};
}

std::string FuzzedTarget::configuration() {
    const yang::DataTree data = fuzzed_.read(host::Content::config);
    return yang::printed(data.get(), LYD_XML, LYD_PRINT_WITHSIBLINGS).c_str();
}

} // namespace yfw::gnmi::fuzz
