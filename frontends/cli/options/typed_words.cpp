#include "frontends/cli/options/typed_words.h"

#include <utility>
#include <vector>

namespace yfw::cli {
namespace {

// Before a word that CLI11 would change. Words that begin with it get another one.
constexpr char mark = '\x1f';

std::string marked(std::string word) {
    const bool is_list = word.starts_with('[') && word.ends_with(']');
    return is_list || word.starts_with(mark) ? mark + word : word;
}

void remove_marks(CLI::App &app) {
    for (CLI::Option *option : app.get_options())
        if (option->get_items_expected_max() > 0)
            option->transform(std::function<std::string(std::string)>(as_typed));
    for (CLI::App *command : app.get_subcommands({}))
        remove_marks(*command);
}

} // namespace

std::string as_typed(const std::string &word) {
    return word.starts_with(mark) ? word.substr(1) : word;
}

void parse_as_typed(CLI::App &app, int argc, const char *const *argv) {
    remove_marks(app);
    std::vector<std::string> reversed; // the order that CLI11 takes
    for (int i = argc - 1; i > 0; i--)
        reversed.push_back(marked(argv[i]));
    app.parse(std::move(reversed));
}

} // namespace yfw::cli
