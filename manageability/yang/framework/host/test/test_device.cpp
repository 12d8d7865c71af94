#include "test_device.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "base/error.h"
#include "data_texts.h"
#include "oclldp_plugin.h"

namespace yfw::host::test {
namespace {

// No validation beyond the types.
constexpr uint32_t parse_options = LYD_PARSE_ONLY | LYD_PARSE_STRICT;

TextSource &shared_source() {
    static TextSource source;
    return source;
}

// Without the mappings beside it, which have tests of their own.
MappingDescription main_mapping() {
    MappingDescription mapping = read_mapping(OCLLDP_LIBRARY);
    mapping.beside.clear();
    return mapping;
}

// Never destroyed: what the plug-in keeps between requests, such as the last neighbor id, is not a leak while
// the plug-in is loaded.
Engine &shared_engine() {
    static Engine &engine = *new Engine(schemas(), shared_source(), main_mapping());
    return engine;
}

template <class Global> Global &global(void *library, const char *name) {
    void *symbol = dlsym(library, name);
    EXPECT_NE(symbol, nullptr) << name;
    return *static_cast<Global *>(symbol);
}

// Resets the plug-in's globals to their state after loading.
void forget_earlier_requests() {
    void *library = dlopen(OCLLDP_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(library, nullptr);
    for (const char *name : {"gl_stats", "stat_count"})
        std::memset(&global<decltype(gl_stats)>(library, name), 0, sizeof gl_stats);
    for (const char *name : {"gl_subtree_count", "is_get_with_key", "oclldp_get_with_int_key"})
        global<int32_t>(library, name) = 0;
    std::memset(&global<decltype(oclldp_gl_int_name)>(library, "oclldp_gl_int_name"), 0,
                sizeof oclldp_gl_int_name);
    std::free(std::exchange(global<char *>(library, "gl_neigh_dev_id"), nullptr));
    dlclose(library);
}

} // namespace

const AnswerSchema &answer_schema() {
    static const AnswerSchema made(schemas().openconfig_root());
    return made;
}

ReadRequest request(const std::vector<std::string> &paths, Content content) {
    ReadRequest made;
    made.content = content;
    for (const std::string &text : paths)
        made.paths.push_back(path(text));
    return made;
}

Selection selection(const std::vector<std::string> &paths) {
    return merge_paths(request(paths).paths);
}

yang::DataTree native_data(const std::string &text, Order order) {
    const LYD_FORMAT format = text.starts_with('{') ? LYD_JSON : LYD_XML;
    const uint32_t options = parse_options | (order == Order::kept ? LYD_PARSE_ORDERED : 0u);
    lyd_node *data = nullptr;
    const LY_ERR status = lyd_parse_data_mem(schemas().context(), text.c_str(), format, options, 0, &data);
    yang::DataTree tree(data);
    if (status != LY_SUCCESS)
        throw Error(ErrorTag::invalid_value, text, yang::take_yang_error(schemas().context()));
    return tree;
}

yang::DataTree TextSource::read(const ly_ctx *context) {
    EXPECT_EQ(context, schemas().context());
    reads++;
    return native_data(xml);
}

DeviceUnderTest::DeviceUnderTest() : source(shared_source()), engine(shared_engine()) {
    source.xml.clear();
    source.reads = 0;
    engine.set_trace(false);
    forget_earlier_requests();
}

std::vector<std::string> DeviceUnderTest::read(const std::vector<std::string> &paths, Content content) {
    const Answer answer = engine.read(request(paths, content));
    warnings = answer.warnings;
    return leaves(answer.data.get());
}

} // namespace yfw::host::test
