#include "board/varo/link/ipv6Prefix.h"

#include "board/varo/link/reportText.h"
#include "board/varo/varoCodes.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace varo {

namespace {

in6_addr asSystem(const Ipv6Address& address) {
    in6_addr result{};
    static_assert(sizeof result.s6_addr == sizeof address.bytes);
    std::memcpy(result.s6_addr, address.bytes.data(), address.bytes.size());
    return result;
}

/// Prefixes from here on have no address for all of the network's routers (RFC 6164).
constexpr unsigned pointToPoint = 127;

bool isZeroBehind(const Ipv6Address& address, unsigned length) {
    for (unsigned bit = length; bit < longestIpv6Prefix; ++bit) {
        if ((address.bytes[bit / 8] >> (7 - bit % 8) & 1) != 0) {
            return false;
        }
    }
    return true;
}

Ipv6Address required(std::string_view text) {
    const auto address = parsedIpv6(text);
    if (!address) {
        throw Failure(invalidValue, fmt::format("{} is not an IPv6 address", quoted(text)));
    }
    return *address;
}

}  // namespace

std::string ipv6Text(const Ipv6Address& address) {
    const in6_addr system = asSystem(address);
    std::array<char, INET6_ADDRSTRLEN> text{};
    ::inet_ntop(AF_INET6, &system, text.data(), text.size());
    return text.data();
}

std::string prefixText(const Ipv6Prefix& prefix) {
    return fmt::format("{}/{}", ipv6Text(prefix.address), prefix.length);
}

std::optional<Ipv6Address> parsedIpv6(std::string_view text) {
    in6_addr system{};
    // A text that contains a zero byte would be read up to it.
    if (text.find('\0') != std::string_view::npos ||
        ::inet_pton(AF_INET6, std::string(text).c_str(), &system) != 1) {
        return std::nullopt;
    }
    Ipv6Address address;
    std::memcpy(address.bytes.data(), system.s6_addr, address.bytes.size());
    return address;
}

bool isLinkLocal(const Ipv6Address& address) {
    const in6_addr system = asSystem(address);
    return IN6_IS_ADDR_LINKLOCAL(&system);
}

bool isHostAddress(const Ipv6Address& address) {
    const in6_addr system = asSystem(address);
    // Besides IPv4-compatible addresses, ::/96 has the unspecified and the loopback one.
    const bool isFirst96Zero = std::all_of(address.bytes.begin(), address.bytes.begin() + 12,
                                           [](unsigned char byte) { return byte == 0; });
    return !isFirst96Zero && !IN6_IS_ADDR_V4MAPPED(&system) && !IN6_IS_ADDR_MULTICAST(&system);
}

Ipv6Prefix checkedPrefix(std::string_view text, std::uint32_t length) {
    const Ipv6Address address = required(text);
    if (length < 1 || length > longestIpv6Prefix) {
        throw Failure(invalidValue, fmt::format("the prefix length {} is not in 1 to {}", length,
                                                longestIpv6Prefix));
    }
    const Ipv6Prefix prefix{address, length};
    if (!isHostAddress(address)) {
        throw Failure(invalidValue,
                      fmt::format("{} is not the address of a host", ipv6Text(address)));
    }
    if (length < pointToPoint && isZeroBehind(address, length)) {
        throw Failure(invalidValue, fmt::format("{} is the address of the network's routers",
                                                prefixText(prefix)));
    }
    return prefix;
}

Ipv6Address checkedIpv6Gateway(std::string_view text) {
    const Ipv6Address gateway = required(text);
    if (!isHostAddress(gateway)) {
        throw Failure(invalidValue, fmt::format("the gateway {} is not the address of a host",
                                                ipv6Text(gateway)));
    }
    return gateway;
}

std::optional<Ipv6Prefix> storedPrefix(const Ipv6Settings& settings) {
    try {
        if (settings.address[0] != '\0') {
            return checkedPrefix(settings.address, settings.prefixLength);
        }
    } catch (const Failure&) {
        // The file was changed by somebody else.
    }
    return std::nullopt;
}

std::optional<Ipv6Address> storedGateway(const Ipv6Settings& settings) {
    const auto gateway = parsedIpv6(settings.gateway);
    return gateway && isHostAddress(*gateway) ? gateway : std::nullopt;
}

}  // namespace varo
