// Edits in JSON (RFC 7951), with operations as annotations (RFC 7952).
#include "base/error.h"
#include "yang/edit_element.h"
#include "yang/json_text.h"

namespace yfw::yang {
namespace {

using Json = nlohmann::ordered_json;
using Written = EditElement::Written;

constexpr std::string_view operation_annotation = "ietf-netconf:operation";
constexpr std::string_view default_annotation = "ietf-netconf-with-defaults:default";

[[noreturn]] void refuse(const std::string &path, const std::string &why) {
    throw Error(ErrorTag::invalid_value, path, why);
}

void read_annotations(const Json &annotations, const std::string &path, EditElement &to) {
    if (!annotations.is_object())
        refuse(path, "annotations must be an object");
    for (const auto &[name, value] : annotations.items()) {
        if (name == operation_annotation && value.is_string())
            to.operation = value.get<std::string>();
        else if (name == default_annotation)
            to.default_tag = value.is_boolean() ? value.dump() : "not a boolean";
        else
            to.unknown_attribute = name;
    }
}

class Reader {
public:
    explicit Reader(const ly_ctx *context) : context_(context) {}

    EditElement top(const Json &document) const {
        if (!document.is_object())
            refuse("", "an edit in JSON must be an object");
        EditElement holder;
        read_members(document, holder, "");
        if (holder.children.empty())
            throw Error(ErrorTag::missing_element, "", "the edit is empty");
        if (holder.children.size() > 1)
            throw Error(ErrorTag::bad_element, "/" + holder.children[1].name,
                        "an edit must have a single top node");
        return std::move(holder.children.front());
    }

private:
    // A node without a module name belongs to its parent's module.
    EditElement named(const std::string &name, const EditElement &parent) const {
        EditElement made;
        const size_t colon = name.find(':');
        made.name = colon == std::string::npos ? name : name.substr(colon + 1);
        made.ns = colon == std::string::npos ? parent.ns : name.substr(0, colon);
        made.module = made.ns.empty() ? nullptr : ly_ctx_get_module_implemented(context_, made.ns.c_str());
        return made;
    }

    void read_members(const Json &object, EditElement &to, const std::string &path) const {
        for (const auto &[name, value] : object.items()) {
            if (name == "@")
                read_annotations(value, path, to);
            else if (name.starts_with('@'))
                continue; // handled with the member it annotates
            else
                read_member(name, value, to, path);
        }
        for (const auto &[name, value] : object.items())
            if (name.size() > 1 && name.starts_with('@'))
                annotate(name.substr(1), value, to, path);
    }

    void read_member(const std::string &name, const Json &value, EditElement &to,
                     const std::string &path) const {
        const bool is_empty_type = value.is_array() && value.size() == 1 && value[0].is_null();
        if (!value.is_array() || is_empty_type) {
            to.children.push_back(named(name, to));
            read_value(is_empty_type ? value[0] : value, to.children.back(), path);
            return;
        }
        for (const Json &each : value) {
            to.children.push_back(named(name, to));
            read_value(each, to.children.back(), path);
        }
    }

    void read_value(const Json &value, EditElement &to, const std::string &parent) const {
        const std::string path = parent + "/" + to.name;
        if (value.is_object())
            return read_members(value, to, path);
        if (value.is_array())
            refuse(path, "an array cannot contain arrays");
        to.text = value.is_string() ? value.get<std::string>() : value.is_null() ? "" : value.dump();
        to.written = value.is_string()    ? Written::json_string
                     : value.is_boolean() ? Written::json_boolean
                     : value.is_null()    ? Written::json_null
                                          : Written::json_number;
    }

    // Annotations without a value are those of a leaf to be deleted; a leaf-list has one annotation per entry.
    void annotate(const std::string &name, const Json &annotations, EditElement &parent,
                  const std::string &path) const {
        const EditElement about = named(name, parent);
        size_t entry = 0;
        bool found = false;
        for (EditElement &child : parent.children) {
            if (child.name != about.name || child.ns != about.ns)
                continue;
            found = true;
            const Json *own = &annotations;
            if (annotations.is_array())
                own = entry < annotations.size() ? &annotations[entry++] : nullptr;
            if (own != nullptr && !own->is_null())
                read_annotations(*own, path + "/" + about.name, child);
        }
        if (found)
            return;
        if (!annotations.is_array())
            return add_valueless(about, annotations, parent, path);
        for (const Json &own : annotations)
            add_valueless(about, own, parent, path);
    }

    static void add_valueless(const EditElement &about, const Json &annotations, EditElement &parent,
                              const std::string &path) {
        parent.children.push_back(about);
        parent.children.back().text = "";
        read_annotations(annotations, path + "/" + about.name, parent.children.back());
    }

    const ly_ctx *context_;
};

} // namespace

EditElement edit_element_from_json(const ly_ctx *context, const std::string &text) {
    return Reader(context).top(parse_json(text));
}

} // namespace yfw::yang
