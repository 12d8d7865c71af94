#include <set>
#include <string>

#include <gtest/gtest.h>

#include "platform/status.h"
#include "yfw_map.h"

namespace yfw::platform {
namespace {

constexpr terrno platform_statuses[] = {
    status_invalid_argument, status_text_cut,           status_no_platform,    status_no_device,
    status_unknown_path,     status_unknown_connection, status_not_searchable, status_no_such_item,
    status_bad_pattern,      status_end_of_list,        status_unknown_list,   status_bad_name,
    status_no_memory,        status_internal,
};

constexpr terrno mapping_statuses[] = {
    YMAP_ERR_INVALID_ARGS,      YMAP_ERR_MAP_FAILED,          YMAP_STS_SUBTREE_DONE,
    YMAP_ERR_UNSUPPORTED_TAG,   YMAP_ERR_UNSUPPORTED_AUGMENT, YMAP_ERR_INVALID_VALUE,
    YMAP_ERR_NO_MEMORY,         YMAP_ERR_EMPTY_LIST_KEY,      YMAP_ERR_KEY_DELETE,
    YMAP_ERR_SYSDB_UNAVAILABLE, YMAP_STS_NO_MAPPING,          IMC_STATUS_NO_SUCH_INTERFACE,
};

TEST(PlatformStatuses, AreFailuresOfThePlatform) {
    for (const terrno status : platform_statuses) {
        EXPECT_NE(status & 0x80000000U, 0U) << std::hex << status;
    }
}

TEST(StatusTexts, DifferFromStatusToStatus) {
    std::set<std::string> texts{terr_strerror(YMAP_OK)};
    std::size_t statuses = 1;
    for (const terrno status : platform_statuses) {
        texts.insert(terr_strerror(status));
        ++statuses;
    }
    for (const terrno status : mapping_statuses) {
        texts.insert(terr_strerror(status));
        ++statuses;
    }
    EXPECT_EQ(texts.size(), statuses);
    for (const std::string &text : texts) {
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(text.find("unknown status"), std::string::npos) << text;
    }
}

TEST(StatusTexts, NameTheStatusesThatOperatorsMeet) {
    EXPECT_STREQ(terr_strerror(YMAP_OK), "success");
    EXPECT_STREQ(terr_strerror(YMAP_ERR_SYSDB_UNAVAILABLE), "system database is not available");
    EXPECT_STREQ(terr_strerror(IMC_STATUS_NO_SUCH_INTERFACE), "no such interface");
    EXPECT_STREQ(terr_strerror(status_text_cut), "text does not fit and was cut");
}

TEST(StatusTexts, ShowAnUnknownStatusInHexadecimal) {
    EXPECT_STREQ(terr_strerror(0xdeadbeefU), "unknown status 0xdeadbeef");
    EXPECT_STREQ(terr_strerror(1), "unknown status 0x00000001");
}

TEST(GuardedCalls, TurnWhatIsThrownIntoAStatus) {
    EXPECT_EQ(guarded([] { return YMAP_ERR_MAP_FAILED; }), YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(guarded([]() -> terrno { throw std::bad_alloc(); }), status_no_memory);
    EXPECT_EQ(guarded([]() -> terrno { throw 1; }), status_internal);
}

} // namespace
} // namespace yfw::platform
