#include "frontends/cli/program.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "base/error.h"
#include "base/say.h"
#include "frontends/cli/commands/commands.h"
#include "frontends/cli/commands/complete_command.h"
#include "frontends/cli/commands/coverage_command.h"
#include "frontends/cli/commands/edit_command.h"
#include "frontends/cli/commands/explain_command.h"
#include "frontends/cli/commands/history_command.h"
#include "frontends/cli/commands/lab_command.h"
#include "frontends/cli/commands/manual_command.h"
#include "frontends/cli/commands/neighbors_command.h"
#include "frontends/cli/commands/serve_command.h"
#include "frontends/cli/commands/status_command.h"
#include "frontends/cli/commands/topology_command.h"
#include "frontends/cli/commands/watch_command.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/typed_words.h"
#include "frontends/cli/options/unknown_word.h"
#include "frontends/cli/output/print.h"
#include "yang/yang_text.h"

namespace yfw::cli {
namespace {

constexpr int exit_failed = 1;  // the mapping, the device or the output failed
constexpr int exit_refused = 2; // the request, a file or its data is wrong

// Errors may quote what was given, however long that is.
constexpr size_t longest_path = 400;
constexpr size_t longest_message = 800;

constexpr const char *get_examples = R"(
Examples:
  yfw get /lldp
  yfw get --state "/lldp/interfaces/interface[name='eth1']/neighbors"
  yfw get /lldp/interfaces/interface[name=eth1]/config
  yfw get "//neighbor/state/system-name" "/lldp/*/enabled"
  yfw get --config /lldp/config /lldp/interfaces --format xml
  yfw get --applied /lldp/config --device lldpd:
  yfw get /lldp/state --device examples/r2
  yfw get /lldp --native config.xml --native oper.json
)";

void add_get(CLI::App &app, DeviceOptions &device, GetOptions &options) {
    CLI::App *get = app.add_subcommand("get", "Read OpenConfig data from a device");
    get->footer(get_examples);
    get->add_option(
           "PATH", options.paths,
           "What to read, with optional list keys: /lldp/interfaces/interface[name=eth1]; * is any node or "
           "key, // and ... are any number of nodes")
        ->required()
        ->option_text("...");
    auto *config = get->add_flag_callback(
        "--config", [&options] { options.content = host::Content::config; }, "Configuration only");
    get->add_flag_callback(
           "--state", [&options] { options.content = host::Content::state; }, "Operational state only")
        ->excludes(config);
    get->add_flag("--applied", options.applied,
                  "The configuration in force on the device, in place of the one that was written");
    // CLI11's own map of names to values would also accept the values' numbers.
    get->add_option_function<std::string>(
           "--format",
           [&options](const std::string &name) { options.format = name == "xml" ? Format::xml : Format::json; },
           "json (the default) or xml")
        ->transform(CLI::IsMember({"json", "xml"}, CLI::ignore_case))
        ->option_text("FORMAT");
    add_device_options(*get, device);
    get->callback([&] { run_get(device, options); });
}

// An edit that the mapping refuses is as wrong as one that the host refuses. A read that it fails is not,
// unless that is for the keys in the request's path: none, or one of them twice.
bool is_request_wrong(const Error &error, bool edits) {
    if (error.is_by_device()) // of a recorded device, it is a file that was given
        return error.tag() == ErrorTag::invalid_value;
    if (error.status() == 0 || error.tag() == ErrorTag::missing_element)
        return true;
    return edits && error.tag() != ErrorTag::operation_failed && error.tag() != ErrorTag::resource_denied;
}

// Prints one line with the place and what was expected; for an edit, also the NETCONF error tag (RFC 6241
// appendix A).
int report(const Error &error, bool edits, bool trace) {
    std::ostringstream line;
    if (!error.path().empty())
        line << yang::shortened(error.path(), longest_path) << ": ";
    line << yang::shortened(error.what(), longest_message);
    if (edits)
        line << " [" << to_string(error.tag()) << ']';
    if (trace && error.status() != 0)
        line << " (status 0x" << std::hex << error.status() << ')';
    say(line.str());
    return is_request_wrong(error, edits) ? exit_refused : exit_failed;
}

bool edits(const CLI::App &app) {
    const std::set<std::string> commands{"set", "delete", "edit", "commit", "rollback"};
    const std::vector<CLI::App *> given = app.get_subcommands();
    return std::any_of(given.begin(), given.end(),
                       [&](const CLI::App *command) { return commands.contains(command->get_name()); });
}

// Commands that are added together.
struct Commands {
    std::vector<std::string_view> names;
    std::function<void()> add;
};

// Adds the commands around the one that the arguments begin with: to describe them all takes longer than to run
// most of them. If it is none of these, adds them all, for those who ask for help, mistype one, or complete
// one.
void add_needed(const std::vector<Commands> &all, int argc, const char *const *argv) {
    const std::string_view given = argc > 1 ? argv[1] : "";
    for (const Commands &commands : all)
        if (std::find(commands.names.begin(), commands.names.end(), given) != commands.names.end())
            return commands.add();
    for (const Commands &commands : all)
        commands.add();
}

// Help and version are errors for CLI11.
void parse(CLI::App &app, int argc, char **argv) {
    try {
        parse_as_typed(app, argc, argv);
        if (app.get_subcommands().empty())
            throw CLI::RequiredError("A subcommand");
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() != 0)
            throw;
        app.exit(error);
        finish_output();
    }
}

// A word that was not understood is often the reason why another one is missing.
std::string text_of(const CLI::ParseError &error, const CLI::App &app) {
    const bool is_about_words = dynamic_cast<const CLI::ExtrasError *>(&error) != nullptr ||
                                dynamic_cast<const CLI::RequiredError *>(&error) != nullptr;
    const std::string unknown = is_about_words ? unknown_word(app) : "";
    return yang::shortened(unknown.empty() ? error.what() : unknown, longest_message);
}

} // namespace

int run_program(int argc, char **argv, const GnmiDoors *gnmi) {
    CLI::App app{"OpenConfig LLDP for devices that speak native models", "yfw"};
    app.require_subcommand(0, 1); // report an unknown command before a missing one
    app.set_version_flag("--version", "yfw " YFW_VERSION);
    app.footer("Examples:\n  yfw get /lldp\n  yfw get --help\n  yfw topology\n");
    DeviceOptions device = shipped_device();
    GetOptions get;
    const std::vector<Commands> commands{
        {{"get"}, [&] { add_get(app, device, get); }},
        {{"set", "delete", "edit", "commit"}, [&] { add_edit_commands(app, device); }},
        {{"history", "show", "diff", "rollback"}, [&] { add_history_commands(app, device); }},
        {{"explain"}, [&] { add_explain(app, device); }},
        {{"coverage"}, [&] { add_coverage(app, device); }},
        {{"lab"}, [&] { add_lab(app); }},
        {{"neighbors"}, [&] { add_neighbors(app, device); }},
        {{"serve", "netconf-stdio"}, [&] { add_serve(app, device, gnmi); }},
        {{"status", "drift", "apply"}, [&] { add_status_commands(app, device); }},
        {{"topology"}, [&] { add_topology(app, device); }},
        {{"watch"}, [&] { add_watch(app, device); }},
        {{}, [&] { add_complete(app); }},
        {{}, [&] { add_manual(app, "yfw " YFW_VERSION); }},
    };
    add_needed(commands, argc, argv);
    try {
        parse(app, argc, argv);
        return 0;
    } catch (const CLI::ParseError &error) {
        say(text_of(error, app) + " (see yfw --help)");
        return exit_refused;
    } catch (const Error &error) {
        return report(error, edits(app), device.trace);
    } catch (const ReaderGone &) { // as quiet as a program that the signal ends
        return exit_failed;
    } catch (const FailureTold &) {
        return exit_failed;
    } catch (const std::exception &error) {
        say(error.what());
        return exit_failed;
    }
}

} // namespace yfw::cli
