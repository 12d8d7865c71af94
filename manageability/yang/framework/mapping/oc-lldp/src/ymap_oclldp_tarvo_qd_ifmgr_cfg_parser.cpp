// The walkers of native interface configuration responses.
#include "namespaces.h"
#include "qo_walker.h"

namespace oclldp {
namespace {

// clang-format off

constexpr qo_level dampening{.ns = ifmgr_ns, .children = {}, .augments = ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_interfaceconfiguration_dampening_parse_augments, .container = ymap_qo_oclldp_tarvoqdifmgrcfg_cont_lvla_interfaceconfigurations_interfaceconfiguration_dampening};
constexpr qo_level encapsulation{.ns = ifmgr_ns, .children = {}, .augments = ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_interfaceconfiguration_encapsulation_parse_augments, .container = ymap_qo_oclldp_tarvoqdifmgrcfg_cont_lvla_interfaceconfigurations_interfaceconfiguration_encapsulation};
constexpr qo_level mtu{.ns = ifmgr_ns, .children = {}, .augments = ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_mtus_mtu_parse_augments,
    .list = ymap_qo_oclldp_tarvoqdifmgrcfg_duck_map_list, .list_path = "/interface-configurations/interface-configuration/mtus/mtu"};
constexpr qo_child mtus_children[] = {level("mtu", mtu)};
constexpr qo_level mtus{.ns = ifmgr_ns, .children = mtus_children, .augments = ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_interfaceconfiguration_mtus_parse_augments, .container = ymap_qo_oclldp_tarvoqdifmgrcfg_cont_lvla_interfaceconfigurations_interfaceconfiguration_mtus};

constexpr qo_child entry_children[] = {
    level("dampening", dampening),
    level("mtus", mtus),
    level("encapsulation", encapsulation),
    leaf("interface-name", ymap_qo_oclldp_tarvoqdifmgrcfg_leaf_lvla_interfaceconfigurations_interfaceconfiguration_interfacename),
};
constexpr qo_level entry{.ns = ifmgr_ns, .children = entry_children, .augments = ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_interfaceconfiguration_parse_augments,
    .list = ymap_qo_oclldp_tarvoqdifmgrcfg_list_lvla_interfaceconfigurations_interfaceconfiguration, .list_path = "/interface-configurations/interface-configuration"};
constexpr qo_child root_children[] = {level("interface-configuration", entry)};
constexpr qo_level root{.ns = ifmgr_ns, .children = root_children, .augments = ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_parse_augments, .container = ymap_qo_oclldp_tarvoqdifmgrcfg_cont_lvla_interfaceconfigurations};

// The model's other top-level node; no mapping tree is registered for it.
constexpr qo_level global{.ns = ifmgr_ns, .children = {}, .augments = ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_globalinterfaceconfiguration_parse_augments, .container = ymap_qo_oclldp_tarvoqdifmgrcfg_cont_lvla_globalinterfaceconfiguration};

// clang-format on

// The nodes that the LLDP module adds to an entry have their own walker.
terrno walk_augment(frame &f, const node *in, node *out) {
    if (yfw_map_do_these_match(cfg_ns, in->ns) == 0)
        return YMAP_OK;
    return ymap_qo_oclldp_tarvoqdethernetlldpcfg_augment_lvla_interface_configuration(f.ctx, in, out);
}

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

YMAP_DEFINE(ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations, invalid_arguments, walk_level(f, root, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_globalinterfaceconfiguration, invalid_arguments, walk_level(f, global, in, out))

// Hooks for nodes of other modules.
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_interfaceconfiguration_parse_augments, invalid_arguments, walk_augment(f, in, out))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_interfaceconfiguration_dampening_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_interfaceconfiguration_mtus_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_mtus_mtu_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations_interfaceconfiguration_encapsulation_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_globalinterfaceconfiguration_parse_augments, invalid_arguments, YMAP_OK)

// clang-format on
