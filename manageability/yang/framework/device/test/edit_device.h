// A device for tests to edit, with its own store and engine.
#ifndef DEVICE_TEST_EDIT_DEVICE_H
#define DEVICE_TEST_EDIT_DEVICE_H

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "device/managed_device.h"
#include "host/test/test_device.h"
#include "sources/native_target.h"
#include "support/files.h"

namespace yfw::device::test {

// Reloads the plug-in unless another device exists.
class EditedDevice {
public:
    // Borrows the target, which may be NULL. Without `directory` the store is in a directory owned by the
    // device.
    explicit EditedDevice(const std::string &native, sources::NativeTarget *target = nullptr,
                          const std::filesystem::path &directory = {});

    // Commits an edit document; merge is the default operation. Nothing when it changed nothing. Throws Error.
    std::optional<commits::Commit> edit(const std::string &document);

    // Maps an edit document without applying it. Throws Error.
    void map(const std::string &document);

    // The native difference that the edit would make.
    std::string try_edit(const std::string &document);

    std::optional<commits::Commit> rollback(int64_t number);

    // The running configuration, XML.
    std::string configuration();

    // The number of commits in the store; 0 without a store.
    size_t commits() const;

    void on_step(std::function<void(commits::Step)> observer) { device_.on_step(std::move(observer)); }

    ManagedDevice &device() { return device_; }
    host::test::TextSource &source() { return source_; }

private:
    host::test::TextSource source_;
    std::optional<yfw::test::TemporaryDirectory> own_directory_;
    ManagedDevice device_;
};

// Whether the device runs this configuration.
testing::AssertionResult runs(EditedDevice &device, const std::string &configuration);

// <name>content</name>
std::string element(const std::string &name, const std::string &content);

// An edit document with this content below /lldp, /lldp/config, or the configuration of interface eth1. The
// prefixes "nc" and "types" are bound to the NETCONF namespace and that of the OpenConfig identities.
std::string document(const std::string &content);
std::string config(const std::string &leaf);
std::string eth1(const std::string &leaf);

// The native configuration of a device with these global settings, and three interfaces that LLDP runs on.
std::string native_device(const std::string &global);

} // namespace yfw::device::test

#endif
