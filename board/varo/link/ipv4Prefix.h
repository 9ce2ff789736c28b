#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace varo {

// IPv4 addresses and masks are in host byte order.

/// What is set by hand on the management interface, and stored; 0 is none.
struct Ipv4Settings {
    std::uint32_t address;
    std::uint32_t netmask;
    std::uint32_t gateway;
};

/// An address with the length of its network's prefix.
struct Ipv4Prefix {
    std::uint32_t address = 0;
    unsigned length = 0;

    bool operator==(const Ipv4Prefix&) const = default;
};

/// "192.0.2.7/24".
std::string prefixText(const Ipv4Prefix& prefix);

/// The mask of a prefix of 0 to 32 bits.
std::uint32_t prefixMask(unsigned length);

/// The prefix that a mask stands for; nothing for a mask with holes.
std::optional<unsigned> prefixLength(std::uint32_t mask);

/// True for an address that one host can have: not of 0.0.0.0/8, loopback, multicast or reserved
/// (RFC 6890).
bool isHostAddress(std::uint32_t address);

/// Address and mask of a host in its network. Throws Failure (invalidValue) when the mask is 0 or
/// has holes, and for an address that no host can have there.
Ipv4Prefix checkedPrefix(std::uint32_t address, std::uint32_t mask);

}  // namespace varo
