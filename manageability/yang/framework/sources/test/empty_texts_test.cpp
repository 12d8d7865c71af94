// Texts that were set to empty on a running lldpd, and what removes them.
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "native_modules.h"
#include "sources/lldpd/connection.h"
#include "sources/lldpd/reader.h"
#include "support/eventually.h"
#include "support/native_xml.h"
#include "two_routers.h"

namespace yfw::sources::test {
namespace {

using yfw::test::element;
using yfw::test::eventually;
using yfw::test::native_configuration;

const std::string on = element("enable", "true");

struct Text {
    const char *name;
    const char *leaf;
    lldpctl_key_t key;
    std::optional<std::string> lldpd::Chassis::*announced;
};

void PrintTo(const Text &text, std::ostream *to) {
    *to << text.name;
}

class EmptyTexts : public TwoRouters {
protected:
    static void set_to_empty(lldpctl_key_t key) {
        const lldpd::Connection connection(lab().socket("a"));
        const lldpd::Atom settings(lldpctl_get_configuration(connection.handle()));
        ASSERT_NE(settings, nullptr);
        ASSERT_NE(lldpctl_atom_set_str(settings.get(), key, ""), nullptr);
    }
    static lldpd::Chassis announced() { return lldpd::read_state(lldpd::Connection(lab().socket("a"))).local; }
};

class AnEmptyText : public EmptyTexts, public testing::WithParamInterface<Text> {
protected:
    static std::string set() { return native_configuration(on + element(GetParam().leaf, "")); }
    static bool is_announced() { return (announced().*GetParam().announced).has_value(); }
};

TEST_P(AnEmptyText, IsNotAnnouncedAndGivesWayToTheDaemonsOwnWhenItIsDeleted) {
    apply(native_configuration(on), set());
    EXPECT_FALSE(is_announced());
    apply(set(), native_configuration(on));
    EXPECT_TRUE(is_announced());
}

TEST_P(AnEmptyText, GivesWayToTheDaemonsOwnWhenAConfigurationWithoutItIsRestored) {
    restore(set());
    EXPECT_FALSE(is_announced());
    restore(native_configuration(on));
    EXPECT_TRUE(is_announced());
}

TEST_P(AnEmptyText, StaysWhenTheConfigurationIsRestoredThatHoldsIt) {
    restore(set());
    restore(set());
    EXPECT_FALSE(is_announced());
}

TEST_P(AnEmptyText, ThatSomebodyElseHasSetIsGoneAfterARestoration) {
    set_to_empty(GetParam().key);
    EXPECT_FALSE(is_announced());
    restore(native_configuration(on));
    EXPECT_TRUE(is_announced());
}

INSTANTIATE_TEST_SUITE_P(Of, AnEmptyText,
                         testing::Values(Text{"TheSystemName", "system-name", lldpctl_k_config_hostname,
                                              &lldpd::Chassis::name},
                                         Text{"TheSystemDescription", "system-description",
                                              lldpctl_k_config_description, &lldpd::Chassis::description}),
                         [](const auto &named) { return named.param.name; });

// --- nobody hears a device without a chassis id ---

class AnEmptyChassisId : public EmptyTexts {
protected:
    void SetUp() override {
        EmptyTexts::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        ASSERT_TRUE(eventually([] { return hears("b", "eth1"); }));
        set_to_empty(lldpctl_k_config_cid_string);
        ASSERT_TRUE(eventually([] { return !hears("b", "eth1"); }));
    }
    static void expect_heard_as(const std::string &kind) {
        EXPECT_TRUE(eventually([&] { return chassis_heard().starts_with(kind); })) << chassis_heard();
    }
};

const std::string empty_chassis_id = element("chassis-id", "") + element("chassis-id-type", "local");

TEST_F(AnEmptyChassisId, IsGoneAfterARestoration) {
    restore(native_configuration(on));
    expect_heard_as("mac ");
}

TEST_F(AnEmptyChassisId, IsPending) {
    const yang::DataTree configuration = native_data(native_configuration(on));
    EXPECT_THAT(
        device().pending(configuration.get()),
        testing::ElementsAre(PendingSetting{"/Tarvo-QD-ethernet-lldp-cfg:lldp/chassis-id", std::nullopt, ""}));
}

TEST_F(AnEmptyChassisId, IsGoneAfterItsDeletion) {
    apply(native_configuration(on + empty_chassis_id), native_configuration(on));
    expect_heard_as("mac ");
}

TEST_F(AnEmptyChassisId, IsGoneAfterAnEditOfSomethingElse) {
    apply(native_configuration(on), native_configuration(on + element("system-description", "edited")));
    expect_heard_as("mac ");
}

TEST_F(AnEmptyChassisId, GivesWayToTheConfiguredOneInAnEditOfSomethingElse) {
    const std::string named = on + element("chassis-id", "rack 4") + element("chassis-id-type", "local");
    apply(native_configuration(named), native_configuration(named + element("system-description", "edited")));
    expect_heard_as("local rack 4, ");
}

} // namespace
} // namespace yfw::sources::test
