#include "lldpd_lab.h"
#include "support/eventually.h"

#include <stdexcept>

namespace yfw::test {

std::unique_ptr<Laboratory> LldpdLab::lab_;

void LldpdLab::SetUp() {
    const std::string obstacle = lab_obstacle();
    if (!obstacle.empty() && lab_is_required())
        FAIL() << obstacle;
    if (!obstacle.empty())
        GTEST_SKIP() << obstacle;
    // Not in SetUpTestSuite: if that fails, the tests count as skipped.
    if (lab_ == nullptr)
        lab_ = std::make_unique<Laboratory>();
    modules_ = openconfig_modules();
    ASSERT_TRUE(eventually(all_hear_each_other)) << "the routers do not hear each other";
}

void LldpdLab::TearDown() {
    for (const std::string &router : edited_) {
        const Outcome outcome = yfw(router, {"rollback", "0"});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
    }
}

Outcome LldpdLab::yfw(const std::string &router, std::vector<std::string> words) {
    words.insert(words.begin() + 1, {"--device", lab_->device(router)});
    return run_yfw({.arguments = std::move(words)});
}

void LldpdLab::edit(const std::string &router, const std::vector<std::string> &words) {
    edited_.push_back(router);
    const Outcome outcome = yfw(router, words);
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
}

Tree LldpdLab::get(const std::string &router, const std::vector<std::string> &words) const {
    std::vector<std::string> all{"get"};
    all.insert(all.end(), words.begin(), words.end());
    const Outcome outcome = yfw(router, all);
    if (outcome.status != 0)
        throw std::runtime_error("get on " + router + ": " + outcome.errors);
    return parse_printed(modules_.get(), Format::json, outcome.output);
}

std::string LldpdLab::setting(const std::string &router, const std::string &name) {
    const nlohmann::json told = lab_->ask(router, {"configuration"});
    return told.at("/configuration/0/config/0"_json_pointer).at(name).at("/0/value"_json_pointer);
}

bool LldpdLab::all_hear_each_other() {
    struct Wire {
        const char *router, *interface;
        std::vector<std::string> heard;
    };
    static const std::vector<Wire> wires{{"r1", "eth1", {"r2.example.net"}},
                                         {"r1", "eth2", {"r3.example.net"}},
                                         {"r1", "eth3", {"r2.example.net", "r4.example.net"}},
                                         {"r2", "eth1", {"r1.example.net"}},
                                         {"r2", "eth2", {"r3.example.net"}},
                                         {"r2", "eth3", {"r1.example.net", "r4.example.net"}},
                                         {"r3", "eth1", {"r1.example.net"}},
                                         {"r3", "eth2", {"r2.example.net"}},
                                         {"r4", "eth3", {"r1.example.net", "r2.example.net"}}};
    for (const Wire &wire : wires)
        if (lab_->names_heard(wire.router, wire.interface) != wire.heard)
            return false;
    return true;
}

} // namespace yfw::test
