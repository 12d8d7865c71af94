#include "frontends/cli/commands/commit_result.h"

#include <iostream>
#include <string>

#include "device/store_errors.h"
#include "device/stored_configuration.h"
#include "frontends/cli/commands/commit_print.h"
#include "frontends/cli/output/print.h"

namespace yfw::cli {
namespace {

nlohmann::ordered_json json_of_result(const NamedDevice &named, const commits::Commit &commit) {
    const std::filesystem::path &file = named.device.store();
    const auto [made, previous] = device::in_store([&] {
        return device::with_previous(named.schemas, commits::CommitLog(file, false), commit, file.string());
    });
    nlohmann::ordered_json json = json_of(made);
    add_differences(json, differences_of(named.schemas, made, previous));
    return json;
}

} // namespace

void print_result(const NamedDevice &named, const std::optional<commits::Commit> &commit, bool json) {
    if (json)
        print_json(std::cout, commit.has_value() ? json_of_result(named, *commit)
                                                 : nlohmann::ordered_json{{"commit", nullptr}});
    else if (commit.has_value())
        std::cout << "commit " << commit->number << '\n' << commit->difference;
    else
        std::cout << "nothing changes\n";
    finish_output();
}

void print_dry_run(NamedDevice &named, const yang::EditNode &edit, bool json) {
    const std::string difference = named.device.try_edit(edit);
    if (json) {
        const device::Configuration before = named.device.running_configuration();
        const device::Configuration after = named.device.apply(edit, before);
        nlohmann::ordered_json all{{"commit", nullptr}};
        add_differences(all, {yang::differences(before.openconfig.get(), after.openconfig.get()),
                              yang::differences(before.native.get(), after.native.get())});
        print_json(std::cout, all);
    } else {
        std::cout << difference;
    }
    finish_output();
}

} // namespace yfw::cli
