// Random edits of every leaf that can be set, with every operation.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "edit_values.h"
#include "plain_configuration.h"

namespace yfw::test {

struct RandomEdit {
    PlainNode lldp;
    std::string default_operation;
    bool can_be_held = true; // whether every value in it fits the native model
};

/// For the messages of a failed comparison.
void PrintTo(const RandomEdit &edit, std::ostream *to);

/// The same seed gives the same edits.
class RandomEdits {
public:
    /// `values`: those of all leaves to edit; `interfaces`: the names of the entries to edit.
    RandomEdits(uint32_t seed, std::vector<LegalValue> values, std::vector<std::string> interfaces);

    RandomEdit next();
    /// From 0 to `below` - 1.
    size_t choice(size_t below);

private:
    bool one_in(size_t count) { return choice(count) == 0; }
    const LegalValue &value_of(const std::string &leaf);
    void add_leaf(PlainNode &config, const std::string &leaf, bool may_have_operation, RandomEdit &edit);
    PlainNode config(bool may_have_operation, RandomEdit &edit);
    PlainNode interface(const std::string &name, bool may_have_operation, RandomEdit &edit);
    PlainNode interfaces(bool may_have_operation, RandomEdit &edit);
    /// An operation for the node, or none; whether nodes below it may have one of their own.
    bool choose_operation(PlainNode &node, size_t one_in_so_many);

    std::mt19937 random_;
    std::vector<LegalValue> values_;
    std::vector<std::string> leaves_; // of /lldp/config
    std::vector<std::string> names_;
};

} // namespace yfw::test
