// The answers of two mappings as one.
#include <vector>

#include "answer_fixture.h"

namespace yfw::host::test {
namespace {

constexpr const char *suppressed = "/lldp/state/suppress-tlv-advertisement";
constexpr const char *any_tlv = "/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv";
constexpr const char *tlvs_of_r2 =
    "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='r2#p']/custom-tlvs";

// `tree` is the first mapping's answer, `second` is joined to it.
class JoinedAnswer : public WrittenAnswer {
protected:
    void add_to(AnswerTree &answer, const std::string &path_text, const char *value) {
        EXPECT_EQ(add_below(answer.root(), path_text, value), YMAP_OK) << path_text;
    }

    void add_to_interface(AnswerTree &answer, const char *name, const char *leaf, const char *value) {
        tidl_yfw_datatree *slot = nullptr;
        EXPECT_EQ(yfw_map_search_or_add_list(ctx(), answer.root(), &slot, interface_list, name, "name",
                                             lldp_ns.data()),
                  YMAP_OK);
        EXPECT_EQ(add_below(slot, std::string(interface_list) + leaf, value), YMAP_OK);
    }

    // A TLV of the neighbor r2#p on eth1.
    void add_tlv_to(AnswerTree &answer, const char *subtype, const char *leaf, const char *value) {
        tidl_yfw_datatree *slot = nullptr;
        yfw_map_search_or_add_list(ctx(), answer.root(), &slot, interface_list, "eth1", "name", lldp_ns.data());
        yfw_map_search_or_add_list(ctx(), answer.root(), &slot, neighbor_list, "r2#p", "id", lldp_ns.data());
        add_below(answer.root(), any_tlv, nullptr, nullptr, 1);
        add_to(answer, at_tlv("/type"), "127");
        add_to(answer, at_tlv("/oui"), "00:80:c2");
        add_to(answer, at_tlv("/oui-subtype"), subtype);
        add_to(answer, at_tlv(leaf), value);
    }

    static std::string at_tlv(const char *rest) { return std::string(any_tlv) + rest; }

    Lines joined() {
        tree.join(second);
        return answer();
    }

    AnswerTree second{answer_schema()};
};

TEST_F(JoinedAnswer, HasTheLeavesOfBoth) {
    add_to(tree, "/lldp/state/system-name", "r1");
    add_to(second, "/lldp/state/chassis-id", "c1");
    add_to(second, "/lldp/config/enabled", "true");
    EXPECT_EQ(joined(),
              (Lines{"/lldp/config/enabled=true", "/lldp/state/system-name=r1", "/lldp/state/chassis-id=c1"}));
}

TEST_F(JoinedAnswer, KeepsTheFirstValueOfALeaf) {
    add_to(tree, "/lldp/state/system-name", "r1");
    add_to(second, "/lldp/state/system-name", "r9");
    EXPECT_EQ(joined(), (Lines{"/lldp/state/system-name=r1"}));
}

TEST_F(JoinedAnswer, TakesTheSecondValueOfALeafThatTheFirstLeftWithoutOne) {
    add_to(tree, "/lldp/state/system-name", nullptr);
    add_to(second, "/lldp/state/system-name", "r9");
    EXPECT_EQ(joined(), (Lines{"/lldp/state/system-name=r9"}));
}

TEST_F(JoinedAnswer, HasEachValueOfALeafListOnce) {
    for (const char *tlv : {"openconfig-lldp-types:SYSTEM_NAME", "openconfig-lldp-types:MANAGEMENT_ADDRESS"})
        add_to(tree, suppressed, tlv);
    for (const char *tlv : {"openconfig-lldp-types:PORT_DESCRIPTION", "openconfig-lldp-types:SYSTEM_NAME"})
        add_to(second, suppressed, tlv);
    EXPECT_EQ(joined(), (Lines{std::string(suppressed) + "=openconfig-lldp-types:SYSTEM_NAME",
                               std::string(suppressed) + "=openconfig-lldp-types:MANAGEMENT_ADDRESS",
                               std::string(suppressed) + "=openconfig-lldp-types:PORT_DESCRIPTION"}));
}

TEST_F(JoinedAnswer, HasOneEntryForEachKey) {
    add_to_interface(tree, "eth1", "/state/enabled", "true");
    add_to_interface(tree, "eth2", "/state/enabled", "true");
    add_to_interface(second, "eth3", "/state/enabled", "false");
    add_to_interface(second, "eth2", "/state/enabled", "false");
    add_to_interface(second, "eth2", "/state/name", "eth2");
    EXPECT_EQ(joined(), (Lines{"/lldp/interfaces/interface[name='eth1']/state/enabled=true",
                               "/lldp/interfaces/interface[name='eth2']/state/name=eth2",
                               "/lldp/interfaces/interface[name='eth2']/state/enabled=true",
                               "/lldp/interfaces/interface[name='eth3']/state/enabled=false"}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(JoinedAnswer, TellsEntriesApartByAllTheirKeys) {
    add_tlv_to(tree, "9", "/state/value", "YQ==");
    add_tlv_to(second, "1", "/state/value", "Yg==");
    add_tlv_to(second, "9", "/state/oui", "00:80:c2");
    EXPECT_EQ(below(joined(), tlvs_of_r2),
              (Lines{"/tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/oui=00:80:c2",
                     "/tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/value=YQ==",
                     "/tlv[type='127'][oui='00:80:c2'][oui-subtype='1']/state/value=Yg=="}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(JoinedAnswer, HasNoEntriesThatAreNewInAListThatIsOnlyExtended) {
    add_to_interface(tree, "eth1", "/state/enabled", "true");
    add_to_interface(second, "eth1", "/state/name", "eth1");
    add_to_interface(second, "eth2", "/state/enabled", "true");
    tree.join(second, {schemas().find("openconfig-lldp", interface_list)});
    EXPECT_EQ(answer(), (Lines{"/lldp/interfaces/interface[name='eth1']/state/name=eth1",
                               "/lldp/interfaces/interface[name='eth1']/state/enabled=true"}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(JoinedAnswer, HasNewEntriesOfOtherListsThanTheExtendedOnes) {
    add_tlv_to(tree, "9", "/state/value", "YQ==");
    add_tlv_to(second, "1", "/state/value", "Yg==");
    tree.join(second, {schemas().find("openconfig-lldp", interface_list),
                       schemas().find("openconfig-lldp", neighbor_list)});
    EXPECT_EQ(below(answer(), tlvs_of_r2),
              (Lines{"/tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/value=YQ==",
                     "/tlv[type='127'][oui='00:80:c2'][oui-subtype='1']/state/value=Yg=="}));
}

TEST_F(JoinedAnswer, IsSelectedFromAsOne) {
    add_to(tree, "/lldp/state/system-name", "r1");
    add_to(second, "/lldp/state/chassis-id", "c1");
    tree.join(second);
    EXPECT_EQ(answer({"/lldp/state/chassis-id"}), (Lines{"/lldp/state/chassis-id=c1"}));
}

TEST_F(JoinedAnswer, KeepsItsTextsWhenTheSecondIsGone) {
    {
        AnswerTree gone(answer_schema());
        add_to(gone, "/lldp/state/system-name", std::string("a name of this test").c_str());
        tree.join(gone);
    }
    EXPECT_EQ(answer(), (Lines{"/lldp/state/system-name=a name of this test"}));
}

TEST_F(JoinedAnswer, WarnsOfPathsThatTheModelDoesNotHaveOnceForBoth) {
    for (AnswerTree *written : {&tree, &second})
        add_to(*written, "/lldp/state/no-such-leaf", "1");
    add_to(second, "/lldp/state/neither-this", "1");
    EXPECT_EQ(joined(), Lines{});
    EXPECT_EQ(warnings, Lines{"/lldp/state/neither-this: the OpenConfig model in use has no such node, nor "
                              "/lldp/state/no-such-leaf; they are left out"});
}

} // namespace
} // namespace yfw::host::test
