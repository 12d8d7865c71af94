#include "oper_responses.h"

#include <stdexcept>

namespace oclldp_test {

namespace {

const std::vector<std::string> root = {"lldp"};
const std::string container = "cont_lvla_lldp";

std::vector<std::string> below(std::vector<std::string> path, const std::vector<std::string> &more) {
    path.insert(path.end(), more.begin(), more.end());
    return path;
}

std::vector<OperLevel> top_levels() {
    return {{"lldp", root, "lvla_lldp", 0, container, "lvla_lldp_parse_augments", {"global-lldp", "nodes"}, ""},
            {"global_lldp",
             below(root, {"global-lldp"}),
             "lvla_lldp",
             0,
             container,
             "lvla_lldp_globallldp_parse_augments",
             {"lldp-info"},
             ""},
            {"lldp_info",
             below(root, {"global-lldp", "lldp-info"}),
             "lvla_lldp",
             0,
             container,
             "lvla_lldp_globallldp_lldpinfo_parse_augments",
             {"chassis-id", "chassis-id-sub-type", "system-name", "system-description"},
             ""},
            {"nodes",
             below(root, {"nodes"}),
             "lvla_lldp",
             0,
             container,
             "lvla_lldp_nodes_parse_augments",
             {"node"},
             ""}};
}

std::vector<OperLevel> node_levels() {
    const std::string walker = "lvla_lldp_nodes_node";
    const std::vector<std::string> path = below(root, {"nodes", "node"});
    return {{"node",
             path,
             walker,
             2,
             "duck_map_list",
             "lvla_lldp_nodes_node_parse_augments",
             {"neighbors", "interfaces", "statistics"},
             "/lldp/nodes/node"},
            {"neighbors",
             below(path, {"neighbors"}),
             walker,
             2,
             container,
             "lvla_lldp_node_neighbors_parse_augments",
             {"details"},
             ""},
            {"details",
             below(path, {"neighbors", "details"}),
             walker,
             2,
             container,
             "lvla_lldp_neighbors_details_parse_augments",
             {"detail"},
             ""},
            {"detail",
             below(path, {"neighbors", "details", "detail"}),
             walker,
             2,
             "list_lvla_lldp_details_detail",
             "lvla_lldp_details_detail_parse_augments",
             {"interface-name", "device-id", "lldp-neighbor"},
             native_detail},
            {"interfaces",
             below(path, {"interfaces"}),
             walker,
             2,
             "cont_lvla_lldp_node_interfaces",
             "lvla_lldp_node_interfaces_parse_augments",
             {"interface"},
             ""},
            {"statistics",
             below(path, {"statistics"}),
             walker,
             2,
             container,
             "lvla_lldp_node_statistics_parse_augments",
             {"transmitted-packets", "aged-out-entries", "discarded-packets", "bad-packets", "received-packets",
              "discarded-tl-vs", "unrecognized-tl-vs", "accepted-tl-vs", "last-clear"},
             ""}};
}

std::vector<OperLevel> neighbor_levels() {
    const std::string walker = "lvla_lldp_detail_lldpneighbor";
    const std::vector<std::string> path =
        below(root, {"nodes", "node", "neighbors", "details", "detail", "lldp-neighbor"});
    return {{"lldp_neighbor",
             path,
             walker,
             6,
             "list_lvla_lldp_detail_lldpneighbor",
             "lvla_lldp_detail_lldpneighbor_parse_augments",
             {"detail", "mib", "device-id", "chassis-id", "port-id-detail", "hold-time"},
             native_neighbor},
            {"mib",
             below(path, {"mib"}),
             walker,
             6,
             container,
             "lvla_lldp_lldpneighbor_mib_parse_augments",
             {"combined-capabilities", "org-def-tlv-list", "chassis-id-sub-type", "port-id-sub-type"},
             ""},
            {"org_def_tlv_list",
             below(path, {"mib", "org-def-tlv-list"}),
             walker,
             6,
             "cont_lvla_lldp_mib_orgdeftlvlist",
             "lvla_lldp_mib_orgdeftlvlist_parse_augments",
             {"lldp-org-def-tlv-entry"},
             ""},
            {"lldp_org_def_tlv_entry",
             below(path, {"mib", "org-def-tlv-list", "lldp-org-def-tlv-entry"}),
             walker,
             6,
             "list_lvla_lldp_orgdeftlvlist_lldporgdeftlventry",
             "lvla_lldp_orgdeftlvlist_lldporgdeftlventry_parse_augments",
             {"oui", "tlv-subtype", "tlv-value"},
             native_neighbor + "/mib/org-def-tlv-list/lldp-org-def-tlv-entry"}};
}

std::vector<OperLevel> neighbor_detail_levels() {
    const std::string walker = "lvla_lldp_lldpneighbor_detail";
    const std::vector<std::string> path =
        below(root, {"nodes", "node", "neighbors", "details", "detail", "lldp-neighbor", "detail"});
    return {{"neighbor_detail",
             path,
             walker,
             7,
             container,
             "lvla_lldp_lldpneighbor_detail_parse_augments",
             {"network-addresses", "port-description", "system-name", "system-description",
              "enabled-capabilities", "last-update", "age"},
             ""},
            {"network_addresses",
             below(path, {"network-addresses"}),
             walker,
             7,
             container,
             "lvla_lldp_detail_networkaddresses_parse_augments",
             {"lldp-addr-entry"},
             ""},
            {"lldp_addr_entry",
             below(path, {"network-addresses", "lldp-addr-entry"}),
             walker,
             7,
             "duck_map_list",
             "lvla_lldp_networkaddresses_lldpaddrentry_parse_augments",
             {"address"},
             native_neighbor + "/detail/network-addresses/lldp-addr-entry"},
            {"address",
             below(path, {"network-addresses", "lldp-addr-entry", "address"}),
             walker,
             7,
             container,
             "lvla_lldp_lldpaddrentry_address_parse_augments",
             {"address-type", "ipv4-address", "ipv6-address"},
             ""}};
}

std::vector<OperLevel> interface_levels() {
    const std::string walker = "lvla_lldp_interfaces_interface";
    const std::vector<std::string> path = below(root, {"nodes", "node", "interfaces", "interface"});
    return {{"interface",
             path,
             walker,
             4,
             "list_lvla_lldp_interfaces_interface",
             "lvla_lldp_interfaces_interface_parse_augments",
             {"interface-name", "interface-stats", "interface-name-qd", "tx-enabled", "rx-enabled"},
             native_interface},
            {"interface_stats",
             below(path, {"interface-stats"}),
             walker,
             4,
             "cont_lvla_lldp_interface_interfacestats",
             "lvla_lldp_interface_interfacestats_parse_augments",
             {"transmitted-packets", "discarded-packets", "bad-packets", "received-packets", "discarded-tl-vs",
              "unrecognized-tl-vs", "transmit-failures", "last-clear"},
             ""}};
}

const OperLevel &find_level(bool (*matches)(const OperLevel &, const void *), const void *wanted) {
    for (const OperLevel &level : oper_levels()) {
        if (matches(level, wanted))
            return level;
    }
    throw std::runtime_error("no such level");
}

} // namespace

void PrintTo(const OperLevel &level, std::ostream *stream) {
    *stream << level.label;
}

const std::vector<OperLevel> &oper_levels() {
    static const std::vector<OperLevel> levels = [] {
        std::vector<OperLevel> all;
        for (const auto &part :
             {top_levels(), node_levels(), neighbor_levels(), neighbor_detail_levels(), interface_levels()})
            all.insert(all.end(), part.begin(), part.end());
        return all;
    }();
    return levels;
}

const OperLevel &oper_level(const std::string &label) {
    return find_level(
        [](const OperLevel &level, const void *wanted) {
            return level.label == *static_cast<const std::string *>(wanted);
        },
        &label);
}

const OperLevel &oper_level_at(const std::vector<std::string> &path) {
    return find_level(
        [](const OperLevel &level, const void *wanted) {
            return level.path == *static_cast<const std::vector<std::string> *>(wanted);
        },
        &path);
}

std::string oper_level_label(const ::testing::TestParamInfo<OperLevel> &info) {
    return info.param.label;
}

Node nest(const std::vector<std::string> &path, std::size_t from, Node innermost) {
    Node built = std::move(innermost);
    for (std::size_t above = path.size() - 1; above > from; --above)
        built = node(path[above - 1]).children({std::move(built)});
    return built;
}

std::vector<std::string> in_and_out(const std::vector<std::string> &path, std::size_t from, std::size_t depth) {
    std::vector<std::string> told;
    for (std::size_t at = from; at < depth; ++at) {
        const std::vector<std::string> here(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(at) + 1);
        told.push_back("push " + path[at] + (oper_level_at(here).is_list() ? " 2" : " 1"));
    }
    for (std::size_t at = depth; at > from; --at)
        told.push_back("pop " + path[at - 1]);
    return told;
}

std::vector<std::string> hierarchy(const Double &fw) {
    std::vector<std::string> told = steps(fw, false);
    std::erase_if(told, [](const std::string &step) { return !step.starts_with("p"); });
    return told;
}

std::size_t count_of(const std::vector<std::string> &texts, const std::string &text) {
    return static_cast<std::size_t>(std::count(texts.begin(), texts.end(), text));
}

void OperTest::answer_for_the_device() {
    answer(native_detail, "interface-name", "eth1");
    answer(native_detail, "device-id", "switch7");
    answer(native_neighbor, "port-id-detail", "eth1/0/1");
    answer(native_neighbor + "/mib", "combined-capabilities", "1310740");
    answer(native_interface, "interface-name", "eth1");
    plugin->neighbor_list_mapped() = 1;
}

void OperTest::fail_adds_of(const std::string &name, terrno status) {
    fw.on_call("_lstrace", [this, name, status](const Call &line) {
        if (line.args.find(" " + name + ":") != std::string::npos && line.args.ends_with(",Start"))
            fw.fail(add_path, 0, status);
    });
}

} // namespace oclldp_test
