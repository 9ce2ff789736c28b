#include "mngctl/commands/networks.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <netinet/in.h>

#include <algorithm>
#include <bit>
#include <charconv>

namespace mngctl {

namespace {

bool isDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

/// A number in decimal digits within the range.
std::optional<unsigned> lengthOf(std::string_view text, unsigned least, unsigned greatest) {
    unsigned length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (error != std::errc{} || end != text.data() + text.size() || length < least ||
        length > greatest) {
        return std::nullopt;
    }
    return length;
}

/// Why the address cannot be that of a host, in any network; empty if it can.
std::string_view unusableAsHost(unsigned address) {
    if (address == INADDR_ANY) {
        return "the unspecified address";
    }
    if (address == INADDR_BROADCAST) {
        return "the broadcast address";
    }
    if (address >> 24 == 0) {
        return "an address of 0.0.0.0/8, which stands for no host";
    }
    if (address >> 24 == IN_LOOPBACKNET) {
        return "a loopback address";
    }
    if (IN_MULTICAST(address)) {
        return "a multicast address";
    }
    if (IN_BADCLASS(address)) {
        return "a reserved address";
    }
    return {};
}

// IPv6.

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

bool isZeroBehind(const in6_addr& address, unsigned length) {
    for (unsigned bit = length; bit < longestPrefix; ++bit) {
        if (bitOf(address, bit)) {
            return false;
        }
    }
    return true;
}

}  // namespace

unsigned maskOfLength(unsigned length) {
    return length == 0 ? 0 : ~0U << (prefixLengthMaximum - length);
}

std::optional<unsigned> prefixLength(unsigned mask) {
    const auto length = static_cast<unsigned>(std::countl_one(mask));
    return maskOfLength(length) == mask ? std::optional(length) : std::nullopt;
}

unsigned parseMask(std::string_view text) {
    if (isDigits(text)) {
        if (const auto length = lengthOf(text, 0, prefixLengthMaximum)) {
            return maskOfLength(*length);
        }
        throw UsageError(
            fmt::format("expected a prefix length from 0 to 32, not '{}'", printable(text)));
    }
    unsigned mask = 0;
    try {
        mask = parseIpv4(text);
    } catch (const UsageError&) {
        throw UsageError(fmt::format(
            "expected a prefix length from 0 to 32 or a mask such as 255.255.255.0, not '{}'",
            printable(text)));
    }
    if (!prefixLength(mask)) {
        throw UsageError(fmt::format(
            "'{}' is no mask: expected ones followed by zeros, such as 255.255.255.0", text));
    }
    return mask;
}

Ipv4Network parseNetwork(std::string_view text) {
    const std::size_t slash = text.find('/');
    const unsigned address = parseIpv4(text.substr(0, slash));
    if (slash == std::string_view::npos) {
        return {address, maskOfLength(prefixLengthMaximum)};
    }
    return {address, parseMask(text.substr(slash + 1))};
}

Ipv4Network parseInterfaceAddress(std::string_view address, std::string_view mask) {
    const std::size_t slash = address.find('/');
    const bool hasPrefix = slash != std::string_view::npos;
    const std::string_view host = address.substr(0, slash);
    const unsigned value = parseHostAddress(host);
    if (!hasPrefix && mask.empty()) {
        throw UsageError(fmt::format(
            "'{}' lacks its network: expected ADDRESS/PREFIX such as {}/24, or ADDRESS MASK such "
            "as {} 255.255.255.0",
            address, address, address));
    }
    if (hasPrefix && !mask.empty()) {
        throw UsageError(fmt::format("the network is given twice, as '{}' and as '{}'",
                                     printable(address.substr(slash)), printable(mask)));
    }
    const std::string_view prefix = hasPrefix ? address.substr(slash + 1) : mask;
    const Ipv4Network network{value, parseMask(prefix)};
    if (network.mask == 0) {
        throw UsageError(fmt::format(
            "'{}' puts every address into the board's own network: expected a prefix length from "
            "1 to 32 or a mask such as 255.255.255.0",
            prefix));
    }
    checkIsHostIn(network, value, host);
    return network;
}

unsigned parseHostAddress(std::string_view text) {
    const unsigned address = parseIpv4(text);
    if (const auto reason = unusableAsHost(address); !reason.empty()) {
        throw UsageError(fmt::format(
            "'{}' is {}: expected the address of a host such as 192.0.2.10", text, reason));
    }
    return address;
}

void checkIsHostIn(const Ipv4Network& network, unsigned address, std::string_view text) {
    const unsigned first = network.first();
    const unsigned last = network.last();
    if (last - first < 2 || (address != first && address != last)) {
        return;
    }
    throw UsageError(fmt::format(
        "'{}' is the {} address of {}: expected that of a host in it, {} to {}", text,
        address == first ? "network" : "broadcast", formatNetwork(network.withoutHostBits()),
        formatIpv4(first + 1), formatIpv4(last - 1)));
}

std::string formatNetwork(const Ipv4Network& network) {
    const auto length = prefixLength(network.mask);
    return length
               ? fmt::format("{}/{}", formatIpv4(network.address), *length)
               : fmt::format("{} mask {}", formatIpv4(network.address), formatIpv4(network.mask));
}

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
    const auto bits = lengthOf(lengthText, 1, longestPrefix);
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
    const auto length = lengthOf(text.substr(slash + 1), 1, longestPrefix);
    in6_addr address{};
    const std::string addressText(text.substr(0, slash));
    if (!length || ::inet_pton(AF_INET6, addressText.c_str(), &address) != 1) {
        return {};
    }
    return {addressText, *length};
}

}  // namespace mngctl
