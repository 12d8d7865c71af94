// Locks of the datastores, and what happens to them and to the candidate when a session ends.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"
#include "support/eventually.h"

namespace yfw::test {
namespace {

const std::string original = "r1.example.net";

class NetconfLock : public NetconfTest {
protected:
    NetconfClient holder{server().socket()};
    NetconfClient other{server().socket()};
};

class ALock : public NetconfLock, public testing::WithParamInterface<const char *> {};

TEST_P(ALock, IsDeniedToOthersWithTheHoldersSession) {
    expect_ok(holder.rpc(lock(GetParam())));
    const Xml error = expect_error(other.rpc(lock(GetParam())), "protocol", "lock-denied");
    EXPECT_EQ(error_info(error, "session-id"), holder.session_id());
}

TEST_P(ALock, IsDeniedToItsHolderASecondTime) {
    expect_ok(holder.rpc(lock(GetParam())));
    const Xml error = expect_error(holder.rpc(lock(GetParam())), "protocol", "lock-denied");
    EXPECT_EQ(error_info(error, "session-id"), holder.session_id());
}

TEST_P(ALock, KeepsOthersFromEditing) {
    expect_ok(holder.rpc(lock(GetParam())));
    expect_error(other.rpc(edit_config(GetParam(), name_edit("theirs"))), "protocol", "in-use");
    EXPECT_EQ(name(holder, GetParam()), original);
    expect_ok(holder.rpc(edit_config(GetParam(), name_edit("mine"))));
    EXPECT_EQ(name(other, GetParam()), "mine");
}

TEST_P(ALock, LetsOthersRead) {
    expect_ok(holder.rpc(lock(GetParam())));
    EXPECT_EQ(name(other, GetParam()), original);
}

TEST_P(ALock, KeepsOthersFromCopying) {
    expect_ok(holder.rpc(edit_config("candidate", name_edit("mine"))));
    expect_ok(holder.rpc("<commit/>"));
    expect_ok(holder.rpc(lock(GetParam())));
    const std::string target = GetParam(), source = target == "running" ? "candidate" : "running";
    expect_error(other.rpc("<copy-config><target><" + target + "/></target><source><" + source +
                           "/></source></copy-config>"),
                 "protocol", "in-use");
}

TEST_P(ALock, IsFreedByItsHolderAlone) {
    expect_ok(holder.rpc(lock(GetParam())));
    EXPECT_NE(error_tag(other.rpc(unlock(GetParam()))), "");
    EXPECT_EQ(error_tag(other.rpc(lock(GetParam()))), "lock-denied");
    expect_ok(holder.rpc(unlock(GetParam())));
    expect_ok(other.rpc(lock(GetParam())));
}

TEST_P(ALock, IsNotFreedWhenNobodyHoldsIt) {
    EXPECT_NE(error_tag(holder.rpc(unlock(GetParam()))), "");
}

TEST_P(ALock, IsFreedWhenItsHolderClosesTheSession) {
    expect_ok(holder.rpc(lock(GetParam())));
    expect_ok(holder.rpc("<close-session/>"));
    EXPECT_TRUE(eventually([&] { return error_tag(other.rpc(lock(GetParam()))).empty(); }));
}

TEST_P(ALock, IsFreedWhenItsHolderVanishes) {
    {
        NetconfClient vanishing(server().socket());
        expect_ok(vanishing.rpc(lock(GetParam())));
    }
    EXPECT_TRUE(eventually([&] { return error_tag(other.rpc(lock(GetParam()))).empty(); }));
}

TEST_P(ALock, IsFreedWhenItsHolderBreaksTheFraming) {
    expect_ok(holder.rpc(lock(GetParam())));
    holder.connection().send("garbage");
    EXPECT_TRUE(eventually([&] { return error_tag(other.rpc(lock(GetParam()))).empty(); }));
}

INSTANTIATE_TEST_SUITE_P(Of, ALock, testing::Values("running", "candidate"),
                         [](const auto &test) { return std::string(test.param); });

TEST_F(NetconfLock, OfOneDatastoreLeavesTheOtherOneFree) {
    expect_ok(holder.rpc(lock("candidate")));
    expect_ok(other.rpc(edit_config("running", name_edit("theirs"))));
    expect_ok(other.rpc(lock("running")));
}

TEST_F(NetconfLock, OfTheRunningConfigurationKeepsOthersFromCommitting) {
    expect_ok(holder.rpc(lock("running")));
    expect_ok(other.rpc(edit_config("candidate", name_edit("theirs"))));
    expect_error(other.rpc("<commit/>"), "protocol", "in-use");
    EXPECT_EQ(name(other), original);
}

TEST_F(NetconfLock, OfTheCandidateKeepsOthersFromCommittingAndDiscarding) {
    expect_ok(holder.rpc(lock("candidate")));
    expect_ok(holder.rpc(edit_config("candidate", name_edit("mine"))));
    expect_error(other.rpc("<commit/>"), "protocol", "in-use");
    expect_error(other.rpc("<discard-changes/>"), "protocol", "in-use");
    EXPECT_EQ(name(holder), original);
    EXPECT_EQ(name(holder, "candidate"), "mine");
}

TEST_F(NetconfLock, OfACandidateWithChangesIsDenied) {
    expect_ok(holder.rpc(edit_config("candidate", name_edit("mine"))));
    for (NetconfClient *client : {&holder, &other})
        expect_error(client->rpc(lock("candidate")), "protocol", "lock-denied");
    expect_ok(holder.rpc("<discard-changes/>"));
    expect_ok(other.rpc(lock("candidate")));
}

TEST_F(NetconfLock, OfADatastoreThatIsNotOfferedIsRefused) {
    for (const char *datastore : {"startup", "nonsense"})
        EXPECT_NE(error_tag(holder.rpc(lock(datastore))), "") << datastore;
}

TEST_F(NetconfLock, OfTheCandidateTakesItsChangesAwayWhenTheSessionEnds) {
    expect_ok(holder.rpc(lock("candidate")));
    expect_ok(holder.rpc(edit_config("candidate", name_edit("mine"))));
    EXPECT_EQ(name(other, "candidate"), "mine");
    expect_ok(holder.rpc("<close-session/>"));
    EXPECT_TRUE(eventually([&] { return name(other, "candidate") == original; }));
    expect_ok(other.rpc(lock("candidate")));
}

TEST_F(NetconfLock, IsNotNeededForTheCandidatesChangesToBeDiscardedWithTheirSession) {
    expect_ok(holder.rpc(edit_config("candidate", name_edit("mine"))));
    expect_ok(holder.rpc("<close-session/>"));
    EXPECT_TRUE(eventually([&] { return name(other, "candidate") == original; }));
}

// How a session ends makes no difference.
class ASessionThatEndsWithoutALock : public NetconfLock, public testing::WithParamInterface<const char *> {
protected:
    void end(NetconfClient &client) {
        if (GetParam() == std::string("Closed"))
            expect_ok(client.rpc("<close-session/>"));
        else if (GetParam() == std::string("Killed"))
            expect_ok(
                other.rpc("<kill-session><session-id>" + client.session_id() + "</session-id></kill-session>"));
        else
            client.connection().finish_sending();
        ASSERT_TRUE(client.connection().until_closed().has_value());
        settle();
    }
    // The server tidies up after sessions one by one: when it has done so for this one, it has for those
    // before.
    void settle() {
        NetconfClient last(server().socket());
        expect_ok(last.rpc(lock("running")));
        expect_ok(last.rpc("<close-session/>"));
        EXPECT_TRUE(eventually([&] {
            const bool is_free = error_tag(other.rpc(lock("running"))).empty();
            return is_free && error_tag(other.rpc(unlock("running"))).empty();
        }));
    }
};

TEST_P(ASessionThatEndsWithoutALock, LeavesTheCandidateToTheSessionsThatHaveEditedIt) {
    expect_ok(other.rpc(edit_config("candidate", name_edit("theirs"))));
    expect_ok(holder.rpc(edit_config("candidate", lldp("<config><hello-timer>40</hello-timer></config>"))));
    end(holder);
    EXPECT_EQ(name(other, "candidate"), "theirs");
    expect_ok(other.rpc("<commit/>"));
    EXPECT_EQ(name(other), "theirs");
}

INSTANTIATE_TEST_SUITE_P(Being, ASessionThatEndsWithoutALock, testing::Values("Closed", "Killed", "Dropped"),
                         [](const auto &test) { return std::string(test.param); });

TEST_F(NetconfLock, IsNotNeededForTheCandidatesChangesToBeDiscardedWithTheLastOfTheirSessions) {
    NetconfClient third(server().socket());
    expect_ok(third.rpc(edit_config("candidate", lldp("<config><hello-timer>40</hello-timer></config>"))));
    expect_ok(holder.rpc(edit_config("candidate", name_edit("mine"))));
    expect_ok(third.rpc("<close-session/>"));
    expect_ok(holder.rpc("<close-session/>"));
    EXPECT_TRUE(eventually([&] { return name(other, "candidate") == original; }));
}

TEST_F(NetconfLock, OfASessionThatOnlyReadsTakesNothingOfAnothersAway) {
    expect_ok(other.rpc(edit_config("candidate", name_edit("theirs"))));
    EXPECT_EQ(name(holder, "candidate"), "theirs");
    expect_ok(holder.rpc("<close-session/>"));
    EXPECT_TRUE(holder.connection().until_closed().has_value());
    EXPECT_EQ(name(other, "candidate"), "theirs");
}

} // namespace
} // namespace yfw::test
