// Real daemons: what the program reads, compared with lldpcli, and the effect of its edits on the frames.
#include <cctype>
#include <csignal>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lldpd_lab.h"
#include "support/eventually.h"
#include "support/running_yfw.h"

namespace yfw::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using Fields = std::map<std::string, std::string>;

// --- what the routers hear of each other ---

std::string text_at(const json &object, const char *pointer) {
    return object.value(json::json_pointer(pointer), std::string());
}

std::string base64(const std::string &bytes) {
    constexpr const char *digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (size_t at = 0; at < bytes.size(); at += 3) {
        uint32_t group = 0;
        for (size_t i = 0; i < 3; i++)
            group = group << 8 | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0);
        for (size_t i = 0; i < 4; i++)
            text += at + i <= bytes.size() ? digits[group >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

// The bytes of "61,62,63".
std::string octets(const std::string &hexadecimal) {
    std::string bytes;
    for (size_t at = 0; at + 1 < hexadecimal.size(); at += 3)
        bytes += static_cast<char>(std::stoi(hexadecimal.substr(at, 2), nullptr, 16));
    return bytes;
}

// Converts "00,80,C2" to the answers' spelling: lower case, with colons.
std::string oui_of(std::string hexadecimal) {
    for (char &c : hexadecimal)
        c = c == ',' ? ':' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return hexadecimal;
}

void add_capabilities(const json &chassis, Fields &fields) {
    static const std::map<std::string, const char *> names{{"Bridge", "MAC_BRIDGE"},
                                                           {"Wlan", "WLAN_ACCESS_POINT"},
                                                           {"Router", "ROUTER"},
                                                           {"Station", "STATION_ONLY"}};
    for (const json &capability : chassis.value("capability", json::array()))
        fields[std::string("capability ") + names.at(capability.at("type"))] =
            capability.at("enabled").get<bool>() ? "true" : "false";
}

// The MAC/PHY TLV of 802.3, which lldpcli puts into words. Of the capabilities that the routers announce for
// their virtual cables, only bit 0 is set, "other"; lldpcli has no word for it.
void add_mac_phy(const json &port, Fields &fields) {
    static const std::map<std::string, const char *> mau_types{
        {"10GbaseT - Four-pair Category 6A or better, full duplex mode only", "\x00\x36"}};
    for (const json &told : port.value("auto-negotiation", json::array())) {
        std::string octets(5, '\0');
        octets[0] = static_cast<char>((told.at("supported").get<bool>() ? 1 : 0) |
                                      (told.at("enabled").get<bool>() ? 2 : 0));
        octets[1] = '\x80';
        octets.replace(3, 2, mau_types.at(text_at(told, "/current/0/value")), 2);
        fields["tlv 00:12:0f 1"] = base64(octets);
    }
}

void add_tlvs(const json &neighbor, Fields &fields) {
    for (const json &group : neighbor.value("unknown-tlvs", json::array()))
        for (const json &tlv : group.value("unknown-tlv", json::array()))
            fields["tlv " + oui_of(tlv.at("oui")) + " " + tlv.at("subtype").get<std::string>()] =
                base64(octets(tlv.value("value", "")));
}

// A neighbor as lldpcli reports it, in the terms of the answers. Of several addresses, answers have the last
// one.
Fields told_by_lldpcli(const json &neighbor) {
    static const std::map<std::string, const char *> kinds{{"mac", "MAC_ADDRESS"},
                                                           {"ifname", "INTERFACE_NAME"}};
    const json &chassis = neighbor.at("/chassis/0"_json_pointer), &port = neighbor.at("/port/0"_json_pointer);
    Fields fields{{"system-name", text_at(chassis, "/name/0/value")},
                  {"system-description", text_at(chassis, "/descr/0/value")},
                  {"chassis-id", text_at(chassis, "/id/0/value")},
                  {"chassis-id-type", kinds.at(text_at(chassis, "/id/0/type"))},
                  {"port-id", text_at(port, "/id/0/value")},
                  {"port-id-type", kinds.at(text_at(port, "/id/0/type"))},
                  {"port-description", text_at(port, "/descr/0/value")},
                  {"ttl", text_at(port, "/ttl/0/value")}};
    if (const json addresses = chassis.value("mgmt-ip", json::array()); !addresses.empty()) {
        fields["management-address"] = addresses.back().at("value");
        const bool is_ipv6 = fields["management-address"].find(':') != std::string::npos;
        fields["management-address-type"] = is_ipv6 ? "ipv6" : "ipv4";
    }
    add_capabilities(chassis, fields);
    add_mac_phy(port, fields);
    add_tlvs(neighbor, fields);
    return fields;
}

std::string without_prefix(const std::string &identity) {
    return identity.substr(identity.find(':') + 1);
}

// A neighbor of an answer; `path` selects its entry.
Fields told_by_program(const lyd_node *answer, const std::string &path) {
    Fields fields;
    for (const char *leaf :
         {"system-name", "system-description", "chassis-id", "chassis-id-type", "port-id", "port-id-type",
          "port-description", "ttl", "management-address", "management-address-type"})
        for (const std::string &value : values_at(answer, path + "/state/" + leaf))
            fields[leaf] = value;
    const std::string capability = path + "/capabilities/capability";
    for (const std::string &name : values_at(answer, capability + "/name"))
        fields["capability " + without_prefix(name)] =
            values_at(answer, capability + "[name='" + name + "']/state/enabled").at(0);
    const std::string tlv = path + "/custom-tlvs/tlv/state";
    const auto ouis = values_at(answer, tlv + "/oui"), subtypes = values_at(answer, tlv + "/oui-subtype"),
               values = values_at(answer, tlv + "/value");
    for (size_t i = 0; i < ouis.size(); i++)
        fields["tlv " + ouis[i] + " " + subtypes.at(i)] = values.at(i);
    return fields;
}

std::string entry(const std::string &interface) {
    return "/openconfig-lldp:lldp/interfaces/interface[name='" + interface + "']";
}

TEST_F(LldpdLab, AnswersWithTheNeighborsThatLldpcliTells) {
    for (const char *router : {"r1", "r2", "r3", "r4"}) {
        const Tree answer = get(router, {"/lldp"});
        for (const std::string &interface :
             values_at(answer.get(), "/openconfig-lldp:lldp/interfaces/interface/name")) {
            std::set<Fields> told, answered;
            for (const json &neighbor : lab().neighbors(router, interface))
                told.insert(told_by_lldpcli(neighbor));
            const std::string list = entry(interface) + "/neighbors/neighbor";
            for (const std::string &id : values_at(answer.get(), list + "/id"))
                answered.insert(told_by_program(answer.get(), list + "[id='" + id + "']"));
            EXPECT_FALSE(told.empty()) << router << " " << interface;
            EXPECT_EQ(answered, told) << router << " " << interface;
        }
        EXPECT_EQ(keys_unlike_their_twins(answer.get()), std::vector<std::string>{}) << router;
    }
}

TEST_F(LldpdLab, DecodesTheOctetsOfACustomTlvAsTheyWereSent) {
    struct Sent {
        const char *octets, *answered; // "01,ff" and its base64
    };
    for (const Sent &sent : {Sent{"61,62,63", "YWJj"}, {"ff", "/w=="}, {"01,7f,80,ff,0a", "AX+A/wo="}}) {
        lab().configure(
            "r4", {"lldp", "custom-tlv", "add", "oui", "33,44,66", "subtype", "7", "oui-info", sent.octets});
        const std::string value =
            entry("eth3") +
            "/neighbors/neighbor[id='r4.example.net#eth3']/custom-tlvs/tlv[oui='33:44:66']/state/value";
        EXPECT_TRUE(eventually([&] {
            return values_at(get("r1", {"/lldp"}).get(), value) == std::vector<std::string>{sent.answered};
        })) << sent.octets;
        lab().kill_daemon("r4"); // so that it forgets the TLV
        lab().start_daemon("r4");
        ASSERT_TRUE(eventually(all_hear_each_other));
    }
}

// --- edits, seen by the neighbor ---

const std::string enabled_of_eth1 = "/lldp/interfaces/interface[name='eth1']/config/enabled";

TEST_F(LldpdLab, SendsTheSystemNameAndDescriptionThatWereSet) {
    edit("r1", {"set", "/lldp/config/system-name", "renamed.example.net"});
    edit("r1", {"set", "/lldp/config/system-description", "A router with \"quotes\""});
    const auto heard = [&] {
        const auto neighbors = lab().neighbors("r2", "eth1");
        return neighbors.size() == 1 &&
               text_at(neighbors.front(), "/chassis/0/name/0/value") == "renamed.example.net" &&
               text_at(neighbors.front(), "/chassis/0/descr/0/value") == "A router with \"quotes\"";
    };
    EXPECT_TRUE(eventually(heard));
    const Tree answer = get("r2", {"/lldp/interfaces"});
    EXPECT_THAT(values_at(answer.get(), entry("eth1") + "/neighbors/neighbor/state/system-name"),
                ElementsAre("renamed.example.net"));
}

TEST_F(LldpdLab, SendsNothingWhileItIsDisabled) {
    edit("r1", {"set", "/lldp/config/enabled", "false"});
    const auto forgotten = [&] {
        return lab().names_heard("r2", "eth1").empty() && lab().names_heard("r3", "eth1").empty() &&
               lab().names_heard("r4", "eth3") == std::vector<std::string>{"r2.example.net"};
    };
    EXPECT_TRUE(eventually(forgotten));
    EXPECT_EQ(lab().names_heard("r2", "eth2"), std::vector<std::string>{"r3.example.net"});
    edit("r1", {"rollback", "0"});
    EXPECT_TRUE(eventually(all_hear_each_other));
}

TEST_F(LldpdLab, SendsNothingOnAnInterfaceThatIsDisabled) {
    edit("r1", {"set", enabled_of_eth1, "false"});
    EXPECT_TRUE(eventually([&] { return lab().names_heard("r2", "eth1").empty(); }));
    EXPECT_EQ(lab().names_heard("r3", "eth1"), std::vector<std::string>{"r1.example.net"});
    edit("r1", {"set", enabled_of_eth1, "true"});
    EXPECT_TRUE(eventually(all_hear_each_other));
}

TEST_F(LldpdLab, KeepsItsIntervalThroughEditsOfOtherThings) {
    edit("r1", {"set", "/lldp/config/system-description", "changed"});
    get("r1", {"/lldp/config"});
    EXPECT_EQ(setting("r1", "tx-delay"), std::to_string(lab_interval));
}

TEST_F(LldpdLab, RefusesWhatTheDaemonCannotDoAndChangesNothing) {
    edit("r1", {"set", "/lldp/config/system-description", "before"});
    const std::string commits = history("r1");
    const json settings = lab().ask("r1", {"configuration"});
    const std::vector<std::vector<std::string>> edits{
        {"set", "/lldp/config/suppress-tlv-advertisement", "SYSTEM_NAME"},
        {"set", "/lldp/interfaces/interface[name='eth9']/config/enabled", "true"}};
    for (const auto &words : edits) {
        const Outcome outcome = yfw("r1", words);
        EXPECT_NE(outcome.status, 0) << words[1];
        EXPECT_EQ(outcome.output, "") << words[1];
        EXPECT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    }
    EXPECT_EQ(history("r1"), commits);
    EXPECT_EQ(lab().ask("r1", {"configuration"}), settings);
}

// --- what somebody else changes ---

TEST_F(LldpdLab, LeavesWhatSomebodyElseSetAloneUntilItIsApplied) {
    edit("r1", {"set", "/lldp/config/hello-timer", "20"});
    edit("r1", {"set", "/lldp/config/system-name", "ours.example.net"});
    EXPECT_EQ(yfw("r1", {"drift"}).output, "no drift\n");
    lab().configure("r1", {"system", "hostname", "theirs.example.net"});
    for (const std::string command : {"get", "topology", "status", "drift"})
        EXPECT_EQ(yfw("r1", command == "get" ? std::vector<std::string>{"get", "/lldp"}
                                             : std::vector<std::string>{command})
                      .status,
                  0)
            << command;
    EXPECT_EQ(setting("r1", "hostname"), "theirs.example.net") << "a read wrote";
    EXPECT_THAT(values_at(get("r1", {"/lldp/config"}).get(), "/openconfig-lldp:lldp/config/system-name"),
                ElementsAre("ours.example.net"));
    EXPECT_THAT(
        values_at(get("r1", {"--applied", "/lldp/config"}).get(), "/openconfig-lldp:lldp/config/system-name"),
        ElementsAre("theirs.example.net"));
    EXPECT_EQ(yfw("r1", {"drift"}).output,
              "/lldp/config/system-name: configured \"ours.example.net\", the device "
              "has \"theirs.example.net\"\n");
    EXPECT_THAT(yfw("r1", {"status"}).output, HasSubstr("drift   1 leaf value (see yfw drift)"));
    EXPECT_EQ(yfw("r1", {"apply"}).status, 0);
    EXPECT_EQ(setting("r1", "hostname"), "ours.example.net");
}

TEST_F(LldpdLab, ListsWhatOpenConfigDoesNotShowByItsNativePath) {
    edit("r1", {"set", "/lldp/config/system-description", "ours"});
    EXPECT_EQ(yfw("r1", {"drift"}).output, "no drift\n");
    const std::string lldp_of_eth1 =
        "/Tarvo-QD-ifmgr-cfg:interface-configurations/interface-configuration[active='act']"
        "[interface-name='eth1']/Tarvo-QD-ethernet-lldp-cfg:lldp/";
    for (const auto &[words, direction] : {std::pair{"rx-only", "transmit"}, {"tx-only", "receive"}}) {
        lab().configure("r1", {"ports", "eth1", "lldp", "status", words});
        EXPECT_EQ(yfw("r1", {"drift"}).output,
                  lldp_of_eth1 + direction + "/disable: not configured, the device has \"true\"\n");
        EXPECT_EQ(yfw("r1", {"apply"}).status, 0);
        EXPECT_EQ(yfw("r1", {"drift"}).output, "no drift\n");
    }
    lab().configure("r1", {"ports", "eth1", "lldp", "status", "disabled"});
    const std::string told = yfw("r1", {"drift"}).output;
    EXPECT_THAT(told, HasSubstr(enabled_of_eth1));
    EXPECT_EQ(lines_of(told).size(), 1U) << told;
    EXPECT_EQ(yfw("r1", {"apply"}).status, 0);
}

// lldpd sends the product of the two as the time to live, which has 16 bits.
TEST_F(LldpdLab, SaysThatASettingDoesNotFitWhatSomebodyElseSet) {
    edit("r1", {"set", "/lldp/config/hello-timer", "7000"});
    lab().configure("r1", {"lldp", "tx-hold", "10"});
    EXPECT_EQ(yfw("r1", {"drift"}).output, "no drift\n") << "the daemon still has the interval";
    lab().configure("r1", {"lldp", "tx-interval", "30"});
    const std::string drift = "/lldp/config/hello-timer: configured \"7000\", the device has \"30\"\n";
    EXPECT_EQ(yfw("r1", {"drift"}).output, drift);
    const Outcome applied = yfw("r1", {"apply"});
    EXPECT_EQ(applied.status, 1);
    EXPECT_THAT(applied.errors, HasSubstr("the device does not take a setting: " + drift));
    EXPECT_EQ(yfw("r1", {"drift"}).output, drift);
}

TEST_F(LldpdLab, KeepsSettingsWhileLldpIsSwitchedOff) {
    edit("r1",
         {"commit", "--", "set", "/lldp/config/hello-timer", "20", "set", "/lldp/config/system-name", "kept"});
    edit("r1", {"set", "/lldp/config/enabled", "false"});
    EXPECT_THAT(
        values_at(get("r1", {"--applied", "/lldp/config"}).get(), "/openconfig-lldp:lldp/config/enabled"),
        testing::Not(ElementsAre("true")));
    edit("r1", {"set", "/lldp/config/system-description", "set while off"});
    const auto config = [&](const char *leaf) {
        return values_at(get("r1", {"/lldp/config"}).get(),
                         std::string("/openconfig-lldp:lldp/config/") + leaf);
    };
    EXPECT_THAT(config("enabled"), ElementsAre("false"));
    EXPECT_THAT(config("hello-timer"), ElementsAre("20"));
    EXPECT_THAT(config("system-name"), ElementsAre("kept"));
    edit("r1", {"set", "/lldp/config/enabled", "true"});
    EXPECT_EQ(yfw("r1", {"drift"}).output, "no drift\n");
    EXPECT_EQ(setting("r1", "hostname"), "kept");
    EXPECT_EQ(setting("r1", "description"), "set while off");
    EXPECT_TRUE(
        eventually([&] { return lab().names_heard("r2", "eth1") == std::vector<std::string>{"kept"}; }));
}

// --- daemons that end ---

TEST_F(LldpdLab, AppliesTheLastCommitAgainOnRequestToADaemonThatWasRestarted) {
    edit("r1", {"set", "/lldp/config/system-name", "again.example.net"});
    lab().kill_daemon("r1");
    const Outcome outcome = yfw("r1", {"get", "/lldp"});
    EXPECT_NE(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, HasSubstr(lab().device("r1")));
    lab().start_daemon("r1");
    ASSERT_TRUE(eventually([&] { return yfw("r1", {"get", "/lldp"}).status == 0; }));
    EXPECT_NE(setting("r1", "hostname"), "again.example.net") << "a read wrote";
    EXPECT_THAT(yfw("r1", {"drift"}).output,
                HasSubstr("/lldp/config/system-name: configured \"again.example.net\""));
    EXPECT_EQ(yfw("r1", {"apply"}).status, 0);
    EXPECT_EQ(setting("r1", "hostname"), "again.example.net");
    EXPECT_EQ(yfw("r1", {"drift"}).output, "no drift\n");
    EXPECT_TRUE(eventually(
        [&] { return lab().names_heard("r2", "eth1") == std::vector<std::string>{"again.example.net"}; }));
}

TEST_F(LldpdLab, AgreesWithItsDaemonAfterTheDaemonWasKilledAmongEdits) {
    edit("r1", {"set", "/lldp/config/system-name", "name-0"});
    std::string last = "name-0";
    for (int i = 1; i <= 12; i++) {
        if (i == 5)
            lab().kill_daemon("r1");
        if (i == 8)
            lab().start_daemon("r1");
        const Outcome outcome = yfw("r1", {"set", "/lldp/config/system-name", "name-" + std::to_string(i)});
        if (outcome.status == 0)
            last = "name-" + std::to_string(i);
        else
            EXPECT_THAT(outcome.errors, HasSubstr(lab().device("r1")));
    }
    ASSERT_TRUE(eventually([&] { return yfw("r1", {"get", "/lldp/config"}).status == 0; }));
    EXPECT_THAT(values_at(get("r1", {"/lldp/config"}).get(), "/openconfig-lldp:lldp/config/system-name"),
                ElementsAre(last));
    EXPECT_EQ(setting("r1", "hostname"), last);
}

// --- watching ---

// A watch prints changes only, and nothing when it starts. So changes are made until one is reported.
bool tells_changes(Laboratory &lab, RunningYfw &watch) {
    int change = 0;
    return eventually([&] {
        lab.configure("r2", {"system", "description", "change " + std::to_string(++change)});
        return watch.line_with({"updated", "r2.example.net#eth1"}, std::chrono::milliseconds(500)).has_value();
    });
}

TEST_F(LldpdLab, WatchTellsACutAndItsRepair) {
    RunningYfw watch({"watch", "--device", lab().device("r1")});
    ASSERT_TRUE(tells_changes(lab(), watch)) << watch.errors();
    lab().ip("r2", {"link", "set", "eth1", "down"});
    EXPECT_TRUE(watch.line_with(
        {"removed", "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor", "r2.example.net#eth1"}))
        << watch.output();
    lab().ip("r2", {"link", "set", "eth1", "up"});
    EXPECT_TRUE(watch.line_with({"added", "[name='eth1']", "r2.example.net#eth1"})) << watch.output();
    watch.signal(SIGINT);
    EXPECT_EQ(watch.wait(), 0);
}

TEST_F(LldpdLab, WatchInJsonTellsAnUpdateWithItsData) {
    RunningYfw watch({"watch", "--json", "--device", lab().device("r1")});
    ASSERT_TRUE(tells_changes(lab(), watch)) << watch.errors();
    edit("r2", {"set", "/lldp/config/system-description", "described anew"});
    const auto line = watch.line_with({"\"updated\"", "r2.example.net#eth1", "described anew"});
    ASSERT_TRUE(line.has_value()) << watch.output();
    EXPECT_EQ(json::parse(*line).at("/neighbor/state/system-description"_json_pointer), "described anew");
    watch.signal(SIGTERM);
    EXPECT_EQ(watch.wait(), 0);
    for (const std::string &each : lines_of(watch.output()))
        EXPECT_TRUE(json::accept(each)) << each;
}

TEST_F(LldpdLab, WatchOutlivesARestart) {
    edit("r1", {"set", "/lldp/config/system-name", "watched.example.net"});
    RunningYfw watch({"watch", "--device", lab().device("r1")});
    ASSERT_TRUE(tells_changes(lab(), watch)) << watch.errors();
    lab().kill_daemon("r1");
    EXPECT_TRUE(eventually([&] { return watch.errors().find("waiting for it") != std::string::npos; }));
    lab().start_daemon("r1");
    EXPECT_TRUE(eventually([&] { return watch.errors().find("is back") != std::string::npos; }))
        << watch.errors();
    EXPECT_TRUE(tells_changes(lab(), watch)) << watch.errors();
    EXPECT_NE(setting("r1", "hostname"), "watched.example.net") << "a watch wrote";
    watch.signal(SIGTERM);
    EXPECT_EQ(watch.wait(), 0);
}

} // namespace
} // namespace yfw::test
