#include "platform/interface_name.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/status.h"
#include "yfw_map.h"

namespace yfw::platform {
namespace {

struct NameCase {
    const char *display;
    const char *form;
};

class AnInterfaceName : public testing::TestWithParam<NameCase> {};

TEST_P(AnInterfaceName, ConvertsBothWays) {
    EXPECT_EQ(to_system_database_form(GetParam().display), GetParam().form);
    EXPECT_EQ(to_display_form(GetParam().form), GetParam().display);
    char display[64];
    EXPECT_EQ(imc_display_namestring(GetParam().form, display, sizeof display), status_ok);
    EXPECT_STREQ(display, GetParam().display);
}

INSTANTIATE_TEST_SUITE_P(
    Names, AnInterfaceName,
    testing::Values(NameCase{"eth1", "eth1"}, NameCase{"GigabitEthernet0/0/0/1", "GigabitEthernet0_0_0_1"},
                    NameCase{"MgmtEth0/RP0/CPU0/0", "MgmtEth0_RP0_CPU0_0"},
                    NameCase{"Bundle-Ether1.100", "Bundle-Ether1.100"}, NameCase{"veth_a", "veth%5Fa"},
                    NameCase{"100%", "100%25"}, NameCase{"%5F", "%255F"}, NameCase{"%25", "%2525"},
                    NameCase{"_/_", "%5F_%5F"}, NameCase{"/", "_"}, NameCase{"//", "__"},
                    NameCase{"h\xc3\xa9", "h\xc3\xa9"}, NameCase{" a b ", " a b "}, NameCase{"", ""}));

// Every name of up to `longest` characters from `alphabet`.
std::vector<std::string> names_over(const std::string &alphabet, std::size_t longest) {
    std::vector<std::string> names{""};
    for (std::size_t start = 0, length = 0; length < longest; ++length) {
        const std::size_t end = names.size();
        for (; start < end; ++start) {
            for (const char c : alphabet) {
                names.push_back(names[start] + c);
            }
        }
    }
    return names;
}

TEST(InterfaceNames, ConvertBothWaysWhateverTheyHold) {
    for (const std::string &name : names_over("/_%25F", 6)) {
        const std::string form = to_system_database_form(name);
        ASSERT_EQ(to_display_form(form), name) << "by way of " << form;
        ASSERT_EQ(form.find('/'), std::string::npos) << form;
    }
}

TEST(InterfaceNames, HaveEachAFormOfTheirOwn) {
    std::size_t accepted = 0;
    for (const std::string &form : names_over("/_%25F", 6)) {
        if (const auto display = to_display_form(form)) {
            ASSERT_EQ(to_system_database_form(*display), form);
            ++accepted;
        }
    }
    EXPECT_GT(accepted, 0U);
}

TEST(InterfaceNames, WithAnyByteConvertBothWays) {
    for (int byte = 1; byte < 256; ++byte) {
        const std::string name{'a', static_cast<char>(byte), 'b'};
        EXPECT_EQ(to_display_form(to_system_database_form(name)), name) << "with byte " << byte;
    }
}

class AMalformedForm : public testing::TestWithParam<const char *> {};

TEST_P(AMalformedForm, StandsForNoName) {
    EXPECT_EQ(to_display_form(GetParam()), std::nullopt);
    char display[64] = "before";
    EXPECT_EQ(imc_display_namestring(GetParam(), display, sizeof display), status_bad_name);
    EXPECT_STREQ(display, "");
}

INSTANTIATE_TEST_SUITE_P(Forms, AMalformedForm,
                         testing::Values("eth0/1", "%", "eth%2", "eth%5", "eth%41", "eth%5f", "%%25"));

TEST(DisplayNames, AreCutToTheDestinationWithAStatus) {
    char exact[7];
    EXPECT_EQ(imc_display_namestring("eth0_1", exact, sizeof exact), status_ok);
    EXPECT_STREQ(exact, "eth0/1");
    char small[6];
    EXPECT_EQ(imc_display_namestring("eth0_1", small, sizeof small), status_text_cut);
    EXPECT_STREQ(small, "eth0/");
}

TEST(DisplayNames, NeedANameAndADestination) {
    char display[8] = "before";
    EXPECT_EQ(imc_display_namestring("eth0", nullptr, 8), status_invalid_argument);
    EXPECT_EQ(imc_display_namestring("eth0", display, 0), status_invalid_argument);
    EXPECT_STREQ(display, "before");
    EXPECT_EQ(imc_display_namestring(nullptr, display, sizeof display), status_invalid_argument);
    EXPECT_STREQ(display, "");
}

} // namespace
} // namespace yfw::platform
