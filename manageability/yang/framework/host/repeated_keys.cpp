#include "host/repeated_keys.h"

#include <algorithm>

namespace yfw::host {
namespace {

// Comparing so many texts takes no longer than to look one up.
constexpr size_t longest_searched = 8;

} // namespace

std::string_view RepeatedKeys::text_of(const AnswerEntry &entry) {
    const std::vector<const AnswerNode *> &keys = entry.schema->keys;
    if (keys.size() != 1)
        return texts_.emplace_back(keys_of(entry));
    const char *text = entry.slots[keys.front()->index].text;
    return text != nullptr ? text : "";
}

RepeatedKeys::Keys *RepeatedKeys::find(std::string_view text) {
    if (seen_.size() > longest_searched) {
        const auto place = places_.find(text);
        return place != places_.end() ? &seen_[place->second] : nullptr;
    }
    const auto found =
        std::find_if(seen_.begin(), seen_.end(), [&](const Keys &keys) { return keys.text == text; });
    return found != seen_.end() ? &*found : nullptr;
}

bool RepeatedKeys::repeats(const AnswerEntry &entry) {
    const std::string_view text = text_of(entry);
    if (Keys *seen = find(text)) {
        if (++seen->repeated == 1)
            repeated_.push_back(static_cast<size_t>(seen - seen_.data()));
        return true;
    }
    seen_.reserve(longest_searched);
    seen_.push_back({text});
    if (seen_.size() > longest_searched)
        for (size_t place = places_.size(); place < seen_.size(); place++)
            places_.emplace(seen_[place].text, place);
    return false;
}

std::vector<size_t> RepeatedKeys::counts() const {
    std::vector<size_t> counts;
    for (const size_t place : repeated_)
        counts.push_back(seen_[place].repeated);
    return counts;
}

} // namespace yfw::host
