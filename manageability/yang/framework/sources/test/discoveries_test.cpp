// How long neighbors have been known.
#include "sources/lldpd/discoveries.h"

#include <gtest/gtest.h>

#include "native_modules.h"

namespace yfw::sources::test {
namespace {

using lldpd::Discoveries;
using lldpd::Neighbor;
using lldpd::Port;

// Its announcement last changed at that moment, as seen at another.
Neighbor changed(uint64_t at, uint64_t seen_at, const std::string &port = "eth7") {
    Neighbor neighbor = neighbor_named("sw1", port);
    neighbor.changed_at = at;
    neighbor.last_update = seen_at - at;
    return neighbor;
}

std::vector<Port> on_eth1(std::vector<Neighbor> neighbors) {
    return {{"eth1", {}, {}, std::move(neighbors)}};
}

TEST(ANeighborsAge, IsTheTimeSinceItsLastUpdateWhenItWasNotKnownBefore) {
    Discoveries discoveries;
    auto ports = on_eth1({changed(1000, 1030)});
    discoveries.date(ports);
    EXPECT_EQ(ports[0].neighbors[0].age, 30u);
    EXPECT_EQ(ports[0].neighbors[0].last_update, 30u);
}

TEST(ANeighborsAge, GoesOnWhenItsAnnouncementChanges) {
    Discoveries discoveries;
    auto first = on_eth1({changed(1000, 1030)});
    discoveries.date(first);
    auto second = on_eth1({changed(1040, 1050)});
    discoveries.date(second);
    EXPECT_EQ(second[0].neighbors[0].age, 50u);
    EXPECT_EQ(second[0].neighbors[0].last_update, 10u);
    Neighbor third = changed(1060, 1100);
    discoveries.date("eth1", third);
    EXPECT_EQ(third.age, 100u);
}

TEST(ANeighborsAge, BeginsAgainWhenItWasGone) {
    Discoveries discoveries;
    auto first = on_eth1({changed(1000, 1030)}), none = on_eth1({});
    discoveries.date(first);
    discoveries.date(none);
    Neighbor back = changed(1200, 1201);
    discoveries.date("eth1", back);
    EXPECT_EQ(back.age, 1u);
    discoveries.forget("eth1", back);
    Neighbor again = changed(1300, 1305);
    discoveries.date("eth1", again);
    EXPECT_EQ(again.age, 5u);
}

TEST(ANeighborsAge, IsThatOfThisNeighborOnThisInterface) {
    Discoveries discoveries;
    auto first = on_eth1({changed(1000, 1030)});
    discoveries.date(first);
    Neighbor other_port = changed(1040, 1050, "eth8"), elsewhere = changed(1040, 1050);
    discoveries.date("eth1", other_port);
    discoveries.date("eth2", elsewhere);
    EXPECT_EQ(other_port.age, 10u);
    EXPECT_EQ(elsewhere.age, 10u);
}

TEST(ANeighborsAge, IsUnknownWhereTheDaemonTellsNoTime) {
    Discoveries discoveries;
    auto ports = on_eth1({neighbor_named("sw1")});
    discoveries.date(ports);
    discoveries.date("eth1", ports[0].neighbors[0]);
    EXPECT_EQ(ports[0].neighbors[0].age, std::nullopt);
}

} // namespace
} // namespace yfw::sources::test
