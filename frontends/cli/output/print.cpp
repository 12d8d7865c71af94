#include "frontends/cli/output/print.h"

#include <cerrno>
#include <iostream>
#include <stdexcept>

#include <poll.h>
#include <unistd.h>

#include "base/system_error.h"
#include "frontends/cli/output/shown_document.h"
#include "frontends/cli/output/terminal.h"
#include "yang/text_writer.h"

namespace yfw::cli {
namespace {

// The error number may be of a later call: a stream that has failed writes nothing more.
bool is_reader_gone() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return errno == EPIPE || (::poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0);
}

} // namespace

void refuse_output() {
    const int error = errno;
    if (is_reader_gone())
        throw ReaderGone{};
    throw std::runtime_error("standard output: cannot be written: " + system_error_text(error));
}

void finish_output() {
    if (!(std::cout << std::flush))
        refuse_output();
}

namespace {

yang::TextSink sink_to(std::FILE *to, Format format) {
    const auto write = [to](std::string_view piece) {
        if (std::fwrite(piece.data(), 1, piece.size(), to) != piece.size())
            refuse_output();
    };
    if (!is_terminal(to))
        return write;
    const auto shown = format == Format::json ? shown_json : shown_xml;
    return [write, shown](std::string_view piece) { write(shown(piece)); };
}

} // namespace

void print_answer(std::FILE *to, const yang::Schemas &schemas, const host::SettledAnswer &answer,
                  Format format) {
    const yang::TextSink sink = sink_to(to, format);
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
