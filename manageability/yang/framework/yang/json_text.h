// A strict JSON parser: rejects anything ambiguous.
#ifndef YFW_YANG_JSON_TEXT_H
#define YFW_YANG_JSON_TEXT_H

#include <string>

#include <nlohmann/json.hpp>

namespace yfw::yang {

// Parses the text, keeping members in order. Throws Error (invalid_value, without a path) for text that is not
// JSON, nests deeper than 128 levels, holds a number that a double cannot, has an object of more than 1000
// members, or repeats a member within an object: RFC 8259 section 4 leaves the meaning open. Takes time linear
// in the length of the text.
nlohmann::ordered_json parse_json(const std::string &text);

} // namespace yfw::yang

#endif
