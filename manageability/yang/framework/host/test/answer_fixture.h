// An OpenConfig answer that a test writes as the plug-in does: through the contract's operations.
#ifndef HOST_TEST_ANSWER_FIXTURE_H
#define HOST_TEST_ANSWER_FIXTURE_H

#include <cstdio>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "data_texts.h"
#include "host/answer_data.h"
#include "host/answer_tree.h"
#include "host/request_context.h"
#include "host/settle.h"
#include "test_device.h"

namespace yfw::host::test {

constexpr const char *interface_list = "/lldp/interfaces/interface";
constexpr const char *neighbor_list = "/lldp/interfaces/interface/neighbors/neighbor";
constexpr const char *capability_list = "/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability";
constexpr const char *tlv_list = "/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv";

class WrittenAnswer : public testing::Test {
protected:
    yfw_map_ctx ctx() { return context.handle(); }

    terrno add_below(tidl_yfw_datatree *parent, const std::string &path_text, const char *value,
                     tidl_yfw_datatree **slot = nullptr, uint32_t list_entry = 0) {
        return yfw_map_datatree_add_path_flagged(ctx(), parent, path_text.c_str(), lldp_ns.data(), value,
                                                 nullptr, slot, list_entry, 0);
    }

    void add(const std::string &path_text, const char *value) {
        EXPECT_EQ(add_below(tree.root(), path_text, value), YMAP_OK) << path_text;
    }

    void open_entry(const std::string &list_path) {
        EXPECT_EQ(add_below(tree.root(), list_path, nullptr, nullptr, 1), YMAP_OK) << list_path;
    }

    // The entry, found or created.
    tidl_yfw_datatree *entry(const std::string &list_path, const char *key_name, const std::string &key) {
        tidl_yfw_datatree *slot = nullptr;
        EXPECT_EQ(yfw_map_search_or_add_list(ctx(), tree.root(), &slot, list_path.c_str(), key.c_str(),
                                             key_name, lldp_ns.data()),
                  YMAP_OK);
        return slot;
    }

    tidl_yfw_datatree *interface(const std::string &name) { return entry(interface_list, "name", name); }

    // Stitches a neighbor the way the neighbor mapping does.
    terrno stitch(const std::string &interface_name, const std::string &id) {
        auto record = std::make_unique<yfw_map_stitch>();
        record->parent = tree.root();
        record->kind_a = 1;
        record->kind_b = 2;
        std::snprintf(record->ns, sizeof record->ns, "%s", lldp_ns.data());
        std::snprintf(record->keyed_path, sizeof record->keyed_path,
                      "/lldp/interfaces/interface[name=%s]/neighbors/neighbor[id=%s]/", interface_name.c_str(),
                      id.c_str());
        std::snprintf(record->list_path, sizeof record->list_path, "%s", neighbor_list);
        return yfw_map_stitch_list_to_list(ctx(), record.get());
    }

    // The answer to a request, as data; omissions are listed in `warnings`.
    yang::DataTree data(const Lines &paths = {"/lldp"}, Content content = Content::all) {
        warnings.clear();
        AnswerTree asked(answer_schema());
        asked.copy(tree, selection(paths));
        settle(asked, selection(paths), content, warnings);
        return data_of(asked);
    }

    Lines answer(const Lines &paths = {"/lldp"}, Content content = Content::all) {
        return leaves(data(paths, content).get());
    }

    // The single expected warning.
    std::string warning() const {
        EXPECT_EQ(warnings.size(), 1u);
        return warnings.empty() ? "" : warnings.front();
    }

    RequestContext context{{}, nullptr, nullptr, nullptr};
    AnswerTree tree{answer_schema()};
    std::vector<std::string> warnings;
};

} // namespace yfw::host::test

#endif
