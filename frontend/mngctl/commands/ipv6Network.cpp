#include "mngctl/commands/ipv6Network.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <netinet/in.h>

#include <algorithm>
#include <charconv>
#include <optional>

namespace mngctl {

namespace {

constexpr unsigned longestPrefix = 128;
/// Prefixes from here on have no address for all of the network's routers (RFC 6164).
constexpr unsigned pointToPoint = 127;

/// The address of a text that parseIpv6 takes.
in6_addr binary(std::string_view text) {
    in6_addr address{};
    ::inet_pton(AF_INET6, std::string(text).c_str(), &address);
    return address;
}

bool bitOf(const in6_addr& address, unsigned number) {
    return (address.s6_addr[number / 8] >> (7 - number % 8) & 1) != 0;
}

/// Why the address cannot be that of a host; empty if it can.
std::string_view unusableAsHost(const in6_addr& address) {
    if (IN6_IS_ADDR_UNSPECIFIED(&address)) {
        return "the unspecified address";
    }
    if (IN6_IS_ADDR_LOOPBACK(&address)) {
        return "the loopback address";
    }
    if (IN6_IS_ADDR_MULTICAST(&address)) {
        return "a multicast address";
    }
    if (IN6_IS_ADDR_V4MAPPED(&address) || IN6_IS_ADDR_V4COMPAT(&address)) {
        return "an address that stands for an IPv4 address";
    }
    return {};
}

std::optional<unsigned> lengthOf(std::string_view text) {
    unsigned length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (error != std::errc{} || end != text.data() + text.size() || length < 1 ||
        length > longestPrefix) {
        return std::nullopt;
    }
    return length;
}

bool isZeroBehind(const in6_addr& address, unsigned length) {
    for (unsigned bit = length; bit < longestPrefix; ++bit) {
        if (bitOf(address, bit)) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool looksLikeIpv6(std::string_view text) { return text.find(':') != std::string_view::npos; }

std::string parseIpv6Host(std::string_view text) {
    std::string canonical = parseIpv6(text);
    if (const auto why = unusableAsHost(binary(canonical)); !why.empty()) {
        throw UsageError(fmt::format(
            "'{}' is {}: expected the address of a host such as 2001:db8::10", text, why));
    }
    return canonical;
}

Ipv6Network parseIpv6InterfaceAddress(std::string_view address, std::string_view length) {
    const std::size_t slash = address.find('/');
    if (slash != std::string_view::npos && !length.empty()) {
        throw UsageError(fmt::format("'{}' has a prefix length already; '{}' is one too many",
                                     printable(address), printable(length)));
    }
    const std::string_view lengthText =
        slash == std::string_view::npos ? length : address.substr(slash + 1);
    if (slash == std::string_view::npos && length.empty()) {
        throw UsageError(fmt::format("'{}' lacks its prefix length: expected one such as {}/64",
                                     printable(address), printable(address)));
    }
    Ipv6Network network{parseIpv6Host(address.substr(0, slash)), 0};
    const auto bits = lengthOf(lengthText);
    if (!bits) {
        throw UsageError(fmt::format("expected a prefix length from 1 to {}, not '{}'",
                                     longestPrefix, printable(lengthText)));
    }
    network.length = *bits;
    if (network.length < pointToPoint && isZeroBehind(binary(network.address), network.length)) {
        throw UsageError(
            fmt::format("'{}' stands for all routers of its network: expected the address of a "
                        "host in it",
                        formatIpv6Network(network)));
    }
    return network;
}

bool isInIpv6Network(const Ipv6Network& network, std::string_view address) {
    const in6_addr one = binary(network.address);
    const in6_addr other = binary(address);
    for (unsigned bit = 0; bit < network.length; ++bit) {
        if (bitOf(one, bit) != bitOf(other, bit)) {
            return false;
        }
    }
    return true;
}

bool isGlobal(const Ipv6Network& network) {
    const in6_addr address = binary(network.address);
    return !IN6_IS_ADDR_LINKLOCAL(&address);
}

std::string formatIpv6Network(const Ipv6Network& network) {
    return fmt::format("{}/{}", network.address, network.length);
}

Ipv6Network readIpv6Network(std::string_view text) {
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) {
        return {};
    }
    const auto length = lengthOf(text.substr(slash + 1));
    in6_addr address{};
    const std::string addressText(text.substr(0, slash));
    if (!length || ::inet_pton(AF_INET6, addressText.c_str(), &address) != 1) {
        return {};
    }
    return {addressText, *length};
}

}  // namespace mngctl
