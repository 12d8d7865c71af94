// The fuzz target for filters, on everything that a recorded device answers. An input consists of
//
//   byte 0    the sum of these flags; the characters '0' to '?' are all combinations:
//               1  a subtree filter; otherwise an XPath filter
//               2  for an event; otherwise for a request
//               4, 8  the depth, in levels; none: unlimited
//   the rest  the content of <filter>, or the expression, with the prefixes l and t for OpenConfig's modules
#include <optional>
#include <string>
#include <vector>

#include "base/error.h"
#include "frontends/netconf/filters/defaults.h"
#include "frontends/netconf/filters/filter.h"
#include "frontends/netconf/filters/xpath_narrowing.h"
#include "frontends/netconf/messages/rpc_error.h"
#include "fuzz/support/fuzz_target.h"
#include "fuzz/support/fuzzed_device.h"
#include "yang/comparison.h"
#include "yang/configuration_text.h"
#include "yang/tree_text.h"

namespace yfw::netconf::fuzz {
namespace {

using yang::DataTree;
using yfw::fuzz::FuzzedDevice;
using yfw::fuzz::require;
using yfw::fuzz::shipped_schemas;

struct Request {
    std::string filter;
    XPathUse use;
    uint32_t depth;
};

DataTree copy_of(const DataTree &data) {
    return yang::copy_configuration(data.get());
}

std::string text_of(const lyd_node *data) {
    return yang::printed(data, LYD_XML, LYD_PRINT_WITHSIBLINGS).c_str();
}

bool is_part(const lyd_node *part, const lyd_node *whole) {
    for (; part != nullptr; part = part->next) {
        const lyd_node *same = whole != nullptr ? yang::counterpart(part, whole) : nullptr;
        if (same == nullptr)
            return false;
        const bool is_term = (part->schema->nodetype & LYD_NODE_TERM) != 0;
        if (is_term ? lyd_compare_single(part, same, 0) != LY_SUCCESS
                    : !is_part(lyd_child(part), lyd_child(same)))
            return false;
    }
    return true;
}

void require_part(const DataTree &part, const DataTree &whole, const std::string &filter) {
    if (!is_part(part.get(), whole.get()))
        require(false, "A filter selects what is not there.", filter + "\n" + text_of(part.get()));
}

void require_same(const DataTree &one, const DataTree &other, const char *what, const std::string &filter) {
    if (!yang::is_same(one.get(), other.get()))
        require(false, what, filter + "\n" + text_of(one.get()) + "\n" + text_of(other.get()));
}

// ---- XPath ---------------------------------------------------------------------------------------------

const Prefixes &prefixes() {
    static const Prefixes bound{{"l", "http://openconfig.net/yang/lldp"},
                                {"t", "http://openconfig.net/yang/lldp/types"}};
    return bound;
}

// Nothing when it is refused.
std::optional<DataTree> filtered(const DataTree &data, const Request &request) {
    static const Document none("<filter xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"/>");
    try {
        return xpath_filtered(copy_of(data), {FilterType::xpath, none.root(), request.filter, prefixes()},
                              request.depth, request.use);
    } catch (const RpcError &error) {
        require(!error.tag.empty() && *error.what() != '\0', "A filter is refused without a reason.",
                request.filter);
        return std::nullopt;
    }
}

// What a server reads for the filter. Nothing when it reads everything.
std::optional<DataTree> narrowed(const DataTree &whole, const Request &request) {
    const auto paths = xpath_narrowing(request.filter, prefixes(), shipped_schemas().openconfig_root());
    if (!paths.has_value())
        return std::nullopt;
    if (paths->empty())
        return DataTree();
    DataTree data = copy_of(whole);
    keep_selected(data, host::merge_paths(*paths));
    return data;
}

void check_xpath(const DataTree &whole, const Request &request) {
    const std::optional<DataTree> data = filtered(whole, request);
    const std::optional<DataTree> less = narrowed(whole, request);
    if (!data.has_value())
        return;
    require_part(*data, whole, request.filter);
    const std::optional<DataTree> data_of_less = less.has_value() ? filtered(*less, request) : std::nullopt;
    if (data_of_less.has_value())
        require_same(*data, *data_of_less, "A filter selects something else of what a server reads for it.",
                     request.filter);
}

// ---- subtree -------------------------------------------------------------------------------------------

void check_prints(DataTree data, const host::Selection &selection, uint32_t depth) {
    add_defaults(data.get(), selection);
    cut_selected(data.get(), selection, depth);
    for (const WithDefaults mode : {WithDefaults::as_set, WithDefaults::report_all_tagged, WithDefaults::trim})
        print_cut_data(data.get(), mode, [](std::string_view) {});
}

// What a server reads for the filter. Nothing when the mapping refuses a key.
std::optional<DataTree> read_for(FuzzedDevice &device, const host::Selection &selection) {
    const bool is_filtered = has_to_be_filtered(selection);
    try {
        DataTree data =
            device.device().read({host::Content::all, {}, is_filtered ? broadened(selection) : selection}).data;
        if (is_filtered)
            keep_selected(data, selection);
        return data;
    } catch (const Error &error) {
        require(error.tag() == ErrorTag::invalid_value, "A filter is refused for another reason than a key.",
                error.what());
        return std::nullopt;
    }
}

void check_subtree(FuzzedDevice &device, const DataTree &whole, const Request &request) {
    try {
        const Document document("<filter xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" + request.filter +
                                "</filter>");
        const auto selection = subtree_selection(document.root(), shipped_schemas().openconfig_root());
        if (!selection.has_value())
            return;
        DataTree data = copy_of(whole);
        keep_selected(data, *selection);
        require_part(data, whole, request.filter);
        const std::optional<DataTree> data_of_less = read_for(device, *selection);
        if (data_of_less.has_value())
            require_same(data, *data_of_less, "A filter selects something else of what a server reads for it.",
                         request.filter);
        DataTree again = copy_of(data);
        keep_selected(again, *selection);
        require_same(data, again, "A filter selects less of what it has selected.", request.filter);
        check_prints(std::move(data), *selection, request.depth);
    } catch (const RpcError &error) {
        require(!error.tag.empty() && *error.what() != '\0', "A filter is refused without a reason.",
                request.filter);
    }
}

} // namespace
} // namespace yfw::netconf::fuzz

void yfw::fuzz::run(std::string_view bytes) {
    using namespace netconf;
    static FuzzedDevice device;
    static const yang::DataTree whole = device.read(host::Content::all);
    Input input(bytes);
    const uint8_t flags = input.byte();
    const uint32_t depth = (flags & 0xcU) == 0 ? unlimited_depth : (flags & 0xcU) >> 2U;
    const netconf::fuzz::Request request{std::string(input.rest()),
                                         (flags & 2U) != 0 ? XPathUse::event : XPathUse::request, depth};
    if ((flags & 1U) != 0)
        netconf::fuzz::check_subtree(device, whole, request);
    else
        netconf::fuzz::check_xpath(whole, request);
}
