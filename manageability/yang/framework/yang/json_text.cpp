#include "yang/json_text.h"

#include <set>
#include <vector>

#include "base/error.h"

namespace yfw::yang {
namespace {

using Json = nlohmann::ordered_json;

constexpr size_t deepest = 128;

[[noreturn]] void refuse(const std::string &why) {
    throw Error(ErrorTag::invalid_value, "", why);
}

class RefuseRepetition {
public:
    bool operator()(int depth, Json::parse_event_t event, const Json &parsed) {
        const auto level = static_cast<size_t>(depth);
        if (level > deepest)
            refuse("values are nested deeper than " + std::to_string(deepest));
        if (event == Json::parse_event_t::object_start)
            names_.resize(level + 1);
        if (event == Json::parse_event_t::object_start)
            names_[level].clear();
        if (event == Json::parse_event_t::key && !names_[level - 1].insert(parsed.get<std::string>()).second)
            refuse("the member \"" + parsed.get<std::string>() + "\" is repeated in one object");
        return true;
    }

private:
    std::vector<std::set<std::string>> names_; // of the objects around a place
};

} // namespace

Json parse_json(const std::string &text) {
    RefuseRepetition repetition;
    try {
        return Json::parse(text, [&](int depth, Json::parse_event_t event, Json &parsed) {
            return repetition(depth, event, parsed);
        });
    } catch (const Json::parse_error &error) {
        const std::string what = error.what();
        refuse("is no JSON: " + what.substr(what.find("] ") + 2));
    } catch (const Json::out_of_range &) {
        refuse("contains a number that is too large");
    }
}

} // namespace yfw::yang
