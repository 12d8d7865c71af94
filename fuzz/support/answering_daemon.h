// A daemon's control socket, with recorded answers.
#ifndef YFW_FUZZ_SUPPORT_ANSWERING_DAEMON_H
#define YFW_FUZZ_SUPPORT_ANSWERING_DAEMON_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "base/descriptor.h"
#include "base/private_directory.h"
#include "base/wakeup.h"

namespace yfw::fuzz {

// The header of a message of lldpd's control protocol.
struct MessageHeader {
    uint32_t type = 0;
    size_t length = 0; // of what follows, in bytes
};

// What a daemon does instead of giving the recorded answer.
struct AnswerChange {
    enum Kind : uint8_t {
        none,
        another_type, // the type differs by the number; then the connection is closed
        longer,       // announces as many more bytes than it has; then the connection is closed
        shorter,      // lacks as many bytes at its end
        closing,      // the connection is closed after as many bytes
        kinds
    };
    size_t portion = 0; // the size of the pieces in which it is sent, in bytes; 0: in one piece
    Kind kind = none;
    uint16_t number = 0;
};

// The socket, for one daemon after another, and the recorded answers.
class ControlSocket {
public:
    // `recorded`: the daemon's messages, one for each type. Throws Error.
    explicit ControlSocket(std::string_view recorded);

    std::string path() const { return (directory_.path() / "socket").string(); }
    int descriptor() const { return socket_.get(); }
    // The body of the answer of this type; empty when there is none.
    std::string answer(uint32_t type) const;

private:
    PrivateDirectory directory_{"yfw-fuzz"};
    Descriptor socket_;
    std::map<uint32_t, std::string> answers_;
};

// Accepts one client, in a thread of its own, and answers its questions, with the changes to the first answers.
class AnsweringDaemon {
public:
    AnsweringDaemon(const ControlSocket &socket, std::vector<AnswerChange> changes);
    ~AnsweringDaemon();
    AnsweringDaemon(const AnsweringDaemon &) = delete;
    AnsweringDaemon &operator=(const AnsweringDaemon &) = delete;

private:
    void serve();
    bool wait_for(int descriptor, short events) const;
    // These return false when a connection is closed, or the daemon ends.
    bool receive(int client, char *bytes, size_t count) const;
    bool receive_question(int client, MessageHeader &header) const;
    bool answer(int client, const AnswerChange &change) const;
    bool send(int client, std::string_view bytes, size_t portion) const;

    const ControlSocket &socket_;
    std::vector<AnswerChange> changes_;
    Wakeup end_;
    std::thread thread_;
};

} // namespace yfw::fuzz

#endif
