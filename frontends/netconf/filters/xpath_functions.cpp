#include "frontends/netconf/filters/xpath_functions.h"

#include <cstring>

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

namespace yfw::netconf {
namespace {

// Comparing and copying text is cheaper than creating it.
constexpr size_t moves_for_one_character = 16;

bool charge(xmlXPathParserContext *parser, size_t characters) {
    auto &left = *static_cast<size_t *>(parser->context->userData);
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
size_t make_string(xmlXPathParserContext *parser, int place) {
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
bool charge_arguments(xmlXPathParserContext *parser, int count, bool compares) {
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

// Called without arguments, the function applies to the context node.
int with_context_node(xmlXPathParserContext *parser, int count) {
    if (count > 0)
        return count;
    valuePush(parser, xmlXPathWrapString(xmlXPathCastNodeToString(parser->context->node)));
    return 1;
}

template <xmlXPathFunction function, bool compares> void charged(xmlXPathParserContext *parser, int count) {
    if (count <= parser->valueNr && charge_arguments(parser, count, compares))
        function(parser, count);
}

template <xmlXPathFunction function> void charged_with_context(xmlXPathParserContext *parser, int count) {
    charged<function, false>(parser, with_context_node(parser, count));
}

// The second and third arguments are numbers.
void charged_substring(xmlXPathParserContext *parser, int count) {
    if (count < 2 || count > parser->valueNr)
        return xmlXPathErr(parser, XPATH_INVALID_ARITY);
    make_string(parser, parser->valueNr - count);
    if (parser->error == XPATH_EXPRESSION_OK)
        xmlXPathSubstringFunction(parser, count);
}

struct Charged {
    const char *name;
    xmlXPathFunction function;
};

constexpr Charged functions[] = {
    {"string", charged_with_context<xmlXPathStringFunction>},
    {"string-length", charged_with_context<xmlXPathStringLengthFunction>},
    {"normalize-space", charged_with_context<xmlXPathNormalizeFunction>},
    {"concat", charged<xmlXPathConcatFunction, false>},
    {"starts-with", charged<xmlXPathStartsWithFunction, false>},
    {"contains", charged<xmlXPathContainsFunction, true>},
    {"substring-before", charged<xmlXPathSubstringBeforeFunction, true>},
    {"substring-after", charged<xmlXPathSubstringAfterFunction, true>},
    {"translate", charged<xmlXPathTranslateFunction, true>},
    {"substring", charged_substring},
};

} // namespace

void charge_string_functions(_xmlXPathContext *context, size_t *characters_left) {
    context->userData = characters_left;
    for (const Charged &one : functions) {
        const auto *name = reinterpret_cast<const xmlChar *>(one.name);
        xmlXPathRegisterFunc(context, name, nullptr); // removes the built-in: names are unique
        xmlXPathRegisterFunc(context, name, one.function);
    }
}

} // namespace yfw::netconf
