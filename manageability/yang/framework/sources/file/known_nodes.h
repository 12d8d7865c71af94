// The schema nodes of elements, found by their names.
#ifndef YFW_SOURCES_FILE_KNOWN_NODES_H
#define YFW_SOURCES_FILE_KNOWN_NODES_H

#include <memory>
#include <unordered_map>
#include <vector>

#include <libyang/libyang.h>

#include "yang/value_check.h"

namespace yfw::sources {

// What the models say about a node, looked up once.
struct KnownNode {
    explicit KnownNode(const lysc_node *node);

    const lysc_node *schema;
    bool is_plain = false;                   // a container, a list, or values whose text needs no prefixes
    std::unique_ptr<yang::ValueCheck> check; // of a leaf or leaf-list
    std::vector<const lysc_node *> keys;     // of a list, in their order

    struct Child {
        const char *name;
        const char *ns;
        KnownNode *node;
    };
    std::vector<Child> children; // those met in this file
};

// Equal names and namespaces must have the same address until forget_names(); a namespace may be NULL.
class KnownNodes {
public:
    // Borrows the context.
    explicit KnownNodes(const ly_ctx *context) : context_(context) {}

    // A top-level node, and a child; NULL when there is none. Valid as long as this object.
    KnownNode *top(const char *name, const char *ns);
    KnownNode *child(KnownNode &parent, const char *name, const char *ns);

    void forget_names();

private:
    KnownNode *find(const lysc_node *parent, const char *name, const char *ns);

    const ly_ctx *context_;
    std::unordered_map<const lysc_node *, std::unique_ptr<KnownNode>> nodes_;
};

} // namespace yfw::sources

#endif
