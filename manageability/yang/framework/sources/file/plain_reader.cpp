#include "sources/file/plain_reader.h"

#include <fstream>
#include <set>
#include <string_view>
#include <vector>

#include "sources/file/known_nodes.h"
#include "sources/file/xml_copy.h"
#include "xml/element_stream.h"
#include "xml/text.h"
#include "yang/yang_text.h"

namespace yfw::sources {
namespace {

bool is_of_openconfig(const lysc_node *node) {
    return std::string_view(node->module->name).starts_with("openconfig-");
}

} // namespace

// Copies trees of configuration, and takes the others over.
class PlainReader::Handler final : public xml::ElementHandler {
public:
    explicit Handler(const ly_ctx *context) : nodes_(context) {}

    bool start(const char *name, const char *ns, bool has_attributes) override {
        if (configuration.is_open())
            return configuration.start(name, ns, has_attributes);
        if (has_attributes)
            return false;
        return open_.empty() ? start_tree(name, ns) : start_child(name, ns);
    }

    bool end() override { return configuration.is_open() ? configuration.end() : end_node(); }

    bool text(std::string_view piece) override {
        if (configuration.is_open())
            return configuration.text(piece);
        text_ += piece;
        return true;
    }

    void begin_file() {
        nodes_.forget_names();
        earlier_trees_ = trees_.size();
    }
    bool has_trees() const { return trees_.size() > earlier_trees_; }

    XmlCopy configuration;
    yang::InstanceForestBuilder state;

private:
    struct Open {
        KnownNode *node;
        size_t keys; // so many were read
    };

    bool start_tree(const char *name, const char *ns) {
        KnownNode *node = nodes_.top(name, ns);
        if (node == nullptr || node->schema->nodetype != LYS_CONTAINER || is_of_openconfig(node->schema) ||
            !trees_.insert(node->schema).second)
            return false;
        if ((node->schema->flags & LYS_CONFIG_W) != 0)
            return configuration.start(name, ns, false);
        open(*node);
        return true;
    }

    bool start_child(const char *name, const char *ns) {
        Open &parent = open_.back();
        if (yang::is_term(parent.node->schema) || !xml::is_white_space(text_))
            return false;
        KnownNode *node = nodes_.child(*parent.node, name, ns);
        if (node == nullptr || !node->is_plain || !is_in_order(parent, node->schema))
            return false;
        open(*node);
        return true;
    }

    // Keys come first, in their order, as in libyang's trees.
    static bool is_in_order(Open &parent, const lysc_node *child) {
        const std::vector<const lysc_node *> &keys = parent.node->keys;
        if (parent.keys == keys.size())
            return !lysc_is_key(child);
        return keys[parent.keys++] == child;
    }

    void open(KnownNode &node) {
        text_.clear();
        open_.push_back({&node, 0});
        if (!yang::is_term(node.schema))
            state.open(node.schema);
    }

    bool end_node() {
        const Open ended = open_.back();
        open_.pop_back();
        const bool is_right = yang::is_term(ended.node->schema) ? end_leaf(*ended.node) : end_inner(ended);
        text_.clear();
        return is_right;
    }

    bool end_leaf(KnownNode &leaf) {
        if (!yang::is_yang_text(text_))
            return false;
        const yang::ValueCheck::Result &result = leaf.check->of(text_.c_str());
        if (result.is_allowed)
            state.add_leaf(leaf.schema, result.canonical.empty() ? text_ : result.canonical);
        return result.is_allowed;
    }

    bool end_inner(const Open &ended) {
        state.close();
        return xml::is_white_space(text_) && ended.keys == ended.node->keys.size();
    }

    KnownNodes nodes_;
    std::set<const lysc_node *> trees_; // those read
    size_t earlier_trees_ = 0;          // of earlier files
    std::vector<Open> open_;            // of a tree that is not configuration
    std::string text_;                  // of the open element, since its last child
};

PlainReader::PlainReader(const ly_ctx *context) : handler_(std::make_unique<Handler>(context)) {}

PlainReader::~PlainReader() = default;

bool PlainReader::read(const std::filesystem::path &file) {
    std::ifstream from(file, std::ios::binary);
    if (!from)
        return false;
    handler_->begin_file();
    return xml::read_elements(from, *handler_) && handler_->has_trees();
}

const std::string &PlainReader::configuration() const {
    return handler_->configuration.copied();
}

yang::InstanceForestBuilder &PlainReader::state() {
    return handler_->state;
}

} // namespace yfw::sources
