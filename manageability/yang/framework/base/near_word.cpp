#include "base/near_word.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <vector>

namespace yfw {
namespace {

// How many characters are added, left out, replaced or swapped with the next one; letter case does not count.
size_t distance(std::string_view a, std::string_view b) {
    const auto same = [&](size_t i, size_t j) {
        return std::tolower(static_cast<unsigned char>(a[i])) == std::tolower(static_cast<unsigned char>(b[j]));
    };
    std::vector<size_t> before, last, row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); i++) {
        before = std::move(last);
        last = row;
        row[0] = i + 1;
        for (size_t j = 0; j < b.size(); j++) {
            row[j + 1] = std::min({last[j] + (same(i, j) ? 0 : 1), last[j + 1] + 1, row[j] + 1});
            if (i > 0 && j > 0 && same(i, j - 1) && same(i - 1, j))
                row[j + 1] = std::min(row[j + 1], before[j - 1] + 1);
        }
    }
    return row.back();
}

} // namespace

NearWord::NearWord(std::string_view word) : word_(word), least_(std::max<size_t>(1, word.size() / 3) + 1) {}

void NearWord::consider(std::string_view candidate) {
    const size_t found = distance(word_, candidate);
    if (found < least_ && found < word_.size()) {
        found_ = candidate;
        least_ = found;
    }
}

} // namespace yfw
