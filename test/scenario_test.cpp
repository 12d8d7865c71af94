// Runs every folder of scenarios/ as a read or an edit. README.md describes the files of a folder.
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/answers.h"
#include "support/child_process.h"
#include "support/files.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;

// After this, a warning continues with libyang's message.
constexpr std::string_view end_of_warning = " is left out";

std::vector<std::string> scenario_names() {
    std::vector<std::string> names;
    for (const fs::directory_entry &entry : fs::directory_iterator(YFW_SCENARIOS_DIR))
        if (entry.is_directory())
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string without_line_end(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

std::string up_to_the_library(const std::string &warning) {
    const std::size_t at = warning.find(end_of_warning);
    return at == std::string::npos ? warning : warning.substr(0, at + end_of_warning.size());
}

class AScenario : public testing::TestWithParam<std::string> {
protected:
    bool has(const std::string &file) const { return fs::exists(folder_ / file); }
    std::string text(const std::string &file) const { return read_file(folder_ / file); }

    std::vector<std::string> request() const { return lines_of(text("request")); }

    bool is_edit() const {
        const std::string command = request().at(0);
        return command == "set" || command == "delete" || command == "edit" || command == "commit";
    }

    Outcome run(Format format) const {
        Invocation invocation{.arguments = request(), .working_directory = folder_};
        invocation.arguments.insert(invocation.arguments.end(), {"--format", format_name(format)});
        if (has("timezone"))
            invocation.timezone = without_line_end(text("timezone"));
        return run_yfw(invocation);
    }

    // Runs the edit on the folder's device, with further arguments before or after its command.
    Outcome run_edit(const std::vector<std::string> &before, const std::vector<std::string> &after = {}) const {
        const TemporaryDirectory directory;
        std::vector<std::string> arguments = request();
        arguments.insert(arguments.begin() + 1, after.begin(), after.end());
        arguments.insert(arguments.begin() + 1, {"--store", (directory.path() / "commits.db").string()});
        arguments.insert(arguments.begin(), before.begin(), before.end());
        return run_yfw({.arguments = std::move(arguments), .working_directory = folder_});
    }

    // With YFW_UPDATE_EXPECTED=1, writes the actual output to the folder instead, for review.
    void expect_or_update(const std::string &file, const std::string &actual) const {
        const char *update = std::getenv("YFW_UPDATE_EXPECTED");
        if (update != nullptr && std::string(update) == "1")
            write_file(folder_ / file, actual);
        else
            EXPECT_EQ(actual, text(file)) << "  " << file << " of " << folder_.filename();
    }

    void expect_failure(const Outcome &outcome) const {
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1);
        expect_or_update("expected.error", outcome.errors);
        expect_or_update("expected.status", std::to_string(outcome.status) + "\n");
    }

    void expect_warnings(const Outcome &outcome) const {
        std::string warnings;
        for (const std::string &line : lines_of(outcome.errors))
            warnings += up_to_the_library(line) + "\n";
        if (has("expected.warnings"))
            expect_or_update("expected.warnings", warnings);
        else
            EXPECT_EQ(warnings, "");
    }

    void expect_answer(Format format, const Outcome &outcome) const {
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
        expect_warnings(outcome);
        const std::string file = std::string("expected.") + format_name(format);
        if (has(file))
            expect_or_update(file, without_times(outcome.output));
    }

    void expect_edit() const {
        const Outcome dry_run = run_edit({}, {"--dry-run"});
        if (has("expected.status")) {
            expect_failure(dry_run);
            return;
        }
        expect_printed("expected.difference", dry_run);
        if (has("expected.native-edits"))
            expect_printed("expected.native-edits", run_edit({"explain"}));
        const std::string committed =
            dry_run.output.empty() ? "nothing changes\n" : "commit 1\n" + dry_run.output;
        EXPECT_EQ(run_edit({}).output, committed);
    }

    void expect_printed(const std::string &file, const Outcome &outcome) const {
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors, "");
        expect_or_update(file, outcome.output);
    }

    const fs::path folder_ = fs::path(YFW_SCENARIOS_DIR) / GetParam();
};

TEST_P(AScenario, IsAnsweredAsExpected) {
    if (is_edit()) {
        expect_edit();
        return;
    }
    const Outcome json = run(Format::json);
    if (has("expected.status")) {
        expect_failure(json);
        return;
    }
    ASSERT_TRUE(has("expected.json") || has("expected.xml")) << "the folder has no expected answer";
    const Outcome xml = run(Format::xml);
    expect_answer(Format::json, json);
    expect_answer(Format::xml, xml);
    if (HasFatalFailure())
        return;
    const Context modules = openconfig_modules();
    const Tree from_json = parse_printed(modules.get(), Format::json, json.output);
    const Tree from_xml = parse_printed(modules.get(), Format::xml, xml.output);
    EXPECT_EQ(as_text(from_json.get()), as_text(from_xml.get()));
    EXPECT_EQ(keys_unlike_their_twins(from_json.get()), std::vector<std::string>{});
}

std::string test_name(const testing::TestParamInfo<std::string> &scenario) {
    std::string name = scenario.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Folders, AScenario, testing::ValuesIn(scenario_names()), test_name);

} // namespace
} // namespace yfw::test
