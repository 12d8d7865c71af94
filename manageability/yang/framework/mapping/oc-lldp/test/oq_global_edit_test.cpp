// The leaves of /lldp/config: what is written, deleted and read, and when LLDP is switched on as a side effect.
#include "oq_requests.h"

namespace oclldp_test::request_mapping {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string add_operation = "yfw_map_datatree_add_path_flagged";
const std::string enabled = oq + "leaf_lvla_lldp_config_enabled";
const std::string hello_timer = oq + "leaf_lvla_lldp_config_hellotimer";
const std::string chassis_id_type = oq + "leaf_lvla_lldp_config_chassisidtype";

const std::vector<uint32_t> merges = {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_CREATE};
const std::vector<uint32_t> deletes = {YFW_OP_DELETE, YFW_OP_REMOVE};
using Value = std::optional<std::string>;

class GlobalEdit : public OqTest {
protected:
    void bind() {
        ASSERT_EQ(plugin->symbol<decltype(ymap_bind_lldp_gl_sysdb)>("ymap_bind_lldp_gl_sysdb")(), YMAP_OK);
        ASSERT_NE(plugin->sysdb_conn(), 0u);
        fw.forget_calls();
    }
};

// ---- enabled ---------------------------------------------------------------------------------------

using EnabledLeaf = GlobalEdit;

TEST_F(EnabledLeaf, IsReadFromTheNativeEnable) {
    for (const uint32_t kind : read_kinds) {
        for (const Value &value : {Value(), Value("false")}) {
            Context context(kind);
            Tree in(selection("enabled", value));
            fw.forget_calls();
            EXPECT_EQ(call(enabled, context, in), YMAP_OK);
            EXPECT_THAT(written(in), ElementsAre(cfg("/lldp/enable").with(value)));
            expect_lines();
        }
    }
}

TEST_F(EnabledLeaf, IsWrittenAsItIsUnlessItIsFalse) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : merges) {
            for (const std::string value : {"true", "yes", "False", "false "}) {
                Context context(kind);
                Tree in(leaf("enabled", value).operation(operation));
                fw.forget_calls();
                EXPECT_EQ(call(enabled, context, in), YMAP_OK);
                EXPECT_THAT(written(in), ElementsAre(cfg("/lldp/enable").with(value).from_input(operation)));
                EXPECT_FALSE(changed_by_plugin(in));
                expect_lines();
            }
        }
    }
}

TEST_F(EnabledLeaf, WithoutAValueIsWrittenAsTrue) {
    for (const uint32_t operation : merges) {
        Context context(YMAP_REQ_EDIT_ONE_KEY);
        Tree in(node("enabled").operation(operation));
        fw.forget_calls();
        EXPECT_EQ(call(enabled, context, in), YMAP_OK);
        EXPECT_THAT(written(in), ElementsAre(cfg("/lldp/enable").with("true").from_input(operation)));
    }
}

TEST_F(EnabledLeaf, FalseRemovesTheWholeNativeContainerAndMarksTheInputAsRemoved) {
    for (const uint32_t operation : merges) {
        Context context(YMAP_REQ_EDIT_ONE_KEY);
        Tree in(leaf("enabled", "false").operation(operation));
        fw.forget_calls();
        EXPECT_EQ(call(enabled, context, in), YMAP_OK);
        EXPECT_THAT(written(in), ElementsAre(cfg("/lldp").from_input(YFW_OP_REMOVE)));
        EXPECT_EQ(in->operation, YFW_OP_REMOVE);
        EXPECT_TRUE(changed_by_plugin(in));
        expect_lines();
    }
}

TEST_F(EnabledLeaf, DeletedDeletesTheWholeNativeContainer) {
    for (const uint32_t operation : deletes) {
        for (const Value &value : {Value(), Value("true"), Value("false")}) {
            Context context(YMAP_REQ_EDIT_ONE_KEY);
            Tree in(leaf_with("enabled", value).operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(enabled, context, in), YMAP_OK);
            EXPECT_THAT(written(in), ElementsAre(cfg("/lldp").from_input(operation)));
            expect_lines();
        }
    }
}

TEST_F(EnabledLeaf, SwitchedOffOrDeletedReleasesTheSystemDatabaseFirst) {
    const std::vector<Node> nodes = {leaf("enabled", "false"), node("enabled").operation(YFW_OP_DELETE)};
    for (const Node &input : nodes) {
        bind();
        const std::string connection = std::to_string(plugin->sysdb_conn());
        Context context(YMAP_REQ_EDIT_ONE_KEY);
        Tree in(input);
        std::vector<std::string> before_the_add;
        fw.on_add([&](const Add &) { before_the_add = system_database_calls(); });
        EXPECT_EQ(call(enabled, context, in), YMAP_OK);
        EXPECT_THAT(before_the_add, ElementsAre("_sysdb_unbind(" + connection + ")"));
        EXPECT_EQ(plugin->sysdb_conn(), 0u);
        EXPECT_THAT(fw.bound_connections(), IsEmpty());
    }
}

TEST_F(EnabledLeaf, ClearsTheHandleWithoutUnbindingWhenTheLibraryIsMissing) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(leaf("enabled", "false"));
    fw.library_readable = false;
    plugin->sysdb_conn() = 0x77;
    EXPECT_EQ(call(enabled, context, in), YMAP_OK);
    EXPECT_THAT(system_database_calls(), ElementsAre("access(/pkg/lib/libsysdb.so, 4)"));
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
}

TEST_F(EnabledLeaf, LeavesTheSystemDatabaseAloneOtherwise) {
    bind();
    const uint64_t connection = plugin->sysdb_conn();
    Tree read(node("enabled"));
    Tree edit(leaf("enabled", "true"));
    Context read_context(YMAP_REQ_GET);
    Context edit_context(YMAP_REQ_EDIT_ONE_KEY);
    EXPECT_EQ(call(enabled, read_context, read), YMAP_OK);
    EXPECT_EQ(call(enabled, edit_context, edit), YMAP_OK);
    EXPECT_THAT(system_database_calls(), IsEmpty());
    EXPECT_EQ(plugin->sysdb_conn(), connection);
}

TEST_F(EnabledLeaf, ReturnsTheStatusOfItsAdd) {
    fw.fail(add_operation, 0, 94);
    Tree read(node("enabled"));
    Context read_context(YMAP_REQ_GET_CONFIG);
    EXPECT_EQ(call(enabled, read_context, read), 94u);
    const std::vector<Node> nodes = {leaf("enabled", "true"), leaf("enabled", "false"), node("enabled"),
                                     node("enabled").operation(YFW_OP_DELETE)};
    for (const Node &input : nodes) {
        Context context(YMAP_REQ_EDIT_ONE_KEY);
        Tree in(input);
        fw.forget_calls();
        EXPECT_EQ(call(enabled, context, in), 94u);
        EXPECT_EQ(fw.adds.size(), 1u);
        expect_lines();
        EXPECT_THAT(fw.error_paths, IsEmpty());
    }
}

// ---- what switches LLDP on on the way --------------------------------------------------------------

struct SettingLeaf {
    std::string callback;
    std::string name;
    std::string path;
    std::string value;        // OpenConfig
    std::string native_value; // as written
};

void PrintTo(const SettingLeaf &row, std::ostream *stream) {
    *stream << row.name;
}

const std::vector<SettingLeaf> settings = {
    {hello_timer, "hello-timer", "/lldp/timer", "30", "30"},
    {oq + "leaf_lvla_lldp_config_systemname", "system-name", "/lldp/system-name", "r1.lab", "r1.lab"},
    {oq + "leaf_lvla_lldp_config_systemdescription", "system-description", "/lldp/system-description",
     "Some 1 router", "Some 1 router"},
    {oq + "leaf_lvla_lldp_config_chassisid", "chassis-id", "/lldp/chassis-id", "00:11:22:33:44:55",
     "00:11:22:33:44:55"},
    {chassis_id_type, "chassis-id-type", "/lldp/chassis-id-type", "MAC_ADDRESS", "mac-address"},
};

class Setting : public GlobalEdit, public ::testing::WithParamInterface<SettingLeaf> {
protected:
    const SettingLeaf &row = GetParam();

    // The conversion of the chassis id type logs its own lines.
    void expect_own_lines() const {
        if (row.callback != chassis_id_type)
            expect_lines();
    }
};

TEST_P(Setting, IsReadFromItsPathWithoutSwitchingLldpOn) {
    for (const uint32_t kind : read_kinds) {
        for (const bool valued : {false, true}) {
            Context context(kind);
            Tree in(selection(row.name, valued ? Value(row.value) : Value()));
            fw.forget_calls();
            EXPECT_EQ(call(row.callback, context, in), YMAP_OK);
            EXPECT_THAT(written(in),
                        ElementsAre(cfg(row.path).with(valued ? Value(row.native_value) : Value())));
            expect_own_lines();
        }
    }
    EXPECT_THAT(fw.calls_of("yfw_map_get_node_info"), IsEmpty());
}

TEST_P(Setting, DeletedDeletesItsPathWithoutSwitchingLldpOn) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : deletes) {
            for (const bool valued : {false, true}) {
                Context context(kind);
                Tree in(leaf_with(row.name, valued ? Value(row.value) : Value()).operation(operation));
                fw.forget_calls();
                EXPECT_EQ(call(row.callback, context, in), YMAP_OK);
                EXPECT_THAT(written(in), ElementsAre(cfg(row.path).from_input(operation)));
                EXPECT_THAT(fw.calls_of("yfw_map_get_node_info"), IsEmpty());
                expect_lines();
            }
        }
    }
}

TEST_P(Setting, SwitchesLldpOnFirstExactlyWhenTheSystemDatabaseDoesNotSayThatItIsOn) {
    for (const SystemDatabase &database : system_databases) {
        for (const uint32_t operation : merges) {
            SCOPED_TRACE(database.name);
            plugin.reset();
            fw.reset();
            plugin = std::make_unique<Plugin>();
            database.prepare(fw);
            Context context(YMAP_REQ_EDIT_ONE_KEY);
            Tree in(leaf(row.name, row.value).operation(operation));
            EXPECT_EQ(call(row.callback, context, in), YMAP_OK);
            std::vector<Written> expected = {cfg(row.path).with(row.native_value).from_input(operation)};
            if (!database.on)
                expected.insert(expected.begin(), cfg("/lldp/enable").with("true").from_input(operation));
            EXPECT_EQ(written(in), expected);
            // If the check found LLDP on, the connection stays bound.
            EXPECT_EQ(fw.bound_connections().size(), database.on ? 1u : 0u);
            EXPECT_EQ(plugin->sysdb_conn() != 0, database.on);
            EXPECT_FALSE(changed_by_plugin(in));
            expect_own_lines();
        }
    }
}

TEST_P(Setting, DoesNotSwitchLldpOnInARequestThatDoesSoItself) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(leaf(row.name, row.value));
    fw.node_info[{"/lldp/config", "enabled"}] = {.value = "true"};
    EXPECT_EQ(call(row.callback, context, in), YMAP_OK);
    EXPECT_THAT(written(in), ElementsAre(cfg(row.path).with(row.native_value).from_input(YFW_OP_NONE)));
    EXPECT_THAT(fw.calls_of("yfw_map_get_node_info"),
                ElementsAre(Call{"yfw_map_get_node_info", "/lldp/config, enabled"}));
    EXPECT_THAT(system_database_calls(), IsEmpty());
}

TEST_P(Setting, AsksTheSystemDatabaseInARequestThatSwitchesLldpOff) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(leaf(row.name, row.value));
    fw.node_info[{"/lldp/config", "enabled"}] = {.value = "false"};
    fw.sysdb_items["enable"] = {.value = 1};
    EXPECT_EQ(call(row.callback, context, in), YMAP_OK);
    EXPECT_THAT(written(in), ElementsAre(cfg(row.path).with(row.native_value).from_input(YFW_OP_NONE)));
    EXPECT_THAT(system_database_calls(),
                ElementsAre("access(/pkg/lib/libsysdb.so, 4)", "_sysdb_bind(/cfg/gl/lldp/, 0)",
                            "sysdb_item_get(23809, enable, 1)"));
}

TEST_P(Setting, ReleasesAnOlderConnectionBeforeItAsksAgain) {
    bind();
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(leaf(row.name, row.value));
    fw.sysdb_items["enable"] = {.value = 0};
    EXPECT_EQ(call(row.callback, context, in), YMAP_OK);
    EXPECT_THAT(fw.add_paths(), ElementsAre("/lldp/enable", row.path));
    EXPECT_THAT(system_database_calls(),
                ElementsAre("_sysdb_unbind(23809)", "_sysdb_bind(/cfg/gl/lldp/, 0)",
                            "sysdb_item_get(23810, enable, 1)", "_sysdb_unbind(23810)"));
    EXPECT_THAT(fw.bound_connections(), IsEmpty());
}

TEST_P(Setting, IsNotWrittenWhenLldpCannotBeSwitchedOn) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(leaf(row.name, row.value));
    fw.fail(add_operation, 1, 95);
    EXPECT_EQ(call(row.callback, context, in), 95u);
    EXPECT_THAT(fw.add_paths(), ElementsAre("/lldp/enable"));
    EXPECT_EQ(fw.debug_lines().back(), "TRC: End");
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(Setting, ReturnsTheStatusOfItsOwnAdd) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(leaf(row.name, row.value));
    fw.fail(add_operation, 2, 96);
    EXPECT_EQ(call(row.callback, context, in), 96u);
    EXPECT_THAT(fw.add_paths(), ElementsAre("/lldp/enable", row.path));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(Setting, ReturnsTheStatusOfTheAddOfAReadAndOfADelete) {
    fw.fail(add_operation, 0, 97);
    Context read_context(YMAP_REQ_GET);
    Tree read(node(row.name));
    EXPECT_EQ(call(row.callback, read_context, read), 97u);
    Context edit_context(YMAP_REQ_EDIT_ONE_KEY);
    Tree edit(node(row.name).operation(YFW_OP_DELETE));
    EXPECT_EQ(call(row.callback, edit_context, edit), 97u);
}

INSTANTIATE_TEST_SUITE_P(Leaves, Setting, ::testing::ValuesIn(settings), [](const auto &test) {
    std::string name = test.param.name;
    std::erase(name, '-');
    return name;
});

// ---- hello-timer -----------------------------------------------------------------------------------

struct Timer {
    std::string value;
    bool deletable;
};

void PrintTo(const Timer &timer, std::ostream *stream) {
    *stream << '"' << timer.value << '"';
}

class HelloTimer : public GlobalEdit, public ::testing::WithParamInterface<Timer> {
protected:
    Context context{YMAP_REQ_EDIT_ONE_KEY};
};

TEST_P(HelloTimer, IsCheckedWhenItIsDeleted) {
    Tree in(leaf("hello-timer", GetParam().value).operation(YFW_OP_DELETE));
    const terrno status = call(hello_timer, context, in);
    const std::vector<Written> deleted = {cfg("/lldp/timer").from_input(YFW_OP_DELETE)};
    EXPECT_EQ(status, GetParam().deletable ? YMAP_OK : YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(written(in), GetParam().deletable ? deleted : std::vector<Written>{});
    expect_lines(GetParam().deletable ? std::vector<std::string>{}
                                      : std::vector<std::string>{"ERR: Out of Range values"});
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

// The native model checks the values written.
TEST_P(HelloTimer, IsWrittenUnchecked) {
    Tree in(leaf("hello-timer", GetParam().value));
    fw.sysdb_items["enable"] = {.value = 1};
    EXPECT_EQ(call(hello_timer, context, in), YMAP_OK);
    EXPECT_THAT(written(in), ElementsAre(cfg("/lldp/timer").with(GetParam().value).from_input(YFW_OP_NONE)));
}

// Only the leading digits count, and only the low 32 bits of their number.
INSTANTIATE_TEST_SUITE_P(Values, HelloTimer,
                         ::testing::Values(Timer{"5", true}, Timer{"30", true}, Timer{"65534", true},
                                           Timer{"10s", true}, Timer{"4294967301", true},
                                           Timer{"-4294967291", true}, Timer{"4", false}, Timer{"3", false},
                                           Timer{"0", false}, Timer{"-1", false}, Timer{"-5", false},
                                           Timer{"65535", false}, Timer{"70000", false},
                                           Timer{"4294967300", false}, Timer{"99999999999999999999", false},
                                           Timer{"abc", false}, Timer{"0x10", false}));

// ---- chassis-id-type -------------------------------------------------------------------------------

struct ChassisType {
    std::string value;
    Value native;
};

void PrintTo(const ChassisType &type, std::ostream *stream) {
    *stream << type.value;
}

class ChassisIdType : public GlobalEdit, public ::testing::WithParamInterface<ChassisType> {};

TEST_P(ChassisIdType, IsConvertedWhenItIsWritten) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(leaf("chassis-id-type", GetParam().value));
    fw.sysdb_items["enable"] = {.value = 1};
    EXPECT_EQ(call(chassis_id_type, context, in), YMAP_OK);
    EXPECT_THAT(written(in),
                ElementsAre(cfg("/lldp/chassis-id-type").with(GetParam().native).from_input(YFW_OP_NONE)));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(ChassisIdType, IsConvertedWhenItFiltersARead) {
    for (const uint32_t kind : read_kinds) {
        Context context(kind);
        Tree in(match("chassis-id-type", GetParam().value));
        fw.forget_calls();
        EXPECT_EQ(call(chassis_id_type, context, in), YMAP_OK);
        EXPECT_THAT(written(in), ElementsAre(cfg("/lldp/chassis-id-type").with(GetParam().native)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Values, ChassisIdType,
    ::testing::Values(ChassisType{"CHASSIS_COMPONENT", "chassis-component"},
                      ChassisType{"INTERFACE_ALIAS", "interface-alias"},
                      ChassisType{"PORT_COMPONENT", "port-component"},
                      ChassisType{"MAC_ADDRESS", "mac-address"},
                      ChassisType{"NETWORK_ADDRESS", "network-address"},
                      ChassisType{"INTERFACE_NAME", "interface-name"}, ChassisType{"LOCAL", "local"},
                      ChassisType{"ANYTHING_ELSE", "anything-else"}, ChassisType{"MAC_ADDRESS2", std::nullopt},
                      ChassisType{"mac_address", std::nullopt}, ChassisType{"MAC_ADDREsS", std::nullopt},
                      ChassisType{"MAC-ADDRESS", std::nullopt}, ChassisType{"LOCAL ", std::nullopt}));

} // namespace
} // namespace oclldp_test::request_mapping
