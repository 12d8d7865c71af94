// A queue in which users take turns.
#ifndef YFW_BASE_FAIR_QUEUE_H
#define YFW_BASE_FAIR_QUEUE_H

#include <algorithm>
#include <deque>
#include <string>
#include <utility>

namespace yfw {

// How long a user waits depends on the number of users, not on how much each of them has queued. A user's own
// items stay in order. Not thread-safe.
template <class Item> class FairQueue {
public:
    bool empty() const { return turns_.empty(); }

    void push(const std::string &user, Item item) {
        auto turn =
            std::find_if(turns_.begin(), turns_.end(), [&](const Turn &one) { return one.user == user; });
        if (turn == turns_.end())
            turn = turns_.insert(turns_.end(), Turn{user, {}});
        turn->items.push_back(std::move(item));
    }

    // Must not be empty. The user goes to the end of the line.
    Item pop() {
        Turn turn = std::move(turns_.front());
        turns_.pop_front();
        Item item = std::move(turn.items.front());
        turn.items.pop_front();
        if (!turn.items.empty())
            turns_.push_back(std::move(turn));
        return item;
    }

    void clear() { turns_.clear(); }

private:
    struct Turn {
        std::string user;
        std::deque<Item> items; // never empty
    };
    std::deque<Turn> turns_;
};

} // namespace yfw

#endif
