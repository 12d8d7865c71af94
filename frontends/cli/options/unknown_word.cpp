#include "frontends/cli/options/unknown_word.h"

#include <vector>

#include "base/near_word.h"
#include "frontends/cli/options/typed_words.h"

namespace yfw::cli {
namespace {

std::string quoted(const std::string &text) {
    return "\"" + text + "\"";
}

std::string suggestion(const NearWord &near) {
    return near.found().empty() ? "" : ": did you mean " + quoted(near.found()) + "?";
}

// Commands that nobody types are in no group.
std::string unknown_command(const CLI::App &app, const std::string &word) {
    NearWord near(word);
    for (const CLI::App *command :
         app.get_subcommands([](const CLI::App *one) { return !one->get_group().empty(); }))
        near.consider(command->get_name());
    return "unknown command " + quoted(word) + suggestion(near);
}

std::string unknown_option(const CLI::App &app, const std::string &word) {
    const std::string name = word.substr(0, word.find('='));
    NearWord near(name);
    for (const CLI::Option *option : app.get_options())
        for (const std::string &known : option->get_lnames())
            near.consider("--" + known);
    return "unknown option " + quoted(name) + suggestion(near);
}

std::string described(const CLI::App &app, const std::string &word) {
    if (word.starts_with('-'))
        return unknown_option(app, word);
    if (!app.get_subcommands([](const CLI::App *) { return true; }).empty())
        return unknown_command(app, word);
    return "unexpected argument " + quoted(word);
}

} // namespace

std::string unknown_word(const CLI::App &program) {
    std::string place;
    for (const CLI::App *app = &program;; app = app->get_subcommands().front()) {
        if (const std::vector<std::string> unknown = app->remaining(); !unknown.empty())
            return place + described(*app, as_typed(unknown.front()));
        if (app->get_subcommands().empty())
            return "";
        place = app->get_subcommands().front()->get_name() + ": ";
    }
}

} // namespace yfw::cli
