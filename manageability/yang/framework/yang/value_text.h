// Values as JSON and XML write them.
#ifndef YFW_YANG_VALUE_TEXT_H
#define YFW_YANG_VALUE_TEXT_H

#include <string>
#include <unordered_map>

#include <libyang/libyang.h>

namespace yfw::yang {

struct ValueText {
    std::string text;
    std::string declarations;           // XML: of the namespaces of its prefixes, as attributes
    LY_DATA_TYPE type = LY_TYPE_STRING; // what it is: of a union, the member; never a leafref
};

// Converts canonical values. Remembers those that had to be resolved, up to a limit.
class ValueTexts {
public:
    // LY_VALUE_XML or LY_VALUE_JSON.
    explicit ValueTexts(LY_VALUE_FORMAT format) : format_(format) {}

    // The type of the leaf's values if all of them are written as their canonical form; LY_TYPE_UNKNOWN if they
    // are to be resolved one by one.
    LY_DATA_TYPE plain_type(const lysc_node *leaf);

    // Of a value to be resolved; valid until the next call.
    const ValueText &of(const lysc_node *leaf, const char *value);

private:
    ValueText resolve(const lysc_node *leaf, const char *value) const;

    LY_VALUE_FORMAT format_;
    std::unordered_map<const lysc_node *, LY_DATA_TYPE> types_;
    std::unordered_map<const lysc_node *, std::unordered_map<std::string, ValueText>> known_;
    size_t known_count_ = 0;
};

} // namespace yfw::yang

#endif
