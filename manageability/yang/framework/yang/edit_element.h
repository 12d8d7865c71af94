// A node of an edit document, as it was written and before the model is asked; the same for XML and JSON.
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
    // What a JSON value is written as, which has to go with the type of its leaf (RFC 7951 section 6). Text in
    // XML goes with any.
    enum class Written { text, json_string, json_number, json_boolean, json_null };

    std::string name;
    std::string ns;                     // the namespace in XML, the name of the module in JSON
    const lys_module *module = nullptr; // NULL: none has that namespace
    // As it is written, but for the prefix of a name: a module's name. Nothing for a JSON object.
    std::optional<std::string> text;
    Written written = Written::text;
    std::vector<EditElement> children;
    std::optional<std::string> operation; // RFC 6241 section 7.2
    bool is_tagged_default = false;       // RFC 6243 section 4.5.2
    std::optional<std::string> unknown_attribute;
};

// The elements of an edit in XML; in JSON, of its one top member. Both throw Error for what is no edit in any
// model.
EditElement edit_element_from(const ly_ctx *context, const xml::Element &element);
EditElement edit_element_from_json(const ly_ctx *context, const std::string &text);

// The edit that the element says, with the operations of its nodes and `default_operation` where a node neither
// has nor inherits one. Throws Error that names the element at fault: by its instance path below the OpenConfig
// module.
EditNode read_edit(const Schemas &schemas, const EditElement &root, Operation default_operation);

} // namespace yfw::yang

#endif
