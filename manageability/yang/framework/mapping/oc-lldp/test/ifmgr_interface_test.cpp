// What one native interface entry maps to: the name, the filters, the three LLDP settings and the output.
#include <array>

#include "response_expectations.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::ValuesIn;

const std::string mapping = "ymap_qo_oclldp_ifmgr_intconfig_man";
const std::string list_path = "/interface-configurations/interface-configuration";
const std::string enable = "/lldp/enable", transmit = "/lldp/transmit/disable",
                  receive = "/lldp/receive/disable";

// A leaf's text, or nothing when the native entry lacks the leaf.
using Setting = std::optional<std::string>;

Setting text_of(const char *text) {
    return text == nullptr ? std::nullopt : Setting(text);
}

class IfmgrInterface : public OclldpTest {
protected:
    IfmgrInterface() {
        Selection{.kind = YMAP_REQ_GET, .selection_empty = 1, .content = 0}.apply(context);
        name("Gi0/0/0/1");
    }

    void name(const std::string &text, terrno status = 0) {
        fw.node_info[{list_path, "interface-name"}] = {.value = text, .status = status};
    }
    void settings(const Setting &enable_text, const Setting &transmit_text, const Setting &receive_text) {
        fw.xpath.clear();
        const auto put = [this](const std::string &path, const Setting &text) {
            if (text)
                fw.xpath[path] = {.value = text, .status = 0};
        };
        put(enable, enable_text);
        put(transmit, transmit_text);
        put(receive, receive_text);
    }
    terrno map() { return call(mapping, context, entry); }
    static std::vector<std::string> entry_of(const std::string &interface, const std::string &enabled) {
        return {"/lldp/interfaces/interface/config/name = " + interface,
                "/lldp/interfaces/interface/config/enabled = " + enabled};
    }

    Context context;
    Tree entry{node("interface-configuration").children({leaf("interface-name", "Gi0/0/0/1")}),
               native_ifmgr_ns};
};

TEST_F(IfmgrInterface, CallsEverythingInOrder) {
    settings("true", "false", "false");
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(),
                ElementsAre(Call{"yfw_map_get_node_info", list_path + ", interface-name"},
                            Call{"convert_ifname_ifentry", "Gi0/0/0/1"},
                            Call{"imc_interface_find", "1, Gi0/0/0/1, 0"},
                            Call{"platform_supports_lldp_over_mgmt", ""},
                            Call{"yfw_map_tree_xpath_operations", enable + ", interface-configuration"},
                            Call{"yfw_map_tree_xpath_operations", transmit + ", interface-configuration"},
                            Call{"yfw_map_tree_xpath_operations", receive + ", interface-configuration"},
                            Call{"yfw_map_search_or_add_list", "/lldp/interfaces/interface, Gi0/0/0/1, name"},
                            Call{"yfw_map_datatree_add_path_flagged",
                                 "/lldp/interfaces/interface/config/name, Gi0/0/0/1, NULL, 0, 0"},
                            Call{"yfw_map_datatree_add_path_flagged",
                                 "/lldp/interfaces/interface/config/enabled, true, NULL, 0, 0"}));
}

TEST_F(IfmgrInterface, MapsEveryCombinationOfTheThreeSettings) {
    const std::vector<Setting> texts = {std::nullopt, "", "true", "false", "TRUE", "yes"};
    for (const Setting &enabled : texts) {
        for (const Setting &transmit_disabled : texts) {
            for (const Setting &receive_disabled : texts) {
                SCOPED_TRACE(enabled.value_or("none") + "/" + transmit_disabled.value_or("none") + "/" +
                             receive_disabled.value_or("none"));
                fw.forget_calls();
                settings(enabled, transmit_disabled, receive_disabled);
                std::vector<std::string> wanted;
                if (transmit_disabled == "true" && receive_disabled == "true")
                    wanted = entry_of("Gi0/0/0/1", "false");
                else if (enabled.value_or("") != "")
                    wanted = entry_of("Gi0/0/0/1", enabled == "true" ? "true" : "false");
                EXPECT_EQ(map(), YMAP_OK);
                EXPECT_THAT(summaries(fw), ElementsAreArray(wanted));
                EXPECT_THAT(fw.searches, SizeIs(wanted.empty() ? 0 : 1));
                EXPECT_THAT(fw.queries, SizeIs(3));
            }
        }
    }
}

// NULL when the native entry lacks the leaf.
struct SettingCase {
    const char *label;
    const char *enabled;
    const char *transmit_disabled;
    const char *receive_disabled;
    std::array<const char *, 3> told; // lines between the start and the end; NULL after the last
};

void PrintTo(const SettingCase &setting, std::ostream *stream) {
    *stream << setting.label;
}

class IfmgrSettingLines : public IfmgrInterface, public ::testing::WithParamInterface<SettingCase> {};

constexpr const char *no_enable = "OC_LLDP: /lldp/enable node  not found";
constexpr const char *no_transmit = "OC_LLDP: /lldp/transmit/disable node  not found";
constexpr const char *no_receive = "OC_LLDP: /lldp/receive/disable node  not found";
constexpr const char *is_on = "OC_LLDP: /lldp/enable is true";
constexpr const char *is_off = "OC_LLDP: /lldp/enable is false";
constexpr const char *transmit_off = "OC_LLDP: /lldp/tr/dis is true";
constexpr const char *both_off = "OC_LLDP: /lldp/rx/dis is true";

constexpr SettingCase setting_cases[] = {
    {"nothing", nullptr, nullptr, nullptr, {no_enable, no_transmit, no_receive}},
    {"enabled", "true", "false", "false", {is_on}},
    {"disabled", "false", "false", "false", {is_off}},
    {"other text", "maybe", "", "", {is_off}},
    {"empty texts", "", "", "", {}},
    {"transmit disabled", "", "true", "false", {transmit_off}},
    {"receive disabled", "", "false", "true", {}},
    {"receive alone", nullptr, nullptr, "true", {no_enable, no_transmit}},
    {"both disabled", "", "true", "true", {transmit_off, both_off}},
    {"all set", "true", "true", "true", {is_on, transmit_off, both_off}},
};

INSTANTIATE_TEST_SUITE_P(Every, IfmgrSettingLines, ValuesIn(setting_cases));

TEST_P(IfmgrSettingLines, AreToldOnBothChannels) {
    settings(text_of(GetParam().enabled), text_of(GetParam().transmit_disabled),
             text_of(GetParam().receive_disabled));
    EXPECT_EQ(map(), YMAP_OK);
    std::vector<std::string> told = {"Start"};
    std::copy_if(GetParam().told.begin(), GetParam().told.end(), std::back_inserter(told),
                 [](const char *line) { return line != nullptr; });
    told.push_back("End");
    EXPECT_THAT(messages_of(fw, mapping), ElementsAreArray(told));
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(IfmgrInterface, AsksEachSettingWithARecordOfItsOwn) {
    settings("true", "true", "true");
    map();
    std::vector<std::string> asked;
    for (const XpathQuery &query : fw.queries) {
        EXPECT_EQ(query.operation, 4u);
        EXPECT_EQ(query.operation_kind, 3u);
        EXPECT_EQ(query.ns, native_cfg_ns);
        EXPECT_EQ(query.start, entry.operator->());
        asked.push_back(query.xpath);
    }
    EXPECT_THAT(asked, ElementsAre(enable, transmit, receive));
}

// A query that finds a node without text must not return the previous query's text.
TEST_F(IfmgrInterface, CarriesNoTextFromOneQueryToTheNext) {
    settings("true", std::nullopt, std::nullopt);
    fw.xpath_missing = 0;
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(entry_of("Gi0/0/0/1", "true")));
    EXPECT_THAT(messages_of(fw, mapping), Not(Contains("OC_LLDP: /lldp/tr/dis is true")));
}

TEST_F(IfmgrInterface, ReadsAFailedQueryAsNotSetWhateverTheStatus) {
    for (unsigned failing = 1; failing <= 3; ++failing) {
        SCOPED_TRACE(failing);
        fw.forget_calls();
        settings("true", "true", "true");
        fw.fail("yfw_map_tree_xpath_operations", failing, YMAP_STS_SUBTREE_DONE);
        EXPECT_EQ(map(), YMAP_OK);
        EXPECT_THAT(summaries(fw), ElementsAreArray(entry_of("Gi0/0/0/1", failing == 1 ? "false" : "true")));
        EXPECT_THAT(fw.queries, SizeIs(3));
    }
}

TEST_F(IfmgrInterface, SearchesTheListInTheRequestsOutputList) {
    settings("true", "false", "false");
    map();
    ASSERT_EQ(fw.searches.size(), 1u);
    const ListSearch &search = fw.searches.front();
    EXPECT_EQ(search.parent, &output);
    EXPECT_EQ(search.slot, &context.req.output_list.current_list_node);
    EXPECT_EQ(search.list_path, "/lldp/interfaces/interface");
    EXPECT_EQ(search.key_value, "Gi0/0/0/1");
    EXPECT_EQ(search.key_name, "name");
    EXPECT_EQ(search.ns, oc_ns);
}

TEST_F(IfmgrInterface, AddsItsLeavesInTheOpenConfigNamespaceWithoutASource) {
    settings("true", "false", "false");
    map();
    for (const Add &add : fw.adds) {
        EXPECT_EQ(add.ns, oc_ns);
        EXPECT_EQ(add.source, nullptr);
        EXPECT_EQ(add.list_entry, 0u);
        EXPECT_EQ(add.flags, 0u);
    }
    EXPECT_THAT(fw.adds, SizeIs(2));
}

TEST_F(IfmgrInterface, WritesOnlyWhatTheConfigRuleAllows) {
    settings("true", "false", "false");
    for (const Selection &selection : every_selection()) {
        SCOPED_TRACE(::testing::PrintToString(selection));
        fw.forget_calls();
        selection.apply(context);
        EXPECT_EQ(map(), YMAP_OK);
        EXPECT_THAT(fw.add_paths(), SizeIs(selection.wants_config() ? 2 : 0));
        EXPECT_THAT(fw.searches, SizeIs(selection.wants_config() ? 1 : 0));
        EXPECT_THAT(fw.add_paths(), Each(::testing::StartsWith("/lldp/interfaces/interface/config/")));
    }
}

TEST_F(IfmgrInterface, SucceedsWhateverBecomesOfTheOutput) {
    settings("true", "false", "false");
    fw.fail("yfw_map_search_or_add_list", 1, 0x81);
    fw.fail("yfw_map_datatree_add_path_flagged", 0, 0x82);
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(messages_of(fw, mapping), Contains("End"));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(IfmgrInterface, AddsBothLeavesThoughTheFirstFails) {
    settings("false", "false", "false");
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 0x82);
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(entry_of("Gi0/0/0/1", "false")));
}

// ---- deletes

class IfmgrDelete : public IfmgrInterface, public ::testing::WithParamInterface<Setting> {};

INSTANTIATE_TEST_SUITE_P(WhateverTheSetting, IfmgrDelete,
                         ValuesIn(std::vector<Setting>{std::nullopt, "true", "false"}));

TEST_P(IfmgrDelete, BecomesADeleteOfTheListEntry) {
    settings(GetParam(), std::nullopt, std::nullopt);
    for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
        fw.forget_calls();
        entry->operation = operation;
        EXPECT_EQ(map(), YMAP_OK);
        ASSERT_EQ(fw.adds.size(), 1u);
        const Add &add = fw.adds.front();
        EXPECT_EQ(summary(add), "/lldp/interfaces/interface");
        EXPECT_EQ(add.parent, &output);
        EXPECT_EQ(add.ns, oc_ns);
        EXPECT_EQ(add.source, entry.operator->());
        EXPECT_EQ(add.slot, &context.req.output_list.current_list_node);
        EXPECT_EQ(add.list_entry, 1u);
        EXPECT_EQ(add.flags, 0u);
        EXPECT_EQ(fw.mapping_calls().back(),
                  (Call{"yfw_map_copy_trim_path_list_ctx", "/lldp/interfaces/interface"}));
        EXPECT_THAT(fw.searches, IsEmpty());
        EXPECT_THAT(fw.queries, SizeIs(3));
    }
}

TEST_P(IfmgrDelete, IsMadeThoughTheRequestWantsNoConfiguration) {
    settings(GetParam(), std::nullopt, std::nullopt);
    Selection{.kind = YMAP_REQ_GET_CONFIG, .selection_empty = 0, .content = 2}.apply(context);
    entry->operation = YFW_OP_DELETE;
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre("/lldp/interfaces/interface"));
}

TEST_P(IfmgrDelete, SucceedsWhateverBecomesOfTheOutput) {
    settings(GetParam(), std::nullopt, std::nullopt);
    entry->operation = YFW_OP_DELETE;
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 0x83);
    fw.fail("yfw_map_copy_trim_path_list_ctx", 1, 0x84);
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(fw.calls_of("yfw_map_copy_trim_path_list_ctx"), SizeIs(1));
    EXPECT_EQ(messages_of(fw, mapping).back(), "End");
}

// ---- filters

struct FilterCase {
    const char *interface;
    int over_management;
    bool mapped;
};

void PrintTo(const FilterCase &filter, std::ostream *stream) {
    *stream << filter.interface << (filter.over_management ? " with" : " without") << " LLDP over management";
}

class IfmgrFilter : public IfmgrInterface, public ::testing::WithParamInterface<FilterCase> {};

constexpr FilterCase filter_cases[] = {
    {"MgmtEth0/RP0/CPU0/0", 1, true},
    {"MgmtEth0/RP0/CPU0/0", -1, true},
    {"MgmtEth0/RP0/CPU0/0", 0, false},
    {"xMgmt", 0, false},
    {"mgmtEth0", 0, true},
    {"MGMT0", 0, true},
    {"GigabitEthernet0/0/0/0", 0, true},
    {"Optics0/0/0/0", 1, false},
    {"xOptics", 1, false},
    {"optics0/0/0/0", 1, true},
    {"CoherentDSP0/0/0/0", 1, false},
    {"xCoherent", 1, false},
    {"coherentDSP0", 1, true},
    {"macsec0", 1, false},
    {"Te0/macsec", 1, false},
    {"Macsec0", 1, true},
    {"MACSEC0", 1, true},
    {"Optic", 1, true},
    {"", 0, true},
};

INSTANTIATE_TEST_SUITE_P(Names, IfmgrFilter, ValuesIn(filter_cases));

TEST_P(IfmgrFilter, DecidesByTheNameAndThePlatform) {
    settings("true", "false", "false");
    name(GetParam().interface);
    fw.lldp_over_mgmt = GetParam().over_management;
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(GetParam().mapped ? entry_of(GetParam().interface, "true")
                                                                  : std::vector<std::string>{}));
    EXPECT_THAT(fw.queries, SizeIs(GetParam().mapped ? 3 : 0));
    const std::vector<std::string> lines = fw.debug_lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "TRC: OC_LLDP: interface not supported"),
              GetParam().mapped ? 0 : 1);
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_P(IfmgrFilter, ReturnsTheStatusOfTheNameOnlyWhenItFilters) {
    settings("true", "false", "false");
    name(GetParam().interface, 0x91);
    fw.lldp_over_mgmt = GetParam().over_management;
    EXPECT_EQ(map(), GetParam().mapped ? YMAP_OK : 0x91u);
}

TEST_F(IfmgrInterface, FiltersWhatTheInterfaceManagerDoesNotKnow) {
    settings("true", "true", "true");
    fw.imc_entry_status["Gi0/0/0/1"] = IMC_STATUS_NO_SUCH_INTERFACE;
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.queries, IsEmpty());
    EXPECT_THAT(messages_of(fw, mapping), ElementsAre("Start", "OC_LLDP: interface not supported", "End"));
}

TEST_F(IfmgrInterface, FiltersADeleteLikeAnyOther) {
    entry->operation = YFW_OP_DELETE;
    name("macsec0");
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.calls_of("yfw_map_copy_trim_path_list_ctx"), IsEmpty());
}

TEST_F(IfmgrInterface, MapsAnInterfaceWhoseLookUpFails) {
    settings("true", "false", "false");
    fw.fail("imc_interface_find", 1, 0x85);
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(entry_of("Gi0/0/0/1", "true")));
}

// ---- failures

TEST_F(IfmgrInterface, CannotMapAnEntryWithoutAName) {
    fw.node_info.clear();
    EXPECT_EQ(map(), YMAP_ERR_UNSUPPORTED_TAG);
    EXPECT_THAT(fw.mapping_calls(), ElementsAre(Call{"yfw_map_get_node_info", list_path + ", interface-name"}));
}

TEST_F(IfmgrInterface, CannotMapAnEntryWhoseNameCannotBeRead) {
    fw.fail("yfw_map_get_node_info", 1, 0x86);
    EXPECT_EQ(map(), YMAP_ERR_UNSUPPORTED_TAG);
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_F(IfmgrInterface, GivesUpAtOnceWithoutAContext) {
    EXPECT_EQ(plugin->call(mapping, nullptr, entry, &output), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.calls, IsEmpty());
}

TEST_F(IfmgrInterface, RefusesNullNodes) {
    for (const bool without_entry : {true, false}) {
        fw.forget_calls();
        EXPECT_EQ(plugin->call(mapping, context, without_entry ? nullptr : entry.operator->(),
                               without_entry ? &output : nullptr),
                  YMAP_ERR_INVALID_ARGS);
        EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!"));
        EXPECT_THAT(fw.error_paths, SizeIs(1));
        EXPECT_EQ(ends_of(fw, mapping), 0u);
    }
}

TEST_F(IfmgrInterface, TellsItsEndWithoutARequestContext) {
    context.ctx.req_ctx = nullptr;
    EXPECT_EQ(map(), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(messages_of(fw, mapping), ElementsAre("Start", "End"));
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(IfmgrInterface, MapsTheSameWithBothChannelsClosed) {
    settings("true", "true", "true");
    context.ctx.trace_enabled = 0;
    fw.log_traces = fw.log_errors = false;
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(entry_of("Gi0/0/0/1", "false")));
    EXPECT_TRUE(fw.lines.empty());
}

TEST_F(IfmgrInterface, LeavesNoFrameworkStringBehind) {
    settings("true", "true", "true");
    map();
    EXPECT_EQ(fw.live_strings(), 0u);
}

} // namespace
} // namespace oclldp_test
