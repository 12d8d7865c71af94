// Whether the model allows a value, by libyang's types.
#ifndef YFW_HOST_VALUE_CHECK_H
#define YFW_HOST_VALUE_CHECK_H

#include <string>
#include <unordered_map>
#include <vector>

#include "host/answer_schema.h"

namespace yfw::host {

// Checks the values of one answer. What libyang said about a value is remembered, up to a limit for each leaf:
// most leaves have few different ones.
class ValueCheck {
public:
    struct Result {
        bool is_allowed = true;
        std::string canonical; // empty where the value is canonical as it is
        std::string error;     // libyang's
    };

    explicit ValueCheck(const AnswerSchema &schema);

    // `text`: UTF-8 of characters that YANG allows. Valid until the next call.
    const Result &of(const AnswerNode &leaf, const char *text);

private:
    // How much of the check is needed.
    struct Rule {
        enum class Kind { unknown, every_text, digits, libyang } kind = Kind::unknown;
        size_t most_digits = 0; // that any number of the type may have
    };

    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };
    using Known = std::unordered_map<std::string, Result, Hash, std::equal_to<>>;

    static Rule rule_of(const lysc_type *type);
    static Result ask_libyang(const lysc_node *leaf, const char *text);

    std::vector<Rule> rules_;  // by the node's number
    std::vector<Known> known_; // the same
    const Result allowed_;
    Result last_;
};

} // namespace yfw::host

#endif
