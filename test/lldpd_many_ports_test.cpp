// A router with two hundred interfaces.
#include <string>

#include <gtest/gtest.h>

#include "support/answers.h"
#include "support/eventually.h"
#include "support/lab.h"

namespace yfw::test {
namespace {

constexpr int ports = 200;

std::string interface(int number) {
    return "eth" + std::to_string(number);
}

std::string two_routers() {
    nlohmann::json links = nlohmann::json::array();
    for (int number = 1; number <= ports; number++)
        links.push_back({"a:" + interface(number), "b:" + interface(number)});
    return nlohmann::json{{"routers", {{{"name", "a"}}, {{"name", "b"}}}}, {"links", links}}.dump();
}

class ARouterWithTwoHundredInterfaces : public testing::Test {
protected:
    void SetUp() override {
        const std::string obstacle = lab_obstacle();
        if (!obstacle.empty() && lab_is_required())
            FAIL() << obstacle;
        if (!obstacle.empty())
            GTEST_SKIP() << obstacle;
        lab_ = std::make_unique<Laboratory>(two_routers());
    }

    // The neighbors' ids in the program's answer, interface by interface.
    std::string read() const {
        const Outcome outcome =
            run_yfw({{"get", "/lldp/interfaces/interface/neighbors/neighbor/state/id", "--device",
                      lab_->device("a"), "--store", (lab_->directory() / "a.db").string()}});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return outcome.output;
    }

    std::unique_ptr<Laboratory> lab_;
};

TEST_F(ARouterWithTwoHundredInterfaces, IsReadWithTheNeighborOfEachInOneGet) {
    const auto heard = [&] {
        const auto told = lab_->ask("a", {"neighbors"});
        const nlohmann::json::json_pointer list("/lldp/0/interface");
        return told.contains(list) ? told.at(list).size() : 0;
    };
    ASSERT_TRUE(eventually([&] { return heard() == ports; }, std::chrono::seconds(40))) << heard();
    const auto answer = nlohmann::json::parse(read());
    const auto &interfaces = answer.at("/openconfig-lldp:lldp/interfaces/interface"_json_pointer);
    ASSERT_EQ(interfaces.size(), static_cast<size_t>(ports));
    for (const auto &entry : interfaces) {
        const std::string name = entry.at("name");
        ASSERT_EQ(entry.at("/neighbors/neighbor"_json_pointer).size(), 1U) << name;
        const std::string id = entry.at("/neighbors/neighbor/0/state/id"_json_pointer);
        EXPECT_TRUE(id.ends_with("#" + name)) << id;
    }
}

} // namespace
} // namespace yfw::test
