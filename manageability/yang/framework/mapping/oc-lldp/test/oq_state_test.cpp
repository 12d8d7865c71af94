// The interfaces container and list, what counts as a request for operational data, and the state leaves.
#include "oq_requests.h"

#include <map>
#include <set>

namespace oclldp_test::request_mapping {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string add_operation = "yfw_map_datatree_add_path_flagged";
const std::string container = oq + "cont_lvla_lldp_interfaces";
const std::string list = oq + "list_lvla_lldp_interfaces_interface";
const std::string details = "/lldp/nodes/node/neighbors/details/detail";
using Value = std::optional<std::string>;

class Interfaces : public OqTest {
protected:
    void remember_something() {
        std::fill_n(plugin->interface_name(), OCLLDP_INTERFACE_NAME_SIZE, 'x');
        plugin->get_with_interface_key() = 1;
    }
    std::string remembered_bytes() const { return {plugin->interface_name(), OCLLDP_INTERFACE_NAME_SIZE}; }
    void expect_forgotten() const {
        EXPECT_THAT(remembered_bytes(), Each('\0'));
        EXPECT_EQ(plugin->get_with_interface_key(), 0);
    }
    terrno call_container(Context &context, tidl_yfw_datatree *in, uint32_t count) {
        return plugin->call_container(container, context, in, count, &output);
    }
    // Turns the context's request into one for operational data only.
    static void operational_only(Context &context) {
        context.descriptor.touches_560 = 0x01;
        context.descriptor.data_kind = YFW_CONTENT_OPERATIONAL;
    }

    const std::vector<uint32_t> all_kinds = {YMAP_REQ_GET_CONFIG, YMAP_REQ_GET, 1, 8, 15};
};

// ---- which bits count ------------------------------------------------------------------------------

// A bit of the request descriptor: byte and bit number.
using Bit = std::pair<std::size_t, unsigned>;

// The bits that say that a request touches LLDP operational data; words are little-endian.
std::set<Bit> counting_bits() {
    struct Word {
        std::size_t offset;
        uint32_t bits;
    };
    const std::vector<Word> words = {{0x808, 0x8000}, {0x588, 0x07},   {0x560, 0x03}, {0x559, 0x01ff},
                                     {0x559, 0x0600}, {0x559, 0x3800}, {0x4f4, 0x0f}, {0x540, 0x07},
                                     {0x520, 0x03},   {0x538, 0x03},   {0x584, 0x0f}};
    std::set<Bit> bits;
    for (const Word &word : words) {
        for (unsigned bit = 0; bit < 16; ++bit) {
            if ((word.bits >> bit & 1) != 0)
                bits.insert({word.offset + bit / 8, bit % 8});
        }
    }
    return bits;
}

// A callback that checks what the request touches, and how to observe the result.
struct Asker {
    std::string name;
    uint32_t kind;
    std::function<terrno(Plugin &, Context &, tidl_yfw_datatree *in, tidl_yfw_datatree *out)> call;
    std::function<bool(Plugin &, Double &)> took_it_for_operational;
};

void PrintTo(const Asker &asker, std::ostream *stream) {
    *stream << asker.name;
}

auto plain(const std::string &name) {
    return [name](Plugin &plugin, Context &context, tidl_yfw_datatree *in, tidl_yfw_datatree *out) {
        return plugin.call(name, context, in, out);
    };
}

bool added_nothing(Plugin &, Double &fw) {
    return fw.adds.empty();
}

const std::vector<Asker> askers = {
    {"InterfacesContainer", YMAP_REQ_GET,
     [](Plugin &plugin, Context &context, tidl_yfw_datatree *in, tidl_yfw_datatree *out) {
         return plugin.call_container(container, context, in, 1, out);
     },
     [](Plugin &, Double &fw) { return fw.add_paths().at(0) == details; }},
    {"InterfaceList", YMAP_REQ_GET, plain(list), added_nothing},
    {"InterfaceEnabled", YMAP_REQ_GET_CONFIG, plain("ymap_oc_interface_enabled_man_cb"), added_nothing},
    {"InterfaceName", YMAP_REQ_GET_CONFIG, plain(oq + "leaf_lvla_lldp_interface_name"),
     [](Plugin &plugin, Double &) { return plugin.get_with_interface_key() == 1; }},
};

class OperationalScope : public Interfaces, public ::testing::WithParamInterface<Asker> {
protected:
    // Whether the callback treats a request with this descriptor as one for operational data.
    bool operational(Context &context) {
        Tree in(match("name", "eth1"));
        fw.forget_calls();
        EXPECT_EQ(GetParam().call(*plugin, context, in, &output), YMAP_OK);
        return GetParam().took_it_for_operational(*plugin, fw);
    }
    // The same for a request of data kind 2 with one bit set.
    bool operational_by(const Bit &bit, uint32_t data_kind = YFW_CONTENT_OPERATIONAL) {
        Context context(GetParam().kind);
        context.ctx.trace_enabled = 0;
        reinterpret_cast<uint8_t *>(&context.descriptor)[bit.first] |= static_cast<uint8_t>(1u << bit.second);
        context.descriptor.data_kind = data_kind;
        return operational(context);
    }
    // All bits of the descriptor except those of the request kind and the data kind.
    static std::vector<Bit> all_bits() {
        std::vector<Bit> bits;
        for (std::size_t offset = sizeof(uint32_t); offset < sizeof(yfw_request_descriptor); ++offset) {
            if (offset >= 0x568 && offset < 0x56c)
                continue;
            for (unsigned bit = 0; bit < 8; ++bit)
                bits.emplace_back(offset, bit);
        }
        return bits;
    }
};

TEST_P(OperationalScope, IsToldByEachOfTheListedBitsAloneAndByNoOther) {
    fw.log_traces = false;
    std::set<Bit> found;
    for (const Bit &bit : all_bits()) {
        if (operational_by(bit))
            found.insert(bit);
    }
    EXPECT_EQ(found, counting_bits());
    EXPECT_EQ(found.size(), 1u + 3 + 2 + 14 + 4 + 3 + 2 + 2 + 4);
}

TEST_P(OperationalScope, CountsWithDataKind2Only) {
    for (const uint32_t data_kind : {0u, 1u, 3u, 0x102u, 0x20000u, 0x80000002u, 0xffffffffu}) {
        for (const Bit &bit : counting_bits())
            EXPECT_FALSE(operational_by(bit, data_kind)) << data_kind;
    }
}

TEST_P(OperationalScope, IsNotToldByAllTheOtherBitsTogether) {
    Context context(GetParam().kind);
    const std::set<Bit> counting = counting_bits();
    for (const Bit &bit : all_bits()) {
        if (!counting.contains(bit))
            reinterpret_cast<uint8_t *>(&context.descriptor)[bit.first] |=
                static_cast<uint8_t>(1u << bit.second);
    }
    context.descriptor.data_kind = YFW_CONTENT_OPERATIONAL;
    EXPECT_FALSE(operational(context));
}

TEST_P(OperationalScope, IsToldByAllOfTheListedBitsTogether) {
    Context context(GetParam().kind);
    for (const Bit &bit : counting_bits())
        reinterpret_cast<uint8_t *>(&context.descriptor)[bit.first] |= static_cast<uint8_t>(1u << bit.second);
    context.descriptor.data_kind = YFW_CONTENT_OPERATIONAL;
    EXPECT_TRUE(operational(context));
}

INSTANTIATE_TEST_SUITE_P(Callbacks, OperationalScope, ::testing::ValuesIn(askers),
                         [](const auto &test) { return test.param.name; });

// ---- the container ---------------------------------------------------------------------------------

using InterfacesContainer = Interfaces;

TEST_F(InterfacesContainer, WithChildrenAsksForTheInterfaceConfigurationInEveryKindOfRequest) {
    for (const uint32_t kind : all_kinds) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_DELETE}) {
            Context context(kind);
            Tree in(leaf("interfaces", "unused").operation(operation));
            remember_something();
            fw.forget_calls();
            EXPECT_EQ(call_container(context, in, 2), YMAP_OK);
            EXPECT_THAT(written(in), ElementsAre(ifmgr("/interface-configurations")));
            expect_lines({"TRC: Mapping done for this node"});
            expect_forgotten();
        }
    }
}

TEST_F(InterfacesContainer, WithChildrenAsksForNeighborsAndInterfacesOfAnOperationalRequest) {
    for (const uint32_t kind : all_kinds) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_DELETE}) {
            Context context(kind);
            operational_only(context);
            Tree in(leaf("interfaces", "unused").operation(operation));
            remember_something();
            fw.forget_calls();
            EXPECT_EQ(call_container(context, in, 1), YMAP_OK);
            EXPECT_THAT(written(in), ElementsAre(oper(details).from_input(operation).as_entry(),
                                                 oper("/lldp/nodes/node/interfaces")));
            expect_lines({"TRC: Mapping done for this node"});
            expect_forgotten();
        }
    }
}

TEST_F(InterfacesContainer, ReturnsTheStatusOfTheLastAddOnly) {
    for (const unsigned nth : {1u, 2u}) {
        Context context(YMAP_REQ_GET);
        operational_only(context);
        Tree in(node("interfaces"));
        fw.forget_calls();
        fw.fail(add_operation, nth, 114);
        EXPECT_EQ(call_container(context, in, 1), nth == 2 ? 114u : YMAP_OK);
        EXPECT_EQ(fw.adds.size(), 2u);
    }
    Context context(YMAP_REQ_GET);
    Tree in(node("interfaces"));
    fw.fail(add_operation, 1, 115);
    EXPECT_EQ(call_container(context, in, 1), 115u);
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(InterfacesContainer, WithoutChildrenIsLeftToTheWalkerUnlessAnEditDeletesIt) {
    const std::vector<std::pair<uint32_t, uint32_t>> kinds_and_operations = {
        {YMAP_REQ_GET_CONFIG, YFW_OP_NONE},
        {YMAP_REQ_GET, YFW_OP_NONE},
        {YMAP_REQ_GET_CONFIG, YFW_OP_DELETE},
        {YMAP_REQ_GET, YFW_OP_REMOVE},
        {1, YFW_OP_NONE},
        {8, YFW_OP_REPLACE},
        {15, YFW_OP_CREATE}};
    for (const auto &[kind, operation] : kinds_and_operations) {
        SCOPED_TRACE("kind " + std::to_string(kind) + ", operation " + std::to_string(operation));
        Context context(kind);
        Tree in(node("interfaces").operation(operation));
        remember_something();
        fw.sysdb_paths = {"Gi0/lldp/"};
        fw.forget_calls();
        EXPECT_EQ(call_container(context, in, 0), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        EXPECT_THAT(system_database_calls(), IsEmpty());
        expect_lines({"TRC: No subtrees"});
        expect_forgotten();
    }
}

TEST_F(InterfacesContainer, WithoutChildrenHandsADeleteToTheDeleteLogicAndReturnsItsStatus) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
            Context context(kind);
            Tree in(node("interfaces").operation(operation));
            remember_something();
            fw.forget_calls();
            EXPECT_EQ(call_container(context, in, 0), YMAP_STS_SUBTREE_DONE);
            EXPECT_THAT(fw.started(), ElementsAre(container, "oc_to_qd_lldp_interface_delete"));
            expect_forgotten();
        }
    }
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(node("interfaces").operation(YFW_OP_DELETE));
    fw.sysdb_paths = {"Gi0/lldp/"};
    fw.fail(add_operation, 1, 116);
    EXPECT_EQ(call_container(context, in, 0), 116u);
}

TEST_F(InterfacesContainer, WithoutANodeForgetsNothing) {
    Context context(YMAP_REQ_GET);
    remember_something();
    EXPECT_EQ(call_container(context, nullptr, 1), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(remembered_bytes(), Each('x'));
    expect_lines({"ERR: NULL arguments passed"});
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

// ---- the list --------------------------------------------------------------------------------------

using InterfaceList = Interfaces;

TEST_F(InterfaceList, AsksForTheNativeEntryInEveryKindOfRequest) {
    for (const uint32_t kind : all_kinds) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE}) {
            Context context(kind);
            Tree in(leaf("interface", "unused").operation(operation));
            remember_something();
            fw.forget_calls();
            EXPECT_EQ(call(list, context, in), YMAP_OK);
            EXPECT_THAT(written(in),
                        ElementsAre(ifmgr("/interface-configurations/interface-configuration").as_entry()));
            EXPECT_EQ(plugin->deleting_interface(), 0);
            expect_lines();
            expect_forgotten();
        }
    }
}

TEST_F(InterfaceList, AddsNothingToAnOperationalRequest) {
    for (const uint32_t kind : all_kinds) {
        Context context(kind);
        operational_only(context);
        Tree in(node("interface"));
        remember_something();
        fw.forget_calls();
        EXPECT_EQ(call(list, context, in), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        expect_lines();
        expect_forgotten();
    }
}

TEST_F(InterfaceList, DeletedAddsNothingAndTellsTheKeyOfTheDelete) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
            Context context(kind);
            Tree in(node("interface").operation(operation));
            plugin->deleting_interface() = 0;
            remember_something();
            fw.forget_calls();
            EXPECT_EQ(call(list, context, in), YMAP_OK);
            EXPECT_THAT(fw.adds, IsEmpty());
            EXPECT_EQ(plugin->deleting_interface(), 1);
            EXPECT_FALSE(changed_by_plugin(in));
            expect_lines();
            expect_forgotten();
        }
    }
}

TEST_F(InterfaceList, DeletedAndItsKeyTogetherRemoveTheNativeLldpSubtree) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(node("interface").operation(YFW_OP_DELETE).children({leaf("name", "eth1")}));
    EXPECT_EQ(call(list, context, in), YMAP_OK);
    EXPECT_EQ(call(oq + "leaf_lvla_lldp_interface_name", context, &in.at("name")), YMAP_OK);
    const std::string entry = "/interface-configurations/interface-configuration";
    EXPECT_THAT(written(&in.at("name")),
                ElementsAre(ifmgr(entry + "/active").with("act"),
                            ifmgr(entry + "/interface-name").with("eth1").from_input(YFW_OP_NONE),
                            cfg(entry + "/lldp").from_input(YFW_OP_REMOVE).last_flag()));
    EXPECT_EQ(plugin->deleting_interface(), 0);
}

TEST_F(InterfaceList, ReturnsTheStatusOfItsAdd) {
    Context context(YMAP_REQ_GET);
    Tree in(node("interface"));
    fw.fail(add_operation, 1, 117);
    EXPECT_EQ(call(list, context, in), 117u);
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(InterfaceList, WithoutANodeForgetsNothing) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    remember_something();
    EXPECT_EQ(call(list, context, nullptr), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(remembered_bytes(), Each('x'));
    EXPECT_EQ(plugin->deleting_interface(), 0);
    expect_lines({"ERR: NULL arguments passed"});
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

// ---- state leaves ----------------------------------------------------------------------------------

struct StateLeaf {
    std::string callback;
    std::string name;
    std::string line;
};

void PrintTo(const StateLeaf &state, std::ostream *stream) {
    *stream << state.callback;
}

class InterfaceState : public Interfaces, public ::testing::WithParamInterface<StateLeaf> {};

TEST_P(InterfaceState, ReadAsksForTheNativeInterface) {
    for (const uint32_t kind : read_kinds) {
        for (const Value &value : {Value(), Value("true")}) {
            Context context(kind);
            Tree in(selection(GetParam().name, value));
            fw.forget_calls();
            std::vector<std::string> lines_before_the_add;
            fw.on_add([&](const Add &) { lines_before_the_add = fw.debug_lines(); });
            EXPECT_EQ(call(oq + GetParam().callback, context, in), YMAP_OK);
            EXPECT_THAT(
                written(in),
                ElementsAre(oper("/lldp/nodes/node/interfaces/interface").from_input(YFW_OP_NONE).as_entry()));
            EXPECT_THAT(lines_before_the_add, ElementsAre("TRC: Start"));
            expect_lines({GetParam().line});
        }
    }
}

TEST_P(InterfaceState, EditIsIgnored) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_DELETE}) {
            Context context(kind);
            Tree in(leaf(GetParam().name, "true").operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(oq + GetParam().callback, context, in), YMAP_OK);
            EXPECT_THAT(fw.adds, IsEmpty());
            expect_lines();
        }
    }
}

TEST_P(InterfaceState, ReturnsTheStatusOfItsAdd) {
    Context context(YMAP_REQ_GET);
    Tree in(node(GetParam().name));
    fw.fail(add_operation, 1, 118);
    EXPECT_EQ(call(oq + GetParam().callback, context, in), 118u);
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Leaves, InterfaceState,
                         ::testing::Values(StateLeaf{"leaf_lvla_lldp_state_name", "name",
                                                     "TRC: OC_LLDP: get int lldp state/name status"},
                                           StateLeaf{"leaf_lvlb_lldp_state_enabled", "enabled",
                                                     "TRC: OC_LLDP: get int lldp state/enabled status"}),
                         [](const auto &test) { return test.param.callback; });

} // namespace
} // namespace oclldp_test::request_mapping
