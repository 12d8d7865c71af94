#include "two_routers.h"

#include "base/run_program.h"
#include "lab/programs.h"
#include "native_modules.h"
#include "support/native_xml.h"

namespace yfw::sources::test {

using yfw::test::element;
using yfw::test::native_configuration;

std::string with_interface(const std::string &global, const std::string &name, const std::string &lldp) {
    return native_configuration(global) +
           "<interface-configurations xmlns=\"urn:tarvo:yang:Tarvo-QD-ifmgr-cfg\">" +
           element("interface-configuration", element("active", "act") + element("interface-name", name) +
                                                  "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\">" +
                                                  lldp + "</lldp>") +
           "</interface-configurations>";
}

std::unique_ptr<yfw::test::Laboratory> TwoRouters::lab_;

void TwoRouters::SetUp() {
    const std::string obstacle = yfw::test::lab_obstacle();
    if (!obstacle.empty() && yfw::test::lab_is_required())
        FAIL() << obstacle;
    if (!obstacle.empty())
        GTEST_SKIP() << obstacle;
    // Not in SetUpTestSuite: tests whose suite cannot be set up count as skipped.
    if (lab_ == nullptr)
        lab_ = std::make_unique<yfw::test::Laboratory>(R"({
              "routers": [{"name": "a", "system-name": "a.example.net", "system-description": "Router a"},
                          {"name": "b", "system-name": "b.example.net", "system-description": "Router b"}],
              "links": [["a:eth1", "b:eth1"], ["a:eth2", "b:eth2"]]})");
}

void TwoRouters::TearDown() {
    if (lab_ == nullptr)
        return;
    restore(native_configuration(element("enable", "true")));
    // A configuration without a timer leaves the daemon's own.
    lab_->configure("a", {"lldp", "tx-interval", std::to_string(yfw::test::lab_interval)});
}

void TwoRouters::check(const std::string &before, const std::string &after) {
    const yang::DataTree from = native_data(before), to = native_data(after);
    device().check(from.get(), to.get());
}

void TwoRouters::apply(const std::string &before, const std::string &after) {
    const yang::DataTree from = native_data(before), to = native_data(after);
    device().apply(from.get(), to.get());
}

void TwoRouters::restore(const std::string &configuration) {
    device().restore(native_data(configuration).get());
}

void TwoRouters::lldpcli(std::vector<std::string> words) {
    words.insert(words.begin(), {lab::lldpcli_program(), "-u", lab_->socket("a")});
    const Finished finished = run(words);
    ASSERT_EQ(finished.status, 0) << finished.reason();
}

std::string TwoRouters::status(const std::string &interface) {
    const nlohmann::json told = lab_->ask("a", {"interfaces", "details"});
    for (const auto &each : told.at("/lldp/0/interface"_json_pointer))
        if (each.at("name") == interface)
            return each.at("/status/0/value"_json_pointer);
    return "no such interface";
}

std::string TwoRouters::setting(const std::string &name) {
    return lab_->ask("a", {"configuration"})
        .at("/configuration/0/config/0"_json_pointer)
        .at(name)
        .at("/0/value"_json_pointer);
}

std::string TwoRouters::chassis_heard() {
    std::string text;
    for (const nlohmann::json &neighbor : lab_->neighbors("b", "eth1")) {
        const auto value = [&](const std::string &of) {
            return neighbor.value(nlohmann::json::json_pointer("/chassis/0/" + of), "");
        };
        text += value("id/0/type") + " " + value("id/0/value") + ", " + value("name/0/value") + ", " +
                value("descr/0/value");
    }
    return text;
}

bool TwoRouters::hears(const std::string &router, const std::string &interface) {
    return !lab_->names_heard(router, interface).empty();
}

} // namespace yfw::sources::test
