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
        if (document.contains("@"))
            refuse("", "the annotations \"@\" are those of no node");
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
            EditElement &made = to.children.emplace_back(named(name, to));
            made.in_array = false;
            return read_value(is_empty_type ? value[0] : value, made, path);
        }
        for (const Json &each : value) {
            EditElement &made = to.children.emplace_back(named(name, to));
            made.in_array = true;
            read_value(each, made, path);
        }
        if (value.empty()) {
            EditElement &made = to.children.emplace_back(named(name, to));
            made.in_array = made.is_empty_array = true;
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

    // RFC 7952 section 5.2: a leaf has one object of annotations, a leaf-list an array with one for each entry
    // or null; without a value, they are those of leaves to be deleted. Containers and list entries have "@".
    void annotate(const std::string &name, const Json &annotations, EditElement &parent,
                  const std::string &path) const {
        const EditElement about = named(name, parent);
        const std::string place = path + "/" + about.name;
        std::vector<size_t> entries;
        for (size_t i = 0; i < parent.children.size(); i++)
            if (parent.children[i].name == about.name && parent.children[i].ns == about.ns)
                entries.push_back(i);
        const bool is_new = entries.empty();
        const size_t count = annotations.is_array() ? annotations.size() : 1;
        for (size_t i = 0; is_new && i < count; i++) {
            entries.push_back(parent.children.size());
            parent.children.push_back(valueless(about, annotations.is_array()));
        }
        if (count > entries.size() || count == 0)
            refuse(place, "has not as many values as annotations");
        for (size_t i = 0; i < count; i++)
            annotate_value(annotations.is_array() ? annotations[i] : annotations, annotations.is_array(), place,
                           parent.children[entries[i]]);
    }

    static EditElement valueless(const EditElement &about, bool in_array) {
        EditElement made = about;
        made.text = "";
        made.written = Written::nothing;
        made.in_array = in_array;
        return made;
    }

    static void annotate_value(const Json &annotations, bool in_array, const std::string &place,
                               EditElement &to) {
        if (!to.text.has_value())
            refuse(place, "is not a leaf: its annotations are its member \"@\"");
        if (to.in_array != in_array)
            refuse(place, in_array ? "is not an array, but its annotations are"
                                   : "is an array, and so its annotations must be");
        if (to.operation.has_value() || to.default_tag.has_value())
            refuse(place, "is annotated twice");
        if (!in_array || !annotations.is_null() || to.written == Written::nothing)
            read_annotations(annotations, place, to);
    }

    const ly_ctx *context_;
};

} // namespace

EditElement edit_element_from_json(const ly_ctx *context, const std::string &text) {
    return Reader(context).top(parse_json(text));
}

} // namespace yfw::yang
