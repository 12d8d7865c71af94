// Tries edits of single leaves on a device made up of samples.
#ifndef YFW_COVERAGE_EDIT_PROBE_H
#define YFW_COVERAGE_EDIT_PROBE_H

#include "coverage/tried_device.h"

namespace yfw::coverage {

// Borrows the device.
class EditProbe {
public:
    explicit EditProbe(TriedDevice &tried) : tried_(tried) {}

    // Fills in what edits of the row's leaf lead to; returns whether the device accepts any value of it.
    bool try_leaf(Row &row);

private:
    EditCase explain(const Row &row, const std::optional<std::string> &value, bool is_on);
    // Why the device refuses the value; empty when it accepts it.
    std::string refusal_of(const Row &row, const std::string &value);
    void try_operations(Row &row, const std::string &value);
    void find_limits(Row &row);
    void find_range(Row &row);
    void check_default(Row &row);

    TriedDevice &tried_;
};

} // namespace yfw::coverage

#endif
