#include "frontends/cli/commands/history_command.h"

#include <cstdint>
#include <functional>
#include <iomanip>
#include <iostream>
#include <limits>
#include <memory>
#include <system_error>

#include "base/error.h"
#include "base/printable.h"
#include "commits/commit_log.h"
#include "device/pending_file.h"
#include "device/store_errors.h"
#include "device/stored_configuration.h"
#include "frontends/cli/commands/commit_print.h"
#include "frontends/cli/commands/commit_result.h"
#include "frontends/cli/options/current_user.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/module_places.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/options/option_checks.h"
#include "frontends/cli/output/print.h"
#include "host/mapping_description.h"

namespace yfw::cli {
namespace {

constexpr const char *history_examples = R"(
Examples:
  yfw history
  yfw show 3
  yfw diff
  yfw diff 3
  yfw history --json | jq '.[0].commit'
  yfw show 3 --json | jq -r .edit | yfw edit - --device examples/r2
  yfw rollback 2 --comment "restore the old timer"
)";

struct CommitOptions {
    int64_t number = -1;
    std::string comment;
    bool json = false;
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

void print_history_text(const std::vector<commits::Commit> &history, int64_t last_confirmed) {
    for (const commits::Commit &commit : history)
        std::cout << std::right << std::setw(6) << commit.number << "  " << commit.time << "  " << std::left
                  << std::setw(12) << printable(commit.who) << "  " << printable(commit.comment)
                  << (commit.number > last_confirmed ? " (unconfirmed)" : "") << '\n';
}

void print_history_json(const std::vector<commits::Commit> &history, int64_t last_confirmed) {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const commits::Commit &commit : history) {
        all.push_back(json_of(commit));
        if (commit.number > last_confirmed)
            all.back()["unconfirmed"] = true;
    }
    print_json(std::cout, all);
}

void print_history(const commits::CommitLog &store, const std::string &file, bool json) {
    const int64_t last_confirmed =
        device::remembered_pending(file).value_or(std::numeric_limits<int64_t>::max());
    (json ? print_history_json : print_history_text)(store.history(), last_confirmed);
    finish_output();
}

// The modules alone: the device need not be there.
yang::Schemas schemas_of(const DeviceOptions &device) {
    return {device.native_models, device.openconfig_models, host::read_mapping(device.plugin).modules,
            import_directories(device.openconfig_models)};
}

void show(const DeviceOptions &device, const commits::CommitLog &store, const commits::Commit &stored,
          const std::string &place, bool json) {
    const yang::Schemas schemas = schemas_of(device);
    const auto [commit, previous] = device::with_previous(schemas, store, stored, place);
    const CommitDifferences differences = differences_of(schemas, commit, previous);
    if (json) {
        nlohmann::ordered_json all = json_of(commit);
        add_differences(all, differences);
        add_texts(all, commit);
        print_json(std::cout, all);
    } else {
        print_commit(std::cout, commit, differences);
    }
    finish_output();
}

void show_difference(const DeviceOptions &device, const commits::CommitLog &store,
                     const commits::Commit &stored, const std::string &place, bool json) {
    if (json) {
        const yang::Schemas schemas = schemas_of(device);
        const auto [commit, previous] = device::with_previous(schemas, store, stored, place);
        nlohmann::ordered_json all{{"commit", commit.number}};
        add_differences(all, differences_of(schemas, commit, previous));
        print_json(std::cout, all);
    } else {
        std::cout << stored.difference;
    }
    finish_output();
}

void roll_back(const DeviceOptions &device, const CommitOptions &options) {
    NamedDevice named(device);
    const auto commit = named.device.rollback(options.number, {current_user(), options.comment});
    print_result(named, commit, options.json);
}

CLI::Option *add_number(CLI::App &command, CommitOptions &options) {
    return command.add_option("COMMIT", options.number, "The commit's number")
        ->check(number_range(0, std::numeric_limits<int64_t>::max()))
        ->option_text(" ");
}

} // namespace

void add_history_commands(CLI::App &app, DeviceOptions &device) {
    const auto options = std::make_shared<CommitOptions>();
    const auto add = [&](const char *name, const char *help) {
        return add_device_command(app, device, options->json, name, help, history_examples);
    };
    CLI::App *history = add("history", "List the commits, newest first");
    history->callback([&device, options] {
        with_store(device, [&](const commits::CommitLog &store, const std::string &file) {
            print_history(store, file, options->json);
        });
    });
    CLI::App *shown = add("show", "Show a commit: who, when, the edit, what it changed");
    add_number(*shown, *options)->required();
    shown->callback([&device, options] {
        with_store(device, [&](const commits::CommitLog &store, const std::string &place) {
            show(device, store, find_commit(store, options->number, place), place, options->json);
        });
    });
    CLI::App *diff = add("diff", "Print the native difference of a commit; default: the last one");
    add_number(*diff, *options);
    diff->callback([&device, options] {
        with_store(device, [&](const commits::CommitLog &store, const std::string &place) {
            show_difference(device, store, find_commit(store, options->number, place), place, options->json);
        });
    });
    CLI::App *rollback = add("rollback", "Make a commit's configuration the running one again");
    add_number(*rollback, *options)->required();
    rollback->add_option("--comment", options->comment, "Comment to store with the new commit")
        ->option_text("TEXT");
    rollback->callback([&device, options] { roll_back(device, *options); });
}

} // namespace yfw::cli
