#include "frontends/cli/commands/edit_script.h"

#include "base/error.h"

namespace yfw::cli {
namespace {

constexpr const char *blanks = " \t\r";

std::string trim(const std::string &text) {
    const size_t first = text.find_first_not_of(blanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Removes and returns the first word; blanks inside brackets or quotes belong to it.
std::string take_word(std::string &rest) {
    rest = trim(rest);
    size_t brackets = 0;
    char quote = '\0';
    size_t end = 0;
    for (; end < rest.size(); end++) {
        const char c = rest[end];
        if (quote != '\0')
            quote = c == quote ? '\0' : quote;
        else if (brackets > 0 && (c == '\'' || c == '"'))
            quote = c;
        else if (c == '[')
            brackets++;
        else if (c == ']' && brackets > 0)
            brackets--;
        else if (brackets == 0 && (c == ' ' || c == '\t'))
            break;
    }
    const std::string word = rest.substr(0, end);
    rest = trim(rest.substr(end));
    return word;
}

[[noreturn]] void fail(const std::string &place, const std::string &found) {
    throw Error(ErrorTag::invalid_value, place,
                "expected \"set PATH VALUE\" or \"delete PATH\", found \"" + found + "\"");
}

} // namespace

std::vector<Change> read_script(std::istream &text, const std::string &place) {
    std::vector<Change> changes;
    std::string line;
    for (size_t number = 1; std::getline(text, line); number++) {
        const std::string here = place + ":" + std::to_string(number);
        std::string rest = trim(line);
        if (rest.empty() || rest.front() == '#')
            continue;
        const std::string whole = rest;
        const std::string verb = take_word(rest);
        const std::string path = take_word(rest);
        if (verb == "set" && !path.empty() && !rest.empty())
            changes.push_back({path, rest});
        else if (verb == "delete" && !path.empty() && rest.empty())
            changes.push_back({path, std::nullopt});
        else
            fail(here, whole);
    }
    if (changes.empty())
        throw Error(ErrorTag::missing_element, place, "contains no changes");
    return changes;
}

std::vector<Change> read_words(const std::vector<std::string> &words) {
    std::vector<Change> changes;
    for (size_t i = 0; i < words.size();) {
        if (words[i] == "set" && i + 2 < words.size()) {
            changes.push_back({words[i + 1], words[i + 2]});
            i += 3;
        } else if (words[i] == "delete" && i + 1 < words.size()) {
            changes.push_back({words[i + 1], std::nullopt});
            i += 2;
        } else {
            fail("", words[i]);
        }
    }
    return changes;
}

} // namespace yfw::cli
