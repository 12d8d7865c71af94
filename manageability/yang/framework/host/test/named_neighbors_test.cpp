// Neighbors whose ids collide, are empty, hold the separator or are too long: what a read by key finds, and
// that entries never mix. The seeds are fixed.
#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "neighbor_answers.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

using testing::HasSubstr;

// --- tables in which most ids collide ---

std::string pick(std::mt19937 &random, const std::vector<std::string> &texts) {
    return texts[std::uniform_int_distribution<size_t>(0, texts.size() - 1)(random)];
}

bool one_in(std::mt19937 &random, unsigned count) {
    return std::uniform_int_distribution<unsigned>(1, count)(random) == 1;
}

const std::vector<std::string> devices = {"phone",
                                          "sw",
                                          "sw#1",
                                          "#",
                                          "",
                                          "[DISABLED]",
                                          "DISABLED",
                                          "~",
                                          std::string(255, 'd'),
                                          std::string(300, 'd'),
                                          std::string(250, 'd'),
                                          "it's \"it\"",
                                          "]/neighbors/neighbor[id=x]/"};
const std::vector<std::string> ports = {
    "1", "2", "", "p#q", "#", "q", std::string(300, 'p'), std::string(254, 'p'), "]/"};

// Each announcement can be told from all others by its chassis id, and by which leaves it has.
Announcement announcement(std::mt19937 &random, int number) {
    Announcement made{one_in(random, 6) ? Text() : Text(pick(random, ports))};
    made.leaves = {{"chassis-id", "chassis " + std::to_string(number)}};
    const std::string text = "of " + std::to_string(number);
    for (const char *leaf : {"port-description", "system-name", "system-description"})
        if (one_in(random, 2))
            made.detail.emplace_back(leaf, text);
    if (one_in(random, 2))
        made.leaves.emplace_back("hold-time", std::to_string(number));
    if (one_in(random, 2))
        made.mib.emplace_back("combined-capabilities", std::to_string(number % 8 << 17));
    if (one_in(random, 2))
        made.addresses.emplace_back("ipv4-address", "192.0.2." + std::to_string(number));
    if (one_in(random, 2))
        made.tlvs.push_back({"00:80:c2", std::to_string(number), text});
    return made;
}

void add_to(Card &card, const std::string &interface, const std::string &device, Announcement made) {
    const auto is_same = [&](const Detail &other) {
        return other.interface == interface && other.device == device;
    };
    auto detail = std::find_if(card.details.begin(), card.details.end(), is_same);
    if (detail == card.details.end())
        detail = card.details.insert(card.details.end(), Detail{interface, device, {}});
    detail->announcements.push_back(std::move(made));
}

Table colliding_table(std::mt19937 &random) {
    Table table{{{"0/0"}, {"0/1"}}};
    const std::string separate = pick(random, devices); // on one interface only
    for (int number = 1; number <= 40; number++) {
        const std::string device = pick(random, devices);
        const std::string interface = device != separate && one_in(random, 4) ? "eth2" : "eth1";
        add_to(table.cards[one_in(random, 4) ? 1 : 0], interface, device, announcement(random, number));
    }
    return table;
}

class CollidingTable : public testing::TestWithParam<unsigned> {
protected:
    void SetUp() override { whole = read_whole(table); }

    Answer read_whole(const Table &of) {
        device.source.xml = of.xml();
        return device.engine.read(request({"/lldp"}));
    }

    // The keys that the answer shows; ids that are cut inside a character are in none.
    static std::set<NeighborKey> shown(const Answer &answer) {
        const auto found = neighbors_in(answer.data.get());
        return {found.begin(), found.end()};
    }

    std::mt19937 random{GetParam()};
    Table table = colliding_table(random);
    DeviceUnderTest device;
    Answer whole;
};

TEST_P(CollidingTable, HasEachIdOnce) {
    const std::multiset<NeighborKey> found = neighbors_in(whole.data.get());
    for (const auto &[key, announcements] : neighbor_keys(table))
        EXPECT_EQ(found.count(key), 1u) << key.first << " " << key.second;
    EXPECT_EQ(found.size(), neighbor_keys(table).size());
}

// How many entries of the device each warning says to be one.
std::multiset<int> numbers_in(const std::vector<std::string> &warnings) {
    const std::string words = ": the device has ";
    std::multiset<int> numbers;
    for (const std::string &warning : warnings)
        if (const size_t at = warning.find(words); at != std::string::npos)
            numbers.insert(std::stoi(warning.substr(at + words.size())));
    return numbers;
}

TEST_P(CollidingTable, HasOneWarningWithTheirNumberForEachIdOfSeveralNeighbors) {
    std::multiset<int> expected;
    for (const auto &[key, announcements] : neighbor_keys(table))
        if (announcements > 1)
            expected.insert(announcements);
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(numbers_in(whole.warnings), expected);
}

// The first announcement of an id, alone in the table.
Table alone(const Table &table, const NeighborKey &key) {
    Table made{{{table.cards.front().name}}};
    for_each_announcement(table, [&](const Detail &detail, const Announcement &announced) {
        if (made.neighbors() == 0 && detail.interface == key.first &&
            neighbor_id(detail.device, announced.port) == key.second)
            add_to(made.cards.front(), detail.interface, detail.device, announced);
    });
    return made;
}

TEST_P(CollidingTable, HasNoEntryOfTwoNeighbors) {
    for (const NeighborKey &key : shown(whole)) {
        const Answer one = read_whole(alone(table, key));
        EXPECT_TRUE(same(held_for(whole.data.get(), key.first, key.second),
                         held_for(one.data.get(), key.first, key.second)))
            << key.second;
    }
}

TEST_P(CollidingTable, GivesByKeyWhatTheWholeReadShows) {
    for (const NeighborKey &key : shown(whole)) {
        const Answer keyed = device.engine.read(request({neighbor_path(key)}));
        EXPECT_TRUE(same(leaves(keyed.data.get()), held_for(whole.data.get(), key.first, key.second)))
            << key.first << " " << key.second;
    }
}

TEST_P(CollidingTable, GivesByIdAloneWhatTheWholeReadShowsOnSomeInterface) {
    for (const NeighborKey &key : shown(whole)) {
        const Answer keyed = device.engine.read(
            request({"/lldp/interfaces/interface/neighbors/neighbor[id=" + quoted(key.second) + "]"}));
        const auto found = neighbors_in(keyed.data.get());
        EXPECT_FALSE(found.empty()) << key.second;
        for (const NeighborKey &one : found) {
            EXPECT_EQ(one.second, key.second);
            EXPECT_TRUE(same(held_for(keyed.data.get(), one.first, one.second),
                             held_for(whole.data.get(), one.first, one.second)))
                << one.first << " " << one.second;
        }
    }
}

TEST_P(CollidingTable, GivesNothingForIdsThatTheWholeReadDoesNotShow) {
    const std::set<NeighborKey> keys = shown(whole);
    for (const std::string &device_part : devices)
        for (const std::string &port : ports) {
            const NeighborKey key("eth1", neighbor_id(device_part, port));
            const Answer keyed = device.engine.read(request({neighbor_path(key)}));
            EXPECT_EQ(neighbors_in(keyed.data.get()).size(), keys.count(key)) << key.second;
        }
}

TEST_P(CollidingTable, GivesManyNeighborsByKeyInOneRead) {
    std::vector<std::string> paths;
    std::vector<std::string> wanted;
    for (const NeighborKey &key : shown(whole)) {
        paths.push_back(neighbor_path(key));
        for (const std::string &line : held_for(whole.data.get(), key.first, key.second))
            wanted.push_back(line);
    }
    std::vector<std::string> found = leaves(device.engine.read(request(paths)).data.get());
    std::sort(found.begin(), found.end());
    std::sort(wanted.begin(), wanted.end());
    EXPECT_TRUE(same(found, wanted));
}

TEST_P(CollidingTable, HasTheSameIdsInAnyOrder) {
    Table shuffled = table;
    for (Card &card : shuffled.cards) {
        std::shuffle(card.details.begin(), card.details.end(), random);
        for (Detail &detail : card.details)
            std::shuffle(detail.announcements.begin(), detail.announcements.end(), random);
    }
    const Answer other = read_whole(shuffled);
    EXPECT_EQ(shown(other), shown(whole));
    for (const auto &[key, announcements] : neighbor_keys(table))
        if (announcements == 1) {
            EXPECT_TRUE(same(held_for(other.data.get(), key.first, key.second),
                             held_for(whole.data.get(), key.first, key.second)))
                << key.second;
        }
}

TEST_P(CollidingTable, KeepsAnEntryWhenOthersGo) {
    Table fewer = table;
    for (Card &card : fewer.cards)
        std::erase_if(card.details, [&](const Detail &) { return one_in(random, 2); });
    const Answer left = read_whole(fewer);
    const auto keys = neighbor_keys(table);
    for (const NeighborKey &key : shown(left))
        if (keys.at(key) == 1) {
            EXPECT_TRUE(same(held_for(left.data.get(), key.first, key.second),
                             held_for(whole.data.get(), key.first, key.second)))
                << key.second;
        }
}

INSTANTIATE_TEST_SUITE_P(Seeds, CollidingTable, testing::Range(1u, 25u));

// --- cases ---

TEST(ANeighborByKey, ThatAnotherAnnouncementWithoutAPortWouldFitIsNotInvented) {
    DeviceUnderTest device;
    device.source.xml = Table{{{"0/0", {{"eth1", "sw", {{std::nullopt}}}}}}}.xml();
    EXPECT_TRUE(device.read({neighbor_path({"eth1", "sw#nothing"})}).empty());
    EXPECT_FALSE(device.read({neighbor_path({"eth1", "sw"})}).empty());
}

TEST(ANeighborByKey, TellsHowManyNeighborsBearItsId) {
    DeviceUnderTest device;
    Table table{{{"0/0"}}};
    for (int number = 1; number <= 30; number++)
        add_to(table.cards.front(), "eth1", "phone", {"1", {{"chassis-id", std::to_string(number)}}});
    device.source.xml = table.xml();
    for (const std::string &asked :
         {std::string("/lldp"), neighbor_path({"eth1", "phone#1"}),
          std::string("/lldp/interfaces/interface/neighbors/neighbor[id='phone#1']")}) {
        const Lines read = device.read({asked});
        EXPECT_THAT(read, testing::Contains(HasSubstr("/state/chassis-id=1"))) << asked;
        ASSERT_EQ(device.warnings.size(), 1u) << asked;
        EXPECT_THAT(device.warnings.front(), HasSubstr("the device has 30 entries"));
    }
}

// One neighbor's fault is no other's: neither that of the neighbor in the way, nor of one beside it.
TEST(ANeighborByKey, IsReadBesideOneThatFails) {
    DeviceUnderTest device;
    Announcement faulty{"2"};
    faulty.mib = {{"chassis-id-sub-type", "0"}};
    device.source.xml =
        Table{{{"0/0", {{"eth1", "sw", {{"1", {{"chassis-id", "c"}}}, faulty}}, {"eth1", "r2", {faulty}}}}}}
            .xml();
    EXPECT_THROW(device.read({"/lldp"}), Error);
    EXPECT_THAT(device.read({neighbor_path({"eth1", "sw#1"})}),
                testing::Contains(testing::EndsWith("/state/chassis-id=c")));
    EXPECT_TRUE(device.read({neighbor_path({"eth1", "sw#9"})}).empty());
}

TEST(ALongInterface, IsNoObstacleForItsNeighborByKey) {
    DeviceUnderTest device;
    const std::string interface(200, 'i');
    device.source.xml = Table{{{"0/0", {{interface, "sw", {{"1", {{"chassis-id", "c"}}}}}}}}}.xml();
    EXPECT_FALSE(device.read({neighbor_path({interface, "sw#1"})}).empty());
}

} // namespace
} // namespace yfw::host::test
