#include "coverage/samples.h"

#include <map>

#include "base/error.h"
#include "yang/leaf_type.h"

namespace yfw::coverage {
namespace {

constexpr const char *sample_text = "example";

// The canonical texts that are tried in turn for types without a list of values.
constexpr const char *candidates[] = {sample_text,
                                      "1",
                                      "30",
                                      "1000",
                                      "true",
                                      "10.0.0.1",
                                      "00:00:5e:00:53:01",
                                      "AA==",
                                      "100",
                                      "2026-01-01T00:00:00Z",
                                      "AAECAw=="};

bool allows(const lysc_node *leaf, const std::string &value) {
    const LY_ERR status =
        lyd_value_validate(leaf->module->ctx, leaf, value.c_str(), value.size(), nullptr, nullptr, nullptr);
    ly_err_clean(leaf->module->ctx, nullptr);
    return status == LY_SUCCESS || status == LY_EINCOMPLETE; // of a reference, only the type can be checked
}

void add_derived(const lysc_ident *identity, std::vector<std::string> &to) {
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(identity->derived, i) {
        const lysc_ident *derived = identity->derived[i];
        if (derived->module->implemented != 0)
            to.push_back(std::string(derived->module->name) + ":" + derived->name);
        add_derived(derived, to);
    }
}

std::vector<std::string> listed_values(const lysc_type *type) {
    std::vector<std::string> values;
    LY_ARRAY_COUNT_TYPE i = 0;
    switch (type->basetype) {
    case LY_TYPE_BOOL:
        return {"true", "false"};
    case LY_TYPE_ENUM:
        LY_ARRAY_FOR(reinterpret_cast<const lysc_type_enum *>(type)->enums, i) {
            values.emplace_back(reinterpret_cast<const lysc_type_enum *>(type)->enums[i].name);
        }
        return values;
    case LY_TYPE_IDENT:
        LY_ARRAY_FOR(reinterpret_cast<const lysc_type_identityref *>(type)->bases, i) {
            add_derived(reinterpret_cast<const lysc_type_identityref *>(type)->bases[i], values);
        }
        return values;
    case LY_TYPE_EMPTY:
        return {""};
    default:
        return {};
    }
}

// Makes one instance of everything below a schema node.
class Maker {
public:
    Maker(const std::map<const lysc_node *, std::string> &given) : given_(given) {}

    void fill(lyd_node *parent, const lysc_node *schema) const {
        const lysc_node *child = nullptr;
        while ((child = lys_getnext(child, schema, nullptr, 0)) != nullptr)
            if (!lysc_is_key(child))
                make(parent, child);
    }

    lyd_node *make(lyd_node *parent, const lysc_node *schema) const {
        lyd_node *made = nullptr;
        const lys_module *module = schema->module;
        if (schema->nodetype == LYS_CONTAINER)
            lyd_new_inner(parent, module, schema->name, 0, &made);
        else if (schema->nodetype == LYS_LIST)
            lyd_new_list2(parent, module, schema->name, keys(schema).c_str(), 0, &made);
        else if ((schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
            lyd_new_term(parent, module, schema->name, value(schema).c_str(), 0, &made);
        if (made != nullptr && (schema->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0)
            fill(made, schema);
        ly_err_clean(module->ctx, nullptr);
        return made;
    }

private:
    std::string value(const lysc_node *leaf) const {
        const auto found = given_.find(leaf);
        const std::vector<std::string> values =
            found != given_.end() ? std::vector{found->second} : sample_values(leaf);
        return values.empty() ? "" : values.front();
    }

    std::string keys(const lysc_node *list) const {
        std::string text;
        for (const lysc_node *key = lysc_node_child(list); key != nullptr && lysc_is_key(key); key = key->next)
            text += "[" + std::string(key->name) + "='" + value(key) + "']";
        return text;
    }

    const std::map<const lysc_node *, std::string> &given_;
};

void give(std::map<const lysc_node *, std::string> &to, const lysc_node *leaf, const std::string &value) {
    if (leaf != nullptr)
        to.emplace(leaf, value);
}

// The values that the description names.
std::map<const lysc_node *, std::string> given_values(const yang::Schemas &schemas,
                                                      const host::MappingDescription &mapping) {
    std::map<const lysc_node *, std::string> given;
    for (const host::Example &example : mapping.examples)
        give(given, schemas.find(example.module, example.path), example.value);
    if (mapping.device.enabled.has_value())
        give(given, schemas.find(mapping.device.enabled->module, mapping.device.enabled->path),
             mapping.device.enabled->on);
    for (const host::InterfaceEntries &entries : mapping.device.interfaces)
        for (const auto &[leaf, value] : entries.where)
            give(given, schemas.find(entries.module, entries.path + "/" + leaf), value);
    return given;
}

} // namespace

std::vector<std::string> sample_values(const lysc_node *leaf) {
    std::vector<std::string> values = listed_values(yang::leaf_type(leaf));
    if (!values.empty())
        return values;
    for (const char *candidate : candidates)
        if (allows(leaf, candidate))
            values.emplace_back(candidate);
    return values;
}

bool are_all_values(const lysc_node *leaf) {
    return !listed_values(yang::leaf_type(leaf)).empty();
}

yang::Path sample_path(const lysc_node *node) {
    yang::Path path;
    for (; node != nullptr; node = node->parent) {
        yang::PathStep step{node, {}};
        for (const lysc_node *key = node->nodetype == LYS_LIST ? lysc_node_child(node) : nullptr;
             key != nullptr && lysc_is_key(key); key = key->next) {
            const std::vector<std::string> values = sample_values(key);
            step.predicates.push_back({key, values.empty() ? "" : values.front()});
        }
        path.insert(path.begin(), std::move(step));
    }
    return path;
}

yang::DataTree whole_native_data(const yang::Schemas &schemas, const host::MappingDescription &mapping) {
    const std::map<const lysc_node *, std::string> given = given_values(schemas, mapping);
    const Maker maker(given);
    yang::DataTree data;
    for (const std::string &name : mapping.modules.native) {
        const lys_module *module = ly_ctx_get_module_implemented(schemas.context(), name.c_str());
        for (const lysc_node *top = module->compiled->data; top != nullptr; top = top->next) {
            lyd_node *first = data.release();
            lyd_insert_sibling(first, maker.make(nullptr, top), &first);
            data.reset(first);
        }
    }
    return data;
}

yang::DataTree native_data_of_on(const yang::Schemas &schemas, const host::MappingDescription &mapping) {
    if (!mapping.device.enabled.has_value())
        return nullptr;
    const auto &[module, path, on] = *mapping.device.enabled;
    lyd_node *data = nullptr;
    if (lyd_new_path(nullptr, schemas.context(), ("/" + module + ":" + path.substr(1)).c_str(), on.c_str(), 0,
                     &data) != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, path, yang::take_yang_error(schemas.context()));
    return yang::DataTree(data);
}

} // namespace yfw::coverage
