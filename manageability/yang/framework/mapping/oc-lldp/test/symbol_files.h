// The lists of exported and undefined names next to a plug-in's tests, and what `nm` reports for its library.
#ifndef OCLLDP_SYMBOL_FILES_H
#define OCLLDP_SYMBOL_FILES_H

#include <map>
#include <set>
#include <string>
#include <vector>

namespace oclldp_test {

// Exported names with their binding letters: W weak function, T strong function, B zeroed data, D data.
std::map<std::string, char> expected_exports(const std::string &directory = OCLLDP_TEST_DIR);
std::set<std::string> expected_undefined(const std::string &directory = OCLLDP_TEST_DIR);

// The same for the library itself, without the names that instrumentation adds.
std::map<std::string, char> library_exports(const std::string &library = OCLLDP_LIBRARY);
// Names without a version (the contract's) and with one (the C library's, "name@VERSION").
std::set<std::string> library_undefined(const std::string &library = OCLLDP_LIBRARY);

// All exported callbacks, in the order of the list; `containers` also take the child count.
std::vector<std::string> callback_names();
bool is_container_callback(const std::string &name);

} // namespace oclldp_test

#endif
