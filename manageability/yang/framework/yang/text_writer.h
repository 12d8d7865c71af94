// Trees as XML and JSON.
#ifndef YFW_YANG_TEXT_WRITER_H
#define YFW_YANG_TEXT_WRITER_H

#include <string_view>
#include <utility>
#include <vector>

#include "yang/text_pieces.h"
#include "yang/tree_writer.h"
#include "yang/value_text.h"

namespace yfw::yang {

// With line ends and indentation, or without.
enum class Layout { indented, compact };

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
