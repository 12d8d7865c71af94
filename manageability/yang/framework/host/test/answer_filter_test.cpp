#include <ostream>

#include "answer_fixture.h"

namespace yfw::host::test {
namespace {

constexpr const char *eth1 = "/lldp/interfaces/interface[name='eth1']";
constexpr const char *eth2 = "/lldp/interfaces/interface[name='eth2']";

struct Question {
    Lines paths;
    Content content;
    Lines answer;
};

std::ostream &operator<<(std::ostream &out, const Question &question) {
    for (const std::string &line : question.paths)
        out << line << ' ';
    return out << "content " << static_cast<int>(question.content);
}

std::string at(const char *entry, const char *rest) {
    return std::string(entry) + rest;
}

// A finished answer with two interfaces; the first has two neighbors.
class FilteredAnswer : public WrittenAnswer, public testing::WithParamInterface<Question> {
protected:
    void SetUp() override {
        add("/lldp/config/enabled", "true");
        add("/lldp/config/hello-timer", "30");
        add("/lldp/state/enabled", "true");
        add("/lldp/state/counters/frame-in", "7");
        interface("eth1");
        add("/lldp/interfaces/interface/config/enabled", "true");
        add("/lldp/interfaces/interface/state/enabled", "true");
        stitch("eth1", "r2#p");
        add(std::string(neighbor_list) + "/state/ttl", "8");
        open_entry(capability_list);
        add(std::string(capability_list) + "/name", "openconfig-lldp-types:ROUTER");
        add(std::string(capability_list) + "/state/enabled", "true");
        stitch("eth1", "r3#p");
        add(std::string(neighbor_list) + "/state/ttl", "9");
        interface("eth2");
        add("/lldp/interfaces/interface/state/enabled", "false");
    }
};

TEST_P(FilteredAnswer, HoldsWhatWasAskedForAndNothingElse) {
    EXPECT_EQ(answer(GetParam().paths, GetParam().content), GetParam().answer);
    EXPECT_TRUE(warnings.empty());
}

constexpr Content all = Content::all;

const Lines neighbor_lines = {at(eth1, "/neighbors/neighbor[id='r2#p']/state/ttl=8"),
                              at(eth1, "/neighbors/neighbor[id='r2#p']/capabilities/"
                                       "capability[name='openconfig-lldp-types:ROUTER']/state/enabled=true"),
                              at(eth1, "/neighbors/neighbor[id='r3#p']/state/ttl=9")};

INSTANTIATE_TEST_SUITE_P(
    Containers, FilteredAnswer,
    testing::Values(
        Question{{"/lldp/config"}, all, {"/lldp/config/enabled=true", "/lldp/config/hello-timer=30"}},
        Question{{"/lldp/config/hello-timer"}, all, {"/lldp/config/hello-timer=30"}},
        Question{{"/lldp/state/counters", "/lldp/config/enabled"},
                 all,
                 {"/lldp/config/enabled=true", "/lldp/state/counters/frame-in=7"}},
        Question{{"/lldp/config/chassis-id"}, all, {}},
        Question{{"/lldp/config", "/lldp/state/enabled"},
                 all,
                 {"/lldp/config/enabled=true", "/lldp/config/hello-timer=30", "/lldp/state/enabled=true"}}));

INSTANTIATE_TEST_SUITE_P(
    Entries, FilteredAnswer,
    testing::Values(
        Question{{eth2}, all, {at(eth2, "/state/enabled=false")}},
        Question{{at(eth1, "/state"), at(eth1, "/config")},
                 all,
                 {at(eth1, "/config/enabled=true"), at(eth1, "/state/enabled=true")}},
        Question{{"/lldp/interfaces/interface[name='eth9']"}, all, {}},
        Question{{"/lldp/interfaces/interface[name='eth']"}, all, {}},
        Question{{"/lldp/interfaces/interface/state/enabled"},
                 all,
                 {at(eth1, "/state/enabled=true"), at(eth2, "/state/enabled=false")}},
        Question{{"/lldp/interfaces/interface/config"}, all, {at(eth1, "/config/enabled=true")}},
        Question{{"/lldp/interfaces/interface/name"}, all, {eth1, eth2}},
        Question{{at(eth2, "/name")}, all, {eth2}}, Question{{at(eth1, "/neighbors")}, all, neighbor_lines},
        Question{{at(eth1, "/neighbors/neighbor[id='r3#p']")}, all, {neighbor_lines[2]}},
        Question{{"/lldp/interfaces/interface/neighbors/neighbor[id='r2#p']/state"}, all, {neighbor_lines[0]}},
        Question{{at(eth2, "/neighbors/neighbor[id='r2#p']")}, all, {}},
        Question{{at(eth1, "/neighbors/neighbor[id='r2']")}, all, {}}));

const std::string capability = at(eth1, "/neighbors/neighbor[id='r2#p']/capabilities/capability");

INSTANTIATE_TEST_SUITE_P(
    Identities, FilteredAnswer,
    testing::Values(Question{{capability + "[name='ROUTER']"}, all, {neighbor_lines[1]}},
                    Question{{capability + "[name='openconfig-lldp-types:ROUTER']"}, all, {neighbor_lines[1]}},
                    Question{{capability + "[name='MAC_BRIDGE']"}, all, {}},
                    Question{{capability + "[name='OUTER']"}, all, {}}));

INSTANTIATE_TEST_SUITE_P(
    Kinds, FilteredAnswer,
    testing::Values(Question{{"/lldp"},
                             Content::config,
                             {"/lldp/config/enabled=true", "/lldp/config/hello-timer=30",
                              at(eth1, "/config/enabled=true")}},
                    Question{{"/lldp/state", "/lldp/config"},
                             Content::state,
                             {"/lldp/state/enabled=true", "/lldp/state/counters/frame-in=7"}},
                    Question{{eth1},
                             Content::state,
                             {at(eth1, "/state/enabled=true"), neighbor_lines[0], neighbor_lines[1],
                              neighbor_lines[2]}},
                    Question{{eth2}, Content::config, {}}, Question{{"/lldp/config"}, Content::state, {}}));

// A predicate on a container's leaf must match, just as one on a list entry's leaf must.
INSTANTIATE_TEST_SUITE_P(Matches, FilteredAnswer,
                         testing::Values(Question{{"/lldp/config[enabled='true']"},
                                                  all,
                                                  {"/lldp/config/enabled=true", "/lldp/config/hello-timer=30"}},
                                         Question{{"/lldp/config[enabled='false']"}, all, {}},
                                         Question{{"/lldp/config[enabled='false']/hello-timer"}, all, {}},
                                         Question{{"/lldp/interfaces/interface/state[enabled='false']"},
                                                  all,
                                                  {at(eth2, "/state/enabled=false")}}));

class UnfilteredAnswer : public WrittenAnswer {};

TEST_F(UnfilteredAnswer, IsNothingWhenNothingWasWritten) {
    EXPECT_EQ(data(), nullptr);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(UnfilteredAnswer, HasNoEmptyContainers) {
    interface("eth1");
    add("/lldp/interfaces/interface/neighbors", nullptr);
    add("/lldp/state/counters", nullptr);
    EXPECT_EQ(answer(), (Lines{eth1}));
}

TEST_F(UnfilteredAnswer, ShowsAnEntryOfNothingButKeysToWhoAskedForIt) {
    interface("eth1");
    EXPECT_EQ(answer({"/lldp/interfaces"}), (Lines{eth1}));
    EXPECT_EQ(answer({eth1}), (Lines{eth1}));
    EXPECT_EQ(answer({"/lldp/interfaces/interface/name"}), (Lines{eth1}));
    EXPECT_EQ(answer({"/lldp/interfaces/interface/state"}), Lines{});
}

} // namespace
} // namespace yfw::host::test
