// Expressions of clients, evaluated by libxml2 on data of libyang. libyang's own evaluator can be made to end
// the process, and cannot be interrupted.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_EVALUATION_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_EVALUATION_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <libyang/libyang.h>

#include "frontends/netconf/messages/xml.h"

struct _xmlDoc;
struct _xmlNode;
struct _xmlNs;

namespace yfw::netconf {

// Data trees as libxml2 sees them: one document with their tops below its root, and the canonical values of
// leaves. Borrows the trees, which must not change. Serves one thread at a time.
class XPathDocument {
public:
    // NULL stands for no tree.
    explicit XPathDocument(const std::vector<const lyd_node *> &forests);

    // In the order of the document; what an evaluation selects are places in here.
    const std::vector<const lyd_node *> &nodes() const { return nodes_; }

    _xmlDoc *raw() const { return document_.get(); }

private:
    void add(_xmlNode *parent, const lyd_node *data);
    _xmlNs *namespace_for(const lys_module *module);

    struct Free {
        void operator()(_xmlDoc *document) const;
    };
    std::unique_ptr<_xmlDoc, Free> document_;
    std::vector<const lyd_node *> nodes_;
    std::vector<std::pair<const lys_module *, _xmlNs *>> namespaces_;
};

// What an evaluation may cost.
struct XPathBudget {
    size_t operations = 0; // as libxml2 counts them: a node that is looked at, a step of the expression
    size_t characters = 0; // of the strings that its functions make and compare, in bytes
};

enum class XPathStatus { done, invalid, no_nodes, beyond_budget, busy };

struct XPathResult {
    XPathStatus status = XPathStatus::done;
    std::vector<uint32_t> selected; // places in XPathDocument::nodes(), in any order
    std::string why;                // of an invalid expression
};

// Never throws for an expression. A merge of node sets looks at each pair of nodes, and libxml2 counts each
// node: the caller keeps the product of operations and nodes small, or evaluates elsewhere.
XPathResult evaluate_xpath(const XPathDocument &document, const std::string &expression,
                           const Prefixes &prefixes, const XPathBudget &budget);

// The same in a process of its own, which is ended after two seconds of processor time: for data on which no
// budget of operations says how long an evaluation takes. Two at once; a third is refused as busy.
XPathResult evaluate_xpath_apart(const XPathDocument &document, const std::string &expression,
                                 const Prefixes &prefixes, const XPathBudget &budget);

} // namespace yfw::netconf

#endif
