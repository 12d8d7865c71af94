// The words of a command line, and of a file of changes, arrive as they were given.
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/run_program.h"
#include "edit_device.h"
#include "support/files.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

const std::string description = "/lldp/config/system-description";

class AWord : public testing::TestWithParam<std::string> {
protected:
    void expect_description(const Strings &command) const {
        expect_committed(device.run(command));
        EXPECT_EQ(device.values("/*/*/*[local-name()='system-description']"), Strings{GetParam()});
    }

    const EditedDevice device{empty_device()};
};

TEST_P(AWord, ArrivesAsTypedInSet) {
    expect_description({"set", "--", description, GetParam()});
}

TEST_P(AWord, ArrivesAsTypedInCommit) {
    expect_description({"commit", "--", "set", description, GetParam()});
}

INSTANTIATE_TEST_SUITE_P(Of, AWord,
                         testing::Values("[abc]", "[a,b]", "[a;b]", "[]", "[[a]]", "[", "]", "{a}", "\"a\"",
                                         "'a'", "a,b", "-x", "--", "++", "set", "get", "a b"));

TEST(AnExplanation, TakesPathsAsTheyAreTyped) {
    const EditedDevice device{configured_device()};
    const std::string quoted = "/lldp/interfaces/interface[name='eth1']/config/enabled";
    for (const Strings &command : {Strings{"explain", "get"}, Strings{"explain", "delete"}}) {
        Strings plain = command, typed = command;
        plain.push_back(quoted);
        typed.push_back("/lldp/interfaces/interface[name=eth1]/config/enabled");
        EXPECT_EQ(device.run(typed).output, device.run(plain).output);
        EXPECT_EQ(device.run(typed).status, 0);
    }
    const Outcome all =
        device.run({"explain", "set", "/lldp/interfaces/interface[name=*]/config/enabled", "false"});
    EXPECT_EQ(all.status, 0) << all.errors;
    EXPECT_NE(all.output.find("/lldp/interfaces/interface/config/enabled"), std::string::npos) << all.output;
    EXPECT_NE(device.run({"explain", "get", "//counters"}).output.find("/lldp/state/counters"),
              std::string::npos);
}

TEST(APathInBrackets, IsRefusedAsItWasTyped) {
    const Outcome outcome = run_yfw({.arguments = {"get", "[/lldp]"}});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.errors.find("[/lldp]: malformed path"), std::string::npos) << outcome.errors;
}

TEST(APathThatEndsWithASlash, IsMalformed) {
    const EditedDevice device{configured_device()};
    for (const std::string path : {"/", "//lldp", "/lldp/", "/lldp/config/"}) {
        expect_refused(device.erase(path), {path, "malformed path"}, "invalid-value");
        EXPECT_EQ(run_yfw({.arguments = {"get", path}}).status, 2) << path;
    }
}

TEST(TheValueOfAnOption, IsNotEmpty) {
    for (const std::string option : {"--store", "--device", "--native"}) {
        const Outcome outcome = run_yfw({.arguments = {"get", "/lldp", option, ""}});
        EXPECT_EQ(outcome.status, 2) << option;
        EXPECT_NE(outcome.errors.find(option), std::string::npos) << outcome.errors;
        EXPECT_NE(outcome.errors.find("must not be empty"), std::string::npos) << outcome.errors;
    }
}

struct NumberCase {
    const char *name;
    Strings arguments;
    std::string range;
};

class ANumberOutOfRange : public testing::TestWithParam<NumberCase> {};

TEST_P(ANumberOutOfRange, IsRefusedWithTheRange) {
    const Outcome outcome = run_yfw({.arguments = GetParam().arguments});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.errors.find("a number from " + GetParam().range), std::string::npos) << outcome.errors;
    EXPECT_LT(outcome.errors.size(), 150U) << outcome.errors;
}

INSTANTIATE_TEST_SUITE_P(
    Of, ANumberOutOfRange,
    testing::Values(NumberCase{"Sessions", {"serve", "--max-sessions", "-1"}, "0 to 4294967295"},
                    NumberCase{"Octets", {"serve", "--max-message", "0"}, "1 to 9223372036854775807"},
                    NumberCase{"AFraction", {"serve", "--max-message", "1.5"}, "1 to 9223372036854775807"},
                    NumberCase{"HelloTimeout", {"serve", "--hello-timeout", "0"}, "1 to 3600"},
                    NumberCase{"Port", {"serve", "--port", "65536"}, "0 to 65535"},
                    NumberCase{"NoPort", {"serve", "--port", ""}, "0 to 65535"},
                    NumberCase{"ACommit", {"show", "-1"}, "0 to 9223372036854775807"}),
    [](const auto &number) { return number.param.name; });

TEST(ARecoveryUser, WhoDoesNotExistIsRefused) {
    const Outcome outcome = run_yfw({.arguments = {"serve", "--recovery-user", "no-such-user"}});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.errors.find("no user \"no-such-user\""), std::string::npos) << outcome.errors;
}

// --- files of changes ---

TEST(AFileOfChanges, ReadsDoubleQuotesAsAShellDoes) {
    const EditedDevice device{empty_device()};
    const std::string file = device.directory().add("changes", "set " + description +
                                                                   R"( "\$a \`b\` \"c\" \\ \d")"
                                                                   "\n");
    expect_committed(device.run({"commit", "-f", file}));
    EXPECT_EQ(device.values("/*/*/*[local-name()='system-description']"), Strings{R"($a `b` "c" \ \d)"});
}

TEST(AFileOfChanges, MayBeginWithAByteOrderMark) {
    const EditedDevice device{empty_device()};
    const std::string file = device.directory().add("changes", "\xef\xbb\xbfset " + description + " x\n");
    expect_committed(device.run({"commit", "-f", file}));
}

TEST(AFileOfChanges, ThatIsADirectoryIsRefusedAsSuch) {
    const EditedDevice device{empty_device()};
    const std::string directory = device.directory().path().string();
    expect_refused(device.run({"commit", "-f", directory}), {directory, "is a directory"}, "invalid-value");
    expect_refused(device.run({"edit", directory}), {directory, "is a directory"}, "invalid-value");
}

TEST(ADocument, ThatIsTooLargeIsRefused) {
    const EditedDevice device{empty_device()};
    const std::string file = device.directory().add("changes", "");
    std::filesystem::resize_file(file, std::uintmax_t{20} << 30);
    for (const std::string &large : {file, std::string("/dev/zero")})
        for (const Strings &command : {Strings{"commit", "-f"}, Strings{"edit"}}) {
            Strings arguments = command;
            arguments.push_back(large);
            expect_refused(device.run(arguments), {large, "is larger than 64 MiB"}, "invalid-value");
        }
}

TEST(AFileOfChanges, MayBeAPipe) {
    const EditedDevice device{empty_device()};
    const Program commit =
        program_under_test({"commit", "--device", (device.directory().path() / "device").string(), "--store",
                            device.store().string(), "-f", "/dev/stdin"});
    const Finished finished = yfw::run(commit, "set " + description + " piped\n", std::chrono::seconds(60));
    EXPECT_EQ(finished.status, 0) << finished.errors;
    EXPECT_EQ(device.values("/*/*/*[local-name()='system-description']"), Strings{"piped"});
}

// --- limits and lines ---

// Characters of two octets each.
std::string wide(size_t characters) {
    std::string text;
    for (size_t i = 0; i < characters; i++)
        text += "\xc3\xa9";
    return text;
}

TEST(ATextBeyond255Octets, IsRefusedOnARecordedDevice) {
    const EditedDevice device{empty_device()};
    for (const std::string leaf : {"system-name", "system-description", "chassis-id"}) {
        const std::string path = "/lldp/config/" + leaf;
        expect_refused(device.set(path, wide(128)), {path, "255 octets"}, "invalid-value");
    }
    expect_committed(device.set("/lldp/config/system-name", wide(127) + "x"));
    expect_committed(device.set(description, wide(127)));
}

TEST(TheDifference, IsSafeForATerminal) {
    const EditedDevice device{empty_device()};
    const Strings set{"set", "--", description, "a\nb\x7f\xe2\x80\xae"};
    Strings dry_run = set;
    dry_run.insert(dry_run.begin() + 1, "--dry-run");
    for (const Strings &command : {dry_run, set}) {
        const Outcome outcome = device.run(command);
        EXPECT_NE(outcome.output.find(R"(a\x0ab\x7f\u202e)"), std::string::npos)
            << command[0] << outcome.output << outcome.errors;
    }
}

class ADaemonThatIsDown : public testing::Test {
protected:
    Outcome run(Strings command) const {
        const Strings device{"--device", "lldpd:" + (directory_.path() / "socket").string(), "--store",
                             (directory_.path() / "store").string()};
        command.insert(command.end(), device.begin(), device.end());
        return run_yfw({.arguments = command});
    }

    // One line that says what is wrong.
    static void expect_failure(const Outcome &outcome) {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
        EXPECT_NE(outcome.errors.find("cannot connect"), std::string::npos) << outcome.errors;
    }

private:
    const TemporaryDirectory directory_;
};

TEST_F(ADaemonThatIsDown, HasAStatusThatTellsWhatIsKnown) {
    const Outcome outcome = run({"status"});
    EXPECT_EQ(outcome.output.substr(0, 8), "device  ") << outcome.errors;
    EXPECT_NE(outcome.output.find("drift   unknown: the device cannot be read\n"), std::string::npos)
        << outcome.output;
    expect_failure(outcome);
}

TEST_F(ADaemonThatIsDown, HasAnUnknownDriftInJson) {
    const Outcome outcome = run({"status", "--json"});
    EXPECT_NE(outcome.output.find("\"drift\": null"), std::string::npos) << outcome.output;
    expect_failure(outcome);
}

TEST_F(ADaemonThatIsDown, IsNotSaidToBeWithoutDrift) {
    for (const Strings &command : {Strings{"drift"}, Strings{"drift", "--json"}}) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.output, "");
        expect_failure(outcome);
    }
}

} // namespace
} // namespace yfw::test
