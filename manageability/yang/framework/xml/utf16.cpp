#include "xml/utf16.h"

#include "xml/document.h"

namespace yfw::xml {
namespace {

// The order of the bytes; nothing when this is no UTF-16.
enum class Order { big, little };

std::optional<Order> order_of(std::string_view document) {
    using namespace std::string_view_literals;
    for (const std::string_view start : {"\xfe\xff"sv, "\0<"sv, "\0{"sv})
        if (document.starts_with(start))
            return Order::big;
    for (const std::string_view start : {"\xff\xfe"sv, "<\0"sv, "{\0"sv})
        if (document.starts_with(start))
            return Order::little;
    return std::nullopt;
}

void append_utf8(std::string &text, char32_t c) {
    const auto tail = [&](unsigned shift) { text += static_cast<char>(0x80 | ((c >> shift) & 0x3f)); };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xc0 | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xe0 | (c >> 12));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xf0 | (c >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

class Units {
public:
    Units(std::string_view document, Order order) : document_(document), order_(order) {}

    bool is_at_end() const { return at_ >= document_.size(); }

    char32_t next() {
        if (at_ + 1 >= document_.size())
            throw DocumentError("the document is cut off inside a character of UTF-16");
        const auto first = static_cast<unsigned char>(document_[at_]);
        const auto second = static_cast<unsigned char>(document_[at_ + 1]);
        at_ += 2;
        return order_ == Order::big ? char32_t{first} << 8 | second : char32_t{second} << 8 | first;
    }

private:
    std::string_view document_;
    Order order_;
    size_t at_ = 0;
};

bool is_leading(char32_t unit) {
    return unit >= 0xd800 && unit < 0xdc00;
}

bool is_trailing(char32_t unit) {
    return unit >= 0xdc00 && unit < 0xe000;
}

} // namespace

std::optional<std::string> from_utf16(std::string_view document) {
    const std::optional<Order> order = order_of(document);
    if (!order.has_value())
        return std::nullopt;
    std::string text;
    Units units(document, *order);
    while (!units.is_at_end()) {
        char32_t character = units.next();
        if (is_leading(character) && !units.is_at_end()) {
            const char32_t trailing = units.next();
            if (!is_trailing(trailing))
                throw DocumentError("the document has half of a surrogate pair");
            character = 0x10000 + ((character - 0xd800) << 10) + (trailing - 0xdc00);
        } else if (is_leading(character) || is_trailing(character)) {
            throw DocumentError("the document has half of a surrogate pair");
        }
        append_utf8(text, character);
    }
    return text;
}

} // namespace yfw::xml
