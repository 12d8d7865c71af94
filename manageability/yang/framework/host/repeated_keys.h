// Which entries of a list have the keys of an earlier one.
#ifndef YFW_HOST_REPEATED_KEYS_H
#define YFW_HOST_REPEATED_KEYS_H

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/answer_tree.h"

namespace yfw::host {

// Keys are compared as they are when their entry is asked about. The tree has to outlive it.
class RepeatedKeys {
public:
    // Whether an entry with these keys was asked about before.
    bool repeats(const AnswerEntry &entry);
    // For all keys that were repeated, in that order, how often.
    std::vector<size_t> counts() const;

private:
    struct Keys {
        std::string_view text;
        size_t repeated = 0;
    };

    std::string_view text_of(const AnswerEntry &entry);
    Keys *find(std::string_view text);

    std::vector<Keys> seen_;
    std::unordered_map<std::string_view, size_t> places_; // in `seen_`; empty while that is short
    std::vector<size_t> repeated_;                        // places
    std::deque<std::string> texts_;                       // of several keys
};

} // namespace yfw::host

#endif
