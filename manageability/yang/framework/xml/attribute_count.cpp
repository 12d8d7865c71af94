#include "xml/attribute_count.h"

#include <algorithm>

namespace yfw::xml {
namespace {

// The position after the next `end`; the end of the text when there is none.
size_t after(std::string_view text, size_t from, std::string_view end) {
    const size_t found = text.find(end, from);
    return found == std::string_view::npos ? text.size() : found + end.size();
}

struct Tag {
    size_t end = 0; // just after the tag
    size_t attributes = 0;
};

// Assumes that attribute values are quoted.
Tag tag_at(std::string_view text, size_t from) {
    Tag tag;
    for (size_t at = from; at < text.size(); at++) {
        if (text[at] == '>') {
            tag.end = at + 1;
            return tag;
        }
        if (text[at] == '"' || text[at] == '\'') {
            tag.attributes++;
            at = text.find(text[at], at + 1);
            if (at == std::string_view::npos)
                break;
        }
    }
    tag.end = text.size();
    return tag;
}

} // namespace

size_t most_attributes_of_a_tag(std::string_view text) {
    size_t most = 0;
    for (size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
        const std::string_view rest = text.substr(at);
        if (rest.starts_with("<!--")) {
            at = after(text, at + 4, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            at = after(text, at, "]]>");
        } else if (rest.starts_with("<?")) {
            at = after(text, at, "?>");
        } else {
            const Tag tag = tag_at(text, at);
            most = std::max(most, tag.attributes);
            at = tag.end;
        }
    }
    return most;
}

} // namespace yfw::xml
