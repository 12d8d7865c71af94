// Trees as text, in pieces.
#ifndef YFW_YANG_TEXT_WRITER_H
#define YFW_YANG_TEXT_WRITER_H

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "yang/tree_writer.h"
#include "yang/value_text.h"

namespace yfw::yang {

// Takes the next piece of a text; may throw, which ends the writing.
using TextSink = std::function<void(std::string_view)>;

// With line ends and indentation, or without.
enum class Layout { indented, compact };

// The text itself, handed to a sink in pieces of bounded size.
class TextPieces {
public:
    explicit TextPieces(TextSink sink) : sink_(std::move(sink)) { text_.reserve(piece_size + slack); }

    TextPieces &operator<<(std::string_view text) {
        text_.append(text);
        return *this;
    }
    TextPieces &operator<<(char c) {
        text_.push_back(c);
        return *this;
    }
    void blanks(size_t count) { text_.append(count, ' '); }

    // Between two nodes: hands out what has been written if that is a piece.
    void pass_on() {
        if (text_.size() >= piece_size)
            flush();
    }
    void flush() {
        if (!text_.empty())
            sink_(text_);
        text_.clear();
    }

private:
    static constexpr size_t piece_size = 64 * 1024;
    static constexpr size_t slack = 4 * 1024; // for the node that completes a piece

    TextSink sink_;
    std::string text_;
};

// XML (RFC 7950). Carriage returns are written as character references, since parsers would otherwise take them
// for line feeds (XML section 2.11).
class XmlWriter final : public TreeWriter {
public:
    XmlWriter(TextSink sink, Layout layout) : out_(std::move(sink)), layout_(layout) {}

    void open(const lysc_node *node) override;
    void close() override;
    void leaf(const lysc_node *node, const char *value) override;

    // Hands out the rest. Call once, when everything is closed.
    void finish() { out_.flush(); }

private:
    void begin(const lysc_node *node);
    void start_line();
    void end_line();

    TextPieces out_;
    Layout layout_;
    ValueTexts values_{LY_VALUE_XML};
    std::vector<const lysc_node *> open_;
    bool is_tag_open_ = false; // the last node's: it may yet turn out to be empty
};

// JSON (RFC 7951): one object with the top nodes as members.
class JsonWriter final : public TreeWriter {
public:
    // Begins the object.
    JsonWriter(TextSink sink, Layout layout);

    void open(const lysc_node *node) override;
    void close() override;
    void leaf(const lysc_node *node, const char *value) override;

    // Ends the object and hands out the rest. Call once, when everything is closed.
    void finish();

private:
    // An object that is being written.
    struct Object {
        const lysc_node *node = nullptr;  // NULL: the outermost
        const lysc_node *array = nullptr; // the list or leaf-list that its last member holds
        bool is_empty = true;
    };

    void begin_item(const lysc_node *node);
    void begin_member(const lysc_node *node);
    void end_array();
    void end_object();
    void new_line();
    void quoted(std::string_view text);

    TextPieces out_;
    Layout layout_;
    ValueTexts values_{LY_VALUE_JSON};
    std::vector<Object> open_;
    size_t depth_ = 0; // in levels of indentation
};

} // namespace yfw::yang

#endif
