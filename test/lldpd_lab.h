// One laboratory for all tests of a program, which undo their changes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/answers.h"
#include "support/lab.h"

namespace yfw::test {

/// The four routers of the recorded devices. Where no laboratory can be created, its tests are skipped, or fail
/// if one is required.
class LldpdLab : public testing::Test {
protected:
    static void TearDownTestSuite() { lab_.reset(); }
    void SetUp() override;
    void TearDown() override;

    static Laboratory &lab() { return *lab_; }
    /// Runs the program on a router's daemon: {"set", PATH, VALUE} and so on.
    static Outcome yfw(const std::string &router, std::vector<std::string> words);
    /// The same, but must succeed. After the test, the router is rolled back to its first configuration.
    void edit(const std::string &router, const std::vector<std::string> &words);
    /// For changes by other means than edit(): the same happens to the router.
    void roll_back_at_the_end(const std::string &router) { edited_.push_back(router); }
    /// The program's answer to `get`, strictly parsed with the modules.
    Tree get(const std::string &router, const std::vector<std::string> &words) const;
    /// The numbers of the commits, as `yfw history` prints them.
    static std::string history(const std::string &router) { return yfw(router, {"history"}).output; }
    static std::string setting(const std::string &router, const std::string &name);

    /// Whether every router hears all the neighbors that it is connected to.
    static bool all_hear_each_other();

private:
    static std::unique_ptr<Laboratory> lab_;
    Context modules_;
    std::vector<std::string> edited_;
};

} // namespace yfw::test
