// Every statement that logs, reached in every function that it logs for: each such call site has a slot of its
// own, as the logging layer keeps its registration there.
#include <gmock/gmock.h>

#include <algorithm>
#include <compare>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <regex>
#include <set>

#include "oclldp_fixture.h"
#include "symbol_files.h"

namespace oclldp_test {
namespace {

using ::testing::IsSupersetOf;
using ::testing::SizeIs;

const std::string oc = "ymap_oq_oclldp_openconfiglldp_";
const std::string oper = "ymap_qo_oclldp_tarvoqdethernetlldpoper_";
const std::string native_detail = "/lldp/nodes/node/neighbors/details/detail";
const std::string native_interface = "/interface-configurations/interface-configuration";

// ---- what the sources log --------------------------------------------------------------------------

std::string read(const std::filesystem::path &path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The text of adjacent string literals.
std::string joined(const std::string &literals) {
    static const std::regex literal("\"((?:[^\"\\\\]|\\\\.)*)\"");
    std::string text;
    for (std::sregex_iterator one(literals.begin(), literals.end(), literal), end; one != end; ++one)
        text += std::regex_replace((*one)[1].str(), std::regex("\\\\n"), "\n");
    return text;
}

// The formats of all statements in the plug-in's sources that log.
std::set<std::string> formats_in_sources() {
    static const std::regex statement("YMAP_(TRACE|ERROR)(?:_AT)?\\(\\s*f\\s*,\\s*(?:slot_\\w+\\s*,\\s*)?"
                                      "((?:\"(?:[^\"\\\\]|\\\\.)*\"\\s*)+)");
    std::set<std::string> formats;
    for (const auto &file : std::filesystem::directory_iterator(OCLLDP_TEST_DIR "/../src")) {
        const std::string text = read(file.path());
        for (std::sregex_iterator one(text.begin(), text.end(), statement), end; one != end; ++one) {
            const std::string tag = (*one)[1] == "TRACE" ? "TRC" : "ERR";
            formats.insert(tag + ": YFW: ctx=%p," + joined((*one)[2]));
        }
    }
    return formats;
}

// Logged only when the C library cannot format a text, which takes one of more than 2^31 characters.
const std::string out_of_reach = "TRC: YFW: ctx=%p,Failed to frame OC lldp peer state/id";

// ---- what is called --------------------------------------------------------------------------------

Node error_node(const char *tag) {
    return leaf(tag, "1").framework_flags(YFW_FW_HAS_NODE_TYPE).node_type(YFW_NODE_TYPE_ERROR);
}

std::vector<Node> error_nodes() {
    std::vector<Node> nodes;
    for (const char *tag : {"system-name", "hold-time", "age", "last-clear", "bad-packets"})
        nodes.push_back(error_node(tag));
    return nodes;
}

// Inputs that make walkers and callbacks log.
std::vector<Node> inputs() {
    return {node("a-node"),
            leaf("a-node", "1"),
            leaf("a-node", "1").operation(YFW_OP_DELETE),
            node("a-node").broken_children(1),
            node("a-node").children({leaf("x", "1").without_tag()}),
            node("a-node").children({leaf("x", "1").in(oc_ns)}),
            node("a-node").children({leaf("x", "1").in(native_cfg_ns)}),
            node("a-node").children({leaf("x", "1").in(native_oper_ns)}),
            node("a-node").children({leaf("x", "1").in(native_ifmgr_ns)}),
            node("lldp").children({leaf("x", "1").in(native_cfg_ns)}).in(native_cfg_ns),
            leaf("a-node", "1").without_tag(),
            node("a-node").children({leaf("name", "1").operation(YFW_OP_DELETE)}),
            node("a-node").children(error_nodes()),
            node("a-node").children({node("statistics").children(error_nodes())}),
            node("a-node").children({node("interface-stats").children(error_nodes())})};
}

// One call with everything around it prepared.
using Prepare = std::function<void(Double &, const Plugin &, Context &)>;

struct Scene {
    std::string callback;
    uint32_t kind;
    Node input;
    Prepare prepare;
};

void nothing(Double &, const Plugin &, Context &) {}

void out_of_memory(Double &fw, const Plugin &, Context &) {
    fw.fail_allocation(1);
}

void lldp_always_on(Double &fw, const Plugin &, Context &) {
    fw.router_type = 7;
}

void mapping_whole(Double &, const Plugin &, Context &context) {
    context.req.map_all = 1;
}

void stitched(Double &fw, const Plugin &plugin, Context &) {
    plugin.neighbor_list_mapped() = 1;
    fw.node_info[{native_detail + "/lldp-neighbor", "port-id-detail"}] = {.value = "Eth1"};
}

Prepare failing(const std::string &operation) {
    return [operation](Double &fw, const Plugin &, Context &) {
        fw.sysdb_paths = {"Gi0/lldp/"};
        fw.fail(operation, 0, 0x77);
    };
}

// The neighbor r1 at Gi0, and what the request was keyed by.
Prepare neighbor(int32_t by_interface, const char *interface, int32_t by_id, const char *id) {
    return [=](Double &fw, const Plugin &plugin, Context &) {
        fw.node_info[{native_detail, "interface-name"}] = {.value = "Gi0"};
        fw.node_info[{native_detail, "device-id"}] = {.value = "r1"};
        plugin.get_with_interface_key() = by_interface;
        std::snprintf(plugin.interface_name(), OCLLDP_INTERFACE_NAME_SIZE, "%s", interface);
        plugin.get_with_neighbor_key() = by_id;
        std::free(plugin.neighbor_id());
        plugin.neighbor_id() = id == nullptr ? nullptr : strdup(id);
    };
}

// A neighbor with the capability OTHER.
Prepare capabilities(const char *filter, terrno comparison) {
    return [=](Double &fw, const Plugin &, Context &context) {
        fw.node_info[{native_detail + "/lldp-neighbor/mib", "combined-capabilities"}] = {.value = "65537"};
        if (filter != nullptr)
            context.req.common_data_ptr = strdup(filter);
        if (comparison != YMAP_OK)
            fw.fail("yfw_strcmp_s", 0, comparison);
    };
}

// The interface Gi0 and its settings.
Prepare interface(std::optional<std::string> setting, terrno entry_status = YMAP_OK, terrno copied = YMAP_OK) {
    return [=](Double &fw, const Plugin &, Context &) {
        fw.node_info[{native_interface, "interface-name"}] = {.value = "Gi0"};
        if (setting)
            for (const char *path : {"/lldp/enable", "/lldp/transmit/disable", "/lldp/receive/disable"})
                fw.xpath[path] = {.value = setting};
        fw.imc_entry_status["Gi0"] = entry_status;
        if (copied != YMAP_OK)
            fw.fail("yfw_strncpy_s", 0, copied);
    };
}

std::vector<Scene> scenes_of_requests() {
    const std::string interface_walker = oc + "lvla_lldp_interfaces_interface";
    const std::string delete_all = "oc_to_qd_lldp_interface_delete";
    std::vector<Scene> scenes = {
        {"ymap_oc_interface_enabled_man_cb", 2, node("enabled"), lldp_always_on},
        {delete_all, 2, node("interface"), nothing},
        {delete_all, 2, node("interfaces"), failing("_sysdb_bind")},
        {delete_all, 2, node("interfaces"), failing("sysdb_find")},
        {delete_all, 2, node("interfaces"), failing("sysdb_list_next")},
        {oc + "leaf_lvla_lldp_neighbor_id", 10, leaf("id", "r1"), out_of_memory},
        {"ymap_qd_lldp_neighbor_capabilities_man_cb", 10, leaf("name", "ROUTER"), out_of_memory},
        {interface_walker, 1, node("interface").children({node("name")}), mapping_whole}};
    for (const auto &[list, key] :
         {std::pair("interfaces_interface", "name"), std::pair("neighbors_neighbor", "id"),
          std::pair("customtlvs_tlv", "type"), std::pair("capabilities_capability", "name")})
        scenes.push_back({oc + "lvla_lldp_" + list, 1, node("list").children({leaf(key, "1")}),
                          failing("yfw_map_check_oc_leafref")});
    return scenes;
}

std::vector<Scene> scenes_of_responses() {
    const Node entry = node("entry");
    const std::string neighbor_entry = oper + "list_lvla_lldp_detail_lldpneighbor";
    const std::string interface_entry = "ymap_qo_oclldp_ifmgr_intconfig_man";
    const std::string capability_mapping = "ymap_oc_enabled_capabilities_man";
    const std::string of_neighbor = oper + "leaf_lvla_lldp_";
    const std::string tlv_list = oper + "cont_lvla_lldp_mib_orgdeftlvlist";
    return {{neighbor_entry, 10, entry, neighbor(0, "", 0, nullptr)},
            {neighbor_entry, 10, entry, neighbor(1, "", 0, nullptr)},
            {neighbor_entry, 10, entry, neighbor(1, "Gi0", 0, nullptr)},
            {neighbor_entry, 10, entry, neighbor(1, "Gi1", 0, nullptr)},
            {neighbor_entry, 10, entry, neighbor(0, "", 1, nullptr)},
            {neighbor_entry, 10, entry, neighbor(0, "", 1, "r1")},
            {of_neighbor + "lldpneighbor_deviceid", 10, leaf("device-id", "r1"), stitched},
            {of_neighbor + "lldpinfo_chassisidsubtype", 10, leaf("type", "9"), nothing},
            {of_neighbor + "mib_chassisidsubtype", 10, leaf("type", "1"), stitched},
            {of_neighbor + "mib_chassisidsubtype", 10, leaf("type", "9"), stitched},
            {of_neighbor + "mib_portidsubtype", 10, leaf("type", "1"), stitched},
            {of_neighbor + "mib_portidsubtype", 10, leaf("type", "9"), stitched},
            {of_neighbor + "lldporgdeftlventry_oui", 10, leaf("oui", "00:80:c2"), stitched},
            {of_neighbor + "lldporgdeftlventry_tlvvalue", 10, leaf("tlv-value", "abc"), stitched},
            {tlv_list, 10, node("list"), stitched},
            {tlv_list, 10, node("list").children({node("tlv")}), stitched},
            {capability_mapping, 10, entry, capabilities(nullptr, YMAP_OK)},
            {capability_mapping, 10, entry, capabilities("OTHER", YMAP_OK)},
            {capability_mapping, 10, entry, capabilities(nullptr, 22)},
            {interface_entry, 10, entry, interface(std::nullopt)},
            {interface_entry, 10, entry, interface("true")},
            {interface_entry, 10, entry, interface("false")},
            {interface_entry, 10, entry, interface("true", IMC_STATUS_NO_SUCH_INTERFACE)},
            {interface_entry, 10, entry, interface("true", YMAP_OK, 34)}};
}

// ---- the walk through all sites --------------------------------------------------------------------

// A statement that logs, for one exported function.
struct Site {
    std::string function;
    uint32_t line;
    std::string format;

    auto operator<=>(const Site &) const = default;
};

void PrintTo(const Site &site, std::ostream *stream) {
    *stream << site.function << ":" << site.line << " " << site.format;
}

class LogSites : public OclldpTest {
protected:
    void run_all() {
        run_every_callback();
        run_scenes();
        run_helpers();
    }
    std::set<std::string> formats_seen() const {
        std::set<std::string> formats;
        for (const auto &[site, slots] : slots_of)
            formats.insert(site.format);
        return formats;
    }

    std::map<const void *, std::set<Site>> sites_of;
    std::map<Site, std::set<const void *>> slots_of;

private:
    // Notes the lines of the last call and prepares for the next.
    void note() {
        for (std::size_t index = 0; index + 1 < fw.lines.size(); ++index) {
            const LogLine &line = fw.lines[index];
            if (line.channel != LogLine::Channel::debug_log)
                continue;
            // The numbered line of the same site follows; it tells function and source line.
            const LogLine &numbered = fw.lines[index + 1];
            const Site site{numbered.function, numbered.line, line.format};
            sites_of[line.slot].insert(site);
            slots_of[site].insert(line.slot);
        }
        fw.reset();
    }
    void call_by_shape(const std::string &name, Context &context, tidl_yfw_datatree *in, uint32_t count) {
        if (is_container_callback(name))
            plugin->call_container(name, context, in, count, &output);
        else
            plugin->call(name, context, in, &output);
    }
    void run_every_callback() {
        const std::vector<Node> all = inputs();
        for (const std::string &name : callback_names()) {
            for (const uint32_t kind : {0u, 1u, 2u, 10u}) {
                for (std::size_t index = 0; index <= all.size(); ++index) {
                    {
                        Context context(kind);
                        Tree in(all[index % all.size()], foreign_ns);
                        call_by_shape(name, context, index < all.size() ? in.operator->() : nullptr,
                                      in->child_count);
                    }
                    note();
                }
            }
        }
    }
    void run_scenes();
    void run_helpers();
};

void LogSites::run_scenes() {
    std::vector<Scene> scenes = scenes_of_requests();
    std::ranges::copy(scenes_of_responses(), std::back_inserter(scenes));
    for (const Scene &scene : scenes) {
        {
            Context context(scene.kind);
            Tree in(scene.input);
            scene.prepare(fw, *plugin, context);
            call_by_shape(scene.callback, context, in, in->child_count);
        }
        plugin->neighbor_list_mapped() = 0;
        note();
    }
}

// Functions of another shape, without the texts that they need, and beyond their tables.
void LogSites::run_helpers() {
    Context context;
    Tree in(leaf("a-node", "1"));
    char text[OCLLDP_CAPABILITY_TEXT_SIZE] = "";
    plugin->symbol<decltype(qd2oc_lldp_str)>("qd2oc_lldp_str")(context, nullptr, nullptr);
    plugin->symbol<decltype(oc2qd_lldp_str)>("oc2qd_lldp_str")(context, nullptr, nullptr);
    const auto chassis = "ymap_chassis_id_subtype_mapping_util";
    plugin->symbol<decltype(ymap_chassis_id_subtype_mapping_util)>(chassis)(context, nullptr, nullptr);
    const auto sum = "ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util";
    plugin->symbol<decltype(ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util)>(sum)(context, nullptr,
                                                                                        &output, "/a", 0);
    const auto capability = plugin->symbol<decltype(oclldp_get_ne_cap_name)>("oclldp_get_ne_cap_name");
    capability(context, 1, nullptr, 0);
    capability(context, 1, text, OCLLDP_CAPABILITIES + 1);
    const auto exists = "yfw_oclldp_util_is_ifhandle_exist";
    plugin->symbol<decltype(yfw_oclldp_util_is_ifhandle_exist)>(exists)(nullptr, context);
    note();
}

TEST_F(LogSites, AreAllReachedAndHaveASlotEach) {
    run_all();
    for (const auto &[slot, sites] : sites_of)
        EXPECT_THAT(sites, SizeIs(1)) << ::testing::PrintToString(sites);
    for (const auto &[site, slots] : slots_of)
        EXPECT_THAT(slots, SizeIs(1)) << ::testing::PrintToString(site);

    // A new message in the sources needs a call above that logs it.
    std::set<std::string> formats = formats_in_sources();
    EXPECT_EQ(formats.erase(out_of_reach), 1u);
    EXPECT_EQ(formats_seen(), formats);
}

// The search through the sources finds plain literals, literals in two parts and escapes.
TEST(LogStatements, AreFoundInTheSources) {
    EXPECT_THAT(formats_in_sources(),
                IsSupersetOf({std::string("TRC: YFW: ctx=%p,Start"),
                              std::string("ERR: YFW: ctx=%p,Failed to get subtrees!"),
                              std::string("TRC: YFW: ctx=%p,imc_interface_find failed for int : %s\n")}));
    EXPECT_EQ(joined("\"two \"\n    \"parts\\n\""), "two parts\n");
}

} // namespace
} // namespace oclldp_test
