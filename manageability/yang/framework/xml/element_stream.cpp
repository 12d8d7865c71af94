#include "xml/element_stream.h"

#include <memory>
#include <new>
#include <string>
#include <vector>

#include <libxml/parser.h>

#include "xml/text.h"

namespace yfw::xml {
namespace {

constexpr size_t buffer_size = 64 * 1024;

// A document has one root, so the sequence is put into one.
constexpr std::string_view root_start = "<root>";
constexpr std::string_view root_end = "</root>";

// What the parser calls gets this.
struct Reading {
    explicit Reading(ElementHandler &given) : handler(given) {}

    ElementHandler &handler;
    xmlParserCtxt *parser = nullptr;
    size_t depth = 0;
    bool is_complete = true; // so far

    void go_on_if(bool wanted) {
        if (wanted)
            return;
        is_complete = false;
        xmlStopParser(parser);
    }
};

Reading &reading(void *user) {
    return *static_cast<Reading *>(user);
}

const char *chars(const xmlChar *text) {
    return reinterpret_cast<const char *>(text);
}

void on_start(void *user, const xmlChar *name, const xmlChar *, const xmlChar *uri, int, const xmlChar **,
              int attributes, int, const xmlChar **) {
    Reading &at = reading(user);
    if (at.is_complete && at.depth++ > 0)
        at.go_on_if(at.handler.start(chars(name), chars(uri), attributes > 0));
}

void on_end(void *user, const xmlChar *, const xmlChar *, const xmlChar *) {
    Reading &at = reading(user);
    if (at.is_complete && --at.depth > 0)
        at.go_on_if(at.handler.end());
}

void on_text(void *user, const xmlChar *text, int length) {
    Reading &at = reading(user);
    const std::string_view piece(chars(text), static_cast<size_t>(length));
    if (!at.is_complete)
        return;
    if (at.depth > 1)
        at.go_on_if(at.handler.text(piece));
    else
        at.go_on_if(is_white_space(piece));
}

void on_document_type(void *user, const xmlChar *, const xmlChar *, const xmlChar *) {
    reading(user).go_on_if(false);
}

void on_error(void *, xmlError *) {}

xmlSAXHandler callbacks() {
    xmlSAXHandler sax{};
    sax.initialized = XML_SAX2_MAGIC;
    sax.startElementNs = on_start;
    sax.endElementNs = on_end;
    sax.characters = on_text;
    sax.ignorableWhitespace = on_text;
    sax.cdataBlock = on_text;
    sax.internalSubset = on_document_type;
    sax.serror = on_error;
    return sax;
}

struct FreeParser {
    void operator()(xmlParserCtxt *parser) const { xmlFreeParserCtxt(parser); }
};

// Whether the declaration says UTF-8, or nothing.
bool is_utf8(std::string_view declaration) {
    const size_t encoding = declaration.find("encoding");
    if (encoding == std::string_view::npos)
        return true;
    const std::string_view value = declaration.substr(encoding);
    return value.find("UTF-8") != std::string_view::npos || value.find("utf-8") != std::string_view::npos;
}

// Removes a byte order mark and an XML declaration; false when the declaration forbids reading on.
bool skip_prolog(std::string_view &text) {
    constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";
    constexpr std::string_view declaration = "<?xml ";
    if (text.starts_with(byte_order_mark))
        text.remove_prefix(byte_order_mark.size());
    if (!text.starts_with(declaration))
        return true;
    const size_t end = text.find("?>");
    if (end == std::string_view::npos || !is_utf8(text.substr(0, end)))
        return false;
    text.remove_prefix(end + 2);
    return true;
}

// The text of the document: the sequence in its root.
class Document {
public:
    explicit Document(std::istream &from) : from_(from), buffer_(buffer_size) {}

    // Whether there is anything that can be read.
    bool begin() {
        fill();
        return skip_prolog(left_);
    }

    // Copies what comes next; 0 at the end, -1 when reading fails.
    int read(char *to, size_t size) {
        if (!is_begun_) {
            is_begun_ = true;
            return static_cast<int>(root_start.copy(to, size));
        }
        if (left_.empty() && !is_ended_)
            advance();
        const size_t count = left_.copy(to, size);
        left_.remove_prefix(count);
        return from_.bad() ? -1 : static_cast<int>(count);
    }

private:
    void fill() {
        from_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
        left_ = {buffer_.data(), static_cast<size_t>(from_.gcount())};
    }

    void advance() {
        fill();
        if (!left_.empty())
            return;
        left_ = root_end;
        is_ended_ = true;
    }

    std::istream &from_;
    std::vector<char> buffer_;
    std::string_view left_;
    bool is_begun_ = false; // the root's start was read
    bool is_ended_ = false; // its end comes next
};

int on_read(void *document, char *to, int size) {
    return static_cast<Document *>(document)->read(to, static_cast<size_t>(size));
}

} // namespace

bool read_elements(std::istream &from, ElementHandler &handler) {
    static const bool is_ready = (xmlInitParser(), true);
    static_cast<void>(is_ready);
    Document document(from);
    if (!document.begin())
        return false;
    xmlSAXHandler sax = callbacks();
    Reading state(handler);
    const std::unique_ptr<xmlParserCtxt, FreeParser> parser(
        xmlCreateIOParserCtxt(&sax, &state, on_read, nullptr, &document, XML_CHAR_ENCODING_UTF8));
    if (parser == nullptr)
        throw std::bad_alloc();
    state.parser = parser.get();
    xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET);
    return xmlParseDocument(parser.get()) == 0 && state.is_complete && parser->wellFormed != 0;
}

} // namespace yfw::xml
