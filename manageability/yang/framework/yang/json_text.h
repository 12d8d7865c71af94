// JSON as it is read here: nothing that could be understood in two ways.
#ifndef YFW_YANG_JSON_TEXT_H
#define YFW_YANG_JSON_TEXT_H

#include <string>

#include <nlohmann/json.hpp>

namespace yfw::yang {

// The value that the text holds, its members in order. Throws Error (invalid_value, without a path) for a text
// that is no JSON, nests deeper than 128 levels, or repeats a member within an object: RFC 8259 section 4
// leaves open what that means.
nlohmann::ordered_json parse_json(const std::string &text);

} // namespace yfw::yang

#endif
