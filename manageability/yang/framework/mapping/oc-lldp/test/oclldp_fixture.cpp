#include "oclldp_fixture.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace oclldp_test {

namespace {

struct Range {
    ElfW(Addr) base = 0;
    std::uintptr_t begin = UINTPTR_MAX;
    std::uintptr_t end = 0;
};

int measure(dl_phdr_info *info, std::size_t, void *data) {
    auto &range = *static_cast<Range *>(data);
    if (info->dlpi_addr != range.base)
        return 0;
    for (int segment = 0; segment < info->dlpi_phnum; ++segment) {
        const ElfW(Phdr) &header = info->dlpi_phdr[segment];
        if (header.p_type != PT_LOAD)
            continue;
        range.begin = std::min<std::uintptr_t>(range.begin, range.base + header.p_vaddr);
        range.end = std::max<std::uintptr_t>(range.end, range.base + header.p_vaddr + header.p_memsz);
    }
    return 1;
}

} // namespace

Plugin::Plugin(const char *library) : handle(dlopen(library, RTLD_NOW | RTLD_LOCAL)) {
    if (handle == nullptr)
        throw std::runtime_error(dlerror());
    link_map *map = nullptr;
    dlinfo(handle, RTLD_DI_LINKMAP, &map);
    Range range{.base = map->l_addr};
    dl_iterate_phdr(measure, &range);
    set_plugin_range(range.begin, range.end);
}

Plugin::~Plugin() {
    set_plugin_range(0, 0);
    dlclose(handle);
}

void *Plugin::address(const std::string &name) const {
    void *found = dlsym(handle, name.c_str());
    // Symbols of the process itself do not belong to the plug-in.
    if (found == nullptr || !has(name))
        throw std::runtime_error("the plug-in exports no " + name);
    return found;
}

bool Plugin::has(const std::string &name) const {
    void *found = dlsym(handle, name.c_str());
    Dl_info info{};
    if (found == nullptr || dladdr(found, &info) == 0)
        return false;
    link_map *map = nullptr;
    dlinfo(handle, RTLD_DI_LINKMAP, &map);
    return reinterpret_cast<ElfW(Addr)>(info.dli_fbase) == map->l_addr;
}

yfw_map_callback Plugin::callback(const std::string &name) const {
    return reinterpret_cast<yfw_map_callback>(address(name));
}

yfw_map_container_callback Plugin::container(const std::string &name) const {
    return reinterpret_cast<yfw_map_container_callback>(address(name));
}

terrno Plugin::call(const std::string &name, yfw_map_ctx ctx, const tidl_yfw_datatree *in,
                    tidl_yfw_datatree *out) const {
    return callback(name)(ctx, in, out);
}

terrno Plugin::call_container(const std::string &name, yfw_map_ctx ctx, const tidl_yfw_datatree *in,
                              uint32_t count, tidl_yfw_datatree *out) const {
    return container(name)(ctx, in, count, out);
}

Context::Context(uint32_t kind) {
    descriptor.req_type = kind;
    req.request = &descriptor;
    ctx.req_ctx = &req;
    ctx.dbg_filter.level_mask = ~0u;
    ctx.err_log_handle = &err_log;
    ctx.trc_log_handle = &trc_log;
    ctx.ltrace_handle = &ltrace;
    ctx.trace_enabled = 1;
}

Context::~Context() {
    contract().forget_string(req.err_node_name);
    std::free(req.err_node_name);
    std::free(req.common_data_ptr);
}

std::optional<std::string> Context::err_node_name() const {
    return req.err_node_name == nullptr ? std::nullopt : std::optional<std::string>(req.err_node_name);
}

Node Node::children(std::vector<Node> nodes) && {
    child_nodes = std::move(nodes);
    node_flags |= YFW_NODE_CHILDREN_VALID;
    return std::move(*this);
}

Node Node::broken_children(uint32_t count) && {
    broken_count = count;
    node_flags |= YFW_NODE_CHILDREN_VALID;
    return std::move(*this);
}

Node Node::with_value(std::string text) && {
    value = std::move(text);
    return std::move(*this);
}

Node Node::in(std::string uri) && {
    ns = std::move(uri);
    return std::move(*this);
}

Node Node::operation(uint32_t operation_code) && {
    op = operation_code;
    return std::move(*this);
}

Node Node::flags(uint32_t bits) && {
    node_flags |= bits;
    return std::move(*this);
}

Node Node::framework_flags(uint32_t bits) && {
    fw_flags |= bits;
    return std::move(*this);
}

Node Node::node_type(uint32_t node_type_code) && {
    type = node_type_code;
    return std::move(*this);
}

Node Node::without_tag() && {
    name.reset();
    return std::move(*this);
}

Node node(std::string name) {
    return Node(std::move(name));
}

Node leaf(std::string name, std::string value) {
    return Node(std::move(name)).with_value(std::move(value));
}

Node match(std::string name, std::string value) {
    return leaf(std::move(name), std::move(value)).flags(YFW_NODE_HAS_VALUE);
}

Tree::Tree(const Node &node, const std::string &ns) {
    root = &arrays.emplace_back(1).front();
    fill(*root, node, ns);
}

void Tree::fill(tidl_yfw_datatree &into, const Node &from, const std::string &inherited) {
    const std::string ns = from.ns.value_or(inherited);
    into.name = from.name ? keep(*from.name) : nullptr;
    into.value = from.value ? keep(*from.value) : nullptr;
    into.ns = keep(ns);
    into.operation = from.op;
    into.node_flags = static_cast<uint16_t>(from.node_flags);
    into.framework_flags = from.fw_flags;
    into.node_type = from.type;
    if (from.broken_count) {
        into.child_count = *from.broken_count;
        return;
    }
    if (from.child_nodes.empty())
        return;
    std::vector<tidl_yfw_datatree> &array = arrays.emplace_back(from.child_nodes.size());
    into.children = array.data();
    into.child_count = static_cast<uint32_t>(array.size());
    for (std::size_t index = 0; index < array.size(); ++index)
        fill(array[index], from.child_nodes[index], ns);
}

tidl_yfw_datatree &Tree::at(const std::string &path) {
    tidl_yfw_datatree *current = root;
    std::istringstream steps(path);
    for (std::string step; std::getline(steps, step, '/');) {
        tidl_yfw_datatree *next = nullptr;
        for (uint32_t index = 0; index < current->child_count && next == nullptr; ++index) {
            if (current->children[index].name != nullptr && step == current->children[index].name)
                next = &current->children[index];
        }
        if (next == nullptr)
            throw std::runtime_error("the tree has no " + path);
        current = next;
    }
    return *current;
}

OclldpTest::OclldpTest() {
    fw.reset();
    plugin = std::make_unique<Plugin>();
    output.name = "output";
}

OclldpTest::~OclldpTest() {
    // The plug-in keeps its copy of a requested neighbor id beyond the request; nothing would free it now.
    fw.forget_string(plugin->neighbor_id());
    std::free(plugin->neighbor_id());
    plugin.reset();
    fw.reset();
}

} // namespace oclldp_test
