#include "yang/path_syntax.h"

#include <cctype>

#include "base/error.h"

namespace yfw::yang {
namespace {

using Kind = PathWord::Kind;

constexpr std::string_view any_node = "*";
constexpr std::string_view any_depth = "...";

bool is_name_character(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_' || c == '.';
}

class Parser {
public:
    Parser(std::string_view text, PathGrammar grammar)
        : text_(text), is_typed_(grammar == PathGrammar::typed) {}

    std::vector<PathWord> parse() {
        std::vector<PathWord> words;
        if (next() != '/')
            fail("\"/\"");
        while (at_ < text_.size()) {
            const bool takes_conditions = words.empty() || words.back().kind != Kind::any_depth;
            expect('/', takes_conditions ? "\"/\" or \"[\"" : "\"/\"");
            if (is_typed_ && next() == '/')
                words.push_back({Kind::any_depth, {}, {}, at_++});
            words.push_back(parse_word());
        }
        return words;
    }

private:
    [[noreturn]] void fail(const std::string &expected) const { refuse_malformed_path(text_, at_, expected); }

    // NUL at the end.
    char next() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    void expect(char c, const char *expected) {
        if (at_ >= text_.size() || text_[at_] != c)
            fail(expected);
        at_++;
    }

    void skip_blanks() {
        while (next() == ' ')
            at_++;
    }

    std::string_view parse_identifier() {
        const size_t start = at_;
        while (at_ < text_.size() && is_name_character(text_[at_]))
            at_++;
        if (at_ == start)
            fail("a node name");
        return text_.substr(start, at_ - start);
    }

    PathName parse_name() {
        const std::string_view first = parse_identifier();
        if (next() != ':')
            return {{}, first};
        at_++;
        return {first, parse_identifier()};
    }

    PathWord parse_word() {
        PathWord word{Kind::name, {}, {}, at_};
        if (is_typed_ && next() == any_node.front()) {
            word.kind = Kind::any_node;
            at_++;
        } else {
            word.name = parse_name();
            if (is_typed_ && word.name.module.empty() && word.name.name == any_depth)
                return {Kind::any_depth, {}, {}, word.at};
        }
        while (next() == '[')
            word.conditions.push_back(parse_condition());
        return word;
    }

    // "." alone: names may contain dots, too.
    bool takes_dot() {
        if (next() != '.' || (at_ + 1 < text_.size() && is_name_character(text_[at_ + 1])))
            return false;
        at_++;
        return true;
    }

    PathCondition parse_condition() {
        expect('[', "\"[\"");
        skip_blanks();
        PathCondition condition;
        condition.is_own = takes_dot();
        if (!condition.is_own)
            condition.leaf = parse_name();
        skip_blanks();
        expect('=', "\"=\"");
        skip_blanks();
        condition.value = next() == '\'' || next() == '"' ? parse_literal() : parse_bare_value();
        skip_blanks();
        expect(']', "\"]\"");
        return condition;
    }

    std::string parse_literal() {
        const char quote = text_[at_++];
        std::string value;
        for (; at_ < text_.size(); at_++) {
            if (text_[at_] == quote) {
                at_++;
                if (at_ >= text_.size() || text_[at_] != quote)
                    return value;
            }
            value += text_[at_];
        }
        fail("the closing quote");
    }

    // Up to the bracket that ends the condition: one before another word, another condition or the end. So a
    // value may have brackets in it, as a shell leaves one whose quotes it has removed.
    std::optional<std::string> parse_bare_value() {
        if (!is_typed_)
            fail("a quoted value");
        size_t end = text_.find(']', at_);
        while (end != std::string_view::npos && end + 1 < text_.size() && text_[end + 1] != '/' &&
               text_[end + 1] != '[')
            end = text_.find(']', end + 1);
        if (end == std::string_view::npos)
            refuse_unended_value();
        std::string_view value = text_.substr(at_, end - at_);
        value = value.substr(0, value.find_last_not_of(' ') + 1);
        if (value.empty())
            fail("a value");
        at_ = end;
        return value == any_node ? std::nullopt : std::optional(std::string(value));
    }

    [[noreturn]] void refuse_unended_value() {
        const size_t bracket = text_.find(']', at_);
        at_ = bracket == std::string_view::npos ? text_.size() : bracket + 1;
        fail(bracket == std::string_view::npos ? "\"]\"" : "\"/\" or \"[\"");
    }

    std::string_view text_;
    bool is_typed_;
    size_t at_ = 0;
};

} // namespace

std::vector<PathWord> read_path_words(std::string_view text, PathGrammar grammar) {
    return Parser(text, grammar).parse();
}

void refuse_malformed_path(std::string_view text, size_t at, const std::string &expected) {
    throw Error(ErrorTag::invalid_value, std::string(text),
                "malformed path at character " + std::to_string(at + 1) + ": expected " + expected);
}

} // namespace yfw::yang
