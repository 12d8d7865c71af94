#include "frontends/cli/commands/explain_command.h"

#include <iostream>
#include <memory>

#include "base/error.h"
#include "frontends/cli/commands/typed_edit.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/output/coverage_print.h"
#include "frontends/cli/output/explain_print.h"
#include "frontends/cli/output/print.h"
#include "yang/typed_path.h"

namespace yfw::cli {
namespace {

constexpr const char *explain_examples = R"(
Prints each OpenConfig node that the mapping visits, the callbacks that handle it, and the native paths that they read
or the native edits that they make, in order.

Examples:
  yfw explain get /lldp/state/counters
  yfw explain set /lldp/config/system-name core1
  yfw explain delete "/lldp/interfaces/interface[name='eth1']"
  yfw explain get //counters
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
    request.paths = yang::parse_typed_path(named.schemas.openconfig_root(), path).nodes;
    return named.device.explain(request);
}

host::Explanation explain_edit(NamedDevice &named, const Change &change) {
    yang::EditNode edit = edit_of(named, {change});
    yang::drop_deleted_content(edit);
    return named.device.explain(edit);
}

host::Explanation explain_words(NamedDevice &named, const std::vector<std::string> &words) {
    if (words.size() == 2 && words[0] == "get")
        return explain_get(named, words[1]);
    if (words.size() == 3 && words[0] == "set")
        return explain_edit(named, {words[1], words[2]});
    if (words.size() == 2 && words[0] == "delete")
        return explain_edit(named, {words[1], std::nullopt});
    throw Error(ErrorTag::invalid_value, "explain",
                "expected \"get PATH\", \"set PATH VALUE\", \"delete PATH\" or --all");
}

void explain_request(const DeviceOptions &device, const ExplainOptions &options) {
    NamedDevice named(device);
    const host::Explanation explanation = explain_words(named, options.words);
    const bool edit = options.words[0] != "get";
    if (options.json)
        print_explanation_json(std::cout, explanation, edit);
    else
        print_explanation(std::cout, explanation, edit);
}

// The whole model, with what is not served.
void explain_all(const DeviceOptions &device, bool json) {
    const ModelInUse model(device);
    if (json)
        print_coverage_json(std::cout, model.coverage);
    else
        print_coverage_details(std::cout, model.coverage);
}

void run(const DeviceOptions &device, const ExplainOptions &options) {
    if (options.all)
        explain_all(device, options.json);
    else
        explain_request(device, options);
    finish_output();
}

} // namespace

void add_explain(CLI::App &app, DeviceOptions &device) {
    const auto options = std::make_shared<ExplainOptions>();
    CLI::App *command = app.add_subcommand("explain", "Show what the mapping does with a request");
    command->footer(explain_examples);
    auto *request = command->add_option("REQUEST", options->words, "get PATH | set PATH VALUE | delete PATH");
    request->option_text(" ");
    command->add_flag("--all", options->all, "Print what each leaf of the model is mapped to, with every value")
        ->excludes(request);
    command->add_flag("--json", options->json, "For tools");
    add_device_options(*command, device);
    command->callback([&device, options] { run(device, *options); });
}

} // namespace yfw::cli
