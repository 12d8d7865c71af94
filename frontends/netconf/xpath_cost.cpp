#include "frontends/netconf/xpath_cost.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <limits>

namespace yfw::netconf {
namespace {

constexpr size_t deepest = 100; // predicates in predicates

// Axes and functions that lead out of what is below a node; each with or without "-or-self", "-sibling".
constexpr std::array<std::string_view, 8> leading_out{"ancestor",  "descendant", "following", "parent",
                                                      "preceding", "current",    "deref",     "id"};
constexpr std::array<std::string_view, 4> operator_words{"and", "or", "div", "mod"};

bool is_name_character(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-';
}

bool leads_out(std::string_view word) {
    return std::any_of(leading_out.begin(), leading_out.end(), [word](std::string_view known) {
        return word.starts_with(known) && (word.size() == known.size() || word[known.size()] == '-');
    });
}

class CostReader {
public:
    CostReader(std::string_view expression, double nodes) : expression_(expression), nodes_(nodes) {}

    double read_all() {
        double cost = 0;
        for (; at_ < expression_.size(); at_++) // a "]" too many does not end it
            cost += read_level(0);
        return cost;
    }

private:
    // What stands outside predicates, or within one up to its "]".
    double read_level(size_t depth) {
        if (depth > deepest)
            return std::numeric_limits<double>::infinity();
        double scans = 0;
        double predicates = 0;
        begins_path_ = true;
        while (at_ < expression_.size() && expression_[at_] != ']') {
            if (expression_[at_] != '[') {
                scans += read_token() ? 1 : 0;
                continue;
            }
            at_++;
            predicates += read_level(depth + 1);
            at_ += at_ < expression_.size() ? 1 : 0;
            begins_path_ = false;
        }
        return (1 + scans * nodes_) * (1 + predicates);
    }

    // Whether it looks through all data.
    bool read_token() {
        const char c = expression_[at_];
        if (c == '\'' || c == '"')
            return read_text(c);
        return is_name_character(c) ? read_word() : read_sign();
    }

    bool read_text(char quote) {
        at_ = std::min(expression_.find(quote, at_ + 1), expression_.size() - 1) + 1;
        begins_path_ = false;
        return false;
    }

    bool read_word() {
        const size_t begin = at_;
        while (at_ < expression_.size() && is_name_character(expression_[at_]))
            at_++;
        const std::string_view word = expression_.substr(begin, at_ - begin);
        begins_path_ = std::find(operator_words.begin(), operator_words.end(), word) != operator_words.end();
        return leads_out(word);
    }

    bool read_sign() {
        const std::string_view rest = expression_.substr(at_);
        const char c = rest.front();
        const bool is_double = rest.starts_with("..") || rest.starts_with("//");
        const bool is_root = c == '/' && begins_path_;
        at_ += is_double ? 2 : 1;
        // After an operator, a parenthesis or a comma a path begins; white space changes nothing.
        if (std::isspace(static_cast<unsigned char>(c)) == 0)
            begins_path_ = std::string_view("(|,=<>+-*!").find(c) != std::string_view::npos;
        return is_double || is_root;
    }

    std::string_view expression_;
    double nodes_;
    size_t at_ = 0;
    bool begins_path_ = true; // a "/" here is the root
};

} // namespace

double xpath_cost(std::string_view expression, size_t nodes) {
    return CostReader(expression, static_cast<double>(nodes)).read_all();
}

} // namespace yfw::netconf
