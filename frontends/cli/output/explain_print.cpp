#include "frontends/cli/output/explain_print.h"

#include <nlohmann/json.hpp>

#include "base/printable.h"
#include "host/operation_name.h"

namespace yfw::cli {
namespace {

std::string read_text(const host::NativePath &path) {
    return "read   " + path.path + (path.value.has_value() ? " = " + *path.value : "");
}

const char *module_of(const std::string &ns) {
    const size_t colon = ns.rfind(':');
    return ns.c_str() + (colon == std::string::npos ? 0 : colon + 1);
}

nlohmann::ordered_json json_of(const host::NativePath &path, bool edit) {
    nlohmann::ordered_json json;
    json["path"] = path.path;
    json["module"] = module_of(path.ns);
    if (edit)
        json["operation"] = host::operation_name(path);
    if (path.value.has_value())
        json["value"] = *path.value;
    return json;
}

std::string joined(const std::vector<std::string> &words) {
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : " -> ") + word;
    return text;
}

std::string edit_text(const host::NativePath &path) {
    std::string text = host::operation_name(path);
    text.resize(7, ' ');
    return text + path.path + (path.value.has_value() ? " = " + *path.value : "");
}

} // namespace

void print_explanation(std::ostream &to, const host::Explanation &explanation, bool edit) {
    for (const host::ExplainedNode &node : explanation) {
        to << printable(node.openconfig) << '\n';
        if (!node.callbacks.empty())
            to << "  by   " << joined(node.callbacks) << '\n';
        for (const host::NativePath &path : node.paths)
            to << "  " << printable(edit ? edit_text(path) : read_text(path)) << "   (" << module_of(path.ns)
               << ")\n";
    }
}

void print_explanation_json(std::ostream &to, const host::Explanation &explanation, bool edit) {
    auto rows = nlohmann::ordered_json::array();
    for (const host::ExplainedNode &node : explanation) {
        nlohmann::ordered_json row;
        row["openconfig"] = node.openconfig;
        row["callbacks"] = node.callbacks;
        row["native"] = nlohmann::ordered_json::array();
        for (const host::NativePath &path : node.paths)
            row["native"].push_back(json_of(path, edit));
        rows.push_back(std::move(row));
    }
    to << rows.dump(2) << '\n';
}

} // namespace yfw::cli
