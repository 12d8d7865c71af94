// A running lldpd with a neighbor, and native configurations for it.
#ifndef YFW_SOURCES_TEST_TWO_ROUTERS_H
#define YFW_SOURCES_TEST_TWO_ROUTERS_H

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "sources/lldpd/lldpd_source.h"
#include "support/lab.h"

namespace yfw::sources::test {

// A native configuration: the global LLDP settings, and those of one interface.
std::string with_interface(const std::string &global, const std::string &name, const std::string &lldp);

// Two routers, a and b, with two cables. One laboratory for the tests of a suite; a is put back to LLDP
// everywhere after each test. Skips its tests where no laboratory can be made, or fails them where one is
// required.
class TwoRouters : public testing::Test {
protected:
    static void TearDownTestSuite() { lab_.reset(); }
    void SetUp() override;
    void TearDown() override;

    static yfw::test::Laboratory &lab() { return *lab_; }

    static lldpd::LldpdSource device() { return lldpd::LldpdSource(lab_->socket("a")); }
    static void check(const std::string &before, const std::string &after);
    static void apply(const std::string &before, const std::string &after);
    static void restore(const std::string &configuration);

    // Runs lldpcli on a, behind the program's back.
    static void lldpcli(std::vector<std::string> words);

    // What lldpcli says of an interface of a.
    static std::string status(const std::string &interface);
    // What lldpcli says of a setting of a, "(none)" for a text that is not set.
    static std::string setting(const std::string &name);
    // What b hears of a on eth1: "KIND ID, NAME, DESCRIPTION".
    static std::string chassis_heard();
    static bool hears(const std::string &router, const std::string &interface);

private:
    static std::unique_ptr<yfw::test::Laboratory> lab_;
};

} // namespace yfw::sources::test

#endif
