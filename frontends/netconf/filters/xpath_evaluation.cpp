#include "frontends/netconf/filters/xpath_evaluation.h"

#include <memory>
#include <new>

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include "frontends/netconf/filters/xpath_charging.h"
#include "frontends/netconf/filters/xpath_functions.h"
#include "frontends/netconf/filters/xpath_tokens.h"

namespace yfw::netconf {
namespace {

struct FreeContext {
    void operator()(xmlXPathContext *context) const { xmlXPathFreeContext(context); }
};
struct FreeCompiled {
    void operator()(xmlXPathCompExpr *compiled) const { xmlXPathFreeCompExpr(compiled); }
};
struct FreeObject {
    void operator()(xmlXPathObject *object) const { xmlXPathFreeObject(object); }
};

using Context = std::unique_ptr<xmlXPathContext, FreeContext>;

const xmlChar *bytes(const std::string &text) {
    return reinterpret_cast<const xmlChar *>(text.c_str());
}

void keep_silent(void *, xmlError *) {}
void print_nothing(void *, const char *, ...) {}

Context context_for(XPathEvaluation &evaluation, const Prefixes &prefixes, size_t operations) {
    _xmlDoc *document = evaluation.document.raw();
    Context context(xmlXPathNewContext(document));
    if (context == nullptr)
        throw std::bad_alloc();
    context->node = reinterpret_cast<xmlNode *>(document);
    context->opLimit = operations;
    context->error = keep_silent; // the error is read from the context instead
    for (const auto &[prefix, ns] : prefixes)
        xmlXPathRegisterNs(context.get(), bytes(prefix), bytes(ns));
    context->userData = &evaluation;
    register_string_functions(context.get());
    register_yang_functions(context.get());
    return context;
}

std::string_view reason_of(int error) {
    switch (error) {
    case XPATH_UNKNOWN_FUNC_ERROR:
        return "it calls a function that neither XPath 1.0 nor YANG 1.1 has";
    case XPATH_INVALID_ARITY:
        return "it calls a function with too few or too many arguments";
    case XPATH_INVALID_TYPE:
        return "something else stands where nodes are expected";
    case XPATH_EXPR_ERROR:
        return "it is no XPath 1.0 expression, or the pattern of a re-match() is no regular expression";
    case XPATH_UNDEF_PREFIX_ERROR:
        return "it has a prefix that is not declared";
    case XPATH_UNDEF_VARIABLE_ERROR:
        return "it has a variable, and there are none";
    default:
        return "it is no XPath 1.0 expression";
    }
}

// libxml2 has two enumerations of XPath errors, offset by XML_XPATH_EXPRESSION_OK.
XPathResult failure_of(const xmlXPathContext &context) {
    const int error = context.lastError.code - XML_XPATH_EXPRESSION_OK;
    if (error == XPATH_OP_LIMIT_EXCEEDED || error == XPATH_RECURSION_LIMIT_EXCEEDED ||
        error == XPATH_MEMORY_ERROR)
        return {XPathStatus::beyond_budget, {}, {}};
    return {XPathStatus::invalid, {}, std::string(reason_of(error))};
}

void add_all_below(const xmlNode *node, std::vector<uint32_t> &places) {
    for (const xmlNode *child = node->children; child != nullptr; child = child->next)
        if (child->type == XML_ELEMENT_NODE)
            places.push_back(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(child->_private) - 1));
}

// The document node stands for the top nodes, a text node for its leaf. Other nodes have no counterpart in the
// data.
void add_place(const xmlNode *node, std::vector<uint32_t> &places) {
    if (node->type == XML_DOCUMENT_NODE)
        return add_all_below(node, places);
    const xmlNode *element = node->type == XML_TEXT_NODE ? node->parent : node;
    if (element->type == XML_ELEMENT_NODE)
        places.push_back(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(element->_private) - 1));
}

} // namespace

XPathResult evaluate_xpath(const XPathDocument &document, const std::string &expression,
                           const Prefixes &prefixes, const XPathBudget &budget) {
    xmlSetGenericErrorFunc(nullptr, print_nothing); // per thread
    XPathEvaluation evaluation{document, budget.characters};
    const Context context = context_for(evaluation, prefixes, budget.operations);
    const std::unique_ptr<xmlXPathCompExpr, FreeCompiled> compiled(
        xmlXPathCtxtCompile(context.get(), bytes(with_names_of_any_namespace(expression))));
    if (compiled == nullptr)
        return failure_of(*context);
    const std::unique_ptr<xmlXPathObject, FreeObject> object(
        xmlXPathCompiledEval(compiled.get(), context.get()));
    if (object == nullptr)
        return failure_of(*context);
    if (object->type != XPATH_NODESET)
        return {XPathStatus::no_nodes, {}, {}};
    XPathResult result;
    for (int i = 0; object->nodesetval != nullptr && i < object->nodesetval->nodeNr; i++)
        add_place(object->nodesetval->nodeTab[i], result.selected);
    return result;
}

} // namespace yfw::netconf
