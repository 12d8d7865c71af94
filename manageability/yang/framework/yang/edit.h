// A client's edit, in OpenConfig terms.
#ifndef YFW_YANG_EDIT_H
#define YFW_YANG_EDIT_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "yang/data_tree.h"
#include "yang/path.h"
#include "yang/schemas.h"

namespace yfw::yang {

// Edit operations of RFC 6241 section 7.2; `none` changes nothing by itself.
enum class Operation { merge, replace, create, delete_existing, remove, none };

std::string_view to_string(Operation operation);
// Nothing for an unknown operation.
std::optional<Operation> operation_from(std::string_view word);

inline bool takes_away(Operation operation) {
    return operation == Operation::delete_existing || operation == Operation::remove;
}

// A node of an edit. Its operation is either explicit or inherited.
struct EditNode {
    const lysc_node *node = nullptr;
    std::optional<std::string> value;
    std::vector<EditNode> children; // keys first
    Operation operation = Operation::none;
    bool is_step = false;                   // of a path: made when it is missing, whatever the operation
    std::vector<Predicate> conditions = {}; // leaves besides the keys, and the values they must have

    bool is_key() const { return lysc_is_key(node); }
};

// Adds to `root` the edit that sets or deletes the node at `path`: a leaf or leaf-list entry with `value`, or a
// container or list entry without one. A later edit of the same node wins. The node of `root` is the first step
// of the path. Deleting a leaf-list without a value deletes all its values. Throws Error when a list entry
// lacks a key, the path gives one twice, or a value is missing, not allowed or another one than the path's.
void add_edit(EditNode &root, const Path &path, const std::optional<std::string> &value, Operation operation);

// Parses an edit document, XML or JSON, with the operations of its nodes (RFC 6241 section 7.2) and
// `default_operation` where a node neither has nor inherits one. Throws Error naming the offending element.
EditNode parse_edit(const Schemas &schemas, const std::string &document, Operation default_operation);

// The edit as an XML document, which parse_edit() accepts.
std::string print_edit(const EditNode &root);

// The same edit, with a leaf-list that is deleted without a value written as its values in `current`, which may
// be NULL.
EditNode with_deleted_values(const EditNode &edit, const lyd_node *current);

// Removes the content of deleted nodes: deleting a container or list entry includes all of it.
void drop_deleted_content(EditNode &root);

// The node's instance path, given its parent's: "/lldp/interfaces/interface[name='eth1']".
std::string instance_path(std::string_view parent, const EditNode &node);

// Throws Error when the edit creates what `current` has (data-exists), deletes what it lacks, has a condition
// that does not hold, or names an entry or a leaf without an operation that is not there (data-missing).
// `current`: what an OpenConfig read returns; may be NULL.
void check_existence(const EditNode &root, const lyd_node *current);

} // namespace yfw::yang

#endif
