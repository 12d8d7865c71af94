// What the store keeps of a commit.
#include <cstdint>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "numbered_commits.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

class AStore : public testing::Test {
protected:
    std::vector<std::string> comments() const {
        std::vector<std::string> found;
        for (const Commit &commit : store.history())
            found.push_back(commit.comment);
        return found;
    }

    yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    CommitLog store{file, true};
};

TEST_F(AStore, HasNothingAtFirst) {
    EXPECT_FALSE(store.last().has_value());
    EXPECT_FALSE(store.find(0).has_value());
    EXPECT_TRUE(store.history().empty());
}

TEST_F(AStore, NumbersItsCommitsFromZero) {
    for (int64_t number = 0; number < 5; ++number) {
        EXPECT_EQ(keep_numbered(store), number);
        EXPECT_EQ(store.last().value().number, number);
    }
    EXPECT_TRUE(is_gapless(store.history()));
    EXPECT_EQ(store.history().size(), 5U);
}

TEST_F(AStore, NumbersACommitItselfWhateverItIsGiven) {
    Commit commit = commit_with("given a number and a time", "a");
    commit.number = 17;
    commit.time = "yesterday";
    const Commit kept = keep(store, commit).value();
    EXPECT_EQ(kept.number, 0);
    EXPECT_NE(kept.time, "yesterday");
    EXPECT_FALSE(store.find(17).has_value());
}

TEST_F(AStore, TellsTheTimeInUtc) {
    const std::time_t before = std::time(nullptr);
    const Commit kept = keep(store, commit_with("now", "a")).value();
    const std::time_t after = std::time(nullptr);
    std::tm parts{};
    const char *zone = strptime(kept.time.c_str(), "%Y-%m-%dT%H:%M:%S", &parts);
    ASSERT_NE(zone, nullptr) << kept.time;
    EXPECT_TRUE(std::string(zone) == "Z" || std::string(zone) == "+00:00") << kept.time;
    EXPECT_GE(timegm(&parts), before);
    EXPECT_LE(timegm(&parts), after);
    EXPECT_EQ(store.last().value().time, kept.time);
}

TEST_F(AStore, ListsTheNewestCommitFirstWithoutItsTexts) {
    keep_numbered(store);
    keep_numbered(store);
    const std::vector<Commit> history = store.history();
    ASSERT_EQ(history.size(), 2U);
    EXPECT_EQ(history[0].number, 1);
    for (const Commit &commit : history) {
        EXPECT_EQ(commit.who, "commit " + std::to_string(commit.number));
        EXPECT_EQ(commit.comment, "commit " + std::to_string(commit.number));
        EXPECT_NE(commit.time, "");
        EXPECT_EQ(commit.edit + commit.difference + commit.configuration, "");
        EXPECT_EQ(commit.openconfig, std::nullopt);
    }
}

TEST_F(AStore, FindsNoCommitThatIsNotThere) {
    keep_numbered(store);
    for (const int64_t number : {INT64_MIN, INT64_C(-1), INT64_C(1), INT64_MAX})
        EXPECT_FALSE(store.find(number).has_value()) << number;
}

TEST_F(AStore, KeepsItsCommitsWhenItIsOpenedAgain) {
    keep_numbered(store);
    keep_numbered(store);
    const CommitLog again(file, false);
    EXPECT_TRUE(is_sound(again, 1));
    EXPECT_TRUE(is_of_one_piece(again.find(0).value()));
}

TEST_F(AStore, HandsTheLastCommitToTheOneThatMakesTheNext) {
    EXPECT_EQ(keep_numbered(store), 0);
    std::optional<Commit> seen;
    store.commit([&seen](const std::optional<Commit> &last) {
        seen = last;
        return std::optional(commit_with("next", "b"));
    });
    ASSERT_TRUE(seen.has_value());
    EXPECT_EQ(seen->number, 0);
    EXPECT_TRUE(is_of_one_piece(*seen));
}

TEST_F(AStore, HandsNothingToTheOneThatMakesTheFirst) {
    bool called = false;
    store.commit([&called](const std::optional<Commit> &last) {
        called = true;
        EXPECT_FALSE(last.has_value());
        return std::optional(commit_with("first", "a"));
    });
    EXPECT_TRUE(called);
}

TEST_F(AStore, KeepsNothingWhenNothingIsGiven) {
    keep(store, commit_with("first", "a"));
    EXPECT_FALSE(store.commit([](const auto &) { return std::optional<Commit>(); }).has_value());
    EXPECT_EQ(comments(), std::vector<std::string>{"first"});
    EXPECT_EQ(keep(store, commit_with("second", "b")).value().number, 1);
}

TEST_F(AStore, KeepsNothingWhenTheMakerThrows) {
    keep(store, commit_with("first", "a"));
    const auto refuse = [](const std::optional<Commit> &) -> std::optional<Commit> {
        throw std::invalid_argument("refused");
    };
    EXPECT_THROW(store.commit(refuse), std::invalid_argument);
    EXPECT_EQ(comments(), std::vector<std::string>{"first"});
    CommitLog other(file, false);
    EXPECT_EQ(keep(other, commit_with("of another", "b")).value().number, 1);
    EXPECT_EQ(keep(store, commit_with("third", "c")).value().number, 2);
}

TEST_F(AStore, GoesThroughItsStepsInOrder) {
    std::vector<Step> steps;
    store.on_step([&steps](Step step) { steps.push_back(step); });
    keep(store, commit_with("first", "a"));
    EXPECT_EQ(steps,
              (std::vector<Step>{Step::begun, Step::read, Step::prepared, Step::inserted, Step::committed}));
}

TEST_F(AStore, KeepsACommitWithoutItsTextInOpenConfig) {
    EXPECT_EQ(keep(store, commit_with("a", "a")).value().openconfig, std::nullopt);
    EXPECT_EQ(store.last().value().openconfig, std::nullopt);
    EXPECT_EQ(store.find(0).value().openconfig, std::nullopt);
}

TEST_F(AStore, RefusesACommitWithinACommit) {
    const auto commit_again = [this](const std::optional<Commit> &) {
        return keep(store, commit_with("b", "b"));
    };
    EXPECT_THROW(store.commit(commit_again), StoreError);
    EXPECT_TRUE(store.history().empty());
    EXPECT_EQ(keep_numbered(store), 0);
}

struct TextCase {
    const char *name;
    std::string text;
};

class ATextOfACommit : public AStore, public testing::WithParamInterface<TextCase> {};

TEST_P(ATextOfACommit, ComesBackAsItWas) {
    Commit commit;
    commit.who = commit.comment = commit.edit = commit.difference = commit.configuration = GetParam().text;
    commit.openconfig = GetParam().text;
    keep(store, commit);
    const CommitLog again(file, false);
    for (const Commit &found : {again.last().value(), again.find(0).value()}) {
        EXPECT_EQ(found.number, 0);
        for (const std::string *text :
             {&found.who, &found.comment, &found.edit, &found.difference, &found.configuration})
            EXPECT_TRUE(*text == GetParam().text);
        EXPECT_TRUE(found.openconfig == GetParam().text);
    }
}

INSTANTIATE_TEST_SUITE_P(With, ATextOfACommit,
                         testing::Values(TextCase{"Nothing", ""}, TextCase{"Lines", "a\nb\r\n\tc\n\n"},
                                         TextCase{"Quotes", "'); DROP TABLE commits; --\"`"},
                                         TextCase{"ManyScripts", "Zürich 東京 Ελλάδα \xf0\x9f\x8c\x90"},
                                         TextCase{"BytesThatAreNoText", "\xff\xfe\x80"},
                                         TextCase{"OnlyDigits", "00012"},
                                         TextCase{"EightMegabytes", std::string(8U << 20U, 'x')}),
                         [](const auto &text) { return text.param.name; });

} // namespace
} // namespace yfw::commits::test
