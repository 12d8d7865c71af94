// What costly requests leave to other sessions.
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "netconf_server.h"
#include "support/child_process.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

constexpr int sessions = 16;

// As long as an expression may be, on a small device: about a second of processor time each.
std::string costly_expression() {
    std::string letters;
    for (int i = 0; i < 4000; i++) {
        const int code = 0x4e00 + i;
        letters += static_cast<char>(0xe0 | (code >> 12));
        letters += static_cast<char>(0x80 | ((code >> 6) & 0x3f));
        letters += static_cast<char>(0x80 | (code & 0x3f));
    }
    return "<get><filter type=\"xpath\" select=\"//*[translate(string(/),'" + letters + "','')='x']\"/></get>";
}

// So many sessions send the operation at once; another one then reads the configuration.
class OtherSessions {
public:
    OtherSessions(const std::filesystem::path &socket, const std::string &operation) : reader_(socket) {
        for (int i = 0; i < sessions; i++)
            busy_.push_back(std::make_unique<NetconfClient>(socket));
        for (const auto &client : busy_)
            client->send(rpc_message(operation));
    }
    // How many of them have been answered when the reader is.
    int answered_first(const std::string &operation) {
        EXPECT_NE(reader_.rpc(operation).child("data"), nullptr);
        int answered = 0;
        for (const auto &client : busy_)
            answered += client->connection().has_more(std::chrono::milliseconds(0)) ? 1 : 0;
        return answered;
    }

private:
    NetconfClient reader_;
    std::vector<std::unique_ptr<NetconfClient>> busy_;
};

const std::string one_interface =
    "<get><filter><lldp xmlns=\"http://openconfig.net/yang/lldp\"><interfaces><interface><name>eth1</name>"
    "<config/></interface></interfaces></lldp></filter></get>";

class CostlyExpressions : public NetconfTest {};

TEST_F(CostlyExpressions, HoldUpNoReadOfTheConfiguration) {
    OtherSessions others(server().socket(), costly_expression());
    EXPECT_LE(others.answered_first(get_config("running")), sessions / 4);
}

TEST_F(CostlyExpressions, HoldUpNoReadOfOneInterface) {
    OtherSessions others(server().socket(), costly_expression());
    EXPECT_LE(others.answered_first(one_interface), sessions / 4);
}

// The type of the filter may be written with character references.
TEST_F(CostlyExpressions, AreRecognizedHoweverTheyAreWritten) {
    std::string operation = costly_expression();
    operation.replace(operation.find("xpath"), 5, "&#120;path");
    OtherSessions others(server().socket(), operation);
    EXPECT_LE(others.answered_first(get_config("running")), sessions / 4);
}

class ReadsOfALargeDevice : public testing::Test {
protected:
    ReadsOfALargeDevice() {
        std::string neighbors;
        for (int i = 0; i < 10000; i++)
            neighbors += native_neighbor("eth1", "neighbor-" + std::to_string(i), "");
        directory_.add("config.xml", read_file(YFW_EXAMPLES_DIR "/r1/config.xml"));
        directory_.add("oper.xml", native_neighbors(neighbors));
        server_ = std::make_unique<NetconfServer>(std::vector<std::string>{}, Runs::here, directory_.path());
    }
    std::filesystem::path socket() const { return server_->socket(); }

private:
    TemporaryDirectory directory_;
    std::unique_ptr<NetconfServer> server_;
};

TEST_F(ReadsOfALargeDevice, HoldUpNoReadOfTheConfiguration) {
    OtherSessions others(socket(), "<get/>");
    EXPECT_LE(others.answered_first(get_config("running")), sessions / 4);
}

TEST_F(ReadsOfALargeDevice, HoldUpNoReadOfTheConfigurationWhenTheyHaveAFilter) {
    OtherSessions others(socket(),
                         "<get>" + subtree("<lldp xmlns=\"http://openconfig.net/yang/lldp\"/>") + "</get>");
    EXPECT_LE(others.answered_first(get_config("running")), sessions / 4);
}

// One interface may have all the neighbors there are.
TEST_F(ReadsOfALargeDevice, HoldUpNoReadOfTheConfigurationWhenTheyNameTheInterface) {
    OtherSessions others(
        socket(), "<get>" +
                      subtree("<lldp xmlns=\"http://openconfig.net/yang/lldp\"><interfaces><interface><name>"
                              "eth1</name></interface></interfaces></lldp>") +
                      "</get>");
    EXPECT_LE(others.answered_first(get_config("running")), sessions / 4);
}

TEST_F(ReadsOfALargeDevice, HoldUpNoReadOfTheConfigurationWhenTheyNameAllNeighbors) {
    std::string names;
    for (int i = 0; i < 2000; i++)
        names += "<neighbor><id>neighbor-" + std::to_string(i) + "#</id></neighbor>";
    OtherSessions others(
        socket(), "<get>" +
                      subtree("<lldp xmlns=\"http://openconfig.net/yang/lldp\"><interfaces><interface><name>"
                              "eth1</name><neighbors>" +
                              names + "</neighbors></interface></interfaces></lldp>") +
                      "</get>");
    EXPECT_LE(others.answered_first(get_config("running")), sessions / 4);
}

} // namespace
} // namespace yfw::test
