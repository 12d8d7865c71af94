// The server's own data: modules, sessions, YANG library.
#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/run_program.h"
#include "netconf_server.h"
#include "support/eventually.h"
#include "support/files.h"
#include "yang/tree_text.h"

namespace yfw::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

const std::string monitoring_namespace = "urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring";
const std::string library_namespace = "urn:ietf:params:xml:ns:yang:ietf-yang-library";

std::string get_schema(const std::string &content) {
    return "<get-schema xmlns=\"" + monitoring_namespace + "\">" + content + "</get-schema>";
}

std::string identifier(const std::string &name) {
    return "<identifier>" + name + "</identifier>";
}

// The server's own modules, and those that are built into libyang.
Context protocol_modules() {
    ly_log_options(LY_LOSTORE_LAST);
    ly_ctx *created = nullptr;
    if (ly_ctx_new(YFW_STANDARD_MODELS_DIR, LY_CTX_DISABLE_SEARCHDIR_CWD, &created) != LY_SUCCESS)
        throw std::runtime_error("no libyang context");
    Context context(created);
    for (const char *module : {"ietf-netconf-monitoring", "ietf-datastores", "ietf-yang-library"})
        if (ly_ctx_load_module(created, module, nullptr, nullptr) == nullptr)
            throw std::runtime_error(std::string(module) + " cannot be loaded");
    return context;
}

class NetconfMonitoring : public NetconfTest {
protected:
    // The top nodes of an answer.
    std::vector<Xml> answer(const std::string &filter) {
        const Xml reply = client.rpc("<get>" + subtree(filter) + "</get>");
        const Xml *data = reply.child("data");
        EXPECT_NE(data, nullptr) << reply.printed;
        return data != nullptr ? data->children : std::vector<Xml>();
    }

    // The same as data, which must be valid.
    Tree valid_answer(const std::string &filter) {
        std::string documents;
        for (const Xml &each : answer(filter))
            documents += each.printed;
        lyd_node *tree = nullptr;
        const LY_ERR result = lyd_parse_data_mem(context_.get(), documents.c_str(), LYD_XML, LYD_PARSE_STRICT,
                                                 LYD_VALIDATE_PRESENT, &tree);
        EXPECT_EQ(result, LY_SUCCESS) << ly_errmsg(context_.get()) << " at " << ly_errpath(context_.get());
        EXPECT_NE(tree, nullptr);
        return Tree(tree);
    }

    // The YANG library in both its forms, which are in one module.
    Tree library() {
        return valid_answer("<yang-library xmlns=\"" + library_namespace + "\"/><modules-state xmlns=\"" +
                            library_namespace + "\"/>");
    }

    Tree state() { return valid_answer("<netconf-state xmlns=\"" + monitoring_namespace + "\"/>"); }

    Context context_ = protocol_modules();
    NetconfClient client{server().socket()};
};

std::vector<std::string> state_values(const Tree &tree, const std::string &path) {
    return values_at(tree.get(), "/ietf-netconf-monitoring:netconf-state/" + path);
}

unsigned long number_at(const Tree &tree, const std::string &path) {
    const std::vector<std::string> found = state_values(tree, path);
    return found.size() == 1 ? std::stoul(found[0]) : ~0ul;
}

// --- get-schema ---

// A module as libyang prints it: a normal form, for comparing modules.
std::string module_text(const std::string &text) {
    ly_ctx *created = nullptr;
    const Context context(ly_ctx_new(YFW_MODELS_DIR, 0, &created) == LY_SUCCESS ? created : nullptr);
    ly_ctx_set_searchdir(created, YFW_STANDARD_MODELS_DIR);
    lys_module *module = nullptr;
    char *printed = nullptr;
    if (lys_parse_mem(created, text.c_str(), LYS_IN_YANG, &module) != LY_SUCCESS ||
        lys_print_mem(&printed, module, LYS_OUT_YANG, 0) != LY_SUCCESS)
        return "no module: " + text.substr(0, 200);
    return yang::LibyangText(printed).c_str();
}

TEST_F(NetconfMonitoring, GivesEveryModuleItsText) {
    for (const auto &[name, file] : std::vector<std::pair<std::string, std::string>>{
             {"openconfig-lldp", YFW_MODELS_DIR "/openconfig-lldp.yang"},
             {"openconfig-lldp-types", YFW_MODELS_DIR "/openconfig-lldp-types.yang"},
             {"ietf-netconf-monitoring", YFW_STANDARD_MODELS_DIR "/ietf-netconf-monitoring@2010-10-04.yang"}}) {
        const Xml reply = client.rpc(get_schema(identifier(name)));
        const Xml *data = reply.child("data");
        ASSERT_NE(data, nullptr) << reply.printed;
        EXPECT_EQ(data->ns, monitoring_namespace);
        EXPECT_EQ(module_text(data->text), module_text(read_file(file)));
    }
}

TEST_F(NetconfMonitoring, GivesAModuleByVersionAndFormat) {
    const std::string wanted = identifier("openconfig-lldp") + "<version>2026-11-22</version>";
    EXPECT_NE(client.rpc(get_schema(wanted)).child("data"), nullptr);
    EXPECT_NE(client.rpc(get_schema(wanted + "<format>yang</format>")).child("data"), nullptr);
}

TEST_F(NetconfMonitoring, GivesEveryModuleThatItAdvertisesOrLists) {
    std::vector<std::string> names = state_values(state(), "schemas/schema/identifier");
    for (const std::string &capability : client.capabilities())
        if (const size_t at = capability.find("?module="); at != std::string::npos)
            names.push_back(capability.substr(at + 8, capability.find('&') - at - 8));
    EXPECT_GT(names.size(), 6u);
    for (const std::string &name : names) {
        const Xml reply = client.rpc(get_schema(identifier(name)));
        const Xml *data = reply.child("data");
        ASSERT_NE(data, nullptr) << name << ": " << reply.printed;
        EXPECT_THAT(data->text, testing::HasSubstr("module " + name)) << name;
    }
}

// NAME@REVISION of the modules in the hello.
std::vector<std::string> advertised_modules(const NetconfClient &client) {
    const std::regex module("\\?module=([^&]+)&revision=([^&]+)");
    std::vector<std::string> found;
    for (const std::string &capability : client.capabilities())
        if (std::smatch match; std::regex_search(capability, match, module))
            found.push_back(match[1].str() + "@" + match[2].str());
    return found;
}

TEST_F(NetconfMonitoring, AdvertisesTheRevisionsThatItWasWrittenFor) {
    EXPECT_THAT(
        advertised_modules(client),
        testing::UnorderedElementsAre("ietf-netconf@2011-06-01", "ietf-netconf-monitoring@2010-10-04",
                                      "ietf-netconf-nmda@2019-01-07", "ietf-netconf-notifications@2012-02-06",
                                      "ietf-netconf-with-defaults@2011-06-01", "ietf-yang-library@2019-01-04",
                                      "ietf-datastores@2018-02-14", "notifications@2008-07-14",
                                      "nc-notifications@2008-07-14", "openconfig-lldp@2026-11-22",
                                      "openconfig-lldp-types@2024-11-21", "yfw-lldp-notifications@2026-11-22"));
}

// Advertised modules must parse with nothing but the files that the server gives for their imports.
TEST_F(NetconfMonitoring, GivesModulesThatYanglintParsesWithOneAnother) {
    const Tree tree = state();
    const TemporaryDirectory modules;
    for (const std::string &name : state_values(tree, "schemas/schema/identifier")) {
        const Xml reply = client.rpc(get_schema(identifier(name)));
        ASSERT_NE(reply.child("data"), nullptr) << name << ": " << reply.printed;
        for (const std::string &version :
             state_values(tree, "schemas/schema[identifier='" + name + "']/version"))
            modules.add(name + "@" + version + ".yang", reply.child("data")->text);
    }
    std::vector<std::string> words{find_program("yanglint", "libyang2-tools", "the test"), "-D", "-p",
                                   modules.path().string()};
    for (const std::string &module : advertised_modules(client))
        words.push_back((modules.path() / (module + ".yang")).string());
    EXPECT_GT(words.size(), 12u);
    const Finished finished = run(words);
    EXPECT_EQ(finished.status, 0) << finished.errors;
    EXPECT_THAT(finished.errors, Not(testing::ContainsRegex("libyang err|YANGLINT"))) << finished.errors;
}

struct SchemaCase {
    const char *name;
    std::string content;
    std::string tag;
};

class AnUnknownSchema : public NetconfMonitoring, public testing::WithParamInterface<SchemaCase> {};

TEST_P(AnUnknownSchema, IsRefused) {
    EXPECT_EQ(error_tag(client.rpc(get_schema(GetParam().content))), GetParam().tag);
}

INSTANTIATE_TEST_SUITE_P(
    With, AnUnknownSchema,
    testing::Values(
        SchemaCase{"NoIdentifier", "", "missing-element"},
        SchemaCase{"AnUnknownName", identifier("nonsense"), "invalid-value"},
        SchemaCase{"APath", identifier("../openconfig-lldp"), "invalid-value"},
        SchemaCase{"AnotherVersion", identifier("openconfig-lldp") + "<version>1999-01-01</version>",
                   "invalid-value"},
        SchemaCase{"AnotherFormat", identifier("openconfig-lldp") + "<format>yin</format>", "invalid-value"}),
    [](const auto &test) { return test.param.name; });

// --- state ---

TEST_F(NetconfMonitoring, TellsTheCapabilitiesOfItsHello) {
    const std::vector<std::string> told = state_values(state(), "capabilities/capability");
    EXPECT_THAT(told, UnorderedElementsAreArray(client.capabilities()));
}

TEST_F(NetconfMonitoring, TellsItsDatastoresAndTheirLocks) {
    NetconfClient holder(server().socket());
    expect_ok(holder.rpc(lock("candidate")));
    const Tree tree = state();
    EXPECT_THAT(state_values(tree, "datastores/datastore/name"),
                testing::UnorderedElementsAre("running", "candidate"));
    EXPECT_THAT(
        state_values(tree, "datastores/datastore[name='candidate']/locks/global-lock/locked-by-session"),
        ElementsAre(holder.session_id()));
    EXPECT_THAT(state_values(tree, "datastores/datastore[name='running']/locks//*"), testing::IsEmpty());
}

TEST_F(NetconfMonitoring, TellsWhichSessionsThereAre) {
    NetconfClient other(server().socket());
    const Tree tree = state();
    EXPECT_THAT(state_values(tree, "sessions/session/session-id"),
                testing::UnorderedElementsAre(client.session_id(), other.session_id()));
    const std::string own = "sessions/session[session-id='" + client.session_id() + "']/";
    EXPECT_EQ(state_values(tree, own + "username").size(), 1u);
    EXPECT_EQ(state_values(tree, own + "transport").size(), 1u);
    EXPECT_EQ(state_values(tree, own + "login-time").size(), 1u);
    expect_ok(other.rpc("<close-session/>"));
    EXPECT_TRUE(eventually([&] {
        return state_values(state(), "sessions/session/session-id") == std::vector{client.session_id()};
    }));
}

TEST_F(NetconfMonitoring, CountsWhatEachSessionAsks) {
    const std::string own = "sessions/session[session-id='" + client.session_id() + "']/";
    const Tree before = state();
    client.rpc("<nonsense/>");
    client.rpc("<nonsense/>");
    expect_ok(client.rpc("<discard-changes/>"));
    const Tree after = state();
    for (const std::string &place : {own, std::string("statistics/")}) {
        EXPECT_EQ(number_at(after, place + "in-rpcs") - number_at(before, place + "in-rpcs"), 4u) << place;
        EXPECT_EQ(number_at(after, place + "out-rpc-errors") - number_at(before, place + "out-rpc-errors"), 2u);
        EXPECT_EQ(number_at(after, place + "in-bad-rpcs"), number_at(before, place + "in-bad-rpcs"));
    }
}

// RFC 6022: errors of the message layer do not count as correct <rpc>s.
TEST_F(NetconfMonitoring, CountsMessagesThatAreNoCorrectRpc) {
    const std::string own = "sessions/session[session-id='" + client.session_id() + "']/";
    const Tree before = state();
    client.send("<rpc xmlns=\"" + base_namespace + "\"><get/></rpc>");
    EXPECT_EQ(error_tag(client.receive()), "missing-attribute");
    const Tree after = state();
    for (const std::string &place : {own, std::string("statistics/")})
        for (const char *counter : {"in-rpcs", "in-bad-rpcs", "out-rpc-errors"}) // the first by state()
            EXPECT_EQ(number_at(after, place + counter) - number_at(before, place + counter), 1u)
                << place << counter;
}

// RFC 6022: a session is counted when its hello is sent, a dropped one when it neither closed nor was killed.
TEST_F(NetconfMonitoring, CountsSessionsAndHowTheyEnd) {
    ASSERT_TRUE(eventually([&] { return state_values(state(), "sessions/session/session-id").size() <= 1; }));
    const Tree before = state();
    { const NetconfClient dropped(server().socket()); }
    NetconfClient closed(server().socket()), killed(server().socket());
    expect_ok(closed.rpc("<close-session/>"));
    expect_ok(client.rpc("<kill-session><session-id>" + killed.session_id() + "</session-id></kill-session>"));
    const auto more = [&](const std::string &counter) {
        return number_at(state(), "statistics/" + counter) - number_at(before, "statistics/" + counter);
    };
    EXPECT_TRUE(eventually([&] { return more("dropped-sessions") == 1; })) << more("dropped-sessions");
    EXPECT_EQ(more("in-sessions"), 3u);
    EXPECT_EQ(more("in-bad-hellos"), 0u);
}

TEST_F(NetconfMonitoring, CountsBadHellos) {
    const Tree before = state();
    for (const std::string &hello :
         {hello_message({"urn:example:other"}), hello_message({base_1_0}, "<session-id>4</session-id>")}) {
        Connection bad(server().socket());
        bad.send(with_end_of_message(hello));
        EXPECT_TRUE(bad.until_closed().has_value());
    }
    const unsigned long counted = number_at(before, "statistics/in-bad-hellos");
    EXPECT_TRUE(eventually([&] { return number_at(state(), "statistics/in-bad-hellos") == counted + 2; }));
}

TEST_F(NetconfMonitoring, TellsOfItsStateWhatASubtreeFilterSelects) {
    const std::vector<Xml> tops =
        answer("<netconf-state xmlns=\"" + monitoring_namespace + "\"><statistics/></netconf-state>");
    ASSERT_EQ(tops.size(), 1u);
    ASSERT_EQ(tops[0].children.size(), 1u);
    EXPECT_EQ(tops[0].children[0].name, "statistics");
}

TEST_F(NetconfMonitoring, TellsEverythingWithoutAFilter) {
    std::vector<std::string> names;
    const Xml reply = client.rpc("<get/>");
    for (const Xml &each : reply.child("data")->children)
        names.push_back(each.name);
    EXPECT_THAT(names, testing::UnorderedElementsAre("lldp", "netconf-state", "netconf", "yang-library",
                                                     "modules-state"));
}

TEST_F(NetconfMonitoring, TellsNoStateAsConfiguration) {
    const Xml reply = client.rpc(get_config("running"));
    const Xml *data = reply.child("data");
    ASSERT_NE(data, nullptr);
    ASSERT_EQ(data->children.size(), 1u);
    EXPECT_EQ(data->children[0].name, "lldp");
}

// --- library ---

TEST_F(NetconfMonitoring, HasALibraryThatIsValidAndNamesItsModules) {
    const Tree tree = library();
    const std::vector<std::string> implemented =
        values_at(tree.get(), "/ietf-yang-library:yang-library/module-set/module/name");
    for (const char *name :
         {"openconfig-lldp", "openconfig-lldp-types", "ietf-netconf", "ietf-netconf-monitoring",
          "ietf-yang-library", "notifications", "nc-notifications", "ietf-netconf-notifications",
          "ietf-netconf-with-defaults", "ietf-netconf-nmda", "yfw-lldp-notifications"})
        EXPECT_THAT(implemented, Contains(name));
    EXPECT_THAT(values_at(tree.get(),
                          "/ietf-yang-library:yang-library/module-set/module[name='openconfig-lldp']"
                          "/revision"),
                ElementsAre("2026-11-22"));
    EXPECT_THAT(values_at(tree.get(), "/ietf-yang-library:yang-library/datastore/name"),
                Contains("ietf-datastores:running"));
}

// Every implemented module is in the hello, except for the YANG library, which announces itself differently; no
// file name of the server's machine is revealed.
TEST_F(NetconfMonitoring, HasALibraryOfWhatItsHelloOffersAlone) {
    const Tree tree = library();
    std::vector<std::string> offered;
    for (const std::string &capability : client.capabilities())
        if (const size_t at = capability.find("?module="); at != std::string::npos)
            offered.push_back(capability.substr(at + 8, capability.find('&', at) - at - 8));
    EXPECT_THAT(values_at(tree.get(), "/ietf-yang-library:yang-library/module-set/module/name"),
                testing::UnorderedElementsAreArray(offered));
    EXPECT_THAT(
        values_at(tree.get(), "/ietf-yang-library:modules-state/module[conformance-type='implement']/name"),
        testing::UnorderedElementsAreArray(offered));
    for (const char *place : {"/ietf-yang-library:yang-library/module-set//location",
                              "/ietf-yang-library:modules-state/module/schema"})
        EXPECT_THAT(values_at(tree.get(), place), testing::IsEmpty()) << place;
}

TEST_F(NetconfMonitoring, HasALibraryOfTheContentThatItsHelloNames) {
    const Tree tree = library();
    const std::vector<std::string> id = values_at(tree.get(), "/ietf-yang-library:yang-library/content-id");
    ASSERT_EQ(id.size(), 1u);
    EXPECT_THAT(client.capabilities(),
                Contains("urn:ietf:params:netconf:capability:yang-library:1.1?revision=2019-01-04&content-id=" +
                         id[0]));
}

TEST_F(NetconfMonitoring, HasALibraryOfTheOlderFormThatIsValid) {
    const Tree tree = library();
    EXPECT_THAT(
        values_at(tree.get(), "/ietf-yang-library:modules-state/module[conformance-type='implement']/name"),
        Contains("openconfig-lldp"));
}

} // namespace
} // namespace yfw::test
