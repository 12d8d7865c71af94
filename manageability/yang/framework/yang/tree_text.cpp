#include "yang/tree_text.h"

#include <cstring>
#include <exception>

#include "base/error.h"
#include "yang/schemas.h"

namespace yfw::yang {
namespace {

// A parser reads a literal carriage return as a line feed (XML section 2.11). libyang prints them in values of
// XML alone.
std::string with_escaped_returns(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\r')
            escaped += "&#13;";
        else
            escaped += c;
    }
    return escaped;
}

} // namespace

std::string path_of(const lyd_node *node) {
    return LibyangText(lyd_path(node, LYD_PATH_STD, nullptr, 0)).c_str();
}

LibyangText printed(const lyd_node *data, LYD_FORMAT format, uint32_t options) {
    char *text = nullptr;
    if (data != nullptr)
        lyd_print_mem(&text, data, format, options);
    LibyangText made(text);
    if (text == nullptr || std::strchr(text, '\r') == nullptr)
        return made;
    return LibyangText(strdup(with_escaped_returns(text).c_str()));
}

void print(const lyd_node *data, LYD_FORMAT format, uint32_t options, const TextSink &sink) {
    struct Printing {
        TextPieces pieces;
        std::exception_ptr failure;
    } printing{TextPieces(sink), nullptr};
    const auto take = [](void *to, const void *text, size_t size) -> ssize_t {
        auto &into = *static_cast<Printing *>(to);
        try {
            const std::string_view piece(static_cast<const char *>(text), size);
            if (piece.find('\r') == std::string_view::npos)
                into.pieces << piece;
            else
                into.pieces << with_escaped_returns(piece);
            into.pieces.pass_on();
            return static_cast<ssize_t>(size);
        } catch (...) {
            into.failure = std::current_exception();
            return -1;
        }
    };
    if (data == nullptr)
        return;
    const LY_ERR status = lyd_print_clb(take, &printing, data, format, options);
    if (printing.failure != nullptr)
        std::rethrow_exception(printing.failure);
    if (status != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "", take_yang_error(data->schema->module->ctx));
    printing.pieces.flush();
}

DataTree parse_data(const ly_ctx *context, const std::string &text, LYD_FORMAT format, uint32_t options,
                    const std::string &place) {
    lyd_node *first = nullptr;
    const LY_ERR status = lyd_parse_data_mem(context, text.c_str(), format, options, 0, &first);
    DataTree data(first);
    if (status != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, place, take_yang_error(context));
    return data;
}

} // namespace yfw::yang
