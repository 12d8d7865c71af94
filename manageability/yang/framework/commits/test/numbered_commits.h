// Commits whose texts tell which commit they belong to, so that a mix of two is seen.
#ifndef COMMITS_TEST_NUMBERED_COMMITS_H
#define COMMITS_TEST_NUMBERED_COMMITS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commits/commit_log.h"

namespace yfw::commits::test {

// A commit with these texts and nothing else.
Commit commit_with(const std::string &comment, const std::string &configuration);

// Stores `commit` whatever the last one is.
std::optional<Commit> keep(CommitLog &store, const Commit &commit);

// The commit after `last`; every text of it is made of its number alone.
Commit numbered_commit(const std::optional<Commit> &last);

// Stores the next numbered commit and gives its number.
int64_t keep_numbered(CommitLog &store);

// Whether every text of the commit is the one that its number calls for.
testing::AssertionResult is_of_one_piece(const Commit &commit);

// Whether the history runs from the last number down to 0 with none left out.
testing::AssertionResult is_gapless(const std::vector<Commit> &history);

// Whether a store holds whole numbered commits, without a gap, up to `reported` at least and one further at
// most: the commit that was under way.
testing::AssertionResult is_sound(const CommitLog &store, int64_t reported);

} // namespace yfw::commits::test

#endif
