#include "yang/tree_text.h"

#include "base/error.h"
#include "yang/schemas.h"

namespace yfw::yang {

std::string path_of(const lyd_node *node) {
    return LibyangText(lyd_path(node, LYD_PATH_STD, nullptr, 0)).c_str();
}

LibyangText printed(const lyd_node *data, LYD_FORMAT format, uint32_t options) {
    char *text = nullptr;
    if (data != nullptr)
        lyd_print_mem(&text, data, format, options);
    return LibyangText(text);
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
