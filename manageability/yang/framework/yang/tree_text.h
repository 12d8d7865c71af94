// Data and paths as text.
#ifndef YFW_YANG_TREE_TEXT_H
#define YFW_YANG_TREE_TEXT_H

#include <cstdlib>
#include <memory>
#include <string>

#include "yang/data_tree.h"

namespace yfw::yang {

// A text that libyang made, which may be none.
class LibyangText {
public:
    explicit LibyangText(char *text) : text_(text) {}

    explicit operator bool() const { return text_ != nullptr; }
    // Empty when there is none. Lives as long as this object.
    const char *c_str() const { return text_ != nullptr ? text_.get() : ""; }

private:
    struct Free {
        void operator()(char *text) const { std::free(text); }
    };
    std::unique_ptr<char, Free> text_;
};

// Where the node is, with the keys of list entries: "/module:list[key='value']/leaf".
std::string path_of(const lyd_node *node);

// The tree as XML or JSON, or the forest from this tree on with LYD_PRINT_WITHSIBLINGS; none when it cannot be
// printed, and of NULL. `options`: LYD_PRINT_*.
LibyangText printed(const lyd_node *data, LYD_FORMAT format, uint32_t options);

// Instance data; nothing when the text holds none. `options`: LYD_PARSE_*. Throws Error that names `place`,
// where the text is from.
DataTree parse_data(const ly_ctx *context, const std::string &text, LYD_FORMAT format, uint32_t options,
                    const std::string &place = "");

} // namespace yfw::yang

#endif
