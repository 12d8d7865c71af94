// Sets with many operations.
#include <string>

#include <gtest/gtest.h>

#include "frontends/gnmi/operations/combined_edit.h"
#include "frontends/gnmi/operations/removal.h"
#include "frontends/gnmi/values/given_edit.h"
#include "gnmi_fixture.h"
#include "yang/edit_apply.h"

namespace yfw::gnmi::test {
namespace {

std::string entry(size_t number) {
    return "/lldp/interfaces/interface[name=i" + std::to_string(number) + "]";
}

PathPattern pattern(const std::string &at) {
    return read_single_path(schemas().openconfig_root(), {}, path(at));
}

yang::EditNode nothing() {
    return edit_at(schemas(), {}, yang::Operation::none);
}

// Combines changes of as many entries.
void combine(size_t count) {
    CombinedEdit combined(nothing());
    for (size_t i = 0; i < count; i++)
        combined.add(edit_at(schemas(), pattern(entry(i) + "/config"), yang::Operation::merge));
    EXPECT_EQ(combined.edit().children.front().children.size(), count);
}

yang::DataTree with_entries(size_t count) {
    yang::EditNode edit = nothing();
    CombinedEdit combined(edit);
    for (size_t i = 0; i < count; i++)
        combined.add(edit_at(schemas(), pattern(entry(i)), yang::Operation::merge));
    yang::DataTree configuration;
    yang::apply_edit(combined.edit(), configuration);
    return configuration;
}

void find_each(size_t count, const lyd_node *configuration) {
    size_t found = 0;
    for (size_t i = 0; i < count; i++)
        found += removals(schemas(), pattern(entry(i)), configuration).size();
    EXPECT_EQ(found, count);
}

// So many that it would take minutes if each were compared with all others.
constexpr size_t many = 20'000;

TEST(EditsOfManyEntries, AreCombined) {
    combine(many);
}

TEST(RemovalsOfManyEntries, AreFound) {
    find_each(many, with_entries(many).get());
}

TEST(EditsOfOneEntry, AreOneEdit) {
    CombinedEdit combined(nothing());
    for (const std::string leaf : {"/config/enabled", "/config/name", "/config/enabled"})
        combined.add(edit_at(schemas(), pattern(entry(1) + leaf), yang::Operation::remove));
    const yang::EditNode &list = combined.edit().children.front();
    ASSERT_EQ(list.children.size(), 1U);
    EXPECT_EQ(list.children.front().children.back().children.size(), 2U) << "two leaves";
}

} // namespace
} // namespace yfw::gnmi::test
