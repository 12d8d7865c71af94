// The table of what is served, held against what the program does with each node.
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "support/child_process.h"
#include "support/files.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Json = nlohmann::json;
using Strings = std::vector<std::string>;
using Names = std::set<std::string>;

constexpr const char *not_served = "is not served by this device";

Json table_of(const fs::path &models) {
    const Outcome outcome = run_yfw({.arguments = {"coverage", "--json", "--models", models.string()}});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return Json::parse(outcome.output);
}

bool is_leaf(const Json &row) {
    return row["kind"].get<std::string>().starts_with("leaf");
}

Names leaves(const Json &table, const char *member) {
    Names paths;
    for (const Json &row : table["nodes"])
        if (is_leaf(row) && row[member].get<bool>())
            paths.insert(row["openconfig"]);
    return paths;
}

const Json &row_of(const Json &table, const std::string &path) {
    for (const Json &row : table["nodes"])
        if (row["openconfig"] == path)
            return row;
    throw std::runtime_error("no row " + path);
}

bool is_served(const Json &row) {
    return row["read"].get<bool>() || row["written"].get<bool>();
}

// ---- reads

void add_leaves(const Json &data, const std::string &path, Names &to) {
    if (data.is_object())
        for (const auto &[name, value] : data.items())
            add_leaves(value, path + "/" + name.substr(name.find(':') + 1), to);
    else if (data.is_array())
        for (const Json &entry : data)
            add_leaves(entry, path, to);
    else
        to.insert(path);
}

// The leaves that any of the recorded devices has.
Names leaves_of_all_devices(const fs::path &models) {
    Names found;
    for (const char *recordings : {YFW_EXAMPLES_DIR, YFW_DEVICES_DIR})
        for (const fs::directory_entry &device : fs::directory_iterator(recordings)) {
            if (!fs::exists(device.path() / "oper.xml"))
                continue;
            const Outcome outcome = run_yfw({.arguments = {"get", "/lldp", "--device", device.path().string(),
                                                           "--models", models.string()}});
            EXPECT_EQ(outcome.status, 0) << outcome.errors;
            add_leaves(Json::parse(outcome.output), "", found);
        }
    return found;
}

void expect_reads_as_in_the_table(const Json &table, const fs::path &models) {
    Strings served = {"get"};
    for (const Json &row : table["nodes"]) {
        if (is_served(row)) {
            served.push_back(row["openconfig"]);
            continue;
        }
        const Outcome outcome = run_yfw({.arguments = {"get", row["openconfig"], "--models", models.string()}});
        EXPECT_EQ(outcome.status, 2) << row["openconfig"];
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, HasSubstr(not_served));
    }
    served.insert(served.end(), {"--models", models.string()});
    const Outcome outcome = run_yfw({.arguments = served});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
}

// ---- edits

// A device without any data, and a new store.
class EmptyDevice {
public:
    explicit EmptyDevice(const fs::path &models) : models_(models) {}

    Outcome edit(const std::string &document, const std::string &operation) const {
        return run_yfw({.arguments = {"edit", directory_.add("edit.xml", document), "--native", native_,
                                      "--store", (directory_.path() / "commits.db").string(), "--models",
                                      models_.string(), "--operation", operation}});
    }

private:
    fs::path models_;
    TemporaryDirectory directory_;
    std::string native_ =
        directory_.add("native.xml", "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\"/>");
};

Strings words_of(const std::string &path) {
    Strings words;
    for (size_t at = 0; at != std::string::npos;) {
        const size_t next = path.find('/', at + 1);
        words.push_back(path.substr(at + 1, next - at - 1));
        at = next;
    }
    return words;
}

// An edit with the operation on the leaf, or on the entry of a key. Keys are "example".
std::string document_of(const Json &table, const std::string &leaf, const std::string &value,
                        const std::string &operation) {
    const std::string attribute = " nc:operation=\"" + operation + "\"";
    std::string text;
    std::string end;
    std::string path;
    for (const std::string &word : words_of(leaf)) {
        path += "/" + word;
        const std::string ns = path == "/lldp" ? " xmlns=\"http://openconfig.net/yang/lldp\""
                                                 " xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\""
                                                 " xmlns:t=\"http://openconfig.net/yang/lldp/types\""
                                               : "";
        const bool is_list = row_of(table, path)["kind"] == "list";
        if (is_list && path + "/name" == leaf)
            return text + "<" + word + attribute + "><name>example</name></" + word + ">" + end;
        if (path == leaf) {
            const size_t colon = value.find(':');
            return text + "<" + word + attribute + ">" +
                   (colon == std::string::npos ? value : "t" + value.substr(colon)) + "</" + word + ">" + end;
        }
        text += "<" + word + ns + ">" + (is_list ? "<name>example</name>" : "");
        end = "</" + word + ">" + end;
    }
    return text + end;
}

std::string value_of(const Json &row) {
    for (const Json &edit : row.value("edits", Json::array()))
        if (edit.contains("value"))
            return edit["value"];
    return "example";
}

void expect_operations_as_in_the_table(const Json &table, const Json &row, const fs::path &models) {
    const std::string leaf = row["openconfig"];
    const std::string value = value_of(row);
    const Names accepted = row.value("operations", Names{});
    for (const std::string operation : {"merge", "replace", "create", "delete", "remove"}) {
        const EmptyDevice device(models);
        const bool takes = operation == "delete" || operation == "remove";
        if (takes && !accepted.empty()) {
            ASSERT_EQ(device.edit(document_of(table, leaf, value, "merge"), "merge").status, 0) << leaf;
        }
        const Outcome outcome = device.edit(document_of(table, leaf, value, operation), "merge");
        EXPECT_EQ(outcome.status == 0, accepted.contains(operation))
            << operation << " of " << leaf << ": " << outcome.errors;
        if (!is_served(row)) {
            EXPECT_THAT(outcome.errors, HasSubstr("this device does not serve")) << leaf;
        }
    }
}

void expect_values_as_in_the_table(const Json &table, const Json &row, const fs::path &models) {
    const std::string leaf = row["openconfig"];
    const std::string limits = row.value("limits", "");
    const auto status_of = [&](const std::string &value) {
        return EmptyDevice(models).edit(document_of(table, leaf, value, "merge"), "merge").status;
    };
    if (const size_t range = limits.find("range "); range != std::string::npos) {
        const size_t dots = limits.find("..", range);
        const long least = std::stol(limits.substr(range + 6));
        const long most = std::stol(limits.substr(dots + 2));
        for (const long inside : {least, most})
            EXPECT_EQ(status_of(std::to_string(inside)), 0) << leaf << " = " << inside;
        for (const long outside : {least - 1, most + 1})
            EXPECT_NE(status_of(std::to_string(outside)), 0) << leaf << " = " << outside;
    }
    if (const size_t refused = limits.find("not "); refused != std::string::npos) {
        EXPECT_NE(status_of(limits.substr(refused + 4, limits.find(';', refused) - refused - 4)), 0) << leaf;
    }
    for (const Json &edit : row.value("edits", Json::array())) {
        if (!edit.contains("value") || edit["device"] != "off")
            continue;
        EXPECT_EQ(status_of(edit["value"]), 0) << leaf << " = " << edit["value"];
    }
}

void expect_edits_as_in_the_table(const Json &table, const fs::path &models) {
    for (const Json &row : table["nodes"]) {
        if (!is_leaf(row) || !row["config"].get<bool>())
            continue;
        expect_operations_as_in_the_table(table, row, models);
        expect_values_as_in_the_table(table, row, models);
    }
}

// ---- models

// The shipped modules, with what published ones have besides.
class ExtendedModel : public testing::Test {
protected:
    ExtendedModel() {
        for (const char *module : {"openconfig-lldp.yang", "openconfig-lldp-types.yang"})
            fs::copy_file(fs::path(YFW_MODELS_DIR) / module, models() / module);
        directory_.add("ports.yang",
                       "module ports { namespace \"urn:ports\"; prefix p;"
                       " container ports { list port { key name; leaf name { type string; } } } }");
        insert("openconfig-lldp.yang", "  import openconfig-lldp-types {", "  import ports { prefix p; }\n");
        insert("openconfig-lldp.yang", "  grouping lldp-common-config {", "  feature labels;\n");
        insert("openconfig-lldp.yang", "    leaf hello-timer {",
               "    leaf age { type uint16; }\n"
               "    leaf port { type leafref { path \"/p:ports/p:port/p:name\"; } }\n"
               "    leaf label { if-feature labels; type string; }\n");
        insert("openconfig-lldp.yang", "      uses lldp-interfaces;",
               "      container addresses { config false; list address { key ip;"
               " leaf ip { type leafref { path \"../state/ip\"; } }"
               " container state { leaf ip { type string; } leaf number { type uint32; } } } }\n");
        insert("openconfig-lldp.yang", "  uses lldp-top;",
               "  augment \"/lldp/interfaces/interface/state\" { leaf noted { type string; }"
               " container notes { leaf-list note { type string; } } }\n");
        insert("openconfig-lldp-types.yang", "  identity SYSTEM_NAME {",
               "  identity LATER_TLV { base LLDP_TLV; }\n");
    }

    void insert(const std::string &module, const std::string &before, const std::string &added) const {
        std::string text = read_file(models() / module);
        const size_t at = text.find(before);
        if (at == std::string::npos)
            throw std::runtime_error(module + " has no " + before);
        directory_.add(module, text.insert(at, added));
    }

    const fs::path &models() const { return directory_.path(); }

    const TemporaryDirectory directory_;
};

TEST_F(ExtendedModel, IsServedAsFarAsTheShippedOne) {
    const Json table = table_of(models());
    const Json shipped = table_of(YFW_MODELS_DIR);
    EXPECT_EQ(leaves(table, "read"), leaves(shipped, "read"));
    EXPECT_EQ(leaves(table, "written"), leaves(shipped, "written"));
    for (const char *path : {"/lldp/config/age", "/lldp/state/age", "/lldp/config/port", "/lldp/addresses"})
        EXPECT_FALSE(is_served(row_of(table, path))) << path;
}

TEST_F(ExtendedModel, HasNodesFromAnAugmentThatAreNotServed) {
    const Json table = table_of(models());
    for (const char *path : {"/lldp/interfaces/interface/state/noted", "/lldp/interfaces/interface/state/notes",
                             "/lldp/interfaces/interface/state/notes/note"})
        EXPECT_FALSE(is_served(row_of(table, path))) << path;
    EXPECT_TRUE(is_served(row_of(table, "/lldp/interfaces/interface/state/enabled")));
}

TEST_F(ExtendedModel, RefusesToReadWhatAnAugmentAdds) {
    for (const char *path :
         {"/lldp/interfaces/interface/state/noted", "/lldp/interfaces/interface/state/notes"}) {
        const Outcome outcome = run_yfw({.arguments = {"get", path, "--models", models().string()}});
        EXPECT_EQ(outcome.status, 2) << path;
        EXPECT_EQ(outcome.output, "");
        EXPECT_NE(outcome.errors.find(path), std::string::npos) << outcome.errors;
    }
}

TEST_F(ExtendedModel, IsReadAsTheTableSays) {
    const Json table = table_of(models());
    expect_reads_as_in_the_table(table, models());
    EXPECT_EQ(leaves_of_all_devices(models()), leaves(table, "read"));
}

TEST_F(ExtendedModel, IsEditedAsTheTableSays) {
    expect_edits_as_in_the_table(table_of(models()), models());
}

TEST_F(ExtendedModel, NamesAnIdentityThatTheDeviceDoesNotKnow) {
    const Json row = row_of(table_of(models()), "/lldp/config/suppress-tlv-advertisement");
    EXPECT_THAT(row["limits"].get<std::string>(), HasSubstr("not openconfig-lldp-types:LATER_TLV"));
}

TEST_F(ExtendedModel, IsExplainedThroughoutAndByTheNodesOfTheMapping) {
    const Outcome outcome = run_yfw({.arguments = {"explain", "--all", "--models", models().string()}});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("/lldp/state/age   not served\n"));
    EXPECT_THAT(outcome.output,
                HasSubstr("/lldp/interfaces/interface/neighbors/neighbor/state/age   read\n"
                          "  read   /lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/age"));
}

TEST_F(ExtendedModel, IsDeviatedFromByAModuleThatAValidatorAcceptsBesideIt) {
    const Outcome outcome = run_yfw({.arguments = {"coverage", "--deviations", "--models", models().string()}});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    directory_.add("yfw-openconfig-lldp-devs.yang", outcome.output);
    const std::string errors = (models() / "errors").string();
    const std::string command =
        "yanglint -D -p " + models().string() + " " + (models() / "openconfig-lldp-types.yang").string() + " " +
        (models() / "openconfig-lldp.yang").string() + " " +
        (models() / "yfw-openconfig-lldp-devs.yang").string() + " > " + errors + " 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << read_file(errors);
    EXPECT_THAT(read_file(errors), IsEmpty());
    EXPECT_THAT(outcome.output, HasSubstr("range \"5..65534\";"));
    EXPECT_THAT(outcome.output, HasSubstr("/oc-lldp:state/oc-lldp:noted\" {"));
}

TEST(ShippedModel, IsServedWhole) {
    const Json table = table_of(YFW_MODELS_DIR);
    for (const Json &row : table["nodes"])
        EXPECT_TRUE(is_served(row)) << row["openconfig"];
    EXPECT_EQ(leaves_of_all_devices(YFW_MODELS_DIR), leaves(table, "read"));
}

TEST(ShippedModel, IsEditedAsTheTableSays) {
    expect_edits_as_in_the_table(table_of(YFW_MODELS_DIR), YFW_MODELS_DIR);
}

// A directory with the published modules, which are not part of this repository.
class PublishedModel : public testing::Test {
protected:
    void SetUp() override {
        if (std::getenv("YFW_PUBLISHED_MODELS") == nullptr)
            GTEST_SKIP() << "YFW_PUBLISHED_MODELS names no directory";
        models_ = std::getenv("YFW_PUBLISHED_MODELS");
    }

    fs::path models_;
};

TEST_F(PublishedModel, IsReadAsTheTableSays) {
    const Json table = table_of(models_);
    expect_reads_as_in_the_table(table, models_);
    EXPECT_EQ(leaves_of_all_devices(models_), leaves(table, "read"));
    EXPECT_THAT(table["lacking"], IsEmpty());
}

TEST_F(PublishedModel, IsEditedAsTheTableSays) {
    expect_edits_as_in_the_table(table_of(models_), models_);
}

// ---- the page

// The table of the page below a heading.
std::string table_in_page(const std::string &heading) {
    const std::string page = read_file(YFW_COVERAGE_PAGE);
    const size_t start = page.find("\n", page.find(heading)) + 2;
    return page.substr(start, page.find("\n## ", start) - start);
}

std::string markdown_of(const fs::path &models) {
    return run_yfw({.arguments = {"coverage", "--markdown", "--models", models.string()}}).output;
}

TEST(ShippedModel, IsInThePageAsItIsServed) {
    EXPECT_EQ(table_in_page("## The shipped modules"), markdown_of(YFW_MODELS_DIR))
        << "yfw coverage --markdown prints the table";
}

TEST_F(PublishedModel, IsInThePageAsItIsServed) {
    EXPECT_EQ(table_in_page("## The published modules"), markdown_of(models_))
        << "yfw coverage --markdown prints the table";
}

} // namespace
} // namespace yfw::test
