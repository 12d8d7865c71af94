// What the tests of the OpenConfig side share: the native paths that a callback wrote, in a form that can be
// compared and printed, and the lines that it wrote on both channels.
#ifndef OCLLDP_OQ_REQUESTS_H
#define OCLLDP_OQ_REQUESTS_H

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "oclldp_fixture.h"

namespace oclldp_test::request_mapping {

inline const std::string oq = "ymap_oq_oclldp_openconfiglldp_";
inline const std::vector<uint32_t> read_kinds = {YMAP_REQ_GET_CONFIG, YMAP_REQ_GET};
// The kinds with special rules in the walkers, and some next to the two kinds of reads.
inline const std::vector<uint32_t> edit_kinds = {1, 8, 9, 11, 15, 0xffffffffu};

// One add: all its arguments, and the state of the source node at that moment.
struct Written {
    std::string path;
    std::string ns;
    std::optional<std::string> value;
    std::optional<uint32_t> operation; // of the input node, which is the source; unset without a source
    uint32_t list_entry = 0;
    uint32_t flags = 0;
    std::string oddity; // a source or a parent that no callback should use

    bool operator==(const Written &) const = default;

    Written with(std::optional<std::string> text) && {
        value = std::move(text);
        return std::move(*this);
    }
    // With the input node as the source, whose operation was `op` at that moment.
    Written from_input(uint32_t op) && {
        operation = op;
        return std::move(*this);
    }
    Written as_entry() && {
        list_entry = 1;
        return std::move(*this);
    }
    Written last_flag() && {
        flags = 1;
        return std::move(*this);
    }
};

inline void PrintTo(const Written &written, std::ostream *stream) {
    *stream << "\n  " << written.path << " in " << written.ns << " = "
            << (written.value ? "\"" + *written.value + "\"" : "none") << ", "
            << (written.operation ? "source with operation " + std::to_string(*written.operation) : "no source")
            << ", list entry " << written.list_entry << ", flags " << written.flags << " " << written.oddity;
}

inline Written cfg(std::string path) {
    return {.path = std::move(path), .ns = native_cfg_ns, .value = {}, .operation = {}, .oddity = {}};
}

inline Written oper(std::string path) {
    return {.path = std::move(path), .ns = native_oper_ns, .value = {}, .operation = {}, .oddity = {}};
}

inline Written ifmgr(std::string path) {
    return {.path = std::move(path), .ns = native_ifmgr_ns, .value = {}, .operation = {}, .oddity = {}};
}

inline std::string text_of(const std::optional<std::string> &value) {
    return value.value_or("no value");
}

// A leaf with or without a value.
inline Node leaf_with(std::string name, std::optional<std::string> value) {
    return value ? leaf(std::move(name), std::move(*value)) : node(std::move(name));
}

// The same for a read, where a value makes it a content-match node.
inline Node selection(std::string name, std::optional<std::string> value) {
    return value ? match(std::move(name), std::move(*value)) : node(std::move(name));
}

class OqTest : public OclldpTest {
protected:
    // The adds so far, relative to the input node `in`.
    std::vector<Written> written(const tidl_yfw_datatree *in) const {
        std::vector<Written> result;
        std::transform(fw.adds.begin(), fw.adds.end(), std::back_inserter(result), [&](const Add &add) {
            Written one{.path = add.path,
                        .ns = add.ns,
                        .value = add.value,
                        .operation = add.source_operation,
                        .list_entry = add.list_entry,
                        .flags = add.flags,
                        .oddity = {}};
            if (add.source != nullptr && add.source != in)
                one.oddity += "(the source is not the input node)";
            if (add.parent != &output)
                one.oddity += "(not below the output node)";
            return one;
        });
        return result;
    }

    // Expects "Start", these lines and "End" on both channels; numbered lines are cut to 249 characters.
    void expect_lines(std::vector<std::string> between = {}) const {
        between.insert(between.begin(), "TRC: Start");
        between.emplace_back("TRC: End");
        EXPECT_EQ(fw.debug_lines(), between);
        std::vector<std::string> numbered = between;
        std::size_t index = 0;
        for (const LogLine &line : fw.lines) {
            if (line.channel != LogLine::Channel::numbered || index == numbered.size())
                continue;
            const std::size_t before_the_message = line.text.size() - line.message.size();
            numbered[index] = numbered[index].substr(0, std::string("TRC: ").size() + 249 - before_the_message);
            ++index;
        }
        EXPECT_EQ(fw.numbered_lines(), numbered);
    }

    // The calls to the system database or its library, in order.
    std::vector<std::string> system_database_calls() const {
        std::vector<std::string> kept;
        for (const Call &one : fw.calls) {
            if (one.operation == "access" || one.operation.find("sysdb") != std::string::npos)
                kept.push_back(to_string(one));
        }
        return kept;
    }

    bool changed_by_plugin(const tidl_yfw_datatree *in) const {
        return (in->node_flags & YFW_NODE_OPERATION_CHANGED) != 0;
    }
};

// A state of the system database, and whether it makes LLDP count as on.
struct SystemDatabase {
    std::string name;
    void (*prepare)(Double &fw);
    bool on;
};

inline void PrintTo(const SystemDatabase &database, std::ostream *stream) {
    *stream << database.name;
}

inline const std::vector<SystemDatabase> system_databases = {
    {"EnableIsOne", [](Double &fw) { fw.sysdb_items["enable"] = {.value = 1}; }, true},
    {"EnableHasNoData", [](Double &fw) { fw.sysdb_items["enable"] = {}; }, true},
    {"EnableIsZero", [](Double &fw) { fw.sysdb_items["enable"] = {.value = 0}; }, false},
    {"EnableIsTwo", [](Double &fw) { fw.sysdb_items["enable"] = {.value = 2}; }, false},
    {"EnableIsAbsent", [](Double &) {}, false},
    {"TheItemCannotBeRead", [](Double &fw) { fw.sysdb_items["enable"] = {.value = 1, .status = 78}; }, false},
    {"TheItemCallFails",
     [](Double &fw) {
         fw.sysdb_items["enable"] = {.value = 1};
         fw.fail("sysdb_item_get", 0, 79);
     },
     false},
    {"TheBindFails",
     [](Double &fw) {
         fw.sysdb_items["enable"] = {.value = 1};
         fw.fail("_sysdb_bind", 0, 77);
     },
     false},
    {"TheLibraryIsMissing",
     [](Double &fw) {
         fw.sysdb_items["enable"] = {.value = 1};
         fw.library_readable = false;
     },
     false},
};

} // namespace oclldp_test::request_mapping

#endif
