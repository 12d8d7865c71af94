// What every test of this plug-in starts with: a clean double, and the plug-in freshly loaded.
#ifndef OCEXTRA_FIXTURE_H
#define OCEXTRA_FIXTURE_H

#include <string>

#include <gtest/gtest.h>

#include "mapping/oc-extra/include/ocextra_plugin.h"
#include "oclldp_fixture.h"

namespace ocextra_test {

using namespace oclldp_test;

inline const std::string request_root = "ymap_oq_ocextra_openconfiglldp_lvla_lldp";
inline const std::string response_root = "ymap_qo_ocextra_tarvoqdethernetlldpcfg_lvla_lldp";
inline const std::string holdtime_callback = "ymap_qo_ocextra_tarvoqdethernetlldpcfg_leaf_lvla_lldp_holdtime";
inline const std::string oper = "ymap_qo_ocextra_tarvoqdethernetlldpoper_";
inline const std::string oper_response_root = oper + "lvla_lldp";
inline const std::string neighbor_callback = oper + "list_lvla_lldp_detail_lldpneighbor";
inline const std::string address_callback = oper + "list_lvla_lldp_networkaddresses_lldpaddrentry";
inline const std::string capabilities_callback = oper + "leaf_lvla_lldp_mib_combinedcapabilities";

class OcextraTest : public ::testing::Test {
protected:
    OcextraTest() {
        fw.reset();
        output.name = "output";
    }
    ~OcextraTest() override { fw.reset(); }

    terrno call(const std::string &name, Context &context, tidl_yfw_datatree *in) {
        return plugin.call(name, context, in, &output);
    }

    Double &fw = contract();
    Plugin plugin{OCEXTRA_LIBRARY};
    tidl_yfw_datatree output{};
};

} // namespace ocextra_test

#endif
