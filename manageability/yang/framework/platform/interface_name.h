// The two forms of an interface name. The display form is what people write (GigabitEthernet0/0/0/1); the
// system-database form is one component of a path there (GigabitEthernet0_0_0_1). '/' becomes '_', and '%' and
// '_' become "%25" and "%5F". The conversion is reversible for every name.
#ifndef PLATFORM_INTERFACE_NAME_H
#define PLATFORM_INTERFACE_NAME_H

#include <optional>
#include <string>
#include <string_view>

namespace yfw::platform {

std::string to_system_database_form(std::string_view display_name);

// Nothing when `name` is not the system-database form of any name.
std::optional<std::string> to_display_form(std::string_view name);

} // namespace yfw::platform

#endif
