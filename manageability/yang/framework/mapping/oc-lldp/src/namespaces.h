// The namespace URIs of the models on both sides.
#ifndef OCLLDP_NAMESPACES_H
#define OCLLDP_NAMESPACES_H

namespace oclldp {

inline constexpr char oc_ns[] = "http://openconfig.net/yang/lldp";
inline constexpr char oc_types_ns[] = "http://openconfig.net/yang/lldp/types";
inline constexpr char cfg_ns[] = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg";
inline constexpr char oper_ns[] = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper";
inline constexpr char ifmgr_ns[] = "urn:tarvo:yang:Tarvo-QD-ifmgr-cfg";

} // namespace oclldp

#endif
