// Answers in terms of OpenConfig modules other than the shipped ones.
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/child_process.h"
#include "support/files.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

const std::string device = YFW_EXAMPLES_DIR "/r1";

class OtherModels : public testing::Test {
protected:
    void SetUp() override {
        for (const char *module : {"openconfig-lldp.yang", "openconfig-lldp-types.yang"})
            fs::copy_file(fs::path(YFW_MODELS_DIR) / module, directory_.path() / module);
    }

    // Replaces the first text in the module that starts with `begin` and ends with `end`.
    void replace(const std::string &module, const std::string &begin, const std::string &end,
                 const std::string &replacement) const {
        std::string text = read_file(directory_.path() / module);
        const std::size_t at = text.find(begin);
        ASSERT_NE(at, std::string::npos) << begin;
        const std::size_t past = text.find(end, at) + end.size();
        directory_.add(module, text.replace(at, past - at, replacement));
    }

    Outcome read(const std::string &path, const fs::path &models) const {
        return run_yfw({.arguments = {"get", path, "--device", device, "--models", models.string()}});
    }
    Outcome read(const std::string &path) const { return read(path, directory_.path()); }

    static Outcome read_with_shipped_models(const std::string &path) {
        return run_yfw({.arguments = {"get", path, "--device", device}});
    }

    const TemporaryDirectory directory_;
};

TEST_F(OtherModels, ThatAreACopyOfTheShippedOnesChangeNothing) {
    const Outcome outcome = read("/lldp");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, read_with_shipped_models("/lldp").output);
}

TEST_F(OtherModels, AreFoundByARelativePath) {
    const Outcome outcome = run_yfw({.arguments = {"get", "/lldp/config", "--device", device, "--models", "."},
                                     .working_directory = directory_.path()});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, read_with_shipped_models("/lldp/config").output);
}

TEST_F(OtherModels, ThatLackACapabilityCostThatCapabilityAndAWarning) {
    replace("openconfig-lldp-types.yang", "  identity STATION_ONLY {", "\n  }\n", "");
    const Outcome outcome = read("/lldp/interfaces/interface[name='eth1']");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output.find("STATION_ONLY"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("openconfig-lldp-types:ROUTER"), std::string::npos) << outcome.output;
    ASSERT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    EXPECT_EQ(outcome.errors.rfind("yfw: warning: ", 0), 0U) << outcome.errors;
    EXPECT_NE(outcome.errors.find("STATION_ONLY"), std::string::npos) << outcome.errors;
}

TEST_F(OtherModels, ThatAllowLessOfAValueCostThatValueAndAWarning) {
    replace("openconfig-lldp.yang", "      type string {\n        length \"0..255\";\n", "      }",
            "type string {"
            " length \"0..4\"; }");
    const Outcome outcome = read("/lldp/config");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output.find("system-name"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("system-description"), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.errors.find("yfw: warning: /openconfig-lldp:lldp/config/system-name: "),
              std::string::npos)
        << outcome.errors;
}

TEST_F(OtherModels, ThatLackALeafCostThatLeafAndNotTheReply) {
    replace("openconfig-lldp.yang", "leaf chassis-id {", "{", "leaf chassis-identifier {");
    const Outcome outcome = read("/lldp");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.output.find("\"chassis-id\""), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("\"chassis-id-type\""), std::string::npos) << outcome.output;
}

TEST_F(OtherModels, ThatLackTheLeafThatIsAskedForMakeThePathUnknown) {
    replace("openconfig-lldp.yang", "leaf chassis-id {", "{", "leaf chassis-identifier {");
    const Outcome outcome = read("/lldp/state/chassis-id");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors,
              "yfw: /lldp/state/chassis-id: unknown node \"chassis-id\" under \"/lldp/state\"\n");
}

// As the published models refer to the modules of interfaces, of which there is no data.
TEST_F(OtherModels, ThatReferToWhatIsNotServedTakeEdits) {
    directory_.add("ports.yang", "module ports { namespace \"urn:ports\"; prefix p;"
                                 " container ports { list port { key name; leaf name { type string; } } } }");
    replace("openconfig-lldp.yang", "  import openconfig-lldp-types {", "{",
            "  import ports { prefix p; }\n  import openconfig-lldp-types {");
    replace("openconfig-lldp.yang", "    leaf name {\n      type string;", ";",
            "    leaf name { type leafref { path \"/p:ports/p:port/p:name\"; }");
    const std::string store = (directory_.path() / "commits.db").string();
    const Outcome outcome =
        run_yfw({.arguments = {"set", "/lldp/interfaces/interface[name='eth9']/config/enabled", "false",
                               "--device", device, "--store", store, "--models", directory_.path().string()}});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("eth9"), std::string::npos) << outcome.output;
}

// As OpenConfig's repository keeps the modules of others.
TEST_F(OtherModels, TakeImportsFromTheRepositoryThatTheyArePartOf) {
    const TemporaryDirectory repository;
    fs::create_directories(repository.path() / "release/models/lldp");
    fs::create_directories(repository.path() / "third_party/ietf");
    for (const char *module : {"openconfig-lldp.yang", "openconfig-lldp-types.yang"})
        fs::copy_file(directory_.path() / module, repository.path() / "release/models/lldp" / module);
    const std::string text = read_file(directory_.path() / "openconfig-lldp.yang");
    const std::string import = "  import openconfig-lldp-types {";
    repository.add("release/models/lldp/openconfig-lldp.yang",
                   std::string(text).replace(text.find(import), 0, "  import ports { prefix p; }\n"));
    repository.add("third_party/ietf/ports.yang",
                   "module ports { namespace \"urn:ports\"; prefix p; import ietf-interfaces { prefix i; } }");
    const Outcome outcome = read("/lldp/config", repository.path() / "release/models");
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, read_with_shipped_models("/lldp/config").output);
}

TEST_F(OtherModels, ThatLackAnImportAreRefusedWithTheNamesOfTheImportAndOfTheModuleThatImportsIt) {
    directory_.add("ports.yang",
                   "module ports { namespace \"urn:ports\"; prefix p; import cables { prefix c; } }");
    replace("openconfig-lldp.yang", "  import openconfig-lldp-types {", "{",
            "  import ports { prefix p; }\n  import openconfig-lldp-types {");
    const Outcome outcome = read("/lldp");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    ASSERT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    EXPECT_EQ(outcome.errors.rfind("yfw: cables.yang: no such YANG module in " + directory_.path().string(), 0),
              0U)
        << outcome.errors;
    EXPECT_NE(outcome.errors.find("; ports imports it\n"), std::string::npos) << outcome.errors;
}

TEST_F(OtherModels, ThatLackSeveralLeavesCostASingleWarning) {
    replace("openconfig-lldp.yang", "leaf chassis-id {", "{", "leaf chassis-identifier {");
    replace("openconfig-lldp.yang", "leaf age {", "{", "leaf years {");
    const Outcome outcome = read("/lldp");
    EXPECT_EQ(outcome.status, 0);
    ASSERT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    for (const char *missing : {"/lldp/state/chassis-id", "neighbor/state/chassis-id", "neighbor/state/age"})
        EXPECT_NE(outcome.errors.find(missing), std::string::npos) << outcome.errors;
}

struct Refusal {
    const char *what;
    const char *file; // replaced with the content, or removed if that is null
    const char *content;
    const char *named; // what the message must name
};

class OtherModelsAreRefused : public OtherModels, public testing::WithParamInterface<Refusal> {};

TEST_P(OtherModelsAreRefused, WithOneLineThatNamesThePlace) {
    if (GetParam().content != nullptr)
        directory_.add(GetParam().file, GetParam().content);
    else
        fs::remove(directory_.path() / GetParam().file);
    const Outcome outcome = read("/lldp");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    EXPECT_NE(outcome.errors.find(GetParam().named), std::string::npos) << outcome.errors;
}

INSTANTIATE_TEST_SUITE_P(
    When, OtherModelsAreRefused,
    testing::Values(Refusal{"TheModuleIsMissing", "openconfig-lldp.yang", nullptr, "openconfig-lldp"},
                    Refusal{"TheTypesAreMissing", "openconfig-lldp-types.yang", nullptr, "openconfig-lldp"},
                    Refusal{"TheModuleIsCutOff", "openconfig-lldp.yang", "module openconfig-lldp {\n",
                            "openconfig-lldp.yang"},
                    Refusal{"TheModuleIsNoYang", "openconfig-lldp.yang", "<lldp/>\n", "openconfig-lldp.yang"}),
    [](const auto &refusal) { return refusal.param.what; });

TEST_F(OtherModels, InADirectoryThatIsNotThereAreRefused) {
    const Outcome outcome = read("/lldp", directory_.path() / "nowhere");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    EXPECT_NE(outcome.errors.find((directory_.path() / "nowhere").string()), std::string::npos)
        << outcome.errors;
}

} // namespace
} // namespace yfw::test
