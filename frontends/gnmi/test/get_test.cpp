// The RPC Get.
#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "frontends/gnmi/operations/get_operation.h"
#include "gnmi_fixture.h"

namespace yfw::gnmi::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using Type = ::gnmi::GetRequest;

::gnmi::GetRequest request(const std::vector<std::string> &paths, ::gnmi::Encoding encoding,
                           Type::DataType type = Type::ALL) {
    ::gnmi::GetRequest made;
    made.set_encoding(encoding);
    made.set_type(type);
    for (const std::string &each : paths)
        *made.add_path() = path(each);
    return made;
}

std::string answer(ServedDevice &device, const ::gnmi::GetRequest &request) {
    std::string text;
    const ::gnmi::GetResponse response = get(device.target(), device.caller(), request);
    for (const ::gnmi::Notification &notification : response.notification())
        text += (text.empty() ? "" : "--\n") + written(notification);
    return text;
}

struct Read {
    std::string name;
    std::vector<std::string> paths;
    ::gnmi::Encoding encoding;
    Type::DataType type;
    std::string answer;
};

class AGet : public testing::TestWithParam<Read> {
protected:
    ServedDevice device_;
};

TEST_P(AGet, IsAnswered) {
    EXPECT_EQ(answer(device_, request(GetParam().paths, GetParam().encoding, GetParam().type)),
              GetParam().answer);
}

const std::string eth1 = "/lldp/interfaces/interface[name=eth1]";
const std::string neighbor = eth1 + "/neighbors/neighbor[id=r2.example.net#eth1]";
const std::string tlv = neighbor + "/custom-tlvs/tlv[oui=00:80:c2][oui-subtype=9][type=127]";

INSTANTIATE_TEST_SUITE_P(
    Of, AGet,
    testing::Values(
        Read{"ALeafAsProto",
             {"/lldp/config/system-name"},
             ::gnmi::PROTO,
             Type::ALL,
             "/lldp/config/system-name = 'r1.example.net'\n"},
        Read{"ALeafAsJson",
             {"/lldp/config/system-name"},
             ::gnmi::JSON,
             Type::ALL,
             "/lldp/config/system-name = json \"r1.example.net\"\n"},
        Read{"ALeafAsJsonIetf",
             {"/lldp/config/enabled"},
             ::gnmi::JSON_IETF,
             Type::ALL,
             "/lldp/config/enabled = ietf true\n"},
        Read{"AContainerAsProto",
             {"/lldp/config"},
             ::gnmi::PROTO,
             Type::ALL,
             "/lldp/config/enabled = true\n"
             "/lldp/config/system-name = 'r1.example.net'\n"
             "/lldp/config/system-description = 'Router r1 software 1.0'\n"},
        Read{"AContainerAsJson",
             {"/lldp/config"},
             ::gnmi::JSON,
             Type::ALL,
             "/lldp/config = json {\"enabled\":true,\"system-name\":\"r1.example.net\","
             "\"system-description\":\"Router r1 software 1.0\"}\n"},
        Read{"AContainerAsJsonIetf",
             {"/lldp/config"},
             ::gnmi::JSON_IETF,
             Type::ALL,
             "/lldp/config = ietf {\"openconfig-lldp:enabled\":true,\"openconfig-lldp:system-name\":"
             "\"r1.example.net\",\"openconfig-lldp:system-description\":\"Router r1 software 1.0\"}\n"},
        Read{"NumbersOf64BitsAsJson",
             {eth1 + "/state/counters"},
             ::gnmi::JSON,
             Type::ALL,
             eth1 + "/state/counters = json "
                    "{\"frame-in\":20,\"frame-out\":19,\"frame-discard\":0,\"tlv-unknown\":1}\n"},
        Read{"NumbersOf64BitsAsJsonIetf",
             {eth1 + "/state/counters/frame-in"},
             ::gnmi::JSON_IETF,
             Type::ALL,
             eth1 + "/state/counters/frame-in = ietf \"20\"\n"},
        Read{"NumbersAsProto",
             {eth1 + "/state/counters/frame-in", neighbor + "/state/ttl", tlv + "/state/type"},
             ::gnmi::PROTO,
             Type::ALL,
             eth1 + "/state/counters/frame-in = 20u\n--\n" + neighbor + "/state/ttl = 8u\n--\n" + tlv +
                 "/state/type = 127\n"},
        Read{"OctetsAsProto",
             {tlv + "/state/value"},
             ::gnmi::PROTO,
             Type::ALL,
             tlv + "/state/value = bytes YWJj\n"},
        Read{"OctetsAsJson",
             {tlv + "/state/value"},
             ::gnmi::JSON,
             Type::ALL,
             tlv + "/state/value = json \"YWJj\"\n"},
        Read{"AnIdentityAsJsonIetf",
             {neighbor + "/capabilities/capability[name=ROUTER]/name"},
             ::gnmi::JSON_IETF,
             Type::ALL,
             neighbor + "/capabilities/capability[name=ROUTER]/name = ietf \"openconfig-lldp-types:ROUTER\"\n"},
        Read{
            "AnIdentityAsJson",
            {neighbor + "/capabilities/capability[name=ROUTER]/state"},
            ::gnmi::JSON,
            Type::ALL,
            neighbor +
                "/capabilities/capability[name=ROUTER]/state = json {\"name\":\"ROUTER\",\"enabled\":false}\n"},
        Read{"AnIdentityAsProto",
             {neighbor + "/capabilities/capability[name=ROUTER]/state/name"},
             ::gnmi::PROTO,
             Type::ALL,
             neighbor + "/capabilities/capability[name=ROUTER]/state/name = 'ROUTER'\n"},
        Read{"AnEnumerationAsProto",
             {neighbor + "/state/port-id-type"},
             ::gnmi::PROTO,
             Type::ALL,
             neighbor + "/state/port-id-type = 'INTERFACE_NAME'\n"},
        Read{"EveryEntryWithoutAKey",
             {"/lldp/interfaces/interface/config/enabled"},
             ::gnmi::PROTO,
             Type::ALL,
             "/lldp/interfaces/interface[name=eth1]/config/enabled = true\n"
             "/lldp/interfaces/interface[name=eth2]/config/enabled = true\n"
             "/lldp/interfaces/interface[name=eth3]/config/enabled = true\n"},
        Read{"EveryEntryByAWildcard",
             {"/lldp/interfaces/interface[name=*]/config/name"},
             ::gnmi::JSON,
             Type::ALL,
             "/lldp/interfaces/interface[name=eth1]/config/name = json \"eth1\"\n"
             "/lldp/interfaces/interface[name=eth2]/config/name = json \"eth2\"\n"
             "/lldp/interfaces/interface[name=eth3]/config/name = json \"eth3\"\n"},
        Read{"NodesOfAnyName",
             {"/lldp/*/enabled"},
             ::gnmi::PROTO,
             Type::ALL,
             "/lldp/config/enabled = true\n/lldp/state/enabled = true\n"},
        Read{"NodesAtAnyDepth",
             {"/.../frame-in"},
             ::gnmi::PROTO,
             Type::ALL,
             "/lldp/state/counters/frame-in = 79u\n"
             "/lldp/interfaces/interface[name=eth1]/state/counters/frame-in = 20u\n"
             "/lldp/interfaces/interface[name=eth2]/state/counters/frame-in = 20u\n"
             "/lldp/interfaces/interface[name=eth3]/state/counters/frame-in = 39u\n"},
        Read{"Configuration",
             {eth1},
             ::gnmi::JSON,
             Type::CONFIG,
             eth1 + " = json {\"name\":\"eth1\",\"config\":{\"name\":\"eth1\",\"enabled\":true}}\n"},
        Read{"ConfigurationAsProto",
             {eth1},
             ::gnmi::PROTO,
             Type::CONFIG,
             eth1 + "/name = 'eth1'\n" + eth1 + "/config/name = 'eth1'\n" + eth1 + "/config/enabled = true\n"},
        Read{"State", {"/lldp/*/enabled"}, ::gnmi::PROTO, Type::STATE, "/lldp/state/enabled = true\n"},
        Read{"OperationalState",
             {"/lldp/state"},
             ::gnmi::JSON,
             Type::OPERATIONAL,
             "/lldp/state = json {\"counters\":{\"frame-in\":79,\"frame-out\":57,\"frame-discard\":0,"
             "\"tlv-unknown\":4,\"entries-aged-out\":0}}\n"}),
    [](const auto &row) { return row.param.name; });

TEST(AGetWithAPrefix, AnswersAbsolutePathsAndReturnsTheTarget) {
    ServedDevice device;
    ::gnmi::GetRequest wanted = request({"/enabled"}, ::gnmi::PROTO);
    *wanted.mutable_prefix() = path_of_target("router 1", "/lldp/config");
    const auto response = get(device.target(), device.caller(), wanted);
    ASSERT_EQ(response.notification_size(), 1);
    EXPECT_EQ(written(response.notification(0)), "/lldp/config/enabled = true\n");
    EXPECT_EQ(response.notification(0).prefix().target(), "router 1");
    EXPECT_EQ(response.notification(0).prefix().elem_size(), 0);
}

TEST(AGetWithoutATarget, ReturnsNone) {
    ServedDevice device;
    const auto response = get(device.target(), device.caller(), request({"/lldp/config"}, ::gnmi::JSON));
    EXPECT_FALSE(response.notification(0).has_prefix());
}

TEST(AGetOfSeveralPaths, HasOneNotificationForEachAndOneTime) {
    ServedDevice device;
    const auto before = std::chrono::system_clock::now().time_since_epoch();
    const auto response = get(device.target(), device.caller(),
                              request({"/lldp/config", "/lldp/state", "/lldp/config"}, ::gnmi::JSON));
    const auto after = std::chrono::system_clock::now().time_since_epoch();
    ASSERT_EQ(response.notification_size(), 3);
    const std::chrono::nanoseconds time(response.notification(0).timestamp());
    EXPECT_GE(time, before);
    EXPECT_LE(time, after);
    EXPECT_EQ(response.notification(1).timestamp(), time.count());
    EXPECT_EQ(response.notification(2).timestamp(), time.count());
}

TEST(AGetOfTheRoot, HoldsTheTopContainer) {
    ServedDevice device;
    EXPECT_THAT(answer(device, request({""}, ::gnmi::JSON_IETF, Type::CONFIG)),
                testing::StartsWith("/ = ietf {\"openconfig-lldp:lldp\":{\"config\":{\"enabled\":true,"));
    EXPECT_THAT(answer(device, request({""}, ::gnmi::JSON, Type::CONFIG)),
                testing::StartsWith("/ = json {\"lldp\":{\"config\":{\"enabled\":true,"));
}

TEST(AGetWithoutPaths, IsAnsweredWithNothing) {
    ServedDevice device;
    EXPECT_EQ(answer(device, request({}, ::gnmi::JSON)), "");
}

TEST(AGetOfManyEntries, AnswersEachPathWithItsOwnEntry) {
    ServedDevice device;
    std::vector<std::string> paths;
    std::string expected;
    for (int i = 0; i < 40; i++) {
        const std::string name =
            "/lldp/interfaces/interface[name=eth" + std::to_string(i % 3 + 1) + "]/config/name";
        paths.push_back(name);
        expected += (i == 0 ? "" : "--\n") + name + " = 'eth" + std::to_string(i % 3 + 1) + "'\n";
    }
    EXPECT_EQ(answer(device, request(paths, ::gnmi::PROTO)), expected);
}

// ---- defaults

TEST(ADefault, IsAnsweredWhereItIsInUse) {
    ServedDevice device;
    yang::EditNode edit = yang::parse_edit(
        schemas(), R"({"openconfig-lldp:lldp":{"config":{"@enabled":{"ietf-netconf:operation":"remove"}}}})",
        yang::Operation::merge);
    device.service().datastores().edit(device.caller(), device::Datastore::running, edit, false);
    EXPECT_EQ(answer(device, request({"/lldp/config/enabled"}, ::gnmi::PROTO)),
              "/lldp/config/enabled = true\n");
    EXPECT_THAT(answer(device, request({"/lldp/config"}, ::gnmi::PROTO)), Not(HasSubstr("enabled")));
}

TEST(ADefault, IsAnsweredWhereNothingIsConfigured) {
    ServedDevice device;
    const yang::EditNode edit = yang::parse_edit(
        schemas(), R"({"openconfig-lldp:lldp":{"config":{"@":{"ietf-netconf:operation":"remove"}}}})",
        yang::Operation::merge);
    device.service().datastores().edit(device.caller(), device::Datastore::running, edit, false);
    EXPECT_EQ(answer(device, request({"/lldp/config/enabled"}, ::gnmi::PROTO)),
              "/lldp/config/enabled = true\n");
}

TEST(ADeviceThatCannotBeRead, IsNotTheClientsFault) {
    ServedDevice device;
    device.remove_files();
    const auto refusal = refusal_of_call([&] { answer(device, request({"/lldp/state"}, ::gnmi::JSON)); });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), Code::unavailable) << refusal->what();
}

TEST(ADefaultOfAnEntryThatDoesNotExist, IsNotInUse) {
    ServedDevice device;
    const auto refusal = refusal_of_call([&] {
        answer(device, request({"/lldp/interfaces/interface[name=eth9]/config/enabled"}, ::gnmi::JSON));
    });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), Code::not_found);
}

// ---- depth

::gnmi::GetRequest cut(const std::string &path, uint32_t level, ::gnmi::Encoding encoding) {
    ::gnmi::GetRequest made = request({path}, encoding);
    made.add_extension()->mutable_depth()->set_level(level);
    return made;
}

TEST(ADepth, CountsLevelsBelowTheRequestedNode) {
    ServedDevice device;
    EXPECT_EQ(answer(device, cut(eth1 + "/state", 1, ::gnmi::JSON)),
              eth1 + "/state = json {\"name\":\"eth1\",\"enabled\":true}\n");
    EXPECT_EQ(answer(device, cut(eth1 + "/state", 1, ::gnmi::PROTO)),
              eth1 + "/state/name = 'eth1'\n" + eth1 + "/state/enabled = true\n");
    EXPECT_THAT(answer(device, cut(eth1 + "/state", 2, ::gnmi::JSON)),
                HasSubstr("\"counters\":{\"frame-in\":20"));
    EXPECT_EQ(answer(device, cut(eth1 + "/state", 0, ::gnmi::JSON)),
              answer(device, request({eth1 + "/state"}, ::gnmi::JSON)));
}

TEST(ADepthThatLeavesNothing, IsAnsweredWithNothing) {
    ServedDevice device;
    EXPECT_EQ(answer(device, cut("/lldp", 1, ::gnmi::JSON)), "");
}

// ---- access rules

constexpr const char *rules_that_hide_state = R"(
    <nacm xmlns="urn:ietf:params:xml:ns:yang:ietf-netconf-acm">
      <read-default>permit</read-default>
      <groups><group><name>ops</name><user-name>bob</user-name></group></groups>
      <rule-list><name>bob</name><group>ops</group>
        <rule><name>r</name><module-name>openconfig-lldp</module-name>
          <path xmlns:l="http://openconfig.net/yang/lldp">/l:lldp/l:state</path>
          <access-operations>read</access-operations><action>deny</action></rule>
        <rule><name>c</name><module-name>openconfig-lldp</module-name>
          <path xmlns:l="http://openconfig.net/yang/lldp">/l:lldp/l:config/l:enabled</path>
          <access-operations>read</access-operations><action>deny</action></rule>
      </rule-list>
    </nacm>)";

TEST(AccessRules, HideWhatAUserMayNotRead) {
    ServedDevice device(rules_that_hide_state);
    const auto read = [&](const std::string &user, const std::string &wanted) {
        const Caller caller = device.caller(user);
        return refusal_of_call([&] { get(device.target(), caller, request({wanted}, ::gnmi::JSON)); });
    };
    EXPECT_FALSE(read("alice", "/lldp/state").has_value());
    ASSERT_TRUE(read("bob", "/lldp/state").has_value());
    EXPECT_EQ(read("bob", "/lldp/state")->code(), Code::not_found);
    EXPECT_EQ(read("bob", "/lldp/config/enabled")->code(), Code::not_found) << "not its default either";
    EXPECT_FALSE(read("bob", "/lldp/config/system-name").has_value());
}

// ---- refusals

struct RefusedRead {
    std::string name;
    ::gnmi::GetRequest request;
    Code code;
    std::string because;
};

class ARefusedGet : public testing::TestWithParam<RefusedRead> {
protected:
    ServedDevice device_;
};

TEST_P(ARefusedGet, SaysWhy) {
    const auto refusal = refusal_of_call([&] { get(device_.target(), device_.caller(), GetParam().request); });
    ASSERT_TRUE(refusal.has_value());
    EXPECT_EQ(refusal->code(), GetParam().code);
    EXPECT_THAT(refusal->what(), HasSubstr(GetParam().because));
}

::gnmi::GetRequest with_model(const std::string &name, const std::string &version) {
    ::gnmi::GetRequest made = request({"/lldp"}, ::gnmi::JSON);
    made.add_use_models()->set_name(name);
    made.mutable_use_models(0)->set_version(version);
    return made;
}

INSTANTIATE_TEST_SUITE_P(
    Of, ARefusedGet,
    testing::Values(
        RefusedRead{"AnUnknownNode", request({"/lldp/colour"}, ::gnmi::JSON), Code::invalid_argument,
                    "\"colour\""},
        RefusedRead{"OneUnknownNodeOfTwo", request({"/lldp", "/colour"}, ::gnmi::JSON), Code::invalid_argument,
                    "\"colour\""},
        RefusedRead{"AnEntryThatDoesNotExist", request({"/lldp/interfaces/interface[name=eth9]"}, ::gnmi::JSON),
                    Code::not_found, "/lldp/interfaces/interface[name=eth9]: the device has no data there"},
        RefusedRead{"ALeafWithoutAValue", request({"/lldp/config/hello-timer"}, ::gnmi::JSON), Code::not_found,
                    "/lldp/config/hello-timer"},
        RefusedRead{"AnEncodingThatIsNotServed", request({"/lldp"}, ::gnmi::ASCII), Code::unimplemented,
                    "the encoding ASCII is not supported"},
        RefusedRead{"AnEncodingThatDoesNotExist", request({"/lldp"}, static_cast<::gnmi::Encoding>(17)),
                    Code::unimplemented, "the encoding 17"},
        RefusedRead{"AnUnknownType", request({"/lldp"}, ::gnmi::JSON, static_cast<Type::DataType>(9)),
                    Code::invalid_argument, "type of data 9"},
        RefusedRead{"AModelThatIsNotServed", with_model("openconfig-interfaces", ""), Code::invalid_argument,
                    "openconfig-interfaces"},
        RefusedRead{"AVersionThatIsNotServed", with_model("openconfig-lldp", "0.0.1"), Code::invalid_argument,
                    "of version 0.0.1"}),
    [](const auto &row) { return row.param.name; });

TEST(AModelThatIsServed, MayBeNamed) {
    ServedDevice device;
    EXPECT_NE(answer(device, with_model("openconfig-lldp", "")), "");
    EXPECT_NE(answer(device, with_model("openconfig-lldp", "2026-11-22")), "");
}

} // namespace
} // namespace yfw::gnmi::test
