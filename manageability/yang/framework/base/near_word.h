// What somebody may have meant who typed an unknown word.
#ifndef YFW_BASE_NEAR_WORD_H
#define YFW_BASE_NEAR_WORD_H

#include <cstddef>
#include <string>
#include <string_view>

namespace yfw {

// Finds the candidate that is spelled most like a word: few characters are added, left out, replaced or swapped
// with the next one. Letter case does not count.
class NearWord {
public:
    // The word must outlive this object.
    explicit NearWord(std::string_view word);

    void consider(std::string_view candidate);

    // Empty when no candidate comes close. Of candidates that come as close, it is the first.
    const std::string &found() const { return found_; }

private:
    std::string_view word_;
    size_t least_;
    std::string found_;
};

} // namespace yfw

#endif
