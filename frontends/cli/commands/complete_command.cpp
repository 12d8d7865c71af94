#include "frontends/cli/commands/complete_command.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "frontends/cli/completion/path_completion.h"
#include "frontends/cli/completion/shell_line.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/output/print.h"

namespace yfw::cli {
namespace {

using Strings = std::vector<std::string>;

constexpr const char *ask_for_files = ":files";

struct Choices {
    const char *option;
    Strings values;
};

const std::vector<Choices> &choices() {
    static const std::vector<Choices> all{
        {"--format", {"json", "xml"}},
        {"--operation", {"merge", "replace", "create", "delete", "remove", "none"}},
    };
    return all;
}

// What the words before the one that is completed mean.
struct Typed {
    CLI::App *command = nullptr;
    CLI::Option *awaiting = nullptr; // an option that takes the word as its value
    bool ends_options = false;       // there was a "--"
    Strings positionals;
    DeviceOptions device = shipped_device();
};

bool is_hidden(const CLI::App &command) {
    return command.get_group().empty();
}

// NULL when there is none by that name.
CLI::App *subcommand_of(CLI::App &command, const std::string &name) {
    for (CLI::App *each : command.get_subcommands([](const CLI::App *) { return true; }))
        if (each->get_name() == name)
            return each;
    return nullptr;
}

void remember(DeviceOptions &device, const CLI::Option &option, const std::string &value) {
    if (option.check_lname("device"))
        device.device = value;
    else if (option.check_lname("native"))
        device.native_files.emplace_back(value);
    else if (option.check_lname("store"))
        device.store = value;
    else if (option.check_lname("models"))
        device.openconfig_models = value;
    else if (option.check_lname("plugin"))
        device.plugin = value;
}

void read_option(Typed &typed, const std::string &word) {
    const size_t equals = word.find('=');
    CLI::Option *option = typed.command->get_option_no_throw(word.substr(0, equals));
    if (option == nullptr || option->get_items_expected_max() == 0)
        return;
    if (equals != std::string::npos)
        remember(typed.device, *option, word.substr(equals + 1));
    else
        typed.awaiting = option;
}

void read_word(Typed &typed, const std::string &word) {
    if (typed.awaiting != nullptr) {
        remember(typed.device, *typed.awaiting, word);
        typed.awaiting = nullptr;
    } else if (!typed.ends_options && word == "--") {
        typed.ends_options = true;
    } else if (!typed.ends_options && word.size() > 1 && word.front() == '-') {
        read_option(typed, word);
    } else if (CLI::App *command = typed.positionals.empty() ? subcommand_of(*typed.command, word) : nullptr) {
        typed.command = command;
    } else {
        typed.positionals.push_back(word);
    }
}

Typed read_typed(CLI::App &app, const Strings &words) {
    Typed typed;
    typed.command = &app;
    for (size_t i = 1; i + 1 < words.size(); i++) // the first one is the program
        read_word(typed, words[i]);
    return typed;
}

// ---- what may be there --------------------------------------------------------------------------------------

Strings options_of(const CLI::App &command) {
    Strings all;
    for (const CLI::Option *option : command.get_options())
        for (const std::string &name : option->get_lnames())
            all.push_back("--" + name);
    return all;
}

Strings commands_of(CLI::App &command) {
    Strings all;
    for (const CLI::App *each : command.get_subcommands([](const CLI::App *) { return true; }))
        if (!is_hidden(*each))
            all.push_back(each->get_name());
    return all;
}

Strings values_for(const CLI::Option &option) {
    for (const Choices &each : choices())
        if (option.check_name(each.option))
            return each.values;
    const std::string text = option.get_option_text();
    const bool names_file = text == "FILE" || text == "DIR" || text == "DEVICE";
    Strings all;
    if (names_file)
        all.emplace_back(ask_for_files);
    if (text == "DEVICE")
        all.emplace_back("lldpd:");
    return all;
}

void collect_values(const lyd_node *node, const lysc_node *key, Strings &to) {
    for (; node != nullptr; node = node->next) {
        if (node->schema == key && std::find(to.begin(), to.end(), lyd_get_value(node)) == to.end())
            to.emplace_back(lyd_get_value(node));
        collect_values(lyd_child(node), key, to);
    }
}

// Opens the device when a key is asked for.
class DevicePaths {
public:
    explicit DevicePaths(const DeviceOptions &options) : named_(options) {}

    Strings complete(const std::string &typed, bool edits) {
        return complete_path(named_.schemas.openconfig_root(), typed, edits,
                             [&](const yang::Path &list, const lysc_node *key) { return values(list, key); });
    }

    Strings values_at(const std::string &path) {
        return values_of_leaf(named_.schemas.openconfig_root(), path);
    }

private:
    Strings values(const yang::Path &list, const lysc_node *key) {
        host::ReadRequest request;
        request.paths.push_back(list);
        const host::Answer answer = named_.device.read(request);
        Strings found;
        collect_values(answer.data.get(), key, found);
        return found;
    }

    NamedDevice named_;
};

// set PATH VALUE, delete PATH, and get PATH: what comes after these words.
Strings complete_change(const Typed &typed, const std::string &word, const Strings &verbs) {
    size_t at = 0;
    const Strings &words = typed.positionals;
    while (at < words.size() && words.size() - at >= (words[at] == "set" ? 3U : 2U))
        at += words[at] == "set" ? 3 : 2;
    if (at == words.size())
        return verbs;
    DevicePaths paths(typed.device);
    return words.size() - at == 1 ? paths.complete(word, words[at] != "get") : paths.values_at(words.back());
}

Strings complete_positional(const Typed &typed, const std::string &word) {
    const std::string &command = typed.command->get_name();
    if (command == "get" || command == "delete")
        return DevicePaths(typed.device).complete(word, command == "delete");
    if (command == "set" && typed.positionals.empty())
        return DevicePaths(typed.device).complete(word, true);
    if (command == "set" && typed.positionals.size() == 1)
        return DevicePaths(typed.device).values_at(typed.positionals[0]);
    if (command == "commit" && typed.ends_options)
        return complete_change(typed, word, {"set", "delete"});
    if (command == "explain")
        return complete_change(typed, word,
                               typed.positionals.empty() ? Strings{"get", "set", "delete"} : Strings{});
    if (command == "edit" || command == "record")
        return {ask_for_files};
    return typed.positionals.empty() ? commands_of(*typed.command) : Strings{};
}

Strings candidates(CLI::App &app, const Strings &words) {
    const Typed typed = read_typed(app, words);
    const std::string &word = words.back();
    Strings all;
    if (typed.awaiting != nullptr)
        all = values_for(*typed.awaiting);
    else if (!typed.ends_options && word.starts_with('-'))
        all = options_of(*typed.command);
    else
        all = complete_positional(typed, word);
    std::erase_if(all, [&](const std::string &one) { return one != ask_for_files && !one.starts_with(word); });
    return all;
}

// A shell shows nothing of what goes wrong meanwhile.
Strings candidates_or_none(CLI::App &app, const Strings &words) {
    try {
        return candidates(app, words);
    } catch (const std::exception &) {
        return {};
    }
}

struct CompleteOptions {
    std::string line;
    std::string breaks;
    Strings words;
};

void run_complete(CLI::App &app, const CompleteOptions &options) {
    if (options.line.empty()) {
        for (const std::string &candidate : candidates_or_none(app, options.words))
            std::cout << candidate << '\n';
    } else {
        const ShellLine line = read_shell_line(options.line, options.breaks);
        for (const std::string &candidate : candidates_or_none(app, line.words))
            std::cout << (candidate == ask_for_files ? candidate : inserted(line, candidate)) << '\n';
    }
    finish_output();
}

} // namespace

void add_complete(CLI::App &app) {
    const auto options = std::make_shared<CompleteOptions>();
    CLI::App *command = app.add_subcommand("complete", "Answer the completion of a shell");
    command->group("");
    command->add_option("--line", options->line, "The line up to the cursor; prints what the shell inserts");
    command->add_option("--breaks", options->breaks, "Characters that end a word for the shell's completion");
    command->add_option("WORD", options->words, "Instead of a line: its words, the last one being typed");
    command->callback([&app, options] { run_complete(app, *options); });
}

} // namespace yfw::cli
