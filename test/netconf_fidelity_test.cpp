// A client reads what it wrote: random edits of the running configuration and of the candidate, compared with a
// plain tree that is edited by the rules of RFC 6241.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "configuration_lines.h"
#include "device/stored_configuration.h"
#include "edit_device.h"
#include "edit_values.h"
#include "native_settings.h"
#include "netconf_server.h"
#include "plain_configuration.h"
#include "random_edits.h"
#include "yang/schemas.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;
using Lines = std::set<std::string>;

constexpr int edits_per_seed = 40;

struct DeviceCase {
    const char *name;
    std::string (*configuration)();
};

void PrintTo(const DeviceCase &device, std::ostream *to) {
    *to << device.name;
}

const std::vector<LegalValue> &all_values() {
    static const std::vector<LegalValue> values = legal_values();
    return values;
}

class RandomEditsOf : public testing::TestWithParam<std::tuple<DeviceCase, uint32_t>> {
protected:
    RandomEditsOf() : edits_(std::get<1>(GetParam()), all_values(), {"eth1", "eth2", "eth3", "eth8"}) {
        directory_.add("config.xml", std::get<0>(GetParam()).configuration());
        server_.emplace(std::vector<std::string>{}, Runs::here, directory_.path());
        client_.emplace(server_->socket());
        expected_ = plain(answer("running").get());
        EXPECT_EQ(difference(expected_.lines(), lines("running")), "");
    }

    // One to three edits of the candidate, which is then committed or discarded.
    void edit_candidate() {
        PlainConfiguration candidate = expected_;
        for (size_t count = 1 + edits_.choice(3); count > 0; count--)
            edit("candidate", edits_.next(), candidate);
        const bool is_kept = edits_.choice(5) != 0;
        SCOPED_TRACE(is_kept ? "commit" : "discard");
        const int64_t last = last_commit();
        expect_ok(client_->rpc(is_kept ? "<commit/>" : "<discard-changes/>"));
        if (is_kept)
            expected_ = candidate;
        EXPECT_TRUE(is_kept || last_commit() == last);
        expect_running();
        EXPECT_EQ(difference(expected_.lines(), lines("candidate")), "");
    }

    void edit_running() {
        const RandomEdit edit = edits_.next();
        const int64_t before = last_commit();
        const bool is_accepted = this->edit("running", edit, expected_);
        EXPECT_TRUE(is_accepted || last_commit() == before) << "a refused edit made a commit";
        expect_running();
        if (asks_what_exists(edit.lldp))
            return;
        const int64_t last = last_commit();
        PlainConfiguration again = expected_;
        if (this->edit("running", edit, again)) {
            EXPECT_EQ(again.lines(), expected_.lines());
        }
        EXPECT_EQ(last_commit(), last) << "a repeated edit made a commit";
    }

    void expect_running() {
        EXPECT_EQ(difference(expected_.lines(), lines("running")), "");
        if (last_commit() >= 0) {
            const commits::Commit last = commit(last_commit());
            EXPECT_EQ(difference(expected_.lines(), lines_of(last.number)), "");
            EXPECT_EQ(native_difference(expected_, last.configuration), "");
        }
    }

    // Its native settings are those that one commit of it makes on a new device.
    void expect_what_one_commit_makes() {
        if (last_commit() < 0)
            return;
        const std::string state_home = getenv("XDG_STATE_HOME"); // which the device takes for itself
        const EditedDevice device{std::get<0>(GetParam()).configuration()};
        setenv("XDG_STATE_HOME", state_home.c_str(), 1);
        const Outcome outcome = device.edit(expected_.document(), {"--operation", "replace"});
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
        if (const std::optional<int64_t> made = last_commit_in(device.store())) {
            EXPECT_EQ(difference(native_settings(commit_in(device.store(), *made).configuration),
                                 native_settings(commit(last_commit()).configuration)),
                      "")
                << expected_.document();
        }
    }

    // What is held back is listed with the reason.
    void expect_no_other_drift() {
        const Outcome outcome = run_yfw({.arguments = {"drift", "--device", server_->device().string()}});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        for (const std::string &line : test::lines_of(outcome.output)) {
            EXPECT_TRUE(line == "no drift" || line.ends_with("(/lldp/config/enabled is false)")) << line;
        }
    }

    // The configuration is that of the commit again, byte for byte.
    void expect_rollback_to(int64_t number) {
        const Outcome outcome = run_yfw(
            {.arguments = {"rollback", std::to_string(number), "--device", server_->device().string()}});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(difference(lines_of(number), lines("running")), "");
        EXPECT_EQ(commit(number).openconfig, commit(last_commit()).openconfig);
        EXPECT_EQ(shown(number), shown(last_commit()));
    }

    // -1 before the first one.
    int64_t last_commit() const {
        const auto file = store();
        return file.has_value() ? last_commit_in(*file).value_or(-1) : -1;
    }

    RandomEdits edits_;

private:
    // Whether it was accepted, which must be so exactly where the plain tree accepts it.
    bool edit(const std::string &datastore, const RandomEdit &edit, PlainConfiguration &tree) {
        SCOPED_TRACE(datastore + ": " + testing::PrintToString(edit));
        PlainConfiguration changed = tree;
        const std::string tag = changed.apply(edit.lldp, edit.default_operation);
        const Xml reply =
            client_->rpc(edit_config(datastore, document_of(edit.lldp),
                                     "<default-operation>" + edit.default_operation + "</default-operation>"));
        const bool is_accepted = reply.child("ok") != nullptr;
        if (tag.empty() && edit.can_be_held)
            tree = changed;
        EXPECT_EQ(is_accepted, tag.empty() && edit.can_be_held) << "must be refused: " << tag << reply.printed;
        EXPECT_EQ(difference(tree.lines(), lines(datastore)), "");
        return is_accepted;
    }

    Tree answer(const std::string &datastore) { return parsed(client_->rpc(get_config(datastore))); }

    static Tree parsed(const Xml &reply) {
        const Xml *tree = reply.at("data/lldp");
        return tree == nullptr ? Tree() : parse_answer(modules(), Format::xml, tree->printed);
    }

    static const ly_ctx *modules() {
        static const Context loaded = openconfig_modules();
        return loaded.get();
    }

    Lines lines(const std::string &datastore) { return lines_of_tree(answer(datastore).get()); }

    static std::optional<int64_t> last_commit_in(const fs::path &store) {
        return fs::exists(store) ? commits::CommitLog(store, false).last_number() : std::nullopt;
    }

    commits::Commit commit(int64_t number) const { return commit_in(*store(), number); }

    // With its configurations, which the store may have as changes of an earlier commit.
    static commits::Commit commit_in(const fs::path &store, int64_t number) {
        static const yang::Schemas schemas(
            YFW_MODELS_DIR, YFW_MODELS_DIR,
            {{"openconfig-lldp", "openconfig-lldp-types"},
             "lldp",
             {"Tarvo-QD-ifmgr-cfg", "Tarvo-QD-ethernet-lldp-cfg", "Tarvo-QD-ethernet-lldp-oper"}});
        const commits::CommitLog log(store, false);
        return device::with_texts(schemas, log, log.find(number).value(), store.string());
    }

    Lines lines_of(int64_t number) const {
        const std::string text = commit(number).openconfig.value();
        return lines_of_tree(parse_answer(modules(), Format::xml, text).get());
    }

    // The configurations of a commit, as the program prints them.
    std::string shown(int64_t number) const {
        const Outcome outcome =
            run_yfw({.arguments = {"show", std::to_string(number), "--device", server_->device().string()}});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        const size_t at = outcome.output.find("\nnative configuration:\n");
        EXPECT_NE(at, std::string::npos) << outcome.output;
        return at == std::string::npos ? "" : outcome.output.substr(at);
    }

    std::optional<fs::path> store() const {
        const fs::path state = server_->directory() / "state";
        if (fs::exists(state))
            for (const fs::directory_entry &each : fs::recursive_directory_iterator(state))
                if (each.path().extension() == ".db")
                    return each.path();
        return std::nullopt;
    }

    TemporaryDirectory directory_;
    std::optional<NetconfServer> server_;
    std::optional<NetconfClient> client_;
    PlainConfiguration expected_;
};

TEST_P(RandomEditsOf, AreReadAsTheyWereWrittenAndRollBack) {
    for (int i = 0; i < edits_per_seed && !HasFailure(); i++) {
        SCOPED_TRACE("edit " + std::to_string(i));
        if (edits_.choice(3) == 0)
            edit_candidate();
        else
            edit_running();
        if (i % 4 == 3) {
            expect_what_one_commit_makes();
            expect_no_other_drift();
        }
    }
    for (int i = 0; i < 3 && !HasFailure(); i++)
        expect_rollback_to(static_cast<int64_t>(edits_.choice(static_cast<size_t>(last_commit() + 1))));
}

INSTANTIATE_TEST_SUITE_P(
    A, RandomEditsOf,
    testing::Combine(testing::Values(DeviceCase{"ConfiguredDevice", configured_device},
                                     DeviceCase{"DeviceWithoutConfiguration", empty_device},
                                     DeviceCase{"DeviceThatIsSwitchedOff", switched_off_device}),
                     testing::Values(2U, 3U, 5U, 8U)),
    [](const auto &test) {
        return std::string(std::get<0>(test.param).name) + "_seed" + std::to_string(std::get<1>(test.param));
    });

} // namespace
} // namespace yfw::test
