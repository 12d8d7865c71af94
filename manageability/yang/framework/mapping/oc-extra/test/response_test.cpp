// What a native response says of the device.
#include <gmock/gmock.h>

#include "ocextra_fixture.h"

namespace ocextra_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Lines = std::vector<std::string>;

constexpr const char *suppressed = "/lldp/state/suppress-tlv-advertisement";

Node disable(const char *tlv, const char *value) {
    return node(tlv).children({leaf("disable", value)});
}

Node lldp(std::vector<Node> children) {
    return node("lldp").children(std::move(children));
}

class AResponse : public OcextraTest {
protected:
    // What the response is answered with, as "PATH=VALUE".
    Lines answer(const Node &root, Context &context) {
        Tree response(root, native_cfg_ns);
        EXPECT_EQ(call(response_root, context, response), YMAP_OK);
        Lines lines;
        for (const Add &add : fw.adds)
            lines.push_back(add.path + "=" + add.value.value_or("nothing"));
        return lines;
    }

    Lines answer(const Node &root) {
        Context context(YMAP_REQ_GET);
        return answer(root, context);
    }
};

struct Switch {
    const char *name;
    Node root;
    const char *enabled;
};

void PrintTo(const Switch &test, std::ostream *stream) {
    *stream << test.name;
}

class Lldp : public AResponse, public ::testing::WithParamInterface<Switch> {};

TEST_P(Lldp, IsSaidToBeOnOrOff) {
    EXPECT_EQ(answer(GetParam().root).front(), std::string("/lldp/state/enabled=") + GetParam().enabled);
}

INSTANTIATE_TEST_SUITE_P(
    When, Lldp,
    ::testing::Values(
        Switch{"SwitchedOn", lldp({leaf("enable", "true")}), "true"},
        Switch{"SwitchedOff", lldp({leaf("enable", "false")}), "false"},
        Switch{"NothingIsConfigured", lldp({}), "false"},
        Switch{"ThereAreNoChildrenAtAll", node("lldp"), "false"},
        Switch{"OnlyATimerIsSet", lldp({leaf("timer", "30")}), "true"},
        Switch{"OnlyATlvIsSuppressed",
               lldp({node("tlv-select").children({disable("port-description", "true")})}), "true"},
        Switch{"NoTlvIsSuppressed", lldp({node("tlv-select").children({disable("port-description", "false")})}),
               "false"},
        Switch{"SwitchedOffWithATimer", lldp({leaf("enable", "false"), leaf("timer", "30")}), "false"},
        Switch{"AnotherModelIsSwitchedOn", lldp({leaf("enable", "true").in(foreign_ns)}), "false"},
        Switch{"TheSwitchHasNoValue", lldp({node("enable")}), "false"}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(AResponse, NamesEverySuppressedTlvInTheOrderOfTheModel) {
    EXPECT_EQ(
        answer(lldp({leaf("enable", "true"),
                     node("tlv-select")
                         .children({disable("management-address", "true"), disable("system-name", "true"),
                                    disable("port-description", "true"), disable("system-description", "true"),
                                    disable("system-capabilities", "true")})})),
        (Lines{"/lldp/state/enabled=true", std::string(suppressed) + "=SYSTEM_NAME",
               std::string(suppressed) + "=PORT_DESCRIPTION", std::string(suppressed) + "=SYSTEM_DESCRIPTION",
               std::string(suppressed) + "=SYSTEM_CAPABILITIES",
               std::string(suppressed) + "=MANAGEMENT_ADDRESS"}));
}

TEST_F(AResponse, NamesNoTlvThatIsNotSuppressed) {
    EXPECT_EQ(answer(lldp({node("tlv-select")
                               .children({leaf("tlv-select-enter", "true"), disable("system-name", "false"),
                                          node("port-description"), disable("system-description", "true"),
                                          disable("a-tlv-to-come", "true")})})),
              (Lines{"/lldp/state/enabled=true", std::string(suppressed) + "=SYSTEM_DESCRIPTION"}));
}

TEST_F(AResponse, HasTheTimeToLiveBetweenTheOtherTwo) {
    EXPECT_EQ(
        answer(lldp({leaf("holdtime", "120"), node("tlv-select").children({disable("system-name", "true")})})),
        (Lines{"/lldp/state/enabled=true", "/lldp/state/ttl=120", std::string(suppressed) + "=SYSTEM_NAME"}));
}

TEST_F(AResponse, HasNoTimeToLiveWithoutAValueOrOfAnotherModel) {
    EXPECT_EQ(answer(lldp({node("holdtime"), leaf("holdtime", "9").in(foreign_ns)})),
              Lines{"/lldp/state/enabled=false"});
}

TEST_F(AResponse, IsAnsweredInTheOpenConfigModelWithIdentitiesOfItsTypes) {
    answer(lldp({node("tlv-select").children({disable("system-name", "true")})}));
    EXPECT_THAT(fw.adds, Each(::testing::Field(&Add::ns, oc_ns)));
    ASSERT_EQ(fw.adds.size(), 2u);
    EXPECT_EQ(fw.adds[0].list_entry, 0u);
    const Add &identity = fw.adds[1];
    EXPECT_EQ(identity.list_entry, 1u);
    ASSERT_NE(identity.node, nullptr);
    EXPECT_STREQ(identity.node->value_ns, oc_types_ns);
    EXPECT_EQ(identity.node->framework_flags, uint32_t{YFW_FW_HAS_VALUE_NS});
}

TEST_F(AResponse, IsAnsweredWithoutANamespaceWhereNoNodeComesBack) {
    fw.add_without_node = true;
    EXPECT_EQ(answer(lldp({node("tlv-select").children({disable("system-name", "true")})})).size(), 2u);
    EXPECT_EQ(fw.live_strings(), 0u);
}

TEST_F(AResponse, IsAnsweredWhenOnlyStateIsWanted) {
    Context context(YMAP_REQ_GET);
    context.descriptor.req_content = YFW_CONTENT_OPERATIONAL;
    EXPECT_EQ(answer(lldp({leaf("enable", "true")}), context), Lines{"/lldp/state/enabled=true"});
}

TEST_F(AResponse, IsNotAnsweredWhenOnlyConfigurationIsWanted) {
    const Node root = lldp({leaf("enable", "true")});
    Context get_config(YMAP_REQ_GET_CONFIG);
    EXPECT_EQ(answer(root, get_config), Lines{});
    Context get(YMAP_REQ_GET);
    get.descriptor.req_content = YFW_CONTENT_CONFIG;
    EXPECT_EQ(answer(root, get), Lines{});
}

TEST_F(AResponse, EndsWithTheStatusOfTheLeafThatCannotBeAdded) {
    for (unsigned nth = 1; nth <= 3; nth++) {
        fw.reset();
        fw.fail("yfw_map_datatree_add_path_flagged", nth, 77);
        Context context(YMAP_REQ_GET);
        Tree response(
            lldp({leaf("holdtime", "120"), node("tlv-select").children({disable("system-name", "true")})}),
            native_cfg_ns);
        EXPECT_EQ(call(response_root, context, response), 77u);
        EXPECT_EQ(fw.calls_of("yfw_map_datatree_add_path_flagged").size(), nth);
    }
}

TEST_F(AResponse, WithABrokenArrayOfChildrenFails) {
    Context context(YMAP_REQ_GET);
    Tree response(node("lldp").broken_children(1), native_cfg_ns);
    EXPECT_EQ(call(response_root, context, response), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Failed to get subtrees!"));
    EXPECT_THAT(fw.adds, IsEmpty());
}

} // namespace
} // namespace ocextra_test
