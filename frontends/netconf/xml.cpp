#include "frontends/netconf/xml.h"

#include <cstdlib>
#include <memory>

#include "frontends/netconf/rpc_error.h"
#include "yang/schemas.h"

namespace yfw::netconf {
namespace {

// A context without models of its own: all elements stay as they are. libyang's contexts are shared between
// threads for parsing.
const ly_ctx *modelless() {
    static const yang::YangContext context = [] {
        ly_ctx *made = nullptr;
        if (ly_ctx_new(nullptr, LY_CTX_NO_YANGLIBRARY, &made) != LY_SUCCESS)
            throw std::bad_alloc();
        return yang::YangContext(made);
    }();
    return context.get();
}

[[noreturn]] void malformed(const std::string &why) {
    throw RpcError("rpc", "malformed-message", why);
}

size_t after(std::string_view text, size_t from, std::string_view end) {
    const size_t found = text.find(end, from);
    if (found == std::string_view::npos)
        malformed("the message ends within markup");
    return found + end.size();
}

struct Tag {
    size_t end = 0;        // behind its first ">" outside quotes
    size_t attributes = 0; // with declarations of namespaces
};

Tag tag_at(std::string_view text, size_t from) {
    char quote = '\0';
    Tag tag;
    for (size_t i = from; i < text.size(); i++) {
        if (quote != '\0') {
            quote = text[i] == quote ? '\0' : quote;
        } else if (text[i] == '"' || text[i] == '\'') {
            quote = text[i];
            tag.attributes++;
        } else if (text[i] == '>') {
            tag.end = i + 1;
            return tag;
        }
    }
    malformed("the message ends within a tag");
}

// The elements around a place of a message. Refuses what a parser should not be given that calls itself for
// each level, and looks through all attributes and namespaces for each one.
class OpenElements {
public:
    void check(size_t attributes) const {
        if (attributes_ + attributes > Document::most_attributes)
            malformed("an element has more than " + std::to_string(Document::most_attributes) +
                      " attributes, with those around it");
    }

    void count() {
        if (++count_ > Document::most_elements)
            malformed("a message has more than " + std::to_string(Document::most_elements) + " elements");
    }

    void open(size_t attributes) {
        open_.push_back(attributes);
        attributes_ += attributes;
        if (open_.size() > Document::deepest)
            malformed("elements are nested deeper than " + std::to_string(Document::deepest));
    }

    void close() {
        if (open_.empty())
            malformed("an element is closed that was not opened");
        attributes_ -= open_.back();
        open_.pop_back();
    }

private:
    std::vector<size_t> open_; // how many attributes each has
    size_t attributes_ = 0;
    size_t count_ = 0; // of elements so far
};

// Clients that write <nc:rpc> often leave elements inside without any namespace, <config> above all; they mean
// NETCONF's own.
std::string with_namespace(std::string tag, bool is_root) {
    const size_t name_end = tag.find_first_of(" \t\r\n/>", 1);
    const bool prefixed = tag.substr(0, name_end).find(':') != std::string::npos;
    const std::string declared = "xmlns=\"" + std::string(base_ns) + "\"";
    if (is_root && prefixed && tag.find(" xmlns=") == std::string::npos)
        tag.insert(name_end, " " + declared);
    return tag;
}

// The document as libyang is to parse it.
std::string prepared(std::string_view text) {
    std::string out;
    OpenElements around;
    size_t done = 0;
    bool is_root = true;
    for (size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
        const std::string_view rest = text.substr(at);
        if (rest.starts_with("<!--")) {
            at = after(text, at + 4, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            at = after(text, at, "]]>");
        } else if (rest.starts_with("<?")) {
            at = after(text, at, "?>");
        } else if (rest.starts_with("<!")) {
            malformed("a document type is not accepted");
        } else {
            const auto [end, attributes] = tag_at(text, at);
            const bool closes = rest.starts_with("</");
            around.check(attributes);
            if (!closes)
                around.count();
            if (closes)
                around.close();
            else if (text[end - 2] != '/')
                around.open(attributes);
            out.append(text, done, at - done);
            out += closes ? std::string(text.substr(at, end - at))
                          : with_namespace(std::string(text.substr(at, end - at)), is_root);
            is_root = false;
            done = at = end;
        }
    }
    return out.append(text, done);
}

// libyang lets an attribute stand twice.
void refuse_repeated_attributes(const Element &element) {
    const std::vector<Element::Attribute> attributes = element.attributes();
    for (size_t i = 0; i < attributes.size(); i++)
        for (size_t k = i + 1; k < attributes.size(); k++)
            if (attributes[i].name == attributes[k].name && attributes[i].ns == attributes[k].ns)
                malformed("the attribute " + std::string(attributes[i].name) + " stands twice in <" +
                          std::string(element.name()) + ">");
    for (const Element &child : element.children())
        refuse_repeated_attributes(child);
}

} // namespace

std::string Element::text() const {
    const std::string_view value = node_->value != nullptr ? node_->value : "";
    const size_t first = value.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return "";
    return std::string(value.substr(first, value.find_last_not_of(" \t\r\n") - first + 1));
}

std::vector<Element::Attribute> Element::attributes() const {
    std::vector<Attribute> found;
    for (const lyd_attr *at = node_->attr; at != nullptr; at = at->next)
        found.push_back({at->name.name, at->name.prefix != nullptr ? at->name.prefix : "",
                         at->name.module_ns != nullptr ? at->name.module_ns : "",
                         at->value != nullptr ? at->value : ""});
    return found;
}

std::optional<std::string> Element::attribute(std::string_view wanted) const {
    for (const Attribute &attribute : attributes())
        if (attribute.name == wanted)
            return std::string(attribute.value);
    return std::nullopt;
}

// libyang keeps them to itself, but prints them with the element.
Prefixes Element::prefixes() const {
    const std::string text = print();
    const std::string_view tag = std::string_view(text).substr(0, tag_at(text, 0).end);
    Prefixes found;
    constexpr std::string_view declares = " xmlns:";
    for (size_t at = tag.find(declares); at != std::string_view::npos; at = tag.find(declares, at + 1)) {
        const size_t name = at + declares.size();
        const size_t equals = tag.find('=', name);
        const size_t end = tag.find(tag[equals + 1], equals + 2);
        found.emplace(tag.substr(name, equals - name), tag.substr(equals + 2, end - equals - 2));
    }
    return found;
}

std::vector<Element> Element::children() const {
    std::vector<Element> found;
    for (const lyd_node *child = node_->child; child != nullptr; child = child->next)
        found.emplace_back(child);
    return found;
}

std::optional<Element> Element::child(std::string_view wanted) const {
    for (const Element &child : children())
        if (child.is(ns(), wanted))
            return child;
    return std::nullopt;
}

std::string Element::print() const {
    char *text = nullptr;
    lyd_print_mem(&text, reinterpret_cast<const lyd_node *>(node_), LYD_XML, LYD_PRINT_SHRINK);
    const std::unique_ptr<char, decltype(&std::free)> owner(text, std::free);
    return text != nullptr ? text : "";
}

Document::Document(const std::string &text) {
    lyd_node *parsed = nullptr;
    const LY_ERR status = lyd_parse_data_mem(modelless(), prepared(text).c_str(), LYD_XML,
                                             LYD_PARSE_ONLY | LYD_PARSE_OPAQ, 0, &parsed);
    tree_.reset(parsed);
    if (status != LY_SUCCESS)
        malformed(yang::take_yang_error(modelless()));
    if (parsed == nullptr)
        malformed("the message holds no element");
    if (parsed->next != nullptr)
        malformed("the message holds more than one element");
    root_ = parsed;
    refuse_repeated_attributes(root());
}

} // namespace yfw::netconf
