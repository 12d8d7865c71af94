#include "symbol_files.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace oclldp_test {

namespace {

std::ifstream open_list(const std::string &directory, const std::string &name) {
    std::ifstream file(directory + "/" + name);
    if (!file)
        throw std::runtime_error("no list " + name);
    return file;
}

std::string output_of(const std::string &command) {
    const auto close = [](std::FILE *pipe) { pclose(pipe); };
    const std::unique_ptr<std::FILE, decltype(close)> pipe(popen(command.c_str(), "r"), close);
    if (pipe == nullptr)
        throw std::runtime_error("cannot run " + command);
    std::string output;
    std::array<char, 4096> chunk{};
    while (const std::size_t length = std::fread(chunk.data(), 1, chunk.size(), pipe.get()))
        output.append(chunk.data(), length);
    return output;
}

bool is_instrumentation(const std::string &name) {
    for (const char *prefix :
         {"__asan_", "__odr_asan", "__ubsan_", "__sanitizer_", "__sancov_", "__start___sancov",
          "__stop___sancov", "_ITM_", "__gmon_start__", "__cxa_finalize"}) {
        if (name.starts_with(prefix))
            return true;
    }
    return false;
}

} // namespace

std::map<std::string, char> expected_exports(const std::string &directory) {
    std::map<std::string, char> exports;
    std::ifstream file = open_list(directory, "exported_symbols.txt");
    std::string name;
    for (char letter = 0; file >> letter >> name;)
        exports[name] = letter;
    return exports;
}

std::set<std::string> expected_undefined(const std::string &directory) {
    std::set<std::string> names;
    std::ifstream file = open_list(directory, "undefined_symbols.txt");
    for (std::string name; file >> name;)
        names.insert(name);
    return names;
}

std::map<std::string, char> library_exports(const std::string &library) {
    std::map<std::string, char> exports;
    std::istringstream lines(output_of("nm -D --defined-only '" + library + "'"));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string address, name;
        char letter = 0;
        if (words >> address >> letter >> name && !is_instrumentation(name))
            exports[name] = letter;
    }
    return exports;
}

std::set<std::string> library_undefined(const std::string &library) {
    std::set<std::string> names;
    std::istringstream lines(output_of("nm -D --undefined-only '" + library + "'"));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string name;
        char letter = 0;
        if (words >> letter >> name && !is_instrumentation(name))
            names.insert(name);
    }
    return names;
}

std::vector<std::string> callback_names() {
    static const std::set<std::string> others = {"oc_to_qd_lldp_interface_delete",
                                                 "oclldp_interface_state_container_populate_man_cb"};
    static const std::set<std::string> helpers = {"ymap_bind_lldp_gl_sysdb",
                                                  "ymap_check_global_lldp_status",
                                                  "ymap_chassis_id_subtype_mapping_util",
                                                  "ymap_free_lldp_gl_sysdb_bind",
                                                  "ymap_get_ocllp_lldp_enable",
                                                  "ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util"};
    std::vector<std::string> names;
    for (const auto &[name, letter] : expected_exports()) {
        const bool is_callback = name.starts_with("ymap_") && !helpers.contains(name);
        if (is_callback || others.contains(name))
            names.push_back(name);
    }
    return names;
}

bool is_container_callback(const std::string &name) {
    return name.find("_cont_lvl") != std::string::npos || name.ends_with("_duck_map_container");
}

} // namespace oclldp_test
