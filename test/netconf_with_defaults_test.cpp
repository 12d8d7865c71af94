// Default values in answers: left out, shown or tagged, as the client asks (RFC 6243).
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"
#include "support/files.h"

namespace yfw::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string defaults_namespace = "urn:ietf:params:xml:ns:yang:ietf-netconf-with-defaults";

std::string with_defaults(const std::string &mode) {
    return mode.empty() ? ""
                        : "<with-defaults xmlns=\"" + defaults_namespace + "\">" + mode + "</with-defaults>";
}

// The modules with a default for the timer, which is not configured on the device.
class ModulesWithATimer {
protected:
    ModulesWithATimer() {
        const std::string types = "openconfig-lldp-types.yang", lldp = "openconfig-lldp.yang";
        changed_modules_.add(types, read_file(YFW_MODELS_DIR "/" + types));
        std::string text = read_file(YFW_MODELS_DIR "/" + lldp);
        const std::string type = "leaf hello-timer {\n      type uint64;\n";
        const size_t at = text.find(type);
        if (at == std::string::npos)
            throw std::runtime_error("the timer of " + lldp + " is not written as expected");
        changed_modules_.add(lldp, text.insert(at + type.size(), "      default \"30\";\n"));
    }
    TemporaryDirectory changed_modules_;
};

class NetconfDefaults : private ModulesWithATimer, public NetconfTest {
protected:
    NetconfDefaults() : NetconfTest({"--models", changed_modules_.path().string()}) {}

    std::string configuration(const std::string &mode, const std::string &filter = "") {
        return openconfig_of(client.rpc(get_config("running", filter + with_defaults(mode))));
    }
    void set_timer(const std::string &value) {
        expect_ok(client.rpc(
            edit_config("running", lldp("<config><hello-timer>" + value + "</hello-timer></config>"))));
    }
    NetconfClient client{server().socket()};
};

TEST_F(NetconfDefaults, AreOfferedWithTheirModes) {
    EXPECT_THAT(client.capabilities(),
                testing::Contains("urn:ietf:params:netconf:capability:with-defaults:1.0?basic-mode=explicit"
                                  "&also-supported=report-all,report-all-tagged,trim"));
}

// --- what is shown ---

std::string global(const std::string &switch_and_timer) {
    return "<config>" + switch_and_timer +
           "<system-name>r1.example.net</system-name>"
           "<system-description>Router r1 software 1.0</system-description></config>";
}

std::string interfaces(const std::string &enabled) {
    std::string list;
    for (const char *name : {"eth1", "eth2", "eth3"})
        list += std::string("<interface><name>") + name + "</name><config><name>" + name + "</name>" + enabled +
                "</config></interface>";
    return "<interfaces>" + list + "</interfaces>";
}

const std::string enabled = "<enabled>true</enabled>";
const std::string timer = "<hello-timer>30</hello-timer>";

struct ModeCase {
    const char *name;
    std::string mode;
    std::string shown;        // while the timer is not configured
    std::string shown_if_set; // while it is configured with its default
};

class ADefault : public NetconfDefaults, public testing::WithParamInterface<ModeCase> {};

TEST_P(ADefault, IsShownAsTheModeSays) {
    EXPECT_EQ(configuration(GetParam().mode), openconfig(lldp(GetParam().shown)));
    set_timer("30");
    EXPECT_EQ(configuration(GetParam().mode), openconfig(lldp(GetParam().shown_if_set)));
}

TEST_P(ADefault, IsShownInTheSameWayByTheNewerOperation) {
    EXPECT_EQ(openconfig_of(client.rpc(get_data("running", with_defaults(GetParam().mode)))),
              openconfig(lldp(GetParam().shown)));
    set_timer("30");
    EXPECT_EQ(openconfig_of(client.rpc(get_data("running", with_defaults(GetParam().mode)))),
              openconfig(lldp(GetParam().shown_if_set)));
}

TEST_P(ADefault, IsNotWhatAnotherValueIs) {
    set_timer("40");
    EXPECT_THAT(configuration(GetParam().mode), testing::HasSubstr("40"));
}

const std::string as_configured = global(enabled) + interfaces(enabled);
const std::string with_timer = global(enabled + timer) + interfaces(enabled);
const std::string trimmed = global("") + interfaces("");

INSTANTIATE_TEST_SUITE_P(In, ADefault,
                         testing::Values(ModeCase{"NoMode", "", as_configured, with_timer},
                                         ModeCase{"Explicit", "explicit", as_configured, with_timer},
                                         ModeCase{"ReportAll", "report-all", with_timer, with_timer},
                                         ModeCase{"Trim", "trim", trimmed, trimmed}),
                         [](const auto &test) { return test.param.name; });

// --- tags ---

void add_tagged(const Xml &element, const std::string &path, std::vector<std::string> &tagged) {
    const auto tag = element.attributes.find("default");
    if (tag != element.attributes.end())
        tagged.push_back(path + element.name + "=" + element.text + " " + tag->second);
    for (const Xml &child : element.children)
        add_tagged(child, path + element.name + "/", tagged);
}

class ATag : public NetconfDefaults {
protected:
    Xml read(const std::string &mode) {
        const Xml reply = client.rpc(get_config("running", with_defaults(mode)));
        const Xml *data = reply.child("data");
        if (data == nullptr || data->children.size() != 1)
            throw std::runtime_error("no configuration: " + reply.printed);
        return data->children.front();
    }
    std::vector<std::string> tagged(const std::string &mode) {
        std::vector<std::string> found;
        add_tagged(read(mode), "", found);
        return found;
    }
};

TEST_F(ATag, MarksWhatNobodyConfigured) {
    EXPECT_THAT(tagged("report-all-tagged"), ElementsAre("lldp/config/hello-timer=30 true"));
    EXPECT_THAT(read("report-all-tagged").printed,
                testing::HasSubstr("urn:ietf:params:xml:ns:netconf:default:1.0"));
}

TEST_F(ATag, DoesNotMarkADefaultThatIsConfigured) {
    set_timer("30");
    EXPECT_EQ(read("report-all-tagged").text_at("config/hello-timer"), "30");
    EXPECT_THAT(tagged("report-all-tagged"), IsEmpty());
}

TEST_F(ATag, IsInNoOtherMode) {
    for (const char *mode : {"report-all", "explicit", "trim"})
        EXPECT_THAT(tagged(mode), IsEmpty()) << mode;
}

// --- what a filter selects ---

TEST_F(NetconfDefaults, AreNotShownWhereTheyAreNotSelected) {
    const std::string name = "<config><system-name>r1.example.net</system-name></config>";
    const std::string list = "<interfaces><interface><name>eth1</name></interface><interface><name>eth2</name>"
                             "</interface><interface><name>eth3</name></interface></interfaces>";
    EXPECT_EQ(configuration("report-all", subtree(lldp("<config><system-name/></config>"))),
              openconfig(lldp(name)));
    EXPECT_EQ(
        configuration("report-all", subtree(lldp("<interfaces><interface><name/></interface></interfaces>"))),
        openconfig(lldp(list)));
    EXPECT_EQ(configuration("report-all", "<filter type=\"xpath\" xmlns:oc=\"http://openconfig.net/yang/lldp\" "
                                          "select=\"/oc:lldp/oc:config/oc:system-name\"/>"),
              openconfig(lldp(name)));
}

TEST_F(NetconfDefaults, AreShownWhereTheyAreSelectedWithOthers) {
    EXPECT_EQ(configuration("report-all", subtree(lldp("<config/>"))),
              openconfig(lldp(global(enabled + timer))));
    EXPECT_EQ(configuration("report-all", subtree(lldp("<config><hello-timer/><system-name/></config>"))),
              openconfig(lldp("<config>" + timer + "<system-name>r1.example.net</system-name></config>")));
}

TEST_F(NetconfDefaults, AreShownWhereNothingElseIsSelected) {
    const std::string only_timer = openconfig(lldp("<config>" + timer + "</config>"));
    EXPECT_EQ(configuration("report-all", subtree(lldp("<config><hello-timer/></config>"))), only_timer);
    EXPECT_EQ(configuration("report-all", "<filter type=\"xpath\" xmlns:oc=\"http://openconfig.net/yang/lldp\" "
                                          "select=\"/oc:lldp/oc:config/oc:hello-timer\"/>"),
              only_timer);
}

TEST_F(NetconfDefaults, AreShownInEntriesThatExistAlone) {
    expect_ok(client.rpc(edit_config("running", interface_edit("eth9", ""))));
    const auto enabled_of = [&](const std::string &name) {
        return configuration("report-all",
                             subtree(lldp("<interfaces><interface><name>" + name +
                                          "</name><config><enabled/></config></interface></interfaces>")));
    };
    EXPECT_EQ(enabled_of("eth9"), openconfig(lldp("<interfaces><interface><name>eth9</name><config>" + enabled +
                                                  "</config></interface></interfaces>")));
    EXPECT_EQ(enabled_of("eth10"), "");
}

// RFC 8526 section 3.1 defines the leaf in the operation's own module.
TEST_F(NetconfDefaults, AreShownWhenTheNewerOperationNamesTheModeInItsOwnNamespace) {
    EXPECT_EQ(openconfig_of(client.rpc(get_data("running", "<with-defaults>report-all</with-defaults>"))),
              openconfig(lldp(with_timer)));
    expect_error(client.rpc(get_config("running", "<with-defaults>report-all</with-defaults>")), "protocol",
                 "unknown-element");
}

// --- other modules ---

TEST_F(NetconfDefaults, AreThoseOfTheModulesThatClientsFetch) {
    const Xml reply = client.rpc("<get-schema xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring\">"
                                 "<identifier>openconfig-lldp</identifier></get-schema>");
    EXPECT_THAT(reply.text_at("data"), testing::HasSubstr("default \"30\";"));
}

TEST_F(NetconfDefaults, MakeAnotherContentId) {
    const NetconfServer shipped({}, Runs::as_program);
    NetconfClient other(shipped.socket());
    const auto library_of = [](const NetconfClient &of) {
        for (const std::string &each : of.capabilities())
            if (each.find("yang-library:1.1") != std::string::npos)
                return each;
        return std::string();
    };
    EXPECT_NE(library_of(client), "");
    EXPECT_NE(library_of(client), library_of(other));
}

TEST_F(NetconfDefaults, AreNotInventedForState) {
    const std::string state = subtree(lldp("<state/>"));
    EXPECT_EQ(openconfig_of(client.rpc("<get>" + state + with_defaults("report-all") + "</get>")),
              openconfig_of(client.rpc("<get>" + state + "</get>")));
}

TEST_F(NetconfDefaults, AreShownInTheConfigurationAmongTheState) {
    const std::string answer = openconfig_of(
        client.rpc("<get>" + with_defaults("report-all") + subtree(lldp("<config/>")) + "</get>"));
    EXPECT_EQ(answer, openconfig(lldp(global(enabled + timer))));
}

// --- copies, and what is refused ---

TEST_F(NetconfDefaults, AreNotWrittenByACopy) {
    expect_ok(client.rpc("<copy-config><target><candidate/></target><source><running/></source>" +
                         with_defaults("report-all") + "</copy-config>"));
    EXPECT_EQ(everything(client, "candidate"), openconfig(lldp(as_configured)));
    expect_ok(client.rpc("<commit/>"));
    EXPECT_EQ(everything(client), openconfig(lldp(as_configured)));
}

struct RefusedCase {
    const char *name;
    std::string mode;
};

class AnUnknownMode : public NetconfDefaults, public testing::WithParamInterface<RefusedCase> {};

TEST_P(AnUnknownMode, IsRefused) {
    const std::string mode =
        "<with-defaults xmlns=\"" + defaults_namespace + "\">" + GetParam().mode + "</with-defaults>";
    for (const std::string &operation :
         {"<get>" + mode + "</get>", get_config("running", mode), get_data("running", mode)})
        EXPECT_EQ(error_tag(client.rpc(operation)), "invalid-value") << operation;
}

INSTANTIATE_TEST_SUITE_P(Being, AnUnknownMode,
                         testing::Values(RefusedCase{"AWord", "nonsense"}, RefusedCase{"Empty", ""},
                                         RefusedCase{"InCapitals", "TRIM"}),
                         [](const auto &test) { return test.param.name; });

} // namespace
} // namespace yfw::test
