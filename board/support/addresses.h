#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace support {

/// 6 bytes in the order in which they are written.
using MacAddress = std::array<unsigned char, 6>;

/// The address of a network interface of this machine; nothing when it is no Ethernet interface.
/// Throws std::system_error, its text beginning with `doing`, when there is no such interface.
std::optional<MacAddress> ethernetAddress(const std::string& interface, const std::string& doing);

/// An IPv4 address, given in host byte order, in dotted decimal form; and back, nothing for another
/// text.
std::string ipv4Text(std::uint32_t address);
std::optional<std::uint32_t> parsedIpv4(std::string_view text);

}  // namespace support
