// Deleting /lldp/interfaces: one native removal for each interface with LLDP in the system database.
#include "oq_requests.h"

namespace oclldp_test::request_mapping {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string add_operation = "yfw_map_datatree_add_path_flagged";
const std::string delete_all = "oc_to_qd_lldp_interface_delete";
const std::string entry = "/interface-configurations/interface-configuration";

// The four adds of one interface.
std::vector<Written> removal_of(const std::string &display_name) {
    return {ifmgr(entry + "/").from_input(YFW_OP_NONE).as_entry(),
            ifmgr(entry + "/active").with("act").from_input(YFW_OP_NONE),
            ifmgr(entry + "/interface-name").with(display_name).from_input(YFW_OP_NONE),
            cfg(entry + "/lldp").from_input(YFW_OP_REMOVE).last_flag()};
}

std::vector<Written> removals_of(const std::vector<std::string> &display_names) {
    std::vector<Written> all;
    for (const std::string &name : display_names) {
        const std::vector<Written> one = removal_of(name);
        all.insert(all.end(), one.begin(), one.end());
    }
    return all;
}

class InterfaceDelete : public OqTest {
protected:
    InterfaceDelete() {
        fw.display_names = {{"Gi0_0_0_0", "GigabitEthernet0/0/0/0"},
                            {"Gi0_0_0_1", "GigabitEthernet0/0/0/1"},
                            {"Mg0", "MgmtEth0"}};
        fw.status_texts = {{YMAP_ERR_SYSDB_UNAVAILABLE, "library not present"}, {112, "no such thing"}};
    }
    void three_interfaces() { fw.sysdb_paths = {"Gi0_0_0_0/lldp/", "Gi0_0_0_1/a/lldp/enable", "Mg0/lldp/"}; }
    // No list and no connection is still held.
    void expect_nothing_held() {
        EXPECT_EQ(fw.live_lists(), 0u);
        EXPECT_THAT(fw.bound_connections(), IsEmpty());
    }

    const std::vector<std::string> display_names = {"GigabitEthernet0/0/0/0", "GigabitEthernet0/0/0/1",
                                                    "MgmtEth0"};
    Context context{YMAP_REQ_EDIT_ONE_KEY};
    Tree in{node("interfaces").operation(YFW_OP_DELETE)};
};

TEST_F(InterfaceDelete, RemovesTheLldpSubtreeOfEveryInterfaceThatHasOne) {
    three_interfaces();
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(written(in), removals_of(display_names));
    EXPECT_EQ(in->operation, YFW_OP_REMOVE);
    EXPECT_TRUE(changed_by_plugin(in));
    expect_lines();
    EXPECT_THAT(fw.error_paths, IsEmpty());
    expect_nothing_held();
}

TEST_F(InterfaceDelete, ChangesTheOperationOfTheInputBeforeItsFirstAdd) {
    three_interfaces();
    std::vector<bool> changed;
    fw.on_add([&](const Add &) { changed.push_back(changed_by_plugin(in)); });
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(changed, std::vector<bool>(12, true));
}

TEST_F(InterfaceDelete, SearchesOnAConnectionOfItsOwn) {
    plugin->sysdb_conn() = 0x77;
    fw.sysdb_paths = {"Mg0/lldp/"};
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    std::vector<std::string> calls;
    for (const Call &one : fw.mapping_calls()) {
        if (one.operation != add_operation)
            calls.push_back(to_string(one));
    }
    EXPECT_THAT(calls,
                ElementsAre("access(/pkg/lib/libsysdb.so, 4)", "_sysdb_bind(/cfg/if/act/, 4)",
                            "sysdb_find(23809, .*/lldp/, , 4)", "sysdb_list_next()",
                            "imc_display_namestring(Mg0, 64)", "sysdb_list_free()", "_sysdb_unbind(23809)"));
    EXPECT_EQ(plugin->sysdb_conn(), 0x77u);
}

TEST_F(InterfaceDelete, TestsForTheLibraryOnceOnly) {
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(fw.calls_of("access").size(), 1u);
}

TEST_F(InterfaceDelete, TakesOneInterfaceAtATime) {
    three_interfaces();
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    std::vector<std::string> order;
    for (const Call &one : fw.mapping_calls()) {
        if (one.operation == "sysdb_list_next")
            order.emplace_back("next");
        else if (one.operation == "imc_display_namestring")
            order.push_back(one.args);
        else if (one.operation == add_operation)
            order.emplace_back("add");
    }
    EXPECT_THAT(order, ElementsAre("next", "Gi0_0_0_0, 64", "add", "add", "add", "add", "next", "Gi0_0_0_1, 64",
                                   "add", "add", "add", "add", "next", "Mg0, 64", "add", "add", "add", "add"));
}

TEST_F(InterfaceDelete, TakesTheFirstPartOfAPathThatBeginsWithASlash) {
    fw.sysdb_paths = {"/Mg0/lldp/"};
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(written(in), removal_of("MgmtEth0"));
}

class LongInterfacePath : public InterfaceDelete, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(LongInterfacePath, NamesTheWholeFirstPart) {
    const std::string name(GetParam(), 'i');
    for (const std::string &path : {name + "/lldp/enable", "//" + name + "/lldp/", name}) {
        fw.reset();
        fw.sysdb_paths = {path};
        fw.display_names = {{name, "LongName0"}};
        EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
        EXPECT_EQ(written(in), removal_of("LongName0"));
        expect_nothing_held();
    }
}

TEST_P(LongInterfacePath, IsNotCutByWhatFollowsTheName) {
    fw.sysdb_paths = {"Mg0/" + std::string(GetParam(), 'x') + "/lldp/"};
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(written(in), removal_of("MgmtEth0"));
}

INSTANTIATE_TEST_SUITE_P(Of, LongInterfacePath, ::testing::Values(1, 63, 254, 255, 256, 257, 1000, 70000));

TEST_F(InterfaceDelete, TakesAPathOfSlashesForAnInterfaceWithoutAName) {
    for (const char *path : {"", "/", "///"}) {
        fw.reset();
        fw.sysdb_paths = {path};
        EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
        EXPECT_EQ(written(in), removal_of(""));
    }
}

TEST_F(InterfaceDelete, AddsNothingWhenNoInterfaceHasLldp) {
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.calls_of("sysdb_list_next"), IsEmpty());
    expect_lines();
    expect_nothing_held();
}

// ---- a single entry --------------------------------------------------------------------------------

// The error line for something that is not an error is kept on purpose.
TEST_F(InterfaceDelete, LeavesASingleEntryToTheListAndItsKey) {
    three_interfaces();
    Tree single(node("interface").operation(YFW_OP_DELETE));
    EXPECT_EQ(call(delete_all, context, single), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(system_database_calls(), IsEmpty());
    EXPECT_THAT(fw.calls_of("yfw_map_do_these_match"), Contains(Field(&Call::args, HasSubstr("interface"))));
    EXPECT_FALSE(changed_by_plugin(single));
    expect_lines({"ERR: Do not execute LLDP-interface delete logic, tag:interface"});
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

// ---- failures --------------------------------------------------------------------------------------

struct Failure {
    std::string name;
    void (*prepare)(Double &fw);
    std::string message;
    std::size_t interfaces; // mapped before the failure
};

void PrintTo(const Failure &failure, std::ostream *stream) {
    *stream << failure.name;
}

class InterfaceDeleteFailure : public InterfaceDelete, public ::testing::WithParamInterface<Failure> {};

TEST_P(InterfaceDeleteFailure, StillCountsAsAHandledSubtree) {
    three_interfaces();
    GetParam().prepare(fw);
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(written(in), removals_of({display_names.begin(),
                                        display_names.begin() + static_cast<long>(GetParam().interfaces)}));
    expect_lines({"ERR: " + GetParam().message});
    EXPECT_THAT(fw.error_paths, IsEmpty());
    expect_nothing_held();
}

INSTANTIATE_TEST_SUITE_P(
    OfTheSystemDatabase, InterfaceDeleteFailure,
    ::testing::Values(Failure{"LibraryMissing", [](Double &fw) { fw.library_readable = false; },
                              "Unable to bind to Sysdb: path:/cfg/if/act/, error:library not present", 0},
                      Failure{"Bind", [](Double &fw) { fw.fail("_sysdb_bind", 0, 112); },
                              "Unable to bind to Sysdb: path:/cfg/if/act/, error:no such thing", 0},
                      Failure{"Find", [](Double &fw) { fw.fail("sysdb_find", 0, 112); },
                              "Unable to find items in Sysdb: path:/cfg/if/act/, error:no such thing", 0},
                      Failure{"FirstItem", [](Double &fw) { fw.fail("sysdb_list_next", 1, 112); },
                              "Unable to iterate the sysdb list: error:no such thing", 0},
                      Failure{"SecondItem", [](Double &fw) { fw.fail("sysdb_list_next", 2, 112); },
                              "Unable to iterate the sysdb list: error:no such thing", 1},
                      Failure{"ThirdItem", [](Double &fw) { fw.fail("sysdb_list_next", 3, 112); },
                              "Unable to iterate the sysdb list: error:no such thing", 2}),
    [](const auto &test) { return test.param.name; });

TEST_F(InterfaceDelete, DoesNotBindWithoutTheLibrary) {
    fw.library_readable = false;
    EXPECT_EQ(call(delete_all, context, in), YMAP_STS_SUBTREE_DONE);
    EXPECT_THAT(fw.calls_of("_sysdb_bind"), IsEmpty());
    EXPECT_THAT(fw.calls_of("_sysdb_unbind"), IsEmpty());
    EXPECT_THAT(fw.calls_of("sysdb_find"), IsEmpty());
}

TEST_F(InterfaceDelete, FailsWithoutMemoryForAnInterfacesNameAndHoldsOnToNothing) {
    three_interfaces();
    fw.fail_allocation(2);
    EXPECT_EQ(call(delete_all, context, in), YMAP_ERR_NO_MEMORY);
    EXPECT_EQ(written(in), removals_of({display_names[0]}));
    expect_lines();
    expect_nothing_held();
}

// Kept on purpose: a failing add returns without cleaning up, so the list and the connection leak.
TEST_F(InterfaceDelete, ReturnsTheStatusOfAFailingAddAtOnceAndHoldsOnToListAndConnection) {
    for (unsigned nth = 1; nth <= 12; ++nth) {
        SCOPED_TRACE(nth);
        plugin.reset();
        fw.reset();
        plugin = std::make_unique<Plugin>();
        three_interfaces();
        fw.fail(add_operation, nth, 113);
        EXPECT_EQ(call(delete_all, context, in), 113u);
        EXPECT_EQ(fw.adds.size(), nth);
        EXPECT_EQ(fw.live_lists(), 1u);
        EXPECT_EQ(fw.bound_connections().size(), 1u);
        EXPECT_THAT(fw.errors(), IsEmpty());
        EXPECT_THAT(fw.error_paths, IsEmpty());
        EXPECT_EQ(fw.debug_lines().back(), "TRC: End");
    }
}

// ---- through the container -------------------------------------------------------------------------

TEST_F(InterfaceDelete, IsWhatADeleteOfTheContainerComesTo) {
    three_interfaces();
    EXPECT_EQ(plugin->call_container(oq + "cont_lvla_lldp_interfaces", context, in, 0, &output),
              YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(written(in), removals_of(display_names));
    EXPECT_THAT(fw.started(), ElementsAre(oq + "cont_lvla_lldp_interfaces", delete_all));
}

TEST_F(InterfaceDelete, IsASuccessForTheWalkerWhichDoesNotDescend) {
    three_interfaces();
    EXPECT_EQ(call(oq + "lvla_lldp_interfaces", context, in), YMAP_OK);
    EXPECT_EQ(written(in), removals_of(display_names));
    EXPECT_THAT(fw.started(),
                ElementsAre(oq + "lvla_lldp_interfaces", oq + "cont_lvla_lldp_interfaces", delete_all));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

} // namespace
} // namespace oclldp_test::request_mapping
