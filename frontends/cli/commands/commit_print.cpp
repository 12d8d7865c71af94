#include "frontends/cli/commands/commit_print.h"

#include "base/printable.h"
#include "frontends/cli/output/shown_document.h"
#include "frontends/cli/output/terminal.h"

namespace yfw::cli {
namespace {

using Json = nlohmann::ordered_json;

std::vector<yang::Difference> between(const yang::Schemas &schemas, const std::string &before,
                                      const std::string &after, int64_t number) {
    const std::string place = "commit " + std::to_string(number);
    return yang::differences(yang::parse_configuration(schemas, before, place).get(),
                             yang::parse_configuration(schemas, after, place).get());
}

void print(std::ostream &to, const std::vector<yang::Difference> &differences) {
    for (const yang::Difference &each : differences)
        to << (each.is_added ? "+ " : "- ") << printable(each.path) << (each.value.empty() ? "" : " = ")
           << printable(each.value) << '\n';
}

Json list_of(const std::vector<yang::Difference> &differences) {
    Json all = Json::array();
    for (const yang::Difference &each : differences) {
        Json one{{"change", each.is_added ? "added" : "removed"}, {"path", each.path}};
        if (!each.value.empty())
            one["value"] = each.value;
        all.push_back(std::move(one));
    }
    return all;
}

// A document that was stored.
std::string shown(const std::string &xml) {
    return is_terminal(stdout) ? shown_xml(xml) : xml;
}

} // namespace

CommitDifferences differences_of(const yang::Schemas &schemas, const commits::Commit &commit,
                                 const std::optional<commits::Commit> &previous) {
    if (!previous.has_value())
        return {std::vector<yang::Difference>{}, {}};
    CommitDifferences found;
    if (commit.openconfig.has_value() && previous->openconfig.has_value())
        found.openconfig = between(schemas, *previous->openconfig, *commit.openconfig, commit.number);
    found.native = between(schemas, previous->configuration, commit.configuration, commit.number);
    return found;
}

void print_differences(std::ostream &to, const CommitDifferences &differences) {
    if (differences.openconfig.has_value()) {
        to << "OpenConfig difference:\n";
        print(to, *differences.openconfig);
        to << '\n';
    }
    to << "native difference:\n";
    print(to, differences.native);
}

void print_commit(std::ostream &to, const commits::Commit &commit, const CommitDifferences &differences) {
    to << "commit  " << commit.number << "\ntime    " << commit.time << "\nwho     " << printable(commit.who)
       << "\ncomment " << printable(commit.comment) << "\n\n";
    if (!commit.edit.empty())
        to << "edit:\n" << shown(commit.edit) << '\n';
    print_differences(to, differences);
    if (commit.openconfig.has_value())
        to << "\nOpenConfig configuration:\n" << shown(*commit.openconfig);
    to << "\nnative configuration:\n" << shown(commit.configuration);
}

Json json_of(const commits::Commit &commit) {
    return {{"commit", commit.number}, {"time", commit.time}, {"who", commit.who}, {"comment", commit.comment}};
}

void add_differences(Json &to, const CommitDifferences &differences) {
    if (differences.openconfig.has_value())
        to["openconfig-difference"] = list_of(*differences.openconfig);
    to["native-difference"] = list_of(differences.native);
}

void add_texts(Json &to, const commits::Commit &commit) {
    to["edit"] = commit.edit;
    if (commit.openconfig.has_value())
        to["openconfig"] = *commit.openconfig;
    to["native"] = commit.configuration;
}

void print_json(std::ostream &to, const Json &json) {
    to << json.dump(2, ' ', true, Json::error_handler_t::replace) << '\n';
}

} // namespace yfw::cli
