// The ring of conversion results, identity spelling both ways, and timestamps.
#include <gmock/gmock.h>

#include <cstdlib>
#include <cstring>
#include <ctime>

#include "oclldp_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// ---- the ring --------------------------------------------------------------------------------------

class Ring : public OclldpTest {
protected:
    char *take() {
        char *slot = nullptr;
        status = plugin->symbol<decltype(oc_lldp_string_buffer_get)>("oc_lldp_string_buffer_get")(&slot);
        return slot;
    }
    char *timestamp(uint32_t seconds) {
        return plugin->symbol<decltype(oclldp_convert_seconds_to_timestamp)>(
            "oclldp_convert_seconds_to_timestamp")(seconds);
    }
    char *to_openconfig(const tidl_yfw_datatree *in) {
        return plugin->symbol<decltype(qd2oc_lldp_str)>("qd2oc_lldp_str")(context, in, &output);
    }
    char *to_native(const tidl_yfw_datatree *in) {
        return plugin->symbol<decltype(oc2qd_lldp_str)>("oc2qd_lldp_str")(context, in, &output);
    }

    Context context{YMAP_REQ_GET};
    terrno status = 0;
};

TEST_F(Ring, HandsOutSixtyFourEmptySlotsInOrderAndThenTheFirstAgain) {
    std::memset(plugin->ring(), 'x', 16384);
    for (int round = 0; round < 130; ++round) {
        SCOPED_TRACE(round);
        char *slot = take();
        EXPECT_EQ(status, YMAP_OK);
        ASSERT_EQ(slot, plugin->ring() + (round % 64) * 256);
        EXPECT_EQ(*slot, '\0');
        EXPECT_EQ(plugin->ring_index(), (round + 1) % 64);
        *slot = 'x';
    }
}

TEST_F(Ring, TheSixtyFifthTextIsSeenThroughTheFirstPointer) {
    Tree old_value(leaf("type", "local"));
    const char *first = to_openconfig(old_value);
    EXPECT_STREQ(first, "LOCAL");
    for (int index = 0; index < 63; ++index)
        to_openconfig(old_value);
    EXPECT_STREQ(first, "LOCAL");
    Tree new_value(leaf("type", "mac-address"));
    EXPECT_EQ(to_openconfig(new_value), first);
    EXPECT_STREQ(first, "MAC_ADDRESS");
}

TEST_F(Ring, IsSharedByAllThatTakeASlot) {
    Tree native(leaf("type", "local"));
    Tree openconfig(leaf("type", "LOCAL"));
    EXPECT_EQ(take(), plugin->ring());
    EXPECT_EQ(to_openconfig(native), plugin->ring() + 256);
    EXPECT_EQ(to_native(openconfig), plugin->ring() + 512);
    EXPECT_EQ(timestamp(1), plugin->ring() + 768);
    EXPECT_EQ(plugin->ring_index(), 4);
}

class CorruptedIndex : public Ring, public ::testing::WithParamInterface<int32_t> {
protected:
    CorruptedIndex() { plugin->ring_index() = GetParam(); }
    ~CorruptedIndex() override { EXPECT_EQ(plugin->ring_index(), 0); }
};

TEST_P(CorruptedIndex, GivesNoSlotAndStartsOver) {
    char *slot = plugin->ring();
    EXPECT_EQ(plugin->symbol<decltype(oc_lldp_string_buffer_get)>("oc_lldp_string_buffer_get")(&slot),
              YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(slot, nullptr);
}

TEST_P(CorruptedIndex, GivesNoTimestamp) {
    EXPECT_EQ(timestamp(5), nullptr);
}

TEST_P(CorruptedIndex, GivesNoOpenConfigSpelling) {
    Tree in(leaf("type", "local"));
    EXPECT_EQ(to_openconfig(in), nullptr);
}

TEST_P(CorruptedIndex, GivesNoNativeSpelling) {
    Tree in(leaf("type", "LOCAL"));
    EXPECT_EQ(to_native(in), nullptr);
}

INSTANTIATE_TEST_SUITE_P(FromSixtyFourOn, CorruptedIndex, ::testing::Values(64, 65, 1000, INT32_MAX));

// ---- spelling --------------------------------------------------------------------------------------

struct Spelling {
    std::string from;
    std::optional<std::string> to; // none: rejected
};

void PrintTo(const Spelling &spelling, std::ostream *stream) {
    *stream << spelling.from.substr(0, 40);
}

std::optional<std::string> as_text(const char *text) {
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

class OpenConfigSpelling : public Ring, public ::testing::WithParamInterface<Spelling> {};

TEST_P(OpenConfigSpelling, IsUpperCaseWithUnderscores) {
    Tree in(leaf("type", GetParam().from));
    EXPECT_EQ(as_text(to_openconfig(in)), GetParam().to);
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_EQ(fw.debug_lines().front(), "TRC: Start");
}

INSTANTIATE_TEST_SUITE_P(OfNativeTexts, OpenConfigSpelling,
                         ::testing::Values(Spelling{"mac-address", "MAC_ADDRESS"},
                                           Spelling{"chassis-component", "CHASSIS_COMPONENT"},
                                           Spelling{"interface-name", "INTERFACE_NAME"},
                                           Spelling{"local", "LOCAL"},
                                           Spelling{"Already_UPPER-2", "ALREADY_UPPER_2"}, Spelling{"--", "__"},
                                           Spelling{"with blank.", "WITH BLANK."}, Spelling{"", ""},
                                           Spelling{std::string(254, 'a'), std::string(254, 'A')},
                                           Spelling{std::string(255, 'a'), std::string(255, 'A')},
                                           Spelling{std::string(256, 'a'), std::string(255, 'A')},
                                           Spelling{std::string(1000, '-'), std::string(255, '_')}));

class NativeSpelling : public Ring, public ::testing::WithParamInterface<Spelling> {};

TEST_P(NativeSpelling, IsLowerCaseWithHyphensAndTakesCapitalsAndUnderscoresOnly) {
    Tree in(leaf("type", GetParam().from));
    EXPECT_EQ(as_text(to_native(in)), GetParam().to);
    // A rejected text also uses up its slot.
    EXPECT_EQ(plugin->ring_index(), 1);
    EXPECT_EQ(fw.debug_lines().front(), "TRC: Start");
}

INSTANTIATE_TEST_SUITE_P(
    OfOpenConfigTexts, NativeSpelling,
    ::testing::Values(Spelling{"MAC_ADDRESS", "mac-address"},
                      Spelling{"CHASSIS_COMPONENT", "chassis-component"},
                      Spelling{"NETWORK_ADDRESS", "network-address"}, Spelling{"LOCAL", "local"},
                      Spelling{"__", "--"}, Spelling{"", ""}, Spelling{"PORT_COMPONENT2", std::nullopt},
                      Spelling{"local", std::nullopt}, Spelling{"MAC-ADDRESS", std::nullopt},
                      Spelling{"MAC ADDRESS", std::nullopt}, Spelling{"lLDP", std::nullopt},
                      Spelling{std::string(255, 'A'), std::string(255, 'a')},
                      Spelling{std::string(256, 'A'), std::string(255, 'a')},
                      Spelling{std::string(255, 'A') + "1", std::string(255, 'a')},
                      Spelling{std::string(254, 'A') + "1", std::nullopt}));

TEST_F(Ring, ANativeNodeWithoutAValueHasNoOpenConfigSpelling) {
    Tree in(node("type"));
    EXPECT_EQ(to_openconfig(in), nullptr);
    EXPECT_THAT(fw.errors(), ElementsAre("OCLLDP: QD2OC data null"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_EQ(plugin->ring_index(), 0);
}

TEST_F(Ring, AnOpenConfigNodeWithoutAValueHasNoNativeSpelling) {
    Tree in(node("type"));
    EXPECT_EQ(to_native(in), nullptr);
    EXPECT_THAT(fw.errors(), ElementsAre("OCLLDP: OC2QD data null"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_EQ(plugin->ring_index(), 0);
}

TEST_F(Ring, SpellingWithoutAContextAborts) {
    GTEST_FLAG_SET(death_test_style, "fast");
    Tree in(leaf("type", "local"));
    EXPECT_DEATH(plugin->symbol<decltype(qd2oc_lldp_str)>("qd2oc_lldp_str")(nullptr, in, &output),
                 HasSubstr("NULL != ctx"));
    EXPECT_DEATH(plugin->symbol<decltype(oc2qd_lldp_str)>("oc2qd_lldp_str")(nullptr, in, &output),
                 HasSubstr("NULL != ctx"));
}

// ---- timestamps ------------------------------------------------------------------------------------

struct Moment {
    const char *zone; // POSIX: a positive offset is west of UTC
    int64_t seconds;
    long nanoseconds;
    uint32_t ago;
    const char *text;
};

void PrintTo(const Moment &moment, std::ostream *stream) {
    *stream << moment.zone << " " << moment.text;
}

class Timestamps : public Ring, public ::testing::WithParamInterface<Moment> {
protected:
    Timestamps() {
        if (const char *zone = std::getenv("TZ"))
            zone_before = zone;
    }
    ~Timestamps() override {
        if (zone_before)
            setenv("TZ", zone_before->c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

    std::optional<std::string> zone_before;
};

TEST_P(Timestamps, AreTheMomentSoManySecondsAgoInTheLocalZone) {
    const Moment &moment = GetParam();
    setenv("TZ", moment.zone, 1);
    tzset();
    fw.wall_clock = {moment.seconds, moment.nanoseconds};
    // Used only for 0 seconds: the system started 100 s ago.
    fw.stamp_ns = 100'999'999'999u;
    EXPECT_STREQ(timestamp(moment.ago), moment.text);
    EXPECT_EQ(fw.calls_of("fts_get_stamp_fast").size(), moment.ago == 0 ? 1u : 0u);
}

// 1709276696 is 2024-03-01T07:04:56 in UTC.
INSTANTIATE_TEST_SUITE_P(
    OfManyZones, Timestamps,
    ::testing::Values(Moment{"IST-5:30", 1709276697, 789'000'000, 1, "2024-03-01T12:34:56.789+05:30"},
                      Moment{"PST8", 1709276697, 789'000'000, 1, "2024-02-29T23:04:56.789-08:00"},
                      Moment{"UTC0", 1709276697, 0, 1, "2024-03-01T07:04:56.000+00:00"},
                      Moment{"NPT-5:45", 1709276697, 5'999'999, 1, "2024-03-01T12:49:56.005+05:45"},
                      Moment{"NST3:30", 1709276697, 999'999'999, 1, "2024-03-01T03:34:56.999-03:30"},
                      Moment{"UTC0", 1709276696, 12'000'000, 0, "2024-03-01T07:03:16.012+00:00"},
                      Moment{"UTC0", 1709276696, 12'000'000, 86400 * 366, "2023-03-01T07:04:56.012+00:00"},
                      Moment{"UTC0", 1709276696, 0, 1709276696, "1970-01-01T00:00:00.000+00:00"},
                      Moment{"CET-1CEST,M3.5.0,M10.5.0/3", 1720000000, 1, 1, "2024-07-03T11:46:39.000+02:00"}));

} // namespace
} // namespace oclldp_test
