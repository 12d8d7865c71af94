#include "frontends/cli/output/coverage_print.h"

#include <algorithm>
#include <set>

#include <nlohmann/json.hpp>

namespace yfw::cli {
namespace {

using coverage::Coverage;
using coverage::EditCase;
using coverage::NativeUse;
using coverage::Row;
using Json = nlohmann::ordered_json;

const char *word_of(coverage::Service service) {
    switch (service) {
    case coverage::Service::read_and_written:
        return "read, written";
    case coverage::Service::read_only:
        return "read";
    case coverage::Service::written_only:
        return "written";
    default:
        return "not served";
    }
}

std::string summary_of(const Coverage &coverage) {
    const auto count = [&](auto &&matches) {
        return std::to_string(std::count_if(coverage.rows.begin(), coverage.rows.end(),
                                            [&](const Row &row) { return row.is_leaf() && matches(row); }));
    };
    const lys_module *module = coverage.rows.front().node->module;
    return std::string(module->name) +
           (module->revision != nullptr ? "@" + std::string(module->revision) : "") + ": " +
           count([](const Row &row) { return row.service != coverage::Service::not_served; }) + " of " +
           count([](const Row &) { return true; }) + " leaves served, " +
           count([](const Row &row) { return row.is_written(); }) + " of them written";
}

std::string text_of(const NativeUse &use) {
    std::string text = use.operation;
    text.resize(use.operation.empty() ? 0 : 7, ' ');
    return text + use.path + (use.value.has_value() ? " = " + *use.value : "") + "   (" + use.module + ")";
}

std::string case_of(const EditCase &edit) {
    return (edit.value.has_value() ? "set " + *edit.value : "delete") + ", " + (edit.is_on ? "on" : "off");
}

std::string limits_of(const Row &row) {
    std::string text;
    const auto add = [&](const std::string &part) { text += (text.empty() ? "" : "; ") + part; };
    if (!row.limits.range.empty())
        add("range " + row.limits.range);
    if (row.limits.least.has_value())
        add("length from " + std::to_string(*row.limits.least));
    for (const std::string &value : row.limits.refused)
        add("not " + value);
    if (row.ignores_default)
        add("no default");
    return text;
}

// The native nodes of the row, each once.
std::set<std::string> native_nodes(const Row &row) {
    std::set<std::string> nodes;
    for (const NativeUse &use : row.sources)
        nodes.insert(use.module + ":" + use.path);
    for (const EditCase &edit : row.edits)
        for (const NativeUse &use : edit.edits)
            nodes.insert(use.module + ":" + use.path);
    return nodes;
}

Json json_of(const NativeUse &use) {
    Json json;
    if (!use.operation.empty())
        json["operation"] = use.operation;
    json["path"] = use.path;
    json["module"] = use.module;
    if (use.value.has_value())
        json["value"] = *use.value;
    return json;
}

Json json_of(const std::vector<NativeUse> &uses) {
    Json all = Json::array();
    for (const NativeUse &use : uses)
        all.push_back(json_of(use));
    return all;
}

Json json_of(const EditCase &edit) {
    Json json;
    json["device"] = edit.is_on ? "on" : "off";
    json["operation"] = edit.value.has_value() ? "set" : "delete";
    if (edit.value.has_value())
        json["value"] = *edit.value;
    json["callbacks"] = edit.callbacks;
    json["native"] = json_of(edit.edits);
    if (!edit.refusal.empty())
        json["refusal"] = edit.refusal;
    return json;
}

Json json_of(const Row &row) {
    Json json;
    json["openconfig"] = row.path;
    json["kind"] = lys_nodetype2str(row.node->nodetype);
    json["config"] = (row.node->flags & LYS_CONFIG_W) != 0;
    json["read"] = row.is_read();
    json["written"] = row.is_written();
    if (!row.is_leaf())
        return json;
    json["sources"] = json_of(row.sources);
    json["request-callbacks"] = row.request_callbacks;
    json["answer-callbacks"] = row.answer_callbacks;
    json["operations"] = Json::array();
    for (const yang::Operation operation : row.operations)
        json["operations"].push_back(yang::to_string(operation));
    json["edits"] = Json::array();
    for (const EditCase &edit : row.edits)
        json["edits"].push_back(json_of(edit));
    if (!row.refusal.empty())
        json["refusal"] = row.refusal;
    if (const std::string limits = limits_of(row); !limits.empty())
        json["limits"] = limits;
    return json;
}

void print_lines(std::ostream &to, const char *label, const std::vector<std::string> &lines) {
    for (const std::string &line : lines)
        to << "  " << label << line << '\n';
}

void print_details(std::ostream &to, const Row &row) {
    to << row.path << "   " << word_of(row.service) << '\n';
    for (const NativeUse &use : row.sources)
        to << "  read   " << text_of(use) << '\n';
    print_lines(to, "by     ", row.request_callbacks);
    print_lines(to, "answer ", row.answer_callbacks);
    for (const EditCase &edit : row.edits) {
        to << "  " << case_of(edit) << (edit.refusal.empty() ? "" : ": refused: " + edit.refusal) << '\n';
        for (const NativeUse &use : edit.edits)
            to << "    " << text_of(use) << '\n';
        print_lines(to, "  by     ", edit.callbacks);
    }
    if (const std::string limits = limits_of(row); !limits.empty())
        to << "  limits " << limits << '\n';
}

} // namespace

void print_coverage(std::ostream &to, const Coverage &coverage) {
    to << summary_of(coverage) << "\n\n";
    size_t width = 0;
    for (const Row &row : coverage.rows)
        width = std::max(width, row.path.size());
    for (const Row &row : coverage.rows) {
        if (!row.is_leaf())
            continue;
        std::string line = row.path;
        line.resize(width + 2, ' ');
        const std::string limits = limits_of(row);
        to << line << word_of(row.service) << (limits.empty() ? "" : "; " + limits) << '\n';
    }
    for (const std::string &path : coverage.lacking)
        to << path << ": mapped, but not in this model\n";
}

void print_coverage_markdown(std::ostream &to, const Coverage &coverage) {
    to << summary_of(coverage) << ".\n\n| leaf | service | native nodes |\n|---|---|---|\n";
    for (const Row &row : coverage.rows) {
        if (!row.is_leaf())
            continue;
        const std::string limits = limits_of(row);
        to << "| `" << row.path << "` | " << word_of(row.service) << (limits.empty() ? "" : "; " + limits)
           << " |";
        const char *separator = " ";
        for (const std::string &node : native_nodes(row)) {
            to << separator << '`' << node << '`';
            separator = "<br>";
        }
        to << " |\n";
    }
}

void print_coverage_details(std::ostream &to, const Coverage &coverage) {
    for (const Row &row : coverage.rows)
        if (row.is_leaf())
            print_details(to, row);
}

void print_coverage_json(std::ostream &to, const Coverage &coverage) {
    Json rows = Json::array();
    for (const Row &row : coverage.rows)
        rows.push_back(json_of(row));
    to << Json{{"nodes", std::move(rows)}, {"lacking", coverage.lacking}}.dump(2) << '\n';
}

} // namespace yfw::cli
