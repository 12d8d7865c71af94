// Data as JSON.
#ifndef YFW_FRONTENDS_GNMI_VALUES_JSON_VALUE_H
#define YFW_FRONTENDS_GNMI_VALUES_JSON_VALUE_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "frontends/gnmi/data/snapshot.h"
#include "yang/value_text.h"

namespace yfw::gnmi {

// `ietf` follows RFC 7951: names of modules before the members at the top and before identities, and 64-bit
// numbers as strings. `plain` has no names of modules, and all numbers are numbers.
enum class JsonForm { plain, ietf };

struct JsonOptions {
    JsonForm form = JsonForm::ietf;
    uint32_t depth = 0; // levels below the node; 0: all
    std::function<bool(const lysc_node *)>
        takes{}; // which leaves; empty: all. Keys are added to whatever is left.
};

// Writes nodes as JSON. Remembers how values are written, so that one writer is best used for many nodes.
class JsonValues {
public:
    explicit JsonValues(JsonOptions options) : options_(std::move(options)) {}

    // The object of a container's, an entry's or the root's content, the value of a leaf, or the array of a
    // leaf-list, which its first value stands for. Nothing when nothing of it is taken.
    std::optional<std::string> of(const Snapshot &snapshot, Snapshot::Index node);

    // One value of a leaf.
    std::string of(const lysc_node *leaf, const char *value);

private:
    bool write_object(const Snapshot &snapshot, Snapshot::Index node, uint32_t depth, bool is_top,
                      std::string &to);
    void write_values(const Snapshot &snapshot, Snapshot::Index first, std::string &to);
    bool write_entries(const Snapshot &snapshot, Snapshot::Index &at, uint32_t depth, std::string &to);
    void write_value(const lysc_node *leaf, const char *value, std::string &to);
    void begin_member(const lysc_node *parent, const lysc_node *node, bool is_top, std::string &to) const;
    bool takes(const lysc_node *leaf) const { return !options_.takes || options_.takes(leaf); }

    JsonOptions options_;
    yang::ValueTexts texts_{LY_VALUE_JSON};
};

} // namespace yfw::gnmi

#endif
