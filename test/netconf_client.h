// A NETCONF client that sends what it is told, sound or broken, and waits no longer than it must.
#pragma once

#include <chrono>
#include <deque>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "base/descriptor.h"

namespace yfw::test {

inline const std::string base_namespace = "urn:ietf:params:xml:ns:netconf:base:1.0";
inline const std::string base_1_0 = "urn:ietf:params:netconf:base:1.0";
inline const std::string base_1_1 = "urn:ietf:params:netconf:base:1.1";

/// How long a test waits for an answer that has to come.
constexpr std::chrono::seconds patience{20};

/// An element of a message, with all below it.
struct Xml {
    std::string name;
    std::string ns;
    std::string text; // without the white space around it
    std::map<std::string, std::string> attributes;
    std::vector<Xml> children;
    std::string printed; // as a document of its own

    /// The first child by that name; nothing when there is none.
    const Xml *child(std::string_view wanted) const;
    /// The texts of the children by that name.
    std::vector<std::string> texts(std::string_view wanted) const;
    /// A descendant by the names of the elements down to it, "a/b/c"; nothing when there is none.
    const Xml *at(std::string_view names) const;
    /// Its text; empty when there is none.
    std::string text_at(std::string_view names) const;
};

/// Throws std::runtime_error when the text is no XML document with one root in a namespace.
Xml parse_xml(const std::string &text);

/// Bytes to and from a Unix socket.
class Connection {
public:
    /// `user`: the local user that the other end sees, which only root can choose; empty for the test's own.
    /// Throws std::runtime_error when nobody listens, and when there is no such user.
    explicit Connection(const std::filesystem::path &socket, const std::string &user = "");

    /// Sends all; false when the other end has closed, or takes nothing more for a while.
    bool send(std::string_view bytes, std::chrono::milliseconds limit = patience);
    /// The bytes up to and with `end`. Throws std::runtime_error when they do not come.
    std::string receive_to(std::string_view end);
    std::string receive(size_t count);
    /// What comes until the other end closes; nothing when it does not.
    std::optional<std::string> until_closed(std::chrono::milliseconds limit = patience);
    /// Whether there is something to receive, or comes in time.
    bool has_more(std::chrono::milliseconds limit);
    /// No more will be sent.
    void finish_sending() const;
    /// The process at the other end.
    pid_t server() const;

private:
    // False at the end of the stream, and when nothing came in time.
    bool receive_more(std::chrono::steady_clock::time_point deadline);

    Descriptor socket_;
    bool ended_ = false;
    std::string buffer_;
};

/// A client's <hello> with these capabilities and this after them.
std::string hello_message(const std::vector<std::string> &capabilities, const std::string &more = "");

/// A message in the framing of base:1.0 and of base:1.1.
std::string with_end_of_message(const std::string &message);
std::string in_one_chunk(const std::string &message);

/// <rpc> around an operation.
std::string rpc_message(const std::string &operation, const std::string &id = "1");

/// A session. Replies are parsed; one that is not well formed throws.
class NetconfClient {
public:
    /// `user` as of Connection.
    explicit NetconfClient(const std::filesystem::path &socket,
                           const std::vector<std::string> &capabilities = {base_1_0, base_1_1},
                           const std::string &user = "");

    /// Sends an operation and gives its reply. Notifications that come before it are kept for notification().
    Xml rpc(const std::string &operation);
    /// The next notification, those that are kept first; nothing when none comes in time. Throws
    /// std::runtime_error when another message comes, and when the server closes.
    std::optional<Xml> notification(std::chrono::milliseconds limit = patience);
    /// Sends a message as it is.
    bool send(const std::string &message);
    Xml receive() { return parse_xml(receive_text()); }
    std::string receive_text();

    const Xml &hello() const { return hello_; }
    std::string session_id() const;
    std::vector<std::string> capabilities() const;
    Connection &connection() { return connection_; }

private:
    Connection connection_;
    bool has_chunks_;
    int last_id_ = 0;
    Xml hello_;
    std::deque<Xml> notifications_; // that came before a reply
};

} // namespace yfw::test
