// Builds native data node by node.
#ifndef YFW_SOURCES_LLDPD_NATIVE_WRITER_H
#define YFW_SOURCES_LLDPD_NATIVE_WRITER_H

#include <optional>
#include <string>

#include "yang/data_tree.h"

namespace yfw::sources::lldpd {

// A container or list entry being filled. Throws Error for nodes that the models do not define.
class Inner {
public:
    // A module's top-level container in `forest`.
    Inner(const ly_ctx *context, const char *module, const char *name, yang::DataTree &forest);

    // A container, or a list entry without keys, below this one; from `module` when given.
    Inner inner(const char *name, const char *module = nullptr) const;
    // A list entry with the given keys.
    Inner entry(const char *list, const std::string &key) const;
    Inner entry(const char *list, const std::string &key, const std::string &second) const;

    void leaf(const char *name, const std::string &value) const;
    void leaf(const char *name, uint64_t value) const { leaf(name, std::to_string(value)); }
    // Writes nothing when there is no value.
    template <class Value> void leaf(const char *name, const std::optional<Value> &value) const {
        if (value.has_value())
            leaf(name, *value);
    }

    lyd_node *node() const { return node_; }

private:
    explicit Inner(lyd_node *node) : node_(node) {}

    lyd_node *node_;
};

} // namespace yfw::sources::lldpd

#endif
