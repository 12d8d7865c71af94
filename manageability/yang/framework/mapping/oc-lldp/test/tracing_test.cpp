// The two trace channels: gates, formats, order, per-site slots, cut lines; the assertion's text; and the error
// reply's content.
#include <gmock/gmock.h>

#include <map>
#include <set>
#include <tuple>

#include "oclldp_fixture.h"
#include "symbol_files.h"

namespace oclldp_test {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

const std::string state_name = "ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_systemname";
const std::string config_walker = "ymap_oq_oclldp_openconfiglldp_lvla_lldp_config";
const std::string config_hook = "ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_parse_augments";

// ---- gates -----------------------------------------------------------------------------------------

struct Gates {
    bool log_traces;
    bool log_errors;
    bool numbered;
};

class TraceGates : public OclldpTest, public ::testing::WithParamInterface<std::tuple<bool, bool, bool>> {
protected:
    TraceGates() : gates{std::get<0>(GetParam()), std::get<1>(GetParam()), std::get<2>(GetParam())} {
        fw.log_traces = gates.log_traces;
        fw.log_errors = gates.log_errors;
        context.ctx.trace_enabled = gates.numbered ? 1 : 0;
    }

    std::vector<std::string> only_open(const std::vector<std::string> &lines) const {
        std::vector<std::string> open;
        for (const std::string &line : lines) {
            if (line.starts_with("TRC") ? gates.log_traces : gates.log_errors)
                open.push_back(line);
        }
        return open;
    }
    std::vector<std::string> if_numbered(const std::vector<std::string> &lines) const {
        return gates.numbered ? lines : std::vector<std::string>{};
    }

    Gates gates;
    Context context{YMAP_REQ_GET};
};

TEST_P(TraceGates, LetThroughTheLinesOfASuccessAndChangeNothingElse) {
    Tree in(node("system-name"));
    EXPECT_EQ(call(state_name, context, in), YMAP_OK);
    const std::vector<std::string> lines = {"TRC: Start", "TRC: End"};
    EXPECT_EQ(fw.debug_lines(), only_open(lines));
    EXPECT_EQ(fw.numbered_lines(), if_numbered(lines));
    EXPECT_THAT(fw.add_paths(), ElementsAre("/lldp/global-lldp/lldp-info/system-name"));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(TraceGates, LetThroughTheLinesOfAMissingNodeAndChangeNothingElse) {
    EXPECT_EQ(call(state_name, context, nullptr), YMAP_ERR_INVALID_ARGS);
    const std::vector<std::string> lines = {"TRC: Start", "ERR: Invalid arguments passed!"};
    EXPECT_EQ(fw.debug_lines(), only_open(lines));
    EXPECT_EQ(fw.numbered_lines(), if_numbered(lines));
    EXPECT_EQ(fw.error_paths.size(), 1u);
}

TEST_P(TraceGates, LetThroughTheLinesOfALaterFailureAndChangeNothingElse) {
    Tree in(node("config").broken_children(3));
    EXPECT_EQ(call(config_walker, context, in), YMAP_ERR_MAP_FAILED);
    const std::vector<std::string> lines = {"TRC: Start", "ERR: Failed to get subtrees!", "TRC: End"};
    EXPECT_EQ(fw.debug_lines(), only_open(lines));
    EXPECT_EQ(fw.numbered_lines(), if_numbered(lines));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(OpenAndClosed, TraceGates,
                         ::testing::Combine(::testing::Bool(), ::testing::Bool(), ::testing::Bool()));

// ---- lines -----------------------------------------------------------------------------------------

class Tracing : public OclldpTest {
protected:
    Tracing() { call(state_name, context, nullptr); }

    std::string context_text() {
        char text[32];
        std::snprintf(text, sizeof text, "%p", static_cast<void *>(&context.ctx));
        return text;
    }
    std::vector<LogLine> of(LogLine::Channel channel) const {
        std::vector<LogLine> kept;
        for (const LogLine &line : fw.lines) {
            if (line.channel == channel)
                kept.push_back(line);
        }
        return kept;
    }

    Context context{YMAP_REQ_GET};
};

TEST_F(Tracing, TheGateIsAskedWithTheContextsFilterAndTheLevelsThreeAndZero) {
    EXPECT_THAT(fw.gate_levels, ElementsAre(YFW_LOG_TRACE, YFW_LOG_ERROR));
    EXPECT_THAT(fw.gate_filters, Each(&context.ctx.dbg_filter));
}

TEST_F(Tracing, DebugLinesCarryTheirFormatAndTheContext) {
    EXPECT_THAT(of(LogLine::Channel::debug_log),
                ElementsAre(AllOf(Field(&LogLine::format, "TRC: YFW: ctx=%p,Start"),
                                  Field(&LogLine::text, "TRC: YFW: ctx=" + context_text() + ",Start"),
                                  Field(&LogLine::handle, &context.trc_log)),
                            AllOf(Field(&LogLine::format, "ERR: YFW: ctx=%p,Invalid arguments passed!"),
                                  Field(&LogLine::text,
                                        "ERR: YFW: ctx=" + context_text() + ",Invalid arguments passed!"),
                                  Field(&LogLine::handle, &context.err_log))));
    EXPECT_THAT(of(LogLine::Channel::debug_log), Each(Field(&LogLine::zero_words_or, 0u)));
}

TEST_F(Tracing, NumberedLinesCarryNumberFunctionSourceLineAndContext) {
    const std::string where = ": " + state_name + ":[0-9]+ ctx=" + context_text() + ",";
    EXPECT_THAT(
        of(LogLine::Channel::numbered),
        ElementsAre(Field(&LogLine::text, MatchesRegex("#1: TRC" + where + "Start")),
                    Field(&LogLine::text, MatchesRegex("#2: ERR" + where + "Invalid arguments passed!"))));
    EXPECT_THAT(of(LogLine::Channel::numbered),
                Each(AllOf(Field(&LogLine::handle, &context.ltrace), Field(&LogLine::word, 0x10101000000u))));
}

TEST_F(Tracing, TheDebugLogComesBeforeTheNumberedLine) {
    std::vector<std::pair<LogLine::Channel, uint32_t>> order;
    for (const LogLine &line : fw.lines)
        order.emplace_back(line.channel, line.level);
    EXPECT_THAT(order, ElementsAre(std::pair(LogLine::Channel::debug_log, 3u),
                                   std::pair(LogLine::Channel::numbered, 3u),
                                   std::pair(LogLine::Channel::debug_log, 0u),
                                   std::pair(LogLine::Channel::numbered, 0u)));
}

TEST_F(Tracing, TheErrorPathIsRecordedAfterTheLines) {
    EXPECT_EQ(fw.calls.back().operation, "yfw_oc_error_path");
}

TEST_F(Tracing, EachNumberedLineTakesTheFrameworksNextNumber) {
    fw.forget_calls();
    fw.next_trace_number = 4294967295u;
    Tree in(node("system-name"));
    EXPECT_EQ(call(state_name, context, in), YMAP_OK);
    EXPECT_THAT(of(LogLine::Channel::numbered),
                ElementsAre(Field(&LogLine::number, 4294967295u), Field(&LogLine::number, 0u)));
}

// ---- cut lines -------------------------------------------------------------------------------------

class LongLines : public OclldpTest, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(LongLines, AreCutTo249CharactersOnTheNumberedChannelOnly) {
    Context context(YMAP_REQ_GET);
    const std::string key(GetParam(), 'k');
    Tree in(match("name", key));
    EXPECT_EQ(call("ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_interface_name", context, in), YMAP_OK);
    std::string whole;
    std::string numbered;
    for (const LogLine &line : fw.lines) {
        if (line.text.find("Get with key") == std::string::npos)
            continue;
        (line.channel == LogLine::Channel::debug_log ? whole : numbered) = line.text;
    }
    ASSERT_THAT(whole, HasSubstr("Get with key " + key + " oclldp_gl_int_name "));
    const std::string message = whole.substr(whole.find("Get with key"));
    const std::string start = numbered.substr(0, numbered.find("Get with key"));
    EXPECT_EQ(numbered, (start + message).substr(0, 249));
}

// The start of the line is about 110 characters long, so these end before, around and after the bound.
INSTANTIATE_TEST_SUITE_P(OfManyLengths, LongLines, ::testing::Values(1, 30, 50, 60, 70, 100, 127, 200, 500));

// ---- slots and names -------------------------------------------------------------------------------

// Callbacks in each way of reporting: without nodes, in a read and in an edit.
class EverySite : public OclldpTest {
protected:
    void run_all() {
        Tree in(leaf("a-node", "1"));
        for (const std::string &name : callback_names()) {
            for (const uint32_t kind : {10u, 2u}) {
                Context context(kind);
                for (tidl_yfw_datatree *input :
                     {static_cast<tidl_yfw_datatree *>(nullptr), static_cast<tidl_yfw_datatree *>(in)}) {
                    if (is_container_callback(name))
                        plugin->call_container(name, context, input, 0, &output);
                    else
                        plugin->call(name, context, input, &output);
                }
            }
        }
    }
};

TEST_F(EverySite, HasASlotOfItsOwnThatHoldsMinusOne) {
    run_all();
    std::map<const void *, std::set<std::tuple<std::string, std::string>>> users;
    std::vector<int32_t> values;
    for (std::size_t index = 0; index + 1 < fw.lines.size(); ++index) {
        const LogLine &line = fw.lines[index];
        if (line.channel != LogLine::Channel::debug_log)
            continue;
        values.push_back(line.slot_value);
        // The numbered line of the same site follows and names the function.
        users[line.slot].insert({fw.lines[index + 1].function, line.format});
    }
    EXPECT_THAT(values, Each(-1));
    EXPECT_FALSE(users.empty());
    for (const auto &[slot, sites] : users)
        EXPECT_EQ(sites.size(), 1u) << std::get<0>(*sites.begin()) << " " << std::get<1>(*sites.begin())
                                    << " and " << std::get<0>(*sites.rbegin()) << " "
                                    << std::get<1>(*sites.rbegin());
}

TEST_F(EverySite, NamesTheExportedCallbackThatRuns) {
    std::set<const void *> ducks;
    for (const std::string &name : callback_names()) {
        if (name.find("_duck_map_") != std::string::npos)
            ducks.insert(plugin->address(name));
    }
    for (const std::string &name : callback_names()) {
        if (ducks.contains(plugin->address(name)) && name.find("_duck_map_") == std::string::npos)
            continue;
        SCOPED_TRACE(name);
        Context context;
        fw.forget_calls();
        if (is_container_callback(name))
            plugin->call_container(name, context, nullptr, 0, &output);
        else
            plugin->call(name, context, nullptr, &output);
        std::vector<std::string> numbered;
        for (const LogLine &line : fw.lines) {
            if (line.channel == LogLine::Channel::numbered)
                numbered.push_back(line.function);
        }
        ASSERT_FALSE(numbered.empty());
        EXPECT_EQ(numbered.front(), name);
        EXPECT_EQ(numbered.back(), name);
    }
}

// ---- the assertion's text --------------------------------------------------------------------------

struct Prototype {
    const char *name;
    const char *source; // file name without its extension
};

void PrintTo(const Prototype &prototype, std::ostream *stream) {
    *stream << prototype.name;
}

class NullContext : public OclldpTest, public ::testing::WithParamInterface<Prototype> {};

TEST_P(NullContext, AbortsWithThePathOfTheSourceFileAndThePrototype) {
    GTEST_FLAG_SET(death_test_style, "fast");
    const Prototype &prototype = GetParam();
    Tree in(node("a-node"));
    EXPECT_DEATH(
        plugin->call(prototype.name, nullptr, in, &output),
        AllOf(
            HasSubstr(std::string("manageability/yang/framework/mapping/oc-lldp/src/") + prototype.source +
                      "."),
            HasSubstr(std::string(": terrno ") + prototype.name +
                      "(yfw_map_ctx, const struct tidl_yfw_datatree *, struct tidl_yfw_datatree *): Assertion "
                      "`NULL != ctx' failed.")));
}

INSTANTIATE_TEST_SUITE_P(
    OfOneCallbackOfEachSource, NullContext,
    ::testing::Values(
        Prototype{"ymap_oq_oclldp_openconfiglldp_lvla_lldp", "ymap_oclldp_openconfig_lldp_parser"},
        Prototype{"ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_hellotimer",
                  "ymap_oclldp_openconfig_lldp_parser"},
        Prototype{"ymap_oq_oclldp_openconfiglldp_lvla_lldp_parse_augments",
                  "ymap_oclldp_openconfig_lldp_parser"},
        Prototype{"ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_framein",
                  "ymap_oclldp_openconfig_lldp_auto"},
        Prototype{"ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_enabled",
                  "ymap_oclldp_openconfig_lldp_man"},
        Prototype{"ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp",
                  "ymap_oclldp_tarvo_qd_ethernet_lldp_cfg_parser"},
        Prototype{"ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_enable",
                  "ymap_oclldp_tarvo_qd_ethernet_lldp_cfg_auto"},
        Prototype{"ymap_qd_lldp_tlvselect_manual_cb", "ymap_oclldp_tarvo_qd_ethernet_lldp_cfg_man"},
        Prototype{"ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp",
                  "ymap_oclldp_tarvo_qd_ethernet_lldp_oper_parser"},
        Prototype{"ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_chassisid",
                  "ymap_oclldp_tarvo_qd_ethernet_lldp_oper_auto"},
        Prototype{"ymap_qd_lldp_tx_operman_cb", "ymap_oclldp_tarvo_qd_ethernet_lldp_oper_man"},
        Prototype{"ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations",
                  "ymap_oclldp_tarvo_qd_ifmgr_cfg_parser"},
        Prototype{"ymap_qo_oclldp_tarvoqdifmgrcfg_duck_map_leaf", "ymap_oclldp_tarvo_qd_ifmgr_cfg_auto"},
        Prototype{"ymap_qo_oclldp_intconfig_intname_man", "ymap_oclldp_tarvo_qd_ifmgr_cfg_man"}),
    [](const auto &test) { return std::string(test.param.name); });

// Functions of another shape than a callback's, and how their assertions name them.
struct OtherPrototype {
    std::string text;
    void (*call)(const Plugin &plugin, const std::string &name);

    std::string name() const {
        const std::string before = text.substr(0, text.find('('));
        return before.substr(before.find_last_of(" *") + 1);
    }
};

void PrintTo(const OtherPrototype &prototype, std::ostream *stream) {
    *stream << prototype.text;
}

class NullContextOfAFunction : public OclldpTest, public ::testing::WithParamInterface<OtherPrototype> {};

TEST_P(NullContextOfAFunction, AbortsWithItsOwnTypeAndArguments) {
    GTEST_FLAG_SET(death_test_style, "fast");
    const OtherPrototype &prototype = GetParam();
    EXPECT_DEATH(prototype.call(*plugin, prototype.name()),
                 HasSubstr(": " + prototype.text + ": Assertion `NULL != ctx' failed."));
}

INSTANTIATE_TEST_SUITE_P(
    Each, NullContextOfAFunction,
    ::testing::Values(
        OtherPrototype{"char *qd2oc_lldp_str(yfw_map_ctx, const struct tidl_yfw_datatree *, "
                       "struct tidl_yfw_datatree *)",
                       [](const Plugin &p, const std::string &name) {
                           p.symbol<decltype(qd2oc_lldp_str)>(name)(nullptr, nullptr, nullptr);
                       }},
        OtherPrototype{"char *oc2qd_lldp_str(yfw_map_ctx, const struct tidl_yfw_datatree *, "
                       "struct tidl_yfw_datatree *)",
                       [](const Plugin &p, const std::string &name) {
                           p.symbol<decltype(oc2qd_lldp_str)>(name)(nullptr, nullptr, nullptr);
                       }},
        OtherPrototype{"int yfw_oclldp_util_is_ifhandle_exist(char *, yfw_map_ctx)",
                       [](const Plugin &p, const std::string &name) {
                           p.symbol<decltype(yfw_oclldp_util_is_ifhandle_exist)>(name)(nullptr, nullptr);
                       }},
        OtherPrototype{"terrno oclldp_get_ne_cap_name(yfw_map_ctx, uint32_t, char *, int32_t)",
                       [](const Plugin &p, const std::string &name) {
                           p.symbol<decltype(oclldp_get_ne_cap_name)>(name)(nullptr, 0, nullptr, 0);
                       }},
        OtherPrototype{"terrno ymap_chassis_id_subtype_mapping_util(yfw_map_ctx, "
                       "const struct tidl_yfw_datatree *, char *)",
                       [](const Plugin &p, const std::string &name) {
                           p.symbol<decltype(ymap_chassis_id_subtype_mapping_util)>(name)(nullptr, nullptr,
                                                                                          nullptr);
                       }},
        OtherPrototype{"terrno ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(yfw_map_ctx, "
                       "const struct tidl_yfw_datatree *, struct tidl_yfw_datatree *, const char *, int32_t)",
                       [](const Plugin &p, const std::string &name) {
                           p.symbol<decltype(ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util)>(name)(
                               nullptr, nullptr, nullptr, nullptr, 0);
                       }},
        OtherPrototype{"terrno ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_interfaces(yfw_map_ctx, "
                       "const struct tidl_yfw_datatree *, uint32_t, struct tidl_yfw_datatree *)",
                       [](const Plugin &p, const std::string &name) {
                           p.call_container(name, nullptr, nullptr, 0, nullptr);
                       }}),
    [](const auto &test) { return test.param.name(); });

// ---- the error reply -------------------------------------------------------------------------------

class ErrorReply : public OclldpTest {
protected:
    Context context{YMAP_REQ_EDIT_ONE_KEY};
};

TEST_F(ErrorReply, NamesTheTagInACopyThatReplacesAnEarlierOne) {
    context.req.err_node_name = yfw_strdup("earlier", "YFW MAP");
    fw.forget_calls();
    Tree in(node("config").children({leaf("colour", "blue")}));
    EXPECT_EQ(call(config_walker, context, in), YMAP_ERR_UNSUPPORTED_TAG);
    EXPECT_THAT(fw.calls_of("qdos_named_free"), ElementsAre(Call{"qdos_named_free", "earlier"}));
    EXPECT_THAT(fw.calls_of("yfw_strdup"), ElementsAre(Call{"yfw_strdup", "colour, YFW MAP"}));
    EXPECT_THAT(fw.error_paths, ElementsAre(Field(&ErrorPath::err_node_name, "colour")));
    EXPECT_EQ(context.err_node_name(), "colour");
    EXPECT_EQ(fw.live_strings(), 1u);
}

TEST_F(ErrorReply, IsRecordedOnceHoweverDeepTheFailure) {
    Tree in(node("lldp").children({node("config").children({leaf("colour", "blue")})}));
    EXPECT_EQ(call("ymap_oq_oclldp_openconfiglldp_lvla_lldp", context, in), YMAP_ERR_UNSUPPORTED_TAG);
    EXPECT_THAT(fw.error_paths, ElementsAre(Field(&ErrorPath::err_node_name, "colour")));
}

TEST_F(ErrorReply, OfARefusedAugmentNamesItsTag) {
    Tree in(leaf("colour", "blue").in(foreign_ns));
    fw.is_request_add = true;
    EXPECT_EQ(call(config_hook, context, in), YMAP_ERR_UNSUPPORTED_AUGMENT);
    EXPECT_THAT(fw.error_paths, ElementsAre(Field(&ErrorPath::err_node_name, "colour")));
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(ErrorReply, WithoutARequestContextIsRecordedWithoutAName) {
    Tree in(leaf("colour", "blue").in(foreign_ns));
    fw.is_request_add = true;
    context.ctx.req_ctx = nullptr;
    EXPECT_EQ(call(config_hook, context, in), YMAP_ERR_UNSUPPORTED_AUGMENT);
    EXPECT_THAT(fw.error_paths, ElementsAre(Field(&ErrorPath::err_node_name, std::nullopt)));
    EXPECT_EQ(fw.live_strings(), 0u);
}

struct WithoutErrorPath {
    std::string walker;
    Node node;
    std::string message;
};

void PrintTo(const WithoutErrorPath &c, std::ostream *stream) {
    *stream << c.walker << " " << c.message;
}

class NoErrorReply : public OclldpTest, public ::testing::WithParamInterface<WithoutErrorPath> {};

TEST_P(NoErrorReply, IsRecordedForABrokenTree) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    Tree in(GetParam().node);
    EXPECT_EQ(call(GetParam().walker, context, in), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre(GetParam().message));
    EXPECT_THAT(fw.error_paths, IsEmpty());
    EXPECT_EQ(fw.debug_lines().back(), "TRC: End");
}

const std::string interface_walker = "ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces_interface";

INSTANTIATE_TEST_SUITE_P(
    Walkers, NoErrorReply,
    ::testing::Values(
        WithoutErrorPath{config_walker, node("config").broken_children(1), "Failed to get subtrees!"},
        WithoutErrorPath{interface_walker, node("interface").broken_children(1), "Failed to get subtrees!"},
        WithoutErrorPath{config_walker, node("config").children({leaf("x", "y").without_tag()}),
                         "Tag name is not available!"},
        WithoutErrorPath{interface_walker, node("interface"), "No keys specified with a list node."}));

} // namespace
} // namespace oclldp_test
