// Several native entries that are mapped to one entry of an answer.
#include <vector>

#include "answer_fixture.h"

namespace yfw::host::test {
namespace {

const std::string state = std::string(neighbor_list) + "/state";
constexpr const char *entry_a = "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='a']";

class JoinedEntries : public WrittenAnswer {
protected:
    // The native entry in hand is the walk's current list entry.
    void map(const tidl_yfw_datatree &native, const std::string &id) {
        context.hierarchy().start(&native);
        context.hierarchy().push(&native);
        ASSERT_TRUE(context.hierarchy().select_list_entry("/neighbor"));
        ASSERT_EQ(stitch("eth1", id), YMAP_OK);
    }

    static tidl_yfw_datatree native_entry() {
        tidl_yfw_datatree node{};
        node.name = "neighbor";
        return node;
    }

    const tidl_yfw_datatree first = native_entry(), second = native_entry(), third = native_entry();
};

TEST_F(JoinedEntries, NeverMix) {
    map(first, "a");
    add(state + "/ttl", "1");
    map(second, "a");
    add(state + "/ttl", "2");
    add(state + "/port-id", "p2");
    open_entry(tlv_list);
    for (const char *key : {"/type", "/oui", "/oui-subtype"})
        add(std::string(tlv_list) + key, "1");
    add("/lldp/interfaces/interface/state/name", "eth1");
    EXPECT_EQ(answer(), (Lines{"/lldp/interfaces/interface[name='eth1']/state/name=eth1",
                               std::string(entry_a) + "/state/ttl=1"}));
}

TEST_F(JoinedEntries, AreToldOfInOneWarningWithTheirNumber) {
    for (const tidl_yfw_datatree *native : {&first, &second, &third}) {
        map(*native, "a");
        add(state + "/ttl", "1");
    }
    answer();
    EXPECT_EQ(warning(),
              "/openconfig-lldp:lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='a']: the "
              "device has 3 entries that this one stands for; the first is shown, the others are "
              "left out");
}

TEST_F(JoinedEntries, AreNotToldOfWhereTheyAreNotSelected) {
    map(first, "a");
    map(second, "a");
    map(third, "b");
    answer({"/lldp/interfaces/interface/neighbors/neighbor[id='b']"});
    EXPECT_TRUE(warnings.empty());
    answer({entry_a});
    EXPECT_EQ(warnings.size(), 1u);
}

TEST_F(JoinedEntries, LeaveOthersAsTheyAre) {
    map(first, "a");
    map(second, "b");
    add(state + "/ttl", "2");
    map(third, "a");
    add(state + "/ttl", "3");
    map(first, "a");
    add(state + "/ttl", "1");
    EXPECT_EQ(answer(),
              (Lines{std::string(entry_a) + "/state/ttl=1",
                     "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='b']/state/ttl=2"}));
}

TEST_F(JoinedEntries, OfOneNativeEntryAreOne) {
    map(first, "a");
    add(state + "/ttl", "1");
    map(first, "a");
    add(state + "/port-id", "p");
    EXPECT_EQ(answer(),
              (Lines{std::string(entry_a) + "/state/ttl=1", std::string(entry_a) + "/state/port-id=p"}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(JoinedEntries, WhoseKeyIsNoTextAreCountedToo) {
    map(first, "\xff");
    map(second, "\xff");
    answer();
    EXPECT_EQ(warning(),
              "/openconfig-lldp:lldp/interfaces/interface[name='eth1']/neighbors/neighbor: 2 entries "
              "whose key is no text are left out");
}

// As with the answers of mappings beside one another.
TEST_F(JoinedEntries, AreToldOfInAnAnswerThatTheirsIsAddedTo) {
    map(first, "a");
    map(second, "a");
    map(third, "b");
    AnswerTree other(answer_schema());
    for (int times = 0; times < 2; times++)
        other.join(tree);
    settle(other, selection({"/lldp"}), Content::all, warnings);
    EXPECT_NE(warning().find("neighbor[id='a']: the device has 2 entries"), std::string::npos) << warning();
}

// Entries that the mapping opens instead of joining them.
TEST_F(JoinedEntries, AreUnlikeEntriesThatRepeatTheirKeys) {
    stitch("eth1", "a");
    for (const char *value : {"YQ==", "Yg==", "Yw=="}) {
        open_entry(tlv_list);
        for (const char *key : {"/type", "/oui", "/oui-subtype"})
            add(std::string(tlv_list) + key, "1");
        add(std::string(tlv_list) + "/state/value", value);
    }
    EXPECT_EQ(below(answer(), std::string(entry_a) + "/custom-tlvs/"),
              (Lines{"tlv[type='1'][oui='1'][oui-subtype='1']/state/value=YQ=="}));
    EXPECT_EQ(warning(), "/openconfig-lldp:lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='a']/"
                         "custom-tlvs/tlv: 2 more entries with the same keys are left out");
}

} // namespace
} // namespace yfw::host::test
