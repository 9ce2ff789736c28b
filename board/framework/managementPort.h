#pragma once

#include <cstddef>
#include <string>

namespace framework {

/// Port id of the management port, the only one that this board has a registry entry for.
inline constexpr int managementPort = 1;

/// The longest Linux name that callers of the registry have room for, without its terminator.
inline constexpr std::size_t longestPortName = 8;

/// Sets the Linux name of the management port, "mng0" until then. To be called before other threads
/// ask for it.
void nameManagementPort(const std::string& linuxName);

}  // namespace framework
