// Control sockets of daemons that misbehave.
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

// A socket that listens but never accepts.
class ListeningSocket {
public:
    explicit ListeningSocket(int backlog = 8);

    std::string path() const { return (directory_.path() / "socket").string(); }
    const std::filesystem::path &directory() const { return directory_.path(); }
    int descriptor() const { return socket_.get(); }

    // Connects until the queue is full.
    void fill();

private:
    yfw::test::TemporaryDirectory directory_;
    Descriptor socket_;
    std::vector<Descriptor> clients_;
};

// A fake daemon's end of a connection to its client.
class Client {
public:
    Client(int descriptor, const std::atomic<bool> &ends) : descriptor_(descriptor), ends_(ends) {}

    // At least `count` bytes from the client; fewer when it disconnects or the test ends.
    std::string receive(size_t count) const;
    // Sends all bytes; false when the client disconnects or the test ends.
    bool send(const std::string &bytes) const;
    // Waits until the client disconnects or the test ends.
    void wait() const;
    // Waits a moment; false when the test ends.
    bool pause() const;

private:
    bool ready(short events) const;

    int descriptor_;
    const std::atomic<bool> &ends_;
};

// Treats all clients alike, one after another, in its own thread.
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
