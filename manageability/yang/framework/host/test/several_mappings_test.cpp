// A mapping with another one beside it: what each is asked, and how their answers become one.
#include <gtest/gtest.h>

#include "base/error.h"
#include "host/engine.h"
#include "yang/path.h"
#include "yang/test/data_texts.h"

namespace yfw::host::test {
namespace {

using Lines = std::vector<std::string>;

class LampSource final : public sources::NativeSource {
public:
    yang::DataTree read(const ly_ctx *context) override {
        if (leaves.empty())
            return nullptr;
        const std::string xml = "<lamp xmlns=\"urn:test:lamp-oper\">" + leaves + "</lamp>";
        lyd_node *data = nullptr;
        lyd_parse_data_mem(context, xml.c_str(), LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0, &data);
        return yang::DataTree(data);
    }

    std::string leaves = "<shade>amber</shade><bulb>40 W</bulb>";
};

class TwoMappings : public testing::Test {
protected:
    MappingDescription mapping = read_mapping(TWO_MAPPINGS_DESCRIPTION);
    const yang::Schemas schemas{OTHER_MAPPING_MODELS, OTHER_MAPPING_MODELS, mapping.modules};
    LampSource lamp;

    ReadRequest request(const char *path) {
        ReadRequest made;
        made.paths.push_back(yang::parse_path(schemas.openconfig_root(), path));
        return made;
    }

    Lines read(const char *path = "/beacon") {
        Engine engine(schemas, lamp, mapping);
        return yang::test::leaves(engine.read(request(path)).data.get());
    }

    // The native paths that an edit of the beacon becomes.
    Lines edits() {
        Engine engine(schemas, lamp, mapping);
        yang::EditNode edit;
        edit.node = schemas.openconfig_root();
        Lines paths;
        for (const NativePath &path : engine.map_edit(edit, nullptr))
            paths.push_back(path.path);
        return paths;
    }
};

TEST_F(TwoMappings, AnswerTogether) {
    EXPECT_EQ(read(), (Lines{"/beacon/state/color=amber", "/beacon/state/power=40 W"}));
}

TEST_F(TwoMappings, AreOneMappingWhenNothingStandsBeside) {
    mapping.beside.clear();
    EXPECT_EQ(read(), (Lines{"/beacon/state/color=amber"}));
}

TEST_F(TwoMappings, LeaveALeafThatBothWriteToTheFirst) {
    EXPECT_EQ(read("/beacon/state/color"), (Lines{"/beacon/state/color=amber"}));
    lamp.leaves = "<bulb>40 W</bulb>";
    EXPECT_EQ(read("/beacon/state/color"), (Lines{"/beacon/state/color=of the glow"}));
}

// The beacon's mapping would write the power as well, if it were shown the bulb.
TEST_F(TwoMappings, AreEachShownOnlyWhatTheyAskedFor) {
    EXPECT_EQ(read("/beacon/state/power"), (Lines{"/beacon/state/power=40 W"}));
}

TEST_F(TwoMappings, AreCalledForAnAbsentTopNodeIfTheirDescriptionsSaySo) {
    lamp.leaves.clear();
    EXPECT_EQ(read("/beacon/state/power"), (Lines{"/beacon/state/power=none"}));
    mapping.beside.front().offer_absent_tops = false;
    EXPECT_EQ(read("/beacon/state/power"), Lines{});
}

TEST_F(TwoMappings, FailTogether) {
    lamp.leaves = "<shade>amber</shade><bulb>broken</bulb>";
    Engine engine(schemas, lamp, mapping);
    try {
        engine.read(request("/beacon"));
        FAIL() << "the read succeeded";
    } catch (const Error &error) {
        EXPECT_EQ(error.status(), YMAP_ERR_MAP_FAILED);
    }
}

TEST_F(TwoMappings, AreExplainedOneAfterTheOtherWithTheSecondsLibraryNamed) {
    Engine engine(schemas, lamp, mapping);
    const Explanation explanation = engine.explain(request("/beacon"));
    ASSERT_EQ(explanation.size(), 1u); // the beacon's mapping writes no trace
    EXPECT_EQ(explanation[0].openconfig, "/beacon");
    EXPECT_EQ(explanation[0].callbacks, Lines{"libglow.so:bulb"});
    ASSERT_EQ(explanation[0].paths.size(), 1u);
    EXPECT_EQ(explanation[0].paths[0].path, "/lamp/bulb");
}

TEST_F(TwoMappings, LeaveEditsToTheFirst) {
    EXPECT_EQ(edits(), Lines{"/lamp/shade"});
}

TEST_F(TwoMappings, BothMapEditsIfTheSecondsDescriptionSaysSo) {
    mapping.beside.front().edits = true;
    EXPECT_EQ(edits(), (Lines{"/lamp/shade", "/lamp/bulb"}));
}

TEST_F(TwoMappings, RefuseAnEditThatNoneMaps) {
    mapping.edits = false;
    try {
        edits();
        FAIL() << "the edit was mapped";
    } catch (const Error &error) {
        EXPECT_EQ(error.tag(), ErrorTag::operation_not_supported);
        EXPECT_EQ(error.path(), mapping.file.string());
        EXPECT_STREQ(error.what(), "the mapping maps no edits");
    }
}

TEST_F(TwoMappings, AreNotUsedWhenTheSecondExtendsWhatIsNoList) {
    for (const char *path : {"/beacon/state", "/beacon/no-such-list"}) {
        mapping.beside.front().extends = {path};
        try {
            const Engine engine(schemas, lamp, mapping);
            FAIL() << "was loaded";
        } catch (const Error &error) {
            EXPECT_EQ(error.path(), mapping.beside.front().file.string());
            EXPECT_NE(std::string(error.what()).find("\"openconfig.extends\" names " + std::string(path)),
                      std::string::npos)
                << error.what();
        }
    }
}

TEST_F(TwoMappings, AreNotUsedWhenTheSecondCannotBeLoaded) {
    mapping.beside.front().library = "/no/such/libglow.so";
    try {
        const Engine engine(schemas, lamp, mapping);
        FAIL() << "was loaded";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), "/no/such/libglow.so");
        EXPECT_EQ(error.tag(), ErrorTag::operation_failed);
    }
}

} // namespace
} // namespace yfw::host::test
