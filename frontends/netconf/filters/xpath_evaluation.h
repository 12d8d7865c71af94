// Evaluates clients' expressions on libyang data with libxml2. libyang's own evaluator can be made to crash the
// process and cannot be interrupted.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_EVALUATION_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_EVALUATION_H

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <libyang/libyang.h>

#include "frontends/netconf/messages/xml.h"

struct _xmlDoc;
struct _xmlNode;
struct _xmlNs;

namespace yfw::netconf {

// Data trees as libxml2 sees them: one document with the trees' top nodes below its root and the canonical
// values of leaves. Borrows the trees, which must not change. Not thread-safe.
class XPathDocument {
public:
    // NULL stands for an empty tree.
    explicit XPathDocument(const std::vector<const lyd_node *> &forests);

    // In document order; evaluations return indexes into this.
    const std::vector<const lyd_node *> &nodes() const { return nodes_; }

    _xmlDoc *raw() const { return document_.get(); }

    // What an element or its text stands for; NULL for other nodes.
    const lyd_node *data_of(const _xmlNode *node) const;
    // The element of a node; NULL when it is not in the document.
    _xmlNode *element_of(const lyd_node *data) const;

private:
    void add(_xmlNode *parent, const lyd_node *data);
    _xmlNs *namespace_for(const lys_module *module);

    struct Free {
        void operator()(_xmlDoc *document) const;
    };
    std::unique_ptr<_xmlDoc, Free> document_;
    std::vector<const lyd_node *> nodes_;
    std::vector<_xmlNode *> elements_;                            // in the same order
    mutable std::unordered_map<const lyd_node *, size_t> places_; // made when it is first needed
    std::vector<std::pair<const lys_module *, _xmlNs *>> namespaces_;
};

// Limits on the cost of an evaluation.
struct XPathBudget {
    size_t operations = 0; // as libxml2 counts them: nodes visited and steps evaluated
    size_t characters = 0; // of the strings its functions create and compare, in bytes
};

enum class XPathStatus { done, invalid, no_nodes, beyond_budget, busy };

struct XPathResult {
    XPathStatus status = XPathStatus::done;
    std::vector<uint32_t> selected; // indexes into XPathDocument::nodes(), in any order
    std::string why;                // why an expression is invalid
};

// Never throws because of an expression. Merging node sets compares every pair of nodes, but libxml2 counts
// each node only once: keep the product of operations and nodes small, or call evaluate_xpath_apart().
XPathResult evaluate_xpath(const XPathDocument &document, const std::string &expression,
                           const Prefixes &prefixes, const XPathBudget &budget);

// The same in a child process with a limit of two seconds of CPU time: for data so large that no budget of
// operations bounds the evaluation time. Two run at once; a third is refused as busy. `is_unwanted`, which may
// be NULL: once set, by any thread, the child is ended.
XPathResult evaluate_xpath_apart(const XPathDocument &document, const std::string &expression,
                                 const Prefixes &prefixes, const XPathBudget &budget,
                                 const std::atomic<bool> *is_unwanted = nullptr);

} // namespace yfw::netconf

#endif
