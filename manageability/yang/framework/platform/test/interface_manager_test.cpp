#include "platform/interface_manager.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fake_device.h"
#include "platform/interface_name.h"
#include "platform/platform.h"
#include "platform/status.h"

namespace yfw::platform {
namespace {

struct Found {
    terrno call = 42;
    terrno status = 42;
    std::uint32_t handle = 42;
    std::uint32_t answered = 42;
};

// Looks up an interface the way a mapping callback does: converts the name, copies it into the entry, and finds
// it.
Found look_up(const std::string &name) {
    Found found;
    char spelled[IMC_IFENTRY_SIZE];
    imc_find_request entry{{}, &found.handle, &found.status};
    EXPECT_EQ(convert_ifname_ifentry(spelled, name.c_str()), status_ok) << name;
    EXPECT_EQ(yfw_strncpy_s(__func__, entry.name, sizeof entry.name, spelled, sizeof entry.name), status_ok)
        << name;
    found.call = imc_interface_find(yfw_ocifmgr_im_conn, 1, &entry, 0, &found.answered);
    return found;
}

class InterfaceLookUp : public testing::Test {
protected:
    test::FakeDevice device;
    Platform platform{{.device = &device}};
    Platform::Scope scope{platform};
};

TEST_F(InterfaceLookUp, FindsTheInterfacesOfTheDevice) {
    for (const char *name : {"eth1", "GigabitEthernet0/0/0/1", "veth_a", "100%", "h\xc3\xa9th"}) {
        device.interfaces.insert(name);
        const Found found = look_up(name);
        EXPECT_EQ(found.call, status_ok) << name;
        EXPECT_EQ(found.status, status_ok) << name;
        EXPECT_NE(found.handle, 0U) << name;
        EXPECT_EQ(found.answered, 1U) << name;
    }
}

TEST_F(InterfaceLookUp, KnowsNoOtherInterface) {
    device.interfaces = {"eth1", "eth0/1"};
    for (const char *name : {"eth", "eth11", "eth0_1", "ETH1", ""}) {
        const Found found = look_up(name);
        EXPECT_EQ(found.call, status_ok) << name;
        EXPECT_EQ(found.status, IMC_STATUS_NO_SUCH_INTERFACE) << name;
        EXPECT_EQ(found.handle, 0U) << name;
        EXPECT_EQ(found.answered, 1U) << name;
    }
}

TEST_F(InterfaceLookUp, FindsNamesOfEveryLength) {
    for (const char c : {'x', '/', '_'}) {
        for (std::size_t length = 1; length <= 300; ++length) {
            const std::string name(length, c);
            device.interfaces = {name};
            ASSERT_EQ(look_up(name).status, status_ok) << length << " times " << c;
        }
    }
}

TEST_F(InterfaceLookUp, TellsLongNamesApartThatStartAlike) {
    const std::string start(80, 'x');
    device.interfaces = {start + "1", start + "2"};
    EXPECT_EQ(look_up(start + "1").status, status_ok);
    EXPECT_EQ(look_up(start + "2").status, status_ok);
    EXPECT_EQ(look_up(start + "3").status, IMC_STATUS_NO_SUCH_INTERFACE);
    EXPECT_EQ(look_up(start).status, IMC_STATUS_NO_SUCH_INTERFACE);
    EXPECT_NE(look_up(start + "1").handle, look_up(start + "2").handle);
}

TEST_F(InterfaceLookUp, FindsALongNameAfterManyOthersWereAskedFor) {
    const std::string start(80, 'x');
    for (int i = 0; i < 10000; ++i) {
        const std::string name = start + std::to_string(i);
        device.interfaces = {name};
        ASSERT_EQ(look_up(name).status, status_ok) << name;
    }
}

TEST_F(InterfaceLookUp, GivesAnInterfaceTheSameHandleEveryTimeAndNoOtherInterfaceThat) {
    std::vector<std::string> names;
    for (int i = 0; i < 2000; ++i) {
        names.push_back("Ethernet0/0/" + std::to_string(i));
    }
    device.interfaces = {names.begin(), names.end()};
    std::set<std::uint32_t> handles;
    for (const std::string &name : names) {
        const std::uint32_t handle = look_up(name).handle;
        EXPECT_EQ(look_up(name).handle, handle);
        handles.insert(handle);
    }
    EXPECT_EQ(handles.size(), names.size());
    EXPECT_FALSE(handles.contains(0));
}

// Found by search: the first two names hash to the same number, the third to 0.
TEST_F(InterfaceLookUp, GivesHandlesOfTheirOwnToNamesThatFallOnOneNumberAndOnNone) {
    std::set<std::uint32_t> handles{0};
    for (const char *name : {"Ethernet0/0/85854", "Ethernet0/0/109968", "eth5040635669"}) {
        device.interfaces.insert(name);
        const std::uint32_t handle = look_up(name).handle;
        EXPECT_TRUE(handles.insert(handle).second) << name;
        EXPECT_EQ(look_up(name).handle, handle) << name;
    }
}

TEST_F(InterfaceLookUp, AnswersSeveralEntriesEachByItself) {
    device.interfaces = {"eth1", "eth3"};
    std::uint32_t handles[3] = {};
    terrno statuses[3] = {};
    imc_find_request entries[] = {{"eth1", &handles[0], &statuses[0]},
                                  {"eth2", &handles[1], &statuses[1]},
                                  {"eth3", &handles[2], &statuses[2]}};
    std::uint32_t answered = 0;
    EXPECT_EQ(imc_interface_find(yfw_ocifmgr_im_conn, 3, entries, 0, &answered), status_ok);
    EXPECT_EQ(answered, 3U);
    EXPECT_EQ(statuses[0], status_ok);
    EXPECT_EQ(statuses[1], IMC_STATUS_NO_SUCH_INTERFACE);
    EXPECT_EQ(statuses[2], status_ok);
}

TEST_F(InterfaceLookUp, FillsInOnlyWhatAnEntryAsksFor) {
    device.interfaces = {"eth1"};
    std::uint32_t handle = 0;
    terrno status = 42;
    imc_find_request entries[] = {
        {"eth1", nullptr, nullptr}, {"eth1", &handle, nullptr}, {"eth1", nullptr, &status}};
    EXPECT_EQ(imc_interface_find(yfw_ocifmgr_im_conn, 3, entries, 0, nullptr), status_ok);
    EXPECT_NE(handle, 0U);
    EXPECT_EQ(status, status_ok);
}

TEST_F(InterfaceLookUp, OfNothingSucceeds) {
    std::uint32_t answered = 42;
    EXPECT_EQ(imc_interface_find(yfw_ocifmgr_im_conn, 0, nullptr, 0, &answered), status_ok);
    EXPECT_EQ(answered, 0U);
}

TEST_F(InterfaceLookUp, ReadsANameThatFillsItsFieldToTheLastByte) {
    device.interfaces = {std::string(IMC_NAME_SIZE, 'x')};
    terrno status = 42;
    imc_find_request entry{{}, nullptr, &status};
    std::fill(std::begin(entry.name), std::end(entry.name), 'x');
    EXPECT_EQ(imc_interface_find(yfw_ocifmgr_im_conn, 1, &entry, 0, nullptr), status_ok);
    EXPECT_EQ(status, status_ok);
}

struct SpelledCase {
    const char *name;
    const char *spelled;
    terrno status;
};

class ASpelling : public testing::TestWithParam<SpelledCase> {};

TEST_P(ASpelling, ThatConversionNeverGaveIsNotTakenForAnInterface) {
    test::FakeDevice device;
    device.interfaces = {"eth0/1", "eth%41", "ethA"};
    Platform platform({.device = &device});
    const Platform::Scope scope(platform);
    terrno status = 42;
    imc_find_request entry{{}, nullptr, &status};
    yfw_strcpy_s(__func__, entry.name, sizeof entry.name, GetParam().spelled);
    EXPECT_EQ(imc_interface_find(yfw_ocifmgr_im_conn, 1, &entry, 0, nullptr), status_ok);
    EXPECT_EQ(status, GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    Spellings, ASpelling,
    testing::Values(SpelledCase{"OfARawSlash", "eth0/1", IMC_STATUS_NO_SUCH_INTERFACE},
                    SpelledCase{"OfAnUnknownEscape", "eth%41", IMC_STATUS_NO_SUCH_INTERFACE},
                    SpelledCase{"OfAnUnknownDigest", "eth%~0123456789abcdef", status_bad_name}),
    [](const auto &test_case) { return test_case.param.name; });

TEST_F(InterfaceLookUp, RefusesWhatItCannotMakeSenseOf) {
    imc_find_request entry{"eth1", nullptr, nullptr};
    std::uint32_t answered = 42;
    EXPECT_EQ(imc_interface_find(nullptr, 1, &entry, 0, &answered), status_unknown_connection);
    EXPECT_EQ(answered, 0U);
    EXPECT_EQ(imc_interface_find(&entry, 1, &entry, 0, &answered), status_unknown_connection);
    EXPECT_EQ(imc_interface_find(yfw_ocifmgr_im_conn, 1, nullptr, 0, &answered), status_invalid_argument);
    EXPECT_EQ(imc_interface_find(yfw_ocifmgr_im_conn, 1, &entry, 1, &answered), status_invalid_argument);
}

TEST_F(InterfaceLookUp, FailsAsAWholeWhenTheDeviceDoesNotAnswer) {
    device.broken = true;
    EXPECT_EQ(look_up("eth1").call, status_internal);
    EXPECT_EQ(look_up("eth1").answered, 0U);
    platform.settings().device = nullptr;
    EXPECT_EQ(look_up("eth1").call, status_no_device);
}

TEST(InterfaceManagerConnection, IsThere) {
    EXPECT_NE(yfw_ocifmgr_im_conn, nullptr);
}

TEST(InterfaceLookUpWithoutPlatform, Fails) {
    std::uint32_t answered = 42;
    imc_find_request entry{"eth1", nullptr, nullptr};
    EXPECT_EQ(imc_interface_find(yfw_ocifmgr_im_conn, 1, &entry, 0, &answered), status_no_platform);
    EXPECT_EQ(answered, 0U);
}

TEST(InterfaceSpelling, IsTheSystemDatabaseFormOfANameThatFits) {
    Platform platform;
    const Platform::Scope scope(platform);
    for (const std::string &name :
         {std::string("GigabitEthernet0/0/0/1"), std::string("veth_a%"), std::string(63, 'x')}) {
        char spelled[IMC_IFENTRY_SIZE];
        EXPECT_EQ(convert_ifname_ifentry(spelled, name.c_str()), status_ok);
        EXPECT_EQ(spelled, to_system_database_form(name));
    }
}

TEST(InterfaceSpelling, FitsALookUpAlways) {
    Platform platform;
    const Platform::Scope scope(platform);
    std::set<std::string> spellings;
    for (std::size_t length = 1; length <= 300; ++length) {
        char spelled[IMC_IFENTRY_SIZE];
        EXPECT_EQ(convert_ifname_ifentry(spelled, std::string(length, '_').c_str()), status_ok);
        EXPECT_LT(std::string(spelled).size(), static_cast<std::size_t>(IMC_NAME_SIZE));
        spellings.insert(spelled);
    }
    EXPECT_EQ(spellings.size(), 300U);
}

TEST(InterfaceSpelling, OfALongNameNeedsAPlatformThatRemembersIt) {
    char spelled[IMC_IFENTRY_SIZE];
    EXPECT_EQ(convert_ifname_ifentry(spelled, "eth0/1"), status_ok);
    EXPECT_STREQ(spelled, "eth0_1");
    EXPECT_EQ(convert_ifname_ifentry(spelled, std::string(64, 'x').c_str()), status_no_platform);
}

TEST(InterfaceSpelling, NeedsANameAndADestination) {
    char spelled[IMC_IFENTRY_SIZE] = "before";
    EXPECT_EQ(convert_ifname_ifentry(nullptr, "eth1"), status_invalid_argument);
    EXPECT_EQ(convert_ifname_ifentry(spelled, nullptr), status_invalid_argument);
    EXPECT_STREQ(spelled, "");
}

} // namespace
} // namespace yfw::platform
