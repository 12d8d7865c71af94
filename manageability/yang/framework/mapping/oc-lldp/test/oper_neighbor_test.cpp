// Neighbor entries: the id, the filters of keyed gets, the stitch record, and the id's state leaf.
#include <cstdlib>
#include <cstring>

#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::Values;

const std::string entry_callback = "list_lvla_lldp_detail_lldpneighbor";
const std::string stitch = "yfw_map_stitch_list_to_list";

class OperNeighbor : public OperTest {
protected:
    OperNeighbor() { plugin->neighbor_list_mapped() = 0; }

    terrno run_entry() { return run(entry_callback, node("lldp-neighbor")); }
    // Sets the device's neighbor; a leaf without a value is absent.
    void neighbor(std::optional<std::string> device, std::optional<std::string> port) {
        answer(native_detail, "device-id", std::move(device));
        answer(native_neighbor, "port-id-detail", std::move(port));
    }
    // Makes the get name one neighbor.
    void request_neighbor(const char *id) {
        plugin->get_with_neighbor_key() = 1;
        set_requested_id(id);
    }
    // Tells the double about the text, so that it notices when the plug-in frees it.
    void set_requested_id(const char *id) {
        requested = strdup(id);
        plugin->neighbor_id() = requested;
        fw.strings[requested] = "requested neighbor id";
    }
    bool requested_is_freed() const {
        return plugin->neighbor_id() == nullptr && !fw.is_live_string(requested);
    }
    // Makes the get name one interface.
    void request_interface(const char *name) {
        plugin->get_with_interface_key() = 1;
        std::strcpy(plugin->interface_name(), name);
    }
    static std::string keyed(const std::string &interface, const std::string &id) {
        return "/lldp/interfaces/interface[name=" + interface + "]/neighbors/neighbor[id=" + id + "]/";
    }
    // The keyed path of the only stitched entry; "(none)" unless there is exactly one.
    std::string stitched() const { return fw.stitches.size() == 1 ? fw.stitches[0].keyed_path : "(none)"; }

    char *requested = nullptr;
};

// ---- the entry -----------------------------------------------------------------------------------------

TEST_F(OperNeighbor, IsStitchedWithARecordThatIsZeroButForItsParts) {
    EXPECT_EQ(run_entry(), YMAP_OK);
    ASSERT_THAT(fw.stitches, SizeIs(1));
    yfw_map_stitch expected;
    std::memset(&expected, 0, sizeof expected);
    expected.parent = &output;
    expected.kind_a = 1;
    expected.kind_b = 2;
    std::strcpy(expected.ns, oc_ns);
    std::strcpy(expected.keyed_path, keyed("eth1", "switch7#eth1/0/1").c_str());
    std::strcpy(expected.list_path, oc_neighbor.c_str());
    const auto bytes = [](const yfw_map_stitch &record) {
        const auto *first = reinterpret_cast<const unsigned char *>(&record);
        return std::vector<unsigned char>(first, first + sizeof record);
    };
    EXPECT_EQ(bytes(fw.stitches[0]), bytes(expected));
}

TEST_F(OperNeighbor, IsReadThenStitchedAndAddsNothingItself) {
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(),
                ElementsAre(Call{"yfw_map_get_node_info", native_detail + ", interface-name"},
                            Call{"yfw_map_get_node_info", native_detail + ", device-id"},
                            Call{"yfw_map_get_node_info", native_neighbor + ", port-id-detail"},
                            Call{stitch, oc_neighbor + ", " + keyed("eth1", "switch7#eth1/0/1")}));
    EXPECT_EQ(plugin->neighbor_list_mapped(), 1);
}

TEST_F(OperNeighbor, CountsAsStitchedUntilTheNextEntryComes) {
    EXPECT_EQ(run("lvla_lldp_detail_lldpneighbor",
                  node("lldp-neighbor").children({leaf("chassis-id", "c"), leaf("unheard-of", "1")})),
              YMAP_OK);
    EXPECT_EQ(plugin->neighbor_list_mapped(), 1);
    answer(native_detail, "device-id", std::nullopt);
    EXPECT_EQ(run("lvla_lldp_detail_lldpneighbor", node("lldp-neighbor").children({leaf("chassis-id", "d")})),
              YMAP_OK);
    EXPECT_EQ(plugin->neighbor_list_mapped(), 0);
    EXPECT_THAT(summaries(fw), ElementsAre(oc_neighbor + "/state/chassis-id = c"));
}

TEST_F(OperNeighbor, IsStitchedForAReadOfConfigurationToo) {
    context.descriptor.req_type = YMAP_REQ_GET_CONFIG;
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_EQ(stitched(), keyed("eth1", "switch7#eth1/0/1"));
}

TEST_F(OperNeighbor, IsNotStitchedForAnEdit) {
    for (const uint32_t kind : {1u, 8u, 9u, 11u, 15u}) {
        SCOPED_TRACE(kind);
        plugin->neighbor_list_mapped() = 1;
        context.descriptor.req_type = kind;
        EXPECT_EQ(run_entry(), YMAP_OK);
        EXPECT_THAT(fw.stitches, IsEmpty());
        EXPECT_EQ(plugin->neighbor_list_mapped(), 0);
    }
}

TEST_F(OperNeighbor, TellsItsIdAndThatItWasStitched) {
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(),
                ElementsAre("TRC: Start", "TRC: oclldp_dev_id constructed is switch7#eth1/0/1",
                            // The misspelling and the missing space are intentional.
                            "TRC: Stich succeded for intf_name eth1 id "
                            "switch7#eth1/0/1oclldp_is_neigh_list_mapped 1",
                            "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_F(OperNeighbor, CountsAsStitchedWhateverTheStitchAnswers) {
    set_requested_id("left over");
    fw.fail(stitch, 1, 0x1234);
    EXPECT_EQ(run_entry(), 0x1234u);
    EXPECT_EQ(plugin->neighbor_list_mapped(), 1);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Stich succeded for intf_name eth1 id "
                                           "switch7#eth1/0/1oclldp_is_neigh_list_mapped 1"));
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
    EXPECT_TRUE(requested_is_freed());
}

TEST_F(OperNeighbor, WithoutAnInterfaceNameIsAFailedMapping) {
    answer(native_detail, "interface-name", std::nullopt);
    EXPECT_EQ(run_entry(), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("intf_name or ctx->req_ctx is NULL, return here"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_THAT(fw.stitches, IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(OperNeighbor, WithoutARequestContextIsAFailedMapping) {
    context->req_ctx = nullptr;
    EXPECT_EQ(run_entry(), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("intf_name or ctx->req_ctx is NULL, return here"));
    EXPECT_THAT(fw.stitches, IsEmpty());
}

TEST_F(OperNeighbor, RejectsAMissingNodeOrOutput) {
    Tree native(node("lldp-neighbor"), native_oper_ns);
    EXPECT_EQ(plugin->call(oper + entry_callback, context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call(oper + entry_callback, context, native, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!", "Invalid arguments passed!"));
    EXPECT_THAT(fw.error_paths, SizeIs(2));
    EXPECT_THAT(fw.stitches, IsEmpty());
}

// ---- the id --------------------------------------------------------------------------------------------

struct IdCase {
    std::string label;
    std::optional<std::string> device;
    std::optional<std::string> port;
    std::string id; // empty: not stitched
};

void PrintTo(const IdCase &id, std::ostream *stream) {
    *stream << id.label;
}

class OperNeighborId : public OperNeighbor, public ::testing::WithParamInterface<IdCase> {};

const std::string long_device(300, 'd');

INSTANTIATE_TEST_SUITE_P(
    Every, OperNeighborId,
    Values(IdCase{"DeviceAndPort", "switch7", "eth1/0/1", "switch7#eth1/0/1"},
           IdCase{"Disabled", "[DISABLED]", "eth1/0/1", "DISABLED#eth1/0/1"},
           IdCase{"DisabledWithoutAPort", "[DISABLED]", std::nullopt, "DISABLED"},
           IdCase{"AlmostDisabled", "[DISABLED] ", "p", "[DISABLED] #p"},
           IdCase{"DisabledInOtherLetters", "[disabled]", "p", "[disabled]#p"},
           IdCase{"WithoutAPort", "switch7", std::nullopt, "switch7"},
           IdCase{"EmptyPort", "switch7", "", "switch7#"}, IdCase{"HashInTheDevice", "a#b", "c", "a#b#c"},
           IdCase{"EmptyDevice", "", "eth1/0/1", "#eth1/0/1"},
           IdCase{"LongDevice", long_device, "p", long_device.substr(0, 255)},
           IdCase{"LongTogether", long_device.substr(0, 250), "eth1/0/1", long_device.substr(0, 250) + "#eth1"},
           IdCase{"JustFits", long_device.substr(0, 253), "p", long_device.substr(0, 253) + "#p"}),
    [](const auto &test) { return test.param.label; });

TEST_P(OperNeighborId, IsMadeOfTheDeviceAndThePort) {
    neighbor(GetParam().device, GetParam().port);
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_EQ(stitched(), keyed("eth1", GetParam().id));
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: oclldp_dev_id constructed is " + GetParam().id));
}

TEST_F(OperNeighbor, WithoutADeviceIdIsLeftOut) {
    plugin->neighbor_list_mapped() = 1;
    neighbor(std::nullopt, "eth1/0/1");
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_THAT(fw.stitches, IsEmpty());
    EXPECT_EQ(plugin->neighbor_list_mapped(), 0);
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(OperNeighbor, WhoseIdComesOutEmptyIsLeftOut) {
    neighbor("", std::nullopt);
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_THAT(fw.stitches, IsEmpty());
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Construct oclldp_dev_id failed"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_EQ(plugin->neighbor_list_mapped(), 0);
}

TEST_F(OperNeighbor, TakesAtMost255CharactersOfTheInterfaceName) {
    const std::string name(300, 'i');
    answer(native_detail, "interface-name", name);
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_EQ(stitched(), keyed(name.substr(0, 255), "switch7#eth1/0/1"));
}

// ---- gets keyed by an interface ---------------------------------------------------------------------------

TEST_F(OperNeighbor, OfTheRequestedInterfaceIsStitched) {
    request_interface("eth1");
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_EQ(stitched(), keyed("eth1", "switch7#eth1/0/1"));
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Match found and oclldp_int_name eth1"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_F(OperNeighbor, OfAnotherInterfaceIsSkipped) {
    for (const std::string name : {"eth2", "eth", "eth11", "ETH1"}) {
        SCOPED_TRACE(name);
        fw.forget_calls();
        plugin->neighbor_list_mapped() = 1;
        request_interface(name.c_str());
        EXPECT_EQ(run_entry(), YMAP_OK);
        EXPECT_THAT(fw.stitches, IsEmpty());
        EXPECT_EQ(plugin->neighbor_list_mapped(), 0);
        EXPECT_THAT(fw.debug_lines(), Contains("TRC: strcmp failed for oclldp_gl_int_name " + name));
        EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    }
}

TEST_F(OperNeighbor, IsSkippedWhenTheRequestedInterfaceHasNoName) {
    request_interface("");
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_THAT(fw.stitches, IsEmpty());
    // The space is missing on purpose.
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: oclldp_get_with_int_key is 1oclldp_gl_int_name len is zero"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_F(OperNeighbor, IsStitchedForANameThatNoGetIsKeyedBy) {
    request_interface("eth2");
    for (const int keyed_get : {0, 2}) {
        SCOPED_TRACE(keyed_get);
        fw.forget_calls();
        plugin->get_with_interface_key() = keyed_get;
        EXPECT_EQ(run_entry(), YMAP_OK);
        EXPECT_EQ(stitched(), keyed("eth1", "switch7#eth1/0/1"));
    }
}

// ---- gets keyed by a neighbor -----------------------------------------------------------------------------

struct RequestedCase {
    std::string label;
    std::string requested;
    std::optional<std::string> port;
    bool stitched;
};

void PrintTo(const RequestedCase &request, std::ostream *stream) {
    *stream << request.label;
}

class OperRequestedNeighbor : public OperNeighbor, public ::testing::WithParamInterface<RequestedCase> {};

INSTANTIATE_TEST_SUITE_P(Every, OperRequestedNeighbor,
                         Values(RequestedCase{"SameIdAndPort", "switch7#eth1/0/1", "eth1/0/1", true},
                                // Only the port is compared, not the device.
                                RequestedCase{"OtherDevice", "switch8#eth1/0/1", "eth1/0/1", true},
                                RequestedCase{"OtherPort", "switch7#eth1/0/2", "eth1/0/1", false},
                                RequestedCase{"ShorterPort", "switch7#eth1/0", "eth1/0/1", false},
                                RequestedCase{"LongerPort", "switch7#eth1/0/11", "eth1/0/1", false},
                                RequestedCase{"PortAfterTheFirstHash", "switch7#a#b", "a#b", true},
                                RequestedCase{"PortNotAfterTheLastHash", "switch7#a#b", "b", false},
                                RequestedCase{"NoPortRequested", "switch7", "eth1/0/1", false},
                                RequestedCase{"NoPortToCompare", "anything at all", std::nullopt, true}),
                         [](const auto &test) { return test.param.label; });

TEST_P(OperRequestedNeighbor, IsStitchedUnderTheRequestedIdWhenThePortAgrees) {
    neighbor("switch7", GetParam().port);
    request_neighbor(GetParam().requested.c_str());
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_EQ(stitched(), GetParam().stitched ? keyed("eth1", GetParam().requested) : "(none)");
    EXPECT_EQ(plugin->neighbor_list_mapped(), GetParam().stitched ? 1 : 0);
    EXPECT_EQ(count_of(fw.debug_lines(), "TRC: Construct oclldp_dev_id failed"), GetParam().stitched ? 0u : 1u);
}

TEST_P(OperRequestedNeighbor, FreesTheRequestedIdOnceItIsStitched) {
    neighbor("switch7", GetParam().port);
    request_neighbor(GetParam().requested.c_str());
    run_entry();
    EXPECT_EQ(requested_is_freed(), GetParam().stitched);
    if (!GetParam().stitched) {
        EXPECT_STREQ(plugin->neighbor_id(), GetParam().requested.c_str());
    }
}

TEST_P(OperRequestedNeighbor, TellsTheIdAndWhatWasRequested) {
    neighbor("switch7", GetParam().port);
    request_neighbor(GetParam().requested.c_str());
    run_entry();
    const std::string id = GetParam().stitched ? GetParam().requested : "";
    EXPECT_THAT(fw.debug_lines(),
                Contains("TRC: oclldp_dev_id " + id + " gl_neigh_dev_id " + GetParam().requested));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_F(OperNeighbor, MatchesARequestedIdAtMostOnce) {
    request_neighbor("switch7#eth1/0/1");
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_THAT(fw.stitches, SizeIs(1));
    EXPECT_EQ(plugin->neighbor_list_mapped(), 0);
    EXPECT_EQ(plugin->get_with_neighbor_key(), 1);
}

TEST_F(OperNeighbor, PassesOverOthersUntilTheRequestedOneComes) {
    request_neighbor("switch7#eth1/0/3");
    for (const std::string port : {"eth1/0/1", "eth1/0/2", "eth1/0/3", "eth1/0/4"}) {
        neighbor("switch7", port);
        EXPECT_EQ(run_entry(), YMAP_OK);
    }
    EXPECT_EQ(stitched(), keyed("eth1", "switch7#eth1/0/3"));
    EXPECT_TRUE(requested_is_freed());
}

TEST_F(OperNeighbor, IsLeftOutWhenTheRequestedIdIsGone) {
    plugin->get_with_neighbor_key() = 1;
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_THAT(fw.stitches, IsEmpty());
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Construct oclldp_dev_id failed"));
}

TEST_F(OperNeighbor, FreesAnIdThatNoGetIsKeyedByOnceItIsStitched) {
    for (const int keyed_get : {0, 2}) {
        SCOPED_TRACE(keyed_get);
        fw.forget_calls();
        plugin->get_with_neighbor_key() = keyed_get;
        set_requested_id("switch8#eth9");
        EXPECT_EQ(run_entry(), YMAP_OK);
        EXPECT_EQ(stitched(), keyed("eth1", "switch7#eth1/0/1"));
        EXPECT_TRUE(requested_is_freed());
    }
}

TEST_F(OperNeighbor, KeepsTheRequestedIdWhileTheInterfaceDoesNotMatch) {
    request_neighbor("switch7#eth1/0/1");
    request_interface("eth2");
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_FALSE(requested_is_freed());
    request_interface("eth1");
    EXPECT_EQ(run_entry(), YMAP_OK);
    EXPECT_EQ(stitched(), keyed("eth1", "switch7#eth1/0/1"));
    EXPECT_TRUE(requested_is_freed());
}

// ---- state/id -------------------------------------------------------------------------------------------

class OperNeighborStateId : public OperNeighbor {
protected:
    OperNeighborStateId() { plugin->neighbor_list_mapped() = 1; }
    terrno run_device_id(const std::optional<std::string> &value) {
        return run_leaf("lldpneighbor_deviceid", value);
    }
};

TEST_F(OperNeighborStateId, IsTheDeviceAndThePort) {
    EXPECT_EQ(run_device_id("switch7"), YMAP_OK);
    ASSERT_THAT(fw.adds, ElementsAre(IsPlainAddTo(&output)));
    EXPECT_EQ(summary(fw.adds[0]), oc_neighbor + "/state/id = switch7#eth1/0/1");
    EXPECT_EQ(fw.mapping_calls().front(),
              (Call{"yfw_map_get_node_info", native_neighbor + ", port-id-detail"}));
}

TEST_F(OperNeighborStateId, IsTakenFromTheLeafWithTheDisabledDeviceSpeltOut) {
    EXPECT_EQ(run_device_id("[DISABLED]"), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre(oc_neighbor + "/state/id = DISABLED#eth1/0/1"));
}

TEST_F(OperNeighborStateId, IsAddedForBothReadsOnly) {
    for (const uint32_t kind : {0u, 1u, 8u, 10u, 15u}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        context.descriptor.req_type = kind;
        EXPECT_EQ(run_device_id("switch7"), YMAP_OK);
        EXPECT_THAT(fw.adds, SizeIs(kind == 0 || kind == 10 ? 1 : 0));
    }
}

TEST_F(OperNeighborStateId, IsLeftOutWithoutAPortOrADevice) {
    EXPECT_EQ(run_device_id(""), YMAP_OK);
    EXPECT_EQ(run_device_id(std::nullopt), YMAP_OK);
    answer(native_neighbor, "port-id-detail", std::nullopt);
    EXPECT_EQ(run_device_id("switch7"), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(OperNeighborStateId, TakesAtMost255CharactersOfTheDevice) {
    EXPECT_EQ(run_device_id(long_device), YMAP_OK);
    ASSERT_THAT(fw.adds, SizeIs(1));
    EXPECT_EQ(fw.adds[0].value->substr(0, 255), long_device.substr(0, 255));
    EXPECT_EQ(fw.adds[0].value->find('d', 255), std::string::npos);
}

TEST_F(OperNeighborStateId, TellsWhatItIsMadeOf) {
    EXPECT_EQ(run_device_id("switch7"), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(),
                ElementsAre("TRC: Start",
                            "TRC: OC Device Id switch7#eth1/0/1 lldp_dev_id switch7 ne_port_det eth1/0/1",
                            "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_F(OperNeighborStateId, IsLeftOutUntilTheNeighborIsStitched) {
    plugin->neighbor_list_mapped() = 0;
    EXPECT_EQ(run_device_id("switch7"), YMAP_OK);
    // The doubled letter is intentional.
    EXPECT_THAT(fw.debug_lines(),
                ElementsAre("TRC: Start", "TRC: Neighhbor list not stitched, ignore", "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
}

TEST_F(OperNeighborStateId, ReturnsTheStatusOfTheAdd) {
    fw.fail(add_path, 1, 0x1234);
    EXPECT_EQ(run_device_id("switch7"), 0x1234u);
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

} // namespace
} // namespace oclldp_test
