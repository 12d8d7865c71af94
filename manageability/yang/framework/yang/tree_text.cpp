#include "yang/tree_text.h"

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

// Hands what libyang prints, which are pieces of a few bytes, to `take`; what that throws ends the printing.
void print_to(const TextSink &take, const lyd_node *data, LYD_FORMAT format, uint32_t options) {
    struct Printing {
        const TextSink &take;
        std::exception_ptr failure;
    } printing{take, nullptr};
    const auto write = [](void *to, const void *text, size_t size) -> ssize_t {
        auto &into = *static_cast<Printing *>(to);
        try {
            const std::string_view piece(static_cast<const char *>(text), size);
            if (piece.find('\r') == std::string_view::npos)
                into.take(piece);
            else
                into.take(with_escaped_returns(piece));
            return static_cast<ssize_t>(size);
        } catch (...) {
            into.failure = std::current_exception();
            return -1;
        }
    };
    const LY_ERR status = lyd_print_clb(write, &printing, data, format, options);
    if (printing.failure != nullptr)
        std::rethrow_exception(printing.failure);
    if (status != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "", take_yang_error(data->schema->module->ctx));
}

} // namespace

std::string path_of(const lyd_node *node) {
    return LibyangText(lyd_path(node, LYD_PATH_STD, nullptr, 0)).c_str();
}

// Not with lyd_print_mem(), whose text grows by a kilobyte at a time and may be copied each time.
std::string printed(const lyd_node *data, LYD_FORMAT format, uint32_t options) {
    std::string text;
    if (data != nullptr)
        print_to([&text](std::string_view piece) { text += piece; }, data, format, options);
    return text;
}

void print(const lyd_node *data, LYD_FORMAT format, uint32_t options, const TextSink &sink) {
    if (data == nullptr)
        return;
    TextPieces pieces(sink);
    const auto take = [&pieces](std::string_view piece) {
        pieces << piece;
        pieces.pass_on();
    };
    print_to(take, data, format, options);
    pieces.flush();
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
