#include "frontends/netconf/read_operations.h"

#include <cstdlib>
#include <functional>
#include <memory>

#include "frontends/netconf/filter.h"
#include "frontends/netconf/rpc_error.h"

namespace yfw::netconf {
namespace {

std::string print_data(const lyd_node *data) {
    if (data == nullptr)
        return "";
    char *text = nullptr;
    lyd_print_mem(&text, data, LYD_XML, LYD_PRINT_SHRINK | LYD_PRINT_WITHSIBLINGS);
    const std::unique_ptr<char, decltype(&std::free)> printed(text, std::free);
    return printed != nullptr ? printed.get() : "";
}

enum class FilterType { none, subtree, xpath };

FilterType type_of(const std::optional<Element> &filter) {
    if (!filter.has_value())
        return FilterType::none;
    const std::string type = filter->attribute("type").value_or("subtree");
    if (type == "subtree")
        return FilterType::subtree;
    if (type != "xpath")
        throw RpcError("protocol", "bad-attribute", "a filter is of type subtree or xpath")
            .with_info("<bad-attribute>type</bad-attribute><bad-element>filter</bad-element>");
    if (!filter->attribute("select").has_value())
        throw RpcError("protocol", "missing-attribute", "an xpath filter has a select")
            .with_info("<bad-attribute>select</bad-attribute><bad-element>filter</bad-element>");
    return FilterType::xpath;
}

using Read = std::function<host::Answer(const host::ReadRequest &)>;

// Reads the OpenConfig tree, no more of it than a subtree filter selects.
std::string read_openconfig(const Server &server, host::Content content, const std::optional<Element> &filter,
                            const Read &read) {
    host::ReadRequest request;
    request.content = content;
    const lysc_node *root = server.schemas.openconfig_root();
    request.selection = host::Selection{root, std::nullopt, {}, false};
    const FilterType type = type_of(filter);
    if (type == FilterType::subtree) {
        request.selection = subtree_selection(*filter, root);
        if (!request.selection.has_value())
            return "";
    }
    host::Answer answer = read(request);
    if (type == FilterType::xpath)
        answer.data = xpath_filtered(answer.data.get(), *filter);
    return print_data(answer.data.get());
}

std::string print_datastore(const Server &server, const char *name, Datastore datastore) {
    std::string xml = "<datastore><name>" + std::string(name) + "</name>";
    if (const auto lock = server.datastores.lock_of(datastore))
        xml += "<locks><global-lock><locked-by-session>" + std::to_string(lock->session) +
               "</locked-by-session><locked-time>" + lock->time + "</locked-time></global-lock></locks>";
    return xml + "</datastore>";
}

std::string print_schemas(const ProtocolModules &modules) {
    std::string xml = "<schemas>";
    for (const ModuleName &module : modules.modules())
        xml += "<schema><identifier>" + module.name + "</identifier><version>" + module.revision +
               "</version><format>yang</format><namespace>" + escaped(module.ns) +
               "</namespace><location>NETCONF</location></schema>";
    return xml + "</schemas>";
}

std::string print_monitoring(const Server &server) {
    std::string xml =
        "<netconf-state xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring\"><capabilities>";
    for (const std::string &capability : capabilities(server.modules))
        xml += "<capability>" + escaped(capability) + "</capability>";
    return xml + "</capabilities><datastores>" + print_datastore(server, "running", Datastore::running) +
           print_datastore(server, "candidate", Datastore::candidate) + "</datastores>" +
           print_schemas(server.modules) + server.monitoring.print() + "</netconf-state>";
}

std::string subtree_filtered(const Element &filter, const std::string &text) {
    const Document document(text);
    std::string xml;
    for (const Element &wanted : filter.children())
        if (wanted.name() == document.root().name() && wanted.takes_namespace(document.root().ns()))
            xml += filtered(wanted, document.root());
    return xml;
}

// The server's own data, which no mapping is asked for.
std::string read_own(const Server &server, const std::optional<Element> &filter) {
    std::vector<std::string> all = server.modules.library();
    all.push_back(print_monitoring(server));
    const FilterType type = type_of(filter);
    std::string xml;
    for (const std::string &text : all) {
        if (type == FilterType::none)
            xml += text;
        else if (type == FilterType::subtree)
            xml += subtree_filtered(*filter, text);
        else
            xml += print_data(xpath_filtered(server.modules.parse(text).get(), *filter).get());
    }
    return xml;
}

} // namespace

std::string read_everything(const Server &server, const std::optional<Element> &filter) {
    const std::string device =
        read_openconfig(server, host::Content::all, filter,
                        [&](const host::ReadRequest &request) { return server.engine.read(request); });
    return device + read_own(server, filter);
}

std::string read_configuration(const Server &server, Datastore datastore,
                               const std::optional<Element> &filter) {
    return read_openconfig(server, host::Content::config, filter, [&](const host::ReadRequest &request) {
        return server.engine.read(request, server.datastores.read(datastore));
    });
}

} // namespace yfw::netconf
