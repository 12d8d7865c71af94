// A device that a test edits, with a store and an engine of its own.
#ifndef DEVICE_TEST_EDIT_DEVICE_H
#define DEVICE_TEST_EDIT_DEVICE_H

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "device/configured_source.h"
#include "device/editor.h"
#include "host/engine.h"
#include "host/test/test_device.h"
#include "sources/native_target.h"
#include "support/files.h"

namespace yfw::device::test {

// The plug-in is loaded anew for it where no other device is there.
class EditedDevice {
public:
    // Borrows the target, which may be NULL. Without `directory` the store stands in one of the device's own.
    explicit EditedDevice(const std::string &native, sources::NativeTarget *target = nullptr,
                          const std::filesystem::path &directory = {});

    // Commits an edit document, whose nodes are merged where they do not say otherwise. Nothing when it changed
    // nothing. Throws Error.
    std::optional<commits::Commit> edit(const std::string &document);

    // Maps an edit document and applies nothing. Throws Error.
    void map(const std::string &document);

    // The native difference that the edit would make.
    std::string try_edit(const std::string &document);

    std::optional<commits::Commit> rollback(int64_t number);

    // The running configuration, XML.
    std::string configuration();

    // How many commits the store has; none without a store.
    size_t commits() const;

    void on_step(std::function<void(commits::Step)> observer) { editor_.on_step(std::move(observer)); }

private:
    host::test::TextSource source_;
    std::optional<yfw::test::TemporaryDirectory> own_directory_;
    ConfiguredSource configured_;
    host::Engine engine_;
    Editor editor_;
};

// Whether the device runs this configuration.
testing::AssertionResult runs(EditedDevice &device, const std::string &configuration);

// <name>content</name>
std::string element(const std::string &name, const std::string &content);

// An edit document with this content below /lldp, /lldp/config, or the configuration of interface eth1. The
// prefixes "nc" and "types" stand for NETCONF's namespace and that of the OpenConfig identities.
std::string document(const std::string &content);
std::string config(const std::string &leaf);
std::string eth1(const std::string &leaf);

// The native configuration of a device with these global settings, and three interfaces that LLDP runs on.
std::string native_device(const std::string &global);

} // namespace yfw::device::test

#endif
