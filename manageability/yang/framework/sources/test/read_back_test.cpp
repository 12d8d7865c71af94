// Whatever configuration a running lldpd is given, reading it gives the same settings.
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "native_modules.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/wanted_settings.h"
#include "support/native_xml.h"
#include "two_routers.h"
#include "yang/configuration_text.h"

namespace yfw::sources::test {
namespace {

using lldpd::PortStatus;
using lldpd::WantedSettings;
using yfw::test::element;
using yfw::test::escaped;
using yfw::test::native_configuration;

// Configurations that lldpd supports, the same ones in every run.
class Configurations {
public:
    std::string next() { return native_configuration(global()) + interfaces(); }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    bool maybe() { return below(2) == 0; }

    std::string text(bool may_be_empty) {
        static const std::vector<std::string> texts{"",
                                                    "x",
                                                    "router.example.net",
                                                    " blanks around ",
                                                    "true",
                                                    "(none)",
                                                    "<&>\"'",
                                                    "]]>",
                                                    "a\tb\nc",
                                                    "Z\xc3\xbcrich \xe6\x9d\xb1\xe4\xba\xac",
                                                    "\xf0\x9f\x8c\x90",
                                                    std::string(255, 'x')};
        const unsigned first = may_be_empty ? 0 : 1;
        return escaped(texts[first + below(static_cast<unsigned>(texts.size()) - first)]);
    }

    std::string flag(const std::string &name) {
        return maybe() ? element(name, maybe() ? "true" : "false") : "";
    }

    std::string tlv(const std::string &name) { return maybe() ? element(name, flag("disable")) : ""; }

    std::string global() {
        static const std::vector<std::string> timers{"5", "6", "30", "3600", "16382", "16383"};
        std::string settings = below(4) != 0 ? element("enable", "true") : flag("enable");
        if (maybe())
            settings += element("timer", timers[below(static_cast<unsigned>(timers.size()))]);
        if (maybe())
            settings += element("system-name", text(true));
        if (maybe())
            settings += element("system-description", text(true));
        if (maybe())
            settings +=
                element("chassis-id", text(false)) + (maybe() ? element("chassis-id-type", "local") : "");
        return settings + element("tlv-select", tlv("system-capabilities") + tlv("management-address"));
    }

    std::string interfaces() {
        std::string entries;
        for (const char *name : {"eth1", "eth2"})
            if (maybe())
                entries += element("interface-configuration",
                                   element("active", "act") + element("interface-name", name) +
                                       "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\">" +
                                       flag("enable") + element("transmit", flag("disable")) +
                                       element("receive", flag("disable")) + "</lldp>");
        return "<interface-configurations xmlns=\"urn:tarvo:yang:Tarvo-QD-ifmgr-cfg\">" + entries +
               "</interface-configurations>";
    }

    std::minstd_rand random_{11};
};

std::string shown(const PortStatus &status) {
    return std::string(status.transmits ? "transmits " : "") + (status.receives ? "receives" : "");
}

std::string shown(const std::optional<std::string> &text) {
    return text.has_value() ? "\"" + *text + "\"" : "not set";
}

// What is compared, with lldpd's default for an interval that is not configured.
using Settings = std::map<std::string, std::string>;

Settings settings_of(const lyd_node *configuration) {
    const WantedSettings settings = lldpd::wanted_settings(configuration);
    Settings all{{"runs", settings.runs ? "yes" : "no"},
                 {"system-name", shown(settings.system_name)},
                 {"system-description", shown(settings.system_description)},
                 {"chassis-id", shown(settings.chassis_id)}};
    if (!settings.runs) // what is not read while LLDP is off
        return all;
    all["interval"] = std::to_string(settings.transmit_interval.value_or(lldpd::usual_interval));
    all["capabilities"] = settings.advertises_capabilities ? "announced" : "not announced";
    all["addresses"] = settings.advertises_addresses ? "announced" : "not announced";
    for (const char *port : {"eth1", "eth2"})
        all[port] = shown(settings.of_port(port));
    return all;
}

class AnLldpd : public TwoRouters {
protected:
    static constexpr int configurations = 100;

    void SetUp() override {
        TwoRouters::SetUp();
        if (!IsSkipped() && !HasFatalFailure()) // an interval that counts as configured
            lldpcli({"configure", "lldp", "tx-interval", "30"});
    }

    static yang::DataTree read() {
        yang::DataTree data = device().read(native_modules());
        yang::DataTree configuration = yang::take_configuration(data);
        EXPECT_EQ(fault_of(configuration), "");
        return configuration;
    }
};

TEST_F(AnLldpd, IsReadWithTheSettingsOfTheConfigurationThatWasRestored) {
    Configurations all;
    for (int i = 0; i < configurations; i++) {
        const std::string configuration = all.next();
        restore(configuration);
        ASSERT_EQ(settings_of(read().get()), settings_of(native_data(configuration).get())) << configuration;
    }
}

TEST_F(AnLldpd, IsReadWithTheSettingsOfTheConfigurationThatWasApplied) {
    Configurations all;
    std::string before = all.next();
    restore(before);
    for (int i = 0; i < configurations; i++) {
        const std::string after = all.next();
        apply(before, after);
        ASSERT_EQ(settings_of(read().get()), settings_of(native_data(after).get()))
            << "before: " << before << "\nafter: " << after;
        before = after;
    }
}

TEST_F(AnLldpd, DoesNotChangeWhenWhatWasReadIsRestored) {
    Configurations all;
    for (int i = 0; i < configurations; i++) {
        restore(all.next());
        const yang::DataTree before = read();
        device().restore(before.get());
        ASSERT_EQ(yang::print_configuration(read().get()), yang::print_configuration(before.get()));
    }
}

} // namespace
} // namespace yfw::sources::test
