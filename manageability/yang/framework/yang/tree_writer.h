// Receives a tree of data node by node, in document order.
#ifndef YFW_YANG_TREE_WRITER_H
#define YFW_YANG_TREE_WRITER_H

#include <libyang/libyang.h>

namespace yfw::yang {

// Siblings come in the order of the schema; the entries of a list or leaf-list follow one another, and a list
// entry's keys come first.
class TreeWriter {
public:
    virtual ~TreeWriter() = default;

    // A container or list entry begins, or ends.
    virtual void open(const lysc_node *node) = 0;
    virtual void close() = 0;
    // A leaf, or one value of a leaf-list. `value`: in canonical form.
    virtual void leaf(const lysc_node *node, const char *value) = 0;
};

} // namespace yfw::yang

#endif
