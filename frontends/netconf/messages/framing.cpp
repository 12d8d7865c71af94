#include "frontends/netconf/messages/framing.h"

#include <algorithm>
#include <utility>

namespace yfw::netconf {
namespace {

constexpr std::string_view delimiter = "]]>]]>";
constexpr uint64_t largest_chunk = 4294967295; // RFC 6242 section 4.2
constexpr size_t longest_header = sizeof "\n#4294967295\n" - 1;

[[noreturn]] void too_long(uint64_t limit) {
    throw FramingError("a message is longer than " + std::to_string(limit) + " bytes");
}

} // namespace

std::optional<std::string> FrameReader::next() {
    return framing_ == Framing::chunked ? next_by_chunks() : next_by_delimiter();
}

void FrameReader::drop_consumed() {
    buffer_.erase(0, at_);
    at_ = 0;
}

std::optional<std::string> FrameReader::next_by_delimiter() {
    const size_t from = searched_ > delimiter.size() ? searched_ - delimiter.size() : 0;
    const size_t end = buffer_.find(delimiter, from);
    if (end == std::string::npos) {
        searched_ = buffer_.size();
        if (buffer_.size() > limits_.message + delimiter.size())
            too_long(limits_.message);
        return std::nullopt;
    }
    if (end > limits_.message)
        too_long(limits_.message);
    std::string message = buffer_.substr(0, end);
    at_ = end + delimiter.size();
    drop_consumed();
    searched_ = 0;
    return message;
}

uint64_t FrameReader::chunk_size(std::string_view digits) const {
    if (digits.empty() || digits.front() < '1' || digits.front() > '9')
        throw FramingError("a chunk size must begin with a digit from 1 to 9");
    uint64_t size = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9')
            throw FramingError("a chunk size must be a decimal number");
        size = size * 10 + static_cast<uint64_t>(c - '0');
        if (size > largest_chunk)
            throw FramingError("a chunk size is above 4294967295");
    }
    if (size > limits_.chunk)
        throw FramingError("a chunk is longer than " + std::to_string(limits_.chunk) + " bytes");
    return size;
}

bool FrameReader::read_header() {
    const std::string_view rest = std::string_view(buffer_).substr(at_);
    constexpr std::string_view begin = "\n#";
    if (rest.substr(0, begin.size()) != begin.substr(0, rest.size()))
        throw FramingError("expected a chunk header, a line feed and \"#\"");
    const size_t end = rest.find('\n', begin.size());
    if (end == std::string_view::npos) {
        if (rest.size() >= longest_header)
            throw FramingError("a chunk header is too long");
        return false;
    }
    const std::string_view size = rest.substr(begin.size(), end - begin.size());
    if (size == "#") {
        if (!has_chunk_)
            throw FramingError("a message must have at least one chunk");
        ended_ = true;
    } else {
        left_ = chunk_size(size);
        has_chunk_ = true;
        if (message_.size() + left_ > limits_.message)
            too_long(limits_.message);
    }
    at_ += end + 1;
    return true;
}

bool FrameReader::read_chunk() {
    const size_t count = static_cast<size_t>(std::min<uint64_t>(left_, buffer_.size() - at_));
    message_.append(buffer_, at_, count);
    at_ += count;
    left_ -= count;
    return left_ == 0;
}

std::optional<std::string> FrameReader::next_by_chunks() {
    while (!ended_) {
        if (left_ > 0 ? !read_chunk() : !read_header()) {
            drop_consumed();
            return std::nullopt;
        }
    }
    drop_consumed();
    ended_ = has_chunk_ = false;
    return std::exchange(message_, {});
}

std::string part_header(Framing framing, uint64_t size) {
    return framing == Framing::chunked ? "\n#" + std::to_string(size) + "\n" : "";
}

std::string message_end(Framing framing) {
    return framing == Framing::chunked ? "\n##\n" : std::string(delimiter);
}

std::string frame(Framing framing, std::string_view message) {
    return part_header(framing, message.size()).append(message).append(message_end(framing));
}

} // namespace yfw::netconf
