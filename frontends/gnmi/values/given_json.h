// JSON values of a Set, as edits read them.
#ifndef YFW_FRONTENDS_GNMI_VALUES_GIVEN_JSON_H
#define YFW_FRONTENDS_GNMI_VALUES_GIVEN_JSON_H

#include <string>

#include <libyang/libyang.h>
#include <nlohmann/json.hpp>

namespace yfw::gnmi {

// A client's text, parsed; of a leaf also a word or more without quotes, which some clients send for a string.
// `node`: what the text is the value of, NULL for the root. `place`: of the node. Throws Refusal,
// INVALID_ARGUMENT.
nlohmann::ordered_json parse_given(const lysc_node *node, const std::string &text, const std::string &place);

// A value of the node as RFC 7951 writes it: members and identities get the names of their modules where these
// are missing, and 64-bit numbers become strings. What the schema does not know stays as it is. `place`: of the
// node. Throws Refusal for annotations, which mean nothing here.
nlohmann::ordered_json as_ietf(const lysc_node *node, nlohmann::ordered_json value, const std::string &place);

} // namespace yfw::gnmi

#endif
