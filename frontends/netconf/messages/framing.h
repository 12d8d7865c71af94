// The two framings of NETCONF over a byte stream (RFC 6242 sections 4.2 and 4.3).
#ifndef YFW_FRONTENDS_NETCONF_MESSAGES_FRAMING_H
#define YFW_FRONTENDS_NETCONF_MESSAGES_FRAMING_H

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace yfw::netconf {

enum class Framing { end_of_message, chunked };

// In bytes. Neither limit may exceed what the grammar allows: 4294967295 for a chunk.
struct FrameLimits {
    uint64_t chunk = 10u << 20;
    uint64_t message = 64u << 20;
};

// The stream violates the framing or a limit; the session cannot continue.
class FramingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Splits a stream into messages. Memory is bounded by the message limit.
class FrameReader {
public:
    explicit FrameReader(const FrameLimits &limits = {}) : limits_(limits) {}

    // Sets the framing from the next message on.
    void use(Framing framing) { framing_ = framing; }

    void feed(std::string_view bytes) { buffer_.append(bytes); }

    // The next complete message; nothing when it has not fully arrived. Throws FramingError, and again on every
    // later call.
    std::optional<std::string> next();

    // Whether a message has begun.
    bool is_inside_message() const { return !buffer_.empty() || !message_.empty() || has_chunk_; }

private:
    std::optional<std::string> next_by_delimiter();
    std::optional<std::string> next_by_chunks();
    // Whether the chunk header was complete; sets the chunk size or the end of the message.
    bool read_header();
    uint64_t chunk_size(std::string_view digits) const;
    bool read_chunk();
    void drop_consumed();

    FrameLimits limits_;
    Framing framing_ = Framing::end_of_message;
    std::string buffer_;
    size_t at_ = 0;       // bytes of the buffer consumed
    size_t searched_ = 0; // bytes of the buffer searched for the delimiter
    std::string message_; // the chunks so far
    uint64_t left_ = 0;   // of the current chunk
    bool has_chunk_ = false;
    bool ended_ = false;
};

// What precedes a part of a message when it is sent in parts; none may be empty, or longer than 4294967295
// octets.
std::string part_header(Framing framing, uint64_t size);
// What follows the last part.
std::string message_end(Framing framing);

// Encodes a message for sending.
std::string frame(Framing framing, std::string_view message);

} // namespace yfw::netconf

#endif
