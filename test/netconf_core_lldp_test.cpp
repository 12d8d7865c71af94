// Core LLDP over NETCONF on a real daemon: switched on and off as a whole and for an interface. Each step looks
// at what the neighbor's daemon hears, and at what <get> and <get-config> say.
#include <future>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "configuration_lines.h"
#include "edit_values.h"
#include "lldpd_lab.h"
#include "netconf_server.h"
#include "plain_configuration.h"
#include "random_edits.h"
#include "support/eventually.h"

namespace yfw::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

const std::string top = "/openconfig-lldp:lldp";
const std::string entry_of_eth1 = top + "/interfaces/interface[name='eth1']";
const std::string neighbor_on_eth1 = entry_of_eth1 + "/neighbors/neighbor[id='r2.example.net#eth1']/state/";

// r1, configured over NETCONF, with r2 at the other end of eth1 and r3 at that of eth2.
class CoreLldp : public LldpdLab {
protected:
    void SetUp() override {
        LldpdLab::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        server_.emplace(LiveDevice{lab().device("r1")});
        client_.emplace(server_->socket());
    }

    void TearDown() override {
        client_.reset();
        server_.reset();
        LldpdLab::TearDown();
    }

    Xml reply_to(const std::string &content) {
        roll_back_at_the_end("r1");
        return client_->rpc(edit_config("running", lldp(content)));
    }
    void edit(const std::string &content) { expect_ok(reply_to(content)); }

    void switch_lldp(bool on) { edit("<config><enabled>" + text(on) + "</enabled></config>"); }
    void switch_eth1(bool on) {
        edit("<interfaces><interface><name>eth1</name><config><name>eth1</name><enabled>" + text(on) +
             "</enabled></config></interface></interfaces>");
    }

    Strings configured(const std::string &path) { return values(get_config("running"), path); }
    Strings shown(const std::string &path) { return values("<get/>", path); }

    std::string drift() { return yfw("r1", {"drift"}).output; }

    static Strings heard_by_r2() { return lab().names_heard("r2", "eth1"); }
    static Strings heard_by_r3() { return lab().names_heard("r3", "eth1"); }

    // What r2's daemon tells of its only neighbor on eth1; empty when it has none.
    static std::string told_by_r2(const char *pointer) {
        const std::vector<json> heard = lab().neighbors("r2", "eth1");
        return heard.size() == 1 ? heard.front().value(json::json_pointer(pointer), std::string()) : "";
    }

    NetconfClient &client() { return *client_; }
    std::string socket() const { return server_->socket().string(); }

private:
    static std::string text(bool on) { return on ? "true" : "false"; }

    Strings values(const std::string &operation, const std::string &path) {
        const Xml reply = client_->rpc(operation);
        const Xml *tree = reply.at("data/lldp");
        if (tree == nullptr)
            return {};
        static const Context modules = openconfig_modules();
        return values_at(parse_answer(modules.get(), Format::xml, tree->printed).get(), path);
    }

    std::optional<NetconfServer> server_;
    std::optional<NetconfClient> client_;
};

const std::string enabled = top + "/config/enabled";
const std::string enabled_of_eth1 = entry_of_eth1 + "/config/enabled";

// --- enabled ---

TEST_F(CoreLldp, ThatIsEnabledIsHeardByTheNeighborAndHearsIt) {
    switch_lldp(true);
    switch_eth1(true);
    EXPECT_TRUE(eventually([] { return heard_by_r2() == Strings{"r1.example.net"}; }));
    EXPECT_THAT(configured(enabled), ElementsAre("true"));
    EXPECT_THAT(configured(enabled_of_eth1), ElementsAre("true"));
    EXPECT_THAT(shown(top + "/state/enabled"), ElementsAre("true"));
    EXPECT_THAT(shown(entry_of_eth1 + "/state/enabled"), ElementsAre("true"));
    EXPECT_EQ(drift(), "no drift\n");
}

TEST_F(CoreLldp, ThatIsEnabledShowsTheNeighborAsItsDaemonAnnouncesIt) {
    switch_lldp(true);
    const std::vector<json> heard = lab().neighbors("r1", "eth1");
    ASSERT_EQ(heard.size(), 1U);
    const auto told = [&](const char *pointer) { return heard.front().at(json::json_pointer(pointer)); };
    for (const auto &[leaf, pointer] : {std::pair{"system-name", "/chassis/0/name/0/value"},
                                        {"system-description", "/chassis/0/descr/0/value"},
                                        {"chassis-id", "/chassis/0/id/0/value"},
                                        {"port-id", "/port/0/id/0/value"},
                                        {"port-description", "/port/0/descr/0/value"}})
        EXPECT_THAT(shown(neighbor_on_eth1 + leaf), ElementsAre(told(pointer).get<std::string>())) << leaf;
    EXPECT_THAT(shown(neighbor_on_eth1 + "chassis-id-type"), ElementsAre("MAC_ADDRESS"));
}

TEST_F(CoreLldp, AnnouncesTheNameDescriptionAndChassisIdThatWereSet) {
    edit("<config><enabled>true</enabled><chassis-id>rack 4</chassis-id><system-name>core1</system-name>"
         "<system-description>A core router</system-description></config>");
    EXPECT_TRUE(eventually([] {
        return told_by_r2("/chassis/0/name/0/value") == "core1" &&
               told_by_r2("/chassis/0/descr/0/value") == "A core router" &&
               told_by_r2("/chassis/0/id/0/value") == "rack 4" && told_by_r2("/chassis/0/id/0/type") == "local";
    }));
    EXPECT_THAT(configured(top + "/config/system-name"), ElementsAre("core1"));
    EXPECT_THAT(configured(top + "/config/chassis-id"), ElementsAre("rack 4"));
    EXPECT_THAT(configured(top + "/config/chassis-id-type"), IsEmpty());
    EXPECT_EQ(drift(), "no drift\n");
}

// --- disabled ---

TEST_F(CoreLldp, ThatIsDisabledSendsNothingAndKeepsWhatWasConfigured) {
    edit("<config><system-name>core1</system-name><system-description>A core router</system-description>"
         "</config>");
    switch_lldp(false);
    EXPECT_TRUE(eventually([] { return heard_by_r2().empty() && heard_by_r3().empty(); }));
    EXPECT_THAT(configured(enabled), ElementsAre("false"));
    EXPECT_THAT(configured(top + "/config/system-name"), ElementsAre("core1"));
    EXPECT_THAT(shown(top + "/state/enabled"), ElementsAre("false"));
    EXPECT_THAT(shown(entry_of_eth1 + "/state/enabled"), ElementsAre("false"));
    switch_lldp(true);
    EXPECT_TRUE(eventually([] { return heard_by_r2() == Strings{"core1"}; }));
    EXPECT_EQ(told_by_r2("/chassis/0/descr/0/value"), "A core router");
    EXPECT_EQ(drift(), "no drift\n");
}

TEST_F(CoreLldp, ThatIsDisabledTakesADescriptionThatIsAnnouncedOnceItIsEnabled) {
    switch_lldp(false);
    edit("<config><system-description>set while off</system-description></config>");
    EXPECT_TRUE(eventually([] { return heard_by_r2().empty(); }));
    EXPECT_THAT(configured(top + "/config/system-description"), ElementsAre("set while off"));
    switch_lldp(true);
    EXPECT_TRUE(eventually([] { return told_by_r2("/chassis/0/descr/0/value") == "set while off"; }));
}

// --- interfaces ---

TEST_F(CoreLldp, ThatIsDisabledOnAnInterfaceIsSilentThereAlone) {
    switch_lldp(true);
    switch_eth1(false);
    EXPECT_TRUE(eventually([] { return heard_by_r2().empty(); }));
    EXPECT_EQ(heard_by_r3(), Strings{"r1.example.net"});
    EXPECT_THAT(configured(enabled_of_eth1), ElementsAre("false"));
    EXPECT_THAT(shown(entry_of_eth1 + "/state/enabled"), ElementsAre("false"));
    EXPECT_EQ(drift(), "no drift\n");
    switch_eth1(true);
    EXPECT_TRUE(eventually([] { return heard_by_r2() == Strings{"r1.example.net"}; }));
}

TEST_F(CoreLldp, ThatIsDisabledIsSilentOnAnInterfaceThatWasEnabledBefore) {
    switch_eth1(true);
    switch_lldp(false);
    EXPECT_TRUE(eventually([] { return heard_by_r2().empty() && heard_by_r3().empty(); }));
    EXPECT_THAT(configured(enabled_of_eth1), ElementsAre("true"));
    EXPECT_THAT(shown(entry_of_eth1 + "/state/enabled"), ElementsAre("false"));
}

TEST_F(CoreLldp, ThatIsDisabledIsSilentOnAnInterfaceThatIsEnabledAfterwards) {
    switch_lldp(false);
    switch_eth1(true);
    EXPECT_TRUE(eventually([] { return heard_by_r2().empty() && heard_by_r3().empty(); }));
    EXPECT_THAT(configured(enabled_of_eth1), ElementsAre("true"));
    switch_lldp(true);
    EXPECT_TRUE(eventually([] { return heard_by_r2() == Strings{"r1.example.net"}; }));
}

TEST_F(CoreLldp, IsAskedWhenAnEditIsOnlyValidated) {
    const std::string commits = history("r1");
    const std::string interface = "<interfaces><interface><name>eth9</name><config><name>eth9</name>"
                                  "<enabled>true</enabled></config></interface></interfaces>";
    expect_error(client().rpc(edit_config("running", lldp(interface), "<test-option>test-only</test-option>")),
                 "application", "invalid-value");
    expect_ok(client().rpc(edit_config("candidate", lldp(interface))));
    expect_error(client().rpc("<validate><source><candidate/></source></validate>"), "application",
                 "invalid-value");
    expect_ok(client().rpc("<discard-changes/>"));
    expect_ok(client().rpc("<validate><source><candidate/></source></validate>"));
    EXPECT_EQ(history("r1"), commits);
}

TEST_F(CoreLldp, ThatIsDisabledRefusesAnInterfaceThatIsMissing) {
    switch_lldp(false);
    const std::string commits = history("r1");
    expect_error(reply_to("<interfaces><interface><name>eth9</name><config><name>eth9</name>"
                          "<enabled>true</enabled></config></interface></interfaces>"),
                 "application", "invalid-value");
    EXPECT_EQ(history("r1"), commits);
    EXPECT_THAT(configured(top + "/interfaces/interface[name='eth9']/name"), IsEmpty());
}

TEST_F(CoreLldp, ComesBackWithAnInterfaceThatWasDisabledWhileItWasOff) {
    switch_lldp(false);
    switch_eth1(false);
    switch_lldp(true);
    EXPECT_TRUE(eventually([] { return heard_by_r3() == Strings{"r1.example.net"} && heard_by_r2().empty(); }));
    EXPECT_THAT(shown(entry_of_eth1 + "/state/enabled"), ElementsAre("false"));
}

// --- daemons that end in the middle of a commit ---

TEST_F(CoreLldp, KeepsItsConfigurationWhenItsDaemonIsKilledDuringACommit) {
    edit("<config><system-name>before</system-name></config>");
    const std::string commits = history("r1");
    lab().stop_daemon("r1"); // so that the commit waits for it
    std::future<Xml> reply = std::async(std::launch::async, [&] {
        NetconfClient another(socket());
        return another.rpc(edit_config(
            "running", lldp("<config><system-name>after</system-name><hello-timer>20</hello-timer></config>")));
    });
    EXPECT_EQ(reply.wait_for(std::chrono::milliseconds(500)), std::future_status::timeout);
    lab().kill_daemon("r1");
    EXPECT_NE(error_tag(reply.get()), "");
    EXPECT_EQ(history("r1"), commits);
    EXPECT_THAT(configured(top + "/config/system-name"), ElementsAre("before"));
    lab().start_daemon("r1");
    EXPECT_TRUE(eventually([&] { return drift() == "no drift\n"; })) << drift();
    edit("<config><system-name>after</system-name></config>");
    EXPECT_TRUE(eventually([] { return heard_by_r2() == Strings{"after"}; }));
}

// --- random edits ---

constexpr int random_edits = 25;

// Values that lldpd can be given.
std::vector<LegalValue> values_for_lldpd() {
    std::vector<LegalValue> values = legal_values();
    std::erase_if(values, [](const LegalValue &value) {
        const std::string leaf = value.leaf.substr(value.leaf.rfind('/') + 1);
        if (leaf == "hello-timer")
            return !value.native_holds_it || std::stoul(value.text) > 16383;
        if (leaf == "chassis-id-type")
            return value.text != "LOCAL";
        if (leaf == "suppress-tlv-advertisement")
            return !value.text.ends_with("CAPABILITIES") && !value.text.ends_with("ADDRESS");
        return !value.native_holds_it || value.text.size() > 255 ||
               (leaf == "chassis-id" && value.text.empty());
    });
    return values;
}

TEST_F(CoreLldp, ReadsWhatWasWrittenAndRunsItThroughRandomEdits) {
    const auto lines = [&] {
        static const Context modules = openconfig_modules();
        const Xml reply = client().rpc(get_config("running"));
        const Xml *tree = reply.at("data/lldp");
        return tree == nullptr ? std::set<std::string>()
                               : lines_of_tree(parse_answer(modules.get(), Format::xml, tree->printed).get());
    };
    roll_back_at_the_end("r1");
    PlainConfiguration expected;
    expect_ok(client().rpc(edit_config("running", document_of({.name = "lldp"}),
                                       "<default-operation>replace</default-operation>")));
    RandomEdits edits(13, values_for_lldpd(), {"eth1", "eth2", "eth3"});
    int accepted = 0;
    for (int i = 0; i < random_edits && !HasFailure(); i++) {
        const RandomEdit edit = edits.next();
        SCOPED_TRACE("edit " + std::to_string(i) + ": " + testing::PrintToString(edit));
        PlainConfiguration changed = expected;
        const std::string tag = changed.apply(edit.lldp, edit.default_operation);
        const Xml reply =
            client().rpc(edit_config("running", document_of(edit.lldp),
                                     "<default-operation>" + edit.default_operation + "</default-operation>"));
        const bool is_accepted = reply.child("ok") != nullptr;
        EXPECT_TRUE(tag.empty() || !is_accepted) << "must be refused: " << tag;
        // A type without a chassis id is the only thing that lldpd cannot do here.
        EXPECT_TRUE(is_accepted || !tag.empty() ||
                    (!changed.values("chassis-id-type").empty() && changed.values("chassis-id").empty()))
            << reply.printed;
        accepted += is_accepted ? 1 : 0;
        if (is_accepted)
            expected = changed;
        EXPECT_EQ(difference(expected.lines(), lines()), "");
        for (const std::string &line : lines_of(drift())) {
            EXPECT_TRUE(line == "no drift" || line.ends_with("(/lldp/config/enabled is false)")) << line;
        }
    }
    EXPECT_GT(accepted, random_edits / 2);
}

} // namespace
} // namespace yfw::test
