#pragma once

#include <string>
#include <string_view>

namespace mngctl {

// IPv6 addresses and networks as users write them. Texts are canonical (RFC 5952). What throws,
// throws UsageError with a sentence that says what was expected.

/// An address with the length of its network's prefix.
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
