#include "yang/json_text.h"

#include <set>
#include <vector>

#include "base/error.h"

namespace yfw::yang {
namespace {

using Json = nlohmann::ordered_json;

constexpr size_t deepest = 128;
constexpr size_t most_members = 1000; // of an object, which compares the names of all to find one

[[noreturn]] void refuse(const std::string &why) {
    throw Error(ErrorTag::invalid_value, "", why);
}

// Refuses what the parser would accept. The parser has callbacks for that, but with one it looks at all earlier
// elements of an array after each element.
class Check : public nlohmann::json_sax<Json> {
public:
    bool null() override { return value(); }
    bool boolean(bool) override { return value(); }
    bool number_integer(number_integer_t) override { return value(); }
    bool number_unsigned(number_unsigned_t) override { return value(); }
    bool number_float(number_float_t, const string_t &) override { return value(); }
    bool string(string_t &) override { return value(); }
    bool binary(binary_t &) override { return value(); }

    bool start_object(std::size_t) override { return start(); }
    bool end_object() override { return end(); }
    bool start_array(std::size_t) override { return start(); }
    bool end_array() override { return end(); }

    bool key(string_t &name) override {
        std::set<std::string> &names = names_.back();
        if (!names.insert(name).second)
            refuse("the member \"" + name + "\" is repeated in one object");
        if (names.size() > most_members)
            refuse("an object has more than " + std::to_string(most_members) + " members");
        return true;
    }

    bool parse_error(std::size_t, const std::string &, const nlohmann::detail::exception &error) override {
        if (dynamic_cast<const Json::out_of_range *>(&error) != nullptr)
            refuse("a number is too large");
        const std::string what = error.what();
        refuse("is no JSON: " + what.substr(what.find("] ") + 2));
    }

private:
    bool value() const {
        if (names_.size() > deepest)
            refuse("values are nested deeper than " + std::to_string(deepest));
        return true;
    }
    bool start() {
        value();
        names_.emplace_back();
        return true;
    }
    bool end() {
        names_.pop_back();
        return true;
    }

    std::vector<std::set<std::string>> names_; // of the objects and, without names, arrays around a place
};

} // namespace

Json parse_json(const std::string &text) {
    Check check;
    Json::sax_parse(text, &check);
    return Json::parse(text);
}

} // namespace yfw::yang
