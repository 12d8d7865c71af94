// Requests for neighbors: the list, its key, and the keys of custom TLVs and capabilities.
#include "oq_requests.h"

#include <cstdlib>

namespace oclldp_test::request_mapping {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StrEq;

const std::string add_operation = "yfw_map_datatree_add_path_flagged";
const std::string list = oq + "list_lvla_lldp_neighbors_neighbor";
const std::string key = oq + "leaf_lvla_lldp_neighbor_id";
const std::string tlv_type = "ymap_qd_custom_tlv_typekey_man_cb";
const std::string capability_name = "ymap_qd_lldp_neighbor_capabilities_man_cb";
const std::string neighbor = "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor";
using Value = std::optional<std::string>;

// ---- the list --------------------------------------------------------------------------------------

using NeighborList = OqTest;

TEST_F(NeighborList, AsksForFiveNativePathsInEveryRequestThatIsNoDelete) {
    for (const uint32_t kind : {0u, 10u, 1u, 8u, 15u}) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_CREATE}) {
            for (const Value &value : {Value(), Value("a value")}) {
                Context context(kind);
                Tree in(leaf_with("neighbor", value).operation(operation));
                plugin->get_with_neighbor_key() = 1;
                fw.forget_calls();
                EXPECT_EQ(call(list, context, in), YMAP_OK);
                EXPECT_THAT(written(in),
                            ElementsAre(oper(neighbor).as_entry(), oper(neighbor + "/detail"),
                                        oper(neighbor + "/mib"), oper(neighbor + "/detail/network-addresses"),
                                        oper(neighbor + "/port-id-detail").with(value)));
                EXPECT_EQ(plugin->get_with_neighbor_key(), 0);
                expect_lines();
            }
        }
    }
}

TEST_F(NeighborList, DeletedAddsNothing) {
    for (const uint32_t kind : {0u, 10u, 1u}) {
        for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
            Context context(kind);
            Tree in(node("neighbor").operation(operation));
            plugin->get_with_neighbor_key() = 1;
            fw.forget_calls();
            EXPECT_EQ(call(list, context, in), YMAP_OK);
            EXPECT_THAT(fw.adds, IsEmpty());
            EXPECT_EQ(plugin->get_with_neighbor_key(), 0);
            expect_lines();
        }
    }
}

TEST_F(NeighborList, ReturnsTheStatusOfTheLastAddOnly) {
    for (unsigned nth = 1; nth <= 5; ++nth) {
        Context context(YMAP_REQ_GET);
        Tree in(node("neighbor"));
        fw.forget_calls();
        fw.fail(add_operation, nth, 119);
        EXPECT_EQ(call(list, context, in), nth == 5 ? 119u : YMAP_OK);
        EXPECT_EQ(fw.adds.size(), 5u);
        EXPECT_THAT(fw.error_paths, IsEmpty());
    }
}

TEST_F(NeighborList, WithoutANodeForgetsNothing) {
    Context context(YMAP_REQ_GET);
    plugin->get_with_neighbor_key() = 1;
    EXPECT_EQ(call(list, context, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->get_with_neighbor_key(), 1);
    EXPECT_EQ(fw.error_paths.size(), 1u);
}

// ---- the key ---------------------------------------------------------------------------------------

// An id, and the parts that it is split into.
struct Id {
    std::string name;
    std::string id;
    std::string device;
    std::string native;
    std::string port;
};

void PrintTo(const Id &id, std::ostream *stream) {
    *stream << id.name;
}

class NeighborKey : public OqTest {
protected:
    Context context{YMAP_REQ_GET};
};

class NeighborId : public NeighborKey, public ::testing::WithParamInterface<Id> {};

TEST_P(NeighborId, IsMappedBackToTheNativeDeviceId) {
    for (const uint32_t kind : read_kinds) {
        Context read(kind);
        Tree in(match("id", GetParam().id));
        fw.forget_calls();
        plugin->get_with_neighbor_key() = 0;
        EXPECT_EQ(call(key, read, in), YMAP_OK);
        EXPECT_THAT(
            written(in),
            ElementsAre(oper("/lldp/nodes/node/neighbors/details/detail/device-id").with(GetParam().native)));
        expect_lines({"TRC: dev_id " + GetParam().port + " dev_id_in " + GetParam().device + " qd_dev_id " +
                      GetParam().native});
    }
}

TEST_P(NeighborId, IsRememberedWhole) {
    Tree in(match("id", GetParam().id));
    EXPECT_EQ(call(key, context, in), YMAP_OK);
    EXPECT_THAT(plugin->neighbor_id(), StrEq(GetParam().id));
    EXPECT_EQ(plugin->get_with_neighbor_key(), 1);
}

TEST_P(NeighborId, IsTakenApartInAWorkingCopyThatIsFreedWithFree) {
    Tree in(match("id", GetParam().id));
    EXPECT_EQ(call(key, context, in), YMAP_OK);
    EXPECT_THAT(fw.calls_of("yfw_strdup"), ElementsAre(Call{"yfw_strdup", GetParam().id + ", YFW_OCLLDP_NS"}));
    EXPECT_THAT(fw.calls_of("qdos_named_free"), IsEmpty());
    EXPECT_EQ(fw.live_strings(), 0u);
    EXPECT_THAT(in->value, StrEq(GetParam().id));
}

TEST_P(NeighborId, IsComparedWithTheWholeOfDisabledAndCopiedWithinBounds) {
    Tree in(match("id", GetParam().id));
    EXPECT_EQ(call(key, context, in), YMAP_OK);
    EXPECT_THAT(
        fw.calls_of("yfw_strcmp_s"),
        ElementsAre(Field(&Call::args, AllOf(HasSubstr(key + ", "), HasSubstr(GetParam().device),
                                             HasSubstr("DISABLED"), HasSubstr(", 9223372036854775807, ")))));
    EXPECT_THAT(fw.calls_of("yfw_strncpy_s"), Contains(Field(&Call::args, HasSubstr(key + ", 256, "))));
}

TEST_P(NeighborId, ReturnsTheStatusOfItsAddAndFreesItsWorkingCopyAllTheSame) {
    Tree in(match("id", GetParam().id));
    fw.fail(add_operation, 1, 120);
    EXPECT_EQ(call(key, context, in), 120u);
    EXPECT_EQ(fw.live_strings(), 0u);
    EXPECT_EQ(plugin->get_with_neighbor_key(), 1);
    EXPECT_THAT(plugin->neighbor_id(), StrEq(GetParam().id));
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

const std::string long_device(300, 'd');

INSTANTIATE_TEST_SUITE_P(
    Ids, NeighborId,
    ::testing::Values(Id{"DeviceAndPort", "router1#eth1", "router1", "router1", "eth1"},
                      Id{"DeviceOnly", "router1", "router1", "router1", ""},
                      Id{"NothingAfterTheSign", "router1#", "router1", "router1", ""},
                      Id{"SplitAtTheFirstSign", "router1#eth1#2", "router1", "router1", "eth1#2"},
                      Id{"Disabled", "DISABLED#eth1", "DISABLED", "[DISABLED]", "eth1"},
                      Id{"DisabledWithStrangePort", "DISABLED#a b/c.1", "DISABLED", "[DISABLED]", "a b/c.1"},
                      Id{"DisabledOnly", "DISABLED", "DISABLED", "[DISABLED]", ""},
                      Id{"DisabledInSmallLetters", "disabled#eth1", "disabled", "disabled", "eth1"},
                      Id{"LongerThanDisabled", "DISABLED2#eth1", "DISABLED2", "DISABLED2", "eth1"},
                      Id{"ShorterThanDisabled", "DISABLE#eth1", "DISABLE", "DISABLE", "eth1"},
                      Id{"InBracketsAlready", "[DISABLED]#eth1", "[DISABLED]", "[DISABLED]", "eth1"},
                      Id{"Of255Characters", long_device.substr(0, 255) + "#p", long_device.substr(0, 255),
                         long_device.substr(0, 255), "p"},
                      Id{"Of256Characters", long_device.substr(0, 256) + "#p", long_device.substr(0, 256),
                         long_device.substr(0, 255), "p"},
                      Id{"Of300Characters", long_device, long_device, long_device.substr(0, 255), ""}),
    [](const auto &test) { return test.param.name; });

// The misspelt literal that gives the length is as long as the correct one.
TEST_F(NeighborKey, DisabledIsCopiedWithTheLengthOfItsLiteral) {
    Tree in(match("id", "DISABLED#eth1"));
    EXPECT_EQ(call(key, context, in), YMAP_OK);
    EXPECT_THAT(fw.calls_of("yfw_strncpy_s"), Contains(Call{"yfw_strncpy_s", key + ", 256, [DISABLED], 10"}));
}

TEST_F(NeighborKey, OfTheNextReadReplacesTheLastAndFreesIt) {
    Tree first(match("id", "router1#eth1"));
    Tree second(match("id", "a-router-with-a-longer-name#eth1"));
    EXPECT_EQ(call(key, context, first), YMAP_OK);
    // From here on, the double notices whether the plug-in frees it.
    fw.strings[plugin->neighbor_id()] = "the first id";
    EXPECT_EQ(call(key, context, second), YMAP_OK);
    EXPECT_EQ(fw.live_strings("the first id"), 0u);
    EXPECT_THAT(plugin->neighbor_id(), StrEq("a-router-with-a-longer-name#eth1"));
}

TEST_F(NeighborKey, WithoutAValueLeavesEverythingAsItIs) {
    Tree first(match("id", "router1#eth1"));
    EXPECT_EQ(call(key, context, first), YMAP_OK);
    for (const uint32_t kind : read_kinds) {
        Context read(kind);
        Tree in(node("id"));
        fw.forget_calls();
        EXPECT_EQ(call(key, read, in), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        EXPECT_THAT(plugin->neighbor_id(), StrEq("router1#eth1"));
        EXPECT_EQ(plugin->get_with_neighbor_key(), 1);
        expect_lines();
    }
}

TEST_F(NeighborKey, InAnEditLeavesEverythingAsItIs) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_DELETE}) {
            Context edit(kind);
            Tree in(leaf("id", "router1#eth1").operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(key, edit, in), YMAP_OK);
            EXPECT_THAT(fw.adds, IsEmpty());
            EXPECT_EQ(plugin->neighbor_id(), nullptr);
            EXPECT_EQ(plugin->get_with_neighbor_key(), 0);
            expect_lines();
        }
    }
}

TEST_F(NeighborKey, ThatCannotBeRememberedFailsAndForgetsTheLast) {
    Tree first(match("id", "router1#eth1"));
    EXPECT_EQ(call(key, context, first), YMAP_OK);
    fw.strings[plugin->neighbor_id()] = "the first id";
    Tree in(match("id", "router2#eth1"));
    fw.forget_calls();
    fw.fail_allocation(1);
    EXPECT_EQ(call(key, context, in), YMAP_ERR_NO_MEMORY);
    EXPECT_EQ(fw.live_strings(), 0u);
    EXPECT_EQ(plugin->neighbor_id(), nullptr);
    EXPECT_EQ(plugin->get_with_neighbor_key(), 0);
    EXPECT_THAT(fw.adds, IsEmpty());
    expect_lines({"ERR: gl_neigh_dev_id malloc failed"});
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(NeighborKey, ThatCannotBeTakenApartIsRememberedButNotMapped) {
    plugin->get_with_neighbor_key() = 1;
    Tree in(match("id", "router1#eth1"));
    fw.fail("yfw_strdup", 1, 1);
    EXPECT_EQ(call(key, context, in), YMAP_OK);
    EXPECT_THAT(plugin->neighbor_id(), StrEq("router1#eth1"));
    EXPECT_EQ(plugin->get_with_neighbor_key(), 0);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

// With no device part, the id itself is remembered whatever is requested; nothing is lost.
TEST_F(NeighborKey, WithoutADevicePartIsStillRemembered) {
    for (const std::string id : {"", "#", "##"}) {
        Tree in(match("id", id));
        EXPECT_EQ(call(key, context, in), YMAP_OK);
        EXPECT_THAT(plugin->neighbor_id(), StrEq(id));
        EXPECT_EQ(fw.live_strings(), 0u);
    }
}

// ---- custom TLVs by type ---------------------------------------------------------------------------

struct Type {
    std::string value;
    bool accepted;
};

void PrintTo(const Type &type, std::ostream *stream) {
    *stream << type.value;
}

class CustomTlvType : public OqTest, public ::testing::WithParamInterface<Type> {};

TEST_P(CustomTlvType, IsAcceptedInAReadIfItIs127) {
    for (const uint32_t kind : read_kinds) {
        Context read(kind);
        Tree in(match("type", GetParam().value));
        fw.forget_calls();
        EXPECT_EQ(call(tlv_type, read, in), GetParam().accepted ? YMAP_OK : YMAP_ERR_INVALID_ARGS);
        EXPECT_THAT(fw.adds, IsEmpty());
        expect_lines(GetParam().accepted ? std::vector<std::string>{}
                                         : std::vector<std::string>{"ERR: Invalid key type value"});
        EXPECT_THAT(fw.error_paths, IsEmpty());
    }
}

TEST_P(CustomTlvType, IsAcceptedInAnEditWhateverItIs) {
    for (const uint32_t kind : edit_kinds) {
        Context edit(kind);
        Tree in(leaf("type", GetParam().value));
        fw.forget_calls();
        EXPECT_EQ(call(tlv_type, edit, in), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        expect_lines();
    }
}

// Only the leading digits count, and only the low 32 bits of their number.
INSTANTIATE_TEST_SUITE_P(Values, CustomTlvType,
                         ::testing::Values(Type{"127", true}, Type{"0127", true}, Type{"127x", true},
                                           Type{"4294967423", true}, Type{"1", false}, Type{"0", false},
                                           Type{"126", false}, Type{"128", false}, Type{"-127", false},
                                           Type{"0x7f", false}, Type{"", false}, Type{"type", false},
                                           Type{"4294967424", false}));

using CustomTlvKey = OqTest;

TEST_F(CustomTlvKey, WithoutAValueIsAccepted) {
    for (const uint32_t kind : {0u, 10u, 1u}) {
        Context context(kind);
        Tree in(node("type"));
        fw.forget_calls();
        EXPECT_EQ(call(tlv_type, context, in), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        expect_lines();
    }
}

// ---- capabilities by name --------------------------------------------------------------------------

class CapabilityKey : public OqTest {
protected:
    static std::string scratch(const Context &request) {
        return {static_cast<const char *>(request.req.common_data_ptr), 255};
    }
    static std::string padded(std::string name) {
        name.resize(255, '\0');
        return name;
    }
    static std::vector<Written> all_three() {
        return {oper(neighbor + "/detail/system-capabilities"), oper(neighbor + "/detail/enabled-capabilities"),
                oper(neighbor + "/mib/combined-capabilities")};
    }

    Context context{YMAP_REQ_GET};
};

TEST_F(CapabilityKey, IsStoredForTheAnswerAndStillAllThreeLeavesAreRead) {
    for (const uint32_t kind : read_kinds) {
        for (const std::string &name : {std::string("ROUTER"), std::string(253, 'c'), std::string(254, 'c'),
                                        std::string(255, 'c'), std::string(400, 'c')}) {
            Context read(kind);
            Tree in(match("name", name));
            fw.forget_calls();
            EXPECT_EQ(call(capability_name, read, in), YMAP_OK);
            EXPECT_EQ(written(in), all_three());
            ASSERT_NE(read.req.common_data_ptr, nullptr);
            EXPECT_EQ(scratch(read), padded(name.substr(0, 254)));
            EXPECT_THAT(fw.calls_of("yfw_strncpy_s"),
                        ElementsAre(Call{"yfw_strncpy_s", capability_name + ", 255, " + name + ", 255"}));
            expect_lines();
        }
    }
}

TEST_F(CapabilityKey, ReplacesTheBufferOfAnEarlierOneAndFreesIt) {
    context.req.common_data_ptr = std::malloc(16);
    fw.strings[context.req.common_data_ptr] = "the earlier buffer";
    Tree first(match("name", "MAC_BRIDGE"));
    Tree second(match("name", "ROUTER"));
    EXPECT_EQ(call(capability_name, context, first), YMAP_OK);
    EXPECT_EQ(fw.live_strings("the earlier buffer"), 0u);
    EXPECT_EQ(scratch(context), padded("MAC_BRIDGE"));
    EXPECT_EQ(call(capability_name, context, second), YMAP_OK);
    EXPECT_EQ(scratch(context), padded("ROUTER"));
}

TEST_F(CapabilityKey, WithoutAValueReadsAllThreeLeavesAndLeavesTheBufferAlone) {
    void *const buffer = std::malloc(16);
    context.req.common_data_ptr = buffer;
    Tree in(node("name"));
    EXPECT_EQ(call(capability_name, context, in), YMAP_OK);
    EXPECT_EQ(written(in), all_three());
    EXPECT_EQ(context.req.common_data_ptr, buffer);
    expect_lines();
}

TEST_F(CapabilityKey, InAnEditIsIgnored) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_DELETE}) {
            Context edit(kind);
            Tree in(leaf("name", "ROUTER").operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(capability_name, edit, in), YMAP_OK);
            EXPECT_THAT(fw.adds, IsEmpty());
            EXPECT_EQ(edit.req.common_data_ptr, nullptr);
            expect_lines();
        }
    }
}

TEST_F(CapabilityKey, WithoutMemoryFailsBeforeTheFirstAdd) {
    context.req.common_data_ptr = std::malloc(16);
    fw.strings[context.req.common_data_ptr] = "the earlier buffer";
    Tree in(match("name", "ROUTER"));
    fw.fail_allocation(1);
    EXPECT_EQ(call(capability_name, context, in), YMAP_ERR_NO_MEMORY);
    EXPECT_EQ(fw.live_strings(), 0u);
    EXPECT_EQ(context.req.common_data_ptr, nullptr);
    EXPECT_THAT(fw.adds, IsEmpty());
    expect_lines({"ERR: ctx->req_ctx->common_data_ptr is NULL"});
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(CapabilityKey, ReturnsTheStatusOfTheLastAddOnly) {
    for (const bool valued : {false, true}) {
        for (unsigned nth = 1; nth <= 3; ++nth) {
            Tree in(selection("name", valued ? Value("ROUTER") : Value()));
            fw.forget_calls();
            fw.fail(add_operation, nth, 121);
            EXPECT_EQ(call(capability_name, context, in), nth == 3 ? 121u : YMAP_OK);
            EXPECT_EQ(fw.adds.size(), 3u);
            EXPECT_THAT(fw.error_paths, IsEmpty());
        }
    }
}

// ---- capability state ------------------------------------------------------------------------------

class CapabilityState : public OqTest, public ::testing::WithParamInterface<std::string> {};

TEST_P(CapabilityState, ReadAsksForSystemAndEnabledCapabilities) {
    for (const uint32_t kind : read_kinds) {
        for (const Value &value : {Value(), Value("true")}) {
            Context context(kind);
            Tree in(selection("a-leaf", value));
            fw.forget_calls();
            EXPECT_EQ(call(oq + GetParam(), context, in), YMAP_OK);
            EXPECT_THAT(written(in), ElementsAre(oper(neighbor + "/detail/system-capabilities").with(value),
                                                 oper(neighbor + "/detail/enabled-capabilities").with(value)));
            expect_lines();
        }
    }
}

TEST_P(CapabilityState, EditIsIgnored) {
    for (const uint32_t kind : edit_kinds) {
        Context context(kind);
        Tree in(leaf("a-leaf", "true"));
        fw.forget_calls();
        EXPECT_EQ(call(oq + GetParam(), context, in), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        expect_lines();
    }
}

TEST_P(CapabilityState, ReturnsTheStatusOfTheSecondAddOnly) {
    for (const unsigned nth : {1u, 2u}) {
        Context context(YMAP_REQ_GET);
        Tree in(node("a-leaf"));
        fw.forget_calls();
        fw.fail(add_operation, nth, 122);
        EXPECT_EQ(call(oq + GetParam(), context, in), nth == 2 ? 122u : YMAP_OK);
        EXPECT_EQ(fw.adds.size(), 2u);
    }
}

INSTANTIATE_TEST_SUITE_P(Leaves, CapabilityState,
                         ::testing::Values("leaf_lvlb_lldp_state_name", "leaf_lvlc_lldp_state_enabled"),
                         [](const auto &test) { return test.param; });

} // namespace
} // namespace oclldp_test::request_mapping
