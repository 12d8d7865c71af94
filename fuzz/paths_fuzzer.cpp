// The fuzz target for paths of the command line. An input is a path.
#include <string>

#include "base/error.h"
#include "fuzz/support/fuzz_target.h"
#include "fuzz/support/fuzzed_device.h"
#include "host/request.h"
#include "yang/path.h"
#include "yang/typed_path.h"

namespace yfw::fuzz {
namespace {

bool is_same(const yang::Predicate &a, const yang::Predicate &b) {
    return a.leaf == b.leaf && a.value == b.value;
}

bool is_same(const yang::PathStep &a, const yang::PathStep &b) {
    if (a.node != b.node || a.predicates.size() != b.predicates.size())
        return false;
    for (size_t i = 0; i < a.predicates.size(); i++)
        if (!is_same(a.predicates[i], b.predicates[i]))
            return false;
    return true;
}

bool is_same(const yang::Path &a, const yang::Path &b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); i++)
        if (!is_same(a[i], b[i]))
            return false;
    return true;
}

void check_accepted(const yang::Path &path, const std::string &text) {
    const std::string printed = yang::to_string(path);
    try {
        require(is_same(yang::parse_path(path.front().node, printed), path),
                "A path that is printed and parsed is another path.", text + "\n" + printed);
    } catch (const Error &error) {
        require(false, "An accepted path is refused when it is printed and parsed.",
                text + "\n" + printed + "\n" + error.what());
    }
}

void check_typed(const std::string &text) {
    const yang::TypedPath typed = yang::parse_typed_path(shipped_schemas().openconfig_root(), text);
    require(!typed.nodes.empty(), "An accepted path stands for nothing.", text);
    require(typed.has_wildcards || typed.nodes.size() == 1,
            "A path without wildcards stands for several nodes.", text);
    for (const yang::Path &path : typed.nodes)
        check_accepted(path, text);
}

// Whether the check accepts the path; a refusal names it.
template <class Check> bool accepts(const std::string &text, Check &&check) {
    try {
        check();
        return true;
    } catch (const Error &error) {
        require(error.path() == text && *error.what() != '\0', "A refusal does not name the path.", text);
        return false;
    }
}

} // namespace

void run(std::string_view bytes) {
    const std::string text(bytes);
    const bool is_exact = accepts(text, [&] {
        const yang::Path path = yang::parse_path(shipped_schemas().openconfig_root(), text);
        require(!path.empty(), "An accepted path is empty.", text);
        check_accepted(path, text);
        host::split_by_list_entry(host::merge_paths({path, path}));
    });
    const bool is_typed = accepts(text, [&] { check_typed(text); });
    require(is_typed || !is_exact, "A path in quotes is refused when people type it.", text);
}

} // namespace yfw::fuzz
