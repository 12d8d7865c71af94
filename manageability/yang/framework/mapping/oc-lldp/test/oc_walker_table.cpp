// The walkers of the OpenConfig model: what each calls for its own node and for each child.
#include <algorithm>

#include "oc_walker_fixture.h"

namespace oclldp_test {

namespace {

// A leaf whose walker is `rest`; its callback has the same name with "leaf_" before the level.
WalkerChild leaf_child(const char *tag, const std::string &rest) {
    return {tag, oq(rest), oq("leaf_" + rest), false};
}

WalkerChild walked(const char *tag, const std::string &rest) {
    return {tag, oq(rest), "", false};
}

WalkerChild walked_for_get(const char *tag, const std::string &rest) {
    return {tag, oq(rest), "", true};
}

std::string without_hyphens(std::string text) {
    std::erase(text, '-');
    return text;
}

std::vector<WalkerChild> leaves(const std::string &prefix, const std::vector<const char *> &tags) {
    std::vector<WalkerChild> children;
    for (const char *tag : tags)
        children.push_back(leaf_child(tag, prefix + without_hyphens(tag)));
    return children;
}

std::vector<WalkerChild> joined(std::vector<WalkerChild> first, const std::vector<WalkerChild> &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

std::vector<WalkerChild> for_get(std::vector<WalkerChild> children) {
    for (WalkerChild &child : children)
        child.get_only = true;
    return children;
}

std::vector<WalkerRow> global_rows(const std::string &duck) {
    const std::vector<const char *> settings = {
        "enabled",    "hello-timer",    "suppress-tlv-advertisement", "system-name", "system-description",
        "chassis-id", "chassis-id-type"};
    return {
        {oq("lvla_lldp"),
         duck,
         "lldp",
         {walked("config", "lvla_lldp_config"), walked_for_get("state", "lvla_lldp_state"),
          walked("interfaces", "lvla_lldp_interfaces")}},
        {oq("lvla_lldp_config"), duck, "config", leaves("lvla_lldp_config_", settings)},
        {oq("lvla_lldp_state"), duck, "state",
         joined(leaves("lvla_lldp_state_", settings), {walked("counters", "lvla_lldp_state_counters")})},
        {oq("lvla_lldp_state_counters"), duck, "counters",
         leaves("lvla_lldp_counters_",
                {"frame-in", "frame-out", "frame-error-in", "frame-discard", "tlv-discard", "tlv-unknown",
                 "last-clear", "tlv-accepted", "entries-aged-out"})},
    };
}

std::vector<WalkerRow> interface_rows(const std::string &duck) {
    return {
        {oq("lvla_lldp_interfaces"),
         oq("cont_lvla_lldp_interfaces"),
         "interfaces",
         {walked("interface", "lvla_lldp_interfaces_interface")}},
        {oq("lvla_lldp_interfaces_interface"),
         oq("list_lvla_lldp_interfaces_interface"),
         "interface",
         {leaf_child("name", "lvla_lldp_interface_name"), walked("config", "lvla_lldp_interface_config"),
          walked_for_get("state", "lvla_lldp_interface_state"),
          walked_for_get("neighbors", "lvla_lldp_interface_neighbors")}},
        {oq("lvla_lldp_interface_config"),
         duck,
         "config",
         {leaf_child("name", "lvla_lldp_config_name"), leaf_child("enabled", "lvlb_lldp_config_enabled")}},
        {oq("lvla_lldp_interface_state"),
         duck,
         "state",
         {leaf_child("name", "lvla_lldp_state_name"), leaf_child("enabled", "lvlb_lldp_state_enabled"),
          walked("counters", "lvlb_lldp_state_counters")}},
        {oq("lvlb_lldp_state_counters"), duck, "counters",
         joined(leaves("lvlb_lldp_counters_", {"frame-in", "frame-out", "frame-error-in", "frame-discard",
                                               "tlv-discard", "tlv-unknown", "last-clear"}),
                {leaf_child("frame-error-out", "lvla_lldp_counters_frameerrorout")})},
    };
}

std::vector<WalkerRow> neighbor_rows(const std::string &duck) {
    return {
        {oq("lvla_lldp_interface_neighbors"),
         duck,
         "neighbors",
         {walked("neighbor", "lvla_lldp_neighbors_neighbor")}},
        {oq("lvla_lldp_neighbors_neighbor"), oq("list_lvla_lldp_neighbors_neighbor"), "neighbor",
         for_get({leaf_child("id", "lvla_lldp_neighbor_id"), walked("config", "lvla_lldp_neighbor_config"),
                  walked("state", "lvla_lldp_neighbor_state"),
                  walked("custom-tlvs", "lvla_lldp_neighbor_customtlvs"),
                  walked("capabilities", "lvla_lldp_neighbor_capabilities")})},
        {oq("lvla_lldp_neighbor_config"), duck, "config", {}},
        {oq("lvla_lldp_neighbor_state"), duck, "state",
         joined(
             leaves("lvlb_lldp_state_", {"system-name", "system-description", "chassis-id", "chassis-id-type"}),
             leaves("lvla_lldp_state_",
                    {"id", "age", "last-update", "ttl", "port-id", "port-id-type", "port-description",
                     "management-address", "management-address-type"}))},
    };
}

std::vector<WalkerRow> tlv_and_capability_rows(const std::string &duck) {
    WalkerChild type = leaf_child("type", "lvla_lldp_state_type");
    type.leaf_callback = oq("duck_map_leaf");
    return {
        {oq("lvla_lldp_neighbor_customtlvs"),
         oq("cont_lvla_lldp_neighbor_customtlvs"),
         "custom-tlvs",
         {walked("tlv", "lvla_lldp_customtlvs_tlv")}},
        {oq("lvla_lldp_customtlvs_tlv"), oq("list_lvla_lldp_customtlvs_tlv"), "tlv",
         joined(leaves("lvla_lldp_tlv_", {"type", "oui", "oui-subtype"}),
                {walked("config", "lvla_lldp_tlv_config"), walked("state", "lvla_lldp_tlv_state")})},
        {oq("lvla_lldp_tlv_config"), duck, "config", {}},
        {oq("lvla_lldp_tlv_state"), duck, "state",
         joined({type}, leaves("lvla_lldp_state_", {"oui", "oui-subtype", "value"}))},
        {oq("lvla_lldp_neighbor_capabilities"),
         duck,
         "capabilities",
         {walked("capability", "lvla_lldp_capabilities_capability")}},
        {oq("lvla_lldp_capabilities_capability"),
         oq("duck_map_list"),
         "capability",
         {leaf_child("name", "lvla_lldp_capability_name"), walked("config", "lvla_lldp_capability_config"),
          walked("state", "lvla_lldp_capability_state")}},
        {oq("lvla_lldp_capability_config"), duck, "config", {}},
        {oq("lvla_lldp_capability_state"),
         duck,
         "state",
         {leaf_child("name", "lvlb_lldp_state_name"), leaf_child("enabled", "lvlc_lldp_state_enabled")}},
    };
}

bool is_key_walker(const std::string &walker) {
    for (const char *rest : {"lvla_lldp_interface_name", "lvla_lldp_neighbor_id", "lvla_lldp_tlv_type",
                             "lvla_lldp_tlv_oui", "lvla_lldp_tlv_ouisubtype", "lvla_lldp_capability_name"}) {
        if (walker == oq(rest))
            return true;
    }
    return false;
}

} // namespace

const std::vector<WalkerRow> &walker_table() {
    static const std::vector<WalkerRow> table = [] {
        const std::string duck = oq("duck_map_container");
        std::vector<WalkerRow> rows;
        for (const auto &part :
             {global_rows(duck), interface_rows(duck), neighbor_rows(duck), tlv_and_capability_rows(duck)})
            rows.insert(rows.end(), part.begin(), part.end());
        return rows;
    }();
    return table;
}

std::vector<LeafWalker> leaf_walkers() {
    std::vector<LeafWalker> walkers;
    for (const WalkerRow &row : walker_table()) {
        for (const WalkerChild &child : row.children) {
            if (child.leaf_callback.empty())
                continue;
            const bool leaf_list = child.walker.ends_with("suppresstlvadvertisement");
            walkers.push_back({.tag = child.tag,
                               .walker = child.walker,
                               .callback = child.leaf_callback,
                               .marker = leaf_list ? 2u : 1u,
                               .touches_walk_flags = !leaf_list && !is_key_walker(child.walker)});
        }
    }
    return walkers;
}

} // namespace oclldp_test
