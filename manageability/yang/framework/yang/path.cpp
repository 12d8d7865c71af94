#include "yang/path.h"

#include <cctype>

#include "base/error.h"
#include "yang/not_served.h"
#include "yang/schemas.h"
#include "yang/yang_text.h"

namespace yfw::yang {
namespace {

class Parser {
public:
    Parser(const lysc_node *root, std::string_view text) : root_(root), text_(text) {}

    Path parse() {
        Path path;
        if (text_.empty() || text_.front() != '/')
            fail("\"/\"");
        while (at_ < text_.size()) {
            expect('/', "\"/\" or \"[\"");
            path.push_back(parse_step(path.empty() ? nullptr : path.back().node));
        }
        return path;
    }

private:
    [[noreturn]] void fail(const std::string &expected) const {
        throw Error(ErrorTag::invalid_value, std::string(text_),
                    "malformed path at character " + std::to_string(at_ + 1) + ": expected " + expected);
    }

    void expect(char c, const char *expected) {
        if (at_ >= text_.size() || text_[at_] != c)
            fail(expected);
        at_++;
    }

    void skip_blanks() {
        while (at_ < text_.size() && text_[at_] == ' ')
            at_++;
    }

    static bool is_name_character(char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_' || c == '.';
    }

    std::string_view parse_identifier() {
        const size_t start = at_;
        while (at_ < text_.size() && is_name_character(text_[at_]))
            at_++;
        if (at_ == start)
            fail("a node name");
        return text_.substr(start, at_ - start);
    }

    // A prefix, if any, must be the name of the node's module.
    const lysc_node *parse_node(const lysc_node *parent) {
        const std::string upto(text_.substr(0, at_));
        std::string_view name = parse_identifier();
        std::string_view module;
        if (at_ < text_.size() && text_[at_] == ':') {
            at_++;
            module = name;
            name = parse_identifier();
        }
        const lysc_node *node = nullptr;
        if (parent != nullptr)
            node = schema_child(parent, name);
        else if (name == root_->name)
            node = root_;
        if (node == nullptr || (!module.empty() && module != node->module->name))
            throw Error(ErrorTag::unknown_element, std::string(text_),
                        parent != nullptr ? unknown_child(parent, name)
                                          : "unknown node \"" + std::string(name) + "\": paths start with /" +
                                                std::string(root_->name));
        return node;
    }

    PathStep parse_step(const lysc_node *parent) {
        PathStep step{parse_node(parent), {}};
        while (at_ < text_.size() && text_[at_] == '[')
            step.predicates.push_back(parse_predicate(step.node));
        return step;
    }

    // "." alone: names may contain dots, too.
    bool takes_dot() {
        if (at_ >= text_.size() || text_[at_] != '.' ||
            (at_ + 1 < text_.size() && is_name_character(text_[at_ + 1])))
            return false;
        at_++;
        return true;
    }

    Predicate parse_predicate(const lysc_node *node) {
        expect('[', "\"[\"");
        skip_blanks();
        const bool is_value = takes_dot();
        if (is_value && node->nodetype != LYS_LEAFLIST)
            throw Error(ErrorTag::invalid_value, std::string(text_),
                        "[.='...'] names a value of a leaf-list, which \"" + schema_path(node) + "\" is not");
        Predicate predicate{is_value ? node : parse_node(node), {}};
        if (!is_value && predicate.leaf->nodetype != LYS_LEAF)
            throw Error(ErrorTag::invalid_value, std::string(text_),
                        "\"" + std::string(predicate.leaf->name) + "\" is not a leaf of \"" +
                            schema_path(node) + "\"");
        skip_blanks();
        expect('=', "\"=\"");
        skip_blanks();
        predicate.value = parse_literal();
        skip_blanks();
        expect(']', "\"]\"");
        return predicate;
    }

    std::string parse_literal() {
        if (at_ >= text_.size() || (text_[at_] != '\'' && text_[at_] != '"'))
            fail("a quoted value");
        const char quote = text_[at_++];
        std::string value;
        for (; at_ < text_.size(); at_++) {
            if (text_[at_] == quote) {
                at_++;
                if (at_ >= text_.size() || text_[at_] != quote)
                    return value;
            }
            value += text_[at_];
        }
        fail("the closing quote");
    }

    const lysc_node *root_;
    std::string_view text_;
    size_t at_ = 0;
};

} // namespace

const std::string *PathStep::value() const {
    for (const Predicate &predicate : predicates)
        if (predicate.leaf == node)
            return &predicate.value;
    return nullptr;
}

Path parse_path(const lysc_node *root, std::string_view text) {
    return Parser(root, text).parse();
}

std::string to_string(const Path &path) {
    std::string text;
    for (const PathStep &step : path) {
        text.append("/").append(step.node->name);
        for (const Predicate &predicate : step.predicates)
            text.append("[")
                .append(predicate.leaf == step.node ? "." : predicate.leaf->name)
                .append("=")
                .append(quoted_literal(predicate.value))
                .append("]");
    }
    return text;
}

std::string schema_path(const lysc_node *node) {
    return node == nullptr ? "" : schema_path(node->parent) + "/" + node->name;
}

} // namespace yfw::yang
