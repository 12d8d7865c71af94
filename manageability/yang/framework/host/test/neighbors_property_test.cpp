// Properties that hold for every table of neighbors that a device may report. The seeds are fixed.
#include <algorithm>

#include <gtest/gtest.h>

#include "base/error.h"
#include "neighbor_answers.h"
#include "test_device.h"
#include "yang/tree_text.h"

namespace yfw::host::test {
namespace {

class EveryTable : public testing::TestWithParam<unsigned> {
protected:
    void SetUp() override {
        std::mt19937 random(GetParam());
        table = random_table(random, 45);
        device.source.xml = table.xml();
        whole = device.engine.read(request({"/lldp"}));
    }

    Answer read(const std::string &asked) { return device.engine.read(request({asked})); }

    DeviceUnderTest device;
    Table table;
    Answer whole;
};

// Skips keys that the mapping cut inside a character.
TEST_P(EveryTable, HasEachNeighborOnceUnderItsInterface) {
    const std::multiset<NeighborKey> found = neighbors_in(whole.data.get());
    for (const auto &[key, announcements] : neighbor_keys(table))
        EXPECT_TRUE(found.count(key) == 1 || ends_inside_a_character(key.second))
            << found.count(key) << " of " << key.first << " " << key.second;
}

TEST_P(EveryTable, HasNoNeighborThatTheDeviceDoesNotHave) {
    const std::map<NeighborKey, int> keys = neighbor_keys(table);
    for (const NeighborKey &key : neighbors_in(whole.data.get()))
        EXPECT_TRUE(keys.contains(key)) << key.first << " " << key.second;
}

TEST_P(EveryTable, GivesForAnInterfaceWhatTheWholeReadHoldsForIt) {
    std::set<std::string> names = {"no such interface"};
    for (const lyd_node *interface : interfaces_of(whole.data.get()))
        names.insert(key_of(interface));
    for (const std::string &name : names) {
        const Answer keyed = read(entry_path(name));
        EXPECT_TRUE(same(leaves(keyed.data.get()), held_for(whole.data.get(), name))) << name;
    }
}

// For an id that several announcements share, or whose device part matches another device, the mapping may
// choose which one to answer with. The test then only checks that nothing else is in the answer.
TEST_P(EveryTable, GivesForANeighborWhatTheWholeReadHoldsForIt) {
    int compared = 0;
    for (const auto &[key, announcements] : neighbor_keys(table)) {
        if (ends_inside_a_character(key.second))
            continue;
        const Answer keyed = read(neighbor_path(key));
        if (meets_its_own_alone(table, key.second, key.first)) {
            EXPECT_TRUE(same(leaves(keyed.data.get()), held_for(whole.data.get(), key.first, key.second)))
                << key.first << " " << key.second;
            compared++;
        }
        for (const NeighborKey &found : neighbors_in(keyed.data.get()))
            EXPECT_EQ(found, key) << "in the answer to " << key.first << " " << key.second;
    }
    EXPECT_GT(compared, 3);
}

TEST_P(EveryTable, GivesForANeighborOnAnyInterfaceWhatTheWholeReadHoldsForIt) {
    for (const auto &[key, announcements] : neighbor_keys(table)) {
        if (ends_inside_a_character(key.second) || !meets_its_own_alone(table, key.second))
            continue;
        const Answer keyed =
            read("/lldp/interfaces/interface/neighbors/neighbor[id=" + quoted(key.second) + "]");
        EXPECT_TRUE(same(leaves(keyed.data.get()), held_for(whole.data.get(), key.first, key.second)))
            << key.first << " " << key.second;
    }
}

void expect_to_be_read_back(const lyd_node *answer, LYD_FORMAT format) {
    const std::string text = yang::printed(answer, format, LYD_PRINT_WITHSIBLINGS);
    ASSERT_NE(text, "");
    const yang::DataTree parsed =
        yang::parse_data(schemas().context(), text, format, LYD_PARSE_ONLY | LYD_PARSE_STRICT);
    EXPECT_TRUE(same(leaves(parsed.get()), leaves(answer)));
}

TEST_P(EveryTable, ComesOutAsDataThatIsReadBackUnchanged) {
    expect_to_be_read_back(whole.data.get(), LYD_XML);
    expect_to_be_read_back(whole.data.get(), LYD_JSON);
}

// The leaves of an announcement that are mapped without a change, by their names in the answer.
LeafTexts copied_leaves(const Announcement &made) {
    LeafTexts copied;
    for (const LeafTexts *leaf_texts : {&made.leaves, &made.detail})
        for (const auto &[name, value] : *leaf_texts)
            copied.emplace_back(name == "hold-time" ? "ttl" : name, value);
    return copied;
}

TEST_P(EveryTable, LosesALeafOnlyWithAWarning) {
    const std::map<NeighborKey, int> keys = neighbor_keys(table);
    for_each_announcement(table, [&](const Detail &detail, const Announcement &made) {
        const NeighborKey key(detail.interface, neighbor_id(detail.device, made.port));
        if (key.second.empty() || keys.at(key) != 1 || ends_inside_a_character(key.second))
            return;
        const Lines held = held_for(whole.data.get(), key.first, key.second);
        for (const auto &[name, value] : copied_leaves(made)) {
            const auto shows = [line = "/state/" + name + "=" + value](const std::string &text_line) {
                return text_line.ends_with(line);
            };
            const auto names = [&, place = "/" + name,
                                shown = value.substr(0, 100)](const std::string &warning) {
                return warning.find(place) != std::string::npos && warning.find(shown) != std::string::npos &&
                       warning.find(key.second) != std::string::npos;
            };
            EXPECT_TRUE(std::any_of(held.begin(), held.end(), shows) ||
                        std::any_of(whole.warnings.begin(), whole.warnings.end(), names))
                << key.first << " " << key.second << " " << name << " " << value;
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Seeds, EveryTable, testing::Range(1u, 17u));

Table with_a_fault(unsigned seed) {
    std::mt19937 random(seed);
    Table table = random_table(random, 30);
    Card &card = table.cards[random() % table.cards.size()];
    Detail &detail = card.details[random() % card.details.size()];
    detail.announcements.front().mib.assign(
        {{random() % 2 == 0 ? "chassis-id-sub-type" : "port-id-sub-type", random() % 2 == 0 ? "0" : "8"}});
    return table;
}

class FaultyTable : public testing::TestWithParam<unsigned> {};

// In some tables the faulty neighbor has no id; the mapping then skips it and the read succeeds.
TEST_P(FaultyTable, FailsAsAWholeAndLeavesTheNextReadRight) {
    DeviceUnderTest device;
    std::mt19937 random(GetParam());
    const Table sound = random_table(random, 30);
    device.source.xml = sound.xml();
    const Lines before = device.read({"/lldp"});
    const Table faulty = with_a_fault(GetParam());
    device.source.xml = faulty.xml();
    try {
        device.read({"/lldp"});
        size_t named = 0;
        for (const auto &[key, announcements] : neighbor_keys(faulty))
            named += static_cast<size_t>(announcements);
        EXPECT_LT(named, faulty.neighbors()) << "the faulty neighbor went unnoticed";
    } catch (const Error &error) {
        EXPECT_EQ(error.status(), YMAP_ERR_MAP_FAILED);
    }
    device.source.xml = sound.xml();
    EXPECT_TRUE(same(device.read({"/lldp"}), before));
}

INSTANTIATE_TEST_SUITE_P(Seeds, FaultyTable, testing::Range(100u, 112u));

// The mapping cuts an id at 255 bytes, here in the middle of a character.
TEST(LongName, ThatIsCutInsideACharacterIsLeftOutWithAWarning) {
    DeviceUnderTest device;
    std::string name;
    for (int i = 0; i < 200; i++)
        name += "é";
    device.source.xml = Table{{{"0/0", {{"eth1", name, {{"p1"}}}, {"eth1", "r2", {{"p2"}}}}}}}.xml();
    const Answer answer = device.engine.read(request({"/lldp"}));
    EXPECT_EQ(neighbors_in(answer.data.get()).count({"eth1", "r2#p2"}), 1u);
    expect_to_be_read_back(answer.data.get(), LYD_XML);
    expect_to_be_read_back(answer.data.get(), LYD_JSON);
    EXPECT_FALSE(answer.warnings.empty());
}

TEST(LargeTable, HasEachNeighborOnceUnderItsInterface) {
    DeviceUnderTest device;
    Table table{{{"0/0"}}};
    for (int i = 0; i < 2000; i++)
        table.cards.front().details.push_back(
            {"eth" + std::to_string(i / 4), "r" + std::to_string(i), {{"p" + std::to_string(i % 7)}}});
    device.source.xml = table.xml();
    const Answer answer = device.engine.read(request({"/lldp"}));
    std::multiset<NeighborKey> wanted;
    for (const auto &[key, announcements] : neighbor_keys(table))
        wanted.insert(key);
    EXPECT_EQ(neighbors_in(answer.data.get()), wanted);
    EXPECT_TRUE(answer.warnings.empty());
}

} // namespace
} // namespace yfw::host::test
