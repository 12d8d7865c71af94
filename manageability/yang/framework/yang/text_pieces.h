// Text that is handed on in pieces.
#ifndef YFW_YANG_TEXT_PIECES_H
#define YFW_YANG_TEXT_PIECES_H

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace yfw::yang {

// Takes the next piece of a text; may throw, which ends the writing.
using TextSink = std::function<void(std::string_view)>;

// The text itself, handed to a sink in pieces of bounded size.
class TextPieces {
public:
    explicit TextPieces(TextSink sink) : sink_(std::move(sink)) { text_.reserve(piece_size + slack); }

    TextPieces &operator<<(std::string_view text) {
        text_.append(text);
        return *this;
    }
    TextPieces &operator<<(char c) {
        text_.push_back(c);
        return *this;
    }
    void blanks(size_t count) { text_.append(count, ' '); }

    // Between two nodes: hands out what has been written if that is a piece.
    void pass_on() {
        if (text_.size() >= piece_size)
            flush();
    }
    void flush() {
        if (!text_.empty())
            sink_(text_);
        text_.clear();
    }

private:
    static constexpr size_t piece_size = 64 * 1024;
    static constexpr size_t slack = 4 * 1024; // for the node that completes a piece

    TextSink sink_;
    std::string text_;
};

} // namespace yfw::yang

#endif
