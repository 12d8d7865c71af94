// The walkers of native LLDP configuration responses: one level per container, one row per walker.
#include "namespaces.h"
#include "qo_walker.h"
#include "tree.h"

namespace oclldp {
namespace {

// clang-format off

constexpr qo_child system_name_children[] = {leaf("disable", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemname_disable)};
constexpr qo_child port_description_children[] = {leaf("disable", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_portdescription_disable)};
constexpr qo_child system_description_children[] = {leaf("disable", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemdescription_disable)};
constexpr qo_child system_capabilities_children[] = {leaf("disable", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemcapabilities_disable)};
constexpr qo_child management_address_children[] = {leaf("disable", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_managementaddress_disable)};

constexpr qo_level system_name{cfg_ns, system_name_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_systemname_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_systemname};
constexpr qo_level port_description{cfg_ns, port_description_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_portdescription_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_portdescription};
constexpr qo_level system_description{cfg_ns, system_description_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_systemdescription_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_systemdescription};
constexpr qo_level system_capabilities{cfg_ns, system_capabilities_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_systemcapabilities_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_systemcapabilities};
constexpr qo_level management_address{cfg_ns, management_address_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_managementaddress_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_managementaddress};

constexpr qo_child tlv_select_children[] = {
    level("system-name", system_name),
    level("port-description", port_description),
    level("system-description", system_description),
    level("system-capabilities", system_capabilities),
    level("management-address", management_address),
};
constexpr qo_level tlv_select{cfg_ns, tlv_select_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect};

constexpr qo_child root_children[] = {
    walker("tlv-select", ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect),
    leaf("timer", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_timer),
    leaf("enable", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_enable),
    leaf("system-name", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemname, error_node),
    leaf("system-description", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemdescription, error_node),
    leaf("chassis-id", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_chassisid, error_node),
    leaf("chassis-id-type", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_chassisidtype, error_node),
};
constexpr qo_level root{cfg_ns, root_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp};

// The nodes that the module adds to an entry of the interface configuration. The interface's "enable" is
// missing here because it is read from the interface tree.
constexpr qo_child transmit_children[] = {leaf("disable", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_transmit_disable)};
constexpr qo_child receive_children[] = {leaf("disable", ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_receive_disable)};
constexpr qo_level transmit{cfg_ns, transmit_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_transmit_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_transmit};
constexpr qo_level receive{cfg_ns, receive_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_receive_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_receive};
constexpr qo_child interface_lldp_children[] = {
    level("transmit", transmit),
    level("receive", receive),
};
constexpr qo_level interface_lldp{cfg_ns, interface_lldp_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvlb_lldp_parse_augments, ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvlb_lldp};
constexpr qo_child interface_children[] = {level("lldp", interface_lldp)};
constexpr qo_level interface_configuration{cfg_ns, interface_children, ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_interface_configuration_parse_augments};

// clang-format on

terrno walk_interface_augment(frame &f, const node *in, node *out) {
    if (in->name == nullptr)
        return no_tag(f);
    YMAP_TRACE(f, "Processing tag '%s'", in->name);
    return walk_child(f, interface_configuration, in, out);
}

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp, invalid_arguments, walk_level(f, root, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect, invalid_arguments, walk_level(f, tlv_select, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpcfg_augment_lvla_interface_configuration, invalid_arguments, walk_interface_augment(f, in, out))

// Hooks for nodes of other modules: accepted and ignored.
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_systemname_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_portdescription_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_systemdescription_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_systemcapabilities_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_tlvselect_managementaddress_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_interface_configuration_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvlb_lldp_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_transmit_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp_receive_parse_augments, invalid_arguments, YMAP_OK)

// clang-format on
