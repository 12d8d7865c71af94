// Interfaces of a running lldpd that vanish while it is read.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sources/lldpd/connection.h"
#include "sources/lldpd/reader.h"
#include "sources/lldpd/settings_writer.h"
#include "support/eventually.h"
#include "two_routers.h"

namespace yfw::sources::test {
namespace {

using yfw::test::eventually;

class APortThatVanishes : public TwoRouters {
protected:
    static bool has_port(const std::string &name) {
        return lldpd::read_port_statuses(lldpd::Connection(lab().socket("a"))).contains(name);
    }
};

TEST_F(APortThatVanishes, AfterThePortsWereListedIsLeftOut) {
    lab().ip("a", {"link", "add", "eth8", "type", "veth", "peer", "name", "eth9"});
    for (const char *name : {"eth8", "eth9"})
        lab().ip("a", {"link", "set", name, "up"});
    ASSERT_TRUE(eventually([] { return has_port("eth8") && has_port("eth9"); }));
    std::vector<std::string> visited;
    lldpd::for_each_port(lldpd::Connection(lab().socket("a")), [&](const std::string &name, lldpctl_atom_t *) {
        if (visited.empty()) {
            lab().ip("a", {"link", "delete", "eth8"});
            EXPECT_TRUE(eventually([] { return !has_port("eth8") && !has_port("eth9"); }));
        }
        visited.push_back(name);
    });
    EXPECT_THAT(visited, testing::IsSupersetOf({"eth1", "eth2"}));
    EXPECT_THAT(visited, testing::Not(testing::IsSupersetOf({"eth8", "eth9"})));
}

} // namespace
} // namespace yfw::sources::test
