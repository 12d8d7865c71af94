// The leaf-list suppress-tlv-advertisement: one native disable leaf per TLV.
#include "oq_requests.h"

namespace oclldp_test::request_mapping {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

const std::string add_operation = "yfw_map_datatree_add_path_flagged";
const std::string suppress = "ymap_oc_lldp_suppresstlvadv_manual_cb";
const std::string leaf_list = "suppress-tlv-advertisement";

struct Tlv {
    std::string value;
    std::string path;
};

const std::vector<Tlv> tlvs = {{"SYSTEM_NAME", "/lldp/tlv-select/system-name/disable"},
                               {"PORT_DESCRIPTION", "/lldp/tlv-select/port-description/disable"},
                               {"SYSTEM_DESCRIPTION", "/lldp/tlv-select/system-description/disable"},
                               {"SYSTEM_CAPABILITIES", "/lldp/tlv-select/system-capabilities/disable"},
                               {"MANAGEMENT_ADDRESS", "/lldp/tlv-select/management-address/disable"}};

void PrintTo(const Tlv &tlv, std::ostream *stream) {
    *stream << tlv.value;
}

Written enter() {
    return cfg("/lldp/tlv-select/tlv-select-enter").with("true");
}

class SuppressTlv : public OqTest {
protected:
    Context context{YMAP_REQ_EDIT_ONE_KEY};
};

// ---- reads -----------------------------------------------------------------------------------------

TEST_F(SuppressTlv, ReadAsksForAllFiveDisableLeaves) {
    for (const uint32_t kind : read_kinds) {
        for (const std::optional<std::string> &value :
             {std::optional<std::string>(), {"SYSTEM_NAME"}, {"no such TLV"}}) {
            SCOPED_TRACE(text_of(value));
            Context read(kind);
            Tree in(selection(leaf_list, value));
            fw.forget_calls();
            EXPECT_EQ(call(suppress, read, in), YMAP_OK);
            std::vector<Written> expected;
            for (const Tlv &tlv : tlvs)
                expected.push_back(cfg(tlv.path).with(value));
            EXPECT_EQ(written(in), expected);
            expect_lines();
        }
    }
}

TEST_F(SuppressTlv, ReadReturnsTheStatusOfTheLastAddOnly) {
    for (unsigned nth = 1; nth <= tlvs.size(); ++nth) {
        Context read(YMAP_REQ_GET);
        Tree in(node(leaf_list));
        fw.forget_calls();
        fw.fail(add_operation, nth, 98);
        EXPECT_EQ(call(suppress, read, in), nth == tlvs.size() ? 98u : YMAP_OK) << nth;
        EXPECT_EQ(fw.adds.size(), tlvs.size());
    }
}

// ---- one TLV ---------------------------------------------------------------------------------------

class OneTlv : public SuppressTlv, public ::testing::WithParamInterface<Tlv> {};

TEST_P(OneTlv, DeletedDeletesItsDisableLeaf) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
            Context edit(kind);
            Tree in(leaf(leaf_list, GetParam().value).operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(suppress, edit, in), YMAP_OK);
            EXPECT_THAT(written(in), ElementsAre(enter(), cfg(GetParam().path).from_input(operation)));
            EXPECT_THAT(fw.calls_of("yfw_map_get_node_info"), IsEmpty());
            expect_lines();
        }
    }
}

TEST_P(OneTlv, DeletedReturnsTheStatusOfTheSecondAddOnly) {
    for (const unsigned nth : {1u, 2u}) {
        Tree in(leaf(leaf_list, GetParam().value).operation(YFW_OP_DELETE));
        fw.forget_calls();
        fw.fail(add_operation, nth, 99);
        EXPECT_EQ(call(suppress, context, in), nth == 2 ? 99u : YMAP_OK);
        EXPECT_EQ(fw.adds.size(), 2u);
    }
}

// Unlike the other settings, it switches LLDP on after writing its own leaf.
TEST_P(OneTlv, WrittenSwitchesLldpOnLastExactlyWhenTheSystemDatabaseDoesNotSayThatItIsOn) {
    for (const SystemDatabase &database : system_databases) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_CREATE}) {
            SCOPED_TRACE(database.name);
            plugin.reset();
            fw.reset();
            plugin = std::make_unique<Plugin>();
            database.prepare(fw);
            Tree in(leaf(leaf_list, GetParam().value).operation(operation));
            EXPECT_EQ(call(suppress, context, in), YMAP_OK);
            std::vector<Written> expected = {enter().from_input(operation),
                                             cfg(GetParam().path).with("true").from_input(operation)};
            if (!database.on)
                expected.push_back(cfg("/lldp/enable").with("true").from_input(operation));
            EXPECT_EQ(written(in), expected);
            EXPECT_EQ(plugin->sysdb_conn() != 0, database.on);
            expect_lines();
        }
    }
}

TEST_P(OneTlv, WrittenDoesNotSwitchLldpOnInARequestThatDoesSoItself) {
    Tree in(leaf(leaf_list, GetParam().value));
    fw.node_info[{"/lldp/config", "enabled"}] = {.value = "true"};
    EXPECT_EQ(call(suppress, context, in), YMAP_OK);
    EXPECT_THAT(written(in), ElementsAre(enter().from_input(YFW_OP_NONE),
                                         cfg(GetParam().path).with("true").from_input(YFW_OP_NONE)));
    EXPECT_THAT(system_database_calls(), IsEmpty());
}

// The status of the last add counts: the leaf's own when LLDP is on, else that of switching LLDP on.
TEST_P(OneTlv, WrittenReturnsTheStatusOfTheLastAddMade) {
    for (const bool on : {true, false}) {
        const unsigned adds = on ? 2 : 3;
        for (unsigned nth = 1; nth <= adds; ++nth) {
            SCOPED_TRACE(std::string(on ? "on, add " : "off, add ") + std::to_string(nth));
            Tree in(leaf(leaf_list, GetParam().value));
            fw.forget_calls();
            fw.sysdb_items["enable"] = {.value = on ? 1u : 0u};
            fw.fail(add_operation, nth, 100);
            EXPECT_EQ(call(suppress, context, in), nth == adds ? 100u : YMAP_OK);
            EXPECT_EQ(fw.adds.size(), adds);
            EXPECT_THAT(fw.error_paths, IsEmpty());
        }
    }
}

TEST_P(OneTlv, IsCopiedWithinTheBoundsOfItsBuffer) {
    Tree in(leaf(leaf_list, GetParam().value).operation(YFW_OP_DELETE));
    EXPECT_EQ(call(suppress, context, in), YMAP_OK);
    EXPECT_THAT(fw.calls_of("yfw_strncpy_s"),
                ElementsAre(Call{"yfw_strncpy_s", suppress + ", 256, " + GetParam().value + ", 255"}));
}

INSTANTIATE_TEST_SUITE_P(Values, OneTlv, ::testing::ValuesIn(tlvs),
                         [](const auto &test) { return test.param.value; });

// ---- the whole leaf-list ---------------------------------------------------------------------------

TEST_F(SuppressTlv, DeletedAsAWholeDeletesTheNativeContainerWithBothFlags) {
    for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
        for (const std::optional<std::string> &value : {std::optional<std::string>(), {""}}) {
            Tree in(leaf_with(leaf_list, value).operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(suppress, context, in), YMAP_OK);
            EXPECT_THAT(
                written(in),
                ElementsAre(enter(), cfg("/lldp/tlv-select").from_input(operation).as_entry().last_flag()));
            expect_lines();
        }
    }
}

TEST_F(SuppressTlv, DeletedAsAWholeReturnsTheStatusOfTheSecondAddOnly) {
    for (const unsigned nth : {1u, 2u}) {
        Tree in(node(leaf_list).operation(YFW_OP_DELETE));
        fw.forget_calls();
        fw.fail(add_operation, nth, 101);
        EXPECT_EQ(call(suppress, context, in), nth == 2 ? 101u : YMAP_OK);
        EXPECT_EQ(fw.adds.size(), 2u);
    }
}

// Kept on purpose: an empty entry maps to the leaf of the system name and switches nothing on.
TEST_F(SuppressTlv, WrittenWithoutAValueLandsOnTheSystemName) {
    for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE}) {
        for (const std::optional<std::string> &value : {std::optional<std::string>(), {""}}) {
            Tree in(leaf_with(leaf_list, value).operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(suppress, context, in), YMAP_OK);
            EXPECT_THAT(written(in), ElementsAre(enter().from_input(operation),
                                                 cfg(tlvs[0].path).with(value).from_input(operation)));
            EXPECT_THAT(fw.calls_of("yfw_map_get_node_info"), IsEmpty());
            expect_lines();
        }
    }
}

TEST_F(SuppressTlv, WrittenWithoutAValueReturnsTheStatusOfTheSecondAddOnly) {
    for (const unsigned nth : {1u, 2u}) {
        Tree in(node(leaf_list));
        fw.forget_calls();
        fw.fail(add_operation, nth, 102);
        EXPECT_EQ(call(suppress, context, in), nth == 2 ? 102u : YMAP_OK);
        EXPECT_EQ(fw.adds.size(), 2u);
    }
}

TEST_F(SuppressTlv, WithoutAValueHasNothingToCopy) {
    Tree in(node(leaf_list));
    EXPECT_EQ(call(suppress, context, in), YMAP_OK);
    EXPECT_THAT(fw.calls_of("yfw_strncpy_s"), IsEmpty());
}

// ---- values that are refused -----------------------------------------------------------------------

class RefusedTlv : public SuppressTlv, public ::testing::WithParamInterface<std::string> {};

TEST_P(RefusedTlv, LeavesTheMessageForTheReplyAfterTheFirstAdd) {
    for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_DELETE, YFW_OP_REMOVE}) {
        SCOPED_TRACE(operation);
        const bool deleted = operation == YFW_OP_DELETE || operation == YFW_OP_REMOVE;
        Context edit(YMAP_REQ_EDIT_ONE_KEY);
        Tree in(leaf(leaf_list, GetParam()).operation(operation));
        fw.forget_calls();
        EXPECT_EQ(call(suppress, edit, in), YMAP_ERR_INVALID_VALUE);
        EXPECT_THAT(written(in), ElementsAre(deleted ? enter() : enter().from_input(operation)));
        expect_lines({"ERR: Invalid or Not-supported value"});
        EXPECT_EQ(edit.err_node_name(), "Invalid argument passed for tlv");
        EXPECT_THAT(fw.calls_of("yfw_strdup"),
                    ElementsAre(Call{"yfw_strdup", "Invalid argument passed for tlv, YFW_MAP"}));
        // The reply carries only the message: no error path is recorded here.
        EXPECT_THAT(fw.error_paths, IsEmpty());
        EXPECT_THAT(fw.calls_of("yfw_map_get_node_info"), IsEmpty());
    }
}

TEST_P(RefusedTlv, IsRefusedThoughTheFirstAddFails) {
    Tree in(leaf(leaf_list, GetParam()));
    fw.fail(add_operation, 1, 103);
    EXPECT_EQ(call(suppress, context, in), YMAP_ERR_INVALID_VALUE);
}

INSTANTIATE_TEST_SUITE_P(Values, RefusedTlv,
                         ::testing::Values("TTL", "CHASSIS_ID", "system_name", "System_Name", "SYSTEM_NAM",
                                           "SYSTEM_NAME ", " SYSTEM_NAME", "SYSTEM-NAME", "SYSTEM_NAME2", "x",
                                           std::string(300, 'S')));

// The previous text is not freed: an accepted leak.
TEST_F(SuppressTlv, RefusedLeaksAnEarlierNameOfTheReply) {
    context.req.err_node_name = yfw_strdup("earlier", "YFW MAP");
    Tree in(leaf(leaf_list, "TTL"));
    EXPECT_EQ(call(suppress, context, in), YMAP_ERR_INVALID_VALUE);
    EXPECT_THAT(fw.calls_of("qdos_named_free"), IsEmpty());
    EXPECT_EQ(fw.live_strings("YFW MAP"), 1u);
    EXPECT_EQ(fw.live_strings("YFW_MAP"), 1u);
}

TEST_F(SuppressTlv, AcceptedLeavesTheReplyAlone) {
    Tree in(leaf(leaf_list, "SYSTEM_NAME"));
    EXPECT_EQ(call(suppress, context, in), YMAP_OK);
    EXPECT_EQ(context.err_node_name(), std::nullopt);
    EXPECT_EQ(fw.live_strings(), 0u);
}

TEST_F(SuppressTlv, ErrorLinesGoToTheErrorLog) {
    Tree in(leaf(leaf_list, "TTL"));
    EXPECT_EQ(call(suppress, context, in), YMAP_ERR_INVALID_VALUE);
    std::vector<LogLine> errors;
    std::copy_if(fw.lines.begin(), fw.lines.end(), std::back_inserter(errors), [](const LogLine &line) {
        return line.channel == LogLine::Channel::debug_log && line.level == YFW_LOG_ERROR;
    });
    EXPECT_EQ(errors.size(), 1u);
    EXPECT_THAT(errors, Each(Field(&LogLine::format, "ERR: YFW: ctx=%p,Invalid or Not-supported value")));
    EXPECT_THAT(errors, Each(Field(&LogLine::handle, &context.err_log)));
}

} // namespace
} // namespace oclldp_test::request_mapping
