// The whole answer of a device is valid data of its model: not only each value, but keys, references and
// conditions too.
#include <cstdlib>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/answers.h"
#include "support/child_process.h"
#include "support/files.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;

std::string message_of(const ly_ctx *context) {
    const char *message = ly_errmsg(context);
    const char *path = ly_errpath(context);
    return std::string(message != nullptr ? message : "") + " at " + (path != nullptr ? path : "");
}

// Of a directory with subdirectories; the modules of others stand beside it in their repository.
Context modules_in(const fs::path &directory, const std::vector<const char *> &names) {
    ly_log_options(LY_LOSTORE_LAST);
    ly_ctx *created = nullptr;
    const uint16_t options = LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIR_CWD;
    if (ly_ctx_new(directory.c_str(), options, &created) != LY_SUCCESS)
        throw std::runtime_error("no libyang context");
    Context context(created);
    for (const fs::path &others : {directory / "../../third_party", fs::path(YFW_STANDARD_MODELS_DIR)})
        if (fs::is_directory(others))
            ly_ctx_set_searchdir(created, fs::canonical(others).c_str());
    for (const char *name : names)
        if (ly_ctx_load_module(created, name, nullptr, nullptr) == nullptr)
            throw std::runtime_error(std::string(name) + ": " + message_of(created));
    return context;
}

// What of the document's data of openconfig-lldp violates a rule of the module; empty if nothing does.
std::string violation_in(const ly_ctx *context, const std::string &document) {
    Tree tree = parse_answer(context, Format::xml, document);
    lyd_node *data = tree.release();
    const lys_module *module = ly_ctx_get_module_implemented(context, "openconfig-lldp");
    const LY_ERR result = lyd_validate_module(&data, module, 0, nullptr);
    tree.reset(data);
    return result == LY_SUCCESS ? "" : message_of(context);
}

std::string answer_of(const std::string &device, const fs::path &models) {
    const Outcome outcome = run_yfw(
        {.arguments = {"get", "/lldp", "--format", "xml", "--device", device, "--models", models.string()}});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return outcome.output;
}

class AnAnswer : public testing::TestWithParam<const char *> {};

TEST_P(AnAnswer, IsValidDataOfTheShippedModules) {
    const Context context = modules_in(YFW_MODELS_DIR, {"openconfig-lldp-types", "openconfig-lldp"});
    const std::string answer = answer_of(GetParam(), YFW_MODELS_DIR);
    EXPECT_NE(answer.find("<mgmt-address>"), std::string::npos);
    EXPECT_EQ(violation_in(context.get(), answer), "");
}

TEST(AnAnswerWithTwoEntriesOfAKey, IsNotValid) {
    const Context context = modules_in(YFW_MODELS_DIR, {"openconfig-lldp-types", "openconfig-lldp"});
    const std::string entry = "<interface><name>e</name><config><name>e</name></config></interface>";
    const std::string answer =
        "<lldp xmlns=\"http://openconfig.net/yang/lldp\"><interfaces>" + entry + entry + "</interfaces></lldp>";
    EXPECT_NE(violation_in(context.get(), answer), "");
}

// The device's interfaces, as a device has them that serves openconfig-interfaces too.
std::string interface_data(const std::set<std::string> &names) {
    std::string entries;
    for (const std::string &name : names)
        entries += "<interface><name>" + name + "</name><config><name>" + name + "</name></config></interface>";
    return "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\">" + entries + "</interfaces>";
}

class AnAnswerInPublishedTerms : public testing::TestWithParam<const char *> {
protected:
    void SetUp() override {
        if (std::getenv("YFW_PUBLISHED_MODELS") == nullptr)
            GTEST_SKIP() << "YFW_PUBLISHED_MODELS names no directory";
        models = std::getenv("YFW_PUBLISHED_MODELS");
    }

    fs::path models;
};

TEST_P(AnAnswerInPublishedTerms, IsValidWithTheInterfacesThatItRefersTo) {
    const Context context =
        modules_in(models, {"openconfig-lldp-types", "openconfig-interfaces", "openconfig-lldp"});
    const std::string answer = answer_of(GetParam(), models);
    const Tree tree = parse_answer(context.get(), Format::xml, answer);
    const std::vector<std::string> names =
        values_at(tree.get(), "/openconfig-lldp:lldp/interfaces/interface/name");
    ASSERT_FALSE(names.empty());
    EXPECT_EQ(violation_in(context.get(), answer + interface_data({names.begin(), names.end()})), "");
    EXPECT_NE(violation_in(context.get(), answer + interface_data({"another"})), "");
}

std::string name_of(const testing::TestParamInfo<const char *> &test) {
    return fs::path(test.param).filename().string();
}

constexpr const char *recorded_devices[] = {YFW_EXAMPLES_DIR "/r1", YFW_EXAMPLES_DIR "/r2",
                                            YFW_EXAMPLES_DIR "/r3", YFW_EXAMPLES_DIR "/r4"};

INSTANTIATE_TEST_SUITE_P(Of, AnAnswer, testing::ValuesIn(recorded_devices), name_of);
INSTANTIATE_TEST_SUITE_P(Of, AnAnswerInPublishedTerms, testing::ValuesIn(recorded_devices), name_of);

} // namespace
} // namespace yfw::test
