// The words of a contract path: absolute, "/"-separated, without predicates.
#ifndef YFW_YANG_PATH_WORDS_H
#define YFW_YANG_PATH_WORDS_H

#include <string_view>

namespace yfw::yang {

// Iterates over the words without copying: while (words.next(word)) ... A trailing slash adds no word.
class PathWords {
public:
    explicit PathWords(std::string_view path) : rest_(path) {}

    bool next(std::string_view &word) {
        while (!rest_.empty() && rest_.front() == '/')
            rest_.remove_prefix(1);
        if (rest_.empty())
            return false;
        const size_t end = rest_.find('/');
        word = rest_.substr(0, end);
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end);
        return true;
    }

private:
    std::string_view rest_;
};

} // namespace yfw::yang

#endif
