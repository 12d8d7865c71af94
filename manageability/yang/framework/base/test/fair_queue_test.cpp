#include "base/fair_queue.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace yfw {
namespace {

std::vector<std::string> popped(FairQueue<std::string> &queue) {
    std::vector<std::string> all;
    while (!queue.empty())
        all.push_back(queue.pop());
    return all;
}

TEST(AFairQueue, KeepsTheOrderOfOneUser) {
    FairQueue<std::string> queue;
    for (const char *item : {"1", "2", "3"})
        queue.push("alice", item);
    EXPECT_EQ(popped(queue), (std::vector<std::string>{"1", "2", "3"}));
}

TEST(AFairQueue, ServesAUserAfterOneItemOfEachOther) {
    FairQueue<std::string> queue;
    for (const char *item : {"a1", "a2", "a3"})
        queue.push("alice", item);
    queue.push("bob", "b1");
    queue.push("carol", "c1");
    queue.push("bob", "b2");
    EXPECT_EQ(popped(queue), (std::vector<std::string>{"a1", "b1", "c1", "a2", "b2", "a3"}));
}

TEST(AFairQueue, PutsAUserWhoComesBackBehindTheOthers) {
    FairQueue<std::string> queue;
    queue.push("alice", "a1");
    queue.push("bob", "b1");
    EXPECT_EQ(queue.pop(), "a1");
    queue.push("alice", "a2");
    EXPECT_EQ(popped(queue), (std::vector<std::string>{"b1", "a2"}));
}

} // namespace
} // namespace yfw
