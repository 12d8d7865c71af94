#include "frontends/netconf/filters/xpath_charging.h"

#include <cstring>

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

namespace yfw::netconf {
namespace {

// Comparing and copying text is cheaper than creating it.
constexpr size_t moves_for_one_character = 16;

} // namespace

XPathEvaluation &evaluation_of(const _xmlXPathParserContext *parser) {
    return *static_cast<XPathEvaluation *>(parser->context->userData);
}

bool charge(_xmlXPathParserContext *parser, size_t characters) {
    size_t &left = evaluation_of(parser).characters_left;
    if (characters > left) {
        left = 0;
        xmlXPathErr(parser, XPATH_OP_LIMIT_EXCEEDED);
        return false;
    }
    left -= characters;
    return true;
}

// Converts the argument at `place` on the stack to a string and returns its length; sets an error when the
// budget is used up.
size_t make_string(_xmlXPathParserContext *parser, int place) {
    xmlXPathObject *&argument = parser->valueTab[place];
    if (argument->type != XPATH_STRING) {
        argument = xmlXPathConvertString(argument);
        parser->value = parser->valueTab[parser->valueNr - 1];
    }
    const char *text = argument != nullptr ? reinterpret_cast<const char *>(argument->stringval) : nullptr;
    const size_t length = text != nullptr ? std::strlen(text) : 0;
    charge(parser, length + 1);
    return length;
}

// Charges the arguments as strings, the first two also for being compared with each other. The string grows
// with each argument and is copied each time.
bool charge_arguments(_xmlXPathParserContext *parser, int count, bool compares) {
    size_t lengths[2] = {0, 0};
    size_t total = 0;
    for (int i = 0; i < count && parser->error == XPATH_EXPRESSION_OK; i++) {
        const size_t length = make_string(parser, parser->valueNr - count + i);
        total += length;
        if (i < 2)
            lengths[i] = length;
    }
    return parser->error == XPATH_EXPRESSION_OK &&
           charge(parser, total * static_cast<size_t>(count) / moves_for_one_character) &&
           (!compares || charge(parser, lengths[0] * lengths[1] / moves_for_one_character));
}

} // namespace yfw::netconf
