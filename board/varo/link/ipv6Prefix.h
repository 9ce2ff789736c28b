#pragma once

#include <netinet/in.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace varo {

/// An IPv6 address, its bytes in network order.
struct Ipv6Address {
    std::array<unsigned char, 16> bytes{};

    bool operator==(const Ipv6Address&) const = default;
};

/// An address with the length of its network's prefix.
struct Ipv6Prefix {
    Ipv6Address address;
    unsigned length = 0;

    bool operator==(const Ipv6Prefix&) const = default;
};

/// What is set by hand on the management interface, and stored: canonical texts, empty for none.
struct Ipv6Settings {
    char address[INET6_ADDRSTRLEN];
    std::uint32_t prefixLength;
    char gateway[INET6_ADDRSTRLEN];
};

inline constexpr unsigned longestIpv6Prefix = 128;

/// Canonical text (RFC 5952).
std::string ipv6Text(const Ipv6Address& address);
/// "2001:db8::7/64".
std::string prefixText(const Ipv6Prefix& prefix);

/// Reads a text of RFC 4291, section 2.2. A zone (RFC 4007) is not part of one.
std::optional<Ipv6Address> parsedIpv6(std::string_view text);

bool isLinkLocal(const Ipv6Address& address);
/// True for an address that one host can have, also a link-local one: not unspecified, loopback,
/// multicast, or one of those that stand for IPv4 addresses.
bool isHostAddress(const Ipv6Address& address);

/// Address and prefix length of a host in its network. Throws Failure (invalidValue) for a text
/// that is no address, for a length other than 1 to 128, and for an address that no host can have
/// there: that with nothing behind the prefix stands for all routers (RFC 4291, section 2.6.1)
/// unless the network is a link between two (RFC 6164) or a single address.
Ipv6Prefix checkedPrefix(std::string_view text, std::uint32_t length);

/// The address of a neighbour that can be a router. Throws Failure (invalidValue).
Ipv6Address checkedIpv6Gateway(std::string_view text);

/// What is stored; nothing for an empty text, and for one that no call of the library has written.
std::optional<Ipv6Prefix> storedPrefix(const Ipv6Settings& settings);
std::optional<Ipv6Address> storedGateway(const Ipv6Settings& settings);

}  // namespace varo
