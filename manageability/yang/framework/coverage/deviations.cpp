#include "coverage/deviations.h"

#include <map>
#include <set>

#include "yang/leaf_type.h"

namespace yfw::coverage {
namespace {

class Writer {
public:
    explicit Writer(const Coverage &coverage) : coverage_(coverage) {}

    std::string text() {
        for (const Row &row : coverage_.rows)
            deviate(row);
        return body_.empty() ? "" : head() + body_ + "}\n";
    }

private:
    const lys_module *main() const { return coverage_.rows.front().node->module; }

    // The prefix under which the module imports another one.
    const std::string &prefix_of(const lys_module *module) {
        return prefixes_.try_emplace(module, module->prefix).first->second;
    }

    std::string target(const lysc_node *node) {
        return node == nullptr ? "" : target(node->parent) + "/" + prefix_of(node->module) + ":" + node->name;
    }

    void deviate(const Row &row) {
        const bool is_above_served =
            row.node->parent == nullptr || served_.contains(row.node->parent); // else it goes with its parent
        if (!is_above_served)
            return;
        if (row.service == Service::not_served && row.node->parent != nullptr) {
            add(row, "This device does not serve it.", "    deviate not-supported;\n");
            return;
        }
        served_.insert(row.node);
        if (row.is_leaf())
            restrict_leaf(row);
    }

    void restrict_leaf(const Row &row) {
        const bool is_configuration = (row.node->flags & LYS_CONFIG_W) != 0;
        if (is_configuration && !row.is_written() && !lysc_is_key(row.node))
            add(row, "This device shows it and does not let it be set.",
                (row.node->flags & LYS_SET_CONFIG) != 0 ? "    deviate replace {\n      config false;\n    }\n"
                                                        : "    deviate add {\n      config false;\n    }\n");
        if (row.ignores_default)
            add(row, "Without configuration, this device does otherwise.",
                "    deviate delete {\n      default \"" + default_of(row.node) + "\";\n    }\n");
        if (const std::string type = narrower_type(row); !type.empty())
            add(row, "This device accepts no other values.",
                "    deviate replace {\n      type " + type + "\n    }\n");
        if (const std::string musts = refused_identities(row); !musts.empty())
            add(row, "This device accepts no other values.", "    deviate add {\n" + musts + "    }\n");
    }

    static std::string default_of(const lysc_node *node) {
        return lyd_value_get_canonical(node->module->ctx, reinterpret_cast<const lysc_node_leaf *>(node)->dflt);
    }

    std::string narrower_type(const Row &row) {
        const lysc_type *type = yang::leaf_type(row.node);
        if (!row.limits.range.empty())
            return std::string(base_name(type->basetype)) + " {\n        range \"" + row.limits.range +
                   "\";\n      }";
        if (row.limits.least.has_value())
            return "string {\n        length \"" + std::to_string(*row.limits.least) + "..max\";\n      }";
        if (type->basetype != LY_TYPE_ENUM || row.limits.refused.empty())
            return "";
        const std::set<std::string> refused(row.limits.refused.begin(), row.limits.refused.end());
        std::string text = "enumeration {\n";
        const auto *enumeration = reinterpret_cast<const lysc_type_enum *>(type);
        LY_ARRAY_COUNT_TYPE i = 0;
        LY_ARRAY_FOR(enumeration->enums, i) {
            if (!refused.contains(enumeration->enums[i].name))
                text += "        enum \"" + std::string(enumeration->enums[i].name) + "\" {\n          value " +
                        std::to_string(enumeration->enums[i].value) + ";\n        }\n";
        }
        return text + "      }";
    }

    static const char *base_name(LY_DATA_TYPE type) {
        switch (type) {
        case LY_TYPE_INT8:
            return "int8";
        case LY_TYPE_INT16:
            return "int16";
        case LY_TYPE_INT32:
            return "int32";
        case LY_TYPE_INT64:
            return "int64";
        case LY_TYPE_UINT8:
            return "uint8";
        case LY_TYPE_UINT16:
            return "uint16";
        case LY_TYPE_UINT32:
            return "uint32";
        default:
            return "uint64";
        }
    }

    // YANG cannot narrow an identityref.
    std::string refused_identities(const Row &row) {
        if (yang::leaf_type(row.node)->basetype != LY_TYPE_IDENT)
            return "";
        std::string text;
        for (const std::string &value : row.limits.refused) {
            const size_t colon = value.find(':');
            const lys_module *module =
                ly_ctx_get_module_implemented(row.node->module->ctx, value.substr(0, colon).c_str());
            text += "      must \"not(derived-from-or-self(., '" + prefix_of(module) + value.substr(colon) +
                    "'))\";\n";
        }
        return text;
    }

    void add(const Row &row, const std::string &why, const std::string &deviate) {
        body_ += "\n  deviation \"" + target(row.node) + "\" {\n    description\n      \"" + why + "\";\n" +
                 deviate + "  }\n";
    }

    std::string head() {
        const std::string name = deviations_name(main()->name);
        std::string text = "module " + name + " {\n  yang-version 1.1;\n  namespace \"urn:yfw:yang:" + name +
                           "\";\n  prefix yfw-devs;\n";
        for (const auto &[module, prefix] : prefixes_)
            text += "\n  import " + std::string(module->name) + " {\n    prefix " + prefix + ";\n  }\n";
        text += "\n  organization\n    \"Maintained with this device's software.\";\n  contact\n"
                "    \"The maintainers of this device's software.\";\n  description\n"
                "    \"What this device does otherwise than module " +
                std::string(main()->name) + " says, or does\n     not serve of it.\";\n";
        if (main()->revision != nullptr)
            text += "\n  revision " + std::string(main()->revision) +
                    " {\n    description\n      \"Deviates from the revision of the same date.\";\n  }\n";
        return text;
    }

    struct ByName {
        bool operator()(const lys_module *a, const lys_module *b) const {
            return std::string_view(a->name) < b->name;
        }
    };

    const Coverage &coverage_;
    std::map<const lys_module *, std::string, ByName> prefixes_;
    std::set<const lysc_node *> served_;
    std::string body_;
};

} // namespace

std::string deviations_name(const std::string &module) {
    return "yfw-" + module + "-devs";
}

std::string deviations_of(const Coverage &coverage) {
    return Writer(coverage).text();
}

} // namespace yfw::coverage
