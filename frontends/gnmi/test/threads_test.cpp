// Many clients at once. ThreadSanitizer finds data races; without it, the tests only check that every request
// is answered. There is no transport: gRPC is not built with ThreadSanitizer, which then sees races where there
// are none.
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "frontends/gnmi/operations/get_operation.h"
#include "frontends/gnmi/operations/set_operation.h"
#include "frontends/gnmi/subscriptions/stream.h"
#include "gnmi_fixture.h"

namespace yfw::gnmi::test {
namespace {

using namespace std::chrono_literals;
using List = ::gnmi::SubscriptionList;

constexpr int rounds = 12;

::gnmi::SubscribeRequest list(List::Mode mode, const std::string &at) {
    ::gnmi::SubscribeRequest request;
    request.mutable_subscribe()->set_mode(mode);
    request.mutable_subscribe()->set_encoding(::gnmi::PROTO);
    ::gnmi::Subscription &subscription = *request.mutable_subscribe()->add_subscription();
    *subscription.mutable_path() = path(at);
    subscription.set_mode(::gnmi::ON_CHANGE);
    return request;
}

class ManyClients : public testing::Test {
protected:
    using Work = std::function<void(int round)>;

    // Runs all work concurrently. An exception must not leave the thread.
    static void at_once(const std::vector<Work> &all) {
        std::vector<std::thread> threads;
        for (const Work &work : all)
            threads.emplace_back([work] {
                for (int round = 0; round < rounds; round++) {
                    const auto refusal = refusal_of_call([&] { work(round); });
                    // A commit of another client may await its confirmation.
                    EXPECT_TRUE(!refusal.has_value() || refusal->code() == Code::failed_precondition)
                        << refusal->what();
                }
            });
        for (std::thread &each : threads)
            each.join();
    }

    // ---- what a client does while the others do other things

    Work reads() {
        return [this](int) {
            ::gnmi::GetRequest request;
            *request.add_path() = path("/lldp");
            EXPECT_GT(get(device_.target(), caller_, request).notification(0).update_size(), 0);
        };
    }

    Work edits() {
        return [this](int round) {
            ::gnmi::SetRequest request;
            ::gnmi::Update &update = *request.add_update();
            *update.mutable_path() = path("/lldp/config/system-name");
            update.mutable_val()->set_string_val("name-" + std::to_string(round));
            if (round % 4 == 0) {
                gnmi_ext::Commit &commit = *request.add_extension()->mutable_commit();
                commit.set_id("a");
                commit.mutable_commit()->mutable_rollback_duration()->set_seconds(60);
            }
            set(device_.target(), caller_, request);
        };
    }

    Work confirms() {
        return [this](int round) {
            ::gnmi::SetRequest request;
            gnmi_ext::Commit &commit = *request.add_extension()->mutable_commit();
            commit.set_id("a");
            if (round % 2 == 0)
                commit.mutable_confirm();
            else
                commit.mutable_cancel();
            set(device_.target(), caller_, request);
        };
    }

    // Takes messages on a thread of its own, as a transport does, until there are so many or some time is over.
    class Taken {
    public:
        Taken(ManyClients &all, const ::gnmi::SubscribeRequest &request)
            : stream_(all.device_.target(), all.publisher_, all.caller_, {}, [this] { wake(); }) {
            stream_.receive(request);
        }

        void send(const ::gnmi::SubscribeRequest &request) { stream_.receive(request); }

        size_t take(size_t count, std::chrono::milliseconds limit) {
            size_t taken = 0;
            std::thread taker([&] {
                const auto end = std::chrono::steady_clock::now() + limit;
                for (;;) {
                    for (; taken < count && stream_.take() != nullptr; taken++) {
                    }
                    std::unique_lock<std::mutex> lock(mutex_);
                    if (taken == count || !woken_.wait_until(lock, end, [this] { return is_woken_; }))
                        return;
                    is_woken_ = false;
                }
            });
            taker.join();
            return taken;
        }

    private:
        void wake() {
            const std::lock_guard<std::mutex> guard(mutex_);
            is_woken_ = true;
            woken_.notify_all();
        }

        std::mutex mutex_;
        std::condition_variable woken_;
        bool is_woken_ = false;
        Stream stream_;
    };

    Work asks_once() {
        return [this](int) {
            Taken once(*this, list(List::ONCE, "/lldp/config/enabled"));
            EXPECT_EQ(once.take(2, 20s), 2U) << "a value and a sync";
        };
    }

    Work polls() {
        return [this](int) {
            Taken polling(*this, list(List::POLL, "/lldp/config/enabled"));
            ::gnmi::SubscribeRequest poll;
            poll.mutable_poll();
            for (int i = 0; i < 2; i++) {
                polling.send(poll);
                EXPECT_EQ(polling.take(2, 20s), 2U);
            }
        };
    }

    // Leaves at any moment.
    Work subscribes() {
        return [this](int round) {
            Taken changes(*this, list(List::STREAM, round % 2 == 0 ? "/lldp" : "/lldp/config/system-name"));
            changes.take(static_cast<size_t>(round), 20ms);
        };
    }

    ServedDevice device_;
    const Caller caller_ = device_.caller();
    Publisher publisher_{device_.target(), [](const std::string &) {}};
};

TEST_F(ManyClients, AreAllAnsweredWhateverTheOthersDo) {
    at_once({reads(), edits(), edits(), confirms(), asks_once(), polls(), subscribes(), subscribes()});
    reads()(0);
}

} // namespace
} // namespace yfw::gnmi::test
