// Removes everything that the laboratory's file lists.
#ifndef YFW_LAB_REMOVAL_H
#define YFW_LAB_REMOVAL_H

#include "lab/lab.h"

namespace yfw::lab {

// Ends the daemons and removes whatever exists of the laboratory's namespaces and files, but not the directory.
// May be called again after a failure. Throws std::runtime_error.
void remove_made(const Place &place, const LabDirectory &directory, const Progress &progress);

// Also removes the directory. Throws std::runtime_error when it contains other files.
void remove_all(const Place &place, LabDirectory &directory, const Progress &progress);

} // namespace yfw::lab

#endif
