// Neighbors that no daemon would be, sent to a real daemon as frames: phones of one name on a hub, hostile
// names, and every TLV of an organization.
#include <algorithm>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/base64.h"
#include "base/printable.h"
#include "support/answers.h"
#include "support/eventually.h"
#include "support/lab.h"
#include "support/lldp_frame.h"
#include "support/running_yfw.h"

namespace yfw::test {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;

const std::string list = "/openconfig-lldp:lldp/interfaces/interface[name='eth1']/neighbors/neighbor";

// A port id that is an interface name, or a text of the neighbor's own.
std::string interface_port(const std::string &name) {
    return "\x05" + name;
}
std::string own_port(const std::string &text) {
    return "\x07" + text;
}

// Router a, whose daemon hears what the test sends from b; b has no daemon. The daemon of a starts each test
// without neighbors.
class NeighborsOnAHub : public testing::Test {
protected:
    static void TearDownTestSuite() { lab_.reset(); }

    void SetUp() override {
        const std::string obstacle = lab_obstacle();
        if (!obstacle.empty() && lab_is_required())
            FAIL() << obstacle;
        if (!obstacle.empty())
            GTEST_SKIP() << obstacle;
        if (lab_ == nullptr) {
            lab_ = std::make_unique<Laboratory>(
                R"({"routers": [{"name": "a"}, {"name": "b"}], "links": [["a:eth1", "b:eth1"]]})");
            lab_->kill_daemon("b");
        }
        lab_->kill_daemon("a");
        lab_->start_daemon("a");
    }

    static size_t heard() { return lab_->neighbors("a", "eth1").size(); }

    // Sends the frames until all of them are heard.
    static void send(const std::vector<LldpFrame> &frames, size_t already = 0) {
        std::vector<std::string> octets;
        for (const LldpFrame &frame : frames)
            octets.push_back(frame.octets());
        ASSERT_TRUE(eventually([&] {
            lab_->send("b", "eth1", octets);
            return heard() == already + frames.size();
        })) << heard();
    }

    Outcome yfw(const std::vector<std::string> &words) const {
        std::vector<std::string> arguments = words;
        arguments.insert(arguments.end(), {"--device", lab_->device("a")});
        return run_yfw({arguments});
    }

    // The answer; what was left out of it is in `warnings_`.
    Tree get(const std::string &path) {
        const Outcome outcome = yfw({"get", path});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        warnings_ = outcome.errors;
        return parse_printed(modules_.get(), Format::json, outcome.output);
    }

    std::vector<std::string> ids() { return values_at(get("/lldp/interfaces").get(), list + "/id"); }

    static std::unique_ptr<Laboratory> lab_;
    Context modules_ = openconfig_modules();
    std::string warnings_;
};

std::unique_ptr<Laboratory> NeighborsOnAHub::lab_;

// An id in a path, in quotes.
std::string quoted(const std::string &value) {
    std::string text = "'";
    for (const char c : value)
        text.append(c == '\'' ? 2 : 1, c);
    return text + "'";
}

std::vector<LldpFrame> phones(int from, int to) {
    std::vector<LldpFrame> frames;
    for (int number = from; number <= to; number++)
        frames.push_back({mac_chassis(number), own_port("1"), "phone"});
    return frames;
}

// --- who they are ---

TEST_F(NeighborsOnAHub, AreThirtyPhonesOfOneNameAndPort) {
    send(phones(1, 30));
    const Tree whole = get("/lldp");
    EXPECT_EQ(warnings_, "");
    const auto chassis = values_at(whole.get(), list + "/state/chassis-id");
    EXPECT_EQ(std::set<std::string>(chassis.begin(), chassis.end()).size(), 30U);
    const auto ids = values_at(whole.get(), list + "/id");
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 30U);
    for (const std::string &id : {ids.front(), ids.back()}) {
        const Tree keyed =
            get("/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id=" + quoted(id) + "]");
        EXPECT_EQ(values_at(keyed.get(), list + "/id"), std::vector<std::string>{id});
        EXPECT_EQ(values_at(keyed.get(), list + "/state/chassis-id"),
                  values_at(whole.get(), list + "[id='" + id + "']/state/chassis-id"));
    }
}

TEST_F(NeighborsOnAHub, KeepTheirIdsWhenTheDaemonHearsThemInAnotherOrder) {
    std::vector<LldpFrame> frames = phones(1, 9);
    send(frames);
    const auto first = ids();
    lab_->kill_daemon("a");
    lab_->start_daemon("a");
    std::reverse(frames.begin(), frames.end());
    frames.pop_back();
    send(frames);
    const auto second = ids();
    EXPECT_THAT(second, testing::IsSubsetOf(first));
    EXPECT_EQ(second.size(), 8U);
}

TEST_F(NeighborsOnAHub, AreReadByKeyWhateverTheirIds) {
    send({{mac_chassis(1), interface_port("eth#1"), "sw#1"},
          {mac_chassis(2), interface_port("eth#1"), "sw"},
          {mac_chassis(3), own_port("1"), std::nullopt},
          {mac_chassis(4), own_port("1"), std::nullopt},
          {mac_chassis(5), own_port("1"), "DISABLED"},
          {mac_chassis(6), own_port(std::string(200, 'p')), std::string(255, 'n')},
          {mac_chassis(7), own_port(std::string(255, 'p')), std::string(255, 'n')},
          {mac_chassis(8), own_port(std::string(254, 'p')), std::string(255, 'n')},
          {mac_chassis(9), own_port("p\0q"s), "zero"},
          {mac_chassis(9), own_port("p\0r"s), "zero"},
          {"\x07\x01\xff"s, own_port("\x1b[2J"), "\xff\xfe"}});
    const Tree whole = get("/lldp");
    EXPECT_EQ(warnings_, "");
    const auto ids = values_at(whole.get(), list + "/id");
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 11U);
    EXPECT_EQ(values_at(whole.get(), list + "/state/id"), ids);
    for (const std::string &id : ids) {
        const Tree keyed =
            get("/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id=" + quoted(id) + "]");
        EXPECT_EQ(as_text(keyed.get(), list + "/state/chassis-id"),
                  as_text(whole.get(), list + "[id='" + id + "']/state/chassis-id"))
            << id;
    }
}

// --- when they were heard ---

TEST_F(NeighborsOnAHub, TellSecondsSinceTheirLastUpdateAndSinceTheirDiscovery) {
    send(phones(1, 1));
    const Tree answer = get("/lldp");
    for (const char *leaf : {"/state/last-update", "/state/age"}) {
        const auto seconds = values_at(answer.get(), list + leaf);
        ASSERT_EQ(seconds.size(), 1U) << leaf;
        EXPECT_LT(std::stoll(seconds.front()), 60) << leaf;
    }
}

// --- TLVs of organizations ---

struct OrganizationTlv {
    const char *oui;
    int subtype;
    std::string content;
};

std::string tlvs_of(const std::vector<OrganizationTlv> &tlvs) {
    std::string octets;
    for (const OrganizationTlv &tlv : tlvs)
        octets += organization_tlv(tlv.oui, tlv.subtype, tlv.content);
    return octets;
}

// "00:12:bb" of "0012bb".
std::string spelled(const std::string &oui) {
    return oui.substr(0, 2) + ":" + oui.substr(2, 2) + ":" + oui.substr(4);
}

std::string value_of(const lyd_node *answer, const OrganizationTlv &tlv) {
    const auto found =
        values_at(answer, list + "/custom-tlvs/tlv[oui='" + spelled(tlv.oui) + "'][oui-subtype='" +
                              std::to_string(tlv.subtype) + "']/state/value");
    return found.empty() ? "(none)" : found.front();
}

TEST_F(NeighborsOnAHub, TellTheTlvsOfOrganizationsAsTheyWereSent) {
    const std::vector<OrganizationTlv> sent = {
        {"0080c2", 1, from_hexadecimal("0064")},
        {"0080c2", 2, from_hexadecimal("06012c")},
        {"0080c2", 3, from_hexadecimal("006405") + "vlanA"},
        {"0080c2", 4, from_hexadecimal("050000420300")},
        {"0080c2", 7, from_hexadecimal("0300000007")},
        {"00120f", 1, from_hexadecimal("036c01001e")},
        {"00120f", 2, from_hexadecimal("0f020591008200ff")},
        {"00120f", 3, from_hexadecimal("0300000009")},
        {"00120f", 4, from_hexadecimal("05ee")},
        {"0012bb", 1, from_hexadecimal("003f03")},
        {"0012bb", 2, from_hexadecimal("0140c9a8")},
        {"0012bb", 3,
         "\x03"
         "911123456"},
        {"0012bb", 4, from_hexadecimal("530041")},
        {"0012bb", 5, "hardware"},
        {"0012bb", 6, "firmware"},
        {"0012bb", 7, "software"},
        {"0012bb", 8, "serial"},
        {"0012bb", 9, "maker"},
        {"0012bb", 10, "model"},
        {"0012bb", 11, "asset"},
        {"334455", 1, "a\0b"s},
        {"334455", 2, "\0\0\0"s},
        {"334455", 3, "\xc0\x80\0"s},
        {"334455", 4, "\xff\xfe"},
    };
    send({{mac_chassis(1), interface_port("1"), "all", tlvs_of(sent)}});
    const Tree answer = get("/lldp");
    EXPECT_EQ(warnings_, "");
    for (const OrganizationTlv &tlv : sent)
        EXPECT_EQ(value_of(answer.get(), tlv), base64(tlv.content)) << tlv.oui << " " << tlv.subtype;
    EXPECT_EQ(values_at(answer.get(), list + "/custom-tlvs/tlv/oui").size(), sent.size());
}

class AFormOfATlv : public NeighborsOnAHub, public testing::WithParamInterface<OrganizationTlv> {};

TEST_P(AFormOfATlv, IsToldAsItWasSent) {
    send({{mac_chassis(1), interface_port("1"), "one", tlvs_of({GetParam()})}});
    EXPECT_EQ(value_of(get("/lldp").get(), GetParam()), base64(GetParam().content));
}

INSTANTIATE_TEST_SUITE_P(
    Of, AFormOfATlv,
    testing::Values(OrganizationTlv{"00120f", 2, from_hexadecimal("000103")},
                    OrganizationTlv{"00120f", 2, from_hexadecimal("0001057300820000")},
                    OrganizationTlv{"00120f", 2,
                                    from_hexadecimal("0701051101900186000b000c000d000e9b460701ff00000000")},
                    OrganizationTlv{"0012bb", 2, from_hexadecimal("0280c9ae")},
                    OrganizationTlv{"0012bb", 3, "\x02\x0d\x02"s + "FR\x01\x05Paris\x03\x01z"},
                    OrganizationTlv{"0012bb", 4, from_hexadecimal("1000ff")},
                    OrganizationTlv{"0012bb", 4, from_hexadecimal("71ffff")}));

// Of a list's second entry with its keys OpenConfig has no place, and that is said once.
TEST_F(NeighborsOnAHub, AreSaidToHaveMoreTlvsOfOneKindThanFit) {
    send({{mac_chassis(1), interface_port("1"), "vlans",
           tlvs_of({{"0080c2", 3, from_hexadecimal("000103") + "one"},
                    {"0080c2", 3, from_hexadecimal("000203") + "two"},
                    {"0080c2", 3, from_hexadecimal("000305") + "three"}})}});
    const Tree answer = get("/lldp");
    EXPECT_THAT(warnings_, HasSubstr("2 more entries with the same keys are left out"));
    EXPECT_EQ(values_at(answer.get(), list + "/custom-tlvs/tlv/state/value"),
              std::vector<std::string>{base64(from_hexadecimal("000103") + "one")});
}

// --- watching ---

// A watch that is begun anew while it ends at once: a daemon that is killed while it begins is an error.
class Watching {
public:
    explicit Watching(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}

    void ensure() {
        if (!watch_.has_value() || !watch_->runs())
            watch_.emplace(arguments_);
    }
    RunningYfw *operator->() { return &*watch_; }

private:
    std::vector<std::string> arguments_;
    std::optional<RunningYfw> watch_;
};

TEST_F(NeighborsOnAHub, AreWatchedByTheIdsThatAReadShows) {
    Watching watch({"watch", "--device", lab_->device("a")});
    // A watch says nothing when it begins: what is told first shows that it has begun.
    ASSERT_TRUE(eventually([&] {
        watch.ensure();
        send({{mac_chassis(99), own_port("0"), "first"}});
        lab_->kill_daemon("a");
        lab_->start_daemon("a");
        return watch->line_with({"removed", "'first#0'"}, std::chrono::seconds(3)).has_value();
    })) << watch->errors();
    send(phones(1, 1));
    EXPECT_TRUE(watch->line_with({"added", "'phone#1'"})) << watch->output();
    send(phones(2, 2), 1);
    EXPECT_TRUE(watch->line_with({"removed", "'phone#1'"})) << watch->output();
    for (const std::string &id : ids())
        EXPECT_THAT(id, testing::MatchesRegex("phone~[0-9a-f]{16}#1"));
    EXPECT_TRUE(watch->line_with({"added", "'phone~"})) << watch->output();
    EXPECT_TRUE(watch->line_with({"added", "'phone~"})) << watch->output();
    for (const std::string &id : ids())
        EXPECT_THAT(watch->output(), HasSubstr("'" + id + "'"));
}

TEST_F(NeighborsOnAHub, CannotForgeALineOfWatch) {
    Watching watch({"watch", "--device", lab_->device("a")});
    Watching watch_json({"watch", "--json", "--device", lab_->device("a")});
    const std::string name = "evil\n2000-01-01T00:00:00Z  removed  /lldp\u2028\u202e\u009b2J";
    bool is_told = false;
    bool is_told_in_json = false;
    ASSERT_TRUE(eventually([&] {
        watch.ensure();
        watch_json.ensure();
        send({{mac_chassis(1), own_port("1"), name}});
        lab_->kill_daemon("a");
        lab_->start_daemon("a");
        const auto soon = std::chrono::seconds(3);
        is_told = is_told || watch->line_with({"removed", "evil\\x0a2000"}, soon).has_value();
        is_told_in_json = is_told_in_json || watch_json->line_with({"\"removed\"", "evil"}, soon).has_value();
        return is_told && is_told_in_json;
    })) << watch->output()
        << watch->errors() << watch_json->output() << watch_json->errors();
    for (const std::string &text : {watch->output(), watch_json->output()}) {
        std::string line;
        for (std::istringstream lines(text); std::getline(lines, line);)
            EXPECT_EQ(printable(line), line);
    }
    EXPECT_EQ(watch->output().find("\n2000-01-01"), std::string::npos);
}

} // namespace
} // namespace yfw::test
