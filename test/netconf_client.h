// A NETCONF client that sends anything, valid or not, and never waits longer than necessary.
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

/// How long a test waits for an expected answer.
constexpr std::chrono::seconds patience{20};

/// An element of a message, with everything below it.
struct Xml {
    std::string name;
    std::string ns;
    std::string text; // without leading and trailing white space
    std::map<std::string, std::string> attributes;
    std::vector<Xml> children;
    std::string printed; // as a separate document

    /// The first child with that name; NULL when there is none.
    const Xml *child(std::string_view wanted) const;
    /// The texts of the children with that name.
    std::vector<std::string> texts(std::string_view wanted) const;
    /// The first descendant along these element names, "a/b/c"; NULL when there is none.
    const Xml *at(std::string_view names) const;
    /// Its text; empty when there is none.
    std::string text_at(std::string_view names) const;
};

/// Throws std::runtime_error unless the text is an XML document whose root has a namespace.
Xml parse_xml(const std::string &text);

/// A connection to a Unix socket, as a stream of bytes.
class Connection {
public:
    /// `user`: the local user to connect as, which only root can choose; empty for the test's own user. Throws
    /// std::runtime_error when nobody listens or there is no such user.
    explicit Connection(const std::filesystem::path &socket, const std::string &user = "");

    /// Sends all bytes; false when the other end has closed or accepts nothing for `limit`.
    bool send(std::string_view bytes, std::chrono::milliseconds limit = patience);
    /// The bytes up to and including `end`. Throws std::runtime_error when they do not arrive.
    std::string receive_to(std::string_view end);
    std::string receive(size_t count);
    /// Everything received until the other end closes; nothing if it does not close in time.
    std::optional<std::string> until_closed(std::chrono::milliseconds limit = patience);
    /// Whether there is something to receive before the limit.
    bool has_more(std::chrono::milliseconds limit);
    /// Closes this end for sending.
    void finish_sending() const;
    /// The process at the other end.
    pid_t server() const;

private:
    // False at the end of the stream, and when nothing arrived in time.
    bool receive_more(std::chrono::steady_clock::time_point deadline);

    Descriptor socket_;
    bool ended_ = false;
    std::string buffer_;
};

/// A client's <hello> with these capabilities, followed by `more`.
std::string hello_message(const std::vector<std::string> &capabilities, const std::string &more = "");

/// A message in the framing of base:1.0 and of base:1.1.
std::string with_end_of_message(const std::string &message);
std::string in_one_chunk(const std::string &message);

/// An <rpc> with this operation.
std::string rpc_message(const std::string &operation, const std::string &id = "1");

/// A session. Replies are parsed; a malformed one throws std::runtime_error.
class NetconfClient {
public:
    /// `user`: as for Connection.
    explicit NetconfClient(const std::filesystem::path &socket,
                           const std::vector<std::string> &capabilities = {base_1_0, base_1_1},
                           const std::string &user = "");

    /// Sends an operation and returns its reply. Notifications that arrive before it are kept for
    /// notification().
    Xml rpc(const std::string &operation);
    /// The next notification, beginning with those kept; nothing when none arrives in time. Throws
    /// std::runtime_error when another message arrives or the server closes the session.
    std::optional<Xml> notification(std::chrono::milliseconds limit = patience);
    /// Sends a message, framed but otherwise unchanged.
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
    std::deque<Xml> notifications_; // those that arrived before a reply
};

} // namespace yfw::test
