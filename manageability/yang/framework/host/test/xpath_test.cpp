#include <cstdio>
#include <ostream>

#include <gtest/gtest.h>

#include "host/request_context.h"
#include "test_nodes.h"

namespace yfw::host::test {
namespace {

struct Question {
    const char *xpath;
    std::string_view ns;
    const char *value; // NULL when nothing is found
};

std::ostream &operator<<(std::ostream &out, const Question &question) {
    return out << question.xpath;
}

// An interface entry that another model augments with its settings.
NodeText interface_entry() {
    const auto setting = [](const char *name, const char *value) {
        return NodeText{name, {}, value, false, cfg_ns};
    };
    return {"interface-configuration",
            {key("active", "act"),
             key("interface-name", "eth1"),
             {"lldp",
              {setting("enable", "true"),
               {"transmit", {setting("disable", "")}, std::nullopt, false, cfg_ns},
               {"receive", {}, std::nullopt, false, cfg_ns}},
              std::nullopt,
              false,
              cfg_ns}},
            std::nullopt,
            false,
            ifmgr_ns};
}

class XpathQuery {
protected:
    yfw_map_xpath_query query_for(const char *xpath, std::string_view ns) {
        yfw_map_xpath_query query{};
        query.operation = 4;
        query.operation_kind = 3;
        std::snprintf(query.ns, sizeof query.ns, "%s", ns.data());
        std::snprintf(query.xpath, sizeof query.xpath, "%s", xpath);
        query.start = tree.root();
        return query;
    }

    NodeTree tree{interface_entry()};
    RequestContext context{{}, nullptr, nullptr, nullptr};
};

class Query : public XpathQuery, public testing::TestWithParam<Question> {};

TEST_P(Query, IsAnsweredBelowItsStartNode) {
    yfw_map_xpath_query query = query_for(GetParam().xpath, GetParam().ns);
    const terrno status = yfw_map_tree_xpath_operations(context.handle(), &query);
    EXPECT_EQ(status == YMAP_OK, GetParam().value != nullptr) << status;
    EXPECT_STREQ(query.value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Paths, Query,
                         testing::Values(Question{"/lldp/enable", cfg_ns, "true"},
                                         Question{"/lldp/transmit/disable", cfg_ns, ""},
                                         Question{"/lldp/receive/disable", cfg_ns, nullptr},
                                         Question{"/lldp/enable/more", cfg_ns, nullptr},
                                         Question{"/enable", cfg_ns, nullptr},
                                         Question{"/lldp/enable", ifmgr_ns, nullptr}));

class RefusedQuery : public XpathQuery, public testing::Test {};

TEST_F(RefusedQuery, WithoutAStartNodeIsRefused) {
    yfw_map_xpath_query query = query_for("/lldp/enable", cfg_ns);
    query.start = nullptr;
    EXPECT_NE(yfw_map_tree_xpath_operations(context.handle(), &query), YMAP_OK);
    EXPECT_EQ(query.value, nullptr);
}

TEST_F(RefusedQuery, OfAnUnknownOperationIsRefused) {
    yfw_map_xpath_query query = query_for("/lldp/enable", cfg_ns);
    query.operation = 5;
    EXPECT_NE(yfw_map_tree_xpath_operations(context.handle(), &query), YMAP_OK);
    query.operation = 4;
    query.operation_kind = 1;
    EXPECT_NE(yfw_map_tree_xpath_operations(context.handle(), &query), YMAP_OK);
}

} // namespace
} // namespace yfw::host::test
