// What is left of a laboratory when its creation is killed or fails, or its daemons die, at any moment.
#include <csignal>

#include <gmock/gmock.h>

#include "base/error.h"
#include "lab/lab.h"
#include "lab/test/lab_program.h"

namespace yfw::lab::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char *with_a_segment = R"({
  "routers": [{"name": "a"}, {"name": "b"}],
  "links": [["a:eth1", "b:eth1"]],
  "segments": [{"name": "lan", "ports": ["a:eth2", "b:eth2"]}]})";

// The steps that `up` announces: three namespaces, a link, a segment, two daemons, two waits, the ports.
constexpr size_t steps = 10;

// Killed at the beginning of a step, or right after its start.
class AnUpThatIsKilled : public LabTest, public testing::WithParamInterface<size_t> {
protected:
    void kill_up() {
        RunningProgram up(words("up", {"--topology", topology_file(with_a_segment)}));
        ASSERT_TRUE(up.says_lines(GetParam())) << up.errors();
        up.signal(SIGKILL);
        ASSERT_EQ(up.wait(), 128 + SIGKILL) << up.errors();
    }
};

TEST_P(AnUpThatIsKilled, leaves_nothing_that_down_does_not_remove) {
    ASSERT_NO_FATAL_FAILURE(kill_up());
    const auto outcome = lab("down");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(eventually([&] { return left_over().empty(); }, std::chrono::seconds(10)));
    EXPECT_THAT(left_over(), IsEmpty());
}

TEST_P(AnUpThatIsKilled, can_be_done_again) {
    ASSERT_NO_FATAL_FAILURE(kill_up());
    const auto outcome = lab("up", {"--topology", topology_file(with_a_segment), "--tx-interval", "1"});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(status().at("state"), "up");
    EXPECT_TRUE(eventually([&] { return names_heard("a", "eth2").size() == 1; }));
    EXPECT_EQ(lab("down").status, 0);
    EXPECT_THAT(left_over(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(after_line, AnUpThatIsKilled, testing::Range<size_t>(0, steps));

class AnUpThatIsInterrupted : public LabTest, public testing::WithParamInterface<std::pair<int, size_t>> {};

TEST_P(AnUpThatIsInterrupted, removes_what_it_made) {
    const auto [signal, line] = GetParam();
    RunningProgram up(words("up", {"--topology", topology_file(with_a_segment)}));
    ASSERT_TRUE(up.says_lines(line)) << up.errors();
    up.signal(signal);
    EXPECT_EQ(up.wait(), 1) << up.errors();
    EXPECT_THAT(up.errors(), HasSubstr("yfw: interrupted\n"));
    EXPECT_THAT(left_over(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(by, AnUpThatIsInterrupted,
                         testing::Values(std::pair(SIGINT, size_t{1}), std::pair(SIGINT, size_t{5}),
                                         std::pair(SIGTERM, size_t{4}), std::pair(SIGHUP, size_t{6})));

class AFailingUp : public LabTest {};

TEST_F(AFailingUp, removes_what_it_made_and_says_why) {
    // Two spellings of the same address: adding the second fails.
    const auto outcome = lab("up", {"--topology", topology_file(R"({
        "routers": [{"name": "a", "addresses": {"eth1": ["2001:db8::1/64", "2001:DB8::1/64"]}}, {"name": "b"}],
        "links": [["a:eth1", "b:eth1"]]})")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("yfw: ip -n " + place().name + "-a address add 2001:DB8::1/64"));
    EXPECT_THAT(left_over(), IsEmpty());
}

class AHalfMadeLaboratory : public LabTest {};

TEST_F(AHalfMadeLaboratory, is_told_as_such) {
    {
        RunningProgram up(words("up", {"--topology", topology_file(with_a_segment)}));
        ASSERT_TRUE(up.says_lines(5)) << up.errors();
        up.signal(SIGKILL);
        up.wait();
    }
    EXPECT_EQ(status().at("state"), "incomplete");
    EXPECT_THAT(lab("status").output, HasSubstr("yfw lab down removes"));
    EXPECT_THROW(running_lab(place().name, place().base), Error);
}

} // namespace
} // namespace yfw::lab::test
