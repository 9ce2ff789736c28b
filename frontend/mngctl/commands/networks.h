#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mngctl {

// Addresses, masks and networks as users write them. Numbers are in host byte order, texts of IPv6
// canonical (RFC 5952). What throws, throws UsageError with a sentence that says what was expected.

/// An IPv4 address and the mask of its network. The address may have host bits.
struct Ipv4Network {
    unsigned address = 0;
    unsigned mask = 0;

    unsigned first() const { return address & mask; }  ///< the network's own address
    unsigned last() const { return address | ~mask; }  ///< its directed broadcast address
    bool contains(unsigned other) const { return (other & mask) == first(); }
    Ipv4Network withoutHostBits() const { return {first(), mask}; }
    bool operator==(const Ipv4Network&) const = default;
};

constexpr unsigned prefixLengthMaximum = 32;

/// The mask of a prefix length from 0 to 32.
unsigned maskOfLength(unsigned length);

/// The length of the prefix; nothing for a mask with holes.
std::optional<unsigned> prefixLength(unsigned mask);

/// A prefix length from 0 to 32, or a mask with dots: ones followed by zeros.
unsigned parseMask(std::string_view text);

/// ADDRESS/PREFIX, where PREFIX is a length or a mask; an address alone is a network of one.
Ipv4Network parseNetwork(std::string_view text);

/// ADDRESS/PREFIX in one text, or ADDRESS and MASK in two, for an interface: the address is that of
/// a host in its network.
Ipv4Network parseInterfaceAddress(std::string_view address, std::string_view mask);

/// An address that can belong to a host: neither unspecified nor loopback, multicast, reserved or
/// broadcast (RFC 1122 section 3.2.1.3, RFC 1112 section 4).
unsigned parseHostAddress(std::string_view text);

/// Refuses the first and the last address of the network, where it has such (not if it has one or
/// two addresses, RFC 3021). `text` is the address as it was given.
void checkIsHostIn(const Ipv4Network& network, unsigned address, std::string_view text);

/// "192.0.2.0/24"; "192.0.2.0 mask 255.0.255.0" for a mask with holes.
std::string formatNetwork(const Ipv4Network& network);

/// An IPv6 address with the length of its network's prefix.
struct Ipv6Network {
    std::string address;
    unsigned length = 0;
};

/// Whether a word is meant as an IPv6 address, right or wrong: no other has colons.
bool looksLikeIpv6(std::string_view text);

/// An address that can belong to a host: neither unspecified nor loopback, multicast, or one that
/// stands for an IPv4 address (RFC 4291).
std::string parseIpv6Host(std::string_view text);

/// ADDRESS/LENGTH in one text, or ADDRESS and LENGTH in two, for an interface: the address is that
/// of a host, not that of all routers of its network, and the length is 1 to 128.
Ipv6Network parseIpv6InterfaceAddress(std::string_view address, std::string_view length);

/// Whether the first `length` bits of two canonical addresses are the same.
bool isInIpv6Network(const Ipv6Network& network, std::string_view address);

/// Whether others than neighbours can reach it: it is not link-local.
bool isGlobal(const Ipv6Network& network);

/// "2001:db8::7/64".
std::string formatIpv6Network(const Ipv6Network& network);

/// Reads what formatIpv6Network writes; no address for another text.
Ipv6Network readIpv6Network(std::string_view text);

}  // namespace mngctl
