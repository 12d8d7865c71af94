// The fuzz target: feeds a client's bytes to the server and checks the replies. An input consists of
//
//   byte 0    the sum of these flags; the characters '0' to '?' are all combinations:
//               1  the stream starts after the hello
//               2  ... and is in chunks (base:1.1)
//               4  the client may only read
//               8  every second message comes from another session
//   byte 1    the size of the pieces in which the stream arrives, in bytes
//   the rest  the client's stream
#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "frontends/netconf/messages/framing.h"
#include "frontends/netconf/messages/rpc_error.h"
#include "fuzz/fuzzed_server.h"
#include "fuzz/support/fuzz_target.h"

namespace yfw::netconf::fuzz {
namespace {

using yfw::fuzz::require;

constexpr FrameLimits small{4096, 16384};
constexpr FrameLimits large{uint64_t{1} << 30, uint64_t{1} << 30};

struct Input {
    bool has_hello;
    Framing framing; // of everything after the hello
    bool may_write;
    bool two_sessions;
    size_t portion;
    std::string_view stream;
};

Input input_of(std::string_view bytes) {
    const auto options = static_cast<unsigned char>(bytes[0]);
    return {
        (options & 1) == 0, (options & 2) != 0 ? Framing::chunked : Framing::end_of_message, (options & 4) == 0,
        (options & 8) != 0, std::max<size_t>(static_cast<unsigned char>(bytes[1]), 1),       bytes.substr(2)};
}

// ---- framing -------------------------------------------------------------------------------------------

struct Frames {
    std::vector<std::string> messages;
    bool broken = false;

    bool operator==(const Frames &) const = default;
};

void read_frames(FrameReader &reader, Frames &frames) {
    try {
        while (auto message = reader.next())
            frames.messages.push_back(std::move(*message));
    } catch (const FramingError &) {
        frames.broken = true;
    }
}

Frames frames_of(std::string_view stream, Framing framing, size_t portion) {
    FrameReader reader(small);
    reader.use(framing);
    Frames frames;
    for (size_t at = 0; at < stream.size() && !frames.broken; at += portion) {
        reader.feed(stream.substr(at, portion));
        read_frames(reader, frames);
    }
    return frames;
}

void check_framing(const Input &input) {
    const Frames whole = frames_of(input.stream, input.framing, std::max<size_t>(input.stream.size(), 1));
    require(frames_of(input.stream, input.framing, input.portion) == whole,
            "A stream that arrives in pieces gives other messages than the whole stream.",
            std::string(input.stream));
}

void check_frame(Framing framing, const std::string &message) {
    FrameReader reader(large);
    reader.use(framing);
    reader.feed(frame(framing, message));
    const std::optional<std::string> read = reader.next();
    require(read == message && !reader.is_inside_message(),
            "A framed reply does not read back as the same reply.", message);
}

// ---- replies -------------------------------------------------------------------------------------------

using Attributes = std::vector<std::tuple<std::string, std::string, std::string>>;

Attributes attributes_of(const Element &element) {
    Attributes all;
    for (const Element::Attribute &attribute : element.attributes())
        all.emplace_back(attribute.ns, attribute.name, attribute.value);
    std::sort(all.begin(), all.end());
    return all;
}

Document parsed_reply(const std::string &text) {
    try {
        return Document(text);
    } catch (const RpcError &error) {
        require(false, error.what(), text);
        std::abort();
    }
}

void check_attributes(const std::string &message, const Element &reply, const std::string &text) {
    try {
        const Document request(message);
        if (request.root().is(base_ns, "rpc"))
            require(attributes_of(reply) == attributes_of(request.root()),
                    "The attributes of the reply differ from those of the <rpc>.", message + "\n" + text);
    } catch (const RpcError &) { // no <rpc> to take attributes from
    }
}

void check_reply(const std::string &message, const Reply &reply) {
    const std::string text = reply.text();
    const Document document = parsed_reply(text);
    const Element root = document.root();
    require(root.is(base_ns, "rpc-reply"), "The reply is not an <rpc-reply>.", text);
    require(root.child("rpc-error").has_value() == reply.is_error,
            "The reply's error flag disagrees with its <rpc-error>.", text);
    check_attributes(message, root, text);
    const std::string tag = text.substr(text.find("<rpc-reply"));
    require(tag.substr(0, tag.find('>')).find_first_of("\t\r\n") == std::string::npos,
            "White space in an echoed attribute is not escaped.", text);
    check_frame(Framing::end_of_message, text);
    check_frame(Framing::chunked, text);
}

// ---- the conversation ----------------------------------------------------------------------------------

class Conversation {
public:
    Conversation(FuzzedServer &server, const Input &input)
        : server_(server), input_(input), reader_(small), greeted_(!input.has_hello) {
        if (greeted_)
            reader_.use(input.framing);
    }

    void hold() {
        for (size_t at = 0; at < input_.stream.size() && !ended_; at += input_.portion) {
            reader_.feed(input_.stream.substr(at, input_.portion));
            read();
        }
    }

private:
    void read() {
        try {
            while (!ended_) {
                const std::optional<std::string> message = reader_.next();
                if (!message.has_value())
                    return;
                take(*message);
            }
        } catch (const FramingError &) {
            ended_ = true;
        }
    }

    void take(const std::string &message) {
        if (greeted_)
            return ask(message);
        try {
            reader_.use(client_speaks_base_1_1(message) ? Framing::chunked : Framing::end_of_message);
            greeted_ = true;
        } catch (const RpcError &) {
            ended_ = true;
        }
    }

    void ask(const std::string &message) {
        const bool is_second = input_.two_sessions && asked_++ % 2 == 1;
        Caller caller;
        caller.session = is_second ? FuzzedServer::second_session : FuzzedServer::first_session;
        caller.user = "fuzzer";
        caller.may_write = input_.may_write;
        const int64_t before = server_.last_commit();
        const Reply reply = answer(server_.server(), caller, message);
        check_reply(message, reply);
        require(!(reply.is_error || !input_.may_write) || server_.last_commit() == before,
                "A refused request has changed the configuration.", message + "\n" + reply.text());
        ended_ = reply.aftermath.close || reply.aftermath.kill.has_value();
    }

    FuzzedServer &server_;
    const Input &input_;
    FrameReader reader_;
    bool greeted_;
    bool ended_ = false;
    size_t asked_ = 0;
};

void run_conversation(std::string_view bytes) {
    static FuzzedServer server;
    const Input input = input_of(bytes);
    check_framing(input);
    server.begin_anew();
    Conversation(server, input).hold();
}

} // namespace
} // namespace yfw::netconf::fuzz

void yfw::fuzz::run(std::string_view bytes) {
    if (bytes.size() >= 2)
        netconf::fuzz::run_conversation(bytes);
}
