// The lists of exported and undefined names next to the tests, and what `nm` reports for the library.
#ifndef OCLLDP_SYMBOL_FILES_H
#define OCLLDP_SYMBOL_FILES_H

#include <map>
#include <set>
#include <string>
#include <vector>

namespace oclldp_test {

// Exported names with their binding letters: W weak function, T strong function, B zeroed data, D data.
std::map<std::string, char> expected_exports();
std::set<std::string> expected_undefined();

// The same for the library itself, without the names that instrumentation adds.
std::map<std::string, char> library_exports();
// Names without a version (the contract's) and with one (the C library's, "name@VERSION").
std::set<std::string> library_undefined();

// All exported callbacks, in the order of the list; `containers` also take the child count.
std::vector<std::string> callback_names();
bool is_container_callback(const std::string &name);

} // namespace oclldp_test

#endif
