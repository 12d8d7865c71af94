#include "frontends/cli/completion/shell_line.h"

namespace yfw::cli {
namespace {

constexpr std::string_view escaped_in_double_quotes = "$`\"\\";
// Characters that mean something outside quotes. Brackets and equals signs do where files match or a word
// begins; people do not escape them in paths either.
constexpr std::string_view escaped_outside = " \t\"'\\$`&|;<>()*?!#~";

class Reader {
public:
    Reader(std::string_view line, std::string_view breaks) : line_(line), breaks_(breaks) {}

    ShellLine read() {
        for (; at_ < line_.size(); at_++)
            take(line_[at_]);
        read_.words.push_back(word_);
        return std::move(read_);
    }

private:
    bool has_next() const { return at_ + 1 < line_.size(); }

    void take(char c) {
        char &quote = read_.open_quote;
        if (quote == '\0' && (c == ' ' || c == '\t')) {
            end_word();
        } else if (quote == '\0' && (c == '"' || c == '\'')) {
            quote = c;
            in_word_ = true;
            read_.kept = word_.size(); // a quote begins what the shell completes
        } else if (quote != '\0' && c == quote) {
            quote = '\0';
        } else if (c == '\\' && has_next() && escapes(quote, line_[at_ + 1])) {
            add(line_[++at_]);
        } else {
            add(c);
            if (quote == '\0' && breaks_.find(c) != std::string_view::npos)
                read_.kept = word_.size();
        }
    }

    static bool escapes(char quote, char next) {
        return quote == '\0' || (quote == '"' && escaped_in_double_quotes.find(next) != std::string_view::npos);
    }

    void add(char c) {
        word_ += c;
        in_word_ = true;
    }

    void end_word() {
        if (in_word_)
            read_.words.push_back(word_);
        word_.clear();
        in_word_ = false;
        read_.kept = 0;
    }

    std::string_view line_;
    std::string_view breaks_;
    size_t at_ = 0;
    std::string word_;
    bool in_word_ = false;
    ShellLine read_;
};

} // namespace

ShellLine read_shell_line(std::string_view line, std::string_view breaks) {
    return Reader(line, breaks).read();
}

std::string inserted(const ShellLine &line, const std::string &word) {
    if (line.open_quote == '\'')
        return word.substr(line.kept);
    const std::string_view escaped = line.open_quote == '"' ? escaped_in_double_quotes : escaped_outside;
    std::string text;
    for (const char c : word.substr(line.kept)) {
        if (escaped.find(c) != std::string_view::npos)
            text += '\\';
        text += c;
    }
    return text;
}

} // namespace yfw::cli
