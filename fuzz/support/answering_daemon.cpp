#include "fuzz/support/answering_daemon.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>

#include "base/error.h"
#include "base/system_error.h"
#include "base/unix_socket.h"

namespace yfw::fuzz {
namespace {

constexpr size_t longest_question = 65536;

std::string bytes_of(const MessageHeader &header) {
    std::string bytes(sizeof header, '\0');
    std::memcpy(bytes.data(), &header.type, sizeof header.type);
    std::memcpy(bytes.data() + offsetof(MessageHeader, length), &header.length, sizeof header.length);
    return bytes;
}

} // namespace

ControlSocket::ControlSocket(std::string_view recorded) : socket_(listen_on_socket(path(), 1)) {
    if (!socket_.is_open())
        throw Error(ErrorTag::operation_failed, path(), "cannot listen: " + system_error_text());
    while (recorded.size() >= sizeof(MessageHeader)) {
        MessageHeader header;
        std::memcpy(&header, recorded.data(), sizeof header);
        recorded.remove_prefix(sizeof header);
        answers_[header.type] = recorded.substr(0, header.length);
        recorded.remove_prefix(answers_[header.type].size());
    }
}

std::string ControlSocket::answer(uint32_t type) const {
    const auto found = answers_.find(type);
    return found == answers_.end() ? "" : found->second;
}

AnsweringDaemon::AnsweringDaemon(const ControlSocket &socket, std::vector<AnswerChange> changes)
    : socket_(socket), changes_(std::move(changes)), thread_([this] { serve(); }) {}

AnsweringDaemon::~AnsweringDaemon() {
    end_.wake();
    thread_.join();
}

bool AnsweringDaemon::wait_for(int descriptor, short events) const {
    pollfd waited[2] = {{descriptor, events, 0}, {end_.descriptor(), POLLIN, 0}};
    while (poll(waited, 2, -1) < 0 && errno == EINTR) {
    }
    return waited[0].revents != 0;
}

void AnsweringDaemon::serve() {
    if (!wait_for(socket_.descriptor(), POLLIN))
        return;
    const Descriptor client(accept(socket_.descriptor(), nullptr, nullptr));
    size_t asked = 0;
    while (client.is_open() && answer(client.get(), asked < changes_.size() ? changes_[asked] : AnswerChange()))
        asked++;
}

bool AnsweringDaemon::receive(int client, char *bytes, size_t count) const {
    while (count > 0) {
        const ssize_t got = wait_for(client, POLLIN) ? recv(client, bytes, count, 0) : 0;
        if (got <= 0)
            return false;
        bytes += got;
        count -= static_cast<size_t>(got);
    }
    return true;
}

bool AnsweringDaemon::receive_question(int client, MessageHeader &header) const {
    std::string bytes(sizeof header, '\0');
    if (!receive(client, bytes.data(), bytes.size()))
        return false;
    std::memcpy(&header, bytes.data(), sizeof header);
    std::string question(std::min(header.length, longest_question), '\0');
    return receive(client, question.data(), question.size());
}

bool AnsweringDaemon::send(int client, std::string_view bytes, size_t portion) const {
    while (!bytes.empty()) {
        const std::string_view piece = portion == 0 ? bytes : bytes.substr(0, portion);
        const ssize_t sent =
            wait_for(client, POLLOUT) ? ::send(client, piece.data(), piece.size(), MSG_NOSIGNAL) : -1;
        if (sent < 0)
            return false;
        bytes.remove_prefix(static_cast<size_t>(sent));
    }
    return true;
}

bool AnsweringDaemon::answer(int client, const AnswerChange &change) const {
    MessageHeader header;
    if (!receive_question(client, header))
        return false;
    std::string body = socket_.answer(header.type);
    if (change.kind == AnswerChange::another_type)
        header.type += change.number;
    if (change.kind == AnswerChange::shorter)
        body.resize(body.size() - std::min<size_t>(change.number, body.size()));
    header.length = body.size() + (change.kind == AnswerChange::longer ? change.number : 0);
    std::string message = bytes_of(header) + body;
    const bool is_cut = change.kind == AnswerChange::closing && change.number < message.size();
    if (is_cut)
        message.resize(change.number);
    // A client would wait for the rest of the answer, or for the answer after an announcement.
    const bool closes =
        is_cut || change.kind == AnswerChange::longer || change.kind == AnswerChange::another_type;
    return send(client, message, change.portion) && !closes;
}

} // namespace yfw::fuzz
