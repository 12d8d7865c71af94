// A connection to an lldpd's control socket. No wait is unbounded unless the caller asks for it.
#ifndef YFW_SOURCES_LLDPD_CONNECTION_H
#define YFW_SOURCES_LLDPD_CONNECTION_H

#include <chrono>
#include <memory>
#include <string>

#include <lldpctl.h>

#include "base/descriptor.h"

namespace yfw::sources::lldpd {

struct ReleaseAtom {
    void operator()(lldpctl_atom_t *atom) const { lldpctl_atom_dec_ref(atom); }
};

// An object of lldpd's library; valid only while its connection exists.
using Atom = std::unique_ptr<lldpctl_atom_t, ReleaseAtom>;

// Connects on first use. Not thread-safe.
class Connection {
public:
    static constexpr std::chrono::seconds usual_bound{10};

    // `bound`: the time limit for one answer.
    explicit Connection(std::string socket, std::chrono::milliseconds bound = usual_bound);
    // `stream`: the connection to this socket, made by somebody else.
    Connection(std::string socket, Descriptor stream, std::chrono::milliseconds bound = usual_bound);
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    lldpctl_conn_t *handle() const { return handle_; }

    // Throws Error with the socket, the operation and the reason for the failure.
    [[noreturn]] void fail(const std::string &doing) const;

    // Takes ownership of the atom that lldpd's library returned for `doing`; throws like fail() when it is
    // NULL.
    Atom expect(lldpctl_atom_t *atom, const std::string &doing) const;

    const std::string &socket() const { return socket_; }
    std::chrono::milliseconds bound() const { return bound_; }

    // The name of the device: "lldpd:SOCKET".
    std::string place() const { return "lldpd:" + socket_; }

    // Makes waits in receive() end early, with "would block", when this descriptor becomes readable. -1: none.
    void interrupt_by(int descriptor) { interrupt_ = descriptor; }
    // Removes the time limit on receiving, for announcements that may never come.
    void wait_without_bound() { bounded_ = false; }

    // Whether the last failure was the interruption.
    bool interrupted() const { return interrupted_; }

private:
    static ssize_t send(lldpctl_conn_t *, const uint8_t *data, size_t length, void *self);
    static ssize_t receive(lldpctl_conn_t *, const uint8_t *data, size_t length, void *self);

    bool connect();
    bool wait_for(short events);
    void note_timeout();
    int milliseconds_left() const;

    std::string socket_;
    std::chrono::milliseconds bound_;
    bool bounded_ = true;
    std::chrono::steady_clock::time_point answer_by_; // set by each request
    Descriptor stream_;
    int interrupt_ = -1;
    bool interrupted_ = false;
    std::string trouble_; // details of a socket failure that the library's error lacks
    lldpctl_conn_t *handle_;
};

// Calls `visit` with each element of a list, which may be NULL.
template <class Visit> void for_each(lldpctl_atom_t *list, Visit &&visit) {
    if (list == nullptr)
        return;
    for (lldpctl_atom_iter_t *at = lldpctl_atom_iter(list); at != nullptr;
         at = lldpctl_atom_iter_next(list, at)) {
        const Atom element(lldpctl_atom_iter_value(list, at));
        if (element != nullptr)
            visit(element.get());
    }
}

} // namespace yfw::sources::lldpd

#endif
