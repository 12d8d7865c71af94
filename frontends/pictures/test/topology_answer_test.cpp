// What the picture of a network takes from an OpenConfig answer.
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "frontends/pictures/topology_answer.h"
#include "yang/test/test_schemas.h"

namespace yfw::pictures {
namespace {

class TopologyAnswer : public testing::Test {
protected:
    Report read(const std::string &json) {
        lyd_node *data = nullptr;
        const LY_ERR status = lyd_parse_data_mem(schemas_.context(), json.c_str(), LYD_JSON,
                                                 LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0, &data);
        const yang::DataTree answer(data);
        EXPECT_EQ(status, LY_SUCCESS) << yang::take_yang_error(schemas_.context());
        return read_answer("devices/r1", answer.get());
    }

private:
    yang::Schemas schemas_{YFW_MODELS_DIR, YFW_MODELS_DIR, yang::test::models()};
};

TEST_F(TopologyAnswer, is_taken_from_state_and_not_from_configuration) {
    const Report report = read(R"({"openconfig-lldp:lldp": {
        "config": {"system-name": "configured", "chassis-id": "cc"},
        "state": {"system-name": "r1", "chassis-id": "aa"}}})");
    EXPECT_EQ(report.place, "devices/r1");
    EXPECT_EQ(report.system_name, "r1");
    EXPECT_EQ(report.chassis_id, "aa");
    EXPECT_TRUE(report.interfaces.empty());
}

TEST_F(TopologyAnswer, holds_every_neighbor_of_every_interface) {
    const Report report = read(R"({"openconfig-lldp:lldp": {"interfaces": {"interface": [
        {"name": "eth1", "state": {"name": "eth1"}},
        {"name": "eth3", "neighbors": {"neighbor": [
            {"id": "r2#eth3", "state": {"id": "r2#eth3", "system-name": "r2", "chassis-id": "bb",
                                        "port-id": "52:54:00:00:00:01", "port-description": "eth3"}},
            {"id": "x#y"}]}}]}}})");
    ASSERT_EQ(report.interfaces.size(), 2U);
    EXPECT_EQ(report.interfaces[0].name, "eth1");
    EXPECT_TRUE(report.interfaces[0].neighbors.empty());
    EXPECT_EQ(report.interfaces[1].name, "eth3");
    ASSERT_EQ(report.interfaces[1].neighbors.size(), 2U);
    const Neighbor &full = report.interfaces[1].neighbors[0], &bare = report.interfaces[1].neighbors[1];
    EXPECT_EQ(full.id, "r2#eth3");
    EXPECT_EQ(full.system_name, "r2");
    EXPECT_EQ(full.chassis_id, "bb");
    EXPECT_EQ(full.port_id, "52:54:00:00:00:01");
    EXPECT_EQ(full.port_description, "eth3");
    EXPECT_EQ(bare.id, "x#y");
    EXPECT_EQ(bare.system_name + bare.chassis_id + bare.port_id + bare.port_description, "");
}

TEST_F(TopologyAnswer, without_data_says_nothing) {
    const Report report = read_answer("devices/none", nullptr);
    EXPECT_EQ(report.place, "devices/none");
    EXPECT_EQ(report.system_name + report.chassis_id, "");
    EXPECT_TRUE(report.interfaces.empty());
}

} // namespace
} // namespace yfw::pictures
