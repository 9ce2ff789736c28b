#pragma once

#include <array>
#include <optional>
#include <string>

namespace support {

/// 6 bytes in the order in which they are written.
using MacAddress = std::array<unsigned char, 6>;

/// The address of a network interface of this machine; nothing when it is no Ethernet interface.
/// Throws std::system_error, its text beginning with `doing`, when there is no such interface.
std::optional<MacAddress> ethernetAddress(const std::string& interface, const std::string& doing);

}  // namespace support
