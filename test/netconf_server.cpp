#include "netconf_server.h"

#include <csignal>
#include <cstdlib>
#include <map>
#include <stdexcept>

#include "support/eventually.h"

namespace yfw::test {

namespace fs = std::filesystem;

NetconfServer::NetconfServer(std::vector<std::string> options, Runs runs, const fs::path &device)
    : served_((directory_.path() / "device").string()), options_(std::move(options)), runs_(runs) {
    fs::copy(device, served_);
    setenv("XDG_STATE_HOME", (directory_.path() / "state").c_str(), 1);
    start();
}

NetconfServer::NetconfServer(const LiveDevice &device, std::vector<std::string> options)
    : served_(device.name), options_(std::move(options)), runs_(Runs::as_program) {
    start();
}

void NetconfServer::start() {
    fs::permissions(directory_.path(), fs::perms(0755));
    if (runs_ == Runs::as_program) {
        start_program();
        return;
    }
    std::map<std::string, std::string> options;
    for (size_t i = 0; i + 1 < options_.size(); i += 2)
        options[options_[i]] = options_[i + 1];
    served_here_.emplace(served_, socket(), options);
    wait_for_hello();
}

void NetconfServer::wait_for_hello() {
    Connection connection(socket());
    connection.receive_to("</hello>");
    number_ = connection.server();
}

void NetconfServer::start_program() {
    std::vector<std::string> words{"serve", "--device", served_, "--socket", socket().string()};
    words.insert(words.end(), options_.begin(), options_.end());
    process_.emplace(words);
    const bool listens = eventually([this] {
        try {
            wait_for_hello();
            return true;
        } catch (const std::runtime_error &) {
            return !process_->runs();
        }
    });
    if (!listens || !process_->runs())
        throw std::runtime_error("no server: " + process_->errors());
}

void NetconfServer::kill_and_restart() {
    process().signal(SIGKILL);
    process().wait();
    start();
}

std::string NetconfServer::process_file(const std::string &name) const {
    return "/proc/" + std::to_string(number_) + "/" + name;
}

size_t NetconfServer::memory(const std::string &kind) const {
    const std::string text = read_file(process_file("status"));
    return std::stoul(text.substr(text.find(kind) + kind.size())) << 10;
}

size_t NetconfServer::peak_memory() const {
    return memory("VmHWM:");
}

size_t NetconfServer::private_memory() const {
    return memory("RssAnon:");
}

size_t NetconfServer::descriptors() const {
    const fs::directory_iterator all(process_file("fd"));
    return static_cast<size_t>(std::distance(begin(all), end(all)));
}

const ly_ctx *NetconfTest::modules() {
    static const Context loaded = openconfig_modules(); // shared by all tests of the process
    return loaded.get();
}

std::string NetconfTest::openconfig(const std::string &document) const {
    return as_text(parse_answer(modules(), Format::xml, document).get());
}

std::string NetconfTest::openconfig_of(const Xml &reply) const {
    const Xml *data = reply.child("data");
    if (data == nullptr)
        throw std::runtime_error("no <data>: " + reply.printed);
    std::string documents;
    for (const Xml &each : data->children)
        if (each.name != "nacm") // shown to those whom the rules permit it
            documents += openconfig(each.printed);
    return documents;
}

std::vector<std::string> NetconfTest::values(NetconfClient &client, const std::string &datastore,
                                             const std::string &xpath) const {
    const std::string text = everything(client, datastore);
    return values_at(parse_answer(modules(), Format::xml, text).get(), xpath);
}

std::string NetconfTest::name(NetconfClient &client, const std::string &datastore) const {
    const auto names = values(client, datastore, "/openconfig-lldp:lldp/config/system-name");
    return names.empty() ? "" : names.front();
}

std::string NetconfTest::everything(NetconfClient &client, const std::string &datastore) const {
    return openconfig_of(client.rpc(get_config(datastore)));
}

void expect_ok(const Xml &reply) {
    EXPECT_EQ(reply.children.size(), 1u) << reply.printed;
    EXPECT_NE(reply.child("ok"), nullptr) << reply.printed;
}

std::string error_tag(const Xml &reply) {
    const Xml *error = reply.child("rpc-error");
    const Xml *tag = error != nullptr ? error->child("error-tag") : nullptr;
    return tag != nullptr ? tag->text : "";
}

Xml expect_error(const Xml &reply, const std::string &type, const std::string &tag) {
    const Xml *error = reply.child("rpc-error");
    EXPECT_EQ(reply.children.size(), 1u) << reply.printed;
    EXPECT_NE(error, nullptr) << reply.printed;
    if (error == nullptr)
        return {};
    EXPECT_EQ(error->texts("error-type"), std::vector<std::string>{type}) << reply.printed;
    EXPECT_EQ(error->texts("error-tag"), std::vector<std::string>{tag}) << reply.printed;
    EXPECT_EQ(error->texts("error-severity"), std::vector<std::string>{"error"}) << reply.printed;
    return *error;
}

std::string error_info(const Xml &error, const std::string &name) {
    const Xml *info = error.child("error-info");
    const Xml *found = info != nullptr ? info->child(name) : nullptr;
    return found != nullptr ? found->text : "";
}

std::string lldp(const std::string &content) {
    return "<lldp xmlns=\"http://openconfig.net/yang/lldp\" xmlns:nc=\"" + base_namespace +
           "\" xmlns:types=\"http://openconfig.net/yang/lldp/types\">" + content + "</lldp>";
}

std::string name_edit(const std::string &name) {
    return lldp("<config><system-name>" + name + "</system-name></config>");
}

std::string leaf_edit(const std::string &name, const std::string &value, const std::string &operation) {
    return "<" + name + (operation.empty() ? "" : " nc:operation=\"" + operation + "\"") + ">" + value + "</" +
           name + ">";
}

std::string config_edit(const std::string &leaves, const std::string &operation) {
    return lldp(leaf_edit("config", leaves, operation));
}

std::string interface_edit(const std::string &name, const std::string &enabled, const std::string &operation) {
    const std::string settings = leaf_edit("name", name) + leaf_edit("enabled", enabled);
    return lldp("<interfaces>" +
                leaf_edit("interface",
                          leaf_edit("name", name) + (enabled.empty() ? "" : leaf_edit("config", settings)),
                          operation) +
                "</interfaces>");
}

std::string get_config(const std::string &datastore, const std::string &filter) {
    return "<get-config><source><" + datastore + "/></source>" + filter + "</get-config>";
}

std::string edit_config(const std::string &datastore, const std::string &config, const std::string &options) {
    return "<edit-config><target><" + datastore + "/></target>" + options + "<config>" + config +
           "</config></edit-config>";
}

std::string lock(const std::string &datastore) {
    return "<lock><target><" + datastore + "/></target></lock>";
}

std::string unlock(const std::string &datastore) {
    return "<unlock><target><" + datastore + "/></target></unlock>";
}

std::string subtree(const std::string &content) {
    return "<filter type=\"subtree\">" + content + "</filter>";
}

std::string nmda_operation(const std::string &operation, const std::string &content) {
    return "<" + operation + " xmlns=\"" + nmda_namespace + "\" xmlns:ds=\"" + datastores_namespace +
           "\" xmlns:oc=\"http://openconfig.net/yang/lldp\">" + content + "</" + operation + ">";
}

std::string get_data(const std::string &datastore, const std::string &more) {
    return nmda_operation("get-data", "<datastore>ds:" + datastore + "</datastore>" + more);
}

std::string edit_data(const std::string &datastore, const std::string &config, const std::string &options) {
    return nmda_operation("edit-data", "<datastore>ds:" + datastore + "</datastore>" + options + "<config>" +
                                           config + "</config>");
}

} // namespace yfw::test
