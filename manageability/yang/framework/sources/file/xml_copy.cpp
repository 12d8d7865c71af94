#include "sources/file/xml_copy.h"

#include <cstring>

#include "xml/text.h"
#include "yang/yang_text.h"

namespace yfw::sources {
bool XmlCopy::start(const char *name, const char *ns, bool has_attributes) {
    if (has_attributes || !xml::is_white_space(text_) || (ns != nullptr && std::strchr(ns, '"') != nullptr))
        return false;
    text_.clear();
    const bool declares_ns = open_.empty() || open_.back().ns != ns;
    if (!open_.empty())
        open_.back().has_children = true;
    copied_ += '<';
    copied_ += name;
    if (declares_ns) {
        copied_ += " xmlns=\"";
        xml::append_escaped(copied_, ns != nullptr ? ns : "");
        copied_ += '"';
    }
    copied_ += '>';
    open_.push_back({name, ns, false});
    return true;
}

bool XmlCopy::text(std::string_view piece) {
    text_ += piece;
    return true;
}

bool XmlCopy::end() {
    const Open &ended = open_.back();
    if (ended.has_children ? !xml::is_white_space(text_) : !yang::is_yang_text(text_))
        return false;
    if (!ended.has_children)
        xml::append_escaped(copied_, text_);
    copied_ += "</";
    copied_ += ended.name;
    copied_ += '>';
    text_.clear();
    open_.pop_back();
    return true;
}

} // namespace yfw::sources
