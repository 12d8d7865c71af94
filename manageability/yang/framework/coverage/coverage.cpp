#include "coverage/coverage.h"

#include <algorithm>
#include <map>

#include "coverage/edit_probe.h"
#include "coverage/samples.h"
#include "coverage/tried_device.h"

namespace yfw::coverage {
namespace {

template <class T> void append_new(std::vector<T> &to, const T &one) {
    if (std::find(to.begin(), to.end(), one) == to.end())
        to.push_back(one);
}

void collect(const lysc_node *node, std::vector<Row> &to) {
    Row &row = to.emplace_back();
    row.node = node;
    row.path = yang::schema_path(node);
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        collect(child, to);
}

void read_request_side(TriedDevice &tried, Row &row) {
    host::ReadRequest request;
    request.paths.push_back(yang::parse_path(tried.schemas.openconfig_root(), row.path));
    for (const host::ExplainedNode &node : tried.device.explain(request)) {
        if (node.openconfig != row.path)
            continue;
        for (const std::string &callback : node.callbacks)
            append_new(row.request_callbacks, callback);
        for (const host::NativePath &path : node.paths)
            append_new(row.sources, tried.use_of(path, false));
    }
}

// A key that no callback asks for is part of the native list that the others ask for.
void take_sources_of_twin(std::vector<Row> &rows, Row &row) {
    const std::string twin =
        row.path.substr(0, row.path.rfind('/')) + "/state" + row.path.substr(row.path.rfind('/'));
    for (const Row &other : rows)
        if (other.path == twin)
            row.sources = other.sources;
}

Service service_of(bool is_read, bool is_written) {
    if (is_read)
        return is_written ? Service::read_and_written : Service::read_only;
    return is_written ? Service::written_only : Service::not_served;
}

// Last row first: what is below a node comes after it.
void serve_inner_nodes(std::vector<Row> &rows) {
    std::map<const lysc_node *, std::pair<bool, bool>> below;
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        if (!row->is_leaf() && lysc_node_child(row->node) == nullptr) {
            row->service = Service::read_only; // it is empty, as it is served
            continue;
        }
        if (!row->is_leaf())
            row->service = service_of(below[row->node].first, below[row->node].second);
        if (row->node->parent == nullptr)
            continue;
        auto &[is_read, is_written] = below[row->node->parent];
        is_read = is_read || row->is_read();
        is_written = is_written || row->is_written();
    }
}

} // namespace

const Row *Coverage::find(const std::string &path) const {
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const Row &row) { return row.path == path; });
    return found != rows.end() ? &*found : nullptr;
}

Coverage cover(const yang::Schemas &schemas, const host::MappingDescription &mapping) {
    TriedDevice tried(schemas, mapping);
    Coverage coverage;
    collect(schemas.openconfig_root(), coverage.rows);
    std::map<std::string, std::vector<std::string>> written;
    for (const host::WrittenNode &node : tried.device.explain_answer(tried.whole))
        if (node.is_known)
            append_new(written[node.openconfig], node.callback);
        else
            append_new(coverage.lacking, node.openconfig);
    EditProbe probe(tried);
    for (Row &row : coverage.rows) {
        if (!row.is_leaf())
            continue;
        const auto answered = written.find(row.path);
        if (answered != written.end()) {
            row.answer_callbacks = answered->second;
            read_request_side(tried, row);
        }
        const bool is_written = (row.node->flags & LYS_CONFIG_W) != 0 && probe.try_leaf(row);
        row.service = service_of(answered != written.end(), is_written);
        if (lysc_is_key(row.node) && row.sources.empty())
            take_sources_of_twin(coverage.rows, row);
    }
    for (Row &row : coverage.rows)
        if (row.is_read() && lysc_is_key(row.node) && row.sources.empty())
            take_sources_of_twin(coverage.rows, row);
    serve_inner_nodes(coverage.rows);
    return coverage;
}

} // namespace yfw::coverage
