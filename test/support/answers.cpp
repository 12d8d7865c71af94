#include "support/answers.h"

#include <cctype>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "yang/forest.h"
#include "yang/tree_text.h"

namespace yfw::test {
namespace {

std::string last_message(const ly_ctx *context) {
    const char *message = ly_errmsg(context);
    const char *path = ly_errpath(context);
    return std::string(message != nullptr ? message : "no message") + (path != nullptr ? " at " : "") +
           (path != nullptr ? path : "");
}

bool has_shape(std::string_view text, std::string_view shape) {
    if (text.size() < shape.size())
        return false;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const bool matches = shape[i] == '0'   ? std::isdigit(static_cast<unsigned char>(text[i])) != 0
                             : shape[i] == '+' ? text[i] == '+' || text[i] == '-'
                                               : text[i] == shape[i];
        if (!matches)
            return false;
    }
    return true;
}

void compare_with_twin(const lyd_node *key, const char *container, std::vector<std::string> &unlike) {
    lyd_node *twin = nullptr;
    const std::string path = std::string(container) + "/" + key->schema->name;
    if (lyd_find_path(lyd_parent(key), path.c_str(), 0, &twin) != LY_SUCCESS)
        return;
    if (std::strcmp(lyd_get_value(key), lyd_get_value(twin)) != 0)
        unlike.push_back(yang::path_of(twin));
}

std::string printed(const lyd_node *tree, uint32_t options) {
    return without_times(yang::printed(tree, LYD_XML, options));
}

// Answers are not printed by libyang, but look as if they were.
void expect_bytes_of_libyang(const lyd_node *tree, LYD_FORMAT format, std::string answer) {
    if (tree == nullptr || lyd_child(tree) == nullptr) // an empty answer is a document all the same
        return;
    for (size_t at = answer.find("&#13;"); at != std::string::npos; at = answer.find("&#13;", at))
        answer.replace(at, 5, "\r"); // libyang prints what would be read as a line feed
    EXPECT_EQ(answer, yang::printed(tree, format, LYD_PRINT_WITHSIBLINGS));
}

} // namespace

const char *format_name(Format format) {
    return format == Format::json ? "json" : "xml";
}

Context openconfig_modules() {
    ly_log_options(LY_LOSTORE_LAST);
    ly_ctx *created = nullptr;
    const uint16_t options = LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIR_CWD;
    if (ly_ctx_new(YFW_MODELS_DIR, options, &created) != LY_SUCCESS)
        throw std::runtime_error("no libyang context");
    Context context(created);
    for (const char *module : {"openconfig-lldp-types", "openconfig-lldp"})
        if (ly_ctx_load_module(created, module, nullptr, nullptr) == nullptr)
            throw std::runtime_error(std::string(module) + ": " + last_message(created));
    return context;
}

Tree parse_answer(const ly_ctx *context, Format format, const std::string &answer) {
    lyd_node *tree = nullptr;
    const LYD_FORMAT syntax = format == Format::json ? LYD_JSON : LYD_XML;
    const LY_ERR result =
        lyd_parse_data_mem(context, answer.c_str(), syntax, LYD_PARSE_STRICT | LYD_PARSE_ONLY, 0, &tree);
    if (result != LY_SUCCESS)
        throw std::runtime_error(last_message(context));
    return Tree(tree);
}

Tree parse_printed(const ly_ctx *context, Format format, const std::string &answer) {
    Tree tree = parse_answer(context, format, answer);
    expect_bytes_of_libyang(tree.get(), format == Format::json ? LYD_JSON : LYD_XML, answer);
    return tree;
}

std::vector<std::string> keys_unlike_their_twins(const lyd_node *tree) {
    std::vector<std::string> unlike;
    const lyd_node *node = nullptr;
    LYD_TREE_DFS_BEGIN(tree, node) {
        if (lysc_is_key(node->schema)) {
            compare_with_twin(node, "config", unlike);
            compare_with_twin(node, "state", unlike);
        }
        LYD_TREE_DFS_END(tree, node);
    }
    return unlike;
}

std::vector<std::string> values_at(const lyd_node *tree, const std::string &xpath) {
    std::vector<std::string> values;
    for (const lyd_node *node : yang::nodes_at(tree, xpath))
        values.emplace_back(lyd_get_value(node));
    return values;
}

std::string as_text(const lyd_node *tree) {
    return printed(tree, LYD_PRINT_WITHSIBLINGS);
}

std::string as_text(const lyd_node *tree, const std::string &xpath) {
    std::string text;
    for (const lyd_node *node : yang::nodes_at(tree, xpath))
        text += printed(node, 0);
    return text;
}

std::string without_times(const std::string &text) {
    constexpr std::string_view shape = "0000-00-00T00:00:00.000+00:00";
    constexpr std::size_t zone_length = 6;
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        if (!has_shape(std::string_view(text).substr(at), shape)) {
            result += text[at++];
            continue;
        }
        at += shape.size();
        result += "<timestamp " + text.substr(at - zone_length, zone_length) + ">";
    }
    return result;
}

} // namespace yfw::test
