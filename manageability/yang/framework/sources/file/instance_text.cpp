#include "sources/file/instance_text.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "base/error.h"
#include "base/utf8.h"
#include "xml/document.h"
#include "xml/text.h"
#include "xml/utf16.h"
#include "yang/json_text.h"
#include "yang/yang_text.h"

namespace yfw::sources {
namespace {

// ---- XML -------------------------------------------------------------------------------------------------

std::string with_line_feeds(std::string_view text) {
    std::string made;
    made.reserve(text.size());
    while (!text.empty()) {
        const size_t line = std::min(text.find('\r'), text.size());
        made += text.substr(0, line);
        text.remove_prefix(line);
        if (text.empty())
            break;
        made += '\n';
        text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    }
    return made;
}

class PlainXml {
public:
    explicit PlainXml(std::string_view text) : rest_(text) { made_.reserve(text.size()); }

    // What is not well formed is left to the parser.
    std::string make() {
        while (!rest_.empty()) {
            copy(std::min(rest_.find('<'), rest_.size()));
            if (!skip("<!--", "-->") && !skip("<?", "?>") && !unfold_section())
                copy_tag();
        }
        return std::move(made_);
    }

private:
    void copy(size_t count) {
        made_ += rest_.substr(0, count);
        rest_.remove_prefix(count);
    }

    bool skip(std::string_view start, std::string_view end) {
        const size_t found = rest_.starts_with(start) ? rest_.find(end, start.size()) : std::string_view::npos;
        if (found == std::string_view::npos)
            return false;
        const std::string_view skipped = rest_.substr(0, found);
        breaks_ += static_cast<size_t>(std::count(skipped.begin(), skipped.end(), '\n'));
        rest_.remove_prefix(found + end.size());
        return true;
    }

    // A section that is no text stays: libyang takes its bytes as they are, and the error can then name the
    // leaf.
    bool unfold_section() {
        constexpr std::string_view start = "<![CDATA[";
        const size_t found = rest_.starts_with(start) ? rest_.find("]]>") : std::string_view::npos;
        if (found == std::string_view::npos)
            return false;
        const std::string_view section = rest_.substr(start.size(), found - start.size());
        if (!yang::is_yang_text(section))
            return false;
        xml::append_escaped(made_, section);
        rest_.remove_prefix(found + 3);
        return true;
    }

    // With the line breaks of what was skipped before it, so that messages name the right line.
    void copy_tag() {
        char quote = '\0';
        size_t end = 0;
        for (; end < rest_.size() && (quote != '\0' || rest_[end] != '>'); end++) {
            if (quote != '\0')
                quote = rest_[end] == quote ? '\0' : quote;
            else if (rest_[end] == '"' || rest_[end] == '\'')
                quote = rest_[end];
        }
        const bool is_empty = end > 0 && end < rest_.size() && rest_[end - 1] == '/';
        copy(is_empty ? end - 1 : end);
        if (!rest_.empty())
            made_.append(std::exchange(breaks_, 0), '\n');
        copy(std::min<size_t>(rest_.size(), is_empty ? 2 : 1));
    }

    std::string_view rest_;
    std::string made_;
    size_t breaks_ = 0;
};

std::string plain_xml(const std::string &text) {
    const std::string lines = with_line_feeds(text);
    return PlainXml(lines).make();
}

// ---- JSON ------------------------------------------------------------------------------------------------

// The code unit of "\uXXXX" at the beginning of the text, which is JSON; 0 for anything else.
unsigned escaped_unit(std::string_view text) {
    constexpr size_t length = 6;
    return text.size() >= length && text.starts_with("\\u")
               ? static_cast<unsigned>(std::stoul(std::string(text.substr(2, 4)), nullptr, 16))
               : 0;
}

void append_pair(std::string &to, unsigned high, unsigned low) {
    const unsigned c = 0x10000 + ((high - 0xd800) << 10) + (low - 0xdc00);
    for (const unsigned byte :
         {0xf0 | c >> 18, 0x80 | (c >> 12 & 0x3f), 0x80 | (c >> 6 & 0x3f), 0x80 | (c & 0x3f)})
        to += static_cast<char>(byte);
}

// `text` is JSON: backslashes are in strings only.
std::string with_characters_for_pairs(std::string_view text) {
    std::string made;
    made.reserve(text.size());
    while (!text.empty()) {
        const size_t plain = std::min(text.find('\\'), text.size());
        made += text.substr(0, plain);
        text.remove_prefix(plain);
        const unsigned high = escaped_unit(text);
        const bool is_pair = high >= 0xd800 && high < 0xdc00;
        if (is_pair)
            append_pair(made, high, escaped_unit(text.substr(6)));
        else
            made += text.substr(0, 2);
        text.remove_prefix(std::min<size_t>(text.size(), is_pair ? 12 : 2));
    }
    return made;
}

void check_json(const std::string &text) {
    if (!nlohmann::json::accept(text))
        yang::parse_json(text); // says what is wrong
}

std::string in_utf8(std::string document) {
    try {
        if (std::optional<std::string> text = xml::from_utf16(document))
            document = std::move(*text);
    } catch (const xml::DocumentError &error) {
        throw Error(ErrorTag::invalid_value, "", error.what());
    }
    if (document.starts_with(byte_order_mark))
        document.erase(0, byte_order_mark.size());
    return document;
}

} // namespace

InstanceText instance_text(std::string document) {
    const std::string text = in_utf8(std::move(document));
    if (text.find('\0') != std::string::npos)
        throw Error(ErrorTag::invalid_value, "", "contains a NUL character");
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first != std::string::npos && text[first] == '<')
        return {InstanceFormat::xml, plain_xml(text)};
    if (first == std::string::npos || text[first] != '{')
        throw Error(ErrorTag::invalid_value, "", "contains neither XML nor JSON instance data");
    check_json(text);
    return {InstanceFormat::json, with_characters_for_pairs(text)};
}

} // namespace yfw::sources
