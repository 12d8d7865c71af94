// Neighbors of a real daemon that come, change and go, as gNMI's subscribers are told of them.
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "gnmi_client.h"
#include "support/eventually.h"
#include "support/files.h"
#include "support/lab.h"
#include "support/lldp_frame.h"
#include "support/running_yfw.h"

namespace yfw::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAreArray;
using Strings = std::vector<std::string>;

constexpr auto soon = 5s;        // on a busy machine; the daemon's event takes less than a second to arrive
constexpr auto a_while = 1500ms; // in which whatever is told twice would have come

// Router a, whose daemon hears what the test sends from b, and a server for it. The daemon starts each test
// without neighbors.
class AStreamOfNeighbors : public testing::Test {
protected:
    static void TearDownTestSuite() { lab_.reset(); }

    void SetUp() override {
        const std::string obstacle = lab_obstacle();
        if (!obstacle.empty() && lab_is_required())
            FAIL() << obstacle;
        if (!obstacle.empty())
            GTEST_SKIP() << obstacle;
        if (lab_ == nullptr) {
            lab_ = std::make_unique<Laboratory>(
                R"({"routers": [{"name": "a"}, {"name": "b"}], "links": [["a:eth1", "b:eth1"]]})");
            lab_->kill_daemon("b");
        }
        lab_->kill_daemon("a");
        lab_->start_daemon("a");
        server_.emplace(Strings{"serve", "--device", lab_->device("a"), "--store",
                                (directory_.path() / "store.db").string(), "--socket",
                                (directory_.path() / "netconf.sock").string(), "--gnmi"});
        const std::string line = server_->line_with({"gNMI on "}).value_or("");
        ASSERT_NE(line, "") << server_->errors();
        client_.emplace(address_of(line), files_in(certificates_of(line)));
        // Changes are only told once the daemon is being watched. So some are made until one is told.
        const auto first = subscriber();
        int change = 0;
        ASSERT_TRUE(eventually([&] {
            announce("change " + std::to_string(change++));
            return !first->told().empty();
        }));
        announce("gone", 0);
        ASSERT_TRUE(eventually([&] { return lab_->neighbors("a", "eth1").empty(); }));
    }

    // A neighbor with this description; one that is not valid any more is gone.
    static void announce(const std::string &text, uint16_t valid_for = 120) {
        LldpFrame frame{mac_chassis(1), "\x07port", "phone"};
        frame.more = lldp_tlv(6, text);
        frame.valid_for = valid_for;
        lab_->send("b", "eth1", {frame.octets()});
    }

    std::unique_ptr<GnmiSubscriber> subscriber() {
        auto made = std::make_unique<GnmiSubscriber>(*client_, descriptions);
        EXPECT_TRUE(eventually([&] { return made->is_in_sync(); }));
        return made;
    }

    static bool is_told(const GnmiSubscriber &subscriber, const Strings &all) {
        return eventually([&] { return subscriber.told() == all; }, soon);
    }

    static const Strings descriptions;
    static const std::string neighbor;
    static const std::string description;
    static std::unique_ptr<Laboratory> lab_;
    TemporaryDirectory directory_;
    std::optional<RunningYfw> server_;
    std::optional<GnmiClient> client_;
};

std::unique_ptr<Laboratory> AStreamOfNeighbors::lab_;
const Strings AStreamOfNeighbors::descriptions{"lldp",     "interfaces", "interface",         "neighbors",
                                               "neighbor", "state",      "system-description"};
const std::string AStreamOfNeighbors::neighbor =
    "/lldp/interfaces/interface[name=eth1]/neighbors/neighbor[id=phone#port]";
const std::string AStreamOfNeighbors::description = neighbor + "/state/system-description";

TEST_F(AStreamOfNeighbors, TellsOfEachChangeOnceAndInOrder) {
    const auto stream = subscriber();
    Strings expected;
    for (const std::string text : {"one", "two", "three"}) {
        announce(text);
        expected.push_back(description + " = " + text);
        ASSERT_TRUE(is_told(*stream, expected)) << testing::PrintToString(stream->told());
    }
    announce("three", 0);
    expected.push_back("- " + description);
    ASSERT_TRUE(is_told(*stream, expected)) << testing::PrintToString(stream->told());
    std::this_thread::sleep_for(a_while);
    EXPECT_THAT(stream->told(), ElementsAreArray(expected));
}

TEST_F(AStreamOfNeighbors, TellsNothingWhenAnAnnouncementRepeats) {
    announce("same");
    ASSERT_TRUE(eventually([] { return lab_->neighbors("a", "eth1").size() == 1; }));
    const auto stream = subscriber();
    for (int i = 0; i < 5; i++)
        announce("same");
    announce("other");
    ASSERT_TRUE(is_told(*stream, {description + " = other"})) << testing::PrintToString(stream->told());
}

TEST_F(AStreamOfNeighbors, GoesOnWhenTheDaemonIsKilledAndRestarted) {
    announce("before");
    ASSERT_TRUE(eventually([] { return lab_->neighbors("a", "eth1").size() == 1; }));
    const auto stream = subscriber();
    lab_->kill_daemon("a");
    lab_->start_daemon("a");
    const Strings gone{"- " + description};
    ASSERT_TRUE(eventually([&] { return stream->told() == gone; })) << testing::PrintToString(stream->told());
    ASSERT_TRUE(eventually([&] {
        announce("after");
        return stream->told() != gone;
    }));
    EXPECT_THAT(stream->told(), ElementsAreArray({gone.front(), description + " = after"}));
}

TEST_F(AStreamOfNeighbors, TellsAHundredSubscribersTheSame) {
    std::vector<std::unique_ptr<GnmiSubscriber>> streams;
    for (int i = 0; i < 100; i++)
        streams.push_back(std::make_unique<GnmiSubscriber>(*client_, descriptions));
    for (const auto &stream : streams)
        ASSERT_TRUE(eventually([&] { return stream->is_in_sync(); }));
    announce("all");
    const Strings expected{description + " = all"};
    for (const auto &stream : streams)
        ASSERT_TRUE(is_told(*stream, expected)) << testing::PrintToString(stream->told());
    announce("all", 0);
    for (const auto &stream : streams)
        ASSERT_TRUE(is_told(*stream, {expected.front(), "- " + description}));
}

} // namespace
} // namespace yfw::test
