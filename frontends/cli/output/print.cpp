#include "frontends/cli/output/print.h"

#include <iostream>
#include <stdexcept>

#include "base/system_error.h"
#include "yang/text_writer.h"

namespace yfw::cli {
namespace {

[[noreturn]] void refuse_output() {
    throw std::runtime_error("standard output: cannot be written: " + system_error_text());
}

} // namespace

void finish_output() {
    if (!(std::cout << std::flush))
        refuse_output();
}

void print_answer(std::FILE *to, const yang::Schemas &schemas, const host::SettledAnswer &answer,
                  Format format) {
    const yang::TextSink sink = [to](std::string_view piece) {
        if (std::fwrite(piece.data(), 1, piece.size(), to) != piece.size())
            refuse_output();
    };
    if (format == Format::json) {
        yang::JsonWriter writer(sink, yang::Layout::indented);
        answer.write(writer);
        writer.finish();
    } else {
        yang::XmlWriter writer(sink, yang::Layout::indented);
        answer.write(writer);
        if (answer.empty()) { // even an empty answer is a document
            writer.open(schemas.openconfig_root());
            writer.close();
        }
        writer.finish();
    }
    if (std::fflush(to) != 0 || std::ferror(to) != 0)
        refuse_output();
}

} // namespace yfw::cli
