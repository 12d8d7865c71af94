// What the library exports, how its names bind, and what it leaves to its loader.
#include <dlfcn.h>

#include <gmock/gmock.h>

#include "oclldp_fixture.h"
#include "symbol_files.h"

namespace oclldp_test {
namespace {

using ::testing::ContainerEq;
using ::testing::Each;
using ::testing::HasSubstr;

TEST(Exports, AreExactlyTheListedNamesWithTheirBinding) {
    EXPECT_THAT(library_exports(), ContainerEq(expected_exports()));
}

// Whether a library that comes after the executable, such as the C library or a sanitizer, defines the name.
bool is_of_a_library(const std::string &name) {
    return dlsym(RTLD_NEXT, name.c_str()) != nullptr;
}

TEST(Exports, TheLoaderSuppliesExactlyTheListedNames) {
    const std::set<std::string> expected = expected_undefined();
    std::set<std::string> wanted;
    for (const std::string &name : library_undefined()) {
        const std::string bare = name.substr(0, name.find('@'));
        if (expected.contains(bare) || !is_of_a_library(bare))
            wanted.insert(bare);
    }
    EXPECT_THAT(wanted, ContainerEq(expected));
}

TEST(Exports, BesideTheContractOnlyTheCLibraryIsNeeded) {
#ifdef YFW_SANITIZED
    GTEST_SKIP() << "the sanitizers need their own libraries";
#endif
    std::vector<std::string> versioned;
    for (const std::string &name : library_undefined()) {
        if (name.find('@') != std::string::npos)
            versioned.push_back(name);
    }
    EXPECT_THAT(versioned, Each(HasSubstr("@GLIBC_")));
}

// Additional names under which a do-nothing callback is exported.
struct Aliases {
    const char *prefix;
    const char *duck;
    std::vector<std::string> names;
};

void PrintTo(const Aliases &aliases, std::ostream *stream) {
    *stream << aliases.prefix << aliases.duck;
}

class DoNothingCallback : public OclldpTest, public ::testing::WithParamInterface<Aliases> {};

TEST_P(DoNothingCallback, IsOneFunctionUnderSeveralNames) {
    const Aliases &aliases = GetParam();
    const void *duck = plugin->address(std::string(aliases.prefix) + aliases.duck);
    std::vector<std::string> own_function;
    for (const std::string &name : aliases.names) {
        if (plugin->address(aliases.prefix + name) != duck)
            own_function.push_back(name);
    }
    EXPECT_EQ(own_function, std::vector<std::string>{});
}

const char *const oc = "ymap_oq_oclldp_openconfiglldp_";
const char *const cfg = "ymap_qo_oclldp_tarvoqdethernetlldpcfg_";
const char *const ifmgr = "ymap_qo_oclldp_tarvoqdifmgrcfg_";

std::vector<std::string> interface_entry_names(const std::string &kind, std::vector<std::string> names) {
    for (std::string &name : names)
        name = kind + "_lvla_interfaceconfigurations_interfaceconfiguration_" + name;
    return names;
}

std::vector<std::string> ifmgr_containers() {
    auto names = interface_entry_names("cont", {"dampening", "mtus", "encapsulation"});
    names.emplace_back("cont_lvla_globalinterfaceconfiguration");
    return names;
}

std::vector<std::string> ifmgr_leaves() {
    auto names =
        interface_entry_names("leaf", {"active", "bandwidth", "description", "interfacemodenonphysical",
                                       "interfacevirtual", "linkstatus", "secondaryadminstate", "shutdown"});
    for (const char *name :
         {"dampening_args", "dampening_halflife", "dampening_restartpenalty", "dampening_reusethreshold",
          "dampening_suppressthreshold", "dampening_suppresstime", "encapsulation_encapsulation",
          "encapsulation_capsulationoptions", "mtu_mtu", "mtu_owner"})
        names.push_back(std::string("leaf_lvla_interfaceconfigurations_") + name);
    names.emplace_back("leaf_lvla_globalinterfaceconfiguration_linkstatus");
    return names;
}

INSTANTIATE_TEST_SUITE_P(
    OfEachModel, DoNothingCallback,
    ::testing::Values(
        Aliases{oc,
                "duck_map_container",
                {"cont_lvla_lldp", "cont_lvla_lldp_config", "cont_lvla_lldp_state",
                 "cont_lvla_lldp_state_counters", "cont_lvla_lldp_interface_config",
                 "cont_lvla_lldp_interface_state", "cont_lvlb_lldp_state_counters",
                 "cont_lvla_lldp_interface_neighbors", "cont_lvla_lldp_neighbor_config",
                 "cont_lvla_lldp_neighbor_state", "cont_lvla_lldp_neighbor_capabilities",
                 "cont_lvla_lldp_tlv_config", "cont_lvla_lldp_tlv_state", "cont_lvla_lldp_capability_config",
                 "cont_lvla_lldp_capability_state"}},
        Aliases{oc, "duck_map_list", {"list_lvla_lldp_capabilities_capability"}},
        Aliases{oc, "duck_map_leaf", {"leaf_lvla_lldp_state_type"}},
        Aliases{cfg,
                "duck_map_container",
                {"cont_lvla_lldp", "cont_lvla_lldp_tlvselect", "cont_lvla_lldp_tlvselect_systemname",
                 "cont_lvla_lldp_tlvselect_portdescription", "cont_lvla_lldp_tlvselect_systemdescription",
                 "cont_lvla_lldp_tlvselect_systemcapabilities", "cont_lvla_lldp_tlvselect_managementaddress",
                 "cont_lvlb_lldp", "cont_lvla_lldp_transmit", "cont_lvla_lldp_receive"}},
        Aliases{cfg,
                "duck_map_leaf",
                {"leaf_lvla_lldp_holdtime", "leaf_lvla_lldp_reinit", "leaf_lvla_lldp_extendedshowwidth",
                 "leaf_lvla_lldp_enablesubintf", "leaf_lvla_lldp_lldpintfenter",
                 "leaf_lvla_lldp_tlvselect_tlvselectenter"}},
        Aliases{ifmgr, "duck_map_container", ifmgr_containers()},
        Aliases{ifmgr, "duck_map_list", {"list_lvla_interfaceconfigurations_mtus_mtu"}},
        Aliases{ifmgr, "duck_map_leaf", ifmgr_leaves()}),
    [](const auto &test) {
        std::string name = std::string(test.param.prefix) + test.param.duck;
        return name.substr(name.find("oclldp_") + 7);
    });

} // namespace
} // namespace oclldp_test
