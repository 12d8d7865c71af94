// Organizationally specific TLVs as custom TLVs: the entry, its keys, and the value in base64.
#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Range;
using ::testing::SizeIs;
using ::testing::Values;

const std::string tlv = oc_neighbor + "/custom-tlvs/tlv";
const std::string tlv_value = tlv + "/state/value";
const std::string entry_callback = "list_lvla_lldp_orgdeftlvlist_lldporgdeftlventry";
const std::string oui_leaf = "lldporgdeftlventry_oui";
const std::string subtype_leaf = "lldporgdeftlventry_tlvsubtype";
const std::string value_leaf = "lldporgdeftlventry_tlvvalue";

using OperCustomTlv = OperTest;

// ---- the entry -----------------------------------------------------------------------------------------

TEST_F(OperCustomTlv, OpensAnEntry) {
    EXPECT_EQ(run(entry_callback, node("lldp-org-def-tlv-entry")), YMAP_OK);
    ASSERT_THAT(fw.adds, SizeIs(1));
    EXPECT_EQ(summary(fw.adds[0]), tlv);
    EXPECT_EQ(fw.adds[0].ns, oc_ns);
    EXPECT_EQ(fw.adds[0].parent, &output);
    EXPECT_EQ(fw.adds[0].source, nullptr);
    EXPECT_EQ(fw.adds[0].list_entry, 1u);
    EXPECT_EQ(fw.adds[0].flags, 0u);
}

TEST_F(OperCustomTlv, TakesTheOperationOfADeletedEntryOver) {
    for (const uint32_t operation :
         {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_CREATE, YFW_OP_DELETE, YFW_OP_REMOVE}) {
        SCOPED_TRACE(operation);
        fw.forget_calls();
        EXPECT_EQ(run(entry_callback, node("lldp-org-def-tlv-entry").operation(operation)), YMAP_OK);
        ASSERT_THAT(fw.adds, SizeIs(1));
        const bool deleted = operation == YFW_OP_DELETE || operation == YFW_OP_REMOVE;
        const tidl_yfw_datatree *entry = *trees.back();
        EXPECT_EQ(fw.adds[0].source, deleted ? entry : nullptr);
        EXPECT_EQ(fw.adds[0].list_entry, 1u);
    }
}

TEST_F(OperCustomTlv, EntryReturnsTheStatusOfTheAdd) {
    fw.fail(add_path, 1, 0x1234);
    EXPECT_EQ(run(entry_callback, node("lldp-org-def-tlv-entry")), 0x1234u);
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

// ---- oui ---------------------------------------------------------------------------------------------------

TEST_F(OperCustomTlv, OuiFillsTheKeysTypeAndOui) {
    EXPECT_EQ(run_leaf(oui_leaf, "0x001b21"), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre(tlv + "/type = 127", tlv + "/oui = 0x001b21",
                                           tlv + "/state/type = 127", tlv + "/state/oui = 0x001b21"));
    EXPECT_THAT(fw.adds, Each(IsPlainAddTo(&output)));
}

TEST_F(OperCustomTlv, OuiTellsWhatItMapped) {
    EXPECT_EQ(run_leaf(oui_leaf, "0x001b21"), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(),
                ElementsAre("TRC: Start", "TRC: OCLLDP type/OUI 0x001b21 keys & values mapped", "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_F(OperCustomTlv, OuiRejectsMissingArgumentsWithoutAnErrorPath) {
    Tree native(leaf("oui", "1"), native_oper_ns);
    const std::string name = oper + "leaf_lvla_lldp_" + oui_leaf;
    for (const int mapped : {0, 1}) {
        SCOPED_TRACE(mapped);
        fw.forget_calls();
        plugin->neighbor_list_mapped() = mapped;
        EXPECT_EQ(plugin->call(name, context, nullptr, &output), YMAP_ERR_MAP_FAILED);
        EXPECT_EQ(plugin->call(name, context, native, nullptr), YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(fw.errors(), ElementsAre("NULL arguments passed", "NULL arguments passed"));
        EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    }
}

class OperCustomTlvOuiAdd : public OperTest, public ::testing::WithParamInterface<unsigned> {};

INSTANTIATE_TEST_SUITE_P(EachFailingInTurn, OperCustomTlvOuiAdd, Range(1u, 5u));

TEST_P(OperCustomTlvOuiAdd, CountsForTheStatusOnlyWhenItIsTheLast) {
    fw.fail(add_path, GetParam(), 0x77);
    EXPECT_EQ(run_leaf(oui_leaf, "1"), GetParam() == 4 ? 0x77u : 0u);
    EXPECT_THAT(fw.adds, SizeIs(4));
}

// ---- subtype -----------------------------------------------------------------------------------------------

TEST_F(OperCustomTlv, SubtypeIsCopiedToTheKeyAndTheState) {
    for (const std::string value : {"0", "1", "255", ""}) {
        SCOPED_TRACE(value);
        fw.forget_calls();
        EXPECT_EQ(run_leaf(subtype_leaf, value), YMAP_OK);
        EXPECT_THAT(summaries(fw),
                    ElementsAre(tlv + "/oui-subtype = " + value, tlv + "/state/oui-subtype = " + value));
        EXPECT_THAT(fw.adds, Each(IsPlainAddTo(&output)));
    }
}

TEST_F(OperCustomTlv, SubtypeReturnsTheStatusOfItsLastAdd) {
    fw.fail(add_path, 2, 0x77);
    EXPECT_EQ(run_leaf(subtype_leaf, "1"), 0x77u);
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

// ---- value
// ---------------------------------------------------------------------------------------------------

struct Encoding {
    std::string label;
    std::string value;
    std::string base64;
};

void PrintTo(const Encoding &encoding, std::ostream *stream) {
    *stream << encoding.label;
}

class OperCustomTlvValue : public OperTest, public ::testing::WithParamInterface<Encoding> {};

std::string repeated(const std::string &text, int times) {
    std::string all;
    for (int time = 0; time < times; ++time)
        all += text;
    return all;
}

INSTANTIATE_TEST_SUITE_P(
    Every, OperCustomTlvValue,
    Values(Encoding{"OneByte", "a", "YQ=="}, Encoding{"TwoBytes", "ab", "YWI="},
           Encoding{"ThreeBytes", "abc", "YWJj"}, Encoding{"FourBytes", "foob", "Zm9vYg=="},
           Encoding{"FiveBytes", "fooba", "Zm9vYmE="}, Encoding{"SixBytes", "foobar", "Zm9vYmFy"},
           Encoding{"HighBytes", "\xff\xfe\xfd", "//79"}, Encoding{"OneHighByte", "\xff", "/w=="},
           Encoding{"TwoHighBytes", "\xfb\xef", "++8="}, Encoding{"Blanks", "  \n", "ICAK"},
           Encoding{"Hexadecimal", "0x0102", "MHgwMTAy"}, Encoding{"Percent", "%s%n", "JXMlbg=="},
           Encoding{"Long", repeated("foobar", 200), repeated("Zm9vYmFy", 200)},
           Encoding{"LongAndPadded", repeated("foobar", 200) + "a", repeated("Zm9vYmFy", 200) + "YQ=="}),
    [](const auto &test) { return test.param.label; });

TEST_P(OperCustomTlvValue, IsEncodedInBase64) {
    EXPECT_EQ(run_leaf(value_leaf, GetParam().value), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre(tlv_value + " = " + GetParam().base64));
    EXPECT_THAT(fw.adds, Each(IsPlainAddTo(&output)));
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(OperCustomTlv, EveryByteIsEncodedAsTheAlphabetHasIt) {
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (unsigned byte = 1; byte < 256; ++byte) {
        SCOPED_TRACE(byte);
        fw.forget_calls();
        EXPECT_EQ(run_leaf(value_leaf, std::string(1, static_cast<char>(byte))), YMAP_OK);
        const std::string expected = {alphabet[byte >> 2], alphabet[(byte & 3) << 4], '=', '='};
        EXPECT_THAT(summaries(fw), ElementsAre(tlv_value + " = " + expected));
    }
}

TEST_F(OperCustomTlv, ValueTellsWhatItEncoded) {
    EXPECT_EQ(run_leaf(value_leaf, "ab"), YMAP_OK);
    // The space is missing on purpose.
    EXPECT_THAT(fw.debug_lines(),
                ElementsAre("TRC: Start", "TRC: OCLLDP encoded data YWI= input data abinput_len 2 out_len 4",
                            "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_F(OperCustomTlv, ValueThatIsMissingOrEmptyIsAddedWithoutOne) {
    for (const std::optional<std::string> &value :
         {std::optional<std::string>{}, std::optional<std::string>{""}}) {
        SCOPED_TRACE(value.value_or("missing"));
        fw.forget_calls();
        EXPECT_EQ(run_leaf(value_leaf, value), YMAP_OK);
        EXPECT_THAT(summaries(fw), ElementsAre(tlv_value));
        EXPECT_THAT(fw.adds, Each(IsPlainAddTo(&output)));
    }
}

TEST_F(OperCustomTlv, ValueWithoutMemoryForItIsAddedWithoutOne) {
    fw.fail_allocation(1);
    EXPECT_EQ(run_leaf(value_leaf, "abc"), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre(tlv_value));
}

TEST_F(OperCustomTlv, ValueReturnsTheStatusOfTheAdd) {
    for (const std::optional<std::string> &value :
         {std::optional<std::string>{"abc"}, std::optional<std::string>{""}, std::optional<std::string>{}}) {
        SCOPED_TRACE(value.value_or("missing"));
        fw.fail(add_path, 1, 0x1234);
        EXPECT_EQ(run_leaf(value_leaf, value), 0x1234u);
    }
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

// ---- arguments -------------------------------------------------------------------------------------------

class OperCustomTlvArguments : public OperTest, public ::testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Every, OperCustomTlvArguments,
                         Values(entry_callback, "leaf_lvla_lldp_" + subtype_leaf,
                                "leaf_lvla_lldp_" + value_leaf));

TEST_P(OperCustomTlvArguments, MissingAreRejectedWithAnErrorPath) {
    Tree native(leaf("native-node", "1"), native_oper_ns);
    EXPECT_EQ(plugin->call(oper + GetParam(), context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call(oper + GetParam(), context, native, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!", "Invalid arguments passed!"));
    EXPECT_THAT(fw.error_paths, SizeIs(2));
    EXPECT_THAT(fw.adds, IsEmpty());
}

// ---- as a whole ------------------------------------------------------------------------------------------

TEST_F(OperCustomTlv, ListIsMappedEntryByEntry) {
    const auto entry = [](const std::string &oui, const std::string &subtype, const std::string &value) {
        return node("lldp-org-def-tlv-entry")
            .children({leaf("oui", oui), leaf("tlv-subtype", subtype), leaf("tlv-value", value)});
    };
    EXPECT_EQ(run("lvla_lldp_detail_lldpneighbor",
                  node("lldp-neighbor")
                      .children({node("mib").children(
                          {node("org-def-tlv-list")
                               .children({entry("0x0080c2", "1", "a"), entry("0x00120f", "4", "ab")})})})),
              YMAP_OK);
    EXPECT_THAT(summaries(fw),
                ElementsAre(tlv, tlv + "/type = 127", tlv + "/oui = 0x0080c2", tlv + "/state/type = 127",
                            tlv + "/state/oui = 0x0080c2", tlv + "/oui-subtype = 1",
                            tlv + "/state/oui-subtype = 1", tlv_value + " = YQ==", tlv, tlv + "/type = 127",
                            tlv + "/oui = 0x00120f", tlv + "/state/type = 127", tlv + "/state/oui = 0x00120f",
                            tlv + "/oui-subtype = 4", tlv + "/state/oui-subtype = 4", tlv_value + " = YWI="));
}

TEST_F(OperCustomTlv, EmptyListBecomesAnEmptyContainer) {
    EXPECT_EQ(run("lvla_lldp_detail_lldpneighbor",
                  node("lldp-neighbor").children({node("mib").children({node("org-def-tlv-list")})})),
              YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre(oc_neighbor + "/custom-tlvs"));
}

} // namespace
} // namespace oclldp_test
