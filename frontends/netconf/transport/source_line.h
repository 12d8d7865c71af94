// Where a client comes from, as the process tells that joins an SSH channel to the server's socket.
#ifndef YFW_FRONTENDS_NETCONF_TRANSPORT_SOURCE_LINE_H
#define YFW_FRONTENDS_NETCONF_TRANSPORT_SOURCE_LINE_H

#include <optional>
#include <string>
#include <string_view>

namespace yfw::netconf {

// The line that may precede a client's first message: "yfw-source ADDRESS" and a line feed. No NETCONF message
// begins like it.
inline constexpr std::string_view source_word = "yfw-source ";

// Takes the line off the beginning of a stream.
class SourceLine {
public:
    // What of the bytes belongs to the messages; while more is needed to know, they are kept.
    std::string without_line(std::string_view bytes);

    // The IP address; nothing when there is no line, or no address in it.
    const std::optional<std::string> &address() const { return address_; }

private:
    bool is_over_ = false;
    std::string kept_;
    std::optional<std::string> address_;
};

} // namespace yfw::netconf

#endif
