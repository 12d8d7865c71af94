// What the tests of the native operational responses share: the levels of the native tree and what the walkers
// do at each, a device that answers look-ups, and a way to run a single leaf callback.
#ifndef OCLLDP_OPER_RESPONSES_H
#define OCLLDP_OPER_RESPONSES_H

#include "response_expectations.h"

namespace oclldp_test {

inline const std::string oper = "ymap_qo_oclldp_tarvoqdethernetlldpoper_";
inline const std::string oc_neighbor = "/lldp/interfaces/interface/neighbors/neighbor";
inline const std::string oc_interface = "/lldp/interfaces/interface";
inline const std::string native_interface = "/lldp/nodes/node/interfaces/interface";
inline const std::string native_detail = "/lldp/nodes/node/neighbors/details/detail";
inline const std::string native_neighbor = native_detail + "/lldp-neighbor";
inline const std::string add_path = "yfw_map_datatree_add_path_flagged";

// One level of the native tree. Function names omit the common prefix `oper`.
struct OperLevel {
    std::string label;
    std::vector<std::string> path; // tags from the root down to the level
    std::string walker;            // the walker whose loop walks the level's children
    std::size_t walker_starts;     // the index in `path` of that walker's own node
    std::string callback;          // the container or list callback
    std::string hook;              // for nodes of other modules
    std::vector<std::string> tags; // the children, in the order in which they are matched
    std::string list_path;         // for a list entry; empty for a container

    bool is_list() const { return !list_path.empty(); }
    bool is_walkers_own() const { return walker_starts + 1 == path.size(); }
    const std::string &tag() const { return path.back(); }
};

void PrintTo(const OperLevel &level, std::ostream *stream);
const std::vector<OperLevel> &oper_levels();
const OperLevel &oper_level(const std::string &label);
// The level at a path of tags.
const OperLevel &oper_level_at(const std::vector<std::string> &path);
std::string oper_level_label(const ::testing::TestParamInfo<OperLevel> &info);

// The nodes of `path` from index `from` on, nested; the last one is `innermost`.
Node nest(const std::vector<std::string> &path, std::size_t from, Node innermost);

// The pushes and pops of a walk down the first `depth` tags of a path, from index `from` on.
std::vector<std::string> in_and_out(const std::vector<std::string> &path, std::size_t from, std::size_t depth);

// The pushes and pops that the walk made.
std::vector<std::string> hierarchy(const Double &fw);

// How often a text occurs in a list of texts.
std::size_t count_of(const std::vector<std::string> &texts, const std::string &text);

// A get on a device with one interface, and one neighbor that is already in the output list.
class OperTest : public OclldpTest {
protected:
    OperTest() { answer_for_the_device(); }

    void answer_for_the_device();
    void answer(const std::string &path, const std::string &leaf_name, std::optional<std::string> value) {
        fw.node_info[{path, leaf_name}] = {.value = std::move(value), .status = 0};
    }
    // Walks a native tree from its root.
    terrno walk(const Node &root) { return run("lvla_lldp", root); }
    // Runs a function, named without the prefix, with a native node.
    terrno run(const std::string &name, const Node &native) {
        trees.emplace_back(std::make_unique<Tree>(native, native_oper_ns));
        return call(oper + name, context, *trees.back());
    }
    // Runs a leaf callback, named without the part before its path words, on a leaf with or without a value.
    terrno run_leaf(const std::string &suffix, const std::optional<std::string> &value) {
        Node native = node("native-leaf");
        native.value = value;
        return run("leaf_lvla_lldp_" + suffix, native);
    }
    // Makes every add fail from the start of this function on.
    void fail_adds_of(const std::string &name, terrno status);

    Context context{YMAP_REQ_GET};
    std::vector<std::unique_ptr<Tree>> trees; // the double's records point into them
};

} // namespace oclldp_test

#endif
