#include "lab/json_reader.h"

#include <algorithm>
#include <set>

#include "base/error.h"

namespace yfw::lab {
namespace {

using nlohmann::json;

constexpr int deepest = 32; // printing a value uses stack for each level

[[noreturn]] void refuse(const std::string &place, const std::string &message) {
    throw Error(ErrorTag::invalid_value, place, message);
}

// A value as shown in an error message; long ones are cut.
std::string shown(const json &value) {
    constexpr size_t most = 60;
    std::string text = value.dump(-1, ' ', true, json::error_handler_t::replace);
    if (text.size() > most)
        text = text.substr(0, most) + "...";
    return text;
}

} // namespace

json parse_json(const std::string &text, const std::string &file) {
    std::vector<std::set<std::string>> open; // the names seen so far in each open object
    const auto note = [&](int depth, json::parse_event_t event, json &parsed) {
        if (depth > deepest)
            refuse(file, "expected at most " + std::to_string(deepest) + " levels of objects and arrays");
        if (event == json::parse_event_t::object_start)
            open.emplace_back();
        else if (event == json::parse_event_t::object_end)
            open.pop_back();
        else if (event == json::parse_event_t::key && !open.back().insert(parsed.get<std::string>()).second)
            refuse(file, "expected each member once, but " + shown(parsed) + " is repeated in one object");
        return true;
    };
    try {
        return json::parse(text, note);
    } catch (const json::parse_error &error) {
        refuse(file, std::string("expected JSON: ") + error.what());
    } catch (const json::out_of_range &) {
        refuse(file, "expected no number that large");
    }
}

void JsonReader::expected(const std::string &what) const {
    refuse(place_, "expected " + what + ", not " + shown(*value_));
}

void JsonReader::is_object_of(std::initializer_list<std::string_view> members) const {
    std::string names;
    for (const std::string_view name : members)
        names += (names.empty() ? "" : ", ") + std::string(name);
    if (!value_->is_object())
        expected("an object with the members " + names);
    for (const auto &[name, value] : value_->items())
        if (std::find(members.begin(), members.end(), name) == members.end())
            refuse(place_, "expected only the members " + names + ", not " + shown(json(name)));
}

JsonReader JsonReader::member(const std::string &name, const std::string &what) const {
    if (std::optional<JsonReader> found = find(name))
        return *found;
    refuse(place_, "expected the member \"" + name + "\": " + what);
}

std::optional<JsonReader> JsonReader::find(const std::string &name) const {
    const auto found = value_->find(name);
    if (found == value_->end())
        return std::nullopt;
    return JsonReader(*found, place_ + ": " + name);
}

std::vector<std::pair<std::string, JsonReader>> JsonReader::members(const std::string &what) const {
    if (!value_->is_object())
        expected(what);
    std::vector<std::pair<std::string, JsonReader>> result;
    for (const auto &[name, value] : value_->items())
        result.emplace_back(name, JsonReader(value, place_ + ": " + name));
    return result;
}

std::vector<JsonReader> JsonReader::items(const std::string &what) const {
    if (!value_->is_array())
        expected(what);
    std::vector<JsonReader> result;
    for (size_t i = 0; i < value_->size(); ++i)
        result.emplace_back((*value_)[i], place_ + "[" + std::to_string(i) + "]");
    return result;
}

std::string JsonReader::text(const std::string &what) const {
    if (!value_->is_string())
        expected(what);
    return value_->get<std::string>();
}

long long JsonReader::number(long long lowest, long long highest) const {
    // A number above the type's maximum is stored as unsigned and is out of range for every use here.
    const bool fits = value_->is_number_integer() && (!value_->is_number_unsigned() ||
                                                      value_->get<unsigned long long>() <= 0x7fffffffffffffff);
    if (!fits || value_->get<long long>() < lowest || value_->get<long long>() > highest)
        expected("a number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    return value_->get<long long>();
}

} // namespace yfw::lab
