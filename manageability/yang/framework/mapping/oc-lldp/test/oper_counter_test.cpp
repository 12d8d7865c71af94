// The global counters, summed over the nodes, and the last-clear times.
#include <cstdlib>
#include <ctime>

#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Range;
using ::testing::SizeIs;
using ::testing::Values;
using ::testing::ValuesIn;

const std::string util_name = oper + "statsics_util";

struct Counter {
    int index;
    std::string tag;
    std::string suffix;
    std::string path;
};

void PrintTo(const Counter &counter, std::ostream *stream) {
    *stream << counter.suffix;
}

const std::vector<Counter> &counters() {
    static const std::vector<Counter> all = {
        {0, "transmitted-packets", "transmittedpackets", "/lldp/state/counters/frame-out"},
        {1, "aged-out-entries", "agedoutentries", "/lldp/state/counters/entries-aged-out"},
        {2, "discarded-packets", "discardedpackets", "/lldp/state/counters/frame-discard"},
        {3, "bad-packets", "badpackets", "/lldp/state/counters/frame-error-in"},
        {4, "received-packets", "receivedpackets", "/lldp/state/counters/frame-in"},
        {5, "discarded-tl-vs", "discardedtlvs", "/lldp/state/counters/tlv-discard"},
        {6, "unrecognized-tl-vs", "unrecognizedtlvs", "/lldp/state/counters/tlv-unknown"},
        {7, "accepted-tl-vs", "acceptedtlvs", "/lldp/state/counters/tlv-accepted"}};
    return all;
}

class OperCounters : public OperTest {
protected:
    // Makes the response hold this many nodes.
    void respond_with_nodes(std::size_t count, std::size_t slot = 0, const char *path = "/lldp/nodes") {
        trees.emplace_back(std::make_unique<Tree>(
            node("nodes").children(std::vector<Node>(count, node("node"))), native_oper_ns));
        context.req.subtrees[slot] = {.path = path, .node = *trees.back()};
    }
    // Runs a counter's leaf callback for each value and returns the values added.
    std::vector<std::string> sums(const Counter &counter, const std::vector<std::string> &values) {
        fw.forget_calls();
        for (const std::string &value : values)
            EXPECT_EQ(run_leaf("statistics_" + counter.suffix, value), YMAP_OK);
        std::vector<std::string> added;
        for (const Add &add : fw.adds)
            added.push_back(add.value.value_or("(none)"));
        return added;
    }
    const Counter &frame_out() const { return counters()[0]; }
    terrno run_util(tidl_yfw_datatree *native, tidl_yfw_datatree *out, const char *path, int index) {
        using Util = decltype(ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util);
        return plugin->symbol<Util>(util_name)(context, native, out, path, index);
    }
};

class OperCounter : public OperCounters, public ::testing::WithParamInterface<Counter> {};

INSTANTIATE_TEST_SUITE_P(Every, OperCounter, ValuesIn(counters()),
                         [](const auto &test) { return test.param.suffix; });

TEST_P(OperCounter, IsAddedToItsLeafWithoutFlags) {
    respond_with_nodes(1);
    EXPECT_EQ(run_leaf("statistics_" + GetParam().suffix, "17"), YMAP_OK);
    ASSERT_THAT(fw.adds, ElementsAre(IsPlainAddTo(&output)));
    EXPECT_EQ(summary(fw.adds[0]), GetParam().path + " = 17");
    EXPECT_FALSE(fw.adds[0].slot_given);
}

TEST_P(OperCounter, KeepsItsSumInItsOwnSlot) {
    respond_with_nodes(2);
    sums(GetParam(), {"17"});
    for (int index = 0; index < OCLLDP_COUNTERS; ++index) {
        SCOPED_TRACE(index);
        EXPECT_EQ(plugin->stats()[index], index == GetParam().index ? 17u : 0u);
        EXPECT_EQ(plugin->stat_counts()[index], index == GetParam().index ? 1u : 0u);
    }
    EXPECT_EQ(plugin->subtree_count(), 2);
}

TEST_P(OperCounter, AddsUpOverTheNodesAndStartsAnew) {
    respond_with_nodes(2);
    EXPECT_THAT(sums(GetParam(), {"10", "32"}), ElementsAre("10", "42"));
    EXPECT_EQ(plugin->stats()[GetParam().index], 0u);
    EXPECT_EQ(plugin->stat_counts()[GetParam().index], 0u);
    EXPECT_EQ(plugin->subtree_count(), 0);
    EXPECT_THAT(sums(GetParam(), {"1", "2"}), ElementsAre("1", "3"));
}

TEST_P(OperCounter, ReturnsTheStatusOfTheAddAndCountsTheNodeAllTheSame) {
    respond_with_nodes(2);
    fw.fail(add_path, 1, 0x1234);
    EXPECT_EQ(run_leaf("statistics_" + GetParam().suffix, "10"), 0x1234u);
    EXPECT_EQ(plugin->stats()[GetParam().index], 10u);
    EXPECT_EQ(run_leaf("statistics_" + GetParam().suffix, "32"), YMAP_OK);
    EXPECT_EQ(summary(fw.adds.back()), GetParam().path + " = 42");
}

TEST_P(OperCounter, RejectsAMissingNodeOrOutputWithoutAnErrorPath) {
    Tree native(leaf(GetParam().tag, "1"), native_oper_ns);
    const std::string name = oper + "leaf_lvla_lldp_statistics_" + GetParam().suffix;
    EXPECT_EQ(plugin->call(name, context, nullptr, &output), YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(plugin->call(name, context, native, nullptr), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), Each("NULL arguments passed"));
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_EQ(plugin->stat_counts()[GetParam().index], 0u);
}

// ---- sums --------------------------------------------------------------------------------------------

struct SumCase {
    std::string label;
    std::vector<std::string> values;
    std::vector<std::string> sums;
};

void PrintTo(const SumCase &sum, std::ostream *stream) {
    *stream << sum.label;
}

class OperSums : public OperCounters, public ::testing::WithParamInterface<SumCase> {};

INSTANTIATE_TEST_SUITE_P(Every, OperSums,
                         Values(SumCase{"OneNode", {"5"}, {"5"}},
                                SumCase{"TwoNodes", {"10", "32"}, {"10", "42"}},
                                SumCase{"FiveNodes", {"1", "2", "3", "4", "5"}, {"1", "3", "6", "10", "15"}},
                                SumCase{"TheLargestSigned", {"2147483646", "1"}, {"2147483646", "2147483647"}},
                                // Printed as signed: sums of 2^31 and more come out negative.
                                SumCase{"Past2To31", {"2147483647", "1"}, {"2147483647", "-2147483648"}},
                                SumCase{"TheLargestUnsigned", {"4294967295"}, {"-1"}},
                                SumCase{"Past2To32", {"4294967295", "3"}, {"-1", "2"}},
                                SumCase{"CutTo32Bits", {"4294967301", "1"}, {"5", "6"}},
                                SumCase{"NotNumeric", {"many", "", "3x"}, {"0", "0", "3"}},
                                SumCase{"Negative", {"-5", "7"}, {"-5", "2"}}),
                         [](const auto &test) { return test.param.label; });

TEST_P(OperSums, RunUpToTheTotal) {
    respond_with_nodes(GetParam().values.size());
    EXPECT_EQ(sums(frame_out(), GetParam().values), GetParam().sums);
    EXPECT_EQ(plugin->stats()[0], 0u);
    EXPECT_EQ(plugin->stat_counts()[0], 0u);
}

class OperNodeCounts : public OperCounters, public ::testing::WithParamInterface<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Every, OperNodeCounts, Values(1, 2, 5));

TEST_P(OperNodeCounts, TheWalkLeavesEachCounterAtItsTotal) {
    std::vector<Node> statistics;
    for (const Counter &counter : counters())
        statistics.push_back(leaf(counter.tag, std::to_string(1 + counter.index)));
    const std::vector<Node> entries(GetParam(),
                                    node("node").children({node("statistics").children(statistics)}));
    respond_with_nodes(GetParam());
    EXPECT_EQ(walk(node("lldp").children({node("nodes").children(entries)})), YMAP_OK);
    std::map<std::string, std::string> last;
    for (const Add &add : fw.adds)
        last[add.path] = add.value.value_or("(none)");
    EXPECT_EQ(last.size(), counters().size());
    for (const Counter &counter : counters())
        EXPECT_EQ(last[counter.path],
                  std::to_string(GetParam() * (1 + static_cast<std::size_t>(counter.index))));
    for (int index = 0; index < OCLLDP_COUNTERS; ++index)
        EXPECT_EQ(plugin->stat_counts()[index], 0u);
    EXPECT_EQ(plugin->subtree_count(), 0);
}

TEST_F(OperCounters, CarryThePartialSumOfACutResponseIntoTheNext) {
    respond_with_nodes(3);
    EXPECT_THAT(sums(frame_out(), {"10"}), ElementsAre("10"));
    EXPECT_THAT(sums(frame_out(), {"1", "2"}), ElementsAre("11", "13"));
    EXPECT_EQ(plugin->stat_counts()[0], 0u);
}

TEST_F(OperCounters, LookTheNumberOfNodesUpAtTheFirstNodeOnly) {
    respond_with_nodes(3);
    sums(frame_out(), {"10"});
    respond_with_nodes(2);
    sums(frame_out(), {"10"});
    EXPECT_EQ(plugin->subtree_count(), 3);
    EXPECT_EQ(plugin->stat_counts()[0], 2u);
}

TEST_F(OperCounters, LookItUpAnewForTheNextCounter) {
    respond_with_nodes(2);
    EXPECT_THAT(sums(counters()[0], {"1", "2"}), ElementsAre("1", "3"));
    EXPECT_EQ(plugin->subtree_count(), 0);
    EXPECT_THAT(sums(counters()[1], {"4"}), ElementsAre("4"));
    EXPECT_EQ(plugin->subtree_count(), 2);
    EXPECT_EQ(plugin->stat_counts()[1], 1u);
}

TEST_F(OperCounters, AreNotSummedWithoutASubtreeEntry) {
    EXPECT_THAT(sums(frame_out(), {"10", "32", "5"}), ElementsAre("10", "32", "5"));
    EXPECT_EQ(plugin->subtree_count(), 0);
    EXPECT_EQ(plugin->stat_counts()[0], 0u);
}

TEST_F(OperCounters, KeepTheNumberOfNodesThatTheyHaveWithoutASubtreeEntry) {
    plugin->subtree_count() = 2;
    EXPECT_THAT(sums(frame_out(), {"10", "32", "5"}), ElementsAre("10", "42", "5"));
}

TEST_F(OperCounters, StartAnewOnceTheCountHasPassedTheNumberOfNodes) {
    plugin->stats()[0] = 100;
    plugin->stat_counts()[0] = 7;
    plugin->subtree_count() = 2;
    EXPECT_THAT(sums(frame_out(), {"10", "1"}), ElementsAre("110", "1"));
}

TEST_F(OperCounters, FindTheSubtreeInTheLastOfTheFiftyEntries) {
    respond_with_nodes(4, YFW_REQUEST_SUBTREES - 1);
    sums(frame_out(), {"1"});
    EXPECT_EQ(plugin->subtree_count(), 4);
}

TEST_F(OperCounters, TakeTheFirstSubtreeOfThePath) {
    respond_with_nodes(9, 3, "/lldp");
    respond_with_nodes(8, 4, "/lldp/nodes/node");
    respond_with_nodes(4, 5);
    respond_with_nodes(6, 7);
    sums(frame_out(), {"1"});
    EXPECT_EQ(plugin->subtree_count(), 4);
}

// ---- the utility -------------------------------------------------------------------------------------

class OperStatisticsUtility : public OperCounters, public ::testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(EveryIndex, OperStatisticsUtility, Range(0, 8));

TEST_P(OperStatisticsUtility, SumsIntoTheSlotAndTheLeafThatItIsGiven) {
    respond_with_nodes(2);
    Tree native(leaf("any-counter", "21"), native_oper_ns);
    EXPECT_EQ(run_util(native, &output, "/any/leaf", GetParam()), YMAP_OK);
    ASSERT_THAT(fw.adds, ElementsAre(IsPlainAddTo(&output)));
    EXPECT_EQ(summary(fw.adds[0]), "/any/leaf = 21");
    EXPECT_EQ(plugin->stats()[GetParam()], 21u);
    EXPECT_EQ(plugin->stat_counts()[GetParam()], 1u);
}

TEST_F(OperCounters, UtilityRejectsAMissingNodeOrOutputWithoutAnErrorPath) {
    Tree native(leaf("any-counter", "21"), native_oper_ns);
    EXPECT_EQ(run_util(nullptr, &output, "/any/leaf", 0), YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(run_util(native, nullptr, "/any/leaf", 0), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("NULL arguments passed", "NULL arguments passed"));
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_EQ(plugin->stat_counts()[0], 0u);
}

// ---- last-clear ----------------------------------------------------------------------------------------

struct LastClear {
    std::string suffix;
    std::string path;
    terrno missing_argument;
};

void PrintTo(const LastClear &clear, std::ostream *stream) {
    *stream << clear.suffix;
}

class OperLastClear : public OperTest, public ::testing::WithParamInterface<LastClear> {
protected:
    OperLastClear() {
        if (const char *zone = std::getenv("TZ"))
            old_zone = zone;
        setenv("TZ", "TST-05:30", 1);
        tzset();
        // 2024-03-01T07:04:56.789Z
        fw.wall_clock = {1'709'276'696, 789'999'999};
        fw.stamp_ns = 3'600'999'999'999;
    }
    ~OperLastClear() override {
        if (old_zone)
            setenv("TZ", old_zone->c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }
    std::string added_for(const std::string &seconds) {
        fw.forget_calls();
        EXPECT_EQ(run_leaf(GetParam().suffix, seconds), YMAP_OK);
        return fw.adds.empty() ? "(no add)" : summary(fw.adds.back());
    }
    std::string with(const std::string &moment) const { return GetParam().path + " = " + moment; }

    std::optional<std::string> old_zone;
};

INSTANTIATE_TEST_SUITE_P(Both, OperLastClear,
                         Values(LastClear{"statistics_lastclear", "/lldp/state/counters/last-clear",
                                          YMAP_ERR_MAP_FAILED},
                                LastClear{"interfacestats_lastclear",
                                          oc_interface + "/state/counters/last-clear", YMAP_ERR_INVALID_ARGS}),
                         [](const auto &test) { return test.param.suffix; });

TEST_P(OperLastClear, IsTheMomentThatLaySoManySecondsAgo) {
    EXPECT_EQ(added_for("0000000"), with("2024-03-01T11:34:56.789+05:30"));
    EXPECT_EQ(added_for("56"), with("2024-03-01T12:34:00.789+05:30"));
    EXPECT_EQ(added_for("86400"), with("2024-02-29T12:34:56.789+05:30"));
    EXPECT_EQ(added_for("1 hour"), with("2024-03-01T12:34:55.789+05:30"));
    ASSERT_THAT(fw.adds, ElementsAre(IsPlainAddTo(&output)));
}

TEST_P(OperLastClear, OfZeroIsTheStartOfTheSystem) {
    // Also text that does not parse, and numbers that are 0 in 32 bits.
    for (const std::string seconds : {"0", "", "never", "4294967296"})
        EXPECT_EQ(added_for(seconds), with("2024-03-01T11:34:56.789+05:30")) << seconds;
}

TEST_P(OperLastClear, IsNotSummed) {
    EXPECT_EQ(added_for("56"), with("2024-03-01T12:34:00.789+05:30"));
    EXPECT_EQ(added_for("26"), with("2024-03-01T12:34:30.789+05:30"));
    for (int index = 0; index < OCLLDP_COUNTERS; ++index)
        EXPECT_EQ(plugin->stat_counts()[index], 0u);
}

TEST_P(OperLastClear, IsAddedWithoutAValueWhenThereIsNoTextForIt) {
    plugin->ring_index() = OCLLDP_STR_SLOTS;
    EXPECT_EQ(added_for("56"), GetParam().path);
}

TEST_P(OperLastClear, ReturnsTheStatusOfTheAdd) {
    fw.fail(add_path, 1, 0x1234);
    EXPECT_EQ(run_leaf(GetParam().suffix, "56"), 0x1234u);
}

TEST_P(OperLastClear, RejectsAMissingNodeOrOutput) {
    Tree native(leaf("last-clear", "1"), native_oper_ns);
    const std::string name = oper + "leaf_lvla_lldp_" + GetParam().suffix;
    EXPECT_EQ(plugin->call(name, context, nullptr, &output), GetParam().missing_argument);
    EXPECT_EQ(plugin->call(name, context, native, nullptr), GetParam().missing_argument);
    const bool with_error_path = GetParam().missing_argument == YMAP_ERR_INVALID_ARGS;
    EXPECT_THAT(fw.errors(), Each(with_error_path ? "Invalid arguments passed!" : "NULL arguments passed"));
    EXPECT_THAT(fw.errors(), SizeIs(2));
    EXPECT_THAT(fw.error_paths, SizeIs(with_error_path ? 2 : 0));
    EXPECT_THAT(fw.adds, IsEmpty());
}

} // namespace
} // namespace oclldp_test
