// What the tests of the native-to-OpenConfig callbacks share: common parts of names, and readable forms of what
// the double recorded.
#ifndef OCLLDP_RESPONSE_EXPECTATIONS_H
#define OCLLDP_RESPONSE_EXPECTATIONS_H

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "oclldp_fixture.h"

namespace oclldp_test {

inline const std::string cfg = "ymap_qo_oclldp_tarvoqdethernetlldpcfg_";
inline const std::string ifmgr = "ymap_qo_oclldp_tarvoqdifmgrcfg_";

// The selection parameters of a request as the configuration callbacks read them.
struct Selection {
    uint32_t kind = YMAP_REQ_GET;
    uint32_t selection_empty = 1;
    uint32_t content = YFW_CONTENT_ALL;

    void apply(Context &context) const {
        context.descriptor.req_type = kind;
        context.descriptor.req_selection_empty = selection_empty;
        context.descriptor.req_content = content;
    }
    bool wants_config() const { return selection_empty != 0 || content != YFW_CONTENT_OPERATIONAL; }
    bool wants_state() const { return kind == YMAP_REQ_GET; }
};

inline void PrintTo(const Selection &selection, std::ostream *stream) {
    *stream << "kind " << selection.kind << ", selection " << (selection.selection_empty ? "empty" : "given")
            << ", content " << selection.content;
}

// Every combination of request kind, selection parameters and content selector that a callback can encounter.
inline std::vector<Selection> every_selection() {
    std::vector<Selection> all;
    for (const uint32_t kind : {0u, 1u, 8u, 10u, 15u}) {
        for (const uint32_t selection_empty : {0u, 1u}) {
            for (const uint32_t content : {0u, 1u, 2u, 3u})
                all.push_back({.kind = kind, .selection_empty = selection_empty, .content = content});
        }
    }
    return all;
}

// "path = value", or just the path for an add without a value.
inline std::string summary(const Add &add) {
    return add.value ? add.path + " = " + *add.value : add.path;
}

inline std::vector<std::string> summaries(const Double &fw) {
    std::vector<std::string> all;
    for (const Add &add : fw.adds)
        all.push_back(summary(add));
    return all;
}

// An add of an OpenConfig node directly below the output tree, without a source node.
MATCHER_P(IsPlainAddTo, parent, "is a plain OpenConfig add to the output tree") {
    return arg.parent == parent && arg.ns == oc_ns && arg.source == nullptr && arg.list_entry == 0 &&
           arg.flags == 0;
}

// The steps of the walk: "push NODE KIND", "pop NODE", "current PATH", "list+ NODE", "list- NODE", "add PATH",
// and "FUNCTION: MESSAGE" for each numbered line, in order.
inline std::vector<std::string> steps(const Double &fw, bool with_lines = true) {
    std::vector<std::string> told;
    std::size_t line = 0;
    std::vector<LogLine> numbered;
    std::copy_if(fw.lines.begin(), fw.lines.end(), std::back_inserter(numbered),
                 [](const LogLine &entry) { return entry.channel == LogLine::Channel::numbered; });
    const auto before = [](const std::string &args) { return args.substr(0, args.find(',')); };
    for (const Call &call : fw.calls) {
        if (call.operation == "yfw_map_add_to_node_hierarchy")
            told.push_back("push " + before(call.args) + call.args.substr(call.args.find(',') + 1));
        else if (call.operation == "yfw_map_remove_from_node_hierarchy")
            told.push_back("pop " + call.args);
        else if (call.operation == "yfw_map_update_current_list_node")
            told.push_back("current " + call.args);
        else if (call.operation == "yfw_add_to_output_list_ctx")
            told.push_back("list+ " + before(call.args));
        else if (call.operation == "yfw_remove_from_output_list_ctx")
            told.push_back("list- " + before(call.args));
        else if (call.operation == "yfw_map_datatree_add_path_flagged")
            told.push_back("add " + before(call.args));
        else if (call.operation == "_lstrace") {
            const LogLine &entry = numbered.at(line++);
            if (with_lines)
                told.push_back(entry.function + ": " + entry.message);
        }
    }
    return told;
}

// The messages that one function wrote to the numbered channel.
inline std::vector<std::string> messages_of(const Double &fw, const std::string &function) {
    std::vector<std::string> messages;
    for (const LogLine &line : fw.lines) {
        if (line.channel == LogLine::Channel::numbered && line.function == function)
            messages.push_back(line.message);
    }
    return messages;
}

// How often a function wrote its exit line to the numbered channel.
inline std::size_t ends_of(const Double &fw, const std::string &function) {
    const std::vector<std::string> messages = messages_of(fw, function);
    return static_cast<std::size_t>(std::count(messages.begin(), messages.end(), "End"));
}

} // namespace oclldp_test

#endif
