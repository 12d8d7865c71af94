#include "frontends/cli/commands/edit_script.h"

#include <string_view>

#include "base/error.h"
#include "base/utf8.h"

namespace yfw::cli {
namespace {

constexpr const char *blanks = " \t\r";

std::string trim(const std::string &text) {
    const size_t first = text.find_first_not_of(blanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool is_quoted(const std::string &text) {
    return text.starts_with('"') || text.starts_with('\'');
}

// POSIX.1-2017, Shell Command Language, section 2.2.3.
constexpr std::string_view escaped_in_double_quotes = "$`\"\\";

// Removes and returns the first word without its quotes, as a shell reads it: everything stands for itself in
// single quotes, and a backslash escapes in double quotes. Nothing when a quote is not closed.
std::optional<std::string> take_quoted(std::string &rest) {
    std::string word;
    char quote = '\0';
    size_t at = 0;
    for (; at < rest.size(); at++) {
        const char c = rest[at];
        const bool escapes = c == '\\' && quote != '\'' && at + 1 < rest.size();
        if (quote == '\0' && (c == ' ' || c == '\t'))
            break;
        if (escapes && (quote == '\0' || escaped_in_double_quotes.find(rest[at + 1]) != std::string_view::npos))
            word += rest[++at];
        else if (quote == '\0' && (c == '"' || c == '\''))
            quote = c;
        else if (c == quote)
            quote = '\0';
        else
            word += c;
    }
    if (quote != '\0')
        return std::nullopt;
    rest = trim(rest.substr(at));
    return word;
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

// A path may be quoted as a whole; the quotes within its brackets belong to it.
std::string take_path(std::string &rest, const std::string &place) {
    if (!is_quoted(rest))
        return take_word(rest);
    const std::optional<std::string> path = take_quoted(rest);
    if (!path.has_value())
        throw Error(ErrorTag::invalid_value, place, "the closing quote of the path is missing");
    return *path;
}

// The rest of the line or, where it starts with a quote, the word in quotes.
std::string value_of(std::string rest, const std::string &place) {
    if (!is_quoted(rest))
        return rest;
    const std::optional<std::string> value = take_quoted(rest);
    if (!value.has_value())
        throw Error(ErrorTag::invalid_value, place, "the closing quote of the value is missing");
    if (!rest.empty())
        throw Error(ErrorTag::invalid_value, place, "there is text after the quoted value: " + rest);
    return *value;
}

} // namespace

std::vector<Change> read_script(std::istream &text, const std::string &place) {
    std::vector<Change> changes;
    std::string line;
    for (size_t number = 1; std::getline(text, line); number++) {
        if (number == 1 && line.starts_with(byte_order_mark))
            line.erase(0, byte_order_mark.size());
        const std::string here = place + ":" + std::to_string(number);
        std::string rest = trim(line);
        if (rest.empty() || rest.front() == '#')
            continue;
        const std::string whole = rest;
        const std::string verb = take_word(rest);
        const std::string path = take_path(rest, here);
        if (verb == "set" && !path.empty() && !rest.empty())
            changes.push_back({path, value_of(rest, here)});
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
