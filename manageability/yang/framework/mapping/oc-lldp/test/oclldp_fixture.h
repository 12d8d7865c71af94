// What every test of the plug-in starts with: a freshly loaded plug-in, the context of one request, and data
// trees written as nested braces.
#ifndef OCLLDP_FIXTURE_H
#define OCLLDP_FIXTURE_H

#include <gtest/gtest.h>

#include <deque>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "oclldp_plugin.h"
#include "recording_double.h"

namespace oclldp_test {

inline constexpr const char *oc_ns = "http://openconfig.net/yang/lldp";
inline constexpr const char *oc_types_ns = "http://openconfig.net/yang/lldp/types";
inline constexpr const char *native_cfg_ns = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg";
inline constexpr const char *native_oper_ns = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper";
inline constexpr const char *native_ifmgr_ns = "urn:tarvo:yang:Tarvo-QD-ifmgr-cfg";
inline constexpr const char *foreign_ns = "urn:example:somebody-else";

// The plug-in, loaded on construction and unloaded on destruction, so that its module state starts afresh.
class Plugin {
public:
    explicit Plugin(const char *library = OCLLDP_LIBRARY);
    ~Plugin();
    Plugin(const Plugin &) = delete;
    Plugin &operator=(const Plugin &) = delete;

    // The address of an exported name; throws std::runtime_error when there is no such name.
    void *address(const std::string &name) const;
    bool has(const std::string &name) const;
    // A function or variable as its header declares it: symbol<decltype(f)>("f") or symbol<int>("v").
    template <typename T> T *symbol(const std::string &name) const {
        return reinterpret_cast<T *>(address(name));
    }
    yfw_map_callback callback(const std::string &name) const;
    yfw_map_container_callback container(const std::string &name) const;

    terrno call(const std::string &name, yfw_map_ctx ctx, const tidl_yfw_datatree *in,
                tidl_yfw_datatree *out) const;
    terrno call_container(const std::string &name, yfw_map_ctx ctx, const tidl_yfw_datatree *in, uint32_t count,
                          tidl_yfw_datatree *out) const;

    // The module state.
    uint64_t &sysdb_conn() const { return *symbol<uint64_t>("oc_lldp_sysdb_conn"); }
    char *interface_name() const { return symbol<char>("oclldp_gl_int_name"); }
    int32_t &get_with_interface_key() const { return *symbol<int32_t>("oclldp_get_with_int_key"); }
    int32_t &get_with_neighbor_key() const { return *symbol<int32_t>("is_get_with_key"); }
    char *&neighbor_id() const { return *symbol<char *>("gl_neigh_dev_id"); }
    int32_t &deleting_interface() const { return *symbol<int32_t>("delete_interface"); }
    int32_t &neighbor_list_mapped() const { return *symbol<int32_t>("oclldp_is_neigh_list_mapped"); }
    uint32_t *stats() const { return symbol<uint32_t>("gl_stats"); }
    uint32_t *stat_counts() const { return symbol<uint32_t>("stat_count"); }
    int32_t &subtree_count() const { return *symbol<int32_t>("gl_subtree_count"); }
    int32_t &capability_count() const { return *symbol<int32_t>("num_lldp_caps"); }
    const char **capability_codes() const { return symbol<const char *>("lldp_cap_codes"); }
    char *ring() const { return symbol<char>("oc_lldp_str_buf"); }
    int32_t &ring_index() const { return *symbol<int32_t>("oc_lldp_str_buf_index"); }

private:
    void *handle = nullptr;
};

// The context of one request of a given kind. All log handles differ; tracing is on.
class Context {
public:
    explicit Context(uint32_t kind = YMAP_REQ_GET);
    ~Context();
    Context(const Context &) = delete;
    Context &operator=(const Context &) = delete;

    operator yfw_map_ctx() { return &ctx; }
    yfw_map_ctx operator->() { return &ctx; }

    // The name stored for the error reply.
    std::optional<std::string> err_node_name() const;

    yfw_map_context ctx{};
    yfw_req_ctx req{};
    yfw_request_descriptor descriptor{};
    int err_log = 0, trc_log = 0, ltrace = 0; // the handles point at these
};

// A node to build; chained calls set its parts.
struct Node {
    explicit Node(std::string tag) : name(std::move(tag)) {}

    Node children(std::vector<Node> nodes) &&;
    // Sets the children-valid flag and a count, without an array of children.
    Node broken_children(uint32_t count) &&;
    Node with_value(std::string text) &&;
    Node in(std::string uri) &&; // the namespace of this node; children inherit it
    Node operation(uint32_t op) &&;
    Node flags(uint32_t bits) &&;           // node_flags bits to set
    Node framework_flags(uint32_t bits) &&; // framework_flags bits to set
    Node node_type(uint32_t type) &&;
    Node without_tag() &&; // name NULL

    std::optional<std::string> name;
    std::optional<std::string> value;
    std::optional<std::string> ns;
    uint32_t op = YFW_OP_NONE;
    uint32_t node_flags = 0;
    uint32_t fw_flags = 0;
    uint32_t type = 0;
    std::optional<uint32_t> broken_count;
    std::vector<Node> child_nodes;
};

// A container or list node, or a leaf without a value.
Node node(std::string name);
// A leaf with a value, as in an edit or a native response.
Node leaf(std::string name, std::string value);
// A leaf with a value in a read: a content-match node.
Node match(std::string name, std::string value);

// A tree built from nodes: contiguous children, flags set. Owns all its nodes.
class Tree {
public:
    explicit Tree(const Node &root, const std::string &ns = oc_ns);
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;

    operator tidl_yfw_datatree *() { return root; }
    tidl_yfw_datatree *operator->() { return root; }
    // The first node at a path of names below the root, such as "interfaces/interface"; throws
    // std::runtime_error when there is no such node.
    tidl_yfw_datatree &at(const std::string &path);

private:
    void fill(tidl_yfw_datatree &into, const Node &from, const std::string &ns);
    const char *keep(const std::string &text) { return texts.emplace_back(text).c_str(); }

    std::deque<std::string> texts;
    std::deque<std::vector<tidl_yfw_datatree>> arrays;
    tidl_yfw_datatree *root = nullptr;
};

// The base class of the tests: a clean double, a fresh plug-in and an empty output tree.
class OclldpTest : public ::testing::Test {
public:
    OclldpTest();
    ~OclldpTest() override;

protected:
    Double &fw = contract();
    std::unique_ptr<Plugin> plugin;
    tidl_yfw_datatree output{};

    terrno call(const std::string &name, Context &context, tidl_yfw_datatree *in) {
        return plugin->call(name, context, in, &output);
    }
};

} // namespace oclldp_test

#endif
