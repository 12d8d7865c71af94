// A server with a model of which it does not serve everything.
#include <filesystem>

#include <gmock/gmock.h>

#include "netconf_server.h"
#include "support/files.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;

constexpr const char *lldp = "<lldp xmlns=\"http://openconfig.net/yang/lldp\">";
constexpr const char *module_name = "yfw-openconfig-lldp-devs";

class UnservedNodes : public testing::Test {
protected:
    UnservedNodes() {
        fs::copy_file(fs::path(YFW_MODELS_DIR) / "openconfig-lldp-types.yang",
                      models_.path() / "openconfig-lldp-types.yang");
        std::string text = read_file(fs::path(YFW_MODELS_DIR) / "openconfig-lldp.yang");
        text.insert(text.find("    leaf hello-timer {"), "    leaf age { type uint16; }\n");
        models_.add("openconfig-lldp.yang", text);
        server_.emplace(std::vector<std::string>{"--models", models_.path().string()}, Runs::as_program);
        server_->start();
        client_.emplace(server_->socket());
    }

    Xml refused(const std::string &operation) {
        return expect_error(client_->rpc(operation), "application", "unknown-element");
    }

    TemporaryDirectory models_;
    std::optional<NetconfServer> server_;
    std::optional<NetconfClient> client_;
};

TEST_F(UnservedNodes, AreAnnouncedAsDeviationsInTheCapabilities) {
    EXPECT_THAT(client_->capabilities(), Contains(EndsWith(std::string("&deviations=") + module_name)));
    EXPECT_THAT(client_->capabilities(), Contains(HasSubstr(std::string("?module=") + module_name)));
}

TEST_F(UnservedNodes, AreInTheYangLibraryAndInASchema) {
    const Xml library = client_->rpc(
        "<get><filter><yang-library xmlns=\"urn:ietf:params:xml:ns:yang:ietf-yang-library\"><module-set>"
        "<module><name>openconfig-lldp</name></module></module-set></yang-library></filter></get>");
    EXPECT_THAT(library.printed, HasSubstr(std::string("<deviation>") + module_name + "</deviation>"));
    const Xml schema =
        client_->rpc("<get-schema xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring\"><identifier>" +
                     std::string(module_name) + "</identifier></get-schema>");
    EXPECT_THAT(schema.printed, HasSubstr("config/oc-lldp:age\" {"));
}

TEST_F(UnservedNodes, AreRefusedInSubtreeFilters) {
    for (const char *container : {"config", "state"}) {
        const Xml error = refused("<get><filter>" + std::string(lldp) + "<" + container + "><age/></" +
                                  container + "></lldp></filter></get>");
        EXPECT_EQ(error_info(error, "bad-element"), "age");
        EXPECT_THAT(error.text_at("error-message"), HasSubstr("is not served by this device"));
    }
}

TEST_F(UnservedNodes, AreRefusedInXPathFilters) {
    refused("<get><filter type=\"xpath\" xmlns:l=\"http://openconfig.net/yang/lldp\""
            " select=\"/l:lldp/l:config/l:age\"/></get>");
}

// What such an expression selects is only known when it is evaluated, which it is on the data that is there.
TEST_F(UnservedNodes, AreSelectedByNoXPathFilterWithOtherStepsThanNames) {
    for (const char *select :
         {"//l:config/l:age", "/l:lldp//l:config/l:age", "/l:lldp/l:config/child::l:age",
          "/l:lldp/l:config/l:enabled/following-sibling::l:age", "/l:lldp/l:config/*[name()='age']",
          "/l:lldp/l:state/../l:config/l:age", "/l:lldp/l:config[l:age]"}) {
        const Xml reply =
            client_->rpc("<get><filter type=\"xpath\" xmlns:l=\"http://openconfig.net/yang/lldp\" select=\"" +
                         std::string(select) + "\"/></get>");
        EXPECT_EQ(reply.at("rpc-error"), nullptr) << select << reply.printed;
        ASSERT_NE(reply.at("data"), nullptr) << select << reply.printed;
        EXPECT_TRUE(reply.at("data")->children.empty()) << select << reply.printed;
    }
}

TEST_F(UnservedNodes, DoNotKeepAnXPathFilterFromSelectingWhatIsServed) {
    const Xml reply = client_->rpc("<get><filter type=\"xpath\" xmlns:l=\"http://openconfig.net/yang/lldp\""
                                   " select=\"//l:config/l:system-name | //l:config/l:age\"/></get>");
    EXPECT_EQ(reply.text_at("data/lldp/config/system-name"), "r1.example.net");
}

TEST_F(UnservedNodes, AreRefusedInEdits) {
    for (const char *operation : {"merge", "replace", "create", "delete", "remove"}) {
        const Xml error = refused("<edit-config><target><candidate/></target><config"
                                  " xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" +
                                  std::string(lldp) + "<config><age nc:operation=\"" + operation +
                                  "\">120</age></config></lldp></config></edit-config>");
        EXPECT_EQ(error_info(error, "bad-element"), "age") << operation;
    }
}

TEST_F(UnservedNodes, DoNotKeepWhatIsBesideThemFromBeingServed) {
    const Xml reply = client_->rpc("<get><filter>" + std::string(lldp) +
                                   "<config><system-name/></config></lldp></filter></get>");
    EXPECT_EQ(reply.text_at("data/lldp/config/system-name"), "r1.example.net");
}

TEST_F(UnservedNodes, AreNoneOfTheNodesThatNoModuleHas) {
    const Xml reply = client_->rpc("<get><filter>" + std::string(lldp) +
                                   "<config><no-such-leaf/></config></lldp></filter></get>");
    EXPECT_EQ(reply.at("rpc-error"), nullptr) << reply.printed;
}

} // namespace
} // namespace yfw::test
