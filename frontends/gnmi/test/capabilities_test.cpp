// The RPC Capabilities.
#include <gmock/gmock.h>

#include "frontends/gnmi/operations/capabilities.h"
#include "gnmi_fixture.h"

namespace yfw::gnmi::test {
namespace {

using testing::ElementsAre;

TEST(Capabilities, NameTheVersionTheModelsAndTheEncodings) {
    ServedDevice device;
    const ::gnmi::CapabilityResponse response = capabilities(device.target(), {});
    EXPECT_EQ(response.gnmi_version(), "0.10.0");
    EXPECT_THAT(response.supported_encodings(), ElementsAre(::gnmi::JSON, ::gnmi::JSON_IETF, ::gnmi::PROTO));
    ASSERT_EQ(response.supported_models_size(), 2);
    EXPECT_EQ(response.supported_models(0).name(), "openconfig-lldp");
    EXPECT_EQ(response.supported_models(0).organization(), "Maintained with this repository.");
    EXPECT_EQ(response.supported_models(0).version(), "2026-11-22");
    EXPECT_EQ(response.supported_models(1).name(), "openconfig-lldp-types");
}

TEST(Capabilities, RefuseAnExtensionThatWouldChangeTheAnswer) {
    ServedDevice device;
    ::gnmi::CapabilityRequest request;
    request.add_extension()->mutable_history()->set_snapshot_time(1);
    const auto refusal = refusal_of_call([&] { capabilities(device.target(), request); });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), Code::unimplemented);
}

TEST(Capabilities, IgnoreARegisteredExtension) {
    ServedDevice device;
    ::gnmi::CapabilityRequest request;
    request.add_extension()->mutable_registered_ext()->set_id(gnmi_ext::EID_EXPERIMENTAL);
    EXPECT_EQ(capabilities(device.target(), request).gnmi_version(), "0.10.0");
}

} // namespace
} // namespace yfw::gnmi::test
