#include <set>

#include "answer_fixture.h"

namespace yfw::host::test {
namespace {

class AnswerEntries : public WrittenAnswer {
protected:
    // The keys of the entries, in order, without their content.
    Lines interfaces() {
        return below(answer({"/lldp/interfaces/interface/name"}), "/lldp/interfaces/interface");
    }
};

TEST_F(AnswerEntries, AreMadeInTheOrderTheyAreAskedFor) {
    interface("eth2");
    interface("eth10");
    interface("eth1");
    EXPECT_EQ(interfaces(), (Lines{"[name='eth2']", "[name='eth10']", "[name='eth1']"}));
}

TEST_F(AnswerEntries, AreFoundAgainByTheirKey) {
    tidl_yfw_datatree *first = interface("eth1");
    interface("eth2");
    EXPECT_EQ(interface("eth1"), first);
    EXPECT_EQ(interfaces(), (Lines{"[name='eth1']", "[name='eth2']"}));
}

TEST_F(AnswerEntries, OfALongListAreFoundAgainByTheirKey) {
    std::vector<tidl_yfw_datatree *> entries;
    for (int i = 0; i < 100; i++)
        entries.push_back(interface("eth" + std::to_string(i)));
    for (int i = 99; i >= 0; i--)
        EXPECT_EQ(interface("eth" + std::to_string(i)), entries[static_cast<size_t>(i)]);
    EXPECT_EQ(interfaces().size(), 100u);
}

class EntriesThatAreOpened : public AnswerEntries, public testing::WithParamInterface<int> {};

// However long the list is.
TEST_P(EntriesThatAreOpened, AreFoundByAKeyThatIsGivenToThemLater) {
    for (int i = 0; i < GetParam(); i++) {
        open_entry(interface_list);
        add(std::string(interface_list) + "/name", ("eth" + std::to_string(i)).c_str());
    }
    interface("eth1");
    add(std::string(interface_list) + "/state/enabled", "true");
    const Lines entries = below(answer(), "/lldp/interfaces/interface");
    EXPECT_EQ(entries.size(), static_cast<size_t>(GetParam()));
    EXPECT_EQ(entries.at(1), "[name='eth1']/state/enabled=true");
}

TEST_P(EntriesThatAreOpened, AreFoundByTheirNewKeyOnly) {
    for (int i = 0; i < GetParam(); i++)
        interface("eth" + std::to_string(i));
    interface("eth1");
    add(std::string(interface_list) + "/name", "renamed");
    tidl_yfw_datatree *const renamed = interface("renamed");
    EXPECT_NE(interface("eth1"), renamed);
    EXPECT_EQ(interface("renamed"), renamed);
    EXPECT_EQ(interfaces().size(), static_cast<size_t>(GetParam()) + 1);
}

TEST_P(EntriesThatAreOpened, AreLeftOutWhenTheyRepeatAKey) {
    for (int i = 0; i < GetParam(); i++) {
        open_entry(interface_list);
        add(std::string(interface_list) + "/name", ("eth" + std::to_string(i % (GetParam() - 1))).c_str());
        add(std::string(interface_list) + "/state/name", std::to_string(i).c_str());
    }
    EXPECT_EQ(answer().size(), static_cast<size_t>(GetParam()) - 1);
    EXPECT_EQ(answer().front(), "/lldp/interfaces/interface[name='eth0']/state/name=0");
    EXPECT_EQ(warning(),
              "/openconfig-lldp:lldp/interfaces/interface: a second entry with the same keys is left out");
}

INSTANTIATE_TEST_SUITE_P(InLists, EntriesThatAreOpened, testing::Values(2, 8, 9, 10, 40));

TEST_F(AnswerEntries, AreTheCurrentOnesOnceFound) {
    interface("eth1");
    interface("eth2");
    add("/lldp/interfaces/interface/state/enabled", "false");
    interface("eth1");
    add("/lldp/interfaces/interface/state/enabled", "true");
    EXPECT_EQ(answer(), (Lines{"/lldp/interfaces/interface[name='eth1']/state/enabled=true",
                               "/lldp/interfaces/interface[name='eth2']/state/enabled=false"}));
}

TEST_F(AnswerEntries, WithTheSameKeyBelowAnotherParentAreOthers) {
    EXPECT_EQ(stitch("eth1", "r2#p"), YMAP_OK);
    add(std::string(neighbor_list) + "/state/ttl", "1");
    EXPECT_EQ(stitch("eth2", "r2#p"), YMAP_OK);
    add(std::string(neighbor_list) + "/state/ttl", "2");
    EXPECT_EQ(answer(),
              (Lines{"/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='r2#p']/state/ttl=1",
                     "/lldp/interfaces/interface[name='eth2']/neighbors/neighbor[id='r2#p']/state/ttl=2"}));
}

TEST_F(AnswerEntries, OfAListThatTheModelDoesNotHaveAreRefused) {
    tidl_yfw_datatree *slot = tree.root();
    EXPECT_NE(
        yfw_map_search_or_add_list(ctx(), tree.root(), &slot, "/lldp/cards/card", "1", "id", lldp_ns.data()),
        YMAP_OK);
    EXPECT_NE(
        yfw_map_search_or_add_list(ctx(), tree.root(), &slot, "/lldp/state", "1", "enabled", lldp_ns.data()),
        YMAP_OK);
    EXPECT_NE(yfw_map_search_or_add_list(ctx(), tree.root(), &slot, interface_list, "1", "no-such-key",
                                         lldp_ns.data()),
              YMAP_OK);
    EXPECT_EQ(data(), nullptr);
}

TEST_F(AnswerEntries, AreOpenedByTheListEntryFlagAndFilledByLaterAdds) {
    stitch("eth1", "r2#p");
    for (const char *octets : {"00:80:c2", "33:44:55"}) {
        open_entry(tlv_list);
        add(std::string(tlv_list) + "/type", "127");
        add(std::string(tlv_list) + "/oui", octets);
        add(std::string(tlv_list) + "/oui-subtype", "9");
        add(std::string(tlv_list) + "/state/oui", octets);
    }
    EXPECT_EQ(below(answer(), "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='r2#p']/"
                              "custom-tlvs/"),
              (Lines{"tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/oui=00:80:c2",
                     "tlv[type='127'][oui='33:44:55'][oui-subtype='9']/state/oui=33:44:55"}));
}

TEST_F(AnswerEntries, AreNotOpenedByTheFlagAtALeaf) {
    stitch("eth1", "r2#p");
    open_entry(capability_list);
    const std::string list = capability_list;
    EXPECT_EQ(add_below(tree.root(), list + "/name", "openconfig-lldp-types:ROUTER", nullptr, 1), YMAP_OK);
    EXPECT_EQ(add_below(tree.root(), list + "/state/enabled", "true", nullptr, 1), YMAP_OK);
    EXPECT_EQ(below(answer(), "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='r2#p']/"
                              "capabilities/"),
              (Lines{"capability[name='openconfig-lldp-types:ROUTER']/state/enabled=true"}));
}

TEST_F(AnswerEntries, OpenAgainBelowTheEntryThatIsCurrentThen) {
    stitch("eth1", "a");
    open_entry(tlv_list);
    add(std::string(tlv_list) + "/state/value", "QQ==");
    stitch("eth1", "b");
    open_entry(tlv_list);
    for (const char *key : {"/type", "/oui", "/oui-subtype"})
        add(std::string(tlv_list) + key, "1");
    EXPECT_EQ(below(answer(), "/lldp/interfaces/interface[name='eth1']/neighbors/"),
              (Lines{"neighbor[id='a']", "neighbor[id='b']/custom-tlvs/"
                                         "tlv[type='1'][oui='1'][oui-subtype='1']"}));
}

TEST_F(AnswerEntries, AreReachedWithoutTheFlagAsTheCurrentOnes) {
    interface("eth1");
    tidl_yfw_datatree *again = nullptr;
    EXPECT_EQ(add_below(tree.root(), interface_list, nullptr, &again), YMAP_OK);
    EXPECT_EQ(again, interface("eth1"));
}

// Entries are found by the value of their key leaf, no matter which add set it.
TEST_F(AnswerEntries, AreFoundByAKeyThatALaterAddGaveThem) {
    tidl_yfw_datatree *opened = nullptr;
    ASSERT_EQ(add_below(tree.root(), interface_list, nullptr, &opened, 1), YMAP_OK);
    add("/lldp/interfaces/interface/name", "eth1");
    add("/lldp/interfaces/interface/config/enabled", "true");
    EXPECT_EQ(interface("eth1"), opened);
    add("/lldp/interfaces/interface/state/enabled", "true");
    EXPECT_EQ(answer(), (Lines{"/lldp/interfaces/interface[name='eth1']/config/enabled=true",
                               "/lldp/interfaces/interface[name='eth1']/state/enabled=true"}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(AnswerEntries, AreNotFoundByAKeyThatALaterAddReplaced) {
    tidl_yfw_datatree *renamed = interface("eth1");
    add("/lldp/interfaces/interface/name", "eth2");
    EXPECT_NE(interface("eth1"), renamed);
    EXPECT_EQ(interfaces(), (Lines{"[name='eth2']", "[name='eth1']"}));
}

TEST_F(AnswerEntries, KeepTheirKeyWhenItIsAddedAgain) {
    interface("eth1");
    add("/lldp/interfaces/interface/name", "eth1");
    interface("eth2");
    EXPECT_EQ(interfaces(), (Lines{"[name='eth1']", "[name='eth2']"}));
}

constexpr int many = 50000;

TEST_F(AnswerEntries, AreMadeAndFoundAgainByTheTensOfThousands) {
    std::vector<tidl_yfw_datatree *> made;
    for (int i = 0; i < many; i++)
        made.push_back(interface("eth" + std::to_string(i)));
    EXPECT_EQ(std::set(made.begin(), made.end()).size(), made.size());
    for (int i = many - 1; i >= 0; i--)
        ASSERT_EQ(interface("eth" + std::to_string(i)), made[static_cast<size_t>(i)]) << i;
    EXPECT_EQ(interfaces().size(), made.size());
}

TEST_F(AnswerEntries, AreStitchedByTheTensOfThousandsBelowOneInterface) {
    for (int round = 0; round < 2; round++)
        for (int i = 0; i < many; i++)
            ASSERT_EQ(stitch("eth1", "r" + std::to_string(i)), YMAP_OK);
    EXPECT_EQ(answer().size(), static_cast<size_t>(many));
    EXPECT_TRUE(warnings.empty());
}

} // namespace
} // namespace yfw::host::test
