// The lists of exported and undefined names that stand beside the tests, and what `nm` says of the library.
#ifndef OCLLDP_SYMBOL_FILES_H
#define OCLLDP_SYMBOL_FILES_H

#include <map>
#include <set>
#include <string>
#include <vector>

namespace oclldp_test {

// Exported names with their binding letters: W a weak function, T a strong one, B zeroed data, D data.
std::map<std::string, char> expected_exports();
std::set<std::string> expected_undefined();

// The same of the library itself; instrumentation's names are left out.
std::map<std::string, char> library_exports();
// Names without a version (the contract's) and with one (the C library's, "name@VERSION").
std::set<std::string> library_undefined();

// All exported callbacks, in the order of the list; `containers` take the child count too.
std::vector<std::string> callback_names();
bool is_container_callback(const std::string &name);

} // namespace oclldp_test

#endif
