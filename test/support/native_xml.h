// Generates native instance data for tests that need many devices.
#pragma once

#include <string>

namespace yfw::test {

/// <name>content</name>; the content must already be escaped.
std::string element(const std::string &name, const std::string &content);

/// The text with XML's special characters replaced by entities.
std::string escaped(const std::string &text);

/// The top node of the native LLDP configuration.
std::string native_configuration(const std::string &content);

/// The top node of the native LLDP operational data.
std::string native_state(const std::string &content);

/// Operational data of one node.
std::string native_node(const std::string &content);

/// Operational data of one node with these "detail" entries.
std::string native_neighbors(const std::string &details);

/// One "detail" entry with one announcement. The last argument follows the neighbor's device-id.
std::string native_neighbor(const std::string &interface, const std::string &device,
                            const std::string &announcement);

} // namespace yfw::test
