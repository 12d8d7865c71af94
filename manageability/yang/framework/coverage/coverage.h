// What a device serves of its OpenConfig model, node by node: found out by asking the mapping, not from a list.
#ifndef YFW_COVERAGE_COVERAGE_H
#define YFW_COVERAGE_COVERAGE_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/mapping_description.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::coverage {

// A native path that is read or edited.
struct NativeUse {
    std::string path; // the schema path
    std::string module;
    std::string operation{}; // of an edit
    std::optional<std::string> value{};

    bool operator==(const NativeUse &) const = default;
};

// What the mapping makes of an edit of a single leaf.
struct EditCase {
    bool is_on = false;               // whether the protocol is on when the edit is made
    std::optional<std::string> value; // nothing: the leaf is deleted
    std::vector<NativeUse> edits;
    std::vector<std::string> callbacks;
    std::string refusal{}; // why there are no edits
};

// What the device accepts of what the type of a written leaf allows.
struct Limits {
    std::string range;                // of a number, as in YANG; empty: the type's own
    std::optional<uint64_t> least;    // length of a text in characters
    std::vector<std::string> refused; // enumeration names or identities with their modules
};

enum class Service { not_served, read_only, written_only, read_and_written };

struct Row {
    const lysc_node *node = nullptr; // of the schemas; these must outlive it
    std::string path;
    Service service = Service::not_served;
    std::vector<NativeUse> sources;             // what a read asks for
    std::vector<std::string> request_callbacks; // that ask for it
    std::vector<std::string> answer_callbacks;  // that write the leaf
    std::vector<yang::Operation> operations;    // that the device accepts
    std::vector<EditCase> edits;                // with each value, and deletion
    std::string refusal;                        // of an edit, where none is accepted
    Limits limits;
    bool ignores_default = false; // the model's default is not what the device does without configuration

    bool is_read() const { return service == Service::read_only || service == Service::read_and_written; }
    bool is_written() const { return service == Service::written_only || service == Service::read_and_written; }
    bool is_leaf() const { return (node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0; }
};

// In the order of the model, from the top container down. A container or list is served as what is below it is.
struct Coverage {
    std::vector<Row> rows;
    std::vector<std::string> lacking; // what the mapping has and the model in use lacks

    const Row *find(const std::string &path) const;
};

// Loads the mapping, and unloads it. Borrows the schemas, which must not deviate from the modules yet. No
// ManagedDevice may exist meanwhile. Throws Error when the mapping is unusable.
Coverage cover(const yang::Schemas &schemas, const host::MappingDescription &mapping);

} // namespace yfw::coverage

#endif
