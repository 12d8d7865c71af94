#include "yang/module_files.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "base/bounded_text.h"
#include "base/error.h"
#include "yang/schemas.h"

namespace yfw::yang {
namespace {

// A module the server depends on. The revision is fixed: a package upgrade must not change what clients are
// offered.
struct Needed {
    std::string_view name;
    const char *revision;
    const char *package; // NULL: comes with this program
};

constexpr const char *yuma = "libyuma-base";
constexpr const char *libyang = "libyang2"; // its modules are compiled into the library

constexpr Needed needed_modules[] = {{"ietf-netconf", "2011-06-01", yuma},
                                     {"ietf-netconf-acm", "2018-02-14", yuma},
                                     {"ietf-netconf-monitoring", "2010-10-04", yuma},
                                     {"ietf-netconf-nmda", "2019-01-07", yuma},
                                     {"ietf-netconf-notifications", "2012-02-06", yuma},
                                     {"ietf-netconf-with-defaults", "2011-06-01", yuma},
                                     {"ietf-origin", "2018-02-14", yuma},
                                     {"ietf-datastores", "2018-02-14", libyang},
                                     {"ietf-yang-library", "2019-01-04", libyang},
                                     {"nc-notifications", "2008-07-14", nullptr},
                                     {"notifications", "2008-07-14", nullptr}};

const Needed *needed(std::string_view name) {
    const auto *const found = std::find_if(std::begin(needed_modules), std::end(needed_modules),
                                           [&](const Needed &one) { return one.name == name; });
    return found != std::end(needed_modules) ? found : nullptr;
}

// `importer`: the module that needs it; may be empty.
Error missing(const ModuleFiles &files, const std::string &name, const std::string &revision,
              const std::string &importer) {
    const Needed *module = needed(name);
    std::string message = "no such YANG module in " + files.directories();
    if (!importer.empty())
        message += "; " + importer + " imports it";
    if (module != nullptr && module->package != nullptr && module->revision == revision)
        message += std::string("; the Debian package ") + module->package + " provides it";
    return {ErrorTag::operation_failed, name + (revision.empty() ? "" : "@" + revision) + ".yang", message};
}

// The revision to use when none is requested; empty: any.
std::string revision_of(const std::string &name) {
    const Needed *module = needed(name);
    return module != nullptr ? module->revision : "";
}

std::filesystem::path exact_file(const std::filesystem::path &dir, const std::string &name,
                                 const std::string &revision) {
    std::error_code ignored;
    std::filesystem::path file = dir / (name + "@" + revision + ".yang");
    return std::filesystem::exists(file, ignored) ? file : std::filesystem::path();
}

std::filesystem::path newest_file(const std::filesystem::path &dir, const std::string &name,
                                  const std::string &revision) {
    const char *const places[] = {dir.c_str(), nullptr};
    char *found = nullptr;
    lys_search_localfile(places, 0, name.c_str(), revision.empty() ? nullptr : revision.c_str(), &found,
                         nullptr);
    const std::unique_ptr<char, decltype(&std::free)> owner(found, std::free);
    return found != nullptr ? found : std::filesystem::path();
}

constexpr uint64_t largest_module = 16 * mebibyte;

// A module being loaded, and any error from its file or an import.
struct Loading {
    const ModuleFiles &files;
    const ly_ctx *context;
    std::optional<Error> error{};
    std::vector<std::pair<std::string, std::string>> given{}; // names and texts
};

// Whether the text has the statement "import NAME" or "include NAME" (RFC 7950 sections 7.1.5 and 7.1.6).
bool imports(const std::string &text, const std::string &name) {
    constexpr std::string_view blanks = " \t\r\n", quotes = "\"'", ends = " \t\r\n;{\"'";
    for (const std::string_view keyword : {"import", "include"})
        for (size_t at = text.find(keyword); at != std::string::npos; at = text.find(keyword, at + 1)) {
            size_t start = text.find_first_not_of(blanks, at + keyword.size());
            if (start == std::string::npos || start == at + keyword.size())
                continue;
            start += quotes.find(text[start]) != std::string_view::npos ? 1 : 0;
            const size_t end = start + name.size();
            if (text.compare(start, name.size(), name) == 0 && end < text.size() &&
                ends.find(text[end]) != std::string_view::npos)
                return true;
        }
    return false;
}

// libyang does not say whose import it follows: the last module that it was given and that has such an import.
std::string importer_of(const Loading &loading, const std::string &name) {
    const auto found = std::find_if(loading.given.rbegin(), loading.given.rend(),
                                    [&](const auto &given) { return imports(given.second, name); });
    return found != loading.given.rend() ? found->first : "";
}

// The module's text, to be released with free(); NULL with the error.
char *read(const std::filesystem::path &file, std::optional<Error> &error) noexcept {
    try {
        const std::string text = bounded_file_text(file, largest_module);
        if (text.find('\0') == std::string::npos)
            return strdup(text.c_str());
        error.emplace(ErrorTag::invalid_value, file.string(), "has a zero octet; expected a YANG module");
    } catch (const Error &unreadable) {
        error = unreadable;
    }
    return nullptr;
}

// libyang calls this for a module that it lacks, and to look for a newer revision of one that it has.
LY_ERR give_module(const char *name, const char *revision, const char *submodule,
                   const char *submodule_revision, void *user_data, LYS_INFORMAT *format, const char **text,
                   void (**release)(void *text, void *user_data)) noexcept {
    Loading &loading = *static_cast<Loading *>(user_data);
    const std::string wanted = submodule != nullptr ? submodule : name;
    const char *asked = submodule != nullptr ? submodule_revision : revision;
    if (asked == nullptr && ly_ctx_get_module_latest(loading.context, wanted.c_str()) != nullptr)
        return LY_ENOTFOUND;
    const std::string wanted_revision = asked != nullptr ? asked : revision_of(wanted);
    const std::filesystem::path file = loading.files.find(wanted, wanted_revision);
    if (file.empty()) {
        loading.error = missing(loading.files, wanted, wanted_revision, importer_of(loading, wanted));
        return LY_ENOTFOUND;
    }
    *format = file.extension() == ".yin" ? LYS_IN_YIN : LYS_IN_YANG;
    *text = read(file, loading.error);
    if (*text != nullptr)
        loading.given.emplace_back(wanted, *text);
    *release = [](void *given, void *) { std::free(given); };
    return *text != nullptr ? LY_SUCCESS : LY_ESYS;
}

} // namespace

ModuleFiles::ModuleFiles(const std::vector<std::filesystem::path> &dirs) {
    for (const std::filesystem::path &dir : dirs)
        if (std::find(dirs_.begin(), dirs_.end(), dir) == dirs_.end())
            dirs_.push_back(dir);
}

std::filesystem::path ModuleFiles::find(const std::string &name, const std::string &revision) const {
    const std::string wanted = revision.empty() ? revision_of(name) : revision;
    for (const std::filesystem::path &dir : dirs_)
        if (std::filesystem::path file =
                needed(name) != nullptr ? exact_file(dir, name, wanted) : newest_file(dir, name, wanted);
            !file.empty())
            return file;
    return {};
}

YangContext ModuleFiles::make_context() {
    ly_ctx *made = nullptr;
    if (ly_ctx_new(nullptr, LY_CTX_DISABLE_SEARCHDIRS, &made) != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "", "the YANG library could not be started");
    return YangContext(made);
}

void ModuleFiles::load(ly_ctx *context, const std::string &name, std::vector<const char *> features) const {
    Loading loading{*this, context};
    features.push_back(nullptr);
    const std::string revision = revision_of(name);
    ly_ctx_set_module_imp_clb(context, give_module, &loading);
    const lys_module *module = ly_ctx_load_module(
        context, name.c_str(), revision.empty() ? nullptr : revision.c_str(), features.data());
    ly_ctx_set_module_imp_clb(context, nullptr, nullptr);
    if (module != nullptr)
        return;
    const std::string said = take_yang_error(context);
    const std::filesystem::path file = find(name);
    throw loading.error.value_or(
        Error(ErrorTag::operation_failed, name, (file.empty() ? "" : file.string() + ": ") + said));
}

std::string ModuleFiles::directories() const {
    std::string text;
    for (const std::filesystem::path &dir : dirs_)
        text += (text.empty() ? "" : ", ") + dir.string();
    return text;
}

} // namespace yfw::yang
