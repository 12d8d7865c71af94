#include "platform/debug_log.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "yfw_map.h"

namespace yfw::platform {
namespace {

// Stands in for a context; only its address is logged.
int context_object;
void *const context = &context_object;

std::string address_of_context() {
    char text[32];
    std::snprintf(text, sizeof text, "%p", context);
    return text;
}

class DebugLog : public testing::Test {
protected:
    using Line = std::pair<LogChannel, std::string>;
    std::vector<Line> lines;

    void SetUp() override {
        set_log_sink([this](LogChannel channel, std::string_view line) { lines.emplace_back(channel, line); });
    }
    void TearDown() override { set_log_sink({}); }

    template <class... Arguments> void log(const char *format, Arguments... arguments) {
        static std::int32_t slot = -1;
        _qdos_dt_log_filter_adv(trace_log_handle(), 0, 0, 0, 0, 0, &slot, format, context, arguments...);
    }

    std::string only_line() const { return lines.size() == 1 ? lines.front().second : "not one line"; }
};

TEST_F(DebugLog, FormatsALineWithItsArguments) {
    log("TRC: YFW: ctx=%p,dev_id %s dev_id_in %s count %d", "Eth1", "r2", 7);
    EXPECT_EQ(only_line(), "TRC: YFW: ctx=" + address_of_context() + ",dev_id Eth1 dev_id_in r2 count 7");
}

TEST_F(DebugLog, TellsTheChannelByTheHandle) {
    std::int32_t slot = -1;
    for (void *handle : {error_log_handle(), trace_log_handle(), static_cast<void *>(nullptr)}) {
        _qdos_dt_log_filter_adv(handle, 0, 0, 0, 0, 0, &slot, "ERR: YFW: ctx=%p,x", nullptr);
    }
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].first, LogChannel::error);
    EXPECT_EQ(lines[1].first, LogChannel::trace);
    EXPECT_EQ(lines[2].first, LogChannel::trace);
}

TEST_F(DebugLog, KeepsLinesOfEveryLength) {
    for (const std::size_t length : {0U, 1U, 400U, 511U, 512U, 513U, 5000U, 1000000U}) {
        lines.clear();
        const std::string text(length, 'x');
        log("ctx=%p,%s", text.c_str());
        EXPECT_EQ(only_line(), "ctx=" + address_of_context() + "," + text);
    }
}

TEST_F(DebugLog, ShowsAMissingTextAsNull) {
    const char *missing = nullptr;
    log("TRC: YFW: ctx=%p,tag:%s", missing);
    EXPECT_EQ(only_line(), "TRC: YFW: ctx=" + address_of_context() + ",tag:(null)");
}

TEST_F(DebugLog, KeepsTheNewlineOfAText) {
    log("TRC: YFW: ctx=%p,imc_interface_find failed for int : %s\n", "eth9");
    EXPECT_TRUE(only_line().ends_with(",imc_interface_find failed for int : eth9\n"));
}

TEST_F(DebugLog, TakesPercentSignsOfArgumentsAsText) {
    log("ctx=%p,%s", "%s%n%d{}");
    EXPECT_TRUE(only_line().ends_with(",%s%n%d{}"));
}

TEST_F(DebugLog, SurvivesASinkThatThrows) {
    set_log_sink([](LogChannel, std::string_view) { throw std::runtime_error("disk full"); });
    EXPECT_NO_THROW(log("ctx=%p"));
}

TEST_F(DebugLog, LetsASinkReplaceItself) {
    set_log_sink([this](LogChannel, std::string_view) {
        set_log_sink([this](LogChannel channel, std::string_view line) { lines.emplace_back(channel, line); });
    });
    log("ctx=%p,first");
    log("ctx=%p,second");
    EXPECT_TRUE(only_line().ends_with(",second"));
}

TEST_F(DebugLog, ReturnsTheSinkBefore) {
    const LogSink own = set_log_sink({});
    ASSERT_TRUE(own);
    own(LogChannel::error, "by hand");
    EXPECT_EQ(only_line(), "by hand");
    EXPECT_FALSE(set_log_sink(own));
}

TEST_F(DebugLog, WritesToStandardErrorByDefault) {
    set_log_sink({});
    testing::internal::CaptureStderr();
    log("ctx=%p,first {} %s", "%v");
    log("ctx=%p,second\n");
    const std::string start = "ctx=" + address_of_context();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), start + ",first {} %v\n" + start + ",second\n");
}

TEST_F(DebugLog, IgnoresALineWithoutFormat) {
    std::int32_t slot = -1;
    _qdos_dt_log_filter_adv(trace_log_handle(), 0, 0, 0, 0, 0, &slot, nullptr);
    EXPECT_TRUE(lines.empty());
}

TEST_F(DebugLog, GivesEachCallSiteANumberOfItsOwn) {
    std::int32_t sites[] = {-1, -1};
    const std::int32_t before = registered_log_sites();
    for (std::int32_t *site : {&sites[0], &sites[1], &sites[0]}) {
        _qdos_dt_log_filter_adv(trace_log_handle(), 0, 0, 0, 0, 0, site, "ctx=%p", context);
    }
    EXPECT_EQ(sites[0], before);
    EXPECT_EQ(sites[1], before + 1);
    EXPECT_EQ(registered_log_sites(), before + 2);
}

TEST_F(DebugLog, NeedsNoSlot) {
    _qdos_dt_log_filter_adv(trace_log_handle(), 0, 0, 0, 0, 0, nullptr, "ctx=%p", context);
    EXPECT_EQ(lines.size(), 1U);
}

struct LevelCase {
    std::uint32_t mask;
    int level;
    bool allowed;
};

class ALogLevel : public testing::TestWithParam<LevelCase> {};

TEST_P(ALogLevel, IsAllowedByItsBit) {
    const yfw_debug_filter filter{GetParam().mask};
    EXPECT_EQ(yfw_debug_should_log(&filter, GetParam().level) != 0, GetParam().allowed);
}

INSTANTIATE_TEST_SUITE_P(
    Masks, ALogLevel,
    testing::Values(LevelCase{0x0, YFW_LOG_ERROR, false}, LevelCase{0x0, YFW_LOG_TRACE, false},
                    LevelCase{0x1, YFW_LOG_ERROR, true}, LevelCase{0x1, YFW_LOG_TRACE, false},
                    LevelCase{0x8, YFW_LOG_ERROR, false}, LevelCase{0x8, YFW_LOG_TRACE, true},
                    LevelCase{0x9, YFW_LOG_TRACE, true}, LevelCase{0x80000000, 31, true},
                    LevelCase{0xffffffff, 32, false}, LevelCase{0xffffffff, -1, false}));

TEST(LogLevels, AreAllClosedWithoutAFilter) {
    EXPECT_EQ(yfw_debug_should_log(nullptr, YFW_LOG_ERROR), 0);
}

} // namespace
} // namespace yfw::platform
