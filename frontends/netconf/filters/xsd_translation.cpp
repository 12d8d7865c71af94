// The regular expressions of XML Schema (XSD 1.0 part 2, appendix F) in the syntax of PCRE2. What is the same
// in both is copied; what only PCRE2 knows is refused.
#include <array>
#include <cctype>

#include "frontends/netconf/filters/xsd_pattern.h"

namespace yfw::netconf {
namespace {

constexpr size_t deepest_class = 20;

struct NotXsd {};

// A set of characters, as the content of a class of PCRE2; `others`: all but these.
struct Set {
    std::string content;
    bool others = false;
};

struct Block {
    std::string_view name;
    const char *content;
};

constexpr Block blocks[] = {
    {"BasicLatin", "\\x{0}-\\x{7F}"},
    {"Latin-1Supplement", "\\x{80}-\\x{FF}"},
    {"LatinExtended-A", "\\x{100}-\\x{17F}"},
    {"LatinExtended-B", "\\x{180}-\\x{24F}"},
    {"IPAExtensions", "\\x{250}-\\x{2AF}"},
    {"SpacingModifierLetters", "\\x{2B0}-\\x{2FF}"},
    {"CombiningDiacriticalMarks", "\\x{300}-\\x{36F}"},
    {"Greek", "\\x{370}-\\x{3FF}"},
    {"GreekandCoptic", "\\x{370}-\\x{3FF}"},
    {"Cyrillic", "\\x{400}-\\x{4FF}"},
    {"Armenian", "\\x{530}-\\x{58F}"},
    {"Hebrew", "\\x{590}-\\x{5FF}"},
    {"Arabic", "\\x{600}-\\x{6FF}"},
    {"Devanagari", "\\x{900}-\\x{97F}"},
    {"Thai", "\\x{E00}-\\x{E7F}"},
    {"HangulJamo", "\\x{1100}-\\x{11FF}"},
    {"LatinExtendedAdditional", "\\x{1E00}-\\x{1EFF}"},
    {"GreekExtended", "\\x{1F00}-\\x{1FFF}"},
    {"GeneralPunctuation", "\\x{2000}-\\x{206F}"},
    {"CurrencySymbols", "\\x{20A0}-\\x{20CF}"},
    {"LetterlikeSymbols", "\\x{2100}-\\x{214F}"},
    {"NumberForms", "\\x{2150}-\\x{218F}"},
    {"Arrows", "\\x{2190}-\\x{21FF}"},
    {"MathematicalOperators", "\\x{2200}-\\x{22FF}"},
    {"BoxDrawing", "\\x{2500}-\\x{257F}"},
    {"Hiragana", "\\x{3040}-\\x{309F}"},
    {"Katakana", "\\x{30A0}-\\x{30FF}"},
    {"CJKUnifiedIdeographs", "\\x{4E00}-\\x{9FFF}"},
    {"HangulSyllables", "\\x{AC00}-\\x{D7A3}"},
    {"PrivateUse", "\\x{E000}-\\x{F8FF}"},
    {"HalfwidthandFullwidthForms", "\\x{FF00}-\\x{FFEF}"},
};

// \c and so on; nothing for other letters.
std::optional<Set> set_of(char letter) {
    const bool others = std::isupper(static_cast<unsigned char>(letter)) != 0;
    switch (std::tolower(static_cast<unsigned char>(letter))) {
    case 'd':
        return Set{"\\p{Nd}", others};
    case 's':
        return Set{" \\t\\n\\r", others};
    case 'w':
        return Set{"\\p{L}\\p{M}\\p{N}\\p{S}", others};
    case 'i':
        return Set{"\\p{L}_:", others};
    case 'c':
        return Set{"\\p{L}\\p{Nd}\\p{M}._:\\-", others};
    default:
        return std::nullopt;
    }
}

constexpr const char *any_character = "(?s:.)";

class Translator {
public:
    explicit Translator(std::string_view pattern) : pattern_(pattern) {}

    std::string translate() {
        while (at_ < pattern_.size())
            take_item();
        return std::move(made_);
    }

private:
    char next() const { return at_ < pattern_.size() ? pattern_[at_] : '\0'; }

    char take() {
        if (at_ >= pattern_.size())
            throw NotXsd{};
        return pattern_[at_++];
    }

    static bool is_quantifier(char c) { return c == '*' || c == '+' || c == '?' || c == '{'; }

    void take_item() {
        const char c = take();
        switch (c) {
        case '[':
            made_ += take_class(0);
            break;
        case '\\':
            made_ += take_escape_outside();
            break;
        case '.':
            made_ += "[^\\n\\r]";
            break;
        case '^':
        case '$':
            made_ += '\\';
            made_ += c;
            break;
        case '(':
            if (is_quantifier(next())) // "(?" is an extension
                throw NotXsd{};
            made_ += c;
            break;
        case ']':
        case '}':
            throw NotXsd{};
        default:
            made_ += c;
            if (is_quantifier(c))
                take_rest_of_quantifier(c);
        }
    }

    // "*+" and "*?" are extensions; a "{" that begins no quantifier is a character in PCRE2.
    void take_rest_of_quantifier(char c) {
        if (c == '{')
            take_range();
        if (is_quantifier(next()))
            throw NotXsd{};
    }

    void take_range() {
        take_digits();
        if (next() == ',') {
            made_ += take();
            if (next() != '}')
                take_digits();
        }
        if (take() != '}')
            throw NotXsd{};
        made_ += '}';
    }

    void take_digits() {
        const size_t start = at_;
        while (next() >= '0' && next() <= '9')
            made_ += take();
        if (at_ == start)
            throw NotXsd{};
    }

    // What follows a backslash: a set, or nothing and the character in `single`.
    std::optional<Set> take_escape(std::string &single) {
        const char c = take();
        if (c == 'p' || c == 'P')
            return take_property(c == 'P');
        if (std::optional<Set> set = set_of(c))
            return set;
        constexpr std::string_view characters = "nrt\\|.?*+(){}-[]^$";
        if (characters.find(c) == std::string_view::npos)
            throw NotXsd{};
        single = {'\\', c};
        return std::nullopt;
    }

    Set take_property(bool others) {
        if (take() != '{')
            throw NotXsd{};
        const size_t end = pattern_.find('}', at_);
        if (end == std::string_view::npos)
            throw NotXsd{};
        const std::string_view name = pattern_.substr(at_, end - at_);
        at_ = end + 1;
        if (!name.starts_with("Is")) {
            const bool is_category = name.size() == 1 || name.size() == 2;
            if (!is_category || std::isupper(static_cast<unsigned char>(name[0])) == 0)
                throw NotXsd{};
            return {"\\p{" + std::string(name) + "}", others};
        }
        for (const Block &block : blocks)
            if (name.substr(2) == block.name)
                return {block.content, others};
        throw NotXsd{};
    }

    std::string take_escape_outside() {
        std::string single;
        const std::optional<Set> set = take_escape(single);
        return set.has_value() ? (set->others ? "[^" : "[") + set->content + "]" : single;
    }

    // The rest of a class, as a group that matches one character. Sets of all others, and the subtraction, have
    // no counterpart in a class of PCRE2.
    std::string take_class(size_t depth) {
        if (depth > deepest_class)
            throw NotXsd{};
        const bool is_negative = next() == '^';
        at_ += is_negative ? 1 : 0;
        std::string content;
        std::string alternatives;
        std::string without;
        while (next() != ']') {
            if (next() == '-' && at_ + 1 < pattern_.size() && pattern_[at_ + 1] == '[') {
                at_ += 2;
                without = "(?!" + take_class(depth + 1) + ")";
                if (next() != ']')
                    throw NotXsd{};
                continue;
            }
            take_class_item(content, alternatives);
        }
        at_++;
        if (content.empty() && alternatives.empty())
            throw NotXsd{};
        const std::string positive =
            "(?:" + (content.empty() ? alternatives.substr(1) : "[" + content + "]" + alternatives) + ")";
        return "(?:" + without + (is_negative ? "(?!" + positive + ")" + any_character : positive) + ")";
    }

    void take_class_item(std::string &content, std::string &alternatives) {
        std::string first;
        if (const std::optional<Set> set = take_class_character(first)) {
            if (set->others)
                alternatives += "|[^" + set->content + "]";
            else
                content += set->content;
            return;
        }
        content += first;
        const bool is_range =
            next() == '-' && at_ + 1 < pattern_.size() && pattern_[at_ + 1] != ']' && pattern_[at_ + 1] != '[';
        if (!is_range)
            return;
        at_++;
        std::string last;
        if (take_class_character(last).has_value())
            throw NotXsd{};
        content += "-" + last;
    }

    std::optional<Set> take_class_character(std::string &single) {
        const char c = take();
        if (c == '\\')
            return take_escape(single);
        if (c == '[')
            throw NotXsd{};
        if (c == '^' || c == '-')
            single = '\\';
        single += c;
        while (is_continuation(next()))
            single += take();
        return std::nullopt;
    }

    static bool is_continuation(char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; }

    std::string_view pattern_;
    size_t at_ = 0;
    std::string made_;
};

} // namespace

std::optional<std::string> pcre_of_xsd(std::string_view pattern) {
    if (pattern.find('\0') != std::string_view::npos)
        return std::nullopt;
    try {
        return Translator(pattern).translate();
    } catch (const NotXsd &) {
        return std::nullopt;
    }
}

} // namespace yfw::netconf
