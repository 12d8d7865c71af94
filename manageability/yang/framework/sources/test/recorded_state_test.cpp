// The recordings of the routers, read as lldpd's state, give the native data of the recorded devices.
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "native_modules.h"
#include "recorded_state.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/neighbor_ids.h"
#include "support/files.h"
#include "yang/test/data_texts.h"

namespace yfw::sources::test {
namespace {

using yang::test::leaves;
using yang::test::Lines;
using yang::test::same;

const std::filesystem::path examples = YFW_EXAMPLES_DIR;

Lines device_file(const std::string &router, const char *name) {
    return leaves(native_data(yfw::test::read_file(examples / router / name)).get());
}

class ARecordedRouter : public testing::TestWithParam<const char *> {
protected:
    const std::string router_ = GetParam();
    const lldpd::State state_ = recorded_state(examples / "recordings", router_);
};

// Replaces the node's name: it is the device's, which a daemon does not know.
Lines with_node_name(Lines lines, const std::string &name) {
    for (std::string &line : lines)
        if (const size_t start = line.find("[node-name='"); start != std::string::npos)
            line.replace(start, line.find(']', start) + 1 - start, "[node-name='" + name + "']");
    return lines;
}

TEST_P(ARecordedRouter, HasTheOperationalDataOfItsDevice) {
    const yang::DataTree data = lldpd::operational_data(native_modules(), state_);
    EXPECT_TRUE(same(with_node_name(leaves(data.get()), router_),
                     with_node_name(device_file(router_, "oper.xml"), router_)));
}

// Except for the per-interface switches, which the recorded devices have and lldpd lacks.
TEST_P(ARecordedRouter, HasTheConfigurationOfItsDevice) {
    const yang::DataTree data = lldpd::configuration_data(native_modules(), state_);
    Lines wanted = device_file(router_, "config.xml");
    for (std::string &leaf : wanted)
        if (const size_t lldp = leaf.find("/Tarvo-QD-ethernet-lldp-cfg:lldp/enable=true");
            lldp != std::string::npos)
            leaf.resize(lldp); // keeps the interface's entry
    EXPECT_TRUE(same(leaves(data.get()), wanted));
}

TEST_P(ARecordedRouter, IsOneNode) {
    EXPECT_EQ(operational_values(state_, "/nodes/node/node-name").size(), 1U);
}

TEST_P(ARecordedRouter, IsValidData) {
    EXPECT_EQ(fault_of(lldpd::operational_data(native_modules(), state_)), "");
    EXPECT_EQ(fault_of(lldpd::configuration_data(native_modules(), state_)), "");
}

// A change of one neighbor is reported with the same data as a read of everything gives it.
TEST_P(ARecordedRouter, HasNeighborsWhoseDataAloneIsThatOfTheWhole) {
    const Lines whole = with_node_name(leaves(lldpd::operational_data(native_modules(), state_).get()), "n");
    size_t compared = 0;
    for (const lldpd::Port &port : state_.ports)
        for (const lldpd::Neighbor &neighbor : port.neighbors) {
            const yang::DataTree alone =
                lldpd::neighbor_data(native_modules(), port.name, lldpd::device_id(neighbor), neighbor);
            for (const std::string &line : with_node_name(leaves(alone.get()), "n")) {
                EXPECT_NE(std::find(whole.begin(), whole.end(), line), whole.end()) << line;
                compared++;
            }
        }
    EXPECT_GT(compared, 10U);
}

INSTANTIATE_TEST_SUITE_P(Named, ARecordedRouter, testing::Values("r1", "r2", "r3", "r4"),
                         [](const auto &router) { return std::string(router.param); });

} // namespace
} // namespace yfw::sources::test
