#include "frontends/cli/commands/explain_command.h"

#include <algorithm>
#include <iostream>
#include <memory>

#include "base/error.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/output/explain_print.h"
#include "frontends/cli/output/print.h"

namespace yfw::cli {
namespace {

constexpr const char *explain_examples = R"(
Prints each OpenConfig node that the mapping visits, the callbacks that handle it, and the native paths that they read
or the native edits that they make, in order.

Examples:
  yfw explain get /lldp/state/counters
  yfw explain set /lldp/config/system-name core1
  yfw explain delete "/lldp/interfaces/interface[name='eth1']"
  yfw explain get /lldp --json
  yfw explain --all
)";

struct ExplainOptions {
    std::vector<std::string> words;
    bool all = false;
    bool json = false;
};

host::Explanation explain_get(NamedDevice &named, const std::string &path) {
    host::ReadRequest request;
    request.paths.push_back(yang::parse_path(named.schemas.openconfig_root(), path));
    return named.device.explain(request);
}

host::Explanation explain_edit(NamedDevice &named, const yang::Path &path,
                               const std::optional<std::string> &value) {
    yang::EditNode edit;
    edit.node = named.schemas.openconfig_root();
    yang::add_edit(edit, path, value,
                   value.has_value() ? yang::Operation::merge : yang::Operation::delete_existing);
    yang::drop_deleted_content(edit);
    return named.device.explain(edit);
}

// ---- the whole model ------------------------------------------------------------------------------------

void collect_leaves(const lysc_node *node, std::vector<const lysc_node *> &leaves) {
    if ((node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
        leaves.push_back(node);
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        collect_leaves(child, leaves);
}

// A value that the leaf's type allows.
std::string sample_value(const lysc_node *leaf) {
    const lysc_type *type = reinterpret_cast<const lysc_node_leaf *>(leaf)->type;
    switch (type->basetype) {
    case LY_TYPE_BOOL:
        return "true";
    case LY_TYPE_IDENT:
        return "SYSTEM_NAME";
    case LY_TYPE_ENUM:
        return reinterpret_cast<const lysc_type_enum *>(type)->enums[0].name;
    case LY_TYPE_UINT64:
        return "30";
    default:
        return "example";
    }
}

yang::Path sample_path(const lysc_node *leaf) {
    yang::Path path;
    for (const lysc_node *node = leaf; node != nullptr; node = node->parent) {
        yang::PathStep step{node, {}};
        for (const lysc_node *key = node->nodetype == LYS_LIST ? lysc_node_child(node) : nullptr;
             key != nullptr && lysc_is_key(key); key = key->next)
            step.predicates.push_back({key, "example"});
        path.insert(path.begin(), std::move(step));
    }
    return path;
}

void append_new(std::vector<std::string> &to, const std::string &text) {
    if (std::find(to.begin(), to.end(), text) == to.end())
        to.push_back(text);
}

Correspondence correspondence_of(NamedDevice &named, const lysc_node *leaf) {
    Correspondence row;
    row.openconfig = yang::schema_path(leaf);
    for (const host::ExplainedNode &node : explain_get(named, row.openconfig))
        for (const host::NativePath &path : node.paths)
            if (node.openconfig == row.openconfig)
                append_new(row.sources, path.path);
    row.writable = (leaf->flags & LYS_CONFIG_W) != 0;
    if (!row.writable)
        return row;
    const std::string value = sample_value(leaf);
    for (const host::ExplainedNode &node : explain_edit(named, sample_path(leaf), value))
        for (const host::NativePath &path : node.paths)
            if (node.openconfig == row.openconfig)
                append_new(row.targets, edit_text(path));
    return row;
}

// A list key that no callback reads has the sources of the leaf of its name below "state".
std::vector<std::string> sources_of_twin(const std::vector<Correspondence> &rows, const std::string &key) {
    const size_t name = key.rfind('/') + 1;
    const std::string twin = key.substr(0, name) + "state/" + key.substr(name);
    for (const Correspondence &row : rows)
        if (row.openconfig == twin)
            return row.sources;
    return {};
}

std::vector<Correspondence> whole_correspondence(NamedDevice &named) {
    std::vector<const lysc_node *> leaves;
    collect_leaves(named.schemas.openconfig_root(), leaves);
    std::vector<Correspondence> rows;
    for (const lysc_node *leaf : leaves)
        rows.push_back(correspondence_of(named, leaf));
    for (size_t i = 0; i < rows.size(); i++)
        if (lysc_is_key(leaves[i]) && rows[i].sources.empty())
            rows[i].sources = sources_of_twin(rows, rows[i].openconfig);
    return rows;
}

// ---- the command ----------------------------------------------------------------------------------------

void explain_all(NamedDevice &named, bool json) {
    const std::vector<Correspondence> rows = whole_correspondence(named);
    if (json)
        print_correspondence_json(std::cout, rows);
    else
        print_correspondence(std::cout, rows);
}

host::Explanation explain_words(NamedDevice &named, const std::vector<std::string> &words) {
    const lysc_node *root = named.schemas.openconfig_root();
    if (words.size() == 2 && words[0] == "get")
        return explain_get(named, words[1]);
    if (words.size() == 3 && words[0] == "set")
        return explain_edit(named, yang::parse_path(root, words[1]), words[2]);
    if (words.size() == 2 && words[0] == "delete")
        return explain_edit(named, yang::parse_path(root, words[1]), std::nullopt);
    throw Error(ErrorTag::invalid_value, "explain",
                "expected \"get PATH\", \"set PATH VALUE\", \"delete PATH\" or --all");
}

void run(const DeviceOptions &device, const ExplainOptions &options) {
    NamedDevice named(device);
    if (options.all) {
        explain_all(named, options.json);
    } else {
        const host::Explanation explanation = explain_words(named, options.words);
        const bool edit = options.words[0] != "get";
        if (options.json)
            print_explanation_json(std::cout, explanation, edit);
        else
            print_explanation(std::cout, explanation, edit);
    }
    finish_output();
}

} // namespace

void add_explain(CLI::App &app, DeviceOptions &device) {
    const auto options = std::make_shared<ExplainOptions>();
    CLI::App *command = app.add_subcommand("explain", "Show what the mapping does with a request");
    command->footer(explain_examples);
    command->add_option("REQUEST", options->words, "get PATH | set PATH VALUE | delete PATH")->option_text(" ");
    command->add_flag("--all", options->all, "Print what each leaf of the model is mapped to");
    command->add_flag("--json", options->json, "For tools");
    add_device_options(*command, device);
    command->callback([&device, options] { run(device, *options); });
}

} // namespace yfw::cli
