#include "frontends/cli/commands/history_command.h"

#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <system_error>

#include "base/error.h"
#include "base/printable.h"
#include "commits/commit_log.h"
#include "device/store_errors.h"
#include "frontends/cli/options/current_user.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/named_device.h"

namespace yfw::cli {
namespace {

constexpr const char *history_examples = R"(
Examples:
  yfw history
  yfw show 3
  yfw diff
  yfw diff 3
  yfw rollback 2 --comment "restore the old timer"
)";

struct CommitOptions {
    int64_t number = -1;
    std::string comment;
};

commits::Commit find_commit(const commits::CommitLog &store, int64_t number, const std::string &place) {
    std::optional<commits::Commit> commit = number < 0 ? store.last() : store.find(number);
    if (!commit.has_value())
        throw Error(ErrorTag::data_missing, place,
                    number < 0 ? "there are no commits yet" : "there is no commit " + std::to_string(number));
    return *commit;
}

// Calls `work` with the store. Throws Error when there is none.
void with_store(const DeviceOptions &device,
                const std::function<void(const commits::CommitLog &, std::string)> &work) {
    const std::filesystem::path file = store_of(device);
    if (file.empty())
        throw Error(ErrorTag::missing_element, "--store", "a device given with --native has no commits");
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        throw Error(ErrorTag::data_missing, file.string(), "there are no commits yet");
    device::in_store([&] { work(commits::CommitLog(file, false, owner_of(device)), file.string()); });
}

void print_history(const commits::CommitLog &store) {
    for (const commits::Commit &commit : store.history())
        std::cout << std::right << std::setw(6) << commit.number << "  " << commit.time << "  " << std::left
                  << std::setw(12) << printable(commit.who) << "  " << printable(commit.comment) << '\n';
    std::cout << std::flush;
}

void print_commit(const commits::Commit &commit) {
    std::cout << "commit  " << commit.number << "\ntime    " << commit.time << "\nwho     "
              << printable(commit.who) << "\ncomment " << printable(commit.comment) << "\n\nedit:\n"
              << commit.edit << "\nnative difference:\n"
              << commit.difference << "\nnative configuration:\n"
              << commit.configuration << std::flush;
}

void roll_back(const DeviceOptions &device, const CommitOptions &options) {
    NamedDevice named(device);
    const auto commit = named.device.rollback(options.number, {current_user(), options.comment});
    if (commit.has_value())
        std::cout << "commit " << commit->number << '\n' << commit->difference << std::flush;
    else
        std::cout << "nothing changes\n" << std::flush;
}

CLI::App *add_command(CLI::App &app, DeviceOptions &device, const char *name, const char *help) {
    CLI::App *command = app.add_subcommand(name, help);
    command->footer(history_examples);
    add_device_options(*command, device);
    return command;
}

CLI::Option *add_number(CLI::App &command, CommitOptions &options) {
    return command.add_option("COMMIT", options.number, "The commit's number")
        ->check(CLI::NonNegativeNumber)
        ->option_text(" ");
}

} // namespace

void add_history_commands(CLI::App &app, DeviceOptions &device) {
    const auto options = std::make_shared<CommitOptions>();
    add_command(app, device, "history", "List the commits, newest first")->callback([&device] {
        with_store(device, [](const commits::CommitLog &store, const std::string &) { print_history(store); });
    });
    CLI::App *show = add_command(app, device, "show", "Show a commit: who, when, the edit, what it changed");
    add_number(*show, *options)->required();
    show->callback([&device, options] {
        with_store(device, [&](const commits::CommitLog &store, const std::string &place) {
            print_commit(find_commit(store, options->number, place));
        });
    });
    CLI::App *diff =
        add_command(app, device, "diff", "Print the native difference of a commit; default: the last one");
    add_number(*diff, *options);
    diff->callback([&device, options] {
        with_store(device, [&](const commits::CommitLog &store, const std::string &place) {
            std::cout << find_commit(store, options->number, place).difference << std::flush;
        });
    });
    CLI::App *rollback =
        add_command(app, device, "rollback", "Make a commit's configuration the running one again");
    add_number(*rollback, *options)->required();
    rollback->add_option("--comment", options->comment, "Comment to store with the new commit")
        ->option_text("TEXT");
    rollback->callback([&device, options] { roll_back(device, *options); });
}

} // namespace yfw::cli
