#include "platform/trace_buffer.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "yfw_map.h"

namespace yfw::platform {
namespace {

struct RingCase {
    const char *name;
    std::size_t capacity;
    std::size_t appended;
    std::vector<std::string> kept;
};

class ATraceBuffer : public testing::TestWithParam<RingCase> {};

TEST_P(ATraceBuffer, KeepsTheNewestLinesInOrder) {
    TraceBuffer buffer(GetParam().capacity);
    for (std::size_t i = 1; i <= GetParam().appended; ++i) {
        _lstrace(&buffer, YFW_LTRACE_WORD, std::to_string(i).c_str());
    }
    EXPECT_EQ(buffer.snapshot(), GetParam().kept);
    EXPECT_EQ(buffer.written(), GetParam().appended);
}

INSTANTIATE_TEST_SUITE_P(Fillings, ATraceBuffer,
                         testing::Values(RingCase{"Empty", 3, 0, {}},
                                         RingCase{"PartlyFilled", 3, 2, {"1", "2"}},
                                         RingCase{"JustFull", 3, 3, {"1", "2", "3"}},
                                         RingCase{"OneOver", 3, 4, {"2", "3", "4"}},
                                         RingCase{"RoundSeveralTimes", 3, 10, {"8", "9", "10"}},
                                         RingCase{"OfOneLine", 1, 5, {"5"}}, RingCase{"OfNoLines", 0, 5, {}}),
                         [](const auto &test_case) { return test_case.param.name; });

TEST(TraceBuffer, StartsAnewAfterAClear) {
    TraceBuffer buffer(2);
    for (const char *line : {"1", "2", "3"}) {
        buffer.append(line);
    }
    buffer.clear();
    EXPECT_TRUE(buffer.snapshot().empty());
    buffer.append("4");
    EXPECT_EQ(buffer.snapshot(), std::vector<std::string>{"4"});
    EXPECT_EQ(buffer.written(), 1U);
    EXPECT_EQ(buffer.capacity(), 2U);
}

TEST(TraceBuffer, KeepsItsOwnCopyOfALine) {
    TraceBuffer buffer(2);
    char line[] = "#1: TRC: Start";
    _lstrace(&buffer, YFW_LTRACE_WORD, line);
    line[0] = '?';
    EXPECT_EQ(buffer.snapshot(), std::vector<std::string>{"#1: TRC: Start"});
}

TEST(TraceBuffer, IsKeptApartFromOthersByTheHandle) {
    TraceBuffer one(2);
    TraceBuffer other(2);
    _lstrace(&one, YFW_LTRACE_WORD, "line");
    EXPECT_EQ(one.written(), 1U);
    EXPECT_EQ(other.written(), 0U);
}

TEST(TraceBuffer, TakesNoLineWithoutHandleOrText) {
    TraceBuffer buffer(2);
    _lstrace(nullptr, YFW_LTRACE_WORD, "lost");
    _lstrace(&buffer, YFW_LTRACE_WORD, nullptr);
    EXPECT_EQ(buffer.written(), 0U);
}

TEST(TraceNumbers, RunOnThroughTheProcess) {
    const std::uint32_t first = ret_nc_yfw_trace_index_incr();
    EXPECT_EQ(ret_nc_yfw_trace_index_incr(), first + 1);
    EXPECT_EQ(ret_nc_yfw_trace_index_incr(), first + 2);
}

} // namespace
} // namespace yfw::platform
