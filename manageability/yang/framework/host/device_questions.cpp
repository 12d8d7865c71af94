#include "host/device_questions.h"

#include "base/error.h"

namespace yfw::host {
namespace {

class Finder {
public:
    Finder(const MappingDescription &mapping, const yang::Schemas &schemas)
        : mapping_(mapping), schemas_(schemas) {}

    DeviceQuestions::Switch leaf(const DeviceAnswers::Switch &described) const {
        return {found(schemas_.find(described.module, described.path), described.module, described.path),
                described.on};
    }

    DeviceQuestions::Entries entries(const InterfaceEntries &described) const {
        DeviceQuestions::Entries made{};
        made.list = found(schemas_.find(described.module, described.path), described.module, described.path);
        const auto below = [&](const std::string &name) {
            return found(yang::schema_child(made.list, name), described.module, described.path + "/" + name);
        };
        made.name = below(described.name);
        for (const auto &[name, value] : described.where)
            made.where.emplace_back(below(name), value);
        made.holding = described.holding.has_value() ? below(*described.holding) : nullptr;
        return made;
    }

private:
    const lysc_node *found(const lysc_node *node, const std::string &module, const std::string &path) const {
        if (node == nullptr)
            throw Error(ErrorTag::invalid_value, mapping_.file.string(),
                        "member \"device\" names " + path + ", which module " + module + " does not have");
        return node;
    }

    const MappingDescription &mapping_;
    const yang::Schemas &schemas_;
};

} // namespace

DeviceQuestions device_questions(const MappingDescription &mapping, const yang::Schemas &schemas) {
    const Finder finder(mapping, schemas);
    DeviceQuestions questions;
    if (mapping.device.enabled.has_value())
        questions.enabled = finder.leaf(*mapping.device.enabled);
    if (mapping.device.configured_interfaces.has_value())
        questions.configured_interfaces = finder.entries(*mapping.device.configured_interfaces);
    for (const InterfaceEntries &described : mapping.device.interfaces)
        questions.interfaces.push_back(finder.entries(described));
    return questions;
}

} // namespace yfw::host
