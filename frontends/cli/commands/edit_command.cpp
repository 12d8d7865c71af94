#include "frontends/cli/commands/edit_command.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <sstream>

#include "base/bounded_text.h"
#include "base/error.h"
#include "base/system_error.h"
#include "frontends/cli/commands/commit_result.h"
#include "frontends/cli/commands/edit_script.h"
#include "frontends/cli/commands/typed_edit.h"
#include "frontends/cli/options/current_user.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/named_device.h"

namespace yfw::cli {
namespace {

constexpr const char *edit_examples = R"(
Examples:
  yfw set /lldp/config/hello-timer 30
  yfw set /lldp/interfaces/interface[name=eth1]/config/enabled false --dry-run
  yfw set "/lldp/interfaces/interface[name=*]/config/enabled" true
  yfw delete /lldp/config/system-name --comment "back to the default"
  yfw delete /lldp/config/hello-timer "/lldp/config/suppress-tlv-advertisement[.='SYSTEM_NAME']"
  yfw edit change.xml --operation replace
  yfw commit -f changes.txt
  yfw commit -- set /lldp/config/enabled true set /lldp/config/hello-timer 10
  yfw commit --json -f changes.txt | jq '."native-difference"[].path'
)";

struct EditOptions {
    std::string path;               // of set
    std::vector<std::string> paths; // of delete
    std::string value;
    std::string file;
    std::vector<std::string> words;
    std::string operation = "merge";
    std::string comment;
    bool dry_run = false;
    bool json = false;
};

// What a NETCONF server takes in one message, too.
constexpr uint64_t largest_document = 64 * mebibyte;

// The file may be a pipe, as a shell's <(...) is.
std::string read_file(const std::string &file) {
    if (file == "-")
        return bounded_text(std::cin, largest_document, "standard input");
    if (std::error_code error; std::filesystem::is_directory(file, error))
        throw Error(ErrorTag::invalid_value, file, "is a directory");
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw Error(ErrorTag::invalid_value, file, "cannot be read: " + system_error_text());
    return bounded_text(stream, largest_document, file);
}

// An error without a path concerns the document as a whole: it gets the file's name.
yang::EditNode parse_file(const yang::Schemas &schemas, const EditOptions &options) {
    try {
        return yang::parse_edit(schemas, read_file(options.file), *yang::operation_from(options.operation));
    } catch (const Error &error) {
        if (!error.path().empty())
            throw;
        throw Error(error.tag(), options.file, error.what(), error.status());
    }
}

void run(const DeviceOptions &device, const EditOptions &options,
         const std::function<yang::EditNode(NamedDevice &)> &make_edit) {
    NamedDevice named(device);
    const yang::EditNode edit = make_edit(named);
    if (options.dry_run)
        print_dry_run(named, edit, options.json);
    else
        print_result(named, named.device.edit(edit, {current_user(), options.comment}), options.json);
}

CLI::App *add_command(CLI::App &app, DeviceOptions &device, EditOptions &options, const char *name,
                      const char *help) {
    CLI::App *command = app.add_subcommand(name, help);
    command->footer(edit_examples);
    command->add_option("--comment", options.comment, "Comment to store with the commit")->option_text("TEXT");
    command->add_flag("--dry-run", options.dry_run, "Print the native difference without committing");
    command->add_flag("--json", options.json, "Print the commit and what it changed as JSON");
    add_device_options(*command, device);
    return command;
}

void add_set(CLI::App &app, DeviceOptions &device, const std::shared_ptr<EditOptions> &options) {
    CLI::App *command = add_command(app, device, *options, "set", "Set an OpenConfig leaf, as one commit");
    command->add_option("PATH", options->path, "Path of the leaf, with list keys")
        ->required()
        ->option_text(" ");
    command->add_option("VALUE", options->value, "Its value")->required()->option_text(" ");
    command->callback([&device, options] {
        run(device, *options, [&](NamedDevice &named) {
            return edit_of(named, {{options->path, options->value}});
        });
    });
}

void add_delete(CLI::App &app, DeviceOptions &device, const std::shared_ptr<EditOptions> &options) {
    CLI::App *command = add_command(app, device, *options, "delete", "Delete OpenConfig nodes, as one commit");
    command->add_option("PATH", options->paths, "Paths of the nodes, with list keys")
        ->required()
        ->option_text("...");
    command->callback([&device, options] {
        run(device, *options, [&](NamedDevice &named) {
            std::vector<Change> changes;
            for (const std::string &path : options->paths)
                changes.push_back({path, std::nullopt});
            return edit_of(named, changes);
        });
    });
}

void add_edit_file(CLI::App &app, DeviceOptions &device, const std::shared_ptr<EditOptions> &options) {
    CLI::App *command = add_command(app, device, *options, "edit", "Apply an edit document, XML or JSON");
    command
        ->add_option("FILE", options->file,
                     "The document, optionally with NETCONF operation attributes; - for standard input")
        ->required()
        ->option_text(" ");
    command->add_option("--operation", options->operation, "Operation of nodes without one; default: merge")
        ->check(CLI::IsMember({"merge", "replace", "create", "delete", "remove", "none"}))
        ->option_text("OPERATION");
    command->callback([&device, options] {
        run(device, *options, [&](NamedDevice &named) { return parse_file(named.schemas, *options); });
    });
}

std::vector<Change> changes_of(const EditOptions &options) {
    if (options.file.empty())
        return read_words(options.words);
    std::istringstream text(read_file(options.file));
    return read_script(text, options.file);
}

void add_commit(CLI::App &app, DeviceOptions &device, const std::shared_ptr<EditOptions> &options) {
    CLI::App *command = add_command(app, device, *options, "commit", "Apply several changes as one commit");
    auto *file = command->add_option("-f,--file", options->file,
                                     "File with one \"set PATH VALUE\" or \"delete PATH\" per line");
    file->option_text("FILE");
    command->add_option("CHANGE", options->words, "After --: set PATH VALUE, delete PATH, ...")
        ->excludes(file)
        ->option_text("...");
    command->callback([&device, options] {
        if (options->file.empty() && options->words.empty())
            throw Error(ErrorTag::missing_element, "", "commit needs -f FILE or changes after --");
        run(device, *options, [&](NamedDevice &named) { return edit_of(named, changes_of(*options)); });
    });
}

} // namespace

void add_edit_commands(CLI::App &app, DeviceOptions &device) {
    add_set(app, device, std::make_shared<EditOptions>());
    add_delete(app, device, std::make_shared<EditOptions>());
    add_edit_file(app, device, std::make_shared<EditOptions>());
    add_commit(app, device, std::make_shared<EditOptions>());
}

} // namespace yfw::cli
