#include "frontends/cli/commands/manual_command.h"

#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include "frontends/cli/output/print.h"

namespace yfw::cli {
namespace {

constexpr std::string_view description = "yfw serves devices that have native YANG models for LLDP in "
                                         "OpenConfig LLDP terms. A device is a directory of "
                                         "recorded native data or a running lldpd. Without --device, commands "
                                         "use a recorded device that is shipped.";

constexpr std::string_view closing = R"(.SH PATHS
Paths start at /lldp. The keys of lists are optional and need no quotes:
/lldp/interfaces/interface[name=eth1]/state. In quotes, a quote of the same kind is doubled. A * stands for any node
and, as a key, for any entry; // and ... stand for any number of nodes below one another. [.=SYSTEM_NAME] is one
value of a leaf\-list. The shell may want quotes around the whole path.
.SH FILES
.TP
.I ~/.local/state/yfw
The commits, one file for each device; below XDG_STATE_HOME if that is set.
.TP
.I /run/yfw
The sockets of laboratories.
.SH ENVIRONMENT
.TP
.B NO_COLOR
Switches colors off if it is not empty.
.TP
.B XDG_STATE_HOME
The user's directory of states. A relative path is ignored.
.SH EXIT STATUS
.TP
.B 0
Success.
.TP
.B 1
The mapping failed, a running lldpd could not be reached, or the output could not be written or drawn.
.TP
.B 2
The request, a file or its data is wrong. Nothing is printed on standard output; one line on standard error names the
place at fault.
.SH SEE ALSO
.BR yfw\-plugin (3),
.BR yfw\-plugin (5),
.BR lldpd (8)
)";

// Text in the language of man, groff_man(7): what begins a line of it must not be a request.
std::string roff(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if ((c == '.' || c == '\'') && (escaped.empty() || escaped.back() == '\n'))
            escaped += "\\&";
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else if (c == '\'')
            escaped += "\\(aq";
        else
            escaped += c;
    }
    return escaped;
}

std::string trimmed(const std::string &text) {
    const size_t first = text.find_first_not_of('\n');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of('\n') - first + 1);
}

// Lines that are indented, such as examples, stay as they are.
void print_footer(const std::string &footer) {
    std::istringstream lines(trimmed(footer));
    std::cout << ".PP\n";
    bool is_example = false;
    for (std::string line; std::getline(lines, line);) {
        const bool indented = line.starts_with("  ") || (is_example && line.empty());
        if (indented != is_example)
            std::cout << (indented ? ".PP\n.EX\n" : ".EE\n.PP\n");
        is_example = indented;
        if (indented)
            std::cout << roff(line) << '\n';
        else
            std::cout << (line.empty() ? ".PP" : roff(line)) << '\n';
    }
    if (is_example)
        std::cout << ".EE\n";
}

bool is_hidden(const CLI::App &command) {
    return command.get_group().empty();
}

std::string value_text(const CLI::Option &option) {
    const std::string &text = option.get_option_text();
    return option.get_items_expected_max() == 0 || text.find_first_not_of(' ') == std::string::npos ? "" : text;
}

std::string sentence(const std::string &text) {
    return text.ends_with('.') ? text : text + '.';
}

void print_options(const CLI::App &command) {
    for (const CLI::Option *option : command.get_options()) {
        std::string names;
        for (const std::string &name : option->get_snames())
            names += (names.empty() ? "-" : ", -") + name;
        for (const std::string &name : option->get_lnames())
            names += (names.empty() ? "--" : ", --") + name;
        const std::string value = value_text(*option);
        std::cout << ".TP\n";
        if (option->get_positional())
            std::cout << ".I " << roff(option->get_name(true)) << (value == "..." ? " ..." : "") << '\n';
        else
            std::cout << ".B " << roff(names) << (value.empty() ? "" : " \\fI" + roff(value) + "\\fR") << '\n';
        std::cout << roff(sentence(option->get_description())) << '\n';
    }
}

std::string synopsis(const CLI::App &command, const std::string &name) {
    std::string text = name;
    bool has_options = false;
    for (const CLI::Option *option : command.get_options()) {
        if (option->get_positional())
            text += " " + option->get_name(true) + (value_text(*option) == "..." ? "..." : "");
        else
            has_options = true;
    }
    return text + (has_options ? " [OPTION...]" : "");
}

void print_command(CLI::App &command, const std::string &before) {
    const std::string name = before + " " + command.get_name();
    std::cout << ".SS " << roff(synopsis(command, name)) << '\n' << roff(command.get_description()) << ".\n";
    print_options(command);
    print_footer(command.get_footer());
    for (CLI::App *each : command.get_subcommands([](const CLI::App *) { return true; }))
        if (!is_hidden(*each))
            print_command(*each, name);
}

void print_manual(CLI::App &app, const std::string &version) {
    std::cout << ".TH YFW 1 \"\" \"" << roff(version) << "\" \"User Commands\"\n.SH NAME\nyfw \\- "
              << roff(app.get_description()) << "\n.SH SYNOPSIS\n.B yfw\n.I COMMAND\n[\\fIARGUMENT\\fR ...]\n"
              << ".SH DESCRIPTION\n"
              << roff(description) << "\n.SH COMMANDS\n";
    for (CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; }))
        if (!is_hidden(*command))
            print_command(*command, "yfw");
    std::cout << closing;
    finish_output();
}

} // namespace

void add_manual(CLI::App &app, const std::string &version) {
    CLI::App *command = app.add_subcommand("manual", "Print the manual page");
    command->group("");
    command->callback([&app, version] { print_manual(app, version); });
}

} // namespace yfw::cli
