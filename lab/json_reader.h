// Strict reading of JSON: a value that is missing, unknown or of the wrong type is an error that gives its
// place.
#ifndef YFW_LAB_JSON_READER_H
#define YFW_LAB_JSON_READER_H

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace yfw::lab {

// Parses JSON; a duplicate member of an object is an error. Throws Error with the place `file`.
nlohmann::json parse_json(const std::string &text, const std::string &file);

// A value and its place, such as "FILE: routers[1]". The value must outlive the reader. Member functions throw
// Error, with the place as its path, when the value is not what they expect.
class JsonReader {
public:
    JsonReader(const nlohmann::json &value, std::string place) : value_(&value), place_(std::move(place)) {}

    const std::string &place() const { return place_; }
    // Adds a note for error messages, as in "FILE: routers[1] (r2)".
    void add_to_place(const std::string &note) { place_ += " (" + note + ")"; }

    [[noreturn]] void expected(const std::string &what) const;

    // Requires an object with no members other than these.
    void is_object_of(std::initializer_list<std::string_view> members) const;
    JsonReader member(const std::string &name, const std::string &what) const;
    std::optional<JsonReader> find(const std::string &name) const;
    // The members of an object whose names are data.
    std::vector<std::pair<std::string, JsonReader>> members(const std::string &what) const;
    std::vector<JsonReader> items(const std::string &what) const;
    std::string text(const std::string &what) const;
    long long number(long long lowest, long long highest) const;

private:
    const nlohmann::json *value_;
    std::string place_;
};

} // namespace yfw::lab

#endif
