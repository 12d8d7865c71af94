// Whether the model allows a value, by libyang's types.
#ifndef YFW_YANG_VALUE_CHECK_H
#define YFW_YANG_VALUE_CHECK_H

#include <string>
#include <string_view>
#include <unordered_map>

#include <libyang/libyang.h>

namespace yfw::yang {

// Checks the values of one leaf or leaf-list. What libyang said about a value is remembered, up to a limit:
// most leaves have few different ones. One thread at a time.
class ValueCheck {
public:
    struct Result {
        bool is_allowed = true;
        std::string canonical; // empty where the value is canonical as it is
        std::string error;     // libyang's
    };

    // Borrows the leaf.
    explicit ValueCheck(const lysc_node *leaf);

    // `text`: UTF-8 of characters that YANG allows. Valid until the next call.
    const Result &of(const char *text);

private:
    // How much of the check is needed.
    enum class Kind { length, digits, libyang };

    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };

    bool is_certainly_allowed(std::string_view text) const;
    Result ask_libyang(const char *text) const;

    const lysc_node *leaf_;
    Kind kind_ = Kind::libyang;
    size_t least_ = 0; // octets of a text, or digits of a number, that are certainly allowed
    size_t most_ = 0;
    std::unordered_map<std::string, Result, Hash, std::equal_to<>> known_;
    Result last_;
};

} // namespace yfw::yang

#endif
