// Data and paths as text.
#ifndef YFW_YANG_TREE_TEXT_H
#define YFW_YANG_TREE_TEXT_H

#include <cstdlib>
#include <memory>
#include <string>

#include "yang/data_tree.h"
#include "yang/text_pieces.h"

namespace yfw::yang {

// Owns a string that libyang allocated; there may be none.
class LibyangText {
public:
    explicit LibyangText(char *text) : text_(text) {}

    explicit operator bool() const { return text_ != nullptr; }
    // "" when there is none. Valid as long as this object.
    const char *c_str() const { return text_ != nullptr ? text_.get() : ""; }

private:
    struct Free {
        void operator()(char *text) const { std::free(text); }
    };
    std::unique_ptr<char, Free> text_;
};

// The node's instance path: "/module:list[key='value']/leaf".
std::string path_of(const lyd_node *node);

// The tree as XML or JSON; with LYD_PRINT_WITHSIBLINGS, its siblings too. Empty when `data` is NULL. `options`:
// LYD_PRINT_*. Throws Error if it cannot be printed.
std::string printed(const lyd_node *data, LYD_FORMAT format, uint32_t options);

// The same handed to `sink` in pieces; what that throws ends the printing.
void print(const lyd_node *data, LYD_FORMAT format, uint32_t options, const TextSink &sink);

// Parses instance data; NULL when the text holds none. `options`: LYD_PARSE_*. Throws Error naming `place`,
// where the text comes from.
DataTree parse_data(const ly_ctx *context, const std::string &text, LYD_FORMAT format, uint32_t options,
                    const std::string &place = "");

} // namespace yfw::yang

#endif
