#include "frontends/cli/commands/coverage_command.h"

#include <iostream>
#include <memory>

#include "coverage/deviations.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/output/coverage_print.h"
#include "frontends/cli/output/print.h"

namespace yfw::cli {
namespace {

constexpr const char *coverage_examples = R"(
Prints for each leaf of the OpenConfig modules in use whether this device serves it: read, written, or not at all. It
is found out by asking the mapping; no device is read.

Examples:
  yfw coverage
  yfw coverage --models ~/openconfig/public --markdown
  yfw coverage --models ~/openconfig/public --deviations > yfw-openconfig-lldp-devs.yang
)";

struct CoverageOptions {
    bool json = false;
    bool markdown = false;
    bool deviations = false;
};

void run(const DeviceOptions &device, const CoverageOptions &options) {
    const ModelInUse model(device);
    const coverage::Coverage &found = model.coverage;
    if (options.deviations)
        std::cout << coverage::deviations_of(found);
    else if (options.json)
        print_coverage_json(std::cout, found);
    else if (options.markdown)
        print_coverage_markdown(std::cout, found);
    else
        print_coverage(std::cout, found);
    finish_output();
}

} // namespace

void add_coverage(CLI::App &app, DeviceOptions &device) {
    const auto options = std::make_shared<CoverageOptions>();
    CLI::App *command = app.add_subcommand("coverage", "Show what of the model this device serves");
    command->footer(coverage_examples);
    auto *json = command->add_flag("--json", options->json, "For tools, with all details");
    auto *markdown =
        command->add_flag("--markdown", options->markdown, "As a table in Markdown")->excludes(json);
    command
        ->add_flag("--deviations", options->deviations,
                   "Print a YANG module with what is not served or accepted")
        ->excludes(json)
        ->excludes(markdown);
    add_device_options(*command, device);
    command->callback([&device, options] { run(device, *options); });
}

} // namespace yfw::cli
