#include "frontends/netconf/filters/xpath_functions.h"

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include "frontends/netconf/filters/xpath_charging.h"

namespace yfw::netconf {
namespace {

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

void register_string_functions(_xmlXPathContext *context) {
    for (const Charged &one : functions) {
        const auto *name = reinterpret_cast<const xmlChar *>(one.name);
        xmlXPathRegisterFunc(context, name, nullptr); // removes the built-in: names are unique
        xmlXPathRegisterFunc(context, name, one.function);
    }
}

} // namespace yfw::netconf
