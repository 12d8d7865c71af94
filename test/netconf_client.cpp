#include "netconf_client.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <stdexcept>

#include <libyang/libyang.h>
#include <poll.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "base/system_error.h"
#include "base/unix_socket.h"
#include "support/answers.h"
#include "yang/tree_text.h"

namespace yfw::test {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::string_view end_of_message = "]]>]]>";

std::string text_of(const char *text) {
    return text != nullptr ? text : "";
}

std::string trimmed(const std::string &text) {
    const char *space = " \t\r\n";
    const size_t start = text.find_first_not_of(space);
    return start == std::string::npos ? "" : text.substr(start, text.find_last_not_of(space) - start + 1);
}

Xml element_of(const lyd_node *node) {
    const auto *opaque = reinterpret_cast<const lyd_node_opaq *>(node);
    Xml element;
    element.name = opaque->name.name;
    element.ns = text_of(opaque->name.module_ns);
    element.text = trimmed(text_of(opaque->value));
    for (const lyd_attr *each = opaque->attr; each != nullptr; each = each->next)
        element.attributes[each->name.name] = each->value;
    for (const lyd_node *child = opaque->child; child != nullptr; child = child->next)
        element.children.push_back(element_of(child));
    element.printed = yang::printed(node, LYD_XML, LYD_PRINT_SHRINK);
    return element;
}

// Changes the user of this thread only. seteuid() would change all threads, and one may be the server.
bool become(uid_t user) {
    return syscall(SYS_setresuid, -1, user, -1) == 0;
}

// While the object exists, the thread runs as this user; does nothing if the user is empty.
class AsUser {
public:
    explicit AsUser(const std::string &name) : switched_(!name.empty()) {
        if (!switched_)
            return;
        const passwd *user = getpwnam(name.c_str());
        if (user == nullptr || !become(user->pw_uid))
            throw std::runtime_error("cannot become the user " + name);
    }
    ~AsUser() {
        if (!switched_)
            return;
        if (!become(getuid()))
            std::terminate();
        prctl(PR_SET_DUMPABLE, 1); // changing the user clears it, and the leak check needs it
    }
    AsUser(const AsUser &) = delete;
    AsUser &operator=(const AsUser &) = delete;

private:
    bool switched_;
};

int rest_of(Clock::time_point deadline) {
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<int64_t>(rest.count(), 0));
}

} // namespace

const Xml *Xml::child(std::string_view wanted) const {
    const auto found =
        std::find_if(children.begin(), children.end(), [&](const Xml &each) { return each.name == wanted; });
    return found != children.end() ? &*found : nullptr;
}

std::vector<std::string> Xml::texts(std::string_view wanted) const {
    std::vector<std::string> found;
    for (const Xml &each : children)
        if (each.name == wanted)
            found.push_back(each.text);
    return found;
}

const Xml *Xml::at(std::string_view names) const {
    const Xml *found = this;
    while (found != nullptr && !names.empty()) {
        const size_t end = std::min(names.find('/'), names.size());
        found = found->child(names.substr(0, end));
        names.remove_prefix(std::min(end + 1, names.size()));
    }
    return found;
}

std::string Xml::text_at(std::string_view names) const {
    const Xml *found = at(names);
    return found != nullptr ? found->text : "";
}

namespace {

// Without modules. Each thread has its own: making one takes longer than parsing most messages.
const ly_ctx *empty_context() {
    static thread_local const Context context = [] {
        ly_log_options(LY_LOSTORE_LAST);
        ly_ctx *created = nullptr;
        if (ly_ctx_new(nullptr, LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIRS, &created) != LY_SUCCESS)
            throw std::runtime_error("no libyang context");
        return Context(created);
    }();
    return context.get();
}

} // namespace

Xml parse_xml(const std::string &text) {
    lyd_node *tree = nullptr;
    if (lyd_parse_data_mem(empty_context(), text.c_str(), LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_OPAQ, 0, &tree) !=
        LY_SUCCESS)
        throw std::runtime_error(text_of(ly_errmsg(empty_context())) + " in " + text.substr(0, 1000));
    const Tree owner(tree);
    if (tree == nullptr || tree->schema != nullptr || tree->next != nullptr)
        throw std::runtime_error("no document: " + text.substr(0, 1000));
    return element_of(tree);
}

Connection::Connection(const std::filesystem::path &path, const std::string &user) {
    const AsUser as_user(user); // the kernel records who connects
    socket_ = connect_to_socket(path);
    if (!socket_.is_open())
        throw std::runtime_error("nobody listens on " + path.string() + ": " + system_error_text());
}

bool Connection::send(std::string_view bytes, std::chrono::milliseconds limit) {
    auto deadline = Clock::now() + limit;
    while (!bytes.empty()) {
        const ssize_t count = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) {
            bytes.remove_prefix(static_cast<size_t>(count));
            deadline = Clock::now() + limit;
            continue;
        }
        pollfd writable{socket_.get(), POLLOUT, 0};
        if (errno != EAGAIN || poll(&writable, 1, rest_of(deadline)) <= 0)
            return false;
    }
    return true;
}

bool Connection::receive_more(Clock::time_point deadline) {
    std::array<char, 65536> bytes{};
    pollfd readable{socket_.get(), POLLIN, 0};
    if (poll(&readable, 1, rest_of(deadline)) <= 0)
        return false;
    const ssize_t count = read(socket_.get(), bytes.data(), bytes.size());
    ended_ = count <= 0;
    if (!ended_)
        buffer_.append(bytes.data(), static_cast<size_t>(count));
    return !ended_;
}

std::string Connection::receive_to(std::string_view end) {
    const auto deadline = Clock::now() + patience;
    size_t searched = 0, at = 0;
    while ((at = buffer_.find(end, searched)) == std::string::npos) {
        searched = buffer_.size() - std::min(buffer_.size(), end.size());
        if (!receive_more(deadline))
            throw std::runtime_error(std::string(ended_ ? "closed" : "silent") + " after \"" +
                                     buffer_.substr(0, 1000) + "\"");
    }
    return receive(at + end.size());
}

std::string Connection::receive(size_t count) {
    const auto deadline = Clock::now() + patience;
    while (buffer_.size() < count)
        if (!receive_more(deadline))
            throw std::runtime_error("only part of a message came: \"" + buffer_.substr(0, 1000) + "\"");
    std::string taken = buffer_.substr(0, count);
    buffer_.erase(0, count);
    return taken;
}

std::optional<std::string> Connection::until_closed(std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    while (!ended_ && receive_more(deadline)) {
    }
    return ended_ ? std::optional(buffer_) : std::nullopt;
}

bool Connection::has_more(std::chrono::milliseconds limit) {
    return !buffer_.empty() || receive_more(Clock::now() + limit);
}

void Connection::finish_sending() const {
    shutdown(socket_.get(), SHUT_WR);
}

pid_t Connection::server() const {
    ucred peer{};
    socklen_t size = sizeof peer;
    getsockopt(socket_.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size);
    return peer.pid;
}

std::string hello_message(const std::vector<std::string> &capabilities, const std::string &more) {
    std::string text = "<hello xmlns=\"" + base_namespace + "\"><capabilities>";
    for (const std::string &each : capabilities)
        text += "<capability>" + each + "</capability>";
    return text + "</capabilities>" + more + "</hello>";
}

std::string with_end_of_message(const std::string &message) {
    return message + std::string(end_of_message);
}

std::string in_one_chunk(const std::string &message) {
    return "\n#" + std::to_string(message.size()) + "\n" + message + "\n##\n";
}

std::string rpc_message(const std::string &operation, const std::string &id) {
    return "<rpc message-id=\"" + id + "\" xmlns=\"" + base_namespace + "\">" + operation + "</rpc>";
}

NetconfClient::NetconfClient(const std::filesystem::path &socket, const std::vector<std::string> &capabilities,
                             const std::string &user)
    : connection_(socket, user),
      has_chunks_(std::find(capabilities.begin(), capabilities.end(), base_1_1) != capabilities.end()) {
    std::string hello = connection_.receive_to(end_of_message);
    hello_ = parse_xml(hello.substr(0, hello.size() - end_of_message.size()));
    connection_.send(with_end_of_message(hello_message(capabilities)));
}

Xml NetconfClient::rpc(const std::string &operation) {
    const std::string id = std::to_string(++last_id_);
    if (!send(rpc_message(operation, id)))
        throw std::runtime_error("the server does not accept " + operation.substr(0, 200));
    Xml reply = receive();
    while (reply.name == "notification") {
        notifications_.push_back(std::move(reply));
        reply = receive();
    }
    if (reply.attributes["message-id"] != id)
        throw std::runtime_error("another message was answered: " + reply.printed);
    return reply;
}

std::optional<Xml> NetconfClient::notification(std::chrono::milliseconds limit) {
    std::optional<Xml> next;
    if (!notifications_.empty()) {
        next = std::move(notifications_.front());
        notifications_.pop_front();
        return next;
    }
    if (!connection_.has_more(limit)) {
        if (connection_.until_closed(std::chrono::milliseconds(0)).has_value())
            throw std::runtime_error("closed instead of a notification");
        return next;
    }
    next = receive();
    if (next->name != "notification")
        throw std::runtime_error("no notification: " + next->printed);
    return next;
}

bool NetconfClient::send(const std::string &message) {
    return connection_.send(has_chunks_ ? in_one_chunk(message) : with_end_of_message(message));
}

std::string NetconfClient::receive_text() {
    if (!has_chunks_) {
        const std::string message = connection_.receive_to(end_of_message);
        return message.substr(0, message.size() - end_of_message.size());
    }
    std::string message;
    for (;;) {
        if (connection_.receive(2) != "\n#")
            throw std::runtime_error("no chunk where one has to begin");
        const std::string size = connection_.receive_to("\n");
        if (size == "#\n")
            return message;
        message += connection_.receive(std::stoul(size));
    }
}

std::string NetconfClient::session_id() const {
    const Xml *id = hello_.child("session-id");
    return id != nullptr ? id->text : "";
}

std::vector<std::string> NetconfClient::capabilities() const {
    const Xml *all = hello_.child("capabilities");
    return all != nullptr ? all->texts("capability") : std::vector<std::string>();
}

} // namespace yfw::test
