#include "frontends/gnmi/data/response_path.h"

#include <string>

#include "frontends/gnmi/paths/key_value.h"

namespace yfw::gnmi {

void set_path(::gnmi::Path &to, const Snapshot &snapshot, Snapshot::Index node) {
    if (node == Snapshot::root) {
        to.clear_elem();
        return;
    }
    set_path(to, snapshot, snapshot[node].parent);
    add_element(to, snapshot, node);
}

void add_element(::gnmi::Path &to, const Snapshot &snapshot, Snapshot::Index node) {
    const lysc_node *schema = snapshot[node].schema;
    ::gnmi::PathElem &element = *to.add_elem();
    element.set_name(schema->name);
    if (schema->nodetype != LYS_LIST)
        return;
    for (Snapshot::Index key = Snapshot::first_child(node);
         key < snapshot[node].end && lysc_is_key(snapshot[key].schema); key = snapshot[key].end)
        (*element.mutable_key())[snapshot[key].schema->name] =
            std::string(bare_value(snapshot[key].schema, snapshot[key].value));
}

::gnmi::Path path_of(const PathPattern &pattern) {
    ::gnmi::Path path;
    for (const PatternStep &step : pattern.steps) {
        ::gnmi::PathElem &element = *path.add_elem();
        element.set_name(step.node->name);
        const lysc_node *key = lysc_node_child(step.node);
        for (const auto &value : step.keys) {
            if (value.has_value())
                (*element.mutable_key())[key->name] = std::string(bare_value(key, *value));
            key = key->next;
        }
    }
    return path;
}

} // namespace yfw::gnmi
