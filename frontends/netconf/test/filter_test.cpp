// What subtree filters select of the OpenConfig tree, and what XPath filters reject.
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "frontends/netconf/filters/filter.h"
#include "frontends/netconf/messages/rpc_error.h"
#include "yang/test/test_schemas.h"

namespace yfw::netconf {
namespace {

const yang::Schemas &schemas() {
    static const yang::Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR, yang::test::models());
    return loaded;
}

// --- identities ---

struct IdentityCase {
    const char *name;
    std::string text;
};

void PrintTo(const IdentityCase &test, std::ostream *out) {
    *out << test.text;
}

// For a key, which is a leafref, and for the leaf it refers to.
class AnIdentityInAFilter : public testing::TestWithParam<IdentityCase> {
protected:
    std::string value_selected(const std::string &begin, const std::string &end) const {
        const Document document("<filter xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><lldp "
                                "xmlns=\"http://openconfig.net/yang/lldp\" "
                                "xmlns:t=\"http://openconfig.net/yang/lldp/types\"><interfaces><interface>"
                                "<neighbors><neighbor><capabilities><capability>" +
                                begin + GetParam().text + end +
                                "</capability></capabilities></neighbor></neighbors></interface></interfaces>"
                                "</lldp></filter>");
        std::optional<host::Selection> at = subtree_selection(document.root(), schemas().openconfig_root());
        while (at.has_value() && !at->children.empty())
            at = host::Selection(at->children.front());
        return at.has_value() ? at->value.value_or("") : "";
    }
};

TEST_P(AnIdentityInAFilter, MatchesAKeyByTheNameOfItsModule) {
    EXPECT_EQ(value_selected("<name>", "</name>"), "openconfig-lldp-types:MAC_BRIDGE");
}

TEST_P(AnIdentityInAFilter, MatchesALeafByTheNameOfItsModule) {
    EXPECT_EQ(value_selected("<state><name>", "</name></state>"), "openconfig-lldp-types:MAC_BRIDGE");
}

INSTANTIATE_TEST_SUITE_P(Written, AnIdentityInAFilter,
                         testing::Values(IdentityCase{"Plainly", "MAC_BRIDGE"},
                                         IdentityCase{"WithThePrefixOfTheClient", "t:MAC_BRIDGE"},
                                         IdentityCase{"WithTheNameOfTheModule",
                                                      "openconfig-lldp-types:MAC_BRIDGE"}),
                         [](const testing::TestParamInfo<IdentityCase> &test) { return test.param.name; });

TEST(AnIdentityOfAnotherNamespace, MatchesNothingOfItsName) {
    const Document document(
        "<filter xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><lldp "
        "xmlns=\"http://openconfig.net/yang/lldp\" xmlns:t=\"urn:other\"><interfaces>"
        "<interface><neighbors><neighbor><capabilities><capability><name>t:MAC_BRIDGE</name>"
        "</capability></capabilities></neighbor></neighbors></interface></interfaces></lldp>"
        "</filter>");
    std::optional<host::Selection> at = subtree_selection(document.root(), schemas().openconfig_root());
    while (at.has_value() && !at->children.empty())
        at = host::Selection(at->children.front());
    ASSERT_TRUE(at.has_value());
    EXPECT_NE(at->value, "openconfig-lldp-types:MAC_BRIDGE");
}

// --- XPath ---

yang::DataTree some_data() {
    lyd_node *data = nullptr;
    lyd_new_path(nullptr, schemas().context(), "/openconfig-lldp:lldp/config/system-name", "r1", 0, &data);
    return yang::DataTree(data);
}

std::string xpath_filter(const std::string &expression) {
    return "<filter xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\" "
           "xmlns:l=\"http://openconfig.net/yang/lldp\" type=\"xpath\" select=\"" +
           expression + "\"/>";
}

TEST(AnExpression, OfAFewThousandBytesIsEvaluated) {
    std::string expression = "/l:lldp";
    for (int i = 0; i < 300; i++)
        expression += " | /l:lldp/l:config[l:system-name='r" + std::to_string(i) + "']";
    const Document filter(xpath_filter(expression));
    EXPECT_NE(xpath_filtered(some_data(), filter_of(filter.root())), nullptr);
}

TEST(AnExpression, ThatWouldTakeSecondsIsRefusedForItsLength) {
    const Document filter(xpath_filter(std::string(200000, '-') + "1"));
    try {
        xpath_filtered(some_data(), filter_of(filter.root()));
        FAIL() << "the expression was evaluated";
    } catch (const RpcError &error) {
        EXPECT_EQ(error.type, "protocol");
        EXPECT_EQ(error.tag, "too-big");
    }
}

// --- XPath on data that is evaluated apart ---

// More nodes than are looked at in this process.
yang::DataTree large_data() {
    lyd_node *data = nullptr;
    for (int i = 0; i < 2000; i++) {
        const std::string path =
            "/openconfig-lldp:lldp/interfaces/interface[name='eth" + std::to_string(i) + "']/config/name";
        lyd_node *made = nullptr;
        lyd_new_path(data, schemas().context(), path.c_str(), ("eth" + std::to_string(i)).c_str(), 0, &made);
        data = data != nullptr ? data : made;
    }
    return yang::DataTree(data);
}

std::string names_selected(const std::string &expression) {
    const Document filter(xpath_filter(expression));
    const yang::DataTree found = xpath_filtered(large_data(), filter_of(filter.root()));
    std::string names;
    for (const lyd_node *entry = found != nullptr ? lyd_child(lyd_child(found.get())) : nullptr;
         entry != nullptr; entry = entry->next)
        names += std::string(lyd_get_value(lyd_child(entry))) + " ";
    return names;
}

std::string tag_of_refusal(const std::string &expression) {
    try {
        names_selected(expression);
        return "";
    } catch (const RpcError &error) {
        return error.tag;
    }
}

TEST(AnExpressionOnLargeData, SelectsWhatItSays) {
    EXPECT_EQ(names_selected("//l:interface[l:name='eth7' or l:config/l:name='eth1999']"), "eth7 eth1999 ");
    EXPECT_EQ(names_selected("/l:lldp/l:interfaces/l:interface[3]"), "eth2 ");
    EXPECT_EQ(names_selected("//l:nothing"), "");
}

TEST(AnExpressionOnLargeData, ThatIsNoneIsRefused) {
    EXPECT_EQ(tag_of_refusal("//["), "invalid-value");
    EXPECT_EQ(tag_of_refusal("count(//*)"), "invalid-value");
}

TEST(AnExpressionOnLargeData, ThatLooksThroughAllOfItForEachNodeIsEnded) {
    EXPECT_EQ(tag_of_refusal("//*[count(//*[count(//*) > 0]) > 0]"), "resource-denied");
}

} // namespace
} // namespace yfw::netconf
