#include "device/untold_drift.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace yfw::device {
namespace {

// An instance path taken apart.
struct TakenApart {
    std::string schema_path;        // without module names and predicates
    std::set<std::string> literals; // of its predicates, in their quotes
};

// The end of the literal that begins at `begin`, behind its quote.
size_t end_of_literal(std::string_view path, size_t begin) {
    return std::min(path.find(path[begin], begin + 1), path.size() - 1) + 1;
}

TakenApart taken_apart(std::string_view path) {
    TakenApart parts;
    bool in_predicate = false;
    for (size_t at = 0; at < path.size(); at++) {
        const char c = path[at];
        if (c == '\'' || c == '"') {
            const size_t end = end_of_literal(path, at);
            parts.literals.emplace(path.substr(at, end - at));
            at = end - 1;
        } else if (c == '[' || c == ']') {
            in_predicate = c == '[';
        } else if (!in_predicate && c == ':') {
            parts.schema_path.resize(parts.schema_path.rfind('/') + 1);
        } else if (!in_predicate) {
            parts.schema_path += c;
        }
    }
    return parts;
}

} // namespace

std::vector<Drift> untold_drift(const std::vector<sources::PendingSetting> &pending,
                                const std::set<std::string> &found,
                                const std::vector<host::NativePath> &edits) {
    std::set<std::string> literals; // of all drift that was found
    for (const std::string &path : found)
        literals.merge(taken_apart(path).literals);
    std::set<std::string> edited;
    for (const host::NativePath &edit : edits)
        edited.insert(edit.path);
    std::vector<Drift> untold;
    for (const sources::PendingSetting &setting : pending) {
        const TakenApart parts = taken_apart(setting.path);
        const bool is_of_found_entry =
            std::any_of(parts.literals.begin(), parts.literals.end(),
                        [&](const std::string &literal) { return literals.contains(literal); });
        if (parts.literals.empty() ? !edited.contains(parts.schema_path) : !is_of_found_entry)
            untold.push_back({setting.path, setting.wanted, setting.now, ""});
    }
    return untold;
}

} // namespace yfw::device
