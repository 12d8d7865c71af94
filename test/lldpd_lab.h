// One laboratory for all tests of a program, which put back what they changed.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/answers.h"
#include "support/lab.h"

namespace yfw::test {

/// The four routers of the recorded devices. Skips its tests where no laboratory can be made, or fails them
/// where one is required.
class LldpdLab : public testing::Test {
protected:
    static void TearDownTestSuite() { lab_.reset(); }
    void SetUp() override;
    void TearDown() override;

    static Laboratory &lab() { return *lab_; }
    /// The program on a router: {"set", PATH, VALUE} and so on.
    static Outcome yfw(const std::string &router, std::vector<std::string> words);
    /// The same, which has to succeed. The router is put back to its first configuration after the test.
    void edit(const std::string &router, const std::vector<std::string> &words);
    /// What the program answers, strictly parsed with the modules.
    Tree get(const std::string &router, const std::vector<std::string> &words) const;
    /// The numbers of the commits, as `yfw history` prints them.
    static std::string history(const std::string &router) { return yfw(router, {"history"}).output; }
    static std::string setting(const std::string &router, const std::string &name);

    /// Whether everybody hears whom he is connected to.
    static bool all_hear_each_other();

private:
    static std::unique_ptr<Laboratory> lab_;
    Context modules_;
    std::vector<std::string> edited_;
};

} // namespace yfw::test
