// The interface leaf config/enabled: how it is written, deleted and read.
#include "oq_requests.h"

namespace oclldp_test::request_mapping {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string add_operation = "yfw_map_datatree_add_path_flagged";
const std::string interface_enabled = "ymap_oc_interface_enabled_man_cb";
const std::string entry = "/interface-configurations/interface-configuration";
const std::string lldp = entry + "/lldp";
const std::vector<uint32_t> merges = {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_CREATE};
using Value = std::optional<std::string>;

Written active() {
    return ifmgr(entry + "/active").with("act");
}

Written enter(const std::string &value) {
    return cfg(lldp + "/lldp-intf-enter").with(value).last_flag();
}

class InterfaceEnabled : public OqTest {
protected:
    // Turns global LLDP on or off in the system database.
    void global_lldp(bool on) { fw.sysdb_items["enable"] = {.value = on ? 1u : 0u}; }

    Context context{YMAP_REQ_EDIT_ONE_KEY};
};

// ---- what is written, by value and by global LLDP --------------------------------------------------

struct Edit {
    std::string name;
    bool global_on;
    Value value;
    std::vector<Written> (*adds)(uint32_t operation);
    bool removes; // the input node becomes a removal
    std::vector<std::string> more_lines;
};

void PrintTo(const Edit &edit, std::ostream *stream) {
    *stream << edit.name;
}

std::vector<Written> only_entered(uint32_t) {
    return {active(), enter("true")};
}

std::vector<Written> enabled_without_disables(uint32_t operation) {
    return {active(), enter("true"), cfg(lldp + "/enable").with("true").from_input(operation).last_flag(),
            cfg(lldp + "/transmit").from_input(YFW_OP_REMOVE).last_flag(),
            cfg(lldp + "/receive").from_input(YFW_OP_REMOVE).last_flag()};
}

std::vector<Written> disabled_both_ways(uint32_t operation) {
    return {active(), enter("true"), cfg(lldp + "/enable").with("false").from_input(operation).last_flag(),
            cfg(lldp + "/transmit/disable").with("true").from_input(operation).last_flag(),
            cfg(lldp + "/receive/disable").with("true").from_input(operation).last_flag()};
}

std::vector<Written> only_enabled(uint32_t operation) {
    return {active(), enter("true"), cfg(lldp + "/enable").with("true").from_input(operation).last_flag()};
}

std::vector<Written> left_and_removed(uint32_t) {
    return {active(), enter("true"), enter("false"),
            cfg(lldp + "/enable").from_input(YFW_OP_REMOVE).last_flag()};
}

const std::vector<Edit> edits = {
    {"TrueWhileOn", true, "true", enabled_without_disables, true, {}},
    {"FalseWhileOn", true, "false", disabled_both_ways, false, {}},
    {"NoValueWhileOn",
     true,
     std::nullopt,
     only_entered,
     false,
     {"TRC: NULL value as input , ignore gracefully"}},
    {"YesWhileOn", true, "yes", only_entered, false, {}},
    {"CapitalTrueWhileOn", true, "TRUE", only_entered, false, {}},
    {"LongerThanTrueWhileOn", true, "truest", only_entered, false, {}},
    {"LongerThanFalseWhileOn", true, "false ", only_entered, false, {}},
    {"TrueWhileOff", false, "true", only_enabled, false, {}},
    {"NoValueWhileOff", false, std::nullopt, only_enabled, false, {}},
    {"FalseWhileOff", false, "false", left_and_removed, true, {}},
    {"YesWhileOff", false, "yes", left_and_removed, true, {}},
    {"LongerThanTrueWhileOff", false, "truest", left_and_removed, true, {}},
};

class InterfaceEdit : public InterfaceEnabled, public ::testing::WithParamInterface<Edit> {
protected:
    void expect_edit_lines() const {
        std::vector<std::string> lines = {"TRC: OC_LLDP: set int lldp enabled node"};
        lines.insert(lines.end(), GetParam().more_lines.begin(), GetParam().more_lines.end());
        expect_lines(lines);
    }
};

TEST_P(InterfaceEdit, WritesItsNativeLeavesInOrder) {
    global_lldp(GetParam().global_on);
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : merges) {
            Context edit(kind);
            Tree in(leaf_with("enabled", GetParam().value).operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(interface_enabled, edit, in), YMAP_OK);
            EXPECT_EQ(written(in), GetParam().adds(operation));
            EXPECT_EQ(changed_by_plugin(in), GetParam().removes);
            EXPECT_EQ(in->operation, GetParam().removes ? static_cast<uint32_t>(YFW_OP_REMOVE) : operation);
            expect_edit_lines();
            EXPECT_THAT(fw.error_paths, IsEmpty());
        }
    }
}

TEST_P(InterfaceEdit, ComparesTheWholeValue) {
    global_lldp(GetParam().global_on);
    Tree in(leaf_with("enabled", GetParam().value));
    EXPECT_EQ(call(interface_enabled, context, in), YMAP_OK);
    EXPECT_TRUE(!GetParam().value || !fw.calls_of("yfw_strcmp_s").empty());
    EXPECT_THAT(fw.calls_of("yfw_strcmp_s"), Each(Field(&Call::args, HasSubstr(", 9223372036854775807, "))));
}

INSTANTIATE_TEST_SUITE_P(Values, InterfaceEdit, ::testing::ValuesIn(edits),
                         [](const auto &test) { return test.param.name; });

// ---- whether global LLDP is on ---------------------------------------------------------------------

class GlobalLldp : public InterfaceEnabled, public ::testing::WithParamInterface<SystemDatabase> {};

TEST_P(GlobalLldp, DecidesWhetherTheDisablesAreRemoved) {
    GetParam().prepare(fw);
    Tree in(leaf("enabled", "true"));
    EXPECT_EQ(call(interface_enabled, context, in), YMAP_OK);
    EXPECT_EQ(written(in), GetParam().on ? enabled_without_disables(0) : only_enabled(0));
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
    EXPECT_THAT(fw.bound_connections(), IsEmpty());
    expect_lines({"TRC: OC_LLDP: set int lldp enabled node"});
}

INSTANTIATE_TEST_SUITE_P(Answers, GlobalLldp, ::testing::ValuesIn(system_databases),
                         [](const auto &test) { return test.param.name; });

TEST_F(InterfaceEnabled, AsksTheSystemDatabaseOnAConnectionOfThatMoment) {
    global_lldp(true);
    ASSERT_EQ(plugin->symbol<decltype(ymap_bind_lldp_gl_sysdb)>("ymap_bind_lldp_gl_sysdb")(), YMAP_OK);
    fw.forget_calls();
    Tree in(leaf("enabled", "true"));
    EXPECT_EQ(call(interface_enabled, context, in), YMAP_OK);
    EXPECT_THAT(system_database_calls(),
                ElementsAre("_sysdb_unbind(23809)", "_sysdb_bind(/cfg/gl/lldp/, 0)",
                            "sysdb_item_get(23810, enable, 1)", "_sysdb_unbind(23810)"));
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
}

TEST_F(InterfaceEnabled, IsNotTakenForOnBecauseTheRequestSwitchesGlobalLldpOn) {
    global_lldp(false);
    fw.node_info[{"/lldp/config", "enabled"}] = {.value = "true"};
    Tree in(leaf("enabled", "true"));
    EXPECT_EQ(call(interface_enabled, context, in), YMAP_OK);
    EXPECT_EQ(written(in), only_enabled(0));
}

TEST_F(InterfaceEnabled, IsAlwaysOnOnRouterType7WithoutTheSystemDatabase) {
    fw.router_type = 7;
    plugin->sysdb_conn() = 0x77;
    Tree in(leaf("enabled", "true"));
    EXPECT_EQ(call(interface_enabled, context, in), YMAP_OK);
    EXPECT_EQ(written(in), enabled_without_disables(0));
    EXPECT_THAT(system_database_calls(), IsEmpty());
    EXPECT_EQ(plugin->sysdb_conn(), 0x77u);
}

TEST_F(InterfaceEnabled, DependsOnTheSystemDatabaseOnEveryOtherRouterType) {
    for (const int type : {0, 1, 6, 8, -7, 70}) {
        fw.router_type = type;
        global_lldp(false);
        Tree in(leaf("enabled", "true"));
        fw.forget_calls();
        EXPECT_EQ(call(interface_enabled, context, in), YMAP_OK);
        EXPECT_EQ(written(in), only_enabled(0)) << type;
    }
}

// ---- adds that fail --------------------------------------------------------------------------------

struct FailingAdd {
    std::string name;
    bool global_on;
    Value value;
    unsigned nth;
    bool counts; // the callback returns this add's status
    std::size_t adds;
};

void PrintTo(const FailingAdd &failing, std::ostream *stream) {
    *stream << failing.name << failing.nth;
}

class InterfaceAdd : public InterfaceEnabled, public ::testing::WithParamInterface<FailingAdd> {};

TEST_P(InterfaceAdd, ThatFailsIsIgnoredOrReturned) {
    const FailingAdd &failing = GetParam();
    global_lldp(failing.global_on);
    Tree in(leaf_with("enabled", failing.value));
    fw.fail(add_operation, failing.nth, 104);
    EXPECT_EQ(call(interface_enabled, context, in), failing.counts ? 104u : YMAP_OK);
    EXPECT_EQ(fw.adds.size(), failing.adds);
    EXPECT_EQ(fw.debug_lines().back(), "TRC: End");
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Edits, InterfaceAdd,
                         ::testing::Values(FailingAdd{"TrueWhileOn", true, "true", 1, false, 5},
                                           FailingAdd{"TrueWhileOn", true, "true", 2, false, 5},
                                           FailingAdd{"TrueWhileOn", true, "true", 3, true, 3},
                                           FailingAdd{"TrueWhileOn", true, "true", 4, true, 4},
                                           FailingAdd{"TrueWhileOn", true, "true", 5, true, 5},
                                           FailingAdd{"FalseWhileOn", true, "false", 1, false, 5},
                                           FailingAdd{"FalseWhileOn", true, "false", 2, false, 5},
                                           FailingAdd{"FalseWhileOn", true, "false", 3, true, 3},
                                           FailingAdd{"FalseWhileOn", true, "false", 4, true, 4},
                                           FailingAdd{"FalseWhileOn", true, "false", 5, true, 5},
                                           FailingAdd{"NoValueWhileOn", true, std::nullopt, 1, false, 2},
                                           FailingAdd{"NoValueWhileOn", true, std::nullopt, 2, false, 2},
                                           FailingAdd{"YesWhileOn", true, "yes", 1, false, 2},
                                           FailingAdd{"YesWhileOn", true, "yes", 2, true, 2},
                                           FailingAdd{"TrueWhileOff", false, "true", 1, false, 3},
                                           FailingAdd{"TrueWhileOff", false, "true", 2, false, 3},
                                           FailingAdd{"TrueWhileOff", false, "true", 3, true, 3},
                                           FailingAdd{"NoValueWhileOff", false, std::nullopt, 2, false, 3},
                                           FailingAdd{"NoValueWhileOff", false, std::nullopt, 3, true, 3},
                                           FailingAdd{"FalseWhileOff", false, "false", 1, false, 4},
                                           FailingAdd{"FalseWhileOff", false, "false", 2, false, 4},
                                           FailingAdd{"FalseWhileOff", false, "false", 3, false, 4},
                                           FailingAdd{"FalseWhileOff", false, "false", 4, true, 4},
                                           FailingAdd{"YesWhileOff", false, "yes", 3, false, 4},
                                           FailingAdd{"YesWhileOff", false, "yes", 4, true, 4}),
                         [](const auto &test) {
                             return test.param.name + "Add" + std::to_string(test.param.nth);
                         });

// ---- delete ----------------------------------------------------------------------------------------

TEST_F(InterfaceEnabled, DeletedRemovesTheInterfacesWholeNativeSubtree) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
            for (const Value &value : {Value(), Value("true")}) {
                Context edit(kind);
                Tree in(leaf_with("enabled", value).operation(operation));
                fw.forget_calls();
                EXPECT_EQ(call(interface_enabled, edit, in), YMAP_OK);
                EXPECT_THAT(written(in), ElementsAre(cfg(lldp).from_input(YFW_OP_REMOVE).last_flag()));
                EXPECT_TRUE(changed_by_plugin(in));
                EXPECT_EQ(in->operation, YFW_OP_REMOVE);
                EXPECT_THAT(system_database_calls(), IsEmpty());
                expect_lines();
            }
        }
    }
}

TEST_F(InterfaceEnabled, DeletedReturnsTheStatusOfItsAdd) {
    Tree in(node("enabled").operation(YFW_OP_DELETE));
    fw.fail(add_operation, 1, 105);
    EXPECT_EQ(call(interface_enabled, context, in), 105u);
}

// ---- read ------------------------------------------------------------------------------------------

struct Scope {
    std::string name;
    uint32_t data_kind;
    bool touches_operational;
    bool operational_only;
};

void PrintTo(const Scope &scope, std::ostream *stream) {
    *stream << scope.name;
}

class InterfaceRead : public InterfaceEnabled, public ::testing::WithParamInterface<Scope> {
protected:
    static std::vector<Written> configuration(const Value &value) {
        return {active(),
                ifmgr(entry + "/shutdown").with(value).last_flag(),
                enter("true"),
                cfg(lldp + "/enable").with(value).last_flag(),
                cfg(lldp + "/transmit/disable").with(value).last_flag(),
                cfg(lldp + "/receive/disable").with(value).last_flag()};
    }
    static std::vector<Written> operational(const Value &value) {
        const std::string state = "/lldp/nodes/node/interfaces/interface";
        return {oper(state).with(value), oper(state + "/tx-enabled").with(value),
                oper(state + "/rx-enabled").with(value)};
    }
    // Expects the adds and lines of a read of this kind.
    void expect_of(uint32_t kind, const Value &value) {
        std::vector<Written> adds;
        lines = {"TRC: OC_LLDP: get-conf int lldp enabled status"};
        if (!GetParam().operational_only) {
            adds = configuration(value);
            lines.emplace_back(
                "TRC: OC_LLDP: get-config interface enabledMapped rx-enabled tx-enabled succesfully");
        }
        if (kind == YMAP_REQ_GET) {
            const std::vector<Written> more = operational(value);
            adds.insert(adds.end(), more.begin(), more.end());
            lines.emplace_back(
                "TRC: OC_LLDP: get-oper interface enabledMapped rx-enabled tx-enabled succesfully");
        }
        expected = adds;
    }
    void select(Context &read) {
        read.descriptor.data_kind = GetParam().data_kind;
        read.descriptor.touches_588 = GetParam().touches_operational ? 0x01 : 0;
    }

    std::vector<Written> expected;
    std::vector<std::string> lines;
};

TEST_P(InterfaceRead, AsksForTheConfigurationAndTheStateThatTheRequestSelects) {
    for (const uint32_t kind : read_kinds) {
        for (const Value &value : {Value(), Value("true")}) {
            SCOPED_TRACE("kind " + std::to_string(kind) + ", " + text_of(value));
            Context read(kind);
            select(read);
            Tree in(selection("enabled", value));
            fw.forget_calls();
            EXPECT_EQ(call(interface_enabled, read, in), YMAP_OK);
            expect_of(kind, value);
            EXPECT_EQ(written(in), expected);
            expect_lines(lines);
            EXPECT_THAT(system_database_calls(), IsEmpty());
        }
    }
}

TEST_P(InterfaceRead, ReturnsTheStatusOfTheLastAddOnly) {
    for (const uint32_t kind : read_kinds) {
        expect_of(kind, std::nullopt);
        const auto adds = static_cast<unsigned>(expected.size());
        for (unsigned nth = 1; nth <= adds; ++nth) {
            SCOPED_TRACE("kind " + std::to_string(kind) + ", add " + std::to_string(nth));
            Context read(kind);
            select(read);
            Tree in(node("enabled"));
            fw.forget_calls();
            fw.fail(add_operation, nth, 106);
            EXPECT_EQ(call(interface_enabled, read, in), nth == adds ? 106u : YMAP_OK);
            EXPECT_EQ(fw.adds.size(), adds);
            EXPECT_THAT(fw.error_paths, IsEmpty());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scopes, InterfaceRead,
                         ::testing::Values(Scope{"Everything", 0, false, false},
                                           Scope{"EverythingWithState", 0, true, false},
                                           Scope{"ConfigurationWithState", 1, true, false},
                                           Scope{"OperationalKindWithoutState", 2, false, false},
                                           Scope{"OperationalKindWithState", 2, true, true}),
                         [](const auto &test) { return test.param.name; });

} // namespace
} // namespace oclldp_test::request_mapping
