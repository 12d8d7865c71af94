// The base of the tests of the OpenConfig walkers, and the table of all walkers.
#ifndef OCLLDP_OC_WALKER_FIXTURE_H
#define OCLLDP_OC_WALKER_FIXTURE_H

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "oclldp_fixture.h"

namespace oclldp_test {

// An edit of a kind without key rules.
inline constexpr uint32_t plain_edit = 2;

// The full name of a function on the OpenConfig side.
inline std::string oq(const std::string &rest) {
    return "ymap_oq_oclldp_openconfiglldp_" + rest;
}

inline const std::string root_walker = oq("lvla_lldp");
inline const std::string config_walker = oq("lvla_lldp_config");
inline const std::string interfaces_walker = oq("lvla_lldp_interfaces");
inline const std::string interface_walker = oq("lvla_lldp_interfaces_interface");
inline const std::string neighbor_walker = oq("lvla_lldp_neighbors_neighbor");
inline const std::string tlv_walker = oq("lvla_lldp_customtlvs_tlv");
inline const std::string capability_walker = oq("lvla_lldp_capabilities_capability");

class OcWalkerTest : public OclldpTest {
protected:
    // The functions that traced their start on the numbered channel, in order. The list duck only traces its
    // end, so that counts instead.
    std::vector<std::string> entered() const {
        std::vector<std::string> functions;
        for (const LogLine &line : fw.lines) {
            const bool duck = line.function == oq("duck_map_list");
            if (line.channel == LogLine::Channel::numbered && line.message == (duck ? "End" : "Start"))
                functions.push_back(line.function);
        }
        return functions;
    }

    // The functions that traced their end.
    std::vector<std::string> left() const {
        std::vector<std::string> functions;
        for (const LogLine &line : fw.lines) {
            if (line.channel == LogLine::Channel::numbered && line.message == "End")
                functions.push_back(line.function);
        }
        return functions;
    }

    // Runs `action` each time `function` traces `message` on the numbered channel.
    void when(const std::string &function, const std::string &message, std::function<void()> action) {
        fw.on_call("_lstrace", [this, function, message, action](const Call &) {
            const LogLine &line = fw.lines.back();
            if (line.function == function && line.message == message)
                action();
        });
    }

    // Pushes to and pops from the node hierarchy, as "+name kind" and "-name".
    std::vector<std::string> hierarchy() const {
        std::vector<std::string> steps;
        for (const Call &call : fw.calls) {
            if (call.operation == "yfw_map_add_to_node_hierarchy")
                steps.push_back("+" + call.args);
            if (call.operation == "yfw_map_remove_from_node_hierarchy")
                steps.push_back("-" + call.args);
        }
        return steps;
    }
};

// One child of a container or list: its tag, its walker, and whether it is walked only for request kind 10.
struct WalkerChild {
    const char *tag;
    std::string walker;
    std::string leaf_callback; // empty unless a leaf
    bool get_only;
};

// One container or list walker.
struct WalkerRow {
    std::string walker;
    std::string callback; // the name it uses in traces
    const char *tag;
    std::vector<WalkerChild> children;
};

inline void PrintTo(const WalkerRow &row, std::ostream *stream) {
    *stream << row.walker;
}

const std::vector<WalkerRow> &walker_table();

// One leaf walker. Key and leaf-list walkers never touch the walk flags.
struct LeafWalker {
    const char *tag;
    std::string walker;
    std::string callback;
    uint32_t marker;
    bool touches_walk_flags;
};

inline void PrintTo(const LeafWalker &walker, std::ostream *stream) {
    *stream << walker.walker;
}

std::vector<LeafWalker> leaf_walkers();

} // namespace oclldp_test

#endif
