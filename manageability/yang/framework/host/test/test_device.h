// Devices with native data given by a test.
#ifndef HOST_TEST_TEST_DEVICE_H
#define HOST_TEST_TEST_DEVICE_H

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "host/answer_schema.h"
#include "host/engine.h"
#include "host/request.h"
#include "sources/native_source.h"
#include "yang/test/test_schemas.h"

namespace yfw::host::test {

using yang::test::path;
using yang::test::schemas;

// Loaded on first use.
const AnswerSchema &answer_schema();

ReadRequest request(const std::vector<std::string> &paths, Content content = Content::all);
// The paths merged into one tree.
Selection selection(const std::vector<std::string> &paths);

// Parses native instance data, XML or JSON. `kept` preserves the order of the text, as the file source does.
// Throws Error.
enum class Order { kept, any };
yang::DataTree native_data(const std::string &text, Order order = Order::kept);

// A device whose native data is in `xml`, which may change between reads.
class TextSource final : public sources::NativeSource {
public:
    yang::DataTree read(const ly_ctx *context) override;

    std::string xml;
    int reads = 0; // how often the device was read
};

// An engine on a device with data given by the test. All tests of a process share one engine, as requests of a
// program do; the plug-in's state is reset for each test.
class DeviceUnderTest {
public:
    DeviceUnderTest();

    // The answer's leaves (see data_texts.h); the warnings are kept in `warnings`.
    std::vector<std::string> read(const std::vector<std::string> &paths, Content content = Content::all);

    TextSource &source;
    Engine &engine;
    std::vector<std::string> warnings;
};

constexpr std::string_view lldp_ns = "http://openconfig.net/yang/lldp";
constexpr std::string_view lldp_types_ns = "http://openconfig.net/yang/lldp/types";
constexpr std::string_view oper_ns = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper";
constexpr std::string_view cfg_ns = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg";
constexpr std::string_view ifmgr_ns = "urn:tarvo:yang:Tarvo-QD-ifmgr-cfg";

} // namespace yfw::host::test

#endif
