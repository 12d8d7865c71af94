// A node of an edit document as it was written, before it is checked against the schema; the same for XML and
// JSON.
#ifndef YFW_YANG_EDIT_ELEMENT_H
#define YFW_YANG_EDIT_ELEMENT_H

#include <optional>
#include <string>
#include <vector>

#include <libyang/libyang.h>

#include "xml/element.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::yang {

struct EditElement {
    // How a value is written. In JSON this must fit the type of its leaf (RFC 7951 section 6); XML text fits
    // any. A leaf that is only annotated has none (RFC 7952 section 5.2.2).
    enum class Written { text, json_string, json_number, json_boolean, json_null, nothing };

    std::string name;
    std::string ns;                     // the namespace in XML, the name of the module in JSON
    const lys_module *module = nullptr; // NULL: no module has that namespace
    // The value as written; nothing for a JSON object.
    std::optional<std::string> text;
    // What the value is if it names an identity: with the module's name instead of the XML prefix. Nothing
    // where that is no other text.
    std::optional<std::string> as_identity;
    Written written = Written::text;
    std::optional<bool> in_array; // JSON only: whether it is an entry of an array
    bool is_empty_array = false;  // JSON only: no node, but its name has to be known
    std::vector<EditElement> children;
    std::optional<std::string> operation;   // RFC 6241 section 7.2
    std::optional<std::string> default_tag; // as written (RFC 6243 section 4.5.2)
    std::optional<std::string> unknown_attribute;
};

// The elements of an edit in XML, and of an edit in JSON, which has exactly one top member. The latter throws
// Error for text that is not JSON or cannot be an edit whatever the schema.
EditElement edit_element_from(const ly_ctx *context, const xml::Element &element);
EditElement edit_element_from_json(const ly_ctx *context, const std::string &text);

// Checks the element against the schema and returns it as an edit, with `default_operation` where a node
// neither has nor inherits an operation. Throws Error with the instance path of the element at fault.
EditNode read_edit(const Schemas &schemas, const EditElement &root, Operation default_operation);
// The same for an edit of another top container, of the element's context.
EditNode read_edit(const lysc_node *top, const EditElement &root, Operation default_operation);

} // namespace yfw::yang

#endif
