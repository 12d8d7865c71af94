#include "edit_device.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

#include "support/answers.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

// The line before the native configuration in the output of `yfw show`.
constexpr std::string_view before_configuration = "\nnative configuration:\n";

void append(Strings &to, Strings more) {
    to.insert(to.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

} // namespace

void PrintTo(const DeviceState &state, std::ostream *to) {
    *to << "\n-- OpenConfig\n"
        << state.openconfig << "-- native\n"
        << state.native << "-- commits\n"
        << state.history << (state.has_store ? "" : "-- no store\n");
}

EditedDevice::EditedDevice(const std::string &native_configuration) {
    // Keeps a command that ignores --store away from the user's own commits.
    setenv("XDG_STATE_HOME", (directory_.path() / "state-home").c_str(), 1);
    fs::create_directory(directory_.path() / "device");
    directory_.add("device/config.xml", native_configuration);
}

Outcome EditedDevice::run(Strings arguments) const {
    const Strings options{"--device", (directory_.path() / "device").string(), "--store", store().string()};
    // After "--" there can be no options.
    arguments.insert(std::find(arguments.begin(), arguments.end(), "--"), options.begin(), options.end());
    return run_yfw({.arguments = std::move(arguments), .working_directory = directory_.path()});
}

Outcome EditedDevice::set(const std::string &path, const std::string &value) const {
    return run({"set", "--", path, value});
}

Outcome EditedDevice::erase(const std::string &path) const {
    return run({"delete", path});
}

Outcome EditedDevice::edit(const std::string &document, Strings arguments) const {
    const bool json = document.starts_with('{');
    Strings all{"edit", directory_.add(json ? "edit.json" : "edit.xml", document)};
    append(all, std::move(arguments));
    return run(std::move(all));
}

Outcome EditedDevice::answered(Strings arguments) const {
    Outcome outcome = run(std::move(arguments));
    if (outcome.status != 0 || !outcome.errors.empty())
        throw std::runtime_error("the device does not answer: " + outcome.errors);
    return outcome;
}

std::string EditedDevice::openconfig(const std::string &path) const {
    return openconfig_text(answered({"get", "--config", path, "--format", "xml"}).output);
}

Strings EditedDevice::values(const std::string &xpath) const {
    static const Context modules = openconfig_modules();
    const Outcome answer = answered({"get", "--config", "/lldp", "--format", "xml"});
    return values_at(parse_answer(modules.get(), Format::xml, answer.output).get(), xpath);
}

std::string EditedDevice::native() const {
    const std::vector<int> numbers = commits();
    if (numbers.empty())
        return "";
    const std::string commit = answered({"show", std::to_string(numbers.front())}).output;
    const size_t at = commit.find(before_configuration);
    if (at == std::string::npos)
        throw std::runtime_error("no native configuration in: " + commit);
    return commit.substr(at + before_configuration.size());
}

std::vector<int> EditedDevice::commits() const {
    if (!fs::exists(store()))
        return {};
    std::vector<int> numbers;
    for (const std::string &line : lines_of(answered({"history"}).output))
        numbers.push_back(std::stoi(line));
    return numbers;
}

DeviceState EditedDevice::state() const {
    DeviceState state{.openconfig = openconfig(), .native = native(), .has_store = fs::exists(store())};
    if (state.has_store)
        state.history = answered({"history"}).output;
    return state;
}

std::string native_interface(const std::string &name, const std::string &lldp) {
    const std::string settings =
        lldp.empty() ? "" : "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\">" + lldp + "</lldp>";
    return element("interface-configuration",
                   element("active", "act") + element("interface-name", escaped(name)) + settings);
}

std::string native_interfaces(const std::string &entries) {
    return "<interface-configurations xmlns=\"urn:tarvo:yang:Tarvo-QD-ifmgr-cfg\">" + entries +
           "</interface-configurations>\n";
}

std::string configured_device() {
    const std::string disabled = element("disable", "true");
    return native_configuration(
               element("enable", "true") + element("timer", "45") + element("holdtime", "200") +
               element("system-name", "router.example.net") + element("system-description", "A router") +
               element("chassis-id", "00:53:00:00:00:01") + element("chassis-id-type", "mac-address")) +
           native_interfaces(native_interface("eth1", element("enable", "true")) +
                             native_interface("eth2", element("enable", "false") +
                                                          element("transmit", disabled) +
                                                          element("receive", disabled)) +
                             native_interface("eth3", ""));
}

std::string empty_device() {
    return native_configuration("");
}

std::string switched_off_device() {
    return native_configuration(element("enable", "false")) +
           native_interfaces(native_interface("eth1", element("enable", "true")) +
                             native_interface("eth2", element("enable", "true")));
}

std::string lldp_document(const std::string &content) {
    return "<lldp xmlns=\"http://openconfig.net/yang/lldp\" "
           "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" +
           content + "</lldp>\n";
}

std::string openconfig_text(const std::string &document) {
    static const Context modules = openconfig_modules();
    return as_text(parse_answer(modules.get(), Format::xml, document).get());
}

void expect_committed(const Outcome &outcome) {
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(outcome.output.starts_with("commit ")) << outcome.output;
}

void expect_refused(const Outcome &outcome, const Strings &words, const std::string &tag) {
    EXPECT_NE(outcome.status, 0);
    EXPECT_LT(outcome.status, 128) << "killed by a signal";
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
    EXPECT_TRUE(outcome.errors.ends_with(" [" + tag + "]\n"))
        << "no [" << tag << "] at the end of: " << outcome.errors;
    for (const std::string &word : words)
        EXPECT_NE(outcome.errors.find(word), std::string::npos)
            << "no \"" << word << "\" in: " << outcome.errors;
}

} // namespace yfw::test
