// By what neighbors on one port are known: ids that collide, are empty, hold the separator or are too long.
// What clients see of an id is what the mapping makes of it: device id, "#" and port id, cut to 255 octets.
#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "native_modules.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/neighbor_ids.h"
#include "yang/test/data_texts.h"
#include "yang/yang_text.h"

namespace yfw::sources::test {
namespace {

using lldpd::Neighbor;
using testing::ElementsAre;
using testing::MatchesRegex;
using testing::UnorderedElementsAreArray;
using Strings = std::vector<std::string>;

Neighbor neighbor(const std::string &chassis, const std::string &name, const std::string &port) {
    Neighbor made = neighbor_named(name, port);
    made.chassis.id = chassis;
    if (name.empty())
        made.chassis.name.reset();
    return made;
}

Strings device_ids(const std::vector<Neighbor> &neighbors) {
    std::vector<const Neighbor *> pointers;
    for (const Neighbor &one : neighbors)
        pointers.push_back(&one);
    return lldpd::device_ids(pointers);
}

// As clients see the neighbors, in the order given.
Strings client_ids(const std::vector<Neighbor> &neighbors) {
    Strings ids = device_ids(neighbors);
    for (size_t i = 0; i < ids.size(); i++) {
        const auto port = lldpd::id_text(neighbors[i].port_id, neighbors[i].port_id_octets);
        ids[i] = (ids[i] == "[DISABLED]" ? "DISABLED" : ids[i]) + (port.has_value() ? "#" + *port : "");
        ids[i].resize(std::min<size_t>(ids[i].size(), 255));
    }
    return ids;
}

// --- neighbors of one name ---

std::vector<Neighbor> phones(int count) {
    std::vector<Neighbor> made;
    for (int i = 0; i < count; i++)
        made.push_back(neighbor("00:04:f2:00:00:" + std::to_string(10 + i), "phone", "1"));
    return made;
}

TEST(ThirtyPhonesOfOneNameAndPort, AreThirtyNeighbors) {
    const Strings ids = client_ids(phones(30));
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 30u);
    EXPECT_THAT(ids, testing::Each(MatchesRegex("phone~[0-9a-f]{16}#1")));
    const lldpd::State state = state_of(phones(30));
    EXPECT_EQ(operational_values(state, "/nodes/node/neighbors/details/detail/device-id").size(), 30u);
}

TEST(ThirtyNamelessNeighborsOfOnePort, AreThirtyNeighbors) {
    std::vector<Neighbor> nameless = phones(30);
    for (Neighbor &one : nameless)
        one.chassis.name.reset();
    const Strings ids = client_ids(nameless);
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 30u);
    EXPECT_THAT(ids, testing::Each(MatchesRegex("DISABLED~[0-9a-f]{16}#1")));
}

TEST(NeighborsOfOneName, KeepItWhereTheirPortsDiffer) {
    EXPECT_THAT(client_ids({neighbor("c1", "sw", "1"), neighbor("c2", "sw", "2"), neighbor("c3", "", "1"),
                            neighbor("c4", "", "2")}),
                ElementsAre("sw#1", "sw#2", "DISABLED#1", "DISABLED#2"));
}

TEST(ANeighbor, IsToldApartByWhatItsIdsAreMadeFrom) {
    Neighbor first = neighbor("c", "sw", "1"), second = first;
    second.port_id_subtype = 7;
    Neighbor third = first;
    third.chassis.id_subtype = 7;
    const Strings ids = client_ids({first, second, third});
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 3u);
}

// lldpd's library ends a text at its first zero octet.
TEST(ANeighbor, IsToldApartByOctetsThatAreNoText) {
    std::vector<Neighbor> neighbors;
    for (const char last : {'a', 'b'}) {
        Neighbor one = neighbor("c", "sw", "p");
        one.port_id_octets = std::string("p\0", 2) + last;
        neighbors.push_back(one);
    }
    EXPECT_THAT(client_ids(neighbors), ElementsAre("sw#70:00:61", "sw#70:00:62"));
}

TEST(Ids, ThatAreNoTextAreTheirOctets) {
    EXPECT_EQ(lldpd::id_text("eth1", "eth1"), "eth1");
    EXPECT_EQ(lldpd::id_text("00:04:f2:00:00:01", std::string("\0\x04\xf2\0\0\1", 6)), "00:04:f2:00:00:01");
    EXPECT_EQ(lldpd::id_text("\x01\x02", "\x01\x02"), "01:02");
    EXPECT_EQ(lldpd::id_text("a\xff", ""), "61:ff");
    EXPECT_EQ(lldpd::id_text("", std::string("\0", 1)), "00");
    EXPECT_EQ(lldpd::id_text("", ""), std::nullopt);
    const std::string path = "/nodes/node/neighbors/details/detail/lldp-neighbor/";
    const lldpd::State state = state_of({neighbor("\x1b[2J", "sw", "\xff")});
    EXPECT_THAT(operational_values(state, path + "chassis-id"), ElementsAre("1b:5b:32:4a"));
    EXPECT_THAT(operational_values(state, path + "port-id-detail"), ElementsAre("ff"));
}

// --- names that are mistaken for others ---

class AMistakableName : public testing::TestWithParam<const char *> {};

TEST_P(AMistakableName, IsMarked) {
    const std::string id = device_ids({neighbor("c", GetParam(), "1")}).front();
    EXPECT_THAT(id, MatchesRegex("[^#]*~[0-9a-f]{16}"));
    EXPECT_EQ(id.find('#'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Of, AMistakableName,
                         testing::Values("sw#1", "#", "##", "DISABLED", "[DISABLED]", "phone~0123456789abcdef",
                                         "~0123456789abcdef"));

TEST(ANeighborThatTakesAnothersId, GetsAnother) {
    std::vector<Neighbor> neighbors = phones(2);
    const std::string taken = device_ids(neighbors).front();
    neighbors.push_back(neighbor("00:00:5e:00:53:66", taken, "1"));
    const Strings ids = client_ids(neighbors);
    EXPECT_EQ(ids.front(), taken + "#1");
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 3u);
}

// --- long ones ---

TEST(AnId, IsNeverCut) {
    for (size_t name = 1; name <= 300; name += 13)
        for (size_t port = 1; port <= 255 - 18; port += 7) {
            const std::string id =
                client_ids({neighbor("c", std::string(name, 'n'), std::string(port, 'p'))})[0];
            EXPECT_LE(id.size(), 255u);
            EXPECT_TRUE(id.ends_with("#" + std::string(port, 'p'))) << name << " " << port;
            EXPECT_EQ(name + 1 + port <= 255, id.starts_with(std::string(name, 'n') + "#"))
                << name << " " << port;
        }
}

// Nothing else can be done where the port id alone is too long.
TEST(AnId, IsCutBetweenTheCharactersOfAPortIdThatIsTooLong) {
    for (const char *character : {"p", "é", "✓", "🔌"}) {
        std::string port;
        for (std::string start : {"", "x", "xy", "xyz"}) {
            while (start.size() < 252)
                start += character;
            const std::string id = client_ids({neighbor("c", "sw", start)})[0];
            EXPECT_TRUE(yang::is_yang_text(id)) << id;
            EXPECT_EQ(id.size(), 255u);
        }
    }
}

TEST(LongNeighborsOfOneNameAndPort, AreToldApart) {
    for (const size_t port : {1u, 230u, 237u, 238u, 255u})
        for (const size_t name : {1u, 255u}) {
            std::vector<Neighbor> neighbors;
            for (const char *chassis : {"c1", "c2", "c3"})
                neighbors.push_back(neighbor(chassis, std::string(name, 'n'), std::string(port, 'p')));
            const Strings ids = client_ids(neighbors);
            EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), 3u) << name << " " << port;
        }
}

// --- any set of neighbors ---

std::string pick(std::mt19937 &random, const Strings &texts) {
    return texts[random() % texts.size()];
}

std::string many(const std::string &character, int count) {
    std::string text;
    while (count-- > 0)
        text += character;
    return text;
}

std::vector<Neighbor> random_neighbors(std::mt19937 &random) {
    const Strings names = {"",
                           "",
                           "phone",
                           "phone",
                           "sw",
                           "sw#1",
                           "#",
                           "DISABLED",
                           "[DISABLED]",
                           "\x1b[2J",
                           "phone~0123456789abcdef",
                           std::string(255, 'n'),
                           many("é", 125),
                           many("é", 126) + "x",
                           "a\nb",
                           "\u202e"};
    const Strings ports = {"1",
                           "1",
                           "2",
                           "1#1",
                           "#",
                           "\x01",
                           std::string(255, 'p'),
                           many("é", 127),
                           std::string(237, 'p'),
                           std::string(240, 'p')};
    std::vector<Neighbor> neighbors;
    std::set<std::string> taken;
    while (neighbors.size() < 40) {
        Neighbor one =
            neighbor("chassis " + std::to_string(random() % 60), pick(random, names), pick(random, ports));
        one.port_id_octets = one.port_id;
        if (random() % 5 == 0)
            one.port_id_octets += std::string("\0", 1) + static_cast<char>('a' + random() % 3);
        if (taken.insert(lldpd::msap(one)).second)
            neighbors.push_back(one);
    }
    return neighbors;
}

class AnySetOfNeighbors : public testing::TestWithParam<unsigned> {
protected:
    std::mt19937 random{GetParam()};
    const std::vector<Neighbor> neighbors = random_neighbors(random);
    const Strings ids = client_ids(neighbors);

    // The ids by what identifies the neighbors.
    static std::map<std::string, std::string> by_msap(const std::vector<Neighbor> &of) {
        std::map<std::string, std::string> found;
        const Strings made = client_ids(of);
        for (size_t i = 0; i < of.size(); i++)
            found.emplace(lldpd::msap(of[i]), made[i]);
        return found;
    }
};

TEST_P(AnySetOfNeighbors, HasOneIdForEach) {
    EXPECT_EQ(std::set<std::string>(ids.begin(), ids.end()).size(), ids.size());
}

TEST_P(AnySetOfNeighbors, HasIdsThatAreYangText) {
    for (const std::string &id : ids)
        EXPECT_TRUE(yang::is_yang_text(id)) << id;
}

// The part before the first separator is a device id of this port, and of no other neighbor with such a port.
TEST_P(AnySetOfNeighbors, HasIdsThatCanBeTakenApart) {
    const Strings devices = device_ids(neighbors);
    for (size_t i = 0; i < ids.size(); i++) {
        const std::string device = ids[i].substr(0, ids[i].find('#'));
        EXPECT_EQ(device == "DISABLED" ? "[DISABLED]" : device, devices[i]) << ids[i];
    }
}

TEST_P(AnySetOfNeighbors, HasTheSameIdsInAnyOrder) {
    std::vector<Neighbor> shuffled = neighbors;
    for (int round = 0; round < 5; round++) {
        std::shuffle(shuffled.begin(), shuffled.end(), random);
        EXPECT_EQ(by_msap(shuffled), by_msap(neighbors));
    }
}

// As long as another neighbor of the same name and port is there, or none was.
TEST_P(AnySetOfNeighbors, KeepsItsIdsWhenOthersGo) {
    const auto before = by_msap(neighbors);
    for (int round = 0; round < 20; round++) {
        std::vector<Neighbor> left = neighbors;
        std::erase_if(left, [&](const Neighbor &) { return random() % 3 == 0; });
        std::map<std::pair<std::string, std::string>, size_t> bearers, left_bearers;
        const auto names = [](const Neighbor &one) {
            return std::pair(lldpd::clean(one.chassis.name).value_or(""),
                             lldpd::id_text(one.port_id, one.port_id_octets).value_or(""));
        };
        for (const Neighbor &one : neighbors)
            bearers[names(one)]++;
        for (const Neighbor &one : left)
            left_bearers[names(one)]++;
        for (const auto &[msap, id] : by_msap(left)) {
            const auto found = std::find_if(left.begin(), left.end(), [&, key = msap](const Neighbor &one) {
                return lldpd::msap(one) == key;
            });
            const bool is_last = bearers[names(*found)] > 1 && left_bearers[names(*found)] == 1;
            if (!is_last) {
                EXPECT_EQ(id, before.at(msap));
            }
        }
    }
}

// All that a neighbor told is in its own entry, and nothing else.
TEST_P(AnySetOfNeighbors, IsWrittenWithoutMixingTwo) {
    using yang::test::leaves;
    const yang::DataTree whole = lldpd::operational_data(native_modules(), state_of(neighbors));
    EXPECT_EQ(fault_of(whole), "");
    std::multiset<std::string> expected, found;
    const Strings devices = device_ids(neighbors);
    const auto below_neighbor = [](const std::string &line) { return line.substr(line.find("[device-id=")); };
    const auto is_of_neighbor = [](const std::string &line) {
        return line.find("/lldp-neighbor") != std::string::npos;
    };
    const auto without_number = [](std::string line) { // of the entry in its list
        const size_t at = line.find("/lldp-neighbor[");
        return at == std::string::npos ? line : line.erase(at + 14, line.find(']', at) - at - 13);
    };
    for (size_t i = 0; i < neighbors.size(); i++) {
        const auto alone = lldpd::neighbor_data(native_modules(), "eth1", devices[i], neighbors[i]);
        for (const std::string &line : leaves(alone.get()))
            if (is_of_neighbor(line))
                expected.insert(without_number(below_neighbor(line)));
    }
    for (const std::string &line : leaves(whole.get()))
        if (is_of_neighbor(line))
            found.insert(without_number(below_neighbor(line)));
    EXPECT_EQ(found, expected);
}

INSTANTIATE_TEST_SUITE_P(Seeds, AnySetOfNeighbors, testing::Range(1u, 31u));

} // namespace
} // namespace yfw::sources::test
