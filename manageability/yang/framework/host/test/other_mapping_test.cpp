// The host runs any mapping that comes with a description: here one unrelated to the shipped mapping.
#include <gtest/gtest.h>

#include "base/error.h"
#include "host/engine.h"
#include "yang/path.h"
#include "yang/test/data_texts.h"

namespace yfw::host::test {
namespace {

class LampSource final : public sources::NativeSource {
public:
    yang::DataTree read(const ly_ctx *context) override {
        lyd_node *data = nullptr;
        lyd_parse_data_mem(context, R"(<lamp xmlns="urn:test:lamp-oper"><shade>amber</shade></lamp>)", LYD_XML,
                           LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0, &data);
        return yang::DataTree(data);
    }
};

class AnotherMapping : public testing::Test {
protected:
    const MappingDescription mapping_ = read_mapping(OTHER_MAPPING_LIBRARY);
    const yang::Schemas schemas_{OTHER_MAPPING_MODELS, OTHER_MAPPING_MODELS, mapping_.modules};
    LampSource source_;

    std::vector<std::string> read(Engine &engine, const char *path) {
        ReadRequest request;
        request.paths.push_back(yang::parse_path(schemas_.openconfig_root(), path));
        return yang::test::leaves(engine.read(request).data.get());
    }
};

TEST_F(AnotherMapping, AnswersARead) {
    Engine engine(schemas_, source_, mapping_);
    EXPECT_EQ(read(engine, "/beacon/state/color"), std::vector<std::string>{"/beacon/state/color=amber"});
}

TEST_F(AnotherMapping, IsFoundByItsDescriptionToo) {
    Engine engine(schemas_, source_, read_mapping(mapping_.file));
    EXPECT_EQ(read(engine, "/beacon"), std::vector<std::string>{"/beacon/state/color=amber"});
}

TEST_F(AnotherMapping, WithoutAnswersForThePlatformHasNoInterfaces) {
    const DeviceQuestions questions = device_questions(mapping_, schemas_);
    EXPECT_FALSE(questions.enabled.has_value());
    EXPECT_FALSE(questions.configured_interfaces.has_value());
    EXPECT_TRUE(questions.interfaces.empty());
}

// What loading the mapping fails with; the error's path must be the description.
std::string error_of_engine(const yang::Schemas &schemas, sources::NativeSource &source,
                            const MappingDescription &mapping) {
    try {
        const Engine engine(schemas, source, mapping);
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), mapping.file.string());
        return error.what();
    }
    return "no error";
}

TEST_F(AnotherMapping, IsRefusedWhenItsStateIsNotInItsModule) {
    MappingDescription mapping = mapping_;
    mapping.state = {"/beacon/sound"};
    EXPECT_EQ(error_of_engine(schemas_, source_, mapping),
              "member \"openconfig.state\" names /beacon/sound, which module openconfig-beacon does not have");
}

TEST_F(AnotherMapping, IsRefusedWhenThePlatformIsAnsweredFromANodeThatIsNotThere) {
    MappingDescription mapping = mapping_;
    mapping.device.enabled = DeviceAnswers::Switch{"lamp-oper", "/lamp/fuse", "in"};
    EXPECT_EQ(error_of_engine(schemas_, source_, mapping),
              "member \"device\" names /lamp/fuse, which module lamp-oper does not have");
}

} // namespace
} // namespace yfw::host::test
