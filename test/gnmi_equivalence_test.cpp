// Properties of a device that two protocols and the program serve: all read the same data, and the same change
// over each protocol makes the same native configuration.
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "both_protocols.h"
#include "edit_device.h"
#include "edit_values.h"
#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/paths/path_text.h"
#include "gnmi_data.h"
#include "plain_configuration.h"
#include "random_neighbors.h"
#include "support/answers.h"
#include "support/child_process.h"
#include "support/files.h"
#include "support/native_xml.h"
#include "yang/forest.h"

namespace yfw::test {
namespace {

using Random = std::mt19937;

// A device with a configuration and a random table of neighbors.
void add_device(const TemporaryDirectory &to, unsigned seed) {
    RandomTable random(seed);
    std::string details;
    for (const RandomNeighbor &neighbor : random.make(12))
        details += native_neighbor(neighbor.interface, neighbor.device, random.announcement(neighbor));
    std::filesystem::create_directory(to.path() / "device");
    to.add("device/oper.xml", native_neighbors(details));
    to.add("device/config.xml", seed % 4 == 0 ? empty_device() : configured_device());
}

// ---- reads

// The path of a random node of the data, with the keys of all its lists or of the outer ones: an inner key
// without the outer ones names the first entry that has it.
::gnmi::Path random_path(const lyd_node *data, Random &random) {
    const auto nodes = yang::nodes_at(data, "//openconfig-lldp:*");
    ::gnmi::Path path = gnmi_path(nodes[random() % nodes.size()]);
    bool has_keys = true;
    for (::gnmi::PathElem &element : *path.mutable_elem()) {
        has_keys = has_keys && (element.key().empty() || random() % 3 != 0);
        if (!has_keys)
            element.clear_key();
    }
    return path;
}

::gnmi::GetRequest request_for(const ::gnmi::Path &path, ::gnmi::Encoding encoding) {
    ::gnmi::GetRequest request;
    *request.add_path() = path;
    request.set_encoding(encoding);
    return request;
}

std::string attribute(const std::string &text) {
    std::string result;
    for (const char c : text)
        result += c == '<' ? "&lt;" : c == '&' ? "&amp;" : c == '\'' ? "&apos;" : std::string(1, c);
    return "'" + result + "'";
}

class ARandomDevice : public testing::TestWithParam<unsigned> {
protected:
    ARandomDevice() { add_device(directory_, GetParam()); }

    std::string device() const { return (directory_.path() / "device").string(); }

    std::string by_netconf(BothProtocols &both, const ::gnmi::Path &path) const {
        const std::string reply =
            both.netconf("<get><filter type='xpath' xmlns:l='http://openconfig.net/yang/lldp' select=" +
                         attribute(path_text(path, "l:")) + "/></get>");
        const size_t begin = reply.find("<data>") + 6;
        return text_of(
            parse_answer(modules_.get(), Format::xml, reply.substr(begin, reply.rfind("</data>") - begin)));
    }

    std::string by_gnmi(BothProtocols &both, const ::gnmi::Path &path, ::gnmi::Encoding encoding) const {
        return text_of(data_of(modules_.get(), both.get(request_for(path, encoding))));
    }

    std::string by_program(const ::gnmi::Path &path) const {
        const Outcome outcome = run_yfw({{"get", "--device", device(), "--store",
                                          (directory_.path() / "none.db").string(), path_text(path, "")}});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return text_of(parse_printed(modules_.get(), Format::json, outcome.output));
    }

    // Times of counters that were never cleared depend on the moment of the read.
    static std::string text_of(const Tree &data) { return without_times(as_text(data.get())); }

    const TemporaryDirectory directory_;
    const Context modules_ = openconfig_modules();
};

TEST_P(ARandomDevice, IsReadAlikeByBothProtocolsAndTheProgram) {
    constexpr int paths = 12;
    constexpr int asked_of_the_program = 2; // which is a process each time
    BothProtocols both(device(), directory_.path() / "store.db");
    const ::gnmi::Path everything =
        gnmi_path(data_of(modules_.get(), both.get(request_for({}, ::gnmi::PROTO))).get());
    const Tree whole = data_of(modules_.get(), both.get(request_for(everything, ::gnmi::JSON_IETF)));
    Random random(GetParam());
    for (int i = 0; i < paths; i++) {
        const ::gnmi::Path path = i == 0 ? everything : random_path(whole.get(), random);
        SCOPED_TRACE(gnmi::to_text(path));
        const std::string netconf = by_netconf(both, path);
        EXPECT_NE(netconf, "");
        EXPECT_EQ(by_gnmi(both, path, ::gnmi::JSON_IETF), netconf);
        EXPECT_EQ(by_gnmi(both, path, ::gnmi::PROTO), netconf);
        if (i < asked_of_the_program) {
            EXPECT_EQ(by_program(path), netconf);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seed, ARandomDevice, testing::Range(1U, 9U));

// ---- changes

// A change as both protocols say it.
struct Change {
    PlainNode edit{.name = "lldp"};
    ::gnmi::SetRequest request;
};

void PrintTo(const Change &change, std::ostream *to) {
    *to << document_of(change.edit) << "\n" << change.request.DebugString();
}

const std::string interfaces_path = "/lldp/interfaces/interface";

class RandomChanges {
public:
    explicit RandomChanges(unsigned seed) : random_(seed), values_(legal_values()) {}

    // Of one or two leaves, of all leaves of a container, or of an interface.
    Change next() {
        Change change;
        switch (random_() % 6) {
        case 0:
            set_interface(change);
            break;
        case 1:
            remove_interface(change);
            break;
        case 2:
            replace_config(change);
            break;
        case 3:
            remove_leaf(change);
            break;
        default:
            set_leaf(change);
        }
        return change;
    }

private:
    const LegalValue &value() {
        for (;;) {
            const LegalValue &value = values_[random_() % values_.size()];
            if (!value.leaf.starts_with(interfaces_path) && (value.native_holds_it || random_() % 8 == 0))
                return value;
        }
    }

    static std::string name_of(const LegalValue &value) { return value.leaf.substr(value.leaf.rfind('/') + 1); }
    static bool is_leaf_list(const std::string &name) { return name == "suppress-tlv-advertisement"; }
    static std::string bare(const LegalValue &value) {
        return is_leaf_list(name_of(value)) ? value.text.substr(value.text.rfind(':') + 1) : value.text;
    }

    // RFC 7951: booleans without quotes, 64-bit numbers, texts and identities with them.
    static nlohmann::json json_of(const LegalValue &value) {
        if (name_of(value) == "enabled")
            return value.text == "true";
        if (is_leaf_list(name_of(value)))
            return nlohmann::json::array({"openconfig-lldp-types:" + bare(value)});
        return value.text;
    }

    static ::gnmi::Path config_path(const std::string &leaf = "") {
        ::gnmi::Path path;
        path.add_elem()->set_name("lldp");
        path.add_elem()->set_name("config");
        if (!leaf.empty())
            path.add_elem()->set_name(leaf);
        return path;
    }

    static ::gnmi::Path interface_path(const std::string &name) {
        ::gnmi::Path path;
        for (const char *each : {"lldp", "interfaces", "interface"})
            path.add_elem()->set_name(each);
        (*path.mutable_elem(2)->mutable_key())["name"] = name;
        return path;
    }

    static void put(::gnmi::Update &update, const ::gnmi::Path &path, const nlohmann::json &value) {
        *update.mutable_path() = path;
        update.mutable_val()->set_json_ietf_val(value.dump());
    }

    void set_leaf(Change &change) {
        const LegalValue &to = value();
        change.edit.children = {{.name = "config", .children = {{.name = name_of(to), .value = bare(to)}}}};
        put(*change.request.add_update(), config_path(name_of(to)), json_of(to));
    }

    void remove_leaf(Change &change) {
        const std::string leaf = name_of(value());
        if (is_leaf_list(leaf))
            return set_leaf(change); // NETCONF removes single values only
        change.edit.children = {{.name = "config", .children = {{.name = leaf, .operation = "remove"}}}};
        *change.request.add_delete_() = config_path(leaf);
    }

    void replace_config(Change &change) {
        PlainNode config{.name = "config", .operation = "replace"};
        nlohmann::json members = nlohmann::json::object();
        for (int i = 0; i < 4; i++) {
            const LegalValue &to = value();
            if (!members.contains(name_of(to))) {
                members[name_of(to)] = json_of(to);
                config.children.push_back({.name = name_of(to), .value = bare(to)});
            }
        }
        change.edit.children = {config};
        put(*change.request.add_replace(), config_path(), members);
    }

    std::string interface() { return "eth" + std::to_string(1 + random_() % 4); }

    void set_interface(Change &change) {
        const std::string name = interface();
        const bool is_on = random_() % 2 == 0;
        const bool is_new = random_() % 3 == 0;
        const PlainNode config{.name = "config",
                               .children = {{.name = "name", .value = name},
                                            {.name = "enabled", .value = is_on ? "true" : "false"}}};
        change.edit.children = {{.name = "interfaces",
                                 .children = {{.name = "interface",
                                               .value = name,
                                               .operation = is_new ? "replace" : "",
                                               .children = {config}}}}};
        put(is_new ? *change.request.add_replace() : *change.request.add_update(), interface_path(name),
            {{"name", name}, {"config", {{"name", name}, {"enabled", is_on}}}});
    }

    void remove_interface(Change &change) {
        const std::string name = interface();
        change.edit.children = {
            {.name = "interfaces", .children = {{.name = "interface", .value = name, .operation = "remove"}}}};
        *change.request.add_delete_() = interface_path(name);
    }

    Random random_;
    const std::vector<LegalValue> values_;
};

// What a device's native configuration is after each change; "refused" where the change was.
using Native = std::vector<std::string>;

class RandomChangesOf : public testing::TestWithParam<unsigned> {
protected:
    RandomChangesOf() {
        add_device(directory_, GetParam());
        RandomChanges random(GetParam());
        for (int i = 0; i < 15; i++)
            changes_.push_back(random.next());
    }

    template <class Make> Native made_by(const std::string &store, Make &&make) const {
        BothProtocols both(directory_.path() / "device", directory_.path() / store);
        Native native;
        for (const Change &change : changes_) {
            const std::string before = both.native();
            const bool is_taken = make(both, change);
            native.push_back(both.native() + (is_taken ? "" : "refused"));
            if (!is_taken) {
                EXPECT_EQ(both.native(), before) << testing::PrintToString(change);
            }
        }
        return native;
    }

    const TemporaryDirectory directory_;
    std::vector<Change> changes_;
};

TEST_P(RandomChangesOf, ADeviceMakeTheSameNativeConfigurationOverBothProtocols) {
    const Native by_gnmi = made_by("gnmi.db", [](BothProtocols &both, const Change &change) {
        try {
            both.set(change.request);
            return true;
        } catch (const std::exception &) {
            return false;
        }
    });
    const Native by_netconf = made_by("netconf.db", [](BothProtocols &both, const Change &change) {
        const std::string reply = both.netconf("<edit-config><target><running/></target><config>" +
                                               document_of(change.edit) + "</config></edit-config>");
        return reply.find("<ok/>") != std::string::npos;
    });
    for (size_t i = 0; i < changes_.size(); i++)
        ASSERT_EQ(by_gnmi[i], by_netconf[i]) << testing::PrintToString(changes_[i]);
    EXPECT_NE(by_gnmi.back(), "") << "nothing was changed";
}

INSTANTIATE_TEST_SUITE_P(Seed, RandomChangesOf, testing::Range(1U, 9U));

} // namespace
} // namespace yfw::test
