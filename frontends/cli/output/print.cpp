#include "frontends/cli/output/print.h"

#include <iostream>
#include <stdexcept>

#include <stdio_ext.h>

#include "base/error.h"
#include "base/system_error.h"

namespace yfw::cli {
namespace {

void print_tree(std::FILE *to, const yang::Schemas &schemas, const lyd_node *data, LYD_FORMAT format,
                uint32_t options) {
    if (lyd_print_file(to, data, format, options | LYD_PRINT_WITHSIBLINGS) != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "",
                    "the answer cannot be printed: " + yang::take_yang_error(schemas.context()));
}

// Even an empty answer is a document.
void print_nothing(std::FILE *to, const yang::Schemas &schemas, Format format) {
    if (format == Format::json) {
        std::fputs("{}\n", to);
        return;
    }
    const lysc_node *top = schemas.openconfig_root();
    lyd_node *node = nullptr;
    lyd_new_inner(nullptr, top->module, top->name, 0, &node);
    const yang::DataTree empty(node);
    print_tree(to, schemas, node, LYD_XML, LYD_PRINT_KEEPEMPTYCONT);
}

[[noreturn]] void refuse_output() {
    throw std::runtime_error("standard output: cannot be written: " + system_error_text());
}

} // namespace

void finish_output() {
    if (!(std::cout << std::flush))
        refuse_output();
}

void prepare_output(std::FILE *to) {
    constexpr size_t buffer_size = 1 << 20;
    std::setvbuf(to, nullptr, _IOFBF, buffer_size);
    __fsetlocking(to, FSETLOCKING_BYCALLER); // libyang writes in small pieces
}

void print_data(std::FILE *to, const yang::Schemas &schemas, const lyd_node *data, Format format) {
    if (data == nullptr)
        print_nothing(to, schemas, format);
    else
        print_tree(to, schemas, data, format == Format::json ? LYD_JSON : LYD_XML, 0);
    if (std::fflush(to) != 0 || std::ferror(to) != 0)
        refuse_output();
}

} // namespace yfw::cli
