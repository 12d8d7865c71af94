// Consecutive requests in one process. The plug-in keeps keys and sums from one request to the next; they must
// not affect an answer.

#include <gtest/gtest.h>

#include "base/error.h"
#include "data_texts.h"
#include "neighbor_tables.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

constexpr const char *eth1 = "/lldp/interfaces/interface[name='eth1']";
constexpr const char *any_neighbor = "/lldp/interfaces/interface/neighbors/neighbor";

std::string at(const char *entry, const char *rest) {
    return std::string(entry) + rest;
}

Announcement heard_on(const char *port) {
    Announcement made{port};
    made.leaves = {{"chassis-id", "c"}, {"hold-time", "120"}};
    made.mib = {{"combined-capabilities", "1310740"}, {"chassis-id-sub-type", "4"}};
    made.tlvs = {{"00:80:c2", "9", "abc"}};
    return made;
}

// Two nodes, each with a neighbor and statistics.
Table two_nodes() {
    Table table{{{"0/0"}, {"0/1"}}};
    table.cards[0].details = {{"eth1", "r2", {heard_on("p1")}}};
    table.cards[0].statistics = {
        {"received-packets", "10"}, {"transmitted-packets", "1"}, {"bad-packets", "100"}};
    table.cards[1].details = {{"eth2", "r3", {heard_on("p2")}}};
    table.cards[1].statistics = {
        {"received-packets", "32"}, {"transmitted-packets", "2"}, {"bad-packets", "1000"}};
    return table;
}

// The same, but the neighbor of one node has an invalid chassis id subtype.
Table with_a_fault_on(size_t card) {
    Table table = two_nodes();
    table.cards[card].details[0].announcements[0].mib = {{"chassis-id-sub-type", "0"}};
    return table;
}

const Lines sums = {"/lldp/state/counters/frame-in=42", "/lldp/state/counters/frame-out=3",
                    "/lldp/state/counters/frame-error-in=1100"};

class RequestSequence : public testing::Test {
protected:
    void SetUp() override { device.source.xml = two_nodes().xml(); }

    // Expects the read to fail with this status.
    void fail_with(terrno status, const Lines &paths) {
        try {
            device.read(paths);
            ADD_FAILURE() << "the read succeeded";
        } catch (const Error &error) {
            EXPECT_EQ(error.status(), status);
        }
    }

    void fail_halfway(size_t card) {
        device.source.xml = with_a_fault_on(card).xml();
        fail_with(YMAP_ERR_MAP_FAILED, {"/lldp"});
        device.source.xml = two_nodes().xml();
    }

    Lines counters_of(const Lines &lines) {
        Lines found;
        for (const std::string &rest : below(lines, "/lldp/state/counters"))
            found.push_back("/lldp/state/counters" + rest);
        return found;
    }

    DeviceUnderTest device;
};

struct Step {
    std::string path;
    Content content = Content::all;
};

const Step steps[] = {{"/lldp"},
                      {"/lldp", Content::config},
                      {"/lldp/state"},
                      {"/lldp/interfaces", Content::state},
                      {eth1},
                      {at(eth1, "/neighbors/neighbor[id='r2#p1']")},
                      {at(eth1, "/neighbors/neighbor[id='r9#p1']")},
                      {at(any_neighbor, "[id='r3#p2']/state")},
                      {at(any_neighbor, "[id='r3']")},
                      {"/lldp/interfaces/interface[name='eth9']/neighbors"},
                      {at(any_neighbor, "/capabilities/capability[name='ROUTER']")},
                      {at(any_neighbor, "/capabilities/capability[name='TELEPHONE']")},
                      {at(any_neighbor, "/custom-tlvs/tlv[type='127']")},
                      {at(any_neighbor, "/state/ttl")},
                      {"/lldp/state/counters/frame-in"}};

TEST_F(RequestSequence, AnswersEachReadAlikeWhateverReadCameBefore) {
    for (const Step &step : steps) {
        DeviceUnderTest fresh; // resets the plug-in's state
        fresh.source.xml = two_nodes().xml();
        const Lines alone = fresh.read({step.path}, step.content);
        for (const Step &before : steps) {
            device.read({before.path}, before.content);
            EXPECT_EQ(device.read({step.path}, step.content), alone) << step.path << " after " << before.path;
        }
    }
}

// Requests that the mapping refuses before the device's data is walked.
const char *const refused_tlv = "/custom-tlvs/tlv[type='1']";
const Lines refused_requests = {
    at(any_neighbor, refused_tlv), at(eth1, "/neighbors/neighbor") + refused_tlv,
    at(eth1, "/neighbors/neighbor[id='r2#p1']") + refused_tlv, at(any_neighbor, "[id='r2#p1']") + refused_tlv,
    "/lldp/interfaces/interface[name='eth9']/neighbors/neighbor[id='x']" + std::string(refused_tlv)};

TEST_F(RequestSequence, AnswersEachReadAlikeAfterARequestThatWasRefused) {
    for (const Step &step : steps) {
        DeviceUnderTest fresh;
        fresh.source.xml = two_nodes().xml();
        const Lines alone = fresh.read({step.path}, step.content);
        for (const std::string &refused : refused_requests) {
            fail_with(YMAP_ERR_INVALID_ARGS, {refused});
            EXPECT_EQ(device.read({step.path}, step.content), alone) << step.path << " after " << refused;
        }
    }
}

TEST_F(RequestSequence, AnswersBehindAnUnansweredKeyWithoutIt) {
    EXPECT_EQ(device.read({at(eth1, "/neighbors/neighbor[id='r9#p9']/state/ttl")}), Lines{});
    EXPECT_EQ(device.read({at(any_neighbor, "/state/ttl")}),
              (Lines{at(eth1, "/neighbors/neighbor[id='r2#p1']/state/ttl=120"),
                     "/lldp/interfaces/interface[name='eth2']/neighbors/neighbor[id='r3#p2']/state/ttl=120"}));
}

TEST_F(RequestSequence, SumsTheCountersOfAllNodesInEachRead) {
    for (int round = 0; round < 3; round++)
        EXPECT_EQ(counters_of(device.read({"/lldp"})), sums) << round;
}

TEST_F(RequestSequence, SumsTheCountersOfAsManyNodesAsThereAreNow) {
    EXPECT_EQ(counters_of(device.read({"/lldp"})), sums);
    Table five{std::vector<Card>(5)};
    for (size_t i = 0; i < five.cards.size(); i++)
        five.cards[i] = {std::to_string(i), {}, {}, {{"received-packets", "1000000000"}}};
    device.source.xml = five.xml();
    EXPECT_EQ(device.read({"/lldp/state/counters/frame-in"}),
              (Lines{"/lldp/state/counters/frame-in=705032704"}))
        << "5,000,000,000 modulo 2^32";
    device.source.xml = two_nodes().xml();
    EXPECT_EQ(counters_of(device.read({"/lldp"})), sums);
}

TEST_F(RequestSequence, WarnsOfASumThatThePluginReportsAsNegative) {
    Table table = two_nodes();
    table.cards[0].statistics = {{"received-packets", "2147483647"}};
    table.cards[1].statistics = {{"received-packets", "1"}};
    device.source.xml = table.xml();
    EXPECT_EQ(device.read({"/lldp/state/counters"}), Lines{});
    ASSERT_EQ(device.warnings.size(), 1u);
    EXPECT_NE(device.warnings.front().find("-2147483648"), std::string::npos) << device.warnings.front();
}

TEST_F(RequestSequence, SumsRightBehindNodesThatDoNotAllReportACounter) {
    Table table = two_nodes();
    table.cards[1].statistics = {{"transmitted-packets", "2"}};
    device.source.xml = table.xml();
    EXPECT_EQ(counters_of(device.read({"/lldp"})),
              (Lines{"/lldp/state/counters/frame-in=10", "/lldp/state/counters/frame-out=3",
                     "/lldp/state/counters/frame-error-in=100"}));
    device.source.xml = two_nodes().xml();
    EXPECT_EQ(counters_of(device.read({"/lldp"})), sums);
    EXPECT_EQ(counters_of(device.read({"/lldp"})), sums);
}

TEST_F(RequestSequence, SumsRightAfterAResponseThatFailedAtTheFirstNode) {
    fail_halfway(0);
    EXPECT_EQ(counters_of(device.read({"/lldp"})), sums);
}

TEST_F(RequestSequence, SumsRightAfterAResponseThatFailedBetweenTheNodes) {
    fail_halfway(1);
    EXPECT_EQ(counters_of(device.read({"/lldp"})), sums);
    EXPECT_EQ(counters_of(device.read({"/lldp"})), sums) << "in the second read after it";
}

TEST_F(RequestSequence, ReadsOneCounterRightAfterAResponseThatFailedBetweenTheNodes) {
    fail_halfway(1);
    EXPECT_EQ(device.read({"/lldp/state/counters/frame-in"}), (Lines{"/lldp/state/counters/frame-in=42"}));
}

TEST_F(RequestSequence, SumsRightForFewerNodesAfterAResponseThatFailedBetweenTheNodes) {
    fail_halfway(1);
    Table one = two_nodes();
    one.cards.pop_back();
    device.source.xml = one.xml();
    EXPECT_EQ(device.read({"/lldp/state/counters/frame-in"}), (Lines{"/lldp/state/counters/frame-in=10"}));
}

TEST_F(RequestSequence, ShowsAllNeighborsAfterAResponseThatFailed) {
    const Lines wanted = device.read({any_neighbor});
    fail_halfway(1);
    EXPECT_EQ(device.read({any_neighbor}), wanted);
    device.source.xml = with_a_fault_on(0).xml();
    fail_with(YMAP_ERR_MAP_FAILED, {at(eth1, "/neighbors/neighbor[id='r2#p1']")});
    device.source.xml = two_nodes().xml();
    EXPECT_EQ(device.read({any_neighbor}), wanted);
}

} // namespace
} // namespace yfw::host::test
