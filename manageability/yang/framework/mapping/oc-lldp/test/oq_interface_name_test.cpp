// The key of an interface entry and its config counterpart: what is added, and what is remembered for the
// answer.
#include "oq_requests.h"

namespace oclldp_test::request_mapping {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string add_operation = "yfw_map_datatree_add_path_flagged";
const std::string key = oq + "leaf_lvla_lldp_interface_name";
const std::string config_name = oq + "leaf_lvla_lldp_config_name";
const std::string entry = "/interface-configurations/interface-configuration";
using Value = std::optional<std::string>;

class InterfaceKey : public OqTest {
protected:
    // Leaves a name and a flag behind, as an earlier request would.
    void remember_something() {
        std::fill_n(plugin->interface_name(), OCLLDP_INTERFACE_NAME_SIZE, 'x');
        plugin->get_with_interface_key() = 1;
    }
    std::string remembered_bytes() const { return {plugin->interface_name(), OCLLDP_INTERFACE_NAME_SIZE}; }
    // The name, padded with zeros to the size of the buffer.
    static std::string padded(std::string name) {
        name.resize(OCLLDP_INTERFACE_NAME_SIZE, '\0');
        return name;
    }

    Context context{YMAP_REQ_EDIT_ONE_KEY};
};

// ---- reads -----------------------------------------------------------------------------------------

TEST_F(InterfaceKey, ReadAsksForTheNativeNameWithTheKeyAsAFilter) {
    for (const uint32_t kind : read_kinds) {
        for (const Value &value : {Value(), Value("eth1")}) {
            Context read(kind);
            Tree in(selection("name", value));
            fw.forget_calls();
            EXPECT_EQ(call(key, read, in), YMAP_OK);
            EXPECT_THAT(written(in), ElementsAre(ifmgr(entry + "/interface-name").with(value)));
        }
    }
}

struct Keyed {
    std::string name;
    uint32_t kind;
    bool operational; // the request touches operational data
    uint32_t data_kind;
    bool records;
};

void PrintTo(const Keyed &keyed, std::ostream *stream) {
    *stream << keyed.name;
}

class KeyedRead : public InterfaceKey, public ::testing::WithParamInterface<Keyed> {
protected:
    KeyedRead() {
        read.descriptor.data_kind = GetParam().data_kind;
        read.descriptor.touches_808 = GetParam().operational ? 0x8000 : 0;
    }
    Context read{GetParam().kind};
};

TEST_P(KeyedRead, RemembersItsKeyWhenItIsAboutState) {
    remember_something();
    Tree in(match("name", "eth1"));
    EXPECT_EQ(call(key, read, in), YMAP_OK);
    EXPECT_EQ(remembered_bytes(), padded(GetParam().records ? "eth1" : ""));
    EXPECT_EQ(plugin->get_with_interface_key(), GetParam().records ? 1 : 0);
    expect_lines(GetParam().records
                     ? std::vector<std::string>{"TRC: Get with key eth1 oclldp_gl_int_name eth1",
                                                "TRC: GET request with oclldp_get_with_int_key SET"}
                     : std::vector<std::string>{});
}

TEST_P(KeyedRead, WithoutAKeyForgetsTheLastOne) {
    remember_something();
    Tree in(node("name"));
    EXPECT_EQ(call(key, read, in), YMAP_OK);
    EXPECT_EQ(remembered_bytes(), padded(""));
    EXPECT_EQ(plugin->get_with_interface_key(), 0);
    expect_lines(GetParam().records
                     ? std::vector<std::string>{"TRC: GET request with oclldp_get_with_int_key NOT-SET"}
                     : std::vector<std::string>{});
}

INSTANTIATE_TEST_SUITE_P(
    Scopes, KeyedRead,
    ::testing::Values(Keyed{"Get", YMAP_REQ_GET, false, 0, true},
                      Keyed{"GetOfConfiguration", YMAP_REQ_GET, true, 1, true},
                      Keyed{"GetOfState", YMAP_REQ_GET, true, 2, true},
                      Keyed{"GetConfig", YMAP_REQ_GET_CONFIG, false, 0, false},
                      Keyed{"GetConfigWithState", YMAP_REQ_GET_CONFIG, true, 0, false},
                      Keyed{"GetConfigOfKind1WithState", YMAP_REQ_GET_CONFIG, true, 1, false},
                      Keyed{"GetConfigOfKind2WithoutState", YMAP_REQ_GET_CONFIG, false, 2, false},
                      Keyed{"GetConfigOfKind2WithState", YMAP_REQ_GET_CONFIG, true, 2, true}),
    [](const auto &test) { return test.param.name; });

struct Length {
    std::size_t key;
    std::size_t remembered;
};

class LongKey : public InterfaceKey, public ::testing::WithParamInterface<Length> {};

TEST_P(LongKey, IsCutAtTheEndOfTheBuffer) {
    Context read(YMAP_REQ_GET);
    const std::string name(GetParam().key, 'n');
    const std::string cut(GetParam().remembered, 'n');
    Tree in(match("name", name));
    EXPECT_EQ(call(key, read, in), YMAP_OK);
    EXPECT_EQ(remembered_bytes(), padded(cut));
    EXPECT_EQ(plugin->get_with_interface_key(), 1);
    EXPECT_EQ(fw.debug_lines().at(1), "TRC: Get with key " + name + " oclldp_gl_int_name " + cut);
    EXPECT_THAT(written(in), ElementsAre(ifmgr(entry + "/interface-name").with(name)));
    const std::vector<Call> copies = fw.calls_of("yfw_strncpy_s");
    ASSERT_EQ(copies.size(), 1u);
    EXPECT_THAT(copies[0].args, HasSubstr(key + ", 128, " + name + ", "));
}

INSTANTIATE_TEST_SUITE_P(Lengths, LongKey,
                         ::testing::Values(Length{126, 126}, Length{127, 127}, Length{128, 127},
                                           Length{200, 127}, Length{1000, 127}),
                         [](const auto &test) { return std::to_string(test.param.key); });

TEST_F(InterfaceKey, ReadReturnsTheStatusOfItsAddAndStillRemembers) {
    Context read(YMAP_REQ_GET);
    Tree in(match("name", "eth1"));
    plugin->deleting_interface() = 1;
    fw.fail(add_operation, 1, 107);
    EXPECT_EQ(call(key, read, in), 107u);
    EXPECT_EQ(remembered_bytes(), padded("eth1"));
    EXPECT_EQ(plugin->deleting_interface(), 0);
}

// ---- edits -----------------------------------------------------------------------------------------

TEST_F(InterfaceKey, EditWritesTheKeysOfTheNativeEntry) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_CREATE}) {
            Context edit(kind);
            Tree in(leaf("name", "eth1").operation(operation));
            remember_something();
            fw.forget_calls();
            EXPECT_EQ(call(key, edit, in), YMAP_OK);
            EXPECT_THAT(written(in),
                        ElementsAre(ifmgr(entry + "/active").with("act"),
                                    ifmgr(entry + "/interface-name").with("eth1").from_input(operation)));
            EXPECT_FALSE(changed_by_plugin(in));
            EXPECT_EQ(remembered_bytes(), padded(""));
            EXPECT_EQ(plugin->get_with_interface_key(), 0);
            expect_lines();
        }
    }
}

TEST_F(InterfaceKey, EditReturnsTheStatusOfTheNameOnly) {
    for (const unsigned nth : {1u, 2u}) {
        Tree in(leaf("name", "eth1"));
        fw.forget_calls();
        fw.fail(add_operation, nth, 108);
        EXPECT_EQ(call(key, context, in), nth == 2 ? 108u : YMAP_OK);
        EXPECT_EQ(fw.adds.size(), 2u);
        EXPECT_THAT(fw.error_paths, IsEmpty());
    }
}

TEST_F(InterfaceKey, OfADeletedEntryRemovesTheNativeLldpSubtreeButNotTheInterface) {
    for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE}) {
        Tree in(leaf("name", "eth1").operation(operation));
        plugin->deleting_interface() = 1;
        fw.forget_calls();
        EXPECT_EQ(call(key, context, in), YMAP_OK);
        EXPECT_THAT(written(in),
                    ElementsAre(ifmgr(entry + "/active").with("act"),
                                ifmgr(entry + "/interface-name").with("eth1").from_input(operation),
                                cfg(entry + "/lldp").from_input(YFW_OP_REMOVE).last_flag()));
        EXPECT_EQ(in->operation, YFW_OP_REMOVE);
        EXPECT_TRUE(changed_by_plugin(in));
        EXPECT_EQ(plugin->deleting_interface(), 0);
        expect_lines();
    }
}

TEST_F(InterfaceKey, OfADeletedEntryIgnoresWhatHappensToTheNativeKeys) {
    for (const unsigned nth : {1u, 2u}) {
        Tree in(leaf("name", "eth1"));
        plugin->deleting_interface() = 1;
        fw.forget_calls();
        fw.fail(add_operation, nth, 109);
        EXPECT_EQ(call(key, context, in), YMAP_OK);
        EXPECT_EQ(fw.adds.size(), 3u);
        EXPECT_EQ(plugin->deleting_interface(), 0);
    }
}

// The failure returns at once, so the flag stays set for the next request.
TEST_F(InterfaceKey, OfADeletedEntryLeavesTheFlagSetWhenTheRemovalFails) {
    Tree in(leaf("name", "eth1"));
    plugin->deleting_interface() = 1;
    fw.fail(add_operation, 3, 110);
    EXPECT_EQ(call(key, context, in), 110u);
    EXPECT_EQ(plugin->deleting_interface(), 1);
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(InterfaceKey, ThatIsDeletedItselfAddsNothingAndEndsTheDeleteOfTheEntry) {
    for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
        Tree in(leaf("name", "eth1").operation(operation));
        remember_something();
        plugin->deleting_interface() = 1;
        fw.forget_calls();
        EXPECT_EQ(call(key, context, in), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        EXPECT_EQ(remembered_bytes(), padded(""));
        EXPECT_EQ(plugin->get_with_interface_key(), 0);
        EXPECT_EQ(plugin->deleting_interface(), 0);
        expect_lines();
    }
}

TEST_F(InterfaceKey, EndsTheDeleteOfTheEntryInAReadToo) {
    for (const uint32_t kind : read_kinds) {
        Context read(kind);
        Tree in(match("name", "eth1"));
        plugin->deleting_interface() = 1;
        EXPECT_EQ(call(key, read, in), YMAP_OK);
        EXPECT_EQ(plugin->deleting_interface(), 0);
    }
}

TEST_F(InterfaceKey, WithoutANodeChangesNothing) {
    Tree in(leaf("name", "eth1"));
    for (const auto &[input, out] : {std::pair<tidl_yfw_datatree *, tidl_yfw_datatree *>{nullptr, &output},
                                     std::pair<tidl_yfw_datatree *, tidl_yfw_datatree *>{in, nullptr}}) {
        remember_something();
        plugin->deleting_interface() = 1;
        fw.forget_calls();
        EXPECT_EQ(plugin->call(key, context, input, out), YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(remembered_bytes(), Each('x'));
        EXPECT_EQ(plugin->get_with_interface_key(), 1);
        EXPECT_EQ(plugin->deleting_interface(), 1);
        EXPECT_THAT(fw.adds, IsEmpty());
        expect_lines({"ERR: NULL arguments passed"});
        EXPECT_THAT(fw.error_paths, IsEmpty());
    }
}

// ---- config/name -----------------------------------------------------------------------------------

using ConfigName = InterfaceKey;

TEST_F(ConfigName, IsReadFromTheNativeName) {
    for (const uint32_t kind : read_kinds) {
        for (const Value &value : {Value(), Value("eth1")}) {
            Context read(kind);
            Tree in(selection("name", value));
            remember_something();
            fw.forget_calls();
            EXPECT_EQ(call(config_name, read, in), YMAP_OK);
            EXPECT_THAT(written(in), ElementsAre(ifmgr(entry + "/interface-name").with(value)));
            EXPECT_THAT(remembered_bytes(), Each('x'));
            expect_lines();
        }
    }
}

TEST_F(ConfigName, IsWrittenToTheNativeName) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE}) {
            Context edit(kind);
            Tree in(leaf("name", "eth1").operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(config_name, edit, in), YMAP_OK);
            EXPECT_THAT(written(in),
                        ElementsAre(ifmgr(entry + "/interface-name").with("eth1").from_input(operation)));
            expect_lines();
        }
    }
}

TEST_F(ConfigName, DeletedAddsNothing) {
    for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
        Tree in(leaf("name", "eth1").operation(operation));
        fw.forget_calls();
        EXPECT_EQ(call(config_name, context, in), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        EXPECT_FALSE(changed_by_plugin(in));
        expect_lines();
    }
}

TEST_F(ConfigName, ReturnsTheStatusOfItsAdd) {
    for (const uint32_t kind : {0u, 10u, 1u}) {
        Context request(kind);
        Tree in(leaf("name", "eth1"));
        fw.forget_calls();
        fw.fail(add_operation, 1, 111);
        EXPECT_EQ(call(config_name, request, in), 111u);
        EXPECT_THAT(fw.error_paths, IsEmpty());
    }
}

TEST_F(ConfigName, LeavesTheDeleteOfTheEntryToTheKey) {
    Tree in(leaf("name", "eth1"));
    plugin->deleting_interface() = 1;
    EXPECT_EQ(call(config_name, context, in), YMAP_OK);
    EXPECT_EQ(plugin->deleting_interface(), 1);
    EXPECT_EQ(fw.adds.size(), 1u);
}

} // namespace
} // namespace oclldp_test::request_mapping
