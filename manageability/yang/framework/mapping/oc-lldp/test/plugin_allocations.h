// The allocation functions as the plug-in sees them: they fail on request, and they tell the double when the
// plug-in frees a framework string with plain free.
#ifndef OCLLDP_PLUGIN_ALLOCATIONS_H
#define OCLLDP_PLUGIN_ALLOCATIONS_H

namespace oclldp_test {

// Makes the plug-in's nth malloc or calloc from now (counting from 1) return NULL; 0: none.
void arm_allocation_failure(unsigned nth);

} // namespace oclldp_test

#endif
