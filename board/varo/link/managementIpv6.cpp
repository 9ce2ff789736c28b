#include "board/varo/link/managementIpv6.h"

#include "board/varo/link/reportText.h"
#include "board/varo/varoCodes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace varo {

namespace {

/// The kernel counts in clock ticks, and a lease that never ends must still be known as one.
constexpr std::uint32_t longestLifetime = 0x7fffffff;

std::string reason(int error) { return std::generic_category().message(error); }

void put(Netlink& netlink, const std::string& name, int index, const Ipv6Prefix& prefix,
         std::uint32_t valid, std::uint32_t preferred) {
    if (const int error = netlink.putIpv6Address(index, prefix, valid, preferred); error != 0) {
        throw Failure(systemFailed, fmt::format("cannot add the address {} to {}: {}",
                                                prefixText(prefix), name, reason(error)));
    }
}

}  // namespace

void putAddressByHand(Netlink& netlink, const std::string& name, int index,
                      const Ipv6Prefix& prefix) {
    for (const auto& each : netlink.ipv6Addresses(index)) {
        // The kernel has no other way to give an address another network.
        if (each.prefix.address == prefix.address && each.prefix.length != prefix.length) {
            removeAddress(netlink, name, index, each.prefix);
        }
    }
    put(netlink, name, index, prefix, Netlink::forever, Netlink::forever);
}

void removeAddress(Netlink& netlink, const std::string& name, int index, const Ipv6Prefix& prefix) {
    const int error = netlink.removeIpv6Address(index, prefix);
    if (error != 0 && error != EADDRNOTAVAIL) {
        throw Failure(systemFailed, fmt::format("cannot remove the address {} from {}: {}",
                                                prefixText(prefix), name, reason(error)));
    }
}

void putLeasedAddress(Netlink& netlink, const std::string& name, int index, const Lease6& lease) {
    const Ipv6Prefix prefix{lease.address, longestIpv6Prefix};
    put(netlink, name, index, prefix, std::min(lease.valid, longestLifetime),
        std::min(lease.preferred, longestLifetime));
}

void removeRoute(Netlink& netlink, const std::string& name, int index, const Ipv6Address& gateway) {
    const int error = netlink.removeIpv6Gateway(index, gateway);
    // It goes with the interface's other routes when that is taken down.
    if (error != 0 && error != ESRCH) {
        throw Failure(systemFailed, fmt::format("cannot remove the default route via {} by {}: {}",
                                                ipv6Text(gateway), name, reason(error)));
    }
}

void putRoute(Netlink& netlink, const std::string& name, int index, const Ipv6Address& gateway,
              bool isNeighbour) {
    if (const int error = netlink.putIpv6Gateway(index, gateway, isNeighbour); error != 0) {
        throw Failure(systemFailed, fmt::format("cannot set the default route via {} by {}: {}",
                                                ipv6Text(gateway), name, reason(error)));
    }
}

void removeLeasedAddresses(Netlink& netlink, const std::string& name, int index) {
    for (const auto& each : netlink.ipv6Addresses(index)) {
        if (each.isLeased) {
            removeAddress(netlink, name, index, each.prefix);
        }
    }
}

void applySettings(Netlink& netlink, const std::string& name, int index,
                   const Ipv6Settings& settings) {
    const auto prefix = storedPrefix(settings);
    if (prefix) {
        putAddressByHand(netlink, name, index, *prefix);
    }
    const auto gateway = storedGateway(settings);
    if (gateway) {
        putRoute(netlink, name, index, *gateway, true);
    }
    if ((!prefix && settings.address[0] != '\0') || (!gateway && settings.gateway[0] != '\0')) {
        throw Failure(invalidValue, fmt::format("{}/{}, gateway {}, are not IPv6 settings",
                                                quoted(settings.address), settings.prefixLength,
                                                quoted(settings.gateway)));
    }
}

}  // namespace varo
