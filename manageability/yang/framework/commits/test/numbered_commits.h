// Commits whose texts identify the commit they belong to, so that a mix of two is detected.
#ifndef COMMITS_TEST_NUMBERED_COMMITS_H
#define COMMITS_TEST_NUMBERED_COMMITS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commits/commit_log.h"

namespace yfw::commits::test {

// A commit with only these texts.
Commit commit_with(const std::string &comment, const std::string &configuration);

// Stores `commit`, whatever the last one is.
std::optional<Commit> keep(CommitLog &store, const Commit &commit);

// The commit after `last`; all its texts are derived from its number.
Commit numbered_commit(const std::optional<Commit> &last);

// Stores the next numbered commit and returns its number.
int64_t keep_numbered(CommitLog &store);

// Whether every text of the commit matches its number; that in OpenConfig may be missing.
testing::AssertionResult is_of_one_piece(const Commit &commit);

// Whether the history runs from the last number down to 0 without a gap.
testing::AssertionResult is_gapless(const std::vector<Commit> &history);

// Whether a store holds complete numbered commits, without a gap, up to `reported` or one further: the commit
// in progress.
testing::AssertionResult is_sound(const CommitLog &store, int64_t reported);

} // namespace yfw::commits::test

#endif
