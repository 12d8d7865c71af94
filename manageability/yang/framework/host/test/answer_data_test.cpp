#include "host/answer_data.h"

#include <ostream>

#include "answer_fixture.h"

namespace yfw::host::test {
namespace {

struct BadValue {
    std::string path;
    std::string value;
};

std::ostream &operator<<(std::ostream &out, const BadValue &bad) {
    return out << bad.path << "=" << bad.value.substr(0, 40);
}

class ValueThatTheModelRefuses : public WrittenAnswer, public testing::WithParamInterface<BadValue> {};

TEST_P(ValueThatTheModelRefuses, CostsThatLeafAndAWarning) {
    stitch("eth1", "r2#p");
    add(std::string(neighbor_list) + "/state/port-id", "p");
    add("/lldp/state/chassis-id", "c1");
    const Lines rest = answer();
    add(GetParam().path, GetParam().value.c_str());
    EXPECT_EQ(answer(), rest);
    const std::string leaf_name = GetParam().path.substr(GetParam().path.rfind('/') + 1);
    EXPECT_NE(warning().find(leaf_name), std::string::npos) << warning();
    EXPECT_NE(warning().find(GetParam().value), std::string::npos) << warning();
}

std::string neighbor_state(const char *leaf_name) {
    return std::string(neighbor_list) + "/state/" + leaf_name;
}

INSTANTIATE_TEST_SUITE_P(
    Values, ValueThatTheModelRefuses,
    testing::Values(BadValue{"/lldp/state/enabled", "maybe"}, BadValue{"/lldp/state/enabled", ""},
                    BadValue{"/lldp/config/hello-timer", "-5"},
                    BadValue{"/lldp/config/hello-timer", "18446744073709551616"},
                    BadValue{"/lldp/state/counters/frame-in", "-2147483648"},
                    BadValue{"/lldp/state/counters/last-clear", "71"},
                    BadValue{"/lldp/state/chassis-id-type", "NO_SUCH_TYPE"},
                    BadValue{"/lldp/state/system-name", std::string(256, 'n')},
                    BadValue{"/lldp/config/suppress-tlv-advertisement", "ROUTER"},
                    BadValue{"/lldp/config/suppress-tlv-advertisement", "no-such-module:SYSTEM_NAME"},
                    BadValue{neighbor_state("ttl"), "65536"}, BadValue{neighbor_state("ttl"), "many"},
                    BadValue{neighbor_state("last-update"), "9223372036854775808"},
                    BadValue{neighbor_state("port-id-type"), "CHASSIS_COMPONENT"}));

class AnswerWithFaults : public WrittenAnswer {
protected:
    void SetUp() override { stitch("eth1", "r2#p"); }

    Lines below_the_neighbor() {
        return below(answer(), "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='r2#p']");
    }

    void add_tlv(const char *type, const char *oui, const char *subtype, const char *value) {
        open_entry(tlv_list);
        const std::string list = tlv_list;
        add(list + "/type", type);
        add(list + "/oui", oui);
        add(list + "/oui-subtype", subtype);
        add(list + "/state/value", value);
    }
};

TEST_F(AnswerWithFaults, LosesOnlyTheEntriesWithAnUnknownIdentityForAKey) {
    const std::string list = capability_list;
    for (const char *name : {"MAC_BRIDGE", "DCOS_IS_CABLE_DEVICE", "ROUTER"}) {
        open_entry(list);
        add(list + "/name", (std::string("openconfig-lldp-types:") + name).c_str());
        add(list + "/state/enabled", "true");
    }
    EXPECT_EQ(below_the_neighbor(),
              (Lines{"/capabilities/capability[name='openconfig-lldp-types:MAC_BRIDGE']/state/enabled=true",
                     "/capabilities/capability[name='openconfig-lldp-types:ROUTER']/state/enabled=true"}));
    EXPECT_NE(warning().find("DCOS_IS_CABLE_DEVICE"), std::string::npos) << warning();
}

TEST_F(AnswerWithFaults, LosesAnEntryWithoutItsKeys) {
    add_tlv("127", "00:80:c2", nullptr, "YWJj");
    add_tlv("127", "00:80:c2", "9", "YQ==");
    EXPECT_EQ(below_the_neighbor(),
              (Lines{"/custom-tlvs/tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/value=YQ=="}));
    EXPECT_NE(warning().find("oui-subtype"), std::string::npos) << warning();
}

TEST_F(AnswerWithFaults, HoldsTheFirstOfTwoEntriesWithTheSameKeys) {
    add_tlv("127", "00:80:c2", "9", "YWJj");
    add_tlv("127", "00:80:c2", "9", "YQ==");
    add_tlv("127", "00:80:c2", "10", "YWI=");
    EXPECT_EQ(below_the_neighbor(),
              (Lines{"/custom-tlvs/tlv[type='127'][oui='00:80:c2'][oui-subtype='9']/state/value=YWJj",
                     "/custom-tlvs/tlv[type='127'][oui='00:80:c2'][oui-subtype='10']/state/value=YWI="}));
    EXPECT_NE(warning().find("tlv"), std::string::npos) << warning();
}

TEST_F(AnswerWithFaults, TellsKeysApartThatRunTogetherAlike) {
    add_tlv("127", "a", "bc", "YQ==");
    add_tlv("127", "ab", "c", "YWI=");
    EXPECT_EQ(below_the_neighbor().size(), 2u);
    EXPECT_TRUE(warnings.empty());
}

TEST_F(AnswerWithFaults, HasOneWarningForEachFault) {
    add("/lldp/state/enabled", "maybe");
    add("/lldp/config/hello-timer", "soon");
    add(std::string(neighbor_list) + "/state/ttl", "70000");
    const Lines rest = answer();
    EXPECT_EQ(rest, (Lines{"/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='r2#p']"}));
    EXPECT_EQ(warnings.size(), 3u);
}

TEST_F(AnswerWithFaults, WarnsOnlyOfWhatWasAskedFor) {
    add("/lldp/state/enabled", "maybe");
    add("/lldp/config/hello-timer", "30");
    EXPECT_EQ(answer({"/lldp/config"}), (Lines{"/lldp/config/hello-timer=30"}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(AnswerWithFaults, NamesTheEntryInItsWarning) {
    add(std::string(neighbor_list) + "/state/ttl", "70000");
    answer();
    EXPECT_NE(warning().find("eth1"), std::string::npos) << warning();
    EXPECT_NE(warning().find("r2#p"), std::string::npos) << warning();
}

// Neighbors may announce arbitrary bytes; RFC 7950 section 9.4 says which characters a string may contain.
class ValueThatIsNoText : public WrittenAnswer, public testing::WithParamInterface<const char *> {};

TEST_P(ValueThatIsNoText, IsLeftOutWithAWarningAndTheRestIsAnswered) {
    add("/lldp/state/system-name", GetParam());
    add("/lldp/state/system-description", "caf\xc3\xa9\t\xf0\x9f\x98\x80");
    EXPECT_EQ(answer(), (Lines{"/lldp/state/system-description=caf\xc3\xa9\t\xf0\x9f\x98\x80"}));
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings[0].find("system-name"), std::string::npos) << warnings[0];
}

INSTANTIATE_TEST_SUITE_P(Bytes, ValueThatIsNoText,
                         testing::Values("\x01", "a\x1f", "\xc0\x80", "\xe0\x80\x80", "\xed\xa0\x80",
                                         "\xef\xbf\xbf", "\xef\xb7\x90", "\xf4\x90\x80\x80", "\x80", "\xe2\x82",
                                         "\xff"));

} // namespace
} // namespace yfw::host::test
