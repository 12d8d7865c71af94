// What has changed between two snapshots.
#include <map>
#include <string>

#include <gmock/gmock.h>

#include "frontends/gnmi/data/differences.h"
#include "frontends/gnmi/data/response_path.h"
#include "frontends/gnmi/paths/path_text.h"
#include "gnmi_fixture.h"
#include "yang/data_writing.h"
#include "yang/tree_text.h"

namespace yfw::gnmi::test {
namespace {

// The snapshot of a JSON document; without one, an empty snapshot.
void fill(Snapshot &to, const std::string &json) {
    SnapshotWriter writer(to, 1);
    const yang::DataTree data = yang::parse_data(schemas().context(), "{\"openconfig-lldp:lldp\":" + json + "}",
                                                 LYD_JSON, LYD_PARSE_ONLY | LYD_PARSE_STRICT);
    if (data != nullptr)
        yang::write(data.get(), writer);
}

std::string path_text(const Snapshot &snapshot, Snapshot::Index node) {
    ::gnmi::Path path;
    set_path(path, snapshot, node);
    return to_text(path);
}

std::string compared(const std::string &before, const std::string &after) {
    Snapshot old;
    Snapshot now;
    fill(old, before);
    fill(now, after);
    const Differences found = differences(old, now);
    std::string text;
    for (const Snapshot::Index node : found.removed)
        text += "- " + path_text(old, node) + "\n";
    for (const UpdatedLeaf &updated : found.updated)
        text += path_text(now, updated.leaf) + " = " + now[updated.leaf].value + "\n";
    return text;
}

struct Pair {
    std::string name;
    std::string before;
    std::string after;
    std::string differences;
};

class TwoSnapshots : public testing::TestWithParam<Pair> {};

TEST_P(TwoSnapshots, Differ) {
    EXPECT_EQ(compared(GetParam().before, GetParam().after), GetParam().differences);
}

std::string interfaces(const std::string &entries) {
    return R"({"interfaces":{"interface":[)" + entries + "]}}";
}

std::string entry(const std::string &name, bool enabled) {
    return R"({"name":")" + name + R"(","config":{"name":")" + name + R"(","enabled":)" +
           (enabled ? "true" : "false") + "}}";
}

INSTANTIATE_TEST_SUITE_P(
    By, TwoSnapshots,
    testing::Values(
        Pair{"Nothing", R"({"config":{"enabled":true}})", R"({"config":{"enabled":true}})", ""},
        Pair{"ALeafWithAnotherValue", R"({"config":{"enabled":true}})", R"({"config":{"enabled":false}})",
             "/lldp/config/enabled = false\n"},
        Pair{"ANewLeaf", R"({"config":{"enabled":true}})", R"({"config":{"enabled":true,"system-name":"x"}})",
             "/lldp/config/system-name = x\n"},
        Pair{"ALeafThatIsGone", R"({"config":{"enabled":true,"system-name":"x"}})",
             R"({"config":{"enabled":true}})", "- /lldp/config/system-name\n"},
        Pair{"AContainerThatIsGone", R"({"config":{"enabled":true},"state":{"enabled":true}})",
             R"({"state":{"enabled":true}})", "- /lldp/config\n"},
        Pair{"Everything", R"({"config":{"enabled":true}})", "{}", "- /lldp\n"},
        Pair{"ANewEntry", interfaces(entry("a", true)), interfaces(entry("b", false) + "," + entry("a", true)),
             "/lldp/interfaces/interface[name=b]/name = b\n"
             "/lldp/interfaces/interface[name=b]/config/name = b\n"
             "/lldp/interfaces/interface[name=b]/config/enabled = false\n"},
        Pair{"AnEntryThatIsGone", interfaces(entry("a", true) + "," + entry("b", true)),
             interfaces(entry("b", true)), "- /lldp/interfaces/interface[name=a]\n"},
        Pair{"TheOrderOfEntriesAlone", interfaces(entry("a", true) + "," + entry("b", true)),
             interfaces(entry("b", true) + "," + entry("a", true)), ""},
        Pair{"ALeafOfAnEntryInAnotherPlace", interfaces(entry("a", true) + "," + entry("b", true)),
             interfaces(entry("b", false) + "," + entry("a", true)),
             "/lldp/interfaces/interface[name=b]/config/enabled = false\n"},
        Pair{"AValueOfALeafList",
             R"({"config":{"suppress-tlv-advertisement":["openconfig-lldp-types:SYSTEM_NAME"]}})",
             R"({"config":{"suppress-tlv-advertisement":["openconfig-lldp-types:SYSTEM_NAME",
                 "openconfig-lldp-types:SYSTEM_DESCRIPTION"]}})",
             "/lldp/config/suppress-tlv-advertisement = openconfig-lldp-types:SYSTEM_NAME\n"},
        Pair{"AllValuesOfALeafList",
             R"({"config":{"enabled":true,"suppress-tlv-advertisement":["openconfig-lldp-types:SYSTEM_NAME",
                 "openconfig-lldp-types:SYSTEM_DESCRIPTION"]}})",
             R"({"config":{"enabled":true}})", "- /lldp/config/suppress-tlv-advertisement\n"}),
    [](const auto &row) { return row.param.name; });

TEST(ALeafThatIsThereForTheFirstTime, IsToldFromOneThatChanges) {
    Snapshot old;
    Snapshot now;
    fill(old, R"({"config":{"system-name":"r1"}})");
    fill(now, R"({"config":{"system-name":"r2","hello-timer":"30"}})");
    std::map<std::string, bool> is_new;
    for (const UpdatedLeaf &updated : differences(old, now).updated)
        is_new[path_text(now, updated.leaf)] = updated.is_new;
    EXPECT_EQ(is_new, (std::map<std::string, bool>{{"/lldp/config/hello-timer", true},
                                                   {"/lldp/config/system-name", false}}));
}

} // namespace
} // namespace yfw::gnmi::test
