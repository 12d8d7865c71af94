#include "yang/json_values.h"
#include "yang/text_writer.h"

namespace yfw::yang {
namespace {

bool is_list(const lysc_node *node) {
    return (node->nodetype & (LYS_LIST | LYS_LEAFLIST)) != 0;
}

} // namespace

JsonWriter::JsonWriter(TextSink sink, Layout layout) : out_(std::move(sink)), layout_(layout) {
    out_ << '{';
    open_.emplace_back();
    depth_ = 1;
}

void JsonWriter::new_line() {
    if (layout_ != Layout::indented)
        return;
    out_ << '\n';
    out_.blanks(2 * depth_);
}

void JsonWriter::quoted(std::string_view text) {
    write_json_string(text, [this](std::string_view piece) { out_ << piece; });
}

void JsonWriter::end_array() {
    if (open_.back().array == nullptr)
        return;
    open_.back().array = nullptr;
    depth_--;
    new_line();
    out_ << ']';
}

void JsonWriter::begin_member(const lysc_node *node) {
    Object &object = open_.back();
    end_array();
    if (!object.is_empty)
        out_ << ',';
    object.is_empty = false;
    new_line();
    out_ << '"';
    if (object.node == nullptr || object.node->module != node->module)
        out_ << node->module->name << ':';
    out_ << node->name << (layout_ == Layout::indented ? "\": " : "\":");
}

// A member's value, or the next item of the array that the member is.
void JsonWriter::begin_item(const lysc_node *node) {
    if (!is_list(node)) {
        begin_member(node);
        return;
    }
    if (open_.back().array == node) {
        out_ << ',';
    } else {
        begin_member(node);
        out_ << '[';
        open_.back().array = node;
        depth_++;
    }
    new_line();
}

void JsonWriter::open(const lysc_node *node) {
    begin_item(node);
    out_ << '{';
    depth_++;
    open_.push_back({node, nullptr, true});
}

void JsonWriter::end_object() {
    end_array();
    const bool is_empty = open_.back().is_empty;
    open_.pop_back();
    depth_--;
    if (!is_empty)
        new_line();
    out_ << '}';
}

void JsonWriter::close() {
    end_object();
    out_.pass_on();
}

void JsonWriter::leaf(const lysc_node *node, const char *value) {
    begin_item(node);
    LY_DATA_TYPE type = values_.plain_type(node);
    std::string_view text(value);
    if (type == LY_TYPE_UNKNOWN) {
        const ValueText &resolved = values_.of(node, value);
        type = resolved.type;
        text = resolved.text;
    }
    if (type == LY_TYPE_EMPTY)
        out_ << "[null]";
    else if (is_bare_in_json(type))
        out_ << text;
    else
        quoted(text);
    out_.pass_on();
}

void JsonWriter::finish() {
    end_object();
    if (layout_ == Layout::indented)
        out_ << '\n';
    out_.flush();
}

} // namespace yfw::yang
