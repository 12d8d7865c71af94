// Neighbors of a real daemon that are added, updated and removed, as a subscriber sees them.
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lldpd_lab.h"
#include "netconf_events.h"
#include "netconf_server.h"
#include "support/eventually.h"
#include "yang/forest.h"

namespace yfw::test {
namespace {

using std::chrono::milliseconds;

const std::string neighbor_of_eth1 = "r2.example.net#eth1";

// Whether an event is this change ("added", "updated", "removed") of the neighbor that r1 hears on eth1.
EventCondition is(const std::string &change) {
    return [change](const Xml &event) {
        return event.text_at("change") == change && event.text_at("interface") == "eth1" &&
               event.text_at("id") == neighbor_of_eth1;
    };
}

// Removes the neighbor's age, which changes between two reads.
std::string without_age(const ly_ctx *modules, const std::string &document) {
    Tree tree = parse_answer(modules, Format::xml, document);
    for (lyd_node *node : yang::nodes_at(tree.get(), "//openconfig-lldp:age|//openconfig-lldp:last-update"))
        yang::remove(tree, node);
    return as_text(tree.get());
}

// A server for r1 with a client that subscribes to changes of neighbors.
class LiveServer {
public:
    explicit LiveServer(Laboratory &lab) : lab_(lab), server_(LiveDevice{lab.device("r1")}) {
        expect_ok(client_.rpc(
            create_subscription(subtree("<neighbor-change xmlns=\"" + neighbor_namespace + "\"/>"))));
    }

    // Changes are only reported once the daemon is being watched. So changes are made until one is reported.
    bool tells_changes() {
        const std::string description = "round " + std::to_string(++round_);
        int change = 0;
        return eventually([&] {
            lab_.configure("r2",
                           {"system", "description", description + " change " + std::to_string(++change)});
            const std::optional<Xml> notification = client_.notification(milliseconds(500));
            return notification.has_value() && is("updated")(event_of(*notification)) &&
                   notification->printed.find(description) != std::string::npos;
        });
    }

    std::string get_neighbor() {
        const Xml reply = asker_.rpc(
            "<get>" +
            subtree(lldp("<interfaces><interface><name>eth1</name><neighbors><neighbor><id>" +
                         neighbor_of_eth1 + "</id></neighbor></neighbors></interface></interfaces>")) +
            "</get>");
        const Xml *tree = reply.at("data/lldp");
        return tree != nullptr ? tree->printed : "";
    }

    NetconfClient another_client() const { return NetconfClient(server_.socket()); }
    NetconfClient &subscriber() { return client_; }

private:
    Laboratory &lab_;
    NetconfServer server_;
    int round_ = 0;
    NetconfClient client_{server_.socket()}, asker_{server_.socket()};
};

std::string data_of(const Xml &event) {
    const Xml *tree = event.at("data/lldp");
    EXPECT_NE(tree, nullptr) << event.printed;
    return tree != nullptr ? tree->printed : "";
}

TEST_F(LldpdLab, ServesASubscriberAnUpdateWithTheDataThatGetShows) {
    const Context modules = openconfig_modules();
    LiveServer server(lab());
    ASSERT_TRUE(server.tells_changes());
    edit("r2", {"set", "/lldp/config/system-description", "described anew"});
    const Xml event = next_event(server.subscriber(), "neighbor-change", [](const Xml &each) {
        return is("updated")(each) && each.printed.find("described anew") != std::string::npos;
    });
    EXPECT_EQ(event.ns, neighbor_namespace);
    EXPECT_EQ(without_age(modules.get(), data_of(event)), without_age(modules.get(), server.get_neighbor()));
}

TEST_F(LldpdLab, ServesASubscriberACutAndItsRepair) {
    const Context modules = openconfig_modules();
    LiveServer server(lab());
    ASSERT_TRUE(server.tells_changes());
    const std::string neighbor = "/openconfig-lldp:lldp/interfaces/interface[name='eth1']/neighbors/neighbor";
    lab().ip("r2", {"link", "set", "eth1", "down"});
    const Xml removed = next_event(server.subscriber(), "neighbor-change", is("removed"));
    lab().ip("r2", {"link", "set", "eth1", "up"});
    const Tree last = parse_answer(modules.get(), Format::xml, data_of(removed));
    EXPECT_THAT(values_at(last.get(), neighbor + "/id"), testing::ElementsAre(neighbor_of_eth1));
    EXPECT_THAT(values_at(last.get(), neighbor + "/state/system-name"), testing::ElementsAre("r2.example.net"));
    const Xml added = next_event(server.subscriber(), "neighbor-change", is("added"));
    const Tree next = parse_answer(modules.get(), Format::xml, data_of(added));
    EXPECT_THAT(values_at(next.get(), neighbor + "/state/system-name"), testing::ElementsAre("r2.example.net"));
    EXPECT_TRUE(eventually(all_hear_each_other));
}

TEST_F(LldpdLab, ServesASubscriberAfterARestartOfItsDaemon) {
    LiveServer server(lab());
    ASSERT_TRUE(server.tells_changes());
    lab().kill_daemon("r1");
    lab().start_daemon("r1");
    EXPECT_TRUE(server.tells_changes());
    EXPECT_TRUE(eventually(all_hear_each_other));
}

TEST_F(LldpdLab, ServesAReplayOfWhatItsNeighborsDid) {
    LiveServer server(lab());
    ASSERT_TRUE(server.tells_changes());
    NetconfClient later = server.another_client();
    expect_ok(later.rpc(create_subscription(start_time(long_ago))));
    const std::vector<Xml> events = events_by(events_to(later, "replayComplete"), "neighbor-change");
    EXPECT_TRUE(std::any_of(events.begin(), events.end(), is("updated")));
}

// --- a server that keeps the last commit applied ---

TEST_F(LldpdLab, IsPutRightByAServerThatTellsTheLeavesAndNoChangeOfItsConfiguration) {
    edit("r1", {"set", "/lldp/config/system-name", "ours.example.net"});
    NetconfServer server(LiveDevice{lab().device("r1")}, {"--keep-applied", "--drift-interval", "1"});
    NetconfClient client(server.socket());
    expect_ok(client.rpc(create_subscription()));
    lab().configure("r1", {"ports", "eth1", "lldp", "status", "rx-only"});
    lab().configure("r1", {"system", "hostname", "theirs.example.net"});
    std::string paths;
    while (paths.find("system-name") == std::string::npos ||
           paths.find("transmit/disable") == std::string::npos) {
        const std::vector<Xml> events = events_to(client, "configuration-reapplied");
        EXPECT_THAT(events_by(events, config_change), testing::IsEmpty());
        paths += events.back().printed;
    }
    EXPECT_EQ(setting("r1", "hostname"), "ours.example.net");
    EXPECT_EQ(yfw("r1", {"drift"}).output, "no drift\n");
    EXPECT_THAT(server.process().errors(),
                testing::Not(testing::HasSubstr("changes the running configuration")));
    EXPECT_THAT(server.process().errors(), testing::HasSubstr("runs the last commit again: "));
}

} // namespace
} // namespace yfw::test
