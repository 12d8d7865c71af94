// Control sockets behind which no sound lldpd is.
#ifndef YFW_SOURCES_TEST_FAKE_DAEMON_H
#define YFW_SOURCES_TEST_FAKE_DAEMON_H

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "base/descriptor.h"
#include "support/files.h"

namespace yfw::sources::test {

// A socket that listens and accepts nobody.
class ListeningSocket {
public:
    explicit ListeningSocket(int backlog = 8);

    std::string path() const { return (directory_.path() / "socket").string(); }
    const std::filesystem::path &directory() const { return directory_.path(); }
    int descriptor() const { return socket_.get(); }

    // Connects until nobody more can.
    void fill();

private:
    yfw::test::TemporaryDirectory directory_;
    Descriptor socket_;
    std::vector<Descriptor> clients_;
};

// The other end of a connection, for what a fake daemon does to its client.
class Client {
public:
    Client(int descriptor, const std::atomic<bool> &ends) : descriptor_(descriptor), ends_(ends) {}

    // Some bytes of what the client sent, at least `count`; fewer when it went away or the test ends.
    std::string receive(size_t count) const;
    // False when the client went away or the test ends.
    bool send(const std::string &bytes) const;
    // Until the client goes away or the test ends.
    void wait() const;
    // False when the test ends.
    bool pause() const;

private:
    bool ready(short events) const;

    int descriptor_;
    const std::atomic<bool> &ends_;
};

// Does the same to each client, one after another, in a thread of its own.
class FakeDaemon {
public:
    explicit FakeDaemon(std::function<void(const Client &)> behaviour);
    ~FakeDaemon();
    FakeDaemon(const FakeDaemon &) = delete;
    FakeDaemon &operator=(const FakeDaemon &) = delete;

    std::string path() const { return socket_.path(); }

private:
    void serve();

    ListeningSocket socket_;
    std::function<void(const Client &)> behaviour_;
    std::atomic<bool> ends_{false};
    std::thread thread_;
};

} // namespace yfw::sources::test

#endif
