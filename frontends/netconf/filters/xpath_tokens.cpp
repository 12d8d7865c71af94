#include "frontends/netconf/filters/xpath_tokens.h"

#include <array>
#include <cctype>

namespace yfw::netconf {
namespace {

using Kind = XPathToken::Kind;

bool is_digit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

// Names may be in any script: any byte beyond ASCII is accepted.
bool begins_name(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_' ||
           (static_cast<unsigned char>(c) & 0x80) != 0;
}

bool continues_name(char c) {
    return begins_name(c) || is_digit(c) || c == '-' || c == '.';
}

bool is_space(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

class Tokens {
public:
    explicit Tokens(std::string_view text) : text_(text) {}

    std::vector<XPathToken> take_all() {
        for (skip_space(); at_ < text_.size(); skip_space())
            take_one();
        return std::move(tokens_);
    }

private:
    void skip_space() {
        while (at_ < text_.size() && is_space(text_[at_]))
            at_++;
    }

    char peek(size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }

    void add(Kind kind, size_t length) {
        tokens_.push_back({kind, text_.substr(at_, length)});
        at_ += length;
    }

    // Whether an operand precedes this position, so that a name or "*" is an operator.
    bool follows_operand() const {
        if (tokens_.empty() || tokens_.back().kind == Kind::operation)
            return false;
        const XPathToken &last = tokens_.back();
        return last.kind != Kind::symbol || last.is(")") || last.is("]") || last.is(".") || last.is("..");
    }

    void take_one() {
        const char c = peek();
        if (c == '\'' || c == '"')
            take_literal(c);
        else if (is_digit(c) || (c == '.' && is_digit(peek(1))))
            add(Kind::number, length_of_number());
        else if (begins_name(c))
            take_name();
        else if (c == '*')
            add(follows_operand() ? Kind::operation : Kind::name, 1);
        else if (c == '$')
            add(Kind::variable, 1 + length_of_name(at_ + 1));
        else
            add(Kind::symbol, length_of_symbol());
    }

    void take_literal(char quote) {
        const size_t end = text_.find(quote, at_ + 1);
        add(Kind::literal, (end == std::string_view::npos ? text_.size() : end + 1) - at_);
    }

    size_t length_of_number() const {
        size_t length = 0;
        while (is_digit(peek(length)) || peek(length) == '.')
            length++;
        return length;
    }

    size_t length_of_name(size_t from) const {
        size_t end = from;
        while (end < text_.size() && continues_name(text_[end]))
            end++;
        return end - from;
    }

    size_t length_of_symbol() const {
        constexpr std::array<std::string_view, 6> pairs{"//", "::", "..", "!=", "<=", ">="};
        for (const std::string_view pair : pairs)
            if (text_.substr(at_, 2) == pair)
                return 2;
        return 1;
    }

    // Including its prefix.
    size_t length_of_qualified_name() const {
        const size_t first = length_of_name(at_);
        if (peek(first) != ':' || peek(first + 1) == ':')
            return first;
        return first + 1 + (peek(first + 1) == '*' ? 1 : length_of_name(at_ + first + 1));
    }

    void take_name() {
        if (follows_operand())
            return add(Kind::operation, length_of_name(at_));
        const size_t length = length_of_qualified_name();
        size_t next = at_ + length;
        while (next < text_.size() && is_space(text_[next]))
            next++;
        if (text_.substr(next, 2) == "::")
            add(Kind::axis, length);
        else
            add(text_.substr(next, 1) == "(" ? Kind::function : Kind::name, length);
    }

    std::string_view text_;
    size_t at_ = 0;
    std::vector<XPathToken> tokens_;
};

// Attribute and namespace-axis names stay unchanged.
bool names_element(const std::vector<XPathToken> &tokens, size_t index) {
    if (index > 0 && tokens[index - 1].is("@"))
        return false;
    const bool has_axis = index > 1 && tokens[index - 1].is("::");
    return !has_axis || (tokens[index - 2].text != "attribute" && tokens[index - 2].text != "namespace");
}

} // namespace

std::vector<XPathToken> xpath_tokens(std::string_view expression) {
    return Tokens(expression).take_all();
}

std::string with_names_of_any_namespace(std::string_view expression) {
    const std::vector<XPathToken> tokens = xpath_tokens(expression);
    std::string out;
    size_t done = 0;
    for (size_t i = 0; i < tokens.size(); i++) {
        const XPathToken &token = tokens[i];
        const bool is_plain =
            token.kind == Kind::name && token.text.find_first_of(":*") == std::string_view::npos;
        if (!is_plain || !names_element(tokens, i))
            continue;
        const auto at = static_cast<size_t>(token.text.data() - expression.data());
        out.append(expression, done, at - done).append("*[local-name()='").append(token.text).append("']");
        done = at + token.text.size();
    }
    return out.append(expression.substr(done));
}

} // namespace yfw::netconf
