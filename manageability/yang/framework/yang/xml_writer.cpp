#include "yang/text_writer.h"

namespace yfw::yang {
namespace {

void write_escaped(TextPieces &out, std::string_view text) {
    size_t begin = 0;
    for (size_t at = text.find_first_of("&<>\r"); at != std::string_view::npos;
         at = text.find_first_of("&<>\r", begin)) {
        out << text.substr(begin, at - begin);
        switch (text[at]) {
        case '&':
            out << "&amp;";
            break;
        case '<':
            out << "&lt;";
            break;
        case '>':
            out << "&gt;";
            break;
        default:
            out << "&#13;";
        }
        begin = at + 1;
    }
    out << text.substr(begin);
}

} // namespace

void XmlWriter::start_line() {
    if (layout_ == Layout::indented)
        out_.blanks(2 * open_.size());
}

void XmlWriter::end_line() {
    if (layout_ == Layout::indented)
        out_ << '\n';
}

// The namespace is written where it differs from the parent's.
void XmlWriter::begin(const lysc_node *node) {
    if (is_tag_open_) {
        out_ << '>';
        end_line();
        is_tag_open_ = false;
    }
    start_line();
    out_ << '<' << node->name;
    if (open_.empty() || open_.back()->module != node->module)
        out_ << " xmlns=\"" << node->module->ns << '"';
}

void XmlWriter::open(const lysc_node *node) {
    begin(node);
    open_.push_back(node);
    is_tag_open_ = true;
}

void XmlWriter::close() {
    const lysc_node *node = open_.back();
    open_.pop_back();
    if (is_tag_open_) {
        out_ << "/>";
    } else {
        start_line();
        out_ << "</" << node->name << '>';
    }
    is_tag_open_ = false;
    end_line();
    out_.pass_on();
}

void XmlWriter::leaf(const lysc_node *node, const char *value) {
    begin(node);
    if (values_.plain_type(node) == LY_TYPE_UNKNOWN) {
        const ValueText &resolved = values_.of(node, value);
        out_ << resolved.declarations;
        value = resolved.text.c_str();
    }
    if (*value == '\0') {
        out_ << "/>";
    } else {
        out_ << '>';
        write_escaped(out_, value);
        out_ << "</" << node->name << '>';
    }
    end_line();
    out_.pass_on();
}

} // namespace yfw::yang
