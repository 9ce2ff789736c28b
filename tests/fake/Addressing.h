#pragma once

#include "varo/records.h"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace fake {

/// An IPv4 address on an interface, host byte order.
struct InterfaceAddress {
    std::uint32_t address;
    std::uint32_t netmask;
};

/// What the configuration library keeps of the management interface's addressing.
struct Addressing {
    std::uint32_t boardPosition = 5;
    std::map<std::string, InterfaceAddress> interfaces;
    std::map<std::string, std::array<unsigned char, 6>> macAddresses;
    std::uint32_t defaultGateway = 0;
    varoLib_s_dhcp dhcp{};
    varoLib_s_ipv6 ipv6{};
    varoLib_s_dhcp6 dhcp6{};
    /// What a failing read leaves behind for the caller.
    std::optional<varoLib_s_dhcp> dhcpLeftByFailure;
    std::optional<varoLib_s_ipv6> ipv6LeftByFailure;
    std::optional<InterfaceAddress> addressLeftByFailure;
    std::optional<std::array<unsigned char, 6>> macLeftByFailure;
};

}  // namespace fake
