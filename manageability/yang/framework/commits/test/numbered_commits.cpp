#include "numbered_commits.h"

namespace yfw::commits::test {
namespace {

// Fills more than one page of the file.
constexpr int repetitions = 2000;

std::string text_of(const char *kind, int64_t number) {
    const std::string line = std::string(kind) + " " + std::to_string(number) + "\n";
    std::string text;
    for (int i = 0; i < repetitions; ++i)
        text += line;
    return text;
}

} // namespace

Commit commit_with(const std::string &comment, const std::string &configuration) {
    Commit commit;
    commit.comment = comment;
    commit.configuration = configuration;
    return commit;
}

std::optional<Commit> keep(CommitLog &store, const Commit &commit) {
    return store.commit([&commit](const std::optional<Commit> &) { return std::optional(commit); });
}

Commit numbered_commit(const std::optional<Commit> &last) {
    const int64_t number = last.has_value() ? last->number + 1 : 0;
    Commit commit;
    commit.who = "commit " + std::to_string(number);
    commit.comment = commit.who;
    commit.edit = text_of("edit", number);
    commit.difference = text_of("difference", number);
    commit.configuration = text_of("configuration", number);
    commit.openconfig = text_of("openconfig", number);
    return commit;
}

int64_t keep_numbered(CommitLog &store) {
    const std::optional<Commit> kept =
        store.commit([](const std::optional<Commit> &last) { return std::optional(numbered_commit(last)); });
    return kept.has_value() ? kept->number : -1;
}

testing::AssertionResult is_of_one_piece(const Commit &commit) {
    Commit before;
    before.number = commit.number - 1;
    const Commit wanted = numbered_commit(commit.number > 0 ? std::optional(before) : std::nullopt);
    if (commit.who == wanted.who && commit.comment == wanted.comment && commit.edit == wanted.edit &&
        commit.difference == wanted.difference && commit.configuration == wanted.configuration &&
        commit.openconfig.value_or(*wanted.openconfig) == *wanted.openconfig)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "commit " << commit.number << " has texts of another commit";
}

testing::AssertionResult is_gapless(const std::vector<Commit> &history) {
    int64_t expected = static_cast<int64_t>(history.size());
    for (const Commit &commit : history)
        if (commit.number != --expected)
            return testing::AssertionFailure()
                   << "commit " << commit.number << " where " << expected << " belongs";
    return testing::AssertionSuccess();
}

testing::AssertionResult is_sound(const CommitLog &store, int64_t reported) {
    const std::optional<Commit> last = store.last();
    const int64_t number = last.has_value() ? last->number : -1;
    if (number != reported && number != reported + 1)
        return testing::AssertionFailure() << number << " is the last commit, " << reported << " was reported";
    const std::vector<Commit> history = store.history();
    if (static_cast<int64_t>(history.size()) != number + 1)
        return testing::AssertionFailure() << history.size() << " commits, the last one is " << number;
    if (const testing::AssertionResult gapless = is_gapless(history); !gapless)
        return gapless;
    return last.has_value() ? is_of_one_piece(*last) : testing::AssertionSuccess();
}

} // namespace yfw::commits::test
