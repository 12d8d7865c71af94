// The way back: from what was written down to nothing.
#ifndef YFW_LAB_REMOVAL_H
#define YFW_LAB_REMOVAL_H

#include "lab/lab.h"

namespace yfw::lab {

// Ends the daemons, removes the namespaces and the files of the laboratory, whatever is there of them; the
// directory stays. May be called again when it failed. Throws std::runtime_error.
void remove_made(const Place &place, const LabDirectory &directory, const Progress &progress);

// The same with the directory. Throws std::runtime_error when files of others are in it.
void remove_all(const Place &place, LabDirectory &directory, const Progress &progress);

} // namespace yfw::lab

#endif
